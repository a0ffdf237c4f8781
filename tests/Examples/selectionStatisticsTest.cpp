// The viewer's statistics of what is selected on the map.

#include "SelectionStatistics.h"

#include "ViewerWindow.h"

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxLayerStatistics.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <tests/Support/ScriptedServices.h>

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

#include <gtest/gtest.h>

#include "SampleMap.h"

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
    QTableWidget* Open() {
        for (QAction* action : Window.menuBar()->actions().at(1)->menu()->actions())
            if (action->text() == QStringLiteral("Statistics of the &selection..."))
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

    const TFormatSettingsScope Point{TFormatSettings{u'.'}};
    TViewerWindow Window;
    TStatisticsDialog* Dialog = nullptr;
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
    for (QPushButton* button : Dialog->findChildren<QPushButton*>())
        if (button->text() == QStringLiteral("&Copy"))
            QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(clipboard->Text, "Layer\tUnit\tMean\tMinimum\tMaximum\tValues\tWithout data\n"
                               "Sea surface temperature, January\tDeg C\t-\t-\t-\t0\t100.0 %\n");
    EXPECT_EQ(Dialog->windowTitle(), "Statistics of 100 to 110 and 55 to 65");
}

} // namespace
} // namespace lmx
