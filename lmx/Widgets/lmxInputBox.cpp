#include <lmx/Widgets/lmxInputBox.h>

#include <lmx/Widgets/lmxOwnedDialog.h>
#include <lmx/Widgets/lmxServiceSlot.h>

#include <QInputDialog>

namespace lmx {

namespace {

class TQtInputBoxService final : public IInputBoxService {
public:
    QString InputBox(const QString& title, const QString& prompt, const QString& defaultText) override {
        TOwnedDialog<QInputDialog> dialog(nullptr);
        dialog->setWindowTitle(title);
        dialog->setLabelText(prompt);
        dialog->setTextValue(defaultText);
        return dialog.Execute() == QDialog::Accepted ? dialog->textValue() : defaultText;
    }
};

TServiceSlot<IInputBoxService, TQtInputBoxService>& Slot() {
    static TServiceSlot<IInputBoxService, TQtInputBoxService> slot;
    return slot;
}

} // namespace

std::shared_ptr<IInputBoxService> TInputBox::SetService(std::shared_ptr<IInputBoxService> service) {
    return Slot().Replace(std::move(service));
}

QString InputBox(const QString& title, const QString& prompt, const QString& defaultText) {
    return Slot().Get()->InputBox(title, prompt, defaultText);
}

} // namespace lmx
