// The table of query points against 20 rasters of 4320 x 2160. A move of the mouse reads the row of the cursor and
// repaints it alone; the yardstick is the bare loop of image reads and colour calls for one point. A rebuild reads
// 10,000 points; the yardstick is that loop over all of them. Each step of a slider renders a raster, which rebuilds
// the table; it must cost no more than the rebuild, and the painting after it no more than that of a table that ends
// where the screen does, as texts are made of seen rows only.

#include <benchmarks/Measuring.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Controls/lmxMapViewInfoQueryListControl.h>
#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>

#include <QApplication>
#include <QEvent>
#include <QPaintEvent>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

namespace {

using namespace lmx;
using bench::Sized;
using bench::TBestTime;

constexpr int LayerCount = 20;
constexpr int Columns = Sized(4320);
constexpr int Rows = Sized(2160);
constexpr int PointCount = Sized(10'000);
constexpr int RowsOfScreen = 50;
constexpr int Moves = Sized(2'000); ///< in one measurement, so that the clock is no part of it
constexpr int Repetitions = Sized(500);

using TRasters = std::vector<std::unique_ptr<TAbstractImage>>;

std::unique_ptr<TAbstractImage> Raster(int number) {
    TImageHeader header;
    header.SetWidth(Columns);
    header.SetHeight(Rows);
    header.SetMinX(-180);
    header.SetMaxX(180);
    header.SetMinY(-90);
    header.SetMaxY(90);
    header.SetRefSystem(QStringLiteral("latlong"));
    auto image = std::make_unique<TRealImage>(QString(), header);
    for (int row = 1; row <= Rows; ++row)
        for (int column = 1; column <= Columns; ++column)
            image->SetCell(column, row, static_cast<float>((row + column + number) % 100));
    return image;
}

TRasters Rasters() {
    TRasters rasters;
    for (int i = 0; i < LayerCount; ++i)
        rasters.push_back(Raster(i));
    return rasters;
}

/// Places all over the world.
std::vector<TMapPoint> Places(int count) {
    std::mt19937 random{20240229};
    std::uniform_real_distribution<double> longitude{-180, 180};
    std::uniform_real_distribution<double> latitude{-90, 90};
    std::vector<TMapPoint> places;
    for (int i = 0; i < count; ++i)
        places.emplace_back(longitude(random), latitude(random));
    return places;
}

/// Counts the pixels that a widget is asked to paint.
class TPaintedArea : public QObject {
public:
    explicit TPaintedArea(QWidget& widget) { widget.installEventFilter(this); }

    qint64 Take() { return std::exchange(FPixels, 0); }

private:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            for (const QRect& rect : static_cast<QPaintEvent*>(event)->region())
                FPixels += qint64{rect.width()} * rect.height();
        return false;
    }

    qint64 FPixels = 0;
};

/// A shown table of points on 20 rasters.
struct TScene {
    TScene(const TRasters& rasters, int pointCount) : FPlaces(Places(pointCount)) {
        Table.resize(1600, 900);
        Table.AddCursorInfoQueryPoint();
        Table.SetIQPLayer(&Points);
        for (const auto& raster : rasters) {
            auto layer = std::make_unique<TIdrisiMapLayer>(Manager);
            layer->SetImage(raster.get());
            layer->SetColorCalc(Calculator);
            Layers.push_back(layer.get());
            Manager->GetLayers().Add(std::move(layer));
        }
        for (const TMapPoint& place : FPlaces)
            Points.GetPoints().Add(std::make_unique<TInfoQueryPoint>(&Points, place, 0xFFFFA000));
        Layers.front()->Render();
        Table.SetLayerManager(Manager);
        Table.SetCursorMapPt({1, 1}, System);
        Table.RebuildData();
        Table.show();
        QCoreApplication::processEvents();
    }

    /// The bare loop at one place.
    void Read(const TMapPoint& place) {
        const auto x = static_cast<float>(place.X);
        const auto y = static_cast<float>(place.Y);
        for (const TIdrisiMapLayer* layer : Layers)
            Sum += Calculator->GetColor(layer->GetImage()->GetValue(x, y));
    }
    void ReadAll() {
        for (const TMapPoint& place : FPlaces)
            Read(place);
    }

    const std::shared_ptr<IWorldSystem> System = TLatLonWorldSystemFactory::GetObject();
    const std::shared_ptr<IBaseColorCalculator> Calculator = TGradientColorCalculatorFactory::GetObject(
        0, 100, TGradientFactory::GetObject({{0, 0xFF0000FF}, {0.5, 0xFFFFFFFF}, {1, 0xFFFF0000}}));
    const std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    std::vector<TIdrisiMapLayer*> Layers;
    TInfoQueryPointLayer Points{Manager};
    TMapViewInfoQueryListControl Table;
    TColor32 Sum = 0;

private:
    std::vector<TMapPoint> FPlaces;
};

void MeasureMoves(TScene& scene) {
    const std::vector<TMapPoint> places = Places(Moves);
    TBestTime bare;
    TBestTime move;
    for (int i = 0; i < Repetitions / 25 + 1; ++i) {
        bare.Measure([&] {
            for (const TMapPoint& place : places)
                scene.Read(place);
        });
        move.Measure([&] {
            for (const TMapPoint& place : places)
                scene.Table.SetCursorMapPt(place, scene.System);
        });
    }
    QWidget& canvas = *scene.Table.GetList()->viewport();
    TPaintedArea area(canvas);
    QCoreApplication::processEvents();
    const qint64 row = qint64{canvas.width()} * scene.Table.GetList()->RowRect(0).height();
    std::printf(
        "a move of the mouse     %.2f us = %.1f x the bare loop for one point (at most 10); repaints %.2f rows\n",
        move.GetMilliseconds() * 1000 / Moves, move / bare,
        static_cast<double>(area.Take()) / static_cast<double>(row));
}

void MeasureRebuild(TScene& large, TScene& small) {
    TBestTime bare, rebuild, step, paint, smallStep, smallPaint;
    const auto paintNow = [](TScene& scene) {
        scene.Table.GetList()->viewport()->update();
        QCoreApplication::processEvents();
    };
    for (int i = 0; i < Repetitions / 25 + 1; ++i) {
        bare.Measure([&] { large.ReadAll(); });
        rebuild.Measure([&] { large.Table.RebuildData(); });
        step.Measure([&] { large.Layers.front()->Invalidate(); });
        smallStep.Measure([&] { small.Layers.front()->Invalidate(); });
        QCoreApplication::processEvents(); // what the steps have asked for is no part of it
        paint.Measure([&] { paintNow(large); });
        smallPaint.Measure([&] { paintNow(small); });
    }
    std::printf("%5d points x %d       rebuilt in %.1f ms = %.2f x the bare loop (at most 3)\n", PointCount, LayerCount,
                rebuild.GetMilliseconds(), rebuild / bare);
    std::printf(
        "a step of a slider      %.2f x a rebuild and a render; its painting %.2f x that of a table of %d rows\n",
        step.GetMilliseconds() / (rebuild.GetMilliseconds() + smallStep.GetMilliseconds()), paint / smallPaint,
        RowsOfScreen);
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const TRasters rasters = Rasters();
    TScene large(rasters, PointCount);
    MeasureMoves(large);
    TScene small(rasters, RowsOfScreen);
    MeasureRebuild(large, small);
    return large.Sum == 1 ? EXIT_FAILURE : EXIT_SUCCESS; // the sum keeps the bare loop
}
