// Statistics of a field of 4320 x 2160 cells, beside one plain pass of summation over them; and pictures of 3840 x 2160
// pixels of a raster of 1080 x 540 cells, beside painting the stack of layers into a bitmap of that size.

#include <benchmarks/Measuring.h>
#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxLayerStackPainter.h>
#include <lmx/Pictures/lmxMapPicture.h>
#include <lmx/Raster/lmxField.h>
#include <lmx/Raster/lmxFieldRegion.h>
#include <lmx/Raster/lmxFieldStatistics.h>

#include <QApplication>

#include <cmath>
#include <cstdio>
#include <numbers>
#include <span>

namespace {

using lmx::bench::Sized;

constexpr int Repetitions = 9;

std::unique_ptr<lmx::TRealImage> NewImage(int width, int height) {
    lmx::TImageHeader header;
    header.SetWidth(width);
    header.SetHeight(height);
    header.SetMinX(-180);
    header.SetMaxX(180);
    header.SetMinY(-90);
    header.SetMaxY(90);
    header.SetRefSystem(QStringLiteral("latlong"));
    auto image = std::make_unique<lmx::TRealImage>(QString(), header);
    for (int row = 1; row <= height; ++row) {
        int column = 0;
        for (float& cell : image->GetRow(row)) {
            cell = static_cast<float>((row * 7 + column) % 101);
            if (++column % 11 == 0)
                cell = lmx::TSpatialConst::NoData;
        }
    }
    image->UpdateValueRange();
    return image;
}

void MeasureStatistics() {
    const int width = Sized(4320);
    const int height = Sized(2160);
    const auto image = NewImage(width, height);
    const lmx::TField field = lmx::TField::Of(*image);
    lmx::TFieldRing ring;
    for (int i = 0; i < 1000; ++i)
        ring.push_back({120 * std::cos(i * std::numbers::pi / 500), 60 * std::sin(i * std::numbers::pi / 500)});
    double sink = 0;
    lmx::bench::TBestTime plain, whole, rectangle, polygon;
    for (int i = 0; i < (lmx::bench::IsTiny ? 1 : Repetitions); ++i) {
        plain.Measure([&] {
            for (int row = 1; row <= height; ++row)
                for (const float cell : image->GetRow(row))
                    sink += cell;
        });
        whole.Measure([&] { sink += lmx::StatisticsOf(field).Mean; });
        rectangle.Measure([&] {
            lmx::TFieldRegion region(field, {-170.5L, 80, 160.25L, -75});
            sink += lmx::StatisticsOf(field, region).Mean;
        });
        polygon.Measure([&] {
            lmx::TFieldRegion region(field, std::span(&ring, 1));
            sink += lmx::StatisticsOf(field, region).Mean;
        });
    }
    std::printf("%d x %d cells, x plain pass (%.2f ms): whole %.2f, rectangle %.2f, polygon of 1000 vertices %.2f%s\n",
                width, height, plain.GetMilliseconds(), whole / plain, rectangle / plain, polygon / plain,
                std::isnan(sink) ? " (no number)" : "");
}

void MeasurePictures() {
    const auto manager = lmx::TLayerManagerFactory::GetObject();
    auto layer = std::make_unique<lmx::TIdrisiMapLayer>(manager);
    layer->SetLayerName(QStringLiteral("Raster"));
    layer->TakeImage(NewImage(Sized(1080), Sized(540)));
    layer->SetColorCalc(lmx::TGradientColorCalculatorFactory::GetObject(
        0, 100, lmx::TGradientFactory::GetObject({{0, 0xFF0000FF}, {1, 0xFFFF0000}})));
    layer->Render();
    manager->GetLayers().Add(std::move(layer));
    lmx::TMapPictureOptions options;
    options.Size = {std::max(640, Sized(3840)), std::max(400, Sized(2160))};
    const auto system = lmx::TLatLonWorldSystemFactory::GetObject();
    const lmx::TMapPicture alone(manager, system, options);
    options.Title = QStringLiteral("A title");
    options.Time = QStringLiteral("January");
    options.ShowsLegends = options.ShowsScale = options.ShowsCompassRose = true;
    const lmx::TMapPicture framed(manager, system, options);

    lmx::bench::TBestTime stack, picture, sheet;
    for (int i = 0; i < (lmx::bench::IsTiny ? 1 : Repetitions); ++i) {
        stack.Measure([&] {
            lmx::TWorld world(system);
            lmx::TWorldViewport viewport(&world);
            viewport.SetViewSize(options.Size);
            viewport.ZoomTo(system->Area());
            lmx::TBitmap32 bitmap(options.Size.cx, options.Size.cy);
            bitmap.Clear(lmx::clWhite32);
            lmx::PaintLayerStack(manager, viewport, bitmap);
        });
        picture.Measure([&] { alone.Paint(); });
        sheet.Measure([&] { framed.Paint(); });
    }
    std::printf("%d x %d pixels, x the stack (%.2f ms): picture %.2f, with all around it %.2f\n", options.Size.cx,
                options.Size.cy, stack.GetMilliseconds(), picture / stack, sheet / stack);
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    MeasureStatistics();
    MeasurePictures();
    return 0;
}
