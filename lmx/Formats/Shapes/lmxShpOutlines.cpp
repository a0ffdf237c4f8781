
#include <lmx/Formats/Shapes/lmxShpOutlines.h>

namespace lmx {

TShapeFileReader::TShpPointArr TShpOutlines::GetPart(std::size_t shape, std::size_t part) const {
    const std::size_t index = FShapeStarts[shape] + part;
    const std::size_t first = FPartStarts[index];
    const std::size_t end = index + 1 < FPartStarts.size() ? FPartStarts[index + 1] : FVertices.size();
    return std::span(FVertices).subspan(first, end - first);
}

std::size_t TShpOutlines::GetMemorySize() const {
    return FVertices.capacity() * sizeof(TShpPoint) +
           (FPartStarts.capacity() + FShapeStarts.capacity()) * sizeof(std::uint32_t) +
           FBlocks.capacity() * sizeof(TVertexBlock);
}

} // namespace lmx
