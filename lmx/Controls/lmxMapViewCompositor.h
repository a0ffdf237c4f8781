#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <memory>

namespace lmx {

/// Holds the place of a composition that stands apart from the control. Nothing in the view calls it yet.
class LMX_EXPORT IMapViewCompositor {
public:
    virtual ~IMapViewCompositor() = default;
};

class LMX_EXPORT TBitmap32MapViewCompositorFactory {
public:
    static std::shared_ptr<IMapViewCompositor> GetObject(); ///< a new one at each call
};

} // namespace lmx
