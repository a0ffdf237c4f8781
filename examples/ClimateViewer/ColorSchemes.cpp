#include "ColorSchemes.h"

#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxColorClassList.h>
#include <lmx/Colour/lmxColorKey.h>
#include <lmx/Colour/lmxColorPalette.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Colour/lmxGradientData.h>
#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormat.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace {

using TCalculator = std::shared_ptr<lmx::IBaseColorCalculator>;

// A field of one value has a range without width, over which no scale can be laid: its value goes to the middle.
lmx::TValueRange WithWidth(const lmx::TValueRange& range) {
    const double margin = std::max(1.0, std::abs(range.Low) / 1000);
    return range.Low < range.High ? range : lmx::TValueRange(range.Low - margin, range.Low + margin);
}

TCalculator MakeGradient(const lmx::TValueRange& range, const QString& folder, const QString& scale) {
    const auto data = lmx::TGradientDataFactory::GetObject();
    data->LoadFromFile(folder + "/gradients/" + scale + ".xml");
    return lmx::TGradientColorCalculatorFactory::GetObject(range, data->CreateGradient(range.Low, range.High));
}

std::vector<lmx::TColor32> LoadPalette(const QString& folder, const QString& scale) {
    lmx::TColorPalette palette;
    palette.Load(folder + "/palettes/" + scale + ".pal");
    return {palette.begin(), palette.end()};
}

TCalculator MakeEvenPalette(const lmx::TValueRange& range, const QString& folder, const QString& scale) {
    std::vector<lmx::TColorKeyItem> items;
    for (lmx::TColor32 color : LoadPalette(folder, scale))
        items.emplace_back(lmx::Format(u"%d", {static_cast<int>(items.size()) + 1}), color);
    return lmx::TBasicPaletteColorCalculatorFactory::GetObject(range, items, false);
}

// Six classes; a value beyond them takes the nearest one.
TCalculator MakeClasses(const lmx::TValueRange& range, const QString& folder, const QString& scale) {
    constexpr int ClassCount = 6;
    const std::vector<lmx::TColor32> colors = LoadPalette(folder, scale);
    const auto classes = lmx::TColorClassesFactory::GetObject();
    const auto bound = [&](int i) { return static_cast<float>(range.Low + (range.High - range.Low) * i / ClassCount); };
    for (int i = 0; i < ClassCount; ++i) {
        const std::size_t place = static_cast<std::size_t>(i) * (colors.size() - 1) / (ClassCount - 1);
        classes->GetClasses().Add(std::make_unique<lmx::TColorClass>(QString(), bound(i), bound(i + 1), colors[place]));
    }
    const auto calculator = lmx::TColorClassCalculatorFactory::GetObject(classes);
    calculator->SetOutOfRangePolicy(lmx::TOutOfRangePolicy::orpClosestMatch);
    return calculator;
}

// One gradient below zero and one above it; a range that does not hold zero is parted in its middle.
TCalculator MakeTwoGradients(const lmx::TValueRange& range) {
    const double middle = range.Low < 0 && range.High > 0 ? 0 : range.Low + (range.High - range.Low) / 2;
    const auto part = [](double low, double high, std::array<lmx::TColor32, 2> colors) {
        return lmx::TGradientColorCalculatorFactory::GetObject(
            lmx::TValueRange(low, high),
            lmx::TGradientFactory::GetObject(std::vector<lmx::TColorStop>{{0, colors[0]}, {1, colors[1]}}));
    };
    const std::vector parts = {part(range.Low, middle, {0xFF053061, 0xFFD1E5F0}),
                               part(middle, range.High, {0xFFE9E3C8, 0xFF67001F})};
    return lmx::TMultipartGradientColorCalculatorFactory::GetObject(static_cast<float>(range.Low),
                                                                    static_cast<float>(range.High), parts);
}

struct TScheme {
    const char* Name;
    TCalculator (*Make)(const lmx::TValueRange& range, const QString& folder);
};

constexpr std::array<TScheme, 7> Schemes = {{
    {"Gradient: viridis",
     [](const auto& range, const QString& folder) { return MakeGradient(range, folder, "viridis"); }},
    {"Gradient: inferno",
     [](const auto& range, const QString& folder) { return MakeGradient(range, folder, "inferno"); }},
    {"Gradient: blue to red",
     [](const auto& range, const QString& folder) { return MakeGradient(range, folder, "blue_red"); }},
    {"Even palette: cividis",
     [](const auto& range, const QString& folder) { return MakeEvenPalette(range, folder, "cividis"); }},
    {"Even palette: viridis",
     [](const auto& range, const QString& folder) { return MakeEvenPalette(range, folder, "viridis"); }},
    {"Classes: six of viridis",
     [](const auto& range, const QString& folder) { return MakeClasses(range, folder, "viridis"); }},
    {"Two gradients", [](const auto& range, const QString&) { return MakeTwoGradients(range); }},
}};

} // namespace

QStringList ColorSchemeNames() {
    QStringList names;
    for (const TScheme& scheme : Schemes)
        names += scheme.Name;
    return names;
}

std::shared_ptr<lmx::IBaseColorCalculator> MakeColorScheme(const QString& name, const lmx::TValueRange& range,
                                                           const QString& folder) {
    for (const TScheme& scheme : Schemes)
        if (name == scheme.Name)
            return scheme.Make(WithWidth(range), folder);
    throw lmx::EArgumentException("name");
}
