#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Layers/Objects/lmxCompassRoseObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxImageObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxLegendObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxRectangleObjectTypeItem.h>
#include <lmx/Layers/Objects/lmxShapeLegendObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxTextBoxObjectLayerItem.h>
#include <lmx/MapDoc/lmxObjectLayerTypeItemPersist.h>
#include <lmx/MapDoc/lmxObjectMapLayerPersist.h>
#include <tests/MapDoc/DocumentMap.h>
#include <tests/Support/GeometryPrinters.h>
#include <tests/Support/TestLayer.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using namespace tests;

const QString Base = QStringLiteral("anchors=\"akLeft,akTop\" anchorData=\"1,2,3,4\" name=\"N\" visible=\"-1\" "
                                    "rect=\"10,20,110,70\"");

QString ObjectText(const char* type, const QString& children = {}, const QString& attributes = Base) {
    return QStringLiteral("<object type=\"%1\" %3>%2</object>").arg(QString::fromLatin1(type), children, attributes);
}

const QString TextChildren = QStringLiteral(
    "<text>Rain\tin\nmm</text><font>Serif</font><fontSize>12</fontSize><fontStyles>fsBold,fsItalic</fontStyles>"
    "<textAlign>2</textAlign><color>-16777208</color>");
const QString RoseChildren =
    QStringLiteral("<lightColor>4278190081</lightColor><darkColor>4278190082</darkColor><fontColor>4278190083"
                   "</fontColor><lineColor>4278190084</lineColor>");

class ObjectMapLayerPersist : public testing::Test, TWithPoint {
protected:
    QString Written() {
        const TXmlDocument document(QStringLiteral("data"));
        Persist.WriteLayer(FResources, &FMap.Objects(), document.GetRoot(), erpKeepExternal);
        return document.ToText().mid(static_cast<int>(qstrlen("<?xml version=\"1.0\"?>")));
    }
    void Read(const QString& children, const QString& viewSize = QStringLiteral("200,100")) {
        const TXmlDocument document =
            TXmlDocument::FromText(QStringLiteral("<data viewSize=\"%1\">%2</data>").arg(viewSize, children));
        Persist.ReadLayer(FResources, &FMap.Objects(), document.GetRoot());
    }
    template<class Failure = Exception>
    QString RefusalOf(const QString& children) {
        return MessageOf<Failure>([&] { Read(children); });
    }
    template<class Item>
    Item& ItemAt(int index) {
        return dynamic_cast<Item&>(*FMap.Objects().GetObjects()[index]);
    }
    template<class Item>
    Item& Add() {
        return *FMap.Objects().GetObjects().Add(std::make_unique<Item>(&FMap.Objects()));
    }
    int Count() { return FMap.Objects().GetObjects().Count(); }

    TArchiveInMemory FMemory{ZipBytes({})};
    TMapDocResourcePersist FResources{FMemory.Buffer, {}, pmRead};
    TDocumentMap FMap;
    TObjectMapLayerPersist Persist;
};

TEST_F(ObjectMapLayerPersist, KnowsFiveTypesExactly) {
    for (const char* const type : {"COMPASSROSE", "TEXT", "SHAPELEGEND", "LEGEND", "RECTANGLE"}) {
        const auto persist = TObjectLayerTypeItemPersistFactory::GetObject(QString::fromLatin1(type));
        ASSERT_NE(persist, nullptr);
        EXPECT_EQ(persist->CreateObject(&FMap.Objects())->GetObjectClassType(), type);
    }
    for (const char* const type : {"", "text", "IMAGE", "TEXT "})
        EXPECT_EQ(TObjectLayerTypeItemPersistFactory::GetObject(QString::fromLatin1(type)), nullptr);
}

TEST_F(ObjectMapLayerPersist, WritesTheAttributesInTheirOrder) {
    FMap.Objects().SetPrevViewSize({640, 480});
    auto& item = Add<TRectangleObjectTypeItem>();
    item.SetName(QStringLiteral("Frame"));
    item.SetRect({10, 20, 110, 70});
    item.SetAnchors({TAnchorKind::akRight, TAnchorKind::akBottom});
    item.SetIsVisible(false);
    item.SetShowBackground(false);
    item.SetBackgroundColor(0xFF010203);
    item.SetLocked(true);
    item.SetShowBorder(true);
    item.SetBorderColor(5);
    EXPECT_EQ(Written(), "<data viewSize=\"640,480\"><object type=\"RECTANGLE\" anchors=\"akRight,akBottom\" "
                         "anchorData=\"10,20,530,410\" name=\"Frame\" visible=\"0\" rect=\"10,20,110,70\" showBg=\"0\" "
                         "bgColor=\"4278256131\" locked=\"-1\" showBorder=\"-1\" borderColor=\"5\"/></data>");
}

