#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxPinMapLayer.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TestMap.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

namespace lmx {
namespace {

/// Writes down what it is asked to draw, and draws a pixel at each place.
class TNotingRenderer : public TPinMapLayerPinRenderer {
public:
    bool RenderPin(TBitmap32& bitmap, TPinMapLayer* layer, TPin* pin, const TMapPoint& viewPoint,
                   TFloatRect& renderRect) override {
        Layer = layer;
        Drawn += pin->GetName() + u' ';
        Places.push_back(viewPoint);
        if (pin->GetName() == Refused)
            return false;
        const TPoint pixel = viewPoint.ToPoint();
        bitmap.SetPixelS(pixel.X, pixel.Y, clBlack32);
        renderRect = {pixel.X - 1.0, pixel.Y - 2.0, pixel.X + 3.0, pixel.Y + 4.0};
        return true;
    }

    TPinMapLayer* Layer = nullptr;
    QString Drawn;
    QString Refused = QStringLiteral("none");
    std::vector<TMapPoint> Places;
};

class PinMapLayer : public testing::Test {
protected:
    TPin* AddPin(const QString& name, extended lon, extended lat) {
        return Layer.GetPins().Add(std::make_unique<TPin>(name, lon, lat));
    }
    void Paint() { Layer.Paint(&Map.World, &Map.Viewport, Map.Bitmap); }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    TPinMapLayer Layer{Manager};
    TNotingRenderer Renderer;
    tests::TTestMap Map{20, 10};
};

TEST(Pin, CopiesItsAttributesInOrder) {
    TPin pin(QStringLiteral("Hobart"), 147.33L, -42.88L);
    pin.GetAttributes().Add(std::make_unique<TPinAttribute>(QStringLiteral("country"), QStringLiteral("Australia")));
    pin.GetAttributes().Add(std::make_unique<TPinAttribute>(QStringLiteral("height"), QStringLiteral("50 m")));
    const TPin copy(pin);
    EXPECT_EQ(copy.GetName(), QStringLiteral("Hobart"));
    EXPECT_EQ(copy.GetLon(), 147.33L);
    EXPECT_EQ(copy.GetLat(), -42.88L);
    ASSERT_EQ(copy.GetAttributes().Count(), 2);
    EXPECT_NE(copy.GetAttributes()[0], pin.GetAttributes()[0]);
    EXPECT_EQ(copy.GetAttributes()[0]->GetName(), QStringLiteral("country"));
    EXPECT_EQ(copy.GetAttributes()[1]->GetValue(), QStringLiteral("50 m"));
    pin.GetAttributes()[0]->SetValue(QStringLiteral("Tasmania"));
    EXPECT_EQ(copy.GetAttributes()[0]->GetValue(), QStringLiteral("Australia"));
}

TEST(Pin, BeginsAtZeroWithoutAttributes) {
    const TPin pin;
    EXPECT_EQ(pin.GetName(), QString());
    EXPECT_EQ(pin.GetLat(), 0);
    EXPECT_EQ(pin.GetLon(), 0);
    EXPECT_TRUE(pin.GetAttributes().IsEmpty());
}

TEST(PinAttribute, Copies) {
    TPinAttribute attribute;
    attribute.SetName(QStringLiteral("a"));
    attribute.SetValue(QStringLiteral("b"));
    const TPinAttribute copy(attribute);
    EXPECT_EQ(copy.GetName(), QStringLiteral("a"));
    EXPECT_EQ(copy.GetValue(), QStringLiteral("b"));
}

TEST_F(PinMapLayer, IsReadyAtOnceAndDrawsNothingItself) {
    EXPECT_TRUE(Layer.GetIsReadyToDraw());
    EXPECT_EQ(Layer.GetLayerTypeName(), QStringLiteral("Pins"));
    EXPECT_EQ(Layer.GetLayerClassName(), QStringLiteral("PinMapLayer"));
    EXPECT_EQ(Layer.GetPinRenderer(), nullptr);
    EXPECT_THROW(TPinMapLayer{nullptr}, EExArgumentNilException);
}

TEST_F(PinMapLayer, HasEachPinDrawnInOrderAtItsPlace) {
    TPin* first = AddPin(QStringLiteral("a"), -170, 85);
    TPin* second = AddPin(QStringLiteral("b"), -175.5L, 88);
    Layer.SetPinRenderer(&Renderer);
    Paint();
    EXPECT_EQ(Renderer.Drawn, QStringLiteral("a b "));
    EXPECT_EQ(Renderer.Layer, &Layer);
    EXPECT_EQ(Renderer.Places, (std::vector<TMapPoint>{{10, 5}, {4.5L, 2}})); // longitude first, latitude second
    EXPECT_EQ(Map.Bitmap.Pixel(10, 5), clBlack32);
    EXPECT_EQ(Layer.GetRenderRects().Count(), 2U);
    EXPECT_EQ(Layer.GetRenderRects().GetItem(first), (TFloatRect{9, 3, 13, 9}));
    EXPECT_TRUE(Layer.GetRenderRects().ContainsKey(second));
}

TEST_F(PinMapLayer, APinThatIsNotDrawnHasNoRectangle) {
    TPin* first = AddPin(QStringLiteral("a"), -170, 85);
    TPin* second = AddPin(QStringLiteral("b"), -175, 88);
    Renderer.Refused = QStringLiteral("a");
    Layer.SetPinRenderer(&Renderer);
    Paint();
    EXPECT_EQ(Renderer.Drawn, QStringLiteral("a b "));
    EXPECT_FALSE(Layer.GetRenderRects().ContainsKey(first));
    EXPECT_TRUE(Layer.GetRenderRects().ContainsKey(second));
}

TEST_F(PinMapLayer, EachPaintForgetsTheOneBefore) {
    TPin* pin = AddPin(QStringLiteral("a"), -170, 85);
    Layer.SetPinRenderer(&Renderer);
    Paint();
    EXPECT_TRUE(Layer.GetRenderRects().ContainsKey(pin));
    Renderer.Refused = QStringLiteral("a");
    Paint();
    EXPECT_EQ(Layer.GetRenderRects().Count(), 0U);
}

TEST_F(PinMapLayer, WithoutRendererTheRectanglesStay) {
    TPin* pin = AddPin(QStringLiteral("a"), -170, 85);
    Layer.SetPinRenderer(&Renderer);
    Paint();
    Layer.SetPinRenderer(nullptr);
    Map.Viewport.SetTranslation({3, 3});
    Paint();
    EXPECT_EQ(Renderer.Drawn, QStringLiteral("a "));
    EXPECT_EQ(Layer.GetRenderRects().GetItem(pin), (TFloatRect{9, 3, 13, 9}));
}

TEST_F(PinMapLayer, WithoutPinsTheRectanglesStay) {
    TPin* pin = AddPin(QStringLiteral("a"), -170, 85);
    Layer.SetPinRenderer(&Renderer);
    Paint();
    Layer.GetPins().Clear();
    Paint();
    EXPECT_TRUE(Layer.GetRenderRects().ContainsKey(pin)); // compared only: the pin is gone
}

TEST_F(PinMapLayer, ChangesOfPinsTellNobody) {
    int invalidations = 0;
    const TSubscription watch = Layer.GetOnInvalidated().Add([&](TBaseMapLayer*) { ++invalidations; });
    TPin* pin = AddPin(QStringLiteral("a"), -170, 85);
    pin->SetName(QStringLiteral("b"));
    pin->SetLon(1);
    pin->SetLat(2);
    Layer.SetPinRenderer(&Renderer);
    Layer.GetPins().Remove(pin);
    EXPECT_EQ(invalidations, 0);
}

TEST_F(PinMapLayer, APinMayNotStandInTheListTwice) {
    auto pin = std::make_unique<TPin>(QStringLiteral("a"), -170, 85);
    TPin* const address = pin.get();
    Layer.GetPins().Add(std::move(pin));
    Layer.GetPins().Add(std::unique_ptr<TPin>(address));
    Layer.SetPinRenderer(&Renderer);
    EXPECT_EQ(tests::MessageOf<EListError>([&] { Paint(); }), QStringLiteral("Duplicates not allowed"));
    static_cast<void>(Layer.GetPins().Extract(address).release()); // the other entry frees it
}

TEST_F(PinMapLayer, TheRendererMayTakePinsOut) {
    class TTakingRenderer : public TPinMapLayerPinRenderer {
    public:
        bool RenderPin(TBitmap32&, TPinMapLayer* layer, TPin*, const TMapPoint&, TFloatRect&) override {
            ++Calls;
            layer->GetPins().Clear();
            return false;
        }
        int Calls = 0;
    } renderer;
    AddPin(QStringLiteral("a"), -170, 85);
    AddPin(QStringLiteral("b"), -175, 88);
    Layer.SetPinRenderer(&renderer);
    Paint();
    EXPECT_EQ(renderer.Calls, 1);
}

/// Does as it is told with the first pin.
class TMeddlingRenderer : public TPinMapLayerPinRenderer {
public:
    bool RenderPin(TBitmap32&, TPinMapLayer*, TPin* pin, const TMapPoint&, TFloatRect&) override {
        Drawn += pin->GetName();
        if (Drawn.size() == 1)
            Meddle(pin);
        return true;
    }

