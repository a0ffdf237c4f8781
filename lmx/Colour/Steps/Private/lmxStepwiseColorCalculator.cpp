#include <lmx/Colour/Steps/Private/lmxStepwiseColorCalculator.h>

#include <lmx/Colour/Steps/Private/lmxColorStepTable.h>
#include <lmx/Colour/Steps/Private/lmxLayerOpacity.h>

namespace lmx {

bool TStepwiseColorCalculator::TKey::operator==(const TKey& other) const {
    return LayerAlpha == other.LayerAlpha && (Steps == other.Steps || *Steps == *other.Steps);
}

std::shared_ptr<const TColorStepTable> TStepwiseColorCalculator::GetColorTable(const TLayerOpacity& opacity) const {
    const std::shared_ptr<const TColorSteps> steps = GetColorSteps();
    if (!steps || steps->GetCount() > TColorStepTable::MaxStepCount)
        return nullptr;
    return FTable.Get(TKey{steps, opacity.GetLayerAlpha()},
                      [&] { return std::make_shared<const TColorStepTable>(*steps, opacity); });
}

} // namespace lmx
