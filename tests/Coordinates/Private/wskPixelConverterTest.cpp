#include <lmx/Coordinates/Private/wskPixelConverter.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TestWorldSystem.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace lmx::tests {

namespace {

TPoint ByDefinition(const TWorldViewportLocal& viewport, const TMapPoint& point) {
    return viewport.MapPointToPoint(point).ToPoint();
}

void ExpectDefinition(const TWorldViewportLocal& viewport, double x, double y) {
    const TPixelConverter converter(viewport);
    const TPoint expected = ByDefinition(viewport, {x, y});
    ASSERT_EQ(converter.ToPixel(x, y), expected) << x << ", " << y << " at scale " << viewport.Scale;
    ASSERT_EQ(converter.ToPixel(TMapPoint(x, y)), expected) << x << ", " << y << " at scale " << viewport.Scale;
    const TShpPoint places[] = {{1, 2}, {x, y}, {x, y}};
    TPoint pixels[3];
    converter.ToPixels(places, pixels);
    ASSERT_EQ(pixels[0], ByDefinition(viewport, {1, 2}));
    ASSERT_EQ(pixels[1], expected);
    ASSERT_EQ(pixels[2], expected);
}

std::shared_ptr<IWorldSystem> Systems(std::size_t index) {
    return index == 0   ? TLatLonWorldSystemFactory::GetObject()
           : index == 1 ? TLatLonAntimeridianWorldSystemFactory::GetObject()
                        : TNZMGWorldSystemFactory::GetObject();
}

} // namespace

TEST(PixelConverter, EqualsTheDefinitionEverywhere) {
    std::mt19937_64 random(46);
    for (int round = 0; round < 200'000; ++round) {
        const auto between = [&](double low, double high) {
            return std::uniform_real_distribution<double>(low, high)(random);
        };
        TWorld world(Systems(static_cast<std::size_t>(round % 3)));
        const TMapArea& area = world.GetWorldSystem()->Area();
        const double scale = std::exp(between(std::log(1e-4), std::log(1e5)));
        const double reach = round % 5 == 0 ? std::exp(between(0, 690)) : 2; // worlds away from the world
        const double x = static_cast<double>(area.Left) + static_cast<double>(area.GetWidth()) * between(-reach, reach);
        const double y = static_cast<double>(area.Top) - static_cast<double>(area.GetHeight()) * between(-reach, reach);
        // Half of the places in the middle of the view, where pixels matter; some translations at the ends of 32 bits.
        const double px = round % 2 == 0 ? (static_cast<double>(area.Left) - x) * scale : between(-1e4, 1e4);
        const double py = round % 2 == 0 ? (y - static_cast<double>(area.Top)) * scale : between(-1e4, 1e4);
        const auto whole = [](double value) {
            return static_cast<std::int32_t>(std::clamp(value, -2147483648.0, 2147483647.0));
        };
        ExpectDefinition({&world, scale, {whole(px), whole(py)}}, x, y);
    }
}

TEST(PixelConverter, EqualsTheDefinitionAroundTies) {
    std::mt19937_64 random(47);
    int differing = 0;
    for (int round = 0; round < 100'000; ++round) {
        TWorld world(Systems(static_cast<std::size_t>(round % 3)));
        const TMapArea& area = world.GetWorldSystem()->Area();
        const double scale = round % 2 == 0 ? std::ldexp(1.0, round % 31 - 15) : 1.0 + (round % 997) / 7.0;
        const auto column = static_cast<double>(std::uniform_int_distribution<int>(-3000, 3000)(random));
        double x = static_cast<double>(area.Left) + (column + 0.5) / scale; // its pixel ends in a half, or nearly so
        double y = static_cast<double>(area.Top) - (column + 0.5) / scale;
        for (int step = random() % 4; step > 0; --step) {
            x = std::nextafter(x, round % 7 == 0 ? 1e9 : -1e9);
            y = std::nextafter(y, round % 5 == 0 ? 1e9 : -1e9);
        }
        const TWorldViewportLocal viewport(&world, scale, {17, -4});
        ExpectDefinition(viewport, x, y);
        const double roughly = (x - static_cast<double>(area.Left)) * scale + 17;
        differing += std::nearbyint(roughly) != ByDefinition(viewport, {x, y}).X ? 1 : 0;
    }
    EXPECT_GT(differing, 0) << "doubles alone would do";
}

TEST(PixelConverter, AShiftMovesEveryPlaceEast) {
    std::mt19937_64 random(48);
    std::uniform_real_distribution<double> places(-180, 180);
    TWorld world(TLatLonAntimeridianWorldSystemFactory::GetObject());
    for (const double scale : {0.7, 3.0, 1e4}) {
        const TWorldViewportLocal viewport(&world, scale, {11, -7});
        const TPixelConverter converter(viewport, 360);
        for (int round = 0; round < 1000; ++round) {
            const TShpPoint place{places(random), places(random) / 2};
            const TPoint expected = ByDefinition(viewport, {place.X + 360.0L, place.Y});
            ASSERT_EQ(converter.ToPixel(place.X, place.Y), expected) << place.X;
            ASSERT_EQ(converter.ToPixel(TMapPoint(place.X, place.Y)), expected) << place.X;
            TPoint pixel;
            converter.ToPixels({&place, 1}, &pixel);
            ASSERT_EQ(pixel, expected) << place.X;
        }
        EXPECT_EQ(converter.GetReach({100, 50}).Left, TPixelConverter(viewport).GetReach({100, 50}).Left - 360);
    }
}

