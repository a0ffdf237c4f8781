#include <lmx/MapDoc/lmxRulerMapLayerPersist.h>

#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/MapDoc/Private/lmxMapDocTexts.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxNumberText.h>

namespace lmx {

namespace {

constexpr int Decimals = 4;
const QString VerticalRulers = QStringLiteral("vrulers");
const QString HorizontalRulers = QStringLiteral("hrulers");
const QString RulerNode = QStringLiteral("ruler");
const QString Location = QStringLiteral("location");
const QString Color = QStringLiteral("color");

std::unique_ptr<TRulerItem> ReadRuler(TXmlNode node, TRulerOrientation orientation) {
    const QString missing = QStringLiteral("Missing required node");
    const extended location = StrToFloat(RequiredText(node, Location, missing));
    const TColor32 color = DecimalToLow32(RequiredText(node, Color, missing));
    return std::make_unique<TRulerItem>(orientation, location, color);
}

void ReadRulers(TRulerMapLayer& layer, TXmlNode list, TRulerOrientation orientation) {
    const TBorrowed self(&layer);
    for (const TXmlNode node : list.GetChildren()) {
        if (node.GetName() != RulerNode)
            continue;
        auto ruler = ReadRuler(node, orientation);
        const bool isVertical = orientation == TRulerOrientation::roVertical;
        (isVertical ? layer.GetVRulers() : layer.GetHRulers()).Add(std::move(ruler));
        if (!self)
            return;
    }
}

void WriteRulers(const TObjectList<TRulerItem>& rulers, TXmlNode list) {
    for (const TRulerItem* const ruler : rulers) {
        const TXmlNode node = list.AddChild(RulerNode);
        AddText(node, Location, FloatToFixed(ruler->GetLocation(), Decimals));
        AddText(node, Color, Color32ToDecimal(ruler->GetColor()));
    }
}

} // namespace

void TRulerMapLayerPersist::ReadLayer(TMapDocResourcePersist&, TBaseMapLayer* layer, TXmlNode data) {
    auto& rulers = LayerAs<TRulerMapLayer>(layer);
    const TBorrowed self(&rulers);
    ReadRulers(rulers, data.Child(VerticalRulers), TRulerOrientation::roVertical);
    if (self)
        ReadRulers(rulers, data.Child(HorizontalRulers), TRulerOrientation::roHorizontal);
}

void TRulerMapLayerPersist::WriteLayer(TMapDocResourcePersist&, const TBaseMapLayer* layer, TXmlNode data,
                                       TMapDocExternalResourcePolicy) {
    const auto& rulers = LayerAs<const TRulerMapLayer>(layer);
    WriteRulers(rulers.GetVRulers(), data.AddChild(VerticalRulers));
    WriteRulers(rulers.GetHRulers(), data.AddChild(HorizontalRulers));
}

} // namespace lmx
