#pragma once

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerFactory.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/MapDoc/lmxMapDocReader.h>
#include <lmx/MapDoc/lmxMapDocResourcePersist.h>
#include <lmx/MapDoc/lmxMapDocWriter.h>
#include <tests/MapDoc/MapDocFiles.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ZipBytes.h>

#include <QString>

#include <memory>

// A map to save and to load into, and manifests written by hand.

namespace lmx::tests {

using enum TMapDocExternalResourcePolicy;
using enum TMapDocPersistMode;

inline std::shared_ptr<ILayerFactory> DefaultLayerFactory() {
    auto factory = TLayerFactory::GetObject();
    TLayerFactory::PopulateDefault(factory);
    return factory;
}

inline std::shared_ptr<IMapDocLayerPersistFactory> DefaultPersistFactory() {
    auto factory = TMapDocLayerPersistFactory::GetObject();
    TMapDocLayerPersistFactory::PopulateDefault(factory);
    return factory;
}

/// A view of 200 x 100 with its special layers, in the world of longitudes -180 to 180.
struct TDocumentMap {
    explicit TDocumentMap(bool hasWorld = true) {
        View.resize(200, 100);
        View.SetLayerManager(Manager);
        if (!Manager->GetSpecialLayerWithType(QStringLiteral("ObjectMapLayer")))
            Manager->GetSpecialLayers().Add(std::make_unique<TObjectMapLayer>(Manager, false));
        if (hasWorld)
            View.CreateWorldAndViewport(TLatLonWorldSystemFactory::GetObject());
    }

    TObjectMapLayer& Objects() const {
        return dynamic_cast<TObjectMapLayer&>(*Manager->GetSpecialLayerWithType(QStringLiteral("ObjectMapLayer")));
    }
    TRulerMapLayer& Rulers() const { return *View.GetSpRulersLayer(); }
    TInfoQueryPointLayer& Points() const { return *View.GetSpInfoQueryPointsLayer(); }
    template<class Layer>
    Layer& LayerAt(int index) const {
        return dynamic_cast<Layer&>(*Manager->GetLayers()[index]);
    }
    QStringList LayerNames() const {
        QStringList names;
        for (const TBaseMapLayer* const layer : Manager->GetLayers())
            names += layer->GetLayerName();
        return names;
    }

    void Save(const QString& fileName, TMapDocExternalResourcePolicy policy = erpKeepExternal) {
        TMapDocWriter(QStringLiteral("Test"), DefaultPersistFactory()).Write(fileName, &View, policy);
    }
    void Load(const QString& fileName) {
        TMapDocReader(QStringLiteral("Test"), DefaultLayerFactory(), DefaultPersistFactory()).Read(fileName, &View);
    }
    void LoadBytes(const QByteArray& bytes) {
        TArchiveInMemory memory(bytes);
        TMapDocResourcePersist resources(memory.Buffer, QStringLiteral("memory"), pmRead);
        TMapDocReader(QStringLiteral("Test"), DefaultLayerFactory(), DefaultPersistFactory()).Read(resources, &View);
    }
    void LoadManifest(const QString& manifest) {
        LoadBytes(ZipBytes({DeflatedRecord("_meta\\manifest", manifest.toUtf8())}));
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    TMapViewControl View;
};

inline QString ManifestOf(const QString& fileName) {
    return TMapDocResourcePersist(fileName, pmRead).ReadText({}, QStringLiteral("manifest"));
}

inline const QString PlainRoot =
    QStringLiteral("version=\"1\" docTypeID=\"Test\" mapTitle=\"Title\" zoomScale=\"2\" center=\"1,2\" "
                   "refsystem=\"latlon\"");

/// A manifest with these layers and special layers.
inline QString ManifestText(const QString& layers, const QString& specialLayers = {}, const QString& root = PlainRoot) {
    return QStringLiteral("<?xml version=\"1.0\"?><mapDoc %1><layers>%2</layers><specialLayers>%3</specialLayers>"
                          "</mapDoc>")
        .arg(root, layers, specialLayers);
}

inline QString LayerText(const QString& type, const QString& data, const QString& name = QStringLiteral("Layer")) {
    return QStringLiteral("<layer type=\"%1\" id=\"{00000000-0000-0000-0000-0000000000AB}\" name=\"%3\" "
                          "visible=\"True\" refsystem=\"latlon\" area=\"0,10,20,0\"><attributes/>%2</layer>")
        .arg(type, data, name);
}

/// An image in memory of 2 x 2 cells over 0 to 20 by 0 to 10, which holds 1, 2, 3 and 4.
inline std::unique_ptr<TRealImage> SmallImage(const QString& path = {}) {
    TImageHeader header;
    header.SetWidth(2);
    header.SetHeight(2);
    header.SetMaxX(20);
    header.SetMaxY(10);
    header.SetRefSystem(QStringLiteral("latlong"));
    header.SetMinValue(1);
    header.SetMaxValue(4);
    auto image = std::make_unique<TRealImage>(path, header);
    for (int cell = 0; cell < 4; ++cell)
        image->SetCell(cell % 2 + 1, cell / 2 + 1, static_cast<float>(cell + 1));
    return image;
}

inline TIdrisiMapLayer* AddImageLayer(const TDocumentMap& map, std::unique_ptr<TAbstractImage> image,
                                      const std::shared_ptr<IBaseColorCalculator>& calculator,
                                      const QString& name = QStringLiteral("Image")) {
    auto layer = std::make_unique<TIdrisiMapLayer>(map.Manager);
    layer->SetLayerName(name);
    layer->TakeImage(std::move(image));
    layer->SetColorCalc(calculator);
    layer->Render();
    return map.Manager->GetLayers().Add(std::move(layer));
}

/// Until the end of a test numbers have a decimal point: what it asserts is not about numbers.
struct TWithPoint {
    TFormatSettingsScope Scope{TFormatSettings::Invariant()};
};

} // namespace lmx::tests
