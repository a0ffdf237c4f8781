#include <lmx/Climate/lmxFoundRange.h>

#include <lmx/Climate/lmxSpatialConst.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace lmx {

TFoundRange::TFoundRange() {
    FLeast.fill(std::numeric_limits<float>::infinity());
    FGreatest.fill(-std::numeric_limits<float>::infinity());
}

void TFoundRange::Add(std::span<const float> numbers) {
    TFoundRange range = *this; // of which no number can be a part
    std::size_t i = 0;
    for (; i + Lanes <= numbers.size(); i += Lanes)
        for (std::size_t lane = 0; lane < Lanes; ++lane)
            range.AddTo(lane, numbers[i + lane]);
    for (; i < numbers.size(); ++i)
        range.AddTo(0, numbers[i]);
    *this = range;
}

// Without a branch, as TSpatialConst::IsValue has it: rows are compared many numbers at a time.
inline void TFoundRange::AddTo(std::size_t lane, float number) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    const bool isValue = (std::abs(number) < 1e30F) & (number != TSpatialConst::NoData) & (number != -9999.0F);
    const float low = isValue ? number : infinity;
    const float high = isValue ? number : -infinity;
    FLeast[lane] = low < FLeast[lane] ? low : FLeast[lane];
    FGreatest[lane] = high > FGreatest[lane] ? high : FGreatest[lane];
}

float TFoundRange::GetLeast() const {
    return *std::min_element(FLeast.begin(), FLeast.end());
}

float TFoundRange::GetGreatest() const {
    return *std::max_element(FGreatest.begin(), FGreatest.end());
}

} // namespace lmx
