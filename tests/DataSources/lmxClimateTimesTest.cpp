#include <lmx/DataSources/lmxClimateTimes.h>

#include <lmx/Runtime/lmxFormatSettings.h>

#include <tests/Support/Printers.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace lmx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TClimateAttributes TimeAxis(const QString& units, const QString& calendar = QStringLiteral("standard")) {
    TClimateAttributes attributes;
    attributes.Set("units", units);
    attributes.Set("calendar", calendar);
    return attributes;
}

QStringList CaptionsOf(const TClimateTimes& times) {
    QStringList captions;
    for (std::size_t i = 0; i < times.GetCount(); ++i)
        captions += times.GetCaption(i);
    return captions;
}

TEST(ClimateTimes, TellDatesByTheDayOrWithTheTime) {
    const TClimateTimes days({0, 5, 6}, TimeAxis("days since 2001-01-01"));
    EXPECT_THAT(CaptionsOf(days), ElementsAre("1 January 2001", "6 January 2001", "7 January 2001"));
    const TClimateTimes hours({0, 6, 12.5}, TimeAxis("hours since 2001-01-01"));
    EXPECT_THAT(CaptionsOf(hours), ElementsAre("1 January 2001 00:00", "1 January 2001 06:00", "1 January 2001 12:30"));
    EXPECT_TRUE(hours.HasDates());
    EXPECT_FALSE(hours.IsClimatology());
    EXPECT_EQ(hours.GetDate(1), (TClimateDate{2001, 1, 1, 6 * 3'600'000}));
    EXPECT_EQ(hours.GetValue(2), 12.5);
    EXPECT_THAT(hours.GetNotes(), IsEmpty());
}

TEST(ClimateTimes, StepsFromMonthToMonthAreMonths) {
    const TClimateTimes times({15.5, 45, 74.5}, TimeAxis("days since 2001-01-01"));
    EXPECT_THAT(CaptionsOf(times), ElementsAre("January 2001", "February 2001", "March 2001"));
    EXPECT_THAT(CaptionsOf(TClimateTimes({15}, TimeAxis("days since 2001-01-01"))), ElementsAre("16 January 2001"));
    EXPECT_THAT(CaptionsOf(TClimateTimes({15, 74}, TimeAxis("days since 2001-01-01"))),
                ElementsAre("16 January 2001", "16 March 2001"));
}

TEST(ClimateTimes, KeepTheOrderOfTheFile) {
    const TClimateTimes times({9, 3, 3}, TimeAxis("days since 2001-01-01"));
    EXPECT_THAT(CaptionsOf(times), ElementsAre("10 January 2001", "4 January 2001", "4 January 2001"));
}

TEST(ClimateTimes, BoundsTellTheSpan) {
    const TClimateTimes months({15.5, 45, 74.5}, TimeAxis("days since 2001-01-01"), {0, 31, 31, 59, 59, 90});
    EXPECT_THAT(CaptionsOf(months), ElementsAre("January 2001", "February 2001", "March 2001"));
    EXPECT_EQ(months.GetDate(0)->ToIsoText(), "2001-01-16T12:00:00");
    const TClimateTimes mixed({0, 1, 2, 3, 4, 5}, TimeAxis("days since 2000-12-01"),
                              {0, 1, 31, 396, 0, 90, 90, 182, 31, 761, 0.25, 0.5});
    EXPECT_THAT(CaptionsOf(mixed), ElementsAre("1 December 2000", "2001", "December 2000-February 2001",
                                               "March-May 2001", "2001-2002", "6 December 2000"));
}

TEST(ClimateTimes, AStampAtTheEndBelongsToTheTimeBefore) {
    const TClimateTimes months({31, 59}, TimeAxis("days since 2001-01-01"), {0, 31, 31, 59});
    EXPECT_THAT(CaptionsOf(months), ElementsAre("January 2001", "February 2001"));
    EXPECT_EQ(months.GetDate(0), (TClimateDate{2001, 1, 1}));
    const TClimateTimes hours({6, 24}, TimeAxis("hours since 2001-01-01"), {0, 6, 18, 24});
    EXPECT_THAT(CaptionsOf(hours), ElementsAre("1 January 2001 00:00", "1 January 2001 18:00"));
}

TEST(ClimateTimes, AClimatologyHasTheYearsOfItsBounds) {
    TClimateAttributes attributes = TimeAxis("days since 1960-01-01");
    attributes.Set("climatology", QStringLiteral("climatology_bounds"));
    // January of 1961 to 1990, December to February of 1960 to 1990, all of it, one day, some days
    const TClimateTimes times({5494, 5584, 5600, 5494, 5494}, attributes,
                              {366, 10989, 335, 11017, 366, 11323, 366, 10959, 366, 10961});
    EXPECT_TRUE(times.IsClimatology());
    EXPECT_THAT(CaptionsOf(times),
                ElementsAre("January 1961-1990", "December-February 1960-1990", "January-December 1961-1990",
                            "1 January 1961-1990", "1 January-3 January 1961-1990"));
    const TClimateTimes bare({5494, 5584}, attributes);
    EXPECT_THAT(CaptionsOf(bare), ElementsAre("16 January", "16 April"));
}

