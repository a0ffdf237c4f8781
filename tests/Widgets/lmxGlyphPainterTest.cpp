#include <lmx/Widgets/lmxGlyphPainter.h>
#include <tests/Support/WidgetPictures.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace lmx {
namespace {

using TRows = std::vector<std::string>;

void Cross(TGlyphPainter& glyph) {
    glyph.SetStrokeWidth(1);
    glyph.Polyline({{4, 2}, {4, 6}});
    glyph.Polyline({{2, 4}, {6, 4}});
}

TRows Picture(TGlyph glyph, TSize size, double ratio) {
    return tests::Cover(RenderGlyph(glyph, size, ratio, Qt::black));
}

bool IsSymmetric(const TRows& rows) {
    return std::all_of(rows.begin(), rows.end(),
                       [&](const std::string& row) {
                           return row == std::string(row.rbegin(), row.rend()) &&
                                  std::find(rows.rbegin(), rows.rend(), row) != rows.rend();
                       }) &&
           rows == TRows(rows.rbegin(), rows.rend());
}

struct GlyphRatio : testing::TestWithParam<double> {};

TEST_P(GlyphRatio, GivesTheSizeOfTheRatio) {
    const QImage image = RenderGlyph(Cross, {8, 8}, GetParam(), Qt::black);
    EXPECT_EQ(image.devicePixelRatioF(), GetParam());
    EXPECT_EQ(image.width(), static_cast<int>(8 * GetParam()));
    EXPECT_EQ(image.height(), image.width());
    EXPECT_EQ(image.deviceIndependentSize(), QSizeF(8, 8));
}

TEST_P(GlyphRatio, SmearsNoStraightEdgeAndStaysSymmetric) {
    const TRows rows = Picture(Cross, {8, 8}, GetParam());
    for (const std::string& row : rows)
        EXPECT_EQ(row.find('+'), std::string::npos) << row;
    EXPECT_TRUE(IsSymmetric(rows));
    EXPECT_NE(rows[rows.size() / 2].find('#'), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Ratios, GlyphRatio, testing::Values(1.0, 1.125, 1.25, 1.5, 1.75, 2.0, 3.0));

TEST(GlyphPainter, DrawsStrokesOnWholePixels) {
    EXPECT_EQ(Picture(Cross, {8, 8}, 1),
              (TRows{"........", "...##...", "...##...", ".######.", ".######.", "...##...", "...##...", "........"}));
}

TEST(GlyphPainter, GivesAPictureOfOddSizeAnOddStroke) {
    const auto line = [](TGlyphPainter& glyph) {
        glyph.SetStrokeWidth(1);
        glyph.Polyline({{2.5, 1.5}, {2.5, 3.5}});
    };
    EXPECT_EQ(Picture(line, {5, 5}, 1), (TRows{".....", "..#..", "..#..", "..#..", "....."}));
}

TEST(GlyphPainter, OutlinesAndFills) {
    const auto outline = [](TGlyphPainter& glyph) {
        glyph.SetStrokeWidth(2);
        glyph.Outline({{2, 2}, {6, 2}, {6, 6}, {2, 6}});
    };
    EXPECT_EQ(Picture(outline, {8, 8}, 1),
              (TRows{"........", ".######.", ".######.", ".##..##.", ".##..##.", ".######.", ".######.", "........"}));
    const auto filled = [](TGlyphPainter& glyph) { glyph.Polygon({{1, 1}, {3, 1}, {3, 3}, {1, 3}}); };
    EXPECT_EQ(Picture(filled, {4, 4}, 1), (TRows{"....", ".##.", ".##.", "...."}));
    const auto dot = [](TGlyphPainter& glyph) { glyph.Dot({2, 2}, 2); };
    EXPECT_EQ(Picture(dot, {4, 4}, 1), (TRows{"....", ".##.", ".##.", "...."}));
}

TEST(GlyphPainter, DrawsRoundThingsInTheMiddle) {
    const auto round = [](TGlyphPainter& glyph) {
        glyph.Circle({6, 6}, 4);
        glyph.Disc({6, 6}, 1);
    };
    const TRows rows = Picture(round, {12, 12}, 2);
    EXPECT_EQ(rows[12][12], '#');
    EXPECT_EQ(rows[12][8], '.');
    EXPECT_EQ(rows[12][4], '#');
    EXPECT_TRUE(IsSymmetric(rows));
}

TEST(GlyphPainter, DrawsInTheInk) {
    const QImage image = RenderGlyph(Cross, {8, 8}, 1, QColor(10, 20, 30));
    EXPECT_EQ(image.pixel(4, 4), 0xFF0A141EU);
    EXPECT_EQ(image.pixel(0, 0), 0U);
}

TEST(GlyphPainter, TakesARatioThatIsNoneAs1) {
    for (const double ratio : {0.0, -2.0, std::numeric_limits<double>::quiet_NaN()}) {
        const QImage image = RenderGlyph(Cross, {8, 8}, ratio, Qt::black);
        EXPECT_EQ(image.size(), QSize(8, 8));
        EXPECT_EQ(image.devicePixelRatioF(), 1);
    }
}

} // namespace
} // namespace lmx
