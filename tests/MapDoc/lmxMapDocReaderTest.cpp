#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/MapDoc/lmxMapDocReader.h>
#include <tests/MapDoc/DocumentMap.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/TestLayer.h>

#include <gtest/gtest.h>

#include <memory>

namespace lmx {
namespace {

using namespace tests;

const QString Ruler = QStringLiteral("<ruler><location>1</location><color>2</color></ruler>");
const QString RulerLayer =
    LayerText(QStringLiteral("RulerMapLayer"), QStringLiteral("<data><vrulers>%1</vrulers></data>").arg(Ruler));

class MapDocReader : public testing::Test, TWithPoint {
protected:
    template<class Failure>
    QString RefusalOf(const QString& manifest) {
        return MessageOf<Failure>([&] { FMap.LoadManifest(manifest); });
    }
    /// Nothing of the map has changed.
    void ExpectUntouched() {
        EXPECT_EQ(FMap.Manager->GetTitle(), "Before");
        EXPECT_EQ(FMap.View.GetWorldSystem(), TLatLonWorldSystemFactory::GetObject());
        EXPECT_EQ(FMap.Manager->GetLayers().Count(), 0);
        EXPECT_EQ(FMap.Rulers().GetVRulers().Count(), 0);
    }
    void SetUp() override { FMap.Manager->SetTitle(QStringLiteral("Before")); }

