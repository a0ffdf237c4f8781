#include <lmx/Colour/Legend/lmxGradientLegendPainter.h>
#include <lmx/Colour/Legend/lmxPaletteLegendPainter.h>
#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxColorClassList.h>
#include <lmx/Colour/lmxColorKey.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/Objects/lmxLegendObjectLayerItem.h>
#include <lmx/Layers/lmxRasterMapLayer.h>
#include <tests/Graphics/Pictures.h>
#include <tests/Layers/Objects/ObjectScene.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TestLayer.h>

#include <gtest/gtest.h>

#include <functional>

namespace lmx {
namespace {

using tests::AllPixels;
using tests::TObjectNews;
using tests::TObjectScene;
using enum TLegendOrientation;

const QString NoView = QStringLiteral("No view for legend");

class TPlainRasterLayer final : public TRasterMapLayer {
public:
    using TRasterMapLayer::TRasterMapLayer;
    QString GetLayerTypeName() const override { return QStringLiteral("Plain"); }
};

std::shared_ptr<IGradientColorCalculator> Gradient() {
    return TGradientColorCalculatorFactory::GetObject(
        0, 10, TGradientFactory::GetObject({{0, 0xFF0000AA}, {0.5, 0xFF0000AA}, {0.5, 0xFFBBBB00}, {1, 0xFFBBBB00}}));
}

std::shared_ptr<IColorClassCalculator> Classes() {
    return TColorClassCalculatorFactory::GetObject({TColorClass(QStringLiteral("Dry"), 0, 50, 0xFF8B4513),
                                                    TColorClass(QStringLiteral("Wet"), 50, 400, 0xFF0000FF)});
}

std::shared_ptr<IBasicPaletteColorCalculator> Palette() {
    return TBasicPaletteColorCalculatorFactory::GetObject(
        TValueRange(0, 2),
        {TColorKeyItem{QStringLiteral("a"), 0xFF00FF00}, TColorKeyItem{QStringLiteral("b"), 0xFFFF0000}}, false);
}

struct LegendItem : testing::Test {
    TPlainRasterLayer* AddRaster(std::shared_ptr<IBaseColorCalculator> calculator) {
        auto* layer = Scene.Manager->GetLayers().Add(std::make_unique<TPlainRasterLayer>(Scene.Manager));
        layer->SetLayerName(QStringLiteral("Rain"));
        layer->SetColorCalc(std::move(calculator));
        return layer;
    }
    TLegendObjectLayerItem* AddLegend(TBaseMapLayer* layer, TLegendOrientation orientation, const TRect& rect) {
        auto* item = Scene.Add<TLegendObjectLayerItem>(layer, orientation);
        item->SetRect(rect);
        return item;
    }
    using TDraw = std::function<void(TBitmap32&)>;
    /// White with what `draw` makes of a picture that is 5 pixels smaller on every side than `rect`.
    static TBitmap32 Expected(const TRect& rect, const TDraw& draw, double ratio = 1) {
        const int inset = static_cast<int>(5 * ratio);
        TBitmap32 picture(rect.GetWidth() - 2 * inset, rect.GetHeight() - 2 * inset);
        picture.SetDrawMode(TDrawMode::dmTransparent);
        picture.SetCombineMode(TCombineMode::cmMerge);
        picture.SetDeviceRatio(ratio);
        picture.GetFont().Ratio = ratio;
        draw(picture);
        TBitmap32 bitmap = tests::TTestMap(200, 100).Bitmap;
        bitmap.Draw(rect.Left + inset, rect.Top + inset, picture);
        return bitmap;
    }
    static void DrawNoView(TBitmap32& picture) {
        const TSize text = picture.TextExtent(NoView);
        picture.RenderText(picture.GetWidth() / 2 - text.cx / 2, picture.GetHeight() / 2 - text.cy / 2, NoView, 0,
                           clBlack32);
    }
    static TDraw DrawGradient(TLegendOrientation orientation, int barSize = 30) {
        return [=](TBitmap32& picture) {
            GradientLegendPainter_Paint(picture, orientation, barSize, Gradient().get(),
                                        {TTick::tkLow, TTick::tkMid, TTick::tkHigh}, 0, clBlack32, clBlack32,
                                        QStringLiteral("Tahoma"), 8, {}, QStringLiteral("%.3f"));
        };
    }
    static TDraw DrawRows(const std::vector<TPaletteValueColorItem>& rows, TLegendOrientation orientation) {
        return [=](TBitmap32& picture) {
            PaletteLegendPainter_Paint(&picture, orientation, rows, 22, 8, 0, 2, clBlack32, QStringLiteral("Tahoma"), 8,
                                       clBlack32);
        };
    }

