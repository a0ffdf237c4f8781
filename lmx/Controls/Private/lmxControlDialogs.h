#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Graphics/lmxColor32.h>

#include <QString>

#include <optional>
#include <vector>

class QWidget;

// The one door from controls to the dialogs that edit what they show. Each asks and waits; a dialog belongs to
// `parent`, and one that is cancelled or goes with it answers nothing. Whoever asks may be gone afterwards.

namespace lmx {

class TInfoQueryPoint;
class TRulerItem;

/// Asks for a ruler, beginning with what `present` says, or with a new one's values if it is nil.
/// @throws EConvertError for a location that is no number.
std::optional<TRulerItem> AskForRuler(QWidget* parent, const TRulerItem* present);

/// A query point as the user has described it.
struct TQueryPointAnswer {
    TMapPoint Point;
    TColor32 Color = 0;
    QString Label;
};

/// Asks for a query point, beginning with `present`, or with empty texts if it is nil.
std::optional<TQueryPointAnswer> AskForQueryPoint(QWidget* parent, const TInfoQueryPoint* present);
/// Asks for any number of points at once; none if it was cancelled. Those whose coordinates are no numbers are left
/// out.
std::vector<TQueryPointAnswer> AskForQueryPoints(QWidget* parent);

} // namespace lmx
