#include "ColorSchemes.h"

#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxColorClassList.h>
#include <lmx/Colour/lmxColorKey.h>
#include <lmx/Colour/lmxColorPack.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormat.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <vector>

namespace {

using TCalculator = std::shared_ptr<lmx::IBaseColorCalculator>;

// A field of one value has a range without width, over which no scale can be laid: its value goes to the middle.
lmx::TValueRange WithWidth(const lmx::TValueRange& range) {
    const double margin = std::max(1.0, std::abs(range.Low) / 1000);
    return range.Low < range.High ? range : lmx::TValueRange(range.Low - margin, range.Low + margin);
}

// The coast of a relief lies at zero, if there is land and sea; other scales run from end to end.
TCalculator MakeScale(const lmx::TValueRange& range, const lmx::TColorScale& scale) {
    const auto gradient = scale.CreateGradient();
    if (scale.Kind != lmx::TColorScaleKind::cskRelief || range.Low >= 0 || range.High <= 0)
        return lmx::TGradientColorCalculatorFactory::GetObject(range, gradient);
    const double coast = -range.Low / (range.High - range.Low);
    std::vector<lmx::TColorStop> stops = gradient->GetColorStops();
    for (std::size_t i = 0; i < stops.size(); ++i) {
        double& location = stops[i].Location;
        location = i < stops.size() / 2 ? 2 * location * coast : coast + (2 * location - 1) * (1 - coast);
    }
    return lmx::TGradientColorCalculatorFactory::GetObject(range, lmx::TGradientFactory::GetObject(stops));
}

TCalculator MakeEvenPalette(const lmx::TValueRange& range, const lmx::TColorScale& scale) {
    std::vector<lmx::TColorKeyItem> items;
    for (const lmx::TColor32 color : scale.Colors)
        items.emplace_back(lmx::Format(u"%d", {static_cast<int>(items.size()) + 1}), color);
    return lmx::TBasicPaletteColorCalculatorFactory::GetObject(range, items, false);
}

// Six classes; a value beyond them takes the nearest one.
TCalculator MakeClasses(const lmx::TValueRange& range, const lmx::TColorScale& scale) {
    constexpr int ClassCount = 6;
    const std::vector<lmx::TColor32>& colors = scale.Colors;
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
    QString Name;
    QString Group;
    std::function<TCalculator(const lmx::TValueRange& range)> Make;
};

std::vector<TScheme> MakeSchemes() {
    std::vector<TScheme> schemes;
    for (const lmx::TColorScale& scale : lmx::TColorPack::GetScales())
        schemes.push_back({scale.Name, scale.Group, [&scale](const auto& range) { return MakeScale(range, scale); }});
    const QString steps = "Steps";
    for (const QString& name : {QString("Viridis"), QString("Cividis")})
        schemes.push_back({"Even palette: " + name.toLower(), steps,
                           [name](const auto& range) { return MakeEvenPalette(range, *lmx::TColorPack::Find(name)); }});
    schemes.push_back({"Classes: six of viridis", steps,
                       [](const auto& range) { return MakeClasses(range, *lmx::TColorPack::Find("Viridis")); }});
    schemes.push_back({"Two gradients", "Parts", [](const auto& range) { return MakeTwoGradients(range); }});
    return schemes;
}

const std::vector<TScheme>& Schemes() {
    static const std::vector<TScheme> schemes = MakeSchemes();
    return schemes;
}

} // namespace

std::vector<TColorSchemeName> ColorSchemeNames() {
    std::vector<TColorSchemeName> names;
    for (const TScheme& scheme : Schemes())
        names.push_back({scheme.Name, scheme.Group});
    return names;
}

std::shared_ptr<lmx::IBaseColorCalculator> MakeColorScheme(const QString& name, const lmx::TValueRange& range) {
    for (const TScheme& scheme : Schemes())
        if (name == scheme.Name)
            return scheme.Make(WithWidth(range));
    throw lmx::EArgumentException("name");
}
