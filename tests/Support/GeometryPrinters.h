#pragma once

#include <lmx/Runtime/lmxGeometry.h>

#include <ostream>

// Readable failure messages for pixel positions, sizes and rectangles.

namespace lmx {

inline void PrintTo(const TPoint& point, std::ostream* stream) {
    *stream << '(' << point.X << ", " << point.Y << ')';
}
inline void PrintTo(const TSize& size, std::ostream* stream) {
    *stream << size.cx << " x " << size.cy;
}
inline void PrintTo(const TRect& rect, std::ostream* stream) {
    *stream << '(' << rect.Left << ", " << rect.Top << ", " << rect.Right << ", " << rect.Bottom << ')';
}

} // namespace lmx
