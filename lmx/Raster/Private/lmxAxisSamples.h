#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace lmx {

/// How one target position along an axis is read from the source.
struct TAxisSample {
    std::int32_t LowIndex = 0;  ///< source index of the left neighbour
    std::int32_t HighIndex = 0; ///< source index of the right neighbour
    double Fraction = 0;        ///< weight of the right neighbour, 0 to 1
    bool Valid = false;         ///< false if the position has no source

    friend bool operator==(const TAxisSample&, const TAxisSample&) = default;
};

/// Locates a position on an axis of ascending values. Inside, it lies in the first bracket of neighbours that holds it,
/// ends included: a position on a value is the right end of the bracket to its left, except on the first value.
/// Outside, an axis that closes on itself gives the plain mean of its last and its first value, wherever in that gap
/// the position lies; any other axis, and one of fewer than two values, gives a sample that is not valid.
/// @throws EInvalidOp "Invalid floating point operation" if the bracket has no width, or no finite one.
TAxisSample SampleAxis(std::span<const float> axis, bool wrapsAround, double position);

/// The samples of the positions `i * resolution + start` for `i` from 0 to `count - 1`: each as SampleAxis gives it.
/// Positions and fractions are computed in extended and rounded to double.
/// @throws EInvalidOp as SampleAxis.
std::vector<TAxisSample> SampleTable(std::span<const float> axis, bool wrapsAround, std::int32_t count, float start,
                                     float resolution);

} // namespace lmx
