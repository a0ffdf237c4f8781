#include <lmx/MapDoc/Private/lmxLegendObjectLayerItemPersist.h>

#include <lmx/Layers/Objects/lmxLegendObjectLayerItem.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/MapDoc/Private/lmxMapDocTexts.h>
#include <lmx/Runtime/lmxNumberText.h>

namespace lmx {

namespace {

constexpr int OrientationCount = 2;
const QString LayerId = QStringLiteral("layerId");
const QString Orientation = QStringLiteral("orientation");
const QString NoLayer = QStringLiteral("null");

} // namespace

// The ordinary layers have been read by now, with their ids; one that was dropped leaves the legend without a layer.
void TLegendObjectLayerItemPersist::Read(TXmlNode node, TBaseObjectLayerItem* item,
                                         const std::shared_ptr<ILayerManager>& manager) {
    TBaseObjectLayerTypeItemPersist::Read(node, item, manager);
    auto& legend = ItemAs<TLegendObjectLayerItem>(item);
    const QString missing = QStringLiteral("Missing required node");
    const QString layerId = RequiredText(node, LayerId, missing);
    const QString orientation = RequiredText(node, Orientation, missing);
    legend.SetLegendLayer(layerId == NoLayer || !manager ? nullptr : manager->FindLayer(TextToGuid(layerId)));
    legend.SetOrientation(static_cast<TLegendOrientation>(TextToOrdinal(orientation, OrientationCount)));
}

void TLegendObjectLayerItemPersist::Write(const TBaseObjectLayerItem* item, TXmlNode node) {
    TBaseObjectLayerTypeItemPersist::Write(item, node);
    const auto& legend = ItemAs<const TLegendObjectLayerItem>(item);
    const TBaseMapLayer* const layer = legend.GetLegendLayer();
    AddText(node, LayerId, layer ? GuidToText(layer->GetLayerID()) : NoLayer);
    AddText(node, Orientation, IntToStr(static_cast<int>(legend.GetOrientation())));
}

std::unique_ptr<TBaseObjectLayerItem> TLegendObjectLayerItemPersist::CreateObject(TObjectMapLayer* layer) {
    return std::make_unique<TLegendObjectLayerItem>(layer);
}

} // namespace lmx
