
#include <lmx/Graphics/Private/lmxReducedPicture.h>

namespace lmx {

namespace {

// Reduced on both sides: it takes less memory than the picture, and stretching it costs more than it shows.
bool IsReduction(std::int64_t width, std::int64_t height, const TRect& sourceRect) {
    return width > 0 && height > 0 && width <= sourceRect.GetWidth() && height <= sourceRect.GetHeight() &&
           (width < sourceRect.GetWidth() || height < sourceRect.GetHeight());
}

bool LiesInside(const TRect& rect, const TBitmap32& picture) {
    return rect.Left >= 0 && rect.Top >= 0 && rect.Right <= picture.GetWidth() && rect.Bottom <= picture.GetHeight();
}

} // namespace

void TReducedPictures::Draw(TBitmap32& target, std::size_t piece, const TWideRect& destination, const TRect& sourceRect,
                            const TBitmap32& picture) {
    if (piece >= FPieces.size())
        FPieces.resize(piece + 1);
    TPiece& kept = FPieces[piece];
    const std::int64_t width = destination.Right - destination.Left;
    const std::int64_t height = destination.Bottom - destination.Top;
    const bool isRepeated = kept.SourceRect == sourceRect && kept.Width == width && kept.Height == height;
    if (!isRepeated) {
        kept = {sourceRect, width, height, {}};
    } else if (kept.Reduced.IsEmpty() && IsReduction(width, height, sourceRect) && LiesInside(sourceRect, picture)) {
        kept.Reduced =
            picture.Stretched(sourceRect, static_cast<std::int32_t>(width), static_cast<std::int32_t>(height));
    }
    if (kept.Reduced.IsEmpty())
        target.Draw(destination, sourceRect, picture);
    else
        target.Draw(destination, kept.Reduced.GetBounds(), kept.Reduced);
}

} // namespace lmx
