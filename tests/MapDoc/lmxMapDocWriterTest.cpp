#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Layers/lmxPinMapLayer.h>
#include <lmx/MapDoc/lmxMapDocWriter.h>
#include <tests/MapDoc/DocumentMap.h>
#include <tests/Support/FailingDevice.h>
#include <tests/Support/TestLayer.h>

#include <gtest/gtest.h>

#include <functional>

namespace lmx {
namespace {

using namespace tests;

class MapDocWriter : public testing::Test, TWithPoint {
protected:
    TDocumentFolder FFolder;
    TDocumentMap FMap;
};

/// A persist object of a host for TTestLayer.
class TOwnPersist : public IMapDocLayerPersist {
public:
    explicit TOwnPersist(std::function<void(TMapDocResourcePersist&, const TBaseMapLayer*)> write)
        : FWrite(std::move(write)) {}
    void ReadLayer(TMapDocResourcePersist&, TBaseMapLayer*, TXmlNode) override {}
    void WriteLayer(TMapDocResourcePersist& resources, const TBaseMapLayer* layer, TXmlNode,
                    TMapDocExternalResourcePolicy) override {
        FWrite(resources, layer);
    }

private:
    std::function<void(TMapDocResourcePersist&, const TBaseMapLayer*)> FWrite;
};

/// The same of a type that maps can do without.
class TLabelsPersist final : public TOwnPersist {
public:
    TLabelsPersist() : TOwnPersist([](TMapDocResourcePersist&, const TBaseMapLayer*) {}) {}
    bool IsDecoration() const override { return true; }
};

TEST_F(MapDocWriter, SaysWhichLayersAreDecorations) {
    AddTestLayer(FMap.Manager, QStringLiteral("Labels"));
    AddImageLayer(FMap, SmallImage(), nullptr, QStringLiteral("Rain"));
    const auto keepers = DefaultPersistFactory();
    keepers->Register(FMap.Manager->GetLayers()[0]->GetLayerClassName(), std::make_shared<TLabelsPersist>());
    TMapDocWriter(QStringLiteral("Test"), keepers).Write(FFolder.Path(), &FMap.View, erpKeepExternal);
    const TXmlDocument document = TXmlDocument::FromText(ManifestOf(FFolder.Path()));
    QStringList decorations;
    for (const TXmlNode layer : document.GetRoot().Child(QStringLiteral("layers")).GetChildren())
        decorations +=
            layer.GetAttribute(QStringLiteral("name")) + u' ' + layer.GetAttribute(QStringLiteral("decoration"));
    EXPECT_EQ(decorations, (QStringList{"Labels True", "Rain "}));
}

TEST_F(MapDocWriter, WritesAnEmptyMap) {
    FMap.Manager->SetTitle(QStringLiteral("A \"map\""));
    FMap.View.GetViewport()->SetScale(1.25L);
    FMap.View.SetCenter({10.5L, -20});
    TMapDocWriter(QStringLiteral("Test"), TMapDocLayerPersistFactory::GetObject())
        .Write(FFolder.Path(), &FMap.View, erpKeepExternal);
    EXPECT_EQ(ManifestOf(FFolder.Path()),
              QStringLiteral("<?xml version=\"1.0\"?><mapDoc version=\"1\" docTypeID=\"Test\" mapTitle=\"A "
                             "&quot;map&quot;\" zoomScale=\"1.25\" center=\"%1\" refsystem=\"latlon\"><layers/>"
                             "<specialLayers/></mapDoc>")
                  .arg(FMap.View.GetViewport()->GetCenter().ToString(false)));
    EXPECT_FALSE(ManifestOf(FFolder.Path()).contains(QStringLiteral("center=\"0.000")));
}

TEST_F(MapDocWriter, WritesLayersInTheirOrderAndOnlyKnownOnes) {
    AddImageLayer(FMap, SmallImage(), nullptr, QStringLiteral("First"));
    AddTestLayer(FMap.Manager, QStringLiteral("Unknown"));
    FMap.Manager->GetLayers().Add(std::make_unique<TPinMapLayer>(FMap.Manager));
    TIdrisiMapLayer* const second = AddImageLayer(FMap, SmallImage(), nullptr, QStringLiteral("Second"));
    second->GetAttributes()[QStringLiteral("k")] = {TAttributeDataType::adtInteger, QStringLiteral("5")};
    FMap.Save(FFolder.Path());
    const TXmlDocument document = TXmlDocument::FromText(ManifestOf(FFolder.Path()));
    QStringList names;
    for (const TXmlNode layer : document.GetRoot().Child(QStringLiteral("layers")).GetChildren()) {
        EXPECT_EQ(layer.GetName(), "layer");
        names += layer.GetAttribute(QStringLiteral("name"));
    }
    EXPECT_EQ(names, (QStringList{"First", "Second"}));
    QStringList types;
    for (const TXmlNode layer : document.GetRoot().Child(QStringLiteral("specialLayers")).GetChildren())
        types += layer.GetAttribute(QStringLiteral("type"));
    types.sort();
    EXPECT_EQ(types, (QStringList{"InfoQueryPointLayer", "ObjectMapLayer", "RulerMapLayer"}));
    EXPECT_TRUE(document.ToText().contains(
        QStringLiteral("<attributes><attribute name=\"k\" type=\"2\">5</attribute></attributes><data>")));
}

// The bytes of each name in the order of the directory.
TEST_F(MapDocWriter, TheManifestIsTheLastEntry) {
    TIdrisiMapLayer* const layer = AddImageLayer(FMap, SmallImage(), nullptr);
    FMap.Save(FFolder.Path());
    const QByteArray file = FFolder.Read();
    const QByteArray id = layer->GetLayerID().toString().toUpper().toLatin1();
    const qsizetype header = file.lastIndexOf(id + "\\header");
    const qsizetype data = file.lastIndexOf(id + "\\imagedata");
    const qsizetype manifest = file.lastIndexOf("_meta\\manifest");
    EXPECT_LT(0, header);
    EXPECT_LT(header, data);
    EXPECT_LT(data, manifest);
    EXPECT_EQ(file.count("PK\1\2"), 3);
}

TEST_F(MapDocWriter, TheSameMapGivesTheSameBytes) {
    AddImageLayer(FMap, SmallImage(), nullptr);
    FMap.Save(FFolder.Path("a"), erpEmbedIfPossible);
    FMap.Save(FFolder.Path("b"), erpEmbedIfPossible);
    EXPECT_EQ(FFolder.Read("a"), FFolder.Read("b"));
}

TEST_F(MapDocWriter, ArgumentsAreTestedBeforeTheFileIsTouched) {
    FFolder.Write("map.lmx", "old");
    TMapDocWriter writer(QStringLiteral("Test"), DefaultPersistFactory());
    EXPECT_EQ(MessageOf<EArgumentException>([&] { writer.Write(FFolder.Path(), nullptr, erpKeepExternal); }),
              "MapControl");
    TMapViewControl view;
    EXPECT_EQ(MessageOf<EArgumentNilException>([&] { writer.Write(FFolder.Path(), &view, erpKeepExternal); }),
              "MapControl.LayerManager");
    TDocumentMap worldless(false);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { writer.Write(FFolder.Path(), &worldless.View, erpKeepExternal); }),
              "World not created");
    EXPECT_EQ(FFolder.Read(), "old");
    EXPECT_EQ(MessageOf<EArgumentNilException>([&] { TMapDocWriter(QStringLiteral("Test"), nullptr); }),
              "LayerPersistFactory");
}

