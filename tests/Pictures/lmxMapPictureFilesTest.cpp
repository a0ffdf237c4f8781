#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Layers/Objects/lmxTextBoxObjectLayerItem.h>
#include <lmx/Layers/lmxLayerFactory.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/MapDoc/lmxMapDocLayerPersist.h>
#include <lmx/MapDoc/lmxMapDocLoadReport.h>
#include <lmx/MapDoc/lmxMapDocWriter.h>
#include <lmx/Runtime/lmxText.h>
#include <tests/Pictures/PictureMap.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TestLayer.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using namespace tests;

class MapPictureFiles : public testing::Test {
protected:
    QString Path(const char* name) const { return FMap.Folder.filePath(QString::fromLatin1(name)); }

    TMapPictureOptions Options = TPictureMap::Plain();
    TPictureMap FMap;
};

TEST_F(MapPictureFiles, APngHoldsThePixelsAndSaysWhatTheyAre) {
    Options.Density = 2;
    Options.ShowsAnnotations = false;
    FMap.Manager->SetTitle(QStringLiteral("Two halves, Überblick"));
    const TMapPicture picture = FMap.Picture(Options);
    picture.Save(Path("map.png"));
    const QImage read(Path("map.png"));
    EXPECT_EQ(read.convertToFormat(QImage::Format_ARGB32), picture.Paint().ToQImage());
    EXPECT_EQ(read.dotsPerMeterX(), 7559); // 192 an inch
    EXPECT_EQ(read.dotsPerMeterY(), 7559);
    EXPECT_FALSE(read.hasAlphaChannel());
    EXPECT_EQ(read.text(QStringLiteral("Title")), QStringLiteral("Two halves, Überblick"));
    EXPECT_EQ(read.text(QStringLiteral("Software")), "lmx");
    EXPECT_EQ(read.text(QStringLiteral("Extent")), "west -180, south -90, east 180, north 90");
    EXPECT_EQ(read.text(QStringLiteral("Description")), picture.Describe().AlternativeText());
    EXPECT_EQ(read.text(QStringLiteral("Layers")), picture.Describe().LayersText());
    EXPECT_EQ(read.text(QStringLiteral("World")), TLatLonWorldSystemFactory::GetObject()->Name());
    EXPECT_FALSE(read.textKeys().contains(QStringLiteral("Time")));
}

TEST_F(MapPictureFiles, APngOfATransparentBackgroundStaysTransparent) {
    Options.BackgroundColor = 0;
    Options.Place = TMapPicturePlace{{0, 0}, 0.5L};
    FMap.Picture(Options).Save(Path("map.png"));
    const QImage read(Path("map.png"));
    EXPECT_EQ(read.pixelColor(1, 1).alpha(), 0);
    EXPECT_EQ(read.pixelColor(100, 90), QColor(0, 0, 255));
}

TEST_F(MapPictureFiles, APdfHoldsTheDescription) {
    Options.Title = QStringLiteral("Halves & <wholes>");
    FMap.Picture(Options).Save(Path("map.PDF"));
    const QByteArray bytes = ReadFile(Path("map.PDF"));
    EXPECT_TRUE(bytes.startsWith("%PDF-"));
    EXPECT_TRUE(bytes.contains("/MediaBox [0 0 270.000000 135.000000]")); // three quarters of a point a unit
    EXPECT_TRUE(bytes.contains("<rdf:li xml:lang=\"x-default\">Halves &amp; &lt;wholes&gt;</rdf:li>"));
    EXPECT_TRUE(bytes.contains("west -180, south -90, east 180, north 90"));
    EXPECT_TRUE(bytes.contains("<?xpacket begin=\"\xEF\xBB\xBF\" id="));
    EXPECT_TRUE(bytes.contains("description.txt"));
    EXPECT_FALSE(bytes.contains("DCTDecode")); // the pixels as they are
}

TEST_F(MapPictureFiles, AnotherSuffixIsRefused) {
    for (const char* name : {"map.jpg", "map", "png"})
        EXPECT_EQ(MessageOf<EFileException>([&] { FMap.Picture(Options).Save(Path(name)); }),
                  Path(name) + QStringLiteral(": pictures are written as .png or .pdf"));
    EXPECT_TRUE(QDir(FMap.Folder.path()).isEmpty());
}

