#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <memory>
#include <utility>

namespace lmx {

class TBitmap32;
struct TVectorDoc;

/// Draws a vector document over the whole of a bitmap, as the bitmap's combine mode says. Where the proportions differ
/// shapes are stretched. Strokes and texts are not: they take the smaller of the two scales, and letters keep their own
/// proportions. No stroke is thinner than one pixel. Main thread only, because of the texts.
class LMX_EXPORT TBitmap32VecDocRenderer {
public:
    TBitmap32VecDocRenderer() = default;
    explicit TBitmap32VecDocRenderer(std::shared_ptr<const TVectorDoc> document) : FDocument(std::move(document)) {}

    const std::shared_ptr<const TVectorDoc>& GetDocument() const { return FDocument; } ///< nil at first
    void SetDocument(std::shared_ptr<const TVectorDoc> document) { FDocument = std::move(document); }

    /// Draws nothing without a document, for one without width or height, and into an empty bitmap. The font of the
    /// bitmap stays as it is.
    void Render(TBitmap32& bitmap) const;

private:
    std::shared_ptr<const TVectorDoc> FDocument;
};

} // namespace lmx
