#include "ViewerWindow.h"

#include <lmx/Controls/Legend/lmxObjectLayerLegendControl.h>
#include <lmx/Controls/lmxMapControl.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Controls/lmxMapViewInfoQueryListControl.h>
#include <lmx/Controls/lmxMapViewRuler.h>
#include <lmx/Controls/lmxMapViewRulersPanelControl.h>
#include <lmx/Dialogs/lmxPaletteSources.h>
#include <lmx/Layers/Objects/lmxBaseObjectLayerItem.h>
#include <lmx/Layers/lmxBaseShapeLayer.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxLayerManagerConfig.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxThread.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxFileDialog.h>
#include <lmx/Widgets/lmxMsgBox.h>

#include <QAction>
#include <QCloseEvent>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusBar>
#include <QToolBar>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>

#include "ClimateFiles.h"
#include "ColorSchemes.h"
#include "CursorReadout.h"
#include "DocumentActions.h"
#include "ElidedLabel.h"
#include "FileKinds.h"
#include "GaussianField.h"
#include "LayersPanel.h"
#include "MapReading.h"
#include "Marks.h"
#include "MeasureMode.h"
#include "ModeActions.h"
#include "OpenRaster.h"
#include "Overlays.h"
#include "PictureExport.h"
#include "Places.h"
#include "SelectionStatistics.h"
#include "WorldActions.h"

namespace {

constexpr lmx::TColor32 OverlayColor = 0xFFC2185B;
constexpr int QueryTableHeight = 120;
constexpr float ZoomStep = 0.1F; // share of the scale that a step of the wheel or a key adds
constexpr int WheelStep = QWheelEvent::DefaultDeltasPerStep; // fine wheels send less at a time

} // namespace

TViewerWindow::TViewerWindow()
    : FMap(new lmx::TMapControl(this)),
      FView(FMap->GetMapView()),
      FModes(new TModeActions(FView)),
      FWorlds(new TWorldActions(FView)),
      FLayers(new TLayersPanel(this)),
      FRulers(new lmx::TMapViewRulersPanelControl(this)),
      FAnnotations(new lmx::TObjectLayerLegendControl(this)),
      FQueryTable(new lmx::TMapViewInfoQueryListControl(this)),
      FHint(new QLabel(this)),
      FPlace(new QLabel(this)),
      FValues(new TElidedLabel(Qt::ElideRight, this)),
      FReadout(new TCursorReadout(FView, FPlace, FValues)) {
    setWindowTitle(tr("Climate Viewer"));
    FDocuments = new TDocumentActions(FView, this, [this] { FoldPlaces(); });
    FClimate = std::make_unique<TClimateFiles>(
        this, [this](std::unique_ptr<lmx::TBaseMapLayer> layer) { return AddRaster(std::move(layer)); });
    MakeMap();
    setCentralWidget(FMap);
    setAcceptDrops(true);
    MakeDocks();
    MakeActions();
    MakeMenus();
    MakeToolBar();
    MakeStatusBar();
    FDocuments->GetDocument().New();
    FView->SetMode(lmx::TMapMode::mdPan);
}

// The view calls back into this window until it is gone, so it goes before what it calls.
TViewerWindow::~TViewerWindow() {
    delete FMap;
    for (const auto& reader : FReaders)
        reader->Terminate();
    for (const auto& reader : FReaders)
        reader->WaitFor();
}

const std::shared_ptr<lmx::ILayerManager>& TViewerWindow::GetLayerManager() const {
    return FView->GetLayerManager();
}

void TViewerWindow::MakeMap() {
    FMeasure = std::make_shared<TMeasureMode>([this](const QString& length) { FHint->setText(length); });
    FView->SetShowFocusedBorder(true);
    FView->SetAutoPan(true);
    FView->SetZoomScale(ZoomStep);
    FView->SetBackgroundColor(0xFFEEF1F4);
    FView->SetCustomModeObject(FMeasure);
    FView->installEventFilter(this);
    FView->SetOnViewportUpdated([this](lmx::TMapViewControl*) { FollowWorld(); });
    FView->SetOnAfterLayerManagerChanged([this](lmx::TMapViewControl*) { FollowManager(); });
}

