#pragma once

#include <QByteArray>
#include <QString>

namespace lmx {

/// Appends the shortest decimal text that reads back as exactly `value`, with a decimal point whatever the locale:
/// "0.1", "-9999", "1e+35". Magnitudes from 0.00001 to 1e15 have no exponent. Specials: "nan", "inf", "-inf".
void AppendAsciiNumber(QByteArray& text, float value);

/// The text of AppendAsciiNumber.
QString AsciiNumber(float value);

/// Blank, tab and the four kinds of line and page breaks.
constexpr bool IsAsciiWhiteSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// Takes the next number off the front of `text`, white space before it included. A plus sign, an exponent and the
/// specials of AppendAsciiNumber are read; the number must end at white space or at the end of the text.
/// False, with `text` left at the offending place, if there is none or it lies beyond the range of a float.
bool TakeAsciiNumber(QByteArrayView& text, float& value);
bool TakeAsciiNumber(QByteArrayView& text, double& value); ///< the same within the range of a double

} // namespace lmx
