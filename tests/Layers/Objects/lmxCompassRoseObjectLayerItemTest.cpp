#include <lmx/Graphics/lmxVectorDoc.h>
#include <lmx/Layers/Objects/lmxCompassRoseObjectLayerItem.h>
#include <tests/Graphics/Pictures.h>
#include <tests/Layers/Objects/ObjectScene.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::AllPixels;
using tests::TObjectNews;
using tests::TObjectScene;

constexpr TColor32 Light = 0xFFA9A9A9;
constexpr TColor32 Red = 0xFFFF0000;

TCompassRoseObjectLayerItem* AddRose(TObjectScene& scene, const TRect& rect) {
    auto* item = scene.Add<TCompassRoseObjectLayerItem>();
    item->SetRect(rect);
    return item;
}

TEST(CompassRoseObjectLayerItem, BeginsDrawn) {
    TObjectScene scene;
    const TCompassRoseObjectLayerItem item(scene.Layer.Get());
    EXPECT_EQ(item.GetObjectType(), QStringLiteral("Compass rose"));
    EXPECT_EQ(item.GetObjectClassType(), QStringLiteral("COMPASSROSE"));
    EXPECT_EQ(item.GetRect(), TRect(0, 0, 256, 256));
    EXPECT_EQ(item.GetGrabberOptions(), (TGrabberOptions{TGrabberOption::goResizable, TGrabberOption::goFixedAspect}));
    EXPECT_EQ(item.GetDarkColor(), 0xFF000000U);
    EXPECT_EQ(item.GetFontColor(), 0xFF000000U);
    EXPECT_EQ(item.GetLightColor(), Light);
    EXPECT_EQ(item.GetLineColor(), 0xFF000000U);
    ASSERT_NE(item.GetBuff(), nullptr);
    EXPECT_EQ(item.GetBuff()->GetWidth(), 256);
    EXPECT_EQ(item.GetBuff()->GetHeight(), 256);
    EXPECT_EQ(item.GetBuff()->GetDrawMode(), TDrawMode::dmBlend);
}

TEST(CompassRoseObjectLayerItem, IsADrawingOfTrianglesAndLetters) {
    TCompassRoseObjectLayerItem item(nullptr);
    item.CreateVecDoc(1, 2, 3, 4);
    const TVectorDoc& document = *item.GetVecDoc();
    EXPECT_EQ(document.Width, 512);
    EXPECT_EQ(document.Height, 512);
    std::vector<TVectorDocItem> expected = {TClearItem{0}};
    const char* triangles[] = {"256,53 256,256 203,203",  "256,53 256,256 309,203",  "459,256 256,256 309,203",
                               "459,256 256,256 309,309", "256,459 256,256 309,309", "256,459 256,256 203,309",
                               "53,256 256,256 203,309",  "53,256 256,256 203,203"};
    TColor32 fill = 1;
    for (const char* points : triangles) {
        expected.emplace_back(TPolygonItem{StringToFloatPoints(QString::fromLatin1(points)), fill, 4, 1});
        fill = 3 - fill; // dark and light by turns
    }
    const auto letter = [](const char* text, TFloatPoint place, THAlign horizontal, TVAlign vertical) {
        return TTextItem{
            QString::fromLatin1(text), QStringLiteral("Arial"), -1, place, -1, 42, 3, horizontal, vertical};
    };
    expected.emplace_back(letter("N", {256, 0}, THAlign::haCenter, TVAlign::vaTop));
    expected.emplace_back(letter("S", {256, 512}, THAlign::haCenter, TVAlign::vaBottom));
    expected.emplace_back(letter("E", {512, 256}, THAlign::haRight, TVAlign::vaMiddle));
    expected.emplace_back(letter("W", {0, 256}, THAlign::haLeft, TVAlign::vaMiddle));
    EXPECT_EQ(document.Items, expected);
}

/// A place in the rose, in units of its drawing, as a pixel of a rose of that side.
TColor32 PixelAt(const TBitmap32& picture, double x, double y) {
    const double scale = picture.GetWidth() / 512.0;
    return picture.Pixel(static_cast<int>(x * scale), static_cast<int>(y * scale));
}

TEST(CompassRoseObjectLayerItem, LooksRightSmallAndLarge) {
    for (const int side : {24, 256, 2000}) {
        TObjectScene scene;
        auto* item = AddRose(scene, {0, 0, side, side});
        item->SetDarkColor(Red);
        item->SetLineColor(Red);
        item->ReCreateCompassRoseVector();
        item->ReDrawCompassRose();
        const TBitmap32& picture = *item->GetBuff();
        ASSERT_EQ(picture.GetWidth(), side);
        EXPECT_EQ(PixelAt(picture, 230, 190), Red) << side; // of the north, the western half is dark
        EXPECT_EQ(PixelAt(picture, 190, 290), Red) << side; // of the west, the southern one
        EXPECT_EQ(PixelAt(picture, 320, 230), Red) << side; // of the east, the northern one
        if (side >= 256) {
            EXPECT_EQ(PixelAt(picture, 280, 190), Light) << side;
            EXPECT_EQ(PixelAt(picture, 190, 230), Light) << side;
        }
        EXPECT_EQ(PixelAt(picture, 120, 120), 0U) << side; // beside the rays nothing
        int letters = 0;
        for (int y = 0; y < side * 50 / 512; ++y)
            for (int x = side * 200 / 512; x < side * 312 / 512; ++x)
                letters += AlphaComponent(picture.Pixel(x, y)) > 127 ? 1 : 0;
        if (side >= 256)
            EXPECT_GT(letters, side * side / 3000) << side; // the N
        else
            EXPECT_EQ(letters, 0) << "it would be a speck";
    }
}

