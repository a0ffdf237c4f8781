#include <lmx/MapDoc/lmxObjectMapLayerPersist.h>

#include <lmx/Layers/Objects/lmxBaseObjectLayerItem.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/MapDoc/Private/lmxMapDocTexts.h>
#include <lmx/MapDoc/lmxObjectLayerTypeItemPersist.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxTextForms.h>

namespace lmx {

namespace {

const QString ViewSize = QStringLiteral("viewSize");
const QString ObjectNode = QStringLiteral("object");

TSize Scaled(TSize size, double factor) {
    if (factor == 1)
        return size;
    return {RoundToPixel(size.cx * factor), RoundToPixel(size.cy * factor)};
}

} // namespace

void TObjectMapLayerPersist::ReadLayer(TMapDocResourcePersist&, TBaseMapLayer* layer, TXmlNode data) {
    auto& objects = LayerAs<TObjectMapLayer>(layer);
    objects.SetPrevViewSize(Scaled(StringToSize(data.GetAttribute(ViewSize)), objects.GetDeviceRatio()));
    const TBorrowed self(layer);
    for (const TXmlNode node : data.GetChildren()) {
        if (node.GetName() != ObjectNode)
            continue;
        const auto persist = TObjectLayerTypeItemPersistFactory::GetObject(node.GetAttribute(QStringLiteral("type")));
        if (!persist)
            continue;
        auto item = persist->CreateObject(&objects);
        if (!item)
            continue;
        persist->Read(node, item.get(), objects.GetLayerManager());
        if (!self)
            return;
        objects.GetObjects().Add(std::move(item));
        if (!self)
            return;
    }
}

void TObjectMapLayerPersist::WriteLayer(TMapDocResourcePersist&, const TBaseMapLayer* layer, TXmlNode data,
                                        TMapDocExternalResourcePolicy) {
    const auto& objects = LayerAs<const TObjectMapLayer>(layer);
    data.SetAttribute(ViewSize, SizeToString(Scaled(objects.GetPrevViewSize(), 1 / objects.GetDeviceRatio())));
    objects.GetObjects().ForEach([&, self = TBorrowed(layer)](const TBaseObjectLayerItem* item) {
        const TBorrowed living(item); // one of a host's says itself of which type it is
        const auto persist = TObjectLayerTypeItemPersistFactory::GetObject(item->GetObjectClassType());
        if (persist && living)
            persist->Write(item, data.AddChild(ObjectNode));
        return static_cast<bool>(self);
    });
}

} // namespace lmx
