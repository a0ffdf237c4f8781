#include <lmx/Colour/lmxMultipartGradient.h>

#include <lmx/Colour/Steps/Private/lmxColorStepTable.h>
#include <lmx/Colour/Steps/Private/lmxLatestResult.h>
#include <lmx/Colour/Steps/Private/lmxStepwiseColorCalculator.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <utility>

namespace lmx {

namespace {

constexpr float Infinity = std::numeric_limits<float>::infinity();

using TParts = std::vector<std::shared_ptr<IGradientColorCalculator>>;

/// Whether a value lies within overall bounds. One that is no number keeps nothing out.
bool IsBetween(float value, float min, float max) {
    return !(value < min) && !(value > max);
}

/// What the colours of one part depend on. The steps are shared: the same ones as long as the part stays the same.
struct TBand {
    float MinVal;
    float MaxVal;
    std::shared_ptr<const TColorSteps> Steps; ///< nil where they have to be asked for

    bool Contains(float value) const { return MinVal <= value && MaxVal >= value; }
    friend bool operator==(const TBand&, const TBand&) = default;
};

/// What all colours depend on.
struct TSource {
    float MinVal;
    float MaxVal;
    std::vector<TBand> Bands;

    friend bool operator==(const TSource&, const TSource&) = default;
};

void AddEdges(float min, float max, std::vector<float>& edges) {
    if (!std::isnan(min))
        edges.push_back(min);
    if (!std::isnan(max))
        edges.push_back(std::nextafter(max, Infinity));
}

/// First values, ascending, of the stretches that one part colours, or none. The first is minus infinity.
std::vector<float> EdgesOf(const TSource& source) {
    std::vector<float> edges = {-Infinity};
    AddEdges(source.MinVal, source.MaxVal, edges);
    for (const TBand& band : source.Bands)
        AddEdges(band.MinVal, band.MaxVal, edges);
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    return edges;
}

/// Adds the steps of a part that lie from `from` to before `to`; to the end of all values if `to` is no number.
void AddSteps(const TColorSteps& part, float from, float to, TColorSteps& steps) {
    const std::vector<float>& starts = part.GetStarts();
    const auto next = std::upper_bound(starts.begin(), starts.end(), from);
    const auto end = std::isnan(to) ? starts.end() : std::lower_bound(next, starts.end(), to);
    const auto index = static_cast<std::size_t>(next - starts.begin());
    steps.Add(from, part.GetColors()[index - 1]);
    steps.Add(part, index, static_cast<std::size_t>(end - starts.begin()));
}

/// Nil if one of the parts that show has to be asked for its colours.
std::shared_ptr<const TColorSteps> StepsOf(const TSource& source) {
    TColorSteps steps(0); // what is no number lies in no part
    std::size_t count = 0;
    for (const TBand& band : source.Bands)
        count += band.Steps ? band.Steps->GetCount() : 0;
    steps.Reserve(count);
    const std::vector<float> edges = EdgesOf(source);
    for (std::size_t i = 0; i < edges.size(); ++i) {
        const auto band = std::find_if(source.Bands.begin(), source.Bands.end(),
                                       [&](const TBand& item) { return item.Contains(edges[i]); });
        if (band == source.Bands.end() || !IsBetween(edges[i], source.MinVal, source.MaxVal)) {
            steps.Add(edges[i], 0);
            continue;
        }
        if (!band->Steps || steps.GetCount() > TColorStepTable::MaxStepCount)
            return nullptr;
        const bool isLast = i + 1 == edges.size();
        AddSteps(*band->Steps, edges[i], isLast ? std::numeric_limits<float>::quiet_NaN() : edges[i + 1], steps);
    }
    return std::make_shared<const TColorSteps>(std::move(steps));
}

class TMultipartGradientColorCalculator final : public TBaseMinMaxColorCalculator,
                                                public IMultipartGradientColorCalculator,
                                                public TStepwiseColorCalculator {
public:
    TMultipartGradientColorCalculator(float min, float max, std::span<const TParts::value_type> parts)
        : TBaseMinMaxColorCalculator(min, max),
          FGradients(parts.begin(), parts.end()) {}

    TColor32 GetColor(float value) const override {
        const IGradientColorCalculator* part =
            IsBetween(value, GetMinVal(), GetMaxVal()) ? FindPart(value).get() : nullptr;
        return part ? part->GetColor(value) : 0;
    }

    std::shared_ptr<const TColorSteps> GetColorSteps() const override;

    std::shared_ptr<IBaseColorCalculator> Clone() const override { return Clone(GetMinVal(), GetMaxVal()); }
    std::shared_ptr<IBaseColorCalculator> Clone(float min, float max) const override {
        return std::make_shared<TMultipartGradientColorCalculator>(min, max, FGradients);
    }

    std::shared_ptr<IGradientColorCalculator> GetGradient(float value) const override { return FindPart(value); }
    TParts& GetGradients() override { return FGradients; }

private:
    const TParts::value_type& FindPart(float value) const;

    TParts FGradients;
    mutable TLatestResult<TSource, std::shared_ptr<const TColorSteps>> FSteps;
};

const TParts::value_type& TMultipartGradientColorCalculator::FindPart(float value) const {
    static const TParts::value_type none;
    for (const TParts::value_type& part : FGradients)
        if (part && part->GetMinVal() <= value && part->GetMaxVal() >= value)
            return part;
    return none;
}

std::shared_ptr<const TColorSteps> TMultipartGradientColorCalculator::GetColorSteps() const {
    TSource source = {GetMinVal(), GetMaxVal(), {}};
    for (const TParts::value_type& part : FGradients)
        if (const auto* stepwise = dynamic_cast<const TStepwiseColorCalculator*>(part.get()); part)
            source.Bands.push_back(
                {part->GetMinVal(), part->GetMaxVal(), stepwise ? stepwise->GetColorSteps() : nullptr});
    return FSteps.Get(source, [&] { return StepsOf(source); });
}

} // namespace

std::shared_ptr<IMultipartGradientColorCalculator> TMultipartGradientColorCalculatorFactory::GetObject() {
    return GetObject(0, 0);
}

std::shared_ptr<IMultipartGradientColorCalculator> TMultipartGradientColorCalculatorFactory::GetObject(float min,
                                                                                                       float max) {
    return GetObject(min, max, {});
}

std::shared_ptr<IMultipartGradientColorCalculator>
TMultipartGradientColorCalculatorFactory::GetObject(float min, float max, std::span<const TParts::value_type> parts) {
    return std::make_shared<TMultipartGradientColorCalculator>(min, max, parts);
}

std::shared_ptr<IMultipartGradientColorCalculator>
TMultipartGradientColorCalculatorFactory::GetObject(const std::shared_ptr<IMultipartGradientColorCalculator>& source) {
    if (!source)
        throw EExArgumentNilException(QStringLiteral("TMultipartGradientColorCalculatorFactory.GetObject"),
                                      QStringLiteral("source"));
    return GetObject(source->GetMinVal(), source->GetMaxVal(), source->GetGradients());
}

} // namespace lmx
