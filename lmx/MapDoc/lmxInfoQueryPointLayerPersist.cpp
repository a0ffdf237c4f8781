#include <lmx/MapDoc/lmxInfoQueryPointLayerPersist.h>

#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/MapDoc/Private/lmxMapDocTexts.h>
#include <lmx/Runtime/lmxBorrowed.h>

namespace lmx {

namespace {

const QString PointNode = QStringLiteral("iqpoint");
const QString Color = QStringLiteral("color");
const QString Label = QStringLiteral("label");
const QString Place = QStringLiteral("point");

std::unique_ptr<TInfoQueryPoint> ReadPoint(TXmlNode node) {
    const QString missing = QStringLiteral("Missing required node");
    auto point = std::make_unique<TInfoQueryPoint>();
    point->SetColor(DecimalToLow32(RequiredText(node, Color, missing)));
    point->SetPointLabel(RequiredText(node, Label, missing));
    point->SetPoint(TMapPoint(RequiredText(node, Place, missing)));
    return point;
}

} // namespace

void TInfoQueryPointLayerPersist::ReadLayer(TMapDocResourcePersist&, TBaseMapLayer* layer, TXmlNode data) {
    auto& pointLayer = LayerAs<TInfoQueryPointLayer>(layer);
    const TBorrowed self(layer);
    for (const TXmlNode node : data.GetChildren()) {
        if (node.GetName() != PointNode)
            continue;
        pointLayer.GetPoints().Add(ReadPoint(node));
        if (!self)
            return;
    }
}

void TInfoQueryPointLayerPersist::WriteLayer(TMapDocResourcePersist&, const TBaseMapLayer* layer, TXmlNode data,
                                             TMapDocExternalResourcePolicy) {
    for (const TInfoQueryPoint* const point : LayerAs<const TInfoQueryPointLayer>(layer).GetPoints()) {
        const TXmlNode node = data.AddChild(PointNode);
        AddText(node, Color, Color32ToDecimal(point->GetColor()));
        AddText(node, Label, point->GetPointLabel());
        AddText(node, Place, point->GetPoint().ToString(false));
    }
}

} // namespace lmx
