#include <lmx/MapDoc/lmxMapDocRelinker.h>
#include <tests/MapDoc/DocumentMap.h>

#include <QDir>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using namespace tests;

class MapDocRelinker : public testing::Test, TWithPoint {
protected:
    /// A document with an embedded image and one linked image for each folder.
    QString SaveLinked(const QStringList& folders) {
        TDocumentMap map;
        AddImageLayer(map, SmallImage(), nullptr, QStringLiteral("Embedded"));
        for (const QString& folder : folders) {
            EXPECT_TRUE(QDir(FFolder.Path(".")).mkpath(folder));
            const QString path = FFolder.Path(".") + u'/' + folder + QStringLiteral("/tas.rst");
            SmallImage()->SaveToFile(path);
            AddImageLayer(map, std::make_unique<TRealImage>(path, true), nullptr, folder);
        }
        map.Save(FFolder.Path());
        return FFolder.Path();
    }
    static QStringList LinksOf(const QString& fileName) {
        QStringList links;
        const TXmlDocument document = TXmlDocument::FromText(ManifestOf(fileName));
        for (const TXmlNode layer : document.GetRoot().Child(QStringLiteral("layers")).GetChildren())
            if (const TXmlNode link = layer.Child(QStringLiteral("data")).Child(QStringLiteral("filename"));
                !link.IsEmpty())
                links += link.GetText();
        return links;
    }

    TDocumentFolder FFolder;
    TMapDocRelinker FRelinker;
};

TEST_F(MapDocRelinker, AnUnchangedDocumentKeepsItsBytes) {
    SaveLinked({QStringLiteral("a")});
    FRelinker.Relink(FFolder.Path(), FFolder.Path("same"), [](const QString& path) { return path; });
    EXPECT_EQ(FFolder.Read("same"), FFolder.Read());
    FRelinker.Relink(FFolder.Path(), FFolder.Path(), [](const QString& path) { return path; });
    EXPECT_EQ(FFolder.Read("same"), FFolder.Read());
}

TEST_F(MapDocRelinker, LinksFilesInAnotherFolder) {
    FFolder.Write(
        "map.lmx",
        ZipBytes({DeflatedRecord(
            "_meta\\manifest",
            ManifestText(
                LayerText(QStringLiteral("IdrisiMapLayer"),
                          QStringLiteral("<data><resource>linked</resource><filename>C:\\data\\tas.rst"
                                         "</filename></data>")) +
                LayerText(QStringLiteral("ShapeFileLayer"),
                          QStringLiteral("<data><resource>linked</resource><filename>/x/coast.shp"
                                         "</filename></data>")) +
                LayerText(QStringLiteral("Own"), QStringLiteral("<data><resource>other</resource><filename>/x/kept"
                                                                "</filename></data>")))
                .toUtf8())}));
    FRelinker.MoveTo(FFolder.Path(), FFolder.Path("moved"), QStringLiteral("/new"));
    EXPECT_EQ(LinksOf(FFolder.Path("moved")), (QStringList{"/new/tas.rst", "/new/coast.shp", "/x/kept"}));
    FRelinker.Relink(FFolder.Path(), FFolder.Path("folders"), [](const QString&) { return QStringLiteral("/old/"); });
    FRelinker.MoveTo(FFolder.Path("folders"), FFolder.Path("moved"), QStringLiteral("/new"));
    EXPECT_EQ(LinksOf(FFolder.Path("moved")), (QStringList{"/old/", "/old/", "/x/kept"}));
}

TEST_F(MapDocRelinker, PacksADocumentWithItsFiles) {
    const QString source = SaveLinked({QStringLiteral("a"), QStringLiteral("b")});
    ASSERT_TRUE(QDir(FFolder.Path(".")).mkpath(QStringLiteral("packed")));
    const QString packed = FRelinker.Pack(source, FFolder.Path("packed"));
    EXPECT_EQ(packed, FFolder.Path("packed/map.lmx"));
    EXPECT_EQ(LinksOf(packed), (QStringList{FFolder.Path("packed/tas.rst"), FFolder.Path("packed/tas (2).rst")}));
    EXPECT_EQ(QDir(FFolder.Path("packed")).entryList(QDir::Files),
              (QStringList{"map.lmx", "tas (2).rdc", "tas (2).rst", "tas.rdc", "tas.rst"}));
    for (const char* const folder : {"a", "b"})
        ASSERT_TRUE(QDir(FFolder.Path(folder)).removeRecursively());
    TDocumentMap map;
    map.Load(packed);
    EXPECT_EQ(map.LayerNames(), (QStringList{"Embedded", "a", "b"}));
    EXPECT_EQ(map.LayerAt<TIdrisiMapLayer>(2).GetImage()->GetCell(2, 2), 4.0F);
    EXPECT_EQ(MessageOf<EFileException>([&] { FRelinker.Pack(source, FFolder.Path("packed")); }),
              packed + QStringLiteral(": cannot be written: it is there already"));
}

