#include "ViewerWindow.h"

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Controls/lmxMapViewRulersPanelControl.h>
#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Layers/lmxBaseShapeLayer.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxThread.h>
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
#include "MeasureMode.h"
#include "ModeActions.h"
#include "OpenRaster.h"
#include "Overlays.h"
#include "Places.h"

namespace {

constexpr lmx::TColor32 OverlayColor = 0xFFC2185B;

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
      FModes(new TModeActions(FView)),
      FDataFolder(dataFolder),
      FHint(new QLabel(this)),
      FPlace(new QLabel(this)),
      FValues(new QLabel(this)) {
    setWindowTitle(tr("Climate Viewer"));
    FView->SetLayerManager(FManager);
    FView->SetShowFocusedBorder(true);
    FView->SetAutoPan(true);
    FView->SetBackgroundColor(0xFFEEF1F4);
    FView->SetCustomModeObject(
        std::make_shared<TMeasureMode>([this](const QString& length) { FHint->setText(length); }));
    FView->installEventFilter(this);
    FView->SetOnMouseCursorLocationChanged([this](lmx::TMapViewControl*, const lmx::TPoint& pixel,
                                                  const lmx::TMapPoint& place) { ShowPlace(pixel, place); });
    setCentralWidget(FView);
    setAcceptDrops(true);

    MakeDocks();
    MakeMenus();
    MakeToolBar();
    MakeStatusBar();
    FView->SetMode(lmx::TMapMode::mdPan);
}

// The view calls back into this window until it is gone, so it goes before what it calls.
TViewerWindow::~TViewerWindow() {
    delete FView;
    for (const auto& reader : FReaders)
        reader->WaitFor();
}

void TViewerWindow::MakeDocks() {
    const auto add = [this](const QString& title, QWidget* content) {
        auto* dock = new QDockWidget(title, this);
        dock->setFeatures(QDockWidget::DockWidgetMovable);
        dock->setWidget(content);
        addDockWidget(Qt::RightDockWidgetArea, dock);
    };
    add(tr("Layers"), new TLayersPanel(FManager, FDataFolder, this));
    auto* rulers = new lmx::TMapViewRulersPanelControl(this);
    rulers->SetRulersLayer(FView->GetSpRulersLayer());
    add(tr("Rulers"), rulers);
}

void TViewerWindow::MakeStatusBar() {
    FHint->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // a long hint is cut off, the window stays
    statusBar()->addWidget(FHint, 1);
    statusBar()->addPermanentWidget(FPlace);
    statusBar()->addPermanentWidget(FValues);
    statusBar()->addPermanentWidget(new TDrawingIndicator(FManager, this));
    FModeChanged = FView->GetOnModeChanged().Add(
        [this](lmx::TMapViewControl*, lmx::TMapMode mode) { FHint->setText(TModeActions::HintOf(mode)); });
}

void TViewerWindow::MakeMenus() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    file->addAction(tr("&Open..."), QKeySequence::Open, this, [this] { AskForFile(); });
    file->addAction(tr("Add &model field"), this, [this] { AddModelField(); });
    file->addSeparator();
    file->addAction(tr("&Quit"), QKeySequence::Quit, this, [this] { close(); });
    QMenu* modes = menuBar()->addMenu(tr("&Mode"));
    modes->addActions(FModes->GetActions());
    modes->addSeparator();
    modes->addAction(tr("&Remove all marks"), QKeySequence("Ctrl+Backspace"), this, [this] { RemoveMarks(); });
}

void TViewerWindow::RemoveMarks() {
    FView->GetSpRulersLayer()->GetVRulers().Clear();
    FView->GetSpRulersLayer()->GetHRulers().Clear();
    FView->GetSpInfoQueryPointsLayer()->GetPoints().Clear();
    FView->GetSpSelectionLayer()->SetEnabled(false);
}

void TViewerWindow::AddPlaces(const QString& fileName) {
    auto places = std::make_unique<TPlacesLayer>(FManager);
    places->Load(fileName);
    FPlaces = static_cast<TPlacesLayer*>(FManager->GetLayers().Add(std::move(places)));
}

