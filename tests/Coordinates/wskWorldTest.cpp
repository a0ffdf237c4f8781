#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace lmx {
namespace {

using tests::MessageOf;

constexpr extended NaN = std::numeric_limits<extended>::quiet_NaN();
constexpr std::int32_t LowestPixel = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t HighestPixel = std::numeric_limits<std::int32_t>::max();

/// A system as a host might bring it: longitude and latitude with another area or other axes.
class THostWorldSystem : public IWorldSystem {
public:
    THostWorldSystem(const TMapArea& area, TMapOrientation orientation) : FArea(area), FOrientation(orientation) {}

    QString Name() const override { return FBase->Name(); }
    QString Identifier() const override { return QStringLiteral("host"); }
    QString Units() const override { return FBase->Units(); }
    TMeridian Merdian() const override { return FBase->Merdian(); }
    QString GetGroup() const override { return QStringLiteral("host"); }
    const TMapArea& Area() const override { return FArea; }
    bool IsTranslationRequired(const TMapArea& area) const override { return FBase->IsTranslationRequired(area); }
    std::vector<TMapArea> TranslateArea(const TMapArea& area) const override { return FBase->TranslateArea(area); }
    TMapOrientation GetOrientation() const override { return FOrientation; }
    TMapPoint ToWorldPoint(const TMapPoint& point) const override { return FBase->ToWorldPoint(point); }
    bool IsWorldPoint(const TMapPoint& point) const override { return FBase->IsWorldPoint(point); }
    TMapPoint ToLocalPoint(const TMapArea& area, const TMapPoint& point) const override {
        return FBase->ToLocalPoint(area, point);
    }
    TMapArea ToWorldArea(const TMapArea& area) const override { return FBase->ToWorldArea(area); }
    bool Wraps(const TMapPoint& a, const TMapPoint& b) const override { return FBase->Wraps(a, b); }
    TMapArea CreateMapArea(extended left, extended bottom, extended right, extended top) const override {
        return FBase->CreateMapArea(left, bottom, right, top);
    }
    TMapArea ConstrainRect(const TMapArea& area) const override { return FBase->ConstrainRect(area); }

private:
    std::shared_ptr<IWorldSystem> FBase = TLatLonWorldSystemFactory::GetObject();
    TMapArea FArea;
    TMapOrientation FOrientation;
};

struct TListener : TEventReceiver {
    std::vector<std::string> Heard;
    std::vector<TWorldViewport*> Senders;

    void Listen(TWorldViewport& viewport) {
        viewport.GetOnChanged().Add(this, &TListener::Viewport_Changed);
        viewport.GetOnViewSizeChanged().Add(this, &TListener::Viewport_ViewSizeChanged);
    }
    void Viewport_Changed(TWorldViewport* viewport) { Hear("changed", viewport); }
    void Viewport_ViewSizeChanged(TWorldViewport* viewport) { Hear("size", viewport); }
    void Hear(const char* what, TWorldViewport* viewport) {
        Heard.emplace_back(what);
        Senders.push_back(viewport);
    }
};

using TNotes = std::vector<std::string>;

struct WorldViewport : testing::Test {
    TWorld World{TLatLonWorldSystemFactory::GetObject()};
    TWorldViewport Viewport{&World};
    TListener Listener;

