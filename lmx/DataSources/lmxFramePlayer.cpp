#include <lmx/DataSources/lmxFramePlayer.h>

#include <lmx/Climate/lmxFoundRange.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxThread.h>
#include <lmx/Widgets/lmxEventGuard.h>

#include <algorithm>
#include <cmath>
#include <exception>
#include <new>
#include <utility>

namespace lmx {

namespace {

constexpr double SlowestPace = 0.1;
constexpr double FastestPace = 60;

/// The range of the values of an image, whatever its header says.
TFoundRange RangeOf(TRealImage& image) {
    TFoundRange range;
    for (std::int32_t row = 1; row <= image.getHeader()->GetHeight(); ++row)
        range.Add(image.GetRow(row));
    return range;
}

} // namespace

TFramePlayer::TFramePlayer() : FClock(new QTimer), FWorker(TThreadPriority::tpLower, 1) {
    FClock->setTimerType(Qt::PreciseTimer);
    SetFramesPerSecond(FFramesPerSecond);
    QObject::connect(FClock.get(), &QTimer::timeout, [self = TBorrowed(this)] {
        GuardEvent(nullptr, [&self] { // a source may raise
            if (self)
                self->Advance();
        });
    });
}

// The source may go with the player, and must not find it then.
TFramePlayer::~TFramePlayer() {
    FLifetime.End();
    FClock->stop();
    CancelRead();
}

void TFramePlayer::SetSource(std::shared_ptr<IFrameSource> source) {
    const TBorrowed self(this);
    const std::size_t count = source ? source->GetCount() : 0;
    if (!self)
        return;
    CancelRead();
    FClock->stop();
    FIsPlaying = false;
    FKept.clear();
    FShown.reset();
    FDays.reset();
    FWanted.reset();
    FFailed.reset();
    FDirection = 1;
    if (!FIsRangeSet)
        FFixedRange.reset();
    FSource.swap(source); // the one before goes at the end, and may do anything then
    FCount = count;
    FOnFrame.Send(this);
    if (!self)
        return;
    if (GetCount() > 0 && !FWanted)
        Want(0, 1);
    else
        Changed();
}

QString TFramePlayer::GetCaption() const {
    if (!FWanted)
        return {};
    const auto source = FSource;
    return source->GetCaption(*FWanted);
}

void TFramePlayer::First() {
    if (GetCount() > 0)
        Want(0, 1);
}

void TFramePlayer::Last() {
    if (GetCount() > 0)
        Want(GetCount() - 1, -1);
}

void TFramePlayer::Next() {
    if (!LearnDays())
        return;
    if (const auto next = FWanted ? StepFrom(*FWanted, 1) : std::nullopt)
        Want(*next, 1);
}

void TFramePlayer::Previous() {
    if (!LearnDays())
        return;
    if (const auto previous = FWanted ? StepFrom(*FWanted, -1) : std::nullopt)
        Want(*previous, -1);
}

void TFramePlayer::GoTo(std::size_t index) {
    if (index >= GetCount())
        throw EArgumentException(QStringLiteral("Index"));
    Want(index, FDirection);
}

void TFramePlayer::Play() {
    if (FIsPlaying || !FWanted || !LearnDays() || FIsPlaying || !FWanted)
        return;
    SetPlaying(true);
    FDirection = 1;
    const TBorrowed self(this);
    const bool isAtEnd = !StepFrom(*FWanted, 1);
    Changed();
    if (!self || !FIsPlaying || !FWanted)
        return;
    if (isAtEnd)
        Want(0, 1);
    else
        Reschedule();
}

void TFramePlayer::Stop() {
    if (!FIsPlaying)
        return;
    SetPlaying(false);
    Changed();
}

void TFramePlayer::SetPlaying(bool playing) {
    FIsPlaying = playing;
    if (playing)
        FClock->start();
    else
        FClock->stop();
}

void TFramePlayer::Advance() {
    if (!FIsPlaying || IsWaiting() || !LearnDays() || !FIsPlaying || !FWanted)
        return;
    if (const auto next = StepFrom(*FWanted, 1))
        Want(*next, 1);
    else
        Stop();
}

void TFramePlayer::SetFramesPerSecond(double frames) {
    if (std::isnan(frames))
        return;
    FFramesPerSecond = std::clamp(frames, SlowestPace, FastestPace);
    FClock->setInterval(static_cast<int>(Round(1000 / FFramesPerSecond)));
    Changed();
}

void TFramePlayer::SetLoop(bool loop) {
    FLoop = loop;
    const TBorrowed self(this);
    Changed();
    if (self)
        Reschedule();
}

void TFramePlayer::SetStep(TFrameStep step) {
    FStep = step;
    const TBorrowed self(this);
    Changed();
    if (self)
        Reschedule();
}

void TFramePlayer::SetReadAhead(std::size_t frames) {
    FReadAhead = std::min(frames, MaxReadAhead);
    Reschedule();
}

void TFramePlayer::SetRangeKind(TFrameRange kind) {
    FRangeKind = kind;
    FOnFrame.Send(this);
}

void TFramePlayer::SetFixedRange(const TValueRange& range) {
    FFixedRange = range;
    FIsRangeSet = true;
    FOnFrame.Send(this);
}

TValueRange TFramePlayer::GetRange() const {
    if (FRangeKind == TFrameRange::frFixed)
        return FFixedRange.value_or(TValueRange::Empty());
    return FShown ? FShown->Range : TValueRange::Empty();
}

// Both need LearnDays before.
std::optional<std::size_t> TFramePlayer::StepFrom(std::size_t index, int direction) const {
    if (const auto neighbour = NeighbourOf(index, direction))
        return neighbour;
    if (!FLoop || GetCount() < 2)
        return std::nullopt;
    return direction > 0 ? 0 : GetCount() - 1;
}

std::optional<std::size_t> TFramePlayer::NeighbourOf(std::size_t index, int direction) const {
    if (FStep != TFrameStep::fsFrame && FDays && !FDays->Days.empty())
        return CalendarNeighbour(index, direction);
    if (direction > 0)
        return index + 1 < GetCount() ? std::optional(index + 1) : std::nullopt;
    return index > 0 ? std::optional(index - 1) : std::nullopt;
}

/// Asks the source for the dates, where steps go by them and they are not known. False if the source ended the player
/// or was replaced meanwhile: then there is nothing left to do.
bool TFramePlayer::LearnDays() {
    if (FStep == TFrameStep::fsFrame || FDays || !FSource)
        return true;
    const TBorrowed self(this);
    const auto source = FSource;
    const std::size_t count = FCount;
    TDays learnt{source->GetCalendar(), {}};
    for (std::size_t i = 0; i < count; ++i) {
        const auto date = source->GetDate(i);
        const auto milliseconds = date ? learnt.Calendar.ToMilliseconds(*date) : std::nullopt;
        if (!milliseconds) {
            learnt.Days.clear();
            break;
        }
        learnt.Days.push_back({*date, date->Year * 12 + date->Month - 1, *milliseconds});
    }
    if (!self || FSource != source)
        return false;
    FDays = std::move(learnt);
    return true;
}

std::optional<std::size_t> TFramePlayer::CalendarNeighbour(std::size_t index, int direction) const {
    const std::vector<TDay>& days = FDays->Days;
    const std::int64_t span = FStep == TFrameStep::fsYear ? 12 : 1;
    const auto periodOf = [span](const TDay& day) {
        return day.Month >= 0 ? day.Month / span : (day.Month - span + 1) / span;
    };
    const std::int64_t from = periodOf(days[index]);
    std::optional<std::int64_t> period; // the nearest one that has frames
    for (const TDay& day : days)
        if ((periodOf(day) - from) * direction > 0 && (!period || (*period - periodOf(day)) * direction > 0))
            period = periodOf(day);
    if (!period)
        return std::nullopt;
    const auto goalDate = FDays->Calendar.AddMonths(days[index].Date, (*period - from) * span);
    const auto goal = goalDate ? FDays->Calendar.ToMilliseconds(*goalDate) : std::nullopt;
    std::optional<std::size_t> best;
    const auto distance = [&](std::size_t i) {
        return std::abs(static_cast<long double>(days[i].Milliseconds) - static_cast<long double>(goal.value_or(0)));
    };
    for (std::size_t i = 0; i < days.size(); ++i)
        if (periodOf(days[i]) == *period && (!best || distance(i) < distance(*best)))
            best = i;
    return best;
}

void TFramePlayer::Want(std::size_t index, int direction) {
    FWanted = index;
    FDirection = direction;
    FFailed.reset();
    const TBorrowed self(this);
    Changed();
    if (!self || !FWanted)
        return;
    ShowWanted();
    if (self)
        Reschedule();
}

/// Shows the wanted frame if it has been read, and tells if it cannot be.
void TFramePlayer::ShowWanted() {
    if (!IsWaiting())
        return;
    const auto kept = FKept.find(*FWanted);
    if (kept == FKept.end())
        return;
    const std::size_t index = kept->first;
    const TOutcome outcome = std::move(kept->second);
    FKept.erase(kept);
    if (outcome.Frame)
        Show(outcome.Frame);
    else
        Fail(index, outcome.Failure);
}

void TFramePlayer::Show(std::shared_ptr<const TFrame> frame) {
    FShown = std::move(frame);
    if (!FFixedRange && FShown->HasValues)
        FFixedRange = FShown->Range;
    FOnFrame.Send(this);
}

/// The frame shown before stays, and is the wanted one again; without one the failed frame stays the wanted one, and is
/// read once more when it is asked for.
void TFramePlayer::Fail(std::size_t index, const QString& failure) {
    if (FShown)
        FWanted = FShown->Index;
    FFailed = index;
    SetPlaying(false);
    const TBorrowed self(this);
    FOnFailure.Send(this, index, failure);
    if (self)
        Changed();
}

/// The wanted frame and those ahead of it, in the order in which they are to be read.
std::vector<std::size_t> TFramePlayer::WantedFrames() const {
    std::vector<std::size_t> frames;
    if (!FWanted)
        return frames;
    frames.push_back(*FWanted);
    while (frames.size() <= FReadAhead) {
        const auto next = StepFrom(frames.back(), FDirection);
        if (!next || std::find(frames.begin(), frames.end(), *next) != frames.end())
            break;
        frames.push_back(*next);
    }
    return frames;
}

/// Gives back what is not wanted and has the worker read the first frame that is missing.
void TFramePlayer::Reschedule() {
    if (!LearnDays())
        return;
    const std::vector<std::size_t> frames = WantedFrames();
    const auto isWanted = [&](std::size_t index) {
        return std::find(frames.begin(), frames.end(), index) != frames.end();
    };
    std::erase_if(FKept, [&](const auto& kept) { return !isWanted(kept.first); });
    if (FReadThread && !isWanted(FReadIndex))
        CancelRead();
    if (FReadThread)
        return;
    for (const std::size_t index : frames) {
        const bool isShown = FShown && FShown->Index == index;
        if (!isShown && FKept.count(index) == 0 && FFailed != index)
            return StartRead(index);
    }
}

void TFramePlayer::StartRead(std::size_t index) {
    const auto thread = FWorker.GetThread();
    thread->SetOnExecute([source = FSource, index, self = TBorrowed(this)](TThreadPoolThread& onThread) {
        const auto outcome = std::make_shared<TOutcome>(Read(*source, index, [&] { return onThread.ShouldStop(); }));
        TThread::Synchronize([self, index, outcome, thread = onThread.shared_from_this()] {
            if (self)
                self->FinishRead(*thread, index, std::move(*outcome));
        });
    });
    FReadThread = thread;
    FReadIndex = index;
    thread->StartOperation();
}

void TFramePlayer::CancelRead() {
    if (const auto thread = std::exchange(FReadThread, nullptr))
        thread->CancelOperation();
}

TFramePlayer::TOutcome TFramePlayer::Read(IFrameSource& source, std::size_t index, const TFrameWithdrawn& isWithdrawn) {
    TOutcome outcome;
    try {
        auto frame = std::make_shared<TFrame>();
        frame->Index = index;
        frame->Image = source.ReadFrame(index, isWithdrawn);
        if (!frame->Image) {
            outcome.Failure = QStringLiteral("The frame could not be read");
            return outcome;
        }
        const TFoundRange range = RangeOf(*frame->Image);
        frame->HasValues = range.HasValues();
        if (frame->HasValues)
            frame->Range = {static_cast<double>(range.GetLeast()), static_cast<double>(range.GetGreatest())};
        outcome.Frame = std::move(frame);
    } catch (const Exception& failure) {
        outcome.Failure = failure.Description();
    } catch (const std::bad_alloc&) {
        outcome.Failure = QStringLiteral("Out of memory");
    } catch (const std::exception& failure) {
        outcome.Failure = QString::fromUtf8(failure.what());
    } catch (...) {
        outcome.Failure = QStringLiteral("The frame could not be read");
    }
    return outcome;
}

void TFramePlayer::FinishRead(const TThreadPoolThread& thread, std::size_t index, TOutcome outcome) {
    if (FReadThread.get() != &thread)
        return;
    FReadThread.reset();
    FKept[index] = std::move(outcome);
    const TBorrowed self(this);
    ShowWanted();
    if (self)
        Reschedule();
}

} // namespace lmx
