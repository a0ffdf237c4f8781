#include "LayerRow.h"

#include <lmx/Controls/Legend/lmxShapeFileLayerLegendControl.h>
#include <lmx/Controls/lmxLayerToggleButtons.h>
#include <lmx/Layers/lmxBaseMapLayer.h>
#include <lmx/Widgets/lmxEventGuard.h>

#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QVBoxLayout>

#include <utility>
#include <vector>

#include "AttributesWindow.h"
#include "ElidedLabel.h"
#include "LayerDetails.h"
#include "LayerProperties.h"

namespace {

constexpr int MarkWidth = 3; // of the bar at the left of the selected row

/// The layer's own entries, such as its exports. What fails is shown in an error box.
void AddEntries(QMenu& menu, lmx::TBaseMapLayer& layer) {
    std::vector<lmx::TLayerMenuItem> items;
    layer.GetContextMenuItems(&items);
    for (const lmx::TLayerMenuItem& item : items) {
        QAction* entry = menu.addAction(item.FText);
        entry->setSeparator(item.FText == "-");
        entry->setEnabled(item.FEnabled);
        QObject::connect(entry, &QAction::triggered, &menu, [&menu, event = item.FEvent] {
            if (event)
                lmx::GuardEvent(menu.window(), event);
        });
    }
}

} // namespace

TLayerRow::TLayerRow(lmx::TBaseMapLayer* layer, const QList<QAction*>& commands, QWidget* parent)
    : QFrame(parent),
      FLayer(layer),
      FOpen(new lmx::TLayerOpenCloseToggleButton(this)),
      FVisible(new lmx::TLayerVisibilityToggleButton(this)),
      FMenuButton(new lmx::TShowMenuButton(this)),
      FName(new TElidedLabel(Qt::ElideMiddle, this)),
      FNameEditor(new QLineEdit(this)),
      FMenu(new QMenu(this)),
      FBody(new QWidget(this)),
      FDetails(new TLayerDetails(layer, FBody)),
      FLegendPlace(new QVBoxLayout) {
    setFocusPolicy(Qt::StrongFocus);
    addActions(commands);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(MarkWidth + 3, 3, 3, 3);
    column->setSpacing(2);
    MakeHeading();
    auto* body = new QVBoxLayout(FBody);
    body->setContentsMargins(22, 0, 4, 4);
    body->addWidget(FDetails);
    body->addLayout(FLegendPlace);
    column->addWidget(FBody);

    layer->GetOnLayerNameChanged().Add(this, &TLayerRow::Layer_NameChanged);
    layer->GetOnVisibilityChanged().Add(this, &TLayerRow::Layer_VisibilityChanged);
    layer->GetOnLegendComponentChanged().Add(this, &TLayerRow::Layer_LegendChanged);
    PlaceLegend();
    SetOpen(true);
    UpdateName();
    UpdateVisibility();
}

// A legend goes with its layer, which may go on without this row.
TLayerRow::~TLayerRow() {
    if (lmx::TBaseLegendControl* legend = FLayer ? FLayer->GetLegendComponent() : nullptr)
        if (legend->parentWidget() == FBody) {
            legend->hide();
            legend->setParent(nullptr);
        }
}

void TLayerRow::MakeHeading() {
    FName->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    FNameEditor->hide();
    FNameEditor->installEventFilter(this);
    FMenuButton->setCheckable(false);
    auto* heading = new QHBoxLayout;
    heading->setSpacing(2);
    heading->addWidget(FOpen);
    heading->addWidget(FVisible);
    heading->addWidget(FName, 1);
    heading->addWidget(FNameEditor, 1);
    heading->addWidget(FMenuButton);
    static_cast<QVBoxLayout*>(layout())->addLayout(heading);
    connect(FOpen, &QAbstractButton::toggled, FBody, &QWidget::setVisible);
    connect(FVisible, &QAbstractButton::clicked, this, [this] {
        if (FLayer)
            FLayer->SetIsVisible(FVisible->GetSelected());
    });
    connect(FMenuButton, &QAbstractButton::clicked, this,
            [this] { OpenMenu(FMenuButton->mapToGlobal(QPoint(0, FMenuButton->height()))); });
    connect(FNameEditor, &QLineEdit::returnPressed, this, [this] {
        EndRename(true);
        setFocus();
    });
}

QList<QWidget*> TLayerRow::TabChain() const {
    QList<QWidget*> chain = {const_cast<TLayerRow*>(this), FOpen, FVisible, FNameEditor, FMenuButton};
    for (QWidget* widget : FBody->findChildren<QWidget*>())
        if ((widget->focusPolicy() & Qt::TabFocus) && widget->window() == window()) // not the lists that drop down
            chain += widget;
    return chain;
}

void TLayerRow::SetSelected(bool selected) {
    if (selected == FIsSelected)
        return;
    FIsSelected = selected;
    update();
}

void TLayerRow::SetOpen(bool open) {
    const bool hasBody = FDetails->HasAny() || FLegendPlace->count() > 0;
    FOpen->setEnabled(hasBody);
    FOpen->SetSelected(open && hasBody);
    FBody->setVisible(FOpen->GetSelected());
}