    void Listen() { Listener.Listen(Viewport); }
    void UseSystem(const TMapArea& area, TMapOrientation orientation = {1, -1}) {
        World.SetWorldSystem(std::make_shared<THostWorldSystem>(area, orientation));
    }
};

// ---- TWorld

TEST_F(WorldViewport, AndWorldNeedTheirArguments) {
    EXPECT_EQ(MessageOf<EArgumentException>([] { TWorld world(nullptr); }), "WorldSystem");
    EXPECT_EQ(MessageOf<EArgumentException>([] { TWorldViewport viewport(nullptr); }), "World");
    EXPECT_EQ(MessageOf<EArgumentException>([] { TWorldViewportLocal local(nullptr, 1, {}); }), "World");
}

TEST_F(WorldViewport, ConvertsNothingWhileTheWorldHasNoSystem) {
    const TWorldViewportLocal local = Viewport.GetLocal();
    Listen();
    World.SetWorldSystem(nullptr);
    EXPECT_EQ(World.GetWorldSystem(), nullptr);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { Viewport.MapPointToPoint({1, 2}); }), "World system is nil");
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { local.PointToMapPoint({1, 2}); }), "World system is nil");
    World.SetWorldSystem(TLatLonWorldSystemFactory::GetObject());
    EXPECT_TRUE(Viewport.MapPointToPoint({-180, 90}).Equals({0, 0}));
}

TEST_F(WorldViewport, RegistersWithItsWorldUntilItGoes) {
    auto second = std::make_unique<TWorldViewport>(&World);
    EXPECT_EQ(World.GetViewports(), (std::vector<TWorldViewport*>{&Viewport, second.get()}));
    EXPECT_EQ(second->GetWorld(), &World);
    second.reset();
    EXPECT_EQ(World.GetViewports(), std::vector<TWorldViewport*>{&Viewport});
}

TEST_F(WorldViewport, OfAChangedWorldSystemIsToldInOrderAndStaysAsItWas) {
    TWorldViewport second(&World);
    Viewport.SetViewSize({200, 100});
    Viewport.SetScale(3);
    Viewport.SetTranslation({7, 8});
    Listener.Listen(second);
    Listen();
    World.SetWorldSystem(TNZMGWorldSystemFactory::GetObject());
    EXPECT_EQ(World.GetWorldSystem(), TNZMGWorldSystemFactory::GetObject());
    EXPECT_EQ(Listener.Heard, (TNotes{"changed", "changed"}));
    EXPECT_EQ(Listener.Senders, (std::vector<TWorldViewport*>{&Viewport, &second}));
    EXPECT_EQ(Viewport.GetScale(), 3);
    EXPECT_EQ(Viewport.GetTranslation(), TPoint(7, 8));
    EXPECT_EQ(Viewport.MapPointToPoint({1900000, 7000000}), TMapPoint(7, 8));
}

TEST_F(WorldViewport, IsNotToldOfTheWorldSystemThatItHas) {
    Listen();
    World.SetWorldSystem(TLatLonWorldSystemFactory::GetObject());
    EXPECT_TRUE(Listener.Heard.empty());
}

TEST_F(WorldViewport, MayGoAndComeWhileTheWorldTellsOfItsSystem) {
    auto victim = std::make_unique<TWorldViewport>(&World);
    std::unique_ptr<TWorldViewport> late;
    Listener.Listen(*victim);
    const TSubscription subscription = Viewport.GetOnChanged().Add([&](TWorldViewport*) {
        victim.reset();
        late = std::make_unique<TWorldViewport>(&World);
        Listener.Listen(*late);
    });
    World.SetWorldSystem(TNZMGWorldSystemFactory::GetObject());
    EXPECT_TRUE(Listener.Heard.empty());
}

TEST(World, MayGoWhileItTellsOfItsSystem) {
    auto world = std::make_unique<TWorld>(TLatLonWorldSystemFactory::GetObject());
    TWorldViewport first(world.get());
    TWorldViewport second(world.get());
    TListener listener;
    listener.Listen(second);
    const TSubscription subscription = first.GetOnChanged().Add([&](TWorldViewport*) { world.reset(); });
    world->SetWorldSystem(TNZMGWorldSystemFactory::GetObject());
    EXPECT_EQ(world, nullptr);
    EXPECT_TRUE(listener.Heard.empty());
}

