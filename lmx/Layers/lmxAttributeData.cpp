#include <lmx/Layers/lmxAttributeData.h>

#include <lmx/Runtime/lmxNumberText.h>

#include <cstdint>

namespace lmx {

TAttributeData TAttributeData::Empty() {
    return {TAttributeDataType::adtString, QStringLiteral("Value")};
}

bool TAttributeData::CheckData(TAttributeDataType dataType, const QString& text) {
    float number = 0;
    std::int32_t integer = 0;
    switch (dataType) {
    case TAttributeDataType::adtString:
        return true;
    case TAttributeDataType::adtFloat:
        return TryStrToFloat(text, number);
    case TAttributeDataType::adtInteger:
        return TryStrToInt(text, integer);
    }
    return false;
}

} // namespace lmx
