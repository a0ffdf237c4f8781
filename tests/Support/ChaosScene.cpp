#include <tests/Support/ChaosScene.h>

#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Layers/Objects/lmxCompassRoseObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxImageObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxLegendObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxRectangleObjectTypeItem.h>
#include <lmx/Layers/Objects/lmxShapeLegendObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxTextBoxObjectLayerItem.h>
#include <lmx/Widgets/lmxDrawnListView.h>
#include <tests/Support/NumberedImage.h>
#include <tests/Support/ShapeBytes.h>
#include <tests/Support/TestLayer.h>
#include <tests/Support/VectorBytes.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <QThread>

#include <utility>

namespace lmx::tests {

namespace {

class TChaosCalculator final : public IBaseColorCalculator {
public:
    explicit TChaosCalculator(TSharedHooks hooks) : FHooks(std::move(hooks)) {}
    TColor32 GetColor(float value) const override {
        FHooks->Call(QStringLiteral("Calculator.GetColor"));
        return 0xFF000000U + static_cast<TColor32>(value);
    }
    std::shared_ptr<IBaseColorCalculator> Clone() const override {
        FHooks->Call(QStringLiteral("Calculator.Clone"));
        return std::make_shared<TChaosCalculator>(FHooks);
    }

private:
    TSharedHooks FHooks;
};

class TChaosPinRenderer final : public TPinMapLayerPinRenderer {
public:
    explicit TChaosPinRenderer(TSharedHooks hooks) : FHooks(std::move(hooks)) {}
    bool RenderPin(TBitmap32&, TPinMapLayer*, TPin*, const TMapPoint&, TFloatRect&) override {
        const TSharedHooks hooks = FHooks; // what is called may destroy this renderer
        hooks->Call(QStringLiteral("PinRenderer.RenderPin"));
        return true;
    }

private:
    TSharedHooks FHooks;
};

class TChaosMode final : public IMapViewControlCustomModeObject {
public:
    explicit TChaosMode(TSharedHooks hooks) : FHooks(std::move(hooks)) {}
    void MouseUp(TMapViewControl*, const TPoint&, const TMapPoint&) override { Call("MouseUp"); }
    void MouseDown(TMapViewControl*, const TPoint&, const TMapPoint&) override { Call("MouseDown"); }
    void MouseMove(TMapViewControl*, const TPoint&, const TMapPoint&) override { Call("MouseMove"); }
    TCursor GetCursor() const override {
        Call("GetCursor");
        return TCursor::crHandPoint;
    }

private:
    void Call(const char* operation) const { FHooks->Call(QStringLiteral("Mode.") + QLatin1String(operation)); }

    TSharedHooks FHooks;
};

class TMsgBoxes final : public IMsgBoxService {
public:
    explicit TMsgBoxes(TSharedHooks hooks) : FHooks(std::move(hooks)) {}
    void Error(const QString&, const QString&, QWidget*) override { FHooks->Call(QStringLiteral("MsgBox.Error")); }
    void Info(const QString&, const QString&, QWidget*) override { FHooks->Call(QStringLiteral("MsgBox.Info")); }
    bool YesNo(const QString&, const QString&, QWidget*) override {
        FHooks->Call(QStringLiteral("MsgBox.YesNo"));
        return true;
    }
    void ShowMessage(const QString&) override { FHooks->Call(QStringLiteral("MsgBox.ShowMessage")); }

private:
    TSharedHooks FHooks;
};

class TInputBoxes final : public IInputBoxService {
public:
    explicit TInputBoxes(TSharedHooks hooks) : FHooks(std::move(hooks)) {}
    QString InputBox(const QString& title, const QString&, const QString&) override {
        FHooks->Call(QStringLiteral("InputBox.") + title);
        return title == QStringLiteral("Translation") ? QStringLiteral("3,4") : QStringLiteral("3");
    }

private:
    TSharedHooks FHooks;
};

class TColorChoosers final : public IColorChooserService {
public:
    explicit TColorChoosers(TSharedHooks hooks) : FHooks(std::move(hooks)) {}
    std::shared_ptr<IColorChooser> CreateColorChooser(TColorChooserDialogOptions) override {
        return std::make_shared<TChooser>(FHooks);
    }

private:
    class TChooser final : public IColorChooser {
    public:
        explicit TChooser(TSharedHooks hooks) : FHooks(std::move(hooks)) {}
        TColor GetColor() const override { return WinColor(0xFF102030); }
        void SetColor(TColor) override {}
        TColor32 GetColor32() const override { return 0xFF102030; }
        void SetColor32(TColor32) override {}
        bool Execute(QWidget*) override {
            FHooks->Call(QStringLiteral("ColorChooser.Execute"));
            return true;
        }

