#include <tests/Support/QtWarnings.h>

#include <QStringList>
#include <QtGlobal>

#include <gtest/gtest.h>

#include <iostream>

namespace lmx::tests {

namespace {

QStringList& ExpectedTexts() {
    static QStringList texts = {
        QStringLiteral("This plugin does not support"), // offscreen: size hints, raise, grabs
        QStringLiteral("QStandardPaths: "),
    };
    return texts;
}

void HandleMessage(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtDebugMsg || type == QtInfoMsg) {
        std::cerr << message.toStdString() << '\n';
        return;
    }
    for (const QString& expected : ExpectedTexts())
        if (message.contains(expected))
            return;
    ADD_FAILURE() << "unexpected Qt message: " << message.toStdString();
}

} // namespace

void FailOnQtWarnings() {
    qInstallMessageHandler(HandleMessage);
}

TExpectedQtWarning::TExpectedQtWarning(const QString& text) {
    ExpectedTexts().append(text);
}

TExpectedQtWarning::~TExpectedQtWarning() {
    ExpectedTexts().removeLast();
}

} // namespace lmx::tests
