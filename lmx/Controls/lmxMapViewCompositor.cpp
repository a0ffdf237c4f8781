
#include <lmx/Controls/lmxMapViewCompositor.h>

namespace lmx {

namespace {

class TBitmap32MapViewCompositor final : public IMapViewCompositor {};

} // namespace

std::shared_ptr<IMapViewCompositor> TBitmap32MapViewCompositorFactory::GetObject() {
    return std::make_shared<TBitmap32MapViewCompositor>();
}

} // namespace lmx
