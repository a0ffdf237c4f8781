#pragma once

#include <lmx/DataSources/Private/lmxClimateSource.h>

#include <functional>
#include <memory>

namespace lmx {

/// A source that lives on the reader thread, from its making to its end: whoever calls it waits.
/// @throws what `make` raises
std::unique_ptr<IClimateSource> MakeReaderThreadSource(const std::function<std::unique_ptr<IClimateSource>()>& make);

} // namespace lmx
