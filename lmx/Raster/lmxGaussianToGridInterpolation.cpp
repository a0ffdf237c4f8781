#include <lmx/Raster/lmxGaussianToGridInterpolation.h>

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Raster/Private/lmxAxisSamples.h>
#include <lmx/Raster/Private/lmxNeighbourBlend.h>
#include <lmx/Runtime/Private/lmxMemory.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExtended.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

namespace lmx {

namespace {

constexpr std::int64_t MaxCells = std::numeric_limits<std::int32_t>::max();

std::int32_t CountOfSteps(float extent, float resolution) {
    if (resolution == 0 && extent != 0 && !std::isnan(extent))
        throw EZeroDivide(QStringLiteral("Floating point division by zero"));
    const std::int64_t count = Round(static_cast<extended>(extent) / resolution);
    if (count < 0)
        throw EInvalidOperation(QStringLiteral("Grid size is negative"));
    if (count > MaxCells)
        throw EInvalidOp(QStringLiteral("Invalid floating point operation"));
    return static_cast<std::int32_t>(count);
}

/// The first pass: source rows resampled along X and widened for the second. Rows are made when they are asked for and
/// the last two are kept, so that rows asked for in order are each made once and are still at hand in the cache.
class TResampledRows {
public:
    struct TRow {
        std::int32_t Index = -1;
        float Largest = 0; ///< largest magnitude
        std::vector<double> Numbers;
    };

    /// Both must outlive the object.
    TResampledRows(const TGaussianToGridInterpolation& interpolation, const TSingleGrid& grid,
                   const std::vector<TAxisSample>& samples)
        : FInterpolation(interpolation),
          FGrid(grid),
          FWideSource(interpolation.FXVals.size()),
          FLeft(samples.size()),
          FRight(samples.size()),
          FResult(samples.size()) {
        for (const TAxisSample& sample : samples) {
            if (!sample.Valid)
                FMissing.push_back(FLeftIndexes.size());
            FLeftIndexes.push_back(sample.LowIndex);
            FRightIndexes.push_back(sample.HighIndex);
            FFractions.push_back(sample.Fraction);
        }
        FLow.Numbers.resize(samples.size());
        FHigh.Numbers.resize(samples.size());
    }

    /// Makes sure of two rows, which Low and High give until the next call.
    void Need(std::int32_t low, std::int32_t high) {
        if (FHigh.Index == low || FLow.Index == high)
            std::swap(FLow, FHigh);
        Make(low, FLow);
        Make(high, FHigh);
    }
    const TRow& Low() const { return FLow; }
    const TRow& High() const { return FHigh; }

private:
    void Make(std::int32_t index, TRow& row) {
        if (row.Index == index)
            return;
        FSource = FGrid[static_cast<std::size_t>(index)];
        Resample();
        row.Largest = WidenRow(FResult, row.Numbers);
        row.Index = index;
    }

    void Resample() {
        if (FMissing.size() == FResult.size()) { // there may be no source column at all
            std::fill(FResult.begin(), FResult.end(), FInterpolation.FMissingValue);
            return;
        }
        const float largest = WidenRow(FSource, FWideSource);
        for (std::size_t i = 0; i < FResult.size(); ++i) {
            FLeft[i] = FWideSource[static_cast<std::size_t>(FLeftIndexes[i])];
            FRight[i] = FWideSource[static_cast<std::size_t>(FRightIndexes[i])];
        }
        BlendRows(FLeft, FRight, FFractions, largest, FInterpolation.FBestGuessEdges, FResult);
        for (const std::size_t column : FMissing)
            FResult[column] = FInterpolation.FMissingValue;
    }

