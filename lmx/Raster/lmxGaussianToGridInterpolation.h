#pragma once

#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Raster/lmxSingleGrid.h>
#include <lmx/Runtime/lmxExport.h>

#include <cstdint>
#include <memory>
#include <span>

namespace lmx {

/// Resamples a grid on two arbitrary axes, such as the Gaussian grids of climate models, onto an even one, by linear
/// interpolation along X and then along Y.
class LMX_EXPORT TGaussianToGridInterpolation {
public:
    TSingleArray FXVals;          ///< position of each source column, ascending
    TSingleArray FYVals;          ///< position of each source row, ascending
    bool FXWrapsAround = false;   ///< the X axis closes on itself
    bool FYWrapsAround = false;   ///< the Y axis closes on itself
    float FMissingValue = -9999;  ///< stands where a target position has no source
    bool FBestGuessEdges = false; ///< beside a flag take the other neighbour instead of a flag

    /// The grid of `Round(width / resolution)` columns and `Round(height / resolution)` rows whose cell (column, row)
    /// lies at (column * resolution + startX, row * resolution + startY).
    ///
    /// A cell lies between two neighbours (SampleAxis) and takes `(b - a) * fraction + a`, rounded to single after each
    /// of the two passes; -9990 where a neighbour is a flag and `FBestGuessEdges` does not help; `FMissingValue` where
    /// the position has no source. What the first pass left missing is input of the second like any other number.
    /// @param grid a row for each of `FYVals` with a number for each of `FXVals`
    /// @throws EZeroDivide if the resolution is 0; EInvalidOp if a count is no 32-bit number or a fraction is none;
    /// EArgumentException "Grid" if the grid has another shape; EInvalidOperation "Grid size is negative" or "Grid is
    /// too large"; EOutOfMemory, before any work, if there is no room for the result.
    TSingleGrid Interpolate(float width, float height, float startX, float startY, float resolution,
                            const TSingleGrid& grid, std::int32_t& numRows, std::int32_t& numCols) const;

private:
    TSingleGrid InterpolateCells(std::int32_t columnCount, std::int32_t rowCount, float startX, float startY,
                                 float resolution, const TSingleGrid& grid) const;
};

/// Geometry of an interpolated grid, in degrees. Row 0 is the lowest latitude, so `Top` is the southern limit.
struct TInterpolatedInfo {
    double Left = 0;   ///< whole degree at or below the first longitude
    double Top = 0;    ///< whole degree at or below the lowest latitude
    double Right = 0;  ///< whole degree at or above the last longitude
    double Bottom = 0; ///< whole degree at or above the highest latitude
    double Res = 0;    ///< spacing of the grid
    std::int32_t NumRows = 0;
    std::int32_t NumCols = 0;

    friend bool operator==(const TInterpolatedInfo&, const TInterpolatedInfo&) = default;
};

/// Brings model output onto an even grid of half its densest spacing, over its area widened to whole degrees. A margin
/// that the widening adds has no source and gets `missingValue`, unless the area is 360 degrees wide: then the
/// longitudes close on themselves.
/// @param lats latitudes, ascending or descending
/// @param lons longitudes, ascending
/// @param data a row of `lons` values for each of `lats`
/// @throws EArgumentException "Lats", "Lons" or "Data" if it is empty; EInvalidOperation "Data length should match
/// length of latitude * longitude data"; EInvalidOperation "Latitudes and longitudes should give a positive spacing" if
/// an axis has one value only, or the least difference of neighbours is not above 0; and what Interpolate throws.
LMX_EXPORT TSingleGrid InterpolateGrid(std::span<const float> lats, std::span<const float> lons,
                                       std::span<const float> data, double missingValue, bool bestGuessEdges,
                                       TInterpolatedInfo& info);

/// A real-valued image in degrees of a grid whose row 0 is the southern one. The flag value is -9990; every other
/// number enters the range of values, -9999 too.
/// @throws Exception "The specified data set does not contain any valid values"; EArgumentException "Grid" if the grid
/// does not have `numRows` rows of `numCols`.
LMX_EXPORT std::unique_ptr<TRealImage> CreateImageFromGrid(float minX, float minY, float maxX, float maxY,
                                                           float resolution, std::int32_t numCols, std::int32_t numRows,
                                                           const TSingleGrid& grid);

/// CreateImageFromGrid of what InterpolateGrid gives, and its exceptions; EOutOfMemory, before any work, if there is no
/// room for grid and image.
LMX_EXPORT std::unique_ptr<TRealImage> InterpolateAndCreateImageFromGrid(std::span<const float> lats,
                                                                         std::span<const float> lons,
                                                                         std::span<const float> data,
                                                                         float missingValue, bool bestGuessEdges);

/// An image of data that are evenly spaced already, cell for cell. The first and last axis values become the outer
/// edges, and the spacing is their distance over the number of values. Latitudes should ascend.
/// @throws EInvalidOperation "X and Y resoloutions do not match" if the spacings differ by more than 0.001;
/// "Latitudes and longitudes should give a positive spacing" if an axis is empty or has no extent; "Data length should
/// match length of latitude * longitude data"; and Exception as CreateImageFromGrid.
LMX_EXPORT std::unique_ptr<TRealImage> CreateFromLinearGrid(std::span<const float> lats, std::span<const float> lons,
                                                            std::span<const float> data);

} // namespace lmx
