#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QChar>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <cstddef>
#include <vector>

namespace lmx {

/// The delimiter of a text: of tab, semicolon, comma and vertical bar the one that gives the same number of columns, at
/// least 2, in the most of the first 100 rows. Of several the first in this order; a comma if none gives two columns.
LMX_EXPORT QChar GetCSVDelim(QStringView text);

/// Delimited text: rows of cells, and a name for each column.
///
/// A row ends at LF, CR or CRLF; a line without a character is none. A cell that begins with a double quote ends at
/// the next one: what stands between is the cell, line breaks and delimiters included, and two quotes stand for one.
/// What follows a closing quote belongs to the cell, a quote that is never closed reaches to the end of the text, and
/// one that does not begin a cell is a character like any other. Blanks count.
///
/// The first row names the columns, and stays a row. A column that it gives no name, or one that another column has, is
/// "Column n", counted from 1. There are as many columns as cells in the longest row.
///
/// A value: it copies, and reads from any thread while nobody assigns.
class LMX_EXPORT TCSVReader {
public:
    /// Most columns of a text, many times those of any spreadsheet.
    static constexpr std::size_t MostColumns = 65'536;
    /// Bytes of the longest file that is read: millions of rows.
    static constexpr qint64 MostBytes = 256 * 1024 * 1024;

    TCSVReader() = default; ///< no rows

    /// @throws EArgumentException "Delimiter" if it is a double quote or a line break; EFileFormatException "Delimited
    /// text: row %d has more than 65536 cells", the row counted from 1; EOutOfMemory.
    static TCSVReader FromText(const QString& text, QChar delimiter);

    /// Reads a file in UTF-8 or, if it is none, Windows-1252, or in UTF-16 with a byte order mark. Its delimiter is
    /// that of GetCSVDelim.
    /// @throws EFileException if it cannot be read or does not fit into memory; EFileFormatException "...: row %d has
    /// more than 65536 cells", "...: holds more than 268435456 bytes".
    static TCSVReader FromFile(const QString& fileName);

    std::size_t GetRowCount() const { return FRowStarts.empty() ? 0 : FRowStarts.size() - 1; }
    /// Cells that a row has; rows may have different numbers.
    /// @throws EArgumentException "Row index is out of range".
    std::size_t GetCellCount(std::size_t row) const;
    /// A cell, empty if the row lacks it. Valid as long as this object, or a copy of it, is neither assigned nor gone.
    /// @throws EArgumentException "Row index is out of range".
    QStringView GetCell(std::size_t row, std::size_t column) const;
    /// The cells that a row has.
    /// @throws EArgumentException "Row index is out of range".
    QStringList GetRow(std::size_t row) const;

    /// One for each column, all different.
    const QStringList& GetColumnNames() const { return FColumnNames; }

private:
    class TParser;

    // The texts of all cells in one piece: cell i reaches from the end of cell i - 1 to its own.
    QString FTexts;
    std::vector<qsizetype> FCellEnds;
    std::vector<std::size_t> FRowStarts; ///< index of each row's first cell, and the number of cells behind the last
    QStringList FColumnNames;
};

} // namespace lmx
