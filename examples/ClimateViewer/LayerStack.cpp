#include "LayerStack.h"

#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxBorrowed.h>

#include <algorithm>

std::vector<lmx::TBaseMapLayer*> ListedLayers(lmx::ILayerManager& manager) {
    std::vector<lmx::TBaseMapLayer*> listed;
    for (lmx::TBaseMapLayer* layer : manager.GetLayers())
        if (layer->GetShowsInLayersList())
            listed.push_back(layer);
    std::ranges::reverse(listed);
    return listed;
}

int PlaceInList(lmx::ILayerManager& manager, const lmx::TBaseMapLayer* layer) {
    const auto listed = ListedLayers(manager);
    const auto found = std::ranges::find(listed, layer);
    return found == listed.end() ? -1 : static_cast<int>(found - listed.begin());
}

bool MoveToGap(lmx::ILayerManager& manager, lmx::TBaseMapLayer* layer, int gap) {
    const auto listed = ListedLayers(manager);
    const int from = PlaceInList(manager, layer);
    const int count = static_cast<int>(listed.size());
    if (from < 0 || gap < 0 || gap > count || gap == from || gap == from + 1)
        return false;
    // Upwards it takes the place of the layer behind the gap, downwards of the one before it.
    const lmx::TBaseMapLayer* passed = listed[static_cast<std::size_t>(gap < from ? gap : gap - 1)];
    const auto& layers = manager.GetLayers();
    return manager.MoveLayer(layers.IndexOf(layer), layers.IndexOf(passed));
}

lmx::TBaseMapLayer* NeighbourOf(lmx::ILayerManager& manager, lmx::TBaseMapLayer* layer, int down) {
    const auto listed = ListedLayers(manager);
    const int place = PlaceInList(manager, layer);
    if (place < 0)
        return nullptr;
    return listed[static_cast<std::size_t>(std::clamp(place + down, 0, static_cast<int>(listed.size()) - 1))];
}

void RemoveLayer(lmx::ILayerManager& manager, lmx::TBaseMapLayer* layer) {
    const lmx::TBorrowed removed(layer);
    if (layer && manager.GetSelLayer() == layer) {
        lmx::TBaseMapLayer* next = NeighbourOf(manager, layer, 1);
        if (next == layer)
            next = NeighbourOf(manager, layer, -1);
        manager.SetSelLayer(next == layer ? nullptr : next);
    }
    if (removed)
        manager.GetLayers().Remove(layer);
}
