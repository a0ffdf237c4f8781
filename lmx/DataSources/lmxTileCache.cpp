#include <lmx/DataSources/lmxTileCache.h>

#include <iterator>
#include <utility>

namespace lmx {

namespace {

constexpr std::size_t EntryBytes = 128; // of lists and maps, about

} // namespace

const std::shared_ptr<TTileCache>& TTileCache::GetShared() {
    static const std::shared_ptr<TTileCache> cache = std::make_shared<TTileCache>();
    return cache;
}

std::size_t TTileCache::SizeOf(const TTileCells& cells) {
    return cells.capacity() * sizeof(float) + EntryBytes;
}

std::size_t TTileCache::GetCapacity() const {
    const std::lock_guard guard(FGuard);
    return FCapacity;
}

void TTileCache::SetCapacity(std::size_t bytes) {
    const std::lock_guard guard(FGuard);
    FCapacity = bytes;
    Shrink();
}

std::size_t TTileCache::GetSize() const {
    const std::lock_guard guard(FGuard);
    return FSize;
}

std::shared_ptr<const TTileCells> TTileCache::Get(const TTileKey& key) {
    const std::lock_guard guard(FGuard);
    const auto place = FPlaces.find(key);
    if (place == FPlaces.end())
        return nullptr;
    FEntries.splice(FEntries.begin(), FEntries, place->second);
    return place->second->Cells;
}

bool TTileCache::Has(const TTileKey& key) const {
    const std::lock_guard guard(FGuard);
    return FPlaces.contains(key);
}

void TTileCache::Put(const TTileKey& key, std::shared_ptr<const TTileCells> cells) {
    const std::lock_guard guard(FGuard);
    if (const auto place = FPlaces.find(key); place != FPlaces.end())
        Remove(place->second);
    if (!cells || SizeOf(*cells) > FCapacity)
        return;
    FSize += SizeOf(*cells);
    FEntries.push_front({key, std::move(cells)});
    FPlaces[key] = FEntries.begin();
    Shrink();
}

void TTileCache::Drop(std::uint64_t source) {
    const std::lock_guard guard(FGuard);
    for (auto entry = FEntries.begin(); entry != FEntries.end();) {
        const auto next = std::next(entry);
        if (entry->Key.Source == source)
            Remove(entry);
        entry = next;
    }
}

void TTileCache::Remove(TEntries::iterator entry) {
    FSize -= SizeOf(*entry->Cells);
    FPlaces.erase(entry->Key);
    FEntries.erase(entry);
}

void TTileCache::Shrink() {
    while (FSize > FCapacity)
        Remove(std::prev(FEntries.end()));
}

} // namespace lmx
