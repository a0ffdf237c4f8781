#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Layers/Render/Private/lmxRenderThreadPool.h>
#include <lmx/Layers/Render/Private/lmxShapeFileRender.h>
#include <tests/Graphics/Pictures.h>
#include <tests/Layers/PlainOutlines.h>
#include <tests/Support/ShapeBytes.h>

#include <QBuffer>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace lmx {
namespace {

using namespace tests;

constexpr TColor32 Ink = 0x80FF8000;
const TLetters Letters = {{0, '.'}, {Ink, '#'}};

std::unique_ptr<TShpFile> Load(QByteArray bytes) {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return TShpFile::LoadFromStream(buffer, QStringLiteral("x.shp"), nullptr);
}

std::unique_ptr<TBufferedBitmap> Render(const TShpFile& file, TSize size, const TWorldViewportLocal& viewport,
                                        std::shared_ptr<const IShapeFileProjection> projection = nullptr) {
    const TShapeFileLayerRenderThreadHandler handler(size, {1, 2, 3, 4}, viewport, file.GetData(),
                                                     std::move(projection), Ink);
    return handler.Render(*RenderThreadPool().GetThread());
}

/// A degree is a pixel, and the corner of the world the top left one.
class ShapeFileRender : public testing::Test {
protected:
    TPicture Picture(const TShapeBytes& shapes, TSize size) {
        return Show(Render(*Load(shapes.File(0)), size, Viewport)->Bitmap, Letters);
    }
    static TShpPoint At(double x, double y) { return {x - 180, 90 - y}; }

    TWorld World{TLatLonWorldSystemFactory::GetObject()};
    TWorldViewportLocal Viewport{&World, 1, {0, 0}};
};

/// Puts everything one pixel further down.
class TLowerProjection : public IShapeFileProjection {
public:
    void Convert(extended x, extended y, extended& outX, extended& outY) const override {
        outX = x;
        outY = y - 1;
    }
};

TEST_F(ShapeFileRender, PointsAreSquaresThatAreNotCentred) {
    EXPECT_EQ(Picture(TShapeBytes().Point(1, At(3, 2)), {7, 5}),
              (TPicture{".####..", ".####..", ".####..", ".####..", "......."}));
    EXPECT_EQ(Picture(TShapeBytes().MultiPoint(8, {At(-1, 0), At(5, 4)}), {5, 4}),
              (TPicture{"#....", "#....", "...##", "...##"}))
        << "clipped";
}

TEST_F(ShapeFileRender, PolygonsAreOutlinesAndNeverFilled) {
    EXPECT_EQ(Picture(TShapeBytes().Lines(5, {{At(1, 1), At(5, 1), At(5, 4), At(1, 4), At(1, 1)}}), {7, 6}),
              (TPicture{".......", ".#####.", ".#...#.", ".#...#.", ".#####.", "......."}));
    EXPECT_EQ(Picture(TShapeBytes().Lines(5, {{At(1, 1), At(3, 1), At(3, 3)}}), {5, 5}),
              (TPicture{".....", ".###.", "...#.", ".....", "....."}))
        << "closed by its own last vertex only, and the end of a line is left out";
}

TEST_F(ShapeFileRender, APartBeginsWithoutALineFromTheOneBefore) {
    EXPECT_EQ(
        Picture(
            TShapeBytes().Lines(3, {{At(0, 0), At(2, 0)}, {}, {At(4, 1), At(6, 1)}}).Lines(3, {{At(0, 2), At(1, 2)}}),
            {7, 3}),
        (TPicture{"##.....", "....##.", "#......"}));
}

TEST_F(ShapeFileRender, APartOfOneVertexDrawsNothing) {
    EXPECT_EQ(Picture(TShapeBytes().Lines(5, {{At(1, 1)}}).Lines(3, {{At(2, 1)}}), {4, 2}), (TPicture{"....", "...."}));
}

TEST_F(ShapeFileRender, ShapesAreClippedAtTheEdges) {
    EXPECT_EQ(Picture(TShapeBytes().Lines(5, {{At(-3, -3), At(2, -3), At(2, 2), At(-3, 2), At(-3, -3)}}), {4, 4}),
              (TPicture{"..#.", "..#.", "###.", "...."}));
}

TEST_F(ShapeFileRender, APictureShowsItsMapAreaAndIsTransparent) {
    const auto picture = Render(*Load(TShapeBytes().File(0)), {7, 5}, Viewport);
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->MapArea, TMapArea(1, 2, 3, 4));
    EXPECT_EQ(picture->Bitmap.GetDrawMode(), TDrawMode::dmTransparent);
    EXPECT_EQ(CountPixels(picture->Bitmap), 0);
}