    private:
        TSharedHooks FHooks;
    };

    TSharedHooks FHooks;
};

class TFileDialogs final : public IFileDialogService {
public:
    explicit TFileDialogs(TSharedHooks hooks) : FHooks(std::move(hooks)) {}
    bool Save(const TFileDialogRequest&, QString& fileName, QWidget*) override {
        FHooks->Call(QStringLiteral("FileDialog.Save"));
        fileName = FFolder.filePath(QStringLiteral("saved"));
        return true;
    }
    bool Open(const TFileDialogRequest&, QString&, QWidget*) override { return false; }

private:
    TSharedHooks FHooks;
    QTemporaryDir FFolder;
};

class TClipboards final : public IClipboardService {
public:
    explicit TClipboards(TSharedHooks hooks) : FHooks(std::move(hooks)) {}
    QString GetAsText() const override { return QStringLiteral("x,y\n1,2\n3,4\n"); }
    void SetAsText(const QString&) override { FHooks->Call(QStringLiteral("Clipboard.SetAsText")); }
    void SetData(const QString&, const QByteArray&) override { FHooks->Call(QStringLiteral("Clipboard.SetData")); }

private:
    TSharedHooks FHooks;
};

/// Says when the platform stands in the middle of one of its own calls.
class TChaosView final : public TMapViewControl {
public:
    explicit TChaosView(int& platformCalls) : FPlatformCalls(platformCalls) {}

protected:
    void paintEvent(QPaintEvent* event) override {
        Count([&] { TMapViewControl::paintEvent(event); });
    }
    void resizeEvent(QResizeEvent* event) override {
        Count([&] { TMapViewControl::resizeEvent(event); });
    }
    void showEvent(QShowEvent* event) override {
        Count([&] { TMapViewControl::showEvent(event); });
    }

private:
    template<class Call>
    void Count(Call call) {
        ++FPlatformCalls;
        call();
        --FPlatformCalls;
    }