void TViewerWindow::RaisePlaces() {
    auto& layers = FManager->GetLayers();
    if (FPlaces.Get())
        FManager->MoveLayer(layers.IndexOf(FPlaces.Get()), layers.Count() - 1);
}

lmx::TBaseMapLayer* TViewerWindow::AddRaster(std::unique_ptr<lmx::TIdrisiMapLayer> raster) {
    auto& layers = FManager->GetLayers();
    int top = 0;
    while (top < layers.Count() && dynamic_cast<lmx::TRasterMapLayer*>(layers[top]))
        ++top;
    return layers.Insert(top, std::move(raster));
}

void TViewerWindow::AskForFile() {
    lmx::TFileDialogRequest request;
    request.Title = tr("Open");
    request.Filter = tr("Maps") + "|*.rst;*.rdc;*.img;*.doc;*.asc;*.shp;*.vct;*.vec|" + tr("Rasters") +
                     "|*.rst;*.rdc;*.img;*.doc;*.asc|" + tr("Idrisi images") + "|*.rst;*.rdc;*.img;*.doc|" +
                     tr("ASCII grids") + "|*.asc;*.grd;*.txt|" + tr("Overlays") + "|*.shp;*.vct;*.vec|" +
                     tr("All files") + "|*";
    QString fileName;
    if (lmx::TFileDialog::Open(request, fileName, this))
        OpenFile(fileName);
}

void TViewerWindow::OpenFile(const QString& fileName) {
    if (IsOverlayName(fileName)) {
        OpenOverlayFile(fileName);
        return;
    }
    lmx::GuardEvent(this, [&] { FView->ZoomTo(AddRaster(OpenRaster(FManager, fileName))); });
}

void TViewerWindow::OpenOverlayFile(const QString& fileName) {
    const auto ended = [this] {
        if (--FOpening == 0)
            statusBar()->clearMessage();
        std::erase_if(FReaders, [](const auto& reader) { return reader->GetFinished(); });
    };
    ++FOpening;
    statusBar()->showMessage(tr("Opening %1...").arg(fileName));
    FReaders.push_back(OpenOverlay(
        FManager, fileName, OverlayColor, this,
        [=, this](lmx::TBaseShapeLayer* layer) {
            ended();
            RaisePlaces();
            if (layer->GetLayerArea().WorldSystem) // vectors have no area
                lmx::GuardEvent(this, [&] { FView->ZoomTo(layer); });
        },
        [=, this](const QString& problem) {
            ended();
            lmx::GuardEvent(this, [&] { throw lmx::Exception(problem); });
        }));
}

bool TViewerWindow::IsBusy() const {
    return FOpening > 0 || IsDrawing(*FManager);
}

void TViewerWindow::AddModelField() {
    lmx::GuardEvent(this, [&] {
        auto layer = std::make_unique<lmx::TIdrisiMapLayer>(FManager);
        layer->SetLayerName(FManager->GetNextName(tr("Rossby-Haurwitz wave, height in m")));
        layer->TakeImage(MakeGaussianField());
        layer->SetColorCalc(MakeColorScheme("Classes: six of viridis", layer->GetValueRange(), FDataFolder));
        layer->Render();
        AddRaster(std::move(layer));
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
    bar->addActions(FModes->GetActions());
    bar->addSeparator();
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
        connect(item, &QAction::triggered, this, [this, system] { ChangeWorld(system); });
    }
}

void TViewerWindow::ChangeWorld(const std::shared_ptr<lmx::IWorldSystem>& system) {
    if (FPlaces.Get())
        FPlaces.Get()->FoldInto(*system);
    FView->ChangeWorldSystem(system);
    ShowWholeWorld();
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

void TViewerWindow::ShowPlace(const lmx::TPoint& pixel, const lmx::TMapPoint& place) {
    const lmx::extended longitude = place.X > 180 ? place.X - 360 : place.X;
    QString where = Degrees(longitude, 'E', 'W') + "   " + Degrees(place.Y, 'N', 'S');
    if (const lmx::TPin* pin = FPlaces.Get() ? FPlaces.Get()->PlaceAt(lmx::TMapPoint(pixel)) : nullptr)
        where.prepend(pin->GetName() + ", " + pin->GetAttributes()[0]->GetValue() + "   ");
    FPlace->setText(where);
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
