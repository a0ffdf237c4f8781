// One paint of 1,000 annotations of all kinds, of 40 x 24 to 400 x 240 pixels, on a view of 1920 x 1080 pixels, and of
// each kind alone. The yardstick is blending bitmaps of the same rectangles onto the buffer. Then one step of dragging
// an annotation over 20 rasters of the size of the view: the move of the mouse and the one paint that follows it. The
// yardstick is that paint alone.

#include <benchmarks/Measuring.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxColorClassList.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/Objects/lmxCompassRoseObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxLegendObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxRectangleObjectTypeItem.h>
#include <lmx/Layers/Objects/lmxShapeLegendObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxTextBoxObjectLayerItem.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Layers/lmxVectorFileLayer.h>

#include <QApplication>
#include <QMouseEvent>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <random>
#include <vector>

namespace {

using lmx::bench::Sized;

constexpr int ItemCount = Sized(1'000);
constexpr int RasterCount = 20;
constexpr int ViewWidth = Sized(1920);
constexpr int ViewHeight = Sized(1080);
constexpr int Repetitions = 15;

/// Places all over the view. A rose is as wide as high.
class Places {
public:
    lmx::TRect Next(bool isSquare) {
        const int height = FHeight(FRandom);
        const int width = isSquare ? height : height * 5 / 3;
        const int left = FLeft(FRandom);
        const int top = FTop(FRandom);
        return {left, top, left + width, top + height};
    }

private:
    std::mt19937 FRandom{20240229};
    std::uniform_int_distribution<int> FHeight{24, 240};
    std::uniform_int_distribution<int> FLeft{-50, ViewWidth - 50};
    std::uniform_int_distribution<int> FTop{-50, ViewHeight - 50};
};

/// A map of layers that annotations are about.
struct Map {
    Map() {
        View.resize(ViewWidth, ViewHeight);
        View.SetLayerManager(Manager);
        View.CreateWorldAndViewport(lmx::TLatLonWorldSystemFactory::GetObject());
        View.grab(); // gives a hidden widget its buffer
        View.GetViewport()->ZoomTo(View.GetWorldSystem()->Area());
    }
    ~Map() { View.SetLayerManager(nullptr); }
    Map(const Map&) = delete;
    Map& operator=(const Map&) = delete;

    lmx::TIdrisiMapLayer* AddRaster(std::shared_ptr<lmx::IBaseColorCalculator> calculator) {
        auto* layer = Manager->GetLayers().Add(std::make_unique<lmx::TIdrisiMapLayer>(Manager));
        layer->SetLayerName(QStringLiteral("Precipitation"));
        layer->SetColorCalc(std::move(calculator));
        return layer;
    }
    lmx::TObjectMapLayer& Objects() { return *View.GetSpObjectLayer(); }
    void PaintObjects() { Objects().Paint(View.GetWorld(), View.GetViewport(), View.GetBuffer()); }

    std::shared_ptr<lmx::ILayerManager> Manager = lmx::TLayerManagerFactory::GetObject();
    lmx::TMapViewControl View;
};

std::shared_ptr<lmx::IBaseColorCalculator> Gradient() {
    return lmx::TGradientColorCalculatorFactory::GetObject(
        0, 100, lmx::TGradientFactory::GetObject({{0, 0xFF0000FF}, {1, 0xFFFF0000}}));
}

std::shared_ptr<lmx::IBaseColorCalculator> Classes() {
    return lmx::TColorClassCalculatorFactory::GetObject({lmx::TColorClass(QStringLiteral("Dry"), 0, 50, 0xFF8B4513),
                                                         lmx::TColorClass(QStringLiteral("Fair"), 50, 90, 0xFFBBBB00),
                                                         lmx::TColorClass(QStringLiteral("Wet"), 90, 400, 0xFF0000FF)});
}

/// Makes annotations of a kind.
struct Kind {
    const char* Name;
    bool IsSquare;
    std::function<std::unique_ptr<lmx::TBaseObjectLayerItem>(lmx::TObjectMapLayer*)> Make;
};

std::vector<Kind> Kinds(Map& map) {
    lmx::TBaseMapLayer* gradient = map.AddRaster(Gradient());
    lmx::TBaseMapLayer* classes = map.AddRaster(Classes());
    for (const char* name : {"Rivers", "Coasts", "Borders"}) {
        auto* layer = map.Manager->GetLayers().Add(std::make_unique<lmx::TVectorFileLayer>(map.Manager));
        layer->SetLayerName(QString::fromLatin1(name));
        layer->SetColor(0xFF004080);
    }
    using enum lmx::TLegendOrientation;
    return {
        {"text boxes", false,
         [](auto* layer) {
             return std::make_unique<lmx::TTextBoxObjectLayerItem>(
                 layer, QStringLiteral("Mean annual precipitation 1991-2020"), QStringLiteral("Tahoma"), 12,
                 lmx::clBlack, lmx::TFontStyles(), lmx::TAlignment::taCenter);
         }},
        {"legends of a gradient", false,
         [=](auto* layer) { return std::make_unique<lmx::TLegendObjectLayerItem>(layer, gradient, loHorizontal); }},
        {"legends of classes", false,
         [=](auto* layer) { return std::make_unique<lmx::TLegendObjectLayerItem>(layer, classes, loVertical); }},
        {"compass roses", true, [](auto* layer) { return std::make_unique<lmx::TCompassRoseObjectLayerItem>(layer); }},
        {"rectangles", false, [](auto* layer) { return std::make_unique<lmx::TRectangleObjectTypeItem>(layer); }},
        {"shape keys", false, [](auto* layer) { return std::make_unique<lmx::TShapeLegendObjectLayerItem>(layer); }},
    };
}

/// Annotations of `kinds` in turns, with the backgrounds that the dialogs give them.
void Fill(Map& map, const std::vector<Kind>& kinds) {
    map.Objects().GetObjects().Clear();
    Places places;
    for (int i = 0; i < ItemCount; ++i) {
        const Kind& kind = kinds[static_cast<std::size_t>(i) % kinds.size()];
        auto item = kind.Make(&map.Objects());
        item->SetRect(places.Next(kind.IsSquare));
        item->SetShowBackground(true);
        map.Objects().GetObjects().Add(std::move(item));
    }
}

/// Blends a bitmap of the size of each annotation onto the buffer.
class Blending {
public:
    explicit Blending(Map& map) {
        for (const lmx::TBaseObjectLayerItem* item : map.Objects().GetObjects()) {
            const lmx::TRect& rect = item->GetRect();
            lmx::TBitmap32 bitmap(rect.GetWidth(), rect.GetHeight());
            bitmap.Clear(0xC8FFFFFF);
            bitmap.SetDrawMode(lmx::TDrawMode::dmBlend);
            FBitmaps.push_back(std::move(bitmap));
            FPlaces.push_back(rect);
        }
    }
    void DrawOn(lmx::TBitmap32& buffer) const {
        for (std::size_t i = 0; i < FBitmaps.size(); ++i)
            buffer.Draw(FPlaces[i].Left, FPlaces[i].Top, FBitmaps[i]);
    }

private:
    std::vector<lmx::TBitmap32> FBitmaps;
    std::vector<lmx::TRect> FPlaces;
};

void MeasurePainting(Map& map, const char* name, const std::vector<Kind>& kinds) {
    Fill(map, kinds);
    const Blending blending(map);
    lmx::bench::TBestTime paint, yardstick;
    for (int i = 0; i < (lmx::bench::IsTiny ? 1 : Repetitions); ++i) {
        paint.Measure([&] { map.PaintObjects(); });
        yardstick.Measure([&] { blending.DrawOn(map.View.GetBuffer()); });
    }
    std::printf("1,000 %-28s %8.2f ms %8.2f x blending %8.2f ms\n", name, paint.GetMilliseconds(), paint / yardstick,
                yardstick.GetMilliseconds());
}

void MeasureDragging(Map& map) {
    map.Manager->GetLayers().Clear();
    lmx::TImageHeader header;
    header.SetWidth(ViewWidth);
    header.SetHeight(ViewHeight);
    header.SetMinX(-180);
    header.SetMaxX(180);
    header.SetMinY(-90);
    header.SetMaxY(90);
    header.SetRefSystem(QStringLiteral("latlong"));
    for (int i = 0; i < RasterCount; ++i) {
        lmx::TIdrisiMapLayer* layer = map.AddRaster(Gradient());
        layer->TakeImage(std::make_unique<lmx::TRealImage>(QString(), header));
        layer->SetOpacity(128);
        layer->Render();
    }
    map.Objects().GetObjects().Clear();
    auto* item = map.Objects().GetObjects().Add(std::make_unique<lmx::TRectangleObjectTypeItem>(&map.Objects()));
    item->SetRect({10, 10, 210, 110});
    map.View.show();
    QApplication::processEvents();
    const auto send = [&](QEvent::Type type, QPoint at, Qt::MouseButton button) {
        QMouseEvent event(type, at, map.View.mapToGlobal(at), button, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&map.View, &event);
    };
    send(QEvent::MouseButtonPress, {20, 20}, Qt::LeftButton);
    lmx::bench::TBestTime step, repaint;
    for (int i = 0; i < (lmx::bench::IsTiny ? 1 : Repetitions); ++i) {
        step.Measure([&] {
            send(QEvent::MouseMove, {21 + i, 21 + i}, Qt::NoButton);
            QApplication::processEvents();
        });
        repaint.Measure([&] {
            map.View.RepaintMap();
            QApplication::processEvents();
        });
    }
    send(QEvent::MouseButtonRelease, {30, 30}, Qt::LeftButton);
    std::printf("a step of dragging over 20 rasters %8.2f ms %8.2f x a repaint %8.2f ms\n", step.GetMilliseconds(),
                step / repaint, repaint.GetMilliseconds());
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    Map map;
    const std::vector<Kind> kinds = Kinds(map);
    MeasurePainting(map, "of all kinds", kinds);
    for (const Kind& kind : kinds)
        MeasurePainting(map, kind.Name, {kind});
    MeasureDragging(map);
    return 0;
}
