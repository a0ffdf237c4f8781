#include <lmx/MapDoc/lmxMapDocLayerPersist.h>

#include <lmx/Layers/lmxBaseMapLayer.h>
#include <lmx/MapDoc/Private/lmxMapDocTexts.h>
#include <lmx/MapDoc/lmxIdrisiMapLayerPersist.h>
#include <lmx/MapDoc/lmxInfoQueryPointLayerPersist.h>
#include <lmx/MapDoc/lmxObjectMapLayerPersist.h>
#include <lmx/MapDoc/lmxRulerMapLayerPersist.h>
#include <lmx/MapDoc/lmxShapeFileLayerPersist.h>
#include <lmx/MapDoc/lmxVectorFileLayerPersist.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxDictionary.h>
#include <lmx/Runtime/lmxNumberText.h>

namespace lmx {

namespace {

class TMapDocLayerPersistFactoryImpl final : public IMapDocLayerPersistFactory {
public:
    std::shared_ptr<IMapDocLayerPersist> GetPersist(const QString& typeName) const override {
        std::shared_ptr<IMapDocLayerPersist> persist;
        FPersists.TryGetValue(typeName, persist);
        return persist;
    }
    void Register(const QString& typeName, const std::shared_ptr<IMapDocLayerPersist>& persist) override {
        if (!persist)
            throw EArgumentNilException(QStringLiteral("Persist"));
        FPersists.Add(typeName, persist);
    }

private:
    TDictionary<QString, std::shared_ptr<IMapDocLayerPersist>> FPersists;
};

void CheckLayer(const TBaseMapLayer* layer) {
    if (!layer)
        throw EArgumentNilException(QStringLiteral("Layer"));
}

} // namespace

std::shared_ptr<IMapDocLayerPersistFactory> TMapDocLayerPersistFactory::GetObject() {
    return std::make_shared<TMapDocLayerPersistFactoryImpl>();
}

const std::shared_ptr<IMapDocLayerPersistFactory>& TMapDocLayerPersistFactory::GetSingleton() {
    static const std::shared_ptr<IMapDocLayerPersistFactory> factory = GetObject();
    return factory;
}

void TMapDocLayerPersistFactory::PopulateDefault(const std::shared_ptr<IMapDocLayerPersistFactory>& factory) {
    if (!factory)
        throw EExArgumentNilException(QStringLiteral("TMapDocLayerPersistFactory.PopulateDefault"),
                                      QStringLiteral("Factory"));
    factory->Register(QStringLiteral("IdrisiMapLayer"), std::make_shared<TIdrisiMapLayerPersist>());
    factory->Register(QStringLiteral("VectorFileLayer"), std::make_shared<TVectorFileLayerPersist>());
    factory->Register(QStringLiteral("ShapeFileLayer"), std::make_shared<TShapeFileLayerPersist>());
    factory->Register(QStringLiteral("InfoQueryPointLayer"), std::make_shared<TInfoQueryPointLayerPersist>());
    factory->Register(QStringLiteral("RulerMapLayer"), std::make_shared<TRulerMapLayerPersist>());
    factory->Register(QStringLiteral("ObjectMapLayer"), std::make_shared<TObjectMapLayerPersist>());
}

void WriteDefaultLayerProperties(const TBaseMapLayer* layer, TXmlNode node) {
    CheckLayer(layer);
    if (node.IsEmpty())
        throw EArgumentNilException(QStringLiteral("Node"));
    const TWorldMapArea& area = layer->GetLayerArea();
    node.SetAttribute(QStringLiteral("type"), layer->GetLayerClassName());
    node.SetAttribute(QStringLiteral("id"), GuidToText(layer->GetLayerID()));
    node.SetAttribute(QStringLiteral("name"), layer->GetLayerName());
    node.SetAttribute(QStringLiteral("visible"), BoolToWord(layer->GetIsVisible()));
    node.SetAttribute(QStringLiteral("refsystem"), WorldSystemToText(area.WorldSystem));
    node.SetAttribute(QStringLiteral("area"), area.Area.ToString());
}

void ReadDefaultLayerProperties(TXmlNode node, TBaseMapLayer* layer) {
    CheckLayer(layer);
    const QUuid id = TextToGuid(node.GetAttribute(QStringLiteral("id")));
    const QString name = node.GetAttribute(QStringLiteral("name"));
    const bool isVisible = StrToBool(node.GetAttribute(QStringLiteral("visible")));
    const QString refSystem = node.GetAttribute(QStringLiteral("refsystem"));
    TWorldMapArea area; // its constructor would refuse to be without a system
    area.Area = TMapArea(node.GetAttribute(QStringLiteral("area")));
    area.WorldSystem = TWorldSystemFactory::GetObject(refSystem);

    const TBorrowed self(layer);
    layer->SetLayerID(id);
    layer->SetLayerName(name);
    if (self)
        layer->SetIsVisible(isVisible);
    if (self)
        layer->StoreLayerArea(area);
}

bool HasDefaultLayerProperties(TXmlNode node) {
    return node.HasAttribute(QStringLiteral("type")) && node.HasAttribute(QStringLiteral("id")) &&
           node.HasAttribute(QStringLiteral("name")) && node.HasAttribute(QStringLiteral("visible")) &&
           node.HasAttribute(QStringLiteral("refsystem")) && node.HasAttribute(QStringLiteral("area"));
}

void WriteAttributes(const TBaseMapLayer* layer, TXmlNode node) {
    CheckLayer(layer);
    for (const auto& [name, data] : layer->GetAttributes()) {
        if (name.isEmpty())
            continue;
        TXmlNode attribute = node.AddChild(QStringLiteral("attribute"));
        attribute.SetAttribute(QStringLiteral("name"), name);
        attribute.SetAttribute(QStringLiteral("type"), IntToStr(static_cast<int>(data.DataType)));
        attribute.SetText(data.Value);
    }
}

} // namespace lmx
