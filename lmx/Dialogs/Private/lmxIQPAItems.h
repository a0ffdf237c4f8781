#pragma once

#include <lmx/Dialogs/lmxAddMultipleInfoQueryPointDialog.h>

#include <QAbstractTableModel>

#include <vector>

namespace lmx {

/// The rows of the table in which points are entered: texts that nobody has looked at yet.
class TIQPAItems final : public QAbstractTableModel {
public:
    enum TColumn { clX, clY, clLabel, clColor, clRemove, ColumnCount };

    explicit TIQPAItems(QObject* parent) : QAbstractTableModel(parent) {}

    const std::vector<TIQPAItem>& GetItems() const { return FItems; }
    void Add(std::vector<TIQPAItem> items); ///< at the end
    void Remove(int row);                   ///< a row outside the table does nothing
    void SetColor(int row, TColor color);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : ColumnCount; }
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const TIQPAItem& ItemAt(const QModelIndex& index) const { return FItems[static_cast<std::size_t>(index.row())]; }
    QString TextAt(const QModelIndex& index) const;

    std::vector<TIQPAItem> FItems;
};

} // namespace lmx
