#include <lmx/Widgets/lmxEventGuard.h>

#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/lmxMsgBox.h>

#include <QAbstractButton>
#include <QCoreApplication>
#include <QMetaObject>
#include <QPointer>
#include <QStringList>
#include <QWidget>

#include <utility>

namespace lmx {

namespace {

/// A fault that the user is reading of, for as long as it lives.
class TOpenFault {
public:
    explicit TOpenFault(const QString& text) { Texts().append(text); }
    TOpenFault(const TOpenFault&) = delete;
    TOpenFault& operator=(const TOpenFault&) = delete;
    ~TOpenFault() { Texts().removeLast(); } // boxes close in the reverse order of their opening

    static bool IsOpen(const QString& text) { return Texts().contains(text); }

private:
    static QStringList& Texts() {
        static QStringList texts;
        return texts;
    }
};

} // namespace

void ReportOnce(const QString& text, const std::function<void()>& show) {
    QCoreApplication* application = QCoreApplication::instance();
    if (!application)
        return;
    const auto showOnce = [text, show] {
        if (TOpenFault::IsOpen(text))
            return;
        const TOpenFault open(text);
        try {
            show();
        } catch (...) {
            // By contract: what the message service raises ends here, since there is no other way to tell of it.
        }
    };
    QMetaObject::invokeMethod(application, showOnce, Qt::QueuedConnection);
}

void ReportFault(const QString& text, QWidget* parent) {
    ReportOnce(text, [text, guarded = QPointer<QWidget>(parent)] {
        TMsgBox::Error(text, QStringLiteral("Error"), guarded.data());
    });
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
