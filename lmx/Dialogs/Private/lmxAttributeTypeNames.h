#pragma once

#include <QStringView>

#include <array>

namespace lmx {

/// What the types of attributes are called, by ordinal of TAttributeDataType.
inline constexpr std::array<QStringView, 3> AttributeTypeNames = {u"String", u"Float", u"Integer"};

} // namespace lmx
