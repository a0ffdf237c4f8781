#pragma once

namespace lmx {
class IWorldSystem;
class TMapViewControl;
} // namespace lmx

// What the modes leave on a map: rulers, points and a selection.

/// Takes them all off the map.
void RemoveMarks(lmx::TMapViewControl& view);

/// Writes every longitude as the world does, so that each mark is inside of it. A selection that would reach over the
/// seam of the world is taken off.
void FoldMarks(lmx::TMapViewControl& view, const lmx::IWorldSystem& world);
