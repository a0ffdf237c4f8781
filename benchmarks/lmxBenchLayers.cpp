// One paint of a view with 20 ready raster layers on a 3840 x 2160 buffer, and what it is made of; and one layer of
// 4320 x 2160 cells on 1920 x 1080 pixels, painted for the first time at a scale, again, and panned. The yardstick is
// clearing the buffer.

#include <benchmarks/Measuring.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>

#include <QApplication>

#include <cstdio>
#include <vector>

namespace {

constexpr int LayerCount = 20;
constexpr int Repetitions = 15;

std::unique_ptr<lmx::TIdrisiMapLayer> MakeLayer(const std::shared_ptr<lmx::ILayerManager>& manager, int number,
                                                int width, int height) {
    lmx::TImageHeader header;
    header.SetWidth(width);
    header.SetHeight(height);
    header.SetMinX(number % 2 == 0 ? -180.0F : 0.0F); // every other one is cut at the seam
    header.SetMaxX(number % 2 == 0 ? 180.0F : 360.0F);
    header.SetMinY(-90);
    header.SetMaxY(90);
    header.SetRefSystem(QStringLiteral("latlong"));
    auto image = std::make_unique<lmx::TRealImage>(QString(), header);
    for (int row = 1; row <= height; ++row) {
        int column = 0;
        for (float& cell : image->GetRow(row))
            cell = static_cast<float>((row + number * 7 + column++) % 101);
    }
    auto layer = std::make_unique<lmx::TIdrisiMapLayer>(manager);
    layer->TakeImage(std::move(image));
    layer->SetColorCalc(lmx::TGradientColorCalculatorFactory::GetObject(
        0, 100, lmx::TGradientFactory::GetObject(std::vector<lmx::TColorStop>{{0, 0xFF0000FF}, {1, 0xFFFF0000}})));
    return layer;
}

void Measure(const char* name, std::uint8_t opacity) {
    const auto manager = lmx::TLayerManagerFactory::GetObject();
    lmx::TMapViewControl view(nullptr, {});
    view.resize(lmx::bench::Sized(3840), lmx::bench::Sized(2160));
    view.SetLayerManager(manager);
    for (int i = 0; i < LayerCount; ++i) {
        auto layer = MakeLayer(manager, i, lmx::bench::Sized(1080), lmx::bench::Sized(540));
        layer->SetOpacity(opacity);
        layer->Render();
        manager->GetLayers().Add(std::move(layer));
    }
    view.grab(); // gives a hidden widget its buffer
    view.GetViewport()->ZoomTo(view.GetWorldSystem()->Area());

    lmx::TBitmap32& buffer = view.GetBuffer();
    const double clear = lmx::bench::BestMilliseconds(Repetitions, [&] { buffer.Clear(lmx::clWhite32); });
    const double paint = lmx::bench::BestMilliseconds(Repetitions, [&] { view.DoPaintBuffer(); });
    lmx::TBaseMapLayer* plain = manager->GetLayers()[0];
    lmx::TBaseMapLayer* cut = manager->GetLayers()[1];
    const double one =
        lmx::bench::BestMilliseconds(Repetitions, [&] { plain->Paint(view.GetWorld(), view.GetViewport(), buffer); });
    const double two =
        lmx::bench::BestMilliseconds(Repetitions, [&] { cut->Paint(view.GetWorld(), view.GetViewport(), buffer); });
    const double pixels = static_cast<double>(buffer.GetWidth()) * buffer.GetHeight() / 1e6;
    std::printf("%-16s paint %7.1f ms (%.1f Mpixel) = background %.2f ms + %d layers; a layer in one piece %.2f ms "
                "(%.2f x clear), in two pieces %.2f ms (%.2f x clear)\n",
                name, paint, pixels, clear, LayerCount, one, one / clear, two, two / clear);
}

void MeasureLarge(const char* name, std::uint8_t opacity) {
    const auto manager = lmx::TLayerManagerFactory::GetObject();
    lmx::TMapViewControl view(nullptr, {});
    view.resize(lmx::bench::Sized(1920), lmx::bench::Sized(1080));
    view.SetLayerManager(manager);
    lmx::TBaseMapLayer* layer = nullptr;
    {
        auto raster = MakeLayer(manager, 0, lmx::bench::Sized(4320), lmx::bench::Sized(2160));
        raster->SetOpacity(opacity);
        raster->Render();
        layer = manager->GetLayers().Add(std::move(raster));
    }
    view.grab();
    lmx::TWorldViewport& viewport = *view.GetViewport();
    viewport.ZoomTo(view.GetWorldSystem()->Area());
    lmx::TBitmap32& buffer = view.GetBuffer();
    const auto paint = [&] { layer->Paint(view.GetWorld(), &viewport, buffer); };

    const double clear = lmx::bench::BestMilliseconds(Repetitions, [&] { buffer.Clear(lmx::clWhite32); });
    int step = 0;
    const double first = lmx::bench::BestMilliseconds(Repetitions, [&] {
        viewport.SetScale(5 + ++step / 100.0L); // a new size at every paint
        paint();
    });
    const double again = lmx::bench::BestMilliseconds(Repetitions, paint);
    const double panned = lmx::bench::BestMilliseconds(Repetitions, [&] {
        viewport.SetTranslation({viewport.GetTranslation().X + (++step % 2 == 0 ? 5 : -5), 3});
        paint();
    });
    viewport.SetScale(50);
    const double zoomedIn = lmx::bench::BestMilliseconds(Repetitions, paint);
    std::printf("%-16s 4320 x 2160 on 1920 x 1080, x clear (%.2f ms): first at a scale %.2f, again %.2f, panned %.2f, "
                "zoomed in %.2f\n",
                name, clear, first / clear, again / clear, panned / clear, zoomedIn / clear);
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    Measure("opaque", 255);
    Measure("half transparent", 128);
    MeasureLarge("opaque", 255);
    MeasureLarge("half transparent", 128);
    return 0;
}