TEST_F(MapPictureFiles, AFailureLeavesTheOldPicture) {
    FMap.Picture(Options).Save(Path("map.png"));
    const QByteArray before = ReadFile(Path("map.png"));
    auto layer = std::make_unique<TTestLayer>(FMap.Manager);
    layer->SetIsReadyToDraw(true);
    layer->OnPaint = [](TWorld*, TWorldViewport*, TBitmap32&) { throw EInvalidOperation(QStringLiteral("Lost")); };
    FMap.Manager->GetLayers().Add(std::move(layer));
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { FMap.Picture(Options).Save(Path("map.png")); }), "Lost");
    EXPECT_EQ(ReadFile(Path("map.png")), before);
    EXPECT_EQ(QDir(FMap.Folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList(QStringLiteral("map.png")));
}

TEST_F(MapPictureFiles, AFolderThatIsNotThereIsToldBeforeThePainting) {
    bool isPainted = false;
    auto layer = std::make_unique<TTestLayer>(FMap.Manager);
    layer->SetIsReadyToDraw(true);
    layer->OnPaint = [&](TWorld*, TWorldViewport*, TBitmap32&) { isPainted = true; };
    FMap.Manager->GetLayers().Add(std::move(layer));
    EXPECT_THROW(FMap.Picture(Options).Save(Path("nowhere/map.png")), EFileException);
    EXPECT_FALSE(isPainted);
}

/// A raster whose opacity is the frame; frames have names as far as there are any.
class TFadingFrames final : public IMapPictureFrames {
public:
    explicit TFadingFrames(TIdrisiMapLayer& raster) : FRaster(raster) {}

    int GetFrameCount() const override { return Count; }
    QString ShowFrame(int index) override {
        if (index == FailsAt)
            throw EInvalidOperation(QStringLiteral("Frame lost"));
        FRaster.SetOpacity(static_cast<std::uint8_t>(255 - index * 100));
        return QStringLiteral("Step %1").arg(QChar(u'A' + index));
    }

    QString GetFrameName(int index) const override { return Names.value(index); }
    void FrameSaved(int index, const QString& fileName) override {
        Saved += QString(QChar(u'0' + index)) + u' ' + QFileInfo(fileName).fileName();
    }

    int Count = 2;
    int FailsAt = -1;
    QStringList Names;
    QStringList Saved;

private:
    TIdrisiMapLayer& FRaster;
};

TEST_F(MapPictureFiles, FramesAreWrittenOneAfterTheOther) {
    TFadingFrames frames(*FMap.Raster);
    Options.Size = {500, 300};
    const QStringList names = FMap.Picture(Options).SaveFrames(Path("map.png"), frames);
    EXPECT_EQ(names, (QStringList{Path("map-001.png"), Path("map-002.png")}));
    const QImage first(names[0]);
    const QImage second(names[1]);
    EXPECT_EQ(first.text(QStringLiteral("Time")), "Step A");
    EXPECT_EQ(second.text(QStringLiteral("Time")), "Step B");
    EXPECT_EQ(first.pixelColor(100, 150), QColor(0, 0, 255));
    EXPECT_EQ(second.pixelColor(100, 150), QColor(100, 100, 255));
    EXPECT_EQ(frames.Saved, (QStringList{"0 map-001.png", "1 map-002.png"}));
}

TEST_F(MapPictureFiles, FramesMayHaveNamesOfTheirOwn) {
    TFadingFrames frames(*FMap.Raster);
    frames.Names = QStringList{"1961-01"};
    EXPECT_EQ(FMap.Picture(Options).SaveFrames(Path("map.png"), frames),
              (QStringList{Path("map-1961-01.png"), Path("map-002.png")}));
    frames.Names = QStringList{"a", "a"};
    frames.Saved.clear();
    EXPECT_EQ(MessageOf<EArgumentException>([&] { FMap.Picture(Options).SaveFrames(Path("map.png"), frames); }),
              "Two frames have the name " + Path("map-a.png"));
    EXPECT_TRUE(frames.Saved.isEmpty());
    EXPECT_FALSE(QFile::exists(Path("map-a.png")));
}

