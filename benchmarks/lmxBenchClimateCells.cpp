// What turning the raw numbers of a file into values and flags costs, for a slice of 4320 x 2160 cells, beside copying
// as many values. Packed bytes and shorts, which go through a table, should stay below 2 of it; wider types are
// computed cell by cell in double.

#include <benchmarks/Measuring.h>
#include <lmx/DataSources/Private/lmxClimateCells.h>

#include <cstring>
#include <iomanip>
#include <iostream>
#include <string>

namespace {

using namespace lmx;
using namespace lmx::bench;

template<class Raw>
std::vector<Raw> Cells(std::size_t count) {
    std::vector<Raw> cells(count);
    for (std::size_t i = 0; i < count; ++i)
        cells[i] = static_cast<Raw>((i * 7919) % 30'000);
    return cells;
}

template<class Raw>
void Measure(const std::string& name, TClimateCellType type, std::size_t count) {
    TClimateAttributes attributes;
    attributes.Set("scale_factor", std::vector<double>{0.01});
    attributes.Set("add_offset", std::vector<double>{273.15});
    attributes.Set("_FillValue", std::vector<double>{-32767});
    const TClimateCells meaning({type}, attributes);
    const std::vector<Raw> raw = Cells<Raw>(count);
    const std::vector<float> source(count, 1.0F);
    std::vector<float> values(count);
    TBestTime copy;
    TBestTime unpack;
    for (int i = 0; i < (IsTiny ? 1 : 10); ++i) {
        copy.Measure([&] { std::memcpy(values.data(), source.data(), count * sizeof(float)); });
        unpack.Measure([&] { meaning.Unpack(std::span<const Raw>(raw), values); });
    }
    std::cout << std::left << std::setw(10) << name << std::right << std::fixed << std::setprecision(2) << std::setw(8)
              << unpack.GetMilliseconds() << " ms, " << unpack / copy << " of copying\n";
}

} // namespace

int main() {
    const auto count = static_cast<std::size_t>(Sized(4320)) * static_cast<std::size_t>(Sized(2160));
    Measure<std::int8_t>("bytes", TClimateCellType::ctInt8, count);
    Measure<std::int16_t>("shorts", TClimateCellType::ctInt16, count);
    Measure<std::int32_t>("integers", TClimateCellType::ctInt32, count);
    Measure<float>("floats", TClimateCellType::ctFloat, count);
    Measure<double>("doubles", TClimateCellType::ctDouble, count);
    return 0;
}
