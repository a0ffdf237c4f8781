#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QChar>

namespace lmx {

/// How numbers are written in files and on screen, and read back. One current setting serves the whole process; it
/// begins with the decimal separator of the user's locale. Set on the main thread.
struct LMX_EXPORT TFormatSettings {
    QChar DecimalSeparator = u'.';

    /// The settings of this moment. What takes settings takes these by default, once, when it is called. Any thread;
    /// a worker whose result must not change with them is given a copy.
    static TFormatSettings Current();
    static void SetCurrent(const TFormatSettings& settings);
    /// The settings of texts that must read the same everywhere: a decimal point.
    static TFormatSettings Invariant() { return {}; }
};

/// Replaces the current settings until the end of a scope.
class LMX_EXPORT TFormatSettingsScope {
public:
    explicit TFormatSettingsScope(const TFormatSettings& settings) : FSaved(TFormatSettings::Current()) {
        TFormatSettings::SetCurrent(settings);
    }
    ~TFormatSettingsScope() { TFormatSettings::SetCurrent(FSaved); }
    TFormatSettingsScope(const TFormatSettingsScope&) = delete;
    TFormatSettingsScope& operator=(const TFormatSettingsScope&) = delete;

private:
    TFormatSettings FSaved;
};

} // namespace lmx
