#pragma once

#include <lmx/DataSources/Private/lmxClimateSource.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <numeric>
#include <span>
#include <utility>
#include <variant>
#include <vector>

namespace lmx::tests {

/// What was read of a source that may be gone by now.
struct TReadLog {
    struct TRead {
        std::size_t Array = 0;
        TSourceWindow Window;
    };
    std::mutex Mutex;
    std::vector<TRead> Reads;

    std::vector<TRead> Take() {
        const std::lock_guard lock(Mutex);
        return std::exchange(Reads, {});
    }
};

/// Arrays in memory, and a log of what is read of them. A read is a decode: it stands for the blocks it touches.
class TArraySource final : public IClimateSource {
public:
    std::shared_ptr<TReadLog> GetLog() const { return FLog; }

    std::size_t Add(TSourceArray info, std::vector<double> numbers, TSourceAttributes attributes = {}) {
        FArrays.push_back(std::move(info));
        FNumbers.push_back(std::move(numbers));
        FAttributes.push_back(std::move(attributes));
        return FArrays.size() - 1;
    }
    /// A coordinate: "/lon" with its units.
    TSourceDimension AddAxis(const QString& name, const QString& units, std::vector<double> numbers) {
        const TSourceDimension dimension{u'/' + name, numbers.size()};
        TSourceAttributes attributes;
        attributes.Values.Set("units", units);
        Add({dimension.Path, {dimension}, {}, true, TClimateCellType::ctDouble, {}}, std::move(numbers), attributes);
        return dimension;
    }

    const std::vector<TSourceArray>& GetArrays() const override { return FArrays; }
    bool IsNetCdf() const override { return true; }
    TClimateAttributes ReadFileAttributes() override { return {}; }
    TSourceAttributes ReadAttributes(std::size_t array) override { return FAttributes.at(array); }

    TRawSlice Read(std::size_t array, const TSourceWindow& window) override {
        {
            const std::lock_guard lock(FLog->Mutex);
            FLog->Reads.push_back({array, window});
        }
        const TSourceArray& info = FArrays.at(array);
        std::vector<double> numbers;
        Take(array, window, 0, 0, numbers);
        TRawSlice slice(info.Type, numbers.size());
        std::visit(
            [&](const auto& cells) {
                using TCell = std::remove_const_t<typename std::remove_reference_t<decltype(cells)>::element_type>;
                auto* const to = static_cast<TCell*>(slice.GetBytes());
                for (std::size_t i = 0; i < numbers.size(); ++i)
                    to[i] = static_cast<TCell>(numbers[i]);
            },
            slice.GetCells());
        return slice;
    }

private:
    void Take(std::size_t array, const TSourceWindow& window, std::size_t dimension, std::size_t place,
              std::vector<double>& numbers) const {
        const auto& dimensions = FArrays[array].Dimensions;
        if (dimension == dimensions.size()) {
            numbers.push_back(FNumbers[array].at(place));
            return;
        }
        for (std::size_t i = 0; i < window.Counts.at(dimension); ++i)
            Take(array, window, dimension + 1,
                 place * std::size_t(dimensions[dimension].Size) + std::size_t(window.Starts.at(dimension)) + i,
                 numbers);
    }

    std::shared_ptr<TReadLog> FLog = std::make_shared<TReadLog>();
    std::vector<TSourceArray> FArrays;
    std::vector<std::vector<double>> FNumbers;
    std::vector<TSourceAttributes> FAttributes;
};

} // namespace lmx::tests
