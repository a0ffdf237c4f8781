#pragma once

#include <lmx/Formats/Idrisi/lmxImageHeader.h>
#include <lmx/Formats/Idrisi/lmxVectorHeader.h>

#include <array>
#include <cstddef>

// The number of enumerators of each enumeration that a stored header holds: an ordinal beyond it is damage.

namespace lmx {

/// Names of the kinds of vectors in documentation files, by ordinal; a kind that is not known has none.
inline constexpr std::array<QStringView, 5> VectorObjectTypeNames = {u"", u"point", u"line", u"polygon", u"text"};

constexpr std::size_t CountOf(TImageDataType) {
    return DataTypeNames.size();
}
constexpr std::size_t CountOf(TImageFileType) {
    return FileTypeNames.size();
}
constexpr std::size_t CountOf(TVectorObjectType) {
    return VectorObjectTypeNames.size();
}

} // namespace lmx
