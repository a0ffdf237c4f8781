#pragma once

#include <lmx/Layers/lmxBaseMapLayer.h>
#include <lmx/Runtime/lmxBorrowed.h>

namespace lmx {

/// Whether a layer of the stack is painted: it is visible, has content and is ready. A layer of a host's may say
/// whether it has content and go with it: then it is not.
inline bool IsPainted(const TBaseMapLayer& layer) {
    const TBorrowed living(&layer);
    return layer.GetIsVisible() && layer.GetHasContent() && living && layer.GetIsReadyToDraw();
}

} // namespace lmx
