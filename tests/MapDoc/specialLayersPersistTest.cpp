#include <lmx/MapDoc/lmxInfoQueryPointLayerPersist.h>
#include <lmx/MapDoc/lmxRulerMapLayerPersist.h>
#include <tests/MapDoc/DocumentMap.h>
#include <tests/Support/CoordinatePrinters.h>

#include <gtest/gtest.h>

// What keeps the query points and the rulers of a view.

namespace lmx {
namespace {

using namespace tests;

class SpecialLayersPersist : public testing::Test, TWithPoint {
protected:
    template<class Persist>
    QString Written(const TBaseMapLayer& layer) {
        const TXmlDocument document(QStringLiteral("data"));
        Persist().WriteLayer(FResources, &layer, document.GetRoot(), erpKeepExternal);
        return document.ToText().mid(static_cast<int>(qstrlen("<?xml version=\"1.0\"?>")));
    }
    template<class Persist>
    void Read(TBaseMapLayer& layer, const QString& children) {
        const TXmlDocument document = TXmlDocument::FromText(QStringLiteral("<data>%1</data>").arg(children));
        Persist().ReadLayer(FResources, &layer, document.GetRoot());
    }
    void ReadPoints(const QString& children) { Read<TInfoQueryPointLayerPersist>(FMap.Points(), children); }
    void ReadRulers(const QString& children) { Read<TRulerMapLayerPersist>(FMap.Rulers(), children); }

