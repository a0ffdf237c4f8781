#include <lmx/MapDoc/Private/lmxBaseObjectLayerTypeItemPersist.h>

#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/MapDoc/Private/lmxMapDocTexts.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxTextForms.h>

namespace lmx {

namespace {

double DeviceRatioOf(const TBaseObjectLayerItem& item) {
    const TObjectMapLayer* const layer = item.GetLayer();
    return layer ? layer->GetDeviceRatio() : 1;
}

TRect Scaled(const TRect& rect, double factor) {
    if (factor == 1)
        return rect;
    return {RoundToPixel(rect.Left * factor), RoundToPixel(rect.Top * factor), RoundToPixel(rect.Right * factor),
            RoundToPixel(rect.Bottom * factor)};
}

TAnchorData Scaled(const TAnchorData& data, double factor) {
    const TRect scaled = Scaled(TRect(data.Left, data.Top, data.Right, data.Bottom), factor);
    return {scaled.Left, scaled.Top, scaled.Right, scaled.Bottom};
}

void ReadBackground(TXmlNode node, TBaseObjectLayerItem& item, const QString& show, const QString& color) {
    if (node.HasAttribute(show))
        item.SetShowBackground(StrToBool(node.GetAttribute(show)));
    if (node.HasAttribute(color))
        item.SetBackgroundColor(DecimalToLow32(node.GetAttribute(color)));
}

} // namespace

void TBaseObjectLayerTypeItemPersist::Read(TXmlNode node, TBaseObjectLayerItem* item,
                                           const std::shared_ptr<ILayerManager>&) {
    auto& object = ItemAs<TBaseObjectLayerItem>(item);
    object.SetAnchors(StringToAnchors(node.GetAttribute(QStringLiteral("anchors"))));
    // The attribute anchorData is for other readers: SetRect measures the distances anew.
    object.SetName(node.GetAttribute(QStringLiteral("name")));
    object.SetIsVisible(StrToBool(node.GetAttribute(QStringLiteral("visible"))));
    const TRect rect = StringToRect(node.GetAttribute(QStringLiteral("rect")));
    object.SetAnchorAdjustedRect(Scaled(rect, DeviceRatioOf(object)));
    ReadBackground(node, object, QStringLiteral("showBg"), QStringLiteral("bgColor"));
    ReadBackground(node, object, QStringLiteral("showBorder"), QStringLiteral("borderColor"));
    if (const QString locked = QStringLiteral("locked"); node.HasAttribute(locked))
        object.SetLocked(StrToBool(node.GetAttribute(locked)));
}

void TBaseObjectLayerTypeItemPersist::Write(const TBaseObjectLayerItem* item, TXmlNode node) {
    const auto& object = ItemAs<const TBaseObjectLayerItem>(item);
    const double factor = 1 / DeviceRatioOf(object);
    node.SetAttribute(QStringLiteral("type"), object.GetObjectClassType());
    node.SetAttribute(QStringLiteral("anchors"), AnchorsToString(object.GetAnchors()));
    node.SetAttribute(QStringLiteral("anchorData"), Scaled(object.GetAnchorData(), factor).ToString());
    node.SetAttribute(QStringLiteral("name"), object.GetName());
    node.SetAttribute(QStringLiteral("visible"), BoolToStr(object.GetIsVisible()));
    node.SetAttribute(QStringLiteral("rect"), RectToString(Scaled(object.GetRect(), factor)));
    node.SetAttribute(QStringLiteral("showBg"), BoolToStr(object.GetShowBackground()));
    node.SetAttribute(QStringLiteral("bgColor"), Color32ToDecimal(object.GetBackgroundColor()));
    node.SetAttribute(QStringLiteral("locked"), BoolToStr(object.GetLocked()));
    node.SetAttribute(QStringLiteral("showBorder"), BoolToStr(object.GetShowBorder()));
    node.SetAttribute(QStringLiteral("borderColor"), Color32ToDecimal(object.GetBorderColor()));
}

} // namespace lmx
