#pragma once

#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/DataSources/lmxDataSourcesExport.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <QString>

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace lmx {

/// One form of a raster: itself, or a smaller one that shows the same area in fewer cells.
struct TTileLevel {
    std::int32_t Width = 0; ///< cells
    std::int32_t Height = 0;
};

/// A raster that is larger than memory: a reader asks for the cells that it needs, in the form that has enough of them.
/// Any thread may call, and several at a time; what a source says of itself never changes.
class LMX_DATASOURCES_EXPORT ITileSource {
public:
    ITileSource();
    virtual ~ITileSource() = default;
    ITileSource(const ITileSource&) = delete;
    ITileSource& operator=(const ITileSource&) = delete;

    /// Different for every source that the process has ever had.
    std::uint64_t GetId() const { return FId; }

    /// The path of the file, which documents keep and messages name; empty for a source that is none.
    virtual QString GetFileName() const = 0;
    /// From edge to edge of the outermost cells; Left < Right and Bottom < Top. A global raster may begin at any
    /// longitude.
    virtual TWorldMapArea GetArea() const = 0;
    /// The raster itself, then its overviews, each smaller than the one before. Never empty.
    virtual const std::vector<TTileLevel>& GetLevels() const = 0;
    /// How many of these levels are stored, from the first on; here all of them. Those behind are made from the cells
    /// of the last stored one whenever they are read, which costs as much as reading all of these cells.
    virtual int GetStoredLevelCount() const { return static_cast<int>(GetLevels().size()); }
    /// Reads the cells of a rectangle within a level, row by row from the north, into `cells`, which has room for
    /// exactly these; those without data are flags (TSpatialConst). May return early once `shouldStop` says so; the
    /// cells are not looked at then.
    /// @throws what the file's failures are.
    virtual void ReadCells(int level, const TRect& rect, std::span<float> cells,
                           const std::function<bool()>& shouldStop) const = 0;

private:
    const std::uint64_t FId;
};

} // namespace lmx
