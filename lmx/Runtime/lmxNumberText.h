#pragma once

#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxFormatSettings.h>

#include <QString>
#include <QStringView>

#include <cstdint>

namespace lmx {

/// General form with 15 significant digits and no trailing zeros: "0.5", "-9999", "100000". Scientific ("1E15", "1E-6",
/// no plus sign) with more than 15 digits before the point or below 0.00001. Specials: "NAN", "INF", "-INF".
LMX_EXPORT QString FloatToStr(extended value, const TFormatSettings& settings = TFormatSettings::Current());

/// The general form with another number of significant digits, 1 to 18.
LMX_EXPORT QString FloatToGeneral(extended value, int digits,
                                  const TFormatSettings& settings = TFormatSettings::Current());

/// Fixed form with `decimals` (0 to 18) digits after the point. The value is taken to 18 significant digits and then
/// rounded half up in decimal: 0.0625 gives "0.063". No minus sign before a zero. A value of more than 18 digits before
/// the point takes the general form.
LMX_EXPORT QString FloatToFixed(extended value, int decimals,
                                const TFormatSettings& settings = TFormatSettings::Current());

/// Number from text: blanks at both ends, sign, digits with at most one decimal separator, exponent. One rounding to
/// the result's type; magnitudes that round beyond its largest finite value are refused, tiny ones become 0 or
/// denormal. False, with `value` untouched, if the text is no number.
LMX_EXPORT bool TryStrToFloat(QStringView text, float& value,
                              const TFormatSettings& settings = TFormatSettings::Current());
LMX_EXPORT bool TryStrToFloat(QStringView text, double& value,
                              const TFormatSettings& settings = TFormatSettings::Current());
LMX_EXPORT bool TryStrToFloat(QStringView text, extended& value,
                              const TFormatSettings& settings = TFormatSettings::Current());

/// As TryStrToFloat.
/// @throws EConvertError "'...' is not a valid floating point value" with the first 100 characters of a longer text.
LMX_EXPORT float StrToSingle(const QString& text, const TFormatSettings& settings = TFormatSettings::Current());
LMX_EXPORT double StrToDouble(const QString& text, const TFormatSettings& settings = TFormatSettings::Current());
LMX_EXPORT extended StrToFloat(const QString& text, const TFormatSettings& settings = TFormatSettings::Current());

/// 32-bit integer from text: leading blanks, sign, decimal digits, or up to 32 bits of hexadecimal digits after "$",
/// "x", "X", "0x" or "0X" (taken as a bit pattern). False, with `value` untouched, for anything else, trailing blanks
/// included.
LMX_EXPORT bool TryStrToInt(QStringView text, std::int32_t& value);

/// As TryStrToInt.
/// @throws EConvertError "'...' is not a valid integer value", as above.
LMX_EXPORT std::int32_t StrToInt(const QString& text);

/// "True" and "False" in any case, or a number, of which only 0 is false.
LMX_EXPORT bool TryStrToBool(QStringView text, bool& value,
                             const TFormatSettings& settings = TFormatSettings::Current());

/// @throws EConvertError "'...' is not a valid boolean value", as above.
LMX_EXPORT bool StrToBool(const QString& text, const TFormatSettings& settings = TFormatSettings::Current());

LMX_EXPORT QString IntToStr(std::int64_t value);
LMX_EXPORT QString BoolToStr(bool value);  ///< "-1" or "0"
LMX_EXPORT QString BoolToWord(bool value); ///< "True" or "False"

} // namespace lmx
