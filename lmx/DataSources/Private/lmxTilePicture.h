#pragma once

#include <lmx/Climate/lmxFoundRange.h>
#include <lmx/DataSources/lmxTileCache.h>
#include <lmx/DataSources/lmxTileSource.h>
#include <lmx/Graphics/lmxWideRect.h>
#include <lmx/Layers/Render/lmxRenderThreadHandler.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

// From the cells of a source to the pixels of a view. A pixel shows the cell that it would show if the whole raster
// were one picture, stretched onto the map: nearest neighbour, counted from the left and the top edge.

namespace lmx {

/// Which cells the columns, or the rows, of a view show.
struct TTileAxis {
    std::int32_t First = 0;          ///< the first column of the view that shows a cell
    std::vector<std::int32_t> Cells; ///< of each column from there on, the cell of the level

    bool IsEmpty() const { return Cells.empty(); }
};

/// The columns of a view of `viewCount` pixels, where source cells `from` to `to` of `fullCount` lie on the pixels
/// `left` to `right`, in a level that has `levelCount` cells for them. The same for rows.
TTileAxis TileAxisOf(std::int64_t left, std::int64_t right, std::int32_t from, std::int32_t to, std::int32_t fullCount,
                     std::int32_t levelCount, std::int32_t viewCount);

/// The level whose cells are to be shown where `fullCells` cells of the raster lie on `pixels` pixels: the smallest one
/// that has a cell for each pixel, or the raster itself.
int TileLevelFor(std::span<const TTileLevel> levels, double cellsAPixel);

/// One part of a raster on a view: a raster over the seam of its world has two.
struct TTilePiece {
    TWideRect Pixels; ///< where the part lies
    TRect Cells;      ///< of the raster itself
};

/// The parts of the raster that show, for a viewport.
std::vector<TTilePiece> TilePiecesOf(const TMapArea& area, const TTileLevel& full, const TWorldViewportLocal& viewport);

enum class TTileFilling {
    tfGivenUp, ///< the view wants nothing of it any more
    tfPartly,  ///< something was left out
    tfWhole
};

/// The tiles of a source: squares of `Side` cells, those of the last column and row cut.
class TTileReader {
public:
    static constexpr std::int32_t Side = 256;

    TTileReader(std::shared_ptr<const ITileSource> source, std::shared_ptr<TTileCache> cache,
                std::function<bool()> shouldStop, std::function<void(const QString&)> tellFailure);

    /// A tile of a level, from the cache or read; nil if the reading was given up.
    std::shared_ptr<const TTileCells> Get(int level, std::int32_t column, std::int32_t row) const;
    /// Whether every tile under these cells of a level is in the cache.
    bool HasAll(int level, const TTileAxis& columns, const TTileAxis& rows) const;
    /// Writes the cells that the axes name into `cells`, which is as wide and as high as they are long. For tiles that
    /// are made it reads at most `budget` cells, but always those of the first one that is missing, and takes what it
    /// has read off; what it leaves out shows a coarser level as far as that is in the cache.
    TTileFilling Fill(int level, const TTileAxis& columns, const TTileAxis& rows, std::span<float> cells,
                      std::int64_t& budget) const;

    /// The range of the values in a few tiles of the smallest level that is stored.
    TFoundRange ReadSomeRange() const;

    const ITileSource& GetSource() const { return *FSource; }

private:
    /// A part of the view that lies in one tile.
    struct TPart {
        std::size_t Left = 0;
        std::size_t Top = 0;
        std::size_t Right = 0;
        std::size_t Bottom = 0;
    };

    TTileKey KeyOf(int level, std::int32_t column, std::int32_t row) const {
        return {FSource->GetId(), level, column, row};
    }
    static void CopyTile(const TTileCells& tile, std::size_t stride, const TTileAxis& columns, const TTileAxis& rows,
                         const TPart& part, std::span<float> cells);
    std::int64_t CostOf(int level) const;
    void FillFromCoarser(int level, const TTileAxis& columns, const TTileAxis& rows, const TPart& part,
                         std::span<float> cells) const;

    const std::shared_ptr<const ITileSource> FSource;
    const std::shared_ptr<TTileCache> FCache;
    const std::function<bool()> FShouldStop;
    const std::function<void(const QString&)> FTellFailure;
};

} // namespace lmx
