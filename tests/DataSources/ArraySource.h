#pragma once

#include <lmx/DataSources/Private/lmxClimateSource.h>

#include <atomic>
#include <map>
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
        bool IsOfMask = false;
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

    /// 0 where the array's cells are missing.
    void SetMask(std::size_t array, std::vector<double> mask) {
        FArrays.at(array).HasMask = true;
        FMasks[array] = std::move(mask);
    }

    const std::vector<TSourceArray>& GetArrays() const override { return FArrays; }
    bool IsNetCdf() const override { return true; }
    TClimateAttributes ReadFileAttributes() override { return {}; }
    TSourceAttributes ReadAttributes(std::size_t array) override { return FAttributes.at(array); }

    TRawSlice Read(std::size_t array, const TSourceWindow& window) override {
        return SliceOf(array, window, FNumbers.at(array), FArrays[array].Type, false);
    }
    TRawSlice ReadMask(std::size_t array, const TSourceWindow& window) override {
        return SliceOf(array, window, FMasks.at(array), TClimateCellType::ctUInt8, true);
    }

private:
    TRawSlice SliceOf(std::size_t array, const TSourceWindow& window, const std::vector<double>& all,
                      TClimateCellType type, bool isOfMask) {
        {
            const std::lock_guard lock(FLog->Mutex);
            FLog->Reads.push_back({array, window, isOfMask});
        }
        std::vector<double> numbers;
        Take(FArrays.at(array), all, window, 0, 0, numbers);
        TRawSlice slice(type, numbers.size());
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

    static void Take(const TSourceArray& array, const std::vector<double>& all, const TSourceWindow& window,
                     std::size_t dimension, std::size_t place, std::vector<double>& numbers) {
        const auto& dimensions = array.Dimensions;
        if (dimension == dimensions.size()) {
            numbers.push_back(all.at(place));
            return;
        }
        for (std::size_t i = 0; i < window.Counts.at(dimension); ++i)
            Take(array, all, window, dimension + 1,
                 place * std::size_t(dimensions[dimension].Size) + std::size_t(window.Starts.at(dimension)) + i,
                 numbers);
    }

    std::shared_ptr<TReadLog> FLog = std::make_shared<TReadLog>();
    std::vector<TSourceArray> FArrays;
    std::vector<std::vector<double>> FNumbers;
    std::map<std::size_t, std::vector<double>> FMasks;
    std::vector<TSourceAttributes> FAttributes;
};

} // namespace lmx::tests