TEST(ClimateTimes, TheYear0AndModuloHaveNoYears) {
    const TClimateTimes months({366, 1096.485, 1826.97}, TimeAxis("hours since 0000-01-01 00:00:00"));
    EXPECT_TRUE(months.IsClimatology());
    EXPECT_THAT(CaptionsOf(months), ElementsAre("January", "February", "March"));
    TClimateAttributes modulo = TimeAxis("hours since 2001-01-01");
    modulo.Set("modulo", QStringLiteral(" "));
    EXPECT_THAT(CaptionsOf(TClimateTimes({0, 6}, modulo)), ElementsAre("1 January 00:00", "1 January 06:00"));
    EXPECT_THAT(CaptionsOf(TClimateTimes({15, 45}, TimeAxis("days since 0000-01-01", "noleap"), {0, 31, 31, 59})),
                ElementsAre("January", "February"));
}

/// As a writer stores them.
std::vector<double> Singles(std::vector<double> values) {
    for (double& value : values)
        value = static_cast<double>(static_cast<float>(value));
    return values;
}

TEST(ClimateTimes, SinglesShowWhatTheirWriterMeant) {
    const std::vector<double> hourly = Singles({79'000, 79'000 + 1 / 24.0, 79'000 + 2 / 24.0, 79'000 + 23 / 24.0});
    const TClimateAttributes days = TimeAxis("days since 1800-01-01");
    EXPECT_THAT(
        CaptionsOf(TClimateTimes(hourly, days, {}, true)),
        ElementsAre("18 April 2016 00:00", "18 April 2016 01:00", "18 April 2016 02:00", "18 April 2016 23:00"));
    EXPECT_THAT(CaptionsOf(TClimateTimes(hourly, days)),
                ElementsAre("18 April 2016 00:00", "18 April 2016 00:56:15", "18 April 2016 02:03:45",
                            "18 April 2016 23:03:45"));
    EXPECT_EQ(TClimateTimes(hourly, days, {}, true).GetDate(1), (TClimateDate{2016, 4, 18, 3'600'000}));
    EXPECT_EQ(TClimateTimes(hourly, days, {}, true).GetValue(1), hourly[1]) << "as the file has it";
    // What lies a little beside midnight is a day.
    const TClimateAttributes minutes = TimeAxis("minutes since 0001-01-01", "proleptic_gregorian");
    const std::vector<double> daily = Singles({736'000 * 1440.0, 736'001 * 1440.0});
    EXPECT_THAT(CaptionsOf(TClimateTimes(daily, minutes, {}, true)), ElementsAre("7 February 2016", "8 February 2016"));
}