TEST_F(MapDocWriter, AMapWithoutASystemSaysNull) {
    FMap.View.ChangeWorldSystem(nullptr);
    TMapDocWriter(QStringLiteral("Test"), TMapDocLayerPersistFactory::GetObject())
        .Write(FFolder.Path(), &FMap.View, erpKeepExternal);
    EXPECT_TRUE(ManifestOf(FFolder.Path()).contains(QStringLiteral(" center=\"0.000,0.000\" refsystem=\"null\">")));
}

TEST_F(MapDocWriter, AMultipartGradientEndsTheSave) {
    AddImageLayer(FMap, SmallImage(), nullptr, QStringLiteral("Before"));
    FMap.Save(FFolder.Path());
    AddImageLayer(FMap, SmallImage(), TMultipartGradientColorCalculatorFactory::GetObject(0, 4));
    EXPECT_EQ(MessageOf<ENotImplemented>([&] { FMap.Save(FFolder.Path()); }), "Not Implemented");
    EXPECT_EQ(MessageOf<EMapDocResourceNotFoundException>([&] { FMap.Load(FFolder.Path()); }),
              "The specified MapDoc resource was not found");
    EXPECT_EQ(FFolder.Read().count("PK\1\2"), 4); // the entries of both layers, with a directory
}

TEST_F(MapDocWriter, AHostsPersistObjectMayStopTheSaveByAnException) {
    AddTestLayer(FMap.Manager);
    const auto factory = DefaultPersistFactory();
    factory->Register(QStringLiteral("TestLayer"),
                      std::make_shared<TOwnPersist>([](TMapDocResourcePersist& resources, auto*) {
                          resources.Write(QStringLiteral("own"), QStringLiteral("data"), "kept");
                          throw std::runtime_error("cancelled");
                      }));
    if (FMap.Manager->GetLayers()[0]->GetLayerClassName() != QStringLiteral("TestLayer"))
        factory->Register(FMap.Manager->GetLayers()[0]->GetLayerClassName(),
                          factory->GetPersist(QStringLiteral("TestLayer")));
    TMapDocWriter writer(QStringLiteral("Test"), factory);
    EXPECT_THROW(writer.Write(FFolder.Path(), &FMap.View, erpKeepExternal), std::runtime_error);
    const TMapDocResourcePersist archive(FFolder.Path(), pmRead);
    EXPECT_EQ(archive.Read(QStringLiteral("own"), QStringLiteral("data")), "kept");
    EXPECT_FALSE(archive.Has({}, QStringLiteral("manifest")));
}

