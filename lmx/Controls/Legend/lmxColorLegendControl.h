#pragma once

#include <lmx/Controls/Legend/lmxBaseLegendControl.h>
#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Runtime/lmxEvent.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <QString>

namespace lmx {

/// The control and the colour that the user has chosen.
using TShapeFileLayerLegendControlColorChanged = TEvent<TBaseLegendControl*, TColor>;

/// The legend of a layer of one colour: a label and a swatch. A press on the swatch, or the space bar or Enter, lets
/// the user choose another colour. The control tells of the choice and does not take it by itself. Its owner may free
/// it while it tells. Sizes are logical pixels.
class LMX_EXPORT TColorLegendControl : public TBaseLegendControl {
public:
    TColor GetColor() const { return FColor; } ///< of the ground; clBtnFace at first
    void SetColor(TColor color);
    TColor GetShapeColor() const { return FShapeColor; } ///< black at first
    void SetShapeColor(TColor color);
    const QString& GetColorLabelText() const { return FColorLabelText; } ///< "Color: " at first
    void SetColorLabelText(const QString& text);
    void SetOnColorChanged(TShapeFileLayerLegendControlColorChanged event) { FOnColorChanged = std::move(event); }

    TRect GetLabelRect() const { return FLabelRect; }
    TRect GetColorRect() const { return FColorRect; }
    /// 1 on the label, 2 on the swatch, 0 elsewhere.
    int HitTest(TPoint point) const;

    int GetSuggestedHeight() const override; ///< two lines and 10
    QSize sizeHint() const override;

    /// Lets the user choose a colour, beginning with the present one, and tells of it.
    void ChooseColor();

protected:
    TColorLegendControl(QWidget* parent, const QString& className);

    /// Places label and swatch; a derived class goes on from there.
    virtual void Layout();

    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    TColor FColor = clBtnFace;
    TColor FShapeColor;
    QString FColorLabelText = QStringLiteral("Color: ");
    TShapeFileLayerLegendControlColorChanged FOnColorChanged;
    TRect FLabelRect;
    TRect FColorRect;
};

} // namespace lmx
