#pragma once

namespace lmx {

/// Where lines of text stand in their box.
enum class TAlignment { taLeftJustify, taRightJustify, taCenter };

} // namespace lmx
