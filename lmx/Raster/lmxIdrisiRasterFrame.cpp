#include <lmx/Raster/lmxIdrisiRasterFrame.h>

#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Formats/Idrisi/lmxIdrisiImages.h>
#include <lmx/Runtime/lmxExceptions.h>

namespace lmx {

namespace {

const TImageHeader& HeaderOf(const TAbstractImage* image) {
    if (!image)
        throw EExArgumentNilException(QStringLiteral("TIdrisiRasterFrame.Create"), QStringLiteral("image"));
    return *image->getHeader();
}

TMapArea AreaOf(const TImageHeader& header) {
    return {header.GetMinX(), header.GetMaxY(), header.GetMaxX(), header.GetMinY()};
}

TDataKind KindOf(const TAbstractImage* image) {
    if (dynamic_cast<const TByteImage*>(image))
        return TDataKind::dkByte;
    if (dynamic_cast<const TIntegerImage*>(image))
        return TDataKind::dkInt;
    if (dynamic_cast<const TRealImage*>(image) || dynamic_cast<const TAsciiImage*>(image))
        return TDataKind::dkFloat;
    throw EInvalidOperation(QStringLiteral("Unsupported Idrisi Image type"));
}

} // namespace

TIdrisiRasterFrame::TIdrisiRasterFrame(const TAbstractImage* image) : FHeader(HeaderOf(image)) {
    const TDataKind kind = KindOf(image);
    // Without cells: memory for them belongs to their copying, and a header may claim any size.
    SetGeometry(AreaOf(FHeader), FHeader.GetWidth(), FHeader.GetHeight(), kind);
    throw ENotImplemented(QStringLiteral("TIdrisiRasterFrame.Create"));
}

} // namespace lmx
