#pragma once

#include <lmx/Layers/Objects/lmxBaseObjectLayerItem.h>
#include <lmx/Runtime/lmxExport.h>

namespace lmx {

/// Holds an image and has its size, but paints background and border alone. It cannot be saved.
class LMX_EXPORT TImageObjectLayerItem : public TBaseObjectLayerItem {
public:
    explicit TImageObjectLayerItem(TObjectMapLayer* layer);
    ~TImageObjectLayerItem() override;

    QString GetObjectType() const override;      ///< "Image"
    QString GetObjectClassType() const override; ///< empty

    TBitmap32* GetImage() const { return FImage; } ///< or nil
    /// Takes the image's width and height for the rectangle; grabbers and distances stay as they are. The image before
    /// is freed if it is owned.
    void SetImage(TBitmap32* image);
    bool GetOwnsImage() const { return FOwnsImage; } ///< whether it frees its image; true at first
    void SetOwnsImage(bool owns) { FOwnsImage = owns; }

private:
    TBitmap32* FImage = nullptr;
    bool FOwnsImage = true;
};

} // namespace lmx