    TDocumentFolder FFolder;
    TDocumentMap FMap;
};

QString With(const char* from, const char* to) {
    return ManifestText({}, RulerLayer, QString(PlainRoot).replace(QString::fromLatin1(from), QString::fromLatin1(to)));
}

TEST_F(MapDocReader, AnEmptyMapComesBackEmpty) {
    FMap.Manager->SetTitle(QStringLiteral("Saved"));
    FMap.View.GetViewport()->SetScale(3);
    FMap.Save(FFolder.Path());
    TDocumentMap other(false);
    other.Load(FFolder.Path());
    EXPECT_EQ(other.Manager->GetTitle(), "Saved");
    EXPECT_EQ(other.Manager->GetLayers().Count(), 0);
    EXPECT_EQ(other.View.GetWorldSystem(), TLatLonWorldSystemFactory::GetObject());
    EXPECT_EQ(other.View.GetViewport()->GetScale(), 3);
}

TEST_F(MapDocReader, TheMapIsCentredOnZeroWhateverTheDocumentSays) {
    FMap.View.SetCenter({50, 20});
    FMap.LoadManifest(With("1,2", "rubbish"));
    EXPECT_EQ(FMap.View.GetViewport()->GetScale(), 2);
    EXPECT_EQ(FMap.View.GetViewport()->GetCenter(), TMapPoint(0, 0));
    EXPECT_EQ(FMap.Manager->GetTitle(), "Title");
    EXPECT_EQ(FMap.Rulers().GetVRulers().Count(), 1);
}

TEST_F(MapDocReader, TheRootNeedsSixAttributes) {
    for (const char* const name : {"version", "docTypeID", "mapTitle", "refsystem", "zoomScale", "center"}) {
        const QString without = With((QByteArray(name) + '=').constData(), "other=");
        EXPECT_EQ(RefusalOf<Exception>(without), "One or more required attributes is missing") << name;
    }
    FMap.LoadManifest(With("mapTitle=\"Title\"", "mapTitle=\"\""));
    EXPECT_EQ(FMap.Manager->GetTitle(), "");
}

TEST_F(MapDocReader, RefusesInOrderAndLeavesTheMap) {
    const QString words = QStringLiteral("This file has been saved using a more recent version of the application.");
    EXPECT_EQ(RefusalOf<EConvertError>(With("version=\"1\" docTypeID=\"Test\"", "version=\"one\" docTypeID=\"\"")),
              "'one' is not a valid integer value");
    EXPECT_EQ(RefusalOf<EConvertError>(With("zoomScale=\"2\"", "zoomScale=\"\"")),
              "'' is not a valid floating point value");
    EXPECT_EQ(RefusalOf<EConvertError>(With("version=\"1\" docTypeID=\"Test\" mapTitle=\"Title\" zoomScale=\"2\"",
                                            "version=\"0\" docTypeID=\"x\" mapTitle=\"Title\" zoomScale=\"x\"")),
              "'x' is not a valid floating point value");
    EXPECT_EQ(RefusalOf<EMapDocReaderError>(With("version=\"1\" docTypeID=\"Test\"", "version=\"0\" docTypeID=\"x\"")),
              words);
    EXPECT_EQ(RefusalOf<EMapDocReaderError>(With("version=\"1\"", "version=\"-1\"")), words);
    for (const char* const type : {"docTypeID=\"test\"", "docTypeID=\"\"", "docTypeID=\"Test \""})
        EXPECT_EQ(RefusalOf<EMapDocReaderError>(With("docTypeID=\"Test\"", type)), "Invalid DocTypeID");
    EXPECT_EQ(RefusalOf<EMapDocReaderError>(With("version=\"1\" docTypeID=\"Test\"", "version=\"2\" docTypeID=\"x\"")),
              "Invalid DocTypeID");
    ExpectUntouched();
}

TEST_F(MapDocReader, ALaterVersionFailsAfterWorldAndTitle) {
    EXPECT_EQ(RefusalOf<EMapDocReaderError>(
                  With("version=\"1\" docTypeID=\"Test\" mapTitle=\"Title\" zoomScale=\"2\" center=\"1,2\" "
                       "refsystem=\"latlon\"",
                       "version=\"2\" docTypeID=\"Test\" mapTitle=\"Title\" zoomScale=\"2\" center=\"1,2\" "
                       "refsystem=\"nzmg\"")),
              "MapDoc version error");
    EXPECT_EQ(FMap.Manager->GetTitle(), "Title");
    EXPECT_EQ(FMap.View.GetWorldSystem(), TNZMGWorldSystemFactory::GetObject());
    EXPECT_EQ(FMap.Rulers().GetVRulers().Count(), 0);
    TMapDocReader reader(QStringLiteral("Test"), DefaultLayerFactory(), DefaultPersistFactory());
    TArchiveInMemory memory(ZipBytes({}));
    TMapDocResourcePersist resources(memory.Buffer, {}, pmRead);
    EXPECT_EQ(MessageOf<EMapDocReaderError>([&] { reader.LoadSpecialLayers(2, {}, FMap.Manager, resources); }),
              "MapDoc version error");
}

TEST_F(MapDocReader, ANilRootIsNamed) {
    const TMapDocReader reader(QStringLiteral("Test"), DefaultLayerFactory(), DefaultPersistFactory());
    int version = 0;
    QString type, title, system;
    extended zoom = 0;
    TMapPoint center(5, 5);
    EXPECT_EQ(
        MessageOf<EMapDocReaderError>([&] { reader.ProcessRoot({}, version, type, title, system, zoom, center); }),
        "MapDoc root node is null");
    const TXmlDocument document =
        TXmlDocument::FromText(QStringLiteral("<anyName %1/>").arg(PlainRoot)); // the name is not looked at
    reader.ProcessRoot(document.GetRoot(), version, type, title, system, zoom, center);
    EXPECT_EQ(version, 1);
    EXPECT_EQ(type, "Test");
    EXPECT_EQ(title, "Title");
    EXPECT_EQ(system, "latlon");
    EXPECT_EQ(zoom, 2);
    EXPECT_EQ(center, TMapPoint(0, 0));
}

TEST_F(MapDocReader, ArgumentsAreNamed) {
    using TReader = TMapDocReader;
    EXPECT_EQ(MessageOf<EArgumentException>([] { TReader({}, nullptr, nullptr); }), "LayerFactory");
    EXPECT_EQ(MessageOf<EArgumentNilException>([] { TReader({}, DefaultLayerFactory(), nullptr); }),
              "LayerPersistFactory");
    TReader reader({}, DefaultLayerFactory(), DefaultPersistFactory());
    EXPECT_EQ(MessageOf<EArgumentException>([&] { reader.Read(QStringLiteral("none"), nullptr); }), "MapControl");
    TMapViewControl view;
    EXPECT_EQ(MessageOf<EArgumentNilException>([&] { reader.Read(QStringLiteral("none"), &view); }),
              "MapControl.LayerManager");
}

TEST_F(MapDocReader, WhatIsNoDocumentLeavesTheMap) {
    EXPECT_EQ(MessageOf<EFileException>([&] { FMap.Load(FFolder.Path("none")); }),
              FFolder.Path("none") + QStringLiteral(": cannot be read: No such file or directory"));
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { FMap.Load(FFolder.Write("a", "no archive")); }),
              FFolder.Path("a") + QStringLiteral(": is no ZIP archive"));
    EXPECT_EQ(MessageOf<EMapDocResourceNotFoundException>([&] { FMap.LoadBytes(ZipBytes({})); }),
              "The specified MapDoc resource was not found");
    EXPECT_EQ(RefusalOf<EXmlException>({}), "Invalid XML in line 1: no root element");
    EXPECT_THROW(FMap.LoadManifest(QStringLiteral("<mapDoc>")), EXmlException);
    ExpectUntouched();
}

