#pragma once

#include <lmx/Raster/lmxFieldStatistics.h>

#include <QDialog>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "TiledRasters.h"

class QPushButton;
class QTableWidget;

namespace lmx {
class ILayerManager;
class TMapViewControl;
class TThread;
} // namespace lmx

/// Keeps a thread that has to end before the program does.
using TKeepReader = std::function<void(std::shared_ptr<lmx::TThread> reader)>;

/// A table of what each visible raster has in a region: mean, weighed by the area of the cells, minimum, maximum,
/// number of values, and the share of the area without data. Rasters that are shown by tiles are read by a thread, one
/// after the other; meanwhile their rows tell how far it is. Stop, and closing the dialog, end it.
class TStatisticsDialog : public QDialog {
public:
    explicit TStatisticsDialog(TKeepReader keepReader, QWidget* parent = nullptr);
    ~TStatisticsDialog() override;

    /// Once. The window is called after `title`.
    /// @throws lmx::Exception for a raster that cannot be read.
    void Show(const lmx::ILayerManager& manager, const TStatisticsRegion& region, const QString& title);

private:
    struct TReading;

    int AddRow(const QString& name, const QString& unit);
    void SetNumbers(int row, const lmx::TFieldStatistics& statistics);
    void SetRemark(int row, const QString& text); // in the place of the numbers
    void StartReading(std::vector<TReading> readings);
    void Stop();
    void Copy() const;

    TKeepReader FKeepReader;
    QTableWidget* FTable;
    QPushButton* FStop;
    std::shared_ptr<lmx::TThread> FReader;
};

/// Shows the statistics of the selected rectangle, or of the whole rasters if nothing is selected.
void ShowStatistics(lmx::TMapViewControl& view, QWidget* window, const TKeepReader& keepReader);
/// Shows those of the polygon, of the shape layer that is selected in the list, in which the middle of the selected
/// rectangle lies, or that of the view if nothing is selected. Says in an error box if there is none.
void ShowPolygonStatistics(lmx::TMapViewControl& view, QWidget* window, const TKeepReader& keepReader);
