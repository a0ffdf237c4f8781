#pragma once

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/DataSources/lmxTileSource.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Threads.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <span>
#include <thread>
#include <utility>
#include <vector>

namespace lmx::tests {

/// A raster in memory only by its rule: cell (column, row) holds 1000 * row + column of the raster itself, rows of
/// which are counted modulo 1000, and a cell of an overview what the cell in its top left corner holds.
class TNumberedTiles final : public ITileSource {
public:
    /// @param stored how many of the levels are; 0: all
    TNumberedTiles(std::vector<TTileLevel> levels, const TMapArea& area, int stored = 0)
        : FLevels(std::move(levels)),
          FArea(area),
          FStored(stored > 0 ? stored : static_cast<int>(FLevels.size())) {}

    QString GetFileName() const override { return QStringLiteral("numbers.tif"); }
    TWorldMapArea GetArea() const override { return {FArea, TLatLonWorldSystemFactory::GetObject()}; }
    const std::vector<TTileLevel>& GetLevels() const override { return FLevels; }
    int GetStoredLevelCount() const override { return FStored; }

    void ReadCells(int level, const TRect& rect, std::span<float> cells,
                   const std::function<bool()>& shouldStop) const override {
        ++Reads;
        CellsRead += static_cast<std::int64_t>(cells.size());
        if (level == HeldLevel)
            Held.GetWaiter()(shouldStop);
        if (level == DamagedLevel)
            throw EFileException(GetFileName(), QStringLiteral("damaged"));
        std::size_t index = 0;
        for (std::int32_t row = rect.Top; row < rect.Bottom; ++row)
            for (std::int32_t column = rect.Left; column < rect.Right; ++column)
                cells[index++] = Cell(level, column, row);
    }

    float Cell(int level, std::int32_t column, std::int32_t row) const {
        const TTileLevel& size = FLevels[static_cast<std::size_t>(level)];
        const auto x = static_cast<std::int32_t>(std::int64_t{column} * FLevels[0].Width / size.Width);
        const auto y = static_cast<std::int32_t>(std::int64_t{row} * FLevels[0].Height / size.Height);
        if ((x + y) % 7 == 3)
            return TSpatialConst::NoData;
        return static_cast<float>(y % 1000 * 1000 + x % 1000);
    }

    mutable std::atomic<int> Reads = 0;
    mutable std::atomic<std::int64_t> CellsRead = 0;
    std::atomic<int> DamagedLevel = -1;
    std::atomic<int> HeldLevel = -1; ///< reading it waits for the gate
    TGate Held;

private:
    const std::vector<TTileLevel> FLevels;
    const TMapArea FArea;
    const int FStored;
};

} // namespace lmx::tests
