// Map documents: saving and loading a relief of 4320 x 2160 singles embedded, against compressing and decompressing the
// same bytes in memory; and what a layer of a document of 10,000 layers costs against one of 1,000.

#include <benchmarks/Measuring.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerFactory.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/MapDoc/lmxMapDocReader.h>
#include <lmx/MapDoc/lmxMapDocWriter.h>

#include <QApplication>
#include <QBuffer>
#include <QTemporaryDir>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <libdeflate.h>
#include <zlib.h>

namespace {

using namespace lmx::bench;

constexpr int Repetitions = 5;
constexpr int Columns = Sized(4320);
constexpr int Rows = Sized(2160);
constexpr int Level = 6;

struct TMap {
    TMap() {
        View.SetLayerManager(Manager);
        View.CreateWorldAndViewport(lmx::TLatLonWorldSystemFactory::GetObject());
    }
    std::shared_ptr<lmx::ILayerManager> Manager = lmx::TLayerManagerFactory::GetObject();
    lmx::TMapViewControl View;
};

/// Hills in whole metres, rough like those of the world.
float Height(int column, int row) {
    double height = 0;
    double size = 2000;
    double step = 0.004;
    for (int octave = 0; octave < 7; ++octave, size *= 0.5, step *= 2.1)
        height += size * std::sin(column * step + octave) * std::cos(row * step * 1.1 - octave);
    const unsigned hash = (static_cast<unsigned>(column) * 73856093U ^ static_cast<unsigned>(row) * 19349663U) >> 7;
    return static_cast<float>(std::floor(height + hash % 16));
}

std::unique_ptr<lmx::TRealImage> Relief(int columns, int rows) {
    lmx::TImageHeader header;
    header.SetWidth(columns);
    header.SetHeight(rows);
    header.SetMinX(-180);
    header.SetMaxX(180);
    header.SetMinY(-90);
    header.SetMaxY(90);
    header.SetRefSystem(QStringLiteral("latlong"));
    header.SetMinValue(-4000);
    header.SetMaxValue(4000);
    auto image = std::make_unique<lmx::TRealImage>(QString(), header);
    for (int row = 1; row <= rows; ++row)
        for (int column = 1; column <= columns; ++column)
            image->SetCell(column, row, Height(column, row));
    return image;
}

void AddLayer(const TMap& map, int columns, int rows) {
    auto layer = std::make_unique<lmx::TIdrisiMapLayer>(map.Manager);
    layer->TakeImage(Relief(columns, rows));
    layer->SetColorCalc(lmx::TGradientColorCalculatorFactory::GetObject(
        -4000, 4000, lmx::TGradientFactory::GetObject({{0, 0xFF0000FF}, {0.5, 0xFFFFFFFF}, {1, 0xFFFF0000}})));
    map.Manager->GetLayers().Add(std::move(layer));
}

std::shared_ptr<lmx::IMapDocLayerPersistFactory> Keepers() {
    auto factory = lmx::TMapDocLayerPersistFactory::GetObject();
    lmx::TMapDocLayerPersistFactory::PopulateDefault(factory);
    return factory;
}

void Save(TMap& map, const QString& fileName) {
    lmx::TMapDocWriter(QStringLiteral("Bench"), Keepers())
        .Write(fileName, &map.View, lmx::TMapDocExternalResourcePolicy::erpEmbedIfPossible);
}

void Load(TMap& map, const QString& fileName, int layers) {
    auto factory = lmx::TLayerFactory::GetObject();
    lmx::TLayerFactory::PopulateDefault(factory);
    lmx::TMapDocReader(QStringLiteral("Bench"), factory, Keepers()).Read(fileName, &map.View);
    if (map.Manager->GetLayers().Count() != layers)
        std::abort();
}

/// The yardsticks: the bytes in memory and nothing else.
class TBytes {
public:
    explicit TBytes(const lmx::TAbstractImage& image) {
        QBuffer buffer(&FBytes);
        buffer.open(QIODevice::WriteOnly);
        image.SaveToStream(buffer);
        FCompressed.resize(FBytes.size() + FBytes.size() / 8 + 1024);
        FTarget.resize(FBytes.size());
    }
    ~TBytes() {
        libdeflate_free_compressor(FCompressor);
        libdeflate_free_decompressor(FDecompressor);
    }
    TBytes(const TBytes&) = delete;
    TBytes& operator=(const TBytes&) = delete;

