#include <lmx/Formats/Shapes/lmxShpOutlines.h>

#include <lmx/Runtime/lmxExceptions.h>

namespace lmx {

TShpPointArr TShpOutlines::GetPart(std::size_t shape, std::size_t part) const {
    if (part >= GetPartCount(shape))
        throw EArgumentException(QStringLiteral("Part index is out of range"));
    const std::size_t index = FShapeStarts[shape] + part;
    const std::size_t place = FPartPlaces.empty() ? index : FPartPlaces[index];
    const std::size_t first = FPartStarts[place];
    const std::size_t end = place + 1 < FPartStarts.size() ? FPartStarts[place + 1] : FVertices.size();
    return std::span(FVertices).subspan(first, end - first);
}

std::size_t TShpOutlines::GetMemorySize() const {
    return FVertices.capacity() * sizeof(TShpPoint) +
           (FPartStarts.capacity() + FPartPlaces.capacity() + FShapeStarts.capacity()) * sizeof(std::uint32_t) +
           FRecords.GetMemorySize() + (FBlocks.capacity() + FBlockGroups.capacity()) * sizeof(TVertexBlock);
}

} // namespace lmx
