#include <lmx/Graphics/lmxColorText.h>

#include <lmx/Runtime/lmxExceptions.h>

#include <QRandomGenerator>

#include <string_view>

namespace lmx {

namespace {

constexpr std::u16string_view UpperDigits = u"0123456789ABCDEF";
constexpr std::u16string_view LowerDigits = u"0123456789abcdef";
constexpr qsizetype ColorTextLength = 9;

std::size_t HexValue(QChar c) {
    const std::size_t value = UpperDigits.find(c.unicode());
    return value != std::u16string_view::npos ? value : LowerDigits.find(c.unicode());
}

} // namespace

QString Color32ToString(TColor32 color) {
    QString text(ColorTextLength, u'#');
    for (qsizetype i = ColorTextLength - 1; i > 0; --i, color >>= 4)
        text[i] = UpperDigits[color & 15];
    return text;
}

TColor32 StringToColor32(const QString& text) {
    bool isValid = text.size() == ColorTextLength && text.front() == u'#';
    TColor32 color = 0;
    for (qsizetype i = 1; isValid && i < ColorTextLength; ++i) {
        const std::size_t digit = HexValue(text[i]);
        isValid = digit != std::u16string_view::npos;
        color = color << 4 | (static_cast<TColor32>(digit) & 15);
    }
    if (!isValid)
        throw EConvertError(u'\'' + text + QStringLiteral("' is not a valid color value"));
    return color;
}

TColor32 GetRandomColor32() {
    return clBlack32 | QRandomGenerator::global()->generate();
}

} // namespace lmx