void TViewerWindow::MakeDocks() {
    const auto add = [this](const QString& title, QWidget* content, Qt::DockWidgetArea area = Qt::RightDockWidgetArea) {
        auto* dock = new QDockWidget(title, this);
        dock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetClosable);
        dock->setWidget(content);
        addDockWidget(area, dock);
        return dock;
    };
    QDockWidget* layers = add(tr("Layers"), FLayers);
    QDockWidget* rulers = add(tr("Rulers"), FRulers);
    QDockWidget* annotations = add(tr("Annotations"), FAnnotations);
    tabifyDockWidget(rulers, annotations);
    resizeDocks({layers, annotations}, {3, 1}, Qt::Vertical);
    resizeDocks({layers}, {FLayers->sizeHint().width()}, Qt::Horizontal);
    setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
    FQueryTable->AddCursorInfoQueryPoint(); // before any point: it follows the mouse as the first row
    QDockWidget* points = add(tr("Query points"), FQueryTable, Qt::BottomDockWidgetArea);
    resizeDocks({points}, {QueryTableHeight}, Qt::Vertical);
    if (QWidget* const strip = FClimate->GetTimeStrip()) {
        FTimes = add(tr("Time"), strip, Qt::TopDockWidgetArea);
        FTimes->hide(); // until there is something to step through
        FClimate->SetOnHasTimes([this](bool hasTimes) { FTimes->setVisible(hasTimes); });
    }
}

void TViewerWindow::MakeStatusBar() {
    FHint->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // a long hint is cut off, the window stays
    FHint->setObjectName("Hint");
    FPlace->setObjectName("Place");
    FValues->setObjectName("Values");
    statusBar()->addWidget(FHint, 1);
    statusBar()->addPermanentWidget(FPlace);
    statusBar()->addPermanentWidget(FValues);
    statusBar()->addPermanentWidget(new TDrawingIndicator(FView, this));
    FModeChanged = FView->GetOnModeChanged().Add([this](lmx::TMapViewControl*, lmx::TMapMode mode) { ShowHint(mode); });
}

QAction* TViewerWindow::MakeAction(const QString& text, const QKeySequence& keys, const std::function<void()>& action) {
    auto* item = new QAction(text, this);
    item->setShortcut(keys);
    item->setToolTip(item->iconText() + " (" + keys.toString(QKeySequence::NativeText) + ')');
    connect(item, &QAction::triggered, this, action);
    return item;
}

void TViewerWindow::MakeActions() {
    FZooms = {MakeAction(tr("Zoom &in"), QKeySequence("Ctrl++"), [this] { FView->ZoomIn(); }),
              MakeAction(tr("Zoom &out"), QKeySequence("Ctrl+-"), [this] { FView->ZoomOut(); }),
              MakeAction(tr("&Whole world"), QKeySequence("Ctrl+0"), [this] { ShowWholeWorld(); })};
}

void TViewerWindow::MakeMenus() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    file->addAction(tr("&Open..."), QKeySequence::Open, this, [this] { AskForFile(); });
    file->addAction(tr("Add model &field"), this, [this] { AddModelField(); });
    file->addSeparator();
    FDocuments->AddTo(*file);
    file->addAction(tr("Export &picture..."), QKeySequence("Ctrl+E"), this,
                    [this] { ExportPicture(*FView, FClimate->GetTimeCaption(), this); });
    file->addSeparator();
    file->addAction(tr("&Quit"), QKeySequence::Quit, this, [this] { close(); });
    QMenu* modes = menuBar()->addMenu(tr("&Mode"));
    modes->addActions(FModes->GetActions());
    modes->addSeparator();
    modes->addAction(tr("Statistics of the &selection..."), QKeySequence("Ctrl+T"), this,
                     [this] { ShowStatistics(*FView, this, [this](auto reader) { KeepReader(std::move(reader)); }); });
    modes->addAction(tr("Statistics of the pol&ygon..."), QKeySequence("Ctrl+Shift+T"), this, [this] {
        ShowPolygonStatistics(*FView, this, [this](auto reader) { KeepReader(std::move(reader)); });
    });
    modes->addAction(tr("&Remove all marks"), QKeySequence("Ctrl+Backspace"), this, [this] { RemoveAllMarks(); });
    menuBar()->addMenu(tr("&Layer"))->addActions(FLayers->GetCommands());
    QMenu* view = menuBar()->addMenu(tr("&View"));
    view->addActions(FZooms);
    view->addSeparator();
    view->addActions(FWorlds->GetActions());
    view->addSeparator();
    QAction* strips = view->addAction(tr("&Tick strips"), QKeySequence(Qt::Key_F8));
    strips->setCheckable(true);
    connect(strips, &QAction::toggled, this, [this](bool show) { ShowTickStrips(show); });
    for (const auto* dock : findChildren<QDockWidget*>())
        view->addAction(dock->toggleViewAction());
    menuBar()->addMenu(tr("&Annotation"))->addActions(FAnnotations->GetAddMenu()->actions());
    menuBar()->addMenu(tr("&Help"))->addAction(tr("&About"), QKeySequence::HelpContents, this, [this] { ShowAbout(); });
}

