#pragma once

#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxSet.h>

#include <QString>

namespace lmx {

/// The sides of its parent that an item keeps its distance to.
enum class TAnchorKind { akLeft, akTop, akRight, akBottom };
using TAnchors = TSet<TAnchorKind>;

LMX_EXPORT QString AnchorsToString(TAnchors anchors); ///< names joined by commas: "akLeft,akTop"; "" for none

/// @throws EConvertError "Invalid anchors text" for an unknown name.
LMX_EXPORT TAnchors StringToAnchors(const QString& text);

} // namespace lmx
