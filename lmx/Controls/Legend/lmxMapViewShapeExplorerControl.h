#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QString>
#include <QWidget>

namespace lmx {

class TDrawnListView;

/// Shows the table of attributes of a shape file: a column for each field, a row for each record. Values are read from
/// the table's bytes when they are seen, so a table of a million records opens as fast as it is read.
class LMX_EXPORT TMapViewShapeExplorerControl : public QWidget {
public:
    explicit TMapViewShapeExplorerControl(QWidget* parent = nullptr);

    TDrawnListView* GetGrid() const { return FGrid; }

    /// Shows the records of a table (.dbf) that are not deleted, all but the last one.
    /// @throws EFileException, EFileFormatException as TDBFReader; the control shows what it showed before.
    void Load(const QString& fileName);

    QSize sizeHint() const override { return {640, 400}; }

private:
    TDrawnListView* FGrid;
};

} // namespace lmx
