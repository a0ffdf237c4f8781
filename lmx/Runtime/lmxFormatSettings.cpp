
#include <lmx/Runtime/lmxFormatSettings.h>

#include <QLocale>

namespace lmx {

namespace {

TFormatSettings SystemSettings() {
    const QString point = QLocale::system().decimalPoint();
    return {point.isEmpty() ? QChar(u'.') : point.front()};
}

TFormatSettings& CurrentSettings() {
    static TFormatSettings settings = SystemSettings();
    return settings;
}

} // namespace

const TFormatSettings& TFormatSettings::Current() {
    return CurrentSettings();
}

void TFormatSettings::SetCurrent(const TFormatSettings& settings) {
    CurrentSettings() = settings;
}

} // namespace lmx
