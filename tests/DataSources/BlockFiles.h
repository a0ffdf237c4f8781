#pragma once

#include <lmx/DataSources/Private/lmxGdalSession.h>

#include <QString>

#include <cpl_string.h>
#include <gdal_priv.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

// Files whose cells are stored in blocks.

namespace lmx::tests {

inline void NeedsWriting(bool isDone) {
    if (!isDone)
        throw std::runtime_error("GDAL does not write what is to be tested");
}

/// By which Zarr knows dimensions again.
inline void NameDimensions(GDALMDArray& array, std::vector<std::string> names) {
    CPLStringList list;
    for (const std::string& name : names)
        list.AddString(name.c_str());
    const auto attribute =
        array.CreateAttribute("_ARRAY_DIMENSIONS", {names.size()}, GDALExtendedDataType::CreateString());
    NeedsWriting(attribute && attribute->Write(list.List()));
}

/// Writes "v", shorts on 7 times, 4 latitudes and 6 longitudes that count from 0.
/// @param driver "netCDF" or "Zarr"
/// @param blocks as GDAL's option has them: "3,2,6"
inline void MakeBlockFile(const QString& path, const char* driver, const char* blocks) {
    const TQuietGdal quiet;
    RegisterClimateDrivers();
    const char* const netCdf[] = {"FORMAT=NC4", nullptr};
    const bool isZarr = std::string(driver) == "Zarr";
    const std::unique_ptr<GDALDataset> file(GetGDALDriverManager()->GetDriverByName(driver)->CreateMultiDimensional(
        path.toUtf8().constData(), nullptr, isZarr ? nullptr : netCdf));
    NeedsWriting(file != nullptr);
    const auto root = file->GetRootGroup();
    std::vector<std::shared_ptr<GDALDimension>> dimensions;
    const auto addAxis = [&](const char* name, const char* units, std::vector<double> values) {
        const std::size_t count = values.size();
        const auto dimension = root->CreateDimension(name, {}, {}, count);
        const auto axis = root->CreateMDArray(name, {dimension}, GDALExtendedDataType::Create(GDT_Float64));
        NeedsWriting(axis && axis->SetUnit(units));
        const GUInt64 start = 0;
        NeedsWriting(axis->Write(&start, &count, nullptr, nullptr, axis->GetDataType(), values.data()));
        if (isZarr)
            NameDimensions(*axis, {name});
        dimensions.push_back(dimension);
    };
    addAxis("time", "days since 2000-01-01", {0, 1, 2, 3, 4, 5, 6});
    addAxis("lat", "degrees_north", {30, 20, 10, 0});
    addAxis("lon", "degrees_east", {0, 10, 20, 30, 40, 50});
    std::vector<std::int16_t> cells;
    for (std::int16_t i = 0; i < 7 * 4 * 6; ++i)
        cells.push_back(i);
    const std::string option = std::string("BLOCKSIZE=") + blocks;
    const char* const options[] = {option.c_str(), "COMPRESS=NONE", nullptr};
    const auto array = root->CreateMDArray("v", dimensions, GDALExtendedDataType::Create(GDT_Int16), options);
    if (isZarr)
        NameDimensions(*array, {"time", "lat", "lon"});
    const GUInt64 starts[] = {0, 0, 0};
    const std::size_t counts[] = {7, 4, 6};
    NeedsWriting(array && array->Write(starts, counts, nullptr, nullptr, array->GetDataType(), cells.data()));
}

} // namespace lmx::tests
