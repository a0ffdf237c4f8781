#pragma once

#include <lmx/Widgets/lmxListRows.h>

#include <QAbstractTableModel>
#include <QTreeView>

#include <memory>

namespace lmx {

/// What a drawn list gives to Qt's view: the number of rows that the list was told of, and texts when they are asked
/// for. Changes of the rows are told after they have happened, so until then this number and that of the rows differ.
class TListModel final : public QAbstractTableModel {
public:
    explicit TListModel(QTreeView& view) : QAbstractTableModel(&view), FView(view) {}

    void SetRows(std::shared_ptr<const IListRows> rows); ///< nil: no rows
    const IListRows* GetRows() const { return FRows.get(); }
    /// Whether the list was told of that row and it is there.
    bool HasRow(int row) const { return row >= 0 && row < FCount && row < FRows->GetCount(); }

    void Insert(int first, int count);
    void Remove(int first, int count);
    void Change(int first, int count);
    void Reset();

    void InsertColumn(int column, const QString& title);
    void RemoveColumn(int column);
    void SetTitle(int column, const QString& title);

    /// As Qt's own, without asking for the counts of another class: a view asks for each row when it lays them out.
    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override {
        const bool isCell = !parent.isValid() && row >= 0 && row < FCount && column >= 0 && column < FTitles.size();
        return isCell ? createIndex(row, column) : QModelIndex();
    }
    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : FCount; }
    int columnCount(const QModelIndex& parent = {}) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QString TextOf(const QModelIndex& index) const;
    int WidthOf(const QString& text) const;

    QTreeView& FView;
    std::shared_ptr<const IListRows> FRows;
    int FCount = 0;
    QStringList FTitles;
};

} // namespace lmx
