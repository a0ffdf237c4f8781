// Whatever the library tells a host of, the host may answer by anything: here every place where the library calls a
// host meets every deed, in a fresh scene, which is used once more afterwards. A new control joins by a line in a
// table. LMX_CHAOS_SEED and LMX_CHAOS_ROUNDS set the seed and the length of the random part.

#include <lmx/Controls/Legend/lmxBaseLegendControl.h>
#include <lmx/Controls/lmxRulerListView.h>
#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Layers/lmxLayerStackPainter.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <tests/Support/ChaosScene.h>

#include <QApplication>
#include <QDialog>
#include <QTimer>

#include <gtest/gtest.h>

#include <iostream>
#include <random>

namespace lmx {
namespace {

using namespace tests;

using TAction = std::function<void()>;
using TArm = std::function<void(TChaosScene&, TAction)>;
using TUse = std::function<void(TChaosScene&)>;

/// Somewhere the library calls a host: how a host gets there, and what makes the library call.
struct TPlace {
    const char* Name;
    TArm Arm;
    TUse Trigger;
    bool IsBeforeViews = false; ///< armed before the views listen
};

/// What a host does there.
struct TDeed {
    const char* Name;
    TUse Do;
    bool EndsWidget = false; ///< the platform must not stand in the middle of painting it
};

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

// ---- What is used, if it is still there

TUse View(std::function<void(TMapViewControl&)> use) {
    return [use = std::move(use)](TChaosScene& s) {
        if (s.View)
            use(*s.View);
    };
}

template<class Layer>
TUse With(TBorrowed<Layer> TChaosScene::*layer, std::function<void(Layer&)> use) {
    return [layer, use = std::move(use)](TChaosScene& s) {
        if (s.*layer)
            use(*(s.*layer).Get());
    };
}

template<class Layer>
TUse With(Layer* (TChaosScene::*layer)() const, std::function<void(Layer&)> use) {
    return [layer, use = std::move(use)](TChaosScene& s) {
        if (Layer* const found = (s.*layer)())
            use(*found);
    };
}

TUse Manager(std::function<void(ILayerManager&)> use) {
    return [use = std::move(use)](TChaosScene& s) {
        if (const auto manager = s.Manager)
            use(*manager);
    };
}

TUse Clicking(TMapMode mode) {
    return [mode](TChaosScene& s) {
        if (s.View)
            s.View->SetMode(mode);
        s.Click({20, 10});
    };
}

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

void RemoveLayer(TChaosScene& s) {
    if (s.Manager && s.Layer)
        s.Manager->GetLayers().Remove(s.Layer.Get());
}

void AddLayer(TChaosScene& s) {
    if (s.Manager)
        s.AddLayer();
}

void MoveLayer(TChaosScene& s) {
    if (s.Manager)
        s.Manager->MoveLayer(0, 2);
}

void AnotherManager(TChaosScene& s) {
    if (s.View)
        s.View->SetLayerManager(TLayerManagerFactory::GetObject());
}

void NoManager(TChaosScene& s) {
    if (s.View)
        s.View->SetLayerManager(nullptr);
}

void ManagerAgain(TChaosScene& s) {
    NoManager(s);
    if (s.View)
        s.View->SetLayerManager(s.Manager);
}

// Confirms the dialog that `open` shows, after the host was called at "Dialog".
void InDialog(TChaosScene& s, void (TMapViewRulersPanelControl::*open)()) {
    if (!s.Panel || !s.Panel->GetRulersLayer())
        return;
    QTimer::singleShot(0, [hooks = s.Hooks] {
        GuardEvent(nullptr, [&] { hooks->Call(QStringLiteral("Dialog")); });
        if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget()))
            dialog->accept();
    });
    (s.Panel.get()->*open)();
}

void SelectRuler(TChaosScene& s) {
    if (s.Panel)
        s.Panel->GetListView()->setCurrentItem(s.Panel->GetListView()->topLevelItem(0));
}

void PaintStackAside(TChaosScene& s) {
    TWorld world(TLatLonWorldSystemFactory::GetObject());
    TWorldViewport viewport(&world);
    TBitmap32 bitmap(40, 30);
    viewport.SetViewSize({40, 30});
    PaintLayerStack(s.Manager, viewport, bitmap);
}

// ---- The tables

const std::vector<TPlace>& Places() {
    using S = TChaosScene;
    using I = ILayerManager;
    using L = TBaseMapLayer;
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
    static const std::vector<TPlace> places = {
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
        {"Menu", Hook("Menu"), menuItem},
        {"Dialog of a new ruler", Hook("Dialog"), addDialog},
        {"Dialog of a ruler", Hook("Dialog"), editDialog},
    };
    return places;
}

