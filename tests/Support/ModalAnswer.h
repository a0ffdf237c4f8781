#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

#include <functional>
#include <utility>

namespace lmx::tests {

/// Answers the next modal dialog of the type `Dialog` once it has the keyboard, which a busy machine gives it late, and
/// closes whatever still blocks after ten seconds, which fails the test. Lives in the test around the call that opens
/// the dialog.
template<class Dialog>
class TModalAnswer {
public:
    explicit TModalAnswer(std::function<void(Dialog&)> answer) : FAnswer(std::move(answer)) {
        QObject::connect(&FTimer, &QTimer::timeout, &FTimer, [this] { Look(); });
        FElapsed.start();
        FTimer.start(10);
    }
    ~TModalAnswer() { EXPECT_TRUE(FAnswered) << "no dialog came up"; }

private:
    void Look() {
        QWidget* modal = QApplication::activeModalWidget();
        if (auto* dialog = dynamic_cast<Dialog*>(modal); dialog && dialog->isActiveWindow() && !FAnswered) {
            FAnswered = true;
            FAnswer(*dialog);
        } else if (modal && FElapsed.elapsed() > 10'000) {
            ADD_FAILURE() << "a dialog stayed open";
            modal->close();
        }
    }

    std::function<void(Dialog&)> FAnswer;
    bool FAnswered = false;
    QTimer FTimer;
    QElapsedTimer FElapsed;
};

} // namespace lmx::tests
