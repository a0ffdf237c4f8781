#include <lmx/Raster/lmxSingleGrid.h>

#include <lmx/Runtime/Private/lmxMemory.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>
#include <array>
#include <limits>

namespace lmx {

namespace {

/// Lowest and highest of the numbers met. Lane by lane, so that a row is compared many numbers at a time.
class TRangeLanes {
public:
    explicit TRangeLanes(float flag) : FFlag(flag) {
        FLow.fill(Infinity);
        FHigh.fill(-Infinity);
    }

    void Add(const TSingleArray& row) {
        std::size_t i = 0;
        for (; i + Count <= row.size(); i += Count)
            for (std::size_t lane = 0; lane < Count; ++lane)
                AddTo(lane, row[i + lane]);
        for (; i < row.size(); ++i)
            AddTo(0, row[i]);
    }

    float Low() const { return *std::min_element(FLow.begin(), FLow.end()); }
    float High() const { return *std::max_element(FHigh.begin(), FHigh.end()); }

private:
    static constexpr std::size_t Count = 16;
    static constexpr float Infinity = std::numeric_limits<float>::infinity();
    static constexpr float NaN = std::numeric_limits<float>::quiet_NaN();

    // A NaN is neither below nor above anything.
    void AddTo(std::size_t lane, float number) {
        const float counted = number == FFlag ? NaN : number;
        FLow[lane] = counted < FLow[lane] ? counted : FLow[lane];
        FHigh[lane] = counted > FHigh[lane] ? counted : FHigh[lane];
    }

    float FFlag;
    std::array<float, Count> FLow;
    std::array<float, Count> FHigh;
};

} // namespace

bool HasShape(const TSingleGrid& grid, std::size_t cols, std::size_t rows) {
    return grid.size() == rows &&
           std::all_of(grid.begin(), grid.end(), [cols](const TSingleArray& row) { return row.size() == cols; });
}

TSingleGrid SingleArray1DTo2D(std::span<const float> data, std::size_t cols, std::size_t rows) {
    if (data.size() != cols * rows)
        throw EArgumentException(QStringLiteral("Data"));
    return WithinMemory([&] {
        TSingleGrid grid;
        grid.reserve(rows);
        for (std::size_t row = 0; row < rows; ++row) {
            const auto numbers = data.subspan(row * cols, cols);
            grid.emplace_back(numbers.begin(), numbers.end());
        }
        return grid;
    });
}

TSingleArray SingleArrayReverse(TSingleArray array) {
    std::reverse(array.begin(), array.end());
    return array;
}

TSingleGrid SingleArrayArrayReverse(TSingleGrid grid) {
    std::reverse(grid.begin(), grid.end());
    return grid;
}

bool SingleArrayArrayGetMinMax(const TSingleGrid& grid, float flag, float& min, float& max) {
    TRangeLanes range(flag);
    for (const TSingleArray& row : grid)
        range.Add(row);
    if (!(range.Low() <= range.High()))
        return false;
    min = range.Low();
    max = range.High();
    return true;
}

} // namespace lmx