TEST_F(MapDocReader, AnUnknownSystemKeepsTheWorld) {
    FMap.View.CreateWorldAndViewport(TNZMGWorldSystemFactory::GetObject());
    for (const char* const system : {"refsystem=\"null\"", "refsystem=\"mars\"", "refsystem=\"\""}) {
        FMap.LoadManifest(With("refsystem=\"latlon\"", system));
        EXPECT_EQ(FMap.View.GetWorldSystem(), TNZMGWorldSystemFactory::GetObject()) << system;
    }
    TDocumentMap worldless(false);
    EXPECT_EQ(MessageOf<EInvalidOperation>(
                  [&] { worldless.LoadManifest(With("refsystem=\"latlon\"", "refsystem=\"null\"")); }),
              "World not created");
    EXPECT_EQ(worldless.Manager->GetTitle(), "Title");
    EXPECT_EQ(worldless.Rulers().GetVRulers().Count(), 1);
}

TEST_F(MapDocReader, LayersThatCannotBeReadAreLeftOut) {
    AddImageLayer(FMap, SmallImage(), nullptr, QStringLiteral("Good"));
    FMap.Save(FFolder.Path());
    QString manifest = ManifestOf(FFolder.Path());
    const QString bad = LayerText(QStringLiteral("IdrisiMapLayer"), QStringLiteral("<data/>"));
    const QString damaged[] = {
        bad,
        LayerText(QStringLiteral("IdrisiMapLayer"), {}),
        LayerText(QStringLiteral("BalloonLayer"), QStringLiteral("<data/>")),
        LayerText(QStringLiteral("idrisimaplayer"), QStringLiteral("<data/>")),
        LayerText(QStringLiteral("RulerMapLayer"), QStringLiteral("<data/>")), // known, and no ordinary layer
        QString(bad).replace(QStringLiteral("0,10,20,0"), QStringLiteral("0,10,20")),
        QString(bad).replace(QStringLiteral("visible="), QStringLiteral("seen=")),
        QStringLiteral("<layers/><Layer/><layer/>text<!-- a comment -->"),
        LayerText(
            QStringLiteral("ShapeFileLayer"),
            QStringLiteral("<data><resource>linked</resource><filename>/none.shp</filename><color>1</color></data>"))};
    manifest.replace(QStringLiteral("<layers>"),
                     QStringLiteral("<layers>") + QStringList(std::begin(damaged), std::end(damaged)).join(QString()));
    manifest.replace(QStringLiteral("</layers>"), bad + QStringLiteral("</layers>"));
    const TIdrisiMapLayer& saved = FMap.LayerAt<TIdrisiMapLayer>(0);
    const TMapDocResourcePersist archive(FFolder.Path(), pmRead);
    const QByteArray folder = saved.GetLayerID().toString().toUpper().toUtf8();
    const auto entry = [&](const char* name) {
        return DeflatedRecord(folder + '\\' + name, archive.Read(QString::fromUtf8(folder), QString::fromLatin1(name)));
    };
    TDocumentMap other;
    other.LoadBytes(
        ZipBytes({entry("header"), entry("imagedata"), DeflatedRecord("_meta\\manifest", manifest.toUtf8())}));
    EXPECT_EQ(other.LayerNames(), (QStringList{"Good"}));
    EXPECT_EQ(other.LayerAt<TIdrisiMapLayer>(0).GetLayerID(), saved.GetLayerID());
}

