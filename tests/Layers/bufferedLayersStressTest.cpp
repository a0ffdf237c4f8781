// Random work on many buffered layers, on all threads of the pool at once. Most of what it looks for is seen by the
// thread and address sanitizers; that every render ends and frees what it held is asserted.

#include <lmx/Coordinates/wskWorld.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/TestBufferedLayer.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>
#include <vector>

namespace lmx {
namespace {

using namespace tests;

/// Positions that all renders of a generation share, and none changes.
struct TContent {
    explicit TContent(std::shared_ptr<std::atomic<int>> living, int seed) : Living(std::move(living)) {
        ++*Living;
        for (int i = 0; i < 1000; ++i)
            Points.emplace_back((seed + i * 37) % 360 - 180, (seed + i * 17) % 180 - 90);
    }
    ~TContent() { --*Living; }
    TContent(const TContent&) = delete;
    TContent& operator=(const TContent&) = delete;

    std::vector<TMapPoint> Points;
    std::shared_ptr<std::atomic<int>> Living;
};

class TContentHandler final : public TRenderThreadHandler {
public:
    TContentHandler(TSize viewSize, const TMapArea& visibleMapArea, const TWorldViewportLocal& vpLocal,
                    std::shared_ptr<const TContent> content, TColor32 color)
        : TRenderThreadHandler(viewSize, visibleMapArea, vpLocal),
          FContent(std::move(content)),
          FColor(color) {}

protected:
    bool GetHasContent() const override { return FContent != nullptr; }
    void Draw(TBitmap32& bitmap, const TThreadPoolThread& thread) const override {
        bitmap.SetPenColor(FColor);
        for (const TMapPoint& point : FContent->Points) {
            if (thread.ShouldStop())
                return;
            const TPoint pixel = VPLocal.MapPointToPoint(point).ToPoint();
            bitmap.LineToS(pixel.X, pixel.Y);
        }
    }

private:
    std::shared_ptr<const TContent> FContent;
    TColor32 FColor;
};

class TContentLayer : public TBaseShapeLayer {
public:
    using TBaseShapeLayer::TBaseShapeLayer;

    void SetContent(std::shared_ptr<const TContent> content, bool keepPicture) {
        FContent = std::move(content);
        if (keepPicture)
            OutdateBuffer();
        Invalidate(!keepPicture);
    }
    QString GetLayerTypeName() const override { return QStringLiteral("Stress"); }
    void RenderBuffer(TSize viewSize, const TMapArea& visibleMapArea, const TWorldViewportLocal& vpLocal) override {
        StartRender(std::make_shared<TContentHandler>(viewSize, visibleMapArea, vpLocal, FContent, GetColor()));
    }

private:
    std::shared_ptr<const TContent> FContent;
};

/// A map whose layers, content, colours, view and world change at random.
class TRestlessMap {
public:
    explicit TRestlessMap(unsigned seed) : FRandom(seed) { MakeView(); }

    void Step() {
        switch (Below(12)) {
        case 0:
            AddLayer();
            break;
        case 1:
            RemoveLayer();
            break;
        case 2:
            WithLayer([this](TContentLayer& layer) { layer.SetContent(MakeContent(), Below(2) == 0); });
            break;
        case 3:
            WithLayer([](TContentLayer& layer) { layer.SetContent(nullptr, false); });
            break;
        case 4:
            WithLayer([this](TContentLayer& layer) { layer.SetColor(0xFF000000 + static_cast<TColor32>(Below(5))); });
            break;
        case 5:
            FViewport->SetTranslation({Below(200) - 100, Below(200) - 100});
            break;
        case 6:
            FViewport->SetScale(0.5L + Below(40) / 10.0L);
            break;
        case 7:
            FWorld->SetWorldSystem(Below(2) == 0 ? TLatLonWorldSystemFactory::GetObject()
                                                 : TLatLonAntimeridianWorldSystemFactory::GetObject());
            break;
        case 8:
            if (Below(10) == 0)
                MakeView();
            break;
        case 9:
            WithLayer([this](TContentLayer& layer) { StartRenderThread(layer); });
            break;
        case 10:
            WithLayer([](TContentLayer& layer) { layer.StopCurrentRenderThread(); });
            break;
        default:
            QCoreApplication::processEvents();
        }
        PaintLayers();
    }

