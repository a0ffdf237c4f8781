// One paint of a view of 1920 x 1080 pixels with 1,000 rulers and 10,000 pins, each of them alone, and 1,000 query
// points. The rulers stand at fractions of a pixel, where a line costs most. The yardstick is clearing the buffer.
// Then lists of 100,000 items are filled and cleared, alone and on a map that is shown. The yardsticks are the same
// list with 2,000 items, where 50 says that each takes the same time however many there are, and a vector of 100,000 of
// them: 2,000 fit into the caches of a processor and into memory that is at hand, so the vector, too, is at more
// than 50.

#include <benchmarks/Measuring.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Controls/lmxMapViewRulersPanelControl.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxPolygons.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxPinMapLayer.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>

#include <QApplication>

#include <cstdio>
#include <functional>
#include <memory>
#include <random>
#include <utility>
#include <vector>

namespace {

constexpr int RulerCount = lmx::bench::Sized(1'000);
constexpr int PinCount = lmx::bench::Sized(10'000);
constexpr int PointCount = lmx::bench::Sized(1'000);
constexpr int Repetitions = 15;
constexpr int FewItems = lmx::bench::Sized(2'000);
constexpr int ManyItems = lmx::bench::Sized(100'000);

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

/// Fills and clears a list.
struct TFilling {
    std::function<void()> Add;
    std::function<void()> Clear;
};

struct TFillingTimes {
    lmx::bench::TBestTime Fill;
    lmx::bench::TBestTime Clear;

    void Measure(const TFilling& filling, int count) {
        Fill.Measure([&] {
            for (int i = 0; i < count; ++i)
                filling.Add();
        });
        Clear.Measure(filling.Clear);
    }
};

void MeasureFilling(const char* name, const TFilling& list, const TFilling& plain) {
    TFillingTimes few, many, yardstick;
    for (int i = 0; i < lmx::bench::Sized(Repetitions); ++i)
        few.Measure(list, FewItems);
    for (int i = 0; i < 3; ++i) {
        many.Measure(list, ManyItems);
        yardstick.Measure(plain, ManyItems);
    }
    const auto print = [name](const char* what, const lmx::bench::TBestTime& time, double perFew, double perPlain) {
        std::printf("%-34s %-8s %8.1f ms %8.1f x 2,000 %8.1f x std::vector\n", name, what, time.GetMilliseconds(),
                    perFew, perPlain);
    };
    print("filled", many.Fill, many.Fill / few.Fill, many.Fill / yardstick.Fill);
    print("cleared", many.Clear, many.Clear / few.Clear, many.Clear / yardstick.Clear);
}

/// `list` against a vector of the same items, which `make` gives.
template<class Item, class Make, class Add>
void MeasureItems(const char* name, Make make, Add add, const std::function<void()>& clear) {
    std::vector<std::unique_ptr<Item>> plain;
    MeasureFilling(name, {[&] { add(make()); }, clear}, {[&] { plain.push_back(make()); }, [&] { plain.clear(); }});
}

void MeasureRulers(const char* name, lmx::TRulerMapLayer& layer) {
    MeasureItems<lmx::TRulerItem>(
        name, [] { return std::make_unique<lmx::TRulerItem>(lmx::TRulerOrientation::roVertical, 10, 0xFF00FFFF); },
        [&](auto ruler) { layer.Add(std::move(ruler)); }, [&] { layer.GetVRulers().Clear(); });
}

void MeasurePoints(const char* name, lmx::TInfoQueryPointLayer& layer) {
    MeasureItems<lmx::TInfoQueryPoint>(
        name, [&] { return std::make_unique<lmx::TInfoQueryPoint>(&layer, lmx::TMapPoint(1, 2), 0xFFFFA000); },
        [&](auto point) { layer.GetPoints().Add(std::move(point)); }, [&] { layer.GetPoints().Clear(); });
}

void MeasurePins(const char* name, lmx::TPinMapLayer& layer) {
    MeasureItems<lmx::TPin>(
        name, [] { return std::make_unique<lmx::TPin>(QString(), 1, 2); },
        [&](auto pin) { layer.GetPins().Add(std::move(pin)); }, [&] { layer.GetPins().Clear(); });
}

void MeasureLayers(const char* name, const std::shared_ptr<lmx::ILayerManager>& manager) {
    MeasureItems<lmx::TSelectionMapLayer>(
        name, [&] { return std::make_unique<lmx::TSelectionMapLayer>(manager); },
        [&](auto layer) { manager->GetLayers().Add(std::move(layer)); }, [&] { manager->GetLayers().Clear(); });
}

/// Rulers, points, pins and layers that nobody looks at, then on a map with a list of its rulers.
void MeasureFillings() {
    const auto manager = lmx::TLayerManagerFactory::GetObject();
    {
        lmx::TRulerMapLayer rulers(manager);
        lmx::TInfoQueryPointLayer points(manager);
        lmx::TPinMapLayer pins(manager);
        MeasureRulers("100,000 rulers", rulers);
        MeasurePoints("100,000 query points", points);
        MeasurePins("100,000 pins", pins);
    }
    MeasureLayers("100,000 layers", manager);
    lmx::TMapViewControl view;
    view.resize(400, 300);
    view.SetLayerManager(manager);
    view.CreateWorldAndViewport(lmx::TLatLonWorldSystemFactory::GetObject());
    MeasureRulers("100,000 rulers of a view", *view.GetSpRulersLayer());
    MeasurePoints("100,000 query points of a view", *view.GetSpInfoQueryPointsLayer());
    MeasureLayers("100,000 layers of a view", manager);
    lmx::TMapViewRulersPanelControl panel;
    panel.SetRulersLayer(view.GetSpRulersLayer());
    MeasureRulers("100,000 rulers in a panel", *view.GetSpRulersLayer());
    panel.SetRulersLayer(nullptr);
    view.SetLayerManager(nullptr);
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
    lmx::TPinMapLayer* pins = manager->GetLayers().Add(std::make_unique<lmx::TPinMapLayer>(manager));
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
    MeasureFillings();
    return 0;
}
