#pragma once

#include <lmx/Runtime/lmxExport.h>
#include <lmx/Widgets/lmxBaseToggleButton.h>

#include <QString>

namespace lmx {

/// A button of a layer's row in a list of layers. Its pictures are images of TMapViewAssets.
class LMX_EXPORT TLayerRowToggleButton : public TBaseToggleButton {
protected:
    TLayerRowToggleButton(QWidget* parent, const QString& hint, int imageOn, int imageOff);

    void RenderToggleState(QPainter& canvas, bool state) override;

private:
    int FImageOn;
    int FImageOff;
};

/// Unfolds what is shown of a layer; selected: open.
class LMX_EXPORT TLayerOpenCloseToggleButton : public TLayerRowToggleButton {
public:
    explicit TLayerOpenCloseToggleButton(QWidget* parent = nullptr);
};

/// Shows or hides a layer; selected: visible.
class LMX_EXPORT TLayerVisibilityToggleButton : public TLayerRowToggleButton {
public:
    explicit TLayerVisibilityToggleButton(QWidget* parent = nullptr);
};

/// Opens the menu of a layer; looks the same in both states.
class LMX_EXPORT TShowMenuButton : public TLayerRowToggleButton {
public:
    explicit TShowMenuButton(QWidget* parent = nullptr);
};

} // namespace lmx
