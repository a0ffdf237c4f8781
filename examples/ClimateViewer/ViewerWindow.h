#pragma once

#include <QMainWindow>

#include <memory>

class QLabel;

namespace lmx {
class ILayerManager;
class TMapViewControl;
struct TMapPoint;
} // namespace lmx

/// The window of the viewer: the map, its layers, and a status bar with the place and the values under the cursor.
class TViewerWindow : public QMainWindow {
public:
    /// `dataFolder` holds the colour scales.
    explicit TViewerWindow(const QString& dataFolder);
    ~TViewerWindow() override;

    const std::shared_ptr<lmx::ILayerManager>& GetLayerManager() const { return FManager; }
    lmx::TMapViewControl* GetView() const { return FView; }

    /// Shows the whole world as large as it fits.
    void ShowWholeWorld();
    /// Adds a model's field, gridded from its Gaussian axes and coloured by classes, on top of the stack.
    void AddModelField();
    /// Adds a file's raster on top of the stack and zooms to it. What fails is shown in an error box.
    void OpenFile(const QString& fileName);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void MakeMenus();
    void MakeToolBar();
    void AskForFile();
    void ShowPlace(const lmx::TMapPoint& place);

    std::shared_ptr<lmx::ILayerManager> FManager;
    lmx::TMapViewControl* FView;
    QString FDataFolder;
    QLabel* FPlace;
    QLabel* FValues;
};
