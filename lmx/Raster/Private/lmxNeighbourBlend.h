#pragma once

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Runtime/lmxExtended.h>

#include <span>

namespace lmx {

/// The number between two neighbours: `(high - low) * fraction + low`, computed in extended and rounded once.
/// A flag in either place gives TSpatialConst::NoData, whatever the fraction; with `bestGuess` it gives the neighbour
/// that is a value, if one of them is.
inline float BlendNeighbours(float low, float high, double fraction, bool bestGuess) {
    if (TSpatialConst::IsValue(low) && TSpatialConst::IsValue(high))
        return static_cast<float>((static_cast<extended>(high) - low) * fraction + low);
    if (bestGuess && TSpatialConst::IsValue(low))
        return low;
    if (bestGuess && TSpatialConst::IsValue(high))
        return high;
    return TSpatialConst::NoData;
}

/// Prepares a row for BlendRows: makes every flag a NaN, in the row too, and widens the numbers into `result`, which
/// has the row's length. Gives the largest magnitude of the values, 0 if there are none.
float WidenRow(std::span<float> row, std::span<double> result);

/// BlendNeighbours of two rows from WidenRow, cell by cell and to the last bit, with one fraction for all or with one
/// for each. No value has a magnitude above `largest`. A fraction is 0, or between 1e-90 and 1. All spans have the same
/// length.
void BlendRows(std::span<const double> low, std::span<const double> high, double fraction, float largest,
               bool bestGuess, std::span<float> result);
void BlendRows(std::span<const double> low, std::span<const double> high, std::span<const double> fractions,
               float largest, bool bestGuess, std::span<float> result);

} // namespace lmx
