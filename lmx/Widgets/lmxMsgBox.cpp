#include <lmx/Widgets/lmxMsgBox.h>

#include <lmx/Widgets/lmxOwnedDialog.h>
#include <lmx/Widgets/lmxServiceSlot.h>

#include <QGuiApplication>
#include <QMessageBox>

namespace lmx {

namespace {

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
