#include <lmx/DataSources/lmxTileStatistics.h>

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/DataSources/lmxTileSource.h>
#include <lmx/DataSources/lmxTiledRasterMapLayer.h>
#include <lmx/Layers/lmxLayerStatistics.h>
#include <lmx/Raster/lmxField.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <memory>
#include <vector>

namespace lmx {

namespace {

constexpr std::int32_t MostRows = 256;

/// Leaves the computation from within a row.
struct TEnded {};

TField FieldOf(const ITileSource& source) {
    const TWorldMapArea area = source.GetArea();
    TField field;
    field.Bounds = area.Area;
    field.Width = source.GetLevels().front().Width;
    field.Height = source.GetLevels().front().Height;
    field.IsGeographic = area.WorldSystem && area.WorldSystem->GetGroup() == QStringLiteral("latlon");
    return field;
}

/// The rows of a source, strip by strip, as far as they count.
class TStrips {
public:
    TStrips(const ITileSource& source, TField& field, TFieldRegion& region, const TStatisticsProgress& goesOn)
        : FSource(source),
          FRegion(region),
          FGoesOn(goesOn),
          FWidth(field.Width),
          FHeight(field.Height),
          FStripRows(RowsOf(field.Width)) {
        field.ReadRow = [this](std::int32_t row, std::span<double> numbers) { ReadRow(row, numbers); };
    }

private:
    // A power of two, so that the blocks of most files are read by no more strips than they need.
    static std::int32_t RowsOf(std::int32_t width) {
        const std::size_t rows = TileStatisticsCells / static_cast<std::size_t>(std::max(width, 1));
        return static_cast<std::int32_t>(std::bit_floor(std::clamp<std::size_t>(rows, 1, MostRows)));
    }

    void ReadRow(std::int32_t row, std::span<double> numbers) {
        if (row >= FStrip.Bottom || row < FStrip.Top)
            ReadStrip(row);
        std::fill(numbers.begin(), numbers.end(), static_cast<double>(TSpatialConst::NoData));
        const auto stride = static_cast<std::size_t>(FStrip.GetWidth());
        const float* const from = FCells.data() + static_cast<std::size_t>(row - FStrip.Top) * stride;
        std::copy(from, from + stride, numbers.begin() + FStrip.Left);
    }

    void ReadStrip(std::int32_t row) {
        if (FGoesOn && !FGoesOn(static_cast<double>(row) / FHeight))
            throw TEnded();
        const std::int32_t top = row / FStripRows * FStripRows;
        FStrip = {FWidth, row, 0, row + 1};
        for (std::int32_t y = row; y < std::min(top + FStripRows, FHeight); ++y)
            if (FRegion.GetRowWeight(y) > 0) {
                FStrip.Bottom = y + 1;
                Widen(FRegion.GetShares(y));
            }
        if (FStrip.Left >= FStrip.Right)
            FStrip.Left = FStrip.Right = 0;
        FCells.resize(static_cast<std::size_t>(FStrip.GetWidth()) * static_cast<std::size_t>(FStrip.GetHeight()));
        if (!FCells.empty())
            FSource.ReadCells(0, FStrip, FCells, [] { return false; });
    }

    void Widen(std::span<const double> shares) {
        const auto counts = [](double share) { return share > 0; };
        const auto first = std::find_if(shares.begin(), shares.end(), counts);
        const auto last = std::find_if(shares.rbegin(), shares.rend(), counts);
        FStrip.Left = std::min(FStrip.Left, static_cast<std::int32_t>(first - shares.begin()));
        FStrip.Right = std::max(FStrip.Right, static_cast<std::int32_t>(shares.rend() - last));
    }

    const ITileSource& FSource;
    TFieldRegion& FRegion;
    const TStatisticsProgress& FGoesOn;
    const std::int32_t FWidth;
    const std::int32_t FHeight;
    const std::int32_t FStripRows;
    TRect FStrip;
    std::vector<float> FCells;
};

std::optional<TFieldStatistics> Compute(const ITileSource& source, TField field, TFieldRegion region,
                                        const TStatisticsProgress& goesOn) {
    const TStrips strips(source, field, region, goesOn);
    try {
        return StatisticsOf(field, region);
    } catch (const TEnded&) {
        return std::nullopt;
    }
}

// A share, for the layer may go meanwhile.
std::shared_ptr<const ITileSource> SourceOf(const TTiledRasterMapLayer& layer) {
    if (!layer.GetSource())
        throw EInvalidOperation(QStringLiteral("The layer \"%1\" has no raster").arg(layer.GetLayerName()));
    return layer.GetSource();
}

} // namespace

std::optional<TFieldStatistics> StatisticsOf(const ITileSource& source, const TStatisticsProgress& goesOn) {
    const TField field = FieldOf(source);
    return Compute(source, field, TFieldRegion(field), goesOn);
}

std::optional<TFieldStatistics> StatisticsOf(const ITileSource& source, const TMapArea& area,
                                             const TStatisticsProgress& goesOn) {
    const TField field = FieldOf(source);
    return Compute(source, field, TFieldRegion(field, area), goesOn);
}

std::optional<TFieldStatistics> StatisticsOf(const ITileSource& source, std::span<const TFieldRing> rings,
                                             const TStatisticsProgress& goesOn) {
    const TField field = FieldOf(source);
    return Compute(source, field, TFieldRegion(field, rings), goesOn);
}

std::optional<TFieldStatistics> StatisticsOf(const TTiledRasterMapLayer& layer, const TStatisticsProgress& goesOn) {
    return StatisticsOf(*SourceOf(layer), goesOn);
}

std::optional<TFieldStatistics> StatisticsOf(const TTiledRasterMapLayer& layer, const TMapArea& area,
                                             const TStatisticsProgress& goesOn) {
    return StatisticsOf(*SourceOf(layer), area, goesOn);
}

std::optional<TFieldStatistics> StatisticsOf(const TTiledRasterMapLayer& layer, const TShapeFileLayer& shapes,
                                             std::size_t polygon, const TStatisticsProgress& goesOn) {
    const std::shared_ptr<const ITileSource> source = SourceOf(layer);
    const std::vector<TFieldRing> rings = FieldRingsOf(shapes, polygon);
    return StatisticsOf(*source, rings, goesOn);
}

} // namespace lmx
