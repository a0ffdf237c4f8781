#pragma once

#include <lmx/Widgets/lmxGradientStops.h>

namespace lmx {

class TGradientEditor;

/// Lets screen readers see the stops of gradient editors: each is a slider in its editor, with a name, a place and a
/// value that they may change. Called before the first editor is made; once is enough.
void InstallGradientAccess();

/// Tells screen readers that a stop is selected, or has another value. Nothing if nobody listens.
void TellSelectedStop(TGradientEditor& editor);
void TellChangedStop(TGradientEditor& editor, TGradientStops::TId id);

} // namespace lmx
