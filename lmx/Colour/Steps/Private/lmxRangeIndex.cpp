#include <lmx/Colour/Steps/Private/lmxRangeIndex.h>

#include <lmx/Runtime/Private/lmxBisection.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <queue>

namespace lmx {

namespace {

constexpr float Infinity = std::numeric_limits<float>::infinity();

/// Indices of the ranges that contain something, by their minimum.
std::vector<std::uint32_t> ByMinimum(std::span<const TSingleRange> ranges) {
    std::vector<std::uint32_t> indices;
    indices.reserve(ranges.size());
    for (std::size_t i = 0; i < ranges.size(); ++i)
        if (ranges[i].Min <= ranges[i].Max)
            indices.push_back(static_cast<std::uint32_t>(i));
    std::sort(indices.begin(), indices.end(),
              [&](std::uint32_t a, std::uint32_t b) { return ranges[a].Min < ranges[b].Min; });
    return indices;
}

/// Values at which ranges begin or have just ended. Ascending; the first is minus infinity.
std::vector<float> EdgesOf(std::span<const TSingleRange> ranges, const std::vector<std::uint32_t>& byMinimum) {
    std::vector<float> edges;
    edges.reserve(2 * byMinimum.size() + 1);
    edges.push_back(-Infinity);
    for (std::uint32_t index : byMinimum)
        edges.push_back(ranges[index].Min);
    const auto ends = static_cast<std::ptrdiff_t>(edges.size());
    for (std::uint32_t index : byMinimum)
        edges.push_back(std::nextafter(ranges[index].Max, Infinity));
    std::sort(edges.begin() + ends, edges.end());
    std::inplace_merge(edges.begin(), edges.begin() + ends, edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    return edges;
}

} // namespace

TRangeIndex::TRangeIndex(std::span<const TSingleRange> ranges) {
    const std::vector<std::uint32_t> byMinimum = ByMinimum(ranges);
    const std::vector<float> edges = EdgesOf(ranges, byMinimum);
    std::priority_queue<std::uint32_t, std::vector<std::uint32_t>, std::greater<>> begun; // some may have ended
    auto next = byMinimum.begin();
    for (float edge : edges) {
        for (; next != byMinimum.end() && ranges[*next].Min <= edge; ++next)
            begun.push(*next);
        while (!begun.empty() && ranges[begun.top()].Max < edge)
            begun.pop();
        const std::uint32_t owner = begun.empty() ? None : begun.top();
        if (!FOwners.empty() && FOwners.back() == owner)
            continue;
        FStarts.push_back(edge);
        FOwners.push_back(owner);
    }
}

std::uint32_t TRangeIndex::Find(float value) const {
    const std::size_t reached = CountReached<float>(FStarts, value);
    return reached > 0 ? FOwners[reached - 1] : None;
}

} // namespace lmx
