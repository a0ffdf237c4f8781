#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Widgets/Private/lmxGradientPicture.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lmx {
namespace {

using TTicks = std::vector<double>;

QStringList Texts(double low, double high, int most = 5) {
    const TFormatSettingsScope point{TFormatSettings{u'.'}};
    QStringList texts;
    for (const double tick : RoundTicks(low, high, most))
        texts += AxisText(tick, low, high);
    return texts;
}

/// Middles and widths of the labels, of which `width` pixels are wanted each.
std::vector<TPlacedLabel> Placed(const std::vector<double>& middles, int first, int width = 20, int right = 100) {
    return PlaceLabels(
        middles, first, 0, right, 5, [](int index) { return QString::number(index); },
        [width](const QString&) { return width; });
}

QStringList Names(const std::vector<TPlacedLabel>& labels) {
    QStringList names;
    for (const TPlacedLabel& label : labels)
        names += label.Text;
    return names;
}

TEST(GradientTicks, AreRoundNumbersInTheOrderOfTheEnds) {
    EXPECT_EQ(RoundTicks(0, 100, 10), (TTicks{0, 10, 20, 30, 40, 50, 60, 70, 80, 90, 100}));
    EXPECT_EQ(RoundTicks(0, 100, 5), (TTicks{0, 20, 40, 60, 80, 100}));
    EXPECT_EQ(RoundTicks(100, 0, 2), (TTicks{100, 50, 0}));
    EXPECT_EQ(RoundTicks(-3, 7, 5), (TTicks{-2, 0, 2, 4, 6}));
}

TEST(GradientTicks, AreWrittenWithTheDigitsThatTheRangeNeeds) {
    EXPECT_EQ(Texts(-30, 45), (QStringList{"-20", "0", "20", "40"}));
    EXPECT_EQ(Texts(0, 1e6), (QStringList{"0", "200000", "400000", "600000", "800000", "1000000"}));
    EXPECT_EQ(Texts(0, 1e-6), (QStringList{"0", "2E-7", "4E-7", "6E-7", "8E-7", "1E-6"}));
    EXPECT_EQ(Texts(-0.1, 0.2, 3), (QStringList{"-0.1", "0", "0.1", "0.2"})) << "no rest of a sum at 0";
    EXPECT_EQ(Texts(0, 1e12, 2), (QStringList{"0", "5E11", "1E12"}));
    EXPECT_EQ(Texts(1000, 1000.3, 3), (QStringList{"1000", "1000.1", "1000.2", "1000.3"}));
}

TEST(GradientTicks, CopeWithRangesThatAreNone) {
    EXPECT_EQ(RoundTicks(5, 5, 5), TTicks{5});
    EXPECT_EQ(RoundTicks(std::nan(""), 5, 5), TTicks{});
    EXPECT_EQ(RoundTicks(0, std::numeric_limits<double>::infinity(), 5), TTicks{});
    EXPECT_EQ(RoundTicks(0, 1, 0), TTicks{});
    EXPECT_EQ(RoundTicks(-1e308, 1e308, 5).size(), 2U) << "a range that is too large for a number";
    EXPECT_LE(RoundTicks(1, 1 + 1e-15, 5).size(), 7U);
}

TEST(GradientLabels, StandInTheMiddleAndWithinTheEdges) {
    const auto labels = Placed({0, 50, 100}, -1);
    ASSERT_EQ(labels.size(), 3U);
    EXPECT_EQ(labels[0].Left, 0);
    EXPECT_EQ(labels[1].Left, 40);
    EXPECT_EQ(labels[2].Left, 80);
}

TEST(GradientLabels, LeaveOutWhatHasNoRoom) {
    EXPECT_EQ(Names(Placed({10, 20, 30, 40, 60, 65, 90}, -1)), (QStringList{"0", "3", "5", "6"}));
}

TEST(GradientLabels, NeverOverlap) {
    std::vector<double> middles;
    for (int i = 0; i < 5000; ++i)
        middles.push_back(i * 0.2);
    int measured = 0;
    const auto labels = PlaceLabels(
        middles, 2500, 0, 1000, 5, [](int index) { return QString::number(index); },
        [&measured](const QString& text) { return ++measured, static_cast<int>(7 * text.size()); });
    EXPECT_GT(labels.size(), 20U);
    EXPECT_EQ(labels.back().Text, "2500") << "the first of all has its room";
    for (const TPlacedLabel& one : labels)
        for (const TPlacedLabel& other : labels)
            EXPECT_TRUE(&one == &other || one.Left + one.Width + 5 <= other.Left ||
                        other.Left + other.Width + 5 <= one.Left)
                << one.Text.toStdString() << " and " << other.Text.toStdString();
    EXPECT_LT(measured, 2500) << "texts that have no room are not made";
}

TEST(GradientLabels, KeepAwayFromTheFirst) {
    EXPECT_EQ(Names(Placed({30, 50, 70}, 1, 30)), QStringList{"1"});
    EXPECT_EQ(Placed({50}, 0, 300)[0].Left, 0) << "one that is too wide begins at the edge";
}

TEST(GradientBar, ShowsColorsOverSquaresInAFrame) {
    const auto gradient = TGradientFactory::GetObject({{0, 0xFFFF0000}, {1, 0x000000FF}});
    const QImage bar = RenderGradientBar({102, 20}, 1, *gradient, Qt::black);
    EXPECT_EQ(bar.pixel(0, 0), 0xFF000000U);
    EXPECT_EQ(bar.pixel(101, 19), 0xFF000000U);
    EXPECT_EQ(bar.pixel(1, 1), 0xFFFF0000U);
    EXPECT_EQ(bar.pixel(1, 7), 0xFFFF0000U) << "opaque";
    EXPECT_EQ(bar.pixel(100, 1), 0xFFFFFFFFU) << "a light square";
    EXPECT_EQ(bar.pixel(100, 7), 0xFFC0C0C0U) << "and a dark one below it";
    EXPECT_EQ(RenderGradientBar({0, 20}, 1, *gradient, Qt::black), QImage());
    EXPECT_EQ(RenderGradientBar({50, 10}, 2, *gradient, Qt::black).size(), QSize(100, 20));
}

TEST(GradientBar, IsTransparentWithoutStops) {
    const QImage bar = RenderGradientBar({40, 20}, 1, *TGradientFactory::GetObject(), Qt::black);
    EXPECT_EQ(bar.pixel(1, 1), 0xFFFFFFFFU);
    EXPECT_EQ(bar.pixel(7, 1), 0xFFC0C0C0U);
}

} // namespace
} // namespace lmx
