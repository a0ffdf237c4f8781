#include <lmx/Coordinates/wskWorld.h>
#include <tests/Support/CountedMemory.h>

#include <gtest/gtest.h>

// Conversions stand inside the loops over the vertices of a map: none of them may take memory, nor may sending an
// event.

namespace lmx {
namespace {

using tests::AllocationsOf;

struct TCounter : TEventReceiver {
    int Calls = 0;
    void Viewport_Changed(TWorldViewport*) { ++Calls; }
};

struct WorldAllocation : testing::Test {
    TWorld World{TLatLonWorldSystemFactory::GetObject()};
    TWorldViewport Viewport{&World};
    TCounter Counter;

    void SetUp() override {
        Viewport.SetViewSize({200, 100});
        Viewport.GetOnChanged().Add(&Counter, &TCounter::Viewport_Changed);
    }
};

TEST_F(WorldAllocation, IsCounted) {
    EXPECT_GT(AllocationsOf([] { TLatLonWorldSystemFactory::GetObject()->TranslateArea({}); }), 0);
}

TEST_F(WorldAllocation, ConversionsTakeNoMemory) {
    extended sum = 0;
    const TWorldViewportLocal local = Viewport.GetLocal();
    EXPECT_EQ(AllocationsOf([&] {
                  for (int i = 0; i < 100; ++i) {
                      const TMapPoint point(i, -i);
                      sum += Viewport.MapPointToPoint(point).X + Viewport.PointToMapPoint(point).Y;
                      sum += local.MapPointToPoint(point).X + local.PointToMapPoint(point).Y;
                      sum += Viewport.GetRect({point, {i + 1.0L, 2}}).GetWidth() + Viewport.GetCenter().X;
                      sum += Viewport.GetVisibleMapArea().GetWidth() + Viewport.GetWorldRect().GetHeight();
                      sum += Viewport.MapPointToPoint(point).ToPoint().X;
                      sum += Viewport.GetLocal().PointToMapPoint(point).X;
                  }
              }),
              0);
    EXPECT_NE(sum, 0);
}

TEST_F(WorldAllocation, FoldingPointsTakesNoMemory) {
    const auto system = World.GetWorldSystem();
    extended sum = 0;
    EXPECT_EQ(
        AllocationsOf([&] {
            sum += system->ToWorldPoint({190, 0}).X + system->ToWorldArea({170, 1, 190, 0}).Right;
            sum += system->ToLocalPoint({170, 1, 190, 0}, {-175, 0}).X + (system->Wraps({170, 0}, {190, 0}) ? 1 : 0);
            sum += system->ConstrainRect({-200, 1, 200, 0}).Left;
        }),
        0);
    EXPECT_EQ(sum, -170 + -170 + 185 + 1 - 180);
}

TEST_F(WorldAllocation, MovingTheMapAndTellingItTakesNoMemory) {
    EXPECT_EQ(AllocationsOf([&] {
                  Viewport.SetScale(2);
                  Viewport.SetCenter({10, 10});
                  Viewport.SetViewSize({300, 200});
                  Viewport.ZoomTo({10, 20, 30, 0});
                  Viewport.StartPan();
                  Viewport.PanBy({5, 5});
              }),
              0);
    EXPECT_GE(Counter.Calls, 6);
}

} // namespace
} // namespace lmx