TEST_F(MapDocReader, ARenderThatFailsDropsItsLayer) {
    const auto classes = QStringLiteral("<colorCalc colorCalcType=\"ColorClassCalculator\"><outOfRangePolicy>0"
                                        "</outOfRangePolicy></colorCalc>");
    AddImageLayer(FMap, SmallImage(), nullptr);
    FMap.Save(FFolder.Path());
    QString manifest = ManifestOf(FFolder.Path());
    manifest.replace(QStringLiteral("</opacity>"), QStringLiteral("</opacity>") + classes);
    QByteArray entries;
    const TMapDocResourcePersist archive(FFolder.Path(), pmRead);
    const QString folder = FMap.LayerAt<TIdrisiMapLayer>(0).GetLayerID().toString().toUpper();
    std::vector<TZipRecord> records;
    for (const char* const name : {"header", "imagedata"})
        records.push_back(
            DeflatedRecord((folder + u'\\').toUtf8() + name, archive.Read(folder, QString::fromLatin1(name))));
    records.push_back(DeflatedRecord("_meta\\manifest", manifest.toUtf8()));
    TDocumentMap other;
    other.LoadBytes(ZipBytes(records));
    EXPECT_EQ(other.Manager->GetLayers().Count(), 0);
    EXPECT_EQ(other.View.GetViewport()->GetCenter(), TMapPoint(0, 0));
}

TEST_F(MapDocReader, RastersAreRenderedBeforeTheyAreAdded) {
    AddImageLayer(FMap, SmallImage(),
                  TGradientColorCalculatorFactory::GetObject(
                      1, 4, TGradientFactory::GetObject({{0, 0xFF0000FF}, {1, 0xFFFF0000}})));
    FMap.Save(FFolder.Path());
    TDocumentMap other;
    bool isReady = false;
    const auto subscription = other.Manager->GetOnLayerAdded().Add(
        [&](ILayerManager*, TBaseMapLayer* layer) { isReady = layer->GetIsReadyToDraw(); });
    other.Load(FFolder.Path());
    EXPECT_TRUE(isReady);
}

TEST_F(MapDocReader, ReadingOnlyAdds) {
    AddImageLayer(FMap, SmallImage(), nullptr);
    FMap.Rulers().Add(std::make_unique<TRulerItem>(TRulerOrientation::roVertical, 1, 2));
    FMap.Points().GetPoints().Add(std::make_unique<TInfoQueryPoint>());
    FMap.Save(FFolder.Path());
    TDocumentMap other;
    other.Load(FFolder.Path());
    other.Load(FFolder.Path());
    EXPECT_EQ(other.Manager->GetLayers().Count(), 2);
    EXPECT_EQ(other.Manager->GetLayers()[0]->GetLayerID(), other.Manager->GetLayers()[1]->GetLayerID());
    EXPECT_EQ(other.Rulers().GetVRulers().Count(), 2);
    EXPECT_EQ(other.Points().GetPoints().Count(), 2);
}

TEST_F(MapDocReader, AbsentListsAreEmpty) {
    FMap.LoadManifest(
        QStringLiteral("<mapDoc %1><specialLayers>%2</specialLayers></mapDoc>").arg(PlainRoot, RulerLayer));
    EXPECT_EQ(FMap.Rulers().GetVRulers().Count(), 1);
    FMap.LoadManifest(QStringLiteral("<mapDoc %1/>").arg(PlainRoot));
    EXPECT_EQ(FMap.Manager->GetTitle(), "Title");
}

TEST_F(MapDocReader, ASpecialLayerKeepsWhatWasReadBeforeAFailure) {
    const QString point = QStringLiteral("<iqpoint><color>1</color><label/><point>%1</point></iqpoint>");
    const QString points =
        point.arg(QStringLiteral("1,2")) + point.arg(QStringLiteral("x")) + point.arg(QStringLiteral("3,4"));
    FMap.LoadManifest(ManifestText(
        {}, LayerText(QStringLiteral("InfoQueryPointLayer"), QStringLiteral("<data>%1</data>").arg(points)) +
                LayerText(QStringLiteral("IdrisiMapLayer"), QStringLiteral("<data/>")) + // no special layer
                RulerLayer));
    EXPECT_EQ(FMap.Points().GetPoints().Count(), 1);
    EXPECT_EQ(FMap.Rulers().GetVRulers().Count(), 1);
    EXPECT_EQ(FMap.Rulers().GetLayerName(), "Layer");
}

