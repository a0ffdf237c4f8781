#include <lmx/Controls/Legend/lmxMapViewPaletteValueControl.h>
#include <tests/Support/WidgetPictures.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::PictureOf;

TEST(MapViewPaletteValueControl, IsTwentyHighWithAMarginOfTwo) {
    const TMapViewPaletteValueControl control;
    EXPECT_EQ(control.height(), 20);
    EXPECT_EQ(control.GetContentMargin(), 2);
    EXPECT_EQ(control.GetColorRect(), TRect(2, 2, 18, 18));
    EXPECT_EQ(control.GetSuggestedHeight(), 0);
}

TEST(MapViewPaletteValueControl, ShowsAFramedSwatchAndItsLabel) {
    TMapViewPaletteValueControl control;
    control.resize(120, 30);
    control.SetContentMargin(5);
    EXPECT_EQ(control.GetColorRect(), TRect(5, 5, 25, 25));
    control.SetValueColor(TColor{0x000000FF}); // red
    const int ratio = static_cast<int>(control.devicePixelRatioF());
    const QImage plain = PictureOf(control);
    EXPECT_EQ(plain.pixel(15 * ratio, 15 * ratio), 0xFFFF0000U);
    EXPECT_EQ(plain.pixel(5 * ratio, 15 * ratio), Color32(clBtnShadow));
    EXPECT_EQ(plain.pixel(25 * ratio - 1, 15 * ratio), Color32(clBtnShadow));
    EXPECT_EQ(plain.pixel(4 * ratio, 15 * ratio), Color32(clBtnFace));
    control.SetValueLabel("snow");
    EXPECT_EQ(control.accessibleName(), "snow");
    const QImage labelled = PictureOf(control);
    int first = labelled.width();
    for (int y = 0; y < labelled.height(); ++y)
        for (int x = 0; x < labelled.width(); ++x)
            if (labelled.pixel(x, y) != plain.pixel(x, y))
                first = std::min(first, x);
    EXPECT_GE(first, 29 * ratio) << "4 behind the swatch";
    EXPECT_LE(first, 32 * ratio);
}

} // namespace
} // namespace lmx
