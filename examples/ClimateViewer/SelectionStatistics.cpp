#include "SelectionStatistics.h"

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxLayerStatistics.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Widgets/lmxClipboard.h>
#include <lmx/Widgets/lmxEventGuard.h>

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

QString Place(const lmx::TMapArea& area) {
    const auto text = [](lmx::extended value) { return lmx::FloatToGeneral(value, 6); };
    return QObject::tr("Statistics of %1 to %2 and %3 to %4")
        .arg(text(std::min(area.Left, area.Right)), text(std::max(area.Left, area.Right)),
             text(std::min(area.Bottom, area.Top)), text(std::max(area.Bottom, area.Top)));
}

QStringList TextsOf(const lmx::TIdrisiMapLayer& raster, const lmx::TFieldStatistics& statistics) {
    const auto number = [&](double value) {
        return statistics.HasValues() ? lmx::FloatToGeneral(value, 6) : QStringLiteral("-");
    };
    return {raster.GetLayerName(),
            raster.GetImage()->getHeader()->GetValueUnits(),
            number(statistics.Mean),
            number(statistics.Minimum),
            number(statistics.Maximum),
            lmx::IntToStr(static_cast<std::int64_t>(statistics.ValueCount)),
            lmx::FloatToFixed(statistics.MissingShare * 100, 1) + " %"};
}

} // namespace

TStatisticsDialog::TStatisticsDialog(QWidget* parent) : QDialog(parent), FTable(new QTableWidget(this)) {
    const QStringList headings = {tr("Layer"),   tr("Unit"),   tr("Mean"),        tr("Minimum"),
                                  tr("Maximum"), tr("Values"), tr("Without data")};
    FTable->setObjectName("Statistics");
    FTable->setColumnCount(static_cast<int>(headings.size()));
    FTable->setHorizontalHeaderLabels(headings);
    FTable->verticalHeader()->hide();
    FTable->horizontalHeader()->setStretchLastSection(true);
    FTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    lmx::GuardClick(buttons->addButton(tr("&Copy"), QDialogButtonBox::ActionRole), [this] { Copy(); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(FTable);
    layout->addWidget(buttons);
    resize(680, 240);
}

void TStatisticsDialog::Show(const lmx::ILayerManager& manager, const std::optional<lmx::TMapArea>& area) {
    setWindowTitle(area ? Place(*area) : tr("Statistics of whole layers"));
    FTable->setRowCount(0);
    for (int i = manager.GetLayers().Count() - 1; i >= 0; --i) { // as in the list of layers
        const auto* raster = dynamic_cast<const lmx::TIdrisiMapLayer*>(manager.GetLayers()[i]);
        if (!raster || !raster->GetImage() || !raster->GetIsVisible())
            continue;
        AddRow(TextsOf(*raster, area ? lmx::StatisticsOf(*raster, *area) : lmx::StatisticsOf(*raster)));
    }
    FTable->resizeColumnsToContents();
}

void TStatisticsDialog::AddRow(const QStringList& texts) {
    const int row = FTable->rowCount();
    FTable->insertRow(row);
    for (int column = 0; column < FTable->columnCount(); ++column) {
        auto* item = new QTableWidgetItem(texts[column]);
        if (column > 1)
            item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        FTable->setItem(row, column, item);
    }
}

// As a table that other programs paste.
void TStatisticsDialog::Copy() const {
    QStringList lines;
    for (int row = -1; row < FTable->rowCount(); ++row) {
        QStringList texts;
        for (int column = 0; column < FTable->columnCount(); ++column)
            texts += row < 0 ? FTable->horizontalHeaderItem(column)->text() : FTable->item(row, column)->text();
        lines += texts.join('\t');
    }
    lmx::TClipboard::SetAsText(lines.join('\n') + '\n');
}

void ShowStatistics(lmx::TMapViewControl& view, QWidget* window) {
    lmx::GuardEvent(window, [&] {
        if (!view.GetLayerManager())
            return;
        const lmx::TSelectionMapLayer* selection = view.GetSpSelectionLayer();
        std::optional<lmx::TMapArea> area;
        if (selection && selection->GetEnabled())
            area = selection->GetSelectedRect();
        auto dialog = std::make_unique<TStatisticsDialog>(window);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->Show(*view.GetLayerManager(), area);
        dialog.release()->show(); // the map goes on beside it
    });
}
