#pragma once

#include <lmx/DataSources/lmxClimateCalendar.h>
#include <lmx/DataSources/lmxDataSourcesExport.h>

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace lmx {

/// The unit of a time axis: "<unit> since <reference>" in a calendar. A value; any thread.
///
/// Months and years are those of the calendar: 1.5 months since 15 January is half the way from 15 February to
/// 15 March. UDUNITS, which has them as fixed spans, is not what writers of such units mean.
class LMX_DATASOURCES_EXPORT TClimateTimeUnits {
public:
    /// Units from nanoseconds to weeks, months and years, in one or many, by name or as usually shortened, in any case.
    /// The reference is a year (of one digit or more, with a sign or without), month and day, of which the last ones
    /// may be missing (a year alone then has at most four digits), or all three as "20000131"; then, after blanks or a
    /// T, hours, minutes and seconds with a fraction, likewise; then Z, UTC, GMT or an offset such as "+12:00",
    /// "-0330", "+5". None for any other text, and for a reference that is no date of the calendar.
    static std::optional<TClimateTimeUnits> Parse(const QString& text, const TClimateCalendar& calendar);

    const TClimateCalendar& GetCalendar() const { return FCalendar; }
    /// In UTC.
    const TClimateDate& GetReference() const { return FReference; }
    /// Whether the reference, as it is written, lies in the year 0: by an old habit the years then mean nothing.
    bool IsYearless() const { return FIsYearless; }

    /// The date of a number of the axis, to the nearest millisecond. None for NaN, infinities and what lies beyond the
    /// calendar.
    std::optional<TClimateDate> DateOf(double value) const;

    /// What the writer of an axis in single precision meant: in the middle of the 21st century singles tell days since
    /// 1800 to eleven minutes. Each number becomes the multiple of a day, or else of 12, 6, 3 hours, 1 hour, 30, 15,
    /// 10, 5 minutes, 1 minute, 30, 15, 10, 5 seconds or 1 second since the reference, of the longest of which every
    /// number has a multiple that is the same single. Without such a step, and for months and years, all stay.
    /// @param singles numbers that singles hold exactly; others stay
    std::vector<double> MeantBy(std::vector<double> singles) const;

private:
    TClimateTimeUnits() = default;

    std::optional<TClimateDate> DateOfMonths(double value) const;

    TClimateCalendar FCalendar;
    TClimateDate FReference;
    std::int64_t FReferenceMilliseconds = 0;
    long double FUnitMilliseconds = 0; ///< 0 if the unit is of months
    std::int32_t FUnitMonths = 0;
    bool FIsYearless = false;
};

} // namespace lmx