const std::vector<TDeed>& Deeds() {
    using S = TChaosScene;
    static const std::vector<TDeed> deeds = {
        {"nothing", [](S&) {}},
        {"raise", [](S&) { throw Exception(QStringLiteral("chaos")); }},
        {"remove the layer", RemoveLayer},
        {"remove every layer", Manager([](auto& m) { m.GetLayers().Clear(); })},
        {"remove the special layers", Manager([](auto& m) { m.GetSpecialLayers().Clear(); })},
        {"add a layer", AddLayer},
        {"add a layer at the bottom",
         [](S& s) {
             if (s.Manager)
                 s.Manager->GetLayers().Insert(0, std::make_unique<TChaosLayer>(s.Manager, s.Hooks));
         }},
        {"move a layer", MoveLayer},
        {"invalidate every layer",
         Manager([](auto& m) { m.GetLayers().ForEach([](TBaseMapLayer* layer) { layer->Invalidate(); }); })},
        {"select nothing", Manager([](auto& m) { m.SetSelLayer(nullptr); })},
        {"another manager", AnotherManager},
        {"no manager", NoManager},
        {"the manager again", ManagerAgain},
        {"let the manager go",
         [](S& s) {
             NoManager(s);
             if (s.Map && s.Map->GetMapView())
                 s.Map->GetMapView()->SetLayerManager(nullptr);
             if (s.Panel)
                 s.Panel->SetRulersLayer(nullptr);
             s.Manager.reset();
         }},
        {"delete the view", [](S& s) { s.View.reset(); }, true},
        {"delete the map control", [](S& s) { s.Map.reset(); }, true},
        {"delete the panel", [](S& s) { s.Panel.reset(); }, true},
        {"delete everything",
         [](S& s) {
             s.View.reset();
             s.Map.reset();
             s.Panel.reset();
             s.Manager.reset();
         },
         true},
        {"close the view", View([](auto& v) { v.close(); }), true},
        {"another world", View([](auto& v) { v.CreateWorldAndViewport(TLatLonWorldSystemFactory::GetObject()); })},
        {"another world system",
         View([](auto& v) { v.ChangeWorldSystem(TLatLonAntimeridianWorldSystemFactory::GetObject()); })},
        {"zoom", View([](auto& v) { v.ZoomIn(); })},
        {"zoom to a layer",
         [](S& s) {
             if (s.View)
                 s.View->ZoomTo(s.Layer.Get());
         }},
        {"resize", View([](auto& v) { v.resize(75, 55); })},
        {"repaint at once", View([](auto& v) { v.repaint(); })},
        {"grab", View([](auto& v) { v.grab(); })},
        {"handle events", [](S&) { QCoreApplication::processEvents(); }},
        {"click",
         [](S& s) {
             s.Click({5, 5});
         }},
        {"select an area", Clicking(TMapMode::mdSelection)},
        {"place a ruler", Clicking(TMapMode::mdPlaceRulerH)},
        {"mark a point", Clicking(TMapMode::mdInfoQuery)},
        {"the host's mode", Clicking(TMapMode::mdCustom)},
        {"no mode object",
         [](S& s) {
             s.Mode.reset();
             if (s.View)
                 s.View->SetCustomModeObject(nullptr);
         }},
        {"another calculator",
         [](S& s) {
             s.Calculator = ChaosCalculator(s.Hooks);
             if (s.Raster)
                 s.Raster->SetColorCalc(s.Calculator);
         }},
        {"another image",
         [](S& s) {
             if (s.Raster)
                 s.Raster->TakeImage(ChaosImage());
         }},
        {"no image", With<TIdrisiMapLayer>(&S::Raster, [](auto& l) { l.TakeImage(nullptr); })},
        {"remove the raster",
         [](S& s) {
             if (s.Manager && s.Raster)
                 s.Manager->GetLayers().Remove(s.Raster.Get());
         }},
        {"free the pin renderer",
         [](S& s) {
             if (s.Pins)
                 s.Pins->SetPinRenderer(nullptr);
             s.PinRenderer.reset();
         }},
        {"no pins", With<TPinMapLayer>(&S::Pins, [](auto& l) { l.GetPins().Clear(); })},
        {"free the shape file", [](S& s) { s.ShpFile.reset(); }},
        {"no vector file", With<TVectorFileLayer>(&S::Vector, [](auto& l) { l.DeleteVectorFile(); })},
        {"no picture", With<TChaosBufferedLayer>(&S::Buffered, [](auto& l) { l.Invalidate(true); })},
        {"no rulers",
         [](S& s) {
             if (s.Rulers())
                 s.Rulers()->GetHRulers().Clear();
             if (s.Rulers())
                 s.Rulers()->GetVRulers().Clear();
         }},
        {"a ruler", With<TRulerMapLayer>(&S::Rulers, [](auto& l) { l.Add(std::make_unique<TRulerItem>()); })},
        {"no points", With<TInfoQueryPointLayer>(&S::Points, [](auto& l) { l.GetPoints().Clear(); })},
        {"no legend", With<TChaosLayer>(&S::Layer, [](auto& l) { l.SetLegendComponent(nullptr); })},
        {"a panel without a layer",
         [](S& s) {
             if (s.Panel)
                 s.Panel->SetRulersLayer(nullptr);
         }},
        {"unsubscribe", [](S& s) { s.Subscriptions.clear(); }},
        {"forget every handler", View([](auto& v) {
             v.SetOnViewportUpdated({});
             v.SetOnMouseCursorLocationChanged({});
             v.SetOnBeforeLayerManagerChanged({});
             v.SetOnAfterLayerManagerChanged({});
         })},
    };
    return deeds;
}

