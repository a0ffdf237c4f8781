#include <lmx/Formats/Idrisi/Private/lmxVectorBytes.h>
#include <lmx/Formats/Idrisi/lmxVector.h>
#include <lmx/Layers/Render/Private/lmxRenderThreadPool.h>
#include <lmx/Layers/Render/Private/lmxVectorFileRender.h>
#include <tests/Graphics/Pictures.h>
#include <tests/Layers/PlainOutlines.h>
#include <tests/Support/VectorBytes.h>

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace lmx {
namespace {

using namespace tests;
using enum TVectorObjectType;

constexpr TColor32 Ink = 0x80FF8000;
const TLetters Letters = {{0, '.'}, {Ink, '#'}};

std::shared_ptr<const TVectorData> Parse(const QByteArray& bytes) {
    return std::make_shared<const TVectorData>(ParseVectorBytes(bytes, QStringLiteral("x.vct")));
}

std::unique_ptr<TBufferedBitmap> Render(const std::shared_ptr<const TVectorData>& data, TSize size,
                                        const TWorldViewportLocal& viewport) {
    const TVectorFileLayerRenderThreadHandler handler(size, {1, 2, 3, 4}, viewport, data, Ink);
    return handler.Render(*RenderThreadPool().GetThread());
}

/// A pixel is a degree, and the top left one lies at 10 W, 5 N.
class VectorFileRender : public testing::Test {
protected:
    TPicture Picture(const TVectorBytes& vectors, TSize size, const TWorldViewportLocal& viewport) {
        return Show(Render(Parse(vectors.File()), size, viewport)->Bitmap, Letters);
    }
    TPicture Picture(const TVectorBytes& vectors, TSize size) { return Picture(vectors, size, Viewport); }
    static TGeoPoint At(float x, float y) { return {x - 10, 5 - y}; }

    TWorld World{TLatLonWorldSystemFactory::GetObject()};
    TWorldViewportLocal Viewport{&World, 1, {-170, -85}};
};

TEST_F(VectorFileRender, LinesAndPolygonsAreOutlines) {
    const std::vector<TGeoPoint> ring{At(1, 1), At(4, 1), At(4, 3), At(1, 3), At(1, 1)};
    const TPicture expected{"......", ".####.", ".#..#.", ".####.", "......"};
    EXPECT_EQ(Picture(TVectorBytes(vtLine).Line(1, ring), {6, 5}), expected);
    EXPECT_EQ(Picture(TVectorBytes(vtPolygon).Polygon(1, {ring}), {6, 5}), expected);
}

TEST_F(VectorFileRender, OtherTypesGiveAnEmptyPicture) {
    const auto points = Render(Parse(TVectorBytes(vtPoint).Point(1, At(2, 2)).File()), {6, 5}, Viewport);
    ASSERT_TRUE(points);
    EXPECT_EQ(CountPixels(points->Bitmap), 0);
    EXPECT_EQ(points->MapArea, TMapArea(1, 2, 3, 4));
    EXPECT_EQ(CountPixels(Render(Parse("\4" + QByteArray(400, '\1')), {6, 5}, Viewport)->Bitmap), 0);
}

TEST_F(VectorFileRender, WithoutAFileThereIsNoPicture) {
    EXPECT_EQ(Render(nullptr, {6, 5}, Viewport), nullptr);
}

TEST_F(VectorFileRender, AFeatureBeginsWithoutALineFromTheOneBefore) {
    EXPECT_EQ(
        Picture(TVectorBytes(vtLine).Line(1, {At(0, 0), At(2, 0)}).Line(2, {At(3, 1), At(5, 1)}).Line(3, {At(1, 1)}),
                {6, 2}),
        (TPicture{"##....", "...##."}))
        << "and one of one point only moves the pen";
}

TEST_F(VectorFileRender, ThePenIsLiftedAtNoughtNought) {
    const TPicture parted{"##.##.", "......"};
    EXPECT_EQ(Picture(TVectorBytes(vtLine).Line(1, {At(0, 0), At(2, 0), {0, 0}, At(3, 0), At(5, 0)}), {6, 2}), parted);
    EXPECT_EQ(Picture(TVectorBytes(vtPolygon).Polygon(1, {{At(0, 0), At(2, 0)}, {At(3, 0), At(5, 0)}}), {6, 2}),
              parted);
    EXPECT_EQ(
        Picture(TVectorBytes(vtLine).Line(1, {{0, 0}, At(0, 0), At(2, 0), {0, 0}, {0, 0}, At(3, 0), At(5, 0), {0, 0}}),
                {6, 2}),
        parted);
}

TEST_F(VectorFileRender, NoughtHasTheToleranceOfSinglePrecision) {
    const auto middle = [&](TGeoPoint point) {
        TWorldViewportLocal viewport(&World, 1, {-178, -89}); // 0, 0 is pixel 2, 1
        return Picture(TVectorBytes(vtLine).Line(1, {{-2, 0.01F}, point, {3, 0.01F}}), {5, 3}, viewport);
    };
    const TPicture nothing{".....", ".....", "....."};
    const TPicture line{".....", "#####", "....."};
    EXPECT_EQ(middle({0.0001F, -0.0001F}), nothing);
    EXPECT_EQ(middle({0.0002F, 0}), line);
    EXPECT_EQ(middle({0, 0.0002F}), line);
}

TEST_F(VectorFileRender, LinesBreakAtTheSeamOfTheWorld) {
    // 175 E to 175 W and on, written as 185: the world's pixels lie at both of its ends.
    const TVectorBytes line = TVectorBytes(vtLine).Line(1, {{176, 0}, {179, 0}, {183, 0}, {185, 0}});
    TWorldViewportLocal east(&World, 1, {-354, -89});
    TWorldViewportLocal west(&World, 1, {0, -89});
    EXPECT_EQ(Picture(line, {8, 2}, east), (TPicture{"........", "..###..."})) << "176 is the third pixel";
    EXPECT_EQ(Picture(line, {8, 2}, west), (TPicture{"........", "...##..."})) << "183 is folded to 177 W";
    TWorld antimeridian(TLatLonAntimeridianWorldSystemFactory::GetObject());
    TWorldViewportLocal whole(&antimeridian, 1, {-174, -89});
    EXPECT_EQ(Picture(line, {14, 2}, whole), (TPicture{"..............", "..#########..."})) << "no seam at 180 there";
    TWorldViewportLocal zero(&antimeridian, 1, {0, -89});
    EXPECT_EQ(Picture(TVectorBytes(vtLine).Line(1, {{-3, 0}, {-1, 0}, {2, 0}, {4, 0}}), {6, 2}, zero),
              (TPicture{"......", "..##.."}));
}

// The pen comes down with the vertex after the break, wherever that lies.
TEST_F(VectorFileRender, TheVertexBehindTheSeamIsWhereTheLineGoesOn) {
    TWorldViewportLocal east(&World, 1, {-354, -89});
    EXPECT_EQ(Picture(TVectorBytes(vtLine).Line(1, {{177, 0}, {190, 0}, {178, 0}, {180, 0}}), {8, 2}, east),
              (TPicture{"........", "....##.."}));
}

TEST_F(VectorFileRender, ACancelledRenderGivesNoPicture) {
    const auto thread = RenderThreadPool().GetThread();
    thread->CancelOperation();
    const TVectorFileLayerRenderThreadHandler handler({6, 5}, {}, Viewport,
                                                      Parse(TVectorBytes(vtLine).Line(1, {At(1, 1)}).File()), Ink);
    EXPECT_EQ(handler.Render(*thread), nullptr);
}

TEST(VectorFileRenderFastPath, EqualsTheDefinition) {
    std::mt19937_64 random(9);
    const auto between = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    TWorld worlds[] = {TWorld(TLatLonWorldSystemFactory::GetObject()),
                       TWorld(TLatLonAntimeridianWorldSystemFactory::GetObject()),
                       TWorld(TNZMGWorldSystemFactory::GetObject())};
    int drawn = 0;
    for (int round = 0; round < 1500; ++round) {
        TWorld& world = worlds[round % 3];
        const bool isPlane = round % 3 == 2;
        const double scale = isPlane ? std::exp(between(-7, 1)) : std::exp(between(-1, 6));
        const double centreX = isPlane ? between(2e6, 3e6) : round % 2 == 0 ? between(-4, 4) : between(176, 184);
        const double centreY = isPlane ? between(5.5e6, 6.5e6) : between(-4, 4);
        const TMapPoint centre = world.GetWorldSystem()->ToWorldPoint({centreX, centreY});
        const TMapArea& area = world.GetWorldSystem()->Area();
        const TWorldViewportLocal viewport(&world, scale,
                                           {static_cast<std::int32_t>(40 - (centre.X - area.Left) * scale),
                                            static_cast<std::int32_t>(30 - (area.Top - centre.Y) * scale)});
        TVectorBytes vectors(round % 2 == 0 ? vtLine : vtPolygon);
        for (int feature = 0; feature < 8; ++feature) {
            std::vector<TGeoPoint> line;
            double x = centreX + between(-150, 150) / scale;
            double y = centreY + between(-100, 100) / scale;
            for (auto count = static_cast<int>(between(0, 150)); count > 0; --count) {
                const double step = round % 4 < 2 ? 2 : 30;
                x += between(-step, step) / scale;
                y += between(-step, step) / scale;
                line.push_back({static_cast<float>(x), static_cast<float>(y)});
                if (random() % 23 == 0)
                    line.push_back({0, 0});
                if (random() % 41 == 0)
                    line.push_back(
                        {static_cast<float>(between(-1, 1) * 1e30), static_cast<float>(between(-1, 1) * 1e30)});
            }
            if (round % 2 == 0)
                vectors.Line(feature, line);
            else
                vectors.Polygon(feature, {line, {}, line});
        }
        const auto data = Parse(vectors.File());
        TBitmap32 plain(80, 60);
        plain.SetPenColor(Ink);
        DrawPlainly(*data, viewport, plain);
        ASSERT_TRUE(SamePixels(Render(data, {80, 60}, viewport)->Bitmap, plain)) << "round " << round;
        drawn += CountPixels(plain) > 0 ? 1 : 0;
    }
    EXPECT_GT(drawn, 1000);
}

} // namespace
} // namespace lmx
