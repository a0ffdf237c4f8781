#pragma once

#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxEventList.h>

#include <QMainWindow>

#include <memory>
#include <vector>

class QLabel;
class TModeActions;
class TPlacesLayer;

namespace lmx {
class ILayerManager;
class IWorldSystem;
class TBaseMapLayer;
class TIdrisiMapLayer;
class TMapViewControl;
class TThread;
struct TMapPoint;
struct TPoint;
} // namespace lmx

/// The window of the viewer: the map with its modes, its layers, its rulers, and a status bar with what the present
/// mode does and the place and the values under the cursor.
class TViewerWindow : public QMainWindow {
public:
    /// `dataFolder` holds the colour scales.
    explicit TViewerWindow(const QString& dataFolder);
    ~TViewerWindow() override;

    const std::shared_ptr<lmx::ILayerManager>& GetLayerManager() const { return FManager; }
    lmx::TMapViewControl* GetView() const { return FView; }

    /// Shows the whole world as large as it fits.
    void ShowWholeWorld();
    /// Adds a model's field, gridded from its Gaussian axes and coloured by classes, on top of the rasters.
    void AddModelField();
    /// Adds the places of a file on top of the stack.
    /// @throws lmx::EFileException, lmx::EFileFormatException
    void AddPlaces(const QString& fileName);
    /// Adds a file's raster on top of the rasters, or its shapes or vectors below the places, and zooms to it; shapes
    /// and vectors a little later, when they have been read. What fails is shown in an error box.
    void OpenFile(const QString& fileName);
    /// Whether a file is being read or an overlay drawn.
    bool IsBusy() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void MakeDocks();
    void MakeMenus();
    void MakeToolBar();
    void MakeStatusBar();
    void AskForFile();
    void RaisePlaces();
    lmx::TBaseMapLayer* AddRaster(std::unique_ptr<lmx::TIdrisiMapLayer> raster); // below all lines and places
    void RemoveMarks();
    void ChangeWorld(const std::shared_ptr<lmx::IWorldSystem>& system);
    void OpenOverlayFile(const QString& fileName);
    void ShowPlace(const lmx::TPoint& pixel, const lmx::TMapPoint& place);

    std::shared_ptr<lmx::ILayerManager> FManager;
    lmx::TMapViewControl* FView;
    TModeActions* FModes;
    QString FDataFolder;
    lmx::TBorrowed<TPlacesLayer> FPlaces;
    QLabel* FHint;
    QLabel* FPlace;
    QLabel* FValues;
    lmx::TSubscription FModeChanged;
    int FOpening = 0;                                    // files that are being read
    std::vector<std::shared_ptr<lmx::TThread>> FReaders; // what reads them
};