TEST_F(MapDocReader, ASpecialLayerThatTheMapLacksIsPassedOver) {
    FMap.Manager->GetSpecialLayers().Remove(FMap.View.GetSpInfoQueryPointsLayer());
    FMap.LoadManifest(
        ManifestText({}, LayerText(QStringLiteral("InfoQueryPointLayer"), QStringLiteral("<data/>")) + RulerLayer));
    EXPECT_EQ(FMap.Rulers().GetVRulers().Count(), 1);
}

class TCountingFactory : public ILayerFactory {
public:
    std::unique_ptr<TBaseMapLayer> CreateLayer(const QString& type,
                                               const std::shared_ptr<ILayerManager>&) const override {
        Asked += type;
        return nullptr;
    }
    void Register(const std::shared_ptr<ILayerFactoryHandler>&) override {}
    void Register(const QString&, TCreateLayerFunc) override {}
    void Register(const QString&, TCreateLayerAnonFunc) override {}
    mutable QStringList Asked;
};

TEST_F(MapDocReader, UnknownTypesCreateNothing) {
    const auto factory = std::make_shared<TCountingFactory>();
    TMapDocReader reader(QStringLiteral("Test"), factory, DefaultPersistFactory());
    const QString path = FFolder.Write(
        "a", ZipBytes({DeflatedRecord(
                 "_meta\\manifest", ManifestText(LayerText(QStringLiteral("Other"), QStringLiteral("<data/>")) +
                                                 LayerText(QStringLiteral("IdrisiMapLayer"), QStringLiteral("<data/>")))
                                        .toUtf8())}));
    reader.Read(path, &FMap.View);
    EXPECT_EQ(factory->Asked, (QStringList{"IdrisiMapLayer"}));
}

TEST_F(MapDocReader, AListenerMayCloseTheMap) {
    auto map = std::make_unique<TDocumentMap>();
    const auto manager = map->Manager;
    const auto subscription = manager->GetOnTitleChanged().Add([&](ILayerManager*) { map.reset(); });
    TArchiveInMemory memory(ZipBytes({DeflatedRecord("_meta\\manifest", ManifestText({}, RulerLayer).toUtf8())}));
    TMapDocResourcePersist resources(memory.Buffer, QStringLiteral("memory"), pmRead);
    TMapDocReader(QStringLiteral("Test"), DefaultLayerFactory(), DefaultPersistFactory()).Read(resources, &map->View);
    EXPECT_EQ(map, nullptr);
    EXPECT_EQ(manager->GetTitle(), "Title");
}

TEST_F(MapDocReader, LimitsAreTheHosts) {
    TMapDocReader reader(QStringLiteral("Test"), DefaultLayerFactory(), DefaultPersistFactory());
    EXPECT_EQ(reader.GetLimits().EntryBytes, std::uint64_t{4} << 30);
    EXPECT_EQ(reader.GetLimits().ManifestBytes, std::uint64_t{64} << 20);
    EXPECT_EQ(reader.GetLimits().Depth, 4096);
    const QString manifest = ManifestText({}, RulerLayer); // five elements deep: mapDoc to location
    const QString path = FFolder.Write("a", ZipBytes({DeflatedRecord("_meta\\manifest", manifest.toUtf8())}));
    TMapDocLimits limits;
    limits.ManifestBytes = static_cast<std::uint64_t>(manifest.size() - 1);
    reader.SetLimits(limits);
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { reader.Read(path, &FMap.View); }),
              path + QStringLiteral(": entry \"_meta\\manifest\" has more than %1 bytes").arg(manifest.size() - 1));
    limits = {};
    limits.Depth = 6;
    reader.SetLimits(limits);
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { reader.Read(path, &FMap.View); }),
              path + QStringLiteral(": manifest is nested deeper than 6 elements"));
    ExpectUntouched();
    limits.Depth = 7; // mapDoc, specialLayers, layer, data, vrulers, ruler, location
    limits.ManifestBytes = static_cast<std::uint64_t>(manifest.size());
    reader.SetLimits(limits);
    reader.Read(path, &FMap.View);
    EXPECT_EQ(FMap.Rulers().GetVRulers().Count(), 1);
}

} // namespace
} // namespace lmx
