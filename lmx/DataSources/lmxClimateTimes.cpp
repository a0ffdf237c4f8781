#include <lmx/DataSources/lmxClimateTimes.h>

#include <lmx/Runtime/lmxNumberText.h>

#include <algorithm>
#include <utility>

namespace lmx {

namespace {

QString QuotedStart(const QString& text) {
    constexpr qsizetype most = 100;
    return u'"' + text.left(most) + u'"';
}

bool IsMonthBegin(const TClimateDate& date) {
    return date.Day == 1 && date.Milliseconds == 0;
}

std::int64_t MonthIndex(const TClimateDate& date) {
    return date.Year * 12 + date.Month;
}

/// A minus sign behind a hyphen would be one mark too many.
QString YearsText(std::int64_t from, std::int64_t to) {
    const QString last = TClimateDate::YearText(to);
    return from == to ? last
                      : TClimateDate::YearText(from) + (to < 0 ? QStringLiteral(" to ") : QStringLiteral("-")) + last;
}

QString MonthText(const TClimateDate& date) {
    return TClimateDate::MonthName(date.Month) + u' ' + TClimateDate::YearText(date.Year);
}

QString DayOfMonthText(const TClimateDate& date) {
    return IntToStr(date.Day) + u' ' + TClimateDate::MonthName(date.Month);
}

/// Whole months; `last` is a moment of the last one.
QString MonthsText(const TClimateDate& first, const TClimateDate& last) {
    if (first.Month == 1 && last.Month == 12)
        return YearsText(first.Year, last.Year);
    if (MonthIndex(first) == MonthIndex(last))
        return MonthText(first);
    if (first.Year == last.Year)
        return TClimateDate::MonthName(first.Month) + u'-' + MonthText(last);
    return MonthText(first) + u'-' + MonthText(last);
}

} // namespace

TClimateTimes::TClimateTimes(std::vector<double> values, const TClimateAttributes& attributes,
                             std::vector<double> bounds, bool areSingles)
    : FValues(std::move(values)),
      FAreSingles(areSingles) {
    FIsClimatology = attributes.Has(QStringLiteral("climatology")) || attributes.Has(QStringLiteral("modulo"));
    FHasDates = ReadDates(attributes, bounds);
    if (!FHasDates) {
        FDates.clear();
        FSpans.clear();
        FIsClimatology = false;
        return;
    }
    FindHabits();
}

bool TClimateTimes::ReadDates(const TClimateAttributes& attributes, const std::vector<double>& bounds) {
    const QString byNumber = QStringLiteral(" Steps are told by number.");
    const QString calendarName = attributes.Text(QStringLiteral("calendar"));
    const auto calendar = TClimateCalendar::FromName(calendarName);
    if (!calendar) {
        FNotes +=
            QStringLiteral("The calendar %1 of the time axis is not known.").arg(QuotedStart(calendarName)) + byNumber;
        return false;
    }
    if (attributes.Has(QStringLiteral("month_lengths"))) {
        FNotes += QStringLiteral("The calendar of the time axis has months of its own.") + byNumber;
        return false;
    }
    FCalendar = *calendar;
    const QString unitsText = attributes.Text(QStringLiteral("units"));
    const auto units = TClimateTimeUnits::Parse(unitsText, FCalendar);
    if (!units) {
        FNotes +=
            (unitsText.isEmpty()
                 ? QStringLiteral("The time axis has no units.")
                 : QStringLiteral("The units %1 of the time axis are not understood.").arg(QuotedStart(unitsText))) +
            byNumber;
        return false;
    }
    FDates.reserve(FValues.size());
    for (const double value : FAreSingles ? units->MeantBy(FValues) : FValues) {
        const auto date = units->DateOf(value);
        if (!date) {
            FNotes += QStringLiteral("A value of the time axis is no date.") + byNumber;
            return false;
        }
        FDates.push_back(*date);
    }
    // Model years that are counted from 0 go on.
    const bool isYearless = units->IsYearless() && std::all_of(FDates.begin(), FDates.end(), [](const auto& date) {
                                return date.Year >= -1 && date.Year <= 1;
                            });
    FHasYears = !isYearless;
    FIsClimatology = FIsClimatology || isYearless;
    if (!attributes.Has(QStringLiteral("climatology")) && FIsClimatology)
        FHasYears = false;
    ReadSpans(*units, FAreSingles ? units->MeantBy(bounds) : bounds);
    return true;
}

void TClimateTimes::ReadSpans(const TClimateTimeUnits& units, const std::vector<double>& bounds) {
    if (bounds.empty())
        return;
    std::vector<TSpan> spans;
    bool isFalling = true; // as the axis does then
    for (std::size_t i = 0; i + 1 < bounds.size(); i += 2)
        isFalling = isFalling && bounds[i] > bounds[i + 1];
    bool isGood = bounds.size() / 2 == FValues.size() && bounds.size() % 2 == 0;
    for (std::size_t i = 0; isGood && i < FValues.size(); ++i) {
        const auto begin = units.DateOf(bounds[isFalling ? 2 * i + 1 : 2 * i]);
        const auto end = units.DateOf(bounds[isFalling ? 2 * i : 2 * i + 1]);
        isGood = begin && end && *begin <= *end;
        if (isGood)
            spans.push_back({*begin, *end});
    }
    if (!isGood) {
        FNotes += QStringLiteral("The bounds of the time axis are not understood and do not count.");
        return;
    }
    FSpans = std::move(spans);
    for (std::size_t i = 0; i < FDates.size(); ++i)
        if (FDates[i] == FSpans[i].End)
            FDates[i] = FSpans[i].Begin;
}

void TClimateTimes::FindHabits() {
    FIsMonthly = FDates.size() > 1;
    for (std::size_t i = 1; i < FDates.size(); ++i)
        FIsMonthly = FIsMonthly && MonthIndex(FDates[i]) == MonthIndex(FDates[i - 1]) + 1;
    FHasTimes =
        std::any_of(FDates.begin(), FDates.end(), [](const TClimateDate& date) { return date.Milliseconds != 0; });
}

std::optional<TClimateDate> TClimateTimes::GetDate(std::size_t index) const {
    return FHasDates ? std::optional(FDates.at(index)) : std::nullopt;
}

QString TClimateTimes::GetCaption(std::size_t index) const {
    if (!FHasDates)
        return QStringLiteral("Step %1 (%2)").arg(IntToStr(static_cast<std::int64_t>(index) + 1), ValueText(index));
    if (FSpans.empty())
        return DateCaption(FDates.at(index));
    return FIsClimatology ? ClimatologyCaption(FSpans.at(index)) : SpanCaption(FSpans.at(index), FDates.at(index));
}

/// Of a single the fewest digits that mean it.
QString TClimateTimes::ValueText(std::size_t index) const {
    const double value = FValues.at(index);
    if (!FAreSingles)
        return FloatToStr(value);
    constexpr int enough = 9;
    int digits = 6;
    while (digits < enough &&
           static_cast<float>(StrToFloat(FloatToGeneral(value, digits))) != static_cast<float>(value))
        ++digits;
    return FloatToGeneral(value, digits);
}

TClimateDate TClimateTimes::LastMoment(const TSpan& span) const {
    if (span.Begin == span.End)
        return span.End;
    return FCalendar.FromMilliseconds(*FCalendar.ToMilliseconds(span.End) - 1);
}

QString TClimateTimes::SpanCaption(const TSpan& span, const TClimateDate& date) const {
    const TClimateDate last = LastMoment(span);
    if (span.Begin < span.End && IsMonthBegin(span.Begin) && IsMonthBegin(span.End))
        return MonthsText(span.Begin, last);
    const auto nextDay =
        FCalendar.FromMilliseconds(*FCalendar.ToMilliseconds(span.Begin) + TClimateCalendar::DayMilliseconds);
    if (span.Begin.Milliseconds == 0 && span.End == nextDay)
        return span.Begin.ToDayText();
    return DateCaption(date);
}

QString TClimateTimes::ClimatologyCaption(const TSpan& span) const {
    const TClimateDate& first = span.Begin;
    const TClimateDate last = LastMoment(span);
    QString text;
    if (IsMonthBegin(first) && IsMonthBegin(span.End) && first < span.End) {
        text = TClimateDate::MonthName(first.Month);
        if (last.Month != first.Month)
            text += u'-' + TClimateDate::MonthName(last.Month);
    } else {
        text = DayOfMonthText(first);
        if (last.Month != first.Month || last.Day != first.Day)
            text += u'-' + DayOfMonthText(last);
    }
    return FHasYears ? text + u' ' + YearsText(first.Year, last.Year) : text;
}

QString TClimateTimes::DateCaption(const TClimateDate& date) const {
    if (!FIsClimatology) {
        if (FIsMonthly)
            return MonthText(date);
        return FHasTimes ? date.ToReadableText() : date.ToDayText();
    }
    if (FIsMonthly)
        return TClimateDate::MonthName(date.Month);
    return FHasTimes ? DayOfMonthText(date) + u' ' + date.ToTimeText() : DayOfMonthText(date);
}

} // namespace lmx
