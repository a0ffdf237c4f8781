#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <map>
#include <type_traits>

class QIODevice;

// The exact binary form in which documents hold headers. Little-endian: a mark of four letters, a 32-bit version, the
// 32-bit length of the entries, the entries, and a 16-bit checksum (CRC-16, ITU-T V.41) of the entries. Texts are a
// 32-bit length in bytes and UTF-16 units. Both directions go through one list of entries, so that they cannot drift
// apart: coder.Entry(&THeader::GetTitle, &THeader::SetTitle, header), and so on. The number of enumerators of an
// enumeration is what its overload of CountOf says.

namespace lmx {

/// Stores entries into a header.
class THeaderEntryReader {
public:
    explicit THeaderEntryReader(const QByteArray& entries);

    template<class Header, class Value>
    void Entry(Value (Header::*)() const, void (Header::*set)(Value), Header& header) {
        (header.*set)(Read<Value>());
    }
    template<class Header, class Value>
    void Entry(const Value& (Header::*)() const, void (Header::*set)(const Value&), Header& header) {
        (header.*set)(Read<Value>());
    }

    /// Whether all entries were there, were valid, and were all that there was.
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
        } else if constexpr (std::is_same_v<Value, std::map<std::int32_t, QString>>) {
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

    QDataStream FStream;
    bool FIsValid = true;
};

/// Collects the entries of a header.
class THeaderEntryWriter {
public:
    THeaderEntryWriter();

    template<class Get, class Set, class Header>
    void Entry(Get get, Set, const Header& header) {
        Write((header.*get)());
    }

    const QByteArray& Bytes() const { return FBytes; }

private:
    template<class Value>
    void Write(const Value& value) {
        if constexpr (std::is_enum_v<Value>) {
            FStream << static_cast<quint8>(value);
        } else if constexpr (std::is_same_v<Value, std::map<std::int32_t, QString>>) {
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

/// The entries' bytes, verified, from the device's position on; `name` is for the messages.
/// @throws EFileFormatException if the form is another one, cut short or damaged.
QByteArray ReadHeaderEntries(QIODevice& device, const char (&mark)[5], const QString& name);
/// @throws EFileException if the device does not take it all.
void WriteHeaderEntries(QIODevice& device, const char (&mark)[5], const QString& name, const QByteArray& entries);

} // namespace lmx
