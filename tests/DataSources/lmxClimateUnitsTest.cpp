#include <lmx/DataSources/lmxClimateUnits.h>

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Runtime/lmxFormatSettings.h>

#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <cmath>

namespace lmx {
namespace {

struct TUnitRow {
    const char* Name;
    TUnitSubject Subject;
    const char* Units;
    const char* Shown;
    float Value;
    float ShownValue;
};

class UnitConversions : public testing::TestWithParam<TUnitRow> {};

TEST_P(UnitConversions, GiveWhatAReaderOfTheMapExpects) {
    const TUnitConversion conversion = MakeUnitConversion(QString::fromUtf8(GetParam().Units), GetParam().Subject);
    EXPECT_EQ(conversion.FileUnits, QString::fromUtf8(GetParam().Units));
    EXPECT_EQ(conversion.ShownUnits, QString::fromUtf8(GetParam().Shown));
    EXPECT_FLOAT_EQ(conversion.Apply(GetParam().Value, 30), GetParam().ShownValue);
}

const TUnitSubject Temperature{"tas", "air_temperature", {}, {}};
const TUnitSubject Rain{"pr", "precipitation_flux", {}, {}};
const TUnitSubject Wind{"uas", "eastward_wind", {}, {}};
const TUnitSubject Sea{"psl", "air_pressure_at_mean_sea_level", {}, {}};

INSTANTIATE_TEST_SUITE_P(
    Rows, UnitConversions,
    testing::Values(
        TUnitRow{"Kelvin", Temperature, "K", "°C", 300, 26.85F}, TUnitRow{"DegK", {}, "degK", "°C", 300, 26.85F},
        TUnitRow{"Celsius", {}, "Celsius", "°C", 20, 20}, TUnitRow{"DegreesC", {}, "degrees_C", "°C", 20, 20},
        TUnitRow{"DegC", {}, "Deg C", "°C", 20, 20}, TUnitRow{"C", {}, "C", "°C", 20, 20},
        TUnitRow{"Fahrenheit", {}, "degF", "°C", 50, 10},
        TUnitRow{"Anomaly", {"t", {}, "Temperature anomaly", {}}, "K", "°C", 2, 2},
        TUnitRow{"AnomalyF", {"t", "air_temperature_anomaly", {}, {}}, "degF", "°C", 1.8F, 1},
        TUnitRow{"Deviation", {"t", {}, {}, "time: standard_deviation"}, "K", "°C", 2, 2},
        TUnitRow{"AnomalyName", {"tas_anom", {}, {}, {}}, "K", "°C", 2, 2},
        TUnitRow{"AnomalyMetadata", {"t", {}, {}, {}, "temperature: difference"}, "degF", "°C", 1.8F, 1},
        TUnitRow{"OnScale", {"t", {}, "anomaly", {}, "temperature: on_scale"}, "K", "°C", 300, 26.85F},
        TUnitRow{"Variance", {"t", "air_temperature", {}, "time: variance"}, "K2", "K2", 2, 2},
        TUnitRow{"RainPerTenDays", Rain, "mm/10 days", "mm/day", 30, 3},
        TUnitRow{"RainParentheses", Rain, "kg/(m^2 s)", "mm/day", 1, 86400},
        TUnitRow{"RainMixed", Rain, "kg/m2 s-1", "mm/day", 1, 86400},
        TUnitRow{"RainOf6Hours", Rain, "mm/6 h", "mm/6 h", 6, 6},
        TUnitRow{"CelsiusParentheses", {}, "degrees (C)", "°C", 20, 20}, TUnitRow{"Lapse", {}, "K m-1", "K m-1", 2, 2},
        TUnitRow{"Rain", Rain, "kg m-2 s-1", "mm/day", 1, 86400},
        TUnitRow{"RainStars", Rain, "kg m**-2 s**-1", "mm/day", 1, 86400},
        TUnitRow{"RainSlashes", Rain, "kg/m^2/s", "mm/day", 1, 86400},
        TUnitRow{"RainDots", Rain, "kg.m-2.s-1", "mm/day", 1, 86400},
        TUnitRow{"RainDepth", Rain, "m s-1", "mm/day", 1e-6F, 86.4F},
        TUnitRow{"RainMm", Rain, "mm s-1", "mm/day", 1, 86400}, TUnitRow{"RainHour", Rain, "mm/h", "mm/day", 1, 24},
        TUnitRow{"RainDay", Rain, "mm/day", "mm/day", 7, 7}, TUnitRow{"RainD", Rain, "mm d-1", "mm/day", 7, 7},
        TUnitRow{"RainMonth", Rain, "mm month-1", "mm/day", 60, 2},
        TUnitRow{"RainMonthKg", Rain, "kg m-2 month-1", "mm/day", 60, 2},
        TUnitRow{"RainYear", Rain, "mm year-1", "mm year-1", 60, 60},
        TUnitRow{"Dust", {"d", "dust_flux", {}, {}}, "kg m-2 s-1", "kg m-2 s-1", 1, 1},
        TUnitRow{"NobodyKnows", {"r_kg", {}, {}, {}}, "kg m-2 s-1", "kg m-2 s-1", 1, 1},
        TUnitRow{"LongName", {"x", {}, "Convective precipitation rate", {}}, "kg m-2 s-1", "mm/day", 1, 86400},
        TUnitRow{"Wind", Wind, "m s-1", "m s-1", 5, 5}, TUnitRow{"WindCase", Wind, "M/S", "M/S", 5, 5},
        TUnitRow{"Current", {"uo", "sea_water_x_velocity", {}, {}}, "m s-1", "m s-1", 1, 1},
        TUnitRow{"Soil", {"mrso", "mass_content_of_water_in_soil", {}, {}}, "kg m-2", "mm", 5, 5},
        TUnitRow{"Vapour", {"prw", "atmosphere_mass_content_of_water_vapor", {}, {}}, "kg m-2", "mm", 5, 5},
        TUnitRow{"Evaporation", {"e", "water_evapotranspiration_flux", {}, {}}, "kg m-2 s-1", "mm/day", 1, 86400},
        TUnitRow{"Snow", {"snw", "surface_snow_amount", {}, {}}, "kg m-2", "mm", 5, 5},
        TUnitRow{"SnowDepth", {"snd", "surface_snow_thickness", {}, {}}, "m", "m", 5, 5},
        TUnitRow{"Total", {"tp", {}, "Total precipitation", {}}, "m", "mm", 0.005F, 5},
        TUnitRow{"Equivalent", {"sf", {}, "Snow", {}}, "m of water equivalent", "mm", 0.005F, 5},
        TUnitRow{"Pressure", Sea, "Pa", "hPa", 101325, 1013.25F}, TUnitRow{"Kilopascal", Sea, "kPa", "hPa", 101, 1010},
        TUnitRow{"Millibar", {"p_mb", {}, {}, {}}, "mb", "hPa", 1013, 1013},
        TUnitRow{"MB", {}, "MB", "hPa", 1013, 1013}, TUnitRow{"Millibars", {}, "millibars", "hPa", 1013, 1013},
        TUnitRow{"Stress", {"tauu", "surface_downward_eastward_stress", {}, {}}, "Pa", "Pa", 1, 1},
        TUnitRow{"Velocity", {"wap", "lagrangian_tendency_of_air_pressure", {}, {}}, "Pa s-1", "Pa s-1", 1, 1},
        TUnitRow{"Clouds", {"clt", "cloud_area_fraction", {}, {}}, "1", "%", 0.5F, 50},
        TUnitRow{"CloudsRange", {"tcc", {}, "Total cloud cover", {}}, "(0 - 1)", "%", 0.5F, 50},
        TUnitRow{"Fraction", {"siconc", "sea_ice_area_fraction", {}, {}}, "fraction", "%", 0.5F, 50},
        TUnitRow{"Percent", {"hurs", "relative_humidity", {}, {}}, "%", "%", 50, 50},
        TUnitRow{"Humidity", {"hus", "specific_humidity", {}, {}}, "kg kg-1", "g/kg", 0.005F, 5},
        TUnitRow{"HumidityRatio", {"hus", "specific_humidity", {}, {}}, "1", "g/kg", 0.005F, 5},
        TUnitRow{"HumidityGrams", {"hus", "specific_humidity", {}, {}}, "G/KG", "g/kg", 5, 5},
        TUnitRow{"Ratio", {"a", "mixing_thing", {}, {}}, "1", "1", 0.5F, 0.5F},
        TUnitRow{"Geopotential", {"z", "geopotential", {}, {}}, "m2 s-2", "m", 9806.65F, 1000},
        TUnitRow{"GeopotentialName", {"z_gp", {}, {}, {}}, "m**2 s**-2", "m", 9806.65F, 1000},
        TUnitRow{
            "Cape", {"cape", "atmosphere_convective_available_potential_energy", {}, {}}, "J kg-1", "J kg-1", 1, 1},
        TUnitRow{"Salinity", {}, "psu", "psu", 35, 35}, TUnitRow{"Empty", Temperature, "", "", 3, 3},
        TUnitRow{"Unknown", {}, "furlong fortnight-1", "furlong fortnight-1", 3, 3}),
    [](const auto& row) { return row.param.Name; });

TEST(UnitConversion, WhatIsShownAlreadyStaysBitForBit) {
    for (const char* const units : {"mm/day", "mm day-1", "mm/d", "kg m-2 day-1", "kg/m2/day"})
        EXPECT_TRUE(MakeUnitConversion(units, Rain).IsIdentity()) << units;
    for (const char* const units : {"hPa", "mb", "millibar"})
        EXPECT_TRUE(MakeUnitConversion(units, Sea).IsIdentity()) << units;
    EXPECT_TRUE(MakeUnitConversion("degC", Temperature).IsIdentity());
    EXPECT_TRUE(KeepUnits("K").IsIdentity());
}

TEST(UnitConversion, SaysItsRule) {
    const auto text = [](const char* units, const TUnitSubject& subject) {
        return MakeUnitConversion(QString::fromLatin1(units), subject).ToText();
    };
    const auto local = [](QString expected) {
        return expected.replace(u'.', TFormatSettings::Current().DecimalSeparator);
    };
    EXPECT_EQ(text("K", Temperature), local("K to °C: value - 273.15"));
    EXPECT_EQ(text("kg m-2 s-1", Rain), "kg m-2 s-1 to mm/day: value × 86400");
    EXPECT_EQ(text("mm month-1", Rain), "mm month-1 to mm/day: value / days of the month");
    EXPECT_EQ(text("m", {"tp", {}, "Total precipitation", {}}), "m to mm: value × 1000 (total)");
    EXPECT_EQ(text("mb", Sea), "mb, shown as hPa");
    EXPECT_EQ(text("m s-1", Wind), "m s-1");
}

TEST(UnitConversion, AValueNeverBecomesAFlag) {
    TUnitConversion conversion;
    conversion.Factor = -1998;
    EXPECT_EQ(conversion.Apply(5), std::nextafter(-9990.0F, 0.0F));
    conversion.Factor = 1e20;
    EXPECT_EQ(conversion.Apply(-1e20F), -std::nextafter(1e30F, 0.0F));
    EXPECT_TRUE(TSpatialConst::IsValue(conversion.Apply(1e20F)));
}

TEST(Units, ConvertIfTheyMeasureTheSame) {
    const std::pair<const char*, const char*> fit[] = {
        {"mb", "Pa"},
        {"W/m**2", "W m-2"},
        {"degC", "K"},
        {"kg m-2 s-1", "mm/day"},
        {"kg m-2", "mm"},
        {"psu", "0.001"},
        {"1e-3", "psu"},
        {"10^-3", "g kg-1"},
        {"J m-2 s-1", "W m-2"},
        {"N m-2", "Pa"},
        {"%", "1"},
        {"gpm", "m"},
        {"M/S", "m s-1"},
        {"Furlong", "furlong"},
        {"m2 s-2", "J kg-1"},
        {"kg m^-2 s^-1", "kg m-2 s-1"},
        {"watt", "J/s"},
        {"W/(m2 K)", "W m-2 K-1"},
        {"mmol m-3", "mol m-3"},
    };
    for (const auto& [from, to] : fit)
        EXPECT_TRUE(UnitsConvert(QString::fromLatin1(from), QString::fromLatin1(to))) << from << " and " << to;
    const std::pair<const char*, const char*> others[] = {
        {"K", "Pa"},    {"", ""},     {"", "K"},    {"m", "m2"},  {"furlong", "m"},
        {"W m-2", "W"}, {"m/0", "m"}, {"m99", "m"}, {"K", "K K"},
    };
    for (const auto& [from, to] : others)
        EXPECT_FALSE(UnitsConvert(QString::fromLatin1(from), QString::fromLatin1(to))) << from << " and " << to;
    EXPECT_FALSE(UnitsConvert(QString(1'000'000, u'm'), "m"));
    EXPECT_FALSE(UnitsConvert(QString("m ").repeated(500'000), "m"));
}

TEST(Units, TellDirectionsAndPressures) {
    for (const char* const text : {"degrees_north", "degree_north", "degree_N", "degrees_N", "degreeN", "degreesN",
                                   "Degrees_North", " degrees north "})
        EXPECT_TRUE(IsLatitudeUnit(QString::fromLatin1(text))) << text;
    for (const char* const text : {"degrees_east", "degree_east", "degree_E", "degrees_E", "degreeE", "degreesE"})
        EXPECT_TRUE(IsLongitudeUnit(QString::fromLatin1(text))) << text;
    EXPECT_FALSE(IsLatitudeUnit("degrees"));
    EXPECT_FALSE(IsLatitudeUnit("degrees_east"));
    EXPECT_FALSE(IsLongitudeUnit(""));
    for (const char* const text : {"degrees", "degree", "deg", "Decimal degrees", "°"})
        EXPECT_TRUE(IsDegreeUnit(QString::fromUtf8(text))) << text;
    for (const char* const text : {"degrees_west", "degC", "km", "1", ""})
        EXPECT_FALSE(IsDegreeUnit(QString::fromUtf8(text))) << text;
    EXPECT_TRUE(IsPressureUnit("hPa"));
    EXPECT_FALSE(IsPressureUnit("m"));
    EXPECT_TRUE(IsLengthUnit("km"));
    EXPECT_FALSE(IsLengthUnit("K"));
}

} // namespace
} // namespace lmx
