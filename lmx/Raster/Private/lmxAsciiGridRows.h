#pragma once

#include <lmx/Runtime/lmxFormatSettings.h>

#include <QByteArray>

#include <cstdint>
#include <span>
#include <vector>

namespace lmx {

class TStreamReader;

// The rows of an ASCII grid: one line each from the top, numbers in the format settings, separated by one blank.

/// Reads the cells of all rows. Each row must stand on one line, which is trimmed and then split at each single blank.
/// What follows the last row is not read. Memory is taken for as many cells as the stream can hold, never for a mere
/// claim.
/// @throws EConvertError for a piece that is no number: "'...' is not a valid floating point value", "'...' is not a
/// valid integer value"; two blanks in a row have an empty piece between them.
/// @throws Exception "Row %d contains %d values, %d were expected" with the row counted from 0.
/// @throws EArgumentException "Col index is out of range" for rows without columns.
/// The Place of these failures is the line. As there is no room for the cells: EFileException "...: does not fit into
/// memory".
template<class Cell>
std::vector<Cell> ReadGridRows(TStreamReader& reader, std::int32_t columns, std::int32_t rows,
                               const TFormatSettings& settings);

extern template std::vector<float> ReadGridRows(TStreamReader&, std::int32_t, std::int32_t, const TFormatSettings&);
extern template std::vector<std::int32_t> ReadGridRows(TStreamReader&, std::int32_t, std::int32_t,
                                                       const TFormatSettings&);

/// Appends the text of a row, without a line break. Singles have the form of FloatToStr, with as few decimals as read
/// back exactly: "0.1", not "0.100000001490116".
void AppendGridRow(QByteArray& text, std::span<const float> cells, const TFormatSettings& settings);
void AppendGridRow(QByteArray& text, std::span<const std::int32_t> cells, const TFormatSettings& settings);

} // namespace lmx