void TViewerWindow::MakeToolBar() {
    QToolBar* bar = addToolBar(tr("Map"));
    bar->setMovable(false);
    bar->addActions(FModes->GetActions());
    bar->addSeparator();
    bar->addActions(FZooms);
    bar->addSeparator();
    bar->addActions(FWorlds->GetActions());
}

void TViewerWindow::FollowManager() {
    if (GetLayerManager())
        lmx::AddColorPack(*GetLayerManager()->GetConfig());
    FLayers->SetLayerManager(GetLayerManager());
    FRulers->SetRulersLayer(FView->GetSpRulersLayer());
    FAnnotations->SetLayer(FView->GetSpObjectLayer());
    FReadout->SetLayerManager(GetLayerManager());
    FQueryTable->SetLayerManager(GetLayerManager());
    FQueryTable->SetIQPLayer(FView->GetSpInfoQueryPointsLayer());
}

// Marks and places stay where they are on the earth when the range of longitudes changes.
void TViewerWindow::FollowWorld() {
    if (FView->GetWorldSystem() == FWorld)
        return;
    FWorld = FView->GetWorldSystem();
    FWorlds->Update();
    FQueryTable->SetCursorMapPt(FView->GetViewport()->GetCenter(), FWorld); // until the mouse says where it is
    FQueryTable->RebuildData();
    FoldMarks(*FView, *FWorld);
    FoldPlaces();
}

void TViewerWindow::RemoveAllMarks() {
    RemoveMarks(*FView);
    FMeasure->Clear();
    ShowHint(FView->GetMode());
}

void TViewerWindow::ShowHint(lmx::TMapMode mode) {
    FHint->setText(TModeActions::HintOf(mode));
}

void TViewerWindow::ShowAbout() {
    lmx::TMsgBox::Info(tr("Climate Viewer %1\n\nAn example host of lmx, on Qt %2.\n\nRelief and sea surface "
                          "temperature: NOAA. Coasts, rivers and places: Natural Earth.")
                           .arg(CLIMATE_VIEWER_VERSION, qVersion()),
                       tr("About Climate Viewer"), this);
}

// A map control that does not show its strips leaves them where they are: taking them away is the host's.
void TViewerWindow::ShowTickStrips(bool show) {
    FMap->SetShowRulers(show);
    if (show)
        return;
    FMap->GetHRuler()->hide();
    FMap->GetVRuler()->hide();
    FView->setGeometry(FMap->rect());
}

void TViewerWindow::AddPlaces(const QString& fileName) {
    auto places = std::make_unique<TPlacesLayer>(GetLayerManager());
    places->Load(fileName);
    if (FWorld)
        places->FoldInto(*FWorld);
    GetLayerManager()->GetLayers().Add(std::move(places));
}

TPlacesLayer* TViewerWindow::FindPlaces() const {
    for (lmx::TBaseMapLayer* layer : GetLayerManager()->GetLayers())
        if (auto* places = dynamic_cast<TPlacesLayer*>(layer))
            return places;
    return nullptr;
}

