#pragma once

#include <QString>

#include <memory>

namespace lmx {
class IArcInfoAsciiGridRasterFrame;
class IBaseColorCalculator;
class ILayerManager;
class TIdrisiMapLayer;
class TRealImage;
struct TValueRange;
} // namespace lmx

/// From dark to light with even steps to the eye, over a range of values.
std::shared_ptr<lmx::IBaseColorCalculator> DefaultColors(const lmx::TValueRange& range);

/// The numbers of an ASCII grid as an image. Cells of the grid's NODATA_value hold no data. A grid knows no reference
/// system: bounds within 360 degrees of longitude and 90 of latitude are taken for degrees.
std::unique_ptr<lmx::TRealImage> ImageOfGrid(const lmx::IArcInfoAsciiGridRasterFrame& grid);

/// A rendered layer that shows an Idrisi image or an ASCII grid, whatever its name (FileKinds.h), in a gradient over
/// its values, named after the file.
/// @throws lmx::EFileException if the file cannot be read, is damaged or has no cells; the message begins with its
/// name.
std::unique_ptr<lmx::TIdrisiMapLayer> OpenRaster(const std::shared_ptr<lmx::ILayerManager>& manager,
                                                 const QString& fileName);
