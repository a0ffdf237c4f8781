#include <lmx/MapDoc/Private/lmxZipWriter.h>

#include <lmx/Runtime/Private/lmxMemory.h>
#include <lmx/Runtime/Private/lmxReplacementFile.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QFileDevice>
#include <QIODevice>
#include <QtEndian>

#include <algorithm>
#include <cstdint>
#include <libdeflate.h>
#include <limits>
#include <minizip/zip.h>
#include <utility>

namespace lmx {

namespace {

constexpr int CompressionLevel = 6;
constexpr std::uint64_t DirectoryEnd = 22;
constexpr std::uint64_t Beyond16Bits = 0xFFFF;
constexpr std::uint64_t Beyond32Bits = 0xFFFFFFFF;
constexpr qsizetype LongestName = 0xFFFF;
constexpr uLong MadeOnUnix = 3 << 8 | 20; // where a backslash is a letter of the name like any other
constexpr uLong NameIsUtf8 = 1 << 11;
constexpr uLong FirstOf1980 = 0x0021 << 16;
constexpr uLong PlainFile = 0100644UL << 16;

bool IsAscii(const QByteArray& name) {
    return std::all_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

template<class Number>
void AppendLittle(QByteArray& bytes, Number number) {
    char buffer[sizeof number];
    qToLittleEndian(number, buffer);
    bytes.append(buffer, sizeof buffer);
}

} // namespace

TZipWriter::TZipWriter(QIODevice& device, QString fileName)
    : FDevice(device),
      FFileName(std::move(fileName)),
      FZipDevice(device),
      FCompressor(libdeflate_alloc_compressor(CompressionLevel), libdeflate_free_compressor) {
    zlib_filefunc64_def functions = FZipDevice.GetFunctions();
    FZip = zipOpen2_64("", APPEND_STATUS_CREATE, nullptr, &functions);
    if (!FZip || !FCompressor)
        throw EOutOfMemory();
}

TZipWriter::~TZipWriter() {
    if (FZip)
        WriteDirectory();
}

void TZipWriter::Add(const QString& name, const QByteArray& content) {
    const QByteArray bytes = name.toUtf8();
    if (bytes.isEmpty() || bytes.size() > LongestName || bytes.contains('\0'))
        throw EArgumentException(QStringLiteral("Name"));
    if (!FZip)
        throw EInvalidOperation(QStringLiteral("Archive is finished"));
    AddCompressed(bytes, WithinMemory([&] { return Deflated(content); }), content);
}

QByteArray TZipWriter::Deflated(const QByteArray& content) const {
    const auto size = static_cast<std::size_t>(content.size());
    const std::size_t bound = libdeflate_deflate_compress_bound(FCompressor.get(), size);
    NeedMemory(bound);
    QByteArray compressed(static_cast<qsizetype>(bound), Qt::Uninitialized);
    const std::size_t taken =
        libdeflate_deflate_compress(FCompressor.get(), content.constData(), size, compressed.data(), bound);
    compressed.truncate(static_cast<qsizetype>(taken));
    return compressed;
}

void TZipWriter::AddCompressed(const QByteArray& name, const QByteArray& compressed, const QByteArray& content) {
    const auto size = static_cast<std::uint64_t>(content.size());
    const bool isLarge = std::max(size, static_cast<std::uint64_t>(compressed.size())) >= Beyond32Bits;
    zip_fileinfo info{};
    info.dosDate = FirstOf1980;
    info.external_fa = PlainFile;
    Check(zipOpenNewFileInZip4_64(FZip, name.constData(), &info, nullptr, 0, nullptr, 0, nullptr, Z_DEFLATED,
                                  CompressionLevel, 1, -MAX_WBITS, DEF_MEM_LEVEL, Z_DEFAULT_STRATEGY, nullptr, 0,
                                  MadeOnUnix, IsAscii(name) ? 0 : NameIsUtf8, isLarge ? 1 : 0) == ZIP_OK);
    ++FCount;
    bool isWritten = true;
    constexpr qsizetype MostAtOnce = std::numeric_limits<int>::max();
    for (qsizetype at = 0; at < compressed.size() && isWritten; at += MostAtOnce) {
        const auto length = static_cast<unsigned>(std::min(MostAtOnce, compressed.size() - at));
        isWritten = zipWriteInFileInZip(FZip, compressed.constData() + at, length) == ZIP_OK;
    }
    const uLong sum = libdeflate_crc32(0, content.constData(), static_cast<std::size_t>(size));
    const bool isClosed = zipCloseFileInZipRaw64(FZip, size, sum) == ZIP_OK;
    Check(isWritten && isClosed);
}

void TZipWriter::Finish() {
    if (!FZip)
        return;
    const bool isClosed = WriteDirectory();
    auto* const file = qobject_cast<QFileDevice*>(&FDevice);
    Check(isClosed && (!file || file->flush()));
}

bool TZipWriter::WriteDirectory() {
    const auto start = static_cast<std::uint64_t>(FDevice.pos());
    const bool isClosed = zipClose(std::exchange(FZip, nullptr), nullptr) == ZIP_OK;
    return isClosed && (FCount < Beyond16Bits || start >= Beyond32Bits || WriteLargeEnd(start));
}

// minizip widens the end of the directory, which holds the number of entries, for large archives only.
bool TZipWriter::WriteLargeEnd(std::uint64_t start) {
    const std::uint64_t end = static_cast<std::uint64_t>(FDevice.size()) - DirectoryEnd;
    QByteArray bytes("PK\6\6", 4);
    AppendLittle(bytes, std::uint64_t{44});            // bytes of this record from here on
    AppendLittle(bytes, std::uint32_t{45 << 16 | 45}); // made by, and needs, version 4.5
    AppendLittle(bytes, std::uint64_t{0});             // the first and only disk, twice
    AppendLittle(bytes, FCount);
    AppendLittle(bytes, FCount);
    AppendLittle(bytes, end - start);
    AppendLittle(bytes, start);
    bytes.append("PK\6\7\0\0\0\0", 8);
    AppendLittle(bytes, end);
    AppendLittle(bytes, std::uint32_t{1}); // disks
    bytes.append("PK\5\6\0\0\0\0\xFF\xFF\xFF\xFF", 12);
    AppendLittle(bytes, static_cast<std::uint32_t>(end - start));
    AppendLittle(bytes, static_cast<std::uint32_t>(start));
    AppendLittle(bytes, std::uint16_t{0});
    return FDevice.seek(static_cast<qint64>(end)) && WriteAll(FDevice, bytes);
}

void TZipWriter::Check(bool succeeded) const {
    if (succeeded)
        return;
    if (auto* const file = qobject_cast<QFileDevice*>(&FDevice))
        file->flush(); // what took a part only says why if it is asked again
    throw EFileException(FFileName, QStringLiteral("cannot be written: ") + FDevice.errorString());
}

} // namespace lmx
