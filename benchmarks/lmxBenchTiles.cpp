// A GeoTIFF of 40,000 x 20,000 bytes in a view of 1920 x 1080, with overviews and without, in tiles and in strips: the
// first picture of the whole, a pan of it, zooms, a pan at full resolution, and the same again from the cache, against
// GDAL's own read of the cells that the view shows; and the memory of it. Each file is shown in a process of its own.

#include <benchmarks/Measuring.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Coordinates/wskWorld.h>
#include <lmx/DataSources/lmxGeoTiffTiles.h>
#include <lmx/DataSources/lmxTiledRasterMapLayer.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxLayerManager.h>

#include <QApplication>
#include <QTemporaryDir>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <gdal_priv.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using namespace lmx::bench;

constexpr int Columns = Sized(40'000);
constexpr int Rows = Sized(20'000);
constexpr int Width = Sized(1920);
constexpr int Height = Sized(1080);
constexpr int Repetitions = 3;

void Require(bool isTrue, const char* what) {
    if (isTrue)
        return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

// In a process of its own, so that what it takes is not counted.
template<class Work>
void InChild(Work work) {
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        work();
        std::fflush(stdout);
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    Require(status == 0, "a part of the measurement failed");
}

struct TFileKind {
    const char* Name;
    bool IsTiled;
    bool HasOverviews;
};

void MakeFile(const std::string& path, const TFileKind& kind) {
    GDALRegister_GTiff();
    const char* const options[] = {kind.IsTiled ? "TILED=YES" : "TILED=NO", "COMPRESS=DEFLATE", "ZLEVEL=1",
                                   "NUM_THREADS=2", nullptr};
    GDALDataset* const dataset = GetGDALDriverManager()->GetDriverByName("GTiff")->Create(
        path.c_str(), Columns, Rows, 1, GDT_Byte, const_cast<char**>(options));
    double transform[] = {-180, 360.0 / Columns, 0, 90, 0, -180.0 / Rows};
    dataset->SetGeoTransform(transform);
    OGRSpatialReference system;
    system.importFromEPSG(4326);
    dataset->SetSpatialRef(&system);
    std::vector<std::uint8_t> block(std::size_t{Columns} * 256);
    for (int top = 0; top < Rows; top += 256) {
        const int count = std::min(256, Rows - top);
        for (int row = 0; row < count; ++row)
            for (int column = 0; column < Columns; ++column)
                block[std::size_t{static_cast<unsigned>(row)} * Columns + static_cast<unsigned>(column)] =
                    static_cast<std::uint8_t>((column / 37 + (top + row) / 23 + (column ^ row) % 5) & 0xFF);
        Require(dataset->GetRasterBand(1)->RasterIO(GF_Write, 0, top, Columns, count, block.data(), Columns, count,
                                                    GDT_Byte, 0, 0, nullptr) == CE_None,
                "the file could not be written");
    }
    int factors[] = {2, 4, 8, 16, 32};
    if (kind.HasOverviews)
        dataset->BuildOverviews("NEAREST", 5, factors, 0, nullptr, GDALDummyProgress, nullptr);
    GDALClose(dataset);
}

long PeakMegabytes() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmHWM:"))
            return std::strtol(line.c_str() + 6, nullptr, 10) / 1024;
    return 0;
}

struct TPlace {
    const char* Name;
    lmx::extended Scale; // pixels a degree
    lmx::TMapPoint Center;
};

/// A view of one layer, painted until nothing more comes.
class TView {
public:
    explicit TView(const std::string& path) {
        FLayer.SetColorCalc(lmx::TGradientColorCalculatorFactory::GetObject(
            0, 255, lmx::TGradientFactory::GetObject({{0, 0xFF0000FF}, {0.5, 0xFFFFFFFF}, {1, 0xFFFF0000}})));
        FLayer.SetSource(std::make_shared<lmx::TGeoTiffTiles>(QString::fromStdString(path)));
        FViewport.SetViewSize({Width, Height});
    }

    /// The result is the time until there is something of it to see.
    double Show(const TPlace& place) {
        FViewport.SetScale(place.Scale);
        FViewport.SetCenter(place.Center);
        double first = 0;
        do {
            const double step = MillisecondsOf([this] {
                FLayer.Paint(&FWorld, &FViewport, FBitmap);
                while (FLayer.GetCurrentThread()) {
                    QCoreApplication::processEvents();
                    std::this_thread::yield();
                }
            });
            first = first > 0 ? first : step;
        } while (!IsStill());
        return first;
    }
    double LongestPaint() const { return FLongestPaint; }

private:
    bool IsStill() {
        const double paint = MillisecondsOf([this] { FLayer.Paint(&FWorld, &FViewport, FBitmap); });
        FLongestPaint = std::max(FLongestPaint, paint);
        return !FLayer.GetCurrentThread();
    }

    std::shared_ptr<lmx::ILayerManager> FManager = lmx::TLayerManagerFactory::GetObject();
    lmx::TTiledRasterMapLayer FLayer{FManager, std::make_shared<lmx::TTileCache>()};
    lmx::TWorld FWorld{lmx::TLatLonWorldSystemFactory::GetObject()};
    lmx::TWorldViewport FViewport{&FWorld};
    lmx::TBitmap32 FBitmap{Width, Height};
    double FLongestPaint = 0;
};

/// The yardstick: the cells under the view, as they are, from the level that the layer shows.
class TRawFile {
public:
    explicit TRawFile(const std::string& path)
        : FDataset(static_cast<GDALDataset*>(GDALOpen(path.c_str(), GA_ReadOnly))) {
        Require(FDataset != nullptr, "the file does not open");
    }
    ~TRawFile() { GDALClose(FDataset); }
    TRawFile(const TRawFile&) = delete;
    TRawFile& operator=(const TRawFile&) = delete;

    void Read(const TPlace& place) {
        GDALRasterBand* band = FDataset->GetRasterBand(1);
        const double cellsAPixel = Columns / 360.0 / static_cast<double>(place.Scale);
        if (band->GetOverviewCount() == 0)
            return ReadSmaller(*band, place);
        for (int i = 0; i < FDataset->GetRasterBand(1)->GetOverviewCount(); ++i)
            if (std::pow(2, i + 1) <= cellsAPixel)
                band = FDataset->GetRasterBand(1)->GetOverview(i);
        const double cells = band->GetXSize() / 360.0;
        const int width =
            std::min(band->GetXSize(), static_cast<int>(Width * cells / static_cast<double>(place.Scale)));
        const int height =
            std::min(band->GetYSize(), static_cast<int>(Height * cells / static_cast<double>(place.Scale)));
        const int left = std::clamp(static_cast<int>(static_cast<double>(place.Center.X + 180) * cells) - width / 2, 0,
                                    band->GetXSize() - width);
        const int top = std::clamp(static_cast<int>(static_cast<double>(90 - place.Center.Y) * cells) - height / 2, 0,
                                   band->GetYSize() - height);
        FCells.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
        Require(band->RasterIO(GF_Read, left, top, width, height, FCells.data(), width, height, GDT_Byte, 0, 0,
                               nullptr) == CE_None,
                "the file cannot be read");
    }

private:
    // GDAL makes the picture smaller while it reads.
    void ReadSmaller(GDALRasterBand& band, const TPlace& place) {
        const double cellsAPixel = std::max(1.0, Columns / 360.0 / static_cast<double>(place.Scale));
        const int width = std::min(Columns, static_cast<int>(Width * cellsAPixel));
        const int height = std::min(Rows, static_cast<int>(Height * cellsAPixel));
        const int left =
            std::clamp(static_cast<int>(static_cast<double>(place.Center.X + 180) * Columns / 360) - width / 2, 0,
                       Columns - width);
        const int top = std::clamp(static_cast<int>(static_cast<double>(90 - place.Center.Y) * Rows / 180) - height / 2,
                                   0, Rows - height);
        const int shownWidth = static_cast<int>(width / cellsAPixel);
        const int shownHeight = static_cast<int>(height / cellsAPixel);
        FCells.resize(static_cast<std::size_t>(shownWidth) * static_cast<std::size_t>(shownHeight));
        Require(band.RasterIO(GF_Read, left, top, width, height, FCells.data(), shownWidth, shownHeight, GDT_Byte, 0, 0,
                              nullptr) == CE_None,
                "the file cannot be read");
    }

    GDALDataset* FDataset;
    std::vector<std::uint8_t> FCells;
};

void ShowFile(const std::string& path, const TFileKind& kind) {
    GDALAllRegister();
    GDALSetCacheMax64(64 << 20); // the host's to set
    const lmx::extended whole = Width / 360.0L;
    const lmx::extended full = Columns / 360.0L;
    const TPlace places[] = {{"the whole, first", whole, {0, 0}},
                             {"a pan of the whole", whole, {60, 10}},
                             {"a zoom by two", whole * 2, {60, 10}},
                             {"one cell a pixel", full, {10, 20}},
                             {"half a view on", full, {10 + Width / full / 2, 20}},
                             {"three cells a pixel", full / 3, {-60, -10}}};
    constexpr int count = 6;
    TBestTime shown[count];
    TBestTime read[count];
    TBestTime firstSeen;
    TBestTime again;
    double longestPaint = 0;
    for (int repetition = 0; repetition < (IsTiny ? 1 : Repetitions); ++repetition) {
        TView view(path);
        TRawFile raw(path);
        for (int i = 0; i < count; ++i) {
            double seen = 0;
            shown[i].Measure([&] { seen = view.Show(places[i]); });
            read[i].Measure([&] { raw.Read(places[i]); });
            if (i == 0)
                firstSeen.Take(seen);
        }
        again.Measure([&] { view.Show(places[3]); });
        longestPaint = std::max(longestPaint, view.LongestPaint());
    }
    std::printf("GeoTIFF of %d x %d bytes %s, in a view of %d x %d\n", Columns, Rows, kind.Name, Width, Height);
    for (int i = 0; i < count; ++i)
        std::printf("  %-20s %7.1f ms, GDAL's read %7.1f ms: %.2f\n", places[i].Name, shown[i].GetMilliseconds(),
                    read[i].GetMilliseconds(), shown[i] / read[i]);
    std::printf("  %-20s %7.1f ms: from the cache\n", "one cell a pixel", again.GetMilliseconds());
    std::printf("  something of the first picture after %.1f ms\n", firstSeen.GetMilliseconds());
    std::printf("  longest paint of a picture that is there %.1f ms\n", longestPaint);
    std::printf("  memory at most %ld MB in all\n", PeakMegabytes());
}

} // namespace

int main(int argc, char** argv) {
    const QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("large.tif")).toStdString();
    for (const TFileKind& kind : {TFileKind{"with overviews", true, true}, TFileKind{"without overviews", true, false},
                                  TFileKind{"in strips without overviews", false, false}}) {
        InChild([&] { MakeFile(path, kind); });
        InChild([&] {
            QApplication application(argc, argv);
            ShowFile(path, kind);
        });
    }
    return 0;
}
