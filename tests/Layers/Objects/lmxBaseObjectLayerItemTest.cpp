#include <lmx/Graphics/lmxPolygons.h>
#include <lmx/Layers/Objects/lmxBaseObjectLayerItem.h>
#include <tests/Graphics/Pictures.h>
#include <tests/Layers/Objects/ObjectScene.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace lmx {
namespace {

using tests::AllPixels;
using tests::TObjectNews;
using tests::TObjectScene;
using tests::TTestItem;
using enum TGrabberOption;

constexpr TColor32 Red = 0xFFFF0000;
constexpr TColor32 Half = 0x80112233;

// ---- Fields

TEST(BaseObjectLayerItem, BeginsPlain) {
    TObjectScene scene;
    const TTestItem item(scene.Layer.Get());
    EXPECT_EQ(item.GetLayer(), scene.Layer.Get());
    EXPECT_EQ(item.GetRect(), TRect());
    EXPECT_EQ(item.GetName(), QString());
    EXPECT_TRUE(item.GetIsVisible());
    EXPECT_FALSE(item.GetIsSelected());
    EXPECT_FALSE(item.GetLocked());
    EXPECT_FALSE(item.GetShowBackground());
    EXPECT_FALSE(item.GetShowBorder());
    EXPECT_EQ(item.GetBackgroundColor(), Color32(255, 255, 255, 200));
    EXPECT_EQ(item.GetBorderColor(), Color32(0, 0, 0, 255));
    EXPECT_EQ(item.GetAnchors(), (TAnchors{TAnchorKind::akLeft, TAnchorKind::akTop}));
    EXPECT_EQ(item.GetAnchorData(), TAnchorData());
    EXPECT_TRUE(item.GetGrabberOptions().IsEmpty());
    EXPECT_EQ(item.GetGrabberRects(), TGrabberRects());
    EXPECT_EQ(item.GetSelectedElement(), TSelectedElement::soNone);
}

TEST(BaseObjectLayerItem, TellsOfEachNewProperty) {
    TObjectScene scene;
    TTestItem* item = scene.Add();
    TObjectNews news(scene.Layer.Get());
    const auto expectNews = [&](auto set) {
        set();
        EXPECT_EQ(news.Take(), QStringLiteral("changed: 1"));
        set(); // an equal value
        EXPECT_EQ(news.Take(), QStringLiteral("0"));
    };
    expectNews([&] { item->SetIsVisible(false); });
    expectNews([&] { item->SetBackgroundColor(Red); });
    expectNews([&] { item->SetShowBackground(true); });
    expectNews([&] { item->SetShowBorder(true); });
    expectNews([&] { item->SetBorderColor(Red); });
    expectNews([&] { item->SetIsSelected(true); });
}

TEST(BaseObjectLayerItem, TellsNobodyOfNameRectangleAndPlainFields) {
    TObjectScene scene;
    TTestItem* item = scene.Add();
    TObjectNews news(scene.Layer.Get());
    item->SetName(QStringLiteral("n"));
    item->SetRect({1, 2, 30, 40});
    item->SetAnchorAdjustedRect({5, 6, 70, 80});
    EXPECT_EQ(item->GetRect(), TRect(5, 6, 70, 80));
    item->SetAnchors({TAnchorKind::akRight});
    item->SetAnchorData({1, 2, 3, 4});
    EXPECT_EQ(item->GetAnchorData(), TAnchorData(1, 2, 3, 4));
    item->SetLocked(true);
    item->SetGrabberOptions({goFixedAspect});
    EXPECT_EQ(news.Take(), QStringLiteral("0"));
}

TEST(BaseObjectLayerItem, AnUpdateTellsOnceAndRepaintsAtEachStep) {
    TObjectScene scene;
    TTestItem* item = scene.Add();
    TObjectNews news(scene.Layer.Get());
    item->BeginUpdate();
    item->BeginUpdate(); // does not nest
    item->SetShowBorder(true);
    item->SetShowBackground(true);
    EXPECT_EQ(news.Take(), QStringLiteral("2"));
    item->EndUpdate();
    EXPECT_EQ(news.Take(), QStringLiteral("changed: 1"));
    item->SetShowBorder(false);
    EXPECT_EQ(news.Take(), QStringLiteral("changed: 1"));
    item->EndUpdate(); // tells also of nothing
    EXPECT_EQ(news.Take(), QStringLiteral("changed: 1"));
}

TEST(BaseObjectLayerItem, WithoutALayerTellsNobody) {
    TTestItem item(nullptr);
    item.SetShowBorder(true);
    item.SetRect({0, 0, 40, 40});
    EXPECT_EQ(item.GetAnchorData(), TAnchorData(0, 0, -40, -40));
    TObjectScene scene;
    TTestItem orphan(scene.Layer.Get());
    scene.Manager->GetSpecialLayers().Clear();
    EXPECT_EQ(orphan.GetLayer(), nullptr);
    orphan.SetShowBorder(true);
    orphan.SetRect({0, 0, 40, 40});
    EXPECT_EQ(orphan.GetRect(), TRect(0, 0, 40, 40));
}

// ---- The rectangle

TEST(BaseObjectLayerItem, ARectangleMovesGrabbersAndDistances) {
    TObjectScene scene;
    TTestItem* item = scene.Add();
    item->SetRect({20, 10, 100, 60});
    EXPECT_EQ(item->GetGrabberRects(), PlaceGrabbers({20, 10, 100, 60}));
    EXPECT_EQ(item->GetAnchorData(), TAnchorData(20, 10, 100, 40));
    item->SetAnchorData({});
    item->SetRect({20, 10, 100, 60}); // an equal one does nothing
    EXPECT_EQ(item->GetAnchorData(), TAnchorData());
    item->UpdateAnchorData();
    EXPECT_EQ(item->GetAnchorData(), TAnchorData(20, 10, 100, 40));
}

TEST(BaseObjectLayerItem, ItsViewRectangleHasRoomForGrabbers) {
    TObjectScene scene;
    TTestItem* item = scene.AddAt({20, 10, 30, 60});
    EXPECT_EQ(item->GetViewRect(), TRect(20, 10, 46, 60));
    EXPECT_EQ(item->GetGrabberRects(), PlaceGrabbers({20, 10, 46, 60}));
}

TEST(BaseObjectLayerItem, GrabbersGoByTheViewRectangleOfAnOverride) {
    class TWide final : public TTestItem {
    public:
        using TTestItem::TTestItem;
        TRect GetViewRect() const override { return {0, 0, 200, 100}; }
    };
    TWide item(nullptr);
    item.SetRect({1, 1, 2, 2});
    EXPECT_EQ(item.GetGrabberRects(), PlaceGrabbers({0, 0, 200, 100}));
}

// ---- The mouse

TEST(BaseObjectLayerItem, GrabbersOfASmallItemAreOutOfReach) {
    TObjectScene scene;
    TTestItem* item = scene.AddAt({20, 20, 30, 30});
    scene.Press({40, 40}); // on the bottom right grabber
    EXPECT_FALSE(item->GetIsSelected());
    scene.Press({29, 29});
    EXPECT_EQ(item->GetSelectedElement(), TSelectedElement::soTopLeftGrabber);
}

TEST(BaseObjectLayerItem, TheReachOfAGrabberCountsWithinTheRectangleOnly) {
    TObjectScene scene;
    TTestItem* item = scene.AddAt({20, 20, 80, 80});
    scene.Press({19, 19});
    EXPECT_FALSE(item->GetIsSelected());
    scene.Press({29, 29}); // two pixels beyond the grabber, within the item
    EXPECT_EQ(item->GetSelectedElement(), TSelectedElement::soTopLeftGrabber);
    scene.Press({30, 30});
    EXPECT_EQ(item->GetSelectedElement(), TSelectedElement::soObject);
}

TEST(BaseObjectLayerItem, WithoutGrabbersIsMovedAsAWhole) {
    TObjectScene scene;
    TTestItem* item = scene.AddAt({20, 20, 80, 80}, {});
    scene.Drag({21, 21}, {31, 26});
    EXPECT_EQ(item->GetRect(), TRect(30, 25, 90, 85));
}

TEST(BaseObjectLayerItem, OneThatLosesItsSelectionInADragStays) {
    TObjectScene scene;
    TTestItem* item = scene.AddAt({20, 20, 80, 80});
    scene.Press({50, 50});
    item->SetIsSelected(false);
    scene.Move({90, 90});
    EXPECT_EQ(item->GetRect(), TRect(20, 20, 80, 80));
}

// ---- Painting

TEST(BaseObjectLayerItem, PaintsBackgroundAndBorder) {
    TObjectScene scene;
    TTestItem* item = scene.AddAt({20, 10, 60, 40});
    item->SetBackgroundColor(Half);
    item->SetBorderColor(Red);
    EXPECT_EQ(AllPixels(scene.Painted()), AllPixels(tests::TTestMap(200, 100).Bitmap)); // neither is shown
    const std::array<TFloatPoint, 4> corners = {TFloatPoint{20, 10}, TFloatPoint{60, 10}, TFloatPoint{60, 40},
                                                TFloatPoint{20, 40}};
    TBitmap32 expected = tests::TTestMap(200, 100).Bitmap;
    PolygonFS(expected, corners, Half);
    item->SetShowBackground(true);
    EXPECT_EQ(AllPixels(scene.Painted()), AllPixels(expected));
    PolylineFS(expected, corners, Red, true, 1.0);
    item->SetShowBorder(true);
    EXPECT_EQ(AllPixels(scene.Painted()), AllPixels(expected));
    EXPECT_NE(expected.Pixel(19, 20), clWhite32); // half of the border stands outside
    item->SetIsVisible(false);
    item->Paint(&scene.Map->World, scene.Viewport(), scene.Map->Bitmap);
    EXPECT_EQ(AllPixels(scene.Map->Bitmap), AllPixels(expected)); // as it was
}

TEST(BaseObjectLayerItem, AnInvertedRectangleIsPaintedByItsCorners) {
    TObjectScene upright;
    TObjectScene inverted;
    for (auto [scene, rect] :
         {std::pair(&upright, TRect(20, 10, 60, 40)), std::pair(&inverted, TRect(60, 40, 20, 10))}) {
        TTestItem* item = scene->AddAt(rect);
        item->SetShowBackground(true);
        item->SetBackgroundColor(Red);
        item->SetShowBorder(true);
    }
    EXPECT_EQ(AllPixels(inverted.Painted()), AllPixels(upright.Painted()));
}

/// The frame and the grabbers as calls on a bitmap.
TBitmap32 ExpectedGrabbers(const TRect& rect, const std::vector<TRect>& grabbers, int thickness = 1) {
    TBitmap32 bitmap = tests::TTestMap(200, 100).Bitmap;
    std::vector<TColor32> dashes(static_cast<std::size_t>(thickness), clBlack32);
    dashes.resize(2 * dashes.size(), clWhite32);
    for (int i = 0; i < thickness; ++i) {
        bitmap.SetStipple(dashes);
        bitmap.MoveToF(rect.Left + i, rect.Top + i);
        bitmap.LineToFSP(rect.Right - i, rect.Top + i);
        bitmap.LineToFSP(rect.Right - i, rect.Bottom - i);
        bitmap.LineToFSP(rect.Left + i, rect.Bottom - i);
        bitmap.LineToFSP(rect.Left + i, rect.Top + i);
    }
    for (const TRect& grabber : grabbers) {
        bitmap.FillRectS(grabber, clWhite32);
        for (int i = 0; i < thickness; ++i)
            bitmap.FrameRectS(grabber.Left + i, grabber.Top + i, grabber.Right - i, grabber.Bottom - i, clBlack32);
    }
    return bitmap;
}

/// An item that paints its grabbers, as all that are seen do.
class TSeenItem final : public TTestItem {
public:
    using TTestItem::TTestItem;
    void Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) override {
        TTestItem::Paint(world, viewport, bitmap);
        PaintGrabbers(bitmap);
    }
};

