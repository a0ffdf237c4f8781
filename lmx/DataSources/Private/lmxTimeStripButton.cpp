#include <lmx/DataSources/Private/lmxTimeStripButton.h>

namespace lmx {

namespace {

constexpr TSize GlyphSize{16, 16};

} // namespace

TTimeStripButton::TTimeStripButton(QWidget* parent, TGlyph glyph, const QString& hint)
    : TFlatButton(parent),
      FGlyph(glyph) {
    SetHint(hint);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void TTimeStripButton::SetGlyph(TGlyph glyph, const QString& hint) {
    if (glyph == FGlyph)
        return;
    FGlyph = glyph;
    SetHint(hint);
    update();
}

void TTimeStripButton::PaintContent(QPainter& canvas) {
    const int left = (width() - GlyphSize.cx) / 2;
    const int top = (height() - GlyphSize.cy) / 2;
    canvas.drawImage(left, top, RenderGlyph(FGlyph, GlyphSize, devicePixelRatioF(), GetInk()));
    if (isCheckable() && isChecked()) {
        canvas.setPen(GetInk());
        canvas.drawRect(left - 2, top - 2, GlyphSize.cx + 3, GlyphSize.cy + 3);
    }
}

void TTimeStripButton::DrawFirst(TGlyphPainter& painter) {
    painter.Polygon({{2, 3}, {4, 3}, {4, 13}, {2, 13}});
    painter.Polygon({{13, 3}, {13, 13}, {5, 8}});
}

void TTimeStripButton::DrawPrevious(TGlyphPainter& painter) {
    painter.Polygon({{11, 3}, {11, 13}, {4, 8}});
}

void TTimeStripButton::DrawPlay(TGlyphPainter& painter) {
    painter.Polygon({{3, 2}, {14, 8}, {3, 14}});
}

void TTimeStripButton::DrawPause(TGlyphPainter& painter) {
    painter.Polygon({{4, 3}, {7, 3}, {7, 13}, {4, 13}});
    painter.Polygon({{9, 3}, {12, 3}, {12, 13}, {9, 13}});
}

void TTimeStripButton::DrawNext(TGlyphPainter& painter) {
    painter.Polygon({{5, 3}, {12, 8}, {5, 13}});
}

void TTimeStripButton::DrawLast(TGlyphPainter& painter) {
    painter.Polygon({{12, 3}, {14, 3}, {14, 13}, {12, 13}});
    painter.Polygon({{3, 3}, {11, 8}, {3, 13}});
}

void TTimeStripButton::DrawLoop(TGlyphPainter& painter) {
    painter.Polyline({{12, 4}, {3, 4}, {3, 9}});
    painter.Polyline({{4, 12}, {13, 12}, {13, 7}});
    painter.Polygon({{10, 1}, {14, 4}, {10, 7}});
    painter.Polygon({{6, 9}, {2, 12}, {6, 15}});
}

} // namespace lmx
