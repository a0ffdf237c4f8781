#pragma once

#include <lmx/Climate/lmxClimateVariable.h>
#include <lmx/Colour/lmxBaseColorCalculator.h>
#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Layers/lmxBaseLayerManagerLayer.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxNullable.h>

#include <cstdint>
#include <memory>

namespace lmx {

class TReducedPictures;

/// A layer that shows one image: it holds the rendered bitmap, the colour calculator, the opacity, the value range and
/// the climate variable, and knows when the bitmap must be made again. It is ready to draw exactly while it has a
/// bitmap. It renders and paints nothing itself.
class LMX_EXPORT TRasterMapLayer : public TBaseLayerManagerLayer {
public:
    explicit TRasterMapLayer(const std::shared_ptr<ILayerManager>& layerManager);
    ~TRasterMapLayer() override;

    /// Which climate variable the raster shows, if known.
    const TNullable<TClimateVariable>& GetClimateVariable() const { return FClimateVariable; }
    void SetClimateVariable(const TNullable<TClimateVariable>& variable) { FClimateVariable = variable; }

    std::uint8_t GetOpacity() const { return FOpacity; } ///< 0 to 255; 255 after construction
    /// A new opacity renders the raster again.
    void SetOpacity(std::uint8_t opacity);

    const TBitmap32* GetBitmap() const { return FBitmap.get(); } ///< one pixel for each cell, or nil
    /// Takes the bitmap; one that is not null makes the layer ready to draw.
    void SetBitmap(std::unique_ptr<TBitmap32> bitmap);
    /// Frees the bitmap. The ready flag stays as it is.
    void DeleteBitmap();

    const std::shared_ptr<IBaseColorCalculator>& GetColorCalc() const { return FColorCalc; }
    /// Another calculator renders the raster again and makes a new legend control. A calculator that is changed in
    /// place says nothing: call Invalidate.
    void SetColorCalc(const std::shared_ptr<IBaseColorCalculator>& colorCalc);

    const TValueRange& GetValueRange() const { return FValueRange; } ///< range of the values of the data
    /// Another range replaces a calculator that has a minimum and a maximum by its clone for that range (which resets a
    /// gradient's default colour); other calculators stay. Another layer that shares the calculator stays as it was.
    void SetValueRange(const TValueRange& range);

    /// Renders again if there is a bitmap; does nothing before the first render, which the owner asks for.
    void Invalidate() override;
    /// Makes the bitmap. Here: nothing.
    virtual void Render();

protected:
    /// Copies what the base layer copies, the climate variable and the value range, and gives the target a clone of the
    /// calculator. The opacity is not copied.
    void UpdateDuplicateRasterMapLayer(TRasterMapLayer* target) const;

    /// As SetBitmap, for what Render has made: the next render may have it back.
    void SetRenderedBitmap(std::unique_ptr<TBitmap32> bitmap);
    /// In a Render that Invalidate calls, the bitmap of the render before, for the next one to be rendered into it:
    /// memory that is taken anew costs more than colouring. Nil otherwise, and once it has been taken.
    std::unique_ptr<TBitmap32> TakeGivenUpBitmap();

    /// Stores the range and leaves the calculator alone.
    void StoreValueRange(const TValueRange& range) { FValueRange = range; }

    /// Draws pieces of the bitmap; forgets its reduced forms with each change of the bitmap.
    TReducedPictures& GetReducedPictures() { return *FReducedPictures; }

private:
    class TGivenUpBitmap;

    void StoreBitmap(std::unique_ptr<TBitmap32> bitmap, bool isRendered);

    TNullable<TClimateVariable> FClimateVariable;
    std::uint8_t FOpacity = 255;
    std::unique_ptr<TBitmap32> FBitmap;
    bool FIsRendered = false;                  ///< whether the bitmap was made by Render
    std::unique_ptr<TBitmap32> FGivenUpBitmap; ///< while Invalidate renders
    std::unique_ptr<TReducedPictures> FReducedPictures;
    std::shared_ptr<IBaseColorCalculator> FColorCalc;
    TValueRange FValueRange;
};

} // namespace lmx