    bool HaveThreadsEnded() const {
        return std::all_of(FThreads.begin(), FThreads.end(), [](const auto& thread) { return thread.expired(); });
    }
    void PaintNewContents() {
        AddLayer();
        for (TBaseMapLayer* layer : FManager->GetLayers()) {
            static_cast<TContentLayer*>(layer)->SetContent(MakeContent(), false);
            layer->Paint(FWorld.get(), FViewport.get(), FTarget);
        }
    }
    void ExpectCurrentPictures() const {
        EXPECT_GT(FManager->GetLayers().Count(), 0);
        for (const TBaseMapLayer* layer : FManager->GetLayers()) {
            const TBufferedBitmap* picture = static_cast<const TContentLayer*>(layer)->GetBufferedBitmap();
            ASSERT_NE(picture, nullptr);
            EXPECT_EQ(picture->MapArea, FViewport->GetVisibleMapArea());
        }
    }
    void RemoveAll() { FManager->GetLayers().Clear(); }
    int GetLivingContents() const { return *FLiving; }

private:
    int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(FRandom); }

    std::shared_ptr<const TContent> MakeContent() { return std::make_shared<TContent>(FLiving, Below(1000)); }

    void MakeView() {
        auto world = std::make_unique<TWorld>(TLatLonWorldSystemFactory::GetObject());
        auto viewport = std::make_unique<TWorldViewport>(world.get());
        viewport->SetViewSize({160, 120});
        FViewport = std::move(viewport);
        FWorld = std::move(world);
    }

    void AddLayer() {
        if (FManager->GetLayers().Count() == 25)
            return;
        auto layer = std::make_unique<TContentLayer>(FManager);
        layer->SetColor(0xFFFF0000);
        layer->SetContent(MakeContent(), false);
        FManager->GetLayers().Add(std::move(layer));
    }

    void RemoveLayer() {
        WithLayer([this](TContentLayer& layer) { FManager->GetLayers().Remove(&layer); });
    }

    template<class Action>
    void WithLayer(Action action) {
        const int count = FManager->GetLayers().Count();
        if (count > 0)
            action(static_cast<TContentLayer&>(*FManager->GetLayers()[Below(count)]));
    }

    void StartRenderThread(TContentLayer& layer) {
        const auto thread = layer.StartRenderThread(
            [layer = TBorrowed(&layer), content = MakeContent()](TThread& self) {
                auto picture = std::make_shared<std::unique_ptr<TBufferedBitmap>>(CreateBufferedBitmap({8, 8}, {}));
                for (const TMapPoint& point : content->Points)
                    if (self.GetTerminated())
                        return;
                    else
                        (*picture)->Bitmap.SetPixelS(point.ToPoint().X, point.ToPoint().Y, 0xFF00FF00);
                TThread::Synchronize([layer, picture] {
                    if (layer)
                        layer->SetBufferedBitmap(std::move(*picture));
                });
            },
            Below(2) == 0, Below(8) != 0);
        FThreads.push_back(thread);
    }

    void PaintLayers() {
        for (TBaseMapLayer* layer : FManager->GetLayers())
            if (Below(3) == 0)
                layer->Paint(FWorld.get(), FViewport.get(), FTarget);
    }

