#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExport.h>

#include <QAbstractButton>

namespace lmx {

/// A field that shows an opaque colour. Pressing it with the mouse or the space bar lets the user choose another one.
class LMX_EXPORT TColorShape : public QAbstractButton {
public:
    explicit TColorShape(QWidget* parent = nullptr);

    TColor GetColor() const { return FColor; } ///< white at first
    /// Shows a colour; the text of a screen reader follows ("#RRGGBB").
    void SetColor(TColor color);
    /// Lets the user choose, beginning with the present colour, which stays after a cancel.
    void SelectColor();

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    TColor FColor;
};

} // namespace lmx
