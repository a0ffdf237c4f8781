#pragma once

#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxSet.h>

#include <QString>

namespace lmx {

enum class TFontStyle { fsBold, fsItalic, fsUnderline, fsStrikeOut };
using TFontStyles = TSet<TFontStyle>;

LMX_EXPORT QString FontStylesToString(TFontStyles styles); ///< names joined by commas: "fsBold,fsItalic"; "" for none

/// @throws EConvertError "Invalid font styles text" for an unknown name.
LMX_EXPORT TFontStyles StringToFontStyles(const QString& text);

} // namespace lmx
