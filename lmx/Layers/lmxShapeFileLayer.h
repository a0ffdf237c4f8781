#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Layers/Render/lmxShapeFileProjection.h>
#include <lmx/Layers/lmxBaseShapeLayer.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExport.h>

#include <memory>

namespace lmx {

class TShpFile;
struct TShpData;

/// A way of drawing points other than squares. Nothing draws by it yet.
class LMX_EXPORT IShpPointRenderer {
public:
    virtual ~IShpPointRenderer() = default;
};

/// Shows a shape file in one colour: points as squares of 4 x 4 pixels, polygons and polylines as outlines one pixel
/// wide, not antialiased and never filled; first all points, then all polygons, then all polylines. A polygon is closed
/// by its own last vertex. Vertices lie where the projection puts them; nothing is folded at the seam of the world
/// unless the host asks for it.
/// Set the projection first, then the file.
class LMX_EXPORT TShapeFileLayer : public TBaseShapeLayer {
public:
    explicit TShapeFileLayer(const std::shared_ptr<ILayerManager>& layerManager);
    ~TShapeFileLayer() override;

    /// The file; nil while there is none, or once a file that the layer does not own is gone.
    TShpFile* GetShpFile() const;
    /// Shows another file: the old picture goes at once, and the layer's area becomes the file's bounds, projected, in
    /// longitudes and latitudes. An old file that the layer owns is freed, whatever renders it; renders keep what they
    /// need. GetOwnsShpFile stays as it is, and from now on says whose the new file is. The present file does nothing.
    /// @throws EExArgumentNilException naming "TShapeFileLayer.SetShpFile" and "ShpFile" if the file is nil.
    void SetShpFile(TShpFile* shpFile);
    /// As SetShpFile; the layer owns the file.
    void TakeShpFile(std::unique_ptr<TShpFile> shpFile);
    /// Takes the file off the layer, and frees it if the layer owns it. Tells nobody. The last picture stays, stretched
    /// to wherever the map is moved, until it is dropped: by another colour, another file or Invalidate(true).
    void DeleteShpFile();
    /// Whether the layer frees its file. True after construction.
    bool GetOwnsShpFile() const { return FOwnsShpFile; }
    void SetOwnsShpFile(bool ownsShpFile) { FOwnsShpFile = ownsShpFile; }

    /// TWGS84ShapeFileProjection after construction; nil means the same.
    const std::shared_ptr<const IShapeFileProjection>& GetProjection() const { return FProjection; }
    /// @throws EInvalidOperation "Projection must be set before ShapeFile is set" while there is a file.
    void SetProjection(std::shared_ptr<const IShapeFileProjection> projection);
    /// Where the projection puts a coordinate of the file.
    TMapPoint ProjectMapPoint(extended x, extended y) const;

    /// Whether, in a world of longitudes, shapes beyond its western or eastern edge are drawn once more a turn further,
    /// where the world has their places, and nothing is drawn beyond these edges. False after construction; documents
    /// keep it. By the layer's area it is decided whether there are any.
    bool GetFoldsAtSeam() const { return FFoldsAtSeam; }
    void SetFoldsAtSeam(bool foldsAtSeam);

    /// The legend of the file's colour. A host's factory, if there is one, decides: a control of another class than
    /// TShapeFileLayerLegendControl counts as none.
    void CreateLegendComponent() override;
    bool GetHasContent() const override;                    ///< whether there is a file
    QString GetLayerTypeName() const override;              ///< "Shape file"
    TLayerOptionFlags GetLayerOptionFlags() const override; ///< the base's and lofDuplicate
    using TBaseShapeLayer::Duplicate;
    /// A layer that reads the file again, converted as the projection file beside it says, and owns it. Damaged records
    /// are skipped if they were in this layer's file.
    /// @throws what TShpFile::LoadFromFile raises.
    std::unique_ptr<TBaseLayerManagerLayer> Duplicate(const std::shared_ptr<ILayerManager>& manager) const override;
    void RenderBuffer(TSize viewSize, const TMapArea& visibleMapArea, const TWorldViewportLocal& vpLocal) override;

private:
    void Comp_OnColorChanged(TBaseLegendControl* sender, TColor color);
    TWorldMapArea AreaOf(const TShpFile& shpFile) const;
    void ShowShpFile(TShpFile* shpFile, const TWorldMapArea& area);

    TBorrowed<TShpFile> FShpFile;
    std::shared_ptr<const IShapeFileProjection> FProjection;
    bool FOwnsShpFile = true;
    bool FFoldsAtSeam = false;
};

} // namespace lmx
