#include <lmx/Formats/Shapes/Private/lmxDBFHeader.h>

#include <lmx/Runtime/lmxExceptions.h>

#include <QIODevice>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <utility>

namespace lmx {

namespace {

constexpr std::int64_t FixedSize = 32;
constexpr std::int64_t FieldSize = 32;
constexpr qsizetype NameSize = 11;
constexpr char Terminator = 0x0D;
constexpr char NullFlags = '0';
constexpr std::uint8_t NullableField = 0x02;

constexpr std::array<std::uint8_t, 12> KnownVersions = {0x03, 0x30, 0x31, 0x32, 0x43, 0x63,
                                                        0x83, 0x8B, 0x8E, 0xCB, 0xE5, 0xF5};
constexpr std::array<std::uint8_t, 3> OtherForms = {0x02, 0x04, 0x8C};

std::uint8_t ByteAt(const QByteArray& bytes, qsizetype position) {
    return static_cast<std::uint8_t>(bytes[position]);
}

/// Reads the list of fields in a header that is there as a whole.
class TFieldList {
public:
    TFieldList(const QByteArray& bytes, TDBFHeader& header) : FBytes(bytes), FHeader(header) {}

    /// Gives the bytes that a record of these fields takes.
    std::int64_t Read(bool hasLongTexts) {
        FHeader.Columns.clear();
        FHeader.NullFlagsWidth = 0;
        std::int64_t offset = 1;
        int bit = 0;
        for (qsizetype at = FixedSize; at + FieldSize <= FBytes.size() && FBytes[at] != Terminator; at += FieldSize) {
            TDBFColumn column = ColumnAt(at, hasLongTexts);
            column.Offset = offset;
            offset += column.Width;
            const std::uint8_t flags = FHeader.IsFox() ? ByteAt(FBytes, at + 18) : 0;
            if (column.Type == NullFlags) {
                FHeader.NullFlagsOffset = column.Offset;
                FHeader.NullFlagsWidth = column.Width;
                continue;
            }
            if (column.Type == 'V' || column.Type == 'Q')
                column.LengthBit = bit++;
            if ((flags & NullableField) != 0)
                column.NullBit = bit++;
            FHeader.Columns.push_back(std::move(column));
        }
        return offset;
    }

private:
    // Of a long text the byte of the decimals is the upper half of its width.
    TDBFColumn ColumnAt(qsizetype at, bool hasLongTexts) const {
        TDBFColumn column;
        column.Name = FBytes.sliced(at, NameSize);
        column.Type = FBytes[at + 11];
        column.Width = ByteAt(FBytes, at + 16);
        column.Decimals = ByteAt(FBytes, at + 17);
        if (column.Type == 'C' && hasLongTexts)
            column.Width += 256 * std::exchange(column.Decimals, 0);
        return column;
    }

    const QByteArray& FBytes;
    TDBFHeader& FHeader;
};

QByteArray ReadBytes(QIODevice& device, std::int64_t count, const QString& fileName) {
    if (device.size() < count)
        throw EFileFormatException(fileName, QStringLiteral("the header is cut short"));
    QByteArray bytes(count, Qt::Uninitialized);
    if (!device.seek(0) || device.read(bytes.data(), count) != count)
        throw EFileException(fileName, QStringLiteral("cannot be read: ") + device.errorString());
    return bytes;
}

} // namespace

TDBFHeader ReadDBFHeader(QIODevice& device, const QString& fileName) {
    const auto refuse = [&](const QString& problem) { throw EFileFormatException(fileName, problem); };
    const QByteArray fixed = ReadBytes(device, FixedSize, fileName);
    TDBFHeader header;
    header.Version = ByteAt(fixed, 0);
    if (std::ranges::count(OtherForms, header.Version) > 0)
        refuse(QStringLiteral("a table of a version of dBase that is not read"));
    if (std::ranges::count(KnownVersions, header.Version) == 0)
        refuse(QStringLiteral("not a dBase table"));
    header.RecordCount = qFromLittleEndian<std::uint32_t>(fixed.constData() + 4);
    header.HeaderLength = qFromLittleEndian<std::uint16_t>(fixed.constData() + 8);
    header.RecordLength = qFromLittleEndian<std::uint16_t>(fixed.constData() + 10);
    header.Language = ByteAt(fixed, 29);
    if (header.HeaderLength < FixedSize)
        refuse(QStringLiteral("the header has an impossible length"));
    const QByteArray bytes = ReadBytes(device, header.HeaderLength, fileName);
    TFieldList fields(bytes, header);
    const std::int64_t length = header.RecordLength;
    const bool fits = fields.Read(false) == length || fields.Read(true) <= length || fields.Read(false) <= length;
    if (!fits && !header.Columns.empty())
        refuse(QStringLiteral("the fields are longer than a record"));
    return header;
}

} // namespace lmx
