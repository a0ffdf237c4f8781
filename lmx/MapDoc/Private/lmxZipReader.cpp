#include <lmx/MapDoc/Private/lmxZipReader.h>

#include <lmx/Runtime/Private/lmxMemory.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QIODevice>

#include <algorithm>
#include <libdeflate.h>
#include <memory>
#include <minizip/unzip.h>
#include <utility>

namespace lmx {

namespace {

constexpr int Stored = 0;
constexpr uLong EncryptionFlags = 1 << 0 | 1 << 6 | 1 << 13;
constexpr std::uint64_t BestRatio = 1032; // of Deflate: 258 bytes in two bits

QByteArray Slashed(QByteArray name) {
    return name.replace('\\', '/');
}

// Letters of ASCII alone; QByteArray::toLower knows no others.
QByteArray Lower(const QByteArray& slashedName) {
    return slashedName.toLower();
}

// A directory without entries and nothing else, which minizip writes and does not read.
bool IsEmptyArchive(QIODevice& device) {
    constexpr qint64 DirectoryEnd = 22;
    return device.size() == DirectoryEnd && device.seek(0) &&
           device.read(DirectoryEnd) == QByteArray("PK\5\6", 4) + QByteArray(DirectoryEnd - 4, '\0');
}

} // namespace

TZipReader::TZipReader(QIODevice& device, QString fileName)
    : FDevice(device),
      FFileName(std::move(fileName)),
      FZipDevice(device) {
    zlib_filefunc64_def functions = FZipDevice.GetFunctions();
    FZip = unzOpen2_64("", &functions);
    if (!FZip && !IsEmptyArchive(FDevice))
        throw EFileFormatException(FFileName, QStringLiteral("is no ZIP archive"));
    if (!FZip)
        return;
    try {
        WithinMemory(FFileName, [&] { ReadDirectory(); });
    } catch (...) {
        unzClose(FZip);
        throw;
    }
}

TZipReader::~TZipReader() {
    if (FZip)
        unzClose(FZip);
}

void TZipReader::ReadDirectory() {
    unz_global_info64 archive{};
    unzGetGlobalInfo64(FZip, &archive);
    int result = archive.number_entry == 0 ? UNZ_END_OF_LIST_OF_FILE : unzGoToFirstFile(FZip);
    for (; result == UNZ_OK; result = unzGoToNextFile(FZip)) {
        unz_file_info64 info{};
        unz64_file_pos position{};
        result = unzGetCurrentFileInfo64(FZip, &info, nullptr, 0, nullptr, 0, nullptr, 0);
        QByteArray name(static_cast<qsizetype>(info.size_filename), '\0');
        if (result == UNZ_OK)
            result = unzGetCurrentFileInfo64(FZip, &info, name.data(), info.size_filename, nullptr, 0, nullptr, 0);
        if (result != UNZ_OK || unzGetFilePos64(FZip, &position) != UNZ_OK)
            break;
        Remember(name, static_cast<qsizetype>(FEntries.size()));
        FEntries.push_back({name, info.compressed_size, info.uncompressed_size, static_cast<std::uint32_t>(info.crc),
                            static_cast<int>(info.compression_method), (info.flag & EncryptionFlags) != 0,
                            position.pos_in_zip_directory, position.num_of_file});
    }
    if (result != UNZ_END_OF_LIST_OF_FILE)
        throw EFileFormatException(FFileName, QStringLiteral("directory of the archive is damaged"));
}

void TZipReader::Remember(const QByteArray& name, qsizetype index) {
    const auto add = [index](QHash<QByteArray, qsizetype>& indexes, const QByteArray& key) {
        if (!indexes.contains(key))
            indexes.insert(key, index);
    };
    const QByteArray slashed = Slashed(name);
    add(FByName, name);
    add(FBySlashedName, slashed);
    add(FByLowerName, Lower(slashed));
}

qsizetype TZipReader::IndexOf(const QString& name) const {
    const QByteArray exact = name.toUtf8();
    const QByteArray slashed = Slashed(exact);
    return FByName.value(exact, FBySlashedName.value(slashed, FByLowerName.value(Lower(slashed), -1)));
}

QByteArray TZipReader::Read(qsizetype index, std::uint64_t most) const {
    const TZipEntry& entry = FEntries.at(static_cast<std::size_t>(index));
    if (entry.IsEncrypted)
        Refuse(entry, QStringLiteral("is encrypted"));
    if (entry.Method != Stored && entry.Method != Z_DEFLATED)
        Refuse(entry, QStringLiteral("has an unknown compression method, ") + IntToStr(entry.Method));
    if (entry.Size > most)
        Refuse(entry,
               QStringLiteral("has more than ") + IntToStr(static_cast<std::int64_t>(most)) + QStringLiteral(" bytes"));
    const bool isPossible =
        entry.CompressedSize <= static_cast<std::uint64_t>(FDevice.size()) &&
        (entry.Method == Stored ? entry.Size == entry.CompressedSize : entry.Size / BestRatio <= entry.CompressedSize);
    if (!isPossible)
        Refuse(entry, QStringLiteral("is damaged"));
    return WithinMemory(FFileName, [&] {
        const QByteArray compressed = ReadCompressed(entry);
        QByteArray content = entry.Method == Stored ? compressed : Inflated(entry, compressed);
        if (libdeflate_crc32(0, content.constData(), static_cast<std::size_t>(content.size())) != entry.CheckSum)
            Refuse(entry, QStringLiteral("is damaged"));
        return content;
    });
}

QByteArray TZipReader::ReadCompressed(const TZipEntry& entry) const {
    const unz64_file_pos position{entry.DirectoryOffset, entry.Number};
    int method = 0;
    if (unzGoToFilePos64(FZip, &position) != UNZ_OK || unzOpenCurrentFile2(FZip, &method, nullptr, 1) != UNZ_OK)
        Refuse(entry, QStringLiteral("is damaged"));
    const std::uint64_t start = unzGetCurrentFileZStreamPos64(FZip);
    unzCloseCurrentFile(FZip);
    const auto end = static_cast<std::uint64_t>(FDevice.size());
    if (start > end || entry.CompressedSize > end - start)
        Refuse(entry, QStringLiteral("is damaged"));
    NeedMemory(entry.CompressedSize);
    QByteArray compressed(static_cast<qsizetype>(entry.CompressedSize), Qt::Uninitialized);
    PreferLargePages(compressed.data(), entry.CompressedSize);
    if (!FDevice.seek(static_cast<qint64>(start)) ||
        FDevice.read(compressed.data(), compressed.size()) != compressed.size())
        throw EFileException(FFileName, QStringLiteral("cannot be read: ") + FDevice.errorString());
    return compressed;
}

QByteArray TZipReader::Inflated(const TZipEntry& entry, const QByteArray& compressed) const {
    const std::unique_ptr<libdeflate_decompressor, void (*)(libdeflate_decompressor*)> decompressor(
        libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
    if (!decompressor)
        throw EOutOfMemory();
    NeedMemory(entry.Size);
    QByteArray content(static_cast<qsizetype>(entry.Size), Qt::Uninitialized); // untouched where nothing arrives
    PreferLargePages(content.data(), entry.Size);
    const libdeflate_result result = libdeflate_deflate_decompress(
        decompressor.get(), compressed.constData(), static_cast<std::size_t>(compressed.size()), content.data(),
        static_cast<std::size_t>(content.size()), nullptr);
    if (result != LIBDEFLATE_SUCCESS)
        Refuse(entry, QStringLiteral("is damaged"));
    return content;
}

void TZipReader::Refuse(const TZipEntry& entry, const QString& reason) const {
    throw EFileFormatException(FFileName, QStringLiteral("entry \"") + QString::fromUtf8(entry.Name) +
                                              QStringLiteral("\" ") + reason);
}

} // namespace lmx
