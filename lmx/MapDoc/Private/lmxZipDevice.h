#pragma once

#include <minizip/ioapi.h>

class QIODevice;

namespace lmx {

/// Lets minizip read and write a device that is open, can seek and outlives this.
class TZipDevice {
public:
    explicit TZipDevice(QIODevice& device) : FDevice(device) {}
    TZipDevice(const TZipDevice&) = delete;
    TZipDevice& operator=(const TZipDevice&) = delete;

    zlib_filefunc64_def GetFunctions(); ///< they refer to this object

    uLong Read(void* bytes, uLong size);
    uLong Write(const void* bytes, uLong size);
    ZPOS64_T GetPosition() const;
    /// Not beyond the end: offsets in damaged archives may lie anywhere.
    bool Seek(ZPOS64_T offset, int origin);
    /// Whether the last read or write fell short: minizip takes the end of a file for a zero unless it is told.
    bool HasFailed() const { return FHasFailed; }

private:
    QIODevice& FDevice;
    bool FHasFailed = false;
};

} // namespace lmx
