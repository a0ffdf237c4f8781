#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <exception>
#include <functional>

QT_BEGIN_NAMESPACE
class QAbstractButton;
class QWidget;
QT_END_NAMESPACE

namespace lmx {

/// Shows an error box from the event loop, when the work at hand is done. The parent may be gone by then. Without an
/// application nothing is shown.
LMX_EXPORT void ReportFault(const QString& text, QWidget* parent);

/// Runs what an event asks for. No exception may cross into Qt, so what is raised ends here and is reported by
/// ReportFault. False if something was raised. Overrides of event methods that run code of layers, documents or hosts
/// wrap it in this.
LMX_EXPORT bool GuardEvent(QWidget* parent, const std::function<void()>& action) noexcept;

/// Runs `action` in GuardEvent at each click of a button.
LMX_EXPORT void GuardClick(QAbstractButton* button, std::function<void()> action);

} // namespace lmx
