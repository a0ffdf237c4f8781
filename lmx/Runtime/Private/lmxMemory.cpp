#include <lmx/Runtime/Private/lmxMemory.h>

#include <cstddef>
#include <cstdlib>

namespace lmx {

void NeedMemory(std::uint64_t bytes) {
    if (bytes > static_cast<std::uint64_t>(std::numeric_limits<std::ptrdiff_t>::max()))
        throw EOutOfMemory();
    void* volatile const piece = std::malloc(static_cast<std::size_t>(bytes)); // volatile, or compilers leave it out
    if (!piece && bytes > 0)
        throw EOutOfMemory();
    std::free(piece);
}

} // namespace lmx
