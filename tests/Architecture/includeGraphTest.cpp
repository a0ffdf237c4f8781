#include <tests/Support/Printers.h>
#include <tests/Support/SourceTree.h>

#include <QFile>
#include <QMap>

#include <gtest/gtest.h>

// Folders are layers: each may include its own headers and those of the folders named here, and no others.

namespace lmx {
namespace {

using namespace tests;

// A folder Private belongs to its room.
QString RoomOf(QString folder) {
    if (folder.endsWith(QStringLiteral("/Private")))
        folder.chop(static_cast<int>(qstrlen("/Private")));
    return folder;
}

const QMap<QString, QStringList>& AllowedRooms() {
    static const QMap<QString, QStringList> allowed = [] {
        const QStringList base{"Runtime"};
        const QStringList data = base + QStringList{"Graphics", "Climate"};
        const QStringList formats{"Formats", "Formats/Idrisi", "Formats/Shapes", "Formats/Text"};
        const QStringList values = data + formats + QStringList{"Coordinates"};
        const QStringList pictures = values + QStringList{"Raster", "Colour", "Colour/Steps", "Colour/Legend"};
        const QStringList render = pictures + QStringList{"Widgets", "Layers/Render"};
        const QStringList map = render + QStringList{"Layers", "Layers/Objects"};
        const QStringList view = map + QStringList{"Controls", "Controls/Legend"};
        return QMap<QString, QStringList>{
            {"Runtime", {}},
            {"Graphics", base},
            {"Climate", base},
            {"Widgets", base + QStringList{"Graphics"}},
            {"Formats", data},
            {"Formats/Text", data + QStringList{"Formats"}},
            {"Formats/Idrisi", data + QStringList{"Formats", "Formats/Text"}},
            {"Formats/Shapes", data + QStringList{"Formats", "Formats/Text"}},
            {"Coordinates", data + formats},
            {"Raster", values},
            {"Colour/Steps", values},
            {"Colour", values + QStringList{"Raster", "Colour/Steps"}},
            {"Colour/Legend", values + QStringList{"Raster", "Colour", "Colour/Steps"}},
            {"Layers/Render", pictures},
            {"Layers", render},
            {"Layers/Objects", render + QStringList{"Layers"}},
            {"Controls/Legend", map},
            {"Controls", map + QStringList{"Controls/Legend"}},
            {"MapDoc", view},
            {"Dialogs", view},
            {"DataSources", view + QStringList{"Dialogs", "MapDoc"}},
            {"Pictures", view + QStringList{"MapDoc"}},
        };
    }();
    return allowed;
}

// The deliberate ways back. A layer has its legend control and its property pages made, the layer of annotations calls
// them, and a control opens the dialogs of what it lists; each through one source, its door.
const QMap<QString, QStringList>& Doors() {
    static const QMap<QString, QStringList> doors{
        {"lmx/Layers/lmxLayerComponents.cpp", {"Controls/Legend", "Dialogs"}},
        {"lmx/Layers/lmxObjectMapLayer.cpp", {"Layers/Objects"}},
        {"lmx/Controls/lmxControlDialogs.cpp", {"Dialogs"}},
    };
    return doors;
}

// Headers that the build makes.
QStringList MadeHeaders() {
    return {QStringLiteral("lmx/Runtime/lmxExport.h"), QStringLiteral("lmx/DataSources/lmxDataSourcesExport.h")};
}

// A room's umbrella header, which is for hosts: "lmx/Layers/lmxLayers.h".
bool IsUmbrella(const TSourceFile& file) {
    return file.Path == QStringLiteral("lmx/%1/lmx%1.h").arg(file.Folder());
}

bool IsPrivate(const TSourceFile& file) {
    return file.Folder().endsWith(QStringLiteral("Private"));
}

bool MayInclude(const TSourceFile& file, const QString& folder) {
    const QString from = RoomOf(file.Folder());
    const QString to = RoomOf(folder);
    return from == to || AllowedRooms()[from].contains(to) || Doors()[file.Path].contains(to);
}

TEST(IncludeGraph, EveryFolderHasItsPlace) {
    const auto sources = LibrarySources();
    ASSERT_GT(sources.size(), 20U);
    for (const TSourceFile& file : sources)
        EXPECT_TRUE(AllowedRooms().contains(RoomOf(file.Folder()))) << file.Path.toStdString();
}

TEST(IncludeGraph, PointsOneWay) {
    int includes = 0;
    for (const TSourceFile& file : LibrarySources()) {
        for (const QString& include : IncludesOf(file.Text)) {
            if (!include.startsWith(QStringLiteral("lmx/")) || IsUmbrella(file))
                continue;
            ++includes;
            EXPECT_TRUE(MayInclude(file, include.section(u'/', 1, -2)))
                << file.Path.toStdString() << " includes " << include.toStdString();
            EXPECT_TRUE(MadeHeaders().contains(include) || QFile::exists(QStringLiteral(LMX_SOURCE_DIR "/") + include))
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

TEST(IncludeGraph, AllowedRoomsNeverLeadBack) {
    for (auto from = AllowedRooms().begin(); from != AllowedRooms().end(); ++from)
        for (const QString& to : from.value())
            EXPECT_FALSE(AllowedRooms()[to].contains(from.key()))
                << from.key().toStdString() << " and " << to.toStdString();
}

TEST(IncludeGraph, HeadersAreReadOnce) {
    const QString guard = QStringLiteral("#pragma once");
    for (const TSourceFile& file : LibrarySources())
        EXPECT_EQ(file.Text.count(guard), file.IsHeader() ? 1 : 0) << file.Path.toStdString();
}

// What a host includes is installed, and what is private is not.
TEST(IncludeGraph, PublicHeadersIncludePublicHeaders) {
    for (const TSourceFile& file : LibrarySources()) {
        if (!file.IsHeader() || IsPrivate(file))
            continue;
        for (const QString& include : IncludesOf(file.Text))
            EXPECT_FALSE(include.contains(QStringLiteral("/Private/")))
                << file.Path.toStdString() << " includes " << include.toStdString();
    }
}

TEST(IncludeGraph, UmbrellaHeadersHoldTheirRoom) {
    QMap<QString, QStringList> publicHeaders;
    QMap<QString, QStringList> umbrellas;
    for (const TSourceFile& file : LibrarySources()) {
        if (!file.IsHeader() || IsPrivate(file))
            continue;
        const QString house = file.Folder().section(u'/', 0, 0);
        if (IsUmbrella(file))
            umbrellas[house] = IncludesOf(file.Text);
        else
            publicHeaders[house] += file.Path;
    }
    for (const QString& made : MadeHeaders())
        publicHeaders[made.section(u'/', 1, 1)] += made;
    for (auto house = publicHeaders.begin(); house != publicHeaders.end(); ++house) {
        house.value().sort();
        EXPECT_EQ(umbrellas[house.key()], house.value()) << house.key().toStdString();
    }
}

TEST(IncludeGraph, UmbrellaHeadersAreForHosts) {
    for (const TSourceFile& file : LibrarySources())
        for (const QString& include : IncludesOf(file.Text))
            EXPECT_FALSE(IsUmbrella({include, {}})) << file.Path.toStdString() << " includes " << include.toStdString();
}

TEST(IncludeGraph, OwnHeadersComeFirst) {
    const auto sources = LibrarySources();
    QStringList paths;
    for (const TSourceFile& file : sources)
        paths += file.Path;
    for (const TSourceFile& file : sources) {
        if (file.IsHeader())
            continue;
        QString own = file.Path;
        own.replace(own.size() - 4, 4, QStringLiteral(".h"));
        const qsizetype name = own.lastIndexOf(u'/') + 1;
        if (const QString hidden = own.left(name) + QStringLiteral("Private/") + own.mid(name); paths.contains(hidden))
            own = hidden;
        if (paths.contains(own)) {
            EXPECT_EQ(IncludesOf(file.Text).value(0), own) << file.Path.toStdString();
        }
    }
}

TEST(IncludeGraph, DoorsAreThere) {
    for (auto door = Doors().begin(); door != Doors().end(); ++door)
        EXPECT_TRUE(QFile::exists(QStringLiteral(LMX_SOURCE_DIR "/") + door.key())) << door.key().toStdString();
}

TEST(IncludeGraph, TellsARuleFromABreach) {
    EXPECT_FALSE(MayInclude({"lmx/Runtime/a.h", {}}, "Graphics"));
    EXPECT_FALSE(MayInclude({"lmx/Colour/a.cpp", {}}, "Layers"));
    EXPECT_FALSE(MayInclude({"lmx/Layers/a.h", {}}, "Dialogs"));
    EXPECT_FALSE(MayInclude({"lmx/Controls/a.h", {}}, "Dialogs"));
    EXPECT_FALSE(MayInclude({"lmx/Colour/a.cpp", {}}, "Dialogs"));
    EXPECT_FALSE(MayInclude({"lmx/Layers/a.cpp", {}}, "Dialogs"));
    EXPECT_FALSE(MayInclude({"lmx/Layers/Render/a.cpp", {}}, "Layers"));
    EXPECT_TRUE(MayInclude({"lmx/Layers/lmxLayerComponents.cpp", {}}, "Dialogs"));
    EXPECT_TRUE(MayInclude({"lmx/Controls/lmxControlDialogs.cpp", {}}, "Dialogs"));
    EXPECT_TRUE(MayInclude({"lmx/Colour/a.cpp", {}}, "Colour/Steps/Private"));
    EXPECT_TRUE(MayInclude({"lmx/Controls/Legend/a.h", {}}, "Layers"));
    EXPECT_EQ(IncludesOf("#include <a/b.h>\n  # include \"c.h\"\n//#include <d.h>\n"), (QStringList{"a/b.h", "c.h"}));
}

} // namespace
} // namespace lmx
