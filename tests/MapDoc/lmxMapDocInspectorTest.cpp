#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Formats/Idrisi/lmxVector.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Layers/Objects/lmxCompassRoseObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxImageObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxLegendObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxRectangleObjectTypeItem.h>
#include <lmx/Layers/Objects/lmxShapeLegendObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxTextBoxObjectLayerItem.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/Layers/lmxVectorFileLayer.h>
#include <lmx/MapDoc/lmxMapDocInspector.h>
#include <tests/MapDoc/DocumentMap.h>
#include <tests/Support/TestLayer.h>
#include <tests/Support/VectorBytes.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using namespace tests;

class MapDocInspector : public testing::Test, TWithPoint {
protected:
    TMapDocInfo InfoOf(const QString& manifest) {
        TArchiveInMemory memory(ZipBytes({DeflatedRecord("_meta\\manifest", manifest.toUtf8())}));
        return FInspector.Inspect(TMapDocResourcePersist(memory.Buffer, QStringLiteral("memory"), pmRead));
    }
    QStringList ProblemsOf(const QString& layer) {
        const TMapDocInfo info = InfoOf(ManifestText(layer));
        EXPECT_EQ(info.Layers.size(), 1U);
        return info.Layers.at(0).Problems;
    }
    QStringList ProblemsOfSaving(TMapDocExternalResourcePolicy policy = erpKeepExternal) {
        return FInspector.ProblemsOfSaving(&FMap.View, policy);
    }
    template<class Layer>
    Layer& Add(const QString& name) {
        auto layer = std::make_unique<Layer>(FMap.Manager);
        layer->SetLayerName(name);
        return *FMap.Manager->GetLayers().Add(std::move(layer));
    }

    TDocumentFolder FFolder;
    TDocumentMap FMap;
    TMapDocInspector FInspector{DefaultPersistFactory()};
};

TEST_F(MapDocInspector, ListsWhatIsInADocument) {
    FMap.Manager->SetTitle(QStringLiteral("Rain"));
    FMap.View.GetViewport()->SetScale(2);
    AddImageLayer(FMap, SmallImage(), nullptr, QStringLiteral("Embedded"))
        ->SetLayerID(QUuid(QStringLiteral("{00000000-0000-0000-0000-0000000000AB}")));
    const QString path = FFolder.Path("image.rst");
    SmallImage()->SaveToFile(path);
    AddImageLayer(FMap, std::make_unique<TRealImage>(path, true), nullptr, QStringLiteral("Linked"))
        ->SetLayerID(QUuid(QStringLiteral("{00000000-0000-0000-0000-0000000000AC}")));
    FMap.Rulers().Add(std::make_unique<TRulerItem>(TRulerOrientation::roVertical, 1, 2));
    FMap.Rulers().Add(std::make_unique<TRulerItem>(TRulerOrientation::roHorizontal, 1, 2));
    FMap.Points().GetPoints().Add(std::make_unique<TInfoQueryPoint>());
    FMap.Save(FFolder.Path());
    const TMapDocInfo info = FInspector.Inspect(FFolder.Path());
    EXPECT_EQ(info.Version, "1");
    EXPECT_EQ(info.DocTypeID, "Test");
    EXPECT_EQ(info.Title, "Rain");
    EXPECT_EQ(info.ZoomScale, "2");
    EXPECT_EQ(info.RefSystem, "latlon");
    EXPECT_TRUE(info.Problems.isEmpty());
    ASSERT_EQ(info.Layers.size(), 5U);
    EXPECT_EQ(info.Layers[0].Resource, "embedded");
    EXPECT_GT(info.Layers[0].EmbeddedBytes, 16U);
    EXPECT_EQ(info.Layers[1].FileName, path);
    EXPECT_TRUE(info.Layers[1].IsFileThere);
    for (const TMapDocLayerInfo& layer : info.Layers) {
        EXPECT_TRUE(layer.Problems.isEmpty()) << layer.Type.toStdString();
        const int items = layer.Type == QStringLiteral("RulerMapLayer")         ? 2
                          : layer.Type == QStringLiteral("InfoQueryPointLayer") ? 1
                                                                                : 0;
        EXPECT_EQ(layer.ItemCount, items) << layer.Type.toStdString();
    }
    const QStringList lines = info.ToText().split(u'\n');
    EXPECT_EQ(lines[0], "document version 1 type \"Test\" title \"Rain\" scale 2 world latlon");
    EXPECT_EQ(lines[1],
              QStringLiteral("layer IdrisiMapLayer \"Embedded\" {00000000-0000-0000-0000-0000000000AB} embedded "
                             "%1 bytes")
                  .arg(info.Layers[0].EmbeddedBytes));
    EXPECT_EQ(lines[2],
              QStringLiteral("layer IdrisiMapLayer \"Linked\" {00000000-0000-0000-0000-0000000000AC} linked ") + path);
    EXPECT_EQ(info.ToText(), FInspector.Inspect(FFolder.Path()).ToText());
}

