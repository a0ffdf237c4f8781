#pragma once

#include <lmx/DataSources/lmxClimateAttributes.h>
#include <lmx/DataSources/lmxClimateCalendar.h>
#include <lmx/DataSources/lmxClimateTimeUnits.h>
#include <lmx/DataSources/lmxDataSourcesExport.h>

#include <QString>
#include <QStringList>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace lmx {

/// The steps of a time axis: their dates in the calendar of the file and how a map says them. Steps stay in the order
/// of the file, which may fall and repeat. A value; any thread may read.
class LMX_DATASOURCES_EXPORT TClimateTimes {
public:
    /// No steps.
    TClimateTimes() = default;

    /// @param values as the file has them, unpacked
    /// @param attributes of the time axis: "units", "calendar", "climatology", "modulo"
    /// @param bounds begin and end of each step in turn (or all the other way round), of the attribute "bounds" or
    /// "climatology"; empty if there are none. Any other number of them is ignored, with a note.
    ///
    /// @param areSingles whether the file has values and bounds in single precision: then dates and captions are what
    /// their writer meant, TClimateTimeUnits::MeantBy
    ///
    /// If units or calendar are not understood, or a value is no date, no step has a date: a note says why.
    TClimateTimes(std::vector<double> values, const TClimateAttributes& attributes, std::vector<double> bounds = {},
                  bool areSingles = false);

    std::size_t GetCount() const { return FValues.size(); }
    const TClimateCalendar& GetCalendar() const { return FCalendar; }
    bool HasDates() const { return FHasDates; }
    /// Whether the years say nothing, or stand for the many years of a climatology.
    bool IsClimatology() const { return FIsClimatology; }
    const QStringList& GetNotes() const { return FNotes; } ///< whole sentences for the user

    // An index is below GetCount.

    double GetValue(std::size_t index) const { return FValues.at(index); } ///< as the file has it
    /// The date to which a step belongs: that of its value, but that of the begin of its bounds if the value is their
    /// end. None without dates.
    std::optional<TClimateDate> GetDate(std::size_t index) const;

    /// What a title says. With bounds that are a whole day, or whole months or years: "15 January 2001",
    /// "January 2001", "March-May 2001", "December 2000-February 2001", "2001", "1961-1990". A climatology:
    /// "January 1961-1990", "December-February 1960-1990", "15 January 1961-1990" by its bounds, "January" or
    /// "15 January" without. Else the date, by the month if the steps go from month to month, with the time if any step
    /// has one. Years are those of TClimateDate::YearText. Without dates "Step 3 (17.5)", numbered from 1, with the
    /// value of the file.
    QString GetCaption(std::size_t index) const;

private:
    struct TSpan {
        TClimateDate Begin;
        TClimateDate End;
    };

    bool ReadDates(const TClimateAttributes& attributes, const std::vector<double>& bounds);
    QString ValueText(std::size_t index) const;
    void ReadSpans(const TClimateTimeUnits& units, const std::vector<double>& bounds);
    void FindHabits();
    QString SpanCaption(const TSpan& span, const TClimateDate& date) const;
    QString ClimatologyCaption(const TSpan& span) const;
    QString DateCaption(const TClimateDate& date) const;
    TClimateDate LastMoment(const TSpan& span) const;

    std::vector<double> FValues;
    std::vector<TClimateDate> FDates; ///< to which the steps belong; empty without dates
    std::vector<TSpan> FSpans;        ///< empty without bounds
    TClimateCalendar FCalendar;
    QStringList FNotes;
    bool FAreSingles = false;
    bool FHasDates = false;
    bool FIsClimatology = false;
    bool FHasYears = true;   ///< whether years mean anything
    bool FIsMonthly = false; ///< each step lies in the month after the one before
    bool FHasTimes = false;  ///< some step does not lie on midnight
};

} // namespace lmx
