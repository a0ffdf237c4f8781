#pragma once

#include <lmx/Colour/lmxValueRange.h>
#include <lmx/DataSources/lmxClimateCalendar.h>
#include <lmx/DataSources/lmxDataSourcesExport.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>

#include <QString>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>

namespace lmx {

/// Asked in the middle of a read, from the reading thread: whether nobody wants the frame any more.
using TFrameWithdrawn = std::function<bool()>;

/// Pictures in a row, such as the time steps of a variable. A player reads them on its worker: all functions but
/// ReadFrame are called on the main thread and answer at once, from what is known; meanwhile ReadFrame may run. They
/// may do anything to the player, also destroy it.
class LMX_DATASOURCES_EXPORT IFrameSource {
public:
    virtual ~IFrameSource() = default;

    virtual std::size_t GetCount() const = 0;
    /// The date of a frame, or none. Either all frames have one or none has.
    virtual std::optional<TClimateDate> GetDate(std::size_t index) const = 0;
    virtual TClimateCalendar GetCalendar() const = 0; ///< of the dates
    virtual QString GetCaption(std::size_t index) const = 0;

    /// Reads one frame, on a worker thread, one at a time for each player. Frames come mostly in the order of playing,
    /// so that a source which keeps what it unpacked last unpacks nothing twice. What it raises is told as the failure
    /// of the frame. May give nil if the frame was withdrawn.
    virtual std::shared_ptr<TRealImage> ReadFrame(std::size_t index, const TFrameWithdrawn& isWithdrawn) = 0;
};

/// A frame that was read.
struct TFrame {
    std::size_t Index = 0;
    std::shared_ptr<TRealImage> Image;
    bool HasValues = false; ///< whether there is anything but flags
    TValueRange Range;      ///< of its own values; empty without any
};

} // namespace lmx
