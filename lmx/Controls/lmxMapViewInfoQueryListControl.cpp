#include <lmx/Controls/lmxMapViewInfoQueryListControl.h>

#include <lmx/Controls/Private/lmxControlDialogs.h>
#include <lmx/Controls/Private/lmxInfoQueryTable.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Widgets/Private/lmxWidgetMenu.h>
#include <lmx/Widgets/lmxClipboard.h>
#include <lmx/Widgets/lmxPngButton.h>

#include <QAction>
#include <QMenu>
#include <QScopeGuard>

namespace lmx {

namespace {

constexpr int PointWidth = 200;
constexpr int ValueWidth = 150;

} // namespace

TMapViewInfoQueryListControl::TMapViewInfoQueryListControl(QWidget* parent)
    : TMapViewInfoQueryListControl(new TDrawnListView, parent) {}

TMapViewInfoQueryListControl::TMapViewInfoQueryListControl(TDrawnListView* list, QWidget* parent)
    : TListPanel(list, QStringLiteral("Query points"), parent),
      FTable(std::make_shared<TInfoQueryTable>()) {
    list->SetColumns({{QStringLiteral("Point"), PointWidth}});
    list->SetMultiSelect(true);
    list->SetRows(FTable);
    auto* const menu = new TWidgetMenu(this);
    menu->AddEntry(QStringLiteral("Add point..."), [this] { AddSingle_Click(); });
    menu->AddEntry(QStringLiteral("Add multiple points..."), [this] { AddMultiple_Click(); });
    FAddMenu = menu;
    AddCommands();
}

TMapViewInfoQueryListControl::~TMapViewInfoQueryListControl() {
    StopReceiving();
    FTable->Clear(); // it may be held while its values are read, and no one tells it of its points any more
}

void TMapViewInfoQueryListControl::AddCommands() {
    const auto hasLayer = [this] { return GetIQPLayer() != nullptr; };
    const auto hasPoint = [this] { return HasSelectedPoint(); };
    FAddButton = AddCommand({QStringLiteral("MapWindowFactory.AddLayer"),
                             QStringLiteral("Add"),
                             {Qt::Key_Insert},
                             [this] { Add_Click(); },
                             hasLayer});
    FDeleteButton = AddCommand({QStringLiteral("MapWindowFactory.DeleteLayer"),
                                QStringLiteral("Delete"),
                                {Qt::Key_Delete},
                                [this] { Delete_Click(); },
                                hasPoint});
    FEditButton = AddCommand({QStringLiteral("MapWindowFactory.Edit"),
                              QStringLiteral("Edit"),
                              {Qt::Key_Return, Qt::Key_Enter, Qt::Key_F2},
                              [this] { Edit_Click(); },
                              hasPoint});
    FCopyButton =
        AddCommand({QStringLiteral("MapWindowFactory.Copy"), QStringLiteral("Copy"), {}, [this] { Copy_Click(); }, {}});
    SetDoubleClickButton(FEditButton);
    auto* copy = new QAction(GetList());
    copy->setShortcut(QKeySequence::Copy);
    copy->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    QObject::connect(copy, &QAction::triggered, FCopyButton, &QAbstractButton::click);
    GetList()->addAction(copy);
}

TInfoQueryPointLayer* TMapViewInfoQueryListControl::GetIQPLayer() const {
    return FIQPLayer.Get();
}

// Whoever hears of the selection, which goes with its rows, may change all of this.
void TMapViewInfoQueryListControl::SetIQPLayer(TInfoQueryPointLayer* layer) {
    TInfoQueryPointLayer* const previous = GetIQPLayer();
    if (layer == previous)
        return;
    if (previous) {
        previous->GetOnAdded().Remove(this, &TMapViewInfoQueryListControl::IQPLayer_PointAdded);
        previous->GetOnRemoved().Remove(this, &TMapViewInfoQueryListControl::IQPLayer_PointRemoved);
        previous->GetOnInvalidated().Remove(this, &TMapViewInfoQueryListControl::IQPLayer_Invalidated);
    }
    FIQPLayer = layer;
    for (int row = FTable->GetCount() - 1; row >= 0; --row)
        if (!FTable->GetPoint(row) || FTable->IsPointRow(row))
            FTable->RemovePoint(row);
    if (layer) {
        layer->GetOnAdded().Add(this, &TMapViewInfoQueryListControl::IQPLayer_PointAdded);
        layer->GetOnRemoved().Add(this, &TMapViewInfoQueryListControl::IQPLayer_PointRemoved);
        layer->GetOnInvalidated().Add(this, &TMapViewInfoQueryListControl::IQPLayer_Invalidated);
        for (TInfoQueryPoint* point : layer->GetPoints())
            FTable->AddPoint(point);
    }
    if (!ReadAllValues())
        return;
    UpdateButtons();
    GetList()->RowsReset();
}

void TMapViewInfoQueryListControl::SetLayerManager(const std::shared_ptr<ILayerManager>& manager) {
    const std::shared_ptr<ILayerManager> previous = GetLayerManager();
    if (manager == previous)
        return;
    if (previous) {
        previous->GetOnLayerAdded().Remove(this, &TMapViewInfoQueryListControl::LayerManager_LayerAdded);
        previous->GetOnLayerRemoved().Remove(this, &TMapViewInfoQueryListControl::LayerManager_LayerRemoved);
        previous->GetOnLayerInvalidated().Remove(this, &TMapViewInfoQueryListControl::LayerManager_LayerInvalidated);
    }
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the caller's may change meanwhile
    const std::shared_ptr<ILayerManager> next = manager;
    FLayerManager = next;
    while (FTable->GetLayerCount() > 0)
        if (!RemoveColumn(FTable->GetLayerCount() - 1) || GetLayerManager() != next)
            return;
    if (next) {
        next->GetOnLayerAdded().Add(this, &TMapViewInfoQueryListControl::LayerManager_LayerAdded);
        next->GetOnLayerRemoved().Add(this, &TMapViewInfoQueryListControl::LayerManager_LayerRemoved);
        next->GetOnLayerInvalidated().Add(this, &TMapViewInfoQueryListControl::LayerManager_LayerInvalidated);
        for (TBaseMapLayer* layer : next->GetLayers())
            if (auto* raster = dynamic_cast<TIdrisiMapLayer*>(layer))
                AddLayer(raster);
    }
    RebuildData();
}

void TMapViewInfoQueryListControl::AddCursorInfoQueryPoint() {
    if (!FTable->GetCursor())
        AddPoint(FTable->MakeCursor());
}

TInfoQueryPoint* TMapViewInfoQueryListControl::GetCursorInfoQueryPoint() const {
    return FTable->GetCursor();
}

void TMapViewInfoQueryListControl::SetCursorMapPt(const TMapPoint& point,
                                                  const std::shared_ptr<IWorldSystem>& worldSystem) {
    if (point.Equals(FCursorMapPt) && worldSystem == FTable->WorldSystem)
        return;
    FCursorMapPt = point;
    FTable->WorldSystem = worldSystem;
    if (TInfoQueryPoint* cursor = FTable->GetCursor())
        cursor->SetPoint(point);
    if (!FTable->IsCursorRow(0))
        return;
    if (ReadValues(0))
        GetList()->RowsChanged(0);
}

void TMapViewInfoQueryListControl::AddNewPoint(const TMapPoint& point, TColor32 color, const QString& label) {
    TInfoQueryPointLayer* layer = GetIQPLayer();
    if (!layer)
        return;
    auto added = std::make_unique<TInfoQueryPoint>(layer, point, color);
    added->SetPointLabel(label);
    layer->GetPoints().Add(std::move(added));
}

void TMapViewInfoQueryListControl::RebuildData() {
    if (ReadAllValues())
        GetList()->RowsChanged(0, FTable->GetCount());
}

int TMapViewInfoQueryListControl::GetRowCount() const {
    return FTable->GetCount();
}

TInfoQueryPoint* TMapViewInfoQueryListControl::GetRowPoint(int row) const {
    return FTable->GetPoint(row);
}

TIdrisiMapLayer* TMapViewInfoQueryListControl::GetColumnLayer(int column) const {
    return FTable->GetLayer(column);
}

std::optional<TInfoQueryRowDataValue> TMapViewInfoQueryListControl::GetRowValue(int row, int column) const {
    return FTable->GetValue(row, column);
}

void TMapViewInfoQueryListControl::AddPoint(TInfoQueryPoint* point) {
    const int row = FTable->AddPoint(point);
    if (ReadValues(row) && !FIsAddingMany)
        TellOfRows();
}

// Rows come at the end.
void TMapViewInfoQueryListControl::TellOfRows() {
    const int told = GetList()->GetRowCount();
    if (const int untold = FTable->GetCount() - told; untold > 0)
        GetList()->RowsInserted(told, untold);
}

// Calculators may be a host's and end this control: the table stays until it has been read.
bool TMapViewInfoQueryListControl::ReadValues(int row) {
    const TBorrowed self(this);
    const std::shared_ptr<TInfoQueryTable> table = FTable;
    table->Populate(row);
    return static_cast<bool>(self);
}

bool TMapViewInfoQueryListControl::ReadAllValues() {
    const TBorrowed self(this);
    const std::shared_ptr<TInfoQueryTable> table = FTable;
    table->PopulateAll();
    return static_cast<bool>(self);
}

void TMapViewInfoQueryListControl::AddLayer(TIdrisiMapLayer* layer) {
    FTable->AddLayer(layer, layer->GetLayerName());
    GetList()->AddColumn({layer->GetLayerName(), ValueWidth});
    layer->GetOnLayerNameChanged().Add(this, &TMapViewInfoQueryListControl::Layer_NameChanged);
}

// With a column goes what is selected in it, and whoever hears of that may end this control.
bool TMapViewInfoQueryListControl::RemoveColumn(int column) {
    const TBorrowed self(this);
    if (TIdrisiMapLayer* layer = FTable->GetLayer(column))
        layer->GetOnLayerNameChanged().Remove(this, &TMapViewInfoQueryListControl::Layer_NameChanged);
    FTable->RemoveLayer(column);
    GetList()->RemoveColumn(column + 1);
    return static_cast<bool>(self);
}

void TMapViewInfoQueryListControl::RemoveLayer(const TBaseMapLayer* layer) {
    const int column = FTable->IndexOf(layer);
    if (column >= 0 && RemoveColumn(column))
        RebuildData();
}

bool TMapViewInfoQueryListControl::HasSelectedPoint() const {
    for (const int row : GetList()->GetSelectedRows())
        if (FTable->IsPointRow(row))
            return true;
    return false;
}

void TMapViewInfoQueryListControl::IQPLayer_PointAdded(TInfoQueryPointLayer*, TInfoQueryPoint* point) {
    AddPoint(point);
}

void TMapViewInfoQueryListControl::IQPLayer_PointRemoved(TInfoQueryPointLayer*, TInfoQueryPoint* point) {
    const TBorrowed self(this);
    TellOfRows();
    const int row = self ? FTable->IndexOf(point) : -1;
    if (row < 0)
        return;
    FTable->RemovePoint(row);
    GetList()->RowsRemoved(row);
}

// A point has another label or colour.
void TMapViewInfoQueryListControl::IQPLayer_Invalidated(TBaseMapLayer*) {
    if (!FIsAddingMany)
        GetList()->viewport()->update();
}

void TMapViewInfoQueryListControl::LayerManager_LayerAdded(ILayerManager*, TBaseMapLayer* layer) {
    auto* raster = dynamic_cast<TIdrisiMapLayer*>(layer);
    if (!raster || FTable->IndexOf(layer) >= 0)
        return;
    AddLayer(raster);
    RebuildData();
}

void TMapViewInfoQueryListControl::LayerManager_LayerRemoved(ILayerManager*, TBaseMapLayer* layer) {
    RemoveLayer(layer);
}

void TMapViewInfoQueryListControl::LayerManager_LayerInvalidated(ILayerManager*, TBaseMapLayer* layer) {
    if (dynamic_cast<TIdrisiMapLayer*>(layer))
        RebuildData();
}

void TMapViewInfoQueryListControl::Layer_NameChanged(TBaseMapLayer* layer) {
    const int column = FTable->IndexOf(layer);
    if (column < 0)
        return;
    FTable->SetLayerName(column, layer->GetLayerName());
    GetList()->SetColumnTitle(column + 1, layer->GetLayerName());
}

void TMapViewInfoQueryListControl::Add_Click() {
    FAddMenu->popup(FAddButton->mapToGlobal(FAddButton->rect().bottomLeft()));
}

// Dialogs are waited for; meanwhile all of this may go.

void TMapViewInfoQueryListControl::AddSingle_Click() {
    const TBorrowed self(this);
    if (const auto answer = AskForQueryPoint(this, nullptr); answer && self)
        AddNewPoint(answer->Point, answer->Color, answer->Label);
}

// The list is told of all the rows at once.
void TMapViewInfoQueryListControl::AddMultiple_Click() {
    const TBorrowed self(this);
    const std::vector<TQueryPointAnswer> answers = AskForQueryPoints(this);
    if (!self)
        return;
    FIsAddingMany = true;
    const auto end = qScopeGuard([&self] {
        if (self)
            self->FIsAddingMany = false;
    });
    for (auto answer = answers.begin(); self && answer != answers.end(); ++answer)
        AddNewPoint(answer->Point, answer->Color, answer->Label);
    if (self)
        TellOfRows();
}

// Whoever hears of a removal may take others away, and put new ones where they were in memory.
void TMapViewInfoQueryListControl::Delete_Click() {
    std::vector<TBorrowed<TInfoQueryPoint>> points;
    for (const int row : GetList()->GetSelectedRows())
        if (FTable->IsPointRow(row))
            points.emplace_back(FTable->GetPoint(row));
    const TBorrowed<TInfoQueryPointLayer> layer = FIQPLayer;
    for (const TBorrowed<TInfoQueryPoint>& point : points)
        if (layer && point)
            layer->GetPoints().Remove(point.Get());
}

void TMapViewInfoQueryListControl::Edit_Click() {
    const std::vector<int> selected = GetList()->GetSelectedRows();
    if (selected.empty() || !FTable->IsPointRow(selected.front()))
        return;
    const QPersistentModelIndex row = GetList()->MarkRow(selected.front());
    const TBorrowed self(this);
    const auto answer = AskForQueryPoint(this, FTable->GetPoint(row.row()));
    const auto point = [&] { return self && row.isValid() ? FTable->GetPoint(row.row()) : nullptr; };
    if (answer && point())
        point()->SetPoint(answer->Point);
    if (answer && point())
        point()->SetColor(answer->Color);
    if (answer && point())
        point()->SetPointLabel(answer->Label);
    if (!answer || !point())
        return;
    if (ReadValues(row.row()) && point())
        GetList()->RowsChanged(row.row());
}

void TMapViewInfoQueryListControl::Copy_Click() {
    const std::vector<int> selected = GetList()->GetSelectedRows();
    QString text = FTable->CopiedHeading();
    const auto copy = [&](int row) {
        if (FTable->IsPointRow(row))
            text += FTable->CopiedRow(row);
    };
    if (selected.empty())
        for (int row = 0; row < FTable->GetCount(); ++row)
            copy(row);
    for (const int row : selected)
        copy(row);
    TClipboard::SetAsText(text);
}

} // namespace lmx
