#pragma once

#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Colour/lmxMultipartGradient.h>

#include <memory>

// Calculators of a host's own, which may be of several kinds at once and colour nothing.

namespace lmx::tests {

struct TAsPalette : virtual IBasicPaletteColorCalculator {
    std::shared_ptr<IColorKey> GetColorKey() const override { return nullptr; }
    void SetColorKey(std::shared_ptr<IColorKey>) override {}
    bool GetReserveFirstColorForNoData() const override { return false; }
    void SetReserveFirstColorForNoData(bool) override {}
};
struct TAsClasses : IColorClassCalculator {
    std::shared_ptr<IColorClasses> GetColorClasses() const override { return nullptr; }
    void SetColorClasses(std::shared_ptr<IColorClasses>) override {}
    TOutOfRangePolicy GetOutOfRangePolicy() const override { return TOutOfRangePolicy::orpReturnNil; }
    void SetOutOfRangePolicy(TOutOfRangePolicy) override {}
};
struct TAsGradient : virtual IGradientColorCalculator {
    std::shared_ptr<IGradient> GetGradient() const override { return nullptr; }
    void SetGradient(std::shared_ptr<IGradient>) override {}
    TColor32 GetDefaultColor() const override { return 0; }
    void SetDefaultColor(TColor32) override {}
};
struct TAsParts : virtual IMultipartGradientColorCalculator {
    std::shared_ptr<IGradientColorCalculator> GetGradient(float) const override { return nullptr; }
    TColorParts& GetGradients() override { return Parts; }
    const TColorParts& GetGradients() const override { return Parts; }
    TColorParts Parts;
};

/// Of all those kinds at once.
template<class... Kinds>
struct TOfKinds final : TBaseMinMaxColorCalculator, Kinds... {
    TColor32 GetColor(float) const override { return 0; }
    std::shared_ptr<IBaseColorCalculator> Clone() const override { return nullptr; }
    std::shared_ptr<IBaseColorCalculator> Clone(float, float) const override { return nullptr; }
};

template<class... Kinds>
std::shared_ptr<IBaseColorCalculator> OfKinds() {
    return std::shared_ptr<TBaseMinMaxColorCalculator>(std::make_shared<TOfKinds<Kinds...>>());
}

} // namespace lmx::tests
