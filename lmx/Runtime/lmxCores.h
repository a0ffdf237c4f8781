#pragma once

#include <lmx/Runtime/lmxExport.h>

namespace lmx {

/// How many of the machine's cores one piece of work of the library may use: colouring a raster with the calculators of
/// the library, and stretching pictures onto a bitmap. The rows of large pictures are then shared out to threads that
/// are kept ready; the caller works with them and goes on when all rows are done. Every pixel is the same as without.
/// It pays where cores are free: a core that the system gives to others meanwhile may keep its few rows waiting. Code
/// of the host, of layers and of events runs on the calling thread whatever the setting. May be read and set from any
/// thread; work that runs goes on as it began.
class LMX_EXPORT TCores {
public:
    /// 1 after start: everything runs on the calling thread.
    static int GetCount() noexcept;

    /// Below 1: as many as the machine has. At most 64.
    static void SetCount(int count) noexcept;
};

} // namespace lmx
