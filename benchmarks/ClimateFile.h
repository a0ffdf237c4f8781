#pragma once

#include <lmx/DataSources/Private/lmxGdalSession.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QString>

#include <gdal_priv.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

// Climate files that benchmarks make for themselves.

namespace lmx::bench {

inline void Check(bool isDone) {
    if (!isDone)
        throw EInvalidOperation(QStringLiteral("GDAL does not write what is to be measured"));
}

inline void SetText(GDALIHasAttribute& owner, const char* name, const char* text) {
    const auto attribute = owner.CreateAttribute(name, {}, GDALExtendedDataType::CreateString());
    Check(attribute && attribute->Write(text));
}

inline std::shared_ptr<GDALMDArray> AddAxis(GDALGroup& root, const char* name, const char* type, const char* units,
                                            int count, double first, double step,
                                            std::vector<std::shared_ptr<GDALDimension>>& all) {
    const auto dimension = root.CreateDimension(name, type, {}, GUInt64(count));
    const auto axis = root.CreateMDArray(name, {dimension}, GDALExtendedDataType::Create(GDT_Float64));
    Check(axis != nullptr);
    axis->SetUnit(units);
    std::vector<double> values;
    for (int i = 0; i < count; ++i)
        values.push_back(first + step * i);
    const GUInt64 start = 0;
    const std::size_t length = std::size_t(count);
    Check(axis->Write(&start, &length, nullptr, nullptr, axis->GetDataType(), values.data()));
    all.push_back(dimension);
    return axis;
}

struct TMadeFile {
    int Variables = 1;
    int FileColumns = 0;
    int FileRows = 0;
    bool IsNetCdf4 = false;
    bool HasCells = false;
    int Times = 3;
    std::string Blocks = {}; ///< deflated ones, as "1,720,1440"; none: plain
};

inline void MakeFile(const QString& path, const TMadeFile& made) {
    const TQuietGdal quiet;
    RegisterClimateDrivers();
    GDALDriver* const driver = GetGDALDriverManager()->GetDriverByName("netCDF");
    const char* const format[] = {"FORMAT=NC4", nullptr};
    const char* const classic[] = {"FORMAT=NC", nullptr};
    const std::unique_ptr<GDALDataset> file(driver->CreateMultiDimensional(
        path.toUtf8().constData(), nullptr, made.IsNetCdf4 || made.Variables > 1 ? format : classic));
    Check(file != nullptr);
    const auto root = file->GetRootGroup();
    std::vector<std::shared_ptr<GDALDimension>> dimensions;
    AddAxis(*root, "time", "TEMPORAL", "days since 2000-01-01", made.Times, 0, 1, dimensions);
    AddAxis(*root, "lat", "HORIZONTAL_Y", "degrees_north", made.FileRows, 90 - 90.0 / made.FileRows,
            -180.0 / made.FileRows, dimensions);
    AddAxis(*root, "lon", "HORIZONTAL_X", "degrees_east", made.FileColumns, -180 + 180.0 / made.FileColumns,
            360.0 / made.FileColumns, dimensions);
    std::vector<std::int16_t> cells;
    for (int i = 0; made.HasCells && i < made.Times * made.FileRows * made.FileColumns; ++i)
        cells.push_back(std::int16_t(9000 * std::sin(i * 1e-3) + i % 7));
    for (int i = 0; i < made.Variables; ++i) {
        const std::string name = "tas" + std::to_string(i);
        const std::string blocks = "BLOCKSIZE=" + made.Blocks;
        const char* const packed[] = {blocks.c_str(), "COMPRESS=DEFLATE", "ZLEVEL=1", nullptr};
        const auto array = root->CreateMDArray(name, dimensions, GDALExtendedDataType::Create(GDT_Int16),
                                               made.Blocks.empty() ? nullptr : packed);
        Check(array != nullptr);
        array->SetUnit("K");
        array->SetScale(0.01);
        array->SetOffset(273.15);
        array->SetNoDataValue(-32768);
        SetText(*array, "standard_name", "air_temperature");
        SetText(*array, "long_name", "Near-surface air temperature");
        SetText(*array, "cell_methods", "time: mean");
        const GUInt64 starts[] = {0, 0, 0};
        const std::size_t counts[] = {std::size_t(made.Times), std::size_t(made.FileRows),
                                      std::size_t(made.FileColumns)};
        Check(!made.HasCells || array->Write(starts, counts, nullptr, nullptr, array->GetDataType(), cells.data()));
    }
}

inline std::unique_ptr<GDALDataset> OpenByGdal(const QString& path) {
    const char* const drivers[] = {"netCDF", nullptr};
    return std::unique_ptr<GDALDataset>(
        GDALDataset::Open(("NETCDF:\"" + path.toUtf8() + '"').constData(), GDAL_OF_MULTIDIM_RASTER, drivers));
}

} // namespace lmx::bench
