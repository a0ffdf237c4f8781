#include <lmx/DataSources/lmxClimateGridPlan.h>

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/DataSources/Private/lmxUnevenGridding.h>
#include <lmx/DataSources/Private/lmxWorldPlace.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExtended.h>

#include <algorithm>
#include <cmath>
#include <new>
#include <numeric>
#include <utility>

namespace lmx {

namespace {

std::vector<std::int32_t> InOrder(std::size_t count, bool isReversed) {
    std::vector<std::int32_t> numbers(count);
    std::iota(numbers.begin(), numbers.end(), 0);
    if (isReversed)
        std::reverse(numbers.begin(), numbers.end());
    return numbers;
}

std::vector<std::int32_t> EachTwice(const std::vector<std::int32_t>& numbers) {
    std::vector<std::int32_t> doubled;
    doubled.reserve(2 * numbers.size());
    for (const std::int32_t number : numbers) {
        doubled.push_back(number);
        doubled.push_back(number);
    }
    return doubled;
}

} // namespace

TClimateGridPlan::TClimateGridPlan(const TClimateAxis& longitude, const TClimateAxis& latitude, bool areCategories)
    : FSourceColumns(static_cast<std::int32_t>(longitude.GetCount())),
      FSourceRows(static_cast<std::int32_t>(latitude.GetCount())) {
    if (!PlanEven(longitude, latitude)) {
        FGridding = std::make_shared<const TUnevenGridding>(longitude, latitude, areCategories);
        FBounds = FGridding->GetBounds();
        FWorld = FGridding->GetWorld();
        FColumns = FGridding->GetColumns();
        FRows = FGridding->GetRows();
    }
    CheckSize(longitude.GetName());
}

TClimateGridPlan TClimateGridPlan::Nzmg(const TClimateAxis& x, const TClimateAxis& y) {
    for (const TClimateAxis* const axis : {&x, &y})
        if (!axis->IsRegular())
            throw EClimateRefusal(QStringLiteral("Axis \"%1\" is not evenly spaced. Warp it first, for example: "
                                                 "gdalwarp -t_srs EPSG:27200 in out")
                                      .arg(axis->GetName()));
    TClimateGridPlan plan;
    plan.FSourceColumns = plan.FColumns = static_cast<std::int32_t>(x.GetCount());
    plan.FSourceRows = plan.FRows = static_cast<std::int32_t>(y.GetCount());
    plan.FColumnSources = InOrder(x.GetCount(), !x.IsAscending());
    plan.FRowSources = InOrder(y.GetCount(), y.IsAscending());
    plan.FBounds = TMapArea(x.GetLow(), y.GetHigh(), x.GetHigh(), y.GetLow());
    plan.FWorld = QStringLiteral("nzmg");
    plan.CheckSize(x.GetName());
    return plan;
}

void TClimateGridPlan::CheckSize(const QString& axis) const {
    if (std::int64_t{FColumns} * FRows > MaxCells)
        RefuseAxis(axis, QStringLiteral("makes a picture of more than 64000000 cells."));
}

bool TClimateGridPlan::PlanEven(const TClimateAxis& longitude, const TClimateAxis& latitude) {
    if (!longitude.IsRegular() || !latitude.IsRegular() || !PlanColumns(longitude))
        return false;
    PlanRows(latitude);
    return true;
}

bool TClimateGridPlan::PlanColumns(const TClimateAxis& longitude) {
    const double step = longitude.GetStep();
    std::vector<std::int32_t> columns = InOrder(longitude.GetCount(), !longitude.IsAscending());
    double width = step * static_cast<double>(columns.size());
    if (columns.size() > 1 && std::abs(width - step - 360) <= 10 * PlaceSlack * step) {
        columns.pop_back(); // the first one once more
        width -= step;
    }
    const double west = longitude.GetLow();
    if (std::abs(width - 360) <= 10 * PlaceSlack * step)
        return PlanWorldColumns(west, std::move(columns));
    if (width > 360)
        RefuseAxis(longitude.GetName(), QStringLiteral("has cells that overlap."));
    const TRegionPlace region = PlaceRegion(longitude.GetName(), west, width, step);
    FWorld = region.World;
    FBounds.Left = region.West;
    FBounds.Right = region.East;
    FColumns = static_cast<std::int32_t>(columns.size());
    FColumnSources = std::move(columns);
    return true;
}

bool TClimateGridPlan::PlanWorldColumns(double west, std::vector<std::int32_t> columns) {
    const double step = 360 / static_cast<double>(columns.size());
    const double ahead = -180 - west - 360 * std::floor((-180 - west) / 360); // from the west to the seam
    double turned = ahead / step;
    const auto isWhole = [](double number) { return std::abs(number - std::nearbyint(number)) <= 10 * PlaceSlack; };
    if (!isWhole(turned)) {
        turned *= 2; // in halves of columns
        if (!isWhole(turned))
            return false;
        columns = EachTwice(columns);
    }
    const auto first = static_cast<std::size_t>(Round(turned)) % columns.size();
    std::rotate(columns.begin(), columns.begin() + static_cast<std::ptrdiff_t>(first), columns.end());
    FWorld = LatLonName();
    FBounds.Left = -180;
    FBounds.Right = 180;
    FColumns = static_cast<std::int32_t>(columns.size());
    FColumnSources = std::move(columns);
    return true;
}

void TClimateGridPlan::PlanRows(const TClimateAxis& latitude) {
    const double step = latitude.GetStep();
    std::vector<std::int32_t> rows = InOrder(latitude.GetCount(), latitude.IsAscending());
    const auto isHalf = [&](std::int32_t row) {
        const double value = latitude.GetValues()[static_cast<std::size_t>(row)];
        return latitude.GetCount() > 1 && 90 - std::abs(value) <= 10 * PlaceSlack * step;
    };
    const bool isNorthHalf = isHalf(rows.front());
    const bool isSouthHalf = isHalf(rows.back());
    if (isNorthHalf || isSouthHalf) {
        rows = EachTwice(rows);
        if (isNorthHalf)
            rows.erase(rows.begin());
        if (isSouthHalf)
            rows.pop_back();
    }
    FBounds.Top = SnappedPlace(latitude.GetHigh(), 90, step);
    FBounds.Bottom = SnappedPlace(latitude.GetLow(), -90, step);
    FRows = static_cast<std::int32_t>(rows.size());
    FRowSources = std::move(rows);
}

std::int64_t TClimateGridPlan::SourceOf(std::int32_t column, std::int32_t row) const {
    if (column < 0 || column >= FColumns || row < 0 || row >= FRows)
        throw EArgumentException(QStringLiteral("Cell"));
    if (IsInterpolated())
        return -1;
    return std::int64_t{FRowSources[static_cast<std::size_t>(row)]} * FSourceColumns +
           FColumnSources[static_cast<std::size_t>(column)];
}

/// Rows of the picture, from the north, from those of the file.
TClimateGridPlan::TReadRow TClimateGridPlan::PictureRows(const TReadRow& readRow) const {
    const auto sourceOf = [this](std::int32_t row) { return FRowSources[static_cast<std::size_t>(row)]; };
    if (FColumnSources == InOrder(static_cast<std::size_t>(FSourceColumns), false))
        return [=](std::int32_t row, std::span<float> cells) { readRow(sourceOf(row), cells); };
    return [=, this, source = std::vector<float>(static_cast<std::size_t>(FSourceColumns)),
            held = -1](std::int32_t row, std::span<float> cells) mutable {
        if (const std::int32_t wanted = sourceOf(row); wanted != held) { // halves of a row follow each other
            readRow(wanted, source);
            held = wanted;
        }
        std::transform(FColumnSources.begin(), FColumnSources.end(), cells.begin(),
                       [&](std::int32_t column) { return source[static_cast<std::size_t>(column)]; });
    };
}

TClimateGridPlan::TReadRow TClimateGridPlan::InterpolatedRows(const TReadRow& readRow) const {
    const auto sourceColumns = static_cast<std::size_t>(FSourceColumns);
    std::vector<float> source(sourceColumns * static_cast<std::size_t>(FSourceRows));
    for (std::int32_t row = 0; row < FSourceRows; ++row)
        readRow(row, std::span(source).subspan(static_cast<std::size_t>(row) * sourceColumns, sourceColumns));
    return [picture = FGridding->Apply(source)](std::int32_t row, std::span<float> cells) {
        const std::size_t start = static_cast<std::size_t>(row) * cells.size();
        std::copy_n(picture.begin() + static_cast<std::ptrdiff_t>(start), cells.size(), cells.begin());
    };
}

TImageHeader TClimateGridPlan::MakeHeader(const QString& title, const QString& units) const {
    const bool isPlane = FWorld == QStringLiteral("nzmg");
    TImageHeader header;
    header.SetTitle(title);
    header.SetRefUnits(isPlane ? QStringLiteral("m") : QStringLiteral("deg"));
    header.SetRefSystem(isPlane ? QStringLiteral("plane") : LatLonName());
    header.SetValueUnits(units);
    header.SetFlagDef(QStringLiteral("NODATA"));
    header.SetDataType(TImageDataType::dtReal);
    header.SetFileType(TImageFileType::ftBinary);
    header.SetWidth(FColumns);
    header.SetHeight(FRows);
    header.SetUnitDistance(1);
    header.SetResolutionX(static_cast<float>(FBounds.GetWidth() / FColumns));
    header.SetResolutionY(static_cast<float>(FBounds.GetHeight() / FRows));
    header.SetMinX(static_cast<float>(FBounds.Left));
    header.SetMaxX(static_cast<float>(FBounds.Right));
    header.SetMinY(static_cast<float>(FBounds.Bottom));
    header.SetMaxY(static_cast<float>(FBounds.Top));
    header.SetFlagValue(TSpatialConst::NoData);
    header.SetFlag(true);
    return header;
}

std::unique_ptr<TRealImage> TClimateGridPlan::MakeImage(const TReadRow& readRow, const QString& title,
                                                        const QString& units) const {
    try {
        auto image = std::make_unique<TRealImage>(QString(), MakeHeader(title, units));
        const TReadRow readPictureRow = FGridding ? InterpolatedRows(readRow) : PictureRows(readRow);
        image->FillRows([&](std::int32_t row, std::span<float> cells) { readPictureRow(row - 1, cells); });
        return image;
    } catch (const std::bad_alloc&) {
        throw EOutOfMemory();
    }
}

} // namespace lmx
