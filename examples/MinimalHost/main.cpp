// The smallest host: one raster, computed here, on a map that zooms at the wheel. Read this one first.
// `MinimalHost --picture map.png` paints the map into a file instead of opening a window.

#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>

#include <QApplication>
#include <QWheelEvent>

#include <cmath>
#include <numbers>

/// A view that zooms at the wheel; the library leaves the wheel to the host.
struct TWheelView : lmx::TMapViewControl {
    void wheelEvent(QWheelEvent* event) override { event->angleDelta().y() > 0 ? ZoomIn() : ZoomOut(); }
};

// Radiation at the top of the atmosphere at an equinox, W/m2: the solar constant over pi, by the cosine of the
// latitude.
std::unique_ptr<lmx::TRealImage> EquinoxInsolation() {
    lmx::TImageHeader header;
    header.SetWidth(360);
    header.SetHeight(180);
    header.SetMinX(-180);
    header.SetMaxX(180);
    header.SetMinY(-90);
    header.SetMaxY(90);
    header.SetRefSystem("latlong");
    auto image = std::make_unique<lmx::TRealImage>(QString(), header);
    for (int row = 1; row <= 180; ++row)
        for (float& cell : image->GetRow(row))
            cell = static_cast<float>(1361 / std::numbers::pi * std::cos((90.5 - row) * std::numbers::pi / 180));
    return image;
}

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const auto manager = lmx::TLayerManagerFactory::GetObject();
    TWheelView view;
    view.resize(720, 360);
    view.SetLayerManager(manager);

    const std::vector<lmx::TColorStop> stops = {{0, 0xFF1B2A49}, {0.5, 0xFFB5446E}, {1, 0xFFF9E07F}};
    auto layer = std::make_unique<lmx::TIdrisiMapLayer>(manager);
    layer->TakeImage(EquinoxInsolation());
    layer->SetColorCalc(
        lmx::TGradientColorCalculatorFactory::GetObject(0, 434, lmx::TGradientFactory::GetObject(stops)));
    layer->Render();
    manager->GetLayers().Add(std::move(layer));

    view.show();
    view.GetViewport()->ZoomTo(view.GetWorldSystem()->Area());
    if (argc == 3 && qstrcmp(argv[1], "--picture") == 0)
        return view.grab().save(argv[2]) ? 0 : 1;
    return QApplication::exec();
}
