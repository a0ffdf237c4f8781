// What colouring a large raster costs, as a part of the speed at which the same floats are copied. Each calculator of
// the library should reach 0.2 of it; the plain loop that asks the calculator for each cell stands beside it. Classes
// and gradients in parts should be as fast as one gradient: up to 32 of them, wherever their bounds lie.
//
// With the argument "sizes" alone: what a cell costs with 1,000 and 100,000 stops, classes, parts or palette entries,
// as a multiple of what it costs with a few (at most 4 and 50); what preparing them costs, as a multiple of sorting as
// many floats; and what a change of a layer's opacity costs, as a multiple of colouring (at most 1.3).

#include <benchmarks/Measuring.h>
#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Colour/Steps/Private/lmxLayerOpacity.h>
#include <lmx/Colour/Steps/Private/lmxStepwiseColorCalculator.h>
#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxBitmap32RasterRenderer.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Colour/lmxIdrisiImageMapData.h>
#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <iomanip>
#include <iostream>
#include <memory>
#include <random>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using namespace lmx;
using namespace lmx::bench;

constexpr std::int32_t Width = Sized(4320);
constexpr std::int32_t Height = Sized(2160);
constexpr std::size_t CellCount = std::size_t{Width} * Height;
constexpr float Lowest = -50;
constexpr float Highest = 50;

class TMemoryImage final : public TAbstractImage {
public:
    explicit TMemoryImage(const std::vector<float>& cells) : FCells(cells) {
        getHeader()->SetWidth(Width);
        getHeader()->SetHeight(Height);
    }
    float GetCell(std::int32_t column, std::int32_t row) const override {
        return FCells[static_cast<std::size_t>(row - 1) * Width + static_cast<std::size_t>(column - 1)];
    }

private:
    const std::vector<float>& FCells;
};

/// Hides what a calculator can do beyond GetColor.
class TPlainCalculator final : public IBaseColorCalculator {
public:
    explicit TPlainCalculator(std::shared_ptr<IBaseColorCalculator> calculator) : FCalculator(std::move(calculator)) {}
    TColor32 GetColor(float value) const override { return FCalculator->GetColor(value); }
    std::shared_ptr<IBaseColorCalculator> Clone() const override { return FCalculator->Clone(); }

private:
    std::shared_ptr<IBaseColorCalculator> FCalculator;
};

/// A smooth field with a connected part without data, as a sea has.
std::vector<float> SmoothCells() {
    std::vector<float> cells(CellCount);
    for (std::size_t i = 0; i < CellCount; ++i) {
        const auto x = static_cast<double>(i % Width);
        const auto y = static_cast<double>(i / Width);
        const double value = 45 * std::sin(x / 300) * std::cos(y / 200) + 3 * std::sin(x / 7 + y / 11);
        cells[i] = value < -40 ? TSpatialConst::NoData : static_cast<float>(value);
    }
    return cells;
}

/// Noise over a little more than the range, every tenth cell without data.
std::vector<float> RandomCells() {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> value(Lowest - 2, Highest + 2);
    std::vector<float> cells(CellCount);
    for (float& cell : cells)
        cell = random() % 10 == 0 ? TSpatialConst::NoData : value(random);
    return cells;
}

std::shared_ptr<IGradient> Gradient() {
    return TGradientFactory::GetObject(std::vector<TColorStop>{{0.0, 0xFF30123BU},
                                                               {0.2, 0xFF4686FBU},
                                                               {0.4, 0xFF1AE4B6U},
                                                               {0.6, 0xFFA4FC3CU},
                                                               {0.8, 0xFFFB7E21U},
                                                               {1.0, 0xFF7A0403U}});
}

std::shared_ptr<IBaseColorCalculator> Palette(int count) {
    std::vector<TColorKeyItem> items;
    for (int i = 0; i < count; ++i)
        items.emplace_back(QString(), 0xFF000000U + static_cast<TColor32>(i) * 70001);
    return TBasicPaletteColorCalculatorFactory::GetObject(TValueRange(Lowest, Highest), items, true);
}

