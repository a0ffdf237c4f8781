#include <lmx/DataSources/lmxClimateTimeUnits.h>

#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxText.h>

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <utility>

namespace lmx {

namespace {

/// Reads a text from the left.
class TScanner {
public:
    explicit TScanner(QStringView text) : FText(text) {}

    bool IsAtEnd() const { return FText.isEmpty(); }
    void SkipBlanks() {
        while (!FText.isEmpty() && FText.front().isSpace())
            FText = FText.mid(1);
    }
    bool Take(QChar wanted) {
        if (FText.isEmpty() || FText.front().toUpper() != wanted.toUpper())
            return false;
        FText = FText.mid(1);
        return true;
    }
    bool StartsWithDigit() const { return !FText.isEmpty() && IsDigit(FText.front()); }
    QStringView Rest() const { return FText; }

    /// A whole number of at most nine digits; false, and nothing is taken, if there is none.
    bool TakeNumber(std::int64_t& number, qsizetype* digits = nullptr) {
        qsizetype length = 0;
        std::int64_t value = 0;
        for (; length < FText.size() && IsDigit(FText[length]); ++length) {
            if (length == 9)
                return false;
            value = 10 * value + (FText[length].unicode() - u'0');
        }
        if (length == 0)
            return false;
        FText = FText.mid(length);
        number = value;
        if (digits)
            *digits = length;
        return true;
    }

    /// Digits after a decimal point as milliseconds, rounded; digits beyond the ninth add nothing. None are 0: "12."
    /// stands in files.
    std::int64_t TakeFraction() {
        std::int64_t nanoseconds = 0;
        qsizetype length = 0;
        for (; length < FText.size() && IsDigit(FText[length]); ++length)
            if (length < 9)
                nanoseconds = 10 * nanoseconds + (FText[length].unicode() - u'0');
        for (qsizetype i = length; i < 9; ++i)
            nanoseconds *= 10;
        FText = FText.mid(length);
        return Round(static_cast<extended>(nanoseconds) / 1'000'000);
    }

private:
    static bool IsDigit(QChar c) { return c >= u'0' && c <= u'9'; }

