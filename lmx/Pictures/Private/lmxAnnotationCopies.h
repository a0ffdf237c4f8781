#pragma once

#include <lmx/Layers/lmxObjectMapLayer.h>

#include <memory>

namespace lmx {

class ILayerManager;
class TBaseObjectLayerItem;
class TWorldViewport;

/// The annotations of a map on a layer of a picture's own: laid out for it, selected by nobody, while those of the view
/// stay as they are. Those of types that documents do not know are left out.
class TAnnotationCopies {
public:
    /// All annotations of the special layers of `manager`.
    TAnnotationCopies(const std::shared_ptr<ILayerManager>& manager, double deviceRatio);

    /// Moves and stretches them with the edges of the view that they are anchored at.
    void LayOut(TWorldViewport& viewport) { FLayer.UpdateLayouts(&viewport); }
    TObjectMapLayer* GetLayer() { return &FLayer; }

private:
    void Copy(const TObjectMapLayer& objects);
    void Copy(const TBaseObjectLayerItem& item);

    TObjectMapLayer FLayer;
};

} // namespace lmx
