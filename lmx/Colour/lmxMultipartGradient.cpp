#include <lmx/Colour/lmxColorStepTable.h>
#include <lmx/Colour/lmxColorSteps.h>
#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <optional>

namespace lmx {

namespace {

constexpr float Infinity = std::numeric_limits<float>::infinity();

using TParts = std::vector<std::shared_ptr<IGradientColorCalculator>>;

void AddEdges(float min, float max, std::vector<float>& edges) {
    if (!std::isnan(min))
        edges.push_back(min);
    if (!std::isnan(max))
        edges.push_back(std::nextafter(max, Infinity));
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

class TMultipartGradientColorCalculator final : public TBaseMinMaxColorCalculator,
                                                public IMultipartGradientColorCalculator,
                                                public IStepwiseColorCalculator {
public:
    TMultipartGradientColorCalculator(float min, float max, std::span<const TParts::value_type> parts)
        : TBaseMinMaxColorCalculator(min, max),
          FGradients(parts.begin(), parts.end()) {}

    TColor32 GetColor(float value) const override {
        const IGradientColorCalculator* part = Contains(value) ? FindPart(value).get() : nullptr;
        return part ? part->GetColor(value) : 0;
    }

    std::optional<TColorSteps> GetColorSteps() const override;

    std::shared_ptr<IBaseColorCalculator> Clone() const override { return Clone(GetMinVal(), GetMaxVal()); }
    std::shared_ptr<IBaseColorCalculator> Clone(float min, float max) const override {
        return std::make_shared<TMultipartGradientColorCalculator>(min, max, FGradients);
    }

    std::shared_ptr<IGradientColorCalculator> GetGradient(float value) const override { return FindPart(value); }
    TParts& GetGradients() override { return FGradients; }

private:
    bool Contains(float value) const { return !(value < GetMinVal()) && !(value > GetMaxVal()); }
    const TParts::value_type& FindPart(float value) const;
    std::vector<float> GetEdges() const;

    TParts FGradients;
};

const TParts::value_type& TMultipartGradientColorCalculator::FindPart(float value) const {
    static const TParts::value_type none;
    for (const TParts::value_type& part : FGradients)
        if (part && part->GetMinVal() <= value && part->GetMaxVal() >= value)
            return part;
    return none;
}

/// First values, ascending, of the stretches that one part colours, or none. The first is minus infinity.
std::vector<float> TMultipartGradientColorCalculator::GetEdges() const {
    std::vector<float> edges = {-Infinity};
    AddEdges(GetMinVal(), GetMaxVal(), edges);
    for (const TParts::value_type& part : FGradients)
        if (part)
            AddEdges(part->GetMinVal(), part->GetMaxVal(), edges);
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    return edges;
}

std::optional<TColorSteps> TMultipartGradientColorCalculator::GetColorSteps() const {
    std::map<const IGradientColorCalculator*, std::optional<TColorSteps>> stepsOfParts;
    TColorSteps steps(0); // what is no number lies in no part
    const std::vector<float> edges = GetEdges();
    for (std::size_t i = 0; i < edges.size(); ++i) {
        const IGradientColorCalculator* part = Contains(edges[i]) ? FindPart(edges[i]).get() : nullptr;
        if (!part) {
            steps.Add(edges[i], 0);
            continue;
        }
        const auto [entry, isNew] = stepsOfParts.try_emplace(part);
        if (const auto* stepwise = dynamic_cast<const IStepwiseColorCalculator*>(part); isNew && stepwise)
            entry->second = stepwise->GetColorSteps();
        if (!entry->second || steps.GetCount() > TColorStepTable::MaxStepCount)
            return std::nullopt;
        const bool isLast = i + 1 == edges.size();
        AddSteps(*entry->second, edges[i], isLast ? std::numeric_limits<float>::quiet_NaN() : edges[i + 1], steps);
    }
    return steps;
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
