#include <lmx/Climate/lmxClimateVariable.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>

#include <QSet>

#include <gtest/gtest.h>

namespace lmx::tests {

TEST(ClimateVariableTypes, StandInTheOrderOfTheEnumeration) {
    const auto types = TClimateVariableTypes::All();
    ASSERT_EQ(types.size(), static_cast<std::size_t>(TClimateVariable::cvAreacella) + 1);
    for (std::size_t i = 0; i < types.size(); ++i) {
        EXPECT_EQ(static_cast<std::size_t>(types[i].Variable), i) << types[i].ShortName.toStdString();
        EXPECT_EQ(&TClimateVariableTypes::Get(types[i].Variable), &types[i]);
    }
}

TEST(ClimateVariableTypes, AreCompleteAndFoundByTheirShortNames) {
    QSet<QString> shortNames;
    QSet<QString> displayNames;
    for (const TClimateVariableType& type : TClimateVariableTypes::All()) {
        EXPECT_EQ(TClimateVariableTypes::FromShortName(type.ShortName), &type);
        EXPECT_FALSE(type.StandardName.isEmpty()) << type.ShortName.toStdString();
        EXPECT_FALSE(type.Units.isEmpty()) << type.ShortName.toStdString();
        shortNames.insert(type.ShortName);
        displayNames.insert(type.DisplayName);
    }
    EXPECT_EQ(shortNames.size(), static_cast<qsizetype>(TClimateVariableTypes::All().size()));
    EXPECT_EQ(displayNames.size(), shortNames.size());
}

TEST(ClimateVariableTypes, FollowTheConventions) {
    const auto* temperature = TClimateVariableTypes::FromShortName(QStringLiteral("tas"));
    ASSERT_NE(temperature, nullptr);
    EXPECT_EQ(temperature->Variable, TClimateVariable::cvTas);
    EXPECT_EQ(temperature->StandardName, QStringLiteral("air_temperature"));
    EXPECT_EQ(temperature->Units, QStringLiteral("K"));
    EXPECT_EQ(temperature->DisplayName, QStringLiteral("Near-surface air temperature"));
    const auto& rain = TClimateVariableTypes::Get(TClimateVariable::cvPr);
    EXPECT_EQ(rain.ShortName, QStringLiteral("pr"));
    EXPECT_EQ(rain.StandardName, QStringLiteral("precipitation_flux"));
    EXPECT_EQ(rain.Units, QStringLiteral("kg m-2 s-1"));
    EXPECT_EQ(TClimateVariableTypes::Get(TClimateVariable::cvSfcWind).ShortName, QStringLiteral("sfcWind"));
    EXPECT_EQ(TClimateVariableTypes::Get(TClimateVariable::cvTos).StandardName,
              QStringLiteral("sea_surface_temperature"));
}

TEST(ClimateVariableTypes, HaveTheVariablesOfTheUsualMonthlyTables) {
    for (const char* name : {"tas",     "tasmin", "tasmax", "pr",   "psl",  "ps",   "huss", "hurs", "hus",  "sfcWind",
                             "uas",     "vas",    "rsds",   "rlds", "rsus", "rlus", "rsdt", "rsut", "rlut", "clt",
                             "evspsbl", "mrso",   "mrro",   "snw",  "snd",  "prsn", "prc",  "tos",  "sos",  "zos",
                             "sic",     "siconc", "zg",     "ta",   "ua",   "va",   "orog"})
        EXPECT_NE(TClimateVariableTypes::FromShortName(QString::fromLatin1(name)), nullptr) << name;
}

TEST(ClimateVariableTypes, GiveNothingForAnUnknownName) {
    for (const char* name : {"", "TAS", " tas", "tas ", "sfcwind", "temperature"})
        EXPECT_EQ(TClimateVariableTypes::FromShortName(QString::fromLatin1(name)), nullptr) << name;
}

TEST(ClimateVariableTypes, RefuseANumberThatIsNoVariable) {
    EXPECT_EQ(MessageOf<EListError>([] { TClimateVariableTypes::Get(static_cast<TClimateVariable>(1000)); }),
              QStringLiteral("Item not found"));
    EXPECT_EQ(MessageOf<EListError>([] { TClimateVariableTypes::Get(static_cast<TClimateVariable>(-1)); }),
              QStringLiteral("Item not found"));
}

} // namespace lmx::tests
