#include <lmx/DataSources/Private/lmxUnevenGridding.h>

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/DataSources/Private/lmxWorldPlace.h>
#include <lmx/Raster/lmxGaussianToGridInterpolation.h>
#include <lmx/Runtime/lmxExtended.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace lmx {

namespace {

constexpr double PoleSlack = 1e-6;   // in degrees
constexpr double ClosingGap = 1.5;   // of the widest: what still closes a circle or reaches a pole
constexpr double MostPerSource = 16; // cells of the picture for one of the file
constexpr double FewestCells = 1e6;  // which a picture may always have

struct TGaps {
    double Least = std::numeric_limits<double>::infinity();
    double Most = 0;
};

template<class Nodes>
TGaps GapsOf(const Nodes& nodes) {
    TGaps gaps;
    for (std::size_t i = 1; i < nodes.size(); ++i) {
        const double gap = nodes[i].Place - nodes[i - 1].Place;
        gaps.Least = std::min(gaps.Least, gap);
        gaps.Most = std::max(gaps.Most, gap);
    }
    return gaps;
}

/// Drops nodes that singles cannot tell from the one before.
template<class Nodes>
std::vector<float> PlacesOf(Nodes& nodes, double origin, double step) {
    Nodes kept;
    std::vector<float> places;
    for (const auto& node : nodes) {
        const auto place = static_cast<float>((node.Place - origin) / step);
        if (!places.empty() && !(place > places.back()))
            continue;
        places.push_back(place);
        kept.push_back(node);
    }
    nodes = std::move(kept);
    return places;
}

std::vector<std::size_t> NearestOf(const std::vector<float>& places, std::int32_t count) {
    std::vector<std::size_t> nearest;
    std::size_t node = 0;
    for (std::int32_t i = 0; i < count; ++i) {
        const double centre = i + 0.5;
        while (node + 1 < places.size() && std::abs(places[node + 1] - centre) <= std::abs(places[node] - centre))
            ++node;
        nearest.push_back(node);
    }
    return nearest;
}

/// A flag if there is no value.
float MeanOf(std::span<const float> numbers) {
    double sum = 0;
    std::size_t count = 0;
    for (const float number : numbers)
        if (TSpatialConst::IsValue(number)) {
            sum += static_cast<double>(number);
            ++count;
        }
    return count == 0 ? TSpatialConst::NoData : static_cast<float>(sum / static_cast<double>(count));
}

std::int32_t CountOf(double extent, double step, std::size_t sources) {
    const double most = std::max(MostPerSource * static_cast<double>(sources), 4096.0);
    return static_cast<std::int32_t>(Ceil(std::clamp(extent / step - PlaceSlack, 1.0, most)));
}

} // namespace

TUnevenGridding::TUnevenGridding(const TClimateAxis& longitude, const TClimateAxis& latitude, bool areCategories)
    : FAreCategories(areCategories),
      FSourceColumns(longitude.GetCount()),
      FSourceRows(latitude.GetCount()) {
    PlanColumns(longitude);
    PlanRows(latitude);
    const auto left = static_cast<double>(FBounds.Left);
    const auto bottom = static_cast<double>(FBounds.Bottom);
    const auto width = static_cast<double>(FBounds.GetWidth());
    const auto height = static_cast<double>(FBounds.GetHeight());
    const double sourceCells = static_cast<double>(FSourceColumns) * static_cast<double>(FSourceRows);
    const double mostCells = std::max(MostPerSource * sourceCells, FewestCells);
    const double step = std::max(FLeastGap / 2, std::sqrt(width * height / mostCells));
    FColumns = CountOf(width, step, FSourceColumns);
    FRows = CountOf(height, step, FSourceRows);
    FColumnPlaces = PlacesOf(FColumnNodes, left, width / FColumns);
    FRowPlaces = PlacesOf(FRowNodes, bottom, height / FRows);
    FNearestColumns = NearestOf(FColumnPlaces, FColumns);
    FNearestRows = NearestOf(FRowPlaces, FRows);
}

void TUnevenGridding::PlanColumns(const TClimateAxis& longitude) {
    TNodes nodes = NodesOf(longitude);
    const TGaps gaps = GapsOf(nodes);
    if (nodes.size() > 1 && nodes.back().Place - nodes.front().Place >= 360 - PlaceSlack * gaps.Least)
        nodes.pop_back(); // the first one once more
    FLeastGap = std::min(gaps.Least, longitude.GetStep());
    const double closing = nodes.front().Place + 360 - nodes.back().Place;
    const double most = std::max(gaps.Most, longitude.GetStep());
    FIsRound = closing <= ClosingGap * most;
    if (FIsRound) {
        PlanWorldColumns(nodes, std::max(most, closing));
        return;
    }
    const double west = longitude.GetLow();
    const TRegionPlace region = PlaceRegion(longitude.GetName(), west, longitude.GetHigh() - west, longitude.GetStep());
    for (TNode& node : nodes)
        node.Place += region.West - west;
    FWorld = region.World;
    FBounds.Left = region.West;
    FBounds.Right = region.East;
    nodes.insert(nodes.begin(), {region.West, nodes.front().Source});
    nodes.push_back({region.East, nodes.back().Source});
    FColumnNodes = std::move(nodes);
}

