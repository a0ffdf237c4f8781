#include <lmx/Layers/Objects/lmxImageObjectLayerItem.h>
#include <tests/Graphics/Pictures.h>
#include <tests/Layers/Objects/ObjectScene.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::AllPixels;
using tests::TObjectNews;
using tests::TObjectScene;

TEST(ImageObjectLayerItem, HasTheSizeOfItsImage) {
    TObjectScene scene;
    auto* item = scene.Add<TImageObjectLayerItem>();
    EXPECT_EQ(item->GetObjectType(), QStringLiteral("Image"));
    EXPECT_EQ(item->GetObjectClassType(), QString()); // it cannot be saved
    EXPECT_TRUE(item->GetOwnsImage());
    EXPECT_EQ(item->GetImage(), nullptr);
    item->SetRect({10, 20, 30, 40});
    const TGrabberRects grabbers = item->GetGrabberRects();
    TObjectNews news(scene.Layer.Get());
    auto* image = new TBitmap32(50, 30);
    item->SetImage(image);
    EXPECT_EQ(item->GetImage(), image);
    EXPECT_EQ(item->GetRect(), TRect(10, 20, 60, 50));
    EXPECT_EQ(item->GetGrabberRects(), grabbers); // not by SetRect
    EXPECT_EQ(item->GetAnchorData(), TAnchorData(10, 20, 170, 60));
    EXPECT_EQ(news.Take(), QStringLiteral("changed: 1"));
    item->SetImage(image);
    EXPECT_EQ(news.Take(), QStringLiteral("0"));
    item->SetImage(nullptr);
    EXPECT_EQ(item->GetRect(), TRect(10, 20, 60, 50));
    EXPECT_EQ(news.Take(), QStringLiteral("changed: 1"));
}

TEST(ImageObjectLayerItem, LeavesAnImageThatItDoesNotOwn) {
    TBitmap32 image(5, 5);
    {
        TImageObjectLayerItem item(nullptr);
        item.SetOwnsImage(false);
        item.SetImage(&image);
        item.SetImage(nullptr);
        item.SetImage(&image);
    }
    EXPECT_EQ(image.GetWidth(), 5);
}

TEST(ImageObjectLayerItem, PaintsBackgroundAndBorderAlone) {
    TObjectScene scene;
    auto* item = scene.Add<TImageObjectLayerItem>();
    auto image = std::make_unique<TBitmap32>(50, 30);
    image->Clear(0xFFFF0000);
    item->SetImage(image.release());
    EXPECT_EQ(AllPixels(scene.Painted()), AllPixels(tests::TTestMap(200, 100).Bitmap));
    item->SetShowBackground(true);
    item->SetBackgroundColor(0xFF00FF00);
    item->SetIsSelected(true); // shows no grabbers either
    EXPECT_EQ(scene.Painted().Pixel(0, 0), 0xFF00FF00U);
    EXPECT_EQ(scene.Map->Bitmap.Pixel(49, 29), 0xFF00FF00U);
}

} // namespace
} // namespace lmx
