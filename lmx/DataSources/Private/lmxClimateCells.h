#pragma once

#include <lmx/DataSources/lmxClimateAttributes.h>
#include <lmx/DataSources/lmxClimateUnits.h>

#include <QStringList>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <span>
#include <variant>
#include <vector>

namespace lmx {

/// The type in which a file stores its cells, in the order of TRawClimateCells.
enum class TClimateCellType {
    ctInt8,
    ctUInt8,
    ctInt16,
    ctUInt16,
    ctInt32,
    ctUInt32,
    ctInt64,
    ctUInt64,
    ctFloat,
    ctDouble
};

/// Cells as they stand in the file.
using TRawClimateCells =
    std::variant<std::span<const std::int8_t>, std::span<const std::uint8_t>, std::span<const std::int16_t>,
                 std::span<const std::uint16_t>, std::span<const std::int32_t>, std::span<const std::uint32_t>,
                 std::span<const std::int64_t>, std::span<const std::uint64_t>, std::span<const float>,
                 std::span<const double>>;

/// What the attributes alone do not tell of the cells.
struct TClimateCellTraits {
    TClimateCellType Type = TClimateCellType::ctFloat; ///< in the file
    bool IsNetCdf = true;                              ///< whether the default fill values of NetCDF count
    bool HasFloatingLimits = false; ///< whether "valid_range", "valid_min", "valid_max" are floating numbers
};

/// What the raw numbers of one variable mean: which are flags, and which values the others are. Made once, then applied
/// to any number of slices. A value; any thread may read.
///
/// A cell is a flag if its raw number is NaN, "_FillValue" or any of "missing_value" (in doubles also if one of both
/// was rounded to a single on its way); without "_FillValue" the default fill value of its type, in NetCDF and for
/// types wider than a byte; if it lies outside "valid_range", "valid_min" and "valid_max" (which speak of raw numbers,
/// but of values if they are floating and the cells are not); or if the value `raw * scale_factor + add_offset`,
/// computed in double and rounded to single, is one by TSpatialConst. Flags become TSpatialConst::NoData.
///
/// "_Unsigned" says whether the bits of an integer have a sign, whatever its type in the file: "true" that they have
/// none, "false" that they have one, in any case of letters. Anything else says nothing. Attributes may keep the sign
/// of the type in the file.
class TClimateCells {
public:
    /// Attributes that make no sense (a scale of 0, a range of three numbers, a missing value that is a text) do not
    /// count; the notes tell of them.
    TClimateCells(const TClimateCellTraits& traits, const TClimateAttributes& attributes);

    const QStringList& GetNotes() const { return FNotes; } ///< whole sentences for the user

    bool IsPacked() const { return FScale != 1 || FOffset != 0; }

    /// @param raw of the type of the traits, or of a wider one into which the reader turned it
    /// @throws EArgumentException "Values" if there is not one for each cell.
    void Unpack(const TRawClimateCells& raw, std::span<float> values) const;
    std::vector<float> Unpack(const TRawClimateCells& raw) const;

    /// As Unpack, in other units: flags stay flags and values stay values.
    void Unpack(const TRawClimateCells& raw, std::span<float> values, const TUnitConversion& conversion,
                double daysInMonth = 1) const;

    using TUnpack = std::function<void(const TRawClimateCells& raw, std::span<float> values)>;
    /// What Unpack does, for cells that come in pieces: what is worth preparing for `count` of them is prepared once.
    /// It may be called for any number of cells, from any thread, and outlives this object.
    TUnpack MakeUnpack(std::size_t count, const TUnitConversion& conversion = {}, double daysInMonth = 1) const;

private:
    struct TLimits {
        double Low = -std::numeric_limits<double>::infinity();
        double High = std::numeric_limits<double>::infinity();
    };

    void IgnoreAttribute(const QString& name);
    void ReadMarks(const TClimateCellTraits& traits, const TClimateAttributes& attributes);
    void AddTwins();
    void ReadLimits(const TClimateCellTraits& traits, const TClimateAttributes& attributes);
    double ReadNumber(const TClimateAttributes& attributes, const QString& name, double absent);
    double OfType(double number) const;

    TClimateCellType FType = TClimateCellType::ctFloat; ///< with the sign that "_Unsigned" gives it, or takes
    bool FIsMadeUnsigned = false;                       ///< "_Unsigned" does
    bool FIsMadeSigned = false;
    double FScale = 1;
    double FOffset = 0;
    std::vector<double> FMarks; ///< raw numbers that are flags
    TLimits FRawLimits;
    TLimits FValueLimits;
    QStringList FNotes;
};

} // namespace lmx
