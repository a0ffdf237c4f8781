#pragma once

#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Pictures/lmxMapPicture.h>

#include <memory>

namespace lmx {

/// All that a picture is made from, held for as long as it is made: whatever happens meanwhile.
struct TPictureOrder {
    std::shared_ptr<ILayerManager> Manager;
    std::shared_ptr<IWorldSystem> WorldSystem;
    TMapPictureOptions Options;
};

struct TPaintedPicture {
    TBitmap32 Bitmap;
    TMapPictureDescription Description;
};

/// What TMapPicture::Paint and Describe are made of, with their failures. The description is that of the moment at
/// which the picture was ready.
TPaintedPicture PaintPicture(const TPictureOrder& order);
TMapPictureDescription DescribePicture(const TPictureOrder& order);

} // namespace lmx