TEST(CompassRoseObjectLayerItem, IsNotDrawnAgainWhileItMoves) {
    TObjectScene scene;
    auto* item = AddRose(scene, {10, 10, 60, 60});
    const TBitmap32* before = item->GetBuff();
    scene.Press({35, 35});
    for (int step = 1; step < 20; ++step)
        scene.Move({35 + step, 35 + step});
    EXPECT_EQ(item->GetRect(), TRect(29, 29, 79, 79));
    scene.Painted();
    EXPECT_EQ(item->GetBuff(), before);
    scene.Resize({250, 120});
    EXPECT_EQ(item->GetBuff(), before);
    item->SetRect({29, 29, 80, 79});
    EXPECT_EQ(item->GetBuff()->GetWidth(), 51);
}

TEST(CompassRoseObjectLayerItem, StaysRoundInTheHandOfTheUser) {
    TObjectScene scene;
    auto* item = AddRose(scene, {10, 10, 60, 60});
    scene.Drag({58, 58}, {90, 85});
    EXPECT_EQ(item->GetRect(), TRect(10, 10, 85, 85));
    EXPECT_EQ(item->GetBuff()->GetWidth(), 75);
    EXPECT_EQ(item->GetBuff()->GetHeight(), 75);
}

TEST(CompassRoseObjectLayerItem, ShowsNewColorsOnceItIsMadeAnew) {
    TObjectScene scene;
    auto* item = AddRose(scene, {0, 0, 100, 100});
    const auto before = AllPixels(scene.Painted());
    TObjectNews news(scene.Layer.Get());
    item->SetDarkColor(Red);
    item->SetLightColor(Red);
    item->SetFontColor(Red);
    item->SetLineColor(Red);
    EXPECT_EQ(news.Take(), QStringLiteral("0"));
    EXPECT_EQ(AllPixels(scene.Painted()), before);
    item->ReCreateCompassRoseVector();
    EXPECT_EQ(AllPixels(scene.Painted()), before);
    item->ReDrawCompassRose();
    EXPECT_EQ(scene.Painted().Pixel(46, 40), Red);
}

TEST(CompassRoseObjectLayerItem, IsBlendedOntoTheView) {
    TObjectScene scene;
    auto* item = AddRose(scene, {40, 10, 104, 74});
    TBitmap32 expected = tests::TTestMap(200, 100).Bitmap;
    expected.Draw(40, 10, *item->GetBuff());
    EXPECT_EQ(AllPixels(scene.Painted()), AllPixels(expected));
    item->SetIsSelected(true);
    item->PaintGrabbers(expected);
    EXPECT_EQ(AllPixels(scene.Painted()), AllPixels(expected));
}

TEST(CompassRoseObjectLayerItem, OfAnySizeTakesAPictureOfItsOwnAtMost) {
    TObjectScene scene;
    auto* item = AddRose(scene, {-500000000, -500000000, 500000000, 500000000});
    EXPECT_EQ(item->GetBuff()->GetWidth(), 4096);
    EXPECT_EQ(item->GetBuff()->GetHeight(), 4096);
    TBitmap32 expected = tests::TTestMap(200, 100).Bitmap;
    expected.Draw(item->GetRect(), item->GetBuff()->GetBounds(), *item->GetBuff());
    EXPECT_EQ(AllPixels(scene.Painted()), AllPixels(expected));
    EXPECT_NE(expected.Pixel(0, 0), clWhite32); // the middle of the rose
    for (const TRect& rect : {TRect(60, 60, 10, 10), TRect(10, 10, 10, 60), TRect()}) {
        item->SetRect(rect);
        EXPECT_TRUE(item->GetBuff()->IsEmpty());
        EXPECT_EQ(AllPixels(scene.Painted()), AllPixels(tests::TTestMap(200, 100).Bitmap));
    }
}

TEST(CompassRoseObjectLayerItem, IsDrawnAgainForADenserScreen) {
    TObjectScene scene;
    auto* item = AddRose(scene, {10, 10, 60, 60});
    scene.Layer->SetDeviceRatio(2);
    EXPECT_EQ(item->GetBuff()->GetWidth(), 100);
    EXPECT_EQ(TCompassRoseObjectLayerItem(scene.Layer.Get()).GetRect(), TRect(0, 0, 512, 512));
}

} // namespace
} // namespace lmx