void TViewerWindow::FoldPlaces() {
    TPlacesLayer* places = FWorld && GetLayerManager() ? FindPlaces() : nullptr;
    if (places)
        places->FoldInto(*FWorld);
}

void TViewerWindow::RaisePlaces() {
    auto& layers = GetLayerManager()->GetLayers();
    if (TPlacesLayer* places = FindPlaces())
        GetLayerManager()->MoveLayer(layers.IndexOf(places), layers.Count() - 1);
}

lmx::TBaseMapLayer* TViewerWindow::AddRaster(std::unique_ptr<lmx::TBaseMapLayer> raster) {
    auto& layers = GetLayerManager()->GetLayers();
    int top = 0;
    while (top < layers.Count() && dynamic_cast<lmx::TRasterMapLayer*>(layers[top]))
        ++top;
    return layers.Insert(top, std::move(raster));
}

void TViewerWindow::AskForFile() {
    lmx::TFileDialogRequest request;
    request.Title = tr("Open");
    request.Filter = KnownFilesFilter();
    QString fileName;
    if (lmx::TFileDialog::Open(request, fileName, this))
        OpenFile(fileName);
}

void TViewerWindow::OpenFile(const QString& fileName) {
    if (KindOf(fileName) == TFileKind::fkDocument) {
        FDocuments->Open(fileName);
        return;
    }
    if (IsOverlayName(fileName)) {
        OpenOverlayFile(fileName);
        return;
    }
    lmx::GuardEvent(this, [&] {
        if (lmx::TBaseMapLayer* const layer = KindOf(fileName) == TFileKind::fkClimate
                                                  ? FClimate->Open(GetLayerManager(), fileName)
                                                  : AddRaster(OpenRaster(GetLayerManager(), fileName))) {
            const lmx::TBorrowed opened(layer); // a question gives others their turn
            OfferWorldOf(*layer);
            if (opened)
                FView->ZoomTo(opened.Get());
        }
    });
}

// Nothing is projected: metres of a grid lie far outside a map in degrees.
void TViewerWindow::OfferWorldOf(const lmx::TBaseMapLayer& layer) {
    const auto system = layer.GetLayerArea().WorldSystem;
    if (!system || !FWorld || system->GetGroup() == FWorld->GetGroup())
        return;
    const QString question = tr("%1 lies in %2, and the map in %3. Show the map in %2, where the layers of %3 are not "
                                "seen?");
    if (lmx::TMsgBox::YesNo(question.arg(layer.GetLayerName(), system->Name(), FWorld->Name()), tr("Open"), this))
        FView->ChangeWorldSystem(system);
}

void TViewerWindow::OpenOverlayFile(const QString& fileName) {
    const auto ended = [this] {
        if (--FOpening == 0)
            statusBar()->clearMessage();
    };
    ++FOpening;
    statusBar()->showMessage(tr("Opening %1...").arg(fileName));
    KeepReader(OpenOverlay(
        GetLayerManager(), fileName, OverlayColor, this,
        [=, this](lmx::TBaseShapeLayer* layer, const QStringList& remarks) {
            ended();
            RaisePlaces();
            if (layer->GetLayerArea().WorldSystem) // vectors have no area
                lmx::GuardEvent(this, [&] { FView->ZoomTo(layer); });
            if (!remarks.isEmpty())
                lmx::TMsgBox::Info(remarks.join(QStringLiteral("\n\n")), tr("Open"), this);
        },
        [=, this](const QString& problem) {
            ended();
            lmx::GuardEvent(this, [&] { throw lmx::Exception(problem); });
        }));
}

void TViewerWindow::KeepReader(std::shared_ptr<lmx::TThread> reader) {
    std::erase_if(FReaders, [](const auto& before) { return before->GetFinished(); });
    FReaders.push_back(std::move(reader));
}

bool TViewerWindow::IsBusy() const {
    return FOpening > 0 || FClimate->IsReading() || IsDrawing(*GetLayerManager());
}

