#include <lmx/Colour/lmxColorStepTable.h>
#include <lmx/Colour/lmxLayerOpacity.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace lmx {

namespace {

constexpr std::size_t LeastBuckets = 1024;
constexpr std::size_t HandyBuckets = 4096;
constexpr std::size_t MostBuckets = 131072;
constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
constexpr float LargestFloat = std::numeric_limits<float>::max();

/// Place of a value in the row of all floats without those smaller than a magnitude, which is given by its bits. Rises
/// by the same number from each power of two to the next. Any number for what is no number.
std::int32_t RatioPlace(float value, std::int32_t smallest) {
    const auto bits = std::bit_cast<std::int32_t>(value);
    std::int32_t place = (bits & std::numeric_limits<std::int32_t>::max()) - smallest;
    place = place > 0 ? place : 0;
    return bits < 0 ? -place : place;
}

std::uint32_t Distance(std::int32_t low, std::int32_t high) {
    return static_cast<std::uint32_t>(high) - static_cast<std::uint32_t>(low);
}

} // namespace

TColorStepTable::TColorStepTable(const TColorSteps& steps, const TLayerOpacity& opacity) {
    if (steps.GetCount() > MaxStepCount)
        throw EArgumentException(QStringLiteral("steps"));
    // What is no number reaches no start. So where it has another colour than the first step, all steps come after it.
    const bool isNaNApart = steps.GetNaNColor() != steps.GetColors().front();
    FStarts.assign(steps.GetStarts().begin() + (isNaNApart ? 0 : 1), steps.GetStarts().end());
    FSteps.reserve(FStarts.size() + 1);
    if (isNaNApart)
        FSteps.push_back({FStarts.front(), opacity.Fade(steps.GetNaNColor())});
    for (TColor32 color : steps.GetColors())
        FSteps.push_back({FSteps.size() < FStarts.size() ? FStarts[FSteps.size()] : NaN, opacity.Fade(color)});
    ChooseBuckets();
}

// Each comparison more costs every value more than a larger table does. So the smallest table of one comparison is the
// best, and without one the smallest of the fewest.
void TColorStepTable::ChooseBuckets() {
    const std::size_t most = std::clamp(std::bit_ceil(8 * FStarts.size()), HandyBuckets, MostBuckets);
    TBuckets bestKind = FKind;
    std::size_t bestCount = 0;
    std::size_t bestProbes = std::numeric_limits<std::size_t>::max();
    for (std::size_t count = LeastBuckets; count <= most && bestProbes > 1; count *= 2) {
        for (const TBuckets kind : {TBuckets::OfEqualWidth, TBuckets::OfEqualRatio}) {
            DivideInto(kind, count);
            if (FProbes < bestProbes) {
                bestKind = kind;
                bestCount = count;
                bestProbes = FProbes;
            }
        }
    }
    DivideInto(bestKind, bestCount);
}

void TColorStepTable::DivideInto(TBuckets kind, std::size_t bucketCount) {
    const std::span<const float> starts = FStarts;
    FKind = kind;
    FBuckets.assign(bucketCount, 0);
    FProbes = 0;
    if (starts.empty())
        return;
    if (kind == TBuckets::OfEqualWidth)
        SpanWidth(starts);
    else
        SpanRatio(starts);
    std::vector<std::int32_t> places(starts.size());
    FindBuckets(starts, places.data());
    std::size_t step = 0;
    for (std::size_t bucket = 0; bucket < bucketCount; ++bucket) {
        FBuckets[bucket] = static_cast<std::uint16_t>(step);
        while (step < starts.size() && static_cast<std::size_t>(places[step]) == bucket)
            ++step;
        FProbes = std::max(FProbes, step - FBuckets[bucket]);
    }
}

void TColorStepTable::SpanWidth(std::span<const float> starts) {
    FLow = std::clamp(starts.front(), -LargestFloat, LargestFloat);
    const double width = std::clamp<double>(starts.back(), -LargestFloat, LargestFloat) - FLow;
    const auto lastBucket = static_cast<double>(FBuckets.size() - 1);
    FBucketsPerUnit = static_cast<float>(std::min<double>(lastBucket / width, LargestFloat));
}

