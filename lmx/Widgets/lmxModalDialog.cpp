#include <lmx/Widgets/lmxModalDialog.h>

#include <lmx/Widgets/Private/lmxFormHeading.h>
#include <lmx/Widgets/lmxEventGuard.h>

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

namespace lmx {

namespace {

constexpr int Margin = 12;
constexpr int Spacing = 8;

bool IsEnter(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

bool TakesTabKey(const QWidget& widget) {
    return (widget.focusPolicy() & Qt::TabFocus) != 0 && widget.isEnabled() && !widget.isHidden();
}

/// The control of the tab key after `first` in the window's order; nil if there is none.
QWidget* NextControl(QWidget& first) {
    for (QWidget* next = first.nextInFocusChain(); next != &first; next = next->nextInFocusChain())
        if (TakesTabKey(*next))
            return next;
    return nullptr;
}

void SelectText(QWidget* control) {
    if (auto* edit = qobject_cast<QLineEdit*>(control))
        edit->selectAll();
    else if (auto* number = qobject_cast<QAbstractSpinBox*>(control))
        number->selectAll();
    else if (auto* choice = qobject_cast<QComboBox*>(control); choice && choice->isEditable())
        choice->lineEdit()->selectAll();
}

} // namespace

TModalDialog::TModalDialog(const QString& caption, const QString& heading, QWidget* parent)
    : QDialog(parent),
      FContent(new QVBoxLayout) {
    setWindowTitle(caption);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(new TFormHeading(heading, this));
    FContent->setContentsMargins(Margin, Margin, Margin, Margin);
    FContent->setSpacing(Spacing);
    column->addLayout(FContent);
}

TModalResult TModalDialog::ShowModal() {
    const auto result = static_cast<TModalResult>(exec()); // Qt's 0 if it is gone or was hidden
    return result == TModalResult::mrNone ? TModalResult::mrCancel : result;
}

// Push buttons ask for a new layout as they get their style, which Qt posts for after the first paint: the dialog would
// be laid out and painted twice.
void TModalDialog::setVisible(bool visible) {
    const QPointer self(this); // a widget of a host's may do anything when it is polished
    if (visible && !isVisible())
        QCoreApplication::sendPostedEvents(nullptr, QEvent::PolishRequest);
    if (self)
        QDialog::setVisible(visible);
}

// Push buttons and controls that have a use for the enter key have taken it before.
void TModalDialog::keyPressEvent(QKeyEvent* event) {
    if (!IsEnter(*event) || !event->isAutoRepeat())
        QDialog::keyPressEvent(event);
}

void TModalDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (event->spontaneous())
        return;
    QWidget* start = focusWidget() ? focusWidget() : NextControl(*this);
    if (!start)
        return;
    start->setFocus(Qt::TabFocusReason);
    SelectText(start);
}

QHBoxLayout* TModalDialog::AddButtons(const QString& okName, const QString& cancelName) {
    auto* actions = new QWidget(this);
    auto* ok = new QPushButton(QStringLiteral("&OK"), actions);
    ok->setObjectName(okName);
    ok->setDefault(true);
    auto* cancel = new QPushButton(QStringLiteral("&Cancel"), actions);
    cancel->setObjectName(cancelName);
    GuardClick(ok, [this] { OkClick(); });
    GuardClick(cancel, [this] { reject(); });

    auto* row = new QHBoxLayout(actions);
    row->setContentsMargins(Margin, 0, Margin, Margin);
    row->setSpacing(Spacing);
    row->addStretch();
    row->addWidget(ok);
    row->addWidget(cancel);
    layout()->addWidget(actions);
    return row;
}

} // namespace lmx