TEST_F(MapDocRelinker, PackingTellsTheDocumentFromFilesOfItsName) {
    TDocumentMap map;
    const auto add = [&](const char* file) {
        SmallImage()->SaveToFile(FFolder.Path(file));
        AddImageLayer(map, std::make_unique<TRealImage>(FFolder.Path(file), true), nullptr);
    };
    ASSERT_TRUE(QDir(FFolder.Path(".")).mkpath(QStringLiteral("a")));
    add("map.rst");
    FFolder.Write("a/MAP.LMX", "another document");
    add("a/MAP.rst");
    map.Save(FFolder.Path());
    ASSERT_TRUE(QDir(FFolder.Path(".")).mkpath(QStringLiteral("packed")));
    const QString packed = FRelinker.Pack(FFolder.Path(), FFolder.Path("packed"));
    EXPECT_EQ(LinksOf(packed), (QStringList{FFolder.Path("packed/map.rst"), FFolder.Path("packed/MAP (2).rst")}));
    EXPECT_EQ(FFolder.Read("packed/MAP (2).LMX"), "another document");
    EXPECT_EQ(QDir(FFolder.Path("packed")).entryList(QDir::Files).size(), 6);
}

TEST_F(MapDocRelinker, ALinkedFileThatIsCalledAsTheDocumentGetsANumber) {
    ASSERT_TRUE(QDir(FFolder.Path(".")).mkpath(QStringLiteral("a")));
    ASSERT_TRUE(QDir(FFolder.Path(".")).mkpath(QStringLiteral("packed")));
    const QString link = FFolder.Write("a/map.lmx", "linked");
    FFolder.Write("map.lmx",
                  ZipBytes({DeflatedRecord(
                      "_meta\\manifest",
                      ManifestText(LayerText(QStringLiteral("ShapeFileLayer"),
                                             QStringLiteral("<data><resource>linked</resource><filename>%1</filename>"
                                                            "</data>")
                                                 .arg(link)))
                          .toUtf8())}));
    const QString packed = FRelinker.Pack(FFolder.Path(), FFolder.Path("packed"));
    EXPECT_EQ(LinksOf(packed), QStringList{FFolder.Path("packed/map (2).lmx")});
    EXPECT_EQ(FFolder.Read("packed/map (2).lmx"), "linked");
}

TEST_F(MapDocRelinker, OneFileByTwoPathsIsCopiedOnce) {
    const QString source = SaveLinked({QStringLiteral("a"), QStringLiteral("a/../a")});
    ASSERT_TRUE(QDir(FFolder.Path(".")).mkpath(QStringLiteral("packed")));
    EXPECT_EQ(LinksOf(FRelinker.Pack(source, FFolder.Path("packed"))), QStringList(2, FFolder.Path("packed/tas.rst")));
}

TEST_F(MapDocRelinker, PackingNeverReplacesAFile) {
    const QString source = SaveLinked({QStringLiteral("a")});
    ASSERT_TRUE(QDir(FFolder.Path(".")).mkpath(QStringLiteral("packed")));
    FFolder.Write("packed/tas.rst", "precious");
    EXPECT_THROW(FRelinker.Pack(source, FFolder.Path("packed")), EFileException);
    EXPECT_EQ(FFolder.Read("packed/tas.rst"), "precious");
    EXPECT_FALSE(QFile::exists(FFolder.Path("packed/map.lmx")));
}

TEST_F(MapDocRelinker, AMissingFileKeepsItsPath) {
    const QString source = SaveLinked({QStringLiteral("a")});
    const QStringList links = LinksOf(source);
    ASSERT_TRUE(QDir(FFolder.Path("a")).removeRecursively());
    ASSERT_TRUE(QDir(FFolder.Path(".")).mkpath(QStringLiteral("packed")));
    EXPECT_EQ(LinksOf(FRelinker.Pack(source, FFolder.Path("packed"))), links);
    EXPECT_EQ(QDir(FFolder.Path("packed")).entryList(QDir::Files), QStringList{"map.lmx"});
}

TEST_F(MapDocRelinker, AFailureLeavesTheTarget) {
    FFolder.Write("target", "old");
    FFolder.Write("bad", "no archive");
    const auto same = [](const QString& path) { return path; };
    EXPECT_THROW(FRelinker.Relink(FFolder.Path("bad"), FFolder.Path("target"), same), EFileFormatException);
    SaveLinked({QStringLiteral("a")});
    EXPECT_THROW(FRelinker.Relink(FFolder.Path(), FFolder.Path("target"),
                                  [](const QString&) -> QString { throw EInvalidOperation(QStringLiteral("no")); }),
                 EInvalidOperation);
    TMapDocLimits limits;
    limits.EntryBytes = 10;
    FRelinker.SetLimits(limits);
    EXPECT_THROW(FRelinker.Relink(FFolder.Path(), FFolder.Path("target"), same), EFileFormatException);
    EXPECT_EQ(MessageOf<EFileException>([&] { FRelinker.Relink(FFolder.Path("."), FFolder.Path("target"), same); }),
              FFolder.Path(".") + QStringLiteral(": cannot be read: no regular file"));
    EXPECT_EQ(MessageOf<EFileException>([&] { FRelinker.Relink(FFolder.Path("none"), FFolder.Path("target"), same); }),
              FFolder.Path("none") + QStringLiteral(": cannot be read: No such file or directory"));
    EXPECT_EQ(FFolder.Read("target"), "old");
}

} // namespace
} // namespace lmx
