#pragma once

#include <lmx/MapDoc/Private/lmxZipDevice.h>

#include <QByteArray>
#include <QHash>
#include <QString>

#include <cstdint>
#include <vector>

class QIODevice;

namespace lmx {

/// What the directory of an archive says of an entry: claims, until it is read.
struct TZipEntry {
    QByteArray Name; ///< as it is stored
    std::uint64_t CompressedSize = 0;
    std::uint64_t Size = 0;
    std::uint32_t CheckSum = 0;
    int Method = 0;
    bool IsEncrypted = false;
    std::uint64_t DirectoryOffset = 0;
    std::uint64_t Number = 0;
};

/// Reads a ZIP archive: entries that are deflated or stored, whole. What it holds may be damaged or made to harm: sizes
/// are checked before memory is taken.
class TZipReader {
public:
    /// Reads the directory. The device is open, can seek and outlives the reader; `fileName` is for the messages.
    /// @throws EFileFormatException "...: is no ZIP archive" or "...: directory of the archive is damaged".
    TZipReader(QIODevice& device, QString fileName);
    ~TZipReader();
    TZipReader(const TZipReader&) = delete;
    TZipReader& operator=(const TZipReader&) = delete;

    const std::vector<TZipEntry>& GetEntries() const { return FEntries; }

    /// Index of the entry of a name: found exactly, else with the slash and the backslash taken as equal, else without
    /// regard to the case of A to Z, too. Of equal names the first one counts. -1 if there is none.
    qsizetype IndexOf(const QString& name) const;

    /// The content of an entry of at most `most` bytes.
    /// @throws EFileFormatException if it is larger, encrypted, compressed by another method or damaged; EFileException
    /// if it cannot be read or does not fit into memory.
    QByteArray Read(qsizetype index, std::uint64_t most) const;

private:
    void ReadDirectory();
    void Remember(const QByteArray& name, qsizetype index);
    QByteArray ReadCompressed(const TZipEntry& entry) const;
    QByteArray Inflated(const TZipEntry& entry, const QByteArray& compressed) const;
    [[noreturn]] void Refuse(const TZipEntry& entry, const QString& reason) const;

    QIODevice& FDevice;
    const QString FFileName;
    TZipDevice FZipDevice;
    void* FZip; // nil for an archive without entries
    std::vector<TZipEntry> FEntries;
    QHash<QByteArray, qsizetype> FByName;
    QHash<QByteArray, qsizetype> FBySlashedName;
    QHash<QByteArray, qsizetype> FByLowerName;
};

} // namespace lmx
