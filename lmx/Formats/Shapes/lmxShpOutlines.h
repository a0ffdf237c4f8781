#pragma once

#include <lmx/Formats/Shapes/lmxShapeFileReader.h>
#include <lmx/Formats/Shapes/lmxShpPoint.h>
#include <lmx/Formats/lmxVertexBlock.h>
#include <lmx/Runtime/lmxExport.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lmx {

/// The lines of all shapes of one kind, in one piece of memory: the vertices in a row, where each part and each shape
/// begins, and the boxes of runs of vertices. 16 bytes a vertex, 4 a part, 4 a shape, and a little for the boxes.
/// Filled once, by the reader of a file; read by any number of threads.
class LMX_EXPORT TShpOutlines {
public:
    std::size_t GetShapeCount() const { return FShapeStarts.empty() ? 0 : FShapeStarts.size() - 1; }
    /// Number of parts of shape `shape`, 0 <= shape < GetShapeCount().
    std::size_t GetPartCount(std::size_t shape) const { return FShapeStarts[shape + 1] - FShapeStarts[shape]; }
    /// The vertices of a part, 0 <= part < GetPartCount(shape).
    TShapeFileReader::TShpPointArr GetPart(std::size_t shape, std::size_t part) const;

    std::span<const TShpPoint> GetVertices() const { return FVertices; } ///< of all parts, one part after the other
    /// Index of each part's first vertex; a part without vertices has that of the next one.
    std::span<const std::uint32_t> GetPartStarts() const { return FPartStarts; }
    std::span<const TVertexBlock> GetBlocks() const { return FBlocks; }

    std::size_t GetMemorySize() const; ///< bytes

private:
    friend class TShpDataLoader;

    std::vector<TShpPoint> FVertices;
    std::vector<std::uint32_t> FPartStarts;
    std::vector<std::uint32_t> FShapeStarts; ///< indexes of parts, one entry more than shapes; or none
    std::vector<TVertexBlock> FBlocks;
};

} // namespace lmx
