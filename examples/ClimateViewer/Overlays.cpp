#include "Overlays.h"

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Formats/Idrisi/lmxVector.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Layers/lmxLayerFactory.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/Layers/lmxVectorFileLayer.h>
#include <lmx/MapDoc/lmxMapDocLayerPersist.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxThread.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QPointer>

#include <chrono>

#include "FileKinds.h"

namespace {

const QString TurnedLayerName = QStringLiteral("TurnedLayer");
const QString FollowsNode = QStringLiteral("follows");
constexpr std::chrono::milliseconds IndicatorInterval{100};

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
    using TShapeFileLayer::TShapeFileLayer;

    QString GetLayerClassName() const override { return TurnedLayerName; }
    bool GetShowsInLayersList() const override { return false; }
    void Paint(lmx::TWorld* world, lmx::TWorldViewport* viewport, lmx::TBitmap32& bitmap) override {
        if (world->GetWorldSystem()->Merdian() == lmx::TMeridian::mrdAntiMeridian)
            lmx::TShapeFileLayer::Paint(world, viewport, bitmap);
    }

    lmx::TShapeFileLayer* GetLayer() const { return FLayer.Get(); }
    /// Once, on the manager of both.
    void Follow(lmx::TShapeFileLayer& layer) {
        FLayer = &layer;
        SetColor(layer.GetColor());
        layer.GetOnInvalidated().Add(this, &TTurnedLayer::Layer_Invalidated);
        layer.GetOnVisibilityChanged().Add(this, &TTurnedLayer::Layer_VisibilityChanged);
        GetLayerManager()->GetOnLayerMoved().Add(this, &TTurnedLayer::LayerManager_LayerMoved);
        GetLayerManager()->GetOnLayerRemoved().Add(this, &TTurnedLayer::LayerManager_LayerRemoved);
    }

private:
    void Layer_Invalidated(lmx::TBaseMapLayer*) { SetColor(FLayer->GetColor()); }
    void Layer_VisibilityChanged(lmx::TBaseMapLayer*) { SetIsVisible(FLayer->GetIsVisible()); }
    void LayerManager_LayerMoved(lmx::ILayerManager*, int, int) {
        Later([this](lmx::ILayerManager& manager) {
            auto& layers = manager.GetLayers();
            const int place = layers.IndexOf(FLayer.Get());
            const int turned = layers.IndexOf(this);
            if (place >= 0 && turned != place + 1)
                manager.MoveLayer(turned, turned < place ? place : place + 1);
        });
    }
    void LayerManager_LayerRemoved(lmx::ILayerManager*, lmx::TBaseMapLayer* removed) {
        if (removed == FLayer.Get())
            Later([this](lmx::ILayerManager& manager) { manager.GetLayers().Remove(this); });
    }
    /// The list is still busy with what it tells.
    void Later(std::function<void(lmx::ILayerManager&)> change) {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self = lmx::TBorrowed(this), change = std::move(change)] {
                if (const auto manager = self ? self->GetLayerManager() : nullptr)
                    change(*manager);
            },
            Qt::QueuedConnection);
    }

    lmx::TBorrowed<lmx::TShapeFileLayer> FLayer;
};

std::unique_ptr<lmx::TShpFile> LoadTurned(const QString& fileName,
                                          const std::shared_ptr<lmx::IShapePointConverter>& converter,
                                          const lmx::TShpLoadOptions& options) {
    return lmx::TShpFile::LoadFromFile(fileName, std::make_shared<TTurningConverter>(converter), options);
}

/// Keeps the layer that a turned one follows, which stands before it in the document.
class TTurnedLayerPersist : public lmx::IMapDocLayerPersist {
public:
    void ReadLayer(lmx::TMapDocResourcePersist&, lmx::TBaseMapLayer* layer, lmx::TXmlNode data) override {
        auto& turned = dynamic_cast<TTurnedLayer&>(*layer);
        auto* followed = dynamic_cast<lmx::TShapeFileLayer*>(
            turned.GetLayerManager()->FindLayer(QUuid::fromString(data.Child(FollowsNode).GetText())));
        if (!followed || !followed->GetShpFile())
            throw lmx::Exception(QObject::tr("The layer that it follows is not there"));
        // As documents load the layer itself: in the coordinates of its file.
        turned.TakeShpFile(LoadTurned(followed->GetShpFile()->GetFileName(), nullptr, {.SkipDamagedRecords = true}));
        turned.Follow(*followed);
    }
    void WriteLayer(lmx::TMapDocResourcePersist&, const lmx::TBaseMapLayer* layer, lmx::TXmlNode data,
                    lmx::TMapDocExternalResourcePolicy) override {
        if (const auto* followed = dynamic_cast<const TTurnedLayer&>(*layer).GetLayer())
            data.AddChild(FollowsNode).SetText(followed->GetLayerID().toString());
    }
};

/// What a file of overlays holds: shapes, and the same turned, or vectors.
struct TOverlayFiles {
    QString Name;
    std::unique_ptr<lmx::TShpFile> Shapes;
    std::unique_ptr<lmx::TShpFile> TurnedShapes;
    std::unique_ptr<lmx::TVector> Vectors;
    QStringList Remarks; ///< what whoever looks at them has to know
};

void ReadShapes(TOverlayFiles& files, const QString& fileName, const lmx::TShpLoadOptions& options) {
    const lmx::TShapeConversion conversion = lmx::ConversionOf(fileName);
    files.Shapes = lmx::TShpFile::LoadFromFile(fileName, conversion.Converter, options);
    files.TurnedShapes = LoadTurned(fileName, conversion.Converter, options);
    if (conversion.Kind == lmx::TShapeConversionKind::ckUnknown)
        files.Remarks += QObject::tr("Nobody knows the coordinates that %1 names, so they were taken as degrees: its "
                                     "place on the map may be wrong.")
                             .arg(lmx::ProjectionFileOf(fileName));
}

