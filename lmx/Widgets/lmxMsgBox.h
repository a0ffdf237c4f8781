#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <memory>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace lmx {

/// Shows messages and waits until the user has closed them. Texts are shown as they are, markup included.
class LMX_EXPORT IMsgBoxService {
public:
    virtual ~IMsgBoxService() = default;

    virtual void Error(const QString& text, const QString& title, QWidget* parent) = 0;
    virtual void Info(const QString& text, const QString& title, QWidget* parent) = 0;
    /// True for Yes; No, Escape and the close button are false.
    virtual bool YesNo(const QString& text, const QString& title, QWidget* parent) = 0;
    /// A message under the application's name.
    virtual void ShowMessage(const QString& text) = 0;
};

/// Modal messages. Never called in the middle of a paint: what fails there is posted (lmxEventGuard.h).
class LMX_EXPORT TMsgBox {
public:
    static void Error(const QString& text, const QString& title, QWidget* parent = nullptr);
    static void Info(const QString& text, const QString& title, QWidget* parent = nullptr);
    static bool YesNo(const QString& text, const QString& title, QWidget* parent = nullptr);

    /// Replaces the service and gives the previous one back; nil stands for Qt's boxes.
    static std::shared_ptr<IMsgBoxService> SetService(std::shared_ptr<IMsgBoxService> service);
};

/// Shows a message under the application's name.
LMX_EXPORT void ShowMessage(const QString& text);

} // namespace lmx
