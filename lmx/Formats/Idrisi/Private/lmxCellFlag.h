#pragma once

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Formats/Idrisi/lmxImageHeader.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace lmx {

/// The declared flag of a header, compared in the cells' own type.
///
/// Integer cells equal the flag or not; a flag that they cannot hold matches none. Headers are often written with 7
/// digits, so a float cell also matches within half a unit of the flag's seventh digit, unless the flag is an integer
/// of up to 7 digits, which 7 digits write exactly. A flag that is NaN matches the cells that are.
template<class Cell>
class TCellFlag {
public:
    explicit TCellFlag(const TImageHeader& header)
        : FFlag(header.GetFlagValue()),
          FIsDeclared(header.GetFlag() && FitsCell(FFlag) && (!IsInteger || std::trunc(FFlag) == FFlag)) {
        if (!FIsDeclared)
            return; // the bounds leave no cell between them
        const bool isExact =
            IsInteger || !std::isfinite(FFlag) || (std::abs(FFlag) < 1e7F && std::trunc(FFlag) == FFlag);
        const float tolerance = isExact ? 0 : std::abs(FFlag) * 5e-7F;
        FLowest = static_cast<TWide>(FFlag - tolerance);
        FHighest = static_cast<TWide>(FFlag + tolerance);
        FMatchesNan = std::isnan(FFlag);
    }

    /// Whether the header declares a flag that a cell can hold.
    bool IsDeclared() const { return FIsDeclared; }

    /// Whether every cell is the number that it stands for: nothing is declared, or what is missing in the library.
    bool IsPlain() const { return !FIsDeclared || FFlag == TSpatialConst::NoData; }

    /// The cell that stands for missing data, if a flag is declared.
    Cell GetFlag() const { return static_cast<Cell>(FFlag); }

    // Without a branch: rows are read by the million.
    bool Matches(Cell cell) const {
        const bool isBetween = (cell >= FLowest) & (cell <= FHighest);
        if constexpr (IsInteger)
            return isBetween;
        else
            return isBetween | (FMatchesNan & (cell != cell));
    }

    /// The cell's number, or the library's mark of missing data.
    float ToNumber(Cell cell) const { return Matches(cell) ? TSpatialConst::NoData : static_cast<float>(cell); }

    /// Whether a cell can hold a number once it is rounded to the nearest, ties to even.
    static bool FitsCell(float number) {
        if constexpr (IsInteger)
            return number >= static_cast<float>(std::numeric_limits<Cell>::min()) - 0.5F &&
                   number < static_cast<float>(std::numeric_limits<Cell>::max()) + 0.5F;
        else
            return true;
    }

private:
    static constexpr bool IsInteger = std::is_integral_v<Cell>;
    using TWide = std::conditional_t<IsInteger, std::int32_t, float>;

    float FFlag;
    bool FIsDeclared;
    bool FMatchesNan = false;
    TWide FLowest = std::numeric_limits<TWide>::max();
    TWide FHighest = std::numeric_limits<TWide>::lowest();
};

} // namespace lmx
