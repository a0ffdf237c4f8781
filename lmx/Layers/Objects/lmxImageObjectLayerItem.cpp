#include <lmx/Layers/Objects/lmxImageObjectLayerItem.h>

#include <lmx/Graphics/lmxBitmap32.h>

#include <utility>

namespace lmx {

TImageObjectLayerItem::TImageObjectLayerItem(TObjectMapLayer* layer) : TBaseObjectLayerItem(layer) {}

TImageObjectLayerItem::~TImageObjectLayerItem() {
    if (FOwnsImage)
        delete FImage;
}

QString TImageObjectLayerItem::GetObjectType() const {
    return QStringLiteral("Image");
}

QString TImageObjectLayerItem::GetObjectClassType() const {
    return {};
}

void TImageObjectLayerItem::SetImage(TBitmap32* image) {
    if (image == FImage)
        return;
    TBitmap32* const old = std::exchange(FImage, image);
    if (FOwnsImage)
        delete old;
    if (image) {
        TRect rect = GetRect();
        rect.SetWidth(image->GetWidth());
        rect.SetHeight(image->GetHeight());
        StoreRect(rect);
    }
    NotifyChanged();
}

} // namespace lmx
