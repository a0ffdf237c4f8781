#include <lmx/Colour/lmxIdrisiImageMapData.h>

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Runtime/Private/lmxMemory.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>
#include <span>

namespace lmx {

namespace {

std::uint8_t CookieOf(float number) {
    return TSpatialConst::IsValue(number) ? 1 : 0;
}

} // namespace

TIdrisiImageMapData::TIdrisiImageMapData(const TAbstractImage* image, bool cache) : FImage(image) {
    if (!image)
        throw EArgumentException(QStringLiteral("Image is null"));
    FWidth = std::max(image->getHeader()->GetWidth(), 0);
    FHeight = std::max(image->getHeader()->GetHeight(), 0);
    if (cache)
        CacheCells(*image);
}

void TIdrisiImageMapData::CacheCells(const TAbstractImage& image) {
    const auto width = static_cast<std::size_t>(FWidth);
    const std::size_t cells = width * static_cast<std::size_t>(FHeight);
    FCachedMapData.reserve(cells);
    FCachedCookieData.reserve(cells);
    PreferLargePages(FCachedMapData.data(), cells * sizeof(float));
    PreferLargePages(FCachedCookieData.data(), cells);
    for (std::int32_t y = 0; y < FHeight; ++y) { // all that happens to a row happens while it is in the cache
        const std::size_t start = IndexOf(0, y);
        FCachedMapData.resize(start + width);
        const std::span<float> row = std::span(FCachedMapData).subspan(start);
        image.ReadRow(y + 1, row);
        FCachedCookieData.resize(start + width);
        std::transform(row.begin(), row.end(), FCachedCookieData.begin() + static_cast<std::ptrdiff_t>(start),
                       CookieOf);
    }
    FImage = nullptr;
}

float TIdrisiImageMapData::GetMapCell(std::int32_t x, std::int32_t y) const {
    return FImage ? FImage->GetCell(x + 1, y + 1) : FCachedMapData[IndexOf(x, y)];
}

std::uint8_t TIdrisiImageMapData::GetCookieCell(std::int32_t x, std::int32_t y) const {
    return FImage ? CookieOf(FImage->GetCell(x + 1, y + 1)) : FCachedCookieData[IndexOf(x, y)];
}

const float* TIdrisiImageMapData::GetMapRow(std::int32_t y) const {
    return FImage ? nullptr : FCachedMapData.data() + IndexOf(0, y);
}

const std::uint8_t* TIdrisiImageMapData::GetCookieRow(std::int32_t y) const {
    return FImage ? nullptr : FCachedCookieData.data() + IndexOf(0, y);
}

} // namespace lmx
