#pragma once

#include <lmx/Colour/lmxColorPack.h>

namespace lmx {

/// The scales of the pack, group by group.
std::vector<TColorScale> ColorPackTable();

} // namespace lmx
