#include <lmx/DataSources/Private/lmxBandArrays.h>

#include <lmx/DataSources/Private/lmxBandMask.h>
#include <lmx/DataSources/Private/lmxFilesAtEnd.h>
#include <lmx/DataSources/Private/lmxGdalSession.h>
#include <lmx/DataSources/Private/lmxGdalTypes.h>
#include <lmx/DataSources/lmxClimateExceptions.h>
#include <lmx/Runtime/lmxFormat.h>

#include <cpl_vsi_error.h>
#include <gdal_priv.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <mutex>
#include <utility>

namespace lmx {

void TBandArrays::AddValues(const QString& path, const std::vector<TSourceDimension>& dimensions,
                            std::vector<double> values, const TClimateAttributes& attributes) {
    TSourceArray info;
    info.Path = path;
    info.Dimensions = dimensions;
    info.Type = TClimateCellType::ctDouble;
    info.IsNumeric = !values.empty();
    FInfos.push_back(std::move(info));
    FContents.push_back({attributes, std::move(values), {}});
}

void TBandArrays::AddBands(TSourceArray info, std::vector<int> bands, const TClimateAttributes& attributes) {
    FInfos.push_back(std::move(info));
    FContents.push_back({attributes, {}, std::move(bands)});
}

bool TBandArrays::Has(const QString& path) const {
    return std::any_of(FInfos.begin(), FInfos.end(), [&](const TSourceArray& info) { return info.Path == path; });
}

TRawSlice TBandArrays::Read(GDALDataset& dataset, std::size_t array, const TSourceWindow& window) const {
    if (const TContent& content = FContents.at(array); !content.Values.empty())
        return ReadValues(content, window);
    return ReadBands(array, window, FInfos[array].Type, [&](int band, const TRect& place, std::byte* cells) {
        GDALRasterBand* const source = dataset.GetRasterBand(band);
        return source && source->RasterIO(GF_Read, place.Left, place.Top, place.GetWidth(), place.GetHeight(), cells,
                                          place.GetWidth(), place.GetHeight(), source->GetRasterDataType(), 0, 0,
                                          nullptr) == CE_None;
    });
}

TRawSlice TBandArrays::ReadMask(GDALDataset& dataset, std::size_t array, const TSourceWindow& window) const {
    const auto type = TClimateCellType::ctUInt8;
    const int alpha = AlphaBandOf(dataset);
    return ReadBands(array, window, type, [&](int band, const TRect& place, std::byte* cells) {
        auto* const bytes = reinterpret_cast<std::uint8_t*>(cells);
        GDALRasterBand* const mask = MaskOf(dataset, band, alpha);
        if (!mask)
            std::fill_n(bytes, std::size_t(place.GetWidth()) * std::size_t(place.GetHeight()), std::uint8_t{1});
        else if (HasHugeBlocks(*mask))
            throw EClimateFile(FFileName, QStringLiteral("the mask ") + HugeBlocksText());
        return !mask || ReadMaskCells(*mask, place, place.GetWidth(), place.GetHeight(), bytes) == CE_None;
    });
}

TRawSlice TBandArrays::ReadBands(std::size_t array, const TSourceWindow& window, TClimateCellType type,
                                 const TReadBand& readBand) const {
    const TSourceArray& info = FInfos.at(array);
    // Where the bands of the window stand: all dimensions but the last two, the last of them running fastest.
    const std::size_t outer = window.Counts.size() - 2;
    const std::size_t bandCells = window.Counts[outer] * window.Counts[outer + 1];
    std::size_t count = 1;
    for (std::size_t i = 0; i < outer; ++i)
        count *= window.Counts[i];
    TRawSlice slice(type, count * bandCells);
    auto* cells = static_cast<std::byte*>(slice.GetBytes());
    for (std::size_t k = 0; k < count; ++k, cells += bandCells * CellSizeOf(type)) {
        std::size_t place = 0;
        std::size_t rest = k;
        std::size_t stride = 1;
        for (std::size_t i = outer; i-- > 0;) {
            place += (std::size_t(window.Starts[i]) + rest % window.Counts[i]) * stride;
            rest /= window.Counts[i];
            stride *= std::size_t(info.Dimensions[i].Size);
        }
        ReadBand(info, FContents[array].Bands.at(place), window, cells, readBand);
    }
    return slice;
}

TRawSlice TBandArrays::ReadValues(const TContent& content, const TSourceWindow& window) const {
    // All dimensions but the first are read whole.
    std::size_t inner = 1;
    for (std::size_t i = 1; i < window.Counts.size(); ++i)
        inner *= window.Counts[i];
    const std::size_t first = window.Starts.empty() ? 0 : std::size_t(window.Starts[0]) * inner;
    const std::size_t count = window.Counts.empty() ? 1 : window.Counts[0] * inner;
    if (first > content.Values.size() || count > content.Values.size() - first)
        throw EClimateFile(FFileName, QStringLiteral("has no such values"));
    TRawSlice slice(TClimateCellType::ctDouble, count);
    std::memcpy(slice.GetBytes(), content.Values.data() + first, count * sizeof(double));
    return slice;
}

void TBandArrays::ReadBand(const TSourceArray& info, int band, const TSourceWindow& window, std::byte* cells,
                           const TReadBand& readBand) const {
    const QString name = info.Path.mid(1);
    if (band == 0)
        throw EClimateFile(FFileName, name + QStringLiteral(": has no field of this time at this level"));
    if (info.HasHugeBlocks())
        throw EClimateFile(FFileName, name + QStringLiteral(": ") + HugeBlocksText());
    const std::size_t row = window.Counts.size() - 2;
    const TRect place(int(window.Starts[row + 1]), int(window.Starts[row]),
                      int(window.Starts[row + 1] + window.Counts[row + 1]),
                      int(window.Starts[row] + window.Counts[row]));
    const TQuietGdal quiet;
    if (!readBand(band, place, cells))
        throw EClimateFile(FFileName, name + QStringLiteral(": ") + quiet.Explain(QStringLiteral("is damaged here")));
}

std::unique_ptr<GDALDataset, TCloseDataset> OpenBands(const TGdalName& name, const QString& fileName,
                                                      const QString& problem) {
    const char* const drivers[] = {name.Driver, nullptr};
    const TQuietGdal quiet;
    RegisterClimateDrivers();
    std::unique_ptr<GDALDataset, TCloseDataset> dataset(GDALDataset::Open(
        name.Name.constData(), GDAL_OF_RASTER | GDAL_OF_READONLY | GDAL_OF_INTERNAL, drivers, nullptr, nullptr));
    if (!dataset && name.IsRemote())
        VSIToCPLError(CE_Failure, CPLE_OpenFailed); // what the server said
    if (!dataset)
        throw EClimateFile(
            fileName,
            quiet.Explain(name.IsRemote() ? QStringLiteral("is no GeoTIFF that can be read from there") : problem));
    static std::once_flag isSetUp; // for programs whose main thread opens no file
    std::call_once(isSetUp, CloseFilesBeforeLibraries);
    return dataset;
}

void DescribeBand(GDALDataset& dataset, int band, int alpha, TSourceArray& info, TClimateAttributes& attributes) {
    GDALRasterBand& source = *dataset.GetRasterBand(band);
    info.IsNumeric = CellTypeOf(source.GetRasterDataType(), info.Type);
    if (const char* const kind = source.GetMetadataItem("PIXELTYPE", "IMAGE_STRUCTURE");
        kind && EQUAL(kind, "SIGNEDBYTE"))
        info.Type = TClimateCellType::ctInt8; // GDAL before 3.7 has no type for them
    int width = 0;
    int height = 0;
    source.GetBlockSize(&width, &height);
    info.BlockSize = {quint64(std::max(height, 0)), quint64(std::max(width, 0))};
    info.HasMask = MaskOf(dataset, band, alpha) != nullptr;
    if (const char* const units = source.GetUnitType(); units && *units)
        attributes.Set(QStringLiteral("units"), QString::fromUtf8(units).left(200));
    int has = 0;
    if (const double scale = source.GetScale(&has); has && scale != 1)
        attributes.Set(QStringLiteral("scale_factor"), std::vector{scale});
    if (const double offset = source.GetOffset(&has); has && offset != 0)
        attributes.Set(QStringLiteral("add_offset"), std::vector{offset});
    const GDALDataType type = source.GetRasterDataType();
    double fill = 0;
    if (type == GDT_Int64)
        fill = double(source.GetNoDataValueAsInt64(&has));
    else if (type == GDT_UInt64)
        fill = double(source.GetNoDataValueAsUInt64(&has));
    else
        fill = source.GetNoDataValue(&has);
    if (has)
        attributes.Set(QStringLiteral("_FillValue"), std::vector{fill});
}

} // namespace lmx
