// A host with a layer, a mode and a calculator of its own: the sun over the earth. Read MinimalHost first, which shows
// a raster with what the library brings; ClimateViewer is the full host.
//
//   TIsolines   a calculator: what a value looks like. Bands of even steps, each begun by a dark line.
//   TNightLayer a layer: draws the night for a place where the sun stands in the zenith.
//   TSunMode    a mode: what a drag of the left button does. It moves the sun, and the night follows.
//
// `OwnLayer --picture map.png` paints the map into a file instead of opening a window.

#include <lmx/Colour/lmxBaseColorCalculator.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxPolygons.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxBorrowed.h>

#include <QApplication>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr double Radians = std::numbers::pi / 180;
constexpr lmx::extended Tropic = 23.44L; // the sun goes no further from the equator

/// Bands of 25 W/m2 from blue to sand, each with a dark line along its lower edge.
class TIsolines : public lmx::IBaseColorCalculator {
public:
    lmx::TColor32 GetColor(float value) const override {
        const float band = std::floor(value / 25);
        if (value - band * 25 < 2.5F)
            return 0xFF4A5568;
        const int share = std::clamp(static_cast<int>(band) - 7, 0, 10); // from 175 to 425
        const auto mixed = [share](int cold, int warm) {
            return static_cast<lmx::TColor32>(cold + share * (warm - cold) / 10);
        };
        return 0xFF000000 | mixed(0x4A, 0xF6) << 16 | mixed(0x7F, 0xDF) << 8 | mixed(0xB5, 0xA4);
    }
    std::shared_ptr<lmx::IBaseColorCalculator> Clone() const override { return std::make_shared<TIsolines>(); }
};

/// The night: everything from which the sun is below the horizon.
class TNightLayer : public lmx::TBaseLayerManagerLayer {
public:
    explicit TNightLayer(const std::shared_ptr<lmx::ILayerManager>& manager) : TBaseLayerManagerLayer(manager) {
        SetLayerName("Night");
        SetIsReadyToDraw(true); // or it would not be painted
    }

    QString GetLayerTypeName() const override { return "Night"; }
    void SetSun(const lmx::TMapPoint& zenith) {
        FSun = {zenith.X, std::clamp(zenith.Y, -Tropic, Tropic)};
        Invalidate(); // every view of the manager paints again
    }

    // The sun sets on a meridian at an angle from its own where tan(latitude) = -cos(angle) / tan(the sun's latitude).
    void Paint(lmx::TWorld* world, lmx::TWorldViewport* viewport, lmx::TBitmap32& bitmap) override {
        const lmx::TMapArea earth = world->GetWorldSystem()->Area();
        const double tangent = std::tan(static_cast<double>(FSun.Y) * Radians); // 0 is fine: atan takes infinities
        const lmx::extended darkPole = std::signbit(FSun.Y) ? earth.Top : earth.Bottom;
        lmx::TFloatPoints night;
        const auto add = [&](const lmx::TMapPoint& place) {
            const lmx::TMapPoint pixel = viewport->MapPointToPoint(place);
            night.push_back({static_cast<double>(pixel.X), static_cast<double>(pixel.Y)});
        };
        add({earth.Left, darkPole});
        for (lmx::extended longitude = earth.Left; longitude <= earth.Right; longitude += 1) {
            const double angle = static_cast<double>(longitude - FSun.X) * Radians;
            add({longitude, std::atan(-std::cos(angle) / tangent) / Radians});
        }
        add({earth.Right, darkPole});
        lmx::PolygonFS(bitmap, night, 0x90081028);

        const lmx::TMapPoint sun = viewport->MapPointToPoint(world->GetWorldSystem()->ToWorldPoint(FSun));
        const lmx::TFloatPoints disc =
            lmx::CirclePolygon(static_cast<double>(sun.X), static_cast<double>(sun.Y), 9 * bitmap.GetDeviceRatio());
        lmx::PolygonFS(bitmap, disc, 0xFFFFC933);
    }

private:
    lmx::TMapPoint FSun{-30, 18};
};

/// A drag puts the sun under the mouse.
class TSunMode : public lmx::IMapViewControlCustomModeObject {
public:
    explicit TSunMode(TNightLayer* night) : FNight(night) {}

    void MouseDown(lmx::TMapViewControl* view, const lmx::TPoint& pixel, const lmx::TMapPoint& place) override {
        FIsDragging = true;
        MouseMove(view, pixel, place);
    }
    void MouseMove(lmx::TMapViewControl*, const lmx::TPoint&, const lmx::TMapPoint& place) override {
        if (FIsDragging && FNight) // moves come without a press, too
            FNight->SetSun(place);
    }
    void MouseUp(lmx::TMapViewControl*, const lmx::TPoint&, const lmx::TMapPoint&) override { FIsDragging = false; }
    lmx::TCursor GetCursor() const override { return lmx::TCursor::crCross; }

private:
    lmx::TBorrowed<TNightLayer> FNight; // the manager owns it, and may remove it
    bool FIsDragging = false;
};

// A year's mean of the radiation at the top of the atmosphere, W/m2, by its first two Legendre terms.
std::unique_ptr<lmx::TRealImage> MeanInsolation() {
    lmx::TImageHeader header;
    header.SetWidth(360);
    header.SetHeight(720);
    header.SetMinX(-180);
    header.SetMaxX(180);
    header.SetMinY(-90);
    header.SetMaxY(90);
    header.SetRefSystem("latlong");
    auto image = std::make_unique<lmx::TRealImage>(QString(), header);
    for (int row = 1; row <= 720; ++row) {
        const double sine = std::sin((90.125 - row / 4.0) * Radians);
        std::ranges::fill(image->GetRow(row), static_cast<float>(1361 / 4.0 * (1 - 0.2385 * (3 * sine * sine - 1))));
    }
    return image;
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const auto manager = lmx::TLayerManagerFactory::GetObject();
    lmx::TMapViewControl view;
    view.resize(720, 360);
    view.SetLayerManager(manager);

    auto insolation = std::make_unique<lmx::TIdrisiMapLayer>(manager);
    insolation->TakeImage(MeanInsolation());
    insolation->SetColorCalc(std::make_shared<TIsolines>());
    insolation->Render();
    manager->GetLayers().Add(std::move(insolation));
    auto* night = manager->GetLayers().Add(std::make_unique<TNightLayer>(manager));
    view.SetCustomModeObject(std::make_shared<TSunMode>(night)); // first the object, then the mode
    view.SetMode(lmx::TMapMode::mdCustom);
    view.show();
    view.GetViewport()->ZoomTo(view.GetWorldSystem()->Area());
    if (argc == 3 && qstrcmp(argv[1], "--picture") == 0)
        return view.grab().save(argv[2]) ? 0 : 1;
    return QApplication::exec();
}
