#include "Marks.h"

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>

void RemoveMarks(lmx::TMapViewControl& view) {
    if (lmx::TRulerMapLayer* rulers = view.GetSpRulersLayer()) {
        rulers->GetVRulers().Clear();
        rulers->GetHRulers().Clear();
    }
    if (lmx::TInfoQueryPointLayer* points = view.GetSpInfoQueryPointsLayer())
        points->GetPoints().Clear();
    if (lmx::TSelectionMapLayer* selection = view.GetSpSelectionLayer())
        selection->SetEnabled(false);
}

void FoldMarks(lmx::TMapViewControl& view, const lmx::IWorldSystem& world) {
    if (lmx::TRulerMapLayer* rulers = view.GetSpRulersLayer()) {
        for (lmx::TRulerItem* meridian : rulers->GetHRulers())
            meridian->SetLocation(world.ToWorldPoint({meridian->GetLocation(), 0}).X);
        rulers->Invalidate();
    }
    if (lmx::TInfoQueryPointLayer* points = view.GetSpInfoQueryPointsLayer())
        points->GetPoints().ForEach([&](lmx::TInfoQueryPoint* point) { // each of which tells the layer
            point->SetPoint(world.ToWorldPoint(point->GetPoint()));
        });
    if (lmx::TSelectionMapLayer* selection = view.GetSpSelectionLayer()) {
        const lmx::TMapPoint from = selection->GetTopLeft();
        const lmx::TMapPoint to = selection->GetBottomRight();
        const lmx::TMapPoint foldedFrom = world.ToWorldPoint(from);
        const lmx::TMapPoint foldedTo = world.ToWorldPoint(to);
        selection->SetTopLeft(foldedFrom);
        selection->SetBottomRight(foldedTo);
        if ((to.X < from.X) != (foldedTo.X < foldedFrom.X))
            selection->SetEnabled(false);
    }
}
