#include <lmx/MapDoc/Private/lmxCompassRoseObjectLayerItemPersist.h>

#include <lmx/Layers/Objects/lmxCompassRoseObjectLayerItem.h>
#include <lmx/MapDoc/Private/lmxMapDocTexts.h>

namespace lmx {

namespace {

const QString LightColor = QStringLiteral("lightColor");
const QString DarkColor = QStringLiteral("darkColor");
const QString FontColor = QStringLiteral("fontColor");
const QString LineColor = QStringLiteral("lineColor");

} // namespace

// The picture stays that of the constructor until an edit makes it anew.
void TCompassRoseObjectLayerItemPersist::Read(TXmlNode node, TBaseObjectLayerItem* item,
                                              const std::shared_ptr<ILayerManager>& manager) {
    TBaseObjectLayerTypeItemPersist::Read(node, item, manager);
    auto& rose = ItemAs<TCompassRoseObjectLayerItem>(item);
    const QString missing = QStringLiteral("Missing required node");
    const QString light = RequiredText(node, LightColor, missing);
    const QString dark = RequiredText(node, DarkColor, missing);
    const QString font = RequiredText(node, FontColor, missing);
    const QString line = RequiredText(node, LineColor, missing);
    rose.SetLightColor(DecimalToLow32(light));
    rose.SetDarkColor(DecimalToLow32(dark));
    rose.SetFontColor(DecimalToLow32(font));
    rose.SetLineColor(DecimalToLow32(line));
}

void TCompassRoseObjectLayerItemPersist::Write(const TBaseObjectLayerItem* item, TXmlNode node) {
    TBaseObjectLayerTypeItemPersist::Write(item, node);
    const auto& rose = ItemAs<const TCompassRoseObjectLayerItem>(item);
    AddText(node, LightColor, Color32ToDecimal(rose.GetLightColor()));
    AddText(node, DarkColor, Color32ToDecimal(rose.GetDarkColor()));
    AddText(node, FontColor, Color32ToDecimal(rose.GetFontColor()));
    AddText(node, LineColor, Color32ToDecimal(rose.GetLineColor()));
}

std::unique_ptr<TBaseObjectLayerItem> TCompassRoseObjectLayerItemPersist::CreateObject(TObjectMapLayer* layer) {
    return std::make_unique<TCompassRoseObjectLayerItem>(layer);
}

} // namespace lmx
