#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <cstdint>
#include <limits>

namespace lmx {

class TFieldRegion;
struct TField;

/// What a field has in a region. Each number is about the cells that count there, wholly or in part.
struct LMX_EXPORT TFieldStatistics {
    std::uint64_t CellCount = 0;  ///< cells that count, with data or without
    std::uint64_t ValueCount = 0; ///< those of them that hold a value
    /// Share of the region's area, 0 to 1, whose cells hold no value; 0 for a region without area.
    double MissingShare = 0;
    /// sum(w v) / sum(w) over the values v, w being the area of the cell that counts (TFieldRegion). No number without
    /// a value, as the next two.
    double Mean = std::numeric_limits<double>::quiet_NaN();
    double Minimum = std::numeric_limits<double>::quiet_NaN();
    double Maximum = std::numeric_limits<double>::quiet_NaN();

    bool HasValues() const { return ValueCount > 0; }
};

/// The statistics of a region of a field. Numbers that TSpatialConst calls flags are no values. Sums are taken in runs
/// of 64 cells, which are added up with the error of each addition kept (A. Neumaier, Rundungsfehleranalyse einiger
/// Verfahren zur Summation endlicher Summen, ZAMM 54, 1974): the result does not depend on how many cells there are.
/// @throws EOutOfMemory if there is no room for a row.
LMX_EXPORT TFieldStatistics StatisticsOf(const TField& field, TFieldRegion& region);
/// The statistics of the whole field, and its exceptions.
LMX_EXPORT TFieldStatistics StatisticsOf(const TField& field);

} // namespace lmx
