#include <lmx/Graphics/lmxPolygons.h>
#include <lmx/Layers/Objects/lmxShapeLegendObjectLayerItem.h>
#include <lmx/Layers/lmxBaseShapeLayer.h>
#include <tests/Graphics/Pictures.h>
#include <tests/Layers/Objects/ObjectScene.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TestLayer.h>

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace lmx {
namespace {

using tests::AllPixels;
using tests::TObjectNews;
using tests::TObjectScene;

constexpr TColor32 Red = 0xFFFF0000;
constexpr TColor32 Blue = 0x800000FF;

/// A shape layer without shapes.
class TPlainShapeLayer final : public TBaseShapeLayer {
public:
    using TBaseShapeLayer::TBaseShapeLayer;
    QString GetLayerTypeName() const override { return QStringLiteral("Plain"); }

protected:
    void RenderBuffer(TSize, const TMapArea&, const TWorldViewportLocal&) override {}
};

TBaseShapeLayer* AddShapes(TObjectScene& scene, const QString& name, TColor32 color) {
    auto layer = std::make_unique<TPlainShapeLayer>(scene.Manager);
    layer->SetLayerName(name);
    layer->SetColor(color);
    return scene.Manager->GetLayers().Add(std::move(layer));
}

void DrawPlate(TBitmap32& bitmap, const TRect& rect) {
    const double left = rect.Left;
    const double top = rect.Top;
    const double right = rect.Right;
    const double bottom = rect.Bottom;
    PolygonFS(bitmap, std::array<TFloatPoint, 4>{TFloatPoint{left, top}, {right, top}, {right, bottom}, {left, bottom}},
              Color32(255, 255, 255, 200));
}

/// A view in red, so that the plate shows.
const TBitmap32& PaintedOnRed(TObjectScene& scene) {
    scene.Map->Bitmap.Clear(Red);
    scene.Layer->Paint(&scene.Map->World, scene.Viewport(), scene.Map->Bitmap);
    return scene.Map->Bitmap;
}

TBitmap32 RedWithPlate(const TRect& rect) {
    TBitmap32 bitmap(200, 100);
    bitmap.Clear(Red);
    DrawPlate(bitmap, rect);
    return bitmap;
}

/// What the key draws, from the calls themselves.
TBitmap32 ExpectedKey(const TRect& rect, const std::vector<TBaseShapeLayer*>& layers) {
    TBitmap32 picture(rect.GetWidth() - 20, rect.GetHeight() - 20);
    picture.SetDrawMode(TDrawMode::dmBlend);
    picture.SetCombineMode(TCombineMode::cmMerge);
    picture.GetFont().Size = 10;
    const int rowHeight = picture.TextHeight(QStringLiteral("Wg")) + 4;
    picture.GetFont().Styles = {TFontStyle::fsBold};
    picture.RenderText(0, 2, QStringLiteral("Key:"), 0, clBlack32);
    picture.GetFont().Styles = {};
    int top = 0;
    for (const TBaseShapeLayer* layer : layers) {
        top += rowHeight;
        picture.RenderText(60, top + 2, layer->GetLayerName(), 0, clBlack32);
        picture.SetPenColor(layer->GetColor());
        picture.MoveTo(0, top + rowHeight / 2);
        picture.LineToS(50, top + rowHeight / 2);
    }
    TBitmap32 bitmap = RedWithPlate(rect);
    bitmap.Draw(rect.Left + 10, rect.Top + 10, picture);
    return bitmap;
}

TEST(ShapeLegendObjectLayerItem, BeginsWithItsDefaults) {
    TObjectScene scene;
    const TShapeLegendObjectLayerItem item(scene.Layer.Get());
    EXPECT_EQ(item.GetObjectType(), QStringLiteral("Shape key"));
    EXPECT_EQ(item.GetObjectClassType(), QStringLiteral("SHAPELEGEND"));
    EXPECT_EQ(item.GetRect(), TRect(0, 0, 100, 100));
    EXPECT_EQ(item.GetGrabberOptions(), TGrabberOptions{TGrabberOption::goResizable});
    EXPECT_TRUE(item.GetShowAll());
    EXPECT_TRUE(item.GetLayers().empty());
    EXPECT_FALSE(item.GetShowBackground());
    EXPECT_TRUE(TShapeLegendObjectLayerItem(nullptr).GetLayersToRender().empty());
}

TEST(ShapeLegendObjectLayerItem, ShowsAllShapeLayersOrThoseOfItsList) {
    TObjectScene scene;
    auto* item = scene.Add<TShapeLegendObjectLayerItem>();
    TBaseShapeLayer* a = AddShapes(scene, QStringLiteral("a"), Red);
    tests::AddTestLayer(scene.Manager);
    TBaseShapeLayer* b = AddShapes(scene, QStringLiteral("b"), Red);
    EXPECT_EQ(item->GetLayersToRender(), (std::vector{a, b}));
    scene.Manager->MoveLayer(0, 2);
    EXPECT_EQ(item->GetLayersToRender(), (std::vector{b, a}));
    TObjectNews news(scene.Layer.Get());
    item->SetShowAll(false);
    EXPECT_EQ(news.Take(), QStringLiteral("1")); // repaints and tells nobody
    item->SetShowAll(false);
    EXPECT_EQ(news.Take(), QStringLiteral("0"));
    EXPECT_TRUE(item->GetLayersToRender().empty());
    item->SetLayers(std::vector{a, b, a});
    EXPECT_EQ(news.Take(), QStringLiteral("1"));
    EXPECT_EQ(item->GetLayersToRender(), (std::vector{a, b, a}));
    scene.Manager->GetLayers().Remove(a);
    EXPECT_EQ(item->GetLayersToRender(), std::vector{b}); // what has gone leaves the list
    EXPECT_EQ(item->GetLayers(), std::vector{b});
}

TEST(ShapeLegendObjectLayerItem, RepaintsAsLayersComeAndGo) {
    TObjectScene scene;
    auto* item = scene.Add<TShapeLegendObjectLayerItem>();
    TObjectNews news(scene.Layer.Get());
    TBaseShapeLayer* layer = AddShapes(scene, QStringLiteral("a"), Red);
    EXPECT_EQ(news.Take(), QStringLiteral("1"));
    scene.Manager->GetLayers().Remove(layer);
    EXPECT_EQ(news.Take(), QStringLiteral("1"));
    const int listeners = scene.Manager->GetOnLayerAdded().Count();
    scene.Layer->GetObjects().Remove(item);
    EXPECT_EQ(scene.Manager->GetOnLayerAdded().Count(), listeners - 1);
    news.Take();
    AddShapes(scene, QStringLiteral("b"), Red);
    EXPECT_EQ(news.Take(), QStringLiteral("0"));
}

TEST(ShapeLegendObjectLayerItem, MayOutliveItsLayerAndManager) {
    auto scene = std::make_unique<TObjectScene>();
    scene->Add<TShapeLegendObjectLayerItem>();
    const auto manager = scene->Manager;
    const auto item = scene->Layer->GetObjects().Extract(scene->Layer->GetObjects()[0]);
    scene->Manager->GetSpecialLayers().Clear();
    AddShapes(*scene, QStringLiteral("a"), Red);
    EXPECT_TRUE(dynamic_cast<TShapeLegendObjectLayerItem&>(*item).GetLayersToRender().empty());
}

TEST(ShapeLegendObjectLayerItem, DrawsARowForEachLayer) {
    TObjectScene scene;
    auto* item = scene.Add<TShapeLegendObjectLayerItem>();
    item->SetRect({20, 5, 180, 95});
    const std::vector layers = {AddShapes(scene, QStringLiteral("Rivers"), 0xFF00FF00),
                                AddShapes(scene, QStringLiteral("Lakes"), Blue)};
    EXPECT_EQ(AllPixels(PaintedOnRed(scene)), AllPixels(ExpectedKey(item->GetRect(), layers)));
    TBitmap32 font(1, 1);
    font.GetFont().Size = 10;
    const int rowHeight = font.TextHeight(QStringLiteral("Wg")) + 4;
    EXPECT_EQ(scene.Map->Bitmap.Pixel(30, 15 + rowHeight + rowHeight / 2), 0xFF00FF00U);
    EXPECT_EQ(scene.Map->Bitmap.Pixel(79, 15 + rowHeight + rowHeight / 2), 0xFF00FF00U);
    EXPECT_NE(scene.Map->Bitmap.Pixel(80, 15 + rowHeight + rowHeight / 2), 0xFF00FF00U);
}

TEST(ShapeLegendObjectLayerItem, CutsOffTheRowsThatDoNotFit) {
    TObjectScene scene;
    auto* item = scene.Add<TShapeLegendObjectLayerItem>();
    std::vector<TBaseShapeLayer*> layers;
    for (int i = 0; i < 30; ++i)
        layers.push_back(AddShapes(scene, QStringLiteral("a long name of a layer %1").arg(i), 0xFF00FF00));
    for (const TRect& rect : {TRect(20, 5, 120, 60), TRect(-40, -50, 60, 70), TRect(150, 60, 350, 400)}) {
        item->SetRect(rect);
        EXPECT_EQ(AllPixels(PaintedOnRed(scene)), AllPixels(ExpectedKey(rect, layers)));
    }
}

TEST(ShapeLegendObjectLayerItem, WithoutLayersIsAPlate) {
    TObjectScene scene;
    auto* item = scene.Add<TShapeLegendObjectLayerItem>();
    item->SetRect({20, 5, 180, 95});
    EXPECT_EQ(AllPixels(PaintedOnRed(scene)), AllPixels(RedWithPlate(item->GetRect())));
    item->SetIsSelected(true);
    TBitmap32 expected = RedWithPlate(item->GetRect());
    item->PaintGrabbers(expected);
    EXPECT_EQ(AllPixels(PaintedOnRed(scene)), AllPixels(expected));
}

TEST(ShapeLegendObjectLayerItem, ANarrowOneHasNoPlate) {
    TObjectScene scene;
    auto* item = scene.Add<TShapeLegendObjectLayerItem>();
    AddShapes(scene, QStringLiteral("a"), Red);
    TBitmap32 red(200, 100);
    red.Clear(Red);
    for (const TRect& rect : {TRect(20, 5, 40, 95), TRect(20, 5, 180, 25), TRect(180, 95, 20, 5)}) {
        item->SetRect(rect);
        EXPECT_EQ(AllPixels(PaintedOnRed(scene)), AllPixels(red));
    }
    item->SetRect({20, 5, 41, 95});
    EXPECT_NE(PaintedOnRed(scene).Pixel(25, 90), Red);
}

TEST(ShapeLegendObjectLayerItem, OfABillionPixelsIsTheSameWhereItIsSeen) {
    TObjectScene scene;
    auto* item = scene.Add<TShapeLegendObjectLayerItem>();
    const std::vector layers = {AddShapes(scene, QStringLiteral("Rivers"), 0xFF00FF00)};
    item->SetRect({20, 5, 1000000000, 1000000000});
    EXPECT_EQ(AllPixels(PaintedOnRed(scene)), AllPixels(ExpectedKey({20, 5, 400, 300}, layers)));
}

TEST(ShapeLegendObjectLayerItem, IsLargerOnADenseScreen) {
    TObjectScene scene;
    scene.Layer->SetDeviceRatio(2);
    auto* item = scene.Add<TShapeLegendObjectLayerItem>();
    EXPECT_EQ(item->GetRect(), TRect(0, 0, 200, 200));
    AddShapes(scene, QString(), 0xFF00FF00);
    const TBitmap32& painted = PaintedOnRed(scene);
    int first = -1;
    int rows = 0;
    for (int y = 0; y < 100; ++y)
        if (painted.Pixel(21, y) == 0xFF00FF00U) {
            first = first < 0 ? y : first;
            ++rows;
        }
    EXPECT_EQ(rows, 2); // a line two pixels thick, from 20 to 120
    EXPECT_EQ(painted.Pixel(20, first), 0xFF00FF00U);
    EXPECT_EQ(painted.Pixel(119, first), 0xFF00FF00U);
    EXPECT_NE(painted.Pixel(120, first), 0xFF00FF00U);
}

} // namespace
} // namespace lmx
