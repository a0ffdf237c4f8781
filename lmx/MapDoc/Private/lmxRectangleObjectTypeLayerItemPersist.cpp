#include <lmx/MapDoc/Private/lmxRectangleObjectTypeLayerItemPersist.h>

#include <lmx/Layers/Objects/lmxRectangleObjectTypeItem.h>

namespace lmx {

void TRectangleObjectTypeLayerItemPersist::Read(TXmlNode node, TBaseObjectLayerItem* item,
                                                const std::shared_ptr<ILayerManager>& manager) {
    TBaseObjectLayerTypeItemPersist::Read(node, item, manager);
    ItemAs<TRectangleObjectTypeItem>(item);
}

void TRectangleObjectTypeLayerItemPersist::Write(const TBaseObjectLayerItem* item, TXmlNode node) {
    TBaseObjectLayerTypeItemPersist::Write(item, node);
    ItemAs<const TRectangleObjectTypeItem>(item);
}

std::unique_ptr<TBaseObjectLayerItem> TRectangleObjectTypeLayerItemPersist::CreateObject(TObjectMapLayer* layer) {
    return std::make_unique<TRectangleObjectTypeItem>(layer);
}

} // namespace lmx
