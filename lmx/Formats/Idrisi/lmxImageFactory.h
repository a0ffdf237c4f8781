#pragma once

#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <memory>

class QIODevice;

namespace lmx {

/// One of the four image classes as a value: its name and its two constructors.
struct LMX_EXPORT TImageClass {
    QString Name;
    bool (*Accepts)(const TImageHeader& header); ///< whether files with this header are of this class
    std::unique_ptr<TAbstractImage> (*Open)(const QString& filePath, bool load);
    std::unique_ptr<TAbstractImage> (*Create)(const QString& filePath, const TImageHeader& header);
};

/// Makes images of the class that fits.
class LMX_EXPORT TImageFactory {
public:
    /// The image in a file: data (.rst, .img) or documentation (.rdc, .doc), each found from the other.
    /// @throws EFileException if a file is missing or "does not fit into memory", EFileFormatException if one is
    /// damaged or holds no numbers.
    static std::unique_ptr<TAbstractImage> Load(const QString& fileName);

    /// The image whose two files are at hand as devices, each read from its position. It has no path; `name` is for the
    /// messages.
    /// @throws EFileException and EFileFormatException as above.
    static std::unique_ptr<TAbstractImage> Load(QIODevice& documentation, QIODevice& data, const QString& name);

    /// A full copy of the same class, path included.
    static std::unique_ptr<TAbstractImage> Copy(const TAbstractImage& image) { return image.Clone(); }

    /// The class of a name ("TByteImage", "TIntegerImage", "TRealImage", "TAsciiImage"), or nil.
    static const TImageClass* GetImageClass(const QString& name);

private:
    static std::unique_ptr<TAbstractImage> Load(const QString& filePath, const TImageHeader& header, bool hasValueRange,
                                                QIODevice& data, const QString& dataName);
};

} // namespace lmx
