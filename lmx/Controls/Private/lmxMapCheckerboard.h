#pragma once

#include <lmx/Runtime/lmxGeometry.h>

#include <memory>

namespace lmx {

class TBitmap32;

/// The squares of white and gray that a view shows in the place of its background. Their picture is made by the first
/// paint and only grows, to twice the size at once, so that few changes of size draw it anew.
class TMapCheckerboard {
public:
    TMapCheckerboard();
    ~TMapCheckerboard();

    /// Covers the whole of `bitmap` with squares of `square` pixels; white begins at (0, 0).
    void Paint(TBitmap32& bitmap, int square);

    TSize GetPictureSize() const; ///< zero before the first paint

private:
    std::unique_ptr<TBitmap32> FPicture;
    int FSquare = 0;
};

} // namespace lmx
