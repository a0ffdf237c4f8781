#include "FileKinds.h"

#include <lmx/Runtime/lmxText.h>

#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <array>
#include <span>

#include "ClimateFiles.h"

namespace {

struct TFileKindEntry {
    TFileKind Kind;
    const char* Name;
    const char* Suffixes;
};

constexpr std::array<TFileKindEntry, 6> Kinds = {{
    {TFileKind::fkDocument, "Map documents", "lmx"},
    {TFileKind::fkIdrisiImage, "Idrisi images", "rst rdc img doc"},
    {TFileKind::fkAsciiGrid, "ASCII grids", "asc grd txt"},
    {TFileKind::fkShapes, "Shape files", "shp"},
    {TFileKind::fkIdrisiVectors, "Idrisi vectors", "vct vdc vec dvc"},
    {TFileKind::fkClimate, "Climate files", "nc nc4 cdf h5 hdf5 grib grb grib2 grb2 tif tiff zarr zip"},
}};

/// Each suffix of a kind after `before`, parted by `between`.
QString SuffixesOf(const TFileKindEntry& entry, const QString& before, const QString& between) {
    QStringList suffixes = QString::fromLatin1(entry.Suffixes).split(' ');
    for (QString& suffix : suffixes)
        suffix.prepend(before);
    return suffixes.join(between);
}

/// Those that this viewer opens.
std::span<const TFileKindEntry> OpenKinds() {
    return std::span(Kinds).first(TClimateFiles::CanOpen() ? Kinds.size() : Kinds.size() - 1);
}

} // namespace

const QString DocumentSuffix = QStringLiteral(".lmx");

TFileKind KindOf(const QString& fileName) {
    const QString suffix = QFileInfo(fileName).suffix();
    for (const TFileKindEntry& entry : Kinds)
        if (std::ranges::any_of(QString::fromLatin1(entry.Suffixes).split(' '),
                                [&](const QString& known) { return lmx::SameText(suffix, known); }))
            return entry.Kind;
    return TFileKind::fkAsciiGrid;
}

QString KnownFiles() {
    QStringList kinds;
    for (const TFileKindEntry& entry : OpenKinds())
        kinds += QString::fromLatin1(entry.Name) + " (" + SuffixesOf(entry, ".", ", ") + ')';
    return kinds.join(", ");
}

QString DocumentsFilter() {
    return QString::fromLatin1(Kinds[0].Name) + '|' + SuffixesOf(Kinds[0], "*.", ";");
}

QString KnownFilesFilter() {
    QStringList all;
    QString filter;
    for (const TFileKindEntry& entry : OpenKinds()) {
        const QString patterns = SuffixesOf(entry, "*.", ";");
        all += patterns;
        filter += '|' + QString::fromLatin1(entry.Name) + '|' + patterns;
    }
    return "Maps|" + all.join(';') + filter + "|All files|*";
}
