#include <lmx/Layers/lmxInfoQueryPointLayer.h>

#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxPolygons.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExtended.h>

#include <array>

namespace lmx {

namespace {

constexpr float DefaultSize = 20;
constexpr float DefaultStrokeWidth = 3;
constexpr TColor32 SoftOutlineColor = Color32(0, 0, 0, 100);

} // namespace

void InfoPointPaint(const TMapPoint& point, TBitmap32& bitmap, TColor32 color, bool softOutline, float size,
                    float strokeWidth) {
    const double side = size >= 0 ? size : DefaultSize * bitmap.GetDeviceRatio();
    const double width = strokeWidth >= 0 ? strokeWidth : DefaultStrokeWidth * bitmap.GetDeviceRatio();
    const auto x = static_cast<double>(point.X);
    const auto y = static_cast<double>(point.Y);
    const std::array<TFloatPoint, 3> triangle = {TFloatPoint{x, y}, TFloatPoint{x - side / 2, y - side},
                                                 TFloatPoint{x + side / 2, y - side}};
    PolygonFS(bitmap, triangle, color, TPolyFillMode::pfAlternate);
    if (!SameValue(static_cast<float>(width), 0.0F))
        PolylineFS(bitmap, triangle, softOutline ? SoftOutlineColor : clBlack32, true,
                   TStroke{width, TJoinStyle::jsMiter, TEndStyle::esButt, 4});
}

TInfoQueryPoint::TInfoQueryPoint(TInfoQueryPointLayer* layer, const TMapPoint& point, TColor32 color)
    : FLayer(layer),
      FColor(color),
      FPoint(point) {}

void TInfoQueryPoint::SetColor(TColor32 color) {
    if (color == FColor)
        return;
    FColor = color;
    Changed();
}

void TInfoQueryPoint::SetPoint(const TMapPoint& point) {
    if (point.Equals(FPoint))
        return;
    FPoint = point;
    Changed();
}

void TInfoQueryPoint::SetPointLabel(const QString& label) {
    if (label == FPointLabel)
        return;
    FPointLabel = label;
    Changed();
}

QString TInfoQueryPoint::GetLabelOrLocation() const {
    return FPointLabel.isEmpty() ? FPoint.ToString() : FPointLabel;
}

void TInfoQueryPoint::Paint(TWorldViewport* viewport, TBitmap32& bitmap) const {
    InfoPointPaint(viewport->MapPointToPoint(FPoint), bitmap, FColor, true, -1, -1);
}

void TInfoQueryPoint::Changed() const {
    if (TInfoQueryPointLayer* layer = GetLayer())
        layer->Invalidate();
}

TInfoQueryPointLayer::TInfoQueryPointLayer(const std::shared_ptr<ILayerManager>& layerManager)
    : TBaseLayerManagerLayer(layerManager) {
    FPoints.SetOnChange([this](TInfoQueryPoint* point, TListChange change) { Points_OnNotify(point, change); });
}

TInfoQueryPointLayer::~TInfoQueryPointLayer() {
    FPoints.Clear();
}

QString TInfoQueryPointLayer::GetLayerTypeName() const {
    return QStringLiteral("Info Query points");
}

void TInfoQueryPointLayer::Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) {
    TBaseLayerManagerLayer::Paint(world, viewport, bitmap);
    for (const TInfoQueryPoint* point : FPoints)
        point->Paint(viewport, bitmap);
}

// A subscriber may let the layer go, and take out a point that has just come: then the others are not told of it.
void TInfoQueryPointLayer::Points_OnNotify(TInfoQueryPoint* point, TListChange change) {
    const TBorrowed self(this);
    if (change == TListChange::lcAdded)
        FOnAdded.SendWhile([&] { return FPoints.IsArriving(point); }, this, point);
    else
        FOnRemoved.Send(this, point);
    if (self)
        Invalidate();
}

} // namespace lmx
