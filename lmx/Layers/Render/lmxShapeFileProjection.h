#pragma once

#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxExtended.h>

namespace lmx {

/// Turns coordinates of a shape file into map coordinates of the layer that shows it. Renders call it on several
/// threads at once.
class LMX_EXPORT IShapeFileProjection {
public:
    virtual ~IShapeFileProjection() = default;

    virtual void Convert(extended x, extended y, extended& outX, extended& outY) const = 0;
};

/// Longitudes and latitudes of WGS 84, which are map coordinates already.
class LMX_EXPORT TWGS84ShapeFileProjection final : public IShapeFileProjection {
public:
    void Convert(extended x, extended y, extended& outX, extended& outY) const override {
        outX = x;
        outY = y;
    }
};

} // namespace lmx
