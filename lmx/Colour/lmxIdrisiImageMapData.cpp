#include <lmx/Colour/lmxIdrisiImageMapData.h>

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Runtime/Private/lmxMemory.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>
#include <cmath>

namespace lmx {

namespace {

// TSpatialConst::IsValue without a branch: rows are told by the million.
std::uint8_t CookieOf(float number) {
    const bool isValue = (std::abs(number) < 1e30F) & (number != TSpatialConst::NoData) & (number != -9999.0F);
    return isValue ? 1 : 0;
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
    std::vector<float> row(width);
    std::vector<std::uint8_t> cookies(width);
    for (std::int32_t y = 0; y < FHeight; ++y) { // all that happens to a row happens while it is in the cache
        image.ReadRow(y + 1, row);
        std::transform(row.begin(), row.end(), cookies.begin(), CookieOf);
        FCachedMapData.insert(FCachedMapData.end(), row.begin(), row.end());
        FCachedCookieData.insert(FCachedCookieData.end(), cookies.begin(), cookies.end());
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
