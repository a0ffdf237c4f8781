#pragma once

#include <lmx/Colour/lmxMapData.h>
#include <lmx/Colour/lmxRasterRows.h>
#include <lmx/Runtime/lmxExport.h>

#include <cstdint>
#include <vector>

namespace lmx {

class TAbstractImage;

/// The numbers of an Idrisi image and which of its cells hold values. Fixed after construction.
class LMX_EXPORT TIdrisiImageMapData final : public IMapData, public ICookieData, public IRasterRows {
public:
    /// With `cache` all cells are copied here, and the image is not touched again. Without, each access reads the
    /// image, which must outlive this object.
    /// @throws EArgumentException "Image is null".
    TIdrisiImageMapData(const TAbstractImage* image, bool cache);

    float GetMapCell(std::int32_t x, std::int32_t y) const override;
    std::uint8_t GetCookieCell(std::int32_t x, std::int32_t y) const override;
    std::int32_t GetWidth() const override { return FWidth; }
    std::int32_t GetHeight() const override { return FHeight; }

    const float* GetMapRow(std::int32_t y) const override;           ///< null if not cached
    const std::uint8_t* GetCookieRow(std::int32_t y) const override; ///< null if not cached

    bool GetIsCached() const { return FImage == nullptr; }

private:
    void CacheCells(const TAbstractImage& image);
    std::size_t IndexOf(std::int32_t x, std::int32_t y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(FWidth) + static_cast<std::size_t>(x);
    }

    const TAbstractImage* FImage = nullptr; ///< null once cached
    std::int32_t FWidth = 0;
    std::int32_t FHeight = 0;
    std::vector<float> FCachedMapData;           ///< row by row
    std::vector<std::uint8_t> FCachedCookieData; ///< row by row
};

} // namespace lmx
