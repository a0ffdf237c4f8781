// The exact binary form of an image header. Little-endian: the mark "LMXH", a 32-bit version, the 32-bit length of the
// entries, the entries, and a 16-bit checksum (CRC-16, ITU-T V.41) of the entries. Texts are a 32-bit length in bytes
// and UTF-16 units.

#include <lmx/Formats/lmxImageHeader.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QDataStream>
#include <QIODevice>

#include <algorithm>
#include <type_traits>

namespace lmx {

namespace {

constexpr char Mark[4] = {'L', 'M', 'X', 'H'};
constexpr quint32 Version = 1;

QString StreamName() {
    return QStringLiteral("Image header");
}

void Configure(QDataStream& stream) {
    stream.setVersion(QDataStream::Qt_6_0);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream.setFloatingPointPrecision(QDataStream::SinglePrecision);
}

// Both directions go through one list of entries, so that they cannot drift apart.
class TEntryReader {
public:
    explicit TEntryReader(const QByteArray& bytes) : FStream(bytes) { Configure(FStream); }

    template<class Value>
    void Entry(Value (TImageHeader::*)() const, void (TImageHeader::*set)(Value), TImageHeader& header) {
        (header.*set)(Read<Value>());
    }
    template<class Value>
    void Entry(const Value& (TImageHeader::*)() const, void (TImageHeader::*set)(const Value&), TImageHeader& header) {
        (header.*set)(Read<Value>());
    }

    bool IsComplete() const { return FIsValid && FStream.status() == QDataStream::Ok && FStream.atEnd(); }

private:
    template<class Value>
    Value Read() {
        Value value{};
        if constexpr (std::is_enum_v<Value>) {
            quint8 ordinal = 0;
            FStream >> ordinal;
            FIsValid = FIsValid && ordinal < CountOf(value);
            value = static_cast<Value>(ordinal);
        } else if constexpr (std::is_same_v<Value, TLegendCategories>) {
            quint32 count = 0;
            FStream >> count;
            for (; count > 0 && FStream.status() == QDataStream::Ok; --count) {
                const auto code = Read<std::int32_t>();
                value.emplace(code, Read<QString>());
            }
        } else {
            FStream >> value;
        }
        return value;
    }

    static std::size_t CountOf(TImageDataType) { return DataTypeNames.size(); }
    static std::size_t CountOf(TImageFileType) { return FileTypeNames.size(); }

    QDataStream FStream;
    bool FIsValid = true;
};

class TEntryWriter {
public:
    TEntryWriter() : FStream(&FBytes, QIODevice::WriteOnly) { Configure(FStream); }

    template<class Get, class Set>
    void Entry(Get get, Set, const TImageHeader& header) {
        Write((header.*get)());
    }

    const QByteArray& Bytes() const { return FBytes; }

private:
    template<class Value>
    void Write(const Value& value) {
        if constexpr (std::is_enum_v<Value>) {
            FStream << static_cast<quint8>(value);
        } else if constexpr (std::is_same_v<Value, TLegendCategories>) {
            FStream << static_cast<quint32>(value.size());
            for (const auto& [code, name] : value)
                FStream << code << name;
        } else {
            FStream << value;
        }
    }

