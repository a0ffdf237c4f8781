#include <lmx/DataSources/lmxClimateTimeUnits.h>

#include <tests/Support/Printers.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace lmx {
namespace {

using enum TClimateCalendarKind;

struct TTimeRow {
    const char* Name;
    TClimateCalendarKind Kind;
    const char* Units;
    double Value;
    const char* Date;
};

class ClimateTimeUnitsDates : public testing::TestWithParam<TTimeRow> {};

TEST_P(ClimateTimeUnitsDates, AreThoseOfTheCalendar) {
    const auto units =
        TClimateTimeUnits::Parse(QString::fromLatin1(GetParam().Units), TClimateCalendar(GetParam().Kind));
    ASSERT_TRUE(units);
    const auto date = units->DateOf(GetParam().Value);
    ASSERT_TRUE(date);
    EXPECT_EQ(date->ToIsoText(), QString::fromLatin1(GetParam().Date));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ClimateTimeUnitsDates,
    testing::Values(
        TTimeRow{"LastJulianDay", ckStandard, "days since 0001-01-01 00:00:00", 577736, "1582-10-04T00:00:00"},
        TTimeRow{"FirstGregorianDay", ckStandard, "days since 0001-01-01 00:00:00", 577737, "1582-10-15T00:00:00"},
        TTimeRow{"NextDay", ckStandard, "days since 0001-01-01 00:00:00", 577738, "1582-10-16T00:00:00"},
        TTimeRow{"Year2000", ckStandard, "days since 0001-01-01 00:00:00", 730121, "2000-01-01T00:00:00"},
        TTimeRow{"QuarterOfADay", ckStandard, "days since 0001-01-01 00:00:00", 730484.25, "2000-12-29T06:00:00"},
        TTimeRow{"Proleptic", ckProlepticGregorian, "days since 0001-01-01", 577734, "1582-10-14T00:00:00"},
        TTimeRow{"Proleptic2000", ckProlepticGregorian, "days since 0001-01-01", 730119, "2000-01-01T00:00:00"},
        TTimeRow{"ThirtiethOfFebruary", ck360Day, "days since 1850-01-01", 59, "1850-02-30T00:00:00"},
        TTimeRow{"EndOf360Days", ck360Day, "days since 1850-01-01", 359.5, "1850-12-30T12:00:00"},
        TTimeRow{"NoLeap", ckNoLeap, "days since 1850-01-01", 59, "1850-03-01T00:00:00"},
        TTimeRow{"NoLeap150Years", ckNoLeap, "days since 1850-01-01", 54750.5, "2000-01-01T12:00:00"},
        TTimeRow{"NoLeapDay", ckNoLeap, "days since 2000-01-01", 58.75, "2000-02-28T18:00:00"},
        TTimeRow{"AllLeap", ckAllLeap, "days since 2001-01-01", 59, "2001-02-29T00:00:00"},
        TTimeRow{"AllLeapYear", ckAllLeap, "days since 2001-01-01", 366, "2002-01-01T00:00:00"},
        TTimeRow{"Julian1900", ckJulian, "days since 1900-01-01", 59, "1900-02-29T00:00:00"},
        TTimeRow{"East", ckStandard, "seconds since 1970-01-01T00:00:00+12:00", 3600, "1969-12-31T13:00:00"},
        TTimeRow{"West", ckStandard, "seconds since 1970-01-01 00:00:00 -0330", 0, "1970-01-01T03:30:00"},
        TTimeRow{"HourZone", ckStandard, "hours since 1970-1-1 0:0:0 +5", 5, "1970-01-01T00:00:00"},
        TTimeRow{"Zulu", ckStandard, "hours since 1970-01-01T06Z", 1, "1970-01-01T07:00:00"},
        TTimeRow{"Utc", ckStandard, "hours since 1970-01-01 06:30 UTC", 1, "1970-01-01T07:30:00"},
        TTimeRow{"Minutes", ckStandard, "minutes since 2020-02-29 23:00", 90, "2020-03-01T00:30:00"},
        TTimeRow{"Milliseconds", ckProlepticGregorian, "milliseconds since 1970-01-01", 1.6e12, "2020-09-13T12:26:40"},
        TTimeRow{"Nanoseconds", ckProlepticGregorian, "nanoseconds since 1970-01-01", 1.6e18, "2020-09-13T12:26:40"},
        TTimeRow{"Microseconds", ckStandard, "us since 2000-01-01", 1700, "2000-01-01T00:00:00.002"},
        TTimeRow{"FractionOfASecond", ckStandard, "hours since 1900-01-01 00:00:0.25", 6, "1900-01-01T06:00:00.250"},
        TTimeRow{"PointWithoutDigits", ckStandard, "hours since 1900-01-01 00:00:1.", 6, "1900-01-01T06:00:01"},
        TTimeRow{"ManyDigits", ckStandard, "s since 1900-01-01 00:00:00.9999999999", 0, "1900-01-01T00:00:01"},
        TTimeRow{"Weeks", ckStandard, "Weeks Since 2000-01-01", -1, "1999-12-25T00:00:00"},
        TTimeRow{"Case", ckStandard, "DAYS SINCE 2000-01-01t12:00z", 1, "2000-01-02T12:00:00"},
        TTimeRow{"Blanks", ckStandard, "  days   since  2000-01-01   12:00 ", 1, "2000-01-02T12:00:00"},
        TTimeRow{"YearAlone", ckStandard, "days since 1900", 31, "1900-02-01T00:00:00"},
        TTimeRow{"YearAndMonth", ckStandard, "days since 1900-3", 31, "1900-04-01T00:00:00"},
        TTimeRow{"ShortYear", ckStandard, "days since 1-1-1", 0, "0001-01-01T00:00:00"},
        TTimeRow{"Packed", ckStandard, "days since 20000131 06:00", 1, "2000-02-01T06:00:00"},
        TTimeRow{"LongYear", ckNoLeap, "days since 20000-01-31", 1, "20000-02-01T00:00:00"},
        // The Julian day 2432552 (1 January 1948) less 1721424 (1 January of the year 1, Julian), in hours.
        TTimeRow{"SinceTheYear1", ckStandard, "hours since 1-1-1 00:00:0.0", 17067072, "1948-01-01T00:00:00"},
        TTimeRow{"SinceTheYear1Proleptic", ckProlepticGregorian, "hours since 1-1-1 00:00:0.0", 17067072,
                 "1948-01-03T00:00:00"},
        TTimeRow{"Before", ckStandard, "days since 1582-10-15", -1, "1582-10-04T00:00:00"},
        TTimeRow{"BeforeNoLeap", ckNoLeap, "days since 2000-03-01", -1, "2000-02-28T00:00:00"},
        TTimeRow{"TwoDigitYear", ckStandard, "days since 70-01-01", 0, "0070-01-01T00:00:00"},
        TTimeRow{"NegativeYear", ckStandard, "days since -4712-01-01 12:00", 2451545, "2000-01-01T12:00:00"},
        TTimeRow{"Months360", ck360Day, "months since 2000-01-15", 13, "2001-02-15T00:00:00"},
        TTimeRow{"MonthsStandard", ckStandard, "months since 1990-01-01", 2, "1990-03-01T00:00:00"},
        TTimeRow{"HalfAMonth", ckStandard, "months since 2001-01-01", 1.5, "2001-02-15T00:00:00"},
        TTimeRow{"HalfAMonthBack", ckStandard, "months since 2001-01-01", -0.5, "2000-12-16T12:00:00"},
        TTimeRow{"MonthFromThe31st", ckStandard, "months since 2001-01-31", 1, "2001-02-28T00:00:00"},
        TTimeRow{"Years", ckStandard, "years since 2000-02-29", 1, "2001-02-28T00:00:00"},
        TTimeRow{"HalfALeapYear", ckStandard, "yr since 2000-01-01", 0.5, "2000-07-02T00:00:00"},
        TTimeRow{"Year0", ckStandard, "hours since 0000-01-01 00:00:00", 366, "0000-01-16T06:00:00"}),
    [](const auto& row) { return row.param.Name; });

TEST(ClimateTimeUnits, RefuseWhatTheyDoNotUnderstand) {
    for (const char* const text : {"",
                                   " ",
                                   "days",
                                   "days since",
                                   "days since ",
                                   "since 2000-01-01",
                                   "fortnights since 2000-01-01",
                                   "days after 2000-01-01",
                                   "day as %Y%m%d.%f",
                                   "days since yesterday",
                                   "days since 2000-13-01",
                                   "days since 2000-02-30",
                                   "days since 2000-00-00",
                                   "days since 1582-10-10",
                                   "days since 2000-01-",
                                   "days since 2000--01",
                                   "days since 2000-01-01 24:00",
                                   "days since 2000-01-01 12:60",
                                   "days since 2000-01-01 12:00:60",
                                   "days since 2000-01-01 12:",
                                   "days since 2000-01-01 12:00 +15",
                                   "days since 2000-01-01 12:00 +12:60",
                                   "days since 2000-01-01 12:00 CET",
                                   "days since 2000-01-01 12:00 +12 x",
                                   "days since 99999999999-01-01",
                                   "days since 999999999-01-01",
                                   "days since 20000101010101",
                                   "days since 20000",
                                   "days since 200001",
                                   "days since 20001301",
                                   "days since 2000-01-01 00:00:00 +00000"})
        EXPECT_FALSE(TClimateTimeUnits::Parse(QString::fromLatin1(text), TClimateCalendar())) << text;
    EXPECT_FALSE(
        TClimateTimeUnits::Parse("days since 2000-01-01" + QString(1'000'000, u' ') + "x", TClimateCalendar()));
    EXPECT_FALSE(TClimateTimeUnits::Parse(QString(100'000, u'9'), TClimateCalendar()));
    EXPECT_TRUE(TClimateTimeUnits::Parse("days since 2000-02-30", TClimateCalendar(ck360Day)));
    EXPECT_TRUE(TClimateTimeUnits::Parse("days since 2000-02-29", TClimateCalendar()));
    EXPECT_FALSE(TClimateTimeUnits::Parse("days since 2000-02-29", TClimateCalendar(ckNoLeap)));
    EXPECT_FALSE(TClimateTimeUnits::Parse("days since 2000-01-31", TClimateCalendar(ck360Day)));
}

TEST(ClimateTimeUnits, NumbersBeyondTheCalendarAreNoDates) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const char* const text : {"days since 2000-01-01", "nanoseconds since 2000-01-01", "months since 2000-01-01",
                                   "years since 200000000-01-01"}) {
        const auto units = TClimateTimeUnits::Parse(QString::fromLatin1(text), TClimateCalendar());
        ASSERT_TRUE(units) << text;
        for (const double value : {std::numeric_limits<double>::quiet_NaN(), infinity, -infinity, 1e300, -1e300, 1e25})
            EXPECT_FALSE(units->DateOf(value)) << text << value;
    }
    const auto days = TClimateTimeUnits::Parse("days since 200000000-01-01", TClimateCalendar());
    ASSERT_TRUE(days);
    EXPECT_TRUE(days->DateOf(300));
    EXPECT_FALSE(days->DateOf(400));
    EXPECT_FALSE(days->DateOf(1e11));
    EXPECT_FALSE(TClimateTimeUnits::Parse("years since 200000000-06-01", TClimateCalendar())->DateOf(0.5));
}

TEST(ClimateTimeUnits, TellTheirReference) {
    const auto units = TClimateTimeUnits::Parse("days since 0000-01-01 06:00 +07", TClimateCalendar(ckNoLeap));
    ASSERT_TRUE(units);
    EXPECT_TRUE(units->IsYearless());
    EXPECT_EQ(units->GetReference().ToIsoText(), "-0001-12-31T23:00:00");
    EXPECT_EQ(units->GetCalendar(), TClimateCalendar(ckNoLeap));
    EXPECT_FALSE(TClimateTimeUnits::Parse("days since 0001-01-01", TClimateCalendar())->IsYearless());
}

std::vector<double> MeantBySingles(const char* units, const std::vector<double>& values) {
    std::vector<double> singles;
    for (const double value : values)
        singles.push_back(static_cast<double>(static_cast<float>(value)));
    return TClimateTimeUnits::Parse(QString::fromLatin1(units), TClimateCalendar())->MeantBy(singles);
}

TEST(ClimateTimeUnits, SinglesMeanTheLongestStepThatTheyAllHold) {
    using testing::ElementsAre;
    constexpr double minute = 1 / 1440.0;
    EXPECT_THAT(MeantBySingles("days since 1800-01-01", {79'000, 79'001}), ElementsAre(79'000, 79'001));
    EXPECT_THAT(MeantBySingles("days since 1800-01-01", {79'000, 79'000 + 60 * minute}),
                ElementsAre(79'000, testing::DoubleEq(79'000 + 60 * minute)));
    EXPECT_THAT(MeantBySingles("days since 2000-01-01", {6000, 6000 + 20 * minute, 6000 + 30 * minute}),
                ElementsAre(6000, testing::DoubleEq(6000 + 20 * minute), testing::DoubleEq(6000 + 30 * minute)))
        << "ten minutes, which singles tell to less than one there";
    EXPECT_THAT(MeantBySingles("seconds since 1970-01-01", {1'461'024'000, 1'461'027'600}),
                ElementsAre(1'461'024'000, 1'461'027'600))
        << "singles are 128 seconds apart there";
    EXPECT_THAT(MeantBySingles("hours since 1900-01-01", {0.1, 0.2}),
                ElementsAre(testing::DoubleEq(0.1), testing::DoubleEq(0.2)));
}

TEST(ClimateTimeUnits, WhatNoStepMeetsStays) {
    const auto single = [](double value) { return static_cast<double>(static_cast<float>(value)); };
    EXPECT_EQ(MeantBySingles("seconds since 1970-01-01", {0.1234, 5}), (std::vector{single(0.1234), 5.0}));
    EXPECT_EQ(MeantBySingles("months since 1970-01-01", {0.1}), (std::vector{single(0.1)}));
    EXPECT_EQ(MeantBySingles("days since 1970-01-01", {}), std::vector<double>());
    const auto units = TClimateTimeUnits::Parse("days since 1800-01-01", TClimateCalendar());
    EXPECT_EQ(units->MeantBy({79'000.04}), std::vector{79'000.04}) << "no single";
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(std::isnan(units->MeantBy({nan})[0]));
    EXPECT_EQ(units->MeantBy({1e300}), std::vector{1e300});
}

} // namespace
} // namespace lmx
