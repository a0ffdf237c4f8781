// Shows a map from the installed package alone, and tells of its scale by a signal of its own.

#include <lmx/Climate/lmxClimate.h>
#include <lmx/Colour/lmxColour.h>
#include <lmx/Controls/lmxControls.h>
#include <lmx/Coordinates/lmxCoordinates.h>
#include <lmx/Dialogs/lmxDialogs.h>
#include <lmx/Formats/lmxFormats.h>
#include <lmx/Graphics/lmxGraphics.h>
#include <lmx/Layers/lmxLayers.h>
#include <lmx/MapDoc/lmxMapDoc.h>
#include <lmx/Pictures/lmxPictures.h>
#include <lmx/Raster/lmxRaster.h>
#include <lmx/Runtime/lmxRuntime.h>
#include <lmx/Widgets/lmxWidgets.h>

#include <QApplication>

#include <iostream>

class TScaleTeller : public QObject {
    Q_OBJECT

public:
    explicit TScaleTeller(lmx::TMapViewControl& view) {
        view.SetOnViewportUpdated([this](lmx::TMapViewControl* sender) {
            emit ScaleChanged(static_cast<double>(sender->GetViewport()->GetScale()));
        });
    }

signals:
    void ScaleChanged(double scale);

public slots:
    void Remember(double scale) { FScale = scale; }

public:
    double FScale = 0;
};

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const auto manager = lmx::TLayerManagerFactory::GetObject();
    lmx::TMapViewControl view;
    view.SetLayerManager(manager);
    TScaleTeller teller(view);
    QObject::connect(&teller, SIGNAL(ScaleChanged(double)), &teller, SLOT(Remember(double)));

    view.resize(720, 360);
    view.CreateWorldAndViewport(lmx::TWorldSystemFactory::GetObject("latlon"));
    view.GetViewport()->ZoomTo(view.GetWorldSystem()->Area());
    try {
        lmx::StrToInt("two");
    } catch (const lmx::EConvertError& failure) { // across the border of the library
        std::cout << failure.what() << '\n';
    }
    std::cout << "scale " << teller.FScale << '\n';
    return teller.FScale == 2 ? 0 : 1;
}

#include "main.moc"