    int& FPlatformCalls;
};

} // namespace

void TChaosHooks::Call(const QString& place) const {
    if (QThread::currentThread() != QCoreApplication::instance()->thread())
        return;
    const auto found = FActions.find(place);
    if (found == FActions.end())
        return;
    const std::function<void()> action = found->second; // the action may clear the hooks
    action();
}

TChaosLayer::TChaosLayer(const std::shared_ptr<ILayerManager>& manager, TSharedHooks hooks)
    : TBaseLayerManagerLayer(manager),
      FHooks(std::move(hooks)) {
    SetLayerName(QStringLiteral("chaos"));
    SetLayerArea(LatLonArea({0, 10, 20, 0}));
    SetIsReadyToDraw(true);
}

void TChaosLayer::Call(const char* operation) const {
    const TSharedHooks hooks = FHooks; // what is called may free this layer
    hooks->Call(QStringLiteral("Layer.") + QLatin1String(operation));
}

TMouseSupport TChaosLayer::GetMouseSupport() const {
    Call("GetMouseSupport");
    return {TMouseSupportAction::msMouseDown, TMouseSupportAction::msMouseMove, TMouseSupportAction::msMouseUp};
}

bool TChaosLayer::GetHasContent() const {
    Call("GetHasContent");
    return true;
}

void TChaosLayer::Paint(TWorld*, TWorldViewport*, TBitmap32& bitmap) {
    bitmap.Clear(0xFF00FF00);
    Call("Paint");
}

void TChaosLayer::Invalidate() {
    const TBorrowed self(this);
    Call("Invalidate");
    if (self)
        TBaseLayerManagerLayer::Invalidate();
}

void TChaosLayer::MouseDown(TWorldViewport*, TPoint) {
    Call("MouseDown");
}

void TChaosLayer::MouseMove(TWorldViewport*, TPoint, bool) {
    Call("MouseMove");
}

void TChaosLayer::MouseUp(TWorldViewport*, TPoint, bool) {
    Call("MouseUp");
}

void TChaosLayer::BeforeLayerManagerRemoved(ILayerManager*) {
    Call("BeforeLayerManagerRemoved");
}

TChaosBufferedLayer::TChaosBufferedLayer(const std::shared_ptr<ILayerManager>& manager, TSharedHooks hooks)
    : TTestBufferedLayer(manager),
      FHooks(std::move(hooks)) {}

void TChaosBufferedLayer::RenderBuffer(TSize viewSize, const TMapArea& visibleMapArea,
                                       const TWorldViewportLocal& vpLocal) {
    const TBorrowed self(this);
    const TSharedHooks hooks = FHooks;
    hooks->Call(QStringLiteral("Buffered.RenderBuffer"));
    if (self)
        TTestBufferedLayer::RenderBuffer(viewSize, visibleMapArea, vpLocal);
}

TChaosItem::TChaosItem(TObjectMapLayer* layer, TSharedHooks hooks)
    : TBaseObjectLayerItem(layer),
      FHooks(std::move(hooks)) {
    SetGrabberOptions({TGrabberOption::goResizable});
    TBaseObjectLayerItem::SetRect({0, 0, 50, 35});
}

bool TChaosItem::Survives(const char* operation) const {
    const TBorrowed self(this);
    const TSharedHooks hooks = FHooks;
    hooks->Call(QStringLiteral("Item.") + QLatin1String(operation));
    return static_cast<bool>(self);
}

QString TChaosItem::GetObjectClassType() const {
    Survives("GetObjectClassType");
    return {};
}

void TChaosItem::SetRect(const TRect& rect) {
    if (Survives("SetRect"))
        TBaseObjectLayerItem::SetRect(rect);
}

void TChaosItem::Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) {
    TBaseObjectLayerItem::Paint(world, viewport, bitmap);
    PaintGrabbers(bitmap);
    Survives("Paint");
}

void TChaosItem::MouseDown(TWorldViewport* viewport, TPoint point) {
    if (Survives("MouseDown"))
        TBaseObjectLayerItem::MouseDown(viewport, point);
}

void TChaosItem::MouseMove(TWorldViewport* viewport, TPoint point, bool isDown) {
    if (Survives("MouseMove"))
        TBaseObjectLayerItem::MouseMove(viewport, point, isDown);
}

TChaosServices::TChaosServices(const TSharedHooks& hooks)
    : FMsgBox(std::make_shared<TMsgBoxes>(hooks)),
      FInputBox(std::make_shared<TInputBoxes>(hooks)),
      FColorChooser(std::make_shared<TColorChoosers>(hooks)),
      FFileDialog(std::make_shared<TFileDialogs>(hooks)),
      FClipboard(std::make_shared<TClipboards>(hooks)) {}

std::unique_ptr<TRealImage> ChaosImage() {
    return NumberedImage(8, 4, {-10, 10, 30, -10});
}

std::shared_ptr<IBaseColorCalculator> ChaosCalculator(const TSharedHooks& hooks) {
    return std::make_shared<TChaosCalculator>(hooks);
}

std::unique_ptr<TShpFile> ChaosShpFile() {
    QByteArray bytes = TShapeBytes().Lines(5, {{{20, 30}, {20, 40}, {30, 40}, {30, 30}, {20, 30}}}).File(5);
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return TShpFile::LoadFromStream(buffer, QStringLiteral("x.shp"), nullptr);
}

