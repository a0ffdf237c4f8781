#include <lmx/Graphics/Private/lmxReducedPicture.h>

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace lmx {
namespace {

TBitmap32 NoisePicture(int width, int height, TDrawMode mode) {
    std::mt19937 random(7);
    TBitmap32 picture(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            picture.Pixel(x, y) = static_cast<TColor32>(random());
    picture.SetDrawMode(mode);
    return picture;
}

void ExpectEqual(const TBitmap32& a, const TBitmap32& b) {
    ASSERT_EQ(a.GetWidth(), b.GetWidth());
    ASSERT_EQ(a.GetHeight(), b.GetHeight());
    for (int y = 0; y < a.GetHeight(); ++y)
        for (int x = 0; x < a.GetWidth(); ++x)
            ASSERT_EQ(a.Pixel(x, y), b.Pixel(x, y)) << x << ',' << y;
}

class ReducedPictures : public testing::TestWithParam<TDrawMode> {};

TEST_P(ReducedPictures, ShowWhatStretchedDrawingShows) {
    std::mt19937 random(11);
    const auto number = [&](int from, int to) { return std::uniform_int_distribution<int>(from, to)(random); };
    const TBitmap32 picture = NoisePicture(97, 61, GetParam());
    TReducedPictures reduced;
    for (int round = 0; round < 300; ++round) {
        const int width = number(1, 140);
        const int height = number(1, 90);
        const TRect source(number(-5, 40), number(-5, 20), number(41, 100), number(21, 65));
        for (int paint = 0; paint < 3; ++paint) { // the second one makes the reduced form, the third one uses it
            const int left = number(-60, 60);
            const int top = number(-60, 60);
            const TWideRect destination(left, top, left + width, top + height);
            TBitmap32 expected(64, 48);
            expected.Clear(0xFF336699);
            expected.Draw(destination, source, picture);
            TBitmap32 drawn(64, 48);
            drawn.Clear(0xFF336699);
            reduced.Draw(drawn, 0, destination, source, picture);
            ExpectEqual(drawn, expected);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Modes, ReducedPictures,
                         testing::Values(TDrawMode::dmOpaque, TDrawMode::dmBlend, TDrawMode::dmTransparent));

TEST(ReducedPicture, EachPieceHasItsOwn) {
    const TBitmap32 picture = NoisePicture(40, 20, TDrawMode::dmOpaque);
    TReducedPictures reduced;
    TBitmap32 expected(20, 10);
    expected.Draw(TRect(0, 0, 10, 10), TRect(20, 0, 40, 20), picture);
    expected.Draw(TRect(10, 0, 20, 10), TRect(0, 0, 20, 20), picture);
    for (int paint = 0; paint < 3; ++paint) {
        TBitmap32 drawn(20, 10);
        reduced.Draw(drawn, 0, TWideRect(0, 0, 10, 10), TRect(20, 0, 40, 20), picture);
        reduced.Draw(drawn, 1, TWideRect(10, 0, 20, 10), TRect(0, 0, 20, 20), picture);
        ExpectEqual(drawn, expected);
    }
}

TEST(ReducedPicture, AClearedOneSeesTheNewPicture) {
    TBitmap32 picture(4, 4);
    picture.Clear(0xFF000001);
    TReducedPictures reduced;
    TBitmap32 drawn(2, 2);
    for (int paint = 0; paint < 3; ++paint)
        reduced.Draw(drawn, 0, TWideRect(0, 0, 2, 2), TRect(0, 0, 4, 4), picture);
    EXPECT_EQ(drawn.Pixel(0, 0), 0xFF000001U);
    picture.Clear(0xFF000002);
    reduced.Clear();
    reduced.Draw(drawn, 0, TWideRect(0, 0, 2, 2), TRect(0, 0, 4, 4), picture);
    EXPECT_EQ(drawn.Pixel(0, 0), 0xFF000002U);
}

TEST(ReducedPicture, EnlargedPiecesAreNotKept) {
    const TBitmap32 picture = NoisePicture(4, 4, TDrawMode::dmOpaque);
    TReducedPictures reduced;
    TBitmap32 drawn(8, 8);
    TBitmap32 expected(8, 8);
    expected.Draw(TRect(-1000000, -1000000, 1000008, 1000008), TRect(0, 0, 4, 4), picture);
    for (int paint = 0; paint < 3; ++paint)
        reduced.Draw(drawn, 0, TWideRect(-1000000, -1000000, 1000008, 1000008), TRect(0, 0, 4, 4), picture);
    ExpectEqual(drawn, expected);
}

TEST(ReducedPicture, DestinationsMayReachTheEndsOfTheNumbers) {
    using limits = std::numeric_limits<std::int64_t>;
    const TBitmap32 picture = NoisePicture(40, 20, TDrawMode::dmOpaque);
    const TWideRect ends[] = {{limits::min(), limits::min(), limits::max(), limits::max()},
                              {limits::min(), 0, 8, 8},
                              {0, 0, limits::max(), limits::max()},
                              {limits::max(), limits::max(), limits::min(), limits::min()},
                              {8, 8, limits::min(), limits::min()}};
    for (const TWideRect& destination : ends) {
        TReducedPictures reduced;
        TBitmap32 expected(8, 8);
        expected.Draw(destination, picture.GetBounds(), picture);
        for (int paint = 0; paint < 3; ++paint) {
            TBitmap32 drawn(8, 8);
            reduced.Draw(drawn, 0, destination, picture.GetBounds(), picture);
            ExpectEqual(drawn, expected);
        }
    }
}

TEST(ReducedPicture, NothingOfAPictureIsNothing) {
    const TBitmap32 picture = NoisePicture(4, 4, TDrawMode::dmOpaque);
    TReducedPictures reduced;
    TBitmap32 drawn(8, 8);
    for (int paint = 0; paint < 3; ++paint) {
        reduced.Draw(drawn, 0, TWideRect(0, 0, 2, 2), TRect(3, 3, 1, 1), picture);
        reduced.Draw(drawn, 1, TWideRect(4, 0, 4, 2), picture.GetBounds(), picture);
    }
    ExpectEqual(drawn, TBitmap32(8, 8));
}

} // namespace
} // namespace lmx
