#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

namespace lmx::tests {

struct TProgramOutcome {
    int ExitCode = -1; ///< -1 if it crashed or did not end
    QString Output;
    QString Errors;
};

/// Runs lmx-picture as a script does, without a display and a platform.
inline TProgramOutcome RunPictureProgram(const QStringList& arguments) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("QT_QPA_PLATFORM")); // it finds one itself
    environment.remove(QStringLiteral("DISPLAY"));
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(LMX_PICTURE_PROGRAM), arguments);
    TProgramOutcome outcome;
    if (!process.waitForFinished(120'000))
        return outcome;
    outcome.ExitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    outcome.Output = QString::fromUtf8(process.readAllStandardOutput());
    outcome.Errors = QString::fromUtf8(process.readAllStandardError());
    return outcome;
}

/// What it says of wrong arguments, without its last line.
inline QStringList ComplaintsOf(const QStringList& arguments) {
    const TProgramOutcome outcome = RunPictureProgram(arguments);
    EXPECT_EQ(outcome.ExitCode, 2);
    EXPECT_EQ(outcome.Output, "");
    QStringList lines = outcome.Errors.split(u'\n', Qt::SkipEmptyParts);
    EXPECT_EQ(lines.isEmpty() ? QString() : lines.takeLast(), "lmx-picture --help tells how to call it");
    return lines;
}

} // namespace lmx::tests
