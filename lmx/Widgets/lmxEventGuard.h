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

/// Calls `show` from the event loop, when the work at hand is done, unless it is then still showing the same text for
/// an earlier report: what fails again and again, as a paint may, is told once until the user has closed the box.
/// Without an application nothing is shown. Main thread only.
LMX_EXPORT void ReportOnce(const QString& text, const std::function<void()>& show);

/// Shows an error box by ReportOnce. The parent may be gone by then.
LMX_EXPORT void ReportFault(const QString& text, QWidget* parent);

/// Runs what an event asks for. No exception may cross into Qt, so what is raised ends here and is reported by
/// ReportFault. False if something was raised. Overrides of event methods that run code of layers, documents or hosts
/// wrap it in this.
LMX_EXPORT bool GuardEvent(QWidget* parent, const std::function<void()>& action) noexcept;

/// Runs `action` in GuardEvent at each click of a button.
LMX_EXPORT void GuardClick(QAbstractButton* button, std::function<void()> action);

} // namespace lmx
