#include <lmx/Dialogs/lmxPaletteSources.h>

#include <lmx/Colour/lmxColorPack.h>
#include <lmx/Colour/lmxColorPalette.h>
#include <lmx/Dialogs/Private/lmxPaletteChoice.h>
#include <lmx/Layers/lmxLayerManagerConfig.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lmx {
namespace {

struct PaletteSources : testing::Test {
    void Write(const QString& name, const QByteArray& content) {
        ASSERT_TRUE(QDir(Folder.path()).mkpath(QFileInfo(name).path()));
        QFile file(Folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    static QStringList NamesOf(const std::vector<TResource>& resources) {
        QStringList names;
        for (const TResource& resource : resources)
            names += resource.Folder + u':' + resource.Name;
        return names;
    }

    const QTemporaryDir Folder;
    const std::shared_ptr<ILayerManagerConfig> Config = TLayerManagerConfigFactory::GetObject();
};

const QByteArray TwoColors = "QUORVAN45PAL\n255 0 0 255\n0 0 255 255\n";

TEST_F(PaletteSources, GiveThePackByOneCall) {
    AddColorPack(*Config);
    AddColorPack(*Config);
    ASSERT_EQ(Config->PaletteSources().size(), 1U);
    const auto source = Config->PaletteSources()[0]->GetSource();
    EXPECT_EQ(source->GetName(), "Color pack");
    const auto resources = source->GetResources();
    ASSERT_EQ(resources.size(), TColorPack::GetScales().size());
    for (std::size_t i = 0; i < resources.size(); ++i) {
        const TColorScale& scale = TColorPack::GetScales()[i];
        EXPECT_EQ(resources[i].Name, scale.Name);
        EXPECT_EQ(resources[i].Folder, scale.Group);
        EXPECT_EQ(resources[i].TypeName, "IdrisiPalFileName");
        EXPECT_EQ(source->GetColors(resources[i]), scale.Colors);
        TColorPalette palette;
        palette.Load(resources[i].FileName);
        EXPECT_EQ(static_cast<const std::vector<TColor32>&>(palette), scale.Colors);
    }
    EXPECT_TRUE(source->GetNotes().isEmpty());
    EXPECT_TRUE(source->GetColors({"No such scale", "IdrisiPalFileName", "", ""}).empty());
}

// Between the user's choice and the load nobody holds the source.
TEST_F(PaletteSources, KeepThePackWhenItsSourceHasGone) {
    AddColorPack(*Config);
    const QString fileName = Config->PaletteSources()[0]->GetSource()->GetResources()[0].FileName;
    TColorPalette palette;
    palette.Load(fileName);
    EXPECT_EQ(palette.size(), 16U);
    ASSERT_TRUE(QFile::remove(fileName));
    Config->PaletteSources()[0]->GetSource();
    palette.Load(fileName);
    EXPECT_EQ(palette.size(), 16U) << "written again";
    Config->PaletteSources().clear();
    EXPECT_FALSE(QFile::exists(fileName));
}

TEST_F(PaletteSources, TellOfAPackThatCannotBeWritten) {
    AddColorPack(*Config);
    const QByteArray before = qgetenv("TMPDIR");
    Write("none", "a file, and no folder");
    const QString none = Folder.filePath("none");
    qputenv("TMPDIR", none.toLocal8Bit());
    const QString message = tests::MessageOf<EFileException>([this] { Config->PaletteSources()[0]->GetSource(); });
    before.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", before);
    EXPECT_TRUE(message.startsWith(none + ": ")) << message.toStdString();
    const auto source = Config->PaletteSources()[0]->GetSource();
    EXPECT_TRUE(QFile::exists(source->GetResources()[0].FileName)) << "the next time it is";
}

TEST_F(PaletteSources, ReachTheUserWhoLoadsOne) {
    Write("own.pal", TwoColors);
    AddColorPack(*Config);
    AddPaletteFolder(*Config, "Mine", Folder.path());
    const tests::TScriptedResBrowser browser;
    browser->Answers = {TResource{"own", "IdrisiPalFileName", Folder.filePath("own.pal"), ""}};
    const auto choice = ChoosePalette(Config, nullptr);
    EXPECT_EQ(browser->Shown[0], (std::vector<QString>{"Color pack", "Mine"}));
    ASSERT_TRUE(choice && choice->IsPalette());
    EXPECT_EQ(choice->FileName, Folder.filePath("own.pal"));
}

TEST_F(PaletteSources, ListAFolderAndWhatLiesBelow) {
    Write("winter_rain.pal", TwoColors);
    Write("old.smp", TwoColors);
    Write("readme.txt", "none");
    Write("Climate/b.pal", TwoColors);
    Write("Climate/a.v2.pal", TwoColors);
    Write("Climate/Winter/snow.pal", "0 1 2 3\n");
    TPaletteFolderSource source("Mine", Folder.path() + "/");
    EXPECT_EQ(source.GetName(), "Mine");
    const auto resources = source.GetResources();
    EXPECT_EQ(NamesOf(resources),
              (QStringList{":old", ":winter rain", "Climate:a.v2", "Climate:b", "Climate/Winter:snow"}));
    EXPECT_EQ(resources[1].FileName, Folder.filePath("winter_rain.pal"));
    EXPECT_EQ(source.GetColors(resources[1]), (std::vector<TColor32>{0xFFFF0000U, 0xFF0000FFU}));
    EXPECT_TRUE(source.GetNotes().isEmpty());
    Write("new.pal", TwoColors);
    EXPECT_EQ(source.GetResources().size(), 6U) << "the folder is read anew";
}

TEST_F(PaletteSources, LeaveOutWhatCannotBeReadWithANote) {
    Write("good.pal", TwoColors);
    Write("empty.pal", "");
    Write("none.pal", "QUORVAN45PAL\n");
    Write("letters.pal", "QUORVAN45PAL\nred green blue 255\n");
    Write("large.pal", "QUORVAN45PAL\n256 0 0 255\n");
    Write("bytes.pal", QByteArray("\x89PNG\r\n\x1a\n\0\0\0", 11));
    Write("cut.smp", "[Idrisi]");
    Write("huge.pal", QByteArray(16 * 1024 * 1024 + 1, '0'));
    TPaletteFolderSource source("Mine", Folder.path());
    EXPECT_EQ(NamesOf(source.GetResources()), QStringList(":good"));
    QStringList notes = source.GetNotes();
    ASSERT_EQ(notes.size(), 7);
    QStringList said;
    for (const QString& note : notes)
        said += QString(note).remove(Folder.path() + u'/');
    EXPECT_EQ(said, (QStringList{"bytes.pal: line 1 of the palette is not an index and three components",
                                 "cut.smp: the palette is cut short", "empty.pal: Invalid palette file",
                                 "huge.pal: holds more than 16777216 bytes",
                                 "large.pal: '256' is not a valid color component",
                                 "letters.pal: 'red' is not a valid integer value", "none.pal: there are no colors"}));
    source.GetResources();
    EXPECT_EQ(source.GetNotes(), notes) << "not twice";
}

TEST_F(PaletteSources, DoNotFollowLinksToFolders) {
    Write("own.pal", TwoColors);
    ASSERT_TRUE(QFile::link(Folder.path(), Folder.filePath("again")));
    EXPECT_EQ(NamesOf(TPaletteFolderSource("Mine", Folder.path()).GetResources()), QStringList(":own"));
}

TEST_F(PaletteSources, TellOfAFolderThatIsNotThere) {
    TPaletteFolderSource source("Mine", Folder.filePath("none"));
    EXPECT_TRUE(source.GetResources().empty());
    EXPECT_EQ(source.GetNotes(), QStringList(Folder.filePath("none") + ": there is no such folder"));
}

TEST_F(PaletteSources, GiveAListThatEnds) {
    for (int i = 0; i <= TPaletteFolderSource::MostFiles; ++i)
        Write(QStringLiteral("%1.pal").arg(i), "0 1 2 3\n");
    TPaletteFolderSource source("Mine", Folder.path());
    EXPECT_EQ(source.GetResources().size(), static_cast<std::size_t>(TPaletteFolderSource::MostFiles));
    EXPECT_EQ(source.GetNotes(), QStringList(Folder.path() + ": there are more palettes than can be listed"));
}

} // namespace
} // namespace lmx
