#include <lmx/MapDoc/lmxMapDocWriter.h>

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/MapDoc/Private/lmxManifest.h>
#include <lmx/MapDoc/Private/lmxMapDocTexts.h>
#include <lmx/MapDoc/lmxMapDocResourcePersist.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <utility>

namespace lmx {

namespace {

std::shared_ptr<ILayerManager> RequireMap(TMapViewControl* control) {
    auto manager = RequireLayerManager(control);
    if (!control->WorldCreated())
        throw EInvalidOperation(QStringLiteral("World not created"));
    return manager;
}

void WriteRoot(TXmlNode root, const QString& documentTypeID, const TMapViewControl& control, const QString& title) {
    const TWorldViewport* const viewport = control.GetViewport();
    if (!viewport) // gone with whoever heard of its size
        throw EInvalidOperation(QStringLiteral("World not created"));
    const auto& system = control.GetWorldSystem();
    const TMapPoint center = system ? viewport->GetCenter() : TMapPoint(); // nowhere without a system
    root.SetAttribute(Manifest::Version, IntToStr(MapDocVersion));
    root.SetAttribute(Manifest::DocTypeID, documentTypeID);
    root.SetAttribute(Manifest::MapTitle, title);
    root.SetAttribute(Manifest::ZoomScale, FloatToStr(viewport->GetScale()));
    root.SetAttribute(Manifest::Center, center.ToString(false));
    root.SetAttribute(Manifest::RefSystem, WorldSystemToText(system));
}

} // namespace

TMapDocWriter::TMapDocWriter(QString documentTypeID, std::shared_ptr<IMapDocLayerPersistFactory> layerPersistFactory)
    : FDocumentTypeID(std::move(documentTypeID)),
      FLayerPersistFactory(std::move(layerPersistFactory)) {
    if (!FLayerPersistFactory)
        throw EArgumentNilException(QStringLiteral("LayerPersistFactory"));
}

void TMapDocWriter::Write(const QString& fileName, TMapViewControl* control, TMapDocExternalResourcePolicy policy) {
    RequireMap(control);
    TMapDocResourcePersist resources(fileName, TMapDocPersistMode::pmWrite);
    Write(resources, control, policy);
    resources.Finish();
}

// A host's persist object may destroy the writer: a copy writes.
void TMapDocWriter::Write(TMapDocResourcePersist& resources, TMapViewControl* control,
                          TMapDocExternalResourcePolicy policy) {
    TMapDocWriter(*this).WriteAll(resources, control, policy);
}

void TMapDocWriter::WriteAll(TMapDocResourcePersist& resources, TMapViewControl* control,
                             TMapDocExternalResourcePolicy policy) {
    const std::shared_ptr<ILayerManager> manager = RequireMap(control);
    const TXmlDocument document(QStringLiteral("mapDoc"));
    TXmlNode root = document.GetRoot();
    WriteRoot(root, FDocumentTypeID, *control, manager->GetTitle());
    const TXmlNode layers = root.AddChild(Manifest::Layers);
    const TXmlNode specialLayers = root.AddChild(Manifest::SpecialLayers);
    WriteLayers(manager->GetLayers(), layers, resources, policy);
    WriteLayers(manager->GetSpecialLayers(), specialLayers, resources, policy);
    resources.Write({}, Manifest::EntryName, document.ToBytes());
}

void TMapDocWriter::WriteLayers(const TObjectList<TBaseMapLayer>& layers, TXmlNode list,
                                TMapDocResourcePersist& resources, TMapDocExternalResourcePolicy policy) {
    layers.ForEach([&](const TBaseMapLayer* layer) {
        const TBorrowed self(layer);
        const auto persist = FLayerPersistFactory->GetPersist(layer->GetLayerClassName());
        const bool isDecoration = persist && persist->IsDecoration();
        if (!persist || !self)
            return;
        TXmlNode node = list.AddChild(Manifest::Layer);
        const TXmlNode attributes = node.AddChild(Manifest::Attributes);
        const TXmlNode data = node.AddChild(Manifest::Data);
        WriteDefaultLayerProperties(layer, node);
        if (isDecoration)
            node.SetAttribute(Manifest::Decoration, BoolToWord(true));
        WriteAttributes(layer, attributes);
        persist->WriteLayer(resources, layer, data, policy);
    });
}

} // namespace lmx
