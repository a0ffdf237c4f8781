#include <lmx/Widgets/Private/lmxColorField.h>
#include <tests/Support/WidgetPictures.h>

namespace lmx {
namespace {

const std::map<QRgb, char> Letters = {{0xFF000000, '#'}, {0xFFFF8000, 'o'}, {0xFFFFFFFF, '.'},
                                      {0xFFC0C0C0, '-'}, {0xFFFF7F7F, 'l'}, {0xFFE06060, 'd'}};

TEST(ColorField, ShowsAnOpaqueColourInAFrame) {
    const QImage field = RenderColorField({6, 4}, 1, 0xFFFF8000U, Qt::black);
    ASSERT_EQ(field.size(), QSize(6, 4));
    EXPECT_EQ(tests::Letters(field, {0, 0}, {1, 0}, Letters), "######");
    EXPECT_EQ(tests::Letters(field, {0, 1}, {1, 0}, Letters), "#oooo#");
    EXPECT_EQ(tests::Letters(field, {1, 0}, {0, 1}, Letters), "#oo#");
    EXPECT_EQ(tests::Letters(field, {0, 3}, {1, 0}, Letters), "######");
}

TEST(ColorField, ShowsSquaresBehindAColourThatIsNotOpaque) {
    const QImage clear = RenderColorField({14, 10}, 1, 0x00FF8000U, Qt::black);
    EXPECT_EQ(tests::Letters(clear, {0, 1}, {1, 0}, Letters), "#....----....#");
    EXPECT_EQ(tests::Letters(clear, {0, 5}, {1, 0}, Letters), "#----....----#");
    const QImage half = RenderColorField({14, 10}, 1, 0x80FF0000U, Qt::black);
    EXPECT_EQ(tests::Letters(half, {0, 1}, {1, 0}, Letters), "#lllldddd"
                                                             "llll#");
}

TEST(ColorField, IsSharpOnDenseScreens) {
    const QImage field = RenderColorField({6, 4}, 2, 0x00000000U, Qt::black);
    ASSERT_EQ(field.size(), QSize(12, 8));
    EXPECT_EQ(field.devicePixelRatio(), 2);
    EXPECT_EQ(tests::Letters(field, {0, 2}, {1, 0}, Letters), "##........##");
}

TEST(ColorField, IsNothingWithoutAnArea) {
    EXPECT_TRUE(RenderColorField({0, 4}, 1, 0xFFFF8000U, Qt::black).isNull());
    EXPECT_TRUE(RenderColorField({4, -1}, 1, 0xFFFF8000U, Qt::black).isNull());
}

} // namespace
} // namespace lmx
