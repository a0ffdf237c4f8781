#pragma once

#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExport.h>

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <limits>
#include <memory>

class QIODevice;

namespace lmx {

class TZipReader;
class TZipWriter;

enum class TMapDocPersistMode { pmRead, pmWrite };

/// A map document has no entry of a name.
class LMX_EXPORT EMapDocResourceNotFoundException : public Exception {
public:
    EMapDocResourceNotFoundException() : Exception(QStringLiteral("The specified MapDoc resource was not found")) {}
};

/// The archive behind a map document: a ZIP file, open for reading or for writing as long as the object lives. An entry
/// is named by a folder and a name and is held whole in memory. Nothing is ever written but the file itself.
class LMX_EXPORT TMapDocResourcePersist {
public:
    /// Opens an archive, or creates or replaces the file. Only regular files can be opened.
    /// @throws EFileException if the file cannot be read or written, EFileFormatException if it is no archive.
    TMapDocResourcePersist(const QString& fileName, TMapDocPersistMode mode);
    /// The same in a device that is open and can seek, and is empty if it is to be written; it must outlive the object.
    /// `name` stands for the file's name in messages.
    TMapDocResourcePersist(QIODevice& device, const QString& name, TMapDocPersistMode mode);
    /// Finishes an archive that is written, without a word about failures: who wants to hear of them calls Finish.
    ~TMapDocResourcePersist();
    TMapDocResourcePersist(const TMapDocResourcePersist&) = delete;
    TMapDocResourcePersist& operator=(const TMapDocResourcePersist&) = delete;

    const QString& GetFileName() const { return FFileName; }

    /// Name of an entry: folder, backslash, name. An empty folder is "_meta".
    static QString FormatName(const QString& folder, const QString& name);

    /// Bytes of the largest entry that is read; 4 GiB after construction.
    std::uint64_t GetMostBytes() const { return FMostBytes; }
    void SetMostBytes(std::uint64_t bytes) { FMostBytes = bytes; }

    bool Has(const QString& folder, const QString& name) const; ///< whether there is such an entry to read
    /// Bytes of an entry as the archive claims; 0 if there is none.
    std::uint64_t GetSize(const QString& folder, const QString& name) const;
    /// The content of an entry, of at most `mostBytes` and GetMostBytes. The name is found exactly, else with the slash
    /// and the backslash taken as equal, else without regard to the case of A to Z; of equal names the first counts.
    /// @throws EMapDocResourceNotFoundException; EFileFormatException if the entry is damaged, larger, encrypted or
    /// compressed by a method that is not Deflate; EFileException if it cannot be read or does not fit into memory;
    /// EInvalidOperation "Archive is not open for reading".
    QByteArray Read(const QString& folder, const QString& name,
                    std::uint64_t mostBytes = std::numeric_limits<std::uint64_t>::max()) const;
    /// The same as text in UTF-8; a byte order mark is passed over.
    /// @throws EFileFormatException for bytes in another encoding, too.
    QString ReadText(const QString& folder, const QString& name,
                     std::uint64_t mostBytes = std::numeric_limits<std::uint64_t>::max()) const;

    /// Adds an entry, deflated. Names may repeat.
    /// @throws EFileException if it cannot be written, EOutOfMemory, EInvalidOperation "Archive is not open for
    /// writing", EArgumentException "Name" for a name that no archive can hold.
    void Write(const QString& folder, const QString& name, const QByteArray& bytes);
    /// Adds a text in UTF-8, without a byte order mark.
    void WriteText(const QString& folder, const QString& name, const QString& text);

    /// Writes the archive's directory; nothing can be added behind it. Does nothing if the archive is being read.
    /// @throws EFileException if it cannot be written.
    void Finish();

private:
    void Open(QIODevice& device, TMapDocPersistMode mode);
    const TZipReader& Reader() const;
    TZipWriter& Writer();

    const QString FFileName;
    std::uint64_t FMostBytes = std::uint64_t{4} << 30;
    std::unique_ptr<QIODevice> FFile; // nil where the device is somebody else's
    std::unique_ptr<TZipReader> FReader;
    std::unique_ptr<TZipWriter> FWriter;
};

} // namespace lmx
