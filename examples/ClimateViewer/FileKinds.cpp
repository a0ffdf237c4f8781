#include "FileKinds.h"

#include <lmx/Runtime/lmxText.h>

#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <array>

namespace {

struct TFileKindEntry {
    TFileKind Kind;
    const char* Name;
    const char* Suffixes;
};

constexpr std::array<TFileKindEntry, 5> Kinds = {{
    {TFileKind::Document, "Map documents", "lmx"},
    {TFileKind::IdrisiImage, "Idrisi images", "rst rdc img doc"},
    {TFileKind::AsciiGrid, "ASCII grids", "asc grd txt"},
    {TFileKind::Shapes, "Shape files", "shp"},
    {TFileKind::IdrisiVectors, "Idrisi vectors", "vct vdc vec dvc"},
}};

/// Each suffix of a kind after `before`, parted by `between`.
QString SuffixesOf(const TFileKindEntry& entry, const QString& before, const QString& between) {
    QStringList suffixes = QString::fromLatin1(entry.Suffixes).split(' ');
    for (QString& suffix : suffixes)
        suffix.prepend(before);
    return suffixes.join(between);
}

} // namespace

const QString DocumentSuffix = QStringLiteral(".lmx");

TFileKind KindOf(const QString& fileName) {
    const QString suffix = QFileInfo(fileName).suffix();
    for (const TFileKindEntry& entry : Kinds)
        if (std::ranges::any_of(QString::fromLatin1(entry.Suffixes).split(' '),
                                [&](const QString& known) { return lmx::SameText(suffix, known); }))
            return entry.Kind;
    return TFileKind::AsciiGrid;
}

QString KnownFiles() {
    QStringList kinds;
    for (const TFileKindEntry& entry : Kinds)
        kinds += QString::fromLatin1(entry.Name) + " (" + SuffixesOf(entry, ".", ", ") + ')';
    return kinds.join(", ");
}

QString DocumentsFilter() {
    return QString::fromLatin1(Kinds[0].Name) + '|' + SuffixesOf(Kinds[0], "*.", ";");
}

QString KnownFilesFilter() {
    QStringList all;
    QString filter;
    for (const TFileKindEntry& entry : Kinds) {
        const QString patterns = SuffixesOf(entry, "*.", ";");
        all += patterns;
        filter += '|' + QString::fromLatin1(entry.Name) + '|' + patterns;
    }
    return "Maps|" + all.join(';') + filter + "|All files|*";
}
