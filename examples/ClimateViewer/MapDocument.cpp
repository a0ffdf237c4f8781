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

#include "Overlays.h"
#include "Places.h"

namespace {

const QString DocumentType = QStringLiteral("ClimateViewer");

/// What keeps each type of layer, those of the viewer too.
const std::shared_ptr<lmx::IMapDocLayerPersistFactory>& Keepers() {
    static const auto keepers = [] {
        auto made = lmx::TMapDocLayerPersistFactory::GetObject();
        lmx::TMapDocLayerPersistFactory::PopulateDefault(made);
        RegisterOverlays(*made);
        RegisterPlaces(*made);
        return made;
    }();
    return keepers;
}

const std::shared_ptr<lmx::ILayerFactory>& LayerMakers() {
    static const auto makers = [] {
        auto made = lmx::TLayerFactory::GetObject();
        lmx::TLayerFactory::PopulateDefault(made);
        RegisterOverlays(*made);
        RegisterPlaces(*made);
        return made;
    }();
    return makers;
}

/// @throws lmx::EFileFormatException if the document is none of the viewer's or cannot be read.
void RequireReadable(const QString& fileName) {
    const lmx::TMapDocInfo info = lmx::TMapDocInspector(Keepers()).Inspect(fileName);
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
            lmx::TMapDocWriter(DocumentType, Keepers())
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
    lmx::TMapDocReader reader(DocumentType, LayerMakers(), Keepers());
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
    return lmx::TMapDocInspector(Keepers()).ProblemsOfSaving(FView, Policy());
}

void TMapDocument::Save(const QString& fileName) {
    lmx::TVerifiedMapDocWriter(DocumentType, Keepers()).Write(fileName, FView, Policy());
    FFileName = fileName;
    MarkUnchanged();
}
