#pragma once

#include <optional>

class QWidget;

// The one door from controls to the dialogs that edit what they show. Each asks and waits; a dialog belongs to
// `parent`, and one that is cancelled or goes with it answers nothing. Whoever asks may be gone afterwards.

namespace lmx {

class TRulerItem;

/// Asks for a ruler, beginning with what `present` says, or with a new one's values if it is nil.
/// @throws EConvertError for a location that is no number.
std::optional<TRulerItem> AskForRuler(QWidget* parent, const TRulerItem* present);

} // namespace lmx
