#pragma once

#include <cstdint>

namespace lmx {

/// A run of neighbouring vertices and the box of all lines that begin at them. A run ends where a part does, so that
/// parts keep to themselves, unless they are very short; long parts are cut into several runs. The run reaches to the
/// first vertex of the next one. Edges are rounded outwards.
struct TVertexBlock {
    std::uint32_t First = 0; ///< index of the first vertex
    float XMin = 0;
    float YMin = 0;
    float XMax = 0;
    float YMax = 0;
};

/// Neighbouring runs are grouped: a group is a TVertexBlock, too, whose First is the index of its first run and whose
/// box holds those of its runs.
inline constexpr std::uint32_t BlocksOfGroup = 32;

/// The longest and, apart from the last one, the shortest run.
inline constexpr std::uint32_t LongestVertexBlock = 64;
inline constexpr std::uint32_t ShortestVertexBlock = 16;

} // namespace lmx
