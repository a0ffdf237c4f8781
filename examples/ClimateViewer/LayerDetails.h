#pragma once

#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxEventList.h>

#include <QWidget>

#include <memory>

class QComboBox;
class QLabel;
class QPushButton;
class QSlider;
class TColorStrip;

namespace lmx {
class IBaseColorCalculator;
class TBaseMapLayer;
class TBaseShapeLayer;
class TRasterMapLayer;
} // namespace lmx

/// What can be set about a layer's look: of a raster its opacity and its colours, which it shows, of an overlay its
/// colour. It follows the layer, and may outlive it.
class TLayerDetails : public QWidget, public lmx::TEventReceiver {
public:
    TLayerDetails(lmx::TBaseMapLayer* layer, QWidget* parent);

    /// Whether there is anything to set.
    bool HasAny() const { return FRaster || FShapes; }
    /// Names what is in it after the layer, for screen readers.
    void SetLayerName(const QString& name);
    /// A legend shows the colours, and lets the user choose that of an overlay: nothing here has to.
    void SetHasLegend(bool hasLegend);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void AddOpacity();
    void AddColors();
    void AddColorButton();
    void ChooseColors(int index);
    void ChooseColor();
    void Update();
    void UpdateRaster();
    void Layer_Changed(lmx::TBaseMapLayer* layer);

    lmx::TBorrowed<lmx::TRasterMapLayer> FRaster;          // nil for any other layer
    lmx::TBorrowed<lmx::TBaseShapeLayer> FShapes;          // nil for any other layer
    std::shared_ptr<lmx::IBaseColorCalculator> FOwnColors; // those that none of the schemes made
    std::shared_ptr<lmx::IBaseColorCalculator> FShownColors;
    int FShownIndex = 0; // of the shown colours in the choice
    QSlider* FOpacity = nullptr;
    QLabel* FOpacityText = nullptr;
    QComboBox* FColors = nullptr;
    TColorStrip* FStrip = nullptr;
    QPushButton* FColorButton = nullptr;
};
