#include <lmx/Colour/lmxGradientColorCalculator.h>

#include <lmx/Colour/Private/lmxRangeChanges.h>
#include <lmx/Colour/Steps/Private/lmxGradientPosition.h>
#include <lmx/Colour/Steps/Private/lmxGradientSteps.h>
#include <lmx/Colour/Steps/Private/lmxLatestResult.h>
#include <lmx/Colour/Steps/Private/lmxStepwiseColorCalculator.h>
#include <lmx/Graphics/Private/lmxSortedStops.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Graphics/lmxGradientSource.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <cmath>
#include <utility>
#include <vector>

namespace lmx {

namespace {

std::shared_ptr<IGradient> CopyOf(const std::shared_ptr<IGradient>& gradient) {
    return gradient ? TGradientFactory::GetObject(gradient) : nullptr;
}

class TGradientColorCalculator final : public TBaseMinMaxColorCalculator,
                                       public IGradientColorCalculator,
                                       public TStepwiseColorCalculator {
public:
    TGradientColorCalculator() = default;
    TGradientColorCalculator(float min, float max, TColor32 defaultColor, std::shared_ptr<IGradient> gradient)
        : TBaseMinMaxColorCalculator(min, max),
          FGradient(std::move(gradient)),
          FDefaultColor(defaultColor) {}

    TColor32 GetColor(float value) const override;
    std::shared_ptr<const TColorSteps> GetColorSteps() const override;
    std::shared_ptr<const TColorPieces> GetColorPieces() const override;
    std::size_t GetStepLimit() const override;

    void SetMinVal(float value) override {
        TBaseMinMaxColorCalculator::SetMinVal(value);
        TRangeChanges::Add();
    }
    void SetMaxVal(float value) override {
        TBaseMinMaxColorCalculator::SetMaxVal(value);
        TRangeChanges::Add();
    }

    std::shared_ptr<IBaseColorCalculator> Clone() const override {
        return std::make_shared<TGradientColorCalculator>(GetMinVal(), GetMaxVal(), FDefaultColor, CopyOf(FGradient));
    }
    std::shared_ptr<IBaseColorCalculator> Clone(float min, float max) const override {
        return TGradientColorCalculatorFactory::GetObject(min, max, CopyOf(FGradient));
    }

    std::shared_ptr<IGradient> GetGradient() const override { return FGradient; }
    void SetGradient(std::shared_ptr<IGradient> gradient) override { FGradient = std::move(gradient); }
    TColor32 GetDefaultColor() const override { return FDefaultColor; }
    void SetDefaultColor(TColor32 color) override { FDefaultColor = color; }

private:
    /// All that the colours depend on.
    struct TSource {
        float MinVal;
        float MaxVal;
        TColor32 DefaultColor;
        std::vector<TColorStop> Stops;

        friend bool operator==(const TSource&, const TSource&) = default;
    };

    TColor32 GetGradientColor(double position) const;
    const IGradient* GetToldGradient() const;

    /// What `make` gives of the gradient and its range, kept or new; for a collapsed range its last colour alone.
    template<class Steps>
    std::shared_ptr<const Steps> Get(TLatestResult<TSource, std::shared_ptr<const Steps>>& kept,
                                     Steps (*make)(const TSortedStops&, float, float, TColor32)) const;

    std::shared_ptr<IGradient> FGradient;
    TColor32 FDefaultColor = 0;
    mutable TLatestResult<TSource, std::shared_ptr<const TColorSteps>> FSteps;
    mutable TLatestResult<TSource, std::shared_ptr<const TColorPieces>> FPieces;
};

TColor32 TGradientColorCalculator::GetColor(float value) const {
    if (IsCollapsedRange(GetMinVal(), GetMaxVal()))
        return GetGradientColor(1.0);
    const float position = GradientPosition(value, GetMinVal(), GetMaxVal());
    return position >= 0 && position <= 1 ? GetGradientColor(position) : FDefaultColor;
}

/// The gradient, if its stops say all about the colours; else nil.
const IGradient* TGradientColorCalculator::GetToldGradient() const {
    if (!FGradient || !TGradientFactory::IsMaker(*FGradient))
        return nullptr;
    const bool isFinite = std::isfinite(GetMinVal()) && std::isfinite(GetMaxVal());
    return isFinite || IsCollapsedRange(GetMinVal(), GetMaxVal()) ? FGradient.get() : nullptr;
}

template<class Steps>
std::shared_ptr<const Steps> TGradientColorCalculator::Get(TLatestResult<TSource, std::shared_ptr<const Steps>>& kept,
                                                           Steps (*make)(const TSortedStops&, float, float,
                                                                         TColor32)) const {
    const TColorStops& stops = std::as_const(*FGradient).GetColorStops();
    return kept.Get({GetMinVal(), GetMaxVal(), FDefaultColor, stops}, [&] {
        return std::make_shared<const Steps>(IsCollapsedRange(GetMinVal(), GetMaxVal())
                                                 ? Steps(FGradient->GetColor(1.0))
                                                 : make(TSortedStops(stops), GetMinVal(), GetMaxVal(), FDefaultColor));
    });
}

std::shared_ptr<const TColorSteps> TGradientColorCalculator::GetColorSteps() const {
    if (!GetToldGradient() || GetStepLimit() > MostGradientSteps)
        return nullptr;
    return Get(FSteps, &GradientColorSteps);
}

std::shared_ptr<const TColorPieces> TGradientColorCalculator::GetColorPieces() const {
    return GetToldGradient() ? Get(FPieces, &GradientColorPieces) : nullptr;
}

std::size_t TGradientColorCalculator::GetStepLimit() const {
    const IGradient* gradient = GetToldGradient();
    return gradient ? GradientStepLimit(gradient->GetColorStops().size()) : 0;
}

TColor32 TGradientColorCalculator::GetGradientColor(double position) const {
    if (!FGradient)
        throw EInvalidOperation(QStringLiteral("Gradient not specified"));
    return FGradient->GetColor(position);
}

} // namespace

std::shared_ptr<IGradientColorCalculator> TGradientColorCalculatorFactory::GetObject() {
    return std::make_shared<TGradientColorCalculator>();
}

std::shared_ptr<IGradientColorCalculator>
TGradientColorCalculatorFactory::GetObject(float min, float max, std::shared_ptr<IGradient> gradient) {
    return GetObject(min, max, 0, std::move(gradient));
}

std::shared_ptr<IGradientColorCalculator>
TGradientColorCalculatorFactory::GetObject(float min, float max, TColor32 defaultColor,
                                           std::shared_ptr<IGradient> gradient) {
    return std::make_shared<TGradientColorCalculator>(min, max, defaultColor, std::move(gradient));
}

std::shared_ptr<IGradientColorCalculator>
TGradientColorCalculatorFactory::GetObject(const TValueRange& range, std::shared_ptr<IGradient> gradient) {
    return GetObject(static_cast<float>(range.Low), static_cast<float>(range.High), std::move(gradient));
}

std::shared_ptr<IGradientColorCalculator>
TGradientColorCalculatorFactory::GetObject(const std::shared_ptr<IGradientColorCalculator>& source) {
    if (!source)
        throw EExArgumentNilException(QStringLiteral("TGradientColorCalculatorFactory.GetObject"),
                                      QStringLiteral("source"));
    return GetObject(source->GetMinVal(), source->GetMaxVal(), source->GetDefaultColor(),
                     CopyOf(source->GetGradient()));
}

std::shared_ptr<IGradientColorCalculator> TGradientColorCalculatorFactory::GetObject(const IGradientSource* editor) {
    if (!editor)
        throw EExArgumentNilException(QStringLiteral("TGradientColorCalculatorFactory.GetObject"),
                                      QStringLiteral("editor"));
    return GetObject(TValueRange(editor->GetLowValue(), editor->GetHighValue()), editor->GetGradient());
}

} // namespace lmx
