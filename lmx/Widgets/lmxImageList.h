#pragma once

#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <QColor>
#include <QImage>
#include <QPainter>

#include <functional>
#include <vector>

namespace lmx {

/// Images of one size, found by their index. Each is made anew for the density and the text colour that it is drawn
/// with. Main thread only.
class LMX_EXPORT TImageList {
public:
    /// Makes the image with `ratio` device pixels for each logical one, which the image carries. `ink` is the colour of
    /// the text around it, for images that follow the theme.
    using TPicture = std::function<QImage(double ratio, const QColor& ink)>;

    explicit TImageList(TSize size) : FSize(size) {}

    TSize GetSize() const { return FSize; } ///< of each image, in logical pixels
    int GetCount() const { return static_cast<int>(FPictures.size()); }

    /// Appends an image and gives its index. An empty picture draws nothing.
    int Add(TPicture picture);
    /// Puts another image in the place of one, which is given back; an index outside the list does nothing.
    TPicture Replace(int index, TPicture picture);

    /// A null image for an index outside the list.
    QImage GetImage(int index, double ratio, const QColor& ink) const;
    /// Draws an image at the density of the painter's device; an index outside the list draws nothing.
    void Draw(QPainter& canvas, TPoint topLeft, int index, const QColor& ink) const;

private:
    bool Contains(int index) const { return index >= 0 && index < GetCount(); }

    TSize FSize;
    std::vector<TPicture> FPictures;
};

} // namespace lmx
