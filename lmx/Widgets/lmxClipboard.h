#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <memory>

namespace lmx {

/// Text that goes between programs.
class LMX_EXPORT IClipboardService {
public:
    virtual ~IClipboardService() = default;
    virtual QString GetAsText() const = 0; ///< "" if the clipboard holds no text
    virtual void SetAsText(const QString& text) = 0;
};

class LMX_EXPORT TClipboard {
public:
    static QString GetAsText();
    static void SetAsText(const QString& text);

    /// Replaces the service and gives the previous one back; nil stands for the clipboard of the desktop.
    static std::shared_ptr<IClipboardService> SetService(std::shared_ptr<IClipboardService> service);
};

} // namespace lmx
