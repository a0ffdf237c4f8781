#pragma once

#include <lmx/Layers/lmxRasterMapLayer.h>
#include <lmx/Runtime/lmxExport.h>

#include <memory>
#include <vector>

namespace lmx {

class ICookieData;
class IIdrisiImageExporter;
class IMapData;
class IRasterRenderer;
class TAbstractImage;

/// Shows an Idrisi image: renders it at one pixel for each cell and stretches that picture onto the map, cut and moved
/// where its area reaches over the seam of the world.
class LMX_EXPORT TIdrisiMapLayer : public TRasterMapLayer {
public:
    explicit TIdrisiMapLayer(const std::shared_ptr<ILayerManager>& layerManager);
    ~TIdrisiMapLayer() override;

    TAbstractImage* GetImage() const { return FImage.get(); } ///< nil if there is none
    /// A share in the image, or nil: an image that the layer owns stays as long as the share.
    const std::shared_ptr<TAbstractImage>& GetSharedImage() const { return FImage; }
    /// Shows another image, or none with nil. Its values are copied, its header gives the layer's area and value range;
    /// the calculator stays. The old picture stays until Render is called. The image is the host's and must outlive its
    /// time on the map, unless SetOwnsImage has said that the layer owns what it is given: then it goes with the layer.
    void SetImage(TAbstractImage* image);
    /// As SetImage; the layer owns the image, and frees it when another one replaces it. Where SetImage colours the old
    /// image once more before it goes, this leaves its picture as it is, unless calculator or opacity are others by
    /// then.
    void TakeImage(std::unique_ptr<TAbstractImage> image);
    /// Whether the layer frees its image. False after construction.
    bool GetOwnsImage() const { return FOwnsImage; }
    /// Says it for the present image, and for those that SetImage gives from now on.
    void SetOwnsImage(bool ownsImage);

    /// Chooses the legend by the kind of calculator.
    void CreateLegendComponent() override;
    TLayerOptionFlags GetLayerOptionFlags() const override; ///< the base's and lofDuplicate
    /// @throws ENotImplemented "Not implemented" in a world whose X does not grow to the right or Y not upwards.
    void Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) override;
    QString GetLayerTypeName() const override; ///< "Idrisi Image (Raster)"
    /// The base's entries and the three exports, enabled if there is an image.
    void GetContextMenuItems(std::vector<TLayerMenuItem>* list) override;
    /// "Extent", "Raster display", "Image header" if there is an image, and "Layer attributes".
    /// @throws EArgumentException "ColorCalc is null" without a calculator, when the first page is there.
    void InitPropertiesDialog(TLayerPropertiesDialog* dialog) override;
    using TRasterMapLayer::Duplicate;
    /// A layer with a copy of the image, which it owns, rendered, with opacity 255.
    std::unique_ptr<TBaseLayerManagerLayer> Duplicate(const std::shared_ptr<ILayerManager>& manager) const override;
    /// Makes the bitmap if there is an image and a calculator; else leaves it as it is.
    void Render() override;

    /// Asks the user for a file and writes the whole image to it. A cancelled dialog is no failure; those of the
    /// exporter pass through. Nothing is written if the layer or its image goes while the dialog is open.
    void DoExport(const QString& description, const QString& extension, IIdrisiImageExporter& exporter);

protected:
    void UpdateDuplicateIdrisiMapLayer(TIdrisiMapLayer* target) const;

private:
    enum class TOrigin { orGiven, orTaken };

    /// What a picture was made from.
    struct TIngredients {
        std::weak_ptr<const IMapData> Data;
        std::weak_ptr<const IBaseColorCalculator> Colors;
        std::uint8_t Opacity = 255;

        bool AreSame(const TIngredients& other) const;
    };

    void ShowImage(const std::shared_ptr<TAbstractImage>& image, TOrigin origin);
    std::shared_ptr<TAbstractImage> ReplacedImage(const TAbstractImage* image) const;
    void StoreImage(const std::shared_ptr<TAbstractImage>& image, TOrigin origin);
    void StoreOwnsImage(bool ownsImage);
    void ExportIdrisiImageClick();
    void ExportAsciiClick();
    void ExportXYZClick();
    void PaintPiece(std::size_t number, const TMapArea& piece, const IWorldSystem& system,
                    const TWorldViewport& viewport, TBitmap32& bitmap);

    std::shared_ptr<TAbstractImage> FImage; // its last share frees it only while the layer owns it
    TOrigin FImageOrigin = TOrigin::orGiven;
    bool FOwnsImage = false;
    bool FOwnsGivenImages = false; // what the host has said last
    std::shared_ptr<IMapData> FMapData;
    std::shared_ptr<ICookieData> FCookieData;
    std::shared_ptr<IRasterRenderer> FRenderer;
    TIngredients FRendered;
    bool FIsReplacingImage = false;                               // by a taken one: the old picture is not made anew
    std::vector<std::shared_ptr<TAbstractImage>> FReplacedImages; // owned ones that were given: they may be given again
};

} // namespace lmx
