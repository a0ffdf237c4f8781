#include <lmx/DataSources/Private/lmxClimateSource.h>

#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>
#include <limits>
#include <new>

namespace lmx {

namespace {

template<class Cell>
std::span<const Cell> CellsOf(const std::byte* bytes, std::size_t count) {
    return {reinterpret_cast<const Cell*>(bytes), count};
}

} // namespace

quint64 TSourceArray::CellCount() const {
    quint64 cells = 1;
    for (const TSourceDimension& dimension : Dimensions) {
        if (dimension.Size == 0)
            return 0;
        if (cells > std::numeric_limits<quint64>::max() / dimension.Size)
            return std::numeric_limits<quint64>::max();
        cells *= dimension.Size;
    }
    return cells;
}

std::size_t TSourceArray::CellSize() const {
    return CellSizeOf(Type);
}

bool TSourceArray::HasHugeBlocks() const {
    quint64 bytes = CellSize();
    for (const quint64 length : BlockSize) {
        if (length > MostBlockBytes || bytes * std::max<quint64>(length, 1) > MostBlockBytes)
            return true;
        bytes *= std::max<quint64>(length, 1);
    }
    return false;
}

std::size_t CellSizeOf(TClimateCellType type) {
    switch (type) {
    case TClimateCellType::ctInt8:
    case TClimateCellType::ctUInt8:
        return 1;
    case TClimateCellType::ctInt16:
    case TClimateCellType::ctUInt16:
        return 2;
    case TClimateCellType::ctInt32:
    case TClimateCellType::ctUInt32:
    case TClimateCellType::ctFloat:
        return 4;
    case TClimateCellType::ctInt64:
    case TClimateCellType::ctUInt64:
    case TClimateCellType::ctDouble:
        break;
    }
    return 8;
}

QString HugeBlocksText() {
    return QStringLiteral("is stored in blocks of more than 256 MB, which are not unpacked. Store it in smaller ones "
                          "first, for example: nccopy -c time/1 in out");
}

TRawSlice::TRawSlice(TClimateCellType type, std::size_t count) : FCount(count), FType(type) {
    if (count > std::numeric_limits<std::size_t>::max() / 16)
        throw EOutOfMemory();
    FBytes.reset(new (std::nothrow) std::byte[count * CellSizeOf(type)]);
    if (!FBytes)
        throw EOutOfMemory();
}

TRawSlice IClimateSource::ReadMask(std::size_t, const TSourceWindow&) {
    return {};
}

TRawSlice TRawSlice::Part(std::size_t first, std::size_t count) const {
    TRawSlice part;
    part.FBytes = std::shared_ptr<std::byte[]>(FBytes, FBytes.get() + first * CellSizeOf(FType));
    part.FCount = count;
    part.FType = FType;
    return part;
}

TRawClimateCells TRawSlice::GetCells() const {
    const std::byte* const bytes = FBytes.get();
    switch (FType) {
    case TClimateCellType::ctInt8:
        return CellsOf<std::int8_t>(bytes, FCount);
    case TClimateCellType::ctUInt8:
        return CellsOf<std::uint8_t>(bytes, FCount);
    case TClimateCellType::ctInt16:
        return CellsOf<std::int16_t>(bytes, FCount);
    case TClimateCellType::ctUInt16:
        return CellsOf<std::uint16_t>(bytes, FCount);
    case TClimateCellType::ctInt32:
        return CellsOf<std::int32_t>(bytes, FCount);
    case TClimateCellType::ctUInt32:
        return CellsOf<std::uint32_t>(bytes, FCount);
    case TClimateCellType::ctInt64:
        return CellsOf<std::int64_t>(bytes, FCount);
    case TClimateCellType::ctUInt64:
        return CellsOf<std::uint64_t>(bytes, FCount);
    case TClimateCellType::ctFloat:
        return CellsOf<float>(bytes, FCount);
    case TClimateCellType::ctDouble:
        break;
    }
    return CellsOf<double>(bytes, FCount);
}

} // namespace lmx
