// The viewer's own dialogs are read and operated as those of the library.

#include "PictureExport.h"

#include "ViewerWindow.h"

#include <tests/Support/DialogChecks.h>

#include <QAction>
#include <QHeaderView>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

#include <gtest/gtest.h>

#include "SampleMap.h"
#ifdef LMX_HAS_DATASOURCES
#include <lmx/DataSources/lmxClimateDataset.h>

#include <QListWidget>

#include "ClimateFileDialog.h"
#endif

namespace lmx {
namespace {

TEST(ViewerDialogs, ThatOfAPictureIsReadAndOperated) {
    tests::CheckForm([] { return std::make_unique<TPictureDialog>(); });
}

TEST(ViewerDialogs, ThatOfStatisticsIsReadAndOperated) {
    TViewerWindow window;
    AddSampleLayers(window.GetLayerManager(), QStringLiteral(LMX_EXAMPLE_DATA));
    window.show();
    for (QAction* menu : window.menuBar()->actions())
        for (QAction* action : menu->menu()->actions())
            if (action->text() == QStringLiteral("Statistics of the &selection..."))
                action->trigger();
    auto* const table = window.findChild<QTableWidget*>(QStringLiteral("Statistics"));
    ASSERT_TRUE(table);
    EXPECT_EQ(tests::FaultsOf(*table->window()).join(u'\n').toStdString(), "");
    for (int column = 0; column < table->columnCount(); ++column)
        EXPECT_EQ(table->horizontalHeaderItem(column)->textAlignment() & Qt::AlignHorizontal_Mask,
                  column > 1 ? Qt::AlignRight : Qt::AlignLeft);
    for (const QPushButton* button : table->window()->findChildren<QPushButton*>())
        EXPECT_EQ(button->isDefault(), button->text().contains(QStringLiteral("Close")));
}

#ifdef LMX_HAS_DATASOURCES
std::unique_ptr<QWidget> ClimateDialog(const QString& sample) {
    auto dialog = std::make_unique<TClimateFileDialog>(nullptr);
    dialog->SetDataset(std::make_shared<TClimateDataset>(LMX_SOURCE_DIR "/tests/data/netcdf/" + sample));
    return dialog;
}

TEST(ViewerDialogs, ThatOfClimateFilesIsReadAndOperated) {
    tests::CheckForm([] { return ClimateDialog(QStringLiteral("coads_sst.nc")); });
    tests::CheckForm([] { return ClimateDialog(QStringLiteral("curvilinear.nc")); });
}

TEST(ViewerDialogs, ThatOfClimateFilesHasRoomForTitlesInCapitals) {
    const auto dialog = ClimateDialog(QStringLiteral("coads_sst.nc"));
    dialog->show();
    QCoreApplication::processEvents();
    const auto* const variables = dialog->findChild<QListWidget*>(QStringLiteral("Variables"));
    ASSERT_EQ(variables->count(), 1);
    EXPECT_EQ(variables->item(0)->text(), "SEA SURFACE TEMPERATURE, SST");
    EXPECT_GE(variables->viewport()->width(), variables->sizeHintForColumn(0));
    EXPECT_TRUE(variables->item(0)->toolTip().startsWith(variables->item(0)->text() + u'\n'));
}
#endif

} // namespace
} // namespace lmx
