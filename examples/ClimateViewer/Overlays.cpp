#include "Overlays.h"

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Formats/Idrisi/lmxVector.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/Layers/lmxVectorFileLayer.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxThread.h>

#include <QFileInfo>
#include <QPointer>

#include <chrono>

#include "FileKinds.h"

namespace {

constexpr std::chrono::milliseconds IndicatorInterval{100};

/// What a file of overlays holds: shapes or vectors.
struct TOverlayFiles {
    QString Name;
    std::unique_ptr<lmx::TShpFile> Shapes;
    std::unique_ptr<lmx::TVector> Vectors;
    QStringList Remarks; ///< what whoever looks at them has to know
};

void ReadShapes(TOverlayFiles& files, const QString& fileName, const lmx::TShpLoadOptions& options) {
    const lmx::TShapeConversion conversion = lmx::ConversionOf(fileName);
    files.Shapes = lmx::TShpFile::LoadFromFile(fileName, conversion.Converter, options);
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
    if (KindOf(fileName) == TFileKind::fkShapes)
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
    shapes->SetFoldsAtSeam(true);
    shapes->TakeShpFile(std::move(files.Shapes));
    return &AddLayer(manager, std::move(shapes));
}

} // namespace

bool IsOverlayName(const QString& fileName) {
    return KindOf(fileName) == TFileKind::fkShapes || KindOf(fileName) == TFileKind::fkIdrisiVectors;
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
