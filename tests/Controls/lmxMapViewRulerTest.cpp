#include <lmx/Controls/lmxMapViewRuler.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <tests/Support/WidgetPictures.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::Letters;

const std::map<QRgb, char> StripLetters = {{0xFFF0F0F0, '.'}, {0xFFA0A0A0, '|'}};

struct MapViewRuler : testing::Test {
    /// The strip at a device pixel ratio.
    QImage Picture(double ratio = 1) {
        QImage image((QSizeF(Strip.size()) * ratio).toSize(), QImage::Format_ARGB32);
        image.fill(Qt::magenta);
        image.setDevicePixelRatio(ratio);
        Strip.render(&image);
        return image;
    }

    TSystemColorsScope Colors{std::make_shared<TFixedSystemColors>()};
    TMapViewRuler Strip;
};

TEST_F(MapViewRuler, BeginsHorizontalAndSmall) {
    EXPECT_EQ(Strip.GetOrientation(), TMapRulerOrientation::roHorizontal);
    EXPECT_EQ(Strip.size(), QSize(20, 20));
    EXPECT_EQ(static_cast<int>(TMapRulerOrientation::roHorizontal), 0);
    EXPECT_EQ(static_cast<int>(TMapRulerOrientation::roVertical), 1);
}

TEST_F(MapViewRuler, HasSevenTicksInSevenDistances) {
    Strip.resize(15 * 7, 20);
    const QImage picture = Picture();
    const std::string full = "|..............";
    const std::string none = "...............";
    EXPECT_EQ(Letters(picture, {0, 0}, {1, 0}, StripLetters), none + none + none + none + none + none + none);
    EXPECT_EQ(Letters(picture, {0, 1}, {1, 0}, StripLetters), full + none + none + none + none + none + none);
    EXPECT_EQ(Letters(picture, {0, 10}, {1, 0}, StripLetters), full + none + none + none + none + none + none);
    EXPECT_EQ(Letters(picture, {0, 11}, {1, 0}, StripLetters), full + full + full + full + full + full + full);
    EXPECT_EQ(Letters(picture, {0, 19}, {1, 0}, StripLetters), full + full + full + full + full + full + full);
}

TEST_F(MapViewRuler, LeavesOutATickWithoutItsWholeDistance) {
    Strip.resize(15 * 7 - 1, 20);
    EXPECT_EQ(Letters(Picture(), {75, 19}, {1, 0}, StripLetters), "|............................");
    Strip.resize(14, 20);
    EXPECT_EQ(Letters(Picture(), {0, 19}, {1, 0}, StripLetters), "..............");
}

TEST_F(MapViewRuler, CrossesTheStripAtEveryTenthTick) {
    Strip.resize(15 * 21, 20);
    const QImage picture = Picture();
    const std::string top = Letters(picture, {0, 1}, {1, 0}, StripLetters);
    for (std::size_t x = 0; x < top.size(); ++x)
        EXPECT_EQ(top[x], x == 0 || x == 150 || x == 300 ? '|' : '.') << x;
}

TEST_F(MapViewRuler, StandsTicksOnTheSideOfTheMapIfHorizontalAndOnTheOuterSideIfVertical) {
    Strip.resize(45, 21);
    EXPECT_EQ(Letters(Picture(), {15, 0}, {0, 1}, StripLetters), "...........||||||||||");
    EXPECT_EQ(Letters(Picture(), {0, 0}, {0, 1}, StripLetters), ".||||||||||||||||||||");
    Strip.SetOrientation(TMapRulerOrientation::roVertical);
    Strip.resize(21, 45);
    const QImage picture = Picture();
    EXPECT_EQ(Letters(picture, {0, 0}, {1, 0}, StripLetters), "|||||||||||||||||||||");
    EXPECT_EQ(Letters(picture, {0, 1}, {1, 0}, StripLetters), ".....................");
    EXPECT_EQ(Letters(picture, {0, 15}, {1, 0}, StripLetters), "||||||||||...........");
    EXPECT_EQ(Letters(picture, {0, 30}, {1, 0}, StripLetters), "||||||||||...........");
}

TEST_F(MapViewRuler, DoublesEverythingAtRatio2) {
    Strip.resize(45, 20);
    const QImage picture = Picture(2);
    const std::string full = "||............................";
    const std::string none = "..............................";
    EXPECT_EQ(Letters(picture, {0, 1}, {1, 0}, StripLetters), none + none + none);
    EXPECT_EQ(Letters(picture, {0, 2}, {1, 0}, StripLetters), full + none + none);
    EXPECT_EQ(Letters(picture, {0, 21}, {1, 0}, StripLetters), full + none + none);
    EXPECT_EQ(Letters(picture, {0, 22}, {1, 0}, StripLetters), full + full + full);
    EXPECT_EQ(Letters(picture, {0, 39}, {1, 0}, StripLetters), full + full + full);
    Strip.SetOrientation(TMapRulerOrientation::roVertical);
    Strip.resize(20, 45);
    const QImage vertical = Picture(2);
    EXPECT_EQ(Letters(vertical, {0, 0}, {0, 1}, StripLetters), full + full + full);
    EXPECT_EQ(Letters(vertical, {19, 0}, {0, 1}, StripLetters), full + full + full);
    EXPECT_EQ(Letters(vertical, {20, 0}, {0, 1}, StripLetters), full + none + none);
}

TEST_F(MapViewRuler, KeepsEvenLinesAtRatio1And5) {
    Strip.resize(46, 20); // 69 pixels; ticks at 0, 22.5 and 45
    const QImage picture = Picture(1.5);
    EXPECT_EQ(Letters(picture, {0, 2}, {1, 0}, StripLetters), "||" + std::string(67, '.'));
    EXPECT_EQ(Letters(picture, {0, 15}, {1, 0}, StripLetters), "||" + std::string(67, '.'));
    EXPECT_EQ(Letters(picture, {0, 17}, {1, 0}, StripLetters),
              "||" + std::string(21, '.') + "||" + std::string(20, '.') + "||" + std::string(22, '.'));
}

TEST_F(MapViewRuler, RepaintsForAnotherOrientation) {
    tests::ShowActive(Strip);
    const QImage horizontal = Picture();
    Strip.SetOrientation(TMapRulerOrientation::roVertical);
    EXPECT_EQ(Strip.GetOrientation(), TMapRulerOrientation::roVertical);
    EXPECT_NE(Picture(), horizontal);
}

} // namespace
} // namespace lmx
