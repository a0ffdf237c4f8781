#include <lmx/Dialogs/Private/lmxTextStyleButton.h>

#include <lmx/Widgets/Private/lmxDeviceGrid.h>
#include <lmx/Widgets/lmxGlyphPainter.h>

#include <QFontInfo>

#include <algorithm>

namespace lmx {

namespace {

using TFace = TTextStyleButton::TFace;

constexpr TSize LinesSize = {20, 20};

void LinesAtLeft(TGlyphPainter& glyph) {
    glyph.Polyline({{4, 5}, {16, 5}});
    glyph.Polyline({{4, 8}, {11, 8}});
    glyph.Polyline({{4, 11}, {16, 11}});
    glyph.Polyline({{4, 14}, {11, 14}});
}

void LinesInTheMiddle(TGlyphPainter& glyph) {
    glyph.Polyline({{4, 5}, {16, 5}});
    glyph.Polyline({{7, 8}, {13, 8}});
    glyph.Polyline({{4, 11}, {16, 11}});
    glyph.Polyline({{7, 14}, {13, 14}});
}

void LinesAtRight(TGlyphPainter& glyph) {
    glyph.Polyline({{4, 5}, {16, 5}});
    glyph.Polyline({{9, 8}, {16, 8}});
    glyph.Polyline({{4, 11}, {16, 11}});
    glyph.Polyline({{9, 14}, {16, 14}});
}

/// Three parts of one colour and one of another.
QColor Mix(const QColor& most, const QColor& rest) {
    const auto mix = [](int a, int b) { return (3 * a + b) / 4; };
    return {mix(most.red(), rest.red()), mix(most.green(), rest.green()), mix(most.blue(), rest.blue())};
}

bool IsLetter(TFace face) {
    return face == TFace::tfBold || face == TFace::tfItalic || face == TFace::tfUnderline;
}

QString LetterOf(TFace face) {
    return face == TFace::tfBold     ? QStringLiteral("B")
           : face == TFace::tfItalic ? QStringLiteral("I")
                                     : QStringLiteral("U");
}

TGlyph LinesOf(TFace face) {
    return face == TFace::tfLeft ? LinesAtLeft : face == TFace::tfCenter ? LinesInTheMiddle : LinesAtRight;
}

} // namespace

TTextStyleButton::TTextStyleButton(TFace face, const char* name, const QString& hint, QWidget* parent)
    : TBaseToggleButton(parent),
      FFace(face) {
    setObjectName(QString::fromLatin1(name));
    SetHint(hint);
}

QSize TTextStyleButton::sizeHint() const {
    const int side = std::max(26, fontMetrics().height() + 8);
    return {side, side};
}

void TTextStyleButton::RenderToggleState(QPainter& canvas, bool state) {
    if (state)
        PaintPressed(canvas);
    IsLetter(FFace) ? PaintLetter(canvas) : PaintLines(canvas);
}

// A frame too, so that the state does not show by the colour alone; and a ground on which any ink is read.
void TTextStyleButton::PaintPressed(QPainter& canvas) const {
    const QColor frame = palette().color(QPalette::Active, QPalette::Highlight);
    DrawBoxOnGrid(canvas, rect().adjusted(2, 2, -2, -2), frame, Mix(palette().color(QPalette::Window), frame));
}

void TTextStyleButton::PaintLetter(QPainter& canvas) const {
    QFont letters = font();
    letters.setPixelSize(QFontInfo(letters).pixelSize() * 9 / 8);
    letters.setBold(FFace == TFace::tfBold);
    letters.setItalic(FFace == TFace::tfItalic);
    letters.setUnderline(FFace == TFace::tfUnderline);
    canvas.setFont(letters);
    canvas.setPen(GetInk());
    canvas.drawText(rect(), Qt::AlignCenter, LetterOf(FFace));
}

void TTextStyleButton::PaintLines(QPainter& canvas) const {
    const TPoint corner = GetRenderPoint(LinesSize);
    DrawImageOnGrid(canvas, QPoint(corner.X, corner.Y),
                    RenderGlyph(LinesOf(FFace), LinesSize, devicePixelRatioF(), GetInk()));
}

} // namespace lmx
