#include <lmx/DataSources/Private/lmxBandMask.h>

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/DataSources/Private/lmxClimateSource.h>

#include <gdal_priv.h>

#include <algorithm>
#include <vector>

namespace lmx {

namespace {

// GDAL takes an alpha band for a mask only beside one band or three, and only of some types; such a mask is left to the
// band itself, which is found in any file.
GDALRasterBand* OwnMaskOf(GDALRasterBand& band) {
    const int flags = band.GetMaskFlags();
    const bool isOwn = (flags & (GMF_ALL_VALID | GMF_ALPHA)) == 0 && flags != GMF_NODATA;
    return isOwn ? band.GetMaskBand() : nullptr;
}

} // namespace

int AlphaBandOf(GDALDataset& dataset) {
    const int count = dataset.GetRasterCount();
    for (int band = 1; count > 1 && band <= count; ++band)
        if (dataset.GetRasterBand(band)->GetColorInterpretation() == GCI_AlphaBand)
            return band;
    return 0;
}

GDALRasterBand* MaskOf(GDALDataset& dataset, int band, int alpha) {
    if (band == alpha)
        return nullptr;
    if (GDALRasterBand* const mask = OwnMaskOf(*dataset.GetRasterBand(band)))
        return mask;
    return alpha > 0 ? dataset.GetRasterBand(alpha) : nullptr;
}

// The overview itself says that it has a mask also where GDAL makes up one that hides nothing.
GDALRasterBand* MaskOfOverview(GDALDataset& dataset, int band, int overview, int alpha) {
    GDALRasterBand* const mask = MaskOf(dataset, band, alpha);
    GDALRasterBand* const cells = dataset.GetRasterBand(band)->GetOverview(overview);
    for (int i = 0; mask && cells && i < mask->GetOverviewCount(); ++i)
        if (GDALRasterBand* const found = mask->GetOverview(i);
            found && found->GetXSize() == cells->GetXSize() && found->GetYSize() == cells->GetYSize())
            return found;
    return nullptr;
}

bool HasHugeBlocks(GDALRasterBand& mask) {
    int width = 0;
    int height = 0;
    mask.GetBlockSize(&width, &height);
    const auto bytes = quint64(std::max(GDALGetDataTypeSizeBytes(mask.GetRasterDataType()), 1));
    return quint64(std::max(width, 0)) * quint64(std::max(height, 0)) > MostBlockBytes / bytes;
}

// Whole numbers are clamped to bytes, so that none but 0 becomes 0; fractions would be rounded.
CPLErr ReadMaskCells(GDALRasterBand& mask, const TRect& window, int width, int height, std::uint8_t* cells,
                     GDALRasterIOExtraArg* extra) {
    const auto read = [&](void* to, GDALDataType type) {
        return mask.RasterIO(GF_Read, window.Left, window.Top, window.GetWidth(), window.GetHeight(), to, width, height,
                             type, 0, 0, extra);
    };
    if (!GDALDataTypeIsFloating(mask.GetRasterDataType()))
        return read(cells, GDT_Byte);
    std::vector<float> shares(std::size_t(width) * std::size_t(height));
    const CPLErr outcome = read(shares.data(), GDT_Float32);
    std::transform(shares.begin(), shares.end(), cells, [](float share) { return std::uint8_t(share > 0 ? 1 : 0); });
    return outcome;
}

void HideMissing(std::span<const std::uint8_t> mask, std::span<float> values) {
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = mask[i] == 0 ? TSpatialConst::NoData : values[i];
}

} // namespace lmx
