#pragma once

#include <lmx/DataSources/lmxDataSourcesExport.h>

#include <compare>
#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace lmx {

/// Which tile of which source.
struct TTileKey {
    std::uint64_t Source = 0; ///< ITileSource::GetId
    int Level = 0;
    std::int32_t Column = 0;
    std::int32_t Row = 0;

    // NOLINTNEXTLINE(modernize-use-nullptr): the 0 that the compiler compares with is no pointer
    friend auto operator<=>(const TTileKey&, const TTileKey&) = default;
};

/// Cells of a tile, row by row from the north. No cells at all: they could not be read, and are not asked for again.
using TTileCells = std::vector<float>;

/// Keeps the tiles that were used last, within a number of bytes. Layers may share one. Any thread may call.
class LMX_DATASOURCES_EXPORT TTileCache {
public:
    static constexpr std::size_t DefaultCapacity = std::size_t{128} << 20;

    explicit TTileCache(std::size_t capacity = DefaultCapacity) : FCapacity(capacity) {}
    TTileCache(const TTileCache&) = delete;
    TTileCache& operator=(const TTileCache&) = delete;

    /// The one that layers use which are given none.
    static const std::shared_ptr<TTileCache>& GetShared();

    std::size_t GetCapacity() const; ///< bytes
    /// A smaller one frees tiles at once. With 0 nothing is kept.
    void SetCapacity(std::size_t bytes);
    std::size_t GetSize() const; ///< bytes that the tiles take now

    /// The tile, now the one used last; nil if it is not here.
    std::shared_ptr<const TTileCells> Get(const TTileKey& key);
    /// Whether it is here; says nothing of its use.
    bool Has(const TTileKey& key) const;
    /// Keeps a tile, in the place of one with this key, and frees those that were not used for longest. One that is
    /// larger than the whole cache is not kept.
    void Put(const TTileKey& key, std::shared_ptr<const TTileCells> cells);
    /// Frees all tiles of a source.
    void Drop(std::uint64_t source);

private:
    struct TEntry {
        TTileKey Key;
        std::shared_ptr<const TTileCells> Cells;
    };
    using TEntries = std::list<TEntry>;

    static std::size_t SizeOf(const TTileCells& cells);
    void Remove(TEntries::iterator entry);
    void Shrink();

    mutable std::mutex FGuard;
    std::size_t FCapacity;
    std::size_t FSize = 0;
    TEntries FEntries; // the one used last first
    std::map<TTileKey, TEntries::iterator> FPlaces;
};

} // namespace lmx
