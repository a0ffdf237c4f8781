// One paint of a view of 1920 x 1080 pixels with 1,000 rulers and 10,000 pins, each of them alone, and 1,000 query
// points. The rulers stand at fractions of a pixel, where a line costs most. The yardstick is clearing the buffer.

#include <benchmarks/Measuring.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxPolygons.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxPinMapLayer.h>
#include <lmx/Layers/lmxRulerMapLayer.h>

#include <QApplication>

#include <cstdio>
#include <memory>
#include <random>

namespace {

constexpr int RulerCount = lmx::bench::Sized(1'000);
constexpr int PinCount = lmx::bench::Sized(10'000);
constexpr int PointCount = lmx::bench::Sized(1'000);
constexpr int Repetitions = 15;

/// Pins as a small picture, drawn once and blended at each place: what a host does with many of them.
class SpriteRenderer : public lmx::TPinMapLayerPinRenderer {
public:
    SpriteRenderer() : FSprite(13, 13) {
        FSprite.SetDrawMode(lmx::TDrawMode::dmBlend);
        FSprite.SetCombineMode(lmx::TCombineMode::cmMerge);
        lmx::PolygonFS(FSprite, lmx::CirclePolygon(6.5, 6.5, 6), 0xFFFFFFFF);
        lmx::PolygonFS(FSprite, lmx::CirclePolygon(6.5, 6.5, 4.5), 0xFFC0392B);
    }
    bool RenderPin(lmx::TBitmap32& bitmap, lmx::TPinMapLayer*, lmx::TPin*, const lmx::TMapPoint& viewPoint,
                   lmx::TFloatRect& renderRect) override {
        const lmx::TPoint pixel = viewPoint.ToPoint();
        FSprite.DrawTo(bitmap, pixel.X - 6, pixel.Y - 6);
        renderRect = {pixel.X - 6.0, pixel.Y - 6.0, pixel.X + 7.0, pixel.Y + 7.0};
        return true;
    }

private:
    lmx::TBitmap32 FSprite;
};

/// Places all over the world.
class Places {
public:
    lmx::TMapPoint Next() { return {FLongitude(FRandom), FLatitude(FRandom)}; }

private:
    std::mt19937 FRandom{20240229};
    std::uniform_real_distribution<double> FLongitude{-180, 180};
    std::uniform_real_distribution<double> FLatitude{-90, 90};
};

void AddRulers(lmx::TRulerMapLayer& layer, Places& places) {
    for (int i = 0; i < RulerCount; ++i) {
        const lmx::TMapPoint place = places.Next();
        auto ruler = i % 2 == 0
                         ? std::make_unique<lmx::TRulerItem>(lmx::TRulerOrientation::roVertical, place.Y, 0xFF00FFFF)
                         : std::make_unique<lmx::TRulerItem>(lmx::TRulerOrientation::roHorizontal, place.X, 0x8000FFFF);
        layer.Add(std::move(ruler));
    }
}

void AddPins(lmx::TPinMapLayer& layer, Places& places) {
    for (int i = 0; i < PinCount; ++i) {
        const lmx::TMapPoint place = places.Next();
        layer.GetPins().Add(std::make_unique<lmx::TPin>(QString(), place.X, place.Y));
    }
}

void AddPoints(lmx::TInfoQueryPointLayer& layer, Places& places) {
    for (int i = 0; i < PointCount; ++i)
        layer.GetPoints().Add(std::make_unique<lmx::TInfoQueryPoint>(&layer, places.Next(), 0xFFFFA000));
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    SpriteRenderer renderer;
    const auto manager = lmx::TLayerManagerFactory::GetObject();
    lmx::TMapViewControl view;
    view.resize(lmx::bench::Sized(1920), lmx::bench::Sized(1080));
    view.SetLayerManager(manager);
    view.CreateWorldAndViewport(lmx::TLatLonWorldSystemFactory::GetObject());
    view.grab(); // gives a hidden widget its buffer
    view.GetViewport()->ZoomTo(view.GetWorldSystem()->Area());
    auto* pins =
        static_cast<lmx::TPinMapLayer*>(manager->GetLayers().Add(std::make_unique<lmx::TPinMapLayer>(manager)));
    pins->SetPinRenderer(&renderer);
    Places places;
    AddRulers(*view.GetSpRulersLayer(), places);
    AddPins(*pins, places);

    lmx::TBitmap32& buffer = view.GetBuffer();
    const auto paint = [&](lmx::TBaseMapLayer* layer) {
        return lmx::bench::BestMilliseconds(Repetitions,
                                            [&] { layer->Paint(view.GetWorld(), view.GetViewport(), buffer); });
    };
    const double clear = lmx::bench::BestMilliseconds(Repetitions, [&] { buffer.Clear(lmx::clWhite32); });
    const auto print = [clear](const char* name, double milliseconds) {
        std::printf("%-34s %8.2f ms %8.1f x clearing the buffer\n", name, milliseconds, milliseconds / clear);
    };
    std::printf("clearing 1920 x 1080: %.2f ms\n", clear);
    print("1,000 rulers", paint(view.GetSpRulersLayer()));
    print("10,000 pins", paint(pins));
    print("a frame of both", lmx::bench::BestMilliseconds(Repetitions, [&] { view.DoPaintBuffer(); }));
    AddPoints(*view.GetSpInfoQueryPointsLayer(), places);
    print("1,000 query points", paint(view.GetSpInfoQueryPointsLayer()));
    view.SetLayerManager(nullptr);
    return 0;
}
