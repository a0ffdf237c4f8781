#pragma once

#include <QString>
#include <QTemporaryDir>

#include <gdal_priv.h>

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

namespace lmx::tests {

/// A GeoTIFF of 16-bit cells, in tiles of 64, that GDAL writes.
struct TTiffOf16Bits {
    int Width = 300;
    int Height = 200;
    std::array<double, 6> Transform = {-180, 1.2, 0, 90, 0, -0.9};
    std::vector<int> Overviews; ///< factors
    const char* System = "EPSG:4326";
    std::function<std::int16_t(int column, int row)> Cell = [](int column, int row) {
        return static_cast<std::int16_t>(row * 100 + column);
    };
    std::function<void(GDALRasterBand& band)> Describe = [](GDALRasterBand&) {};
    /// Cells that something else than their numbers calls missing; none: nothing does.
    std::function<bool(int column, int row)> IsMissing;
    bool HasAlpha = false; ///< a second band calls them so, else a mask

    void Write(const QString& path) const {
        GDALRegister_GTiff();
        GDALDriver* const driver = GetGDALDriverManager()->GetDriverByName("GTiff");
        const char* const options[] = {
            "TILED=YES", "BLOCKXSIZE=64", "BLOCKYSIZE=64", "COMPRESS=DEFLATE", HasAlpha ? "ALPHA=YES" : "ALPHA=NO",
            nullptr};
        auto* const dataset = driver->Create(path.toUtf8().constData(), Width, Height, HasAlpha ? 2 : 1, GDT_Int16,
                                             const_cast<char**>(options));
        dataset->SetGeoTransform(const_cast<double*>(Transform.data()));
        if (System) {
            OGRSpatialReference system;
            system.SetFromUserInput(System);
            dataset->SetSpatialRef(&system);
        }
        Describe(*dataset->GetRasterBand(1));
        std::vector<std::int16_t> row(static_cast<std::size_t>(Width));
        for (int y = 0; y < Height; ++y) {
            for (int x = 0; x < Width; ++x)
                row[static_cast<std::size_t>(x)] = Cell(x, y);
            if (dataset->GetRasterBand(1)->RasterIO(GF_Write, 0, y, Width, 1, row.data(), Width, 1, GDT_Int16, 0, 0,
                                                    nullptr) != CE_None)
                break;
        }
        Hide(*dataset);
        if (!Overviews.empty())
            dataset->BuildOverviews("NEAREST", static_cast<int>(Overviews.size()), const_cast<int*>(Overviews.data()),
                                    0, nullptr, GDALDummyProgress, nullptr);
        GDALClose(dataset);
    }

private:
    void Hide(GDALDataset& dataset) const {
        if (!IsMissing)
            return;
        CPLSetThreadLocalConfigOption("GDAL_TIFF_INTERNAL_MASK", "YES");
        if (!HasAlpha)
            dataset.CreateMaskBand(GMF_PER_DATASET);
        CPLSetThreadLocalConfigOption("GDAL_TIFF_INTERNAL_MASK", nullptr);
        GDALRasterBand* const mask = HasAlpha ? dataset.GetRasterBand(2) : dataset.GetRasterBand(1)->GetMaskBand();
        std::vector<std::uint8_t> row(static_cast<std::size_t>(Width));
        for (int y = 0; y < Height; ++y) {
            for (int x = 0; x < Width; ++x)
                row[static_cast<std::size_t>(x)] = IsMissing(x, y) ? 0 : 255;
            if (mask->RasterIO(GF_Write, 0, y, Width, 1, row.data(), Width, 1, GDT_Byte, 0, 0, nullptr) != CE_None)
                return;
        }
    }
};

} // namespace lmx::tests
