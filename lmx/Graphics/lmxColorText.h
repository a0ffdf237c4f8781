#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

namespace lmx {

/// A colour as text: `#AARRGGBB`, nine characters, upper case.
LMX_EXPORT QString Color32ToString(TColor32 color);

/// The inverse; the digits may be of either case.
/// @throws EConvertError "'...' is not a valid color value" for any text but `#` and eight hexadecimal digits.
LMX_EXPORT TColor32 StringToColor32(const QString& text);

/// Any opaque colour.
LMX_EXPORT TColor32 GetRandomColor32();

} // namespace lmx