TEST(World, LeavesViewportsThatOutliveItUsable) {
    auto world = std::make_unique<TWorld>(TLatLonWorldSystemFactory::GetObject());
    TWorldViewport viewport(world.get());
    const TWorldViewportLocal local = viewport.GetLocal();
    world.reset();
    EXPECT_EQ(viewport.GetWorld(), nullptr);
    EXPECT_EQ(viewport.MapPointToPoint({0, 0}), TMapPoint(180, 90));
    EXPECT_EQ(local.MapPointToPoint({0, 0}), TMapPoint(180, 90));
    EXPECT_EQ(MessageOf<EArgumentException>([&] { viewport.GetLocal(); }), "World");
}

// ---- Conversions

TEST_F(WorldViewport, BeginsAtOnePixelPerMapUnit) {
    EXPECT_EQ(Viewport.GetScale(), 1);
    EXPECT_EQ(Viewport.GetMinScale(), 0.0001L);
    EXPECT_EQ(Viewport.GetMaxScale(), 100000);
    EXPECT_EQ(Viewport.GetTranslation(), TPoint(0, 0));
    EXPECT_EQ(Viewport.GetViewSize(), TSize(0, 0));
    EXPECT_FALSE(Viewport.GetIsPanning());
}

struct TConversionRow {
    const char* Name;
    const char* System;
    extended Scale;
    TPoint Translation;
    TMapPoint Map;
    TMapPoint Pixel;
};

class Conversion : public testing::TestWithParam<TConversionRow> {};

TEST_P(Conversion, FromMapToPixelAndBack) {
    const TConversionRow& row = GetParam();
    TWorld world(TWorldSystemFactory::GetObject(QString::fromLatin1(row.System)));
    TWorldViewport viewport(&world);
    viewport.SetScale(row.Scale);
    viewport.SetTranslation(row.Translation);
    EXPECT_EQ(viewport.MapPointToPoint(row.Map), row.Pixel);
    EXPECT_EQ(viewport.PointToMapPoint(row.Pixel), row.Map);
    const TWorldViewportLocal local = viewport.GetLocal();
    EXPECT_EQ(local.MapPointToPoint(row.Map), row.Pixel);
    EXPECT_EQ(local.PointToMapPoint(row.Pixel), row.Map);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Conversion,
    testing::Values(TConversionRow{"TopLeft", "latlon", 1, {0, 0}, {-180, 90}, {0, 0}},
                    TConversionRow{"BottomRight", "latlon", 1, {0, 0}, {180, -90}, {360, 180}},
                    TConversionRow{"Translated", "latlon", 1, {10, -20}, {0, 0}, {190, 70}},
                    TConversionRow{"KeepsTheFraction", "latlon", 2, {0, 0}, {-179.875L, 89.625L}, {0.25L, 0.75L}},
                    TConversionRow{"BeyondTheWorld", "latlon", 1, {0, 0}, {190, 100}, {370, -10}},
                    TConversionRow{"AntimeridianMiddle", "latlonAntimerdian", 1, {0, 0}, {180, 0}, {180, 90}},
                    TConversionRow{"GridMiddle", "nzmg", 0.001L, {0, 0}, {2500000, 6000000}, {600, 1000}},
                    TConversionRow{"LargestScale", "nzmg", 100000, {1, 2}, {1900000.5L, 6999999}, {50001, 100002}}),
    [](const auto& row) { return row.param.Name; });

TEST_F(WorldViewport, ConvertsByTheFormulaToTheLastBit) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> degrees(-200, 200);
    std::uniform_real_distribution<double> scales(0.001, 1000);
    std::uniform_int_distribution<int> pixels(-5000, 5000);
    for (int i = 0; i < 10000; ++i) {
        const extended scale = scales(random);
        const TPoint t(pixels(random), pixels(random));
        const TMapPoint p(degrees(random), degrees(random));
        const TWorldViewportLocal local(&World, scale, t);
        const TMapPoint pixel = local.MapPointToPoint(p);
        const TMapPoint map = local.PointToMapPoint(p);
        ASSERT_EQ(pixel.X, 360 * scale * ((p.X - -180) / 360) + t.X);
        ASSERT_EQ(pixel.Y, 180 * scale * ((90 - p.Y) / 180) + t.Y);
        ASSERT_EQ(map.X, (p.X - t.X) / scale / 360 * 360 + -180);
        ASSERT_EQ(map.Y, 90 - (p.Y - t.Y) / scale / 180 * 180);
    }
}

