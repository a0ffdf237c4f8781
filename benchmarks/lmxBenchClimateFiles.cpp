// What climate files cost beyond GDAL's own part. Listing a file of 200 variables should take at most 1.5 times GDAL's
// walk over its arrays and their attributes; a slice of 4320 x 2160 packed shorts, from the file to a coloured layer,
// at most 2.5 times GDAL's read of it in its own type and our colouring of an image that is at hand.

#include <benchmarks/ClimateFile.h>
#include <benchmarks/Measuring.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/DataSources/lmxClimateDataset.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>

#include <QApplication>
#include <QTemporaryDir>

#include <iomanip>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace lmx;
using namespace lmx::bench;

constexpr int Columns = Sized(4320);
constexpr int Rows = Sized(2160);

std::size_t WalkByGdal(const QString& path) {
    const auto file = OpenByGdal(path);
    const auto root = file->GetRootGroup();
    std::size_t texts = 0;
    for (const std::string& name : root->GetMDArrayNames()) {
        const auto array = root->OpenMDArray(name);
        texts += array->GetDimensions().size();
        for (const auto& attribute : array->GetAttributes()) {
            const char* const text = attribute->ReadAsString();
            texts += text ? std::string(text).size() : 0;
        }
    }
    return texts;
}

void ReportListing(const QTemporaryDir& folder) {
    const QString path = folder.filePath(QStringLiteral("many.nc"));
    MakeFile(path, {Sized(200), 36, 18, false, false});
    TBestTime gdal;
    TBestTime ours;
    for (int i = 0; i < (IsTiny ? 1 : 15); ++i) {
        // On the same thread: HDF5 keeps caches of its own for none.
        RunOnReader([&] {
            const TQuietGdal quiet;
            gdal.Measure([&] { WalkByGdal(path); });
        });
        ours.Measure([&] { const TClimateDataset dataset(path); });
    }
    std::cout << "listing " << Sized(200) << " variables: " << ours / gdal << " of GDAL's walk ("
              << gdal.GetMilliseconds() << " ms)\n";
}

void ReportSlice(const QTemporaryDir& folder, const char* name, bool isNetCdf4) {
    const QString path = folder.filePath(QString::fromLatin1(name) + QStringLiteral(".nc"));
    MakeFile(path, {1, Columns, Rows, isNetCdf4, true});
    const auto manager = TLayerManagerFactory::GetObject();
    const auto calculator = TGradientColorCalculatorFactory::GetObject(
        -100, 100, TGradientFactory::GetObject(std::vector<TColorStop>{{0.0, 0xFF30123BU}, {1.0, 0xFF7A0403U}}));
    TIdrisiMapLayer layer(manager);
    layer.SetColorCalc(calculator);
    const TClimateDataset dataset(path);
    TBestTime read;
    TBestTime colour;
    TBestTime picture;
    TBestTime ours;
    std::vector<std::int16_t> cells(std::size_t(Columns) * Rows);
    const auto file = ReadOnReader([&] { return OpenByGdal(path); });
    for (int i = 0; i < (IsTiny ? 1 : 9); ++i) {
        const auto step = std::size_t(i % 3);
        RunOnReader([&] {
            const auto array = file->GetRootGroup()->OpenMDArray("tas0");
            const GUInt64 starts[] = {step, 0, 0};
            const std::size_t counts[] = {1, std::size_t(Rows), std::size_t(Columns)};
            read.Measure([&] { array->Read(starts, counts, nullptr, nullptr, array->GetDataType(), cells.data()); });
        });
        ours.Measure([&] {
            TClimatePicture made;
            picture.Measure([&] { made = dataset.Read({0, step}); });
            layer.TakeImage(std::move(made.Image));
            layer.Render();
        });
        colour.Measure([&] { layer.Render(); });
    }
    const double yardstick = read.GetMilliseconds() + colour.GetMilliseconds();
    std::cout << name << ": a slice to a shown layer " << ours.GetMilliseconds() / yardstick << " of GDAL's read ("
              << read.GetMilliseconds() << " ms) and colouring (" << colour.GetMilliseconds()
              << " ms); the image alone " << picture.GetMilliseconds() << " ms\n";
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QTemporaryDir folder;
    std::cout << std::fixed << std::setprecision(2);
    ReportListing(folder);
    ReportSlice(folder, "classic", false);
    ReportSlice(folder, "netcdf4", true);
    return 0;
}
