// What lists tell of, and what a map asks annotations for when it is kept.

#include <lmx/Controls/lmxRulerListView.h>
#include <lmx/Widgets/lmxDrawnListView.h>
#include <tests/Controls/ChaosDocument.h>
#include <tests/Controls/ChaosTables.h>

namespace lmx::tests {

namespace {

// Selects the second row, and listens to the selection.
template<class Owner, class List, class Base>
TArm OnSelection(std::unique_ptr<Owner> TChaosScene::*owner, List* (Base::*list)() const) {
    return [owner, list](TChaosScene& s, const TAction& action) {
        if (!(s.*owner))
            return;
        TDrawnListView* const rows = ((s.*owner).get()->*list)();
        rows->SelectRow(1);
        s.Subscriptions.push_back(rows->GetOnSelectionChanged().Add([action](TDrawnListView*) { action(); }));
    };
}

TArm OnClassType() {
    return [](TChaosScene& s, TAction action) {
        s.Hooks->Set(QStringLiteral("Item.GetObjectClassType"), std::move(action));
    };
}

TArm OnRasterName() {
    return [](TChaosScene& s, const TAction& action) {
        if (s.Raster)
            s.Subscriptions.push_back(s.Raster->GetOnLayerNameChanged().Add([action](auto*) { action(); }));
    };
}

void RenameRaster(TChaosScene& s) {
    if (s.Raster)
        s.Raster->SetLayerName(QStringLiteral("another name"));
}

void RemoveRaster(TChaosScene& s) {
    if (s.Manager && s.Raster)
        s.Manager->GetLayers().Remove(s.Raster.Get());
}

template<class Owner, class Value>
TUse Giving(std::unique_ptr<Owner> TChaosScene::*owner, void (Owner::*set)(Value)) {
    return [owner, set](TChaosScene& s) {
        if (s.*owner)
            ((s.*owner).get()->*set)(nullptr);
    };
}

} // namespace

std::vector<TPlace> ChaosListPlaces() {
    using S = TChaosScene;
    using TTable = TMapViewInfoQueryListControl;
    const TArm onPanel = OnSelection(&S::Panel, &TMapViewRulersPanelControl::GetListView);
    const TArm onTable = OnSelection(&S::Table, &TListPanel::GetList);
    const TArm onObjects = OnSelection(&S::ObjectList, &TObjectLayerLegendControl::GetLayerList);
    const TUse clearRulers = With<TRulerMapLayer>(&S::Rulers, [](auto& l) { l.GetVRulers().Clear(); });
    const TUse clearPoints = With<TInfoQueryPointLayer>(&S::Points, [](auto& l) { l.GetPoints().Clear(); });
    const TUse clearItems = With<TObjectMapLayer>(&S::Objects, [](auto& l) { l.GetObjects().Clear(); });
    return {
        {"Panel.OnSelectionChanged", onPanel, clearRulers},
        {"Panel.OnSelectionChanged without a layer", onPanel,
         Giving(&S::Panel, &TMapViewRulersPanelControl::SetRulersLayer)},
        {"Table.OnSelectionChanged", onTable, clearPoints},
        {"Table.OnSelectionChanged by a column", onTable, RemoveRaster},
        {"Table.OnSelectionChanged without a layer", onTable, Giving(&S::Table, &TTable::SetIQPLayer)},
        {"Table.OnSelectionChanged without a manager", onTable, Giving(&S::Table, &TTable::SetLayerManager)},
        {"Raster.OnLayerNameChanged", OnRasterName(), RenameRaster},
        {"ObjectList.OnSelectionChanged", onObjects, clearItems},
        {"ObjectList.OnSelectionChanged without a layer", onObjects,
         Giving(&S::ObjectList, &TObjectLayerLegendControl::SetLayer)},
        {"Item.GetObjectClassType by a document", OnClassType(), SaveChaosDocument},
    };
}

} // namespace lmx::tests
