#include <lmx/Layers/Objects/lmxRectangleObjectTypeItem.h>

namespace lmx {

namespace {

constexpr TRect DefaultRect = {0, 0, 100, 100};
constexpr TColor32 Grey = 0xFF808080;

} // namespace

TRectangleObjectTypeItem::TRectangleObjectTypeItem(TObjectMapLayer* layer) : TBaseObjectLayerItem(layer) {
    SetGrabberOptions({TGrabberOption::goResizable});
    StoreColors(true, Grey, true, clBlack32);
    StoreRect(ToDevicePixels(DefaultRect));
}

QString TRectangleObjectTypeItem::GetObjectType() const {
    return QStringLiteral("Rectangle");
}

QString TRectangleObjectTypeItem::GetObjectClassType() const {
    return QStringLiteral("RECTANGLE");
}

void TRectangleObjectTypeItem::Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) {
    TBaseObjectLayerItem::Paint(world, viewport, bitmap);
    PaintGrabbers(bitmap);
}

} // namespace lmx
