#include <lmx/Controls/Legend/lmxMapViewShapeExplorerControl.h>

#include <lmx/Formats/Shapes/lmxDBFReader.h>
#include <lmx/Widgets/lmxDrawnListView.h>

#include <QVBoxLayout>

#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

namespace lmx {

namespace {

constexpr int ColumnWidth = 100;

/// The records of a table as rows.
class TTableRows final : public IListRows {
public:
    // The count of the grid's rows is that of the records, and its heading takes one of them: the last record is not
    // shown.
    explicit TTableRows(const QString& fileName) : FReader(fileName) {
        for (std::size_t row = 0; row < FReader.GetRowCount(); ++row)
            if (!FReader.GetIsDeleted(row))
                FRows.push_back(static_cast<std::uint32_t>(row));
        if (!FRows.empty())
            FRows.pop_back();
    }

    std::vector<TListColumn> Columns() const {
        std::vector<TListColumn> columns;
        for (const TDBFField& field : FReader.GetFields())
            columns.push_back({field.GetFieldName(), ColumnWidth});
        return columns;
    }

    int GetCount() const override { return static_cast<int>(FRows.size()); }
    QString GetText(int row, int column) const override {
        return FReader.GetText(FRows[static_cast<std::size_t>(row)], static_cast<std::size_t>(column));
    }

private:
    TDBFReader FReader;
    std::vector<std::uint32_t> FRows; // of the reader
};

} // namespace

TMapViewShapeExplorerControl::TMapViewShapeExplorerControl(QWidget* parent)
    : QWidget(parent),
      FGrid(new TDrawnListView(this)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(FGrid);
    FGrid->setAccessibleName(QStringLiteral("Attributes"));
    setFocusProxy(FGrid);
}

void TMapViewShapeExplorerControl::Load(const QString& fileName) {
    const auto rows = std::make_shared<TTableRows>(fileName);
    FGrid->SetRows(nullptr);
    FGrid->SetColumns(rows->Columns());
    FGrid->SetRows(rows);
}

} // namespace lmx
