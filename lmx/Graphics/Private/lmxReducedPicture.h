#pragma once

#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxWideRect.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <cstdint>
#include <vector>

namespace lmx {

/// Stretches the pieces of one picture again and again. Where a piece is shown smaller than it is, its reduced form is
/// kept from the second drawing at one size on: panning and repainting then read as many pixels as they show, not the
/// picture itself. The result is that of TBitmap32::Draw, pixel for pixel.
class TReducedPictures {
public:
    /// Draws `sourceRect` of `picture` into `destination`. `piece` numbers the pieces of one paint, from 0.
    /// Without memory for a reduced form the picture itself is drawn.
    void Draw(TBitmap32& target, std::size_t piece, const TWideRect& destination, const TRect& sourceRect,
              const TBitmap32& picture);

    /// Forgets everything. To be called when the picture changes.
    void Clear() { FPieces.clear(); }

private:
    /// How a piece was drawn last, and its reduced form if that is kept.
    struct TPiece {
        TRect SourceRect;
        std::uint64_t Width = 0;
        std::uint64_t Height = 0;
        TBitmap32 Reduced;
    };

    std::vector<TPiece> FPieces;
};

} // namespace lmx
