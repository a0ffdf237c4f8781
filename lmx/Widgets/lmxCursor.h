#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QCursor>

namespace lmx {

/// Standard mouse cursors by their customary numbers.
enum class TCursor {
    crDefault = 0,
    crCross = -3,
    crHourGlass = -11,
    crHSplit = -14, ///< arrows to the left and right
    crVSplit = -15, ///< arrows up and down
    crHandPoint = -21,
    crSize = -22, ///< arrows in all directions
};

LMX_EXPORT QCursor ToQCursor(TCursor cursor);

} // namespace lmx
