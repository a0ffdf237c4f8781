// A buffered layer on 1920 x 1080 pixels: what a paint costs while its picture is current, how soon a render that is
// given up is over, and how long the main thread is held while a map with a slow render is panned. The yardstick is one
// stretched drawing of the picture.

#include <benchmarks/Measuring.h>
#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Layers/Render/lmxRenderThreadHandler.h>
#include <lmx/Layers/lmxBufferedMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <tests/Support/CountedMemory.h>

#include <QApplication>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

namespace {

using namespace lmx::bench;

constexpr int Width = 1920;
constexpr int Height = 1080;
constexpr int Repetitions = Sized(50);
constexpr int Vertices = 10'000'000;

/// Draws a line of ten million vertices all over the picture.
class THandler final : public lmx::TRenderThreadHandler {
public:
    THandler(lmx::TSize viewSize, const lmx::TMapArea& visibleMapArea, const lmx::TWorldViewportLocal& vpLocal,
             std::shared_ptr<std::atomic<int>> drawing)
        : TRenderThreadHandler(viewSize, visibleMapArea, vpLocal),
          FDrawing(std::move(drawing)) {}

protected:
    void Draw(lmx::TBitmap32& bitmap, const lmx::TThreadPoolThread& thread) const override {
        ++*FDrawing;
        for (std::int32_t vertex = 0; vertex < Vertices && !thread.ShouldStop(); ++vertex)
            bitmap.LineToS(vertex * 7 % Width, vertex * 13 % Height);
        --*FDrawing;
    }

private:
    std::shared_ptr<std::atomic<int>> FDrawing;
};

class TLayer final : public lmx::TBufferedMapLayer {
public:
    using TBufferedMapLayer::TBufferedMapLayer;

    QString GetLayerTypeName() const override { return QStringLiteral("Benchmark"); }
    void RenderBuffer(lmx::TSize viewSize, const lmx::TMapArea& visibleMapArea,
                      const lmx::TWorldViewportLocal& vpLocal) override {
        StartRender(std::make_shared<THandler>(viewSize, visibleMapArea, vpLocal, Drawing));
    }

    std::shared_ptr<std::atomic<int>> Drawing = std::make_shared<std::atomic<int>>(0);
};

struct TView {
    TView() {
        Viewport.SetViewSize({Width, Height});
        Viewport.SetScale(5);
    }

    std::shared_ptr<lmx::ILayerManager> Manager = lmx::TLayerManagerFactory::GetObject();
    lmx::TWorld World{lmx::TLatLonWorldSystemFactory::GetObject()};
    lmx::TWorldViewport Viewport{&World};
    lmx::TBitmap32 Buffer{Width, Height};
    TLayer Layer{Manager};

    void Paint() { Layer.Paint(&World, &Viewport, Buffer); }
};

/// A picture whose pixels are one third lines.
std::unique_ptr<lmx::TBufferedBitmap> MakePicture(const lmx::TMapArea& area) {
    auto picture = lmx::CreateBufferedBitmap({Width, Height}, area);
    for (int y = 0; y < Height; ++y)
        for (int x = y % 3; x < Width; x += 3)
            picture->Bitmap.Pixel(x, y) = 0xFF204060;
    return picture;
}

double MeasureDraw(TView& view) {
    const auto picture = MakePicture({});
    const lmx::TRect shorter(0, 0, Width - 1, Height - 1);
    return BestMilliseconds(Repetitions,
                            [&] { view.Buffer.Draw(shorter, picture->Bitmap.GetBounds(), picture->Bitmap); });
}

void MeasurePaint(TView& view, double draw) {
    view.Layer.SetBufferedBitmap(MakePicture(view.Viewport.GetVisibleMapArea()));
    view.Paint();
    const long allocations = lmx::tests::AllocationsOf([&] { view.Paint(); });
    const double paint = BestMilliseconds(Repetitions, [&] { view.Paint(); });
    std::printf("paint with a current picture: %.2f x one stretched drawing (%.2f ms), %ld allocations\n", paint / draw,
                draw, allocations);
}

void MeasureCancel(TView& view) {
    std::vector<double> calls;
    std::vector<double> ends;
    for (int i = 0; i < Repetitions; ++i) {
        view.Layer.Invalidate(true);
        view.Paint();
        while (*view.Layer.Drawing != 1)
            std::this_thread::yield();
        const auto thread = view.Layer.GetCurrentThread();
        const auto start = TClock::now();
        thread->CancelOperation();
        calls.push_back(MillisecondsSince(start));
        while (*view.Layer.Drawing != 0)
            std::this_thread::yield();
        ends.push_back(MillisecondsSince(start));
    }
    std::sort(calls.begin(), calls.end());
    std::sort(ends.begin(), ends.end());
    std::printf(
        "giving up a render of %d vertices: the call takes %.4f ms (the longest of %d %.4f ms), and the render is "
        "over %.4f ms after it (the longest %.4f ms)\n",
        Vertices, calls[calls.size() / 2], Repetitions, calls.back(), ends[ends.size() / 2], ends.back());
}

void MeasurePan(TView& view, double draw) {
    view.Layer.SetBufferedBitmap(MakePicture(view.Viewport.GetVisibleMapArea()));
    std::vector<double> held;
    for (int step = 0; step < Sized(200); ++step) {
        const auto start = TClock::now();
        view.Viewport.SetTranslation({step % 50, -step % 30});
        view.Paint();
        QCoreApplication::processEvents();
        held.push_back(MillisecondsSince(start));
        std::this_thread::sleep_for(std::chrono::milliseconds(4)); // the render works on
    }
    std::sort(held.begin(), held.end());
    std::printf("panning over a render of %d vertices: a step holds the main thread %.2f ms (%.2f x one stretched "
                "drawing), the longest of %zu %.2f ms\n",
                Vertices, held[held.size() / 2], held[held.size() / 2] / draw, held.size(), held.back());
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    TView view;
    const double draw = MeasureDraw(view);
    MeasurePaint(view, draw);
    MeasureCancel(view);
    MeasurePan(view, draw);
    return 0;
}