    QStringView FText;
};

/// A reference as it is written: a date, and what must be added to it to be in UTC.
struct TReference {
    TClimateDate Date;
    std::int64_t Milliseconds = 0;
};

bool TakeDate(TScanner& text, TClimateDate& date) {
    const bool isNegative = text.Take(u'-');
    if (!isNegative)
        text.Take(u'+');
    std::int64_t month = 1;
    std::int64_t day = 1;
    qsizetype digits = 0;
    if (!text.TakeNumber(date.Year, &digits))
        return false;
    const bool isParted = text.Take(u'-');
    if (digits > 4 && !isParted) { // "20000131", and no year
        if (digits != 8)
            return false;
        day = date.Year % 100;
        month = date.Year / 100 % 100;
        date.Year /= 10'000;
    }
    if (isNegative)
        date.Year = -date.Year;
    if (isParted && (!text.TakeNumber(month) || (text.Take(u'-') && !text.TakeNumber(day))))
        return false;
    if (month > 12 || day > 31)
        return false;
    date.Month = static_cast<std::int32_t>(month);
    date.Day = static_cast<std::int32_t>(day);
    return true;
}

/// Hours, minutes and seconds; true as well if there are none.
bool TakeTime(TScanner& text, std::int64_t& milliseconds) {
    std::int64_t hours = 0;
    std::int64_t minutes = 0;
    std::int64_t seconds = 0;
    std::int64_t fraction = 0;
    if (!text.StartsWithDigit())
        return true;
    if (!text.TakeNumber(hours))
        return false;
    if (text.Take(u':') && !text.TakeNumber(minutes))
        return false;
    if (text.Take(u':') && !text.TakeNumber(seconds))
        return false;
    if (text.Take(u'.'))
        fraction = text.TakeFraction();
    if (hours > 23 || minutes > 59 || seconds > 59)
        return false;
    milliseconds = ((hours * 60 + minutes) * 60 + seconds) * 1000 + fraction;
    return true;
}

/// What is to be subtracted; 0 if no zone is named.
bool TakeZone(TScanner& text, std::int64_t& milliseconds) {
    milliseconds = 0;
    const QString name = text.Rest().toString();
    if (name.isEmpty() || SameText(name, u"Z") || SameText(name, u"UTC") || SameText(name, u"GMT"))
        return true;
    const bool isWest = text.Take(u'-');
    if (!isWest)
        text.Take(u'+');
    std::int64_t hours = 0;
    std::int64_t minutes = 0;
    qsizetype digits = 0;
    if (!text.TakeNumber(hours, &digits) || digits > 4)
        return false;
    if (digits > 2) {
        minutes = hours % 100;
        hours /= 100;
    } else if (text.Take(u':') && !text.TakeNumber(minutes)) {
        return false;
    }
    if (!text.IsAtEnd() || hours > 14 || minutes > 59)
        return false;
    milliseconds = (hours * 60 + minutes) * 60'000 * (isWest ? -1 : 1);
    return true;
}

std::optional<TReference> ParseReference(QStringView view) {
    TScanner text(view);
    TReference reference;
    std::int64_t time = 0;
    std::int64_t zone = 0;
    if (!TakeDate(text, reference.Date))
        return std::nullopt;
    if (!text.Take(u'T'))
        text.SkipBlanks();
    if (!TakeTime(text, time))
        return std::nullopt;
    text.SkipBlanks();
    if (!TakeZone(text, zone))
        return std::nullopt;
    reference.Milliseconds = time - zone;
    return reference;
}

struct TUnitRow {
    const char* Names; ///< between blanks
    long double Milliseconds;
    std::int32_t Months;
};

const TUnitRow* FindUnit(const QString& name) {
    static const TUnitRow rows[] = {
        {"nanosecond nanoseconds nanosec nanosecs nsec nsecs ns", 1e-6L, 0},
        {"microsecond microseconds microsec microsecs usec usecs us", 1e-3L, 0},
        {"millisecond milliseconds millisec millisecs msec msecs ms", 1, 0},
        {"second seconds sec secs s", 1000, 0},
        {"minute minutes min mins", 60'000, 0},
        {"hour hours hr hrs h", 3'600'000, 0},
        {"day days d", 86'400'000, 0},
        {"week weeks", 604'800'000, 0},
        {"month months mon mons", 0, 1},
        {"year years yr yrs", 0, 12},
    };
    for (const TUnitRow& row : rows)
        for (const QString& known : QString::fromLatin1(row.Names).split(u' '))
            if (SameText(name, known))
                return &row;
    return nullptr;
}

/// Whether singles cannot tell a number from one that they hold.
bool IsSameSingle(double number, double single) {
    return static_cast<double>(static_cast<float>(number)) == single;
}

} // namespace

std::optional<TClimateTimeUnits> TClimateTimeUnits::Parse(const QString& text, const TClimateCalendar& calendar) {
    constexpr qsizetype longest = 200; // of texts with a meaning
    const QString simple = text.left(longest + 1).simplified();
    const qsizetype nameEnd = simple.indexOf(u' ');
    const qsizetype sinceEnd = simple.indexOf(u' ', nameEnd + 1);
    if (text.size() > longest || nameEnd < 0 || sinceEnd < 0)
        return std::nullopt;
    if (!SameText(QStringView(simple).mid(nameEnd + 1, sinceEnd - nameEnd - 1), u"since"))
        return std::nullopt;
    const TUnitRow* const unit = FindUnit(simple.left(nameEnd));
    const auto reference = ParseReference(QStringView(simple).mid(sinceEnd + 1));
    if (!unit || !reference)
        return std::nullopt;
    const auto midnight = calendar.ToMilliseconds(reference->Date);
    if (!midnight)
        return std::nullopt;

    TClimateTimeUnits units;
    units.FCalendar = calendar;
    units.FReferenceMilliseconds = *midnight + reference->Milliseconds;
    units.FReference = calendar.FromMilliseconds(units.FReferenceMilliseconds);
    units.FUnitMilliseconds = unit->Milliseconds;
    units.FUnitMonths = unit->Months;
    units.FIsYearless = reference->Date.Year == 0;
    return units;
}

std::optional<TClimateDate> TClimateTimeUnits::DateOf(double value) const {
    if (!std::isfinite(value))
        return std::nullopt;
    if (FUnitMonths != 0)
        return DateOfMonths(value);
    const long double milliseconds = static_cast<long double>(value) * FUnitMilliseconds;
    constexpr long double most = 9e18L; // the sum with a reference is tested below
    if (!(std::abs(milliseconds) < most))
        return std::nullopt;
    const long double sum = static_cast<long double>(Round(milliseconds)) + FReferenceMilliseconds;
    if (!(std::abs(sum) < most))
        return std::nullopt;
    const TClimateDate date = FCalendar.FromMilliseconds(Round(sum));
    return FCalendar.IsDate(date) ? std::optional(date) : std::nullopt;
}

std::vector<double> TClimateTimeUnits::MeantBy(std::vector<double> singles) const {
    constexpr std::int32_t minute = 60;
    constexpr std::int32_t hour = 60 * minute;
    if (FUnitMonths != 0)
        return singles;
    for (const std::int32_t seconds : {24 * hour, 12 * hour, 6 * hour, 3 * hour, hour, 30 * minute, 15 * minute,
                                       10 * minute, 5 * minute, minute, 30, 15, 10, 5, 1}) {
        const long double step = seconds * 1000.0L / FUnitMilliseconds;
        std::vector<double> meant;
        for (const double single : singles)
            meant.push_back(static_cast<double>(std::nearbyint(static_cast<long double>(single) / step) * step));
        if (std::equal(meant.begin(), meant.end(), singles.begin(), IsSameSingle))
            return meant;
    }
    return singles;
}

std::optional<TClimateDate> TClimateTimeUnits::DateOfMonths(double value) const {
    constexpr double most = 2.0 * 12 * TClimateCalendar::MaxYear;
    if (!(std::abs(value) < most))
        return std::nullopt;
    const std::int64_t whole = Floor(value);
    const auto begin = FCalendar.AddMonths(FReference, whole * FUnitMonths);
    if (!begin || static_cast<double>(whole) == value)
        return begin;
    const auto end = FCalendar.AddMonths(FReference, (whole + 1) * FUnitMonths);
    if (!end)
        return std::nullopt;
    const std::int64_t from = *FCalendar.ToMilliseconds(*begin);
    const std::int64_t span = *FCalendar.ToMilliseconds(*end) - from;
    const long double part = static_cast<long double>(value) - static_cast<long double>(whole);
    return FCalendar.FromMilliseconds(from + Round(part * static_cast<long double>(span)));
}

} // namespace lmx
