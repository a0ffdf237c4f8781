#include <lmx/DataSources/Private/lmxKeptBlock.h>

#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <numeric>
#include <span>

namespace lmx {

namespace {

std::size_t ProductOf(std::span<const std::size_t> counts) {
    return std::accumulate(counts.begin(), counts.end(), std::size_t{1}, std::multiplies<>());
}

/// One of `count` steps that stand within `outer` places, each with `inner` cells.
TRawSlice StepOf(const TRawSlice& block, const TSourceArray& array, std::size_t outer, std::size_t count,
                 std::size_t inner, std::size_t step) {
    if (outer == 1)
        return block.Part(step * inner, inner);
    TRawSlice slice(array.Type, outer * inner);
    const std::size_t bytes = inner * array.CellSize();
    auto* const to = static_cast<std::byte*>(slice.GetBytes());
    for (std::size_t place = 0; place < outer; ++place)
        std::memcpy(to + place * bytes, block.GetBytes() + (place * count + step) * bytes, bytes);
    return slice;
}

} // namespace

quint64 TKeptBlock::StepsTogether(const TSourceArray& array, std::size_t dimension) {
    const bool isInBlocks = array.BlockSize.size() == array.Dimensions.size() && array.BlockSize[dimension] > 1;
    return isInBlocks ? std::min(array.BlockSize[dimension], std::max<quint64>(array.Dimensions[dimension].Size, 1))
                      : 1;
}

// Parts begin at the same steps whichever of them is asked for, so that reading backwards finds them, too.
TSourceWindow TKeptBlock::PartOf(const TSourceArray& array, TSourceWindow window, std::size_t dimension) const {
    const quint64 length = StepsTogether(array, dimension);
    const quint64 fitting = FMostBytes / array.CellSize() / std::max<std::size_t>(ProductOf(window.Counts), 1);
    const quint64 part = std::clamp<quint64>(fitting, 1, length);
    const quint64 step = window.Starts[dimension];
    const quint64 blockStart = step - step % length;
    const quint64 blockEnd = std::min(blockStart + length, array.Dimensions[dimension].Size);
    const quint64 start = step - (step - blockStart) % part;
    window.Starts[dimension] = start;
    window.Counts[dimension] = std::size_t(std::min(part, blockEnd - start));
    return window;
}

TRawSlice TKeptBlock::Read(IClimateSource& source, std::size_t array, const TSourceWindow& window,
                           std::size_t dimension) {
    const std::lock_guard lock(FMutex);
    const TSourceArray& info = source.GetArrays().at(array);
    const TSourceWindow wanted = PartOf(info, window, dimension);
    const std::size_t steps = wanted.Counts[dimension];
    if (FCells.GetCount() == 0 || array != FArray || !(wanted == FWindow)) {
        FCells = TRawSlice(); // its memory first
        if (steps == 1)
            return source.Read(array, window);
        try {
            FCells = source.Read(array, wanted);
        } catch (const EOutOfMemory&) {
            return source.Read(array, window);
        }
        FArray = array;
        FWindow = wanted;
        FCellSize = info.CellSize();
    }
    const std::span<const std::size_t> counts = window.Counts;
    return StepOf(FCells, info, ProductOf(counts.first(dimension)), steps, ProductOf(counts.subspan(dimension + 1)),
                  std::size_t(window.Starts[dimension] - wanted.Starts[dimension]));
}

quint64 TKeptBlock::GetKeptBytes() const {
    const std::lock_guard lock(FMutex);
    return quint64(FCells.GetCount()) * FCellSize;
}

} // namespace lmx
