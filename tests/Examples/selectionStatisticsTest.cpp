// The viewer's statistics of what is selected on the map.

#include "SelectionStatistics.h"

#include "ViewerWindow.h"

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxLayerStatistics.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/TestBufferedLayer.h>

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>

#include "ColorSchemes.h"
#include "MapReading.h"
#include "Overlays.h"
#include "SampleMap.h"

#ifdef LMX_HAS_DATASOURCES
#include <lmx/DataSources/lmxTileStatistics.h>
#include <lmx/DataSources/lmxTiledRasterMapLayer.h>
#include <tests/DataSources/NumberedTiles.h>
#endif

namespace lmx {
namespace {

const QString DataFolder = QStringLiteral(LMX_EXAMPLE_DATA);

class SelectionStatistics : public testing::Test {
protected:
    SelectionStatistics() {
        AddSampleLayers(Window.GetLayerManager(), DataFolder);
        Window.resize(900, 500);
        Window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&Window));
        QCoreApplication::processEvents();
        Window.ShowWholeWorld();
    }

    TMapViewControl& View() { return *Window.GetView(); }
    /// The logical place of a map point on the view.
    QPoint At(extended longitude, extended latitude) {
        const TMapPoint pixel = View().GetViewport()->MapPointToPoint({longitude, latitude});
        const double ratio = View().GetDeviceRatio();
        return {static_cast<int>(static_cast<double>(pixel.X) / ratio),
                static_cast<int>(static_cast<double>(pixel.Y) / ratio)};
    }
    /// The table of the dialog that the menu opens.
    QTableWidget* Open(const char* command = "Statistics of the &selection...") {
        for (QAction* action : Window.menuBar()->actions().at(1)->menu()->actions())
            if (action->text() == QString::fromLatin1(command))
                action->trigger();
        Dialog = Window.findChild<TStatisticsDialog*>();
        return Dialog ? Dialog->findChild<QTableWidget*>(QStringLiteral("Statistics")) : nullptr;
    }
    static QStringList Row(const QTableWidget& table, int row) {
        QStringList texts;
        for (int column = 0; column < table.columnCount(); ++column)
            texts += table.item(row, column)->text();
        return texts;
    }

    QPushButton* Button(const char* text) {
        for (QPushButton* button : Dialog->findChildren<QPushButton*>())
            if (button->text() == QString::fromLatin1(text))
                return button;
        return nullptr;
    }

    const TFormatSettingsScope Point{TFormatSettings{u'.'}};
    TViewerWindow Window;
    QPointer<TStatisticsDialog> Dialog;
};

// The numbers of the sea are those of tests/data/statistics/fieldStatistics.py.
TEST_F(SelectionStatistics, AreOfWholeLayersIfNothingIsSelected) {
    const QTableWidget* table = Open();
    ASSERT_TRUE(table);
    EXPECT_EQ(Dialog->windowTitle(), "Statistics of whole layers");
    ASSERT_EQ(table->rowCount(), 2);
    EXPECT_EQ(Row(*table, 0),
              (QStringList{"Sea surface temperature, January", "Deg C", "19.0373", "-1.8", "31", "9506", "28.3 %"}));
    EXPECT_EQ(table->item(1, 0)->text(), "Relief");
}

TEST_F(SelectionStatistics, AreOfTheRectangleThatAUserDrags) {
    View().SetMode(TMapMode::mdSelection);
    QTest::mousePress(&View(), Qt::LeftButton, Qt::NoModifier, At(-40, 30));
    QTest::mouseMove(&View(), At(-20, 10));
    QCoreApplication::processEvents();
    QTest::mouseRelease(&View(), Qt::LeftButton, Qt::NoModifier, At(-20, 10));
    const TMapArea selected = View().GetSpSelectionLayer()->GetSelectedRect();
    ASSERT_GT(selected.GetWidth(), 15);
    Window.GetLayerManager()->GetLayers()[0]->SetIsVisible(false);
    const QTableWidget* table = Open();
    ASSERT_TRUE(table);
    ASSERT_EQ(table->rowCount(), 1);
    const auto& sea = dynamic_cast<const TIdrisiMapLayer&>(*Window.GetLayerManager()->GetLayers()[1]);
    const TFieldStatistics statistics = StatisticsOf(sea, selected);
    EXPECT_EQ(table->item(0, 2)->text(), FloatToGeneral(statistics.Mean, 6));
    EXPECT_EQ(table->item(0, 5)->text(), IntToStr(static_cast<std::int64_t>(statistics.ValueCount)));
    EXPECT_TRUE(Dialog->windowTitle().startsWith("Statistics of -")) << Dialog->windowTitle().toStdString();
}

