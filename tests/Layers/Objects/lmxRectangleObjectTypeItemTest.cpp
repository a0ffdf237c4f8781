#include <lmx/Graphics/lmxPolygons.h>
#include <lmx/Layers/Objects/lmxRectangleObjectTypeItem.h>
#include <tests/Graphics/Pictures.h>
#include <tests/Layers/Objects/ObjectScene.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <array>

namespace lmx {
namespace {

using tests::AllPixels;
using tests::TObjectScene;

TEST(RectangleObjectTypeItem, BeginsShownAndUnmeasured) {
    TObjectScene scene;
    auto* item = scene.Add<TRectangleObjectTypeItem>();
    EXPECT_EQ(item->GetObjectType(), QStringLiteral("Rectangle"));
    EXPECT_EQ(item->GetObjectClassType(), QStringLiteral("RECTANGLE"));
    EXPECT_EQ(item->GetRect(), TRect(0, 0, 100, 100));
    EXPECT_EQ(item->GetGrabberOptions(), TGrabberOptions{TGrabberOption::goResizable});
    EXPECT_TRUE(item->GetShowBackground());
    EXPECT_TRUE(item->GetShowBorder());
    EXPECT_EQ(item->GetBackgroundColor(), 0xFF808080U);
    EXPECT_EQ(item->GetBorderColor(), 0xFF000000U);
    EXPECT_EQ(item->GetGrabberRects(), TGrabberRects());
    EXPECT_EQ(item->GetAnchorData(), TAnchorData());
    item->SetRect({10, 20, 60, 90});
    EXPECT_EQ(item->GetGrabberRects(), PlaceGrabbers({10, 20, 60, 90}));
    EXPECT_EQ(item->GetAnchorData(), TAnchorData(10, 20, 140, 10));
}

TEST(RectangleObjectTypeItem, OneThatWasNeverMovedGoesToWhereItsZeroDistancesLead) {
    TObjectScene scene;
    auto* item = scene.Add<TRectangleObjectTypeItem>();
    item->SetAnchors({TAnchorKind::akRight, TAnchorKind::akBottom});
    scene.Resize({300, 200});
    EXPECT_EQ(item->GetRect(), TRect(200, 100, 300, 200));
    EXPECT_EQ(item->GetAnchorData(), TAnchorData());
}

TEST(RectangleObjectTypeItem, IsABackgroundAndABorder) {
    TObjectScene scene;
    auto* item = scene.Add<TRectangleObjectTypeItem>();
    item->SetRect({10, 20, 60, 90});
    TBitmap32 expected = tests::TTestMap(200, 100).Bitmap;
    const std::array<TFloatPoint, 4> corners = {TFloatPoint{10, 20}, {60, 20}, {60, 90}, {10, 90}};
    PolygonFS(expected, corners, 0xFF808080);
    PolylineFS(expected, corners, 0xFF000000, true, 1.0);
    EXPECT_EQ(AllPixels(scene.Painted()), AllPixels(expected));
    item->SetIsSelected(true);
    item->PaintGrabbers(expected);
    EXPECT_EQ(AllPixels(scene.Painted()), AllPixels(expected));
}

TEST(RectangleObjectTypeItem, IsLargerOnADenseScreen) {
    TObjectScene scene;
    scene.Layer->SetDeviceRatio(2);
    auto* item = scene.Add<TRectangleObjectTypeItem>();
    EXPECT_EQ(item->GetRect(), TRect(0, 0, 200, 200));
}

} // namespace
} // namespace lmx
