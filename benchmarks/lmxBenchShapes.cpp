// Overlays: the land outline of the world at 1:50 million as a picture of 1920 x 1080, whole and zoomed in eightfold,
// against the same polylines by QPainter; what a paint with a current picture costs; and a file of ten million vertices
// that is made on the spot: loading, rendering, memory, cancelling, and how long the main thread is held.

#include <benchmarks/Measuring.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Layers/Render/Private/lmxRenderThreadPool.h>
#include <lmx/Layers/Render/Private/lmxShapeFileRender.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <tests/Support/CountedMemory.h>

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <QtEndian>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <random>
#include <thread>
#include <time.h>
#include <vector>

namespace {

using namespace lmx::bench;

constexpr int Repetitions = 25;
constexpr lmx::TSize ViewSize(1920, 1080);
constexpr lmx::TColor32 Ink = 0xFF202020;
constexpr double MicrosecondsPerMillisecond = 1000;

/// What this thread itself works, however busy the machine is.
double OwnMillisecondsOf(const std::function<void()>& work) {
    const auto now = [] {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
    };
    const double start = now();
    work();
    return now() - start;
}

/// A view whose middle shows `center`, at pixels per degree.
lmx::TWorldViewportLocal ViewOf(lmx::TWorld& world, lmx::extended scale, const lmx::TMapPoint& center) {
    lmx::TWorldViewport viewport(&world);
    viewport.SetViewSize(ViewSize);
    viewport.SetScale(scale);
    viewport.SetCenter(center);
    return viewport.GetLocal();
}

std::unique_ptr<lmx::TBufferedBitmap> Render(const lmx::TShpFile& file, const lmx::TWorldViewportLocal& view) {
    const lmx::TShapeFileLayerRenderThreadHandler handler(ViewSize, {}, view, file.GetData(), nullptr, Ink);
    return handler.Render(*lmx::RenderThreadPool().GetThread());
}

/// The same lines in pixels, ready for QPainter: it is not charged for the conversion.
std::vector<QPolygonF> PolylinesOf(const lmx::TShpFile& file, const lmx::TWorldViewportLocal& view) {
    std::vector<QPolygonF> polylines;
    for (std::size_t i = 0; i < file.GetPolygonCount(); ++i)
        for (std::size_t part = 0; part < file.GetPolygon(i).GetPartCount(); ++part) {
            QPolygonF polyline;
            for (const lmx::TShpPoint& vertex : file.GetPolygon(i).GetPart(part)) {
                const lmx::TMapPoint pixel = view.MapPointToPoint({vertex.X, vertex.Y});
                polyline << QPointF(static_cast<double>(pixel.X), static_cast<double>(pixel.Y));
            }
            polylines.push_back(polyline);
        }
    return polylines;
}

void PaintWithQt(QImage& picture, const std::vector<QPolygonF>& polylines) {
    picture.fill(0);
    QPainter painter(&picture);
    painter.setPen(QPen(QColor(0x20, 0x20, 0x20), 1));
    for (const QPolygonF& polyline : polylines)
        painter.drawPolyline(polyline);
}

void MeasureLand(const lmx::TShpFile& land, const char* name, lmx::extended scale, const lmx::TMapPoint& center) {
    lmx::TWorld world(lmx::TLatLonWorldSystemFactory::GetObject());
    const lmx::TWorldViewportLocal view = ViewOf(world, scale, center);
    const std::vector<QPolygonF> polylines = PolylinesOf(land, view);
    const double ours = BestMilliseconds(Repetitions, [&] { Render(land, view); });
    double qt = 1e300; // the faster one of its two formats with alpha
    for (const auto format : {QImage::Format_ARGB32_Premultiplied, QImage::Format_ARGB32})
        qt = std::min(qt, BestMilliseconds(Repetitions, [&] {
                          QImage picture(ViewSize.cx, ViewSize.cy, format);
                          PaintWithQt(picture, polylines);
                      }));
    const double clear = BestMilliseconds(Repetitions, [&] { lmx::CreateBufferedBitmap(ViewSize, {}); });
    const double qtClear = BestMilliseconds(Repetitions, [&] {
        QImage empty(ViewSize.cx, ViewSize.cy, QImage::Format_ARGB32_Premultiplied);
        empty.fill(0);
    });
    std::printf("%-22s %zu vertices: a render %.2f ms, of which the empty picture %.2f; QPainter %.2f ms, %.2f; its "
                "lines alone cost %.1f x ours, all in all %.1f x\n",
                name, land.GetVertexCount(), ours, clear, qt, qtClear, (qt - qtClear) / (ours - clear), qt / ours);
}

void MeasurePaint(const QString& landName) {
    const auto manager = lmx::TLayerManagerFactory::GetObject();
    lmx::TMapViewControl view(nullptr, {});
    view.resize(ViewSize.cx, ViewSize.cy);
    view.SetLayerManager(manager);
    auto added = std::make_unique<lmx::TShapeFileLayer>(manager);
    lmx::TShapeFileLayer& layer = *added;
    layer.SetColor(Ink);
    layer.TakeShpFile(lmx::TShpFile::LoadFromFile(landName, nullptr));
    manager->GetLayers().Add(std::move(added));
    view.grab();
    view.GetViewport()->ZoomTo(view.GetWorldSystem()->Area());
    lmx::TBitmap32& buffer = view.GetBuffer();
    const auto paint = [&] { layer.Paint(view.GetWorld(), view.GetViewport(), buffer); };
    paint();
    while (layer.GetCurrentThread())
        QCoreApplication::processEvents();
    const lmx::TBitmap32& picture = layer.GetBufferedBitmap()->Bitmap;
    const lmx::TRect stretched(0, 0, ViewSize.cx - 1, ViewSize.cy - 1);
    const double copy = BestMilliseconds(Repetitions, [&] { buffer.Draw(stretched, picture.GetBounds(), picture); });
    const double current = BestMilliseconds(Repetitions, paint);
    std::printf("%-22s %.3f ms = %.2f x one stretched copy, %ld allocations\n", "current picture", current,
                current / copy, lmx::tests::AllocationsOf(paint));
}

/// A shape file in the making, record by record.
class TShapeWriter {
public:
    explicit TShapeWriter(const QString& fileName) : FFile(fileName) {
        if (!FFile.open(QIODevice::WriteOnly))
            std::abort();
        QByteArray header(100, '\0');
        qToBigEndian<std::int32_t>(9994, header.data());
        FFile.write(header);
    }