TEST_F(MapDocInspector, NamesWhatWillNotArrive) {
    const QString none = QStringLiteral("<resource>linked</resource><filename>/none</filename>");
    EXPECT_EQ(ProblemsOf(LayerText(QStringLiteral("IdrisiMapLayer"), QStringLiteral("<data>%1</data>").arg(none))),
              QStringList{"the linked file is not there"});
    EXPECT_EQ(ProblemsOf(LayerText(QStringLiteral("IdrisiMapLayer"),
                                   QStringLiteral("<data><resource>embedded</resource></data>"))),
              QStringList{"the embedded data are not there"});
    const QString here = FFolder.Write("lines.vct", "x");
    EXPECT_EQ(ProblemsOf(LayerText(QStringLiteral("VectorFileLayer"),
                                   QStringLiteral("<data>%1</data>").arg(none).replace(QStringLiteral("/none"), here))),
              QStringList{"a linked vector comes back without shapes"});
    EXPECT_EQ(ProblemsOf(LayerText(QStringLiteral("BalloonLayer"), QStringLiteral("<data/>"))),
              QStringList{"the type is unknown"});
    EXPECT_EQ(ProblemsOf(LayerText(QStringLiteral("RulerMapLayer"), {})), QStringList{"it has no data"});
    EXPECT_EQ(ProblemsOf(QStringLiteral("<layer type=\"RulerMapLayer\"><data/></layer>")),
              QStringList{"an attribute is missing"});
    EXPECT_EQ(ProblemsOf(LayerText(QStringLiteral("ObjectMapLayer"),
                                   QStringLiteral("<data><object type=\"SHAPELEGEND\"/></data>"))),
              QStringList{"a shape key ends the reading of annotations"});
    EXPECT_EQ(ProblemsOf(LayerText(QStringLiteral("ShapeFileLayer"),
                                   QStringLiteral("<data><resource>embedded</resource></data>"))),
              QStringList{"the resource \"embedded\" is unknown"});
    EXPECT_EQ(ProblemsOf(LayerText(QStringLiteral("VectorFileLayer"), QStringLiteral("<data/>"))),
              QStringList{"the resource \"\" is unknown"});
    const QString rulers = LayerText(QStringLiteral("RulerMapLayer"), QStringLiteral("<data/>"));
    EXPECT_EQ(ProblemsOf(QString(rulers).replace(QStringLiteral("{0"), QStringLiteral("0"))),
              QStringList{"\"00000000-0000-0000-0000-0000000000AB}\" does not read as id"});
    EXPECT_EQ(ProblemsOf(QString(rulers).replace(QStringLiteral("\"True\""), QStringLiteral("\"yes\""))),
              QStringList{"\"yes\" does not read as visible"});
    EXPECT_EQ(ProblemsOf(QString(rulers).replace(QStringLiteral("<attributes/>"),
                                                 QStringLiteral("<attributes><attribute/></attributes>"))),
              QStringList{"its attributes do not come back"});
}

TEST_F(MapDocInspector, BothEntriesOfEmbeddedDataAreNeeded) {
    const QString manifest = ManifestText(
        LayerText(QStringLiteral("IdrisiMapLayer"), QStringLiteral("<data><resource>embedded</resource></data>")));
    TArchiveInMemory memory(ZipBytes({DeflatedRecord("_meta\\manifest", manifest.toUtf8()),
                                      DeflatedRecord("{00000000-0000-0000-0000-0000000000AB}\\header", "x")}));
    const TMapDocInfo info =
        FInspector.Inspect(TMapDocResourcePersist(memory.Buffer, QStringLiteral("memory"), pmRead));
    EXPECT_EQ(info.Layers.at(0).EmbeddedBytes, 1U);
    EXPECT_EQ(info.Layers.at(0).Problems, QStringList{"the embedded data are not there"});
}

