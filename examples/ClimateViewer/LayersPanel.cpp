#include "LayersPanel.h"

#include <lmx/Layers/lmxLayerManager.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

#include "LayerCommands.h"
#include "LayerRow.h"
#include "LayerStack.h"

namespace {

constexpr int DropMarkHeight = 3;
constexpr int DragMargin = 30; // from the edge of the panel, where a drag scrolls it

} // namespace

TLayersPanel::TLayersPanel(QWidget* parent)
    : QWidget(parent),
      FCommands(new TLayerCommands(
          [this](lmx::TBaseMapLayer* layer) {
              if (TLayerRow* row = RowOf(layer)) {
                  parentWidget()->show(); // the dock may be closed, and the command comes from a menu
                  FScroll->ensureWidgetVisible(row, 0, 0);
                  row->StartRename();
              }
          },
          this)),
      FScroll(new QScrollArea(this)) {
    auto* column = new QWidget;
    FColumn = new QVBoxLayout(column);
    FColumn->setContentsMargins(0, 0, 0, 0);
    FColumn->setSpacing(1);
    FColumn->addStretch();
    FScroll->setWidget(column);
    FScroll->setWidgetResizable(true);
    FScroll->setFrameShape(QFrame::NoFrame);
    FScroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    FScroll->setFocusPolicy(Qt::NoFocus);
    FDropMark = new QFrame(column);
    FDropMark->setAutoFillBackground(true);
    FDropMark->setBackgroundRole(QPalette::Highlight);
    FDropMark->hide();
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->addWidget(FScroll);
    setMinimumWidth(230);
    setAccessibleName(tr("Layers"));
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (TLayerRow* row = RowWith(now)) {
            Select(row);
            FScroll->ensureWidgetVisible(now, 0, 0);
        }
    });
}

// Rows that go change the focus, which must find nobody.
TLayersPanel::~TLayersPanel() {
    disconnect(qApp, nullptr, this, nullptr);
}

const QList<QAction*>& TLayersPanel::GetCommands() const {
    return FCommands->GetActions();
}

// A removed layer is still on its way out when that is told, so the rows follow a little later.
void TLayersPanel::SetLayerManager(const std::shared_ptr<lmx::ILayerManager>& manager) {
    FManager = manager;
    const auto changed = [this](auto&&...) { UpdateLater(); };
    FAdded = manager ? manager->GetOnLayerAdded().Add(changed) : lmx::TSubscription();
    FRemoved = manager ? manager->GetOnLayerRemoved().Add(changed) : lmx::TSubscription();
    FMoved = manager ? manager->GetOnLayerMoved().Add(changed) : lmx::TSubscription();
    FSelected = manager ? manager->GetOnSelectedLayerChanged().Add([this](auto&&...) { UpdateSelection(); })
                        : lmx::TSubscription();
    FCommands->SetLayerManager(manager);
    UpdateLater();
}

void TLayersPanel::UpdateLater() {
    if (std::exchange(FIsUpdatePending, true))
        return;
    QMetaObject::invokeMethod(
        this, [this] { UpdateRows(); }, Qt::QueuedConnection);
}

void TLayersPanel::UpdateRows() {
    FIsUpdatePending = false;
    EndDrag(false);
    const bool hadFocus = RowWith(QApplication::focusWidget()) != nullptr;
    const auto before =
        std::exchange(FRows, RowsOf(FManager ? ListedLayers(*FManager) : std::vector<lmx::TBaseMapLayer*>()));
    for (TLayerRow* row : before)
        if (std::ranges::find(FRows, row) == FRows.end())
            delete row;
    ArrangeRows();
    UpdateSelection();
    if (TLayerRow* row = FManager ? RowOf(FManager->GetSelLayer()) : nullptr; row && hadFocus)
        if (!RowWith(QApplication::focusWidget()))
            row->setFocus();
}

void TLayersPanel::ArrangeRows() {
    QWidget* previous = nullptr;
    for (std::size_t i = 0; i < FRows.size(); ++i) {
        FColumn->insertWidget(static_cast<int>(i), FRows[i]);
        for (QWidget* widget : FRows[i]->TabChain()) {
            if (previous)
                setTabOrder(previous, widget);
            previous = widget;
        }
    }
}

// The rows that are there stay, with what is folded, edited and focused in them.
std::vector<TLayerRow*> TLayersPanel::RowsOf(const std::vector<lmx::TBaseMapLayer*>& layers) {
    std::vector<TLayerRow*> rows;
    for (lmx::TBaseMapLayer* layer : layers) {
        TLayerRow* row = RowOf(layer);
        if (!row) {
            row = new TLayerRow(layer, FCommands->GetActions(), FScroll->widget());
            row->installEventFilter(this);
        }
        rows.push_back(row);
    }
    return rows;
}

