#include <lmx/Controls/Private/lmxMapCheckerboard.h>

#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxCheckerboard.h>

namespace lmx {

namespace {

constexpr TColor32 Gray = Color32(220, 220, 220, 255);

} // namespace

TMapCheckerboard::TMapCheckerboard() = default;
TMapCheckerboard::~TMapCheckerboard() = default;

void TMapCheckerboard::Paint(TBitmap32& bitmap, int square) {
    const TSize size = GetPictureSize();
    if (size.cx < bitmap.GetWidth() || size.cy < bitmap.GetHeight() || square != FSquare) {
        FPicture = std::make_unique<TBitmap32>(2 * bitmap.GetWidth(), 2 * bitmap.GetHeight());
        FSquare = square;
        DrawCheckerboard(*FPicture, clWhite32, Gray, square);
    }
    FPicture->DrawTo(bitmap, 0, 0);
}

TSize TMapCheckerboard::GetPictureSize() const {
    return FPicture ? TSize(FPicture->GetWidth(), FPicture->GetHeight()) : TSize();
}

} // namespace lmx