TEST_F(MapDocInspector, NamesAnnotationsThatChange) {
    const auto problems = [this](const char* type, const char* background, const char* border) {
        return ProblemsOf(LayerText(QStringLiteral("ObjectMapLayer"),
                                    QStringLiteral("<data><object type=\"%1\" showBg=\"%2\" bgColor=\"4278190080\" "
                                                   "showBorder=\"%3\" borderColor=\"4278190080\"/></data>")
                                        .arg(QLatin1String(type), QLatin1String(background), QLatin1String(border))));
    };
    const QStringList change = {"the backgrounds and borders of annotations change"};
    EXPECT_EQ(problems("TEXT", "0", "0"), QStringList());
    EXPECT_EQ(problems("TEXT", "-1", "0"), change);
    EXPECT_EQ(problems("TEXT", "0", "-1"), change);
    EXPECT_EQ(problems("RECTANGLE", "-1", "-1"), QStringList());
    EXPECT_EQ(problems("RECTANGLE", "0", "0"), change);
}

TEST_F(MapDocInspector, OneLineIsOneLineWhateverTheDocumentSays) {
    const TMapDocInfo info = InfoOf(
        ManifestText(LayerText(QStringLiteral("RulerMapLayer"), QStringLiteral("<data/>"), QStringLiteral("a&#10;b")),
                     {}, QString(PlainRoot).replace(QStringLiteral("\"Title"), QStringLiteral("\"%1&#13;&#10;%2"))));
    EXPECT_EQ(info.ToText(), "document version 1 type \"Test\" title \"%1\\r\\n%2\" scale 2 world latlon\n"
                             "layer RulerMapLayer \"a\\nb\" {00000000-0000-0000-0000-0000000000AB}\n");
}

TEST_F(MapDocInspector, NamesTextsThatTheLocaleDoesNotRead) {
    const QString rulers = LayerText(
        QStringLiteral("RulerMapLayer"),
        QStringLiteral("<data><vrulers><ruler><location>1,5</location><color>1</color></ruler></vrulers></data>"));
    EXPECT_EQ(ProblemsOf(rulers), QStringList{"\"1,5\" does not read as location"});
    EXPECT_EQ(ProblemsOf(LayerText(QStringLiteral("InfoQueryPointLayer"),
                                   QStringLiteral("<data><iqpoint><point>1,5,2,5</point></iqpoint></data>"))),
              QStringList{"\"1,5,2,5\" does not read as point"});
    EXPECT_EQ(ProblemsOf(LayerText(QStringLiteral("RulerMapLayer"), QStringLiteral("<data/>"))
                             .replace(QStringLiteral("0,10,20,0"), QStringLiteral("0,5,10,5,20,5,0,5"))),
              QStringList{"\"0,5,10,5,20,5,0,5\" does not read as area"});
    EXPECT_EQ(
        InfoOf(ManifestText({}, {}, QString(PlainRoot).replace(QStringLiteral("\"2\""), QStringLiteral("\"2,5\""))))
            .Problems,
        QStringList{"\"2,5\" does not read as zoomScale"});
    const TFormatSettingsScope comma({u','});
    EXPECT_EQ(ProblemsOf(rulers), QStringList());
}

TEST_F(MapDocInspector, NamesVersionsThatCannotBeRead) {
    for (const char* const version : {"0", "2", "x", ""}) {
        const TMapDocInfo info = InfoOf(ManifestText(
            {}, {}, QString(PlainRoot).replace(QStringLiteral("\"1\""), u'"' + QString::fromLatin1(version) + u'"')));
        EXPECT_EQ(info.Problems,
                  QStringList{QStringLiteral("version \"%1\" cannot be read").arg(QString::fromLatin1(version))});
        EXPECT_TRUE(info.ToText().contains(QStringLiteral("\n    problem: version \"")));
    }
    for (const char* const name : {"version", "docTypeID", "mapTitle", "refsystem", "zoomScale", "center"})
        EXPECT_EQ(
            InfoOf(ManifestText({}, {}, QString(PlainRoot).replace(QLatin1String(name), QStringLiteral("x")))).Problems,
            QStringList{QStringLiteral("the attribute %1 is missing").arg(QLatin1String(name))});
    TArchiveInMemory memory(ZipBytes({}));
    EXPECT_THROW(FInspector.Inspect(TMapDocResourcePersist(memory.Buffer, {}, pmRead)),
                 EMapDocResourceNotFoundException);
    EXPECT_EQ(MessageOf<EArgumentNilException>([] { TMapDocInspector(nullptr); }), "LayerPersistFactory");
}

TEST_F(MapDocInspector, AWholeMapHasNoProblems) {
    AddImageLayer(FMap, SmallImage(), nullptr);
    FMap.Objects().GetObjects().Add(std::make_unique<TTextBoxObjectLayerItem>(&FMap.Objects()));
    FMap.Objects().GetObjects().Add(std::make_unique<TCompassRoseObjectLayerItem>(&FMap.Objects()));
    FMap.Objects().GetObjects().Add(std::make_unique<TLegendObjectLayerItem>(&FMap.Objects()));
    EXPECT_EQ(ProblemsOfSaving(), QStringList());
}

