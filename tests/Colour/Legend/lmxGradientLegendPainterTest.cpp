#include <lmx/Colour/Legend/lmxGradientLegendPainter.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Graphics/lmxPolygons.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormat.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <tests/Graphics/Pictures.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lmx {
namespace {

using tests::AllPixels;
using tests::MessageOf;
using tests::Show;
using tests::TLetters;
using tests::TPicture;

constexpr TColor32 Border = 0xFF00FF00;
constexpr TColor32 Ground = 0xFF808080;
constexpr TColor32 Text = 0xFFFF0000;
constexpr auto Horizontal = TLegendOrientation::loHorizontal;
constexpr auto Vertical = TLegendOrientation::loVertical;

// From low to high: a hard change of two colours in the middle.
std::shared_ptr<IGradientColorCalculator> TwoColors(float min = 0, float max = 10) {
    const std::vector<TColorStop> stops = {{0, 0xFF0000AA}, {0.5, 0xFF0000AA}, {0.5, 0xFFBBBB00}, {1, 0xFFBBBB00}};
    return TGradientColorCalculatorFactory::GetObject(min, max, TGradientFactory::GetObject(stops));
}

const TLetters& Letters() {
    static const TLetters letters{{0xFF0000AA, 'a'}, {0xFFBBBB00, 'b'}, {Border, '#'}, {Ground, '.'}, {0, ' '}};
    return letters;
}

struct GradientLegend : testing::Test {
    std::shared_ptr<IGradientColorCalculator> Calculator = TwoColors();
    TTicks Ticks;
    TColor32 Background = Ground;
    TGradientLegendMarkArray Marks;
    QString ValueFormat = QStringLiteral("%.3f");