void TColorStepTable::SpanRatio(std::span<const float> starts) {
    FSmallest = std::numeric_limits<std::int32_t>::max();
    for (float start : starts)
        if (start != 0)
            FSmallest = std::min(FSmallest, std::bit_cast<std::int32_t>(std::abs(start)));
    FLowPlace = RatioPlace(starts.front(), FSmallest);
    FHighPlace = RatioPlace(starts.back(), FSmallest);
    FPlaceShift = 0;
    while (static_cast<std::size_t>(Distance(FLowPlace, FHighPlace) >> FPlaceShift) >= FBuckets.size())
        ++FPlaceShift;
}

// What is no number goes to bucket 0, where no start is reached.
void TColorStepTable::FindBuckets(std::span<const float> values, std::int32_t* buckets) const {
    if (FKind == TBuckets::OfEqualWidth)
        FindBucketsByWidth(values, buckets);
    else
        FindBucketsByRatio(values, buckets);
}

void TColorStepTable::FindBucketsByWidth(std::span<const float> values, std::int32_t* buckets) const {
    const float low = FLow;
    const float bucketsPerUnit = FBucketsPerUnit;
    const auto last = static_cast<float>(FBuckets.size() - 1);
    for (std::size_t i = 0; i < values.size(); ++i) {
        float bucket = (values[i] - low) * bucketsPerUnit;
        bucket = bucket > 0 ? bucket : 0;
        bucket = bucket < last ? bucket : last;
        buckets[i] = static_cast<std::int32_t>(bucket);
    }
}

void TColorStepTable::FindBucketsByRatio(std::span<const float> values, std::int32_t* buckets) const {
    const std::int32_t smallest = FSmallest;
    const std::int32_t low = FLowPlace;
    const std::int32_t high = FHighPlace;
    const int shift = FPlaceShift;
    for (std::size_t i = 0; i < values.size(); ++i) {
        std::int32_t place = RatioPlace(values[i], smallest);
        place = place > low ? place : low;
        place = place < high ? place : high;
        place = values[i] == values[i] ? place : low;
        buckets[i] = static_cast<std::int32_t>(Distance(low, place) >> shift);
    }
}

void TColorStepTable::GetColors(std::span<const float> values, TColor32* colors) const {
    std::int32_t buckets[BlockSize];
    FindBuckets(values, buckets);
    switch (FProbes) {
    case 0:
    case 1:
        return Probe<1>(values, buckets, colors);
    case 2:
        return Probe<2>(values, buckets, colors);
    case 3:
        return Probe<3>(values, buckets, colors);
    default:
        return Search(values, buckets, colors);
    }
}

template<int Probes>
void TColorStepTable::Probe(std::span<const float> values, const std::int32_t* buckets, TColor32* colors) const {
    const std::uint16_t* stepsBefore = FBuckets.data();
    const TStep* steps = FSteps.data();
    for (std::size_t i = 0; i < values.size(); ++i) {
        std::size_t step = stepsBefore[buckets[i]];
        for (int probe = 0; probe < Probes; ++probe)
            step += values[i] >= steps[step].End ? 1 : 0;
        colors[i] = steps[step].Color;
    }
}

void TColorStepTable::Search(std::span<const float> values, const std::int32_t* buckets, TColor32* colors) const {
    const auto isBefore = [](float value, float start) { return !(value >= start); };
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::size_t before = FBuckets[static_cast<std::size_t>(buckets[i])];
        const auto first = FStarts.begin() + static_cast<std::ptrdiff_t>(before);
        const auto last = FStarts.begin() + static_cast<std::ptrdiff_t>(std::min(before + FProbes, FStarts.size()));
        const auto next = std::upper_bound(first, last, values[i], isBefore);
        colors[i] = FSteps[static_cast<std::size_t>(next - FStarts.begin())].Color;
    }
}

} // namespace lmx
