#include <tests/Controls/ChaosDocument.h>

#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/Objects/lmxRectangleObjectTypeItem.h>
#include <lmx/Layers/lmxLayerFactory.h>
#include <lmx/MapDoc/lmxMapDocLoadReport.h>
#include <lmx/MapDoc/lmxMapDocReader.h>
#include <lmx/MapDoc/lmxMapDocResourcePersist.h>
#include <lmx/MapDoc/lmxMapDocWriter.h>

#include <QBuffer>

#include <utility>

namespace lmx::tests {

struct TChaosDocuments {
    explicit TChaosDocuments(const TSharedHooks& hooks);

    TSharedHooks Hooks;
    std::shared_ptr<bool> IsDeviceAwake = std::make_shared<bool>(false);
    std::shared_ptr<TMapDocLoadReport> Report = std::make_shared<TMapDocLoadReport>();
    std::unique_ptr<TMapDocReader> Reader;
    std::unique_ptr<TMapDocWriter> Writer;
};

namespace {

const QString TypeId = QStringLiteral("Chaos");
const QString LayerType = QStringLiteral("ChaosLayer");

class TChaosPersist final : public IMapDocLayerPersist {
public:
    explicit TChaosPersist(TSharedHooks hooks) : FHooks(std::move(hooks)) {}
    void ReadLayer(TMapDocResourcePersist&, TBaseMapLayer*, TXmlNode) override { Call("ReadLayer"); }
    void WriteLayer(TMapDocResourcePersist&, const TBaseMapLayer*, TXmlNode, TMapDocExternalResourcePolicy) override {
        Call("WriteLayer");
    }

private:
    void Call(const char* operation) const {
        const TSharedHooks hooks = FHooks; // what is called may free this object
        hooks->Call(QStringLiteral("Document.") + QLatin1String(operation));
    }

    TSharedHooks FHooks;
};

/// Memory that calls the host, once it is awake, whenever it is used.
class TChaosDevice final : public QBuffer {
public:
    TChaosDevice(TSharedHooks hooks, std::shared_ptr<bool> isAwake)
        : FHooks(std::move(hooks)),
          FIsAwake(std::move(isAwake)) {}

protected:
    qint64 readData(char* data, qint64 size) override {
        Call("Read");
        return QBuffer::readData(data, size);
    }
    qint64 writeData(const char* data, qint64 size) override {
        Call("Write");
        return QBuffer::writeData(data, size);
    }

private:
    void Call(const char* operation) const {
        if (*FIsAwake)
            FHooks->Call(QStringLiteral("Document.") + QLatin1String(operation));
    }