TEST_F(MapDocWriter, APersistObjectMayChangeTheStack) {
    TTestLayer* const first = AddTestLayer(FMap.Manager, QStringLiteral("1"));
    AddTestLayer(FMap.Manager, QStringLiteral("2"));
    AddTestLayer(FMap.Manager, QStringLiteral("3"));
    QStringList written;
    const auto factory = TMapDocLayerPersistFactory::GetObject();
    factory->Register(first->GetLayerClassName(),
                      std::make_shared<TOwnPersist>([&](TMapDocResourcePersist&, const TBaseMapLayer* layer) {
                          written += layer->GetLayerName();
                          if (layer == first)
                              FMap.Manager->GetLayers().Remove(FMap.Manager->GetLayers()[1]);
                      }));
    TMapDocWriter(QStringLiteral("Test"), factory).Write(FFolder.Path(), &FMap.View, erpKeepExternal);
    EXPECT_EQ(written, (QStringList{"1", "3"}));
}

TEST_F(MapDocWriter, NoFailureOfADeviceIsLost) {
    AddImageLayer(FMap, SmallImage(), nullptr);
    FMap.Points().GetPoints().Add(std::make_unique<TInfoQueryPoint>());
    const auto save = [&](QIODevice& device) {
        TMapDocResourcePersist resources(device, QStringLiteral("disk"), pmWrite);
        TMapDocWriter(QStringLiteral("Test"), DefaultPersistFactory()).Write(resources, &FMap.View, erpKeepExternal);
        resources.Finish();
    };
    TFailingDevice whole;
    save(whole);
    ASSERT_GT(whole.GetWrites(), 20);
    for (int n = 0; n < whole.GetWrites(); ++n) {
        TFailingDevice device(n);
        EXPECT_EQ(MessageOf<EFileException>([&] { save(device); }), "disk: cannot be written: No space left on device")
            << n;
    }
    EXPECT_EQ(FMap.Manager->GetLayers().Count(), 1);
}

TEST_F(MapDocWriter, WhatCannotBeOpenedIsNamed) {
    const QString folder = FFolder.Path("none/map.lmx");
    EXPECT_EQ(MessageOf<EFileException>([&] { FMap.Save(folder); }),
              folder + QStringLiteral(": cannot be written: No such file or directory"));
    EXPECT_EQ(MessageOf<EFileException>([&] { FMap.Save(FFolder.Path(".")); }),
              FFolder.Path(".") + QStringLiteral(": cannot be written: no regular file"));
}

} // namespace
} // namespace lmx
