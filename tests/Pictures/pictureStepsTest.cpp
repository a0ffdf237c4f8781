#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/MapDoc/lmxMapDocLayerPersist.h>
#include <lmx/MapDoc/lmxMapDocWriter.h>
#include <lmx/Runtime/lmxText.h>
#include <tests/Pictures/PictureMap.h>
#include <tests/Pictures/PictureProgram.h>
#include <tests/Support/Printers.h>

#include <QDir>
#include <QFile>
#include <QImage>

#include <gtest/gtest.h>

// lmx-picture --steps as a script calls it, on documents with a layer of a climate file.

namespace lmx {
namespace {

using namespace tests;

const QString Samples = QStringLiteral(LMX_SOURCE_DIR "/tests/data/netcdf/");

class PictureSteps : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(FFolder.isValid()); }

    QString Path(const QString& name) const { return FFolder.filePath(name); }

    /// A document whose layer says that it comes from there; its own two cells are from nowhere.
    QString Document(const QString& lineage, const QString& name = QStringLiteral("map.lmx")) {
        const TFormatSettingsScope settings(TFormatSettings::Invariant());
        TPictureMap map;
        map.Raster->GetImage()->getHeader()->SetLineage(lineage);
        map.Raster->GetImage()->getHeader()->SetValueUnits(QStringLiteral("°C"));
        map.Raster->SetLayerName(QStringLiteral("Sea, January"));
        TMapViewControl view;
        view.SetLayerManager(map.Manager);
        view.CreateWorldAndViewport(TLatLonWorldSystemFactory::GetObject());
        const auto keepers = TMapDocLayerPersistFactory::GetObject();
        TMapDocLayerPersistFactory::PopulateDefault(keepers);
        TMapDocWriter("AnyHost", keepers).Write(Path(name), &view, TMapDocExternalResourcePolicy::erpKeepExternal);
        return Path(name);
    }
    QString SeaDocument() { return Document(Samples + QStringLiteral("coads_sst.nc\nSST\nJanuary")); }

    TProgramOutcome Run(const QStringList& options, const QString& picture = QStringLiteral("map.png")) {
        return RunPictureProgram(QStringList{SeaDocument(), Path(picture), "--size", "240x140"} + options);
    }
    QStringList Files(const QString& pattern) const {
        return QDir(FFolder.path()).entryList({pattern}, QDir::Files | QDir::Hidden, QDir::Name);
    }

    QTemporaryDir FFolder;
};

TEST_F(PictureSteps, RefuseWrongArguments) {
    const auto complaint = [](const QStringList& options) {
        return ComplaintsOf(QStringList{"a.lmx", "a.png"} + options).join(u'|');
    };
    const QString form = QStringLiteral(
        "lmx-picture: --steps \"%1\": all, a step counted from 1, or a first and a last one, such as 7-12, is needed.");
    for (const char* const steps : {"", "0", "0-3", "3-2", "-3", "1-2-3", "some", "1.5", "99999999999"})
        EXPECT_EQ(complaint({"--steps", steps}), form.arg(QString::fromLatin1(steps)));
    EXPECT_EQ(complaint({"--steps", "all", "--names", "month"}),
              "lmx-picture: --names \"month\": number or date is needed.");
    for (const char* const range : {"1", "2,1", "1,1", "nan,1", "", "1,2,3"})
        EXPECT_EQ(complaint({"--steps", "all", "--range", range}),
                  QStringLiteral("lmx-picture: --range \"%1\": low,high with low below high, or all, is needed.")
                      .arg(QString::fromLatin1(range)));
    const QString alone = QStringLiteral("lmx-picture: --names and --range are for the pictures of --steps.");
    EXPECT_EQ(complaint({"--names", "date"}), alone);
    EXPECT_EQ(complaint({"--range", "0,1"}), alone);
    EXPECT_EQ(complaint({"--steps", "all", "--time", "July"}),
              "lmx-picture: Only one of --time and --steps can be given: each step has its own time.");
}

TEST_F(PictureSteps, AreInTheHelp) {
    const QString help = RunPictureProgram({"--help"}).Output;
    for (const char* const option : {"--steps all|N|N-M|N-", "--names number|date", "--range LOW,HIGH|all"})
        EXPECT_TRUE(help.contains(QString::fromLatin1(option))) << option;
}

#ifdef LMX_HAS_DATASOURCES