    const TGaussianToGridInterpolation& FInterpolation;
    const TSingleGrid& FGrid;
    std::vector<std::int32_t> FLeftIndexes;
    std::vector<std::int32_t> FRightIndexes;
    std::vector<double> FFractions;
    std::vector<std::size_t> FMissing; ///< columns without a source
    TSingleArray FSource;              ///< the present source row
    std::vector<double> FWideSource;
    std::vector<double> FLeft; ///< left neighbour of each column
    std::vector<double> FRight;
    TSingleArray FResult;
    TRow FLow;
    TRow FHigh;
};

/// Whether there is room for a grid and for the samples of its axes, before any of them is computed.
void NeedMemoryForGrid(std::int64_t columns, std::int64_t rows) {
    constexpr std::int64_t columnBytes = sizeof(TAxisSample) + 2 * sizeof(std::int32_t) + 4 * sizeof(double);
    constexpr std::int64_t rowBytes = sizeof(TAxisSample) + sizeof(TSingleArray);
    constexpr std::int64_t cellBytes = sizeof(float);
    NeedMemory(static_cast<std::uint64_t>(columns * rows * cellBytes + columns * columnBytes + rows * rowBytes));
}

[[noreturn]] void RefuseSpacing() {
    throw EInvalidOperation(QStringLiteral("Latitudes and longitudes should give a positive spacing"));
}

void CheckDataLength(std::span<const float> lats, std::span<const float> lons, std::span<const float> data) {
    if (data.size() != lats.size() * lons.size())
        throw EInvalidOperation(QStringLiteral("Data length should match length of latitude * longitude data"));
}

/// Least difference of adjacent values of an axis that ascends from each to the next; an axis that does not is refused.
double SmallestGap(std::span<const float> axis) {
    double smallest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 1; i < axis.size(); ++i) {
        const double gap = static_cast<double>(axis[i]) - axis[i - 1];
        if (!(gap > 0))
            RefuseSpacing();
        smallest = std::min(smallest, gap);
    }
    return smallest;
}

/// Extent of an axis over the number of its values, not of its gaps.
double LinearSpacing(std::span<const float> axis) {
    const extended extent =
        static_cast<extended>(std::max(axis.front(), axis.back())) - std::min(axis.front(), axis.back());
    return static_cast<double>(extent / static_cast<extended>(axis.size()));
}

/// How model output comes onto an even grid: everything that is known before the work.
class TGridPlan {
public:
    TGridPlan(std::span<const float> lats, std::span<const float> lons, std::span<const float> data,
              double missingValue, bool bestGuessEdges)
        : FData(data) {
        CheckAxes(lats, lons, data);
        WithinMemory([&] {
            FInterpolation.FXVals.assign(lons.begin(), lons.end());
            FInterpolation.FYVals.assign(lats.begin(), lats.end());
        });
        FDescends = lats.back() < lats.front();
        if (FDescends)
            FInterpolation.FYVals = SingleArrayReverse(std::move(FInterpolation.FYVals));
        FGeometry.Res = std::min(SmallestGap(FInterpolation.FYVals), SmallestGap(FInterpolation.FXVals)) / 2;
        FGeometry.Left = static_cast<double>(Floor(lons.front()));
        FGeometry.Top = static_cast<double>(Floor(FInterpolation.FYVals.front()));
        FGeometry.Right = static_cast<double>(Ceil(lons.back()));
        FGeometry.Bottom = static_cast<double>(Ceil(FInterpolation.FYVals.back()));
        FInterpolation.FXWrapsAround = SameValue(FGeometry.Right - FGeometry.Left, 360.0);
        FInterpolation.FMissingValue = static_cast<float>(missingValue);
        FInterpolation.FBestGuessEdges = bestGuessEdges;
    }

    /// Whether there is room for the grid and for an image of it.
    void NeedMemoryForImage() const {
        const std::int64_t cells =
            std::int64_t{CountOfSteps(Width(), Resolution())} * CountOfSteps(Height(), Resolution());
        if (cells <= MaxCells) // what is larger is refused for that
            NeedMemoryFor<float>(2 * static_cast<std::uint64_t>(cells));
    }

    TSingleGrid Run(TInterpolatedInfo& info) const {
        TSingleGrid source = SingleArray1DTo2D(FData, FInterpolation.FXVals.size(), FInterpolation.FYVals.size());
        if (FDescends)
            source = SingleArrayArrayReverse(std::move(source));
        TInterpolatedInfo geometry = FGeometry;
        TSingleGrid grid = FInterpolation.Interpolate(Width(), Height(), static_cast<float>(geometry.Left),
                                                      static_cast<float>(geometry.Top), Resolution(), source,
                                                      geometry.NumRows, geometry.NumCols);
        info = geometry;
        return grid;
    }

private:
    static void CheckAxes(std::span<const float> lats, std::span<const float> lons, std::span<const float> data) {
        if (lats.empty())
            throw EArgumentException(QStringLiteral("Lats"));
        if (lons.empty())
            throw EArgumentException(QStringLiteral("Lons"));
        if (data.empty())
            throw EArgumentException(QStringLiteral("Data"));
        CheckDataLength(lats, lons, data);
        if (lats.size() < 2 || lons.size() < 2)
            RefuseSpacing();
    }

    static float Extent(double a, double b) { return static_cast<float>(std::max(a, b) - std::min(a, b)); }
    float Width() const { return Extent(FGeometry.Left, FGeometry.Right); }
    float Height() const { return Extent(FGeometry.Top, FGeometry.Bottom); }
    float Resolution() const { return static_cast<float>(FGeometry.Res); }

    std::span<const float> FData;
    TGaussianToGridInterpolation FInterpolation;
    TInterpolatedInfo FGeometry;
    bool FDescends = false;
};

} // namespace

TSingleGrid TGaussianToGridInterpolation::Interpolate(float width, float height, float startX, float startY,
                                                      float resolution, const TSingleGrid& grid, std::int32_t& numRows,
                                                      std::int32_t& numCols) const {
    const std::int32_t columnCount = CountOfSteps(width, resolution);
    const std::int32_t rowCount = CountOfSteps(height, resolution);
    if (!HasShape(grid, FXVals.size(), FYVals.size()))
        throw EArgumentException(QStringLiteral("Grid"));
    if (static_cast<std::int64_t>(columnCount) * rowCount > MaxCells)
        throw EInvalidOperation(QStringLiteral("Grid is too large"));
    NeedMemoryForGrid(columnCount, rowCount);
    TSingleGrid result =
        WithinMemory([&] { return InterpolateCells(columnCount, rowCount, startX, startY, resolution, grid); });
    numRows = rowCount;
    numCols = columnCount;
    return result;
}

