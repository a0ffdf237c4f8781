#include <lmx/DataSources/lmxClimateUnits.h>

#include <lmx/DataSources/Private/lmxAsValue.h>
#include <lmx/DataSources/Private/lmxUnitText.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <optional>

namespace lmx {

namespace {

constexpr double Gravity = 9.80665; // m s-2, the standard one
constexpr double DaySeconds = 86'400;

const QString& MmPerDay() {
    static const QString text = QStringLiteral("mm/day");
    return text;
}

bool ContainsAny(const QString& text, std::initializer_list<const char*> words) {
    const QString folded = text.toLower();
    return std::any_of(words.begin(), words.end(),
                       [&](const char* word) { return folded.contains(QLatin1String(word)); });
}

bool IsAny(const QString& text, std::initializer_list<const char*> words) {
    return std::any_of(words.begin(), words.end(), [&](const char* word) { return text == QLatin1String(word); });
}

/// Cell methods without what stands in parentheses, which is for people.
QString WithoutComments(const QString& methods) {
    QString text;
    int depth = 0;
    for (const QChar c : methods) {
        depth += c == u'(' ? 1 : 0;
        if (depth == 0)
            text += c;
        depth -= c == u')' && depth > 0 ? 1 : 0;
    }
    return text;
}

/// What a subject is about. The standard name decides; without one the name and the long name do.
class TSubjectMatter {
public:
    TSubjectMatter(const TUnitSubject& subject, const QString& units)
        : FSubject(subject),
          FIsCalledWater(ContainsAny(units, {"water"})) {}

    bool IsDifference() const {
        if (ContainsAny(FSubject.UnitsMetadata, {"temperature:"}))
            return ContainsAny(FSubject.UnitsMetadata, {"temperature: difference"});
        return ContainsAny(FSubject.StandardName,
                           {"anomaly", "difference", "tendency", "change_over_time", "depression", "standard_error"}) ||
               ContainsAny(FSubject.Name, {"anom"}) ||
               ContainsAny(FSubject.LongName, {"anomal",    "difference",     "departure",         "deviation",
                                               "std dev",   "stddev",         "temperature bias",  "bias of",
                                               "bias in",   "standard error", "temperature error", "error of",
                                               "error in",  "uncertainty",    "increment",         "temperature change",
                                               "change in", "change of",      "depression",        "temperature range",
                                               "amplitude"}) ||
               ContainsAny(WithoutComments(FSubject.CellMethods), {"standard_deviation", "range", "anomaly"});
    }
    /// Whether the numbers are about those that the names mean: squares of them, or how many there are.
    bool IsAboutNumbers() const {
        return ContainsAny(FSubject.StandardName, {" number_of_observations", " status_flag"}) ||
               ContainsAny(WithoutComments(FSubject.CellMethods), {"variance", "sum_of_squares"});
    }
    bool IsWater() const {
        return FIsCalledWater ||
               Says({"precipitation", "rainfall", "snowfall", "evapo", "runoff", "water_flux", "lwe_",
                     "surface_snow_amount", "sublimation", "transpiration", "soil_moisture", "mass_content_of_water",
                     "mass_content_of_cloud"},
                    {"precipitation", "rainfall", "snowfall", "evaporation", "runoff", "soil moisture",
                     "water equivalent"},
                    {"pr", "prc", "prsn", "evspsbl", "mrro", "mrros", "precip", "prate", "tp", "cp", "lsp", "ro"});
    }
    /// Whether a length is that of a layer of water.
    bool IsDepthOfWater() const {
        return FIsCalledWater ||
               Says({"lwe_"}, {"precipitation", "rainfall", "evaporation", "runoff", "water equivalent"},
                    {"tp", "cp", "lsp", "ro"});
    }
    bool IsPressure() const {
        return Says({"air_pressure"}, {"pressure"}, {"psl", "ps", "slp", "msl", "mslp", "pres", "prmsl", "sp"});
    }
    bool IsShare() const {
        return Says({"cloud_area_fraction", "ice_area_fraction", "snow_area_fraction", "land_area_fraction",
                     "sea_area_fraction", "relative_humidity"},
                    {"cloud cover", "cloud fraction", "ice cover", "ice fraction", "ice concentration", "snow cover",
                     "land fraction", "land area fraction", "relative humidity"},
                    {"clt", "siconc", "sic", "snc", "sftlf", "hurs", "hur", "tcc"});
    }
    bool IsSpecificHumidity() const { return Says({"specific_humidity"}, {"specific humidity"}, {"hus", "huss"}); }
    bool IsGeopotential() const {
        const bool isNamed = FSubject.Name.endsWith(QStringLiteral("_gp"), Qt::CaseInsensitive);
        return Says({"geopotential"}, {"geopotential"}, {"z", "phi", "phis", "zg", "gp"}) ||
               (isNamed && FSubject.StandardName.isEmpty() && FSubject.LongName.isEmpty());
    }

private:
    /// @param standard parts of standard names
    /// @param text parts of long names
    /// @param names whole names of variables
    bool Says(std::initializer_list<const char*> standard, std::initializer_list<const char*> text,
              std::initializer_list<const char*> names) const {
        if (!FSubject.StandardName.isEmpty())
            return ContainsAny(FSubject.StandardName, standard);
        return ContainsAny(FSubject.LongName, text) || IsAny(FSubject.Name.toLower(), names);
    }

