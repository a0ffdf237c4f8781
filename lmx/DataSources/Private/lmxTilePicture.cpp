#include <lmx/DataSources/Private/lmxTilePicture.h>

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace lmx {

namespace {

__extension__ typedef __int128 TInt128;

// Bounds that every edge on the view is kept in: far beyond any scale of a viewport.
constexpr extended WideLimit = 0x1p52L;

std::int64_t WidePixel(extended pixel) {
    return Round(std::clamp(pixel, -WideLimit, WideLimit));
}

std::int32_t CellEdge(extended share, std::int32_t count) {
    return RoundToPixel(share * static_cast<extended>(count));
}

/// The cells of a coarser level that stand for some of a level's.
TTileAxis Coarser(std::span<const std::int32_t> cells, std::int32_t count, std::int32_t coarseCount) {
    TTileAxis axis;
    for (const std::int32_t cell : cells)
        axis.Cells.push_back(static_cast<std::int32_t>(std::int64_t{cell} * coarseCount / count));
    return axis;
}

bool IsFinite(const TMapArea& area) {
    return std::isfinite(area.Left) && std::isfinite(area.Top) && std::isfinite(area.Right) &&
           std::isfinite(area.Bottom);
}

} // namespace

TTileAxis TileAxisOf(std::int64_t left, std::int64_t right, std::int32_t from, std::int32_t to, std::int32_t fullCount,
                     std::int32_t levelCount, std::int32_t viewCount) {
    TTileAxis axis;
    const std::int64_t first = std::max<std::int64_t>(left, 0);
    const std::int64_t end = std::min<std::int64_t>(right, viewCount);
    if (first >= end || from >= to)
        return axis;
    axis.First = static_cast<std::int32_t>(first);
    axis.Cells.reserve(static_cast<std::size_t>(end - first));
    for (std::int64_t pixel = first; pixel < end; ++pixel) {
        const auto cell = from + static_cast<std::int64_t>(TInt128{pixel - left} * (to - from) / (right - left));
        axis.Cells.push_back(static_cast<std::int32_t>(cell * levelCount / fullCount));
    }
    return axis;
}

int TileLevelFor(std::span<const TTileLevel> levels, double cellsAPixel) {
    int best = 0;
    for (std::size_t i = 1; i < levels.size(); ++i)
        if (static_cast<double>(levels[0].Width) / levels[i].Width <= cellsAPixel)
            best = static_cast<int>(i);
    return best;
}

std::vector<TTilePiece> TilePiecesOf(const TMapArea& area, const TTileLevel& full,
                                     const TWorldViewportLocal& viewport) {
    std::vector<TTilePiece> pieces;
    if (!IsFinite(area) || !(area.Left < area.Right) || !(area.Bottom < area.Top))
        return pieces;
    for (const TMapArea& part : viewport.GetWorldSystem().TranslateArea(area)) {
        const TMapPoint topLeft = viewport.MapPointToPoint(part.GetTranslatedTopLeft());
        const TMapPoint bottomRight = viewport.MapPointToPoint(part.GetTranslatedBottomRight());
        pieces.push_back(
            {{WidePixel(topLeft.X), WidePixel(topLeft.Y), WidePixel(bottomRight.X), WidePixel(bottomRight.Y)},
             {CellEdge((part.Left - area.Left) / area.GetWidth(), full.Width),
              CellEdge((area.Top - part.Top) / area.GetHeight(), full.Height),
              CellEdge((part.Right - area.Left) / area.GetWidth(), full.Width),
              CellEdge((area.Top - part.Bottom) / area.GetHeight(), full.Height)}});
    }
    return pieces;
}

TTileReader::TTileReader(std::shared_ptr<const ITileSource> source, std::shared_ptr<TTileCache> cache,
                         std::function<bool()> shouldStop, std::function<void(const QString&)> tellFailure)
    : FSource(std::move(source)),
      FCache(std::move(cache)),
      FShouldStop(std::move(shouldStop)),
      FTellFailure(std::move(tellFailure)) {}

// A tile that cannot be read shows nothing, and is not read again at each paint.
std::shared_ptr<const TTileCells> TTileReader::Get(int level, std::int32_t column, std::int32_t row) const {
    const TTileKey key = KeyOf(level, column, row);
    if (auto cells = FCache->Get(key))
        return cells;
    const TTileLevel& size = FSource->GetLevels()[static_cast<std::size_t>(level)];
    const TRect rect(column * Side, row * Side, std::min(size.Width - column * Side, Side) + column * Side,
                     std::min(size.Height - row * Side, Side) + row * Side);
    auto cells = std::make_shared<TTileCells>();
    try {
        cells->resize(static_cast<std::size_t>(rect.GetWidth()) * static_cast<std::size_t>(rect.GetHeight()));
        FSource->ReadCells(level, rect, *cells, FShouldStop);
        if (FShouldStop())
            return nullptr;
    } catch (const Exception& failure) {
        cells = std::make_shared<TTileCells>();
        FTellFailure(failure.Description());
    }
    FCache->Put(key, cells);
    return cells;
}

// Four tiles from all over the level tell more than the first four.
TFoundRange TTileReader::ReadSomeRange() const {
    const int level = FSource->GetStoredLevelCount() - 1;
    const TTileLevel& size = FSource->GetLevels()[static_cast<std::size_t>(level)];
    const auto placesOf = [](std::int32_t cells) {
        const std::int32_t last = (cells - 1) / Side;
        std::vector<std::int32_t> places = {(last + 2) / 4};
        if (const std::int32_t second = last - (last + 2) / 4; second > places[0])
            places.push_back(second);
        return places;
    };
    TFoundRange range;
    for (const std::int32_t row : placesOf(size.Height))
        for (const std::int32_t column : placesOf(size.Width))
            if (const auto tile = Get(level, column, row))
                range.Add(*tile);
    return range;
}

bool TTileReader::HasAll(int level, const TTileAxis& columns, const TTileAxis& rows) const {
    const std::int32_t lastColumn = columns.Cells.back() / Side;
    const std::int32_t lastRow = rows.Cells.back() / Side;
    for (std::int32_t row = rows.Cells.front() / Side; row <= lastRow; ++row)
        for (std::int32_t column = columns.Cells.front() / Side; column <= lastColumn; ++column)
            if (!FCache->Has(KeyOf(level, column, row)))
                return false;
    return true;
}

// What reading a tile of a level costs beyond a read of its own cells: the cells that it is made of.
std::int64_t TTileReader::CostOf(int level) const {
    const int stored = FSource->GetStoredLevelCount();
    if (level < stored)
        return 0;
    const TTileLevel& from = FSource->GetLevels()[static_cast<std::size_t>(stored - 1)];
    const TTileLevel& size = FSource->GetLevels()[static_cast<std::size_t>(level)];
    return std::int64_t{Side} * from.Width / size.Width * (std::int64_t{Side} * from.Height / size.Height);
}

// All of it is at hand, so nothing is read.
void TTileReader::FillFromCoarser(int level, const TTileAxis& columns, const TTileAxis& rows, const TPart& part,
                                  std::span<float> cells) const {
    const std::vector<TTileLevel>& levels = FSource->GetLevels();
    const TTileLevel& size = levels[static_cast<std::size_t>(level)];
    const std::size_t width = columns.Cells.size();
    std::vector<float> found((part.Right - part.Left) * (part.Bottom - part.Top), TSpatialConst::NoData);
    for (int coarse = level + 1; coarse < static_cast<int>(levels.size()); ++coarse) {
        const TTileLevel& coarseSize = levels[static_cast<std::size_t>(coarse)];
        const TTileAxis x =
            Coarser(std::span(columns.Cells).subspan(part.Left, part.Right - part.Left), size.Width, coarseSize.Width);
        const TTileAxis y =
            Coarser(std::span(rows.Cells).subspan(part.Top, part.Bottom - part.Top), size.Height, coarseSize.Height);
        if (!HasAll(coarse, x, y))
            continue;
        std::int64_t none = 0;
        Fill(coarse, x, y, found, none);
        break;
    }
    for (std::size_t y = part.Top; y < part.Bottom; ++y)
        std::copy_n(found.data() + (y - part.Top) * (part.Right - part.Left), part.Right - part.Left,
                    cells.data() + y * width + part.Left);
}

void TTileReader::CopyTile(const TTileCells& tile, std::size_t stride, const TTileAxis& columns, const TTileAxis& rows,
                           const TPart& part, std::span<float> cells) {
    for (std::size_t y = part.Top; y < part.Bottom; ++y) {
        float* const to = cells.data() + y * columns.Cells.size();
        if (tile.empty()) {
            std::fill(to + part.Left, to + part.Right, TSpatialConst::NoData);
            continue;
        }
        const float* const from = tile.data() + static_cast<std::size_t>(rows.Cells[y] % Side) * stride;
        for (std::size_t x = part.Left; x < part.Right; ++x)
            to[x] = from[columns.Cells[x] % Side];
    }
}

// Tile by tile, so that no more of them need to be there at a time than one: the axes grow, so a tile's columns and
// rows stand together.
TTileFilling TTileReader::Fill(int level, const TTileAxis& columns, const TTileAxis& rows, std::span<float> cells,
                               std::int64_t& budget) const {
    const std::size_t width = columns.Cells.size();
    const std::int32_t levelWidth = FSource->GetLevels()[static_cast<std::size_t>(level)].Width;
    const std::int64_t cost = CostOf(level);
    bool isWhole = true;
    bool hasRead = false;
    const auto endOf = [](const std::vector<std::int32_t>& axis, std::size_t from) {
        std::size_t end = from;
        while (end < axis.size() && axis[end] / Side == axis[from] / Side)
            ++end;
        return end;
    };
    TPart part;
    for (part.Top = 0; part.Top < rows.Cells.size(); part.Top = part.Bottom) {
        part.Bottom = endOf(rows.Cells, part.Top);
        for (part.Left = 0; part.Left < width; part.Left = part.Right) {
            part.Right = endOf(columns.Cells, part.Left);
            const std::int32_t column = columns.Cells[part.Left] / Side;
            const std::int32_t row = rows.Cells[part.Top] / Side;
            if (FShouldStop())
                return TTileFilling::tfGivenUp;
            if (cost > 0 && !FCache->Has(KeyOf(level, column, row))) {
                if (hasRead && cost > budget) {
                    isWhole = false;
                    FillFromCoarser(level, columns, rows, part, cells);
                    continue;
                }
                hasRead = true;
                budget = std::max<std::int64_t>(0, budget - cost);
            }
            const auto tile = Get(level, column, row);
            if (!tile)
                return TTileFilling::tfGivenUp;
            CopyTile(*tile, static_cast<std::size_t>(std::min(Side, levelWidth - column * Side)), columns, rows, part,
                     cells);
        }
    }
    return isWhole ? TTileFilling::tfWhole : TTileFilling::tfPartly;
}

} // namespace lmx
