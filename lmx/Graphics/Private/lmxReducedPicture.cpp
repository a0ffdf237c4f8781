
#include <lmx/Graphics/Private/lmxReducedPicture.h>

#include <lmx/Runtime/Private/lmxMemory.h>

namespace lmx {

namespace {

/// From one edge to another that is not before it. The difference of two numbers of 64 bits needs their sign bit too.
std::uint64_t Distance(std::int64_t from, std::int64_t to) {
    return static_cast<std::uint64_t>(to) - static_cast<std::uint64_t>(from);
}

// Reduced on both sides: it takes less memory than the picture, and stretching it costs more than it shows.
bool IsReduction(std::uint64_t width, std::uint64_t height, const TRect& sourceRect) {
    const auto sourceWidth = static_cast<std::uint64_t>(sourceRect.GetWidth());
    const auto sourceHeight = static_cast<std::uint64_t>(sourceRect.GetHeight());
    return width <= sourceWidth && height <= sourceHeight && (width < sourceWidth || height < sourceHeight);
}

bool LiesInside(const TRect& rect, const TBitmap32& picture) {
    return rect.Left >= 0 && rect.Top >= 0 && rect.Right <= picture.GetWidth() && rect.Bottom <= picture.GetHeight();
}

} // namespace

void TReducedPictures::Draw(TBitmap32& target, std::size_t piece, const TWideRect& destination, const TRect& sourceRect,
                            const TBitmap32& picture) {
    if (destination.IsEmpty() || sourceRect.IsEmpty())
        return;
    if (piece >= FPieces.size())
        WithinMemory([&] { FPieces.resize(piece + 1); });
    TPiece& kept = FPieces[piece];
    const std::uint64_t width = Distance(destination.Left, destination.Right);
    const std::uint64_t height = Distance(destination.Top, destination.Bottom);
    const bool isRepeated = kept.SourceRect == sourceRect && kept.Width == width && kept.Height == height;
    if (!isRepeated) {
        kept = {sourceRect, width, height, {}};
    } else if (kept.Reduced.IsEmpty() && IsReduction(width, height, sourceRect) && LiesInside(sourceRect, picture)) {
        try {
            kept.Reduced =
                picture.Stretched(sourceRect, static_cast<std::int32_t>(width), static_cast<std::int32_t>(height));
        } catch (const EOutOfMemory&) {
            // By contract: it only saves time.
        }
    }
    if (kept.Reduced.IsEmpty())
        target.Draw(destination, sourceRect, picture);
    else
        target.Draw(destination, kept.Reduced.GetBounds(), kept.Reduced);
}

} // namespace lmx
