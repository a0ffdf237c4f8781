#include "Overlays.h"

#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Formats/lmxShpFile.h>
#include <lmx/Formats/lmxVector.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/Layers/lmxVectorFileLayer.h>
#include <lmx/Runtime/lmxText.h>

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>
#include <chrono>
#include <initializer_list>

namespace {

constexpr std::chrono::milliseconds IndicatorInterval{100};

bool HasSuffix(const QString& fileName, std::initializer_list<const char*> suffixes) {
    const QString suffix = QFileInfo(fileName).suffix();
    return std::ranges::any_of(suffixes,
                               [&](const char* known) { return lmx::SameText(suffix, QString::fromLatin1(known)); });
}

/// Converts as another converter does, or not at all, and goes once around the earth.
class TTurningConverter : public lmx::IShapePointConverter {
public:
    explicit TTurningConverter(std::shared_ptr<lmx::IShapePointConverter> converter)
        : FConverter(std::move(converter)) {}

    void Convert(std::span<lmx::TShpPoint> points) override {
        if (FConverter)
            FConverter->Convert(points);
        for (lmx::TShpPoint& point : points)
            point.X += 360;
    }

private:
    std::shared_ptr<lmx::IShapePointConverter> FConverter;
};

/// The western half of a layer, where the world begins at the prime meridian. It follows the layer, and goes with it.
class TTurnedLayer : public lmx::TShapeFileLayer {
public:
    TTurnedLayer(const std::shared_ptr<lmx::ILayerManager>& manager, lmx::TShapeFileLayer& layer)
        : lmx::TShapeFileLayer(manager),
          FLayer(layer) {
        SetColor(layer.GetColor());
        layer.GetOnInvalidated().Add(this, &TTurnedLayer::Layer_Invalidated);
        layer.GetOnVisibilityChanged().Add(this, &TTurnedLayer::Layer_VisibilityChanged);
        manager->GetOnLayerRemoved().Add(this, &TTurnedLayer::LayerManager_LayerRemoved);
    }

    bool GetShowsInLayersList() const override { return false; }
    void Paint(lmx::TWorld* world, lmx::TWorldViewport* viewport, lmx::TBitmap32& bitmap) override {
        if (world->GetWorldSystem()->Merdian() == lmx::TMeridian::mrdAntiMeridian)
            lmx::TShapeFileLayer::Paint(world, viewport, bitmap);
    }

private:
    void Layer_Invalidated(lmx::TBaseMapLayer*) { SetColor(FLayer.GetColor()); }
    void Layer_VisibilityChanged(lmx::TBaseMapLayer*) { SetIsVisible(FLayer.GetIsVisible()); }
    void LayerManager_LayerRemoved(lmx::ILayerManager*, lmx::TBaseMapLayer* removed) {
        if (removed != &FLayer)
            return;
        // The list is still busy with the layer that goes.
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [this, life = GetLivenessToken()] {
                if (const auto manager = life.expired() ? nullptr : GetLayerManager())
                    manager->GetLayers().Remove(this);
            },
            Qt::QueuedConnection);
    }

    lmx::TShapeFileLayer& FLayer;
};

lmx::TBaseShapeLayer* AddShapeFile(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& fileName,
                                   lmx::TColor32 color) {
    const auto converter = lmx::TSHapePointConverterFactory::GetObject(lmx::GetDatum(lmx::ProjectionFileOf(fileName)));
    auto file = lmx::TShpFile::LoadFromFile(fileName, converter);
    auto turnedFile = lmx::TShpFile::LoadFromFile(fileName, std::make_shared<TTurningConverter>(converter));
    auto layer = std::make_unique<lmx::TShapeFileLayer>(manager);
    layer->SetLayerName(manager->GetNextName(QFileInfo(fileName).completeBaseName()));
    layer->SetColor(color);
    layer->TakeShpFile(std::move(file));
    auto turned = std::make_unique<TTurnedLayer>(manager, *layer);
    turned->TakeShpFile(std::move(turnedFile));
    auto* added = static_cast<lmx::TBaseShapeLayer*>(manager->GetLayers().Add(std::move(layer)));
    manager->GetLayers().Add(std::move(turned));
    return added;
}

lmx::TBaseShapeLayer* AddVectorFile(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& fileName,
                                    lmx::TColor32 color) {
    auto file = std::make_unique<lmx::TVector>(fileName);
    auto layer = std::make_unique<lmx::TVectorFileLayer>(manager);
    layer->SetLayerName(manager->GetNextName(QFileInfo(fileName).completeBaseName()));
    layer->SetColor(color);
    layer->SetVectorFile(std::move(file));
    return static_cast<lmx::TBaseShapeLayer*>(manager->GetLayers().Add(std::move(layer)));
}

} // namespace

bool IsOverlayName(const QString& fileName) {
    return HasSuffix(fileName, {"shp", "vct", "vdc", "vec", "dvc"});
}

lmx::TBaseShapeLayer* AddOverlay(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& fileName,
                                 lmx::TColor32 color) {
    return HasSuffix(fileName, {"shp"}) ? AddShapeFile(manager, fileName, color)
                                        : AddVectorFile(manager, fileName, color);
}

void AddSampleOverlays(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& folder) {
    AddOverlay(manager, folder + "/ne_50m_rivers_lake_centerlines.shp", 0xFF4F86C6)->SetLayerName("Rivers");
    AddOverlay(manager, folder + "/ne_50m_land.shp", 0xFF24303C)->SetLayerName("Coasts");
}

bool IsDrawing(lmx::ILayerManager& manager) {
    for (lmx::TBaseMapLayer* layer : manager.GetLayers()) {
        const auto* buffered = dynamic_cast<lmx::TBufferedMapLayer*>(layer);
        if (buffered && buffered->GetCurrentThread())
            return true;
    }
    return false;
}

TDrawingIndicator::TDrawingIndicator(std::shared_ptr<lmx::ILayerManager> manager, QWidget* parent)
    : QLabel(parent),
      FManager(std::move(manager)) {
    setObjectName("DrawingIndicator");
    FTimer.callOnTimeout(this, [this] { setText(IsDrawing(*FManager) ? tr("Drawing...") : QString()); });
    FTimer.start(IndicatorInterval);
}
