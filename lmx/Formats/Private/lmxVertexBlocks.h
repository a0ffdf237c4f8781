#pragma once

#include <lmx/Formats/lmxVertexBlock.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

namespace lmx {

inline float RoundDown(double value) {
    constexpr float Infinity = std::numeric_limits<float>::infinity();
    const auto nearest = static_cast<float>(value);
    return static_cast<double>(nearest) > value ? std::nextafter(nearest, -Infinity) : nearest;
}

inline float RoundUp(double value) {
    return -RoundDown(-value);
}

template<class Vertex>
TVertexBlock BoxOfVertices(std::span<const Vertex> vertices, std::size_t first, std::size_t end) {
    double xMin = vertices[first].X;
    double yMin = vertices[first].Y;
    double xMax = xMin;
    double yMax = yMin;
    for (std::size_t i = first + 1; i < end; ++i) {
        xMin = std::min<double>(xMin, vertices[i].X);
        yMin = std::min<double>(yMin, vertices[i].Y);
        xMax = std::max<double>(xMax, vertices[i].X);
        yMax = std::max<double>(yMax, vertices[i].Y);
    }
    return {static_cast<std::uint32_t>(first), RoundDown(xMin), RoundDown(yMin), RoundUp(xMax), RoundUp(yMax)};
}

/// The runs of an array of vertices whose parts begin at `partStarts`, in ascending order, and one entry more, without
/// a box, that holds the number of vertices. Without parts no vertex is joined to another one.
/// A vertex is any record of finite X and Y.
template<class Vertex>
std::vector<TVertexBlock> MakeVertexBlocks(std::span<const Vertex> vertices,
                                           std::span<const std::uint32_t> partStarts) {
    std::vector<TVertexBlock> blocks;
    blocks.reserve(vertices.size() / LongestVertexBlock + 2);
    auto part = partStarts.begin();
    for (std::size_t first = 0; first < vertices.size();) {
        const std::size_t longest = std::min<std::size_t>(first + LongestVertexBlock, vertices.size());
        const std::size_t shortest = std::min<std::size_t>(first + ShortestVertexBlock, vertices.size());
        part = std::lower_bound(part, partStarts.end(), shortest);
        const bool endsWithPart = part != partStarts.end() && *part <= longest;
        const std::size_t end = endsWithPart ? *part : longest;
        const bool isJoined = !partStarts.empty() && !endsWithPart && end < vertices.size();
        blocks.push_back(BoxOfVertices(vertices, first, end + (isJoined ? 1 : 0)));
        first = end;
    }
    blocks.push_back({static_cast<std::uint32_t>(vertices.size()), 0, 0, 0, 0});
    blocks.shrink_to_fit();
    return blocks;
}

/// The groups of what MakeVertexBlocks gives, and one entry more, without a box, that holds the number of runs.
inline std::vector<TVertexBlock> MakeBlockGroups(std::span<const TVertexBlock> blocks) {
    std::vector<TVertexBlock> groups;
    const std::size_t count = blocks.size() - 1;
    groups.reserve(count / BlocksOfGroup + 2);
    for (std::size_t i = 0; i < count; ++i) {
        const TVertexBlock& block = blocks[i];
        if (i % BlocksOfGroup == 0) {
            groups.push_back({static_cast<std::uint32_t>(i), block.XMin, block.YMin, block.XMax, block.YMax});
            continue;
        }
        TVertexBlock& group = groups.back();
        group.XMin = std::min(group.XMin, block.XMin);
        group.YMin = std::min(group.YMin, block.YMin);
        group.XMax = std::max(group.XMax, block.XMax);
        group.YMax = std::max(group.YMax, block.YMax);
    }
    groups.push_back({static_cast<std::uint32_t>(count), 0, 0, 0, 0});
    return groups;
}

} // namespace lmx
