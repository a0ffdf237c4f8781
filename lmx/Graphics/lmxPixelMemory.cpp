#include <lmx/Graphics/lmxPixelMemory.h>

#include <lmx/Runtime/Private/lmxMemory.h>

#include <algorithm>
#include <utility>

namespace lmx {

namespace {

void SetZeros(std::vector<TColor32>& pixels, std::size_t count) {
    if (pixels.capacity() < count) {
        std::vector<TColor32> larger;
        larger.reserve(count);
        PreferLargePages(larger.data(), count * sizeof(TColor32));
        pixels.swap(larger);
    }
    pixels.assign(count, 0);
}

} // namespace

TPixelMemory::TPixelMemory(const TPixelMemory& other)
    : FPixels(WithinMemory([&] { return other.FPixels; })),
      FWidth(other.FWidth),
      FHeight(other.FHeight) {}

TPixelMemory& TPixelMemory::operator=(const TPixelMemory& other) {
    WithinMemory([&] { FPixels = other.FPixels; });
    FWidth = other.FWidth;
    FHeight = other.FHeight;
    return *this;
}

TPixelMemory& TPixelMemory::operator=(TPixelMemory&& other) noexcept {
    TPixelMemory moved(std::move(other));
    Swap(moved);
    return *this;
}

void TPixelMemory::Swap(TPixelMemory& other) noexcept {
    std::swap(FPixels, other.FPixels);
    std::swap(FWidth, other.FWidth);
    std::swap(FHeight, other.FHeight);
}

void TPixelMemory::SetSize(std::int32_t width, std::int32_t height) {
    width = std::max(width, 0);
    height = std::max(height, 0);
    const std::uint64_t count = static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
    NeedMemory(count * sizeof(TColor32));
    if (count == 0)
        std::vector<TColor32>().swap(FPixels);
    else
        WithinMemory([&] { SetZeros(FPixels, static_cast<std::size_t>(count)); });
    FWidth = width;
    FHeight = height;
}

} // namespace lmx
