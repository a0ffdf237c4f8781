#pragma once

#include <lmx/Widgets/lmxBaseToggleButton.h>

namespace lmx {

/// A button that is pressed while a text has a style or an alignment, and shows what it does to the text.
class TTextStyleButton final : public TBaseToggleButton {
public:
    enum class TFace { tfBold, tfItalic, tfUnderline, tfLeft, tfCenter, tfRight };

    TTextStyleButton(TFace face, const char* name, const QString& hint, QWidget* parent);

    QSize sizeHint() const override;

protected:
    void RenderToggleState(QPainter& canvas, bool state) override;

private:
    void PaintPressed(QPainter& canvas) const;
    void PaintLetter(QPainter& canvas) const;
    void PaintLines(QPainter& canvas) const;

    TFace FFace;
};

} // namespace lmx
