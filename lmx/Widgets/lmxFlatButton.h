#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QAbstractButton>
#include <QColor>
#include <QPainter>
#include <QString>

namespace lmx {

/// A button without a frame of its own: the style draws one only under the mouse and while it is pressed, and a mark
/// when it has the keyboard focus. The space bar presses it.
class LMX_EXPORT TFlatButton : public QAbstractButton {
public:
    explicit TFlatButton(QWidget* parent);

    /// Shows the text as a hint under the mouse, and gives it to screen readers as the button's name.
    void SetHint(const QString& hint);

protected:
    /// Draws what is on the button, in its own coordinates. What it raises is shown once; the button then stays empty
    /// until its look changes.
    virtual void PaintContent(QPainter& canvas) = 0;

    /// Colour for signs on the button, the same whether it is enabled or not: a disabled button is drawn pale as a
    /// whole.
    QColor GetInk() const;

    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void PaintFace(QPainter& canvas);

    bool FPaintFailed = false;
};

} // namespace lmx
