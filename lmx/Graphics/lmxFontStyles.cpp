#include <lmx/Graphics/lmxFontStyles.h>

#include <lmx/Runtime/Private/lmxNamedSet.h>

#include <array>

namespace lmx {

namespace {

constexpr std::array<QStringView, 4> Names = {u"fsBold", u"fsItalic", u"fsUnderline", u"fsStrikeOut"};

} // namespace

QString FontStylesToString(TFontStyles styles) {
    return SetToString(styles, Names);
}

TFontStyles StringToFontStyles(const QString& text) {
    return StringToSet<TFontStyle>(text, Names, QStringLiteral("Invalid font styles text"));
}

} // namespace lmx
