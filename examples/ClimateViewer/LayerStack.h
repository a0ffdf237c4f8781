#pragma once

#include <vector>

namespace lmx {
class ILayerManager;
class TBaseMapLayer;
} // namespace lmx

// The stack of a manager as a list shows it: the top layer first, without those that lists do not show. Operations keep
// the manager's selection on something that is there.

std::vector<lmx::TBaseMapLayer*> ListedLayers(lmx::ILayerManager& manager);

/// Number of a layer in that list, from 0; -1 if it is not listed.
int PlaceInList(lmx::ILayerManager& manager, const lmx::TBaseMapLayer* layer);

/// Moves a listed layer into the gap before the `gap`-th one; behind the last one if `gap` is their number. False if it
/// is there already, or not listed.
bool MoveToGap(lmx::ILayerManager& manager, lmx::TBaseMapLayer* layer, int gap);

/// The listed layer that is so many places further down, kept within the list; nil if `layer` is not listed.
lmx::TBaseMapLayer* NeighbourOf(lmx::ILayerManager& manager, lmx::TBaseMapLayer* layer, int down);

/// Takes a layer out of the stack. If it was selected, the one below it is from now on, or else the one above it.
void RemoveLayer(lmx::ILayerManager& manager, lmx::TBaseMapLayer* layer);
