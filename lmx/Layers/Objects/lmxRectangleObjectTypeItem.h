#pragma once

#include <lmx/Layers/Objects/lmxBaseObjectLayerItem.h>
#include <lmx/Runtime/lmxExport.h>

namespace lmx {

/// A background with a border: grey and black, both shown.
class LMX_EXPORT TRectangleObjectTypeItem : public TBaseObjectLayerItem {
public:
    /// 100 x 100 pixels to the eye. Its grabbers and its distances to the edges of the view are zero until SetRect.
    explicit TRectangleObjectTypeItem(TObjectMapLayer* layer);

    QString GetObjectType() const override;      ///< "Rectangle"
    QString GetObjectClassType() const override; ///< "RECTANGLE"
    void Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) override;
};

} // namespace lmx
