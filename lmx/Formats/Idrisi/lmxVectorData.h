#pragma once

#include <lmx/Formats/Idrisi/lmxGeoPoint.h>
#include <lmx/Formats/Idrisi/lmxVectorHeader.h>
#include <lmx/Formats/lmxVertexBlock.h>

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lmx {

/// The features of a vector file, in one piece of memory: the vertices in a row, where each feature begins, its id, and
/// the boxes of runs of vertices. Once it is read it does not change, so threads may share it.
///
/// The parts of a polygon follow one another in its feature, with the vertex (0, 0) between two of them: it means that
/// the pen is lifted, and never a place.
struct TVectorData {
    TVectorObjectType Type = TVectorObjectType::vtNone;
    std::vector<TGeoPoint> Vertices;
    std::vector<std::uint32_t> FeatureStarts; ///< index of each feature's first vertex
    std::vector<double> Ids;                  ///< one for each feature
    std::vector<TVertexBlock> Blocks;
    QByteArray TextBytes; ///< of a file of texts, all of it; its layout is nobody's knowledge

    std::span<const TGeoPoint> GetFeature(std::size_t index) const {
        const std::size_t first = FeatureStarts[index];
        const std::size_t end = index + 1 < FeatureStarts.size() ? FeatureStarts[index + 1] : Vertices.size();
        return std::span(Vertices).subspan(first, end - first);
    }
};

} // namespace lmx
