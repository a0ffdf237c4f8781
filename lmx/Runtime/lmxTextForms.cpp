#include <lmx/Runtime/lmxTextForms.h>

#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxText.h>

#include <array>
#include <string_view>

namespace lmx {

namespace {

// Letters that stand for a control character after a backslash, and what they stand for.
constexpr std::u16string_view EscapeLetters = u"abfnrtv";
constexpr std::u16string_view EscapedCharacters = u"\a\b\f\n\r\t\v";

bool IsOctalDigit(QChar c) {
    return c >= u'0' && c <= u'7';
}

int HexValue(QChar c) {
    if (c >= u'0' && c <= u'9')
        return c.unicode() - u'0';
    if (c >= u'a' && c <= u'f')
        return c.unicode() - u'a' + 10;
    if (c >= u'A' && c <= u'F')
        return c.unicode() - u'A' + 10;
    return -1;
}

[[noreturn]] void RefuseEscape() {
    throw EConvertError(QStringLiteral("Invalid escape sequence"));
}

// Reads the hexadecimal digits from `at`, at least `least` and at most four, and moves past them.
QChar ReadHexCharacter(const QString& text, qsizetype& at, int least) {
    char32_t unit = 0;
    int digits = 0;
    for (; digits < 4 && at < text.size() && HexValue(text[at]) >= 0; ++digits, ++at)
        unit = unit * 16 + static_cast<char32_t>(HexValue(text[at]));
    if (digits < least)
        RefuseEscape();
    return QChar(static_cast<char16_t>(unit));
}

QChar ReadOctalCharacter(const QString& text, qsizetype& at) {
    char16_t unit = 0;
    for (int digits = 0; digits < 3 && at < text.size() && IsOctalDigit(text[at]); ++digits, ++at)
        unit = static_cast<char16_t>(unit * 8 + (text[at].unicode() - u'0'));
    return QChar(unit);
}

QString JoinIntegers(std::initializer_list<std::int32_t> values) {
    QStringList texts;
    for (std::int32_t value : values)
        texts += IntToStr(value);
    return texts.join(u',');
}

template<std::size_t Count>
std::array<std::int32_t, Count> SplitIntegers(const QString& text, const QString& failure) {
    const QStringList pieces = Split(text, u',');
    std::array<std::int32_t, Count> values{};
    if (pieces.size() != static_cast<qsizetype>(Count))
        throw EConvertError(failure);
    for (std::size_t i = 0; i < Count; ++i)
        if (!TryStrToInt(pieces[static_cast<qsizetype>(i)], values[i]))
            throw EConvertError(failure);
    return values;
}

} // namespace

QString CStyleEscape(const QString& text) {
    QString escaped;
    escaped.reserve(text.size());
    for (QChar c : text) {
        const char16_t unit = c.unicode();
        if (unit == u'"' || unit == u'\\') {
            escaped += u'\\';
            escaped += c;
        } else if (const std::size_t letter = EscapedCharacters.find(unit); letter != std::u16string_view::npos) {
            escaped += u'\\';
            escaped += QChar(EscapeLetters[letter]);
        } else if (unit < 0x20 || unit == 0x7F) {
            escaped += u'\\';
            for (int shift = 6; shift >= 0; shift -= 3)
                escaped += QChar(static_cast<char16_t>(u'0' + ((unit >> shift) & 7)));
        } else {
            escaped += c;
        }
    }
    return escaped;
}

QString CStyleUnescape(const QString& text) {
    QString plain;
    plain.reserve(text.size());
    for (qsizetype at = 0; at < text.size();) {
        if (text[at] != u'\\') {
            plain += text[at++];
            continue;
        }
        if (++at == text.size())
            RefuseEscape();
        const QChar c = text[at];
        if (IsOctalDigit(c)) {
            plain += ReadOctalCharacter(text, at);
            continue;
        }
        ++at;
        if (const std::size_t letter = EscapeLetters.find(c.unicode()); letter != std::u16string_view::npos)
            plain += QChar(EscapedCharacters[letter]);
        else if (c == u'x')
            plain += ReadHexCharacter(text, at, 1);
        else if (c == u'u')
            plain += ReadHexCharacter(text, at, 4);
        else if (c == u'"' || c == u'\\' || c == u'\'' || c == u'?')
            plain += c;
        else
            RefuseEscape();
    }
    return plain;
}

qsizetype CStyleEscapedGetLength(const QString& text, qsizetype index) {
    const qsizetype start = index - 1;
    if (start < 0 || start >= text.size() || text[start] != u'"')
        return 0;
    for (qsizetype at = start + 1; at < text.size(); ++at) {
        if (text[at] == u'\\')
            ++at;
        else if (text[at] == u'"')
            return at - start + 1;
    }
    return 0;
}

QString PointToString(TPoint point) {
    return JoinIntegers({point.X, point.Y});
}

QString SizeToString(TSize size) {
    return JoinIntegers({size.cx, size.cy});
}

QString RectToString(TRect rect) {
    return JoinIntegers({rect.Left, rect.Top, rect.Right, rect.Bottom});
}

TPoint StringToPoint(const QString& text) {
    const auto [x, y] = SplitIntegers<2>(text, QStringLiteral("Invalid point text"));
    return {x, y};
}

TSize StringToSize(const QString& text) {
    const auto [width, height] = SplitIntegers<2>(text, QStringLiteral("Invalid size text"));
    return {width, height};
}

TRect StringToRect(const QString& text) {
    const auto [left, top, right, bottom] = SplitIntegers<4>(text, QStringLiteral("Invalid rectangle text"));
    return {left, top, right, bottom};
}

} // namespace lmx
