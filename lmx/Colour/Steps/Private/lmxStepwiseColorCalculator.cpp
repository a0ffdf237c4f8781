#include <lmx/Colour/Steps/Private/lmxStepwiseColorCalculator.h>

#include <lmx/Colour/Steps/Private/lmxColorPieceTable.h>
#include <lmx/Colour/Steps/Private/lmxColorStepTable.h>
#include <lmx/Colour/Steps/Private/lmxLayerOpacity.h>

namespace lmx {

namespace {

/// Whether both are the same, or both there and equal.
template<class T>
bool AreEqual(const std::shared_ptr<T>& a, const std::shared_ptr<T>& b) {
    return a == b || (a && b && *a == *b);
}

} // namespace

bool TStepwiseColorCalculator::TKey::operator==(const TKey& other) const {
    return LayerAlpha == other.LayerAlpha && AreEqual(Steps, other.Steps) && AreEqual(Pieces, other.Pieces);
}

std::shared_ptr<const TColorTable> TStepwiseColorCalculator::GetColorTable(const TLayerOpacity& opacity) const {
    const std::shared_ptr<const TColorSteps> steps = GetColorSteps();
    const std::shared_ptr<const TColorPieces> pieces = steps ? nullptr : GetColorPieces();
    if (!steps && !pieces)
        return nullptr;
    return FTable.Get(TKey{steps, pieces, opacity.GetLayerAlpha()}, [&]() -> std::shared_ptr<const TColorTable> {
        if (steps)
            return std::make_shared<const TColorStepTable>(*steps, opacity);
        return std::make_shared<const TColorPieceTable>(*pieces, opacity);
    });
}

} // namespace lmx
