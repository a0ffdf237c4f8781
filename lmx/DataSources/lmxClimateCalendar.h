#pragma once

#include <lmx/DataSources/lmxDataSourcesExport.h>

#include <QString>

#include <compare>
#include <cstdint>
#include <optional>

namespace lmx {

/// A date of some calendar, to the millisecond. Years are astronomical: 0 stands before 1, -1 before 0.
struct LMX_DATASOURCES_EXPORT TClimateDate {
    std::int64_t Year = 1;
    std::int32_t Month = 1;        ///< 1 to 12
    std::int32_t Day = 1;          ///< from 1
    std::int32_t Milliseconds = 0; ///< since midnight, below 86,400,000

    friend bool operator==(const TClimateDate&, const TClimateDate&) = default;
    // NOLINTNEXTLINE(modernize-use-nullptr): the 0 that the compiler compares with is no pointer
    friend auto operator<=>(const TClimateDate&, const TClimateDate&) = default;

    /// "1850-02-30T06:00:00", with ".250" after the seconds if they are not whole.
    QString ToIsoText() const;
    /// "30 February 1850".
    QString ToDayText() const;
    /// "30 February 1850 06:00", with seconds ("06:00:15") if there are any, and milliseconds likewise.
    QString ToReadableText() const;
    /// "06:00", as the end of ToReadableText.
    QString ToTimeText() const;

    /// "January" for 1. Empty for what is no month.
    static QString MonthName(std::int32_t month);
    /// "1850", "0001" for 1, "-0044" for -44: at least four digits, which no day of a month has, and a minus sign
    /// before the year 0. All texts with years have them so.
    static QString YearText(std::int64_t year);
};

enum class TClimateCalendarKind { ckStandard, ckProlepticGregorian, ckJulian, ckNoLeap, ckAllLeap, ck360Day };

/// One of the calendars of the CF conventions: which dates there are, and how many milliseconds lie between them. A
/// value; any thread.
///
/// The standard calendar is the Julian one to 4 October 1582 and the Gregorian one from the next day, the 15th. Every
/// calendar has a year 0, and its leap years before that follow the same rule.
class LMX_DATASOURCES_EXPORT TClimateCalendar {
public:
    explicit TClimateCalendar(TClimateCalendarKind kind = TClimateCalendarKind::ckStandard) : FKind(kind) {}

    /// By its CF name in any case, blanks around it aside: "standard", "gregorian", "proleptic_gregorian", "julian",
    /// "noleap", "365_day", "all_leap", "366_day", "360_day". An empty name is the standard one; none for any other.
    static std::optional<TClimateCalendar> FromName(const QString& name);

    TClimateCalendarKind GetKind() const { return FKind; }
    QString GetName() const; ///< the first of its CF names

    bool IsLeapYear(std::int64_t year) const;
    /// Days that the month has; 21 for October 1582 of the standard calendar. 0 for what is no month.
    std::int32_t DaysInMonth(std::int64_t year, std::int32_t month) const;
    /// Whether the calendar has that date, within MaxYear either way.
    bool IsDate(const TClimateDate& date) const;

    /// Milliseconds from the midnight on which the year 0 begins. None if it is no date of the calendar.
    std::optional<std::int64_t> ToMilliseconds(const TClimateDate& date) const;
    /// The inverse, for any number.
    TClimateDate FromMilliseconds(std::int64_t milliseconds) const;

    /// The same day and time so many months later, or earlier. A month that is too short gives its last day, and the
    /// days that the standard calendar leaves out give the 15th. None beyond MaxYear, or if `date` is none.
    std::optional<TClimateDate> AddMonths(const TClimateDate& date, std::int64_t months) const;

    static constexpr std::int64_t MaxYear = 200'000'000; ///< so that milliseconds fit into 64 bits
    static constexpr std::int32_t DayMilliseconds = 86'400'000;

    friend bool operator==(const TClimateCalendar&, const TClimateCalendar&) = default;

private:
    std::int32_t LastDay(std::int64_t year, std::int32_t month) const;
    std::int64_t DaysBefore(const TClimateDate& date) const;

    TClimateCalendarKind FKind;
};

} // namespace lmx
