#include <lmx/Colour/Legend/lmxPaletteLegendPainter.h>
#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxColorClassList.h>
#include <lmx/Colour/lmxColorKey.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <tests/Graphics/Pictures.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <cmath>

namespace lmx {
namespace {

using tests::AllPixels;
using tests::MessageOf;
using tests::Show;
using tests::TLetters;
using tests::TPicture;

using TItems = std::vector<TPaletteValueColorItem>;

constexpr TColor32 Frame = 0xFF000000;
constexpr TColor32 Text = 0xFFFF0000;
constexpr auto Horizontal = TLegendOrientation::loHorizontal;
constexpr auto Vertical = TLegendOrientation::loVertical;

std::shared_ptr<IBasicPaletteColorCalculator> Palette(float min, float max, std::vector<TColorKeyItem> colors,
                                                      bool isFirstReserved) {
    return TBasicPaletteColorCalculatorFactory::GetObject(TValueRange(min, max), colors, isFirstReserved);
}

std::vector<std::string> TextsOf(const TItems& items) {
    std::vector<std::string> texts;
    for (const TPaletteValueColorItem& item : items)
        texts.push_back(item.Text.toStdString());
    return texts;
}

using TTexts = std::vector<std::string>;

TEST(PaletteLegendItems, AreTheBandsOfThePalette) {
    const TFormatSettingsScope point({u'.'});
    const auto calculator = Palette(0, 3, {{"", 0xFF000001}, {"", 0x80000002}, {"", 0xFF000003}}, false);
    const TItems items = PaletteLegendPainter_GetItems(calculator.get());
    EXPECT_EQ(TextsOf(items), (TTexts{"0.000 - 1.000", "1.000 - 2.000", "2.000 - 3.000"}));
    EXPECT_EQ(items[1].Color, 0x80000002U) << "alpha included";
}

TEST(PaletteLegendItems, AReservedFirstColorHasNoBand) {
    const TFormatSettingsScope point({u'.'});
    const auto calculator = Palette(0, 2, {{"water", 1}, {"", 2}, {"", 3}}, true);
    EXPECT_EQ(TextsOf(PaletteLegendPainter_GetItems(calculator.get())),
              (TTexts{"NODATA", "0.000 - 1.000", "1.000 - 2.000"}));
}

TEST(PaletteLegendItems, ANamedColorKeepsItsNameAndItsBand) {
    const TFormatSettingsScope point({u'.'});
    const auto calculator = Palette(0, 3, {{"", 1}, {"hills", 2}, {"", 3}}, false);
    EXPECT_EQ(TextsOf(PaletteLegendPainter_GetItems(calculator.get())),
              (TTexts{"0.000 - 1.000", "hills", "2.000 - 3.000"}));
    EXPECT_EQ(TextsOf(PaletteLegendPainter_GetItems(Palette(0, 1, {{" ", 1}}, false).get())), (TTexts{" "}))
        << "a blank is a name";
}

TEST(PaletteLegendItems, OneReservedColorAloneIsNoFailure) {
    EXPECT_EQ(TextsOf(PaletteLegendPainter_GetItems(Palette(0, 5, {{"", 1}}, true).get())), (TTexts{"NODATA"}));
}

TEST(PaletteLegendItems, OfNothingAreNone) {
    EXPECT_TRUE(PaletteLegendPainter_GetItems(static_cast<IBasicPaletteColorCalculator*>(nullptr)).empty());
    EXPECT_TRUE(PaletteLegendPainter_GetItems(static_cast<IColorClassCalculator*>(nullptr)).empty());
    EXPECT_TRUE(PaletteLegendPainter_GetItems(TBasicPaletteColorCalculatorFactory::GetObject().get()).empty());
    EXPECT_TRUE(PaletteLegendPainter_GetItems(TColorClassCalculatorFactory::GetObject().get()).empty());
    EXPECT_TRUE(PaletteLegendPainter_GetItems(Palette(0, 1, {}, false).get()).empty());
}

// Steps add up in extended precision: in singles the last bound of many would be another one.
TEST(PaletteLegendItems, ManyBandsEndAtTheMaximum) {
    const TFormatSettingsScope point({u'.'});
    const auto calculator = Palette(0, 1, std::vector<TColorKeyItem>(1000, TColorKeyItem("", 1)), false);
    const TItems items = PaletteLegendPainter_GetItems(calculator.get());
    EXPECT_EQ(items.back().Text, "0.999 - 1.000");
    EXPECT_EQ(items[500].Text, "0.500 - 0.501");
}

TEST(PaletteLegendItems, OfClassesAreTheirLabels) {
    const TFormatSettingsScope point({u'.'});
    const TColorClass low("low", 0, 1, 0xFF111111);
    const TColorClass unnamed("", 1, 2.5F, 0x80222222);
    const std::vector<const TColorClass*> classes = {&low, &unnamed};
    const auto calculator = TColorClassCalculatorFactory::GetObject(classes);
    const TItems items = PaletteLegendPainter_GetItems(calculator.get());
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0], (TPaletteValueColorItem{"low", 0xFF111111}));
    EXPECT_EQ(items[1].Text, unnamed.GetLabel());
    EXPECT_EQ(items[1].Color, 0x80222222U);
}

