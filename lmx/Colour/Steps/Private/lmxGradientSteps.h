#pragma once

#include <lmx/Colour/Steps/Private/lmxColorPieces.h>
#include <lmx/Colour/Steps/Private/lmxColorSteps.h>
#include <lmx/Graphics/Private/lmxSortedStops.h>

#include <cstddef>

namespace lmx {

/// The colours that a gradient over a range gives to values; 0 to 1 of the gradient lies between `min` and `max`, which
/// are finite and have not collapsed, and what lies outside has the default colour.
TColorSteps GradientColorSteps(const TSortedStops& gradient, float min, float max, TColor32 defaultColor);

/// The same colours, one piece for each stop.
TColorPieces GradientColorPieces(const TSortedStops& gradient, float min, float max, TColor32 defaultColor);

/// The number that the steps of a gradient cannot exceed.
std::size_t GradientStepLimit(std::size_t stopCount);

} // namespace lmx
