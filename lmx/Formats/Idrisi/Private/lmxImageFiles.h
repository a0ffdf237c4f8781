#pragma once

#include <lmx/Formats/Idrisi/Private/lmxImageDocumentation.h>

#include <QFile>
#include <QString>

class QIODevice;

namespace lmx {

/// The two files of an Idrisi image. Their names differ in the suffix alone: .rst with .rdc, or the older .img with
/// .doc.
struct TImageFiles {
    QString Data;
    QString Documentation;
    TDocumentationForm Form = TDocumentationForm::dfWindows;
};

/// The files of an image that is there, by the name of either. The other file is looked up without regard to case, in
/// the same generation first. Data may be missing (an empty name), the documentation not.
/// @throws EFileException if the suffix is none of the four or the documentation is missing.
TImageFiles FindImageFiles(const QString& fileName);

/// The names that an image is saved under, by the name of either.
/// @throws EFileException if the suffix is none of the four.
TImageFiles ImageFilesFor(const QString& fileName);

/// An image on disk that is being read: its documentation at once, its data when asked for.
class TImageFileReader {
public:
    /// @throws EFileException if the files are not there, EFileFormatException if the documentation is damaged.
    explicit TImageFileReader(const QString& fileName);

    const TImageHeader& GetHeader() const { return FDocumentation.Header; }
    bool HasValueRange() const { return FDocumentation.HasValueRange; }
    const QString& GetDataName() const { return FFiles.Data; }

    /// The data file, open at its first cell.
    /// @throws EFileException if it is missing or cannot be opened.
    QIODevice& GetData();

private:
    TImageFiles FFiles;
    QFile FData;
    TImageDocumentation FDocumentation;
};

} // namespace lmx
