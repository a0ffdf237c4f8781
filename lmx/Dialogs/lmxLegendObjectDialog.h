#pragma once

#include <lmx/Colour/Legend/lmxLegendTypes.h>
#include <lmx/Dialogs/lmxObjectDialog.h>
#include <lmx/Runtime/lmxExport.h>

#include <memory>
#include <vector>

QT_BEGIN_NAMESPACE
class QRadioButton;
QT_END_NAMESPACE

namespace lmx {

class TBaseMapLayer;
class TDrawnListView;

/// Asks for the layer and the orientation of a legend that stands on the map. It holds no item: the caller fills it,
/// shows it and reads it. At first: no layer, vertical.
///
/// OK wants a layer: without one the user is told "Please select a layer." under "Layer", and the dialog stays. Layers
/// are borrowed: one that goes is no choice any more.
class LMX_EXPORT TLegendObjectDialog : public TObjectDialog {
public:
    explicit TLegendObjectDialog(QWidget* parent = nullptr);

    /// Lists those of the layers that are rasters, in this order and by their present names, none of them selected.
    void SetLayers(const std::vector<TBaseMapLayer*>& layers);

    TBaseMapLayer* GetSelectedLayer() const; ///< nil if none is selected, or none that there still is
    /// Selects the row of that layer; a layer that is not listed, and nil, change nothing.
    void SetSelectedLayer(const TBaseMapLayer* layer);

    TLegendOrientation GetLOrientation() const;
    void SetLOrientation(TLegendOrientation orientation);

protected:
    void OkClick() override;

private:
    class TLayerRows;

    void DropGoneLayers();

    std::shared_ptr<TLayerRows> FRows;
    TDrawnListView* FLayers;
    QRadioButton* FVertical;
    QRadioButton* FHorizontal;
};

} // namespace lmx
