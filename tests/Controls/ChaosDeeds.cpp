#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Layers/Objects/lmxRectangleObjectTypeItem.h>
#include <lmx/Pictures/lmxMapPicture.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Controls/ChaosDocument.h>
#include <tests/Controls/ChaosTables.h>

#include <QCoreApplication>

namespace lmx::tests {

TUse View(std::function<void(TMapViewControl&)> use) {
    return [use = std::move(use)](TChaosScene& s) {
        if (s.View)
            use(*s.View);
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

void PaintPicture(TChaosScene& s) {
    TMapPictureOptions options;
    options.Size = {480, 320};
    options.ShowsLegends = true;
    options.ShowsCompassRose = true;
    if (const auto manager = s.Manager)
        TMapPicture(manager, TLatLonWorldSystemFactory::GetObject(), options).Paint();
}

const std::vector<TDeed>& ChaosDeeds() {
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
        {"delete the table", [](S& s) { s.Table.reset(); }, true},
        {"delete the list of annotations", [](S& s) { s.ObjectList.reset(); }, true},
        {"delete the gradient editor", [](S& s) { s.Gradient.reset(); }},
        {"no stops",
         [](S& s) {
             if (s.Gradient)
                 s.Gradient->Clear();
         }},
        {"delete everything",
         [](S& s) {
             s.View.reset();
             s.Map.reset();
             s.Panel.reset();
             s.Table.reset();
             s.ObjectList.reset();
             s.Gradient.reset();
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
        {"repaint at once", View([](auto& v) { v.repaint(); }), true},
        {"grab", View([](auto& v) { v.grab(); }), true},
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
        {"no annotations", With<TObjectMapLayer>(&S::Objects, [](auto& l) { l.GetObjects().Clear(); })},
        {"no topmost annotation", With<TObjectMapLayer>(&S::Objects,
                                                        [](auto& l) {
                                                            if (!l.GetObjects().IsEmpty())
                                                                l.GetObjects().Remove(
                                                                    l.GetObjects()[l.GetObjects().Count() - 1]);
                                                        })},
        {"an annotation",
         [](S& s) {
             if (s.Objects())
                 s.Objects()->GetObjects().Add(std::make_unique<TChaosItem>(s.Objects(), s.Hooks));
         }},
        {"no selected annotation", With<TObjectMapLayer>(&S::Objects, [](auto& l) { l.SetSelectedObject(nullptr); })},
        {"another ratio", With<TObjectMapLayer>(&S::Objects, [](auto& l) { l.SetDeviceRatio(1.5); })},
        {"an annotation at the bottom",
         With<TObjectMapLayer>(
             &S::Objects, [](auto& l) { l.GetObjects().Insert(0, std::make_unique<TRectangleObjectTypeItem>(&l)); })},
        {"no legend", With<TChaosLayer>(&S::Layer, [](auto& l) { l.SetLegendComponent(nullptr); })},
        {"a panel without a layer",
         [](S& s) {
             if (s.Panel)
                 s.Panel->SetRulersLayer(nullptr);
         }},
        {"read a document", ReadChaosDocument},
        {"save a document", SaveChaosDocument},
        {"free the readers and writers", [](S& s) { s.Documents.reset(); }},
        {"paint a picture", PaintPicture},
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

} // namespace lmx::tests
