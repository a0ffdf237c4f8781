#include <tests/Support/Printers.h>
#include <tests/Support/SourceTree.h>

#include <QFile>
#include <QMap>

#include <gtest/gtest.h>

// Folders are layers: each may include its own headers and those of the folders named here, and no others.

namespace lmx {
namespace {

using namespace tests;

const QMap<QString, QStringList>& AllowedFolders() {
    static const QMap<QString, QStringList> allowed = [] {
        const QStringList base{"Runtime"};
        const QStringList data = base + QStringList{"Graphics", "Climate"};
        const QStringList values = data + QStringList{"Formats", "Coordinates"};
        const QStringList pictures = values + QStringList{"Raster", "Colour"};
        const QStringList map = pictures + QStringList{"Widgets", "Layers"};
        const QStringList view = map + QStringList{"Controls", "Controls/Legend"};
        return QMap<QString, QStringList>{
            {"Runtime", {}},
            {"Graphics", base},
            {"Climate", base},
            {"Widgets", base + QStringList{"Graphics"}},
            {"Formats", data},
            {"Coordinates", data + QStringList{"Formats"}},
            {"Raster", values},
            {"Colour", values + QStringList{"Raster"}},
            {"Layers", pictures + QStringList{"Widgets"}},
            {"Controls/Legend", map},
            {"Controls", map + QStringList{"Controls/Legend"}},
            {"MapDoc", view},
            {"Dialogs", view},
        };
    }();
    return allowed;
}

// A layer makes its own legend control and its own property pages, and a control opens the dialogs of what it lists. So
// sources of these folders, and no headers, look up.
const QMap<QString, QStringList>& FoldersForSources() {
    static const QMap<QString, QStringList> folders{
        {"Layers", {"Controls/Legend", "Dialogs"}},
        {"Controls", {"Dialogs"}},
        {"Controls/Legend", {"Dialogs"}},
    };
    return folders;
}

bool MayInclude(const TSourceFile& file, const QString& folder) {
    return folder == file.Folder() || AllowedFolders()[file.Folder()].contains(folder) ||
           (!file.IsHeader() && FoldersForSources()[file.Folder()].contains(folder));
}

TEST(IncludeGraph, EveryFolderHasItsPlace) {
    const auto sources = LibrarySources();
    ASSERT_GT(sources.size(), 20U);
    for (const TSourceFile& file : sources)
        EXPECT_TRUE(AllowedFolders().contains(file.Folder())) << file.Path.toStdString();
}

TEST(IncludeGraph, PointsOneWay) {
    int includes = 0;
    for (const TSourceFile& file : LibrarySources()) {
        for (const QString& include : IncludesOf(file.Text)) {
            if (!include.startsWith(QStringLiteral("lmx/")))
                continue;
            ++includes;
            EXPECT_TRUE(MayInclude(file, include.section(u'/', 1, -2)))
                << file.Path.toStdString() << " includes " << include.toStdString();
            EXPECT_TRUE(QFile::exists(QStringLiteral(LMX_SOURCE_DIR "/") + include))
                << file.Path.toStdString() << " includes " << include.toStdString();
        }
    }
    EXPECT_GT(includes, 20);
}

TEST(IncludeGraph, OwnHeadersAreIncludedByTheirWholePath) {
    for (const TSourceFile& file : LibrarySources())
        for (const QString& include : IncludesOf(file.Text))
            EXPECT_FALSE(include.startsWith(QStringLiteral("lmx")) && !include.startsWith(QStringLiteral("lmx/")))
                << file.Path.toStdString() << " includes " << include.toStdString();
}

TEST(IncludeGraph, AllowedFoldersNeverLeadBack) {
    for (auto from = AllowedFolders().begin(); from != AllowedFolders().end(); ++from)
        for (const QString& to : from.value())
            EXPECT_FALSE(AllowedFolders()[to].contains(from.key()))
                << from.key().toStdString() << " and " << to.toStdString();
}

TEST(IncludeGraph, HeadersAreReadOnce) {
    const QString guard = QStringLiteral("#pragma once");
    for (const TSourceFile& file : LibrarySources())
        EXPECT_EQ(file.Text.count(guard), file.IsHeader() ? 1 : 0) << file.Path.toStdString();
}

TEST(IncludeGraph, TellsARuleFromABreach) {
    EXPECT_FALSE(MayInclude({"lmx/Runtime/a.h", {}}, "Graphics"));
    EXPECT_FALSE(MayInclude({"lmx/Colour/a.cpp", {}}, "Layers"));
    EXPECT_FALSE(MayInclude({"lmx/Layers/a.h", {}}, "Dialogs"));
    EXPECT_FALSE(MayInclude({"lmx/Controls/a.h", {}}, "Dialogs"));
    EXPECT_FALSE(MayInclude({"lmx/Colour/a.cpp", {}}, "Dialogs"));
    EXPECT_TRUE(MayInclude({"lmx/Layers/a.cpp", {}}, "Dialogs"));
    EXPECT_TRUE(MayInclude({"lmx/Controls/a.cpp", {}}, "Dialogs"));
    EXPECT_TRUE(MayInclude({"lmx/Controls/Legend/a.h", {}}, "Layers"));
    EXPECT_EQ(IncludesOf("#include <a/b.h>\n  # include \"c.h\"\n//#include <d.h>\n"), (QStringList{"a/b.h", "c.h"}));
}

} // namespace
} // namespace lmx