void TViewerWindow::AddModelField() {
    lmx::GuardEvent(this, [&] {
        auto layer = std::make_unique<lmx::TIdrisiMapLayer>(GetLayerManager());
        layer->SetLayerName(GetLayerManager()->GetNextName(tr("Rossby-Haurwitz wave, height in m")));
        layer->TakeImage(MakeGaussianField());
        layer->SetColorCalc(MakeColorScheme("Classes: six of viridis", layer->GetValueRange()));
        layer->Render();
        AddRaster(std::move(layer));
    });
}

void TViewerWindow::closeEvent(QCloseEvent* event) {
    event->setAccepted(FDocuments->MayDiscard());
}

void TViewerWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (std::ranges::any_of(event->mimeData()->urls(), [](const QUrl& url) { return url.isLocalFile(); }))
        event->acceptProposedAction();
}

void TViewerWindow::dropEvent(QDropEvent* event) {
    for (const QUrl& url : event->mimeData()->urls())
        if (url.isLocalFile())
            OpenFile(url.toLocalFile());
    event->acceptProposedAction();
}

void TViewerWindow::ShowWholeWorld() {
    if (FView->WorldCreated())
        FView->GetViewport()->ZoomTo(FView->GetWorldSystem()->Area());
}

bool TViewerWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched != FView)
        return QMainWindow::eventFilter(watched, event);
    if (event->type() == QEvent::Wheel) {
        TurnWheel(*static_cast<QWheelEvent*>(event));
        return true;
    }
    const auto* mouse = dynamic_cast<QMouseEvent*>(event);
    if (event->type() == QEvent::MouseMove && FView->WorldCreated())
        FQueryTable->SetCursorMapPt(
            FView->GetViewport()->PointToMapPoint(lmx::TMapPoint(FView->ToDevicePoint(mouse->position()))),
            FView->GetWorldSystem());
    const auto isPointing = [this] {
        const lmx::TObjectMapLayer* const annotations = FView->GetSpObjectLayer();
        const lmx::TBaseObjectLayerItem* const annotation = annotations ? annotations->GetSelectedObject() : nullptr;
        const bool isDragging = annotation && annotation->GetIsVisible(); // a press beside it deselects
        return FView->GetMode() == lmx::TMapMode::mdNone && FView->WorldCreated() && !isDragging &&
               !FView->GetViewport()->GetIsPanning(); // by the space bar
    };
    if (event->type() == QEvent::MouseButtonRelease && mouse->button() == Qt::LeftButton && isPointing())
        ShowReading(mouse->position().toPoint());
    return QMainWindow::eventFilter(watched, event);
}

void TViewerWindow::ShowReading(const QPoint& at) {
    const TMapReading reading = ReadMap(*FView, FView->ToDevicePoint(at));
    if (reading.Place.isEmpty())
        return;
    QToolTip::showText(FView->mapToGlobal(at), (QStringList(reading.Place) + reading.Values).join('\n'), FView);
    if (reading.Layer)
        GetLayerManager()->SetSelLayer(reading.Layer);
}

// A drag goes on from where it began, at the scale that it began with.
void TViewerWindow::TurnWheel(const QWheelEvent& event) {
    if (FView->GetIsMouseDown() || !FView->WorldCreated())
        return;
    const lmx::TPoint pixel = FView->ToDevicePoint(event.position());
    for (FWheelTurn += event.angleDelta().y(); FWheelTurn >= WheelStep; FWheelTurn -= WheelStep)
        ZoomAt(pixel, true);
    for (; FWheelTurn <= -WheelStep; FWheelTurn += WheelStep)
        ZoomAt(pixel, false);
}

// The place under the mouse stays there.
void TViewerWindow::ZoomAt(const lmx::TPoint& pixel, bool zoomIn) {
    lmx::TWorldViewport& viewport = *FView->GetViewport();
    const lmx::TMapPoint place = viewport.PointToMapPoint(lmx::TMapPoint(pixel));
    if (zoomIn)
        FView->ZoomIn();
    else
        FView->ZoomOut();
    const lmx::TMapPoint moved = viewport.MapPointToPoint(place);
    const lmx::TPoint back = lmx::TMapPoint(pixel.X - moved.X, pixel.Y - moved.Y).ToPoint();
    const lmx::TPoint translation = viewport.GetTranslation();
    viewport.SetTranslation({translation.X + back.X, translation.Y + back.Y});
}