/// What can be shown of a file some of whose records are damaged.
/// @throws as for the whole file if that is nothing.
void ReadWholeShapes(TOverlayFiles& files, const QString& fileName) {
    ReadShapes(files, fileName, {.SkipDamagedRecords = true});
    const std::size_t damaged = files.Shapes->GetDamagedRecordCount();
    if (damaged == 0)
        return;
    if (files.Shapes->GetVertexCount() == 0)
        lmx::TShpFile::LoadFromFile(fileName, nullptr);
    files.Remarks += QObject::tr("%1 is damaged. Records that were left out: %2.").arg(fileName).arg(damaged);
}

/// Any thread.
TOverlayFiles ReadOverlay(const QString& fileName, void (*readShapes)(TOverlayFiles&, const QString&)) {
    TOverlayFiles files;
    files.Name = QFileInfo(fileName).completeBaseName();
    if (KindOf(fileName) == TFileKind::Shapes)
        readShapes(files, fileName);
    else
        files.Vectors = std::make_unique<lmx::TVector>(fileName);
    return files;
}

template<class Layer>
Layer& AddLayer(const std::shared_ptr<lmx::ILayerManager>& manager, std::unique_ptr<Layer> layer) {
    return *manager->GetLayers().Add(std::move(layer));
}

lmx::TBaseShapeLayer* AddFiles(const std::shared_ptr<lmx::ILayerManager>& manager, TOverlayFiles files,
                               lmx::TColor32 color) {
    const QString name = manager->GetNextName(files.Name);
    if (files.Vectors) {
        auto vectors = std::make_unique<lmx::TVectorFileLayer>(manager);
        vectors->SetLayerName(name);
        vectors->SetColor(color);
        vectors->SetVectorFile(std::move(files.Vectors));
        return &AddLayer(manager, std::move(vectors));
    }
    auto shapes = std::make_unique<lmx::TShapeFileLayer>(manager);
    shapes->SetLayerName(name);
    shapes->SetColor(color);
    shapes->TakeShpFile(std::move(files.Shapes));
    lmx::TShapeFileLayer& added = AddLayer(manager, std::move(shapes));
    auto turned = std::make_unique<TTurnedLayer>(manager);
    turned->Follow(added);
    turned->TakeShpFile(std::move(files.TurnedShapes));
    AddLayer(manager, std::move(turned));
    return &added;
}

} // namespace

bool IsOverlayName(const QString& fileName) {
    return KindOf(fileName) == TFileKind::Shapes || KindOf(fileName) == TFileKind::IdrisiVectors;
}

lmx::TBaseShapeLayer* AddOverlay(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& fileName,
                                 lmx::TColor32 color) {
    const auto readShapes = [](TOverlayFiles& files, const QString& name) { ReadShapes(files, name, {}); };
    return AddFiles(manager, ReadOverlay(fileName, readShapes), color);
}

std::shared_ptr<lmx::TThread> OpenOverlay(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& fileName,
                                          lmx::TColor32 color, QObject* owner, const TOverlayAdded& added,
                                          const std::function<void(const QString& problem)>& failed) {
    const auto read = [=, owner = QPointer(owner)] {
        const auto files = std::make_shared<TOverlayFiles>();
        QString problem;
        try {
            *files = ReadOverlay(fileName, ReadWholeShapes);
        } catch (const lmx::Exception& failure) {
            problem = failure.Description();
        }
        lmx::TThread::Synchronize([=] {
            if (owner && !problem.isEmpty())
                failed(problem);
            if (!owner || !problem.isEmpty())
                return;
            const QStringList remarks = files->Remarks;
            added(AddFiles(manager, std::move(*files), color), remarks);
        });
    };
    auto thread = lmx::TThread::CreateAnonymousThread(read);
    thread->Start();
    return thread;
}

void AddSampleOverlays(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& folder) {
    AddOverlay(manager, folder + "/ne_50m_rivers_lake_centerlines.shp", 0xFF4F86C6)->SetLayerName("Rivers");
    AddSampleCoasts(manager, folder);
}

void AddSampleCoasts(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& folder) {
    AddOverlay(manager, folder + "/ne_50m_land.shp", 0xFF24303C)->SetLayerName("Coasts");
}

void RegisterOverlays(lmx::ILayerFactory& makers) {
    makers.Register(TurnedLayerName, [](const auto& manager) { return std::make_unique<TTurnedLayer>(manager); });
}

void RegisterOverlays(lmx::IMapDocLayerPersistFactory& keepers) {
    keepers.Register(TurnedLayerName, std::make_shared<TTurnedLayerPersist>());
}

bool IsDrawing(lmx::ILayerManager& manager) {
    for (lmx::TBaseMapLayer* layer : manager.GetLayers()) {
        const auto* buffered = dynamic_cast<lmx::TBufferedMapLayer*>(layer);
        if (buffered && buffered->GetCurrentThread())
            return true;
    }
    return false;
}

TDrawingIndicator::TDrawingIndicator(lmx::TMapViewControl* view, QWidget* parent) : QLabel(parent) {
    setObjectName("DrawingIndicator");
    FTimer.callOnTimeout(this, [this, view = QPointer(view)] {
        const bool isDrawing = view && view->GetLayerManager() && IsDrawing(*view->GetLayerManager());
        setText(isDrawing ? tr("Drawing...") : QString());
    });
    FTimer.start(IndicatorInterval);
}
