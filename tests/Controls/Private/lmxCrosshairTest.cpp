#include <lmx/Controls/Private/lmxCrosshair.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <tests/Support/TestMap.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

constexpr TColor32 Black = 0xFF000000;
constexpr TColor32 White = 0xFFFFFFFF;

/// A map of 100 x 80 pixels; the place at pixel (50, 40) is longitude -130 and latitude 50.
struct Crosshair : testing::Test {
    Crosshair() { Cross.SetPlace({-130, 50}); }

    TColor32 PixelAfterPaint(int x, int y, double ratio = 1) {
        Map.Bitmap.Clear(clWhite32);
        Cross.Paint(Map.Bitmap, Map.Viewport, ratio);
        return Map.Bitmap.Pixel(x, y);
    }

    tests::TTestMap Map{100, 80};
    TCrosshair Cross;
};

TEST_F(Crosshair, IsHiddenAndBlackAtFirst) {
    const TCrosshair fresh;
    EXPECT_FALSE(fresh.GetIsShown());
    EXPECT_EQ(fresh.GetColor(), Black);
    EXPECT_EQ(fresh.GetThickness(), 1);
    EXPECT_FALSE(fresh.GetHighlights());
    EXPECT_EQ(fresh.GetPlace().X, 0);
    EXPECT_EQ(fresh.GetPlace().Y, 0);
    EXPECT_EQ(fresh.GetSprite(), nullptr);
}

TEST_F(Crosshair, SaysWhetherASetterChangedIt) {
    EXPECT_TRUE(Cross.SetIsShown(true));
    EXPECT_FALSE(Cross.SetIsShown(true));
    EXPECT_TRUE(Cross.SetColor(1));
    EXPECT_FALSE(Cross.SetColor(1));
    EXPECT_TRUE(Cross.SetThickness(2));
    EXPECT_FALSE(Cross.SetThickness(2));
    EXPECT_TRUE(Cross.SetHighlights(true));
    EXPECT_FALSE(Cross.SetHighlights(true));
    EXPECT_TRUE(Cross.SetPlace({1, 2}));
    EXPECT_FALSE(Cross.SetPlace({1, 2}));
}

TEST_F(Crosshair, MissesItsFirstPaintUnlessItWasStyledBefore) {
    Cross.SetIsShown(true);
    EXPECT_EQ(PixelAfterPaint(49, 32), White);
    EXPECT_EQ(Cross.GetSprite(), nullptr);
    EXPECT_EQ(PixelAfterPaint(49, 32), Black);
    TCrosshair styled;
    styled.SetPlace({-130, 50});
    styled.SetIsShown(true);
    styled.SetColor(0xFFFF0000);
    styled.Paint(Map.Bitmap, Map.Viewport, 1);
    EXPECT_EQ(Map.Bitmap.Pixel(49, 32), 0xFFFF0000U);
}

TEST_F(Crosshair, HiddenPaintsDoNotCount) {
    EXPECT_EQ(PixelAfterPaint(49, 32), White);
    EXPECT_EQ(PixelAfterPaint(49, 32), White);
    Cross.SetIsShown(true);
    EXPECT_EQ(PixelAfterPaint(49, 32), White);
    EXPECT_EQ(PixelAfterPaint(49, 32), Black);
}

TEST_F(Crosshair, KeepsItsPictureUntilItsLookChanges) {
    Cross.SetIsShown(true);
    Cross.SetThickness(3);
    PixelAfterPaint(0, 0);
    const TBitmap32* sprite = Cross.GetSprite();
    ASSERT_NE(sprite, nullptr);
    EXPECT_EQ(sprite->GetWidth(), 20);
    EXPECT_EQ(PixelAfterPaint(47, 30), Black);
    EXPECT_EQ(Cross.GetSprite(), sprite);
    Cross.SetHighlights(true);
    PixelAfterPaint(0, 0);
    EXPECT_EQ(Cross.GetSprite()->GetWidth(), 21);
}

TEST_F(Crosshair, IsDrawnForTheRatioOfTheScreen) {
    Cross.SetIsShown(true);
    Cross.SetThickness(2);
    EXPECT_EQ(PixelAfterPaint(48, 22, 2), Black); // an arm from 9 - 1 to 9 + 1, doubled, and 20 away from the middle
    EXPECT_EQ(Cross.GetSprite()->GetWidth(), 40);
    PixelAfterPaint(0, 0, 1);
    EXPECT_EQ(Cross.GetSprite()->GetWidth(), 20);
}

} // namespace
} // namespace lmx