TEST_F(SelectionStatistics, AreCopiedAsATable) {
    View().GetSpSelectionLayer()->StartSelection({100, 65}); // Siberia: no sea
    View().GetSpSelectionLayer()->Adjust({110, 55});
    Window.GetLayerManager()->GetLayers()[0]->SetIsVisible(false);
    ASSERT_TRUE(Open());
    tests::TScriptedClipboard clipboard;
    QTest::mouseClick(Button("&Copy"), Qt::LeftButton);
    EXPECT_EQ(clipboard->Text, "Layer\tUnit\tMean\tMinimum\tMaximum\tValues\tWithout data\n"
                               "Sea surface temperature, January\tDeg C\t-\t-\t-\t0\t100.0 %\n");
    EXPECT_EQ(Dialog->windowTitle(), "Statistics of 100 to 110 and 55 to 65");
}

// The middle of the selection is on the South Island, whose polygon also the other number of its place finds.
TEST_F(SelectionStatistics, AreOfThePolygonThatTheSelectionIsIn) {
    tests::TScriptedMsgBox boxes;
    EXPECT_EQ(Open("Statistics of the pol&ygon..."), nullptr);
    QCoreApplication::processEvents();
    ASSERT_EQ(boxes->Shown.size(), 1U);
    EXPECT_EQ(boxes->Shown[0].Text, "Select a layer of a shape file in the list of layers first.");

    AddSampleCoasts(Window.GetLayerManager(), DataFolder);
    auto& coasts = dynamic_cast<TShapeFileLayer&>(*Window.GetLayerManager()->GetLayers()[2]);
    Window.GetLayerManager()->SetSelLayer(&coasts);
    View().GetSpSelectionLayer()->StartSelection({-30, 1});
    View().GetSpSelectionLayer()->Adjust({-28, -1});
    EXPECT_EQ(Open("Statistics of the pol&ygon..."), nullptr);
    QCoreApplication::processEvents();
    ASSERT_EQ(boxes->Shown.size(), 2U);
    EXPECT_EQ(boxes->Shown[1].Text, "No polygon of \"Coasts\" is where the middle of the selection is.");

    for (const extended west : {170.0L, 170.0L - 360}) {
        View().GetSpSelectionLayer()->StartSelection({west, -43});
        View().GetSpSelectionLayer()->Adjust({west + 2, -44});
        const QTableWidget* table = Open("Statistics of the pol&ygon...");
        ASSERT_TRUE(table);
        ASSERT_EQ(table->rowCount(), 2);
        std::size_t polygon = 0;
        QString title;
        for (; title != Dialog->windowTitle() && polygon < coasts.GetShpFile()->GetPolygonCount(); ++polygon)
            title = QStringLiteral("Statistics of polygon %1 of Coasts").arg(static_cast<int>(polygon) + 1);
        ASSERT_EQ(title, Dialog->windowTitle());
        const auto& relief = dynamic_cast<const TIdrisiMapLayer&>(*Window.GetLayerManager()->GetLayers()[0]);
        const TFieldStatistics statistics = StatisticsOf(relief, coasts, polygon - 1);
        EXPECT_GT(statistics.Mean, 100);
        EXPECT_LT(statistics.CellCount, 1000U);
        EXPECT_EQ(table->item(1, 2)->text(), FloatToGeneral(statistics.Mean, 6));
        EXPECT_EQ(table->item(1, 5)->text(), IntToStr(static_cast<std::int64_t>(statistics.ValueCount)));
        delete Dialog;
    }
    EXPECT_TRUE(tests::PumpUntilRendersEnd());
}

#ifdef LMX_HAS_DATASOURCES

/// With a raster of four strips of tiles alone on the map.
class TiledSelectionStatistics : public SelectionStatistics {
protected:
    TiledSelectionStatistics() {
        Window.GetLayerManager()->GetLayers()[0]->SetIsVisible(false);
        Window.GetLayerManager()->GetLayers()[1]->SetIsVisible(false);
        Add("Numbers", Tiles);
    }
    ~TiledSelectionStatistics() override {
        Tiles->Held.Open();
        EXPECT_TRUE(tests::PumpUntilRendersEnd());
    }

