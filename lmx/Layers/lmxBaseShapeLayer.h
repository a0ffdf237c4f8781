#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Layers/lmxBufferedMapLayer.h>
#include <lmx/Runtime/lmxExport.h>

#include <memory>

namespace lmx {

/// A buffered layer that draws shapes in one colour.
class LMX_EXPORT TBaseShapeLayer : public TBufferedMapLayer {
public:
    explicit TBaseShapeLayer(const std::shared_ptr<ILayerManager>& layerManager);

    TColor32 GetColor() const { return FColor; } ///< 0, which shows nothing, until set
    /// A new colour drops the picture, repaints and makes a new legend control.
    virtual void SetColor(TColor32 color);

protected:
    /// Copies what the base layer copies, and the colour.
    void UpdateDuplicateBaseShapeLayer(TBaseShapeLayer* target) const;

private:
    TColor32 FColor = 0;
};

} // namespace lmx