    const TUnitSubject& FSubject;
    bool FIsCalledWater; ///< "m of water equivalent"
};

TUnitConversion Converted(const QString& from, const QString& to, double factor, double offset = 0) {
    TUnitConversion conversion = KeepUnits(from);
    conversion.ShownUnits = to;
    conversion.Factor = std::abs(factor - 1) < 1e-12 ? 1 : factor; // a product of factors is seldom exactly 1
    conversion.Offset = offset;
    return conversion;
}

std::optional<TUnitConversion> Temperature(const QString& units, const TUnit& unit, const TSubjectMatter& matter) {
    if (unit.Measure != TMeasure::Of(TBaseUnit::buKelvin))
        return std::nullopt;
    if (unit.Factor != 1 && unit.Factor != 1 / 1.8)
        return std::nullopt;
    // Differences have no zero; what is in kelvin then has the same number in degrees Celsius.
    const double offset = matter.IsDifference() ? 0 : unit.Offset - CelsiusZero;
    const bool isCelsius = unit.Offset == CelsiusZero && unit.Factor == 1;
    return Converted(units, QStringLiteral("°C"), unit.Factor, isCelsius ? 0 : offset);
}

std::optional<TUnitConversion> Water(const QString& units, const TUnit& unit, const TSubjectMatter& matter) {
    const bool isByMass = unit.Measure.Exponent(TBaseUnit::buKilogram) == 1;
    const double toMm = isByMass ? unit.Factor : unit.Factor * 1000; // a kilogram a square metre is a millimetre deep
    const TMeasure& measure = unit.Measure;
    if (measure == TMeasure::Parse("kg m-2 s-1") || measure == TMeasure::Parse("m s-1")) {
        if (unit.IsByMonth) {
            TUnitConversion conversion = Converted(units, MmPerDay(), toMm);
            conversion.IsByMonth = true;
            return conversion;
        }
        return Converted(units, MmPerDay(), toMm * DaySeconds);
    }
    if (measure == TMeasure::Parse("kg m-2") ||
        (measure == TMeasure::Of(TBaseUnit::buMetre) && matter.IsDepthOfWater())) {
        TUnitConversion conversion = Converted(units, QStringLiteral("mm"), toMm);
        conversion.IsTotal = true;
        return conversion;
    }
    return std::nullopt;
}

std::optional<TUnitConversion> Pressure(const QString& units, const TUnit& unit, const TSubjectMatter& matter) {
    if (unit.Measure != TMeasure::Parse("kg m-1 s-2"))
        return std::nullopt;
    const bool isShown = unit.Factor == 100;
    if (!isShown && !matter.IsPressure())
        return std::nullopt;
    return Converted(units, QStringLiteral("hPa"), unit.Factor / 100);
}

std::optional<TUnitConversion> Ratio(const QString& units, const TUnit& unit, const TSubjectMatter& matter) {
    if (unit.Measure != TMeasure())
        return std::nullopt;
    if (matter.IsShare() && unit.Factor == 1)
        return Converted(units, QStringLiteral("%"), 100);
    if (matter.IsSpecificHumidity())
        return Converted(units, QStringLiteral("g/kg"), unit.Factor * 1000);
    return std::nullopt;
}

} // namespace

float TUnitConversion::Apply(float value, double daysInMonth) const {
    double shown = static_cast<double>(value) * Factor;
    if (IsByMonth)
        shown /= daysInMonth;
    return AsValue(static_cast<float>(shown + Offset));
}

QString TUnitConversion::ToText() const {
    const QString total = IsTotal ? QStringLiteral(" (total)") : QString();
    if (IsIdentity() && FileUnits == ShownUnits)
        return ShownUnits + total;
    if (IsIdentity())
        return FileUnits + QStringLiteral(", shown as ") + ShownUnits + total;
    QString rule = QStringLiteral("value");
    if (Factor != 1)
        rule += QStringLiteral(" × ") + FloatToGeneral(Factor, 6);
    if (IsByMonth)
        rule += QStringLiteral(" / days of the month");
    if (Offset != 0)
        rule += (Offset < 0 ? QStringLiteral(" - ") : QStringLiteral(" + ")) + FloatToGeneral(std::abs(Offset), 6);
    return FileUnits + QStringLiteral(" to ") + ShownUnits + QStringLiteral(": ") + rule + total;
}

TUnitConversion KeepUnits(const QString& units) {
    TUnitConversion conversion;
    conversion.FileUnits = units;
    conversion.ShownUnits = units;
    return conversion;
}

TUnitConversion MakeUnitConversion(const QString& units, const TUnitSubject& subject) {
    const auto unit = ParseUnit(units);
    const TSubjectMatter matter(subject, units);
    if (!unit || matter.IsAboutNumbers())
        return KeepUnits(units);
    if (const auto conversion = Temperature(units, *unit, matter))
        return *conversion;
    if (const auto conversion = Pressure(units, *unit, matter))
        return *conversion;
    if (const auto conversion = Ratio(units, *unit, matter))
        return *conversion;
    if (matter.IsWater())
        if (const auto conversion = Water(units, *unit, matter))
            return *conversion;
    if (unit->Measure == TMeasure::Parse("m2 s-2") && matter.IsGeopotential())
        return Converted(units, QStringLiteral("m"), unit->Factor / Gravity);
    return KeepUnits(units);
}

bool UnitsConvert(const QString& from, const QString& to) {
    const auto a = ParseUnit(from);
    const auto b = ParseUnit(to);
    if (!a || !b)
        return !FoldUnit(from).isEmpty() && SameUnits(from, to);
    // A mass of water over an area is a depth.
    const auto asDepth = [](TMeasure measure) {
        if (measure.Exponent(TBaseUnit::buKilogram) == 1 && measure.Exponent(TBaseUnit::buMetre) == -2)
            measure = measure * TMeasure::Parse("kg-1 m3");
        return measure;
    };
    return asDepth(a->Measure) == asDepth(b->Measure);
}

bool IsPressureUnit(const QString& units) {
    const auto unit = ParseUnit(units);
    return unit && unit->Measure == TMeasure::Parse("kg m-1 s-2");
}

bool IsLengthUnit(const QString& units) {
    const auto unit = ParseUnit(units);
    return unit && unit->Measure == TMeasure::Of(TBaseUnit::buMetre);
}

bool IsDegreeUnit(const QString& units) {
    const QString folded = FoldUnit(units).remove(u' ');
    return IsAny(folded, {"deg", "degree", "degrees", "decimaldegrees", "degreestrue"}) ||
           folded == QStringLiteral("°");
}

bool IsLatitudeUnit(const QString& units) {
    const QString folded = FoldUnit(units).remove(u' ');
    return IsAny(folded, {"degreesnorth", "degreenorth", "degreesn", "degreen", "degn", "degnorth"});
}

bool IsLongitudeUnit(const QString& units) {
    const QString folded = FoldUnit(units).remove(u' ');
    return IsAny(folded, {"degreeseast", "degreeeast", "degreese", "degreee", "dege", "degeast"});
}

} // namespace lmx
