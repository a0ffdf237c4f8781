#include "Places.h"

#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TestMap.h>

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lmx {
namespace {

class Places : public testing::Test {
protected:
    TPin* Find(const QString& name) {
        for (TPin* pin : Layer.GetPins())
            if (pin->GetName() == name)
                return pin;
        return nullptr;
    }
    void LoadText(const QByteArray& text) {
        QFile file(FileName);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        Layer.Load(FileName);
    }

    QTemporaryDir Folder;
    const QString FileName = Folder.filePath(QStringLiteral("p.csv"));
    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    TPlacesLayer Layer{Manager};
};

TEST_F(Places, TheShippedOnesAreWhereTheyAre) {
    Layer.Load(QStringLiteral(LMX_EXAMPLE_DATA "/places.csv"));
    EXPECT_EQ(Layer.GetPins().Count(), 15);
    const TPin* tokyo = Find(QStringLiteral("Tokyo"));
    ASSERT_NE(tokyo, nullptr);
    EXPECT_NEAR(static_cast<double>(tokyo->GetLon()), 139.75, 0.1);
    EXPECT_NEAR(static_cast<double>(tokyo->GetLat()), 35.69, 0.1);
    EXPECT_EQ(tokyo->GetAttributes()[0]->GetName(), QStringLiteral("country"));
    EXPECT_EQ(tokyo->GetAttributes()[0]->GetValue(), QStringLiteral("Japan"));
    EXPECT_NE(Find(QString::fromUtf8("Reykjav\xC3\xADk")), nullptr);
    for (const TPin* pin : Layer.GetPins()) {
        EXPECT_LE(std::abs(pin->GetLon()), 180);
        EXPECT_LE(std::abs(pin->GetLat()), 90);
    }
}

TEST_F(Places, ALineThatIsNoPlaceIsNamedAndAddsNothing) {
    for (const char* line : {"B,1,2", "B,1,x,C", "B,,2,C", "B,1,2,C,D"}) {
        QString message;
        try {
            LoadText(QByteArray("name,longitude,latitude,country\nA,1.5,-2.5,X\n") + line + '\n');
            FAIL() << line;
        } catch (const EFileFormatException& failure) {
            message = failure.Message();
        }
        EXPECT_TRUE(message.contains(FileName)) << message.toStdString();
        EXPECT_TRUE(message.contains(QStringLiteral("line 3 is no place"))) << message.toStdString();
        EXPECT_TRUE(Layer.GetPins().IsEmpty());
    }
    EXPECT_THROW(Layer.Load(QStringLiteral("no-such-file.csv")), EFileException);
}

TEST_F(Places, ReadsADecimalPointWhateverTheLocale) {
    LoadText("name,longitude,latitude,country\r\nA,1.5,-2.5,X\r\n\r\n");
    ASSERT_EQ(Layer.GetPins().Count(), 1);
    EXPECT_EQ(Layer.GetPins()[0]->GetLon(), 1.5L);
    EXPECT_EQ(Layer.GetPins()[0]->GetLat(), -2.5L);
}

TEST_F(Places, FoldIntoTheWorldThatIsShown) {
    LoadText("name,longitude,latitude,country\nA,-170,1,X\nB,20,1,X\n");
    Layer.FoldInto(*TLatLonAntimeridianWorldSystemFactory::GetObject());
    EXPECT_EQ(Find(QStringLiteral("A"))->GetLon(), 190);
    EXPECT_EQ(Find(QStringLiteral("B"))->GetLon(), 20);
    Layer.FoldInto(*TLatLonWorldSystemFactory::GetObject());
    EXPECT_EQ(Find(QStringLiteral("A"))->GetLon(), -170);
}

TEST_F(Places, ADotAndALabelCoverTheirRectangle) {
    LoadText("name,longitude,latitude,country\nA,-100,50,X\nFar,170,-80,X\n");
    tests::TTestMap map{160, 80};
    Layer.Paint(&map.World, &map.Viewport, map.Bitmap);
    ASSERT_EQ(Layer.GetRenderRects().Count(), 1U); // the other one is outside
    EXPECT_NE(map.Bitmap.Pixel(80, 40), clWhite32);
    EXPECT_EQ(Layer.PlaceAt({80, 40}), Find(QStringLiteral("A")));
    EXPECT_EQ(Layer.PlaceAt({90, 40}), Find(QStringLiteral("A"))); // on the label
    EXPECT_EQ(Layer.PlaceAt({60, 40}), nullptr);
}

TEST_F(Places, LabelsKeepClearOfEarlierOnesAndInsideTheMap) {
    LoadText("name,longitude,latitude,country\n"
             "Right,-130,50,X\n"  // its label goes to the right,
             "Beside,-118,50,X\n" // where this one's cannot go to the left
             "Edge,-22,70,X\n");  // and this one's not to the right
    tests::TTestMap map{160, 80};
    Layer.Paint(&map.World, &map.Viewport, map.Bitmap);
    const TFloatRect edge = Layer.GetRenderRects().GetItem(Find(QStringLiteral("Edge")));
    EXPECT_LE(edge.Right, 165);
    EXPECT_LT(edge.Left, 140); // turned to the left
    const TFloatRect first = Layer.GetRenderRects().GetItem(Find(QStringLiteral("Right")));
    EXPECT_GT(first.Right, 62 + 5); // wider than its dot
}

} // namespace
} // namespace lmx
