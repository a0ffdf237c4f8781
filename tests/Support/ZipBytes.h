#pragma once

#include <tests/Support/ShapeBytes.h>

#include <QByteArray>

#include <cstdint>
#include <libdeflate.h>
#include <vector>

// ZIP archives made on the spot, entry by entry, by hand: what the directory says of an entry may be a lie.

namespace lmx::tests {

inline std::uint32_t CheckSumOf(const QByteArray& content) {
    return libdeflate_crc32(0, content.constData(), static_cast<std::size_t>(content.size()));
}

inline QByteArray DeflatedBytes(const QByteArray& content) {
    libdeflate_compressor* const compressor = libdeflate_alloc_compressor(9);
    QByteArray bytes(
        static_cast<qsizetype>(libdeflate_deflate_compress_bound(compressor, static_cast<std::size_t>(content.size()))),
        '\0');
    bytes.truncate(static_cast<qsizetype>(
        libdeflate_deflate_compress(compressor, content.constData(), static_cast<std::size_t>(content.size()),
                                    bytes.data(), static_cast<std::size_t>(bytes.size()))));
    libdeflate_free_compressor(compressor);
    return bytes;
}

struct TZipRecord {
    QByteArray Name;
    QByteArray Data; ///< as it stands in the file
    std::uint16_t Method = 8;
    std::uint16_t Flags = 0;
    std::uint32_t CheckSum = 0;
    std::uint32_t CompressedSize = 0;
    std::uint32_t Size = 0;
};

inline TZipRecord DeflatedRecord(const QByteArray& name, const QByteArray& content) {
    const QByteArray data = DeflatedBytes(content);
    return {name,
            data,
            8,
            0,
            CheckSumOf(content),
            static_cast<std::uint32_t>(data.size()),
            static_cast<std::uint32_t>(content.size())};
}

inline TZipRecord StoredRecord(const QByteArray& name, const QByteArray& content) {
    const auto size = static_cast<std::uint32_t>(content.size());
    return {name, content, 0, 0, CheckSumOf(content), size, size};
}

inline QByteArray ZipBytes(const std::vector<TZipRecord>& records) {
    QByteArray file;
    QByteArray directory;
    for (const TZipRecord& record : records) {
        QByteArray common;
        AppendLittle(common, std::uint16_t{20});
        AppendLittle(common, record.Flags);
        AppendLittle(common, record.Method);
        AppendLittle(common, std::uint32_t{0x210000});
        AppendLittle(common, record.CheckSum);
        AppendLittle(common, record.CompressedSize);
        AppendLittle(common, record.Size);
        AppendLittle(common, static_cast<std::uint16_t>(record.Name.size()));
        AppendLittle(common, std::uint16_t{0});
        directory += QByteArray("PK\1\2", 4) + QByteArray("\24\0", 2) + common + QByteArray(10, '\0');
        AppendLittle(directory, static_cast<std::uint32_t>(file.size()));
        directory += record.Name;
        file += QByteArray("PK\3\4", 4) + common + record.Name + record.Data;
    }
    QByteArray end("PK\5\6\0\0\0\0", 8);
    AppendLittle(end, static_cast<std::uint16_t>(records.size()));
    AppendLittle(end, static_cast<std::uint16_t>(records.size()));
    AppendLittle(end, static_cast<std::uint32_t>(directory.size()));
    AppendLittle(end, static_cast<std::uint32_t>(file.size()));
    return file + directory + end + QByteArray(2, '\0');
}

} // namespace lmx::tests