TEST_F(MapDocInspector, SaysBeforeASaveWhichAnnotationsChange) {
    TObjectMapLayer* const layer = &FMap.Objects();
    auto& objects = layer->GetObjects();
    objects.Add(std::make_unique<TRectangleObjectTypeItem>(layer));
    objects.Add(std::make_unique<TTextBoxObjectLayerItem>(layer))->SetShowBackground(true);
    objects.Add(std::make_unique<TCompassRoseObjectLayerItem>(layer))->SetLightColor(1);
    objects.Add(std::make_unique<TLegendObjectLayerItem>(layer))->SetFontSize(9);
    objects.Add(std::make_unique<TImageObjectLayerItem>(layer));
    objects.Add(std::make_unique<TShapeLegendObjectLayerItem>(layer));
    objects.Add(std::make_unique<TRectangleObjectTypeItem>(layer)); // behind the key
    AddImageLayer(FMap, SmallImage(), nullptr, QStringLiteral("Tas"))->GetAttributes()[QStringLiteral("k")] = {};
    EXPECT_EQ(ProblemsOfSaving(),
              (QStringList{"The attributes of layer \"Tas\" do not come back",
                           "Annotation \"Rectangle\" does not keep its background and border",
                           "Annotation \"Text: \" does not keep its background and border",
                           "The colours of annotation \"Compass rose\" are not shown again before it is edited",
                           "The font, the sizes and the marks of annotation \"Legend: \" are not saved",
                           "Annotation \"Image\" is of a kind that is not saved",
                           "The shape key stops the objects behind it"}));
}

TEST_F(MapDocInspector, SaysBeforeASaveWhatEndsIt) {
    AddImageLayer(FMap, SmallImage(), TMultipartGradientColorCalculatorFactory::GetObject(), QStringLiteral("A"));
    AddImageLayer(FMap, SmallImage(), nullptr, QStringLiteral("B"))
        ->SetColorCalc(TGradientColorCalculatorFactory::GetObject());
    Add<TIdrisiMapLayer>(QStringLiteral("C"));
    Add<TVectorFileLayer>(QStringLiteral("D"));
    Add<TShapeFileLayer>(QStringLiteral("E"));
    EXPECT_EQ(ProblemsOfSaving(),
              (QStringList{"The multipart gradient of layer \"A\" ends the save",
                           "The calculator of layer \"B\" has no gradient and ends the save",
                           "Layer \"C\" has no image and ends the save", "Layer \"D\" has no vector and ends the save",
                           "Layer \"E\" has no shape file and ends the save"}));
}

TEST_F(MapDocInspector, SaysBeforeASaveWhatIsLost) {
    Add<TVectorFileLayer>(QStringLiteral("Roads"))
        .SetVectorFile(std::make_unique<TVector>(
            FFolder.Write("lines.vct", TVectorBytes(TVectorObjectType::vtLine).Line(1, {{1, 2}, {3, 4}}).File())));
    const QString shapes = FFolder.Write("places.shp", TShapeBytes().Point(1, {3, 4}).File(1));
    Add<TShapeFileLayer>(QStringLiteral("Coast")).TakeShpFile(TShpFile::LoadFromFile(shapes, nullptr));
    AddTestLayer(FMap.Manager, QStringLiteral("Own"));
    FMap.Objects().GetObjects().Add(std::make_unique<TShapeLegendObjectLayerItem>(&FMap.Objects()));
    EXPECT_EQ(ProblemsOfSaving(), (QStringList{"The linked vector of layer \"Roads\" comes back without shapes",
                                               "Layer \"Own\" is of a type that is not saved",
                                               "The shape key stops the objects behind it"}));
    ASSERT_TRUE(QFile::remove(shapes));
    EXPECT_EQ(
        ProblemsOfSaving(erpEmbedIfPossible),
        (QStringList{"The shape file of layer \"Coast\" is not there, and the layer does not come back",
                     "Layer \"Own\" is of a type that is not saved", "The shape key stops the objects behind it"}));
    TDocumentMap worldless(false);
    EXPECT_EQ(FInspector.ProblemsOfSaving(&worldless.View, erpKeepExternal),
              QStringList{"The map has no world and cannot be saved"});
    EXPECT_EQ(MessageOf<EArgumentException>([&] { FInspector.ProblemsOfSaving(nullptr, erpKeepExternal); }),
              "MapControl");
}

} // namespace
} // namespace lmx
