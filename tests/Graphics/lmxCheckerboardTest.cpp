#include <lmx/Graphics/lmxCheckerboard.h>
#include <tests/Graphics/Pictures.h>

namespace lmx {
namespace {

using tests::Show;
using tests::TPicture;

constexpr TColor32 First = 0x80FFFFFFU;
constexpr TColor32 Second = 0xFFDCDCDCU;
const tests::TLetters Letters = {{First, 'o'}, {Second, 'x'}};

TEST(Checkerboard, FirstColorStandsTopLeft) {
    TBitmap32 bitmap(7, 5);
    DrawCheckerboard(bitmap, First, Second, 2);
    EXPECT_EQ(Show(bitmap, Letters), (TPicture{"ooxxoox", //
                                               "ooxxoox", //
                                               "xxooxxo", //
                                               "xxooxxo", //
                                               "ooxxoox"}));
}

TEST(Checkerboard, SizeBelowOneCountsAsOne) {
    TBitmap32 bitmap(3, 2);
    DrawCheckerboard(bitmap, First, Second, 0);
    EXPECT_EQ(Show(bitmap, Letters), (TPicture{"oxo", "xox"}));
}

TEST(Checkerboard, SquaresMayBeLargerThanTheBitmap) {
    TBitmap32 bitmap(3, 1);
    DrawCheckerboard(bitmap, First, Second, 0x7FFFFFFF);
    EXPECT_EQ(Show(bitmap, Letters), (TPicture{"ooo"}));
}

TEST(Checkerboard, EmptyBitmapStaysEmpty) {
    TBitmap32 bitmap(0, 3);
    DrawCheckerboard(bitmap, First, Second, 8);
    EXPECT_TRUE(bitmap.IsEmpty());
}

} // namespace
} // namespace lmx
