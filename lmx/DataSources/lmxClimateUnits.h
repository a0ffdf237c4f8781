#pragma once

#include <lmx/DataSources/lmxDataSourcesExport.h>

#include <QString>

namespace lmx {

/// What a variable says of itself, as far as the meaning of its units goes. Unknown texts are empty.
struct TUnitSubject {
    QString Name; ///< in the file
    QString StandardName;
    QString LongName;
    QString CellMethods;
    QString UnitsMetadata = {}; ///< "temperature: difference"
};

/// How the numbers of a file become the numbers that a map shows. A value.
struct LMX_DATASOURCES_EXPORT TUnitConversion {
    QString FileUnits;  ///< as they stand in the file
    QString ShownUnits; ///< such as "°C", "mm/day", "hPa"; those of the file if nothing is converted
    double Factor = 1;
    double Offset = 0;
    bool IsByMonth = false; ///< the file counts by the month, the map by the day: the month's days divide
    bool IsTotal = false;   ///< an amount, not a rate: over which time is for the file to say

    bool IsIdentity() const { return Factor == 1 && Offset == 0 && !IsByMonth; }

    /// `value * Factor + Offset`, over `daysInMonth` if IsByMonth. A value never becomes a flag: one that would fall on
    /// the number of a flag becomes the single next to it.
    float Apply(float value, double daysInMonth = 1) const;

    /// The rule in one line for the user: "K to °C: value - 273.15", "mm month-1 to mm/day: value / days of the
    /// month", "°C" if nothing is converted, "mb, shown as hPa" if only the name is another; " (total)" at the end of
    /// an amount.
    QString ToText() const;

    friend bool operator==(const TUnitConversion&, const TUnitConversion&) = default;
};

/// What the reader of a map expects: temperatures in °C (differences of temperatures without the offset: by
/// "units_metadata", else by what the names say of anomalies, errors, ranges, deviations), fluxes of water in mm/day,
/// amounts of water in mm, pressures in hPa, shares of clouds, ice, snow, land and relative humidity in %, specific
/// humidity in g/kg, geopotential as height in m. All else as it stands: winds stay in m s-1 and fluxes of other matter
/// in kg m-2 s-1, for only the subject tells them from water. Variances and "... status_flag" keep their units too.
LMX_DATASOURCES_EXPORT TUnitConversion MakeUnitConversion(const QString& units, const TUnitSubject& subject);

/// The units as they stand.
LMX_DATASOURCES_EXPORT TUnitConversion KeepUnits(const QString& units);

/// Whether both units measure the same, so that numbers convert between them: "mb" and "Pa", "W/m**2" and "W m-2",
/// "degC" and "K". A flux of water may be by mass or by depth, and an amount too. Units that are not understood convert
/// only into themselves, as written but for case, blanks and the ways to write a power; empty ones into nothing.
LMX_DATASOURCES_EXPORT bool UnitsConvert(const QString& from, const QString& to);

/// Whether it is a unit of pressure, of length, of angles in degrees without a direction, a direction to the north or
/// to the east; for axes.
LMX_DATASOURCES_EXPORT bool IsPressureUnit(const QString& units);
LMX_DATASOURCES_EXPORT bool IsLengthUnit(const QString& units);
LMX_DATASOURCES_EXPORT bool IsDegreeUnit(const QString& units);    ///< "degrees", "degree", "deg", "°"
LMX_DATASOURCES_EXPORT bool IsLatitudeUnit(const QString& units);  ///< "degrees_north", "degree_N", "degreesN", ...
LMX_DATASOURCES_EXPORT bool IsLongitudeUnit(const QString& units); ///< "degrees_east", "degree_E", "degreesE", ...

} // namespace lmx