TEST_F(WorldViewport, RefusesMirroredAxesBothWaysWithTheSameWords) {
    const auto toPixel = [&] { Viewport.MapPointToPoint({0, 0}); };
    const auto toMap = [&] { Viewport.PointToMapPoint({0, 0}); };
    const auto local = [&] { TWorldViewportLocal(&World, 1, {}).PointToMapPoint({0, 0}); };
    UseSystem({0, 10, 10, 0}, {0, -1});
    EXPECT_EQ(MessageOf<ENotImplemented>(toPixel), "MapPointToPoint Orientation.X < 0");
    EXPECT_EQ(MessageOf<ENotImplemented>(toMap), "MapPointToPoint Orientation.X < 0");
    UseSystem({0, 10, 10, 0}, {1, 1});
    EXPECT_EQ(MessageOf<ENotImplemented>(toPixel), "MapPointToPoint Orientation.Y > 0");
    EXPECT_EQ(MessageOf<ENotImplemented>(toMap), "MapPointToPoint Orientation.Y > 0");
    EXPECT_EQ(MessageOf<ENotImplemented>(local), "MapPointToPoint Orientation.Y > 0");
    UseSystem({0, 10, 10, 0}, {-1, 1});
    EXPECT_EQ(MessageOf<ENotImplemented>(toPixel), "MapPointToPoint Orientation.X < 0") << "X is looked at first";
    UseSystem({0, 10, 10, 0}, {1, 0});
    EXPECT_EQ(Viewport.MapPointToPoint({1, 1}), TMapPoint(1, 9)) << "an Y of 0 passes";
}

TEST_F(WorldViewport, RectOfAnAreaIsUprightAndTakesTheTranslationIn) {
    EXPECT_EQ(Viewport.GetRect({-170, 80, -160, 60}), TMapArea(10, 10, 20, 30));
    EXPECT_EQ(Viewport.GetRect({-160, 60, -170, 80}), TMapArea(10, 10, 20, 30)) << "inverted edges";
    const auto pieces = World.GetWorldSystem()->TranslateArea({170, 90, 190, 80});
    EXPECT_EQ(Viewport.GetRect(pieces[0]), TMapArea(350, 0, 360, 10));
    EXPECT_EQ(Viewport.GetRect(pieces[1]), TMapArea(0, 0, 10, 10));
}

TEST_F(WorldViewport, VisibleAreaReachesFromTheFirstPixelToTheLast) {
    Viewport.SetViewSize({101, 51});
    Viewport.SetTranslation({0, 0});
    EXPECT_EQ(Viewport.GetVisibleMapArea(), TMapArea(-180, 90, -80, 40));
    Viewport.SetViewSize({0, 0});
    Viewport.SetTranslation({0, 0});
    EXPECT_EQ(Viewport.GetVisibleMapArea(), TMapArea(-180, 90, -181, 91));
    Viewport.SetViewSize({LowestPixel, LowestPixel});
    EXPECT_LT(Viewport.GetVisibleMapArea().GetBottomRight().X, -1e9L);
}

TEST_F(WorldViewport, WorldSizeHasTheScaleOnceAndWorldRectTwice) {
    Viewport.SetScale(3);
    Viewport.SetTranslation({5, -7});
    EXPECT_EQ(Viewport.GetWorldSize(), TMapSize(1080, 540));
    EXPECT_EQ(Viewport.GetWorldRect(), TMapArea(5, -7, 5 + 3240, -7 + 1620));
}

// ---- Scale

struct TScaleRow {
    extended Value;
    extended Expected;
};

class ViewportScale : public testing::TestWithParam<TScaleRow> {};

