#include <lmx/MapDoc/lmxVerifiedMapDocWriter.h>

#include <lmx/MapDoc/Private/lmxManifest.h>
#include <lmx/MapDoc/Private/lmxReplacedDocument.h>
#include <lmx/MapDoc/Private/lmxZipReader.h>
#include <lmx/MapDoc/lmxMapDocResourcePersist.h>

#include <limits>

namespace lmx {

namespace {

/// @throws EFileFormatException if an entry does not read back.
void CheckEntries(QIODevice& device, const QString& fileName) {
    const TZipReader archive(device, fileName);
    for (qsizetype index = 0; index < static_cast<qsizetype>(archive.GetEntries().size()); ++index)
        archive.Read(index, std::numeric_limits<std::uint64_t>::max());
    const TMapDocResourcePersist resources(device, fileName, TMapDocPersistMode::pmRead);
    ReadManifest(resources, std::numeric_limits<std::uint64_t>::max(), std::numeric_limits<int>::max());
}

} // namespace

TVerifiedMapDocWriter::TVerifiedMapDocWriter(const QString& documentTypeID,
                                             const std::shared_ptr<IMapDocLayerPersistFactory>& layerPersistFactory)
    : FWriter(documentTypeID, layerPersistFactory) {}

void TVerifiedMapDocWriter::Write(const QString& fileName, TMapViewControl* control,
                                  TMapDocExternalResourcePolicy policy) {
    RequireLayerManager(control);
    TReplacedDocument document(fileName);
    {
        TMapDocResourcePersist resources(document.GetDevice(), fileName, TMapDocPersistMode::pmWrite);
        FWriter.Write(resources, control, policy);
        resources.Finish();
    }
    document.Sync();
    CheckEntries(document.GetDevice(), fileName);
    document.Commit();
}

} // namespace lmx
