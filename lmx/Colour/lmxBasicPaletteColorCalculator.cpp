#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>

#include <lmx/Colour/Steps/Private/lmxPaletteBands.h>
#include <lmx/Colour/Steps/Private/lmxStepwiseColorCalculator.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <cmath>
#include <limits>
#include <utility>

namespace lmx {

namespace {

std::shared_ptr<IColorKey> CopyOf(const std::shared_ptr<IColorKey>& key) {
    return key ? TColorKeyFactory::GetObject(key) : nullptr;
}

class TBasicPaletteColorCalculator final : public TBaseMinMaxColorCalculator,
                                           public IBasicPaletteColorCalculator,
                                           public TStepwiseColorCalculator {
public:
    TBasicPaletteColorCalculator() = default;
    TBasicPaletteColorCalculator(float min, float max, std::shared_ptr<IColorKey> key, bool reserve)
        : TBaseMinMaxColorCalculator(min, max),
          FColorKey(std::move(key)),
          FReserveFirstColorForNoData(reserve) {}

    TColor32 GetColor(float value) const override;
    std::shared_ptr<const TColorSteps> GetColorSteps() const override;

    std::shared_ptr<IBaseColorCalculator> Clone() const override { return Clone(GetMinVal(), GetMaxVal()); }
    std::shared_ptr<IBaseColorCalculator> Clone(float min, float max) const override {
        return std::make_shared<TBasicPaletteColorCalculator>(min, max, CopyOf(FColorKey), FReserveFirstColorForNoData);
    }

    std::shared_ptr<IColorKey> GetColorKey() const override { return FColorKey; }
    void SetColorKey(std::shared_ptr<IColorKey> key) override { FColorKey = std::move(key); }
    bool GetReserveFirstColorForNoData() const override { return FReserveFirstColorForNoData; }
    void SetReserveFirstColorForNoData(bool reserve) override { FReserveFirstColorForNoData = reserve; }

private:
    std::size_t GetReservedCount() const { return FReserveFirstColorForNoData ? 1 : 0; }
    TPaletteBands GetBands(const std::vector<TColorKeyItem>& entries) const {
        return {GetMinVal(), GetMaxVal(), entries.size() - GetReservedCount()};
    }
    TColor32 GetOutsideColor(const std::vector<TColorKeyItem>& entries) const {
        return FReserveFirstColorForNoData ? entries.front().Color : 0;
    }

    std::shared_ptr<IColorKey> FColorKey;
    bool FReserveFirstColorForNoData = false;
};

TColor32 TBasicPaletteColorCalculator::GetColor(float value) const {
    if (!FColorKey)
        throw EInvalidOperation(QStringLiteral("ColorKey not specified"));
    const std::vector<TColorKeyItem>& entries = FColorKey->GetColors();
    if (entries.empty())
        throw EInvalidOperation(QStringLiteral("ColorKey contains no entries"));
    const TPaletteBands bands = GetBands(entries);
    if (!bands.Contains(value))
        return GetOutsideColor(entries);
    return entries[GetReservedCount() + bands.GetBand(value)].Color;
}

std::shared_ptr<const TColorSteps> TBasicPaletteColorCalculator::GetColorSteps() const {
    if (!FColorKey || FColorKey->GetColors().empty())
        return nullptr;
    const std::vector<TColorKeyItem>& entries = FColorKey->GetColors();
    const TPaletteBands bands = GetBands(entries);
    const std::optional<std::vector<float>> starts = bands.GetStarts();
    if (!starts)
        return nullptr;
    TColorSteps steps(GetOutsideColor(entries));
    for (std::size_t band = 0; band < starts->size(); ++band)
        steps.Add((*starts)[band], entries[GetReservedCount() + band].Color);
    if (!starts->empty())
        steps.Add(std::nextafter(GetMaxVal(), std::numeric_limits<float>::infinity()), GetOutsideColor(entries));
    return std::make_shared<const TColorSteps>(std::move(steps));
}

} // namespace

std::shared_ptr<IBasicPaletteColorCalculator> TBasicPaletteColorCalculatorFactory::GetObject() {
    return std::make_shared<TBasicPaletteColorCalculator>();
}

std::shared_ptr<IBasicPaletteColorCalculator>
TBasicPaletteColorCalculatorFactory::GetObject(const std::shared_ptr<IBasicPaletteColorCalculator>& source) {
    if (!source)
        throw EExArgumentNilException(QStringLiteral("TBasicPaletteColorCalculatorFactory.GetObject"),
                                      QStringLiteral("source"));
    return std::make_shared<TBasicPaletteColorCalculator>(source->GetMinVal(), source->GetMaxVal(),
                                                          CopyOf(source->GetColorKey()),
                                                          source->GetReserveFirstColorForNoData());
}

std::shared_ptr<IBasicPaletteColorCalculator>
TBasicPaletteColorCalculatorFactory::GetObject(const TValueRange& range, std::span<const TColorKeyItem> items,
                                               bool reserveFirstColorForNoData) {
    return std::make_shared<TBasicPaletteColorCalculator>(static_cast<float>(range.Low), static_cast<float>(range.High),
                                                          TColorKeyFactory::GetObject(items),
                                                          reserveFirstColorForNoData);
}

std::shared_ptr<IBasicPaletteColorCalculator>
TBasicPaletteColorCalculatorFactory::GetObject(const TValueRange& range, std::initializer_list<TColorKeyItem> items,
                                               bool reserveFirstColorForNoData) {
    return GetObject(range, std::span<const TColorKeyItem>(items), reserveFirstColorForNoData);
}

} // namespace lmx
