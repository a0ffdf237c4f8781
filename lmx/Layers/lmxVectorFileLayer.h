#pragma once

#include <lmx/Layers/lmxBaseShapeLayer.h>
#include <lmx/Runtime/lmxExport.h>

#include <memory>

namespace lmx {

class TVector;

/// Shows the lines and polygons of a vector file in one colour: outlines one pixel wide, not antialiased and never
/// filled. A line breaks at a pen-up mark (0, 0), and where the world wraps: vertices are folded into the world's own
/// longitudes. Files of points or texts show nothing. The layer has no area of its own unless it is given one.
class LMX_EXPORT TVectorFileLayer : public TBaseShapeLayer {
public:
    explicit TVectorFileLayer(const std::shared_ptr<ILayerManager>& layerManager);
    ~TVectorFileLayer() override;

    TVector* GetVectorFile() const { return FVectorFile.get(); } ///< or nil
    /// Shows another file. The old picture stays until there is a new one; the layer's area stays. With nil there is
    /// never a new one: the old picture stays as after DeleteVectorFile.
    void SetVectorFile(std::unique_ptr<TVector> vectorFile);
    /// Frees the file. Tells nobody. The last picture stays, stretched to wherever the map is moved, until it is
    /// dropped: by another colour or Invalidate(true), or replaced by that of another file.
    void DeleteVectorFile();

    /// The legend of the vectors' colour.
    void CreateLegendComponent() override;
    bool GetHasContent() const override;                    ///< whether there is a file
    QString GetLayerTypeName() const override;              ///< "Vector"
    TLayerOptionFlags GetLayerOptionFlags() const override; ///< the base's and lofDuplicate
    using TBaseShapeLayer::Duplicate;
    /// A layer that reads the file again, or holds a copy of a vector that is from no file.
    /// @throws what TVector::LoadFromFile raises.
    std::unique_ptr<TBaseLayerManagerLayer> Duplicate(const std::shared_ptr<ILayerManager>& manager) const override;
    void RenderBuffer(TSize viewSize, const TMapArea& visibleMapArea, const TWorldViewportLocal& vpLocal) override;

private:
    void Comp_OnColorChanged(TColor color);
    std::unique_ptr<TVector> FVectorFile;
};

} // namespace lmx
