#include "ViewerWindow.h"

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Formats/lmxAbstractImage.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxFileDialog.h>

#include <QAction>
#include <QActionGroup>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusBar>
#include <QToolBar>
#include <QWheelEvent>

#include <array>

#include "ColorSchemes.h"
#include "GaussianField.h"
#include "LayersPanel.h"
#include "OpenRaster.h"

namespace {

QString Degrees(lmx::extended value, QChar positive, QChar negative) {
    return lmx::FloatToFixed(value < 0 ? -value : value, 2) + QChar(0xB0) + ' ' + (value < 0 ? negative : positive);
}

// The image's number at a place that may be written in another range of longitudes than the image.
float ValueAt(const lmx::TAbstractImage& image, const lmx::TMapPoint& place) {
    for (const lmx::extended turn : std::array<lmx::extended, 3>{0, 360, -360}) {
        const float value = image.GetValue(static_cast<float>(place.X + turn), static_cast<float>(place.Y));
        if (lmx::TSpatialConst::IsValue(value))
            return value;
    }
    return lmx::TSpatialConst::NoData;
}

} // namespace

TViewerWindow::TViewerWindow(const QString& dataFolder)
    : FManager(lmx::TLayerManagerFactory::GetObject()),
      FView(new lmx::TMapViewControl(this)),
      FDataFolder(dataFolder),
      FPlace(new QLabel(this)),
      FValues(new QLabel(this)) {
    setWindowTitle(tr("Climate Viewer"));
    FView->SetLayerManager(FManager);
    FView->SetShowFocusedBorder(true);
    FView->SetAutoPan(true);
    FView->SetBackgroundColor(0xFFEEF1F4);
    FView->SetMode(lmx::TMapMode::mdPan);
    FView->installEventFilter(this);
    FView->SetOnMouseCursorLocationChanged(
        [this](lmx::TMapViewControl*, const lmx::TPoint&, const lmx::TMapPoint& place) { ShowPlace(place); });
    setCentralWidget(FView);

    auto* dock = new QDockWidget(tr("Layers"), this);
    dock->setFeatures(QDockWidget::DockWidgetMovable);
    dock->setWidget(new TLayersPanel(FManager, FDataFolder, dock));
    addDockWidget(Qt::RightDockWidgetArea, dock);
    MakeMenus();
    MakeToolBar();
    setAcceptDrops(true);
    statusBar()->addWidget(FPlace, 1);
    statusBar()->addPermanentWidget(FValues);
    FPlace->setText(tr("Drag to pan, turn the wheel to zoom"));
}

// The view calls back into this window until it is gone, so it goes before what it calls.
TViewerWindow::~TViewerWindow() {
    delete FView;
}

void TViewerWindow::MakeMenus() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    file->addAction(tr("&Open..."), QKeySequence::Open, this, [this] { AskForFile(); });
    file->addAction(tr("Add &model field"), this, [this] { AddModelField(); });
    file->addSeparator();
    file->addAction(tr("&Quit"), QKeySequence::Quit, this, [this] { close(); });
}

void TViewerWindow::AskForFile() {
    lmx::TFileDialogRequest request;
    request.Title = tr("Open raster");
    request.Filter = tr("Rasters") + "|*.rst;*.rdc;*.img;*.doc;*.asc|" + tr("Idrisi images") +
                     "|*.rst;*.rdc;*.img;*.doc|" + tr("ASCII grids") + "|*.asc;*.grd;*.txt|" + tr("All files") + "|*";
    QString fileName;
    if (lmx::TFileDialog::Open(request, fileName, this))
        OpenFile(fileName);
}

void TViewerWindow::OpenFile(const QString& fileName) {
    lmx::GuardEvent(this, [&] {
        lmx::TBaseMapLayer* layer = FManager->GetLayers().Add(OpenRaster(FManager, fileName));
        FView->ZoomTo(layer);
    });
}

void TViewerWindow::AddModelField() {
    lmx::GuardEvent(this, [&] {
        auto layer = std::make_unique<lmx::TIdrisiMapLayer>(FManager);
        layer->SetLayerName(FManager->GetNextName(tr("Rossby-Haurwitz wave, height in m")));
        layer->TakeImage(MakeGaussianField());
        layer->SetColorCalc(MakeColorScheme("Classes: six of viridis", layer->GetValueRange(), FDataFolder));
        layer->SetOpacity(170); // the coasts below show through
        layer->Render();
        FManager->GetLayers().Add(std::move(layer));
    });
}

void TViewerWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void TViewerWindow::dropEvent(QDropEvent* event) {
    for (const QUrl& url : event->mimeData()->urls())
        if (url.isLocalFile())
            OpenFile(url.toLocalFile());
    event->acceptProposedAction();
}

void TViewerWindow::MakeToolBar() {
    QToolBar* bar = addToolBar(tr("Map"));
    bar->setMovable(false);
    const auto add = [&](const QString& text, const QKeySequence& keys, auto action) {
        QAction* item = bar->addAction(text, this, action);
        item->setShortcut(keys);
        item->setToolTip(text + " (" + keys.toString() + ')');
    };
    add(tr("Zoom in"), QKeySequence("Ctrl++"), [this] { FView->ZoomIn(); });
    add(tr("Zoom out"), QKeySequence("Ctrl+-"), [this] { FView->ZoomOut(); });
    add(tr("Whole world"), QKeySequence("Ctrl+0"), [this] { ShowWholeWorld(); });
    bar->addSeparator();

    auto* worlds = new QActionGroup(this);
    for (const auto& system : lmx::TWorldSystemFactory::GetObjects("latlon")) {
        QAction* item = bar->addAction(system->Name());
        item->setCheckable(true);
        item->setChecked(worlds->actions().isEmpty());
        worlds->addAction(item);
        connect(item, &QAction::triggered, this, [this, system] {
            FView->ChangeWorldSystem(system);
            ShowWholeWorld();
        });
    }
}

void TViewerWindow::ShowWholeWorld() {
    if (FView->WorldCreated())
        FView->GetViewport()->ZoomTo(FView->GetWorldSystem()->Area());
}

bool TViewerWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == FView && event->type() == QEvent::Wheel) {
        const int turn = static_cast<QWheelEvent*>(event)->angleDelta().y();
        if (turn > 0)
            FView->ZoomIn();
        else if (turn < 0)
            FView->ZoomOut();
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

void TViewerWindow::ShowPlace(const lmx::TMapPoint& place) {
    const lmx::extended longitude = place.X > 180 ? place.X - 360 : place.X;
    FPlace->setText(Degrees(longitude, 'E', 'W') + "   " + Degrees(place.Y, 'N', 'S'));
    QStringList values;
    for (lmx::TBaseMapLayer* layer : FManager->GetLayers()) {
        const auto* raster = dynamic_cast<lmx::TIdrisiMapLayer*>(layer);
        if (!raster || !raster->GetImage() || !raster->GetIsVisible())
            continue;
        const float value = ValueAt(*raster->GetImage(), place);
        const QString text = lmx::TSpatialConst::IsValue(value)
                                 ? lmx::FloatToFixed(value, 1) + ' ' + raster->GetImage()->getHeader()->GetValueUnits()
                                 : tr("no data");
        values.prepend(layer->GetLayerName() + ": " + text);
    }
    FValues->setText(values.join("   "));
}