void TLayerRow::StartRename() {
    if (!FLayer || !FLayer->GetLayerOptionFlags().Contains(lmx::TLayerOptionFlag::lofRename))
        return;
    FNameEditor->setText(FLayer->GetLayerName());
    FNameEditor->selectAll();
    FName->hide();
    FNameEditor->show();
    FNameEditor->setFocus();
}

void TLayerRow::EndRename(bool keep) {
    const QString name = FNameEditor->text().trimmed();
    FNameEditor->hide();
    FName->show();
    if (keep && FLayer && !name.isEmpty())
        FLayer->SetLayerName(name);
}

void TLayerRow::OpenMenu(const QPoint& at) {
    if (!FLayer)
        return;
    setFocus(); // which selects the layer, and so enables the commands
    FMenu->clear();
    AddEntries(*FMenu, *FLayer.Get());
    FMenu->addSeparator();
    FMenu->addActions(actions());
    FMenu->popup(at);
}

void TLayerRow::UpdateName() {
    const QString name = FLayer->GetLayerName();
    setAccessibleName(name);
    FName->setText(name);
    FOpen->setAccessibleName(tr("Details of %1").arg(name));
    FVisible->setAccessibleName(tr("Visibility of %1").arg(name));
    FMenuButton->setAccessibleName(tr("Commands of %1").arg(name));
    FNameEditor->setAccessibleName(tr("Name of %1").arg(name));
    FDetails->SetLayerName(name);
    FName->update();
}

void TLayerRow::UpdateVisibility() {
    FVisible->SetSelected(FLayer->GetIsVisible());
    FName->setEnabled(FLayer->GetIsVisible());
}

void TLayerRow::PlaceLegend() {
    lmx::TBaseLegendControl* legend = FLayer->GetLegendComponent();
    FDetails->SetHasLegend(legend != nullptr);
    if (!legend)
        return;
    legend->setMinimumHeight(legend->GetSuggestedHeight());
    FLegendPlace->addWidget(legend);
    legend->show();
    if (auto* shapes = dynamic_cast<lmx::TShapeFileLayerLegendControl*>(legend))
        FExplore = shapes->GetOnExploreShapeFile().Add(
            [this](lmx::TShapeFileLayerLegendControl*, const QString& table) { ShowAttributes(table, window()); });
}

void TLayerRow::Layer_NameChanged(lmx::TBaseMapLayer*) {
    UpdateName();
}

void TLayerRow::Layer_VisibilityChanged(lmx::TBaseMapLayer*) {
    UpdateVisibility();
}

void TLayerRow::Layer_LegendChanged(lmx::TBaseMapLayer*, lmx::TBaseLegendControl*) {
    PlaceLegend();
    SetOpen(FOpen->GetSelected() || !FOpen->isEnabled());
}

void TLayerRow::changeEvent(QEvent* event) {
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        update();
}

void TLayerRow::contextMenuEvent(QContextMenuEvent* event) {
    OpenMenu(event->reason() == QContextMenuEvent::Mouse ? event->globalPos()
                                                         : mapToGlobal(FName->geometry().center()));
}

bool TLayerRow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == FNameEditor && FNameEditor->isVisible()) {
        const bool hasPopup = event->type() == QEvent::FocusOut && static_cast<QFocusEvent*>(event)->reason() ==
                                                                       Qt::PopupFocusReason; // the editor's own menu
        if (event->type() == QEvent::FocusOut && !hasPopup)
            EndRename(true);
        if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
            EndRename(false);
            setFocus();
            return true;
        }
    }
    return QFrame::eventFilter(watched, event);
}

void TLayerRow::focusInEvent(QFocusEvent* event) {
    QFrame::focusInEvent(event);
    update();
}

void TLayerRow::focusOutEvent(QFocusEvent* event) {
    QFrame::focusOutEvent(event);
    update();
}

void TLayerRow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Right && FOpen->isEnabled())
        SetOpen(true);
    else if (event->key() == Qt::Key_Left)
        SetOpen(false);
    else
        QFrame::keyPressEvent(event);
}

void TLayerRow::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !FLayer ||
        !FLayer->GetLayerOptionFlags().Contains(lmx::TLayerOptionFlag::lofProperties))
        return;
    const bool isInBody = FBody->isVisible() && FBody->geometry().contains(event->position().toPoint());
    ShowLayerProperties(FLayer.Get(), isInBody ? QStringLiteral("Raster display") : QString(), window());
}

void TLayerRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QColor mark = palette().color(QPalette::Active, QPalette::Highlight);
    if (FIsSelected) {
        painter.fillRect(QRect(0, 0, MarkWidth, height()), mark);
        mark.setAlpha(40);
        painter.fillRect(rect().adjusted(MarkWidth, 0, 0, 0), mark);
    }
    if (hasFocus()) {
        mark.setAlpha(255);
        painter.setPen(mark);
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}
