#include <lmx/Widgets/lmxClipboard.h>

#include <lmx/Widgets/lmxServiceSlot.h>

#include <QClipboard>
#include <QGuiApplication>

namespace lmx {

namespace {

class TQtClipboardService final : public IClipboardService {
public:
    QString GetAsText() const override { return QGuiApplication::clipboard()->text(); }
    void SetAsText(const QString& text) override { QGuiApplication::clipboard()->setText(text); }
};

TServiceSlot<IClipboardService, TQtClipboardService>& Slot() {
    static TServiceSlot<IClipboardService, TQtClipboardService> slot;
    return slot;
}

} // namespace

QString TClipboard::GetAsText() {
    return Slot().Get()->GetAsText();
}

void TClipboard::SetAsText(const QString& text) {
    Slot().Get()->SetAsText(text);
}

std::shared_ptr<IClipboardService> TClipboard::SetService(std::shared_ptr<IClipboardService> service) {
    return Slot().Replace(std::move(service));
}

} // namespace lmx
