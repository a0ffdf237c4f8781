#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QWidget;

namespace lmx {
class ILayerFactory;
class ILayerManager;
class IMapDocLayerPersistFactory;
class TBaseMapLayer;
} // namespace lmx

// Climate files: NetCDF, GRIB, Zarr and GeoTIFF. Where the viewer is built without lmx::datasources they do not open,
// and it says so.

/// What is opened of a file without a question: the first variable that can be shown, or the one of this name, at a
/// step.
struct TClimateChoice {
    QString Variable;
    int Step = 0; ///< from 0
};

/// Opens climate files into a map and plays their times.
class TClimateFiles {
public:
    /// Puts a layer where it belongs among the others, and gives it back.
    using TAddLayer = std::function<lmx::TBaseMapLayer*(std::unique_ptr<lmx::TBaseMapLayer>)>;

    /// `window` is the parent of the dialog; it owns this.
    TClimateFiles(QWidget* window, TAddLayer addLayer);
    ~TClimateFiles();
    TClimateFiles(const TClimateFiles&) = delete;
    TClimateFiles& operator=(const TClimateFiles&) = delete;

    static bool CanOpen(); ///< whether the viewer is built with what reads them

    /// Asks which variable, time and level, unless there is only one picture or a choice was made by SetChoice, and
    /// adds it; steps in time are played by the strip. A GeoTIFF too large for memory is shown by tiles. Nil if the
    /// user cancels.
    /// @throws lmx::Exception with a message that names what is wrong.
    lmx::TBaseMapLayer* Open(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& fileName);

    /// From now on nothing is asked.
    void SetChoice(const TClimateChoice& choice);

    /// Steps through the times of what was opened last: a widget of the window's, or nil where nothing opens.
    QWidget* GetTimeStrip() const;
    /// Called whenever there is something to step through, and when there is not.
    void SetOnHasTimes(std::function<void(bool hasTimes)> event);
    /// The time that the layer opened last shows; empty without.
    QString GetTimeCaption() const;
    bool IsReading() const; ///< whether a step is being read

private:
    class TImpl;

    std::unique_ptr<TImpl> FImpl;
};

// Documents keep tiled rasters by their file.
void RegisterClimateFiles(const std::shared_ptr<lmx::ILayerFactory>& makers,
                          const std::shared_ptr<lmx::IMapDocLayerPersistFactory>& keepers);