TEST_F(ShapeFileRender, WithoutAFileThereIsNoPicture) {
    const TShapeFileLayerRenderThreadHandler handler({7, 5}, {}, Viewport, nullptr, nullptr, Ink);
    EXPECT_EQ(handler.Render(*RenderThreadPool().GetThread()), nullptr);
}

TEST_F(ShapeFileRender, ACancelledRenderGivesNoPicture) {
    const auto file = Load(TShapeBytes().Point(1, At(1, 1)).File(1));
    const auto thread = RenderThreadPool().GetThread();
    thread->CancelOperation();
    const TShapeFileLayerRenderThreadHandler handler({7, 5}, {}, Viewport, file->GetData(), nullptr, Ink);
    EXPECT_EQ(handler.Render(*thread), nullptr);
}

TEST_F(ShapeFileRender, EveryCoordinateGoesThroughTheProjection) {
    const auto file = Load(TShapeBytes()
                               .Point(1, At(2, 2))
                               .Lines(5, {{At(6, 0), At(8, 0)}, {At(6, 2), At(8, 2)}})
                               .Lines(3, {{At(5, 3), At(7, 3)}})
                               .File(0));
    EXPECT_EQ(Show(Render(*file, {9, 5}, Viewport, std::make_shared<TLowerProjection>())->Bitmap, Letters),
              (TPicture{".........", "####..##.", "####.....", "####..##.", "####.##.."}));
    EXPECT_TRUE(SamePixels(Render(*file, {9, 5}, Viewport, std::make_shared<TWGS84ShapeFileProjection>())->Bitmap,
                           Render(*file, {9, 5}, Viewport)->Bitmap));
}

// --- The fast way against the definition ----------------------------------------------------------------------------

TEST(ShapeFileRenderFastPath, EqualsTheDefinitionOnRandomShapes) {
    std::mt19937_64 random(7);
    const auto between = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    TWorld worlds[] = {TWorld(TLatLonWorldSystemFactory::GetObject()),
                       TWorld(TLatLonAntimeridianWorldSystemFactory::GetObject()),
                       TWorld(TNZMGWorldSystemFactory::GetObject())};
    int drawn = 0;
    for (int round = 0; round < 1500; ++round) {
        TWorld& world = worlds[round % 3];
        const double scale = std::exp(between(std::log(0.01), std::log(5000)));
        const double centreX = between(-100, 100);
        const double centreY = between(-80, 80);
        const TMapArea& area = world.GetWorldSystem()->Area();
        const auto translate = [&](extended pixels) {
            return static_cast<std::int32_t>(std::clamp<extended>(-pixels, -2147483000, 2147483000));
        };
        const TSize size(static_cast<std::int32_t>(between(1, 90)), static_cast<std::int32_t>(between(1, 70)));
        const TWorldViewportLocal viewport(&world, scale,
                                           {translate((centreX - area.Left) * scale) + size.cx / 2,
                                            translate((area.Top - centreY) * scale) + size.cy / 2});
        // Lines that wander about the view in steps of pixels, now and then far away.
        TShapeBytes shapes;
        const auto place = [&](double reach) -> TShpPoint {
            return {centreX + between(-reach, reach) / scale, centreY + between(-reach, reach) / scale};
        };
        for (int shape = 0; shape < 6; ++shape) {
            TShpParts parts;
            for (int part = round % 4; part >= 0; --part) {
                std::vector<TShpPoint> line;
                TShpPoint at = place(150);
                for (auto count = static_cast<int>(between(0, 200)); count > 0; --count) {
                    const double step = round % 2 == 0 ? 1.5 : 20;
                    at.X += between(-step, step) / scale;
                    at.Y += between(-step, step) / scale;
                    if (random() % 97 == 0)
                        at = place(random() % 5 == 0 ? 1e15 : 3000);
                    if (random() % 31 == 0) // on a tie, or as near as doubles come
                        at.X = static_cast<double>(area.Left) +
                               (std::floor((at.X - static_cast<double>(area.Left)) * scale) + 0.5) / scale;
                    line.push_back(at);
                }
                parts.push_back(line);
            }
            shapes.Lines(shape % 2 == 0 ? 3 : 5, parts).Point(1, place(60));
        }
        const auto file = Load(shapes.File(0));
        TBitmap32 plain(size.cx, size.cy);
        plain.SetPenColor(Ink);
        DrawPlainly(*file, viewport, plain);
        ASSERT_TRUE(SamePixels(Render(*file, size, viewport)->Bitmap, plain)) << "round " << round;
        drawn += CountPixels(plain) > 0 ? 1 : 0;
    }
    EXPECT_GT(drawn, 1000);
}

