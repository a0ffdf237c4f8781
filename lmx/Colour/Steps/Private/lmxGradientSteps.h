#pragma once

#include <lmx/Colour/Steps/Private/lmxColorSteps.h>
#include <lmx/Graphics/lmxGradient.h>

namespace lmx {

/// The colours that a gradient over a range gives to values; 0 to 1 of the gradient lies between `min` and `max`, which
/// are finite and have not collapsed, and what lies outside has the default colour. The gradient is one whose stops
/// say all (TGradientFactory::IsMaker).
TColorSteps GradientColorSteps(IGradient& gradient, float min, float max, TColor32 defaultColor);

} // namespace lmx
