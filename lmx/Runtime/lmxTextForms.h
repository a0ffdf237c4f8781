#pragma once

#include <lmx/Runtime/lmxGeometry.h>
#include <lmx/Runtime/lmxSet.h>

#include <QString>

// Text forms of values that documents store. They are fixed, do not depend on the locale, and restore the value
// exactly.

namespace lmx {

/// The sides of its parent that an item keeps its distance to.
enum class TAnchorKind { akLeft, akTop, akRight, akBottom };
using TAnchors = TSet<TAnchorKind>;

enum class TFontStyle { fsBold, fsItalic, fsUnderline, fsStrikeOut };
using TFontStyles = TSet<TFontStyle>;

/// The text between double quotes in C source: `\"`, `\\`, `\a \b \f \n \r \t \v`, and three octal digits after a
/// backslash for the other control characters. Everything else stands as it is. The quotes are not part of the result.
QString CStyleEscape(const QString& text);

/// The inverse; it also takes `\'`, `\?`, one to three octal digits, `\x` with one to four hexadecimal digits and `\u`
/// with four.
/// @throws EConvertError "Invalid escape sequence" for any other character after a backslash, or none.
QString CStyleUnescape(const QString& text);

/// Length of the quoted string that begins at the 1-based `index`, both quotes included; 0 if there is no double quote
/// at `index` or no closing one.
qsizetype CStyleEscapedGetLength(const QString& text, qsizetype index);

QString PointToString(TPoint point); ///< "X,Y"
QString SizeToString(TSize size);    ///< "cx,cy"
QString RectToString(TRect rect);    ///< "Left,Top,Right,Bottom"

/// @throws EConvertError "Invalid point text", "Invalid size text", "Invalid rectangle text".
TPoint StringToPoint(const QString& text);
TSize StringToSize(const QString& text);
TRect StringToRect(const QString& text);

QString AnchorsToString(TAnchors anchors);      ///< names joined by commas: "akLeft,akTop"; "" for none
QString FontStylesToString(TFontStyles styles); ///< names joined by commas: "fsBold,fsItalic"; "" for none

/// @throws EConvertError "Invalid anchors text", "Invalid font styles text" for an unknown name.
TAnchors StringToAnchors(const QString& text);
TFontStyles StringToFontStyles(const QString& text);

} // namespace lmx
