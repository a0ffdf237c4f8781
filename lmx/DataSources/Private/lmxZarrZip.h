#pragma once

#include <QString>

class QIODevice;

namespace lmx {

/// Looks through the directory of a zip before GDAL does, which takes sizes and places at their word. The result is the
/// folder in it in which the Zarr stands, "" for its top: programs pack either the content of a store or its folder.
/// @throws EClimateFile with `fileName` if the zip is cut short or damaged, holds no Zarr 2, more than 1,000,000 files,
/// or files that are encrypted, packed in a way that is not read, or descriptions of more than 16 MB.
QString FindZarrInZip(QIODevice& device, const QString& fileName);

} // namespace lmx