TEST_F(ObjectMapLayerPersist, TheSavedBorderComesBackAsTheBackground) {
    Read(ObjectText("RECTANGLE", {},
                    Base + QStringLiteral(" showBg=\"-1\" bgColor=\"1\" locked=\"-1\" showBorder=\"0\" "
                                          "borderColor=\"4278190080\"")));
    const auto& item = ItemAt<TRectangleObjectTypeItem>(0);
    EXPECT_FALSE(item.GetShowBackground());
    EXPECT_EQ(item.GetBackgroundColor(), 0xFF000000U);
    EXPECT_TRUE(item.GetShowBorder()); // as its constructor made it
    EXPECT_EQ(item.GetBorderColor(), 0xFF000000U);
    EXPECT_TRUE(item.GetLocked());
    EXPECT_EQ(item.GetName(), "N");
    EXPECT_TRUE(item.GetIsVisible());
    EXPECT_EQ(item.GetRect(), TRect(10, 20, 110, 70));
    EXPECT_EQ(item.GetAnchors(), TAnchors({TAnchorKind::akLeft, TAnchorKind::akTop}));
}

TEST_F(ObjectMapLayerPersist, OptionalAttributesLeaveWhatTheConstructorMade) {
    const TRectangleObjectTypeItem fresh(nullptr);
    Read(ObjectText("RECTANGLE", {}, QStringLiteral("visible=\"0\" rect=\"1,2,3,4\"")));
    const auto& item = ItemAt<TRectangleObjectTypeItem>(0);
    EXPECT_EQ(item.GetShowBackground(), fresh.GetShowBackground());
    EXPECT_EQ(item.GetBackgroundColor(), fresh.GetBackgroundColor());
    EXPECT_FALSE(item.GetLocked());
    EXPECT_EQ(item.GetName(), "");
    EXPECT_TRUE(item.GetAnchors().IsEmpty());
    EXPECT_FALSE(item.GetIsVisible());
}

// The anchor data of the file are not taken: they are measured against the saved size of the view.
TEST_F(ObjectMapLayerPersist, AnchorDataAreMeasuredAgainstTheSavedView) {
    Read(ObjectText("RECTANGLE", {}, QString(Base).replace(QStringLiteral("1,2,3,4"), QStringLiteral("rubbish"))),
         QStringLiteral("1000,500"));
    EXPECT_EQ(FMap.Objects().GetPrevViewSize(), TSize(1000, 500));
    EXPECT_EQ(ItemAt<TRectangleObjectTypeItem>(0).GetAnchorData(), TAnchorData(10, 20, 890, 430));
}

TEST_F(ObjectMapLayerPersist, DocumentsHoldPixelsToTheEye) {
    FMap.Objects().SetDeviceRatio(1.5);
    Read(ObjectText("RECTANGLE"), QStringLiteral("100,50"));
    EXPECT_EQ(FMap.Objects().GetPrevViewSize(), TSize(150, 75));
    EXPECT_EQ(ItemAt<TRectangleObjectTypeItem>(0).GetRect(), TRect(15, 30, 165, 105));
    const QString written = Written();
    EXPECT_TRUE(written.contains(QStringLiteral("viewSize=\"100,50\""))) << written.toStdString();
    EXPECT_TRUE(written.contains(QStringLiteral("rect=\"10,20,110,70\""))) << written.toStdString();
    EXPECT_TRUE(written.contains(QStringLiteral("anchorData=\"10,20,-10,-20\""))) << written.toStdString();
}

TEST_F(ObjectMapLayerPersist, TextBoxesComeBack) {
    Read(ObjectText("TEXT", TextChildren));
    const auto& box = ItemAt<TTextBoxObjectLayerItem>(0);
    EXPECT_EQ(box.GetText(), "Rain\tin\nmm");
    EXPECT_EQ(box.GetFont(), "Serif");
    EXPECT_EQ(box.GetFontSize(), 12);
    EXPECT_EQ(box.GetFontStyles(), TFontStyles({TFontStyle::fsBold, TFontStyle::fsItalic}));
    EXPECT_EQ(box.GetTextAlign(), TAlignment::taCenter);
    EXPECT_EQ(box.GetColor().Value, -16777208);
    EXPECT_TRUE(Written().contains(TextChildren)) << Written().toStdString();
    for (const char* const name : {"text", "font", "fontSize", "fontStyles", "textAlign", "color"}) {
        QString without = TextChildren;
        without.replace(QStringLiteral("<%1>").arg(QString::fromLatin1(name)), QStringLiteral("<x>"))
            .replace(QStringLiteral("</%1>").arg(QString::fromLatin1(name)), QStringLiteral("</x>"));
        EXPECT_EQ(RefusalOf(ObjectText("TEXT", without)), "Required node missing") << name;
    }
    EXPECT_EQ(RefusalOf<EConvertError>(
                  ObjectText("TEXT", QString(TextChildren).replace(QStringLiteral(">2<"), QStringLiteral(">3<")))),
              "'3' is not a valid integer value");
    EXPECT_EQ(Count(), 1);
}

