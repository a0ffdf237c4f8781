#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <tests/Support/GeometryPrinters.h>

#include <ostream>

// Readable failure messages for positions and areas on the map.

namespace lmx {

inline void PrintTo(const TMapPoint& point, std::ostream* stream) {
    *stream << '(' << point.X << ", " << point.Y << ')';
}
inline void PrintTo(const TMapArea& area, std::ostream* stream) {
    *stream << '(' << area.Left << ", " << area.Top << ", " << area.Right << ", " << area.Bottom << "; translate "
            << area.XTranslate << ", " << area.YTranslate << ')';
}

} // namespace lmx
