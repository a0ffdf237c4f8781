#include <lmx/Dialogs/Private/lmxScreenFonts.h>

#include <QFontDatabase>
#include <QFontInfo>

namespace lmx {

namespace {

/// Where several makers have a font of one name, Qt adds the maker: "Courier [Adobe]".
QString WithoutMaker(const QString& family) {
    const qsizetype maker = family.endsWith(u']') ? family.lastIndexOf(QStringLiteral(" [")) : -1;
    return maker > 0 ? family.left(maker) : family;
}

QStringList PublicFamilies() {
    QStringList names;
    for (const QString& family : QFontDatabase::families())
        if (!QFontDatabase::isPrivateFamily(family))
            names.append(WithoutMaker(family));
    return names;
}

} // namespace

TScreenFonts::TScreenFonts() : TScreenFonts(PublicFamilies()) {}

TScreenFonts::TScreenFonts(const QStringList& names) : FNames(names) {
    FNames.removeDuplicates();
    FNames.sort(Qt::CaseInsensitive);
    for (const QString& name : FNames)
        FFoldedNames.insert(name.toCaseFolded());
}

bool TScreenFonts::Contains(const QString& name) const {
    return FFoldedNames.contains(name.toCaseFolded());
}

QString TScreenFonts::NameOf(const QFont& font) const {
    if (Contains(font.family()))
        return font.family();
    const QString used = WithoutMaker(QFontInfo(font).family());
    return Contains(used) ? used : font.family();
}

} // namespace lmx