TEST(PaletteLegendItemHeight, IsTheBoxItsMarginsAndTheSpacing) {
    EXPECT_EQ(PaletteLegendPainter_GetItemHeight(16, 2, 0), 20);
    EXPECT_EQ(PaletteLegendPainter_GetItemHeight(10, 1, 5), 17);
}

const TLetters& Letters() {
    static const TLetters letters{{Frame, '#'}, {0xFF00000A, 'a'}, {0x80000B00, 'b'}, {0, '.'}, {Text, 'T'}};
    return letters;
}

void Paint(TBitmap32& bitmap, TLegendOrientation orientation, const TItems& items, std::int32_t boxSize,
           std::int32_t spacing, std::int32_t margin, const TPalettePainterFilterCallback& filter = {}) {
    PaletteLegendPainter_Paint(&bitmap, orientation, items, boxSize, 8, spacing, margin, Frame, "Tahoma", 8, Text,
                               filter);
}

TEST(PaletteLegend, RefusesNoBitmap) {
    const TItems items = {{"", 1}};
    EXPECT_EQ(MessageOf<EExArgumentNilException>(
                  [&] { PaletteLegendPainter_Paint(nullptr, Vertical, items, 4, 0, 0, 0, Frame, "Tahoma", 8, Text); }),
              EExArgumentNilException("PaletteLegendPainter_Paint", "Bitmap").Message());
}

TEST(PaletteLegend, UprightRowsAreFramedBoxesWrittenRaw) {
    TBitmap32 bitmap(7, 11);
    Paint(bitmap, Vertical, {{"", 0xFF00000A}, {"", 0x80000B00}}, 4, 1, 1);
    // Each row takes 4 + 2 * 1 + 1 pixels; the second one is cut off.
    EXPECT_EQ(Show(bitmap, Letters()), (TPicture{".......", //
                                                 ".####..", //
                                                 ".#aa#..", //
                                                 ".#aa#..", //
                                                 ".####..", //
                                                 ".......", //
                                                 ".......", //
                                                 ".......", //
                                                 ".####..", //
                                                 ".#bb#..", //
                                                 ".#bb#.."}));
}

