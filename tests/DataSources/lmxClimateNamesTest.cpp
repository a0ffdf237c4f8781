#include <lmx/DataSources/lmxClimateNames.h>

#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

QString ShortName(const TNullable<TClimateVariable>& variable) {
    return variable.GetHasValue() ? TClimateVariableTypes::Get(variable.GetValue()).ShortName : QStringLiteral("none");
}

struct TNameRow {
    const char* Name;
    TClimateNames Names;
    const char* Variable;
};

class ClimateNames : public testing::TestWithParam<TNameRow> {};

TEST_P(ClimateNames, Decide) {
    EXPECT_EQ(ShortName(FindClimateVariable(GetParam().Names)), QString::fromLatin1(GetParam().Variable));
}

TClimateNames Standard(const char* name, const char* units, const char* methods = "", bool hasLevels = false,
                       const char* era = "") {
    TClimateNames names;
    names.Name = "x";
    names.StandardName = name;
    names.Units = units;
    names.CellMethods = methods;
    names.HasLevels = hasLevels;
    names.MipEra = era;
    return names;
}

TClimateNames Named(const char* name, const char* standard = "") {
    TClimateNames names;
    names.Name = name;
    names.StandardName = standard;
    return names;
}

TClimateNames Grib(const char* element, const char* level = "0-SFC") {
    TClimateNames names;
    names.Name = element;
    names.GribElement = element;
    names.GribLevel = level;
    return names;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ClimateNames,
    testing::Values(TNameRow{"ShortName", Named("tasmax"), "tasmax"},
                    TNameRow{"Both", Named("tas", "air_temperature"), "tas"},
                    TNameRow{"ShortNameOfAnother", Named("tas", "sea_surface_temperature"), "none"},
                    TNameRow{"Case", Named("TAS"), "none"}, TNameRow{"Unknown", Named("t2m"), "none"},
                    TNameRow{"Unique", Standard("precipitation_flux", "mm/day"), "pr"},
                    TNameRow{"UniqueOtherUnits", Standard("precipitation_flux", "K"), "none"},
                    TNameRow{"UniqueNoUnits", Standard("precipitation_flux", ""), "none"},
                    TNameRow{"Salinity", Standard("sea_surface_salinity", "psu"), "sos"},
                    TNameRow{"Air", Standard("air_temperature", "degC"), "tas"},
                    TNameRow{"AirLevels", Standard("air_temperature", "K", "time: minimum", true), "ta"},
                    TNameRow{"AirMinimum", Standard("air_temperature", "K", "area: mean time:  Minimum"), "tasmin"},
                    TNameRow{"AirMaximum", Standard("air_temperature", "K", "time: maximum"), "tasmax"},
                    TNameRow{"Humidity", Standard("specific_humidity", "g/kg"), "huss"},
                    TNameRow{"HumidityLevels", Standard("specific_humidity", "1", "", true), "hus"},
                    TNameRow{"Relative", Standard("relative_humidity", "1"), "hurs"},
                    TNameRow{"RelativeLevels", Standard("relative_humidity", "%", "", true), "hur"},
                    TNameRow{"East", Standard("eastward_wind", "m/s"), "uas"},
                    TNameRow{"EastLevels", Standard("eastward_wind", "m/s", "", true), "ua"},
                    TNameRow{"North", Standard("northward_wind", "m s**-1"), "vas"},
                    TNameRow{"NorthLevels", Standard("northward_wind", "m/s", "", true), "va"},
                    TNameRow{"Speed", Standard("wind_speed", "m s-1"), "sfcWind"},
                    TNameRow{"SpeedMaximum", Standard("wind_speed", "m s-1", "time: maximum"), "sfcWindmax"},
                    TNameRow{"SpeedLevels", Standard("wind_speed", "m s-1", "", true), "none"},
                    TNameRow{"Ice", Standard("sea_ice_area_fraction", "1"), "sic"},
                    TNameRow{"Ice6", Standard("sea_ice_area_fraction", "%", "", false, "CMIP6"), "siconc"},
                    TNameRow{"Thickness", Standard("sea_ice_thickness", "m"), "sit"},
                    TNameRow{"Thickness6", Standard("sea_ice_thickness", "m", "", false, "CMIP6"), "sithick"},
                    TNameRow{"Lwe", Standard("lwe_precipitation_rate", "m s-1"), "pr"},
                    TNameRow{"Psl", Standard("air_pressure_at_sea_level", "mb"), "psl"},
                    TNameRow{"Geopotential", Standard("geopotential", "m**2 s**-2"), "zg"},
                    TNameRow{"Evaporation", Standard("water_evaporation_flux", "kg m-2 s-1"), "evspsbl"},
                    TNameRow{"Soil", Standard("soil_moisture_content", "kg m-2"), "mrso"},
                    TNameRow{"Nothing", TClimateNames(), "none"}, TNameRow{"GribTmp", Grib("TMP", "850-ISBL"), "ta"},
                    TNameRow{"GribTmp2m", Grib("TMP", "2-HTGL"), "tas"}, TNameRow{"Grib2T", Grib("2T"), "tas"},
                    TNameRow{"GribU", Grib("UGRD", "85000-ISBL"), "ua"},
                    TNameRow{"GribU10", Grib("U", "10-HTGL"), "uas"},
                    TNameRow{"GribV10", Grib("VGRD", "10-HTGL"), "vas"}, TNameRow{"GribMsl", Grib("MSL"), "psl"},
                    TNameRow{"GribSp", Grib("SP"), "ps"}, TNameRow{"GribHeight", Grib("HGT", "500-ISBL"), "zg"},
                    TNameRow{"GribRh", Grib("RH", "500-ISBL"), "hur"},
                    TNameRow{"GribRh2", Grib("RH", "2-HTGL"), "hurs"}, TNameRow{"GribQ", Grib("Q", "500-ISBL"), "hus"},
                    TNameRow{"GribClouds", Grib("TCC"), "clt"}, TNameRow{"GribOther", Grib("XYZ"), "none"}),
    [](const auto& row) { return row.param.Name; });

TEST(ClimateNamesSuggestion, GoesByTheLongName) {
    const auto suggested = [](const char* text) {
        TClimateNames names;
        names.LongName = text;
        EXPECT_EQ(ShortName(FindClimateVariable(names)), "none");
        return ShortName(SuggestClimateVariable(names));
    };
    EXPECT_EQ(suggested("SEA SURFACE TEMPERATURE"), "tos");
    EXPECT_EQ(suggested("Air  temperature "), "tas");
    EXPECT_EQ(suggested("sea level pressure"), "psl");
    EXPECT_EQ(suggested("specific humidity"), "huss");
    EXPECT_EQ(suggested("ZONAL WIND"), "uas");
    EXPECT_EQ(suggested("MERIDIONAL WIND"), "vas");
    EXPECT_EQ(suggested("wind speed"), "sfcWind");
    EXPECT_EQ(suggested("temperature"), "none");
}

} // namespace
} // namespace lmx
