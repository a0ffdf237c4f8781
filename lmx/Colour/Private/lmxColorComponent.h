#pragma once

#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QString>

#include <cstdint>

namespace lmx {

/// A component of a colour from its text.
/// @throws EConvertError for what is no integer, and "'...' is not a valid color component" beyond 0 to 255.
inline std::uint8_t StringToColorComponent(const QString& text) {
    const std::int32_t component = StrToInt(text);
    if (component < 0 || component > 255)
        throw EConvertError(u'\'' + text + QStringLiteral("' is not a valid color component"));
    return static_cast<std::uint8_t>(component);
}

} // namespace lmx
