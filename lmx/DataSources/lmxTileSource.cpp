#include <lmx/DataSources/lmxTileSource.h>

#include <atomic>

namespace lmx {

namespace {

std::uint64_t NextId() {
    static std::atomic<std::uint64_t> id = 0;
    return ++id;
}

} // namespace

ITileSource::ITileSource() : FId(NextId()) {}

} // namespace lmx
