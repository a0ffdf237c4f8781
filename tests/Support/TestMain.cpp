// Runs the tests of one folder on the offscreen platform. A Qt warning that no test announced fails the test in which
// it appears. LMX_TEST_DECIMAL_SEPARATOR sets the decimal separator of the run; the default is a point, whatever the
// locale of the machine.

#include <lmx/Runtime/lmxFormatSettings.h>
#include <tests/Support/QtWarnings.h>

#include <QApplication>

#include <gtest/gtest.h>

#ifdef LMX_SANITIZED
// Tests ask for more memory than there is: malloc says so under a sanitizer, too, instead of ending the program.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}
extern "C" const char* __tsan_default_options();
extern "C" const char* __tsan_default_options() {
    return "allocator_may_return_null=1";
}
#endif

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const QString separator = qEnvironmentVariable("LMX_TEST_DECIMAL_SEPARATOR", QStringLiteral("."));
    lmx::TFormatSettings::SetCurrent({separator.front()});
    lmx::tests::FailOnQtWarnings();
    return RUN_ALL_TESTS();
}