// ---- The drivers

/// Does deeds at a place, one at a time and not inside each other, once the scene is set up.
class TCulprit {
public:
    explicit TCulprit(std::vector<const TDeed*> deeds) : FDeeds(std::move(deeds)) {}

    bool GetIsReached() const { return FIsReached; }
    TAction Action(TChaosScene& scene, const bool& isSetUp) {
        return [this, &scene, &isSetUp] {
            if (isSetUp)
                Act(scene);
        };
    }

private:
    void Act(TChaosScene& scene) {
        FIsReached = true;
        if (FNext == FDeeds.size() || FIsActing || (FDeeds[FNext]->EndsWidget && scene.PlatformCalls > 0))
            return;
        const TDeed& deed = *FDeeds[FNext++];
        FIsActing = true;
        struct TEnd {
            bool& IsActing;
            ~TEnd() { IsActing = false; }
        } const end{FIsActing};
        deed.Do(scene);
    }

    std::vector<const TDeed*> FDeeds;
    std::size_t FNext = 0;
    bool FIsActing = false;
    bool FIsReached = false;
};

/// Arms places and keeps what they need for longer than the scene.
class TChaos {
public:
    void Add(const TPlace& place, std::vector<const TDeed*> deeds) {
        FParts.push_back({&place, std::make_unique<TCulprit>(std::move(deeds))});
    }

    void Run(const std::vector<const TPlace*>& triggered) {
        TChaosScene scene([this](TChaosScene& s) { Arm(s, true); });
        Arm(scene, false);
        FIsSetUp = true;
        for (const TPlace* place : triggered)
            GuardEvent(nullptr, [&] { place->Trigger(scene); });
        scene.Settle();
        GuardEvent(nullptr, [&] { scene.UseOnceMore(); });
    }

    bool IsEveryPlaceReached() const {
        for (const TPart& part : FParts)
            if (!part.Culprit->GetIsReached())
                return false;
        return true;
    }

private:
    struct TPart {
        const TPlace* Place;
        std::unique_ptr<TCulprit> Culprit;
    };

    void Arm(TChaosScene& scene, bool isBeforeViews) {
        for (const TPart& part : FParts)
            if (part.Place->IsBeforeViews == isBeforeViews)
                part.Place->Arm(scene, part.Culprit->Action(scene, FIsSetUp));
    }

    std::vector<TPart> FParts;
    bool FIsSetUp = false;
};

class Chaos : public testing::TestWithParam<std::size_t> {};

TEST_P(Chaos, MayComeOverTheLibraryAtAnyPlace) {
    const TPlace& place = Places()[GetParam()];
    const QString wanted = qEnvironmentVariable("LMX_CHAOS_DEEDS");
    for (const TDeed& deed : Deeds()) {
        if (!QString::fromLatin1(deed.Name).contains(wanted))
            continue;
        SCOPED_TRACE(testing::Message() << place.Name << ": " << deed.Name);
        if (qEnvironmentVariableIsSet("LMX_CHAOS_TRACE"))
            std::cerr << place.Name << ": " << deed.Name << '\n';
        TChaos chaos;
        chaos.Add(place, {&deed});
        chaos.Run({&place});
        EXPECT_TRUE(chaos.IsEveryPlaceReached());
    }
}

INSTANTIATE_TEST_SUITE_P(Places, Chaos, testing::Range<std::size_t>(0, Places().size()));

unsigned Setting(const char* name, unsigned otherwise) {
    bool isNumber = false;
    const unsigned value = qEnvironmentVariable(name).toUInt(&isNumber);
    return isNumber ? value : otherwise;
}

TEST(ChaosOfSeveral, MayComeInAnyOrder) {
    const unsigned first = Setting("LMX_CHAOS_SEED", 1);
    const unsigned rounds = Setting("LMX_CHAOS_ROUNDS", 100);
    for (unsigned seed = first; seed < first + rounds && !HasFailure(); ++seed) {
        SCOPED_TRACE(testing::Message() << "LMX_CHAOS_SEED=" << seed << " LMX_CHAOS_ROUNDS=1");
        if (qEnvironmentVariableIsSet("LMX_CHAOS_TRACE"))
            std::cerr << "seed " << seed << '\n';
        std::minstd_rand random(seed);
        const auto pick = [&random](const auto& table) { return &table[random() % table.size()]; };
        TChaos chaos;
        std::vector<const TPlace*> triggered;
        for (int i = 0; i < 4; ++i) {
            const TPlace* place = pick(Places());
            chaos.Add(*place, {pick(Deeds()), pick(Deeds()), pick(Deeds())});
            triggered.push_back(place);
            triggered.push_back(pick(Places()));
        }
        chaos.Run(triggered);
    }
}

} // namespace
} // namespace lmx