TEST_F(PictureSteps, ArePicturesOfAllTimes) {
    const TProgramOutcome outcome = Run({"--steps", "all", "--range", "-2,34"});
    EXPECT_EQ(outcome.ExitCode, 0) << outcome.Errors.toStdString();
    EXPECT_EQ(outcome.Output, "");
    const QStringList lines = outcome.Errors.split(u'\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 12);
    EXPECT_EQ(lines[0], "lmx-picture: 1 of 12: " + Path("map-001.png") + ", January");
    EXPECT_EQ(lines[11], "lmx-picture: 12 of 12: " + Path("map-012.png") + ", December");
    EXPECT_EQ(Files("*.png").size(), 12);
    const QImage july(Path("map-007.png"));
    EXPECT_EQ(july.text(QStringLiteral("Time")), "July");
    EXPECT_TRUE(july.text(QStringLiteral("Layers")).startsWith("Sea, July; "));
    EXPECT_TRUE(july.text(QStringLiteral("Layers")).contains(" from -2 to 34; "));
    EXPECT_TRUE(july.text(QStringLiteral("Layers")).endsWith(Samples + "coads_sst.nc, SST, July"));
    EXPECT_NE(july, QImage(Path("map-001.png")));
}

TEST_F(PictureSteps, AreNamedByDate) {
    const TProgramOutcome outcome = Run({"--steps", "7-8", "--names", "date"}, "sea.pdf");
    EXPECT_EQ(outcome.ExitCode, 0) << outcome.Errors.toStdString();
    EXPECT_EQ(outcome.Errors, "lmx-picture: 1 of 2: " + Path("sea-07.pdf") + ", July\n" +
                                  "lmx-picture: 2 of 2: " + Path("sea-08.pdf") + ", August\n");
    EXPECT_EQ(Files("*.pdf"), (QStringList{"sea-07.pdf", "sea-08.pdf"}));
    EXPECT_TRUE(ReadFile(Path("sea-07.pdf")).startsWith("%PDF-"));
}

TEST_F(PictureSteps, MayBeSome) {
    EXPECT_EQ(Run({"--steps", "12"}).ExitCode, 0);
    EXPECT_EQ(Files("*.png"), QStringList("map-012.png"));
    EXPECT_EQ(Run({"--steps", "11-"}).ExitCode, 0);
    EXPECT_EQ(Files("*.png"), (QStringList{"map-011.png", "map-012.png"}));
    const TProgramOutcome beyond = Run({"--steps", "12-13"});
    EXPECT_EQ(beyond.ExitCode, 1);
    EXPECT_EQ(beyond.Errors, "lmx-picture: " + Path("map.lmx") + ": has steps 1 to 12\n");
    EXPECT_EQ(Run({"--steps", "13-"}).ExitCode, 1);
}

// The colours of the document are for 11 to 12 degrees: what is beyond shows nothing, and all that is there shows once
// they are for all steps.
TEST_F(PictureSteps, ColorsMayFitAllSteps) {
    ASSERT_EQ(Run({"--steps", "1", "--background", "#010203"}).ExitCode, 0);
    const QColor background(1, 2, 3);
    const auto shown = [&] {
        const QImage picture(Path("map-001.png"));
        int count = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                count += picture.pixelColor(x, y) != background ? 1 : 0;
        return count;
    };
    const int narrow = shown();
    ASSERT_EQ(Run({"--steps", "1", "--background", "#010203", "--range", "all"}).ExitCode, 0);
    EXPECT_GT(shown(), 3 * narrow);
    EXPECT_GT(shown(), 4000);
}

TEST_F(PictureSteps, AFileThatIsGoneWritesNothing) {
    const QString document = Document(Path("gone.nc") + "\nSST\nJanuary");
    const TProgramOutcome outcome = RunPictureProgram({document, Path("map.png"), "--steps", "all"});
    EXPECT_EQ(outcome.ExitCode, 1);
    EXPECT_EQ(outcome.Errors, "lmx-picture: " + Path("gone.nc") + ": does not exist\n");
    EXPECT_TRUE(Files("*.png").isEmpty());
    ASSERT_TRUE(QDir(FFolder.path()).mkdir("moved"));
    ASSERT_TRUE(QFile::copy(Samples + "coads_sst.nc", Path("moved/gone.nc")));
    const QString moved = Document("/nowhere/gone.nc\nSST\nJanuary", QStringLiteral("moved/map.lmx"));
    EXPECT_EQ(RunPictureProgram({moved, Path("map.png"), "--steps", "2", "--size", "240x140"}).ExitCode, 0);
    EXPECT_EQ(Files("*.png"), QStringList("map-002.png"));
}

TEST_F(PictureSteps, ADocumentWithoutTimesHasNone) {
    for (const QString& lineage : {QString(), Samples + QStringLiteral("variables.nc\nsftlf\n")}) {
        const QString document = Document(lineage);
        const TProgramOutcome outcome = RunPictureProgram({document, Path("map.png"), "--steps", "all"});
        EXPECT_EQ(outcome.ExitCode, 1);
        EXPECT_EQ(outcome.Errors, "lmx-picture: " + document + ": no visible layer shows a climate file with times\n");
    }
}

TEST_F(PictureSteps, AFailureLeavesWhatWasThere) {
    ASSERT_EQ(Run({"--steps", "1-2"}).ExitCode, 0);
    const QByteArray before = ReadFile(Path("map-001.png"));
    const TProgramOutcome small = Run({"--steps", "1-2", "--size", "50x50", "--legend"});
    EXPECT_EQ(small.ExitCode, 1);
    EXPECT_EQ(small.Errors, "lmx-picture: The picture is too small for what stands around the map\n");
    EXPECT_EQ(ReadFile(Path("map-001.png")), before);
    EXPECT_EQ(Files("*"), (QStringList{"map-001.png", "map-002.png", "map.lmx"}));
}

#else

TEST_F(PictureSteps, AreRefusedByAProgramThatCannotReadThem) {
    const TProgramOutcome outcome = Run({"--steps", "all"});
    EXPECT_EQ(outcome.ExitCode, 1);
    EXPECT_EQ(outcome.Errors, "lmx-picture: this lmx-picture was built without what reads climate files\n");
}

#endif

} // namespace
} // namespace lmx
