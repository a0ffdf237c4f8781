#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <map>
#include <utility>

namespace lmx {

enum class TAttributeDataType { adtString, adtFloat, adtInteger };

/// A free attribute of a layer: a text and how it is meant.
struct LMX_EXPORT TAttributeData {
    QString Value;
    TAttributeDataType DataType = TAttributeDataType::adtString;

    TAttributeData() = default;
    TAttributeData(TAttributeDataType dataType, QString value) : Value(std::move(value)), DataType(dataType) {}

    /// What a new attribute begins with: the text "Value".
    static TAttributeData Empty();
    /// Whether `text` is a value of the type: any text, a 32-bit float or a 32-bit integer.
    static bool CheckData(TAttributeDataType dataType, const QString& text);

    friend bool operator==(const TAttributeData&, const TAttributeData&) = default;
};
using TAttributes = std::map<QString, TAttributeData>;

} // namespace lmx
