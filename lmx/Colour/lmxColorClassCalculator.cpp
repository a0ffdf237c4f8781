#include <lmx/Colour/lmxColorClassCalculator.h>

#include <lmx/Colour/Private/lmxColorClassIndex.h>
#include <lmx/Colour/Steps/Private/lmxLatestResult.h>
#include <lmx/Colour/Steps/Private/lmxStepwiseColorCalculator.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <utility>

namespace lmx {

namespace {

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
    /// All that the colours depend on.
    struct TSource {
        std::shared_ptr<const TColorClassIndex> Index;
        TOutOfRangePolicy Policy;

        friend bool operator==(const TSource&, const TSource&) = default;
    };

    std::shared_ptr<IColorClasses> FColorClasses;
    TOutOfRangePolicy FOutOfRangePolicy = TOutOfRangePolicy::orpReturnNil;
    mutable TLatestResult<TSource, std::shared_ptr<const TColorSteps>> FSteps;
};

std::shared_ptr<const TColorSteps> TColorClassCalculator::GetColorSteps() const {
    const auto* classes = dynamic_cast<const IIndexedColorClasses*>(FColorClasses.get());
    if (!classes)
        return nullptr;
    const TSource source = {classes->GetIndex(), FOutOfRangePolicy};
    return FSteps.Get(source,
                      [&] { return std::make_shared<const TColorSteps>(source.Index->GetColorSteps(source.Policy)); });
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

std::shared_ptr<IColorClassCalculator>
TColorClassCalculatorFactory::GetObject(std::initializer_list<TColorClass> classes) {
    return GetObject(TColorClassesFactory::GetObject(classes));
}

std::shared_ptr<IColorClassCalculator> TColorClassCalculatorFactory::GetObject(std::nullptr_t) {
    return GetObject();
}

} // namespace lmx