    void Deflate() {
        FSize = libdeflate_deflate_compress(FCompressor, FBytes.constData(), Size(FBytes), FCompressed.data(),
                                            Size(FCompressed));
    }
    void Inflate() {
        if (libdeflate_deflate_decompress(FDecompressor, FCompressed.constData(), FSize, FTarget.data(), Size(FTarget),
                                          nullptr) != LIBDEFLATE_SUCCESS)
            std::abort();
    }
    void ZlibDeflate() {
        uLongf size = static_cast<uLongf>(FCompressed.size());
        compress2(reinterpret_cast<Bytef*>(FCompressed.data()), &size,
                  reinterpret_cast<const Bytef*>(FBytes.constData()), Size(FBytes), Level);
        FZlibSize = size;
    }
    void ZlibInflate() {
        uLongf size = static_cast<uLongf>(FTarget.size());
        if (uncompress(reinterpret_cast<Bytef*>(FTarget.data()), &size,
                       reinterpret_cast<const Bytef*>(FCompressed.constData()), FZlibSize) != Z_OK)
            std::abort();
    }
    double Share() const { return static_cast<double>(FSize) / static_cast<double>(FBytes.size()); }

private:
    static std::size_t Size(const QByteArray& bytes) { return static_cast<std::size_t>(bytes.size()); }

    QByteArray FBytes;
    QByteArray FCompressed;
    QByteArray FTarget;
    std::size_t FSize = 0;
    uLongf FZlibSize = 0;
    libdeflate_compressor* FCompressor = libdeflate_alloc_compressor(Level);
    libdeflate_decompressor* FDecompressor = libdeflate_alloc_decompressor();
};

void MeasureRelief(const QString& fileName) {
    TMap map;
    AddLayer(map, Columns, Rows);
    TBytes bytes(*dynamic_cast<lmx::TIdrisiMapLayer&>(*map.Manager->GetLayers()[0]).GetImage());
    TBestTime deflate, inflate, save, load, zlibDeflate, zlibInflate;
    for (int i = 0; i < (IsTiny ? 1 : Repetitions); ++i) {
        zlibDeflate.Measure([&] { bytes.ZlibDeflate(); });
        zlibInflate.Measure([&] { bytes.ZlibInflate(); });
        deflate.Measure([&] { bytes.Deflate(); });
        inflate.Measure([&] { bytes.Inflate(); });
        save.Measure([&] { Save(map, fileName); });
        TMap other;
        load.Measure([&] { Load(other, fileName, 1); });
    }
    std::printf("relief of %d x %d     saved %.0f ms = %.2f x libdeflate's %.0f ms (zlib: %.0f ms), to %.2f of its "
                "bytes\n",
                Columns, Rows, save.GetMilliseconds(), save / deflate, deflate.GetMilliseconds(),
                zlibDeflate.GetMilliseconds(), bytes.Share());
    std::printf("                          loaded and rendered %.0f ms = %.2f x libdeflate's %.0f ms (zlib: %.0f ms)\n",
                load.GetMilliseconds(), load / inflate, inflate.GetMilliseconds(), zlibInflate.GetMilliseconds());
}

void MeasureLayers(const QString& fileName) {
    const int counts[] = {Sized(1000), Sized(10000)};
    double saved[2];
    double loaded[2];
    for (int i = 0; i < 2; ++i) {
        TMap map;
        for (int layer = 0; layer < counts[i]; ++layer)
            AddLayer(map, 2, 2);
        TBestTime save, load;
        for (int repetition = 0; repetition < (IsTiny ? 1 : 2); ++repetition) {
            save.Measure([&] { Save(map, fileName); });
            TMap other;
            load.Measure([&] { Load(other, fileName, counts[i]); });
        }
        saved[i] = save.GetMilliseconds() / counts[i];
        loaded[i] = load.GetMilliseconds() / counts[i];
    }
    std::printf("a layer of %d           saved in %.0f us = %.2f x one of %d, loaded in %.0f us = %.2f x\n", counts[1],
                saved[1] * 1000, saved[1] / saved[0], counts[0], loaded[1] * 1000, loaded[1] / loaded[0]);
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("map.lmx"));
    MeasureRelief(fileName);
    MeasureLayers(fileName);
    return 0;
}
