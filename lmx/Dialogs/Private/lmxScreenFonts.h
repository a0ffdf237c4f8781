#pragma once

#include <QFont>
#include <QSet>
#include <QString>
#include <QStringList>

namespace lmx {

/// The names of the fonts that there are, as they are when this is made. No font is loaded for it.
class TScreenFonts {
public:
    TScreenFonts();
    explicit TScreenFonts(const QStringList& names);

    const QStringList& GetNames() const { return FNames; } ///< in alphabetical order, each once
    bool Contains(const QString& name) const;              ///< in any case

    /// The name of a font of a form as it stands in the list: a name that stands for whatever there is ("Sans") gives
    /// the font that is used for it, and one that is not listed at all is given as it is.
    QString NameOf(const QFont& font) const;

private:
    QStringList FNames;
    QSet<QString> FFoldedNames;
};

} // namespace lmx