TEST_P(ViewportScale, StaysWithinItsBounds) {
    TWorld world(TLatLonWorldSystemFactory::GetObject());
    TWorldViewport viewport(&world);
    viewport.SetMinScale(0.1L);
    viewport.SetScale(GetParam().Value);
    EXPECT_EQ(viewport.GetScale(), GetParam().Expected);
    EXPECT_EQ(viewport.GetMinScale(), 0.1L);
}

INSTANTIATE_TEST_SUITE_P(Values, ViewportScale,
                         testing::Values(TScaleRow{1e9L, 100000}, TScaleRow{100000, 100000}, TScaleRow{0, 0.0001L},
                                         TScaleRow{-5, 0.0001L}, TScaleRow{0.00005L, 0.0001L}, TScaleRow{0.05L, 0.05L},
                                         TScaleRow{std::numeric_limits<extended>::infinity(), 100000},
                                         TScaleRow{2.5L, 2.5L}));

TEST_F(WorldViewport, ScalesAroundItsCentreAndTellsTwice) {
    Viewport.SetViewSize({200, 100});
    Viewport.SetCenter({20, 10});
    Listen();
    Viewport.SetScale(4);
    EXPECT_EQ(Viewport.GetCenter(), TMapPoint(20, 10));
    EXPECT_EQ(Viewport.GetTranslation(), TPoint(100 - 800, 50 - 320));
    EXPECT_EQ(Listener.Heard, (TNotes{"changed", "changed"}));
}

TEST_F(WorldViewport, TellsOnceWhenScalingDoesNotMoveIt) {
    Listen();
    Viewport.SetScale(4); // the centre is the world's corner
    EXPECT_EQ(Viewport.GetTranslation(), TPoint(0, 0));
    EXPECT_EQ(Listener.Heard, TNotes{"changed"});
}

TEST_F(WorldViewport, TellsOfAScaleBeyondItsBoundThoughItStays) {
    Viewport.SetScale(1e9L);
    Listen();
    Viewport.SetScale(1e9L);
    EXPECT_EQ(Viewport.GetScale(), 100000);
    EXPECT_EQ(Listener.Heard, TNotes{"changed"});
}

TEST_F(WorldViewport, IgnoresTheScaleThatItHasAndOneThatIsNoNumber) {
    Viewport.SetScale(2);
    Listen();
    Viewport.SetScale(2);
    Viewport.SetScale(NaN);
    EXPECT_EQ(Viewport.GetScale(), 2);
    EXPECT_TRUE(Listener.Heard.empty());
    Viewport.SetScale(std::nextafter(2.0L, 3.0L));
    EXPECT_GT(Viewport.GetScale(), 2) << "there is no tolerance";
}

// ---- Translation, centre, size

TEST_F(WorldViewport, TellsOfANewTranslationOnly) {
    Listen();
    Viewport.SetTranslation({0, 0});
    EXPECT_TRUE(Listener.Heard.empty());
    Viewport.SetTranslation({0, 1});
    EXPECT_EQ(Listener.Heard, TNotes{"changed"});
    EXPECT_EQ(Listener.Senders, std::vector<TWorldViewport*>{&Viewport});
}

TEST_F(WorldViewport, CentresOnTheMiddlePixel) {
    Viewport.SetViewSize({101, 51});
    Viewport.SetCenter({0, 0});
    EXPECT_EQ(Viewport.GetTranslation(), TPoint(50 - 180, 25 - 90));
    EXPECT_EQ(Viewport.GetCenter(), TMapPoint(0, 0));
}

TEST_F(WorldViewport, CentresOnTheNearestPixelTiesToEven) {
    Viewport.SetCenter({-179.5L, 90 - 1.5L});
    EXPECT_EQ(Viewport.GetTranslation(), TPoint(0, -2));
    Viewport.SetCenter({-177.5L, 90 + 0.5L});
    EXPECT_EQ(Viewport.GetTranslation(), TPoint(-2, 0));
}

