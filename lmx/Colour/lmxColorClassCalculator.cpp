#include <lmx/Colour/lmxColorClassCalculator.h>

#include <lmx/Colour/Steps/Private/lmxStepwiseColorCalculator.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace lmx {

namespace {

constexpr float Infinity = std::numeric_limits<float>::infinity();
constexpr int MostClasses = 2000; ///< for more, asking at each edge costs more than asking for each cell

/// Values at which a colour can change: each bound of a class and the next value above it. Ascending; the first is
/// minus infinity.
std::vector<float> EdgesOf(const TObjectList<TColorClass>& classes) {
    std::vector<float> edges = {-Infinity};
    for (const TColorClass* item : classes)
        for (float bound : {item->GetMinValue(), item->GetMaxValue()})
            if (!std::isnan(bound))
                edges.insert(edges.end(), {bound, std::nextafter(bound, Infinity)});
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    return edges;
}

class TColorClassCalculator final : public IColorClassCalculator, public TStepwiseColorCalculator {
public:
    TColorClassCalculator() = default;
    explicit TColorClassCalculator(std::shared_ptr<IColorClasses> classes) : FColorClasses(std::move(classes)) {}

    TColor32 GetColor(float value) const override {
        if (!FColorClasses)
            throw EInvalidOperation(QStringLiteral("ColorClasses not specified"));
        const TColorClass* item = FColorClasses->GetClass(FOutOfRangePolicy, value);
        return item ? item->GetColor() : 0;
    }

    std::shared_ptr<const TColorSteps> GetColorSteps() const override;

    std::shared_ptr<IBaseColorCalculator> Clone() const override {
        return std::make_shared<TColorClassCalculator>(CopyOf(FColorClasses));
    }

    std::shared_ptr<IColorClasses> GetColorClasses() const override { return FColorClasses; }
    void SetColorClasses(std::shared_ptr<IColorClasses> classes) override { FColorClasses = std::move(classes); }
    TOutOfRangePolicy GetOutOfRangePolicy() const override { return FOutOfRangePolicy; }
    void SetOutOfRangePolicy(TOutOfRangePolicy policy) override { FOutOfRangePolicy = policy; }

    static std::shared_ptr<IColorClasses> CopyOf(const std::shared_ptr<IColorClasses>& classes) {
        return classes ? TColorClassesFactory::GetObject(classes) : nullptr;
    }

private:
    std::shared_ptr<IColorClasses> FColorClasses;
    TOutOfRangePolicy FOutOfRangePolicy = TOutOfRangePolicy::orpReturnNil;
};

// From one edge to the next every comparison with a bound has one outcome, so the edge speaks for all values there.
std::shared_ptr<const TColorSteps> TColorClassCalculator::GetColorSteps() const {
    if (!FColorClasses || !TColorClassesFactory::IsMaker(*FColorClasses) ||
        FColorClasses->GetClasses().Count() > MostClasses)
        return nullptr;
    TColorSteps steps(GetColor(std::numeric_limits<float>::quiet_NaN()));
    for (float edge : EdgesOf(FColorClasses->GetClasses()))
        steps.Add(edge, GetColor(edge));
    return std::make_shared<const TColorSteps>(std::move(steps));
}

} // namespace

std::shared_ptr<IColorClassCalculator> TColorClassCalculatorFactory::GetObject() {
    return std::make_shared<TColorClassCalculator>();
}

std::shared_ptr<IColorClassCalculator>
TColorClassCalculatorFactory::GetObject(const std::shared_ptr<IColorClassCalculator>& source) {
    if (!source)
        throw EExArgumentNilException(QStringLiteral("TColorClassCalculatorFactory.GetObject"),
                                      QStringLiteral("source"));
    return GetObject(TColorClassCalculator::CopyOf(source->GetColorClasses()));
}

std::shared_ptr<IColorClassCalculator> TColorClassCalculatorFactory::GetObject(std::shared_ptr<IColorClasses> classes) {
    return std::make_shared<TColorClassCalculator>(std::move(classes));
}

std::shared_ptr<IColorClassCalculator>
TColorClassCalculatorFactory::GetObject(std::span<const TColorClass* const> classes) {
    return GetObject(TColorClassesFactory::GetObject(classes));
}

} // namespace lmx