std::unique_ptr<TVector> ChaosVector() {
    QByteArray bytes = TVectorBytes(TVectorObjectType::vtLine).Line(1, {{22, 10}, {28, 20}}).File();
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    auto vector = std::make_unique<TVector>();
    vector->LoadFromStream(buffer);
    return vector;
}

TChaosScene::TChaosScene(const std::function<void(TChaosScene&)>& beforeViews) {
    FillManager();
    if (beforeViews)
        beforeViews(*this);
    ShowWidgets();
}

TChaosScene::~TChaosScene() {
    Hooks->Clear();
    Subscriptions.clear();
    View.reset();
    ObjectList.reset();
    Table.reset();
    Gradient.reset();
    Panel.reset();
    Map.reset();
    Manager.reset();
    EXPECT_TRUE(PumpUntilRendersEnd());
}

TChaosLayer* TChaosScene::AddLayer() {
    return Manager->GetLayers().Add(std::make_unique<TChaosLayer>(Manager, Hooks));
}

void TChaosScene::FillManager() {
    Layer = AddLayer();
    Calculator = ChaosCalculator(Hooks);
    Raster = Manager->GetLayers().Add(std::make_unique<TIdrisiMapLayer>(Manager));
    Raster->TakeImage(ChaosImage());
    Raster->SetColorCalc(Calculator);
    Raster->Render();
    PinRenderer = std::make_unique<TChaosPinRenderer>(Hooks);
    Pins = Manager->GetLayers().Add(std::make_unique<TPinMapLayer>(Manager));
    Pins->SetPinRenderer(PinRenderer.get());
    Pins->GetPins().Add(std::make_unique<TPin>(QStringLiteral("a"), 1, 2));
    Pins->GetPins().Add(std::make_unique<TPin>(QStringLiteral("b"), 3, 4));
    ShpFile = ChaosShpFile();
    Shape = Manager->GetLayers().Add(std::make_unique<TShapeFileLayer>(Manager));
    Shape->SetOwnsShpFile(false);
    Shape->SetColor(0xFFFF0000);
    Shape->SetShpFile(ShpFile.get());
    Vector = Manager->GetLayers().Add(std::make_unique<TVectorFileLayer>(Manager));
    Vector->SetColor(0xFF0000FF);
    Vector->SetVectorFile(ChaosVector());
    Buffered = Manager->GetLayers().Add(std::make_unique<TChaosBufferedLayer>(Manager, Hooks));
    Buffered->SetColor(0xFF808080);
    for (TBaseMapLayer* layer : {static_cast<TBaseMapLayer*>(Shape.Get()), static_cast<TBaseMapLayer*>(Vector.Get()),
                                 static_cast<TBaseMapLayer*>(Buffered.Get())})
        layer->SetIsReadyToDraw(true);
    Manager->SetSelLayer(Layer.Get());
    Mode = std::make_shared<TChaosMode>(Hooks);
}

void TChaosScene::ShowWidgets() {
    View = std::make_unique<TChaosView>(PlatformCalls);
    View->resize(60, 40);
    View->CreateWorldAndViewport(TLatLonWorldSystemFactory::GetObject());
    View->SetCustomModeObject(Mode);
    View->SetLayerManager(Manager);
    Map = std::make_unique<TMapControl>();
    Map->resize(60, 40);
    Map->GetMapView()->CreateWorldAndViewport(TLatLonWorldSystemFactory::GetObject());
    Map->GetMapView()->SetLayerManager(Manager);
    Panel = std::make_unique<TMapViewRulersPanelControl>();
    Panel->SetRulersLayer(Rulers());
    for (const auto orientation : {TRulerOrientation::roVertical, TRulerOrientation::roHorizontal})
        for (const int at : {5, 10})
            Rulers()->Add(std::make_unique<TRulerItem>(orientation, at, 0xFFFF8000));
    for (const int at : {5, 10})
        Points()->GetPoints().Add(std::make_unique<TInfoQueryPoint>(Points(), TMapPoint(at, at), 0xFFFF8000));
    AddAnnotations();
    Table = std::make_unique<TMapViewInfoQueryListControl>();
    Table->AddCursorInfoQueryPoint();
    Table->SetIQPLayer(Points());
    Table->SetLayerManager(Manager);
    Table->SetCursorMapPt({5, 5}, TLatLonWorldSystemFactory::GetObject());
    Gradient = std::make_unique<TGradientEditor>();
    for (const double location : {0.0, 0.5, 1.0})
        Gradient->Add(0xFFFF8000, location);
    View->show();
    Gradient->show();
    Map->show();
    Panel->show();
    Table->show();
    ObjectList.reset(TObjectLayerLegendControl::CreateComp(nullptr, Objects()));
    ObjectList->show();
    Settle();
}