TEST(PaletteLegend, AFilterKeepsRowsAndTheirIndexes) {
    std::vector<int> asked;
    TBitmap32 bitmap(4, 4);
    Paint(bitmap, Vertical, {{"", 1}, {"", 0xFF00000A}, {"", 2}}, 4, 0, 0, [&](int index, const auto& item) {
        asked.push_back(index);
        return item.Color == 0xFF00000A;
    });
    EXPECT_EQ(asked, (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(Show(bitmap, Letters()), (TPicture{"####", "#aa#", "#aa#", "####"}));
}

TEST(PaletteLegend, WithoutRowsDrawsNothingAndLeavesTheFont) {
    TBitmap32 bitmap(9, 9);
    bitmap.GetFont().Size = 77;
    Paint(bitmap, Vertical, {}, 4, 0, 0);
    Paint(bitmap, Horizontal, {{"a", 1}}, 4, 0, 0, [](int, const auto&) { return false; });
    EXPECT_EQ(AllPixels(bitmap), std::vector<TColor32>(81, 0));
    EXPECT_EQ(bitmap.GetFont().Size, 77);
}

TEST(PaletteLegend, UprightTextsStandBesideTheMiddleOfTheirBox) {
    TBitmap32 bitmap(120, 60);
    const TItems items = {{"Wg low", 1}, {"high", 2}};
    Paint(bitmap, Vertical, items, 16, 0, 2);
    TBitmap32 expected(120, 60);
    expected.GetFont().Name = "Tahoma";
    expected.GetFont().Size = 8;
    const std::int32_t line = expected.TextHeight("Wg");
    for (std::int32_t i = 0; i < 2; ++i) {
        const std::int32_t top = 20 * i + 2;
        expected.FillRectS(2, top, 18, top + 16, items[static_cast<std::size_t>(i)].Color);
        expected.FrameRectS(2, top, 18, top + 16, Frame);
        expected.RenderText(26, top + static_cast<std::int32_t>(std::nearbyint(8 - line / 2.0)),
                            items[static_cast<std::size_t>(i)].Text, 0, Text);
    }
    EXPECT_EQ(AllPixels(bitmap), AllPixels(expected));
}

TEST(PaletteLegend, LyingCellsAreCentredAndTheirTextsStagger) {
    const TItems items = {{"first", 0xFF00000A}, {"the widest", 0x80000B00}, {"x", 0xFF00000A}};
    TBitmap32 bitmap(301, 60);
    Paint(bitmap, Horizontal, items, 10, 5, 3);
    TBitmap32 expected(301, 60);
    expected.GetFont().Name = "Tahoma";
    expected.GetFont().Size = 8;
    const std::int32_t top = expected.TextHeight("Wg") + 3;
    const std::int32_t cell = expected.TextWidth("the widest") + 5;
    const auto start = static_cast<std::int32_t>(std::nearbyint(301 / 2.0 - 3 * cell / 2.0));
    for (std::int32_t i = 0; i < 3; ++i) {
        const std::int32_t left = start + static_cast<std::int32_t>(std::nearbyint(i * cell + cell / 2.0 - 5));
        expected.FillRectS(left, top, left + 10, top + 10, items[static_cast<std::size_t>(i)].Color);
        expected.FrameRectS(left, top, left + 10, top + 10, Frame);
        expected.RenderText(start + i * cell, i == 1 ? top + 13 : 0, items[static_cast<std::size_t>(i)].Text, 0, Text);
    }
    EXPECT_EQ(AllPixels(bitmap), AllPixels(expected));
}

TEST(PaletteLegend, LyingCellsBeginOutsideWhereTheyDoNotFit) {
    TBitmap32 bitmap(12, 30);
    Paint(bitmap, Horizontal, TItems(5, {"", 0xFF00000A}), 4, 2, 0);
    // Cells of 6 from round(6 - 15) = -9: boxes at -8, -2, 4, 10 and 16.
    const std::string row = Show(bitmap, Letters())[static_cast<std::size_t>(bitmap.TextHeight("Wg") + 1)];
    EXPECT_EQ(row, "a#..#aa#..#a");
}

TEST(PaletteLegend, TheWidestTextIsThatOfTheRowsThatAreKept) {
    TBitmap32 bitmap(60, 30);
    Paint(bitmap, Horizontal, {{"a very long text indeed", 1}, {"", 0xFF00000A}}, 6, 0, 0,
          [](int index, const auto&) { return index == 1; });
    const std::string row = Show(bitmap, Letters())[static_cast<std::size_t>(bitmap.TextHeight("Wg") + 2)];
    EXPECT_EQ(row.find('#'), 27U) << "one cell of 6, in the middle of 60";
}

TEST(PaletteLegend, OnADenseBitmapFramesAreTwiceAsThick) {
    TBitmap32 bitmap(6, 6);
    bitmap.SetDeviceRatio(2);
    Paint(bitmap, Vertical, {{"", 0xFF00000A}}, 6, 0, 0);
    EXPECT_EQ(Show(bitmap, Letters()), (TPicture{"######", "######", "##aa##", "##aa##", "######", "######"}));
    EXPECT_EQ(bitmap.GetFont().Ratio, 2);
}

} // namespace
} // namespace lmx
