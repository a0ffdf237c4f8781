#include <lmx/Layers/lmxSelectionMapLayer.h>

#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Runtime/lmxBorrowed.h>

#include <array>

namespace lmx {

namespace {

constexpr std::array<TColor32, 2> Dashes = {clBlack32, clWhite32};

} // namespace

QString TSelectionMapLayer::GetLayerTypeName() const {
    return QStringLiteral("Selection");
}

bool TSelectionMapLayer::GetShowsInLayersList() const {
    return false;
}

void TSelectionMapLayer::Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) {
    TBaseLayerManagerLayer::Paint(world, viewport, bitmap);
    if (!FEnabled)
        return;
    const TMapPoint begin = viewport->MapPointToPoint(FTopLeft);
    const TMapPoint end = viewport->MapPointToPoint(FBottomRight);
    const auto left = static_cast<double>(begin.X);
    const auto top = static_cast<double>(begin.Y);
    const auto right = static_cast<double>(end.X);
    const auto bottom = static_cast<double>(end.Y);
    bitmap.SetStipple(Dashes);
    bitmap.MoveToF(left, top);
    bitmap.LineToFSP(right, top);
    bitmap.LineToFSP(right, bottom);
    bitmap.LineToFSP(left, bottom);
    bitmap.LineToFSP(left, top);
}

void TSelectionMapLayer::StartSelection(const TMapPoint& point) {
    FTopLeft = point;
    FBottomRight = point;
    const TBorrowed self(this); // whoever is told may free the layer
    SetEnabled(true);
    if (self)
        Invalidate();
}

void TSelectionMapLayer::SetEnabled(bool enabled) {
    if (enabled == FEnabled)
        return;
    FEnabled = enabled;
    Invalidate();
}

void TSelectionMapLayer::SetTopLeft(const TMapPoint& point) {
    if (point.Equals(FTopLeft))
        return;
    FTopLeft = point;
    Invalidate();
}

void TSelectionMapLayer::SetBottomRight(const TMapPoint& point) {
    if (point.Equals(FBottomRight))
        return;
    FBottomRight = point;
    Invalidate();
}

} // namespace lmx
