#include <lmx/Runtime/lmxNumberText.h>

#include <lmx/Runtime/Private/lmxQuote.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxText.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <system_error>

namespace lmx {

namespace {

constexpr int FixedDigits = 18;      // significant digits that a value is taken to before it is rounded in decimal
constexpr int GeneralDigits = 15;    // significant digits of the general form
constexpr int LowestFixedPoint = -4; // of the general form: 0.00001 is 0.1 * 10^-4
constexpr int LargestDecimalExponent = 100'000; // beyond the range of every float type

// |value| = 0.d1 d2 d3 ... * 10^Point, d1 not zero; no digits stand for zero.
struct TDecimal {
    std::string Digits;
    int Point = 0;
};

// The first digits of a magnitude, "d.ddde+XX". Most values are doubles, whose digits come several times faster.
template<std::size_t Size>
char* WriteDigits(char (&buffer)[Size], extended magnitude) {
    const auto asDouble = static_cast<double>(magnitude);
    const bool isDouble = static_cast<extended>(asDouble) == magnitude;
    return (isDouble ? std::to_chars(buffer, buffer + Size, asDouble, std::chars_format::scientific, FixedDigits - 1)
                     : std::to_chars(buffer, buffer + Size, magnitude, std::chars_format::scientific, FixedDigits - 1))
        .ptr;
}

TDecimal ToDecimal(extended magnitude) {
    if (magnitude == 0)
        return {};
    char buffer[64];
    const char* const end = WriteDigits(buffer, magnitude);
    const char* const digits = buffer + 2;
    const char* const exponent = digits + FixedDigits; // past the 'e', at its sign
    TDecimal decimal;
    decimal.Digits.reserve(FixedDigits);
    decimal.Digits.push_back(buffer[0]);
    decimal.Digits.append(digits, FixedDigits - 1);
    std::from_chars(*exponent == '+' ? exponent + 1 : exponent, end, decimal.Point);
    ++decimal.Point;
    return decimal;
}

// Keeps the first `count` digits, rounding half up.
void RoundHalfUp(TDecimal& decimal, int count) {
    if (count >= static_cast<int>(decimal.Digits.size()))
        return;
    if (count < 0) {
        decimal = {};
        return;
    }
    const bool up = decimal.Digits[static_cast<std::size_t>(count)] >= '5';
    decimal.Digits.resize(static_cast<std::size_t>(count));
    if (!up)
        return;
    while (!decimal.Digits.empty() && decimal.Digits.back() == '9')
        decimal.Digits.pop_back();
    if (decimal.Digits.empty()) {
        decimal.Digits.assign(1, '1');
        ++decimal.Point;
    } else {
        ++decimal.Digits.back();
    }
}

bool IsSpecial(extended value, QString& text) {
    if (std::isnan(value))
        text = QStringLiteral("NAN");
    else if (std::isinf(value))
        text = value > 0 ? QStringLiteral("INF") : QStringLiteral("-INF");
    else
        return false;
    return true;
}

// Digits before the point, then `decimals` digits after it; what the decimal does not hold is 0.
QString PlaceDigits(const TDecimal& decimal, int decimals, QChar separator) {
    const auto digitAt = [&decimal](int place) { // place 0 is the first digit after the point, -1 the units
        const int index = decimal.Point + place;
        const bool held = index >= 0 && index < static_cast<int>(decimal.Digits.size());
        return QChar::fromLatin1(held ? decimal.Digits[static_cast<std::size_t>(index)] : '0');
    };
    QString text;
    text.reserve(std::max(decimal.Point, 1) + 1 + decimals);
    for (int place = -std::max(decimal.Point, 1); place < 0; ++place)
        text += digitAt(place);
    if (decimals > 0)
        text += separator;
    for (int place = 0; place < decimals; ++place)
        text += digitAt(place);
    return text;
}

// The parts of a number that follows the grammar, with a point as separator; empty if it does not.
struct TNumberText {
    std::string Text;   // without a plus sign, digits on at least one side of the point
    bool IsZero = true; // all digits of the mantissa are 0
    int Magnitude = 0;  // decimal exponent of the first digit that is not 0, plus 1

