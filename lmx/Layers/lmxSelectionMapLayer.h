#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Layers/lmxBaseLayerManagerLayer.h>
#include <lmx/Runtime/lmxExport.h>

namespace lmx {

/// The rubber band of a selection, held in map coordinates, so it follows the map while it stands. Its corners are the
/// two ends of a drag and are not put in order: the top left one is where the drag began, wherever that lies.
class LMX_EXPORT TSelectionMapLayer : public TBaseLayerManagerLayer {
public:
    using TBaseLayerManagerLayer::TBaseLayerManagerLayer;

    QString GetLayerTypeName() const override;  ///< "Selection"
    bool GetShowsInLayersList() const override; ///< false
    /// While enabled, a dashed black and white frame, which reads on any colour.
    void Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) override;

    /// Enables the selection as a single point. Repaints in any case.
    void StartSelection(const TMapPoint& point);
    /// Moves the end of the drag.
    void Adjust(const TMapPoint& point) { SetBottomRight(point); }

    bool GetEnabled() const { return FEnabled; } ///< false at first
    void SetEnabled(bool enabled);               ///< keeps the corners
    const TMapPoint& GetTopLeft() const { return FTopLeft; }
    void SetTopLeft(const TMapPoint& point);
    const TMapPoint& GetBottomRight() const { return FBottomRight; }
    void SetBottomRight(const TMapPoint& point);
    /// The area between the corners as they are: its edges may be inverted.
    TMapArea GetSelectedRect() const { return {FTopLeft, FBottomRight}; }

private:
    bool FEnabled = false;
    TMapPoint FBottomRight;
    TMapPoint FTopLeft;
};

} // namespace lmx
