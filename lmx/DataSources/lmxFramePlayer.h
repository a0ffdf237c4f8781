#pragma once

#include <lmx/Colour/lmxValueRange.h>
#include <lmx/DataSources/lmxDataSourcesExport.h>
#include <lmx/DataSources/lmxFrameSource.h>
#include <lmx/Runtime/lmxEventList.h>
#include <lmx/Runtime/lmxLifetime.h>
#include <lmx/Runtime/lmxThreadPool.h>

#include <QString>
#include <QTimer>

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace lmx {

/// How far one step goes: to the next frame of the source, or to the frame of the next month or year of the calendar
/// that lies nearest to the same day. Without dates every step goes to the next frame.
enum class TFrameStep { fsFrame, fsMonth, fsYear };

/// Which range of values colours are for: the same for all frames, or of each frame its own.
enum class TFrameRange { frFixed, frEach };

/// Steps and plays through a source of frames. One frame is shown; it stays until the wanted one has been read, so
/// there is no blank, and playing waits rather than leave a frame out. One worker reads, first what is wanted and then
/// ahead in the direction of the last step, as far as the read-ahead goes; what lies elsewhere is given back, and a
/// read that nobody wants any more is withdrawn.
///
/// Main thread only. Handlers and the source may do anything, also destroy the player; nothing waits for the worker.
class LMX_DATASOURCES_EXPORT TFramePlayer {
public:
    TFramePlayer();
    ~TFramePlayer();
    TFramePlayer(const TFramePlayer&) = delete;
    TFramePlayer& operator=(const TFramePlayer&) = delete;
    const TLifetime& GetLifetime() const { return FLifetime; }

    const std::shared_ptr<IFrameSource>& GetSource() const { return FSource; } ///< nil at first
    /// Stops playing, forgets the frames of the source before and wants the first frame of this one; nil for none. A
    /// fixed range that was not set by SetFixedRange is forgotten too.
    void SetSource(std::shared_ptr<IFrameSource> source);

    std::size_t GetCount() const { return FCount; }                          ///< of the source, when it was set
    const std::shared_ptr<const TFrame>& GetFrame() const { return FShown; } ///< the one shown, or nil
    /// The frame that is to be shown: that of GetFrame, or one that is being read. None without frames.
    std::optional<std::size_t> GetWanted() const { return FWanted; }
    bool IsWaiting() const { return FWanted && !(FShown && FShown->Index == *FWanted); }
    /// What a title says of the wanted frame; empty without frames.
    QString GetCaption() const;

    void First();
    void Last();
    void Next();     ///< one step on; from the end, where playing loops, to the first frame
    void Previous(); ///< one step back; likewise
    /// @throws EArgumentException "Index" if there is no such frame.
    void GoTo(std::size_t index);

    /// Steps on by the clock, from the first frame again if there is nothing further. Ends by itself after the last
    /// frame, if it does not loop, and at a frame that cannot be read.
    void Play();
    void Stop();
    bool IsPlaying() const { return FIsPlaying; }
    /// What the clock does while it plays: a step on, unless the wanted frame is still being read. For hosts that have
    /// a clock of their own as well.
    void Advance();

    double GetFramesPerSecond() const { return FFramesPerSecond; } ///< 4 at first
    void SetFramesPerSecond(double frames);                        ///< kept within 0.1 and 60; NaN changes nothing
    bool GetLoop() const { return FLoop; }                         ///< false at first
    void SetLoop(bool loop);
    TFrameStep GetStep() const { return FStep; }
    void SetStep(TFrameStep step);
    std::size_t GetReadAhead() const { return FReadAhead; } ///< frames beside the shown and the wanted one; 4 at first
    void SetReadAhead(std::size_t frames);                  ///< at most MaxReadAhead
    static constexpr std::size_t MaxReadAhead = 64;

    TFrameRange GetRangeKind() const { return FRangeKind; } ///< frFixed at first
    void SetRangeKind(TFrameRange kind);
    /// The range for all frames. Until it is set it is that of the first frame with values.
    void SetFixedRange(const TValueRange& range);
    /// The range that the shown frame is to be coloured for; empty without one.
    TValueRange GetRange() const;

    TEventList<TFramePlayer*>& GetOnFrame() { return FOnFrame; }     ///< another frame is shown, or another range holds
    TEventList<TFramePlayer*>& GetOnChanged() { return FOnChanged; } ///< of source, wanted frame, playing and settings
    /// A wanted frame could not be read: its number and why. The frame shown before stays and is the wanted one again;
    /// without one the player waits for a frame that is asked for.
    TEventList<TFramePlayer*, std::size_t, const QString&>& GetOnFailure() { return FOnFailure; }

    std::size_t GetKeptCount() const { return FKept.size(); } ///< frames in memory, the shown one aside

private:
    /// A frame that was read, or why it could not be.
    struct TOutcome {
        std::shared_ptr<const TFrame> Frame;
        QString Failure;
    };
    struct TDeletedLater {
        void operator()(QTimer* timer) const { timer->deleteLater(); }
    };
    struct TDay {
        TClimateDate Date;
        std::int64_t Month = 0; ///< counted through the years
        std::int64_t Milliseconds = 0;
    };
    /// What the source says of its dates.
    struct TDays {
        TClimateCalendar Calendar;
        std::vector<TDay> Days; ///< empty without dates
    };

    static TOutcome Read(IFrameSource& source, std::size_t index, const TFrameWithdrawn& isWithdrawn);
    void Want(std::size_t index, int direction);
    std::optional<std::size_t> StepFrom(std::size_t index, int direction) const;
    std::optional<std::size_t> NeighbourOf(std::size_t index, int direction) const;
    std::optional<std::size_t> CalendarNeighbour(std::size_t index, int direction) const;
    bool LearnDays();
    std::vector<std::size_t> WantedFrames() const;
    void Reschedule();
    void StartRead(std::size_t index);
    void CancelRead();
    void FinishRead(const TThreadPoolThread& thread, std::size_t index, TOutcome outcome);
    void ShowWanted();
    void Show(std::shared_ptr<const TFrame> frame);
    void Fail(std::size_t index, const QString& failure);
    void SetPlaying(bool playing);
    void Changed() { FOnChanged.Send(this); }

    TLifetime FLifetime;
    std::shared_ptr<IFrameSource> FSource;
    std::size_t FCount = 0;
    std::shared_ptr<const TFrame> FShown;
    std::map<std::size_t, TOutcome> FKept; ///< read and not shown
    std::optional<std::size_t> FWanted;
    std::optional<std::size_t> FFailed; ///< could not be read, and is not read ahead
    std::optional<TDays> FDays;         ///< of the frames, once they are asked for
    int FDirection = 1;
    bool FIsPlaying = false;
    bool FLoop = false;
    double FFramesPerSecond = 4;
    TFrameStep FStep = TFrameStep::fsFrame;
    std::size_t FReadAhead = 4;
    TFrameRange FRangeKind = TFrameRange::frFixed;
    std::optional<TValueRange> FFixedRange;
    bool FIsRangeSet = false;
    std::unique_ptr<QTimer, TDeletedLater> FClock; // may tell at the moment when the player goes
    TThreadPool FWorker;                           // of one thread
    std::shared_ptr<TThreadPoolThread> FReadThread;
    std::size_t FReadIndex = 0;
    TEventList<TFramePlayer*> FOnFrame;
    TEventList<TFramePlayer*> FOnChanged;
    TEventList<TFramePlayer*, std::size_t, const QString&> FOnFailure;
};

} // namespace lmx