void TLayersPanel::UpdateSelection() {
    const TLayerRow* selected = FManager ? RowOf(FManager->GetSelLayer()) : nullptr;
    for (TLayerRow* row : FRows)
        row->SetSelected(row == selected);
    if (selected)
        FScroll->ensureWidgetVisible(const_cast<TLayerRow*>(selected), 0, 0);
    FCommands->Update();
}

TLayerRow* TLayersPanel::RowOf(const lmx::TBaseMapLayer* layer) const {
    const auto found = std::ranges::find_if(FRows, [=](const TLayerRow* row) { return row->GetLayer() == layer; });
    return layer && found != FRows.end() ? *found : nullptr;
}

TLayerRow* TLayersPanel::RowWith(QWidget* widget) const {
    const auto found = std::ranges::find_if(
        FRows, [=](const TLayerRow* row) { return widget && (row == widget || row->isAncestorOf(widget)); });
    return found != FRows.end() ? *found : nullptr;
}

void TLayersPanel::Select(TLayerRow* row) {
    if (FManager && row->GetLayer())
        FManager->SetSelLayer(row->GetLayer());
}

bool TLayersPanel::GoToRow(TLayerRow* from, int key) {
    const auto place = std::ranges::find(FRows, from) - FRows.begin();
    const auto last = static_cast<std::ptrdiff_t>(FRows.size()) - 1;
    std::ptrdiff_t next = place;
    switch (key) {
    case Qt::Key_Up:
        next = std::max<std::ptrdiff_t>(place - 1, 0);
        break;
    case Qt::Key_Down:
        next = std::min(place + 1, last);
        break;
    case Qt::Key_Home:
        next = 0;
        break;
    case Qt::Key_End:
        next = last;
        break;
    default:
        return false;
    }
    TLayerRow* row = FRows[static_cast<std::size_t>(next)];
    row->setFocus();
    Select(row);
    return true;
}

bool TLayersPanel::eventFilter(QObject* watched, QEvent* event) {
    const bool isInput = dynamic_cast<QInputEvent*>(event) != nullptr;
    auto* row = isInput ? static_cast<TLayerRow*>(watched) : nullptr; // others may come while it is being destroyed
    if (const auto* mouse = dynamic_cast<QMouseEvent*>(event))
        HandleMouse(row, *mouse);
    if (event->type() == QEvent::KeyPress && HandleKey(row, *static_cast<QKeyEvent*>(event)))
        return true;
    return QWidget::eventFilter(watched, event);
}

void TLayersPanel::HandleMouse(TLayerRow* row, const QMouseEvent& event) {
    const QPoint at = row->mapToParent(event.position().toPoint());
    if (event.type() == QEvent::MouseButtonPress)
        Select(row);
    if (event.type() == QEvent::MouseButtonPress && event.button() == Qt::LeftButton)
        StartDrag(row, at);
    else if (event.type() == QEvent::MouseMove)
        DragTo(at);
    else if (event.type() == QEvent::MouseButtonRelease && event.button() == Qt::LeftButton)
        EndDrag(true);
}

bool TLayersPanel::HandleKey(TLayerRow* row, const QKeyEvent& event) {
    if (event.key() == Qt::Key_Escape && FPressedRow) {
        EndDrag(false);
        return true;
    }
    const auto chords = Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier;
    return !(event.modifiers() & chords) && GoToRow(row, event.key());
}

void TLayersPanel::StartDrag(TLayerRow* row, const QPoint& at) {
    FPressedRow = row;
    FPressedAt = at;
}

void TLayersPanel::DragTo(const QPoint& at) {
    if (!FPressedRow || (FGap < 0 && (at - FPressedAt).manhattanLength() < QApplication::startDragDistance()))
        return;
    FGap = GapAt(at.y());
    const int y = FGap < static_cast<int>(FRows.size()) ? FRows[static_cast<std::size_t>(FGap)]->y()
                                                        : FRows.back()->geometry().bottom() + 1;
    FDropMark->setGeometry(0, std::max(0, y - DropMarkHeight / 2 - 1), FScroll->widget()->width(), DropMarkHeight);
    FDropMark->raise();
    FDropMark->show();
    FPressedRow->setCursor(Qt::ClosedHandCursor);
    FScroll->ensureVisible(0, at.y(), 0, DragMargin);
}

void TLayersPanel::EndDrag(bool drop) {
    const int gap = std::exchange(FGap, -1);
    FDropMark->hide();
    if (!FPressedRow)
        return;
    FPressedRow->unsetCursor();
    lmx::TBaseMapLayer* layer = FPressedRow->GetLayer();
    FPressedRow = nullptr;
    if (drop && gap >= 0 && layer && FManager)
        MoveToGap(*FManager, layer, gap);
}

int TLayersPanel::GapAt(int y) const {
    return static_cast<int>(
        std::ranges::count_if(FRows, [=](const TLayerRow* row) { return row->geometry().center().y() < y; }));
}
