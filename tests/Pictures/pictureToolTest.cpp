#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Formats/Idrisi/lmxImageFactory.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
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

// lmx-picture as a script calls it.

namespace lmx {
namespace {

using namespace tests;

class PictureTool : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(FFolder.isValid()); }

    QString Path(const char* name) const { return FFolder.filePath(QString::fromLatin1(name)); }

    /// A document of the sample rasters and coasts.
    QString Document() {
        const TFormatSettingsScope settings(TFormatSettings::Invariant());
        const auto manager = TLayerManagerFactory::GetObject();
        auto raster = std::make_unique<TIdrisiMapLayer>(manager);
        raster->SetLayerName(QStringLiteral("Sea surface temperature"));
        raster->TakeImage(TImageFactory::Load(QStringLiteral(LMX_EXAMPLE_DATA "/sst_january.rst")));
        raster->SetColorCalc(TGradientColorCalculatorFactory::GetObject(
            -2, 32, TGradientFactory::GetObject({{0, 0xFF0000FF}, {1, 0xFFFF0000}})));
        raster->Render();
        manager->GetLayers().Add(std::move(raster));
        auto coast = std::make_unique<TShapeFileLayer>(manager);
        coast->SetLayerName(QStringLiteral("Coasts"));
        coast->SetColor(0xFF000000);
        coast->TakeShpFile(TShpFile::LoadFromFile(QStringLiteral(LMX_EXAMPLE_DATA "/ne_50m_land.shp"), nullptr));
        manager->GetLayers().Add(std::move(coast));
        TMapViewControl view;
        view.SetLayerManager(manager);
        view.CreateWorldAndViewport(TLatLonWorldSystemFactory::GetObject());
        const auto keepers = TMapDocLayerPersistFactory::GetObject();
        TMapDocLayerPersistFactory::PopulateDefault(keepers);
        TMapDocWriter("AnyHost", keepers).Write(Path("map.lmx"), &view, TMapDocExternalResourcePolicy::erpKeepExternal);
        return Path("map.lmx");
    }

    QTemporaryDir FFolder;
};

TEST_F(PictureTool, PaintsADocument) {
    const TProgramOutcome outcome = RunPictureProgram(
        {Document(), Path("map.png"), "--size", "720x360", "--title", "Sea & land", "--time", "January", "--legend",
         "--scale-bar", "--compass", "--density", "1.5", "--background", "#FFFFF0", "--map-background", "#E0E0E0"});
    EXPECT_EQ(outcome.ExitCode, 0) << outcome.Errors.toStdString();
    EXPECT_EQ(outcome.Errors, "");
    const QImage picture(Path("map.png"));
    EXPECT_EQ(picture.size(), QSize(1080, 540));
    EXPECT_EQ(picture.pixelColor(1, 1), QColor(255, 255, 240));
    EXPECT_EQ(picture.text(QStringLiteral("Title")), "Sea & land");
    EXPECT_EQ(picture.text(QStringLiteral("Description")),
              QStringLiteral("Map \"Sea & land\" from 180\u00B0 W to 180\u00B0 E and from 90\u00B0 S to 90\u00B0 N, "
                             "January, showing Sea surface temperature (-1.8 to 31 Deg C) and Coasts."));
    EXPECT_TRUE(picture.text(QStringLiteral("Layers")).contains(QStringLiteral("sst_january.rst")));
}

TEST_F(PictureTool, PaintsAnAreaOrAPlaceAsPdf) {
    const QString document = Document();
    EXPECT_EQ(RunPictureProgram({document, Path("area.pdf"), "--extent", "-20,30,40.5,70"}).ExitCode, 0);
    EXPECT_TRUE(ReadFile(Path("area.pdf")).startsWith("%PDF-"));
    EXPECT_EQ(RunPictureProgram({document, Path("place.png"), "--centre", "174.8,-41.3", "--scale", "40"}).ExitCode, 0);
    EXPECT_EQ(QImage(Path("place.png")).text(QStringLiteral("Extent")),
              "west 159.8, south -49.75, east 180, north -32.875");
}

