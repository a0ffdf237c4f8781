#pragma once

#include <QByteArray>
#include <QtEndian>

#include <cstdint>

// Tables made on the spot, field by field and record by record.

namespace lmx::tests {

class TTableBytes {
public:
    explicit TTableBytes(std::uint8_t version = 3, std::uint8_t language = 0)
        : FVersion(version),
          FLanguage(language) {}

    TTableBytes& Field(const QByteArray& name, char type, int width, int decimals = 0, std::uint8_t flags = 0) {
        QByteArray field(32, '\0');
        field.replace(0, name.size(), name);
        field[11] = type;
        field[16] = static_cast<char>(width);
        field[17] = static_cast<char>(decimals);
        field[18] = static_cast<char>(flags);
        FFields += field;
        return *this;
    }
    /// All bytes behind the deletion mark, as long as the fields together.
    TTableBytes& Record(const QByteArray& values, char mark = ' ') {
        FRecords += mark + values;
        FRecordLength = 1 + static_cast<int>(values.size());
        ++FCount;
        return *this;
    }
    TTableBytes& Count(std::uint32_t count) {
        FCount = count;
        return *this;
    }

    /// The whole file; `padding` stands between the list of fields and the records.
    QByteArray File(const QByteArray& padding = QByteArray()) const {
        QByteArray file(32, '\0');
        file[0] = static_cast<char>(FVersion);
        qToLittleEndian(FCount, file.data() + 4);
        qToLittleEndian(static_cast<std::uint16_t>(33 + FFields.size() + padding.size()), file.data() + 8);
        qToLittleEndian(static_cast<std::uint16_t>(FRecordLength), file.data() + 10);
        file[29] = static_cast<char>(FLanguage);
        return file + FFields + '\r' + padding + FRecords + '\x1A';
    }

private:
    std::uint8_t FVersion;
    std::uint8_t FLanguage;
    QByteArray FFields;
    QByteArray FRecords;
    int FRecordLength = 1;
    std::uint32_t FCount = 0;
};

/// The bytes of a number as tables hold it.
template<class Number>
QByteArray BytesOf(Number number) {
    QByteArray bytes(sizeof number, '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

} // namespace lmx::tests
