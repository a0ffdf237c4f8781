#include "ModeIcons.h"

#include <lmx/Widgets/lmxGlyphPainter.h>

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>

#include <algorithm>

namespace {

// On a field of 24 x 24 units.
constexpr int Field = 24;

void Pointer(lmx::TGlyphPainter& glyph) {
    glyph.Polygon({{7, 3}, {7, 18}, {10, 15}, {13, 21}, {15, 20}, {12, 14}, {17, 14}});
}

void FourArrows(lmx::TGlyphPainter& glyph) {
    glyph.Polyline({{12, 4}, {12, 20}});
    glyph.Polyline({{4, 12}, {20, 12}});
    glyph.Polygon({{12, 1}, {8, 6}, {16, 6}});
    glyph.Polygon({{12, 23}, {8, 18}, {16, 18}});
    glyph.Polygon({{1, 12}, {6, 8}, {6, 16}});
    glyph.Polygon({{23, 12}, {18, 8}, {18, 16}});
}

void DashedFrame(lmx::TGlyphPainter& glyph) {
    for (const double y : {5.0, 19.0})
        for (const double x : {3.0, 10.0, 17.0})
            glyph.Polyline({{x, y}, {x + 4, y}});
    for (const double x : {3.0, 21.0}) {
        glyph.Polyline({{x, 5}, {x, 8}});
        glyph.Polyline({{x, 10.5}, {x, 13.5}});
        glyph.Polyline({{x, 16}, {x, 19}});
    }
}

void LensWithPlus(lmx::TGlyphPainter& glyph) {
    glyph.Circle({10, 10}, 6);
    glyph.Polyline({{7, 10}, {13, 10}});
    glyph.Polyline({{10, 7}, {10, 13}});
    glyph.SetStrokeWidth(3);
    glyph.Polyline({{15.5, 15.5}, {20, 20}});
}

void UprightLine(lmx::TGlyphPainter& glyph) {
    glyph.Polyline({{12, 2}, {12, 22}});
    glyph.Polyline({{6, 12}, {9, 12}});
    glyph.Polyline({{15, 12}, {18, 12}});
    glyph.Polygon({{2, 12}, {7, 8}, {7, 16}});
    glyph.Polygon({{22, 12}, {17, 8}, {17, 16}});
}

void LevelLine(lmx::TGlyphPainter& glyph) {
    glyph.Polyline({{2, 12}, {22, 12}});
    glyph.Polyline({{12, 6}, {12, 9}});
    glyph.Polyline({{12, 15}, {12, 18}});
    glyph.Polygon({{12, 2}, {8, 7}, {16, 7}});
    glyph.Polygon({{12, 22}, {8, 17}, {16, 17}});
}

void Marker(lmx::TGlyphPainter& glyph) {
    glyph.Outline({{5, 4}, {19, 4}, {12, 19}});
    glyph.Dot({12, 9}, 4);
}

void Way(lmx::TGlyphPainter& glyph) {
    QPainterPath arc(QPointF(5, 18));
    arc.cubicTo(QPointF(6, 8), QPointF(13, 4), QPointF(19, 8));
    glyph.Curve(arc, 1.5);
    glyph.Disc({5, 18}, 2.75);
    glyph.Disc({19, 8}, 2.75);
}

lmx::TGlyph GlyphOf(lmx::TMapMode mode) {
    switch (mode) {
    case lmx::TMapMode::mdPan:
        return FourArrows;
    case lmx::TMapMode::mdSelection:
        return DashedFrame;
    case lmx::TMapMode::mdZoomToSelection:
        return LensWithPlus;
    case lmx::TMapMode::mdPlaceRulerH:
        return UprightLine;
    case lmx::TMapMode::mdPlaceRulerV:
        return LevelLine;
    case lmx::TMapMode::mdInfoQuery:
        return Marker;
    case lmx::TMapMode::mdCustom:
        return Way;
    case lmx::TMapMode::mdNone:
        break;
    }
    return Pointer;
}

class GlyphIconEngine : public QIconEngine {
public:
    explicit GlyphIconEngine(lmx::TGlyph glyph) : FGlyph(glyph) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
        const double ratio = painter->device()->devicePixelRatioF();
        painter->drawPixmap(rect, scaledPixmap(rect.size() * ratio, mode, state, ratio));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return scaledPixmap(size, mode, state, 1);
    }
    /// `size` is in device pixels.
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal ratio) override {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QColor ink = QGuiApplication::palette().color(group, QPalette::ButtonText);
        const double side = std::min(size.width(), size.height());
        QPixmap pixmap = QPixmap::fromImage(lmx::RenderGlyph(FGlyph, {Field, Field}, side / Field, ink));
        pixmap.setDevicePixelRatio(ratio);
        return pixmap;
    }
    QIconEngine* clone() const override { return new GlyphIconEngine(FGlyph); }

private:
    lmx::TGlyph FGlyph;
};

} // namespace

QIcon ModeIcon(lmx::TMapMode mode) {
    return QIcon(new GlyphIconEngine(GlyphOf(mode)));
}
