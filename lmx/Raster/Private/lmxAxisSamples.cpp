#include <lmx/Raster/Private/lmxAxisSamples.h>

#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExtended.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>

namespace lmx {

namespace {

using TAxis = std::span<const float>;

/// Right end of the first bracket that holds a position, or 0 if there is none.
std::size_t FindBracket(TAxis axis, double position) {
    for (std::size_t right = 1; right < axis.size(); ++right)
        if (axis[right - 1] <= position && position <= axis[right])
            return right;
    return 0;
}

/// The same for positions that come in ascending order and lie within an ascending axis.
class TAscendingFinder {
public:
    std::size_t operator()(TAxis axis, double position) {
        while (axis[FRight] < position)
            ++FRight;
        return FRight;
    }

private:
    std::size_t FRight = 1;
};

// False for an axis with a NaN, too.
bool IsAscending(TAxis axis) {
    return std::adjacent_find(axis.begin(), axis.end(), std::not_fn(std::less_equal<float>())) == axis.end();
}

template<class Finder>
TAxisSample SampleWith(Finder&& finder, TAxis axis, bool wrapsAround, double position) {
    if (axis.size() < 2)
        return {};
    const auto last = static_cast<std::int32_t>(axis.size() - 1);
    if (!(axis.front() <= position && position <= axis.back()))
        return wrapsAround ? TAxisSample{last, 0, 0.5, true} : TAxisSample{};
    const std::size_t right = finder(axis, position);
    if (right == 0)
        return {};
    const extended low = axis[right - 1];
    const auto fraction = static_cast<double>((position - low) / (axis[right] - low));
    if (std::isnan(fraction))
        throw EInvalidOp(QStringLiteral("Invalid floating point operation"));
    return {static_cast<std::int32_t>(right - 1), static_cast<std::int32_t>(right), fraction, true};
}

} // namespace

TAxisSample SampleAxis(std::span<const float> axis, bool wrapsAround, double position) {
    return SampleWith(FindBracket, axis, wrapsAround, position);
}

std::vector<TAxisSample> SampleTable(std::span<const float> axis, bool wrapsAround, std::int32_t count, float start,
                                     float resolution) {
    const bool ascends = resolution > 0 && IsAscending(axis);
    TAscendingFinder finder;
    std::vector<TAxisSample> samples;
    samples.reserve(static_cast<std::size_t>(count));
    for (std::int32_t i = 0; i < count; ++i) {
        const auto position = static_cast<double>(static_cast<extended>(i) * resolution + start);
        samples.push_back(ascends ? SampleWith(finder, axis, wrapsAround, position)
                                  : SampleAxis(axis, wrapsAround, position));
    }
    return samples;
}

} // namespace lmx
