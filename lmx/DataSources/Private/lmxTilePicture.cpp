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
    const TTileKey key{FSource->GetId(), level, column, row};
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

bool TTileReader::HasAll(int level, const TTileAxis& columns, const TTileAxis& rows) const {
    const std::int32_t lastColumn = columns.Cells.back() / Side;
    const std::int32_t lastRow = rows.Cells.back() / Side;
    for (std::int32_t row = rows.Cells.front() / Side; row <= lastRow; ++row)
        for (std::int32_t column = columns.Cells.front() / Side; column <= lastColumn; ++column)
            if (!FCache->Has({FSource->GetId(), level, column, row}))
                return false;
    return true;
}

// Tile by tile, so that no more of them need to be there at a time than one: the axes grow, so a tile's columns and
// rows stand together.
bool TTileReader::Fill(int level, const TTileAxis& columns, const TTileAxis& rows, std::span<float> cells) const {
    const std::size_t width = columns.Cells.size();
    const std::int32_t levelWidth = FSource->GetLevels()[static_cast<std::size_t>(level)].Width;
    const auto endOf = [](const std::vector<std::int32_t>& axis, std::size_t from) {
        std::size_t end = from;
        while (end < axis.size() && axis[end] / Side == axis[from] / Side)
            ++end;
        return end;
    };
    for (std::size_t top = 0, bottom; top < rows.Cells.size(); top = bottom) {
        bottom = endOf(rows.Cells, top);
        for (std::size_t left = 0, right; left < width; left = right) {
            right = endOf(columns.Cells, left);
            const std::int32_t column = columns.Cells[left] / Side;
            const std::int32_t row = rows.Cells[top] / Side;
            if (FShouldStop())
                return false;
            const auto tile = Get(level, column, row);
            if (!tile)
                return false;
            const auto stride = static_cast<std::size_t>(std::min(Side, levelWidth - column * Side));
            for (std::size_t y = top; y < bottom; ++y) {
                float* const to = cells.data() + y * width;
                if (tile->empty()) {
                    std::fill(to + left, to + right, TSpatialConst::NoData);
                    continue;
                }
                const float* const from = tile->data() + static_cast<std::size_t>(rows.Cells[y] - row * Side) * stride;
                for (std::size_t x = left; x < right; ++x)
                    to[x] = from[columns.Cells[x] - column * Side];
            }
        }
    }
    return true;
}

} // namespace lmx