TEST(BaseObjectLayerItem, ASelectedOneHasAFrameAndGrabbers) {
    TObjectScene scene;
    auto* item = scene.Add<TSeenItem>();
    const TRect rect(20, 10, 120, 80);
    item->SetRect(rect);
    EXPECT_EQ(AllPixels(scene.Painted()), AllPixels(tests::TTestMap(200, 100).Bitmap));
    item->SetIsSelected(true);
    EXPECT_EQ(AllPixels(scene.Painted()), AllPixels(ExpectedGrabbers(rect, {})));
    EXPECT_EQ(scene.Map->Bitmap.Pixel(20, 10), clBlack32);
    EXPECT_EQ(scene.Map->Bitmap.Pixel(21, 10), clWhite32);
    EXPECT_EQ(scene.Map->Bitmap.Pixel(22, 10), clBlack32);
    const TGrabberRects g = item->GetGrabberRects();
    item->SetGrabberOptions({goResizable, goFixedAspect});
    EXPECT_EQ(AllPixels(scene.Painted()),
              AllPixels(ExpectedGrabbers(rect, {g.TopLeft, g.TopRight, g.BottomLeft, g.BottomRight})));
    item->SetGrabberOptions({goFixedAspect}); // of what has no grabbers
    EXPECT_EQ(AllPixels(scene.Painted()), AllPixels(ExpectedGrabbers(rect, {})));
    item->SetGrabberOptions({goResizable});
    EXPECT_EQ(AllPixels(scene.Painted()),
              AllPixels(ExpectedGrabbers(rect, {g.TopLeft, g.TopRight, g.BottomLeft, g.BottomRight, g.MiddleLeft,
                                                g.MiddleRight, g.TopCenter, g.BottomCenter})));
    EXPECT_EQ(scene.Map->Bitmap.Pixel(66, 10), clBlack32); // the upper grabber's corner
    EXPECT_EQ(scene.Map->Bitmap.Pixel(67, 11), clWhite32);
    item->SetIsVisible(false);
    item->Paint(nullptr, scene.Viewport(), scene.Map->Bitmap);
    EXPECT_EQ(scene.Painted().Pixel(20, 10), clWhite32);
}

