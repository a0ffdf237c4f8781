#pragma once

#include <lmx/Formats/Idrisi/lmxImageHeader.h>

#include <QString>

#include <cstdint>
#include <vector>

class QIODevice;

namespace lmx {

/// Reads `count` cells of an image's data file from a device's position: little-endian numbers, text, or run lengths.
/// No memory is taken for cells that the device cannot hold. Bytes behind the last cell are ignored.
///
/// Run lengths are pairs of a count and a value and go on across row ends. Writers disagree on the widths and on the
/// order: (count, value) in the cell's width, a 16-bit count and the value, (value, count) in the cell's width. The
/// first layout counts in which all counts are positive, add up to the image and use up the file.
/// @throws EFileFormatException with `fileName` if there are too few cells, a text is no number, or no run layout fits;
/// EFileException "...: does not fit into memory".
template<class Cell>
std::vector<Cell> ReadCells(QIODevice& device, TImageFileType type, std::uint64_t count, const QString& fileName);

extern template std::vector<std::uint8_t> ReadCells(QIODevice&, TImageFileType, std::uint64_t, const QString&);
extern template std::vector<std::int16_t> ReadCells(QIODevice&, TImageFileType, std::uint64_t, const QString&);
extern template std::vector<float> ReadCells(QIODevice&, TImageFileType, std::uint64_t, const QString&);

/// Writes `count` cells as little-endian numbers; an empty vector stands for zeros. False if the device does not take
/// them all.
template<class Cell>
bool WriteCells(QIODevice& device, const std::vector<Cell>& cells, std::uint64_t count);

extern template bool WriteCells(QIODevice&, const std::vector<std::uint8_t>&, std::uint64_t);
extern template bool WriteCells(QIODevice&, const std::vector<std::int16_t>&, std::uint64_t);
extern template bool WriteCells(QIODevice&, const std::vector<float>&, std::uint64_t);

} // namespace lmx
