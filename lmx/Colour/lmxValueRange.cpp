#include <lmx/Colour/lmxValueRange.h>

#include <lmx/Runtime/lmxNumberText.h>

namespace lmx {

QString TValueRange::ToString() const {
    constexpr int Digits = 7; // what a 32-bit float tells apart: a bound of 0.1 reads "0.1"
    return FloatToGeneral(Low, Digits) + QStringLiteral(" - ") + FloatToGeneral(High, Digits);
}

} // namespace lmx