    TArchiveInMemory FMemory{ZipBytes({})};
    TMapDocResourcePersist FResources{FMemory.Buffer, {}, pmRead};
    TDocumentMap FMap;
};

QString PointText(const char* point) {
    return QStringLiteral("<iqpoint><color>5</color><label>L</label><point>%1</point></iqpoint>")
        .arg(QString::fromLatin1(point));
}

TEST_F(SpecialLayersPersist, PointsKeepThreeDecimals) {
    auto& points = FMap.Points();
    points.GetPoints().Add(std::make_unique<TInfoQueryPoint>(&points, TMapPoint(174.76555L, -36.84849L), 0xFF00FF00));
    points.GetPoints()[0]->SetPointLabel(QStringLiteral("Auckland & <co>"));
    const QString data = Written<TInfoQueryPointLayerPersist>(points);
    EXPECT_EQ(data, "<data><iqpoint><color>4278255360</color><label>Auckland &amp; &lt;co&gt;</label>"
                    "<point>174.766,-36.848</point></iqpoint></data>");
    TDocumentMap other;
    Read<TInfoQueryPointLayerPersist>(other.Points(), data.mid(6).chopped(7));
    ASSERT_EQ(other.Points().GetPoints().Count(), 1);
    const TInfoQueryPoint& point = *other.Points().GetPoints()[0];
    EXPECT_EQ(point.GetColor(), 0xFF00FF00);
    EXPECT_EQ(point.GetPointLabel(), "Auckland & <co>");
    EXPECT_EQ(point.GetPoint(), TMapPoint(174.766L, -36.848L));
}

TEST_F(SpecialLayersPersist, PointsThatAreReadBelongToNoLayer) {
    FMap.Points().GetPoints().Add(std::make_unique<TInfoQueryPoint>());
    int added = 0;
    const auto subscription = FMap.Points().GetOnAdded().Add([&](TInfoQueryPointLayer*, TInfoQueryPoint*) { ++added; });
    ReadPoints(QStringLiteral("<other/>") + PointText("1,2") + PointText(" 3 , 4 "));
    ASSERT_EQ(FMap.Points().GetPoints().Count(), 3);
    EXPECT_EQ(added, 2);
    EXPECT_EQ(FMap.Points().GetPoints()[2]->GetPoint(), TMapPoint(3, 4));
    EXPECT_EQ(FMap.Points().GetPoints()[2]->GetLayer(), nullptr);
    int repaints = 0;
    const auto invalidated = FMap.Points().GetOnInvalidated().Add([&](TBaseMapLayer*) { ++repaints; });
    FMap.Points().GetPoints()[2]->SetColor(1);
    EXPECT_EQ(repaints, 0);
}

TEST_F(SpecialLayersPersist, ADamagedPointEndsTheReading) {
    EXPECT_EQ(MessageOf<EArgumentException>([&] { ReadPoints(PointText("1,2") + PointText("1") + PointText("3,4")); }),
              "Invalid MapPoint string");
    EXPECT_EQ(FMap.Points().GetPoints().Count(), 1);
    for (const char* const element : {"<color>5</color>", "<label>L</label>", "<point>1,2</point>"}) {
        const QString without = PointText("1,2").remove(QString::fromLatin1(element));
        EXPECT_EQ(MessageOf<Exception>([&] { ReadPoints(without); }), "Missing required node") << element;
    }
    EXPECT_EQ(MessageOf<EConvertError>(
                  [&] { ReadPoints(PointText("1,2").replace(QStringLiteral(">5<"), QStringLiteral(">red<"))); }),
              "'red' is not a valid integer value");
    EXPECT_EQ(FMap.Points().GetPoints().Count(), 1);
}

TEST_F(SpecialLayersPersist, RulersKeepFourDecimalsAndTheirList) {
    auto& rulers = FMap.Rulers();
    rulers.Add(std::make_unique<TRulerItem>(TRulerOrientation::roVertical, 12.34567L, 0xFF010203));
    rulers.Add(std::make_unique<TRulerItem>(TRulerOrientation::roHorizontal, -5, 7));
    rulers.GetVRulers()[0]->SetOrientation(TRulerOrientation::roHorizontal);
    const QString data = Written<TRulerMapLayerPersist>(rulers);
    EXPECT_EQ(data, "<data><vrulers><ruler><location>12.3457</location><color>4278256131</color></ruler></vrulers>"
                    "<hrulers><ruler><location>-5.0000</location><color>7</color></ruler></hrulers></data>");
    ReadRulers(data.mid(6).chopped(7));
    ASSERT_EQ(rulers.GetVRulers().Count(), 2);
    ASSERT_EQ(rulers.GetHRulers().Count(), 2);
    EXPECT_EQ(rulers.GetVRulers()[1]->GetLocation(), 12.3457L);
    EXPECT_EQ(rulers.GetVRulers()[1]->GetColor(), 0xFF010203);
    EXPECT_EQ(rulers.GetVRulers()[1]->GetOrientation(), TRulerOrientation::roVertical);
    EXPECT_EQ(rulers.GetHRulers()[1]->GetLocation(), -5);
    EXPECT_EQ(rulers.GetHRulers()[1]->GetColor(), 7U);
    EXPECT_EQ(rulers.GetHRulers()[1]->GetOrientation(), TRulerOrientation::roHorizontal);
}

TEST_F(SpecialLayersPersist, EitherListOfRulersMayBeAbsent) {
    const QString ruler = QStringLiteral("<ruler><location>1</location><color>2</color></ruler>");
    EXPECT_EQ(Written<TRulerMapLayerPersist>(FMap.Rulers()), "<data><vrulers/><hrulers/></data>");
    ReadRulers(QStringLiteral("<vrulers>%1<other/></vrulers>").arg(ruler));
    EXPECT_EQ(FMap.Rulers().GetVRulers().Count(), 1);
    ReadRulers(QStringLiteral("<hrulers>%1</hrulers>").arg(ruler));
    EXPECT_EQ(FMap.Rulers().GetHRulers().Count(), 1);
    ReadRulers({});
    for (const char* const damaged : {"<ruler><color>2</color></ruler>", "<ruler><location>1</location></ruler>"})
        EXPECT_EQ(MessageOf<Exception>([&] {
                      ReadRulers(QStringLiteral("<vrulers>%1%2</vrulers><hrulers>%1</hrulers>")
                                     .arg(ruler, QString::fromLatin1(damaged)));
                  }),
                  "Missing required node");
    EXPECT_EQ(FMap.Rulers().GetVRulers().Count(), 3);
    EXPECT_EQ(FMap.Rulers().GetHRulers().Count(), 1);
    EXPECT_EQ(MessageOf<EConvertError>(
                  [&] { ReadRulers(QStringLiteral("<hrulers><ruler><location/><color>1</color></ruler></hrulers>")); }),
              "'' is not a valid floating point value");
}

// Whoever hears of what is read may take the special layers away, and with them the map.
TEST_F(SpecialLayersPersist, AListenerMayTakeTheLayersAway) {
    const auto points = FMap.Points().GetOnAdded().Add(
        [&](TInfoQueryPointLayer*, TInfoQueryPoint*) { FMap.View.SetLayerManager(nullptr); });
    ReadPoints(PointText("1,2") + PointText("3,4"));
    EXPECT_EQ(FMap.View.GetSpInfoQueryPointsLayer(), nullptr);
    TDocumentMap other;
    const auto rulers = other.Rulers().GetOnRulerAdded().Add(
        [&](TRulerMapLayer*, TRulerItem*) { other.View.SetLayerManager(nullptr); });
    const QString ruler = QStringLiteral("<ruler><location>1</location><color>2</color></ruler>");
    Read<TRulerMapLayerPersist>(other.Rulers(),
                                QStringLiteral("<vrulers>%1%1</vrulers><hrulers>%1</hrulers>").arg(ruler));
    EXPECT_EQ(other.View.GetSpRulersLayer(), nullptr);
}

} // namespace
} // namespace lmx
