#pragma once

#include <lmx/Formats/Idrisi/lmxImageHeader.h>
#include <lmx/Raster/lmxBaseLinearRasterFrame.h>
#include <lmx/Runtime/lmxExport.h>

namespace lmx {

class TAbstractImage;

/// A raster frame over an Idrisi image.
class LMX_EXPORT IIdrisiRasterFrame : public virtual ILinearRasterFrame {
public:
    virtual const TImageHeader& GetHeader() const = 0;
};

/// The bridge from the Idrisi image classes to raster frames. It takes place, size and kind from an image and does not
/// copy cells yet, so no frame of this class comes into being: maps read images through TIdrisiImageMapData.
class LMX_EXPORT TIdrisiRasterFrame final : public TBaseLinearRasterFrame, public IIdrisiRasterFrame {
public:
    /// @throws EExArgumentNilException if the image is null.
    /// @throws EInvalidOperation "Unsupported Idrisi Image type" if it is none of the four image classes.
    /// @throws EArgumentException "Frame size is negative" if its header says so.
    /// @throws ENotImplemented "TIdrisiRasterFrame.Create" otherwise.
    explicit TIdrisiRasterFrame(const TAbstractImage* image);

    const TImageHeader& GetHeader() const override { return FHeader; }

private:
    TImageHeader FHeader;
};

} // namespace lmx