/// Bounds from -50 to 50: of equal width, or doubling from 0.001 on to both sides of 0.
std::vector<float> Bounds(int parts, bool doubling) {
    std::vector<float> bounds;
    for (int i = 0; i <= parts; ++i) {
        const double place = 2.0 * i / parts - 1;
        const double doubled = std::copysign(0.001 * std::pow(Highest / 0.001, std::abs(place)), place);
        bounds.push_back(static_cast<float>(doubling ? doubled : Highest * place));
    }
    return bounds;
}

std::shared_ptr<IBaseColorCalculator> Classes(int count, bool doubling) {
    const auto classes = TColorClassesFactory::GetObject();
    const std::vector<float> bounds = Bounds(count, doubling);
    for (std::size_t i = 0; i + 1 < bounds.size(); ++i)
        classes->GetClasses().Add(std::make_unique<TColorClass>(QString(), bounds[i], bounds[i + 1],
                                                                0xFF000000U + static_cast<TColor32>(i) * 70001));
    return TColorClassCalculatorFactory::GetObject(classes);
}

std::shared_ptr<IBaseColorCalculator> Parts(int count, bool doubling) {
    const std::vector<float> bounds = Bounds(count, doubling);
    std::vector<std::shared_ptr<IGradientColorCalculator>> parts;
    for (std::size_t i = 0; i + 1 < bounds.size(); ++i)
        parts.push_back(TGradientColorCalculatorFactory::GetObject(bounds[i], bounds[i + 1], Gradient()));
    return TMultipartGradientColorCalculatorFactory::GetObject(Lowest, Highest, parts);
}

/// Renders and copies in turns, so that both see the same machine, and prints the ratio of the best times.
void Report(const char* name, const std::vector<float>& cells, const IBaseColorCalculator& calculator, int rounds) {
    const TMemoryImage image(cells);
    const TIdrisiImageMapData data(&image, true);
    const auto renderer = TBitmap32RasterRendererFactory::GetObject();
    TBitmap32 bitmap(Width, Height);
    std::vector<float> copy(CellCount);
    TBestTime bestCopy;
    TBestTime bestRender;
    for (int i = 0; i < rounds; ++i) {
        bestCopy.Measure([&] { std::memcpy(copy.data(), cells.data(), CellCount * sizeof(float)); });
        bestRender.Measure([&] { renderer->Render(&data, &data, 0.8F, &calculator, &bitmap); });
    }
    std::cout << std::left << std::setw(44) << name << std::right << std::fixed << std::setprecision(3) << std::setw(7)
              << bestCopy / bestRender << " of the speed of memcpy\n";
}

using TMaker = std::function<std::shared_ptr<IBaseColorCalculator>()>;

/// Best times of a render with a new calculator, and of the next one with the same.
struct TRenderTimes {
    TBestTime First;
    TBestTime Again;

    void Measure(const TMaker& maker, const TIdrisiImageMapData& data, TBitmap32& bitmap) {
        const auto renderer = TBitmap32RasterRendererFactory::GetObject();
        const std::shared_ptr<IBaseColorCalculator> calculator = maker();
        for (TBestTime* best : {&First, &Again})
            best->Measure([&] { renderer->Render(&data, &data, 0.8F, calculator.get(), &bitmap); });
    }
};

/// Renders with both in turns and prints how fast one is, as a part of the speed of the other.
void Compare(const std::string& name, const std::vector<float>& cells, const TMaker& maker, const TMaker& yardstick) {
    const TMemoryImage image(cells);
    const TIdrisiImageMapData data(&image, true);
    TBitmap32 bitmap(Width, Height);
    TRenderTimes times;
    TRenderTimes yardstickTimes;
    for (int i = 0; i < 15; ++i) {
        yardstickTimes.Measure(yardstick, data, bitmap);
        times.Measure(maker, data, bitmap);
    }
    std::cout << std::left << std::setw(44) << name << std::right << std::fixed << std::setprecision(3) << std::setw(7)
              << yardstickTimes.Again / times.Again << " of the speed of the gradient, "
              << yardstickTimes.First / times.First << " the first time\n";
}

void CompareWithTheGradient(const std::string& rasterName, const std::vector<float>& cells, const TMaker& gradient) {
    for (const bool doubling : {false, true}) {
        const std::string widths = doubling ? " of doubling width" : " of equal width";
        for (const int count : {8, 32}) {
            const std::string title = rasterName + ", " + std::to_string(count);
            Compare(
                title + " classes" + widths, cells, [=] { return Classes(count, doubling); }, gradient);
            Compare(
                title + " parts" + widths, cells, [=] { return Parts(count, doubling); }, gradient);
        }
    }
}