TEST_F(WorldViewport, HalvesItsSizeTowardsZero) {
    Viewport.SetViewSize({-3, 3});
    Viewport.SetCenter({-180, 90});
    EXPECT_EQ(Viewport.GetTranslation(), TPoint(-1, 1));
}

TEST_F(WorldViewport, CentresSilentlyIfAsked) {
    Listen();
    Viewport.SetCenter({0, 0}, false);
    EXPECT_EQ(Viewport.GetTranslation(), TPoint(-180, -90));
    EXPECT_TRUE(Listener.Heard.empty());
    Viewport.SetCenter({1, 0}, true);
    EXPECT_EQ(Listener.Heard, TNotes{"changed"});
}

TEST_F(WorldViewport, StaysWhereItIsOverAWorldWithoutExtent) {
    Viewport.SetTranslation({3, 4});
    for (const TMapArea& area : {TMapArea(5, 10, 5, 0), TMapArea(0, 5, 10, 5)}) {
        UseSystem(area);
        Viewport.SetCenter({1, 1});
        Viewport.SetScale(Viewport.GetScale() + 1);
        Viewport.SetViewSize({Viewport.GetViewSize().cx + 10, 10});
        EXPECT_EQ(Viewport.GetTranslation(), TPoint(3, 4));
    }
    EXPECT_EQ(Viewport.GetScale(), 3);
}

TEST_F(WorldViewport, SaturatesTranslationsBeyondTheirType) {
    Viewport.SetScale(100000);
    Viewport.SetCenter({1e6L, -1e6L});
    EXPECT_EQ(Viewport.GetTranslation(), TPoint(LowestPixel, LowestPixel));
    Viewport.SetCenter({-1e6L, std::numeric_limits<extended>::infinity()});
    EXPECT_EQ(Viewport.GetTranslation(), TPoint(HighestPixel, HighestPixel));
    Viewport.StartPan();
    EXPECT_TRUE(Viewport.PanBy({HighestPixel, HighestPixel}));
    EXPECT_EQ(Viewport.GetTranslation(), TPoint(HighestPixel, HighestPixel));
}

TEST_F(WorldViewport, RefusesACentreThatIsNoNumber) {
    Viewport.SetTranslation({3, 4});
    Listen();
    EXPECT_EQ(MessageOf<EInvalidOp>([&] { Viewport.SetCenter({NaN, 0}); }), "Invalid floating point operation");
    EXPECT_EQ(MessageOf<EInvalidOp>([&] { Viewport.SetCenter({0, NaN}); }), "Invalid floating point operation");
    EXPECT_EQ(Viewport.GetTranslation(), TPoint(3, 4));
    EXPECT_TRUE(Listener.Heard.empty());
}

TEST_F(WorldViewport, KeepsItsCentreWhenItsSizeChanges) {
    Viewport.SetViewSize({200, 100});
    Viewport.SetCenter({20, 10});
    Listen();
    Viewport.SetViewSize({300, 80});
    EXPECT_EQ(Viewport.GetViewSize(), TSize(300, 80));
    EXPECT_EQ(Viewport.GetCenter(), TMapPoint(20, 10));
    EXPECT_EQ(Listener.Heard, (TNotes{"changed", "size"}));
    Viewport.SetViewSize({300, 80});
    EXPECT_EQ(Listener.Heard.size(), 2U);
}

// ---- Zoom

struct TZoomRow {
    const char* Name;
    const char* System;
    TMapArea Area;
    extended Scale;
    TMapPoint Center;
};

class ZoomTo : public testing::TestWithParam<TZoomRow> {};

TEST_P(ZoomTo, FitsTheWholeAreaAndCentresIt) {
    const TZoomRow& row = GetParam();
    TWorld world(TWorldSystemFactory::GetObject(QString::fromLatin1(row.System)));
    TWorldViewport viewport(&world);
    viewport.SetViewSize({200, 100});
    EXPECT_TRUE(viewport.ZoomTo(row.Area));
    EXPECT_EQ(viewport.GetScale(), row.Scale);
    EXPECT_EQ(viewport.GetCenter(), row.Center);
}

