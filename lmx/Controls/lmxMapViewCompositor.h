#pragma once

#include <memory>

namespace lmx {

/// Holds the place of a composition that stands apart from the control. Nothing in the view calls it yet.
class IMapViewCompositor {
public:
    virtual ~IMapViewCompositor() = default;
};

class TBitmap32MapViewCompositorFactory {
public:
    static std::shared_ptr<IMapViewCompositor> GetObject(); ///< a new one at each call
};

} // namespace lmx