/// Columns by turns of 360 degrees, to a node beyond each end of the world.
void TUnevenGridding::PlanWorldColumns(const TNodes& nodes, double widestGap) {
    FWorld = LatLonName();
    FBounds.Left = -180;
    FBounds.Right = 180;
    for (int turn = -4; turn <= 4; ++turn)
        for (TNode node : nodes) {
            node.Place += 360.0 * turn;
            if (std::abs(node.Place) <= 180 + 2 * widestGap)
                FColumnNodes.push_back(node);
        }
    std::stable_sort(FColumnNodes.begin(), FColumnNodes.end(),
                     [](const TNode& a, const TNode& b) { return a.Place < b.Place; });
}

void TUnevenGridding::PlanRows(const TClimateAxis& latitude) {
    FRowNodes = NodesOf(latitude);
    const TGaps gaps = GapsOf(FRowNodes);
    FLeastGap = std::min({FLeastGap, gaps.Least, latitude.GetStep()});
    const double reach = ClosingGap * std::max(gaps.Most, latitude.GetStep());
    const double south = FRowNodes.front().Place;
    const double north = FRowNodes.back().Place;
    const bool isAtSouth = FIsRound && south + 90 <= reach;
    const bool isAtNorth = FIsRound && 90 - north <= reach;
    FBounds.Bottom = isAtSouth ? -90 : latitude.GetLow();
    FBounds.Top = isAtNorth ? 90 : latitude.GetHigh();
    if (south > static_cast<double>(FBounds.Bottom) + PoleSlack)
        FRowNodes.insert(FRowNodes.begin(), {static_cast<double>(FBounds.Bottom), FRowNodes.front().Source, isAtSouth});
    if (north < static_cast<double>(FBounds.Top) - PoleSlack)
        FRowNodes.push_back({static_cast<double>(FBounds.Top), FRowNodes.back().Source, isAtNorth});
}

TUnevenGridding::TNodes TUnevenGridding::NodesOf(const TClimateAxis& axis) {
    TNodes nodes;
    for (std::size_t i = 0; i < axis.GetCount(); ++i)
        nodes.push_back({axis.GetValues()[i], i});
    if (!axis.IsAscending())
        std::reverse(nodes.begin(), nodes.end());
    return nodes;
}

std::vector<float> TUnevenGridding::RowOf(std::span<const float> cells, const TNode& node) const {
    const std::span<const float> source = cells.subspan(node.Source * FSourceColumns, FSourceColumns);
    if (node.IsPole)
        return std::vector<float>(FColumnNodes.size(), MeanOf(source));
    std::vector<float> row;
    row.reserve(FColumnNodes.size());
    for (const TNode& column : FColumnNodes)
        row.push_back(source[column.Source]);
    return row;
}

std::vector<float> TUnevenGridding::ApplyNearest(std::span<const float> cells) const {
    std::vector<float> picture;
    picture.reserve(static_cast<std::size_t>(FColumns) * static_cast<std::size_t>(FRows));
    for (std::size_t row = FNearestRows.size(); row-- > 0;) {
        const float* const source = cells.data() + FRowNodes[FNearestRows[row]].Source * FSourceColumns;
        for (const std::size_t column : FNearestColumns)
            picture.push_back(source[FColumnNodes[column].Source]);
    }
    return picture;
}

std::vector<float> TUnevenGridding::Apply(std::span<const float> cells) const {
    if (FAreCategories)
        return ApplyNearest(cells);
    TSingleGrid nodes;
    for (const TNode& node : FRowNodes)
        nodes.push_back(RowOf(cells, node));
    TGaussianToGridInterpolation interpolation;
    interpolation.FXVals = FColumnPlaces;
    interpolation.FYVals = FRowPlaces;
    interpolation.FMissingValue = TSpatialConst::NoData;
    interpolation.FBestGuessEdges = true; // flags are told by the nearest node, below
    std::int32_t rows = 0;
    std::int32_t columns = 0;
    const TSingleGrid grid = interpolation.Interpolate(static_cast<float>(FColumns), static_cast<float>(FRows), 0.5F,
                                                       0.5F, 1, nodes, rows, columns);
    std::vector<float> picture;
    picture.reserve(static_cast<std::size_t>(FColumns) * static_cast<std::size_t>(FRows));
    for (std::size_t row = grid.size(); row-- > 0;) {
        const TSingleArray& nearest = nodes[FNearestRows[row]];
        for (std::size_t column = 0; column < grid[row].size(); ++column) {
            const bool isFlag = TSpatialConst::IsFlag(nearest[FNearestColumns[column]]);
            picture.push_back(isFlag ? TSpatialConst::NoData : grid[row][column]);
        }
    }
    return picture;
}

} // namespace lmx