    void Polygon(const std::vector<lmx::TShpPoint>& ring) {
        const auto count = static_cast<std::int32_t>(ring.size());
        QByteArray record(8 + 48, '\0');
        qToBigEndian<std::int32_t>((48 + 16 * count) / 2, record.data() + 4);
        qToLittleEndian<std::int32_t>(5, record.data() + 8);
        qToLittleEndian<std::int32_t>(1, record.data() + 44);
        qToLittleEndian(count, record.data() + 48);
        Write(record, ring);
    }
    void Point(const lmx::TShpPoint& point) {
        QByteArray record(8 + 4, '\0');
        qToBigEndian<std::int32_t>(10, record.data() + 4);
        qToLittleEndian<std::int32_t>(1, record.data() + 8);
        Write(record, {point});
    }

private:
    void Write(QByteArray record, const std::vector<lmx::TShpPoint>& points) {
        for (const lmx::TShpPoint& point : points) {
            char bytes[16];
            qToLittleEndian(point.X, bytes);
            qToLittleEndian(point.Y, bytes + 8);
            record.append(bytes, sizeof bytes);
        }
        FFile.write(record);
    }

    QFile FFile;
};

/// Ten million vertices of a ragged coast: 20,000 islands of 500 vertices, all over the world.
void WriteLargeFile(const QString& fileName) {
    constexpr int Islands = Sized(20'000);
    constexpr int Vertices = 500;
    TShapeWriter writer(fileName);
    std::vector<lmx::TShpPoint> ring(Vertices);
    for (int island = 0; island < Islands; ++island) {
        const double x = -178 + 356.0 * (island % 200) / 200;
        const double y = -88 + 176.0 * (island / 200) / 100;
        for (int i = 0; i < Vertices; ++i) {
            const double angle = 6.283185307179586 * i / (Vertices - 1);
            const double radius = 0.8 + 0.1 * std::sin(37 * angle) + 0.05 * std::sin(111 * angle + island);
            ring[static_cast<std::size_t>(i)] = {x + radius * std::cos(angle), y + radius * std::sin(angle)};
        }
        writer.Polygon(ring);
    }
}

void MeasureLoading(const QString& name, const char* title, std::unique_ptr<lmx::TShpFile>& file) {
    QByteArray bytes;
    const double read = BestMilliseconds(3, [&] {
        QFile raw(name);
        if (raw.open(QIODevice::ReadOnly))
            bytes = raw.readAll();
    });
    bytes.clear();
    const double load = BestMilliseconds(3, [&] { file = lmx::TShpFile::LoadFromFile(name, nullptr); });
    std::printf("%-22s loaded in %.0f ms = %.1f x reading its bytes; %zu vertices of %.2f bytes\n", title, load,
                load / read, file->GetVertexCount(),
                static_cast<double>(file->GetMemorySize()) / static_cast<double>(file->GetVertexCount()));
}

void MeasureZooms(const lmx::TShpFile& file) {
    lmx::TWorld world(lmx::TLatLonWorldSystemFactory::GetObject());
    const double clear = BestMilliseconds(Repetitions, [&] { lmx::CreateBufferedBitmap(ViewSize, {}); });
    double whole = 0;
    for (const double zoom : {1.0, 8.0, 64.0, 512.0}) {
        const auto view = ViewOf(world, 1920 / 360.0 * zoom, {20.3, 10.2});
        const double time = BestMilliseconds(5, [&] { Render(file, view); });
        whole = zoom == 1 ? time : whole;
        std::printf("%-22s zoom %3.0f: a render %.2f ms, 1/%.0f of the whole world's; without the empty picture (%.2f "
                    "ms) 1/%.0f\n",
                    "", zoom, time, whole / time, clear, (whole - clear) / std::max(time - clear, 1e-3));
    }
}

/// Small shapes in no order: the 200,000 lakes of a continent as a database gives them, and as many places.
void MeasureScattered() {
    constexpr int Shapes = Sized(200'000);
    const QTemporaryDir folder;
    std::mt19937 random(1);
    std::uniform_real_distribution<double> x(-178, 178);
    std::uniform_real_distribution<double> y(-88, 88);
    std::unique_ptr<lmx::TShpFile> file;
    for (const int vertices : {5, 15, 50}) {
        const QString name = folder.filePath(QStringLiteral("lakes.shp"));
        {
            TShapeWriter writer(name);
            for (int i = 0; i < Shapes; ++i) {
                std::vector<lmx::TShpPoint> ring;
                const lmx::TShpPoint middle{x(random), y(random)};
                for (int j = 0; j < vertices; ++j) {
                    const double angle = 6.283185307179586 * j / (vertices - 1);
                    ring.push_back({middle.X + 0.1 * std::cos(angle), middle.Y + 0.1 * std::sin(angle)});
                }
                writer.Polygon(ring);
            }
        }
        MeasureLoading(name, "scattered shapes", file);
        MeasureZooms(*file);
    }
    const QString name = folder.filePath(QStringLiteral("places.shp"));
    {
        TShapeWriter writer(name);
        for (int i = 0; i < 5 * Shapes; ++i)
            writer.Point({x(random), y(random)});
    }
    MeasureLoading(name, "scattered points", file);
    MeasureZooms(*file);
}

void MeasureLarge() {
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("large.shp"));
    WriteLargeFile(name);
    std::unique_ptr<lmx::TShpFile> file;
    MeasureLoading(name, "ten million", file);
    MeasureZooms(*file);

    const auto manager = lmx::TLayerManagerFactory::GetObject();
    lmx::TMapViewControl control(nullptr, {});
    control.resize(ViewSize.cx, ViewSize.cy);
    control.SetLayerManager(manager);
    auto added = std::make_unique<lmx::TShapeFileLayer>(manager);
    lmx::TShapeFileLayer* layer = added.get();
    layer->SetColor(Ink);
    double hold = OwnMillisecondsOf([&] { layer->TakeShpFile(std::move(file)); });
    manager->GetLayers().Add(std::move(added));
    control.grab();
    control.GetViewport()->ZoomTo(control.GetWorldSystem()->Area());
    for (int i = 0; i < 100; ++i) { // a drag: each paint shows the old picture and starts the render anew
        control.GetViewport()->SetTranslation({control.GetViewport()->GetTranslation().X + 3, 0});
        hold = std::max(hold, OwnMillisecondsOf([&] {
                            layer->Paint(control.GetWorld(), control.GetViewport(), control.GetBuffer());
                        }));
        hold = std::max(hold,
                        OwnMillisecondsOf([] { QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); }));
    }
    while (layer->GetCurrentThread())
        hold = std::max(hold, OwnMillisecondsOf([] { QCoreApplication::processEvents(); }));
    std::printf("%-22s the main thread works for %.2f ms at most between two events of a drag\n", "", hold);

    std::vector<double> waits;
    for (int i = 0; i < 20; ++i) {
        layer->Invalidate(true);
        layer->Paint(control.GetWorld(), control.GetViewport(), control.GetBuffer());
        const auto render = layer->GetCurrentThread();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        waits.push_back(MillisecondsOf([&] {
            render->CancelOperation();
            while (lmx::RenderThreadPool().GetRunningCount() > 0)
                std::this_thread::yield();
        }));
    }
    std::ranges::sort(waits);
    std::printf("%-22s a cancelled render ends within %.0f us (best of 20), %.0f us (median)\n", "",
                waits.front() * MicrosecondsPerMillisecond, waits[waits.size() / 2] * MicrosecondsPerMillisecond);
    const double destroy = OwnMillisecondsOf([&] { manager->GetLayers().Remove(layer); });
    std::printf("%-22s the layer and its file are destroyed in %.2f ms\n", "", destroy);
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const QString name = QStringLiteral(LMX_EXAMPLE_DATA "/ne_50m_land.shp");
    const auto land = lmx::TShpFile::LoadFromFile(name, nullptr);
    MeasureLand(*land, "land, whole world", 1920 / 360.0L, {0, 0});
    MeasureLand(*land, "land, zoomed in 8 x", 8 * 1920 / 360.0L, {15, 45});
    MeasurePaint(name);
    MeasureScattered();
    MeasureLarge();
    return 0;
}