// --- What more of everything costs -----------------------------------------------------------------------------------

using TSizedMaker = std::function<std::shared_ptr<IBaseColorCalculator>(int count)>;

std::shared_ptr<IGradient> BlackAndWhite(int count, bool random) {
    std::mt19937 engine(2);
    std::uniform_real_distribution<double> place(0, 1);
    std::vector<TColorStop> stops;
    for (int i = 0; i < count; ++i)
        stops.push_back({random ? place(engine) : i / (count - 1.0), i % 2 ? 0xFFFFFFFFU : 0xFF000000U});
    return TGradientFactory::GetObject(stops);
}

std::shared_ptr<IBaseColorCalculator> Stops(int count, bool random) {
    return TGradientColorCalculatorFactory::GetObject(Lowest, Highest, 0xFF808080U, BlackAndWhite(count, random));
}

/// Classes of any bounds in any order, of which some gaps remain.
std::shared_ptr<IBaseColorCalculator> OverlappingClasses(int count) {
    std::mt19937 engine(3);
    std::uniform_real_distribution<double> place(Lowest, Highest);
    std::uniform_real_distribution<double> width(0, 2.0 * (Highest - Lowest) / count);
    const auto classes = TColorClassesFactory::GetObject();
    for (int i = 0; i < count; ++i) {
        const double min = place(engine);
        classes->GetClasses().Add(std::make_unique<TColorClass>(QString(), static_cast<float>(min),
                                                                static_cast<float>(min + width(engine)),
                                                                0xFF000000U + static_cast<TColor32>(i) * 70001));
    }
    return TColorClassCalculatorFactory::GetObject(classes);
}

std::shared_ptr<IBaseColorCalculator> PlainParts(int count) {
    const std::vector<float> bounds = Bounds(count, false);
    std::vector<std::shared_ptr<IGradientColorCalculator>> parts;
    for (std::size_t i = 0; i + 1 < bounds.size(); ++i)
        parts.push_back(TGradientColorCalculatorFactory::GetObject(bounds[i], bounds[i + 1], BlackAndWhite(2, false)));
    return TMultipartGradientColorCalculatorFactory::GetObject(Lowest, Highest, parts);
}

/// Best times of a render, of one that asks for each of the cells, and of preparing for the first.
struct TSizeTimes {
    TBestTime Render;
    TBestTime CellByCell;
    TBestTime Preparation;

    void Measure(const IBaseColorCalculator& calculator, const std::function<void(const IBaseColorCalculator&)>& render,
                 const std::function<void(const IBaseColorCalculator&)>& renderFew) {
        Preparation.Measure(
            [&] { dynamic_cast<const TStepwiseColorCalculator&>(calculator).GetColorTable(TLayerOpacity(0.8F)); });
        Render.Measure([&] { render(calculator); });
        CellByCell.Measure([&] { renderFew(TPlainCalculator(calculator.Clone())); });
    }
};

TBestTime SortingTime(int count) {
    std::mt19937 engine(4);
    std::vector<float> floats(static_cast<std::size_t>(count));
    TBestTime best;
    for (int i = 0; i < 5; ++i) {
        std::generate(floats.begin(), floats.end(), [&] { return static_cast<float>(engine()); });
        best.Measure([&] { std::sort(floats.begin(), floats.end()); });
    }
    return best;
}

/// Measures the few and the many in turns.
void CompareSizes(const std::string& name, const TIdrisiImageMapData& data, const TIdrisiImageMapData& few,
                  int smallCount, const TSizedMaker& maker) {
    const auto renderer = TBitmap32RasterRendererFactory::GetObject();
    TBitmap32 bitmap(data.GetWidth(), data.GetHeight());
    TBitmap32 fewCells(few.GetWidth(), few.GetHeight());
    const auto render = [&](const IBaseColorCalculator& c) { renderer->Render(&data, &data, 0.8F, &c, &bitmap); };
    const auto renderFew = [&](const IBaseColorCalculator& c) { renderer->Render(&few, &few, 0.8F, &c, &fewCells); };
    for (const int count : {1000, 100000}) {
        TSizeTimes small;
        TSizeTimes large;
        for (int i = 0; i < 4; ++i) {
            small.Measure(*maker(smallCount), render, renderFew);
            large.Measure(*maker(count), render, renderFew);
        }
        std::cout << std::left << std::setw(36) << name << std::right << std::setw(7) << count << " against "
                  << std::setw(2) << smallCount << std::fixed << std::setprecision(2) << std::setw(7)
                  << large.Render / small.Render << " times a cell, " << std::setw(6)
                  << large.CellByCell / small.CellByCell << " asked for alone; prepared in " << std::setw(6)
                  << large.Preparation / SortingTime(count) << " times sorting" << std::endl;
    }
}

