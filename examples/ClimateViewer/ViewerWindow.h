#pragma once

#include <lmx/Controls/lmxMapViewTypes.h>
#include <lmx/Runtime/lmxEventList.h>

#include <QMainWindow>

#include <functional>
#include <memory>
#include <vector>

class QDockWidget;
class QLabel;
class TClimateFiles;
class TCursorReadout;
class TDocumentActions;
class TLayersPanel;
class TMeasureMode;
class TModeActions;
class TPlacesLayer;
class TWorldActions;

namespace lmx {
class ILayerManager;
class IWorldSystem;
class TBaseMapLayer;
class TIdrisiMapLayer;
class TMapControl;
class TMapViewControl;
class TMapViewInfoQueryListControl;
class TMapViewRulersPanelControl;
class TObjectLayerLegendControl;
class TThread;
} // namespace lmx

/// The window of the viewer: the map with its modes, its layers, its rulers, its annotations, the table of its query
/// points, and a status bar with what the present mode does and the place and the values under the cursor. Maps are
/// kept as documents. It follows its view to whatever manager and world the view
/// is given.
class TViewerWindow : public QMainWindow {
public:
    TViewerWindow();
    ~TViewerWindow() override;

    /// The view's; whoever gives it another one gives it one that is not nil before anything is opened.
    const std::shared_ptr<lmx::ILayerManager>& GetLayerManager() const;
    lmx::TMapViewControl* GetView() const { return FView; }
    lmx::TMapControl* GetMap() const { return FMap; }
    TDocumentActions* GetDocuments() const { return FDocuments; }
    lmx::TObjectLayerLegendControl* GetAnnotations() const { return FAnnotations; }
    lmx::TMapViewInfoQueryListControl* GetQueryTable() const { return FQueryTable; }

    /// Shows the whole world as large as it fits.
    void ShowWholeWorld();
    /// Adds a model's field, gridded from its Gaussian axes and coloured by classes, on top of the rasters.
    void AddModelField();
    /// Adds the places of a file on top of the stack.
    /// @throws lmx::EFileException, lmx::EFileFormatException
    void AddPlaces(const QString& fileName);
    /// Adds a file's raster on top of the rasters, or its shapes or vectors below the places, and zooms to it; shapes
    /// and vectors a little later, when they have been read. A document takes the place of the map. What fails is shown
    /// in an error box.
    void OpenFile(const QString& fileName);
    /// What climate files open with.
    TClimateFiles& GetClimateFiles() const { return *FClimate; }
    /// Whether a file is being read or an overlay drawn.
    bool IsBusy() const;

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void MakeMap();
    void MakeDocks();
    void MakeActions();
    void MakeMenus();
    void MakeToolBar();
    void MakeStatusBar();
    QAction* MakeAction(const QString& text, const QKeySequence& keys, const std::function<void()>& action);
    void AskForFile();
    TPlacesLayer* FindPlaces() const;
    void RaisePlaces();
    void FoldPlaces();
    lmx::TBaseMapLayer* AddRaster(std::unique_ptr<lmx::TBaseMapLayer> raster); // below all lines and places
    void RemoveAllMarks();
    void OpenOverlayFile(const QString& fileName);
    void OfferWorldOf(const lmx::TBaseMapLayer& layer);
    void KeepReader(std::shared_ptr<lmx::TThread> reader); // which has to end before the program does
    void FollowManager();
    void FollowWorld();
    void ShowHint(lmx::TMapMode mode);
    void ShowReading(const QPoint& at);
    void ShowTickStrips(bool show);
    void ShowAbout();
    void TurnWheel(const QWheelEvent& event);
    void ZoomAt(const lmx::TPoint& pixel, bool zoomIn);

    lmx::TMapControl* FMap;
    lmx::TMapViewControl* FView;
    TModeActions* FModes;
    TWorldActions* FWorlds;
    QList<QAction*> FZooms;
    std::shared_ptr<TMeasureMode> FMeasure;
    TLayersPanel* FLayers;
    lmx::TMapViewRulersPanelControl* FRulers;
    lmx::TObjectLayerLegendControl* FAnnotations;
    lmx::TMapViewInfoQueryListControl* FQueryTable;
    QLabel* FHint;
    QLabel* FPlace;
    QLabel* FValues;
    TCursorReadout* FReadout;
    TDocumentActions* FDocuments = nullptr;
    std::unique_ptr<TClimateFiles> FClimate;
    QDockWidget* FTimes = nullptr; // with the strip that steps through them; nil where climate files do not open
    std::shared_ptr<lmx::IWorldSystem> FWorld; // in which the marks and places are written
    lmx::TSubscription FModeChanged;
    int FWheelTurn = 0;                                  // not yet a whole step
    int FOpening = 0;                                    // files that are being read
    std::vector<std::shared_ptr<lmx::TThread>> FReaders; // what reads files and rasters
};
