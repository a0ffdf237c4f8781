#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <vector>

class QIODevice;

namespace lmx {

/// A field as the header of a table describes it.
struct TDBFColumn {
    QByteArray Name; ///< in the table's code page
    char Type = 'C';
    std::int32_t Width = 0;
    std::int32_t Decimals = 0;
    std::int64_t Offset = 0; ///< in a record, whose first byte tells whether it is deleted
    int NullBit = -1;        ///< in the column of null flags: whether the value is missing; or none
    int LengthBit = -1;      ///< whether the last byte of the value is its length; or none
};

/// The header of a table (.dbf): versions III to V, their cousins with memo files, and those of the Visual kind.
struct TDBFHeader {
    std::uint8_t Version = 3;
    std::uint8_t Language = 0;
    std::int64_t HeaderLength = 0;
    std::int64_t RecordLength = 0;
    std::int64_t RecordCount = 0; ///< as the header claims
    std::vector<TDBFColumn> Columns;
    std::int64_t NullFlagsOffset = 0; ///< of the system's column of null flags in a record
    std::int64_t NullFlagsWidth = 0;  ///< 0 if there is none

    /// Whether memo files and eight-byte numbers are those of the Visual kind and its forerunner.
    bool IsFox() const { return (Version >= 0x30 && Version <= 0x32) || Version == 0xF5; }
};

/// Reads the header from the start of a device. The list of fields ends at its terminator, or with the header.
/// @throws EFileFormatException if it is no table, one of a version that has another form, cut short, or its fields are
/// longer than a record; EFileException if the device cannot be read.
TDBFHeader ReadDBFHeader(QIODevice& device, const QString& fileName);

} // namespace lmx