void CompareAllSizes(const std::string& rasterName, const std::vector<float>& cells) {
    const TMemoryImage image(cells);
    const TIdrisiImageMapData data(&image, true);
    TMemoryImage fewImage(cells);
    fewImage.getHeader()->SetHeight(Height / 8);
    const TIdrisiImageMapData few(&fewImage, true);
    const auto compare = [&](const char* name, int smallCount, const TSizedMaker& maker) {
        CompareSizes(rasterName + ", " + name, data, few, smallCount, maker);
    };
    compare("stops", 6, [](int count) { return Stops(count, false); });
    compare("stops anywhere", 6, [](int count) { return Stops(count, true); });
    compare("classes", 8, [](int count) { return Classes(count, false); });
    compare("classes of doubling width", 8, [](int count) { return Classes(count, true); });
    compare("overlapping classes", 8, OverlappingClasses);
    compare("parts of 2 stops", 8, PlainParts);
    compare("parts of 6 stops", 8, [](int count) { return Parts(count, false); });
    compare("palette", 16, Palette);
}

/// A change of a layer's opacity beside colouring alone, for the same opacities in turns.
void CompareOpacity(const std::string& rasterName, const std::vector<float>& cells, const TMaker& gradient) {
    TMemoryImage image(cells);
    const TIdrisiImageMapData data(&image, true);
    const auto manager = TLayerManagerFactory::GetObject();
    TIdrisiMapLayer layer(manager);
    layer.SetImage(&image);
    layer.SetColorCalc(gradient());
    layer.Render();
    const auto renderer = TBitmap32RasterRendererFactory::GetObject();
    const std::shared_ptr<IBaseColorCalculator> calculator = gradient();
    TBitmap32 bitmap(Width, Height);
    TBestTime change;
    TBestTime colouring;
    for (std::uint8_t opacity = 200; opacity < 230; ++opacity) {
        colouring.Measure(
            [&] { renderer->Render(&data, &data, static_cast<float>(opacity / 255.0), calculator.get(), &bitmap); });
        change.Measure([&] { layer.SetOpacity(opacity); });
    }
    std::cout << rasterName << ", a change of opacity: " << std::fixed << std::setprecision(2) << change / colouring
              << " times colouring" << std::endl;
}

} // namespace

int main(int argc, char** argv) {
    const TMaker gradient = [] {
        return TGradientColorCalculatorFactory::GetObject(Lowest, Highest, 0xFF808080U, Gradient());
    };
    const std::pair<const char*, std::shared_ptr<IBaseColorCalculator>> calculators[] = {
        {"gradient of 6 stops", gradient()},
        {"palette of 16 entries", Palette(16)},
        {"palette of 256 entries", Palette(256)}};
    const std::pair<const char*, std::vector<float>> rasters[] = {{"smooth", SmoothCells()}, {"random", RandomCells()}};
    std::cout << Width << " x " << Height << " cells\n";
    const auto& [hardName, hardCells] = rasters[1];
    CompareOpacity(hardName, hardCells, gradient);
    CompareAllSizes(hardName, hardCells);
    if (argc > 1 && std::string_view(argv[1]) == "sizes")
        return 0;
    for (const auto& [rasterName, cells] : rasters) {
        for (const auto& [name, calculator] : calculators) {
            const std::string title = std::string(rasterName) + ", " + name;
            Report(title.c_str(), cells, *calculator, 30);
            Report((title + ", cell by cell").c_str(), cells, TPlainCalculator(calculator), 3);
        }
        CompareWithTheGradient(rasterName, cells, gradient);
    }
}