TEST(ClimateTimes, BoundsInSinglesShowWhatTheirWriterMeant) {
    const auto at = [](double day) { return 79'000 + day + 1 / 3.0; };
    const TClimateTimes times(Singles({at(0.5), at(1.5)}), TimeAxis("days since 1799-12-31 16:00"),
                              Singles({at(0), at(1), at(1), at(2)}), true);
    EXPECT_THAT(CaptionsOf(times), ElementsAre("18 April 2016", "19 April 2016"));
    EXPECT_EQ(times.GetDate(0)->ToIsoText(), "2016-04-18T12:00:00");
}

TEST(ClimateTimes, WithoutDatesStepsHaveNumbers) {
    const QString byNumber = QStringLiteral(" Steps are told by number.");
    const TClimateTimes lunar({17.5, 18}, TimeAxis("days since 2001-01-01", "lunar"));
    EXPECT_FALSE(lunar.HasDates());
    EXPECT_EQ(lunar.GetDate(0), std::nullopt);
    EXPECT_EQ(lunar.GetCaption(0), QString("Step 1 (17.5)").replace(u'.', TFormatSettings::Current().DecimalSeparator));
    EXPECT_EQ(lunar.GetCaption(1), "Step 2 (18)");
    const TClimateTimes singles(Singles({17.1, 20'010'116, 1e-3}), TClimateAttributes(), {}, true);
    EXPECT_EQ(singles.GetCaption(0),
              QString("Step 1 (17.1)").replace(u'.', TFormatSettings::Current().DecimalSeparator));
    EXPECT_EQ(singles.GetCaption(1), "Step 2 (20010116)");
    EXPECT_EQ(singles.GetCaption(2),
              QString("Step 3 (0.001)").replace(u'.', TFormatSettings::Current().DecimalSeparator));
    EXPECT_THAT(lunar.GetNotes(), ElementsAre("The calendar \"lunar\" of the time axis is not known." + byNumber));
    EXPECT_THAT(TClimateTimes({1}, TClimateAttributes()).GetNotes(),
                ElementsAre("The time axis has no units." + byNumber));
    EXPECT_THAT(TClimateTimes({1}, TimeAxis("day as %Y%m%d.%f")).GetNotes(),
                ElementsAre("The units \"day as %Y%m%d.%f\" of the time axis are not understood." + byNumber));
    TClimateAttributes martian = TimeAxis("days since 1-1-1", "");
    martian.Set("month_lengths", std::vector<double>{66, 61, 59});
    EXPECT_THAT(TClimateTimes({1}, martian).GetNotes(),
                ElementsAre("The calendar of the time axis has months of its own." + byNumber));
    const TClimateTimes broken({1, std::numeric_limits<double>::quiet_NaN(), 1e300}, TimeAxis("days since 2001-01-01"));
    EXPECT_THAT(broken.GetNotes(), ElementsAre("A value of the time axis is no date." + byNumber));
    EXPECT_EQ(broken.GetCaption(0), "Step 1 (1)");
    EXPECT_EQ(TClimateTimes().GetCount(), 0U);
}

TEST(ClimateTimes, BoundsThatMakeNoSenseDoNotCount) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    for (const std::vector<double>& bounds :
         {std::vector<double>{0}, std::vector<double>{0, 1, 2}, std::vector<double>{1, 0, 1, 2},
          std::vector<double>{0, nan, 1, 2}, std::vector<double>{0, 1e300, 1, 2}}) {
        const TClimateTimes times({0, 40}, TimeAxis("days since 2001-01-01"), bounds);
        EXPECT_THAT(times.GetNotes(), ElementsAre("The bounds of the time axis are not understood and do not count."));
        EXPECT_EQ(times.GetCaption(1), "February 2001");
    }
}

// Thirty years of a model that counts from 0 are no climatology.
TEST(ClimateTimes, ModelYearsFrom0GoOn) {
    const TClimateTimes times({365 * 30 + 15, 365 * 30 + 45}, TimeAxis("days since 0000-01-01", "noleap"));
    EXPECT_FALSE(times.IsClimatology());
    EXPECT_THAT(CaptionsOf(times), ElementsAre("January 0030", "February 0030"));
}

TEST(ClimateTimes, EarlyYearsHaveFourDigits) {
    const TClimateAttributes paleo = TimeAxis("days since 0850-01-01", "noleap");
    EXPECT_THAT(CaptionsOf(TClimateTimes({15, 45}, paleo)), ElementsAre("January 0850", "February 0850"));
    EXPECT_THAT(CaptionsOf(TClimateTimes({0, 1}, paleo)), ElementsAre("1 January 0850", "2 January 0850"));
    EXPECT_THAT(CaptionsOf(TClimateTimes({0, 0.25}, paleo)),
                ElementsAre("1 January 0850 00:00", "1 January 0850 06:00"));
    EXPECT_THAT(CaptionsOf(TClimateTimes({0, 1, 2}, paleo, {0, 365, 0, 730, 334, 424})),
                ElementsAre("0850", "0850-0851", "December 0850-February 0851"));
    TClimateAttributes climatology = TimeAxis("days since 0001-01-01", "noleap");
    climatology.Set("climatology", QStringLiteral("c"));
    EXPECT_THAT(CaptionsOf(TClimateTimes({15}, climatology, {0, 29 * 365 + 31})), ElementsAre("January 0001-0030"));
}

TEST(ClimateTimes, YearsBeforeTheYear0HaveASign) {
    const TClimateAttributes axis = TimeAxis("days since -0044-01-01", "noleap");
    EXPECT_THAT(CaptionsOf(TClimateTimes({15, 45}, axis)), ElementsAre("January -0044", "February -0044"));
    EXPECT_THAT(CaptionsOf(TClimateTimes({0, 1, 2}, axis, {0, 365, 0, 730, 0, 50 * 365})),
                ElementsAre("-0044", "-0044 to -0043", "-0044-0005"));
}

TEST(ClimateTimes, BoundsMayFallWithTheirAxis) {
    const TClimateTimes times({45, 15.5}, TimeAxis("days since 2001-01-01"), {59, 31, 31, 0});
    EXPECT_THAT(CaptionsOf(times), ElementsAre("February 2001", "January 2001"));
    EXPECT_THAT(times.GetNotes(), IsEmpty());
}

} // namespace
} // namespace lmx