    TObjectScene Scene;
};

TEST_F(LegendItem, BeginsWithItsDefaults) {
    const TLegendObjectLayerItem item(Scene.Layer.Get());
    EXPECT_EQ(item.GetRect(), TRect(0, 0, 150, 150));
    EXPECT_TRUE(item.GetIsVisible());
    EXPECT_EQ(item.GetGrabberOptions(), TGrabberOptions{TGrabberOption::goResizable});
    EXPECT_EQ(item.GetLegendLayer(), nullptr);
    EXPECT_EQ(item.GetOrientation(), loHorizontal);
    EXPECT_EQ(item.GetGradientBarSize(), 30);
    EXPECT_EQ(item.GetPaletteBoxSize(), 22);
    EXPECT_EQ(item.GetFontName(), QStringLiteral("Tahoma"));
    EXPECT_EQ(item.GetFontSize(), 8);
    EXPECT_TRUE(item.GetGradientLegendMarks().empty());
    EXPECT_EQ(item.GetObjectType(), QStringLiteral("Legend: "));
    EXPECT_EQ(item.GetObjectClassType(), QStringLiteral("LEGEND"));
    TBaseMapLayer* layer = AddRaster(nullptr);
    const TLegendObjectLayerItem across(Scene.Layer.Get(), layer, loHorizontal);
    EXPECT_EQ(across.GetRect(), TRect(0, 0, 500, 150));
    EXPECT_EQ(across.GetObjectType(), QStringLiteral("Legend: Rain"));
    const TLegendObjectLayerItem upright(Scene.Layer.Get(), layer, loVertical);
    EXPECT_EQ(upright.GetRect(), TRect(0, 0, 150, 500));
    EXPECT_EQ(upright.GetOrientation(), loVertical);
}

TEST_F(LegendItem, TellsOfEachNewProperty) {
    auto* item = Scene.Add<TLegendObjectLayerItem>();
    TBaseMapLayer* layer = AddRaster(nullptr);
    TObjectNews news(Scene.Layer.Get());
    const auto expectNews = [&](auto set) {
        set();
        EXPECT_EQ(news.Take(), QStringLiteral("changed: 1"));
        set();
        EXPECT_EQ(news.Take(), QStringLiteral("0"));
    };
    expectNews([&] { item->SetLegendLayer(layer); });
    expectNews([&] { item->SetOrientation(loVertical); });
    expectNews([&] { item->SetGradientBarSize(20); });
    expectNews([&] { item->SetPaletteBoxSize(20); });
    expectNews([&] { item->SetFontName(QStringLiteral("Arial")); });
    expectNews([&] { item->SetFontSize(9); });
    expectNews([&] { item->SetGradientLegendMarks({TGradientLegendMark{}}); });
    expectNews([&] {
        TGradientLegendMark mark;
        mark.Spacing = 1;
        item->SetGradientLegendMarks({mark});
    });
    item->SetPalettePainterFilterCallback([](int, const TPaletteValueColorItem&) { return true; });
    EXPECT_EQ(news.Take(), QStringLiteral("0"));
}

TEST_F(LegendItem, ListensToItsLayer) {
    TPlainRasterLayer* a = AddRaster(nullptr);
    TPlainRasterLayer* b = AddRaster(nullptr);
    auto* item = AddLegend(a, loVertical, {0, 0, 50, 50});
    TObjectNews news(Scene.Layer.Get());
    a->GetOnLegendComponentChanged().Send(a, nullptr);
    EXPECT_EQ(news.Take(), QStringLiteral("1"));
    item->SetLegendLayer(b);
    news.Take();
    a->GetOnLegendComponentChanged().Send(a, nullptr);
    EXPECT_EQ(news.Take(), QStringLiteral("0"));
    b->GetOnLegendComponentChanged().Send(b, nullptr);
    EXPECT_EQ(news.Take(), QStringLiteral("1"));
    Scene.Layer->GetObjects().Clear();
    EXPECT_EQ(b->GetOnLegendComponentChanged().Count(), 0);
    EXPECT_EQ(a->GetOnLegendComponentChanged().Count(), 0);
}

TEST_F(LegendItem, OfAFreedLayerIsOfNone) {
    TPlainRasterLayer* layer = AddRaster(Gradient());
    auto* item = AddLegend(layer, loVertical, {10, 5, 190, 95});
    Scene.Manager->GetLayers().Remove(layer);
    EXPECT_EQ(item->GetLegendLayer(), nullptr);
    EXPECT_EQ(item->GetObjectType(), QStringLiteral("Legend: "));
    EXPECT_EQ(AllPixels(Scene.Painted()), AllPixels(Expected(item->GetRect(), DrawNoView)));
    item->SetLegendLayer(AddRaster(Gradient()));
    EXPECT_EQ(AllPixels(Scene.Painted()), AllPixels(Expected(item->GetRect(), DrawGradient(loVertical))));
}

TEST_F(LegendItem, OfAGradient) {
    const TRect rect(10, 5, 190, 95);
    auto* item = AddLegend(AddRaster(Gradient()), loVertical, rect);
    EXPECT_EQ(AllPixels(Scene.Painted()), AllPixels(Expected(rect, DrawGradient(loVertical))));
    EXPECT_EQ(Scene.Map->Bitmap.Pixel(20, 20), 0xFFBBBB00U);
    EXPECT_EQ(Scene.Map->Bitmap.Pixel(20, 80), 0xFF0000AAU);
    item->SetOrientation(loHorizontal);
    item->SetGradientBarSize(12);
    EXPECT_EQ(AllPixels(Scene.Painted()), AllPixels(Expected(rect, DrawGradient(loHorizontal, 12))));
    EXPECT_EQ(Scene.Map->Bitmap.Pixel(20, 12), 0xFF0000AAU);
    EXPECT_EQ(Scene.Map->Bitmap.Pixel(180, 12), 0xFFBBBB00U);
}

TEST_F(LegendItem, OfClassesAndOfAPalette) {
    const TRect rect(10, 5, 190, 95);
    auto* item = AddLegend(AddRaster(Classes()), loVertical, rect);
    EXPECT_EQ(AllPixels(Scene.Painted()),
              AllPixels(Expected(rect, DrawRows(PaletteLegendPainter_GetItems(Classes().get()), loVertical))));
    EXPECT_EQ(Scene.Map->Bitmap.Pixel(25, 20), 0xFF8B4513U);
    EXPECT_EQ(Scene.Map->Bitmap.Pixel(25, 45), 0xFF0000FFU);
    item->SetLegendLayer(AddRaster(Palette()));
    item->SetOrientation(loHorizontal);
    EXPECT_EQ(AllPixels(Scene.Painted()),
              AllPixels(Expected(rect, DrawRows(PaletteLegendPainter_GetItems(Palette().get()), loHorizontal))));
    item->SetOrientation(loVertical);
    item->SetPalettePainterFilterCallback([](int index, const TPaletteValueColorItem&) { return index == 1; });
    EXPECT_EQ(Scene.Painted().Pixel(25, 20), 0xFFFF0000U);
}

TEST_F(LegendItem, SaysThatThereIsNothingToShow) {
    const TRect rect(10, 5, 190, 95);
    auto* item = AddLegend(nullptr, loVertical, rect);
    const auto expected = AllPixels(Expected(rect, DrawNoView));
    EXPECT_EQ(AllPixels(Scene.Painted()), expected);
    item->SetLegendLayer(AddRaster(nullptr));
    EXPECT_EQ(AllPixels(Scene.Painted()), expected);
    item->SetLegendLayer(AddRaster(TMultipartGradientColorCalculatorFactory::GetObject(0, 10, {Gradient()})));
    EXPECT_EQ(AllPixels(Scene.Painted()), expected);
    item->SetLegendLayer(tests::AddTestLayer(Scene.Manager)); // no raster
    EXPECT_EQ(AllPixels(Scene.Painted()), expected);
}

TEST_F(LegendItem, WithoutRoomIsBackgroundBorderAndGrabbers) {
    auto* item = AddLegend(AddRaster(Gradient()), loVertical, {20, 20, 30, 80});
    item->SetShowBackground(true);
    item->SetShowBorder(true);
    item->SetIsSelected(true);
    TBitmap32 expected = tests::TTestMap(200, 100).Bitmap;
    item->TBaseObjectLayerItem::Paint(nullptr, Scene.Viewport(), expected);
    item->PaintGrabbers(expected);
    EXPECT_EQ(AllPixels(Scene.Painted()), AllPixels(expected));
    item->SetRect({30, 80, 20, 20}); // inverted
    expected.Clear(clWhite32);
    item->TBaseObjectLayerItem::Paint(nullptr, Scene.Viewport(), expected);
    item->PaintGrabbers(expected);
    EXPECT_EQ(AllPixels(Scene.Painted()), AllPixels(expected));
    item->SetIsSelected(false);
    item->SetRect({20, 20, 31, 80}); // one column of content, which is the bar's outline
    EXPECT_EQ(Scene.Painted().Pixel(25, 40), clBlack32);
    EXPECT_EQ(Scene.Map->Bitmap.Pixel(26, 70), clWhite32);
}

TEST_F(LegendItem, PartlyOutsideIsTheSameWhereItIsSeen) {
    const TRect rects[] = {{-60, -40, 120, 60}, {150, 60, 400, 300}, {-300, -300, 500, 400}, {-50, 20, 20, 90}};
    auto* item = AddLegend(AddRaster(Gradient()), loVertical, {});
    const auto expectSame = [&](const TDraw& draw) {
        for (const TRect& rect : rects) {
            item->SetRect(rect);
            EXPECT_EQ(AllPixels(Scene.Painted()), AllPixels(Expected(rect, draw))) << testing::PrintToString(rect);
        }
    };
    expectSame(DrawGradient(loVertical));
    item->SetOrientation(loHorizontal);
    expectSame(DrawGradient(loHorizontal));
    item->SetLegendLayer(AddRaster(Classes()));
    expectSame(DrawRows(PaletteLegendPainter_GetItems(Classes().get()), loHorizontal));
    item->SetOrientation(loVertical);
    expectSame(DrawRows(PaletteLegendPainter_GetItems(Classes().get()), loVertical));
    item->SetLegendLayer(nullptr);
    expectSame(DrawNoView);
}

TEST_F(LegendItem, OfABillionPixelsShowsItsPart) {
    auto* item = AddLegend(AddRaster(Gradient()), loVertical, {-1000000, -500000000, 100, 500000000});
    EXPECT_EQ(AllPixels(Scene.Painted()), AllPixels(tests::TTestMap(200, 100).Bitmap)); // right of bar and labels
    item->SetRect({10, -500000000, 1000000010, 500000000});
    EXPECT_EQ(Scene.Painted().Pixel(30, 10), 0xFF0000AAU); // the middle of the bar, at the label
    EXPECT_EQ(Scene.Map->Bitmap.Pixel(15, 99), clBlack32); // its outline
    item->SetRect({10, -500000100, 1000000010, 500000000});
    EXPECT_EQ(Scene.Painted().Pixel(30, 10), 0xFF0000AAU);
    item->SetRect({10, -500000000, 1000000010, 500001000});
    EXPECT_EQ(Scene.Painted().Pixel(30, 10), 0xFFBBBB00U);
    item->SetGradientBarSize(2147483647);
    item->SetPaletteBoxSize(-2147483647 - 1);
    Scene.Painted();
    item->SetLegendLayer(AddRaster(Classes()));
    Scene.Painted();
    item->SetPaletteBoxSize(2147483647);
    Scene.Painted();
}

TEST_F(LegendItem, StandsAnyFont) {
    auto* item = AddLegend(nullptr, loVertical, {10, 5, 190, 95});
    for (const auto& calculator :
         std::initializer_list<std::shared_ptr<IBaseColorCalculator>>{nullptr, Gradient(), Classes(), Palette()}) {
        item->SetLegendLayer(AddRaster(calculator));
        item->SetFontName(QStringLiteral("There Is No Such Font"));
        for (const int size : {8, 0, -8, -2147483647 - 1, 2147483647}) {
            item->SetFontSize(size);
            Scene.Painted();
        }
        item->SetFontName(QStringLiteral("Tahoma"));
        item->SetFontSize(8);
        EXPECT_NE(AllPixels(Scene.Painted()), AllPixels(tests::TTestMap(200, 100).Bitmap));
    }
}

TEST_F(LegendItem, IsLargerOnADenseScreen) {
    Scene.Layer->SetDeviceRatio(2);
    EXPECT_EQ(TLegendObjectLayerItem(Scene.Layer.Get()).GetRect(), TRect(0, 0, 300, 300));
    const TRect rect(10, 5, 190, 95);
    auto* item = AddLegend(AddRaster(Gradient()), loVertical, rect);
    EXPECT_EQ(AllPixels(Scene.Painted()), AllPixels(Expected(rect, DrawGradient(loVertical, 60), 2)));
    item->SetLegendLayer(nullptr);
    EXPECT_EQ(AllPixels(Scene.Painted()), AllPixels(Expected(rect, DrawNoView, 2)));
}

TEST_F(LegendItem, AFilterMayFreeTheItemTheLayerAndTheView) {
    const std::function<void()> deeds[] = {
        [this] { Scene.Layer->GetObjects().Clear(); }, [this] { Scene.Manager->GetLayers().Clear(); },
        [this] { Scene.Map.reset(); }, [this] { Scene.Manager->GetSpecialLayers().Clear(); }};
    for (const auto& deed : deeds) {
        Scene.Layer->GetObjects().Clear();
        auto* item = AddLegend(AddRaster(Classes()), loVertical, {10, 5, 190, 95});
        bool isDone = false;
        item->SetPalettePainterFilterCallback([&, copy = deed](int, const TPaletteValueColorItem&) {
            if (!isDone)
                copy();
            isDone = true;
            return true;
        });
        Scene.Painted();
        EXPECT_TRUE(isDone);
        if (!Scene.Map)
            Scene.Map = std::make_unique<tests::TTestMap>(200, 100);
    }
    EXPECT_FALSE(Scene.Layer);
}

} // namespace
} // namespace lmx