    TSharedHooks FHooks;
    std::shared_ptr<bool> FIsAwake;
};

std::shared_ptr<ILayerFactory> LayerFactory(const TSharedHooks& hooks, const std::shared_ptr<bool>& isDeviceAwake) {
    const auto factory = TLayerFactory::GetObject();
    TLayerFactory::PopulateDefault(factory);
    factory->Register(
        LayerType,
        [hooks, isDeviceAwake](const std::shared_ptr<ILayerManager>& manager) -> std::unique_ptr<TBaseMapLayer> {
            *isDeviceAwake = true;
            const auto kept = hooks; // what is called may free this closure
            auto layer = std::make_unique<TChaosLayer>(manager, kept);
            kept->Call(QStringLiteral("Document.CreateLayer"));
            return layer;
        });
    return factory;
}

std::shared_ptr<IMapDocLayerPersistFactory> PersistFactory(const TSharedHooks& hooks) {
    const auto factory = TMapDocLayerPersistFactory::GetObject();
    TMapDocLayerPersistFactory::PopulateDefault(factory);
    factory->Register(LayerType, std::make_shared<TChaosPersist>(hooks));
    return factory;
}

void FillMap(const TMapViewControl& view, const std::shared_ptr<ILayerManager>& manager, const TSharedHooks& hooks) {
    manager->SetTitle(QStringLiteral("Document"));
    manager->GetLayers().Add(std::make_unique<TChaosLayer>(manager, hooks));
    auto* const raster = manager->GetLayers().Add(std::make_unique<TIdrisiMapLayer>(manager));
    raster->TakeImage(ChaosImage());
    raster->SetColorCalc(TGradientColorCalculatorFactory::GetObject(
        0, 9, TGradientFactory::GetObject({{0, 0xFF0000FF}, {1, 0xFFFF0000}})));
    TRulerMapLayer* const rulers = view.GetSpRulersLayer();
    rulers->SetLayerName(QStringLiteral("Rulers of the document"));
    rulers->Add(std::make_unique<TRulerItem>(TRulerOrientation::roVertical, 1, 0xFF00FF00));
    view.GetSpInfoQueryPointsLayer()->GetPoints().Add(std::make_unique<TInfoQueryPoint>());
    TObjectMapLayer* const objects = view.GetSpObjectLayer();
    objects->GetObjects().Add(std::make_unique<TRectangleObjectTypeItem>(objects));
}

const QByteArray& ChaosDocument() {
    static const QByteArray document = [] {
        const auto hooks = std::make_shared<TChaosHooks>();
        const auto manager = TLayerManagerFactory::GetObject();
        TMapViewControl view;
        view.SetLayerManager(manager);
        view.CreateWorldAndViewport(TLatLonWorldSystemFactory::GetObject());
        FillMap(view, manager, hooks);
        QBuffer device;
        device.open(QIODevice::WriteOnly);
        TMapDocResourcePersist resources(device, TypeId, TMapDocPersistMode::pmWrite);
        TMapDocWriter(TypeId, PersistFactory(hooks))
            .Write(resources, &view, TMapDocExternalResourcePolicy::erpEmbedIfPossible);
        resources.Finish();
        return device.data();
    }();
    return document;
}

/// The scene's documents from now on; those before go, whether or not they are at work.
TChaosDocuments& NewDocuments(TChaosScene& scene) {
    scene.Documents = std::make_shared<TChaosDocuments>(scene.Hooks);
    return *scene.Documents;
}

} // namespace

TChaosDocuments::TChaosDocuments(const TSharedHooks& hooks)
    : Hooks(hooks),
      Reader(std::make_unique<TMapDocReader>(TypeId, LayerFactory(hooks, IsDeviceAwake), PersistFactory(hooks))),
      Writer(std::make_unique<TMapDocWriter>(TypeId, PersistFactory(hooks))) {
    Report->SetOnProgress([hooks](const TMapDocLoadReport&) {
        const auto kept = hooks;
        kept->Call(QStringLiteral("Document.Progress"));
    });
    Reader->SetReport(Report);
}

void ReadChaosDocument(TChaosScene& scene) {
    if (!scene.View || !scene.View->GetLayerManager())
        return;
    TChaosDocuments& documents = NewDocuments(scene);
    TChaosDevice device(scene.Hooks, documents.IsDeviceAwake);
    device.setData(ChaosDocument());
    device.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    TMapDocResourcePersist resources(device, TypeId, TMapDocPersistMode::pmRead);
    documents.Reader->Read(resources, scene.View.get());
}

void SaveChaosDocument(TChaosScene& scene) {
    if (!scene.View || !scene.View->GetLayerManager() || !scene.View->WorldCreated())
        return;
    TChaosDocuments& documents = NewDocuments(scene);
    TChaosDevice device(scene.Hooks, documents.IsDeviceAwake);
    device.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    *documents.IsDeviceAwake = true;
    TMapDocResourcePersist resources(device, TypeId, TMapDocPersistMode::pmWrite);
    documents.Writer->Write(resources, scene.View.get(), TMapDocExternalResourcePolicy::erpEmbedIfPossible);
}

} // namespace lmx::tests