TEST_F(PictureTool, TellsHowToCallIt) {
    const TProgramOutcome help = RunPictureProgram({"--help"});
    EXPECT_EQ(help.ExitCode, 0);
    EXPECT_TRUE(help.Output.startsWith("Usage: lmx-picture MAP.lmx PICTURE.png|PICTURE.pdf [options]\n"));
    EXPECT_EQ(help.Errors, "");
    const TProgramOutcome version = RunPictureProgram({"--version"});
    EXPECT_EQ(version.ExitCode, 0);
    EXPECT_TRUE(version.Output.startsWith("lmx-picture "));
}

TEST_F(PictureTool, RefusesWrongArguments) {
    const auto complaint = [](QStringList options) {
        return ComplaintsOf(QStringList{"a.lmx", "a.png"} + options).join(u'|');
    };
    EXPECT_EQ(ComplaintsOf({}).join(u'|'),
              "lmx-picture: A map document and a file for its picture are needed; 0 given.");
    EXPECT_EQ(complaint({"third"}), "lmx-picture: A map document and a file for its picture are needed; 3 given.");
    EXPECT_EQ(ComplaintsOf({"a.lmx", "a.jpg"}).join(u'|'), "lmx-picture: a.jpg: pictures are written as .png or .pdf.");
    EXPECT_EQ(complaint({"--colour"}), "lmx-picture: Unknown option 'colour'.");
    EXPECT_EQ(complaint({"--size"}), "lmx-picture: Missing value after '--size'.");
    const QString size = QStringLiteral("width and height as whole numbers from 1 to 65535, such as 1200x675");
    for (const char* text : {"12", "0x5", "1x65536", "1.5x3", "ax3", "1x2x3", "", "nanx1", "99999999999999999999x1"})
        EXPECT_EQ(complaint({"--size", text}),
                  QStringLiteral("lmx-picture: --size \"%1\": %2 is needed.").arg(QString::fromLatin1(text), size));
    EXPECT_EQ(complaint({"--density", "0"}), "lmx-picture: --density \"0\": a number from 0.01 to 100 is needed.");
    EXPECT_EQ(complaint({"--density", "1,5"}), "lmx-picture: --density \"1,5\": a number from 0.01 to 100 is needed.");
    EXPECT_EQ(complaint({"--time-limit", "-1"}),
              "lmx-picture: --time-limit \"-1\": seconds, from 0 to 86400 is needed.");
    EXPECT_EQ(complaint({"--background", "white"}),
              "lmx-picture: --background \"white\": a colour as #RRGGBB or #AARRGGBB is needed.");
    EXPECT_EQ(complaint({"--map-background", ""}),
              "lmx-picture: --map-background \"\": a colour as #RRGGBB or #AARRGGBB is needed.");
    EXPECT_EQ(
        complaint({"--extent", "10,0,5,20"}),
        "lmx-picture: --extent \"10,0,5,20\": west,south,east,north with west below east and south below north is "
        "needed.");
    EXPECT_EQ(complaint({"--centre", "10"}), "lmx-picture: --centre and --scale belong together.|"
                                             "lmx-picture: --centre \"10\": longitude,latitude or easting,northing is "
                                             "needed.");
    EXPECT_EQ(complaint({"--scale", "0", "--centre", "1,2"}),
              "lmx-picture: --scale \"0\": units to the eye per map unit, above 0 is needed.");
    EXPECT_EQ(complaint({"--world", "--extent", "0,0,1,1"}),
              "lmx-picture: Only one of --world, --extent and --centre with --scale can be given.");
}

