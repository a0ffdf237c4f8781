#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxEvent.h>
#include <lmx/Runtime/lmxExport.h>

#include <QAbstractButton>

#include <memory>

namespace lmx {

class IColorChooser;

/// A button that shows a colour, over squares where it is not opaque. Pressing it lets the user choose another one,
/// alpha included.
class LMX_EXPORT TColor32Button : public QAbstractButton {
public:
    explicit TColor32Button(QWidget* parent = nullptr);

    TColor32 GetColor() const { return FColor; } ///< opaque white at first
    /// Shows a colour; the text of a screen reader follows ("#AARRGGBB"). Nobody is told.
    void SetColor(TColor32 color);

    /// The chooser that is asked, for several buttons that share one; nil stands for a new one each time.
    void SetColorChooser(std::shared_ptr<IColorChooser> chooser);
    /// Lets the user choose, beginning with the present colour, which stays after a cancel.
    void SelectColor();

    /// The user has confirmed a colour, be it the one that there was. The handler may destroy the button.
    void SetOnColorChanged(TEvent<TColor32Button*> event) { FOnColorChanged = std::move(event); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    TColor32 FColor = clWhite32;
    std::shared_ptr<IColorChooser> FChooser;
    TEvent<TColor32Button*> FOnColorChanged;
};

} // namespace lmx
