#pragma once

#include <QString>

// What the viewer opens.

enum class TFileKind { fkDocument, fkIdrisiImage, fkAsciiGrid, fkShapes, fkIdrisiVectors, fkClimate };

/// The suffix of documents, with its point.
extern const QString DocumentSuffix;

/// The kind of a file, or of the folder of a Zarr, by its suffix; a name with any other suffix may be an ASCII grid.
TFileKind KindOf(const QString& fileName);

/// The same for documents alone.
QString DocumentsFilter();

/// All kinds that this viewer opens in a line: "Idrisi images (.rst, .rdc, .img, .doc), ASCII grids (...), ...".
QString KnownFiles();

/// The same as the filter of lmx::TFileDialogRequest, beginning with all of them at once and ending with all files.
QString KnownFilesFilter();
