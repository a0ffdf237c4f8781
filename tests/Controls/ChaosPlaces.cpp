#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxColorClassList.h>
#include <lmx/Controls/Legend/lmxShapeFileLayerLegendControl.h>
#include <lmx/Controls/lmxRulerListView.h>
#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Dialogs/lmxLegendObjectDialog.h>
#include <lmx/Dialogs/lmxTextObjectDialog.h>
#include <lmx/Layers/lmxLayerStackPainter.h>
#include <lmx/Pictures/lmxMapPicture.h>
#include <lmx/Widgets/lmxDrawnListView.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxPngButton.h>
#include <tests/Controls/ChaosDocument.h>
#include <tests/Controls/ChaosTables.h>

#include <QApplication>
#include <QDialog>
#include <QMenu>
#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

namespace lmx::tests {

namespace {

// ---- Ways to be called

TArm Hook(const char* name) {
    return [name](TChaosScene& s, TAction action) { s.Hooks->Set(QString::fromLatin1(name), std::move(action)); };
}

template<class List>
void Subscribe(TChaosScene& s, List& list, const TAction& action) {
    s.Subscriptions.push_back(list.Add([action](auto&&...) { action(); }));
}

template<class List>
TArm On(List& (ILayerManager::*event)()) {
    return [event](TChaosScene& s, const TAction& action) {
        if (s.Manager)
            Subscribe(s, (s.Manager.get()->*event)(), action);
    };
}

template<class Layer, class Base, class List>
TArm On(TBorrowed<Layer> TChaosScene::*layer, List& (Base::*event)()) {
    return [layer, event](TChaosScene& s, const TAction& action) {
        if (s.*layer)
            Subscribe(s, ((s.*layer).Get()->*event)(), action);
    };
}

template<class Layer, class Base, class List>
TArm On(Layer* (TChaosScene::*layer)() const, List& (Base::*event)()) {
    return [layer, event](TChaosScene& s, const TAction& action) {
        if (Layer* const found = (s.*layer)())
            Subscribe(s, (found->*event)(), action);
    };
}

template<class List>
TArm OnViewport(List& (TWorldViewport::*event)()) {
    return [event](TChaosScene& s, const TAction& action) {
        if (s.View)
            Subscribe(s, (s.View->GetViewport()->*event)(), action);
    };
}

template<class Event>
TArm Slot(void (TMapViewControl::*set)(Event)) {
    return [set](TChaosScene& s, const TAction& action) {
        if (s.View)
            (s.View.get()->*set)([action](auto&&...) { action(); });
    };
}

template<class Event>
TArm Slot(void (TGradientEditor::*set)(Event)) {
    return [set](TChaosScene& s, const TAction& action) {
        if (s.Gradient)
            (s.Gradient.get()->*set)([action](auto&&...) { action(); });
    };
}

// ---- What makes the library call

void Repaint(TChaosScene& s) {
    if (s.View)
        s.View->RepaintMap();
    s.Settle();
}

void RenderBuffered(TChaosScene& s) {
    if (s.Buffered)
        s.Buffered->Invalidate(true);
    s.Settle();
    EXPECT_TRUE(PumpUntilRendersEnd());
}

// Has the next dialog confirmed, after the host was called at "Dialog" and the dialog was used; one that does not close
// is cancelled.
void ConfirmNext(TChaosScene& s, const std::function<void(QDialog&)>& use = {}) {
    QTimer::singleShot(0, [hooks = s.Hooks, use] {
        GuardEvent(nullptr, [&] { hooks->Call(QStringLiteral("Dialog")); });
        const QPointer<QDialog> dialog(qobject_cast<QDialog*>(QApplication::activeModalWidget()));
        if (dialog && use)
            use(*dialog);
        if (auto* ok = dialog ? dialog->findChild<QAbstractButton*>(QStringLiteral("btnOK")) : nullptr)
            ok->click();
        if (dialog && dialog->isVisible())
            dialog->reject();
    });
}

void InDialog(TChaosScene& s, void (TMapViewRulersPanelControl::*open)()) {
    if (!s.Panel || !s.Panel->GetRulersLayer())
        return;
    ConfirmNext(s);
    (s.Panel.get()->*open)();
}

void InDialog(TChaosScene& s, void (TMapViewInfoQueryListControl::*open)()) {
    if (!s.Table || !s.Table->GetIQPLayer() || s.Table->GetRowCount() < 2)
        return;
    s.Table->GetList()->SelectRow(1);
    ConfirmNext(s);
    (s.Table.get()->*open)();
}

// Adds an annotation of a kind by the menu.
TUse AddingObject(int kind) {
    return [kind](TChaosScene& s) {
        if (!s.ObjectList || !s.ObjectList->GetLayer())
            return;
        ConfirmNext(s);
        s.ObjectList->GetAddMenu()->actions()[kind]->trigger();
    };
}

// The rows of annotations with which the scene begins.
enum TObjectRow { LegendRow, ShapeKeyRow, ImageRow, RoseRow, TextRow, RectangleRow };

// Edits one of them.
TUse EditingObject(TObjectRow row, const std::function<void(QDialog&)>& use = {}) {
    return [row, use](TChaosScene& s) {
        if (s.ObjectList)
            s.ObjectList->GetLayerList()->SelectRow(row);
        if (!s.ObjectList || !s.ObjectList->GetEditButton()->isEnabled())
            return;
        ConfirmNext(s, use);
        s.ObjectList->EditButton_OnClick();
    };
}

void DeleteInObjectList(TChaosScene& s) {
    if (s.ObjectList)
        s.ObjectList->GetLayerList()->SelectRow(ShapeKeyRow);
    if (s.ObjectList)
        s.ObjectList->DelButton_OnClick();
}

void ChooseColor(QDialog& dialog) {
    if (auto* button = dialog.findChild<QAbstractButton*>(QStringLiteral("bgColorBtn")))
        button->click();
}

void TakeExistingFont(QDialog& dialog) {
    if (auto* text = dynamic_cast<TTextObjectDialog*>(&dialog))
        text->SetFontName(text->GetFontName());
}

void MissLayer(QDialog& dialog) {
    if (auto* legend = dynamic_cast<TLegendObjectDialog*>(&dialog))
        legend->SetLayers({});
}

void SelectRuler(TChaosScene& s) {
    if (s.Panel)
        s.Panel->GetListView()->SelectRow(0);
}

// A click that the selected layer does not take.
void ClickObjects(TChaosScene& s) {
    if (s.Manager)
        s.Manager->SetSelLayer(nullptr);
    Clicking(TMapMode::mdNone)(s);
}

// The size of a hidden view is news to whoever asks for its viewport.
void SaveHidden(TChaosScene& s) {
    if (s.View)
        s.View->hide();
    if (s.View)
        s.View->resize(31, 21);
    SaveChaosDocument(s);
}

void SaveWithoutRaster(TChaosScene& s) {
    if (s.Manager && s.Raster)
        s.Manager->GetLayers().Remove(s.Raster.Get());
    SaveChaosDocument(s);
}

// Gives the raster classes, whose legend asks its filter.
void PaintLegendRows(TChaosScene& s) {
    if (s.Raster)
        s.Raster->SetColorCalc(
            TColorClassCalculatorFactory::GetObject({TColorClass(QStringLiteral("a"), 0, 50, 0xFF8B4513)}));
    Repaint(s);
}

void PaintStackAside(TChaosScene& s) {
    TWorld world(TLatLonWorldSystemFactory::GetObject());
    TWorldViewport viewport(&world);
    TBitmap32 bitmap(40, 30);
    viewport.SetViewSize({40, 30});
    PaintLayerStack(s.Manager, viewport, bitmap);
}

/// Two frames of a map, each of which calls the host first.
class TChaosPictureFrames final : public IMapPictureFrames {
public:
    explicit TChaosPictureFrames(TSharedHooks hooks) : FHooks(std::move(hooks)) {}
    int GetFrameCount() const override { return 2; }
    QString ShowFrame(int) override {
        FHooks->Call(QStringLiteral("Picture.ShowFrame"));
        return QStringLiteral("now");
    }

private:
    TSharedHooks FHooks;
};

void SaveFrames(TChaosScene& s) {
    const QTemporaryDir folder;
    TMapPictureOptions options;
    options.Size = {40, 30};
    TChaosPictureFrames frames(s.Hooks);
    if (const auto manager = s.Manager)
        TMapPicture(manager, TLatLonWorldSystemFactory::GetObject(), options)
            .SaveFrames(folder.filePath(QStringLiteral("map.png")), frames);
}

std::vector<TPlace> AllPlaces() {
    using S = TChaosScene;
    using I = ILayerManager;
    using L = TBaseMapLayer;
    const auto pressInGradient = [](Qt::Key key) { return [key](S& s) { s.PressInGradient(key); }; };
    const TUse setMode = View([](auto& v) { v.SetMode(TMapMode::mdPan); });
    const TUse setCustomMode = View([](auto& v) { v.SetMode(TMapMode::mdCustom); });
    const TUse pan = View([](auto& v) { v.GetViewport()->SetTranslation({3, 5}); });
    const TUse hide = With<TChaosLayer>(&S::Layer, [](auto& l) { l.SetIsVisible(false); });
    const TUse invalidate = With<TChaosLayer>(&S::Layer, [](auto& l) { l.Invalidate(); });
    const TUse gotoExtent = With<TChaosLayer>(&S::Layer, [](auto& l) { l.GotoExtendMenuItem_Click(); });
    const TUse addRuler = With<TRulerMapLayer>(&S::Rulers, [](auto& l) { l.Add(std::make_unique<TRulerItem>()); });
    const TUse clearRulers = With<TRulerMapLayer>(&S::Rulers, [](auto& l) { l.GetHRulers().Clear(); });
    const TUse addPoint = With<TInfoQueryPointLayer>(
        &S::Points, [](auto& l) { l.GetPoints().Add(std::make_unique<TInfoQueryPoint>(&l, TMapPoint(1, 2), 1)); });
    const TUse clearPoints = With<TInfoQueryPointLayer>(&S::Points, [](auto& l) { l.GetPoints().Clear(); });
    const TUse addItem = With<TObjectMapLayer>(&S::Objects, [](auto& l) {
        l.GetObjects().Add(std::make_unique<TChaosItem>(&l, std::make_shared<TChaosHooks>()));
    });
    const TUse clearItems = With<TObjectMapLayer>(&S::Objects, [](auto& l) { l.GetObjects().Clear(); });
    const TUse selectItem = With<TObjectMapLayer>(&S::Objects, [](auto& l) { l.SetSelectedObject(l.GetObjects()[0]); });
    const TUse ratio = With<TObjectMapLayer>(&S::Objects, [](auto& l) { l.SetDeviceRatio(2); });
    const TUse opacity = With<TIdrisiMapLayer>(&S::Raster, [](auto& l) { l.SetOpacity(77); });
    const TUse duplicate = [](S& s) {
        if (s.Raster && s.Manager)
            s.Raster->Duplicate(s.Manager);
    };
    const TUse anotherShape = [](S& s) {
        if (s.Shape)
            s.Shape->TakeShpFile(ChaosShpFile());
    };
    const TUse color = With<TVectorFileLayer>(&S::Vector, [](auto& l) { l.SetColor(0xFF00FF00); });
    const TUse legend =
        With<TChaosLayer>(&S::Layer, [](auto& l) { l.SetLegendComponent(new TBaseLegendControl(nullptr)); });
    const TUse exportRaster = [](S& s) {
        std::vector<TLayerMenuItem> items;
        if (s.Raster)
            s.Raster->GetContextMenuItems(&items);
        for (const TLayerMenuItem& item : items)
            if (item.FEvent)
                item.FEvent();
    };
    const TUse addDialog = [](S& s) { InDialog(s, &TMapViewRulersPanelControl::AddButton_Click); };
    const TUse editDialog = [](S& s) {
        SelectRuler(s);
        InDialog(s, &TMapViewRulersPanelControl::EditButton_Click);
    };
    const TUse deleteInPanel = [](S& s) {
        SelectRuler(s);
        if (s.Panel)
            s.Panel->DelButton_Click();
    };
    const TUse pointTable = [](S& s) {
        if (s.Table)
            s.Table->SetCursorMapPt({6, 6}, TLatLonWorldSystemFactory::GetObject());
    };
    const TUse rebuildTable = [](S& s) {
        if (s.Table)
            s.Table->RebuildData();
    };
    const TUse deleteInTable = [](S& s) {
        if (s.Table)
            s.Table->GetList()->SelectRow(1);
        if (s.Table)
            s.Table->Delete_Click();
    };
    const TUse copyTable = [](S& s) {
        if (s.Table)
            s.Table->Copy_Click();
    };
    const TUse legendColor = [](S& s) {
        if (auto* control = dynamic_cast<TColorLegendControl*>(s.Shape ? s.Shape->GetLegendComponent() : nullptr))
            control->ChooseColor();
    };
    const TUse exploreShape = [](S& s) {
        auto* control = dynamic_cast<TShapeFileLayerLegendControl*>(s.Shape ? s.Shape->GetLegendComponent() : nullptr);
        if (control)
            control->ExplorerButton_Click();
    };
    const TUse fault = [](S& s) {
        ReportFault(QStringLiteral("fault"), s.View.get());
        s.Settle();
    };
    const TUse menuItem = [](S& s) {
        if (s.View)
            s.View->AddPopupMenuItem(QStringLiteral("x"), [h = s.Hooks] { h->Call(QStringLiteral("Menu")); })
                ->trigger();
    };
    const TUse clearLayers = Manager([](auto& m) { m.GetLayers().Clear(); });
    const TUse clearSpecial = Manager([](auto& m) { m.GetSpecialLayers().Clear(); });
    const TUse select = Manager([](auto& m) { m.SetSelLayer(m.GetLayers().Count() < 2 ? nullptr : m.GetLayers()[1]); });
    const TUse unselect = Manager([](auto& m) { m.SetSelLayer(nullptr); });
    const TUse title = Manager([](auto& m) { m.SetTitle(QStringLiteral("other")); });
    const TUse worldSystem =
        View([](auto& v) { v.ChangeWorldSystem(TLatLonAntimeridianWorldSystemFactory::GetObject()); });
    std::vector<TPlace> places = {
        {"Manager.OnLayerAdded first", On(&I::GetOnLayerAdded), AddLayer, true},
        {"Manager.OnLayerAdded", On(&I::GetOnLayerAdded), AddLayer},
        {"Manager.OnLayerAdded of another", On(&I::GetOnLayerAdded), ManagerAgain},
        {"Manager.OnLayerAdded of another, first", On(&I::GetOnLayerAdded), ManagerAgain, true},
        {"Manager.OnLayerRemoved first", On(&I::GetOnLayerRemoved), RemoveLayer, true},
        {"Manager.OnLayerRemoved", On(&I::GetOnLayerRemoved), RemoveLayer},
        {"Manager.OnLayerRemoved by clearing", On(&I::GetOnLayerRemoved), clearLayers},
        {"Manager.OnLayerRemoved of special", On(&I::GetOnLayerRemoved), clearSpecial},
        {"Manager.OnLayerRemoved with the manager", On(&I::GetOnLayerRemoved), NoManager},
        {"Manager.OnLayerRemoved with the manager, first", On(&I::GetOnLayerRemoved), NoManager, true},
        {"Manager.OnLayerVisibilityChanged", On(&I::GetOnLayerVisibilityChanged), hide},
        {"Manager.OnLayerVisibilityChanged first", On(&I::GetOnLayerVisibilityChanged), hide, true},
        {"Manager.OnLayerReadyToDraw", On(&I::GetOnLayerReadyToDraw), invalidate},
        {"Manager.OnLayerReadyToDraw first", On(&I::GetOnLayerReadyToDraw), invalidate, true},
        {"Manager.OnLayerInvalidated", On(&I::GetOnLayerInvalidated), invalidate},
        {"Manager.OnLayerInvalidated of all", On(&I::GetOnLayerInvalidated), worldSystem},
        {"Manager.OnLayerMoved", On(&I::GetOnLayerMoved), MoveLayer},
        {"Manager.OnLayerMoved first", On(&I::GetOnLayerMoved), MoveLayer, true},
        {"Manager.OnSelectedLayerChanged", On(&I::GetOnSelectedLayerChanged), select},
        {"Manager.OnSelectedLayerChanged to none", On(&I::GetOnSelectedLayerChanged), unselect},
        {"Manager.OnMapCommand", On(&I::GetOnMapCommand), gotoExtent},
        {"Manager.OnMapCommand first", On(&I::GetOnMapCommand), gotoExtent, true},
        {"Manager.OnTitleChanged", On(&I::GetOnTitleChanged), title},

        {"View.OnModeChanged",
         [](S& s, const TAction& a) {
             if (s.View)
                 Subscribe(s, s.View->GetOnModeChanged(), a);
         },
         setMode},
        {"View.OnViewportUpdated", Slot(&TMapViewControl::SetOnViewportUpdated), pan},
        {"View.OnViewportUpdated by size", Slot(&TMapViewControl::SetOnViewportUpdated),
         View([](auto& v) { v.resize(90, 70); })},
        {"View.OnViewportUpdated by zoom", Slot(&TMapViewControl::SetOnViewportUpdated),
         Clicking(TMapMode::mdZoomToSelection)},
        {"View.OnViewportUpdated by world", Slot(&TMapViewControl::SetOnViewportUpdated), worldSystem},
        {"View.OnMouseCursorLocationChanged", Slot(&TMapViewControl::SetOnMouseCursorLocationChanged),
         Clicking(TMapMode::mdNone)},
        {"View.OnBeforeLayerManagerChanged", Slot(&TMapViewControl::SetOnBeforeLayerManagerChanged), AnotherManager},
        {"View.OnAfterLayerManagerChanged", Slot(&TMapViewControl::SetOnAfterLayerManagerChanged), AnotherManager},
        {"Viewport.OnChanged", OnViewport(&TWorldViewport::GetOnChanged), pan},
        {"Viewport.OnViewSizeChanged", OnViewport(&TWorldViewport::GetOnViewSizeChanged), View([](auto& v) {
             v.GetViewport()->SetViewSize({33, 22});
         })},

        {"Mode.GetCursor", Hook("Mode.GetCursor"), setCustomMode},
        {"Mode.MouseDown", Hook("Mode.MouseDown"), Clicking(TMapMode::mdCustom)},
        {"Mode.MouseMove", Hook("Mode.MouseMove"), Clicking(TMapMode::mdCustom)},
        {"Mode.MouseUp", Hook("Mode.MouseUp"), Clicking(TMapMode::mdCustom)},

        {"Layer.Paint", Hook("Layer.Paint"), Repaint},
        {"Layer.Paint aside", Hook("Layer.Paint"), PaintStackAside},
        {"Layer.Paint for a picture", Hook("Layer.Paint"), PaintPicture},
        {"Buffered.RenderBuffer for a picture", Hook("Buffered.RenderBuffer"), PaintPicture},
        {"Item.Paint for a picture", Hook("Item.Paint"), PaintPicture},
        {"Picture.ShowFrame", Hook("Picture.ShowFrame"), SaveFrames},
        {"Layer.GetHasContent", Hook("Layer.GetHasContent"), Repaint},
        {"Layer.Invalidate", Hook("Layer.Invalidate"), worldSystem},
        {"Layer.GetMouseSupport", Hook("Layer.GetMouseSupport"), Clicking(TMapMode::mdNone)},
        {"Layer.MouseDown", Hook("Layer.MouseDown"), Clicking(TMapMode::mdNone)},
        {"Layer.MouseMove", Hook("Layer.MouseMove"), Clicking(TMapMode::mdNone)},
        {"Layer.MouseUp", Hook("Layer.MouseUp"), Clicking(TMapMode::mdNone)},
        {"Layer.BeforeLayerManagerRemoved", Hook("Layer.BeforeLayerManagerRemoved"), RemoveLayer},
        {"Layer.OnVisibilityChanged", On(&S::Layer, &L::GetOnVisibilityChanged), hide},
        {"Layer.OnReadyToDrawChanged", On(&S::Layer, &L::GetOnReadyToDrawChanged), invalidate},
        {"Layer.OnInvalidated", On(&S::Layer, &L::GetOnInvalidated), invalidate},
        {"Layer.OnMapCommand", On(&S::Layer, &L::GetOnMapCommand), gotoExtent},
        {"Layer.OnLayerNameChanged", On(&S::Layer, &L::GetOnLayerNameChanged),
         With<TChaosLayer>(&S::Layer, [](auto& l) { l.SetLayerName(QStringLiteral("b")); })},
        {"Layer.OnLayerAreaChanged", On(&S::Layer, &L::GetOnLayerAreaChanged),
         With<TChaosLayer>(&S::Layer, [](auto& l) { l.SetLayerArea({}); })},
        {"Layer.OnLegendComponentChanged", On(&S::Layer, &L::GetOnLegendComponentChanged), legend},

        {"Selection.OnReadyToDrawChanged", On(&S::Selection, &L::GetOnReadyToDrawChanged),
         Clicking(TMapMode::mdSelection)},
        {"Selection.OnInvalidated", On(&S::Selection, &L::GetOnInvalidated), Clicking(TMapMode::mdSelection)},
        {"Selection.OnInvalidated by zoom", On(&S::Selection, &L::GetOnInvalidated),
         Clicking(TMapMode::mdZoomToSelection)},
        {"Rulers.OnRulerAdded", On(&S::Rulers, &TRulerMapLayer::GetOnRulerAdded), addRuler},
        {"Rulers.OnRulerAdded by placing", On(&S::Rulers, &TRulerMapLayer::GetOnRulerAdded),
         Clicking(TMapMode::mdPlaceRulerV)},
        {"Rulers.OnRulerAdded by the panel", On(&S::Rulers, &TRulerMapLayer::GetOnRulerAdded), addDialog},
        {"Rulers.OnRulerRemoved", On(&S::Rulers, &TRulerMapLayer::GetOnRulerRemoved), clearRulers},
        {"Rulers.OnRulerRemoved by the panel", On(&S::Rulers, &TRulerMapLayer::GetOnRulerRemoved), deleteInPanel},
        {"Rulers.OnRulerRemoved with the manager", On(&S::Rulers, &TRulerMapLayer::GetOnRulerRemoved), NoManager},
        {"Rulers.OnInvalidated", On(&S::Rulers, &L::GetOnInvalidated), Clicking(TMapMode::mdPlaceRulerH)},
        {"Rulers.OnInvalidated by adding", On(&S::Rulers, &L::GetOnInvalidated), addRuler},
        {"Rulers.OnInvalidated by the panel", On(&S::Rulers, &L::GetOnInvalidated), editDialog},
        {"Points.OnAdded", On(&S::Points, &TInfoQueryPointLayer::GetOnAdded), addPoint},
        {"Points.OnAdded by a click", On(&S::Points, &TInfoQueryPointLayer::GetOnAdded),
         Clicking(TMapMode::mdInfoQuery)},
        {"Points.OnRemoved", On(&S::Points, &TInfoQueryPointLayer::GetOnRemoved), clearPoints},
        {"Points.OnInvalidated", On(&S::Points, &L::GetOnInvalidated),
         With<TInfoQueryPointLayer>(&S::Points, [](auto& l) { l.GetPoints()[0]->SetColor(0xFF654321); })},
        {"Objects.OnObjectAdded", On(&S::Objects, &TObjectMapLayer::GetOnObjectAdded), addItem},
        {"Objects.OnObjectRemoved", On(&S::Objects, &TObjectMapLayer::GetOnObjectRemoved), clearItems},
        {"Objects.OnObjectRemoved with the manager", On(&S::Objects, &TObjectMapLayer::GetOnObjectRemoved), NoManager},
        {"Objects.OnObjectChanged", On(&S::Objects, &TObjectMapLayer::GetOnObjectChanged), ClickObjects},
        {"Objects.OnObjectChanged by selecting", On(&S::Objects, &TObjectMapLayer::GetOnObjectChanged), selectItem},
        {"Objects.OnObjectSelected", On(&S::Objects, &TObjectMapLayer::GetOnObjectSelected), ClickObjects},
        {"Objects.OnObjectSelected by selecting", On(&S::Objects, &TObjectMapLayer::GetOnObjectSelected), selectItem},
        {"Objects.OnInvalidated", On(&S::Objects, &L::GetOnInvalidated), ClickObjects},
        {"Item.Paint", Hook("Item.Paint"), Repaint},
        {"Item.MouseDown", Hook("Item.MouseDown"), ClickObjects},
        {"Item.MouseMove", Hook("Item.MouseMove"), ClickObjects},
        {"Item.SetRect by a drag", Hook("Item.SetRect"), ClickObjects},
        {"Item.SetRect by a layout", Hook("Item.SetRect"), pan},
        {"Item.SetRect by a ratio", Hook("Item.SetRect"), ratio},
        {"Legend.Filter", Hook("Legend.Filter"), PaintLegendRows},
        {"PinRenderer.RenderPin", Hook("PinRenderer.RenderPin"), Repaint},

        {"Raster.OnReadyToDrawChanged", On(&S::Raster, &L::GetOnReadyToDrawChanged), opacity},
        {"Raster.OnInvalidated", On(&S::Raster, &L::GetOnInvalidated), opacity},
        {"Raster.OnLegendComponentChanged", On(&S::Raster, &L::GetOnLegendComponentChanged),
         [](S& s) {
             if (s.Raster)
                 s.Raster->SetColorCalc(ChaosCalculator(s.Hooks));
             if (s.Raster)
                 s.Raster->SetLegendComponent(new TBaseLegendControl(nullptr));
         }},
        {"Raster.OnLayerAreaChanged", On(&S::Raster, &L::GetOnLayerAreaChanged),
         [](S& s) {
             auto image = ChaosImage();
             image->getHeader()->SetMaxX(50);
             if (s.Raster)
                 s.Raster->TakeImage(std::move(image));
         }},
        {"Calculator.GetColor", Hook("Calculator.GetColor"), opacity},
        {"Calculator.Clone", Hook("Calculator.Clone"), duplicate},
        {"FileDialog.Save", Hook("FileDialog.Save"), exportRaster},
        {"Shape.OnReadyToDrawChanged", On(&S::Shape, &L::GetOnReadyToDrawChanged), anotherShape},
        {"Shape.OnInvalidated", On(&S::Shape, &L::GetOnInvalidated), anotherShape},
        {"Vector.OnInvalidated", On(&S::Vector, &L::GetOnInvalidated), color},
        {"Buffered.RenderBuffer", Hook("Buffered.RenderBuffer"), RenderBuffered},
        {"Buffered.OnInvalidated", On(&S::Buffered, &L::GetOnInvalidated), RenderBuffered},
        {"Buffered.OnReadyToDrawChanged by a host's picture", On(&S::Buffered, &L::GetOnReadyToDrawChanged),
         With<TChaosBufferedLayer>(&S::Buffered, [](auto& l) { l.SetBufferedBitmap(nullptr); })},

        {"MsgBox.Error", Hook("MsgBox.Error"), fault},
        {"InputBox.Translation", Hook("InputBox.Translation"), View([](auto& v) { v.PopupMenu_DbgTranslation(); })},
        {"InputBox.Zoom Scale", Hook("InputBox.Zoom Scale"), View([](auto& v) { v.PopupMenu_DbgZoomScale(); })},
        {"ColorChooser.Execute", Hook("ColorChooser.Execute"),
         View([](auto& v) { v.PopupMenu_ChangeBackgroundColor_Click(); })},
        {"Clipboard.SetAsText", Hook("Clipboard.SetAsText"), View([](auto& v) { v.PopupMenu_DbgCopyData(); })},
        {"Calculator.GetColor for the cursor", Hook("Calculator.GetColor"), pointTable},
        {"Calculator.GetColor for the table", Hook("Calculator.GetColor"), rebuildTable},
        {"Points.OnRemoved by the table", On(&S::Points, &TInfoQueryPointLayer::GetOnRemoved), deleteInTable},
        {"Clipboard.SetAsText by the table", Hook("Clipboard.SetAsText"), copyTable},
        {"ColorChooser.Execute of a legend", Hook("ColorChooser.Execute"), legendColor},
        {"Shape.OnLegendComponentChanged", On(&S::Shape, &L::GetOnLegendComponentChanged), legendColor},
        {"MsgBox.Error of a legend", Hook("MsgBox.Error"), exploreShape},
        {"Menu", Hook("Menu"), menuItem},
        {"Objects.OnObjectAdded by the list", On(&S::Objects, &TObjectMapLayer::GetOnObjectAdded), AddingObject(4)},
        {"Objects.OnObjectAdded by a dialog", On(&S::Objects, &TObjectMapLayer::GetOnObjectAdded), AddingObject(1)},
        {"Objects.OnObjectRemoved by the list", On(&S::Objects, &TObjectMapLayer::GetOnObjectRemoved),
         DeleteInObjectList},
        {"Objects.OnObjectSelected by the list", On(&S::Objects, &TObjectMapLayer::GetOnObjectSelected),
         DeleteInObjectList},
        {"Objects.OnObjectChanged by a dialog", On(&S::Objects, &TObjectMapLayer::GetOnObjectChanged),
         EditingObject(LegendRow)},
        {"Objects.OnInvalidated by a dialog", On(&S::Objects, &L::GetOnInvalidated), EditingObject(RoseRow)},
        {"ColorChooser.Execute of a dialog", Hook("ColorChooser.Execute"), EditingObject(RectangleRow, ChooseColor)},
        {"MsgBox.Info of a dialog", Hook("MsgBox.Info"), EditingObject(LegendRow, MissLayer)},
        {"Dialog of a new text box", Hook("Dialog"), AddingObject(1)},
        {"Dialog of a text box", Hook("Dialog"), EditingObject(TextRow, TakeExistingFont)},
        {"Dialog of a legend", Hook("Dialog"), EditingObject(LegendRow)},
        {"Dialog of a compass rose", Hook("Dialog"), EditingObject(RoseRow)},
        {"Dialog of a rectangle", Hook("Dialog"), EditingObject(RectangleRow)},
        {"Dialog of a new ruler", Hook("Dialog"), addDialog},
        {"Dialog of a ruler", Hook("Dialog"), editDialog},
        {"Manager.OnTitleChanged by a document", On(&I::GetOnTitleChanged), ReadChaosDocument},
        {"Manager.OnLayerAdded by a document", On(&I::GetOnLayerAdded), ReadChaosDocument},
        {"View.OnViewportUpdated by a document", Slot(&TMapViewControl::SetOnViewportUpdated), ReadChaosDocument},
        {"View.OnViewportUpdated by saving", Slot(&TMapViewControl::SetOnViewportUpdated), SaveHidden},
        {"Rulers.OnLayerNameChanged by a document", On(&S::Rulers, &L::GetOnLayerNameChanged), ReadChaosDocument},
        {"Rulers.OnRulerAdded by a document", On(&S::Rulers, &TRulerMapLayer::GetOnRulerAdded), ReadChaosDocument},
        {"Points.OnAdded by a document", On(&S::Points, &TInfoQueryPointLayer::GetOnAdded), ReadChaosDocument},
        {"Objects.OnObjectAdded by a document", On(&S::Objects, &TObjectMapLayer::GetOnObjectAdded), ReadChaosDocument},
        {"Objects.OnInvalidated by a document", On(&S::Objects, &L::GetOnInvalidated), ReadChaosDocument},
        {"Document.CreateLayer", Hook("Document.CreateLayer"), ReadChaosDocument},
        {"Document.ReadLayer", Hook("Document.ReadLayer"), ReadChaosDocument},
        {"Document.Read", Hook("Document.Read"), ReadChaosDocument},
        {"Document.Progress", Hook("Document.Progress"), ReadChaosDocument},
        {"Document.WriteLayer", Hook("Document.WriteLayer"), SaveChaosDocument},
        {"Document.Write", Hook("Document.Write"), SaveChaosDocument},
        {"Document.Write of a vector", Hook("Document.Write"), SaveWithoutRaster},
        {"Gradient.OnSelectionChanged", Slot(&TGradientEditor::SetOnSelectionChanged), pressInGradient(Qt::Key_Right)},
        {"Gradient.OnChanged", Slot(&TGradientEditor::SetOnChanged), pressInGradient(Qt::Key_Insert)},
        {"Gradient.OnQueryColor", Slot(&TGradientEditor::SetOnQueryColor), pressInGradient(Qt::Key_Insert)},
        {"Dialog of a new query point", Hook("Dialog"),
         [](S& s) { InDialog(s, &TMapViewInfoQueryListControl::AddSingle_Click); }},
        {"Dialog of a query point", Hook("Dialog"),
         [](S& s) { InDialog(s, &TMapViewInfoQueryListControl::Edit_Click); }},
        {"Dialog of many query points", Hook("Dialog"),
         [](S& s) { InDialog(s, &TMapViewInfoQueryListControl::AddMultiple_Click); }},
    };
    const std::vector<TPlace> dialogs = ChaosDialogPlaces();
    places.insert(places.end(), dialogs.begin(), dialogs.end());
    const std::vector<TPlace> lists = ChaosListPlaces();
    places.insert(places.end(), lists.begin(), lists.end());
    return places;
}

} // namespace

const std::vector<TPlace>& ChaosPlaces() {
    static const std::vector<TPlace> places = AllPlaces();
    return places;
}

} // namespace lmx::tests
