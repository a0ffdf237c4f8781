#include <lmx/Climate/lmxClimateVariable.h>

#include <lmx/Runtime/lmxExceptions.h>

#include <QStringView>

#include <algorithm>
#include <vector>

namespace lmx {

namespace {

using enum TClimateVariable;

// Per row: variable, short name, CF standard name, units, display name.
struct TRow {
    TClimateVariable Variable;
    QStringView ShortName;
    QStringView StandardName;
    QStringView Units;
    QStringView DisplayName;
};

// clang-format off
constexpr TRow Rows[] = {
    {cvTas,        u"tas",        u"air_temperature",                                u"K",          u"Near-surface air temperature"},
    {cvTasmin,     u"tasmin",     u"air_temperature",                                u"K",          u"Daily minimum near-surface air temperature"},
    {cvTasmax,     u"tasmax",     u"air_temperature",                                u"K",          u"Daily maximum near-surface air temperature"},
    {cvTs,         u"ts",         u"surface_temperature",                            u"K",          u"Surface temperature"},
    {cvTa,         u"ta",         u"air_temperature",                                u"K",          u"Air temperature"},
    {cvPr,         u"pr",         u"precipitation_flux",                             u"kg m-2 s-1", u"Precipitation"},
    {cvPrc,        u"prc",        u"convective_precipitation_flux",                  u"kg m-2 s-1", u"Convective precipitation"},
    {cvPrsn,       u"prsn",       u"snowfall_flux",                                  u"kg m-2 s-1", u"Snowfall"},
    {cvPrw,        u"prw",        u"atmosphere_mass_content_of_water_vapor",         u"kg m-2",     u"Water vapour path"},
    {cvEvspsbl,    u"evspsbl",    u"water_evapotranspiration_flux",                  u"kg m-2 s-1", u"Evaporation, with sublimation and transpiration"},
    {cvPsl,        u"psl",        u"air_pressure_at_mean_sea_level",                 u"Pa",         u"Sea level pressure"},
    {cvPs,         u"ps",         u"surface_air_pressure",                           u"Pa",         u"Surface air pressure"},
    {cvHuss,       u"huss",       u"specific_humidity",                              u"1",          u"Near-surface specific humidity"},
    {cvHurs,       u"hurs",       u"relative_humidity",                              u"%",          u"Near-surface relative humidity"},
    {cvHus,        u"hus",        u"specific_humidity",                              u"1",          u"Specific humidity"},
    {cvHur,        u"hur",        u"relative_humidity",                              u"%",          u"Relative humidity"},
    {cvSfcWind,    u"sfcWind",    u"wind_speed",                                     u"m s-1",      u"Near-surface wind speed"},
    {cvSfcWindmax, u"sfcWindmax", u"wind_speed",                                     u"m s-1",      u"Daily maximum near-surface wind speed"},
    {cvUas,        u"uas",        u"eastward_wind",                                  u"m s-1",      u"Eastward near-surface wind"},
    {cvVas,        u"vas",        u"northward_wind",                                 u"m s-1",      u"Northward near-surface wind"},
    {cvUa,         u"ua",         u"eastward_wind",                                  u"m s-1",      u"Eastward wind"},
    {cvVa,         u"va",         u"northward_wind",                                 u"m s-1",      u"Northward wind"},
    {cvWap,        u"wap",        u"lagrangian_tendency_of_air_pressure",            u"Pa s-1",     u"Vertical velocity (pressure)"},
    {cvZg,         u"zg",         u"geopotential_height",                            u"m",          u"Geopotential height"},
    {cvTauu,       u"tauu",       u"surface_downward_eastward_stress",               u"Pa",         u"Surface downward eastward wind stress"},
    {cvTauv,       u"tauv",       u"surface_downward_northward_stress",              u"Pa",         u"Surface downward northward wind stress"},
    {cvHfls,       u"hfls",       u"surface_upward_latent_heat_flux",                u"W m-2",      u"Surface upward latent heat flux"},
    {cvHfss,       u"hfss",       u"surface_upward_sensible_heat_flux",              u"W m-2",      u"Surface upward sensible heat flux"},
    {cvRsds,       u"rsds",       u"surface_downwelling_shortwave_flux_in_air",      u"W m-2",      u"Surface downwelling shortwave radiation"},
    {cvRsus,       u"rsus",       u"surface_upwelling_shortwave_flux_in_air",        u"W m-2",      u"Surface upwelling shortwave radiation"},
    {cvRlds,       u"rlds",       u"surface_downwelling_longwave_flux_in_air",       u"W m-2",      u"Surface downwelling longwave radiation"},
    {cvRlus,       u"rlus",       u"surface_upwelling_longwave_flux_in_air",         u"W m-2",      u"Surface upwelling longwave radiation"},
    {cvRsdt,       u"rsdt",       u"toa_incoming_shortwave_flux",                    u"W m-2",      u"TOA incident shortwave radiation"},
    {cvRsut,       u"rsut",       u"toa_outgoing_shortwave_flux",                    u"W m-2",      u"TOA outgoing shortwave radiation"},
    {cvRlut,       u"rlut",       u"toa_outgoing_longwave_flux",                     u"W m-2",      u"TOA outgoing longwave radiation"},
    {cvRsdscs,     u"rsdscs",     u"surface_downwelling_shortwave_flux_in_air_assuming_clear_sky", u"W m-2", u"Surface downwelling clear-sky shortwave radiation"},
    {cvRsuscs,     u"rsuscs",     u"surface_upwelling_shortwave_flux_in_air_assuming_clear_sky",   u"W m-2", u"Surface upwelling clear-sky shortwave radiation"},
    {cvRldscs,     u"rldscs",     u"surface_downwelling_longwave_flux_in_air_assuming_clear_sky",  u"W m-2", u"Surface downwelling clear-sky longwave radiation"},
    {cvRsutcs,     u"rsutcs",     u"toa_outgoing_shortwave_flux_assuming_clear_sky", u"W m-2",      u"TOA outgoing clear-sky shortwave radiation"},
    {cvRlutcs,     u"rlutcs",     u"toa_outgoing_longwave_flux_assuming_clear_sky",  u"W m-2",      u"TOA outgoing clear-sky longwave radiation"},
    {cvClt,        u"clt",        u"cloud_area_fraction",                            u"%",          u"Total cloud cover"},
    {cvClwvi,      u"clwvi",      u"atmosphere_mass_content_of_cloud_condensed_water", u"kg m-2",   u"Condensed water path"},
    {cvClivi,      u"clivi",      u"atmosphere_mass_content_of_cloud_ice",           u"kg m-2",     u"Ice water path"},
    {cvMrso,       u"mrso",       u"mass_content_of_water_in_soil",                  u"kg m-2",     u"Total soil moisture content"},
    {cvMrsos,      u"mrsos",      u"mass_content_of_water_in_soil_layer",            u"kg m-2",     u"Moisture in upper portion of soil column"},
    {cvMrro,       u"mrro",       u"runoff_flux",                                    u"kg m-2 s-1", u"Total runoff"},
    {cvMrros,      u"mrros",      u"surface_runoff_flux",                            u"kg m-2 s-1", u"Surface runoff"},
    {cvTsl,        u"tsl",        u"soil_temperature",                               u"K",          u"Temperature of soil"},
    {cvSnw,        u"snw",        u"surface_snow_amount",                            u"kg m-2",     u"Surface snow amount"},
    {cvSnd,        u"snd",        u"surface_snow_thickness",                         u"m",          u"Snow depth"},
    {cvSnc,        u"snc",        u"surface_snow_area_fraction",                     u"%",          u"Snow area fraction"},
    {cvTos,        u"tos",        u"sea_surface_temperature",                        u"degC",       u"Sea surface temperature"},
    {cvSos,        u"sos",        u"sea_surface_salinity",                           u"0.001",      u"Sea surface salinity"},
    {cvZos,        u"zos",        u"sea_surface_height_above_geoid",                 u"m",          u"Sea surface height above geoid"},
    {cvThetao,     u"thetao",     u"sea_water_potential_temperature",                u"degC",       u"Sea water potential temperature"},
    {cvSo,         u"so",         u"sea_water_salinity",                             u"0.001",      u"Sea water salinity"},
    {cvUo,         u"uo",         u"sea_water_x_velocity",                           u"m s-1",      u"Sea water X velocity"},
    {cvVo,         u"vo",         u"sea_water_y_velocity",                           u"m s-1",      u"Sea water Y velocity"},
    {cvMlotst,     u"mlotst",     u"ocean_mixed_layer_thickness_defined_by_sigma_t", u"m",          u"Ocean mixed layer thickness"},
    {cvSic,        u"sic",        u"sea_ice_area_fraction",                          u"%",          u"Sea ice area fraction"},
    {cvSiconc,     u"siconc",     u"sea_ice_area_fraction",                          u"%",          u"Sea ice area percentage (ocean grid)"},
    {cvSit,        u"sit",        u"sea_ice_thickness",                              u"m",          u"Sea ice thickness (cell average)"},
    {cvSithick,    u"sithick",    u"sea_ice_thickness",                              u"m",          u"Sea ice thickness"},
    {cvOrog,       u"orog",       u"surface_altitude",                               u"m",          u"Surface altitude"},
    {cvSftlf,      u"sftlf",      u"land_area_fraction",                             u"%",          u"Land area fraction"},
    {cvAreacella,  u"areacella",  u"cell_area",                                      u"m2",         u"Area of atmosphere grid cells"},
};
// clang-format on

std::vector<TClimateVariableType> MakeTypes() {
    std::vector<TClimateVariableType> types;
    for (const TRow& row : Rows)
        types.push_back({row.Variable, row.ShortName.toString(), row.StandardName.toString(), row.Units.toString(),
                         row.DisplayName.toString()});
    return types;
}

} // namespace

std::span<const TClimateVariableType> TClimateVariableTypes::All() {
    static const std::vector<TClimateVariableType> types = MakeTypes();
    return types;
}

const TClimateVariableType& TClimateVariableTypes::Get(TClimateVariable variable) {
    const auto index = static_cast<std::size_t>(variable);
    if (index >= All().size())
        throw EListError(QStringLiteral("Item not found"));
    return All()[index];
}

const TClimateVariableType* TClimateVariableTypes::FromShortName(const QString& text) {
    const auto types = All();
    const auto found =
        std::find_if(types.begin(), types.end(), [&text](const auto& type) { return type.ShortName == text; });
    return found == types.end() ? nullptr : &*found;
}

} // namespace lmx