TSingleGrid TGaussianToGridInterpolation::InterpolateCells(std::int32_t columnCount, std::int32_t rowCount,
                                                           float startX, float startY, float resolution,
                                                           const TSingleGrid& grid) const {
    const auto columns = SampleTable(FXVals, FXWrapsAround, columnCount, startX, resolution);
    const auto rows = SampleTable(FYVals, FYWrapsAround, rowCount, startY, resolution);

    TResampledRows source(*this, grid, columns);
    TSingleGrid result;
    result.reserve(rows.size());
    for (const TAxisSample& sample : rows) {
        TSingleArray& row = result.emplace_back(columns.size(), FMissingValue);
        if (!sample.Valid)
            continue;
        source.Need(sample.LowIndex, sample.HighIndex);
        BlendRows(source.Low().Numbers, source.High().Numbers, sample.Fraction,
                  std::max(source.Low().Largest, source.High().Largest), FBestGuessEdges, row);
    }
    return result;
}

TSingleGrid InterpolateGrid(std::span<const float> lats, std::span<const float> lons, std::span<const float> data,
                            double missingValue, bool bestGuessEdges, TInterpolatedInfo& info) {
    return TGridPlan(lats, lons, data, missingValue, bestGuessEdges).Run(info);
}

std::unique_ptr<TRealImage> CreateImageFromGrid(float minX, float minY, float maxX, float maxY, float resolution,
                                                std::int32_t numCols, std::int32_t numRows, const TSingleGrid& grid) {
    float min = 0;
    float max = 0;
    if (!SingleArrayArrayGetMinMax(grid, TSpatialConst::NoData, min, max))
        throw Exception(QStringLiteral("The specified data set does not contain any valid values"));
    if (numCols < 0 || numRows < 0 ||
        !HasShape(grid, static_cast<std::size_t>(numCols), static_cast<std::size_t>(numRows)))
        throw EArgumentException(QStringLiteral("Grid"));
    TImageHeader header;
    header.SetRefUnits(QStringLiteral("deg"));
    header.SetRefSystem(QStringLiteral("latlon"));
    header.SetValueUnits(QStringLiteral("Unspecified"));
    header.SetFlagDef(QStringLiteral("NODATA"));
    header.SetDataType(TImageDataType::dtReal);
    header.SetFileType(TImageFileType::ftBinary);
    header.SetWidth(numCols);
    header.SetHeight(numRows);
    header.SetUnitDistance(1);
    header.SetResolutionX(resolution);
    header.SetResolutionY(resolution);
    header.SetMinValue(min);
    header.SetMaxValue(max);
    header.SetDisplayMin(min);
    header.SetDisplayMax(max);
    header.SetMinX(minX);
    header.SetMaxX(maxX);
    header.SetMinY(minY);
    header.SetMaxY(maxY);
    header.SetFlagValue(TSpatialConst::NoData);
    header.SetFlag(true);
    auto image = std::make_unique<TRealImage>(QString(), header);
    std::int32_t imageRow = numRows;
    for (const TSingleArray& row : grid)
        std::copy(row.begin(), row.end(), image->GetRow(imageRow--).begin());
    return image;
}

std::unique_ptr<TRealImage> InterpolateAndCreateImageFromGrid(std::span<const float> lats, std::span<const float> lons,
                                                              std::span<const float> data, float missingValue,
                                                              bool bestGuessEdges) {
    const TGridPlan plan(lats, lons, data, missingValue, bestGuessEdges);
    plan.NeedMemoryForImage();
    TInterpolatedInfo info;
    const TSingleGrid grid = plan.Run(info);
    return CreateImageFromGrid(static_cast<float>(info.Left), static_cast<float>(info.Top),
                               static_cast<float>(info.Right), static_cast<float>(info.Bottom),
                               static_cast<float>(info.Res), info.NumCols, info.NumRows, grid);
}

std::unique_ptr<TRealImage> CreateFromLinearGrid(std::span<const float> lats, std::span<const float> lons,
                                                 std::span<const float> data) {
    if (lats.empty() || lons.empty())
        RefuseSpacing();
    const double resX = LinearSpacing(lons);
    const double resY = LinearSpacing(lats);
    if (!SameValue(resX, resY, 0.001))
        throw EInvalidOperation(QStringLiteral("X and Y resoloutions do not match"));
    if (!(resX > 0 && resY > 0))
        RefuseSpacing();
    CheckDataLength(lats, lons, data);
    const TSingleGrid grid = SingleArray1DTo2D(data, lons.size(), lats.size());
    return CreateImageFromGrid(lons.front(), lats.front(), lons.back(), lats.back(), static_cast<float>(resX),
                               static_cast<std::int32_t>(lons.size()), static_cast<std::int32_t>(lats.size()), grid);
}

} // namespace lmx
