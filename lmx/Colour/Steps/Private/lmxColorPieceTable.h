#pragma once

#include <lmx/Colour/Steps/Private/lmxColorPieces.h>
#include <lmx/Colour/Steps/Private/lmxColorTable.h>
#include <lmx/Colour/Steps/Private/lmxLayerOpacity.h>
#include <lmx/Colour/Steps/Private/lmxValuePages.h>

#include <cstdint>
#include <vector>

namespace lmx {

/// Works colours out between the stops of gradients. The piece of a value is found through pages, of which most hold
/// few starts, and by halving where a page holds many.
class TColorPieceTable final : public TColorTable {
public:
    TColorPieceTable(const TColorPieces& pieces, const TLayerOpacity& opacity);

    void GetColors(std::span<const float> values, TColor32* colors, std::span<const float> next = {}) const override;

private:
    /// A piece in the form that takes the fewest steps to a colour; one line of the cache.
    struct alignas(64) TPiece {
        explicit TPiece(const TColorPiece& piece);

        double Min;
        double PositionsPerValue; ///< nearly
        double Location;
        double StepsPerPosition;
        std::uint64_t From; ///< the four channels apart
        std::uint64_t To;
        float SingleMin;
        float SingleMax;
    };

    std::size_t FindPiece(std::uint32_t page, float value) const;
    static TColor32 ColorOf(const TPiece& piece, float value);

    TLayerOpacity FOpacity;
    std::vector<float> FStarts;               ///< of the pieces after the first; then two that no value reaches
    std::vector<TPiece> FPieces;              ///< what is no number has the first one
    TValuePages FCut;                         ///< of the starts
    std::vector<std::uint32_t> FFirstInPages; ///< index of the first start in each page, and their number at last
};

} // namespace lmx