    void Add(const char* name, const std::shared_ptr<tests::TNumberedTiles>& tiles) {
        auto layer = std::make_unique<TTiledRasterMapLayer>(Window.GetLayerManager());
        layer->SetLayerName(QString::fromLatin1(name));
        layer->SetSource(tiles);
        Window.GetLayerManager()->GetLayers().Add(std::move(layer));
    }
    static std::shared_ptr<tests::TNumberedTiles> NewTiles() {
        return std::make_shared<tests::TNumberedTiles>(std::vector<TTileLevel>{{20'000, 500}, {100, 50}},
                                                       TMapArea(-180, 90, 180, -90));
    }
    static QStringList Numbers(const TFieldStatistics& statistics) {
        return {FloatToGeneral(statistics.Mean, 6), FloatToGeneral(statistics.Minimum, 6),
                FloatToGeneral(statistics.Maximum, 6), IntToStr(static_cast<std::int64_t>(statistics.ValueCount)),
                FloatToFixed(statistics.MissingShare * 100, 1) + " %"};
    }
    bool AwaitEnd() {
        return tests::PumpUntil([this] { return !Button("&Stop")->isVisible(); });
    }

    std::shared_ptr<tests::TNumberedTiles> Tiles = NewTiles();
};

TEST_F(TiledSelectionStatistics, AreReadWhileTheWindowGoesOn) {
    Tiles->HeldLevel = 0;
    const QTableWidget* table = Open();
    ASSERT_TRUE(table);
    ASSERT_EQ(table->rowCount(), 1);
    EXPECT_EQ(table->item(0, 0)->text(), "Numbers");
    EXPECT_EQ(table->item(0, 2)->text(), "Waiting...");
    EXPECT_EQ(table->columnSpan(0, 2), 5);
    EXPECT_TRUE(Button("&Stop")->isVisible());
    ASSERT_TRUE(tests::PumpUntil([&] { return table->item(0, 2)->text() == "Reading, 0 %"; }));
    Tiles->Held.Open();
    ASSERT_TRUE(AwaitEnd());
    EXPECT_EQ(table->columnSpan(0, 2), 1);
    EXPECT_EQ(table->item(0, 2)->toolTip(), "") << "how far the reading was";
    EXPECT_EQ(Row(*table, 0), QStringList({"Numbers", ""}) + Numbers(*StatisticsOf(*Tiles)));
}

TEST_F(TiledSelectionStatistics, AreOfTheSelectionAndOfPolygons) {
    View().GetSpSelectionLayer()->StartSelection({-20, 10});
    View().GetSpSelectionLayer()->Adjust({25, -30});
    const QTableWidget* table = Open();
    ASSERT_TRUE(table && AwaitEnd());
    EXPECT_EQ(Row(*table, 0).mid(2), Numbers(*StatisticsOf(*Tiles, TMapArea(-20, 10, 25, -30))));
    EXPECT_EQ(Dialog->windowTitle(), "Statistics of -20 to 25 and -30 to 10");
    delete Dialog;

    AddSampleCoasts(Window.GetLayerManager(), DataFolder);
    auto& coasts = dynamic_cast<TShapeFileLayer&>(*Window.GetLayerManager()->GetLayers()[3]);
    Window.GetLayerManager()->SetSelLayer(&coasts);
    View().GetSpSelectionLayer()->StartSelection({170, -43});
    View().GetSpSelectionLayer()->Adjust({172, -44});
    table = Open("Statistics of the pol&ygon...");
    ASSERT_TRUE(table && AwaitEnd());
    const std::size_t polygon =
        Dialog->windowTitle().section(u' ', 3, 3).toULongLong() - 1; // "Statistics of polygon 12 of Coasts"
    const auto rings = FieldRingsOf(coasts, polygon);
    EXPECT_EQ(Row(*table, 0).mid(2), Numbers(*StatisticsOf(*Tiles, rings)));
}

TEST_F(TiledSelectionStatistics, StopEndsThemAndOtherRowsStay) {
    Window.GetLayerManager()->GetLayers()[0]->SetIsVisible(true);
    Tiles->HeldLevel = 0;
    Add("More numbers", NewTiles());
    const QTableWidget* table = Open();
    ASSERT_TRUE(table);
    ASSERT_EQ(table->rowCount(), 3);
    ASSERT_TRUE(tests::PumpUntil([&] { return table->item(1, 2)->text() == "Reading, 0 %"; }));
    EXPECT_EQ(Row(*table, 0).mid(2), Numbers(*StatisticsOf(*NewTiles())));
    QTest::mouseClick(Button("&Stop"), Qt::LeftButton);
    EXPECT_FALSE(Button("&Stop")->isEnabled());
    Tiles->Held.Open();
    ASSERT_TRUE(AwaitEnd());
    EXPECT_EQ(table->item(1, 2)->text(), "Stopped");
    EXPECT_EQ(table->item(2, 0)->text(), "Relief");
    EXPECT_NE(table->item(2, 5)->text(), "");
    EXPECT_EQ(Tiles->CellsRead, 20'000 * 128) << "one strip";
}

TEST_F(TiledSelectionStatistics, ADamagedRasterSaysSoAndTheNextOneIsRead) {
    Tiles->DamagedLevel = 0;
    Window.GetLayerManager()->GetLayers().Remove(Window.GetLayerManager()->GetLayers()[2]);
    Add("Fine", NewTiles());
    Add("Numbers", Tiles);
    const QTableWidget* table = Open();
    ASSERT_TRUE(table && AwaitEnd());
    EXPECT_EQ(table->item(0, 2)->text(), "numbers.tif: damaged");
    EXPECT_EQ(Row(*table, 1).mid(2), Numbers(*StatisticsOf(*NewTiles())));
    tests::TScriptedClipboard clipboard;
    QTest::mouseClick(Button("&Copy"), Qt::LeftButton);
    EXPECT_EQ(clipboard->Text.section(u'\n', 1, 1), "Numbers\t\tnumbers.tif: damaged\t\t\t\t");
}

TEST_F(TiledSelectionStatistics, ADialogMayCloseWhileTheyAreRead) {
    Tiles->HeldLevel = 0;
    const QTableWidget* table = Open();
    ASSERT_TRUE(table);
    ASSERT_TRUE(tests::PumpUntil([&] { return table->item(0, 2)->text() == "Reading, 0 %"; }));
    QTest::keyClick(Dialog, Qt::Key_Escape);
    EXPECT_TRUE(tests::PumpUntil([this] { return !Dialog; }));
    Window.GetLayerManager()->GetLayers().Remove(Window.GetLayerManager()->GetLayers()[2]);
    Tiles->Held.Open();
    EXPECT_TRUE(tests::PumpUntil([this] { return Tiles.use_count() == 1; })) << "the reader lets go of the raster";
    EXPECT_EQ(Tiles->CellsRead, 20'000 * 128) << "one strip";
}

// Nothing is read for it: before the map has shown the cells there is no number.
TEST_F(TiledSelectionStatistics, ThePlaceUnderTheCursorReadsTheRasterItself) {
    auto& layer = dynamic_cast<TTiledRasterMapLayer&>(*Window.GetLayerManager()->GetLayers()[2]);
    layer.SetColorCalc(MakeColorScheme("Classes: six of viridis", {0, 1e6}));
    const auto show = [this] {
        do
            View().grab();
        while (!tests::PumpUntilRendersEnd() || IsDrawing(*Window.GetLayerManager()));
    };
    EXPECT_EQ(ReadMap(View(), {300, 200}).Values, QStringList());
    View().GetViewport()->SetScale(60);
    View().GetViewport()->SetCenter({10, 20});
    show();
    int read = 0;
    for (int x = 300; x < 310; ++x) {
        const TMapPoint place = View().GetViewport()->PointToMapPoint(TMapPoint(x, 200));
        const auto column = static_cast<int>(std::floor((place.X + 180) / 360 * 20'000));
        const auto row = static_cast<int>(std::floor((90 - place.Y) / 180 * 500));
        const float cell = Tiles->Cell(0, column, row);
        const QStringList values = ReadMap(View(), {x, 200}).Values;
        if (TSpatialConst::IsFlag(cell))
            EXPECT_EQ(values, QStringList());
        else
            EXPECT_EQ(values, QStringList("Numbers: " + FloatToFixed(cell, 1)));
        read += values.isEmpty() ? 0 : 1;
    }
    EXPECT_GT(read, 3);
}

#endif

} // namespace
} // namespace lmx