INSTANTIATE_TEST_SUITE_P(
    Areas, ZoomTo,
    testing::Values(TZoomRow{"HeightDecides", "latlon", {0, 10, 20, -10}, 5, {10, 0}},
                    TZoomRow{"WidthDecides", "latlon", {0, 5, 50, -5}, 4, {25, 0}},
                    TZoomRow{"Inverted", "latlon", {20, -10, 0, 10}, 5, {10, 0}},
                    TZoomRow{"OverTheSeam", "latlon", {170, 10, 190, -10}, 5, {175, 0}},
                    TZoomRow{"BeyondTheSeam", "latlon", {190, 10, 210, -10}, 5, {-160, 0}},
                    TZoomRow{"OverTheOtherSeam", "latlonAntimerdian", {-10, 10, 10, -10}, 5, {355, 0}},
                    TZoomRow{"Grid", "nzmg", {2000000, 6500000, 2400000, 6300000}, 0.0005L, {2200000, 6400000}}),
    [](const auto& row) { return row.param.Name; });

class ZoomToNothing : public testing::TestWithParam<TMapArea> {};

TEST_P(ZoomToNothing, ChangesNothing) {
    TWorld world(TLatLonWorldSystemFactory::GetObject());
    TWorldViewport viewport(&world);
    viewport.SetViewSize({200, 100});
    viewport.SetTranslation({5, 6});
    TListener listener;
    listener.Listen(viewport);
    EXPECT_FALSE(viewport.ZoomTo(GetParam()));
    EXPECT_EQ(viewport.GetScale(), 1);
    EXPECT_EQ(viewport.GetTranslation(), TPoint(5, 6));
    EXPECT_TRUE(listener.Heard.empty());
}

INSTANTIATE_TEST_SUITE_P(Areas, ZoomToNothing,
                         testing::Values(TMapArea(0, 10, 0, 5), TMapArea(0, 10, 5, 10), TMapArea(0, 10, 1e-17L, 5),
                                         TMapArea(NaN, 10, 5, 5), TMapArea(0, 10, 5, NaN),
                                         TMapArea(0, 10, std::numeric_limits<extended>::infinity(), 5)));

TEST_F(WorldViewport, WithoutSizeZoomsToTheLowestScale) {
    EXPECT_TRUE(Viewport.ZoomTo({0, 10, 20, -10}));
    EXPECT_EQ(Viewport.GetScale(), 0.0001L);
}

// ---- Panning

TEST_F(WorldViewport, PansByTheWholeWaySinceTheStart) {
    EXPECT_FALSE(Viewport.PanBy({5, 5}));
    EXPECT_EQ(Viewport.GetTranslation(), TPoint(0, 0));
    Viewport.SetTranslation({10, 20});
    Viewport.StartPan();
    EXPECT_TRUE(Viewport.GetIsPanning());
    EXPECT_TRUE(Viewport.PanBy({5, 5}));
    EXPECT_TRUE(Viewport.PanBy({7, -5}));
    EXPECT_EQ(Viewport.GetTranslation(), TPoint(17, 15));
    Viewport.EndPan();
    EXPECT_FALSE(Viewport.GetIsPanning());
    EXPECT_FALSE(Viewport.PanBy({1, 1}));
    EXPECT_EQ(Viewport.GetTranslation(), TPoint(17, 15));
}

// ---- Subscribers

TEST_F(WorldViewport, SwallowsWhatASubscriberRaises) {
    const TSubscription failing =
        Viewport.GetOnChanged().Add([](TWorldViewport*) { throw std::runtime_error("lost"); });
    Listen();
    Viewport.SetTranslation({1, 1});
    EXPECT_EQ(Listener.Heard, TNotes{"changed"});
}

struct TEndRow {
    const char* Name;
    void (*Change)(TWorldViewport& viewport);
};

