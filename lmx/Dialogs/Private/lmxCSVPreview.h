#pragma once

#include <lmx/Formats/Text/lmxCSVReader.h>

#include <QAbstractTableModel>

namespace lmx {

/// The rows of a delimited text as a table shows them: cells are read when they are seen, and a long one is shown by
/// its beginning. The first row may stand above the others as their header.
class TCSVPreview final : public QAbstractTableModel {
public:
    explicit TCSVPreview(QObject* parent) : QAbstractTableModel(parent) {}

    void Show(const TCSVReader& reader, bool hasHeader);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QString TextAt(int row, int column) const;

    TCSVReader FReader;
    bool FHasHeader = false;
};

} // namespace lmx