TEST_F(ObjectMapLayerPersist, ACompassRoseShowsItsDefaultColorsAndKeepsTheSavedOnes) {
    Read(ObjectText("COMPASSROSE", RoseChildren));
    auto& rose = ItemAt<TCompassRoseObjectLayerItem>(0);
    EXPECT_EQ(rose.GetLightColor(), 4278190081U);
    EXPECT_EQ(rose.GetDarkColor(), 4278190082U);
    EXPECT_EQ(rose.GetFontColor(), 4278190083U);
    EXPECT_EQ(rose.GetLineColor(), 4278190084U);
    TCompassRoseObjectLayerItem fresh(&FMap.Objects());
    fresh.SetRect(rose.GetRect());
    ASSERT_NE(rose.GetBuff(), nullptr);
    ASSERT_EQ(rose.GetBuff()->GetHeight(), fresh.GetBuff()->GetHeight());
    for (int y = 0; y < rose.GetBuff()->GetHeight(); ++y)
        for (int x = 0; x < rose.GetBuff()->GetWidth(); ++x)
            ASSERT_EQ(rose.GetBuff()->Pixel(x, y), fresh.GetBuff()->Pixel(x, y)) << x << ", " << y;
    EXPECT_TRUE(Written().contains(RoseChildren));
    for (const char* const name : {"lightColor", "darkColor", "fontColor", "lineColor"})
        EXPECT_EQ(RefusalOf(ObjectText("COMPASSROSE",
                                       QString(RoseChildren).replace(QString::fromLatin1(name), QStringLiteral("x")))),
                  "Missing required node")
            << name;
}

TEST_F(ObjectMapLayerPersist, LegendsFindTheirLayerAgain) {
    TTestLayer* const layer = AddTestLayer(FMap.Manager, QStringLiteral("Rain"));
    auto& written = Add<TLegendObjectLayerItem>();
    written.SetLegendLayer(layer);
    written.SetOrientation(TLegendOrientation::loVertical);
    const QString children = QStringLiteral("<layerId>%1</layerId><orientation>1</orientation>")
                                 .arg(layer->GetLayerID().toString().toUpper());
    EXPECT_TRUE(Written().contains(children)) << Written().toStdString();
    Read(ObjectText("LEGEND", children));
    EXPECT_EQ(ItemAt<TLegendObjectLayerItem>(1).GetLegendLayer(), layer);
    EXPECT_EQ(ItemAt<TLegendObjectLayerItem>(1).GetOrientation(), TLegendOrientation::loVertical);
    written.SetLegendLayer(nullptr);
    EXPECT_TRUE(Written().contains(QStringLiteral("<layerId>null</layerId>")));
    Read(ObjectText("LEGEND", QStringLiteral("<layerId>null</layerId><orientation>0</orientation>")));
    EXPECT_EQ(ItemAt<TLegendObjectLayerItem>(2).GetLegendLayer(), nullptr);
    Read(ObjectText("LEGEND", QStringLiteral("<layerId>{00000000-0000-0000-0000-000000000001}</layerId>"
                                             "<orientation>0</orientation>")));
    EXPECT_EQ(ItemAt<TLegendObjectLayerItem>(3).GetLegendLayer(), nullptr);
}

TEST_F(ObjectMapLayerPersist, LegendsRefuseWhatTheyCannotTake) {
    EXPECT_EQ(RefusalOf(ObjectText("LEGEND", QStringLiteral("<layerId>null</layerId>"))), "Missing required node");
    EXPECT_EQ(RefusalOf(ObjectText("LEGEND", QStringLiteral("<orientation>0</orientation>"))), "Missing required node");
    EXPECT_EQ(RefusalOf<EConvertError>(
                  ObjectText("LEGEND", QStringLiteral("<layerId>NULL</layerId><orientation>0</orientation>"))),
              "'NULL' is not a valid GUID value");
    EXPECT_EQ(RefusalOf<EConvertError>(
                  ObjectText("LEGEND", QStringLiteral("<layerId>null</layerId><orientation>2</orientation>"))),
              "'2' is not a valid integer value");
}

