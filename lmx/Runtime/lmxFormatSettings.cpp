#include <lmx/Runtime/lmxFormatSettings.h>

#include <QLocale>

#include <atomic>

namespace lmx {

namespace {

char16_t SystemSeparator() {
    const QString point = QLocale::system().decimalPoint();
    return point.isEmpty() ? u'.' : point.front().unicode();
}

std::atomic<char16_t>& CurrentSeparator() {
    static std::atomic<char16_t> separator = SystemSeparator();
    return separator;
}

} // namespace

TFormatSettings TFormatSettings::Current() {
    return {CurrentSeparator().load(std::memory_order_relaxed)};
}

void TFormatSettings::SetCurrent(const TFormatSettings& settings) {
    CurrentSeparator().store(settings.DecimalSeparator.unicode(), std::memory_order_relaxed);
}

} // namespace lmx
