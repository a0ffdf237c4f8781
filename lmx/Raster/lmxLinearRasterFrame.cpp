#include <lmx/Raster/lmxLinearRasterFrame.h>

#include <lmx/Runtime/lmxExceptions.h>

namespace lmx {

TLinearRasterFrame::TLinearRasterFrame(const TMapArea& area, std::int32_t width, std::int32_t height, TDataKind kind) {
    Init(area, width, height, kind);
}

TLinearRasterFrame::TLinearRasterFrame(const IRasterFrame* source) {
    const auto* const linear = dynamic_cast<const TBaseLinearRasterFrame*>(source);
    if (!linear)
        throw EInvalidOperation(QStringLiteral("Source not supported"));
    Init(*linear);
}

std::shared_ptr<IRasterFrame> TLinearRasterFrame::Clone() const {
    return std::make_shared<TLinearRasterFrame>(this);
}

} // namespace lmx
