#include <lmx/DataSources/lmxClimateNames.h>

#include <lmx/DataSources/lmxClimateUnits.h>
#include <lmx/Runtime/lmxText.h>

#include <vector>

namespace lmx {

namespace {

using enum TClimateVariable;
using TFound = TNullable<TClimateVariable>;

bool HasMethod(const TClimateNames& names, const char* method) {
    return names.CellMethods.simplified().toLower().contains(QStringLiteral("time: ") + QLatin1String(method));
}

/// Whether the units fit the table's. A file that names none may mean anything.
bool UnitsFit(const TClimateNames& names, TClimateVariable variable) {
    return UnitsConvert(names.Units, TClimateVariableTypes::Get(variable).Units);
}

TFound FindByShortName(const TClimateNames& names) {
    const TClimateVariableType* const type = TClimateVariableTypes::FromShortName(names.Name);
    if (type && (names.StandardName.isEmpty() || names.StandardName == type->StandardName))
        return type->Variable;
    return {};
}

/// Several variables of the table share these standard names.
TFound FindShared(const TClimateNames& names) {
    const QString& name = names.StandardName;
    const bool isCmip6 = SameText(names.MipEra, u"CMIP6");
    const auto byLevel = [&](TClimateVariable onLevels, TClimateVariable nearSurface) {
        return TFound(names.HasLevels ? onLevels : nearSurface);
    };
    if (name == QStringLiteral("air_temperature")) {
        if (names.HasLevels)
            return cvTa;
        if (HasMethod(names, "minimum"))
            return cvTasmin;
        return HasMethod(names, "maximum") ? cvTasmax : cvTas;
    }
    if (name == QStringLiteral("specific_humidity"))
        return byLevel(cvHus, cvHuss);
    if (name == QStringLiteral("relative_humidity"))
        return byLevel(cvHur, cvHurs);
    if (name == QStringLiteral("eastward_wind"))
        return byLevel(cvUa, cvUas);
    if (name == QStringLiteral("northward_wind"))
        return byLevel(cvVa, cvVas);
    if (name == QStringLiteral("wind_speed") && !names.HasLevels)
        return HasMethod(names, "maximum") ? cvSfcWindmax : cvSfcWind;
    if (name == QStringLiteral("sea_ice_area_fraction"))
        return isCmip6 ? cvSiconc : cvSic;
    if (name == QStringLiteral("sea_ice_thickness"))
        return isCmip6 ? cvSithick : cvSit;
    return {};
}

TFound FindUnique(const QString& standardName) {
    std::vector<TClimateVariable> found;
    for (const TClimateVariableType& type : TClimateVariableTypes::All())
        if (type.StandardName == standardName)
            found.push_back(type.Variable);
    return found.size() == 1 ? TFound(found.front()) : TFound();
}

struct TAliasRow {
    const char* Name;
    TClimateVariable Variable;
};

template<std::size_t Count>
TFound FindAlias(const TAliasRow (&rows)[Count], const QString& name) {
    for (const TAliasRow& row : rows)
        if (name == QLatin1String(row.Name))
            return row.Variable;
    return {};
}

constexpr TAliasRow StandardAliases[] = {
    {"lwe_precipitation_rate", cvPr},      {"air_pressure_at_sea_level", cvPsl}, {"geopotential", cvZg},
    {"water_evaporation_flux", cvEvspsbl}, {"soil_moisture_content", cvMrso},
};

/// Geopotential becomes a height by a change of units, which UnitsConvert does not know.
bool IsGeopotential(const TClimateNames& names) {
    return names.StandardName == QStringLiteral("geopotential") && UnitsConvert(names.Units, QStringLiteral("m2 s-2"));
}

TFound FindByStandardName(const TClimateNames& names) {
    TFound found = FindShared(names);
    if (!found.GetHasValue())
        found = FindUnique(names.StandardName);
    if (!found.GetHasValue())
        found = FindAlias(StandardAliases, names.StandardName);
    if (!found.GetHasValue() || !(UnitsFit(names, found.GetValue()) || IsGeopotential(names)))
        return {};
    return found;
}

constexpr TAliasRow GribElements[] = {
    {"TMP", cvTa},    {"T", cvTa},     {"2T", cvTas},  {"UGRD", cvUa}, {"U", cvUa},    {"VGRD", cvVa}, {"V", cvVa},
    {"PRMSL", cvPsl}, {"MSL", cvPsl},  {"SP", cvPs},   {"HGT", cvZg},  {"GH", cvZg},   {"RH", cvHur},  {"SPFH", cvHus},
    {"Q", cvHus},     {"TCDC", cvClt}, {"TCC", cvClt}, {"10U", cvUas}, {"10V", cvVas},
};

TFound FindByGrib(const TClimateNames& names) {
    const TFound found = FindAlias(GribElements, names.GribElement);
    if (!found.GetHasValue())
        return {};
    const bool isAt2 = names.GribLevel.startsWith(QStringLiteral("2-HTGL"));
    const bool isAt10 = names.GribLevel.startsWith(QStringLiteral("10-HTGL"));
    switch (found.GetValue()) {
    case cvTa:
        return isAt2 ? cvTas : cvTa;
    case cvUa:
        return isAt10 ? cvUas : cvUa;
    case cvVa:
        return isAt10 ? cvVas : cvVa;
    case cvHur:
        return isAt2 ? cvHurs : cvHur;
    case cvHus:
        return isAt2 ? cvHuss : cvHus;
    default:
        return found;
    }
}

constexpr TAliasRow LongNames[] = {
    {"sea surface temperature", cvTos}, {"air temperature", cvTas}, {"sea level pressure", cvPsl},
    {"specific humidity", cvHuss},      {"zonal wind", cvUas},      {"meridional wind", cvVas},
    {"wind speed", cvSfcWind},
};

} // namespace

TNullable<TClimateVariable> FindClimateVariable(const TClimateNames& names) {
    for (const auto find : {FindByShortName, FindByStandardName, FindByGrib})
        if (const TFound found = find(names); found.GetHasValue())
            return found;
    return {};
}

TNullable<TClimateVariable> SuggestClimateVariable(const TClimateNames& names) {
    return FindAlias(LongNames, names.LongName.simplified().toLower());
}

} // namespace lmx
