#pragma once

#include <lmx/Raster/lmxSingleGrid.h>

namespace lmx::tests {

/// `count` even positions.
inline TSingleArray Axis(int count, float start, float step) {
    TSingleArray axis;
    for (int i = 0; i < count; ++i)
        axis.push_back(static_cast<float>(i) * step + start);
    return axis;
}

} // namespace lmx::tests
