#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExport.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lmx {

/// The pixels of a bitmap: row after row, row 0 at the top. One that was moved from has no pixels.
class LMX_EXPORT TPixelMemory {
public:
    TPixelMemory() = default;
    /// @throws EOutOfMemory
    TPixelMemory(const TPixelMemory& other);
    TPixelMemory(TPixelMemory&& other) noexcept { Swap(other); }
    /// @throws EOutOfMemory, and nothing changes.
    TPixelMemory& operator=(const TPixelMemory& other);
    TPixelMemory& operator=(TPixelMemory&& other) noexcept;
    ~TPixelMemory() = default;

    /// Negative sides become 0, and all pixels 0. Without pixels no memory is held.
    /// @throws EOutOfMemory, and nothing changes.
    void SetSize(std::int32_t width, std::int32_t height);

    std::int32_t GetWidth() const { return FWidth; }
    std::int32_t GetHeight() const { return FHeight; }
    std::size_t GetCount() const { return FPixels.size(); }        ///< of pixels
    std::size_t GetCapacity() const { return FPixels.capacity(); } ///< pixels that the memory held has room for
    TColor32* GetPixels() { return FPixels.data(); }
    const TColor32* GetPixels() const { return FPixels.data(); }

private:
    void Swap(TPixelMemory& other) noexcept;

    std::vector<TColor32> FPixels;
    std::int32_t FWidth = 0;
    std::int32_t FHeight = 0;
};

} // namespace lmx