    void Paint(TBitmap32& bitmap, TLegendOrientation orientation, std::int32_t barSize) const {
        GradientLegendPainter_Paint(bitmap, orientation, barSize, Calculator.get(), Ticks, Background, Border, Text,
                                    QStringLiteral("Tahoma"), 8, Marks, ValueFormat);
    }
    TBitmap32 Painted(std::int32_t width, std::int32_t height, TLegendOrientation orientation,
                      std::int32_t barSize) const {
        TBitmap32 bitmap(width, height);
        Paint(bitmap, orientation, barSize);
        return bitmap;
    }
};

TEST_F(GradientLegend, AnUprightBarHasItsHighEndAtTheTop) {
    EXPECT_EQ(Show(Painted(6, 7, Vertical, 4), Letters()), (TPicture{"#####.", //
                                                                     "#bbb#.", //
                                                                     "#bbb#.", //
                                                                     "#bbb#.", //
                                                                     "#aaa#.", //
                                                                     "#aaa#.", //
                                                                     "#####."}));
}

TEST_F(GradientLegend, ALyingBarHasItsHighEndOnTheRight) {
    EXPECT_EQ(Show(Painted(9, 5, Horizontal, 3), Letters()), (TPicture{"#########", //
                                                                       "#aaabbbb#", //
                                                                       "#aaabbbb#", //
                                                                       "#########", //
                                                                       "........."}));
}

// Without an outline's cover: what stays background is the last row and what lies beside the bar.
TEST_F(GradientLegend, TheFillEndsOnePixelBeforeTheBitmap) {
    Calculator = TGradientColorCalculatorFactory::GetObject(
        0, 1, TGradientFactory::GetObject(std::vector<TColorStop>{{0, 0xFF0000AA}}));
    TBitmap32 bitmap(3, 4);
    GradientLegendPainter_Paint(bitmap, Vertical, 0, Calculator.get(), {}, Ground, Border, Text, {}, 8, {}, {});
    EXPECT_EQ(Show(bitmap, Letters()), (TPicture{"#..", "#..", "#..", "#.."})) << "a bar without width has no fill";
    for (std::int32_t y = 0; y < 4; ++y)
        EXPECT_EQ(bitmap.Pixel(1, y), Ground);
}

TEST_F(GradientLegend, ColorsFollowTheirPlaceAndNotTheRange) {
    const auto gradient = TGradientFactory::GetObject(std::vector<TColorStop>{{0, 0xFF000000}, {1, 0xFF0000FF}});
    for (const auto& [min, max] : {std::pair{0.0F, 1.0F}, {5.0F, 5.0F}, {3.0F, -2.0F}, {1e30F, 1e36F}}) {
        Calculator = TGradientColorCalculatorFactory::GetObject(min, max, gradient);
        const TBitmap32 bitmap = Painted(12, 102, Vertical, 10);
        for (std::int32_t y = 1; y < 101; ++y)
            ASSERT_EQ(bitmap.Pixel(5, y), gradient->GetColor(static_cast<double>(1.0L - y / 101.0L))) << y;
    }
}

TEST_F(GradientLegend, ABackgroundOfZeroLeavesTheGround) {
    Background = 0;
    TBitmap32 bitmap(6, 4);
    bitmap.Clear(0xFF123456);
    Paint(bitmap, Vertical, 2);
    EXPECT_EQ(bitmap.Pixel(5, 3), 0xFF123456U);
    EXPECT_EQ(bitmap.Pixel(0, 0), Border);
}

TEST_F(GradientLegend, ColorsAreWrittenRaw) {
    Calculator = TGradientColorCalculatorFactory::GetObject(
        0, 1, TGradientFactory::GetObject(std::vector<TColorStop>{{0, 0x40102030}}));
    EXPECT_EQ(Painted(8, 8, Vertical, 6).Pixel(3, 3), 0x40102030U);
}

TEST_F(GradientLegend, WithoutAGradientThereIsNoFill) {
    Calculator = TGradientColorCalculatorFactory::GetObject(0, 1, nullptr);
    EXPECT_EQ(Show(Painted(4, 4, Vertical, 2), Letters()), (TPicture{"###.", "#.#.", "#.#.", "###."}));
    Calculator = nullptr;
    EXPECT_EQ(Show(Painted(4, 4, Vertical, 2), Letters()), (TPicture{"###.", "#.#.", "#.#.", "###."}));
}

TEST_F(GradientLegend, OfABitmapWithoutPixelsDrawsNothing) {
    Ticks = AllTicks;
    Marks = {{TGradientLegendMarkType::mtCircle, 5, 0xFFFFFFFF, 0xFF000000, 0}};
    EXPECT_TRUE(Painted(0, 0, Vertical, 24).IsEmpty());
    EXPECT_TRUE(Painted(0, 7, Horizontal, 24).IsEmpty());
    EXPECT_EQ(AllPixels(Painted(1, 1, Vertical, 24)), std::vector<TColor32>{Border}) << "no bar, but its outline";
}

TEST_F(GradientLegend, ABarWiderThanTheBitmapIsCutOff) {
    EXPECT_EQ(Show(Painted(3, 5, Vertical, 1000), Letters()), (TPicture{"###", "#bb", "#bb", "#aa", "###"}));
}

// The marks of a picture: the same picture with and without them, compared.
TEST_F(GradientLegend, AMarkStandsAtItsValue) {
    const auto expected = [&](TBitmap32 plain, double x, double y, double radius) {
        const TFloatPoints circle = CirclePolygon(x, y, radius);
        PolygonFS(plain, circle, 0xFFFFFFFF);
        PolylineFS(plain, circle, 0xFF102030, true, 1.0, TJoinStyle::jsMiter, TEndStyle::esButt, 4);
        return AllPixels(plain);
    };
    Ticks = {};
    const TBitmap32 upright = Painted(40, 101, Vertical, 24);
    const TBitmap32 lying = Painted(101, 40, Horizontal, 24);
    Marks = {{TGradientLegendMarkType::mtCircle, 2.5F, 0xFFFFFFFF, 0xFF102030, 3}};
    // Height 100: a quarter of it from the bottom; the outline is drawn over the mark, which does not reach it.
    EXPECT_EQ(AllPixels(Painted(40, 101, Vertical, 24)), expected(upright, 12, 75, 9));
    EXPECT_EQ(AllPixels(Painted(101, 40, Horizontal, 24)), expected(lying, 25, 12, 9));
    Marks[0].Spacing = 100;
    EXPECT_EQ(AllPixels(Painted(40, 101, Vertical, 24)), expected(upright, 12, 75, 2)) << "never smaller than 2";
}

TEST_F(GradientLegend, MarksOutsideTheRangeAreLeftOut) {
    const auto plain = AllPixels(Painted(40, 101, Vertical, 24));
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (const float value : {10.0F, 10.5F, -0.001F, nan}) {
        Marks = {{TGradientLegendMarkType::mtCircle, value, 0xFFFFFFFF, 0xFF102030, 0}};
        EXPECT_EQ(AllPixels(Painted(40, 101, Vertical, 24)), plain) << value;
    }
    Marks[0].Value = 0;
    EXPECT_NE(AllPixels(Painted(40, 101, Vertical, 24)), plain);
    Calculator = TwoColors(5, 5);
    Marks[0].Value = 5;
    EXPECT_EQ(AllPixels(Painted(40, 101, Vertical, 24)), plain) << "a range of one value has no place for it";
}

TEST_F(GradientLegend, TheOutlineLiesOverTheMarks) {
    Marks = {{TGradientLegendMarkType::mtCircle, 0, 0xFFFFFFFF, 0xFFFFFFFF, 0}};
    const TBitmap32 bitmap = Painted(40, 101, Vertical, 24);
    for (std::int32_t x = 0; x <= 24; ++x)
        EXPECT_EQ(bitmap.Pixel(x, 100), Border);
    for (std::int32_t y = 0; y <= 100; ++y)
        EXPECT_EQ(bitmap.Pixel(0, y), Border);
}

// Where text is: the rows and columns of its pixels.
TRect TextBounds(const TBitmap32& bitmap, TRect within) {
    TRect bounds(within.Right, within.Bottom, within.Left, within.Top);
    for (std::int32_t y = std::max(0, within.Top); y < std::min(bitmap.GetHeight(), within.Bottom); ++y)
        for (std::int32_t x = std::max(0, within.Left); x < std::min(bitmap.GetWidth(), within.Right); ++x)
            if (bitmap.Pixel(x, y) == Text)
                bounds = {std::min(bounds.Left, x), std::min(bounds.Top, y), std::max(bounds.Right, x + 1),
                          std::max(bounds.Bottom, y + 1)};
    return bounds;
}

// The picture that the labels make, by the rule: the height of a line from the font that the bitmap had before, widths
// from the new one.
TBitmap32 WithLabels(TBitmap32 bitmap, bool isVertical, std::int32_t barSize, const std::vector<int>& shown,
                     const std::vector<QString>& texts) {
    const std::int32_t lineHeight = bitmap.TextHeight("Wg");
    bitmap.GetFont().Name = "Tahoma";
    bitmap.GetFont().Size = 8;
    const std::int32_t length = (isVertical ? bitmap.GetHeight() : bitmap.GetWidth()) - 1;
    for (const int i : shown) {
        const QString& text = texts[static_cast<std::size_t>(i)];
        const std::int32_t width = bitmap.TextWidth(text);
        if (isVertical) {
            const std::int32_t y =
                i == 0   ? length - lineHeight
                : i == 4 ? 0
                         : static_cast<std::int32_t>(std::nearbyint(length - i * (length / 4.0) - lineHeight / 2.0));
            bitmap.RenderText(barSize + 4, y, text, 0, Text);
        } else {
            const std::int32_t x = i == 0 ? 0
                                   : i == 4
                                       ? length - width
                                       : static_cast<std::int32_t>(std::nearbyint(i * (length / 4.0) - width / 2.0));
            bitmap.RenderText(x, barSize + 4, text, 0, Text);
        }
    }
    return bitmap;
}

TEST_F(GradientLegend, LabelsStandAtTheQuartersOfTheRange) {
    const TFormatSettingsScope point({u'.'});
    const std::vector<QString> texts = {"0.000", "2.500", "5.000", "7.500", "10.000"};
    for (const bool isVertical : {true, false}) {
        const auto orientation = isVertical ? Vertical : Horizontal;
        Ticks = {};
        TBitmap32 plain = isVertical ? Painted(120, 203, orientation, 24) : Painted(303, 60, orientation, 24);
        Ticks = AllTicks;
        const TBitmap32 labelled = isVertical ? Painted(120, 203, orientation, 24) : Painted(303, 60, orientation, 24);
        EXPECT_EQ(AllPixels(labelled), AllPixels(WithLabels(plain, isVertical, 24, {0, 4, 2, 1, 3}, texts)))
            << isVertical;
        Ticks = {TTick::tkLowMid, TTick::tkHigh};
        const TBitmap32 two = isVertical ? Painted(120, 203, orientation, 24) : Painted(303, 60, orientation, 24);
        EXPECT_EQ(AllPixels(two), AllPixels(WithLabels(plain, isVertical, 24, {4, 1}, texts))) << isVertical;
    }
}

TEST_F(GradientLegend, TheHeightOfALineIsThatOfTheFontBefore) {
    const TFormatSettingsScope point({u'.'});
    Ticks = {TTick::tkLow};
    TBitmap32 bitmap(120, 203);
    bitmap.GetFont().Size = 30;
    const std::int32_t before = bitmap.TextHeight("Wg");
    Paint(bitmap, Vertical, 24);
    EXPECT_EQ(bitmap.GetFont().Size, 8);
    ASSERT_GT(before, 2 * bitmap.TextHeight("Wg"));
    const TRect text = TextBounds(bitmap, {28, 0, 120, 203});
    EXPECT_GE(text.Top, 202 - before);
    EXPECT_LE(text.Bottom, 202 - before + bitmap.TextHeight("Wg"));
}

TEST_F(GradientLegend, LabelsFollowTheFormat) {
    Ticks = {TTick::tkMid};
    ValueFormat = QStringLiteral("about %.0f K");
    const TFormatSettingsScope point({u'.'});
    TTicks none;
    std::swap(none, Ticks);
    TBitmap32 plain = Painted(120, 203, Vertical, 24);
    std::swap(none, Ticks);
    EXPECT_EQ(AllPixels(Painted(120, 203, Vertical, 24)),
              AllPixels(WithLabels(plain, true, 24, {2}, {"", "", "about 5 K", "", ""})));
    ValueFormat = QStringLiteral("%d");
    EXPECT_EQ(MessageOf<EConvertError>([&] { Painted(120, 203, Vertical, 24); }),
              "Format '%d' invalid or incompatible with argument");
}

TEST_F(GradientLegend, LabelsOfTinyAndHugeRangesAreExact) {
    const TFormatSettingsScope point({u'.'});
    ValueFormat = QStringLiteral("%g");
    for (const auto& [low, high, middle] :
         {std::tuple{0.0F, 1e-6F, 1e-6F}, {-1e6F, 1e6F, 1e6F}, {7.25F, 7.25F, 7.25F}}) {
        Ticks = {};
        Calculator = TwoColors(low, high);
        TBitmap32 plain = Painted(200, 203, Vertical, 24);
        Ticks = {TTick::tkMid, TTick::tkHigh};
        const extended mid = low + (static_cast<extended>(high) - low) / 4 * 2;
        const std::vector<QString> texts = {"", "", Format(u"%g", {mid}), "",
                                            Format(u"%g", {static_cast<extended>(middle)})};
        EXPECT_EQ(AllPixels(Painted(200, 203, Vertical, 24)), AllPixels(WithLabels(plain, true, 24, {4, 2}, texts)));
    }
}

TEST_F(GradientLegend, OnADenseBitmapStrokesAndGapsAreTwiceAsLarge) {
    Ticks = {TTick::tkHigh};
    TBitmap32 bitmap(200, 201);
    bitmap.SetDeviceRatio(2);
    Paint(bitmap, Vertical, 48);
    for (const std::int32_t inset : {0, 1}) {
        EXPECT_EQ(bitmap.Pixel(inset, 100), Border);
        EXPECT_EQ(bitmap.Pixel(48 - inset, 100), Border);
        EXPECT_EQ(bitmap.Pixel(20, inset), Border);
        EXPECT_EQ(bitmap.Pixel(20, 200 - inset), Border);
    }
    EXPECT_NE(bitmap.Pixel(2, 100), Border);
    EXPECT_EQ(bitmap.GetFont().Ratio, 2);
    EXPECT_GE(TextBounds(bitmap, {49, 0, 200, 201}).Left, 48 + 8);
    EXPECT_LE(TextBounds(bitmap, {49, 0, 200, 201}).Left, 48 + 8 + 6);
}

TEST_F(GradientLegend, OnADenseBitmapTheLineBeforeIsDenseToo) {
    const TFormatSettingsScope point({u'.'});
    Ticks = {TTick::tkLow};
    TBitmap32 bitmap(200, 201);
    bitmap.SetDeviceRatio(2);
    TBitmap32 before(1, 1);
    before.GetFont().Ratio = 2;
    Paint(bitmap, Vertical, 48);
    const TRect text = TextBounds(bitmap, {49, 0, 200, 201});
    EXPECT_GE(text.Top, 200 - before.TextHeight("Wg"));
    EXPECT_LT(text.Bottom, 201) << "the label stands above the bar's end as a whole";
}

} // namespace
} // namespace lmx
