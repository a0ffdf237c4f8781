#pragma once

#include <lmx/Widgets/lmxFlatButton.h>
#include <lmx/Widgets/lmxGlyphPainter.h>

namespace lmx {

/// A button with a drawn sign, in the colour of the text around it. One that can be checked is framed while it is on.
class TTimeStripButton final : public TFlatButton {
public:
    TTimeStripButton(QWidget* parent, TGlyph glyph, const QString& hint);

    TGlyph GetGlyph() const { return FGlyph; }
    void SetGlyph(TGlyph glyph, const QString& hint);

    QSize sizeHint() const override { return {24, 24}; }

    static void DrawFirst(TGlyphPainter& painter);
    static void DrawPrevious(TGlyphPainter& painter);
    static void DrawPlay(TGlyphPainter& painter);
    static void DrawPause(TGlyphPainter& painter);
    static void DrawNext(TGlyphPainter& painter);
    static void DrawLast(TGlyphPainter& painter);
    static void DrawLoop(TGlyphPainter& painter);

protected:
    void PaintContent(QPainter& canvas) override;

private:
    TGlyph FGlyph;
};

} // namespace lmx
