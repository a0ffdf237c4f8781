#pragma once

#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <QString>

// Text forms of values that documents store. They are fixed, do not depend on the locale, and restore the value
// exactly.

namespace lmx {

/// The text between double quotes in C source: `\"`, `\\`, `\a \b \f \n \r \t \v`, and three octal digits after a
/// backslash for the other control characters. Everything else stands as it is. The quotes are not part of the result.
LMX_EXPORT QString CStyleEscape(const QString& text);

/// The inverse; it also takes `\'`, `\?`, one to three octal digits, `\x` with one to four hexadecimal digits and `\u`
/// with four.
/// @throws EConvertError "Invalid escape sequence" for any other character after a backslash, or none.
LMX_EXPORT QString CStyleUnescape(const QString& text);

/// Length of the quoted string that begins at the 1-based `index`, both quotes included; 0 if there is no double quote
/// at `index` or no closing one.
LMX_EXPORT qsizetype CStyleEscapedGetLength(const QString& text, qsizetype index);

LMX_EXPORT QString PointToString(TPoint point); ///< "X,Y"
LMX_EXPORT QString SizeToString(TSize size);    ///< "cx,cy"
LMX_EXPORT QString RectToString(TRect rect);    ///< "Left,Top,Right,Bottom"

/// @throws EConvertError "Invalid point text", "Invalid size text", "Invalid rectangle text".
LMX_EXPORT TPoint StringToPoint(const QString& text);
LMX_EXPORT TSize StringToSize(const QString& text);
LMX_EXPORT TRect StringToRect(const QString& text);

} // namespace lmx
