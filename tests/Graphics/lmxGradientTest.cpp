#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

namespace lmx {
namespace {

using tests::MessageOf;

constexpr double Inf = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr TColor32 Black = 0xFF000000U;
constexpr TColor32 White = 0xFFFFFFFFU;
constexpr TColor32 Red = 0xFFFF0000U;
constexpr TColor32 Blue = 0xFF0000FFU;

TColor32 ColorAt(const std::vector<TColorStop>& stops, double position) {
    return TGradientFactory::GetObject(stops)->GetColor(position);
}

TColor32 Grey(int level) {
    const auto byte = static_cast<std::uint8_t>(level);
    return Color32(byte, byte, byte);
}

TEST(Gradient, HasTheExactColorsOfItsStops) {
    const std::vector<TColorStop> stops = {{0, 0x12345678U}, {0.1, 0x9ABCDEF0U}, {0.7, 0x00FF00FFU}, {1, 0xFFFFFFFFU}};
    for (const TColorStop& stop : stops)
        EXPECT_EQ(ColorAt(stops, stop.Location), stop.Color);
}

TEST(Gradient, RunsFromStopToStop) {
    const std::vector<TColorStop> stops = {{0, Black}, {1, White}};
    EXPECT_EQ(ColorAt(stops, 0.25), Grey(64)); // 63.75
    EXPECT_EQ(ColorAt(stops, 0.5), Grey(128)); // 127.5, halves up
    EXPECT_EQ(ColorAt(stops, 0.75), Grey(191));
    EXPECT_EQ(ColorAt({{0, Black}, {0.5, White}, {1, Black}}, 0.75), Grey(128));
}

TEST(Gradient, MixesEachChannelAlphaIncluded) {
    EXPECT_EQ(ColorAt({{0, 0x00204060U}, {1, 0x80402000U}}, 0.5), 0x40303030U);
    EXPECT_EQ(ColorAt({{0, 0x80402000U}, {1, 0x00204060U}}, 0.5), 0x40303030U);
}

TEST(Gradient, TakesTheNearestStepAndTiesToEven) {
    const std::vector<TColorStop> stops = {{0, 0x00000000U}, {GradientSteps, 0xFFFFFFFFU}};
    const auto step = [](int n) { return ColorBetween(0, 0xFFFFFFFFU, n); };
    EXPECT_NE(step(8), step(9));
    EXPECT_EQ(ColorAt(stops, 8.5), step(8));
    EXPECT_EQ(ColorAt(stops, std::nextafter(8.5, 9)), step(9));
    EXPECT_NE(step(23), step(24));
    EXPECT_EQ(ColorAt(stops, 23.5), step(24));
    EXPECT_EQ(ColorAt(stops, std::nextafter(23.5, 0)), step(23));
}

TEST(Gradient, AStepMixesToTheNearestLevelHalvesUp) {
    for (int from = 0; from < 256; from += 5) {
        for (int to = 0; to < 256; to += 3) {
            for (int step = 0; step <= GradientSteps; step += 4) {
                const double exact = from + (to - from) * step / 256.0;
                EXPECT_EQ(ColorBetween(Grey(from), Grey(to), step), Grey(static_cast<int>(std::floor(exact + 0.5))));
            }
        }
    }
}

TEST(Gradient, BeyondItsOuterStopsHasTheNearestOne) {
    const std::vector<TColorStop> stops = {{0.2, Red}, {0.8, Blue}};
    for (double position : {-Inf, -1e300, -1.0, 0.0, 0.1999999})
        EXPECT_EQ(ColorAt(stops, position), Red);
    for (double position : {0.8000001, 1.0, 7.0, 1e300, Inf})
        EXPECT_EQ(ColorAt(stops, position), Blue);
    EXPECT_EQ(ColorAt({{0.5, Red}}, 0), Red);
    EXPECT_EQ(ColorAt({{0.5, Red}}, 1), Red);
}

TEST(Gradient, StopsOutsideZeroToOneCount) {
    EXPECT_EQ(ColorAt({{-1, Black}, {3, White}}, 1), Grey(128));
}

TEST(Gradient, WithoutStopsGivesZero) {
    EXPECT_EQ(TGradientFactory::GetObject()->GetColor(0.5), 0U);
}

TEST(Gradient, APositionThatIsNoNumberGivesZero) {
    EXPECT_EQ(ColorAt({{0, Red}, {1, Blue}}, NaN), 0U);
}

TEST(Gradient, TwoStopsAtOnePlaceMakeAHardEdge) {
    const std::vector<TColorStop> stops = {{0, Black}, {0.5, Red}, {0.5, Blue}, {1, Blue}};
    EXPECT_EQ(ColorAt(stops, std::nextafter(0.5, 0)), Red);
    EXPECT_EQ(ColorAt(stops, 0.5), Blue);
    EXPECT_EQ(ColorAt(stops, 0.6), Blue);
    EXPECT_EQ(ColorAt({{0.5, Red}, {0.5, White}, {0.5, Blue}}, 0.4), Red);
    EXPECT_EQ(ColorAt({{0.5, Red}, {0.5, White}, {0.5, Blue}}, 0.5), Blue);
}

TEST(Gradient, TakesStopsByLocationWhateverTheirOrder) {
    const std::vector<TColorStop> sorted = {{0, Black}, {0.3, Red}, {0.3, Blue}, {1, White}};
    const std::vector<TColorStop> mixed = {{1, White}, {0.3, Red}, {0, Black}, {0.3, Blue}};
    for (double position = -0.1; position < 1.2; position += 0.01)
        EXPECT_EQ(ColorAt(mixed, position), ColorAt(sorted, position)) << position;
}

TEST(Gradient, IgnoresStopsWithoutAFiniteLocationForColors) {
    const std::vector<TColorStop> plain = {{0, Black}, {1, White}};
    const std::vector<TColorStop> stops = {{NaN, Red}, {0, Black}, {Inf, Red}, {NaN, Blue}, {1, White}, {-Inf, Blue}};
    for (double position : {-1.0, 0.0, 0.3, 0.99, 1.0, 2.0})
        EXPECT_EQ(ColorAt(stops, position), ColorAt(plain, position));
    EXPECT_EQ(ColorAt({{NaN, Red}}, 0.5), 0U);
    EXPECT_EQ(ColorAt({{Inf, Red}}, 0.5), 0U);
}

TEST(Gradient, StopsAsCloseOrAsFarAsNumbersCanBe) {
    constexpr double Tiny = std::numeric_limits<double>::denorm_min();
    EXPECT_EQ(ColorAt({{0, Red}, {Tiny, Blue}}, 0), Red);
    EXPECT_EQ(ColorAt({{0, Red}, {Tiny, Blue}}, Tiny), Blue);
    EXPECT_EQ(ColorAt({{-1.7e308, Red}, {1.7e308, Blue}}, 0), Red); // their distance is beyond the numbers
    EXPECT_EQ(ColorAt({{-1.7e308, Red}, {1.7e308, Blue}}, 1.7e308), Blue);
}

TEST(Gradient, FollowsChangesOfItsStopList) {
    const auto gradient = TGradientFactory::GetObject();
    gradient->GetColorStops().push_back({0, Red});
    EXPECT_EQ(gradient->GetColor(1), Red);
    gradient->GetColorStops().push_back({1, Blue});
    EXPECT_EQ(gradient->GetColor(1), Blue);
    gradient->GetColorStops().Set(1, {1, White});
    EXPECT_EQ(gradient->GetColor(1), White);
}

/// The meaning of stops: a walk through the list in search of the neighbours.
TColor32 ColorByWalking(const std::vector<TColorStop>& stops, double position) {
    const TColorStop* before = nullptr; // the last one at or before the position
    const TColorStop* after = nullptr;  // the first one beyond it
    for (const TColorStop& stop : stops) {
        if (!std::isfinite(stop.Location))
            continue;
        if (stop.Location <= position && (!before || stop.Location >= before->Location))
            before = &stop;
        if (stop.Location > position && (!after || stop.Location < after->Location))
            after = &stop;
    }
    if (!before || !after)
        return before ? before->Color : after ? after->Color : 0;
    return ColorBetween(before->Color, after->Color, GradientStep(position, before->Location, after->Location));
}

TEST(Gradient, EqualsAWalkThroughRandomStops) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> place(-0.2, 1.2);
    for (const int count : {1, 2, 3, 10, 100, 3000}) {
        std::vector<TColorStop> stops;
        for (int i = 0; i < count; ++i)
            stops.push_back({i % 5 ? place(random) : i % 40 / 40.0, static_cast<TColor32>(random())});
        stops.insert(stops.begin() + count / 2, {{NaN, Red}, {Inf, Blue}, {-Inf, White}});
        const auto gradient = TGradientFactory::GetObject(stops);
        for (int i = 0; i < 2000; ++i) {
            const double position =
                i % 3 ? place(random) : stops[random() % stops.size()].Location; // at a stop, or at no number
            ASSERT_EQ(gradient->GetColor(position), ColorByWalking(stops, position)) << count << ' ' << position;
        }
    }
}

TEST(Gradient, IsMadeOfAListInBraces) {
    const auto gradient = TGradientFactory::GetObject({{0, Red}, {1, Blue}});
    const IGradient& readable = *gradient;
    EXPECT_EQ(readable.GetColorStops(), (std::vector<TColorStop>{{0, Red}, {1, Blue}}));
    EXPECT_EQ(gradient->GetColor(1), Blue);
}

TEST(Gradient, ACopyIsIndependent) {
    const auto source = TGradientFactory::GetObject(std::vector<TColorStop>{{0, Red}});
    const auto copy = TGradientFactory::GetObject(source);
    source->GetColorStops().Set(0, {0, Blue});
    EXPECT_EQ(copy->GetColor(0), Red);
    EXPECT_EQ(MessageOf<EExArgumentNilException>([] { TGradientFactory::GetObject(std::shared_ptr<IGradient>()); }),
              "TGradientFactory.GetObject: argument source is nil");
}

TEST(Gradient, TheFactoryKnowsItsOwn) {
    struct THostGradient : IGradient {
        TColorStops Stops;
        TColorStops& GetColorStops() override { return Stops; }
        const TColorStops& GetColorStops() const override { return Stops; }
        TColor32 GetColor(double) const override { return 7; }
        QString ToString() const override { return {}; }
        void FromString(const QString&) override {}
    };
    EXPECT_TRUE(TGradientFactory::IsMaker(*TGradientFactory::GetObject()));
    EXPECT_FALSE(TGradientFactory::IsMaker(THostGradient()));
}

TEST(GradientText, ListsTheStopsInTheirOrder) {
    const auto gradient = TGradientFactory::GetObject(
        std::vector<TColorStop>{{1, 0xFFFFFFFFU}, {0.1, 0x80A0B0C0U}, {NaN, 1}, {-Inf, 2}, {Inf, 3}, {1e-7, 4}});
    EXPECT_EQ(gradient->ToString(),
              "(1:#FFFFFFFF),(0.1:#80A0B0C0),(nan:#00000001),(-inf:#00000002),(inf:#00000003),(1e-07:#00000004)");
    EXPECT_EQ(TGradientFactory::GetObject()->ToString(), "");
}

TEST(GradientText, DoesNotDependOnTheLocale) {
    const TFormatSettingsScope comma({u','});
    const auto gradient = TGradientFactory::GetObject(std::vector<TColorStop>{{0.5, Red}});
    EXPECT_EQ(gradient->ToString(), "(0.5:#FFFF0000)");
    gradient->FromString(QStringLiteral("(0.25:#FF0000FF)"));
    EXPECT_EQ(gradient->GetColorStops(), (std::vector<TColorStop>{{0.25, Blue}}));
}

TEST(GradientText, RestoresEveryLocationBitForBit) {
    std::mt19937_64 random(4);
    std::vector<TColorStop> stops = {{0.0, 1},     {-0.0, 2}, {5e-324, 3}, {-1.7976931348623157e308, 4}, {NaN, 5},
                                     {1.0 / 3, 6}, {Inf, 7},  {-Inf, 8},   {2.2250738585072011e-308, 9}};
    while (stops.size() < 2000)
        if (const TColorStop stop{std::bit_cast<double>(random()), static_cast<TColor32>(random())};
            !std::isnan(stop.Location))
            stops.push_back(stop);
    const auto copy = TGradientFactory::GetObject();
    copy->FromString(TGradientFactory::GetObject(stops)->ToString());
    ASSERT_EQ(copy->GetColorStops().size(), stops.size());
    for (std::size_t i = 0; i < stops.size(); ++i) {
        const TColorStop& read = copy->GetColorStops()[i];
        EXPECT_EQ(read.Color, stops[i].Color);
        EXPECT_TRUE(std::isnan(stops[i].Location) ? std::isnan(read.Location)
                                                  : std::bit_cast<std::uint64_t>(read.Location) ==
                                                        std::bit_cast<std::uint64_t>(stops[i].Location))
            << stops[i].Location;
    }
}

TEST(GradientText, SkipsBlanksAroundTheText) {
    const auto gradient = TGradientFactory::GetObject();
    gradient->FromString(QStringLiteral("\n  (0:#ff0000ff),(1:#FFFF0000)\t\r\n"));
    EXPECT_EQ(gradient->GetColorStops(), (std::vector<TColorStop>{{0, Blue}, {1, Red}}));
    gradient->FromString(QStringLiteral(" \n"));
    EXPECT_TRUE(gradient->GetColorStops().empty());
}

class DamagedGradientText : public testing::TestWithParam<const char*> {};

TEST_P(DamagedGradientText, IsRefusedAndChangesNothing) {
    const std::vector<TColorStop> stops = {{0, Red}, {1, Blue}};
    const auto gradient = TGradientFactory::GetObject(stops);
    EXPECT_EQ(MessageOf<EConvertError>([&] { gradient->FromString(QString::fromUtf8(GetParam())); }),
              "Invalid gradient text");
    EXPECT_EQ(gradient->GetColorStops(), stops);
}

INSTANTIATE_TEST_SUITE_P(Texts, DamagedGradientText,
                         testing::Values("x", "(", ")", "()", "(0:#FF000000", "0:#FF000000)", "(0:#FF00000)",
                                         "(0:#FF0000000)", "(0#FF000000)", "(:#FF000000)", "(0,5:#FF000000)",
                                         "(0.5 :#FF000000)", "(0.5x:#FF000000)", "(+0.5:#FF000000)",
                                         "(1e999:#FF000000)", "(0:#FF00000G)", "(0:#FF000000),", ",(0:#FF000000)",
                                         "(0:#FF000000),,(1:#FF000000)", "(0:#FF000000) ,(1:#FF000000)",
                                         "(0:#FF000000),(1:#FF000000)x", "(0:#FF000000)(1:#FF000000)",
                                         "(0x10:#FF000000)", "(\u0660:#FF000000)"));

} // namespace
} // namespace lmx