    bool IsValid() const { return !Text.empty(); }
};

TNumberText ReadNumber(QStringView text, QChar separator) {
    while (!text.isEmpty() && text.front() == u' ')
        text = text.sliced(1);
    while (!text.isEmpty() && text.back() == u' ')
        text.chop(1);

    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    qsizetype at = 0;
    const auto more = [&] { return at < text.size(); };
    TNumberText number;
    if (more() && (text[at] == u'+' || text[at] == u'-'))
        if (text[at++] == u'-')
            number.Text += '-';

    bool hasDigits = false;
    bool hasPoint = false;
    int leading = 0; // digits before the point counted from the first that is not 0, or minus the zeros after it
    for (; more() && (isDigit(text[at]) || (text[at] == separator && !hasPoint)); ++at) {
        if (text[at] == separator) {
            hasPoint = true;
            number.Text += hasDigits ? "." : "0.";
            continue;
        }
        hasDigits = true;
        number.Text += text[at].toLatin1();
        if (text[at] != u'0')
            number.IsZero = false;
        if (!hasPoint && !number.IsZero)
            ++leading;
        else if (hasPoint && number.IsZero)
            --leading;
    }
    if (!hasDigits)
        return {};
    if (number.Text.back() == '.')
        number.Text += '0';

    int exponent = 0;
    if (more() && (text[at] == u'E' || text[at] == u'e')) {
        ++at;
        bool negative = false;
        if (more() && (text[at] == u'+' || text[at] == u'-'))
            negative = text[at++] == u'-';
        for (; more() && isDigit(text[at]); ++at)
            exponent = std::min(LargestDecimalExponent, exponent * 10 + text[at].digitValue());
        if (negative)
            exponent = -exponent;
        number.Text += 'e' + std::to_string(exponent);
    }
    if (more())
        return {};
    number.Magnitude = leading + exponent;
    return number;
}

template<class Float>
bool TryToFloat(QStringView text, Float& value, const TFormatSettings& settings) {
    const TNumberText number = ReadNumber(text, settings.DecimalSeparator);
    if (!number.IsValid())
        return false;
    Float result = 0;
    const auto [end, error] = std::from_chars(number.Text.data(), number.Text.data() + number.Text.size(), result);
    if (error == std::errc::result_out_of_range) {
        if (!number.IsZero && number.Magnitude > 0)
            return false;
        result = number.Text.front() == '-' ? -Float(0) : Float(0);
    } else if (error != std::errc{} || !std::isfinite(result)) {
        return false;
    }
    value = result;
    return true;
}

template<class Float>
Float ToFloat(const QString& text, const TFormatSettings& settings) {
    Float value = 0;
    if (!TryToFloat(text, value, settings))
        throw EConvertError(u'\'' + Quotable(text) + QStringLiteral("' is not a valid floating point value"));
    return value;
}

} // namespace

QString FloatToStr(extended value, const TFormatSettings& settings) {
    return FloatToGeneral(value, GeneralDigits, settings);
}

QString FloatToGeneral(extended value, int digits, const TFormatSettings& settings) {
    QString text;
    if (IsSpecial(value, text))
        return text;
    digits = std::clamp(digits, 1, FixedDigits);
    TDecimal decimal = ToDecimal(std::abs(value));
    RoundHalfUp(decimal, digits);
    while (!decimal.Digits.empty() && decimal.Digits.back() == '0')
        decimal.Digits.pop_back();
    if (decimal.Digits.empty())
        return QStringLiteral("0");

    const int held = static_cast<int>(decimal.Digits.size());
    const QString sign = value < 0 ? QStringLiteral("-") : QString();
    if (decimal.Point <= digits && decimal.Point >= LowestFixedPoint)
        return sign + PlaceDigits(decimal, std::max(0, held - decimal.Point), settings.DecimalSeparator);
    const int exponent = decimal.Point - 1;
    decimal.Point = 1;
    return sign + PlaceDigits(decimal, held - 1, settings.DecimalSeparator) + u'E' + IntToStr(exponent);
}

QString FloatToFixed(extended value, int decimals, const TFormatSettings& settings) {
    QString text;
    if (IsSpecial(value, text))
        return text;
    decimals = std::clamp(decimals, 0, FixedDigits);
    TDecimal decimal = ToDecimal(std::abs(value));
    if (decimal.Point > FixedDigits)
        return FloatToStr(value, settings);
    RoundHalfUp(decimal, decimal.Point + decimals);
    const bool isZero = decimal.Digits.find_first_not_of('0') == std::string::npos;
    if (isZero)
        decimal = {};
    return (value < 0 && !isZero ? QStringLiteral("-") : QString()) +
           PlaceDigits(decimal, decimals, settings.DecimalSeparator);
}

bool TryStrToFloat(QStringView text, float& value, const TFormatSettings& settings) {
    return TryToFloat(text, value, settings);
}

bool TryStrToFloat(QStringView text, double& value, const TFormatSettings& settings) {
    return TryToFloat(text, value, settings);
}

bool TryStrToFloat(QStringView text, extended& value, const TFormatSettings& settings) {
    return TryToFloat(text, value, settings);
}

float StrToSingle(const QString& text, const TFormatSettings& settings) {
    return ToFloat<float>(text, settings);
}

double StrToDouble(const QString& text, const TFormatSettings& settings) {
    return ToFloat<double>(text, settings);
}

extended StrToFloat(const QString& text, const TFormatSettings& settings) {
    return ToFloat<extended>(text, settings);
}

bool TryStrToInt(QStringView text, std::int32_t& value) {
    while (!text.isEmpty() && text.front() == u' ')
        text = text.sliced(1);
    bool negative = false;
    if (!text.isEmpty() && (text.front() == u'+' || text.front() == u'-')) {
        negative = text.front() == u'-';
        text = text.sliced(1);
    }
    int base = 10;
    for (QStringView prefix :
         {QStringView(u"0x"), QStringView(u"0X"), QStringView(u"$"), QStringView(u"x"), QStringView(u"X")}) {
        if (text.startsWith(prefix)) {
            base = 16;
            text = text.sliced(prefix.size());
            break;
        }
    }
    if (text.isEmpty())
        return false;
    const std::int64_t largest = base == 16 ? 0xFFFFFFFFLL : negative ? 0x80000000LL : 0x7FFFFFFFLL;
    std::int64_t magnitude = 0;
    for (QChar c : text) {
        const char16_t unit = c.unicode();
        int digit = -1;
        if (unit >= u'0' && unit <= u'9')
            digit = unit - u'0';
        else if (base == 16 && unit >= u'a' && unit <= u'f')
            digit = unit - u'a' + 10;
        else if (base == 16 && unit >= u'A' && unit <= u'F')
            digit = unit - u'A' + 10;
        if (digit < 0)
            return false;
        magnitude = magnitude * base + digit;
        if (magnitude > largest)
            return false;
    }
    value = static_cast<std::int32_t>(static_cast<std::uint32_t>(negative ? -magnitude : magnitude));
    return true;
}

std::int32_t StrToInt(const QString& text) {
    std::int32_t value = 0;
    if (!TryStrToInt(text, value))
        throw EConvertError(u'\'' + Quotable(text) + QStringLiteral("' is not a valid integer value"));
    return value;
}

bool TryStrToBool(QStringView text, bool& value, const TFormatSettings& settings) {
    extended number = 0;
    if (SameText(text, u"True"))
        value = true;
    else if (SameText(text, u"False"))
        value = false;
    else if (TryStrToFloat(text, number, settings))
        value = number != 0;
    else
        return false;
    return true;
}

bool StrToBool(const QString& text, const TFormatSettings& settings) {
    bool value = false;
    if (!TryStrToBool(text, value, settings))
        throw EConvertError(u'\'' + Quotable(text) + QStringLiteral("' is not a valid boolean value"));
    return value;
}

QString IntToStr(std::int64_t value) {
    char buffer[24];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value);
    return QString::fromLatin1(buffer, end.ptr - buffer);
}

QString BoolToStr(bool value) {
    return value ? QStringLiteral("-1") : QStringLiteral("0");
}

QString BoolToWord(bool value) {
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

} // namespace lmx