// One of each kind, and above them two of the host's own.
void TChaosScene::AddAnnotations() {
    TObjectMapLayer* layer = Objects();
    TObjectList<TBaseObjectLayerItem>& items = layer->GetObjects();
    auto* legend =
        items.Add(std::make_unique<TLegendObjectLayerItem>(layer, Raster.Get(), TLegendOrientation::loVertical));
    legend->SetPalettePainterFilterCallback([hooks = Hooks](int, const TPaletteValueColorItem&) {
        hooks->Call(QStringLiteral("Legend.Filter"));
        return true;
    });
    items.Add(std::make_unique<TShapeLegendObjectLayerItem>(layer));
    items.Add(std::make_unique<TImageObjectLayerItem>(layer))->SetImage(new TBitmap32(10, 10));
    items.Add(std::make_unique<TCompassRoseObjectLayerItem>(layer))->SetRect({5, 5, 35, 35});
    items.Add(std::make_unique<TTextBoxObjectLayerItem>(layer))->SetText(QStringLiteral("chaos"));
    items.Add(std::make_unique<TRectangleObjectTypeItem>(layer))->SetRect({5, 5, 20, 20});
    for (int i = 0; i < 2; ++i)
        items.Add(std::make_unique<TChaosItem>(layer, Hooks));
}

void TChaosScene::Settle() {
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
}

void TChaosScene::SendMouse(QEvent::Type type, QPoint at, Qt::MouseButton button) {
    if (!View)
        return;
    const bool isHeld = type == QEvent::MouseButtonPress;
    QMouseEvent event(type, at, View->mapToGlobal(at), type == QEvent::MouseMove ? Qt::NoButton : button,
                      isHeld ? button : Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(View.get(), &event);
}

void TChaosScene::PressInGradient(Qt::Key key) {
    if (!Gradient)
        return;
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(Gradient.get(), &event);
}

void TChaosScene::Click(QPoint at) {
    SendMouse(QEvent::MouseButtonPress, at);
    SendMouse(QEvent::MouseMove, at + QPoint(4, 3));
    SendMouse(QEvent::MouseButtonRelease, at + QPoint(4, 3));
}

void TChaosScene::UseOnceMore() {
    Settle();
    for (const TMapMode mode :
         {TMapMode::mdSelection, TMapMode::mdInfoQuery, TMapMode::mdPlaceRulerH, TMapMode::mdNone}) {
        if (View)
            View->SetMode(mode);
        Click({12, 10});
        if (View)
            View->RepaintMap();
        Settle();
    }
    if (Map && Map->GetMapView())
        Map->GetMapView()->RepaintMap();
    if (Raster)
        Raster->SetOpacity(100);
    if (Panel && Rulers())
        Rulers()->Add(std::make_unique<TRulerItem>());
    if (Table)
        Table->SetCursorMapPt({7, 7}, TLatLonWorldSystemFactory::GetObject());
    if (Table)
        Table->RebuildData();
    if (Objects() && !Objects()->GetObjects().IsEmpty())
        Objects()->SetSelectedObject(Objects()->GetObjects()[0]);
    if (ObjectList)
        ObjectList->GetLayerList()->SelectRow(1);
    PressInGradient(Qt::Key_Insert);
    PressInGradient(Qt::Key_Right);
    if (Manager)
        AddLayer();
    Settle();
}

} // namespace lmx::tests
