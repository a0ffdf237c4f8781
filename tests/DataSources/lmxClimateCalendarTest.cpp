#include <lmx/DataSources/lmxClimateCalendar.h>

#include <tests/Support/Printers.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <tuple>

namespace lmx {
namespace {

using enum TClimateCalendarKind;

constexpr std::int64_t Day = TClimateCalendar::DayMilliseconds;

const TClimateCalendarKind AllKinds[] = {ckStandard, ckProlepticGregorian, ckJulian, ckNoLeap, ckAllLeap, ck360Day};

struct TDayRow {
    const char* Name;
    TClimateCalendarKind Kind;
    TClimateDate Date;
    std::int64_t Days; ///< from the begin of the year 0
};

class ClimateCalendarDays : public testing::TestWithParam<TDayRow> {};

TEST_P(ClimateCalendarDays, CountBothWays) {
    const TClimateCalendar calendar(GetParam().Kind);
    EXPECT_TRUE(calendar.IsDate(GetParam().Date));
    EXPECT_EQ(calendar.ToMilliseconds(GetParam().Date), GetParam().Days * Day + GetParam().Date.Milliseconds);
    EXPECT_EQ(calendar.FromMilliseconds(GetParam().Days * Day + GetParam().Date.Milliseconds), GetParam().Date);
}

// From Julian day numbers: the Julian year 0 begins on day 1721058, the proleptic Gregorian one on 1721060.
INSTANTIATE_TEST_SUITE_P(
    Rows, ClimateCalendarDays,
    testing::Values(TDayRow{"StandardLastJulian", ckStandard, {1582, 10, 4}, 578102},
                    TDayRow{"StandardFirstGregorian", ckStandard, {1582, 10, 15}, 578103},
                    TDayRow{"StandardYear1", ckStandard, {1, 1, 1}, 366},
                    TDayRow{"StandardDayNumber0", ckStandard, {-4712, 1, 1}, -1721058},
                    TDayRow{"StandardJulianLeapDay", ckStandard, {1500, 2, 29}, 547934},
                    TDayRow{"Standard2000", ckStandard, {2000, 2, 29}, 730546},
                    TDayRow{"StandardEpoch", ckStandard, {1970, 1, 1, 1}, 719530},
                    TDayRow{"ProlepticLastBefore0", ckProlepticGregorian, {-1, 12, 31}, -1},
                    TDayRow{"ProlepticLeapDayBefore0", ckProlepticGregorian, {-400, 2, 29}, -146038},
                    TDayRow{"ProlepticChange", ckProlepticGregorian, {1582, 10, 15}, 578101},
                    TDayRow{"Proleptic2024", ckProlepticGregorian, {2024, 12, 31}, 739616},
                    TDayRow{"Julian1582", ckJulian, {1582, 10, 15}, 578113},
                    TDayRow{"Julian2000", ckJulian, {2000, 2, 29}, 730559},
                    TDayRow{"NoLeap", ckNoLeap, {2000, 3, 1}, 2000 * 365 + 59},
                    TDayRow{"NoLeapBefore0", ckNoLeap, {-1, 12, 31}, -1},
                    TDayRow{"AllLeap", ckAllLeap, {2001, 2, 29}, 2001 * 366 + 59},
                    TDayRow{"Months30", ck360Day, {1850, 2, 30, 43'200'000}, 1850 * 360 + 59},
                    TDayRow{"FarYear", ck360Day, {200'000'000, 12, 30}, 200'000'000LL * 360 + 359}),
    [](const auto& row) { return row.param.Name; });

TEST(ClimateCalendar, EveryDayFollowsTheOneBefore) {
    for (const TClimateCalendarKind kind : AllKinds) {
        const TClimateCalendar calendar(kind);
        for (const std::int64_t from : {-2'000LL, 576'000LL, 692'000LL, 729'000LL}) {
            TClimateDate before = calendar.FromMilliseconds((from - 1) * Day);
            for (std::int64_t day = from; day < from + 4'000; ++day) {
                const TClimateDate date = calendar.FromMilliseconds(day * Day);
                ASSERT_LT(before, date);
                ASSERT_TRUE(calendar.IsDate(date));
                ASSERT_EQ(calendar.ToMilliseconds(date), day * Day);
                const bool isChange = date.Year == 1582 && date.Month == 10;
                ASSERT_TRUE(isChange || date.Day == 1 || date.Day == before.Day + 1);
                before = date;
            }
        }
    }
}

TEST(ClimateCalendar, AnyNumberOfMillisecondsIsADate) {
    for (const TClimateCalendarKind kind : AllKinds)
        for (const std::int64_t number :
             {std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()}) {
            const TClimateDate date = TClimateCalendar(kind).FromMilliseconds(number);
            EXPECT_GE(date.Day, 1);
            EXPECT_LE(date.Month, 12);
            EXPECT_GT(date.Year < 0 ? -date.Year : date.Year, TClimateCalendar::MaxYear);
        }
}

TEST(ClimateCalendar, KnowsWhichDatesThereAre) {
    const TClimateCalendar standard;
    for (std::int32_t day = 5; day <= 14; ++day)
        EXPECT_FALSE(standard.IsDate({1582, 10, day}));
    EXPECT_TRUE(standard.IsDate({1500, 2, 29}));
    EXPECT_FALSE(standard.IsDate({1700, 2, 29}));
    EXPECT_FALSE(standard.IsDate({1900, 2, 29}));
    EXPECT_TRUE(standard.IsDate({0, 2, 29}));
    EXPECT_TRUE(TClimateCalendar(ckProlepticGregorian).IsDate({1582, 10, 10}));
    EXPECT_FALSE(TClimateCalendar(ckProlepticGregorian).IsDate({1500, 2, 29}));
    EXPECT_TRUE(TClimateCalendar(ckJulian).IsDate({1900, 2, 29}));
    EXPECT_FALSE(TClimateCalendar(ckNoLeap).IsDate({2000, 2, 29}));
    EXPECT_TRUE(TClimateCalendar(ckAllLeap).IsDate({2001, 2, 29}));
    EXPECT_TRUE(TClimateCalendar(ck360Day).IsDate({2001, 2, 30}));
    EXPECT_FALSE(TClimateCalendar(ck360Day).IsDate({2001, 1, 31}));
    for (const TClimateDate& date :
         {TClimateDate{2000, 0, 1}, TClimateDate{2000, 13, 1}, TClimateDate{2000, 1, 0}, TClimateDate{2000, 1, 32},
          TClimateDate{2000, 1, 1, -1}, TClimateDate{2000, 1, 1, 86'400'000}, TClimateDate{200'000'001, 1, 1},
          TClimateDate{std::numeric_limits<std::int64_t>::min(), 1, 1}}) {
        EXPECT_FALSE(standard.IsDate(date));
        EXPECT_EQ(standard.ToMilliseconds(date), std::nullopt);
        EXPECT_EQ(standard.AddMonths(date, 1), std::nullopt);
    }
}

TEST(ClimateCalendar, MonthsHaveTheirDays) {
    EXPECT_EQ(TClimateCalendar().DaysInMonth(1582, 10), 21);
    EXPECT_EQ(TClimateCalendar().DaysInMonth(1900, 2), 28);
    EXPECT_EQ(TClimateCalendar().DaysInMonth(1500, 2), 29);
    EXPECT_EQ(TClimateCalendar(ckAllLeap).DaysInMonth(1900, 2), 29);
    EXPECT_EQ(TClimateCalendar(ck360Day).DaysInMonth(1900, 12), 30);
    EXPECT_EQ(TClimateCalendar().DaysInMonth(1900, 0), 0);
    EXPECT_EQ(TClimateCalendar().DaysInMonth(1900, 13), 0);
    EXPECT_TRUE(TClimateCalendar().IsLeapYear(1500));
    EXPECT_FALSE(TClimateCalendar().IsLeapYear(1900));
}

TEST(ClimateCalendar, AddsMonthsOfTheCalendar) {
    const TClimateCalendar standard;
    EXPECT_EQ(standard.AddMonths({2000, 1, 31, 5}, 1), (TClimateDate{2000, 2, 29, 5}));
    EXPECT_EQ(standard.AddMonths({2000, 3, 31}, -1), (TClimateDate{2000, 2, 29}));
    EXPECT_EQ(standard.AddMonths({2000, 1, 15}, -13), (TClimateDate{1998, 12, 15}));
    EXPECT_EQ(standard.AddMonths({0, 1, 15}, -1), (TClimateDate{-1, 12, 15}));
    EXPECT_EQ(standard.AddMonths({1582, 9, 10}, 1), (TClimateDate{1582, 10, 15}));
    EXPECT_EQ(standard.AddMonths({1582, 9, 30}, 1), (TClimateDate{1582, 10, 30}));
    EXPECT_EQ(TClimateCalendar(ck360Day).AddMonths({2000, 1, 30}, 1), (TClimateDate{2000, 2, 30}));
    EXPECT_EQ(TClimateCalendar(ckNoLeap).AddMonths({2000, 1, 30}, 1), (TClimateDate{2000, 2, 28}));
    EXPECT_EQ(standard.AddMonths({2000, 1, 1}, std::numeric_limits<std::int64_t>::max()), std::nullopt);
    EXPECT_EQ(standard.AddMonths({2000, 1, 1}, std::numeric_limits<std::int64_t>::min()), std::nullopt);
    EXPECT_EQ(standard.AddMonths({200'000'000, 12, 1}, 1), std::nullopt);
}

TEST(ClimateCalendar, GoesByItsNames) {
    const std::tuple<const char*, TClimateCalendarKind, const char*> rows[] = {
        {"", ckStandard, "standard"},
        {"standard", ckStandard, "standard"},
        {" Gregorian ", ckStandard, "standard"},
        {"PROLEPTIC_GREGORIAN", ckProlepticGregorian, "proleptic_gregorian"},
        {"julian", ckJulian, "julian"},
        {"noleap", ckNoLeap, "noleap"},
        {"365_day", ckNoLeap, "noleap"},
        {"all_leap", ckAllLeap, "all_leap"},
        {"366_day", ckAllLeap, "all_leap"},
        {"360_day", ck360Day, "360_day"},
    };
    for (const auto& [name, kind, canonical] : rows) {
        const auto calendar = TClimateCalendar::FromName(QString::fromLatin1(name));
        ASSERT_TRUE(calendar) << name;
        EXPECT_EQ(calendar->GetKind(), kind) << name;
        EXPECT_EQ(calendar->GetName(), QString::fromLatin1(canonical)) << name;
    }
    EXPECT_FALSE(TClimateCalendar::FromName("none"));
    EXPECT_FALSE(TClimateCalendar::FromName("365 day"));
}

TEST(ClimateDate, HasTexts) {
    const TClimateDate date{1850, 2, 30, 6 * 3'600'000};
    EXPECT_EQ(date.ToIsoText(), "1850-02-30T06:00:00");
    EXPECT_EQ(date.ToDayText(), "30 February 1850");
    EXPECT_EQ(date.ToReadableText(), "30 February 1850 06:00");
    const TClimateDate fine{-45, 12, 1, 3'661'250};
    EXPECT_EQ(fine.ToIsoText(), "-0045-12-01T01:01:01.250");
    EXPECT_EQ(fine.ToReadableText(), "1 December -0045 01:01:01.250");
    EXPECT_EQ((TClimateDate{7, 1, 2, 15'000}.ToTimeText()), "00:00:15");
    EXPECT_EQ((TClimateDate{7, 1, 2, 7}.ToIsoText()), "0007-01-02T00:00:00.007");
    EXPECT_EQ((TClimateDate{12345, 1, 2}.ToIsoText()), "12345-01-02T00:00:00");
    EXPECT_EQ((TClimateDate{850, 2, 28}.ToDayText()), "28 February 0850");
    EXPECT_EQ(TClimateDate::MonthName(12), "December");
    EXPECT_EQ(TClimateDate::MonthName(0), "");
    EXPECT_EQ(TClimateDate::MonthName(13), "");
}

TEST(ClimateDate, YearsHaveFourDigitsOrMore) {
    EXPECT_EQ(TClimateDate::YearText(0), "0000");
    EXPECT_EQ(TClimateDate::YearText(1), "0001");
    EXPECT_EQ(TClimateDate::YearText(850), "0850");
    EXPECT_EQ(TClimateDate::YearText(1850), "1850");
    EXPECT_EQ(TClimateDate::YearText(20'000), "20000");
    EXPECT_EQ(TClimateDate::YearText(-1), "-0001");
    EXPECT_EQ(TClimateDate::YearText(-21'000), "-21000");
}

} // namespace
} // namespace lmx
