#include "MapDocument.h"

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Layers/lmxLayerFactory.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/MapDoc/lmxMapDocInspector.h>
#include <lmx/MapDoc/lmxMapDocLayerPersist.h>
#include <lmx/MapDoc/lmxMapDocLoadReport.h>
#include <lmx/MapDoc/lmxMapDocReader.h>
#include <lmx/MapDoc/lmxMapDocResourcePersist.h>
#include <lmx/MapDoc/lmxMapDocWriter.h>
#include <lmx/MapDoc/lmxVerifiedMapDocWriter.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QBuffer>
#include <QRegularExpression>

#include "ClimateFiles.h"
#include "Places.h"

namespace {

const QString DocumentType = QStringLiteral("ClimateViewer");

/// What makes each type of layer and what keeps it, those of the viewer too.
struct TLayerTypes {
    TLayerTypes() {
        lmx::TLayerFactory::PopulateDefault(Makers);
        lmx::TMapDocLayerPersistFactory::PopulateDefault(Keepers);
        RegisterPlaces(*Makers);
        RegisterPlaces(*Keepers);
        RegisterClimateFiles(Makers, Keepers);
    }

    const std::shared_ptr<lmx::ILayerFactory> Makers = lmx::TLayerFactory::GetObject();
    const std::shared_ptr<lmx::IMapDocLayerPersistFactory> Keepers = lmx::TMapDocLayerPersistFactory::GetObject();
};

const TLayerTypes& LayerTypes() {
    static const TLayerTypes types;
    return types;
}

/// @throws lmx::EFileFormatException if the document is none of the viewer's or cannot be read.
void RequireReadable(const QString& fileName) {
    const lmx::TMapDocInfo info = lmx::TMapDocInspector(LayerTypes().Keepers).Inspect(fileName);
    if (info.DocTypeID != DocumentType)
        throw lmx::EFileFormatException(fileName, QStringLiteral("is a document of another program"));
    if (!info.Problems.isEmpty())
        throw lmx::EFileFormatException(fileName, info.Problems.join(QStringLiteral("; ")));
}

} // namespace

TMapDocument::TMapDocument(lmx::TMapViewControl* view) : FView(view) {}

bool TMapDocument::IsChanged() const {
    return State() != FUnchangedState;
}

void TMapDocument::MarkUnchanged() {
    FUnchangedState = State();
}

// Equal maps give equal documents. Rectangles of annotations follow the window; the distances that they keep do not.
QByteArray TMapDocument::State() const {
    if (!FView->WorldCreated() || !FView->GetLayerManager())
        return {};
    static const QRegularExpression looks(QStringLiteral(" (zoomScale|center|viewSize)=\"[^\"]*\"|<rect>[^<]*</rect>"));
    QBuffer bytes;
    bytes.open(QIODevice::ReadWrite);
    try {
        {
            lmx::TMapDocResourcePersist resources(bytes, DocumentType, lmx::TMapDocPersistMode::pmWrite);
            lmx::TMapDocWriter(DocumentType, LayerTypes().Keepers)
                .Write(resources, FView, lmx::TMapDocExternalResourcePolicy::erpKeepExternal);
        }
        const lmx::TMapDocResourcePersist written(bytes, DocumentType, lmx::TMapDocPersistMode::pmRead);
        return written.ReadText(QString(), QStringLiteral("manifest")).remove(looks).toUtf8();
    } catch (const lmx::Exception& failure) {
        return failure.Message().toUtf8(); // a map that cannot be saved is told from others by the reason alone
    }
}

void TMapDocument::New() {
    FView->SetLayerManager(lmx::TLayerManagerFactory::GetObject());
    FFileName.clear();
    MarkUnchanged();
}

QStringList TMapDocument::Open(const QString& fileName) {
    RequireReadable(fileName);
    FView->SetLayerManager(lmx::TLayerManagerFactory::GetObject());
    FFileName = fileName;
    const auto report = std::make_shared<lmx::TMapDocLoadReport>();
    lmx::TMapDocReader reader(DocumentType, LayerTypes().Makers, LayerTypes().Keepers);
    reader.SetReport(report);
    reader.Read(fileName, FView);
    MarkUnchanged();
    return report->ToText().split('\n', Qt::SkipEmptyParts);
}

lmx::TMapDocExternalResourcePolicy TMapDocument::Policy() const {
    return FEmbedsData ? lmx::TMapDocExternalResourcePolicy::erpEmbedIfPossible
                       : lmx::TMapDocExternalResourcePolicy::erpKeepExternal;
}

QStringList TMapDocument::ProblemsOfSaving() const {
    return lmx::TMapDocInspector(LayerTypes().Keepers).ProblemsOfSaving(FView, Policy());
}

void TMapDocument::Save(const QString& fileName) {
    lmx::TVerifiedMapDocWriter(DocumentType, LayerTypes().Keepers).Write(fileName, FView, Policy());
    FFileName = fileName;
    MarkUnchanged();
}
