#pragma once

#include <lmx/Runtime/lmxGeometry.h>

#include <gdal.h>

#include <cstdint>
#include <span>

class GDALDataset;
class GDALRasterBand;

namespace lmx {

// Which cells of a band hold data, where the file says it apart from their numbers: by a mask or by an alpha band. "No
// data" is not of this: it is a number.

/// The band that says how opaque the cells of all others are, from 1; 0 if there is none. A file of one band has none.
int AlphaBandOf(GDALDataset& dataset);

/// What tells which cells of a band are missing, or of an overview of it, numbered as GDAL does. Nil if nothing does,
/// and for the alpha band itself.
/// @param alpha AlphaBandOf the dataset
GDALRasterBand* MaskOf(GDALDataset& dataset, int band, int alpha);
GDALRasterBand* MaskOfOverview(GDALDataset& dataset, int band, int overview, int alpha);

/// Whether one of its blocks is larger than MostBlockBytes.
bool HasHugeBlocks(GDALRasterBand& mask);

/// Reads it as RasterIO reads numbers: `width` x `height` cells of the window, 0 where a cell is missing. A cell that
/// is partly opaque holds data.
/// @param mask one of these, without huge blocks
/// @param extra nil for a window of whole cells
CPLErr ReadMaskCells(GDALRasterBand& mask, const TRect& window, int width, int height, std::uint8_t* cells,
                     GDALRasterIOExtraArg* extra = nullptr);

/// Makes flags of the values that the mask does not let through.
void HideMissing(std::span<const std::uint8_t> mask, std::span<float> values);

} // namespace lmx
