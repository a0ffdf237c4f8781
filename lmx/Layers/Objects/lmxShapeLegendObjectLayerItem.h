#pragma once

#include <lmx/Layers/Objects/lmxBaseObjectLayerItem.h>
#include <lmx/Runtime/lmxExport.h>

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace lmx {

class ILayerManager;
class TBaseMapLayer;
class TBaseShapeLayer;
class TPictureWindow;

/// A key of shape layers: a line in the colour of each, and its name. Repaints when layers come and go.
class LMX_EXPORT TShapeLegendObjectLayerItem : public TBaseObjectLayerItem {
public:
    /// 100 x 100 pixels to the eye.
    explicit TShapeLegendObjectLayerItem(TObjectMapLayer* layer);
    ~TShapeLegendObjectLayerItem() override;

    QString GetObjectType() const override;      ///< "Shape key"
    QString GetObjectClassType() const override; ///< "SHAPELEGEND"
    /// Rows that do not fit are cut off.
    void Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) override;

    bool GetShowAll() const { return FShowAll; } ///< true at first
    void SetShowAll(bool showAll);               ///< repaints, and tells nobody
    /// The layers that are shown without ShowAll; those that have gone are left out.
    std::vector<TBaseShapeLayer*> GetLayers() const;
    void SetLayers(std::span<TBaseShapeLayer* const> layers); ///< repaints, and tells nobody

    /// With ShowAll all shape layers of the stack, in its order; else those of GetLayers.
    std::vector<TBaseShapeLayer*> GetLayersToRender() const;

private:
    void LayerManager_LayersChanged(ILayerManager* manager, TBaseMapLayer* layer);
    void PaintKey(const TRect& place, std::span<TBaseShapeLayer* const> layers, TBitmap32& bitmap) const;
    void PaintRows(const TPictureWindow& picture, std::span<TBaseShapeLayer* const> layers,
                   std::int32_t textHeight) const;

    std::vector<TBorrowed<TBaseShapeLayer>> FLayers;
    bool FShowAll = true;
    std::weak_ptr<ILayerManager> FLayerManager; // that it listens to
};

} // namespace lmx
