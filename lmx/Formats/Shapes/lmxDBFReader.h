#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace lmx {

class TDBFReader;

/// A field, or column, of a table.
class LMX_EXPORT TDBFField {
public:
    TDBFField(QString fieldName, char type, std::int32_t width, std::int32_t decimals)
        : FFieldName(std::move(fieldName)),
          FType(type),
          FWidth(width),
          FDecimals(decimals) {}

    const QString& GetFieldName() const { return FFieldName; } ///< other fields may have the same
    char GetType() const { return FType; }                     ///< as in the file: 'C' text, 'N' number, 'D' date, ...
    std::int32_t GetWidth() const { return FWidth; }           ///< bytes
    std::int32_t GetDecimals() const { return FDecimals; }

private:
    QString FFieldName;
    char FType;
    std::int32_t FWidth;
    std::int32_t FDecimals;
};

/// A value of a record. Nothing is decoded before the text is asked for. Looks into the reader, which must outlive it.
class LMX_EXPORT TDBFFieldValue {
public:
    TDBFFieldValue(const TDBFReader& reader, std::size_t row, std::size_t field)
        : FReader(&reader),
          FRow(row),
          FField(field) {}

    QString GetText() const; ///< as TDBFReader::GetText

private:
    const TDBFReader* FReader;
    std::size_t FRow;
    std::size_t FField;
};

/// A record: a value for each field, in their order. Looks into the reader, which must outlive it.
class LMX_EXPORT TDBFRecord {
public:
    TDBFRecord(const TDBFReader& reader, std::size_t row) : FReader(&reader), FRow(row) {}

    std::size_t GetRow() const { return FRow; } ///< among all rows; the record of a shape, as TShpFile counts them
    std::size_t GetCount() const;               ///< number of fields
    /// @throws EArgumentException "Field index is out of range".
    TDBFFieldValue operator[](std::size_t field) const;

private:
    const TDBFReader* FReader;
    std::size_t FRow;
};

/// A table (.dbf), such as the attributes that stand beside a shape file. Its bytes are kept as they are in the file,
/// and a value becomes text when it is asked for. Serves one thread at a time.
///
/// Read are versions III to V, with and without memo files (.dbt, .fpt), and those of the Visual kind. The code page is
/// that of the .cpg file, else that of the language byte, else each text is UTF-8 if it decodes as such and otherwise
/// Windows-1252. A file that is cut short gives the records that are whole.
class LMX_EXPORT TDBFReader {
public:
    /// `codePage` ("1252", "Shift_JIS", ...) overrules what the file says, unless it is empty or nobody knows it.
    /// @throws EFileException if the file cannot be read or does not fit into memory, EFileFormatException if it is no
    /// table, or its header is cut short or contradicts itself.
    explicit TDBFReader(const QString& fileName, const QString& codePage = QString());
    ~TDBFReader();
    TDBFReader(const TDBFReader&) = delete;
    TDBFReader& operator=(const TDBFReader&) = delete;

    const QString& GetFileName() const { return FFileName; } ///< as it was given
    /// The fields in the order of the file; columns that only the writing program needs are left out.
    std::span<const TDBFField> GetFields() const { return FFields; }

    /// The next record that is not deleted, from the first one on; nothing behind the last one.
    std::optional<TDBFRecord> ReadRecord();
    void Restart() { FNextRow = 0; } ///< the first record is next again

    // Any record, in any order. The row of a shape is its record.
    std::size_t GetRowCount() const { return FRowCount; } ///< deleted ones included
    /// @throws EArgumentException "Row index is out of range".
    bool GetIsDeleted(std::size_t row) const;
    /// The value as text: texts without the blanks at their end, numbers and dates as they stand in the file, binary
    /// numbers in decimal with a point, date-times as "YYYYMMDD hh:mm:ss", the text of a memo from its file. Empty if
    /// there is no value.
    /// @throws EArgumentException "Row index is out of range", "Field index is out of range".
    QString GetText(std::size_t row, std::size_t field) const;

    std::size_t GetMemorySize() const; ///< bytes of the records

private:
    struct TInside;

    void ReadFields(const QString& codePage);
    QByteArrayView RecordAt(std::size_t row) const;

    QString FFileName;
    std::unique_ptr<TInside> FInside;
    std::vector<TDBFField> FFields;
    std::size_t FRowCount = 0;
    std::size_t FNextRow = 0;
};

} // namespace lmx
