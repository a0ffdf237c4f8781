#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <cstddef>
#include <memory>
#include <span>

namespace lmx {

class TRealImage;
struct TField;

// New fields from fields of one grid, cell by cell: computed in double precision, rounded once to a 32-bit float. A
// cell that is missing in any of the fields is missing in the result, and so is one whose result is none (the ratio to
// 0, and what is as large as a flag); the header declares the flag -9990. A true result that a reader would take for a
// flag, such as a difference of exactly -9999, becomes its neighbour towards 0. The header has the grid, the range of
// values and the reference system; title and units are the caller's.
//
// All raise EArgumentException for fields of different grids, "The fields have different grids: 144 x 73 and 360 x 180"
// or "The fields cover different areas: ..." with both areas as left, top, right and bottom, "The fields have
// different reference systems", and EOutOfMemory.

/// a - b.
LMX_EXPORT std::unique_ptr<TRealImage> DifferenceOf(const TField& a, const TField& b);
/// a / b.
LMX_EXPORT std::unique_ptr<TRealImage> RatioOf(const TField& a, const TField& b);
/// fields[index] - (sum of all fields) / n: how far one field departs from the mean of all of them.
/// @throws EArgumentException also "At least two fields are needed" and "Field index is out of range".
LMX_EXPORT std::unique_ptr<TRealImage> DepartureFromMean(std::span<const TField> fields, std::size_t index);

} // namespace lmx
