#pragma once

#include <lmx/DataSources/Private/lmxClimateSource.h>

#include <QtGlobal>

#include <cstddef>
#include <mutex>

namespace lmx {

/// Reads steps of the arrays of one source, and keeps what the file stores as one with the step that was read last:
/// steps that are read in a row unpack no block twice. Any thread may call; calls wait for each other.
class TKeptBlock {
public:
    /// @param mostBytes what may be kept; steps of larger blocks are read one by one, and with 0 all are.
    explicit TKeptBlock(quint64 mostBytes) : FMostBytes(mostBytes) {}
    TKeptBlock(const TKeptBlock&) = delete;
    TKeptBlock& operator=(const TKeptBlock&) = delete;

    /// As the source's Read.
    /// @param window of one step in `dimension`
    TRawSlice Read(IClimateSource& source, std::size_t array, const TSourceWindow& window, std::size_t dimension);

    quint64 GetKeptBytes() const;

private:
    /// The window of all steps that are stored as one with that of a window.
    static TSourceWindow BlockOf(const TSourceArray& array, TSourceWindow window, std::size_t dimension);

    const quint64 FMostBytes;
    mutable std::mutex FMutex;
    std::size_t FArray = 0;
    TSourceWindow FWindow;
    TRawSlice FCells; ///< of the window; empty while nothing is kept
    std::size_t FCellSize = 0;
};

} // namespace lmx
