#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <memory>

namespace lmx {

/// Asks the user for one line of text.
class LMX_EXPORT IInputBoxService {
public:
    virtual ~IInputBoxService() = default;

    /// The text that the user confirmed, or `defaultText` if the box was cancelled.
    virtual QString InputBox(const QString& title, const QString& prompt, const QString& defaultText) = 0;
};

class LMX_EXPORT TInputBox {
public:
    /// Replaces the service and gives the previous one back; nil stands for Qt's box.
    static std::shared_ptr<IInputBoxService> SetService(std::shared_ptr<IInputBoxService> service);
};

/// Asks for one line of text, beginning with `defaultText`, which is also the answer of a cancelled box.
LMX_EXPORT QString InputBox(const QString& title, const QString& prompt, const QString& defaultText);

} // namespace lmx