    QByteArray FBytes;
    QDataStream FStream;
};

template<class Coder, class Header>
void CodeEntries(Coder& coder, Header& header) {
    using H = TImageHeader;
    coder.Entry(&H::GetWidth, &H::SetWidth, header);
    coder.Entry(&H::GetHeight, &H::SetHeight, header);
    coder.Entry(&H::GetMinX, &H::SetMinX, header);
    coder.Entry(&H::GetMaxX, &H::SetMaxX, header);
    coder.Entry(&H::GetMinY, &H::SetMinY, header);
    coder.Entry(&H::GetMaxY, &H::SetMaxY, header);
    coder.Entry(&H::GetMinValue, &H::SetMinValue, header);
    coder.Entry(&H::GetMaxValue, &H::SetMaxValue, header);
    coder.Entry(&H::GetDisplayMin, &H::SetDisplayMin, header);
    coder.Entry(&H::GetDisplayMax, &H::SetDisplayMax, header);
    coder.Entry(&H::GetResolutionX, &H::SetResolutionX, header);
    coder.Entry(&H::GetResolutionY, &H::SetResolutionY, header);
    coder.Entry(&H::GetUnitDistance, &H::SetUnitDistance, header);
    coder.Entry(&H::GetFlagValue, &H::SetFlagValue, header);
    coder.Entry(&H::GetFlag, &H::SetFlag, header);
    coder.Entry(&H::GetDataType, &H::SetDataType, header);
    coder.Entry(&H::GetFileType, &H::SetFileType, header);
    coder.Entry(&H::GetTitle, &H::SetTitle, header);
    coder.Entry(&H::GetRefSystem, &H::SetRefSystem, header);
    coder.Entry(&H::GetRefUnits, &H::SetRefUnits, header);
    coder.Entry(&H::GetPositionError, &H::SetPositionError, header);
    coder.Entry(&H::GetValueUnits, &H::SetValueUnits, header);
    coder.Entry(&H::GetValueError, &H::SetValueError, header);
    coder.Entry(&H::GetFlagDef, &H::SetFlagDef, header);
    coder.Entry(&H::GetLegendCategories, &H::SetLegendCategories, header);
    coder.Entry(&H::GetLineage, &H::SetLineage, header);
    coder.Entry(&H::GetCompleteness, &H::SetCompleteness, header);
    coder.Entry(&H::GetConsistency, &H::SetConsistency, header);
    coder.Entry(&H::GetComment, &H::SetComment, header);
}

// The entries' bytes, verified.
QByteArray ReadEntries(QIODevice& device) {
    QDataStream stream(&device);
    Configure(stream);
    char mark[sizeof Mark] = {};
    quint32 version = 0;
    quint32 length = 0;
    quint16 checksum = 0;
    if (stream.readRawData(mark, sizeof mark) != sizeof mark || !std::equal(mark, mark + sizeof mark, Mark))
        throw EFileFormatException(StreamName(), QStringLiteral("not in the stored form"));
    stream >> version >> length;
    if (stream.status() == QDataStream::Ok && version != Version)
        throw EFileFormatException(StreamName(), QStringLiteral("stored by a newer version"));
    if (stream.status() != QDataStream::Ok || device.bytesAvailable() < qint64{length} + qint64{sizeof checksum})
        throw EFileFormatException(StreamName(), QStringLiteral("cut short"));
    QByteArray entries = device.read(length);
    stream >> checksum;
    if (stream.status() != QDataStream::Ok || entries.size() != qsizetype{length} || checksum != qChecksum(entries))
        throw EFileFormatException(StreamName(), QStringLiteral("damaged"));
    return entries;
}

} // namespace

void TImageHeader::LoadFromStream(QIODevice& stream) {
    TEntryReader reader(ReadEntries(stream));
    TImageHeader header;
    CodeEntries(reader, header);
    if (!reader.IsComplete())
        throw EFileFormatException(StreamName(), QStringLiteral("damaged"));
    *this = header;
}

void TImageHeader::SaveToStream(QIODevice& stream) const {
    TEntryWriter writer;
    CodeEntries(writer, *this);
    const QByteArray& entries = writer.Bytes();
    QDataStream out(&stream);
    Configure(out);
    out.writeRawData(Mark, sizeof Mark);
    out << Version << static_cast<quint32>(entries.size());
    out.writeRawData(entries.constData(), static_cast<int>(entries.size()));
    out << qChecksum(entries);
    if (out.status() != QDataStream::Ok)
        throw EFileException(StreamName(), QStringLiteral("cannot be written: ") + stream.errorString());
}

} // namespace lmx
