#include <lmx/MapDoc/Private/lmxShapeLegendObjectLayerItemPersist.h>

#include <lmx/Layers/Objects/lmxShapeLegendObjectLayerItem.h>
#include <lmx/MapDoc/Private/lmxMapDocTexts.h>
#include <lmx/Runtime/lmxNumberText.h>

namespace lmx {

namespace {

const QString ShowAll = QStringLiteral("showAll");

} // namespace

// What is parsed is a new element and not the one in the file: in documents of version 1 a shape key ends the reading
// of its layer (docs/oddities.md).
void TShapeLegendObjectLayerItemPersist::Read(TXmlNode node, TBaseObjectLayerItem* item,
                                              const std::shared_ptr<ILayerManager>& manager) {
    TBaseObjectLayerTypeItemPersist::Read(node, item, manager);
    auto& key = ItemAs<TShapeLegendObjectLayerItem>(item);
    RequiredText(node, ShowAll, QStringLiteral("Missing required node"));
    key.SetShowAll(StrToBool(node.AddChild(ShowAll).GetText()));
}

void TShapeLegendObjectLayerItemPersist::Write(const TBaseObjectLayerItem* item, TXmlNode node) {
    TBaseObjectLayerTypeItemPersist::Write(item, node);
    const auto& key = ItemAs<const TShapeLegendObjectLayerItem>(item);
    AddText(node, ShowAll, BoolToStr(key.GetShowAll()));
}

std::unique_ptr<TBaseObjectLayerItem> TShapeLegendObjectLayerItemPersist::CreateObject(TObjectMapLayer* layer) {
    return std::make_unique<TShapeLegendObjectLayerItem>(layer);
}

} // namespace lmx