TEST_F(PictureTool, FailsForWhatIsNoDocument) {
    const TProgramOutcome none = RunPictureProgram({Path("none.lmx"), Path("map.png")});
    EXPECT_EQ(none.ExitCode, 1);
    EXPECT_TRUE(none.Errors.startsWith("lmx-picture: " + Path("none.lmx") + ": ")) << none.Errors.toStdString();
    for (const QByteArray& bytes : {QByteArray(), QByteArray("no archive"), QByteArray(100'000, '\x50')}) {
        QFile file(Path("bad.lmx"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        file.close();
        const TProgramOutcome outcome = RunPictureProgram({Path("bad.lmx"), Path("map.png")});
        EXPECT_EQ(outcome.ExitCode, 1);
        EXPECT_TRUE(outcome.Errors.startsWith("lmx-picture: " + Path("bad.lmx"))) << outcome.Errors.toStdString();
    }
    EXPECT_FALSE(QFile::exists(Path("map.png")));
}

TEST_F(PictureTool, WritesNothingWithoutALayerUnlessThatIsAllowed) {
    const auto manager = TLayerManagerFactory::GetObject();
    ASSERT_TRUE(QFile::copy(QStringLiteral(LMX_EXAMPLE_DATA "/sst_january.rst"), Path("sea.rst")));
    ASSERT_TRUE(QFile::copy(QStringLiteral(LMX_EXAMPLE_DATA "/sst_january.rdc"), Path("sea.rdc")));
    auto raster = std::make_unique<TIdrisiMapLayer>(manager);
    raster->SetLayerName(QStringLiteral("Sea"));
    raster->TakeImage(TImageFactory::Load(Path("sea.rst")));
    manager->GetLayers().Add(std::move(raster));
    TMapViewControl view;
    view.SetLayerManager(manager);
    view.CreateWorldAndViewport(TLatLonWorldSystemFactory::GetObject());
    const auto keepers = TMapDocLayerPersistFactory::GetObject();
    TMapDocLayerPersistFactory::PopulateDefault(keepers);
    {
        const TFormatSettingsScope settings(TFormatSettings::Invariant());
        TMapDocWriter("AnyHost", keepers)
            .Write(Path("linked.lmx"), &view, TMapDocExternalResourcePolicy::erpKeepExternal);
    }
    ASSERT_TRUE(QFile::remove(Path("sea.rst")) && QFile::remove(Path("sea.rdc")));

    const TProgramOutcome refused = RunPictureProgram({Path("linked.lmx"), Path("map.png")});
    EXPECT_EQ(refused.ExitCode, 1);
    EXPECT_TRUE(refused.Errors.contains("Layer \"Sea\" (IdrisiMapLayer): ")) << refused.Errors.toStdString();
    EXPECT_TRUE(refused.Errors.endsWith("lmx-picture: nothing written; --allow-missing paints the map without\n"));
    EXPECT_FALSE(QFile::exists(Path("map.png")));
    const TProgramOutcome allowed = RunPictureProgram({Path("linked.lmx"), Path("map.png"), "--allow-missing"});
    EXPECT_EQ(allowed.ExitCode, 0);
    EXPECT_TRUE(allowed.Errors.contains("Layer \"Sea\" (IdrisiMapLayer): "));
    EXPECT_TRUE(QFile::exists(Path("map.png")));
}

TEST_F(PictureTool, KeepsTheOldPictureWhenItFails) {
    const QString document = Document();
    ASSERT_EQ(RunPictureProgram({document, Path("map.png")}).ExitCode, 0);
    const QByteArray before = ReadFile(Path("map.png"));
    const TProgramOutcome late =
        RunPictureProgram({document, Path("map.png"), "--time-limit", "0", "--size", "6000x3000"});
    if (late.ExitCode != 0) { // a machine may be quick
        EXPECT_EQ(late.ExitCode, 1);
        EXPECT_EQ(late.Errors, "lmx-picture: The picture was not ready within 0 seconds: the layer \"Coasts\" is still "
                               "being drawn\n");
        EXPECT_EQ(ReadFile(Path("map.png")), before);
    }
    const TProgramOutcome small = RunPictureProgram({document, Path("map.png"), "--size", "50x50", "--legend"});
    EXPECT_EQ(small.ExitCode, 1);
    EXPECT_EQ(small.Errors, "lmx-picture: The picture is too small for what stands around the map\n");
    const TProgramOutcome nowhere = RunPictureProgram({document, Path("nowhere/map.png")});
    EXPECT_EQ(nowhere.ExitCode, 1);
    EXPECT_TRUE(nowhere.Errors.startsWith("lmx-picture: " + Path("nowhere/map.png") + ": cannot be written: "))
        << nowhere.Errors.toStdString();
}

} // namespace
} // namespace lmx