class ViewportEnd : public testing::TestWithParam<TEndRow> {};

TEST_P(ViewportEnd, MayComeFromASubscriberInTheMiddleOfAChange) {
    TWorld world(TLatLonWorldSystemFactory::GetObject());
    auto viewport = std::make_unique<TWorldViewport>(&world);
    viewport->SetViewSize({200, 100});
    viewport->StartPan();
    int calls = 0;
    const TSubscription subscription = viewport->GetOnChanged().Add([&](TWorldViewport*) {
        ++calls;
        viewport.reset();
    });
    GetParam().Change(*viewport);
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(world.GetViewports().empty());
}

INSTANTIATE_TEST_SUITE_P(Changes, ViewportEnd,
                         testing::Values(TEndRow{"SetScale", [](TWorldViewport& v) { v.SetScale(2); }},
                                         TEndRow{"SetCenter",
                                                 [](TWorldViewport& v) {
                                                     v.SetCenter({5, 5});
                                                 }},
                                         TEndRow{"SetViewSize",
                                                 [](TWorldViewport& v) {
                                                     v.SetViewSize({9, 9});
                                                 }},
                                         TEndRow{"ZoomTo",
                                                 [](TWorldViewport& v) {
                                                     v.ZoomTo({0, 5, 5, 0});
                                                 }},
                                         TEndRow{"PanBy",
                                                 [](TWorldViewport& v) {
                                                     v.PanBy({5, 5});
                                                 }}),
                         [](const auto& row) { return row.param.Name; });

// ---- Snapshots

TEST_F(WorldViewport, TellsWhetherItIsStillThere) {
    auto other = std::make_unique<TWorldViewport>(&World);
    const TLifeWatch life = other->GetLifetime().Watch();
    EXPECT_FALSE(life.IsOver());
    other.reset();
    EXPECT_TRUE(life.IsOver());
    EXPECT_FALSE(Viewport.GetLifetime().Watch().IsOver());
}

TEST_F(WorldViewport, SnapshotKeepsScaleAndTranslationButFollowsTheWorldSystem) {
    Viewport.SetScale(2);
    Viewport.SetTranslation({3, 4});
    const TWorldViewportLocal local = Viewport.GetLocal();
    EXPECT_EQ(local.Scale, 2);
    EXPECT_EQ(local.Translation, TPoint(3, 4));
    EXPECT_EQ(local.World, &World);
    Viewport.SetScale(5);
    Viewport.SetTranslation({100, 100});
    EXPECT_EQ(local.MapPointToPoint({-180, 90}), TMapPoint(3, 4));
    EXPECT_EQ(local.MapPointToPoint({0, 90}), TMapPoint(363, 4));
    World.SetWorldSystem(TLatLonAntimeridianWorldSystemFactory::GetObject());
    EXPECT_EQ(local.MapPointToPoint({0, 90}), TMapPoint(3, 4));
}

TEST_F(WorldViewport, SnapshotConvertsOnAWorkerWhileTheWorldSystemChanges) {
    TWorldViewportLocal local = Viewport.GetLocal();
    std::atomic<bool> stop = false;
    std::atomic<long> conversions = 0;
    std::atomic<long> strangers = 0;
    std::thread worker([&, local] {
        do {
            const extended x = local.MapPointToPoint({0, 0}).X; // 180 in one system, 0 in the other, 10 in the host's
            if (x != 180 && x != 0 && x != 10)
                ++strangers;
            ++conversions;
        } while (!stop);
    });
    for (int i = 0; i < 1000; ++i) {
        UseSystem({-10, 90, 350, -90}); // nobody but the world holds it
        World.SetWorldSystem(TLatLonAntimeridianWorldSystemFactory::GetObject());
        World.SetWorldSystem(TLatLonWorldSystemFactory::GetObject());
    }
    stop = true;
    worker.join();
    EXPECT_GT(conversions, 0);
    EXPECT_EQ(strangers, 0);
}

} // namespace
} // namespace lmx
