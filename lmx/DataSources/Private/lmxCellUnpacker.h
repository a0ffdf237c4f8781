#pragma once

#include <lmx/DataSources/Private/lmxClimateCells.h>

#include <cstddef>
#include <limits>
#include <span>
#include <vector>

namespace lmx {

/// What the raw numbers of a variable mean.
struct TCellMeaning {
    TClimateCellType Type = TClimateCellType::ctFloat; ///< with the sign that "_Unsigned" gives it, or takes
    double Scale = 1;
    double Offset = 0;
    double RawLow = -std::numeric_limits<double>::infinity();
    double RawHigh = std::numeric_limits<double>::infinity();
    float ValueLow = -std::numeric_limits<float>::infinity();
    float ValueHigh = std::numeric_limits<float>::infinity();
    std::vector<double> Marks; ///< raw numbers that are flags
    bool IsConverted = false;  ///< to other units: times Factor, plus Shift
    double Factor = 1;
    double Shift = 0;
};

/// Turns raw numbers into values and flags, by a table where the type has few numbers. Any thread may read.
class TCellUnpacker {
public:
    /// @param count of the cells that will come; a table is made if there are more than it has entries
    TCellUnpacker(TCellMeaning meaning, std::size_t count);

    /// @throws EArgumentException "Values" if there is not one for each cell.
    void Unpack(const TRawClimateCells& raw, std::span<float> values) const;

private:
    template<class Raw>
    void UnpackCells(std::span<const Raw> raw, float* values) const;

    TCellMeaning FMeaning;
    std::vector<float> FTable; ///< by the bits of the number, of the type of the meaning; empty if each is computed
};

} // namespace lmx