    QString Drawn;
    std::function<void(TPin*)> Meddle;
};

TEST_F(PinMapLayer, TheRendererMayAddAndRemovePinsBeforeTheOneThatItDraws) {
    TMeddlingRenderer renderer;
    renderer.Meddle = [this](TPin* pin) {
        Layer.GetPins().Remove(pin);
        Layer.GetPins().Insert(0, std::make_unique<TPin>(QStringLiteral("x"), 0, 0));
        AddPin(QStringLiteral("y"), 0, 0);
    };
    for (const char* name : {"a", "b", "c"})
        AddPin(QString::fromLatin1(name), 0, 0);
    Layer.SetPinRenderer(&renderer);
    Paint();
    EXPECT_EQ(renderer.Drawn, "abc") << "each that was there, once";
    renderer.Drawn = u'-';
    Paint();
    EXPECT_EQ(renderer.Drawn, "-xbcy");
}

TEST_F(PinMapLayer, TheRendererMayBeTakenAwayByItself) {
    TMeddlingRenderer renderer;
    renderer.Meddle = [this](TPin*) { Layer.SetPinRenderer(nullptr); };
    AddPin(QStringLiteral("a"), 0, 0);
    AddPin(QStringLiteral("b"), 0, 0);
    Layer.SetPinRenderer(&renderer);
    Paint();
    EXPECT_EQ(renderer.Drawn, "a");
    EXPECT_EQ(Layer.GetRenderRects().Count(), 1U);
}

TEST_F(PinMapLayer, TheRendererMayEndTheView) {
    class TEndingRenderer final : public TPinMapLayerPinRenderer {
    public:
        explicit TEndingRenderer(std::unique_ptr<TWorldViewport>& viewport) : FViewport(viewport) {}
        bool RenderPin(TBitmap32&, TPinMapLayer*, TPin*, const TMapPoint&, TFloatRect&) override {
            ++Calls;
            FViewport.reset();
            return true;
        }
        int Calls = 0;

    private:
        std::unique_ptr<TWorldViewport>& FViewport;
    };
    auto viewport = std::make_unique<TWorldViewport>(&Map.World);
    TEndingRenderer ending(viewport);
    AddPin(QStringLiteral("a"), 1, 2);
    AddPin(QStringLiteral("b"), 3, 4);
    Layer.SetPinRenderer(&ending);
    Layer.Paint(&Map.World, viewport.get(), Map.Bitmap);
    EXPECT_EQ(ending.Calls, 1);
}

TEST_F(PinMapLayer, TheRendererMayFreeTheLayer) {
    auto layer = std::make_unique<TPinMapLayer>(Manager);
    layer->GetPins().Add(std::make_unique<TPin>(QStringLiteral("a"), 0, 0));
    layer->GetPins().Add(std::make_unique<TPin>(QStringLiteral("b"), 0, 0));
    TMeddlingRenderer renderer;
    renderer.Meddle = [&](TPin*) { layer.reset(); };
    layer->SetPinRenderer(&renderer);
    layer->Paint(&Map.World, &Map.Viewport, Map.Bitmap);
    EXPECT_EQ(layer, nullptr);
    EXPECT_EQ(renderer.Drawn, "a");
}

} // namespace
} // namespace lmx