    std::mt19937 FRandom;
    std::shared_ptr<std::atomic<int>> FLiving = std::make_shared<std::atomic<int>>(0);
    std::shared_ptr<ILayerManager> FManager = TLayerManagerFactory::GetObject();
    std::unique_ptr<TWorld> FWorld;
    std::unique_ptr<TWorldViewport> FViewport;
    TBitmap32 FTarget{160, 120};
    std::vector<std::weak_ptr<TThread>> FThreads;
};

/// A pool makes its threads when it needs them: has all of them render at once.
void MakeAllThreadsOfThePool() {
    const auto manager = TLayerManagerFactory::GetObject();
    TWorld world(TLatLonWorldSystemFactory::GetObject());
    TWorldViewport viewport(&world);
    TBitmap32 target;
    const auto script = std::make_shared<TRenderScript>();
    script->IsOpen = false;
    for (int i = 0; i < RenderThreadPool().GetCount(); ++i) {
        auto layer = std::make_unique<TTestBufferedLayer>(manager);
        layer->Script = script;
        layer->Paint(&world, &viewport, target);
        manager->GetLayers().Add(std::move(layer));
    }
    EXPECT_TRUE(WaitUntil([&] { return script->Begun == RenderThreadPool().GetCount(); }));
    script->IsOpen = true;
    EXPECT_TRUE(PumpUntilRendersEnd());
}

TEST(BufferedLayersStress, LayersViewsAndContentsComeAndGoWhileAllThreadsRender) {
    MakeAllThreadsOfThePool();
    TRestlessMap map(20240229);
    for (int step = 0; step < 3000; ++step)
        map.Step();
    ASSERT_TRUE(PumpUntil([&] { return map.HaveThreadsEnded(); }));
    ASSERT_TRUE(PumpUntilRendersEnd());
    map.PaintNewContents();
    ASSERT_TRUE(PumpUntilRendersEnd());
    map.ExpectCurrentPictures();
    map.RemoveAll();
    EXPECT_TRUE(WaitUntil([&] { return map.GetLivingContents() == 0; }));
}

/// Draws more vertices than it could in seconds.
class TEndlessHandler final : public TRenderThreadHandler {
public:
    TEndlessHandler(TSize viewSize, const TMapArea& visibleMapArea, const TWorldViewportLocal& vpLocal,
                    std::shared_ptr<std::atomic<int>> drawing)
        : TRenderThreadHandler(viewSize, visibleMapArea, vpLocal),
          FDrawing(std::move(drawing)) {}

protected:
    void Draw(TBitmap32& bitmap, const TThreadPoolThread& thread) const override {
        ++*FDrawing;
        for (std::int64_t vertex = 0; vertex < 100'000'000'000 && !thread.ShouldStop(); ++vertex)
            bitmap.LineToS(static_cast<std::int32_t>(vertex % 97), static_cast<std::int32_t>(vertex % 89));
        --*FDrawing;
    }

private:
    std::shared_ptr<std::atomic<int>> FDrawing;
};

class TEndlessLayer : public TBufferedMapLayer {
public:
    using TBufferedMapLayer::TBufferedMapLayer;

    QString GetLayerTypeName() const override { return QStringLiteral("Endless"); }
    void RenderBuffer(TSize viewSize, const TMapArea& visibleMapArea, const TWorldViewportLocal& vpLocal) override {
        StartRender(std::make_shared<TEndlessHandler>(viewSize, visibleMapArea, vpLocal, Drawing));
    }

    std::shared_ptr<std::atomic<int>> Drawing = std::make_shared<std::atomic<int>>(0);
};

TEST(BufferedLayersStress, DestroyingALayerWhoseRenderWouldTakeSecondsReturnsAtOnce) {
    const auto manager = TLayerManagerFactory::GetObject();
    TWorld world(TLatLonWorldSystemFactory::GetObject());
    TWorldViewport viewport(&world);
    viewport.SetViewSize({100, 100});
    TBitmap32 target(100, 100);
    for (int i = 0; i < 20; ++i) {
        auto layer = std::make_unique<TEndlessLayer>(manager);
        const auto drawing = layer->Drawing;
        layer->Paint(&world, &viewport, target);
        ASSERT_TRUE(WaitUntil([&] { return *drawing == 1; }));
        layer.reset();
        EXPECT_TRUE(WaitUntil([&] { return *drawing == 0; }));
    }
    EXPECT_TRUE(PumpUntilRendersEnd());
}

} // namespace
} // namespace lmx
