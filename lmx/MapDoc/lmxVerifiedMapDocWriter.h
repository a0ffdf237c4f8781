#pragma once

#include <lmx/MapDoc/lmxMapDocWriter.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <memory>

namespace lmx {

/// Writes map documents so that the old one is never lost: beside the target first, read back entry by entry, handed to
/// the disk, and put in the target's place in one step. Whatever fails, and whenever the program ends, the target is
/// the old document or the new one. The documents are those of TMapDocWriter. Main thread only.
class LMX_EXPORT TVerifiedMapDocWriter {
public:
    /// @throws EArgumentNilException as TMapDocWriter.
    TVerifiedMapDocWriter(const QString& documentTypeID,
                          const std::shared_ptr<IMapDocLayerPersistFactory>& layerPersistFactory);

    /// A target that is a link stays one. The new file has the permissions of the old one.
    /// @throws what TMapDocWriter::Write raises; EFileException also if what was written does not read back. The target
    /// is as it was then, and nothing is left beside it.
    void Write(const QString& fileName, TMapViewControl* control, TMapDocExternalResourcePolicy policy);

private:
    TMapDocWriter FWriter;
};

} // namespace lmx
