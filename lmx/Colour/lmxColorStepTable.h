#pragma once

#include <lmx/Colour/lmxColorSteps.h>
#include <lmx/Graphics/lmxColor32.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lmx {

class TLayerOpacity;

/// Finds the colours of many values at once; made for one render.
///
/// The values from the first step's end to the last step's start are cut into buckets: of equal width, or of equal
/// ratio where the steps are of many magnitudes. Each bucket knows the last step that starts before it, and the steps
/// that start inside are settled by comparing the value with their starts. A value's bucket never falls where the value
/// rises, and steps and values go to their buckets by the same arithmetic, so its rounding cannot change a colour.
class TColorStepTable {
public:
    /// The steps' colours faded by `opacity`.
    /// @throws EArgumentException "steps" for more than MaxStepCount.
    TColorStepTable(const TColorSteps& steps, const TLayerOpacity& opacity);

    static constexpr std::size_t MaxStepCount = 65535;

    /// Most values of one call of GetColors.
    static constexpr std::size_t BlockSize = 256;

    /// Writes the colour of each value; any float is a value here. `colors` holds as many places.
    void GetColors(std::span<const float> values, TColor32* colors) const;

private:
    enum class TBuckets { OfEqualWidth, OfEqualRatio };

    void ChooseBuckets();
    void DivideInto(TBuckets kind, std::size_t bucketCount);
    void SpanWidth(std::span<const float> starts);
    void SpanRatio(std::span<const float> starts);

    void FindBuckets(std::span<const float> values, std::int32_t* buckets) const;
    void FindBucketsByWidth(std::span<const float> values, std::int32_t* buckets) const;
    void FindBucketsByRatio(std::span<const float> values, std::int32_t* buckets) const;

    template<int Probes>
    void Probe(std::span<const float> values, const std::int32_t* buckets, TColor32* colors) const;
    void Search(std::span<const float> values, const std::int32_t* buckets, TColor32* colors) const;

    /// A colour, and the start of the step that follows; NaN, which no value reaches, after the last. Side by side, so
    /// that a value touches one place in memory.
    struct TStep {
        float End;
        TColor32 Color;
    };

    std::vector<float> FStarts; ///< of the steps after the first
    std::vector<TStep> FSteps;
    std::vector<std::uint16_t> FBuckets; ///< number of steps after the first that start before each bucket
    std::size_t FProbes = 0;             ///< most steps that start in one bucket
    TBuckets FKind = TBuckets::OfEqualWidth;
    float FLow = 0;
    float FBucketsPerUnit = 0;
    std::int32_t FSmallest = 0; ///< bits of the smallest magnitude that buckets of equal ratio tell from 0
    std::int32_t FLowPlace = 0;
    std::int32_t FHighPlace = 0;
    int FPlaceShift = 0; ///< a bucket holds 2 to the power of this many places
};

} // namespace lmx
