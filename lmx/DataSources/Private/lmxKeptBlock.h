#pragma once

#include <lmx/DataSources/Private/lmxClimateSource.h>

#include <QtGlobal>

#include <cstddef>
#include <mutex>

namespace lmx {

/// Reads steps of the arrays of one source, and keeps what the file stores as one with the step that was read last:
/// steps that are read in a row unpack no block twice. Of blocks that are larger than what may be kept, as many steps
/// are kept as there is room for: reading them in a row unpacks a block once for each such part. Any thread may call;
/// calls wait for each other.
class TKeptBlock {
public:
    /// @param mostBytes what may be kept; steps of which no two fit are read one by one, and with 0 all are.
    explicit TKeptBlock(quint64 mostBytes) : FMostBytes(mostBytes) {}
    TKeptBlock(const TKeptBlock&) = delete;
    TKeptBlock& operator=(const TKeptBlock&) = delete;

    /// As the source's Read.
    /// @param window of one step in `dimension`
    TRawSlice Read(IClimateSource& source, std::size_t array, const TSourceWindow& window, std::size_t dimension);

    quint64 GetKeptBytes() const;

    /// How many steps of `dimension` are stored as one, 1 or more.
    static quint64 StepsTogether(const TSourceArray& array, std::size_t dimension);

private:
    /// The window of the steps that are stored as one with that of a window, as far as they are read with it.
    TSourceWindow PartOf(const TSourceArray& array, TSourceWindow window, std::size_t dimension) const;

    const quint64 FMostBytes;
    mutable std::mutex FMutex;
    std::size_t FArray = 0;
    TSourceWindow FWindow;
    TRawSlice FCells; ///< of the window; empty while nothing is kept
    std::size_t FCellSize = 0;
};

} // namespace lmx
