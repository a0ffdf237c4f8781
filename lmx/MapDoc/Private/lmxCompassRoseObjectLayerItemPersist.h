#pragma once

#include <lmx/MapDoc/Private/lmxBaseObjectLayerTypeItemPersist.h>

namespace lmx {

class TCompassRoseObjectLayerItemPersist final : public TBaseObjectLayerTypeItemPersist {
public:
    void Read(TXmlNode node, TBaseObjectLayerItem* item, const std::shared_ptr<ILayerManager>& manager) override;
    void Write(const TBaseObjectLayerItem* item, TXmlNode node) override;
    std::unique_ptr<TBaseObjectLayerItem> CreateObject(TObjectMapLayer* layer) override;
};

} // namespace lmx
