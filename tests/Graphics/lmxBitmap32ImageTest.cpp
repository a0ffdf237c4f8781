#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Graphics/Pictures.h>
#include <tests/Support/QtWarnings.h>

#include <QImage>
#include <QPainter>

namespace lmx {
namespace {

using tests::AllPixels;

TEST(Bitmap32Image, ToQImageKeepsEveryBit) {
    TBitmap32 bitmap(3, 1);
    bitmap.Pixel(0, 0) = 0x010A141EU;
    bitmap.Pixel(1, 0) = 0x00FFFFFFU;
    bitmap.Pixel(2, 0) = 0xFF123456U;
    const QImage image = bitmap.ToQImage();
    EXPECT_EQ(image.format(), QImage::Format_ARGB32);
    EXPECT_EQ(image.size(), QSize(3, 1));
    EXPECT_EQ(image.pixel(0, 0), 0x010A141EU);
    EXPECT_EQ(image.pixel(1, 0), 0x00FFFFFFU);
    EXPECT_EQ(image.pixel(2, 0), 0xFF123456U);
}

TEST(Bitmap32Image, TheCopyIsIndependent) {
    TBitmap32 bitmap(1, 1);
    const QImage image = bitmap.ToQImage();
    bitmap.Clear(clWhite32);
    EXPECT_EQ(image.pixel(0, 0), 0U);
}

TEST(Bitmap32Image, EmptyBitmapsAndNullPicturesCorrespond) {
    EXPECT_TRUE(TBitmap32(0, 4).ToQImage().isNull());
    EXPECT_TRUE(TBitmap32::FromQImage(QImage()).IsEmpty());
}

constexpr std::int32_t WiderThanQtHolds = 1 << 26; // as many bits in a row as an int cannot count

TEST(Bitmap32Image, ABitmapThatQtCannotHoldIsRefused) {
    const TBitmap32 bitmap(WiderThanQtHolds, 1);
    EXPECT_THROW(bitmap.ToQImage(), EOutOfMemory);
}

TEST(Bitmap32Image, ABitmapThatQtCannotHoldIsPaintedAsFarAsADeviceReaches) {
    TBitmap32 bitmap(WiderThanQtHolds, 1);
    bitmap.Pixel(2, 0) = 0xFF123456U;
    QImage screen(3, 1, QImage::Format_RGB32);
    screen.fill(Qt::white);
    QPainter painter(&screen);
    bitmap.PaintTo(painter);
    painter.end();
    EXPECT_EQ(screen.pixel(2, 0), 0xFF123456U);
}

TEST(Bitmap32Image, APictureWithoutRoomForItsColorsIsRefused) {
    QImage image(WiderThanQtHolds, 1, QImage::Format_Mono);
    ASSERT_FALSE(image.isNull());
    const tests::TExpectedQtWarning expected(QStringLiteral("QImage: out of memory"));
    EXPECT_THROW(TBitmap32::FromQImage(image), EOutOfMemory);
}

TEST(Bitmap32Image, FromQImageConvertsOtherFormats) {
    QImage image(3, 2, QImage::Format_RGB888); // rows padded to 12 bytes
    image.fill(QColor(1, 2, 3));
    image.setPixel(2, 1, qRgb(9, 8, 7));
    EXPECT_EQ(AllPixels(TBitmap32::FromQImage(image)),
              (std::vector<TColor32>{0xFF010203U, 0xFF010203U, 0xFF010203U, 0xFF010203U, 0xFF010203U, 0xFF090807U}));
}

TEST(Bitmap32Image, RoundTripIsExact) {
    std::mt19937 random(24);
    const TBitmap32 bitmap = tests::RandomBitmap(random, 13, 7);
    EXPECT_EQ(AllPixels(TBitmap32::FromQImage(bitmap.ToQImage())), AllPixels(bitmap));
}

TEST(Bitmap32Image, PaintToIgnoresAlpha) {
    TBitmap32 bitmap(2, 1);
    bitmap.Pixel(0, 0) = 0x00112233U;
    bitmap.Pixel(1, 0) = 0x80445566U;
    QImage screen(3, 1, QImage::Format_RGB32);
    screen.fill(Qt::white);
    QPainter painter(&screen);
    bitmap.PaintTo(painter);
    EXPECT_EQ(painter.compositionMode(), QPainter::CompositionMode_SourceOver);
    painter.end();
    EXPECT_EQ(screen.pixel(0, 0), 0xFF112233U);
    EXPECT_EQ(screen.pixel(1, 0), 0xFF445566U);
    EXPECT_EQ(screen.pixel(2, 0), 0xFFFFFFFFU);
}

class Bitmap32ImageRatio : public testing::TestWithParam<double> {};

TEST_P(Bitmap32ImageRatio, PaintToIsPixelForPixelOnDenseScreens) {
    std::mt19937 random(25);
    const TBitmap32 bitmap = tests::RandomBitmap(random, 30, 20);
    QImage screen(30, 20, QImage::Format_RGB32);
    screen.setDevicePixelRatio(GetParam());
    screen.fill(Qt::white);
    QPainter painter(&screen);
    bitmap.PaintTo(painter, GetParam());
    painter.end();
    for (std::int32_t y = 0; y < 20; ++y)
        for (std::int32_t x = 0; x < 30; ++x)
            ASSERT_EQ(screen.pixel(x, y), bitmap.Pixel(x, y) | clBlack32);
}

INSTANTIATE_TEST_SUITE_P(Ratios, Bitmap32ImageRatio, testing::Values(1.0, 1.25, 1.5, 2.0));

TEST(Bitmap32Image, PaintToOfAnEmptyBitmapPaintsNothing) {
    QImage screen(1, 1, QImage::Format_RGB32);
    screen.fill(Qt::white);
    QPainter painter(&screen);
    TBitmap32(0, 3).PaintTo(painter);
    painter.end();
    EXPECT_EQ(screen.pixel(0, 0), 0xFFFFFFFFU);
}

} // namespace
} // namespace lmx