TEST(PixelConverter, SaturatesFarOutside) {
    TWorld world(TLatLonWorldSystemFactory::GetObject());
    const TPixelConverter converter(TWorldViewportLocal(&world, 1000, {0, 0}));
    EXPECT_EQ(converter.ToPixel(1e12, -1e12), TPoint(1 << 29, 1 << 29)) << "1e15 pixels away";
    EXPECT_EQ(converter.ToPixel(-1e12, 1e12), TPoint(-(1 << 29), -(1 << 29)));
    constexpr double largest = std::numeric_limits<double>::max();
    EXPECT_EQ(converter.ToPixel(largest, -largest), TPoint(1 << 29, 1 << 29));
    EXPECT_EQ(converter.ToPixel(-180 + 536870.912, 90), TPoint(1 << 29, 0)) << "exactly at the limit";
    EXPECT_EQ(converter.ToPixel(-180 + 536870.911, 90), TPoint((1 << 29) - 1, 0)) << "one pixel before it";
}

TEST(PixelConverter, WorldsOfAnyKindGoByTheDefinition) {
    const TMapOrientation usual{1, -1};
    for (const TMapArea& area : {TMapArea(0, 0, 0, 0), TMapArea(0.1L, 1, 3, 0), TMapArea(-1e300L, 1e300L, 1e300L, 0)}) {
        TWorld world(std::make_shared<TTestWorldSystem>(area, usual));
        ExpectDefinition({&world, 3, {5, 6}}, 1.5, 0.25);
    }
    TWorld world(TLatLonWorldSystemFactory::GetObject());
    for (const extended scale : {0.0L, 1e-300L, 1e300L, -1.0L})
        ExpectDefinition({&world, scale, {5, 6}}, 1.5, 0.25);
}

TEST(PixelConverter, RefusesWorldsWithoutPixels) {
    TWorld mirrored(std::make_shared<TTestWorldSystem>(TMapArea(0, 1, 1, 0), TMapOrientation{0, -1}));
    EXPECT_EQ(MessageOf<ENotImplemented>([&] { TPixelConverter(TWorldViewportLocal(&mirrored, 1, {})); }),
              "MapPointToPoint Orientation.X < 0");
    TWorld none(TLatLonWorldSystemFactory::GetObject());
    none.SetWorldSystem(nullptr);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { TPixelConverter(TWorldViewportLocal(&none, 1, {})); }),
              "World system is nil");
}

TEST(PixelConverter, NothingOutsideItsReachHasAPixelInTheBitmap) {
    std::mt19937_64 random(48);
    const auto between = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    for (int round = 0; round < 100'000; ++round) {
        TWorld world(Systems(static_cast<std::size_t>(round % 3)));
        const double scale = std::exp(between(std::log(1e-4), std::log(1e5)));
        const TPoint translation(static_cast<int>(between(-5000, 5000)), static_cast<int>(between(-5000, 5000)));
        const TPixelConverter converter(TWorldViewportLocal(&world, scale, translation));
        const TMapArea reach = converter.GetReach({800, 600});
        // Around the edges of the reach.
        const double x = static_cast<double>(round % 2 == 0 ? reach.Left : reach.Right) + between(-3, 3) / scale;
        const double y = static_cast<double>(round % 4 < 2 ? reach.Top : reach.Bottom) + between(-3, 3) / scale;
        const TPoint pixel = converter.ToPixel(x, y);
        ASSERT_FALSE(x < reach.Left && pixel.X >= 0);
        ASSERT_FALSE(x > reach.Right && pixel.X < 800);
        ASSERT_FALSE(y > reach.Top && pixel.Y >= 0);
        ASSERT_FALSE(y < reach.Bottom && pixel.Y < 600);
        ASSERT_TRUE(pixel.X < 0 || pixel.X >= 800 || (x >= reach.Left && x <= reach.Right));
    }
}

TEST(PixelConverter, TheReachIsCloseToTheBitmap) {
    TWorld world(TLatLonWorldSystemFactory::GetObject());
    const TPixelConverter converter(TWorldViewportLocal(&world, 2, {10, 20}));
    const TMapArea reach = converter.GetReach({100, 50});
    EXPECT_EQ(reach.Left, -186);
    EXPECT_EQ(reach.Right, -134);
    EXPECT_EQ(reach.Top, 101);
    EXPECT_EQ(reach.Bottom, 74);
}

TEST(PixelConverter, ItsReachIsThatOfTheBitmapAlsoAtTheEndsOfTheTranslation) {
    constexpr int largest = std::numeric_limits<int>::max();
    constexpr int lowest = std::numeric_limits<int>::min();
    TWorld world(TLatLonWorldSystemFactory::GetObject());
    for (const int translation : {lowest, lowest + 1, lowest + 2, largest - 2, largest - 1, largest}) {
        const TPixelConverter converter(TWorldViewportLocal(&world, 4, {translation, translation}));
        const TMapArea reach = converter.GetReach({100, 50});
        EXPECT_EQ(reach.Left, -180 + (-2 - static_cast<extended>(translation)) / 4) << translation;
        EXPECT_EQ(reach.GetWidth(), 26) << translation;
        EXPECT_EQ(reach.GetHeight(), 13.5L) << translation;
        EXPECT_EQ(converter.ToPixel(reach.GetCenter()), TPoint(50, 25)) << translation;
    }
}

} // namespace lmx::tests
