#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/DataSources/lmxClimateAxis.h>
#include <lmx/DataSources/lmxDataSourcesExport.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>

#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace lmx {

class TUnevenGridding;

/// How the cells of a file become an evenly spaced picture of a world: made once for two axes, applied to any number of
/// slices. A value; any thread may read.
///
/// Even axes are only put in order, which loses nothing: rows from the north, columns from the west, turned so that the
/// seam of the world falls between two of them. Where the seam cuts a column, or a pole a row, all columns or rows
/// stand twice, half as wide, and the halves beyond go to the other end or are left out.
///
/// Uneven axes, and a circle of columns that the seam cuts elsewhere, are interpolated onto a grid of half their
/// densest spacing. A cell is a flag where the nearest one of the file is; beside a flag the value of the other
/// neighbour counts. On a grid round the earth a pole has one value, the mean of the row next to it; elsewhere the
/// outer half of the outer cells has their values.
class LMX_DATASOURCES_EXPORT TClimateGridPlan {
public:
    /// @param areCategories numbers that stand for kinds of things: where others are interpolated, these are those of
    /// the nearest cell, and a pole has no value of its own
    /// @throws EClimateRefusal if the columns reach over both seams without closing the circle, or the picture would
    /// have more than MaxCells.
    TClimateGridPlan(const TClimateAxis& longitude, const TClimateAxis& latitude, bool areCategories = false);

    /// The New Zealand Map Grid.
    /// @throws EClimateRefusal if an axis is uneven or the picture too large.
    static TClimateGridPlan Nzmg(const TClimateAxis& x, const TClimateAxis& y);

    static constexpr std::int64_t MaxCells = 64'000'000;

    const TMapArea& GetBounds() const { return FBounds; } ///< the outer edges
    /// The identifier of the world system: "latlon", "latlonAntimerdian" for a region over the 180th meridian, "nzmg".
    const QString& GetWorld() const { return FWorld; }
    std::int32_t GetColumns() const { return FColumns; }
    std::int32_t GetRows() const { return FRows; }
    bool IsInterpolated() const { return FGridding != nullptr; }
    /// Whether each cell of the file is one cell of the picture.
    bool IsExact() const { return !IsInterpolated() && FColumns == FSourceColumns && FRows == FSourceRows; }

    /// Which cell of the file is seen at a place of the picture, counted from the north-west. -1 if the picture is
    /// interpolated.
    /// @throws EArgumentException "Cell" for a place outside.
    std::int64_t SourceOf(std::int32_t column, std::int32_t row) const;

    /// Gives the values of a latitude of the file, counted as the axis has them, flags as TSpatialConst::NoData.
    using TReadRow = std::function<void(std::int32_t row, std::span<float> cells)>;

    /// The picture of a slice, with range, flag and place in its header; the range is 0 to 0 if there are flags only.
    /// Rows are read in the order of the picture, straight into it where nothing is between, and some may be read
    /// twice.
    /// @throws EOutOfMemory; what the reading raises.
    std::unique_ptr<TRealImage> MakeImage(const TReadRow& readRow, const QString& title, const QString& units) const;

private:
    TClimateGridPlan() = default;
    bool PlanEven(const TClimateAxis& longitude, const TClimateAxis& latitude);
    bool PlanColumns(const TClimateAxis& longitude);
    bool PlanWorldColumns(double west, std::vector<std::int32_t> columns);
    void PlanRows(const TClimateAxis& latitude);
    void CheckSize(const QString& axis) const;
    TReadRow PictureRows(const TReadRow& readRow) const;
    TReadRow InterpolatedRows(const TReadRow& readRow) const;
    TImageHeader MakeHeader(const QString& title, const QString& units) const;

    TMapArea FBounds;
    QString FWorld;
    std::int32_t FColumns = 0;
    std::int32_t FRows = 0;
    std::int32_t FSourceColumns = 0;
    std::int32_t FSourceRows = 0;
    // What each column and row of the picture shows: the number of one of the file. Empty if it is interpolated.
    std::vector<std::int32_t> FColumnSources;
    std::vector<std::int32_t> FRowSources;
    std::shared_ptr<const TUnevenGridding> FGridding; ///< nil if it is not
};

} // namespace lmx
