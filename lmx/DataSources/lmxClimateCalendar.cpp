#include <lmx/DataSources/lmxClimateCalendar.h>

#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxText.h>

#include <algorithm>
#include <array>
#include <utility>

namespace lmx {

namespace {

using enum TClimateCalendarKind;

constexpr std::array<const char*, 12> MonthNames{"January", "February", "March",     "April",   "May",      "June",
                                                 "July",    "August",   "September", "October", "November", "December"};

constexpr std::int64_t FloorDiv(std::int64_t a, std::int64_t b) {
    const std::int64_t quotient = a / b;
    return a % b < 0 ? quotient - 1 : quotient;
}

constexpr std::int64_t FloorMod(std::int64_t a, std::int64_t b) {
    const std::int64_t rest = a % b;
    return rest < 0 ? rest + b : rest;
}

QString Padded(std::int64_t number, qsizetype digits) {
    return IntToStr(number).rightJustified(digits, u'0');
}

// Here ckStandard never occurs: it is resolved into the two calendars that it joins.

bool IsLeap(TClimateCalendarKind kind, std::int64_t year) {
    switch (kind) {
    case ckJulian:
        return year % 4 == 0;
    case ckProlepticGregorian:
        return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    default:
        return kind == ckAllLeap;
    }
}

std::int32_t LengthOfMonth(TClimateCalendarKind kind, std::int64_t year, std::int32_t month) {
    if (kind == ck360Day)
        return 30;
    if (month == 2)
        return IsLeap(kind, year) ? 29 : 28;
    return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

/// Days from the begin of the year 0 to that of `year`.
std::int64_t DaysBeforeYear(TClimateCalendarKind kind, std::int64_t year) {
    switch (kind) {
    case ckJulian:
        return 365 * year + FloorDiv(year + 3, 4);
    case ckProlepticGregorian:
        return 365 * year + FloorDiv(year + 3, 4) - FloorDiv(year + 99, 100) + FloorDiv(year + 399, 400);
    case ckAllLeap:
        return 366 * year;
    case ck360Day:
        return 360 * year;
    default:
        return 365 * year;
    }
}

std::int64_t YearOfDay(TClimateCalendarKind kind, std::int64_t day) {
    std::int64_t year = FloorDiv(day * 400, DaysBeforeYear(kind, 400));
    while (DaysBeforeYear(kind, year) > day)
        --year;
    while (DaysBeforeYear(kind, year + 1) <= day)
        ++year;
    return year;
}

std::int64_t DayOfDate(TClimateCalendarKind kind, const TClimateDate& date) {
    std::int64_t day = DaysBeforeYear(kind, date.Year) + date.Day - 1;
    for (std::int32_t month = 1; month < date.Month; ++month)
        day += LengthOfMonth(kind, date.Year, month);
    return day;
}

TClimateDate DateOfDay(TClimateCalendarKind kind, std::int64_t day) {
    TClimateDate date;
    date.Year = YearOfDay(kind, day);
    std::int64_t rest = day - DaysBeforeYear(kind, date.Year);
    while (rest >= LengthOfMonth(kind, date.Year, date.Month))
        rest -= LengthOfMonth(kind, date.Year, date.Month++);
    date.Day = static_cast<std::int32_t>(rest) + 1;
    return date;
}

// The change of calendars: the Julian 5 October 1582 was called the 15th.
constexpr std::int64_t ChangeYear = 1582;
constexpr std::int32_t ChangeMonth = 10;
constexpr std::int32_t LastJulianDay = 4;
constexpr std::int32_t FirstGregorianDay = 15;
constexpr std::int64_t GregorianLead = 2; ///< days by which the Gregorian year 0 begins after the Julian one

/// Which of its two calendars the standard one follows in a month; both agree on lengths in the month of the change.
TClimateCalendarKind RuleOf(TClimateCalendarKind kind, std::int64_t year, std::int32_t month, std::int32_t day) {
    if (kind != ckStandard)
        return kind;
    const bool isGregorian = std::pair(year, month) > std::pair(ChangeYear, ChangeMonth) ||
                             (year == ChangeYear && month == ChangeMonth && day > LastJulianDay);
    return isGregorian ? ckProlepticGregorian : ckJulian;
}

bool IsChange(TClimateCalendarKind kind, std::int64_t year, std::int32_t month) {
    return kind == ckStandard && year == ChangeYear && month == ChangeMonth;
}

} // namespace

QString TClimateDate::MonthName(std::int32_t month) {
    return month >= 1 && month <= 12 ? QString::fromLatin1(MonthNames[static_cast<std::size_t>(month - 1)]) : QString();
}

QString TClimateDate::YearText(std::int64_t year) {
    return year < 0 ? u'-' + Padded(-year, 4) : Padded(year, 4);
}

QString TClimateDate::ToTimeText() const {
    const std::int32_t seconds = Milliseconds / 1000;
    QString text = Padded(seconds / 3600, 2) + u':' + Padded(seconds / 60 % 60, 2);
    if (Milliseconds % 60'000 != 0)
        text += u':' + Padded(seconds % 60, 2);
    if (Milliseconds % 1000 != 0)
        text += u'.' + Padded(Milliseconds % 1000, 3);
    return text;
}

QString TClimateDate::ToIsoText() const {
    const QString time = ToTimeText();
    return YearText(Year) + u'-' + Padded(Month, 2) + u'-' + Padded(Day, 2) + u'T' + time +
           (Milliseconds % 60'000 == 0 ? QStringLiteral(":00") : QString());
}

QString TClimateDate::ToDayText() const {
    return IntToStr(Day) + u' ' + MonthName(Month) + u' ' + YearText(Year);
}

QString TClimateDate::ToReadableText() const {
    return ToDayText() + u' ' + ToTimeText();
}

std::optional<TClimateCalendar> TClimateCalendar::FromName(const QString& name) {
    static const std::pair<const char*, TClimateCalendarKind> names[] = {
        {"", ckStandard},          {"standard", ckStandard},
        {"gregorian", ckStandard}, {"julian", ckJulian},
        {"noleap", ckNoLeap},      {"365_day", ckNoLeap},
        {"all_leap", ckAllLeap},   {"366_day", ckAllLeap},
        {"360_day", ck360Day},     {"proleptic_gregorian", ckProlepticGregorian},
    };
    const QString wanted = Trim(name);
    for (const auto& [known, kind] : names)
        if (SameText(wanted, QString::fromLatin1(known)))
            return TClimateCalendar(kind);
    return std::nullopt;
}

QString TClimateCalendar::GetName() const {
    switch (FKind) {
    case ckProlepticGregorian:
        return QStringLiteral("proleptic_gregorian");
    case ckJulian:
        return QStringLiteral("julian");
    case ckNoLeap:
        return QStringLiteral("noleap");
    case ckAllLeap:
        return QStringLiteral("all_leap");
    case ck360Day:
        return QStringLiteral("360_day");
    default:
        return QStringLiteral("standard");
    }
}

bool TClimateCalendar::IsLeapYear(std::int64_t year) const {
    return IsLeap(RuleOf(FKind, year, 2, 1), year);
}

std::int32_t TClimateCalendar::LastDay(std::int64_t year, std::int32_t month) const {
    return LengthOfMonth(RuleOf(FKind, year, month, 1), year, month);
}

std::int32_t TClimateCalendar::DaysInMonth(std::int64_t year, std::int32_t month) const {
    if (month < 1 || month > 12)
        return 0;
    const std::int32_t leftOut = IsChange(FKind, year, month) ? FirstGregorianDay - LastJulianDay - 1 : 0;
    return LastDay(year, month) - leftOut;
}

bool TClimateCalendar::IsDate(const TClimateDate& date) const {
    if (date.Year < -MaxYear || date.Year > MaxYear || date.Month < 1 || date.Month > 12)
        return false;
    if (date.Day < 1 || date.Day > LastDay(date.Year, date.Month))
        return false;
    if (IsChange(FKind, date.Year, date.Month) && date.Day > LastJulianDay && date.Day < FirstGregorianDay)
        return false;
    return date.Milliseconds >= 0 && date.Milliseconds < DayMilliseconds;
}

std::int64_t TClimateCalendar::DaysBefore(const TClimateDate& date) const {
    const TClimateCalendarKind rule = RuleOf(FKind, date.Year, date.Month, date.Day);
    const bool isLate = FKind == ckStandard && rule == ckProlepticGregorian;
    return DayOfDate(rule, date) + (isLate ? GregorianLead : 0);
}

std::optional<std::int64_t> TClimateCalendar::ToMilliseconds(const TClimateDate& date) const {
    if (!IsDate(date))
        return std::nullopt;
    return DaysBefore(date) * DayMilliseconds + date.Milliseconds;
}

TClimateDate TClimateCalendar::FromMilliseconds(std::int64_t milliseconds) const {
    const std::int64_t day = FloorDiv(milliseconds, DayMilliseconds);
    TClimateDate date;
    if (FKind != ckStandard)
        date = DateOfDay(FKind, day);
    else if (day >= DaysBefore({ChangeYear, ChangeMonth, FirstGregorianDay}))
        date = DateOfDay(ckProlepticGregorian, day - GregorianLead);
    else
        date = DateOfDay(ckJulian, day);
    date.Milliseconds = static_cast<std::int32_t>(FloorMod(milliseconds, DayMilliseconds));
    return date;
}

std::optional<TClimateDate> TClimateCalendar::AddMonths(const TClimateDate& date, std::int64_t months) const {
    constexpr std::int64_t most = 2 * 12 * MaxYear;
    if (!IsDate(date) || months < -most || months > most)
        return std::nullopt;
    const std::int64_t index = date.Year * 12 + (date.Month - 1) + months;
    TClimateDate result = date;
    result.Year = FloorDiv(index, 12);
    result.Month = static_cast<std::int32_t>(FloorMod(index, 12)) + 1;
    if (result.Year < -MaxYear || result.Year > MaxYear)
        return std::nullopt;
    result.Day = std::min(result.Day, LastDay(result.Year, result.Month));
    if (!IsDate(result))
        result.Day = FirstGregorianDay;
    return result;
}

} // namespace lmx
