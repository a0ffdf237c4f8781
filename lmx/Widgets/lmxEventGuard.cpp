#include <lmx/Widgets/lmxEventGuard.h>

#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/lmxMsgBox.h>

#include <QAbstractButton>
#include <QCoreApplication>
#include <QMetaObject>
#include <QPointer>
#include <QWidget>

#include <utility>

namespace lmx {

void ReportFault(const QString& text, QWidget* parent) {
    QCoreApplication* application = QCoreApplication::instance();
    if (!application)
        return;
    const auto show = [text, guarded = QPointer<QWidget>(parent)] {
        TMsgBox::Error(text, QStringLiteral("Error"), guarded.data());
    };
    QMetaObject::invokeMethod(application, show, Qt::QueuedConnection);
}

bool GuardEvent(QWidget* parent, const std::function<void()>& action) noexcept {
    const QPointer<QWidget> guarded(parent); // the action may destroy it
    try {
        action();
        return true;
    } catch (const Exception& failure) {
        ReportFault(failure.Message(), guarded);
    } catch (const std::exception& failure) {
        ReportFault(QString::fromLocal8Bit(failure.what()), guarded);
    } catch (...) {
        ReportFault(QStringLiteral("Unknown exception"), guarded);
    }
    return false;
}

void GuardClick(QAbstractButton* button, std::function<void()> action) {
    QObject::connect(button, &QAbstractButton::clicked, button,
                     [button, action = std::move(action)] { GuardEvent(button, action); });
}

} // namespace lmx
