#include "SelectionStatistics.h"

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxLayerStatistics.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/Raster/lmxField.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxThread.h>
#include <lmx/Widgets/lmxClipboard.h>
#include <lmx/Widgets/lmxEventGuard.h>

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPointer>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include <cmath>
#include <new>

namespace {

constexpr int FirstNumber = 2; // column

QString Place(const lmx::TMapArea& area) {
    const auto text = [](lmx::extended value) { return lmx::FloatToGeneral(value, 6); };
    return QObject::tr("Statistics of %1 to %2 and %3 to %4")
        .arg(text(std::min(area.Left, area.Right)), text(std::max(area.Left, area.Right)),
             text(std::min(area.Bottom, area.Top)), text(std::max(area.Bottom, area.Top)));
}

QStringList TextsOf(const lmx::TFieldStatistics& statistics) {
    const auto number = [&](double value) {
        return statistics.HasValues() ? lmx::FloatToGeneral(value, 6) : QStringLiteral("-");
    };
    return {number(statistics.Mean), number(statistics.Minimum), number(statistics.Maximum),
            lmx::IntToStr(static_cast<std::int64_t>(statistics.ValueCount)),
            lmx::FloatToFixed(statistics.MissingShare * 100, 1) + " %"};
}

lmx::TFieldStatistics StatisticsOf(const lmx::TIdrisiMapLayer& raster, const TStatisticsRegion& region) {
    if (region.Area)
        return lmx::StatisticsOf(raster, *region.Area);
    if (region.Rings.empty())
        return lmx::StatisticsOf(raster);
    const lmx::TField field = lmx::TField::Of(*raster.GetImage());
    lmx::TFieldRegion inside(field, region.Rings);
    return lmx::StatisticsOf(field, inside);
}

/// By the even-odd rule, whole turns apart.
bool IsInside(const std::vector<lmx::TFieldRing>& rings, double x, double y) {
    bool isInside = false;
    for (const lmx::TFieldRing& ring : rings)
        for (std::size_t i = 0, before = ring.size() - 1; i < ring.size(); before = i++) {
            const auto& [x1, y1] = ring[before];
            const auto& [x2, y2] = ring[i];
            if ((y1 > y) != (y2 > y) && x < x1 + (y - y1) / (y2 - y1) * (x2 - x1))
                isInside = !isInside;
        }
    return isInside;
}

std::optional<lmx::TMapArea> SelectedArea(const lmx::TMapViewControl& view) {
    const lmx::TSelectionMapLayer* selection = view.GetSpSelectionLayer();
    return selection && selection->GetEnabled() ? std::optional(selection->GetSelectedRect()) : std::nullopt;
}

void ShowDialog(const lmx::ILayerManager& manager, const TStatisticsRegion& region, const QString& title,
                QWidget* window, const TKeepReader& keepReader) {
    auto dialog = std::make_unique<TStatisticsDialog>(keepReader, window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->Show(manager, region, title);
    dialog.release()->show(); // the map goes on beside it
}

} // namespace

/// A row that is to be read.
struct TStatisticsDialog::TReading {
    int Row;
    TTiledStatistics Compute;
};

TStatisticsDialog::TStatisticsDialog(TKeepReader keepReader, QWidget* parent)
    : QDialog(parent),
      FKeepReader(std::move(keepReader)),
      FTable(new QTableWidget(this)) {
    const QStringList headings = {tr("Layer"),   tr("Unit"),   tr("Mean"),        tr("Minimum"),
                                  tr("Maximum"), tr("Values"), tr("Without data")};
    FTable->setObjectName("Statistics");
    FTable->setColumnCount(static_cast<int>(headings.size()));
    FTable->setAccessibleName(tr("Statistics"));
    FTable->setTabKeyNavigation(false); // the tab key leads on to the buttons, the arrow keys through the cells
    FTable->setHorizontalHeaderLabels(headings);
    for (int column = 0; column < FTable->columnCount(); ++column) // as the texts below it
        FTable->horizontalHeaderItem(column)->setTextAlignment((column > 1 ? Qt::AlignRight : Qt::AlignLeft) |
                                                               Qt::AlignVCenter);
    FTable->verticalHeader()->hide();
    FTable->horizontalHeader()->setStretchLastSection(true);
    FTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    lmx::GuardClick(buttons->addButton(tr("&Copy"), QDialogButtonBox::ActionRole), [this] { Copy(); });
    FStop = buttons->addButton(tr("&Stop"), QDialogButtonBox::ActionRole);
    FStop->hide(); // there is nothing to wait for
    lmx::GuardClick(FStop, [this] { Stop(); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(FTable);
    layout->addWidget(buttons);
    resize(680, 240);
    buttons->button(QDialogButtonBox::Close)->setDefault(true); // enter does not replace what is on the clipboard
}

TStatisticsDialog::~TStatisticsDialog() {
    if (FReader)
        FReader->Terminate();
}

void TStatisticsDialog::Show(const lmx::ILayerManager& manager, const TStatisticsRegion& region, const QString& title) {
    setWindowTitle(title);
    std::vector<TReading> readings;
    for (int i = manager.GetLayers().Count() - 1; i >= 0; --i) { // as in the list of layers
        const lmx::TBaseMapLayer& layer = *manager.GetLayers()[i];
        const auto* raster = dynamic_cast<const lmx::TIdrisiMapLayer*>(&layer);
        if (!layer.GetIsVisible())
            continue;
        if (TTiledStatistics compute = TiledStatisticsOf(layer, region))
            readings.push_back({AddRow(layer.GetLayerName(), {}), std::move(compute)});
        else if (raster && raster->GetImage())
            SetNumbers(AddRow(layer.GetLayerName(), raster->GetImage()->getHeader()->GetValueUnits()),
                       StatisticsOf(*raster, region));
    }
    FTable->resizeColumnsToContents();
    if (!readings.empty())
        StartReading(std::move(readings));
}

int TStatisticsDialog::AddRow(const QString& name, const QString& unit) {
    const int row = FTable->rowCount();
    FTable->insertRow(row);
    for (int column = 0; column < FTable->columnCount(); ++column) {
        auto* item = new QTableWidgetItem;
        if (column >= FirstNumber)
            item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        FTable->setItem(row, column, item);
    }
    FTable->item(row, 0)->setText(name);
    FTable->item(row, 1)->setText(unit);
    return row;
}

void TStatisticsDialog::SetNumbers(int row, const lmx::TFieldStatistics& statistics) {
    const QStringList texts = TextsOf(statistics);
    if (FTable->columnSpan(row, FirstNumber) > 1)
        FTable->setSpan(row, FirstNumber, 1, 1);
    for (int i = 0; i < texts.size(); ++i)
        FTable->item(row, FirstNumber + i)->setText(texts[i]);
    FTable->item(row, FirstNumber)->setToolTip(QString()); // of the remark before
}

void TStatisticsDialog::SetRemark(int row, const QString& text) {
    if (FTable->columnSpan(row, FirstNumber) == 1)
        FTable->setSpan(row, FirstNumber, 1, FTable->columnCount() - FirstNumber);
    FTable->item(row, FirstNumber)->setText(text);
    FTable->item(row, FirstNumber)->setToolTip(text);
}

// The thread knows the dialog only where it hands over what it has found.
void TStatisticsDialog::StartReading(std::vector<TReading> readings) {
    FStop->show();
    for (const TReading& reading : readings)
        SetRemark(reading.Row, tr("Waiting..."));
    const QPointer<TStatisticsDialog> dialog(this);
    const auto tell = [dialog](std::function<void(TStatisticsDialog&)> what) {
        lmx::TThread::Synchronize([dialog, what = std::move(what)] {
            if (dialog)
                what(*dialog);
        });
    };
    FReader = lmx::TThread::CreateAnonymousThread([tell, readings = std::move(readings)] {
        for (const TReading& reading : readings) {
            const auto remark = [&tell, row = reading.Row](const QString& text) {
                tell([row, text](TStatisticsDialog& shown) { shown.SetRemark(row, text); });
            };
            const auto goesOn = [&remark](double share) {
                const bool isWanted = !lmx::TThread::CheckTerminated();
                if (isWanted)
                    remark(tr("Reading, %1 %").arg(lmx::FloatToFixed(std::floor(share * 100), 0)));
                return isWanted;
            };
            try {
                if (const auto statistics = reading.Compute(goesOn))
                    tell([row = reading.Row, found = *statistics](TStatisticsDialog& shown) {
                        shown.SetNumbers(row, found);
                    });
                else
                    remark(tr("Stopped"));
            } catch (const lmx::Exception& failure) {
                remark(failure.Description());
            } catch (const std::bad_alloc&) {
                remark(tr("Out of memory"));
            }
        }
        tell([](TStatisticsDialog& shown) { shown.FStop->hide(); });
    });
    FReader->Start();
    FKeepReader(FReader);
}

void TStatisticsDialog::Stop() {
    FStop->setEnabled(false); // what is being read comes to its end
    FReader->Terminate();
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

void ShowStatistics(lmx::TMapViewControl& view, QWidget* window, const TKeepReader& keepReader) {
    lmx::GuardEvent(window, [&] {
        if (!view.GetLayerManager())
            return;
        const TStatisticsRegion region{SelectedArea(view), {}};
        ShowDialog(*view.GetLayerManager(), region,
                   region.Area ? Place(*region.Area) : QObject::tr("Statistics of whole layers"), window, keepReader);
    });
}

void ShowPolygonStatistics(lmx::TMapViewControl& view, QWidget* window, const TKeepReader& keepReader) {
    lmx::GuardEvent(window, [&] {
        const auto manager = view.GetLayerManager();
        const auto* shapes = manager ? dynamic_cast<lmx::TShapeFileLayer*>(manager->GetSelLayer()) : nullptr;
        if (!shapes || !shapes->GetShpFile() || !view.WorldCreated())
            throw lmx::Exception(QObject::tr("Select a layer of a shape file in the list of layers first."));
        const auto selected = SelectedArea(view);
        const lmx::TMapPoint place =
            selected ? lmx::TMapPoint((selected->Left + selected->Right) / 2, (selected->Bottom + selected->Top) / 2)
                     : view.GetViewport()->GetCenter();
        const auto x = static_cast<double>(place.X);
        const auto y = static_cast<double>(place.Y);
        for (std::size_t i = 0; i < shapes->GetShpFile()->GetPolygonCount(); ++i) {
            std::vector<lmx::TFieldRing> rings = lmx::FieldRingsOf(*shapes, i);
            if (IsInside(rings, x, y) || IsInside(rings, x - 360, y) || IsInside(rings, x + 360, y)) {
                const QString title = QObject::tr("Statistics of polygon %1 of %2");
                ShowDialog(*manager, {std::nullopt, std::move(rings)},
                           title.arg(lmx::IntToStr(static_cast<std::int64_t>(i) + 1), shapes->GetLayerName()), window,
                           keepReader);
                return;
            }
        }
        throw lmx::Exception(
            QObject::tr("No polygon of \"%1\" is where the middle of the %2 is.")
                .arg(shapes->GetLayerName(), selected ? QObject::tr("selection") : QObject::tr("map")));
    });
}
