#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <cstdint>

namespace lmx {

/// The file of long texts beside a table: .fpt of the Visual kind, .dbt of the others. Nothing is read before a text is
/// asked for. What is missing or damaged gives an empty text.
class TDBFMemo {
public:
    /// Without such a file every text is empty.
    TDBFMemo(const QString& dbfFileName, bool isFox);

    /// The text that begins at a block; none does at block 0.
    QByteArray Read(std::int64_t block);

private:
    QByteArray ReadFox(std::int64_t position);
    QByteArray ReadCounted(std::int64_t position, std::int64_t length);
    QByteArray ReadToMark(std::int64_t position);
    QByteArray Bytes(std::int64_t position, std::int64_t count);

    QFile FFile;
    bool FIsFox;
    std::int64_t FBlockSize = 0;
};

} // namespace lmx
