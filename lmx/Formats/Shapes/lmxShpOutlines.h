#pragma once

#include <lmx/Formats/Shapes/lmxRecordNumbers.h>
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
/// Shapes and their parts are counted in the order of the file. Their vertices may lie in another one: small parts that
/// come from all over the map are kept by place, 4 bytes more a part, so that a run of vertices is in one spot.
/// Filled once, by the reader of a file; read by any number of threads.
class LMX_EXPORT TShpOutlines {
public:
    std::size_t GetShapeCount() const { return FShapeStarts.empty() ? 0 : FShapeStarts.size() - 1; }
    /// Number of parts of shape `shape`, 0 <= shape < GetShapeCount().
    std::size_t GetPartCount(std::size_t shape) const { return FShapeStarts[shape + 1] - FShapeStarts[shape]; }
    /// The vertices of a part.
    /// @throws EArgumentException "Part index is out of range" unless part < GetPartCount(shape).
    TShpPointArr GetPart(std::size_t shape, std::size_t part) const;
    /// The record that a shape comes from, counted from 0 in the order of the file.
    std::uint32_t GetRecord(std::size_t shape) const { return FRecords.GetRecord(shape); }

    // For who draws them all, in whatever order.
    std::span<const TShpPoint> GetVertices() const { return FVertices; } ///< of all parts, one part after the other
    /// Index of each part's first vertex, ascending; a part without vertices has that of the next one.
    std::span<const std::uint32_t> GetPartStarts() const { return FPartStarts; }
    std::span<const TVertexBlock> GetBlocks() const { return FBlocks; }
    std::span<const TVertexBlock> GetBlockGroups() const { return FBlockGroups; }

    std::size_t GetMemorySize() const; ///< bytes

private:
    friend class TShpDataLoader;

    std::vector<TShpPoint> FVertices;
    std::vector<std::uint32_t> FPartStarts;
    std::vector<std::uint32_t> FPartPlaces;  ///< index among FPartStarts of each part of the file; none if the same
    std::vector<std::uint32_t> FShapeStarts; ///< indexes of parts, one entry more than shapes; or none
    TRecordNumbers FRecords;
    std::vector<TVertexBlock> FBlocks;
    std::vector<TVertexBlock> FBlockGroups;
};

} // namespace lmx
