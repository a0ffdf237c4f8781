#include <lmx/MapDoc/lmxMapDocReader.h>

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Layers/lmxLayerFactory.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxRasterMapLayer.h>
#include <lmx/MapDoc/Private/lmxManifest.h>
#include <lmx/MapDoc/lmxMapDocLoadReport.h>
#include <lmx/MapDoc/lmxMapDocResourcePersist.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <exception>
#include <utility>

namespace lmx {

namespace {

void CheckVersion(int version) {
    if (version > MapDocVersion)
        throw EMapDocReaderError(QStringLiteral("MapDoc version error"));
}

/// Why a layer is left out, or nothing. What is raised stays here, whatever its kind: a map without one of its layers
/// is still worth having.
template<class Load>
QString ReasonOf(TXmlNode node, Load&& load) {
    if (!HasDefaultLayerProperties(node))
        return QStringLiteral("an attribute is missing");
    try {
        return load(node);
    } catch (const Exception& failure) {
        return failure.Description();
    } catch (const std::exception& failure) {
        return QString::fromUtf8(failure.what());
    } catch (...) {
        return QStringLiteral("unknown failure");
    }
}

const QString UnknownType = QStringLiteral("the type is unknown");
const QString NoData = QStringLiteral("it has no data");

void ShowPlace(TMapViewControl& control, extended zoom, const TMapPoint& center) {
    const TBorrowed self(&control);
    const TBorrowed viewport(control.GetViewport()); // which may tell of a size
    if (!self)
        return;
    if (!viewport)
        throw EInvalidOperation(QStringLiteral("World not created"));
    viewport->SetScale(zoom);
    if (viewport)
        viewport->SetCenter(center);
}

} // namespace

TMapDocReader::TMapDocReader(QString documentTypeID, std::shared_ptr<ILayerFactory> layerFactory,
                             std::shared_ptr<IMapDocLayerPersistFactory> layerPersistFactory)
    : FDocumentTypeID(std::move(documentTypeID)),
      FLayerFactory(std::move(layerFactory)),
      FLayerPersistFactory(std::move(layerPersistFactory)) {
    if (!FLayerFactory)
        throw EArgumentException(QStringLiteral("LayerFactory"));
    if (!FLayerPersistFactory)
        throw EArgumentNilException(QStringLiteral("LayerPersistFactory"));
}

void TMapDocReader::Read(const QString& fileName, TMapViewControl* control) {
    RequireLayerManager(control);
    TMapDocResourcePersist resources(fileName, TMapDocPersistMode::pmRead);
    resources.SetMostBytes(FLimits.EntryBytes);
    Read(resources, control);
}

// Whoever hears of a layer may destroy the reader: a copy reads.
void TMapDocReader::Read(TMapDocResourcePersist& resources, TMapViewControl* control) {
    TMapDocReader(*this).ReadAll(resources, control);
}

void TMapDocReader::ReadAll(TMapDocResourcePersist& resources, TMapViewControl* control) {
    const std::shared_ptr<ILayerManager> manager = RequireLayerManager(control);
    const TXmlDocument document = ReadManifest(resources, FLimits.ManifestBytes, FLimits.Depth);
    const TXmlNode root = document.GetRoot();
    int version = 0;
    QString documentTypeID;
    QString title;
    QString refSystem;
    extended zoom = 0;
    TMapPoint center;
    ProcessRoot(root, version, documentTypeID, title, refSystem, zoom, center);

    const TBorrowed self(control); // whoever hears of a layer may close the map
    if (const auto system = TWorldSystemFactory::GetObject(refSystem))
        control->CreateWorldAndViewport(system);
    manager->SetTitle(title);
    StartReport(root);
    LoadLayers(version, root.Child(Manifest::Layers), manager, resources);
    LoadSpecialLayers(version, root.Child(Manifest::SpecialLayers), manager, resources);
    if (self)
        ShowPlace(*control, zoom, center);
}

void TMapDocReader::ProcessRoot(TXmlNode root, int& version, QString& documentTypeID, QString& title,
                                QString& refSystem, extended& zoom, TMapPoint& center) const {
    if (root.IsEmpty())
        throw EMapDocReaderError(QStringLiteral("MapDoc root node is null"));
    for (const QString& name : {Manifest::Version, Manifest::DocTypeID, Manifest::MapTitle, Manifest::RefSystem,
                                Manifest::ZoomScale, Manifest::Center})
        if (!root.HasAttribute(name))
            throw Exception(QStringLiteral("One or more required attributes is missing"));
    version = StrToInt(root.GetAttribute(Manifest::Version));
    documentTypeID = root.GetAttribute(Manifest::DocTypeID);
    title = root.GetAttribute(Manifest::MapTitle);
    refSystem = root.GetAttribute(Manifest::RefSystem);
    zoom = StrToFloat(root.GetAttribute(Manifest::ZoomScale));
    center = {};
    if (version < MapDocVersion)
        throw EMapDocReaderError(
            QStringLiteral("This file has been saved using a more recent version of the application."));
    if (documentTypeID != FDocumentTypeID)
        throw EMapDocReaderError(QStringLiteral("Invalid DocTypeID"));
}

QString TMapDocReader::LoadLayer(TXmlNode node, const std::shared_ptr<ILayerManager>& manager,
                                 TMapDocResourcePersist& resources) {
    const QString type = node.GetAttribute(Manifest::Type);
    const auto persist = FLayerPersistFactory->GetPersist(type);
    if (!persist)
        return UnknownType;
    auto layer = FLayerFactory->CreateLayer(type, manager);
    if (!layer)
        return UnknownType;
    const TXmlNode data = node.Child(Manifest::Data);
    if (data.IsEmpty())
        return NoData;
    ReadDefaultLayerProperties(node, layer.get());
    persist->ReadLayer(resources, layer.get(), data);
    if (auto* const raster = dynamic_cast<TRasterMapLayer*>(layer.get()))
        raster->Render();
    manager->GetLayers().Add(std::move(layer));
    return {};
}

QString TMapDocReader::LoadSpecialLayer(TXmlNode node, const std::shared_ptr<ILayerManager>& manager,
                                        TMapDocResourcePersist& resources) {
    const QString type = node.GetAttribute(Manifest::Type);
    const auto persist = FLayerPersistFactory->GetPersist(type);
    if (!persist)
        return UnknownType;
    const TBorrowed layer(manager->GetSpecialLayerWithType(type));
    if (!layer)
        return QStringLiteral("the map has no such layer");
    const TXmlNode data = node.Child(Manifest::Data);
    if (data.IsEmpty())
        return NoData;
    ReadDefaultLayerProperties(node, layer.Get());
    if (layer)
        persist->ReadLayer(resources, layer.Get(), data);
    return {};
}

template<class Load>
void TMapDocReader::ForEachLayer(TXmlNode list, bool isSpecial, Load&& load) {
    const auto report = FReport;
    for (const TXmlNode node : list.GetChildren()) {
        if (node.GetName() != Manifest::Layer)
            continue;
        const QString reason = ReasonOf(node, load);
        if (!report)
            continue;
        if (!reason.isEmpty())
            report->FLostLayers.push_back({node.GetAttribute(Manifest::Type), node.GetAttribute(QStringLiteral("name")),
                                           node.GetAttribute(QStringLiteral("id")), isSpecial, reason,
                                           reason == UnknownType && node.HasAttribute(Manifest::Decoration)});
        ++report->FDoneCount;
        report->FOnProgress(*report);
    }
}

void TMapDocReader::LoadLayers(int version, TXmlNode layers, const std::shared_ptr<ILayerManager>& manager,
                               TMapDocResourcePersist& resources) {
    CheckVersion(version);
    ForEachLayer(layers, false, [&](TXmlNode node) { return LoadLayer(node, manager, resources); });
}

void TMapDocReader::LoadSpecialLayers(int version, TXmlNode specialLayers,
                                      const std::shared_ptr<ILayerManager>& manager,
                                      TMapDocResourcePersist& resources) {
    CheckVersion(version);
    ForEachLayer(specialLayers, true, [&](TXmlNode node) { return LoadSpecialLayer(node, manager, resources); });
}

void TMapDocReader::StartReport(TXmlNode root) {
    if (!FReport)
        return;
    FReport->FLostLayers.clear();
    FReport->FDoneCount = 0;
    FReport->FLayerCount = 0;
    for (const QString& list : {Manifest::Layers, Manifest::SpecialLayers})
        for (const TXmlNode node : root.Child(list).GetChildren())
            FReport->FLayerCount += node.GetName() == Manifest::Layer ? 1 : 0;
}

} // namespace lmx
