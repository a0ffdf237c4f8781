#pragma once

#include <lmx/Formats/Idrisi/lmxGeoPoint.h>
#include <lmx/Formats/Idrisi/lmxVectorHeader.h>
#include <lmx/Formats/lmxVertexBlocks.h>

#include <QByteArray>
#include <QString>

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

/// Reads the bytes of a vector file of the newer generation (.vct): binary, of any object type.
/// @throws EFileFormatException with `fileName` if it is cut short, its counts contradict its length or each other, or
/// a coordinate is no finite number of single precision.
TVectorData ParseVectorBytes(const QByteArray& bytes, const QString& fileName);

/// The bytes of such a file. They read back as exactly the same data.
QByteArray FormatVectorBytes(const TVectorData& data);

/// Reads the bytes of a vector file of the older generation (.vec): numbers as text, or in binary. `type` is what the
/// documentation says. Texts are points, whose labels stand elsewhere; where it does not say, the features tell.
/// Files in binary were written in several layouts: the first one counts that uses up the file.
/// @throws EFileFormatException with `fileName` as above, or if no layout fits.
TVectorData ParseOldVectorBytes(const QByteArray& bytes, TVectorObjectType type, const QString& fileName);

} // namespace lmx