TEST(BaseObjectLayerItem, OnADenseScreenEverythingIsLarger) {
    TObjectScene scene;
    auto* item = scene.Add<TSeenItem>();
    item->SetGrabberOptions({goResizable, goFixedAspect});
    item->SetRect({10, 5, 60, 40});
    item->SetIsSelected(true);
    scene.Layer->SetDeviceRatio(2);
    const TRect rect(20, 10, 120, 80);
    EXPECT_EQ(item->GetRect(), rect);
    EXPECT_EQ(AllPixels(scene.Painted()),
              AllPixels(ExpectedGrabbers(
                  rect, {{20, 10, 36, 26}, {104, 10, 120, 26}, {20, 64, 36, 80}, {104, 64, 120, 80}}, 2)));
    item->SetIsSelected(false);
    item->SetShowBorder(true);
    TBitmap32 expected = tests::TTestMap(200, 100).Bitmap;
    PolylineFS(expected, std::array<TFloatPoint, 4>{TFloatPoint{20, 10}, {120, 10}, {120, 80}, {20, 80}}, clBlack32,
               true, 2.0);
    EXPECT_EQ(AllPixels(scene.Painted()), AllPixels(expected));
}

TEST(BaseObjectLayerItem, FarAwayAndHugeOnesPaintWhatIsSeen) {
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
    TObjectScene scene;
    auto* item = scene.Add<TSeenItem>();
    item->SetGrabberOptions({goResizable});
    item->SetShowBackground(true);
    item->SetShowBorder(true);
    item->SetBackgroundColor(Red);
    item->SetIsSelected(true);
    item->SetRect({-1000000000, -1000000000, 1000000000, 1000000000});
    TBitmap32 red(200, 100);
    red.Clear(Red);
    EXPECT_EQ(AllPixels(scene.Painted()), AllPixels(red));
    for (const TRect& rect : {TRect(least, least, most, most), TRect(most, most, least, least),
                              TRect(most - 5, most - 5, most, most), TRect(least, least, least, least)}) {
        item->SetRect(rect);
        scene.Painted();
        scene.Drag({100, 50}, {110, 60});
        scene.Resize({300, 100});
        scene.Resize({200, 100});
    }
    item->SetRect({1000000000, 10, 1000000100, 20});
    EXPECT_EQ(AllPixels(scene.Painted()), AllPixels(tests::TTestMap(200, 100).Bitmap));
}

} // namespace
} // namespace lmx