TEST_F(ObjectMapLayerPersist, AShapeKeyEndsTheReading) {
    Add<TShapeLegendObjectLayerItem>().SetShowAll(false);
    EXPECT_TRUE(Written().contains(QStringLiteral("<showAll>0</showAll>")));
    FMap.Objects().GetObjects().Clear();
    EXPECT_EQ(RefusalOf<EConvertError>(ObjectText("COMPASSROSE", RoseChildren) +
                                       ObjectText("SHAPELEGEND", QStringLiteral("<showAll>0</showAll>")) +
                                       ObjectText("TEXT", TextChildren)),
              "'' is not a valid boolean value");
    EXPECT_EQ(Count(), 1);
    EXPECT_EQ(RefusalOf(ObjectText("SHAPELEGEND")), "Missing required node");
}

TEST_F(ObjectMapLayerPersist, UnknownTypesArePassedOver) {
    FMap.Objects().GetObjects().Add(std::make_unique<TImageObjectLayerItem>(&FMap.Objects()));
    EXPECT_FALSE(Written().contains(QStringLiteral("<object")));
    Read(ObjectText("BALLOON", {}, QStringLiteral("rect=\"x\"")) + QStringLiteral("<object/><other/>") +
         ObjectText("RECTANGLE"));
    EXPECT_EQ(Count(), 2);
}

TEST_F(ObjectMapLayerPersist, ADamagedAttributeEndsTheReading) {
    const auto refusal = [&](const char* from, const char* to) {
        return RefusalOf<EConvertError>(ObjectText("RECTANGLE") +
                                        ObjectText("RECTANGLE", {},
                                                   QString(Base + QStringLiteral(" showBg=\"0\" locked=\"0\""))
                                                       .replace(QString::fromLatin1(from), QString::fromLatin1(to))));
    };
    EXPECT_EQ(refusal("visible=\"-1\"", ""), "'' is not a valid boolean value");
    EXPECT_EQ(refusal("visible=\"-1\"", "visible=\"si\""), "'si' is not a valid boolean value");
    EXPECT_EQ(refusal("rect=\"10,20,110,70\"", ""), "Invalid rectangle text");
    EXPECT_EQ(refusal("10,20,110,70", "10,20,110"), "Invalid rectangle text");
    EXPECT_EQ(refusal("showBg=\"0\"", "showBg=\"\""), "'' is not a valid boolean value");
    EXPECT_EQ(refusal("showBg", "bgColor=\"red\" showBg"), "'red' is not a valid integer value");
    EXPECT_EQ(refusal("locked=\"0\"", "locked=\"x\""), "'x' is not a valid boolean value");
    EXPECT_EQ(Count(), 7); // the first of each pair
}

TEST_F(ObjectMapLayerPersist, TheSizeOfTheViewComesFirst) {
    for (const char* const size : {"", "1", "a,b"})
        EXPECT_EQ(MessageOf<EConvertError>([&] { Read(ObjectText("RECTANGLE"), QString::fromLatin1(size)); }),
                  "Invalid size text");
    EXPECT_EQ(Count(), 0);
}

TEST_F(ObjectMapLayerPersist, EachItemPersistTakesItsOwnItemsOnly) {
    TRectangleObjectTypeItem rectangle(nullptr);
    TTextBoxObjectLayerItem box(nullptr);
    for (const char* const type : {"COMPASSROSE", "TEXT", "SHAPELEGEND", "LEGEND", "RECTANGLE"}) {
        const auto persist = TObjectLayerTypeItemPersistFactory::GetObject(QString::fromLatin1(type));
        TBaseObjectLayerItem* const other = qstrcmp(type, "TEXT") == 0 ? static_cast<TBaseObjectLayerItem*>(&rectangle)
                                                                       : static_cast<TBaseObjectLayerItem*>(&box);
        const TXmlDocument document = TXmlDocument::FromText(ObjectText(type));
        EXPECT_EQ(MessageOf<EArgumentException>([&] { persist->Read(document.GetRoot(), other, FMap.Manager); }),
                  "Obj");
        EXPECT_EQ(MessageOf<EArgumentException>([&] { persist->Write(other, document.GetRoot()); }), "Obj");
        EXPECT_EQ(MessageOf<EArgumentException>([&] { persist->Write(nullptr, document.GetRoot()); }), "Obj");
    }
}

TEST_F(ObjectMapLayerPersist, AListenerMayTakeTheLayerAway) {
    const auto subscription = FMap.Objects().GetOnObjectAdded().Add(
        [&](TObjectMapLayer* layer, TBaseObjectLayerItem*) { FMap.Manager->GetSpecialLayers().Remove(layer); });
    Read(ObjectText("RECTANGLE") + ObjectText("RECTANGLE"));
    EXPECT_EQ(FMap.Manager->GetSpecialLayerWithType(QStringLiteral("ObjectMapLayer")), nullptr);
}

} // namespace
} // namespace lmx