TEST_F(MapPictureFiles, ThePlaceOfTheMapMayHaveAColorOfItsOwn) {
    FMap.Raster->SetIsVisible(false);
    Options.Size = {500, 300};
    Options.Title = QStringLiteral("Nothing");
    Options.MapColor = 0xFF808080;
    const TBitmap32 picture = FMap.Picture(Options).Paint();
    EXPECT_EQ(picture.Pixel(250, 150), 0xFF808080U);
    EXPECT_EQ(picture.Pixel(2, 2), clWhite32);
}

TEST_F(MapPictureFiles, AFrameThatFailsEndsTheSeries) {
    TFadingFrames frames(*FMap.Raster);
    frames.FailsAt = 1;
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { FMap.Picture(Options).SaveFrames(Path("map.png"), frames); }),
              "Frame lost");
    EXPECT_TRUE(QFile::exists(Path("map-001.png")));
    EXPECT_FALSE(QFile::exists(Path("map-002.png")));
    frames.Count = 0;
    EXPECT_TRUE(FMap.Picture(Options).SaveFrames(Path("map.png"), frames).isEmpty());
}

// What is in a document, and where: the same as the picture of the map that it was made of.
TEST_F(MapPictureFiles, ADocumentGivesThePictureOfItsMap) {
    const TFormatSettingsScope settings(TFormatSettings::Invariant()); // areas in documents are read with a point
    const auto keepers = TMapDocLayerPersistFactory::GetObject();
    TMapDocLayerPersistFactory::PopulateDefault(keepers);
    const auto makers = TLayerFactory::GetObject();
    TLayerFactory::PopulateDefault(makers);
    TMapViewControl view;
    view.resize(400, 200);
    view.SetLayerManager(FMap.Manager);
    view.CreateWorldAndViewport(TLatLonWorldSystemFactory::GetObject());
    view.grab();
    TObjectMapLayer* objects = view.GetSpObjectLayer();
    auto box = std::make_unique<TTextBoxObjectLayerItem>(objects);
    box->SetRect({10, 10, 60, 40});
    box->SetShowBackground(true);
    box->SetBackgroundColor(0xFF00AA00);
    box->SetShowBorder(true); // which a document gives back as the background
    box->SetBorderColor(0xFF00AA00);
    objects->GetObjects().Add(std::move(box));
    FMap.Manager->SetTitle(QStringLiteral("Kept"));
    TMapDocWriter("AnyHost", keepers).Write(Path("map.lmx"), &view, TMapDocExternalResourcePolicy::erpEmbedIfPossible);

    const auto report = std::make_shared<TMapDocLoadReport>();
    TMapPicture picture = TMapPicture::OfDocument(Path("map.lmx"), makers, keepers, report);
    EXPECT_TRUE(report->GetLostLayers().empty());
    EXPECT_EQ(report->GetLayerCount(), report->GetDoneCount());
    Options.Size = {400, 200};
    picture.SetOptions(Options);
    EXPECT_EQ(picture.Describe().Title, "Kept");
    EXPECT_EQ(picture.GetWorldSystem(), TLatLonWorldSystemFactory::GetObject());
    const TBitmap32 painted = picture.Paint();
    const TBitmap32 original = FMap.Picture(Options).Paint();
    EXPECT_EQ(painted.Pixel(200, 100), original.Pixel(200, 100));
    EXPECT_EQ(painted.Pixel(20, 15), original.Pixel(20, 15));
    EXPECT_EQ(painted.Pixel(20, 15), 0xFF00AA00U);
    EXPECT_EQ(painted.Pixel(100, 100), TPictureMap::West);
    EXPECT_THROW(TMapPicture::OfDocument(Path("none.lmx"), makers, keepers), EFileException);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { TMapPicture::OfDocument(Path("map.lmx"), nullptr, keepers); }),
              "LayerFactory");
}

} // namespace
} // namespace lmx
