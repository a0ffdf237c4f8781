#include <lmx/Controls/lmxMapViewAssets.h>

#include <lmx/Widgets/lmxGlyphPainter.h>

#include <QCoreApplication>
#include <QPainterPath>
#include <QPointer>

namespace lmx {

namespace {

void ArrowToTheRight(TGlyphPainter& glyph) {
    glyph.Polyline({{4, 2}, {8, 6}, {4, 10}});
}

void ArrowDown(TGlyphPainter& glyph) {
    glyph.Polyline({{2, 4}, {6, 8}, {10, 4}});
}

QPainterPath Lids() {
    QPainterPath path(QPointF(0.7, 6));
    path.quadTo(6, -0.2, 11.3, 6);
    path.quadTo(6, 12.2, 0.7, 6);
    return path;
}

void OpenEye(TGlyphPainter& glyph) {
    glyph.Curve(Lids(), 1.2);
    glyph.Disc({6, 6}, 2);
}

void StruckEye(TGlyphPainter& glyph) {
    glyph.Curve(Lids(), 1.2);
    QPainterPath stroke(QPointF(2, 10.5));
    stroke.lineTo(10, 1.5);
    glyph.Curve(stroke, 1.4);
}

void Nothing(TGlyphPainter&) {}

void ThreeDots(TGlyphPainter& glyph) {
    for (const double y : {2, 6, 10})
        glyph.Dot({6, y}, 2);
}

constexpr TGlyph LayerPanelGlyphs[] = {ArrowToTheRight, ArrowDown, StruckEye, OpenEye, Nothing, ThreeDots};

} // namespace

TMapViewAssets& TMapViewAssets::GetInstance() {
    static QPointer<TMapViewAssets> instance;
    if (!instance)
        instance = new TMapViewAssets(QCoreApplication::instance());
    return *instance;
}

TMapViewAssets::TMapViewAssets(QObject* owner) : QObject(owner) {
    const TSize size = FLayerPanelAssets.GetSize();
    for (const TGlyph glyph : LayerPanelGlyphs)
        FLayerPanelAssets.Add([=](double ratio, const QColor& ink) { return RenderGlyph(glyph, size, ratio, ink); });
}

} // namespace lmx
