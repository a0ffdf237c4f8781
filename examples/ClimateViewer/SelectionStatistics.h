#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>

#include <QDialog>

#include <memory>
#include <optional>

class QTableWidget;

namespace lmx {
class ILayerManager;
class TMapViewControl;
} // namespace lmx

/// A table of what each visible raster has in an area: mean, weighed by the area of the cells, minimum, maximum, number
/// of values, and the share of the area without data.
class TStatisticsDialog : public QDialog {
public:
    explicit TStatisticsDialog(QWidget* parent = nullptr);

    /// Without an area the rasters are taken whole.
    void Show(const lmx::ILayerManager& manager, const std::optional<lmx::TMapArea>& area);

private:
    void AddRow(const QStringList& texts);
    void Copy() const;

    QTableWidget* FTable;
};

/// Shows the statistics of the selected rectangle, or of the whole rasters if nothing is selected.
void ShowStatistics(lmx::TMapViewControl& view, QWidget* window);
