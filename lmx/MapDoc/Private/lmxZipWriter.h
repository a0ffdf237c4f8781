#pragma once

#include <lmx/MapDoc/Private/lmxZipDevice.h>

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <memory>

class QIODevice;
struct libdeflate_compressor;

namespace lmx {

/// Writes a ZIP archive of deflated entries into a device, entry by entry. The same entries give the same bytes: all
/// are dated 1980-01-01 00:00, and there are no extra fields but those that sizes beyond 32 bits need.
class TZipWriter {
public:
    /// The device is open, can seek, is empty and outlives the writer; `fileName` is for the messages.
    TZipWriter(QIODevice& device, QString fileName);
    /// Finishes the archive if nobody has, without a word about failures.
    ~TZipWriter();
    TZipWriter(const TZipWriter&) = delete;
    TZipWriter& operator=(const TZipWriter&) = delete;

    /// Adds an entry. Names may repeat; the slash and the backslash stay as they are.
    /// @throws EArgumentException "Name" if the name is empty, holds a NUL or is longer than 65535 bytes.
    /// @throws EFileException if the device does not take it; EOutOfMemory.
    void Add(const QString& name, const QByteArray& content);

    /// Writes the directory. Nothing can be added behind it.
    /// @throws EFileException if the device does not take it.
    void Finish();

private:
    QByteArray Deflated(const QByteArray& content) const;
    void AddCompressed(const QByteArray& name, const QByteArray& compressed, const QByteArray& content);
    bool WriteDirectory();
    bool WriteLargeEnd(std::uint64_t start);
    void Check(bool succeeded) const;

    QIODevice& FDevice;
    const QString FFileName;
    TZipDevice FZipDevice;
    void* FZip;
    std::unique_ptr<libdeflate_compressor, void (*)(libdeflate_compressor*)> FCompressor;
    std::uint64_t FCount = 0;
};

} // namespace lmx
