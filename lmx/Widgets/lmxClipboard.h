#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

namespace lmx {

/// Text that goes between programs, and what else a program puts there for itself.
class LMX_EXPORT IClipboardService {
public:
    virtual ~IClipboardService() = default;
    virtual QString GetAsText() const = 0; ///< "" if the clipboard holds no text
    virtual void SetAsText(const QString& text) = 0;

    /// What the clipboard holds of a MIME type, or nothing. A service of texts alone has no need of these two.
    virtual std::optional<QByteArray> GetData(const QString& mimeType) const;
    virtual void SetData(const QString& mimeType, const QByteArray& data); ///< in the place of all that there was
};

class LMX_EXPORT TClipboard {
public:
    static QString GetAsText();
    static void SetAsText(const QString& text);
    static std::optional<QByteArray> GetData(const QString& mimeType);
    static void SetData(const QString& mimeType, const QByteArray& data);

    /// Replaces the service and gives the previous one back; nil stands for the clipboard of the desktop.
    static std::shared_ptr<IClipboardService> SetService(std::shared_ptr<IClipboardService> service);
};

} // namespace lmx