TEST(ShapeFileRenderFastPath, EqualsTheDefinitionOnACoastAtAllZooms) {
    for (const char* name : {"ne_110m_coastline.shp", "nz_ne_50m_land.shp", "ne_110m_populated_places_simple.shp"}) {
        const auto file = TShpFile::LoadFromFile(QStringLiteral(LMX_SOURCE_DIR "/tests/data/shp/") + name, nullptr);
        for (const auto& system : TWorldSystemFactory::GetObjects(QStringLiteral("latlon"))) {
            TWorld world(system);
            for (const double scale : {0.01, 0.9, 2.0, 5.33, 43.0, 1000.0, 100000.0}) {
                TWorldViewport view(&world);
                view.SetViewSize({400, 300});
                view.SetScale(scale);
                view.SetCenter({174.7, -36.8});
                TBitmap32 plain(400, 300);
                plain.SetPenColor(Ink);
                DrawPlainly(*file, view.GetLocal(), plain);
                ASSERT_TRUE(SamePixels(Render(*file, {400, 300}, view.GetLocal())->Bitmap, plain)) << name << scale;
            }
        }
    }
}

TEST(ShapeFileRenderFastPath, EqualsTheDefinitionOnSmallShapesInNoOrder) {
    std::mt19937_64 random(9);
    const auto between = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    for (const double share : {0.0, 0.02, 0.5}) { // of long lines between the short ones
        TShapeBytes shapes;
        for (int i = 0; i < 4000; ++i) {
            const TShpPoint at{between(-180, 180), between(-90, 90)};
            std::vector<TShpPoint> line;
            for (auto count = between(0, 1) < share ? 90 : static_cast<int>(between(0, 8)); count > 0; --count)
                line.push_back({at.X + between(-1, 1), at.Y + between(-1, 1)});
            shapes.Lines(i % 3 == 0 ? 3 : 5, {line}).Point(1, {between(-180, 180), between(-90, 90)});
        }
        const auto file = Load(shapes.File(0));
        TWorld world(TLatLonWorldSystemFactory::GetObject());
        for (const double scale : {1.0, 8.0, 64.0, 512.0}) {
            TWorldViewport view(&world);
            view.SetViewSize({360, 180});
            view.SetScale(scale);
            view.SetCenter({20.3, 10.2});
            TBitmap32 plain(360, 180);
            plain.SetPenColor(Ink);
            DrawPlainly(*file, view.GetLocal(), plain);
            ASSERT_TRUE(SamePixels(Render(*file, {360, 180}, view.GetLocal())->Bitmap, plain)) << share << ' ' << scale;
        }
    }
}

TEST(ShapeFileRenderFastPath, FarVerticesNeitherOverflowNorTakeTime) {
    TWorld world(TLatLonWorldSystemFactory::GetObject());
    const TWorldViewportLocal viewport(&world, 1000, {180'000, 90'000}); // 0, 0 is the top left pixel
    std::vector<TShpPoint> line;
    for (int i = 0; i < 200'000; ++i) // each line crosses the view, from and to 1e15 pixels away
        line.push_back({i % 2 == 0 ? -1e12 : 1e12, i % 4 < 2 ? -1e12 : 1e12});
    const auto file = Load(TShapeBytes().Lines(3, {line}).File(3));
    QElapsedTimer elapsed;
    elapsed.start();
    const auto picture = Render(*file, {64, 48}, viewport);
    EXPECT_LT(elapsed.elapsed(), 20'000) << "a step for each pixel of the way would take years";
    TBitmap32 plain(64, 48);
    plain.SetPenColor(Ink);
    DrawPlainly(*file, viewport, plain);
    EXPECT_TRUE(SamePixels(picture->Bitmap, plain));
    EXPECT_GT(CountPixels(plain), 0);
}

} // namespace
} // namespace lmx
