#include <lmx/MapDoc/lmxMapDocLoadReport.h>
#include <tests/MapDoc/DocumentMap.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using namespace tests;

const QString Ruler = QStringLiteral("<ruler><location>1</location><color>2</color></ruler>");
const QString Mixed = ManifestText(
    LayerText(QStringLiteral("IdrisiMapLayer"),
              QStringLiteral("<data><datatype>TRealImage</datatype><resource>linked</resource><filename>/none.rst"
                             "</filename></data>"),
              QStringLiteral("Rain")) +
        LayerText(QStringLiteral("BalloonLayer"), QStringLiteral("<data/>"), QStringLiteral("Balloons")) +
        LayerText(QStringLiteral("ShapeFileLayer"), {}, QStringLiteral("Coast")) +
        QStringLiteral("<layer type=\"ShapeFileLayer\" name=\"Old\"/><other/>"),
    LayerText(QStringLiteral("RulerMapLayer"), QStringLiteral("<data><vrulers>%1<ruler/></vrulers></data>").arg(Ruler),
              QStringLiteral("Rulers")) +
        LayerText(QStringLiteral("ShapeFileLayer"), QStringLiteral("<data/>"), QStringLiteral("Misplaced")) +
        LayerText(QStringLiteral("InfoQueryPointLayer"), QStringLiteral("<data/>"), QStringLiteral("Points")));

class MapDocLoadReport : public testing::Test, TWithPoint {
protected:
    void Read(const QString& manifest) {
        TArchiveInMemory memory(ZipBytes({DeflatedRecord("_meta\\manifest", manifest.toUtf8())}));
        TMapDocResourcePersist resources(memory.Buffer, QStringLiteral("memory"), pmRead);
        TMapDocReader reader(QStringLiteral("Test"), DefaultLayerFactory(), DefaultPersistFactory());
        reader.SetReport(FReport);
        reader.Read(resources, &FMap.View);
    }

    std::shared_ptr<TMapDocLoadReport> FReport = std::make_shared<TMapDocLoadReport>();
    TDocumentMap FMap;
};

TEST_F(MapDocLoadReport, NamesWhatDidNotArriveAndWhy) {
    Read(Mixed);
    EXPECT_EQ(FReport->ToText(), "Layer \"Rain\" (IdrisiMapLayer): Linked resoruce not found: /none.rst\n"
                                 "Layer \"Balloons\" (BalloonLayer): the type is unknown\n"
                                 "Layer \"Coast\" (ShapeFileLayer): it has no data\n"
                                 "Layer \"Old\" (ShapeFileLayer): an attribute is missing\n"
                                 "Layer \"Rulers\" (RulerMapLayer): Missing required node\n"
                                 "Layer \"Misplaced\" (ShapeFileLayer): the map has no such layer\n");
    EXPECT_EQ(FReport->GetLayerCount(), 7);
    EXPECT_EQ(FReport->GetDoneCount(), 7);
    ASSERT_EQ(FReport->GetLostLayers().size(), 6U);
    EXPECT_FALSE(FReport->GetLostLayers()[0].IsSpecial);
    EXPECT_EQ(FReport->GetLostLayers()[0].Id, "{00000000-0000-0000-0000-0000000000AB}");
    EXPECT_TRUE(FReport->GetLostLayers()[4].IsSpecial);
    EXPECT_EQ(FMap.Rulers().GetVRulers().Count(), 1); // what was read before the failure
    Read(ManifestText({}));
    EXPECT_EQ(FReport->ToText(), "");
    EXPECT_EQ(FReport->GetLayerCount(), 0);
}

// Only what is unknown here: a decoration that this program knows, and cannot read, is lost as any other layer.
TEST_F(MapDocLoadReport, TellsDecorationsOfOthersFromTheRest) {
    const auto decoration = [](const char* type) {
        QString text = LayerText(QString::fromLatin1(type), {}, QStringLiteral("Labels"));
        return text.replace(QStringLiteral("<layer "), QStringLiteral("<layer decoration=\"True\" "));
    };
    Read(ManifestText(decoration("BalloonLayer") + decoration("ShapeFileLayer") +
                      LayerText(QStringLiteral("BalloonLayer"), {}, QStringLiteral("Balloons"))));
    const auto& lost = FReport->GetLostLayers();
    ASSERT_EQ(lost.size(), 3U);
    EXPECT_TRUE(lost[0].IsForeignDecoration);
    EXPECT_FALSE(lost[1].IsForeignDecoration);
    EXPECT_FALSE(lost[2].IsForeignDecoration);
}

TEST_F(MapDocLoadReport, TellsOfEachLayer) {
    std::vector<std::pair<int, int>> steps;
    FReport->SetOnProgress(
        [&](const TMapDocLoadReport& report) { steps.emplace_back(report.GetDoneCount(), report.GetLayerCount()); });
    Read(Mixed);
    ASSERT_EQ(steps.size(), 7U);
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(steps[static_cast<std::size_t>(i)], std::pair(i + 1, 7));
}

TEST_F(MapDocLoadReport, ASubscriberMayEndTheLoad) {
    FReport->SetOnProgress([&](const TMapDocLoadReport& report) {
        if (report.GetDoneCount() == 5)
            throw std::runtime_error("cancelled");
    });
    EXPECT_THROW(Read(Mixed), std::runtime_error);
    EXPECT_EQ(FMap.Rulers().GetVRulers().Count(), 1);
    EXPECT_EQ(FReport->GetDoneCount(), 5);
}

TEST_F(MapDocLoadReport, ASubscriberMayDropTheReport) {
    FReport->SetOnProgress([&](const TMapDocLoadReport&) { FReport.reset(); });
    Read(Mixed);
    EXPECT_EQ(FReport, nullptr);
    EXPECT_EQ(FMap.Rulers().GetVRulers().Count(), 1);
}

} // namespace
} // namespace lmx
