#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/MapDoc/lmxIdrisiMapLayerPersist.h>
#include <lmx/MapDoc/lmxInfoQueryPointLayerPersist.h>
#include <lmx/MapDoc/lmxMapDocLayerPersist.h>
#include <lmx/MapDoc/lmxObjectMapLayerPersist.h>
#include <lmx/MapDoc/lmxRulerMapLayerPersist.h>
#include <lmx/MapDoc/lmxShapeFileLayerPersist.h>
#include <lmx/MapDoc/lmxVectorFileLayerPersist.h>
#include <tests/MapDoc/DocumentMap.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/TestLayer.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using namespace tests;

const QString Id = QStringLiteral("{0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0}");

class MapDocLayerPersist : public testing::Test, TWithPoint {
protected:
    void WriteDefaults() { WriteDefaultLayerProperties(&Layer, Document.GetRoot()); }
    QString Attribute(const char* name) const { return Document.GetRoot().GetAttribute(QString::fromLatin1(name)); }
    void SetAttribute(const char* name, const char* value) {
        Document.GetRoot().SetAttribute(QString::fromLatin1(name), QString::fromUtf8(value));
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    TTestLayer Layer{Manager};
    TXmlDocument Document{QStringLiteral("layer")};
};

TEST_F(MapDocLayerPersist, RegistriesAreExact) {
    const auto factory = TMapDocLayerPersistFactory::GetObject();
    EXPECT_EQ(factory->GetPersist(QStringLiteral("RulerMapLayer")), nullptr);
    const auto first = std::make_shared<TRulerMapLayerPersist>();
    factory->Register(QStringLiteral("RulerMapLayer"), first);
    EXPECT_EQ(factory->GetPersist(QStringLiteral("RulerMapLayer")), first);
    EXPECT_EQ(factory->GetPersist(QStringLiteral("rulermaplayer")), nullptr);
    EXPECT_EQ(MessageOf<EListError>([&] {
                  factory->Register(QStringLiteral("RulerMapLayer"), std::make_shared<TRulerMapLayerPersist>());
              }),
              "Duplicates not allowed");
    EXPECT_EQ(factory->GetPersist(QStringLiteral("RulerMapLayer")), first);
    EXPECT_EQ(MessageOf<EArgumentNilException>([&] { factory->Register(QStringLiteral("Other"), nullptr); }),
              "Persist");
}

TEST_F(MapDocLayerPersist, TheDefaultsAreSixTypesOnce) {
    const auto factory = DefaultPersistFactory();
    const auto is = [&]<class Persist>(const char* name, Persist*) {
        return dynamic_cast<Persist*>(factory->GetPersist(QString::fromLatin1(name)).get()) != nullptr;
    };
    EXPECT_TRUE(is("IdrisiMapLayer", static_cast<TIdrisiMapLayerPersist*>(nullptr)));
    EXPECT_TRUE(is("VectorFileLayer", static_cast<TVectorFileLayerPersist*>(nullptr)));
    EXPECT_TRUE(is("ShapeFileLayer", static_cast<TShapeFileLayerPersist*>(nullptr)));
    EXPECT_TRUE(is("InfoQueryPointLayer", static_cast<TInfoQueryPointLayerPersist*>(nullptr)));
    EXPECT_TRUE(is("RulerMapLayer", static_cast<TRulerMapLayerPersist*>(nullptr)));
    EXPECT_TRUE(is("ObjectMapLayer", static_cast<TObjectMapLayerPersist*>(nullptr)));
    EXPECT_EQ(factory->GetPersist(QStringLiteral("PinMapLayer")), nullptr);
    EXPECT_EQ(factory->GetPersist(QStringLiteral("SelectionMapLayer")), nullptr);
    EXPECT_EQ(MessageOf<EListError>([&] { TMapDocLayerPersistFactory::PopulateDefault(factory); }),
              "Duplicates not allowed");
    EXPECT_THROW(TMapDocLayerPersistFactory::PopulateDefault(nullptr), EExArgumentNilException);
}

TEST_F(MapDocLayerPersist, TheSharedRegistryBeginsEmptyAndOthersAreTheirOwn) {
    const auto& shared = TMapDocLayerPersistFactory::GetSingleton();
    EXPECT_EQ(shared, TMapDocLayerPersistFactory::GetSingleton());
    EXPECT_EQ(shared->GetPersist(QStringLiteral("RulerMapLayer")), nullptr);
    EXPECT_NE(TMapDocLayerPersistFactory::GetObject(), TMapDocLayerPersistFactory::GetObject());
}

TEST_F(MapDocLayerPersist, WritesSixAttributesInTheirOrder) {
    Layer.SetLayerID(QUuid(Id));
    Layer.SetLayerName(QStringLiteral("A <b>\t\"c\""));
    Layer.SetIsVisible(false);
    Layer.SetLayerArea(LatLonArea({-1.5L, 2, 3.25L, -4}));
    WriteDefaults();
    EXPECT_EQ(Document.ToText(),
              QStringLiteral("<?xml version=\"1.0\"?><layer type=\"TestLayer\" id=\"%1\" name=\"A &lt;b>&#09;"
                             "&quot;c&quot;\" visible=\"False\" refsystem=\"latlon\" "
                             "area=\"-1.500000,2.000000,3.250000,-4.000000\"/>")
                  .arg(Id)
                  .replace(QStringLiteral("TestLayer"), Layer.GetLayerClassName()));
}

TEST_F(MapDocLayerPersist, ALayerWithoutASystemIsOfNull) {
    WriteDefaults();
    EXPECT_EQ(Attribute("refsystem"), "null");
    EXPECT_EQ(Attribute("visible"), "True");
    Layer.SetLayerArea(LatLonArea({1, 2, 3, 4}));
    ReadDefaultLayerProperties(Document.GetRoot(), &Layer);
    EXPECT_EQ(Layer.GetLayerArea().WorldSystem, nullptr);
    WriteDefaults();
    EXPECT_EQ(Attribute("refsystem"), "null");
    SetAttribute("refsystem", "mars");
    ReadDefaultLayerProperties(Document.GetRoot(), &Layer);
    EXPECT_EQ(Layer.GetLayerArea().WorldSystem, nullptr);
}

TEST_F(MapDocLayerPersist, ReadsWhatWasWritten) {
    Layer.SetLayerName(QStringLiteral("\u00C9t\u00E9\nrain"));
    Layer.SetIsVisible(false);
    TWorldMapArea area{{-1.5L, 2, 3.25L, -4}, TLatLonAntimeridianWorldSystemFactory::GetObject()};
    area.Area.XTranslate = 360;
    Layer.SetLayerArea(area);
    WriteDefaults();
    TTestLayer other(Manager);
    int areaEvents = 0;
    const auto subscription = other.GetOnLayerAreaChanged().Add([&](TBaseMapLayer*) { ++areaEvents; });
    ReadDefaultLayerProperties(TXmlDocument::FromText(Document.ToText()).GetRoot(), &other);
    EXPECT_EQ(other.GetLayerID(), Layer.GetLayerID());
    EXPECT_EQ(other.GetLayerName(), Layer.GetLayerName());
    EXPECT_FALSE(other.GetIsVisible());
    EXPECT_EQ(other.GetLayerArea().Area, TMapArea(-1.5L, 2, 3.25L, -4));
    EXPECT_EQ(other.GetLayerArea().WorldSystem, TLatLonAntimeridianWorldSystemFactory::GetObject());
    EXPECT_EQ(areaEvents, 0);
}

TEST_F(MapDocLayerPersist, ADamagedAttributeLeavesTheLayerAsItWas) {
    struct TDamage {
        const char* Name;
        const char* Value;
        const char* Message;
    };
    WriteDefaults();
    SetAttribute("name", "Other");
    for (const TDamage& damage : {TDamage{"id", "{0F1E2D3C}", "'{0F1E2D3C}' is not a valid GUID value"},
                                  TDamage{"id", "0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0",
                                          "'0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0' is not a valid GUID value"},
                                  TDamage{"id", "{0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0}x",
                                          "'{0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0}x' is not a valid GUID value"},
                                  TDamage{"id", "", "'' is not a valid GUID value"},
                                  TDamage{"visible", "yes", "'yes' is not a valid boolean value"},
                                  TDamage{"visible", "", "'' is not a valid boolean value"}}) {
        const QString before = Attribute(damage.Name);
        SetAttribute(damage.Name, damage.Value);
        EXPECT_EQ(MessageOf<EConvertError>([&] { ReadDefaultLayerProperties(Document.GetRoot(), &Layer); }),
                  damage.Message);
        Document.GetRoot().SetAttribute(QString::fromLatin1(damage.Name), before);
    }
    for (const char* const area : {"1,2,3", "", "1,2,3,4,5", "a,b,c,d"}) {
        SetAttribute("area", area);
        EXPECT_EQ(MessageOf<EArgumentException>([&] { ReadDefaultLayerProperties(Document.GetRoot(), &Layer); }),
                  "Invalid MapArea string");
    }
    EXPECT_EQ(Layer.GetLayerName(), "");
}

TEST_F(MapDocLayerPersist, TakesOtherFormsOfTheSameValues) {
    WriteDefaults();
    SetAttribute("id", "{0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0}");
    for (const auto& [text, isVisible] : {std::pair("0", false), std::pair("tRUE", true), std::pair("0.0", false),
                                          std::pair("-1", true), std::pair("FALSE", false), std::pair("2", true)}) {
        SetAttribute("visible", text);
        ReadDefaultLayerProperties(Document.GetRoot(), &Layer);
        EXPECT_EQ(Layer.GetIsVisible(), isVisible) << text;
    }
    EXPECT_EQ(Layer.GetLayerID(), QUuid(Id));
}

TEST_F(MapDocLayerPersist, AllSixAttributesAreNeeded) {
    WriteDefaults();
    const QString whole = Document.ToText();
    EXPECT_TRUE(HasDefaultLayerProperties(Document.GetRoot()));
    for (const char* const name : {"type", "id", "name", "visible", "refsystem", "area"}) {
        QString without = whole;
        without.replace(QStringLiteral(" %1=").arg(QString::fromLatin1(name)), QStringLiteral(" x="));
        EXPECT_FALSE(HasDefaultLayerProperties(TXmlDocument::FromText(without).GetRoot())) << name;
    }
    SetAttribute("name", "");
    EXPECT_TRUE(HasDefaultLayerProperties(Document.GetRoot()));
}

TEST_F(MapDocLayerPersist, WritesAttributesButNamelessOnes) {
    Layer.GetAttributes() = {{QString(), {TAttributeDataType::adtString, QStringLiteral("lost")}},
                             {QStringLiteral("b"), {TAttributeDataType::adtInteger, QStringLiteral("7")}},
                             {QStringLiteral("a"), {TAttributeDataType::adtFloat, QStringLiteral("1.5")}},
                             {QStringLiteral("c"), {TAttributeDataType::adtString, QStringLiteral("<x>")}}};
    WriteAttributes(&Layer, Document.GetRoot());
    EXPECT_EQ(Document.ToText(),
              "<?xml version=\"1.0\"?><layer><attribute name=\"a\" type=\"1\">1.5</attribute><attribute name=\"b\" "
              "type=\"2\">7</attribute><attribute name=\"c\" type=\"0\">&lt;x&gt;</attribute></layer>");
}

TEST_F(MapDocLayerPersist, NilArgumentsAreNamed) {
    EXPECT_EQ(MessageOf<EArgumentNilException>([&] { WriteDefaultLayerProperties(nullptr, Document.GetRoot()); }),
              "Layer");
    EXPECT_EQ(MessageOf<EArgumentNilException>([&] { WriteDefaultLayerProperties(&Layer, {}); }), "Node");
    EXPECT_EQ(MessageOf<EArgumentNilException>([&] { ReadDefaultLayerProperties(Document.GetRoot(), nullptr); }),
              "Layer");
    EXPECT_EQ(MessageOf<EArgumentNilException>([&] { WriteAttributes(nullptr, Document.GetRoot()); }), "Layer");
}

TEST_F(MapDocLayerPersist, EachPersistObjectTakesItsOwnLayersOnly) {
    const auto factory = DefaultPersistFactory();
    TArchiveInMemory memory(ZipBytes({}));
    TMapDocResourcePersist resources(memory.Buffer, {}, pmRead);
    for (const char* const name : {"IdrisiMapLayer", "VectorFileLayer", "ShapeFileLayer", "InfoQueryPointLayer",
                                   "RulerMapLayer", "ObjectMapLayer"}) {
        const auto persist = factory->GetPersist(QString::fromLatin1(name));
        for (TBaseMapLayer* const layer : {static_cast<TBaseMapLayer*>(&Layer), static_cast<TBaseMapLayer*>(nullptr)}) {
            EXPECT_EQ(MessageOf<EArgumentException>([&] { persist->ReadLayer(resources, layer, Document.GetRoot()); }),
                      "Layer")
                << name;
            EXPECT_EQ(MessageOf<EArgumentException>(
                          [&] { persist->WriteLayer(resources, layer, Document.GetRoot(), erpKeepExternal); }),
                      "Layer")
                << name;
        }
    }
}

TEST_F(MapDocLayerPersist, AListenerMayFreeTheLayerThatIsRead) {
    WriteDefaults();
    SetAttribute("name", "Other");
    SetAttribute("visible", "False");
    TTestLayer* const layer = AddTestLayer(Manager);
    const auto subscription =
        layer->GetOnLayerNameChanged().Add([&](TBaseMapLayer* changed) { Manager->GetLayers().Remove(changed); });
    ReadDefaultLayerProperties(Document.GetRoot(), layer);
    EXPECT_EQ(Manager->GetLayers().Count(), 0);
}

} // namespace
} // namespace lmx
