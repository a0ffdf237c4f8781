#include <lmx/Widgets/lmxClipboard.h>

#include <lmx/Widgets/lmxServiceSlot.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace lmx {

namespace {

class TQtClipboardService final : public IClipboardService {
public:
    QString GetAsText() const override { return QGuiApplication::clipboard()->text(); }
    void SetAsText(const QString& text) override { QGuiApplication::clipboard()->setText(text); }
    std::optional<QByteArray> GetData(const QString& mimeType) const override {
        const QMimeData* data = QGuiApplication::clipboard()->mimeData();
        if (!data || !data->hasFormat(mimeType))
            return std::nullopt;
        return data->data(mimeType);
    }
    void SetData(const QString& mimeType, const QByteArray& data) override {
        auto* content = new QMimeData; // which the clipboard takes
        content->setData(mimeType, data);
        QGuiApplication::clipboard()->setMimeData(content);
    }
};

TServiceSlot<IClipboardService, TQtClipboardService>& Slot() {
    static TServiceSlot<IClipboardService, TQtClipboardService> slot;
    return slot;
}

} // namespace

std::optional<QByteArray> IClipboardService::GetData(const QString&) const {
    return std::nullopt;
}

void IClipboardService::SetData(const QString&, const QByteArray&) {}

QString TClipboard::GetAsText() {
    return Slot().Get()->GetAsText();
}

void TClipboard::SetAsText(const QString& text) {
    Slot().Get()->SetAsText(text);
}

std::optional<QByteArray> TClipboard::GetData(const QString& mimeType) {
    return Slot().Get()->GetData(mimeType);
}

void TClipboard::SetData(const QString& mimeType, const QByteArray& data) {
    Slot().Get()->SetData(mimeType, data);
}

std::shared_ptr<IClipboardService> TClipboard::SetService(std::shared_ptr<IClipboardService> service) {
    return Slot().Replace(std::move(service));
}

} // namespace lmx
