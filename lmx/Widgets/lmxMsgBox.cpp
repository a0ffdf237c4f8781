#include <lmx/Widgets/lmxMsgBox.h>

#include <lmx/Widgets/lmxOwnedDialog.h>
#include <lmx/Widgets/lmxServiceSlot.h>

#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QMessageBox>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

#include <algorithm>

namespace lmx {

namespace {

/// A text that would leave no room on the screen for the buttons is scrolled in the place of the box's own label, which
/// keeps it for Qt's copying and for screen readers.
void ScrollLongText(QMessageBox& box) {
    auto* const label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    auto* const grid = qobject_cast<QGridLayout*>(box.layout());
    const QScreen* const screen = box.screen();
    if (!label || !grid || grid->indexOf(label) < 0 || !screen)
        return;
    const QSize room = screen->availableSize() / 2;
    const QSize text =
        box.fontMetrics().boundingRect(QRect(QPoint(), room), Qt::TextWordWrap, box.text()).size() + QSize(8, 8);
    if (text.height() <= room.height())
        return;
    auto* const whole = new QLabel(box.text());
    whole->setObjectName(QStringLiteral("WholeText"));
    whole->setTextFormat(Qt::PlainText);
    whole->setTextInteractionFlags(Qt::TextSelectableByMouse);
    whole->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    whole->setWordWrap(true);
    auto* const area = new QScrollArea(&box);
    area->setAccessibleName(box.windowTitle());
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setWidget(whole);
    area->setMinimumSize(std::min(text.width(), room.width()) + area->verticalScrollBar()->sizeHint().width(),
                         room.height());
    int row = 0;
    int column = 0;
    int rows = 0;
    int columns = 0;
    grid->getItemPosition(grid->indexOf(label), &row, &column, &rows, &columns);
    label->hide();
    grid->addWidget(area, row, column, rows, columns);
}

class TQtMsgBoxService final : public IMsgBoxService {
public:
    void Error(const QString& text, const QString& title, QWidget* parent) override {
        Show(QMessageBox::Critical, text, title, QMessageBox::Ok, parent);
    }
    void Info(const QString& text, const QString& title, QWidget* parent) override {
        Show(QMessageBox::Information, text, title, QMessageBox::Ok, parent);
    }
    bool YesNo(const QString& text, const QString& title, QWidget* parent) override {
        return Show(QMessageBox::Question, text, title, QMessageBox::Yes | QMessageBox::No, parent) == QMessageBox::Yes;
    }
    void ShowMessage(const QString& text) override {
        Show(QMessageBox::NoIcon, text, QGuiApplication::applicationDisplayName(), QMessageBox::Ok, nullptr);
    }

private:
    static int Show(QMessageBox::Icon icon, const QString& text, const QString& title,
                    QMessageBox::StandardButtons buttons, QWidget* parent) {
        TOwnedDialog<QMessageBox> box(parent);
        box->setIcon(icon);
        box->setWindowTitle(title);
        box->setTextFormat(Qt::PlainText);
        box->setText(text);
        box->setStandardButtons(buttons);
        if (buttons.testFlag(QMessageBox::No))
            box->setEscapeButton(QMessageBox::No);
        ScrollLongText(*box.Get());
        return box.Execute();
    }
};

TServiceSlot<IMsgBoxService, TQtMsgBoxService>& Slot() {
    static TServiceSlot<IMsgBoxService, TQtMsgBoxService> slot;
    return slot;
}

} // namespace

void TMsgBox::Error(const QString& text, const QString& title, QWidget* parent) {
    Slot().Get()->Error(text, title, parent);
}

void TMsgBox::Info(const QString& text, const QString& title, QWidget* parent) {
    Slot().Get()->Info(text, title, parent);
}

bool TMsgBox::YesNo(const QString& text, const QString& title, QWidget* parent) {
    return Slot().Get()->YesNo(text, title, parent);
}

std::shared_ptr<IMsgBoxService> TMsgBox::SetService(std::shared_ptr<IMsgBoxService> service) {
    return Slot().Replace(std::move(service));
}

void ShowMessage(const QString& text) {
    Slot().Get()->ShowMessage(text);
}

} // namespace lmx
