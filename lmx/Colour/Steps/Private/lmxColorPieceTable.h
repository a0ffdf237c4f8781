#pragma once

#include <lmx/Colour/Steps/Private/lmxColorPieces.h>
#include <lmx/Colour/Steps/Private/lmxColorTable.h>
#include <lmx/Colour/Steps/Private/lmxLayerOpacity.h>
#include <lmx/Colour/Steps/Private/lmxValuePages.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lmx {

/// Works colours out between the stops of gradients. The piece of a value is found through pages, which hold the few
/// starts in them, and by halving where a page would hold many.
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

    /// What a value is compared with to find its piece.
    struct alignas(16) TPage {
        static constexpr std::size_t MostStarts = 3;
        static constexpr std::uint32_t Crowded = std::uint32_t{1} << 31;

        /// Of the starts that lie here; `first` is the index of the first one.
        TPage(std::uint32_t first, std::span<const float> starts);

        std::uint32_t First;                  ///< its index; with the bit Crowded, where more lie here than are held
        std::array<float, MostStarts> Starts; ///< behind them NaN, which no value reaches
    };

    std::uint32_t FindPiece(std::uint32_t page, float value) const;
    static TColor32 ColorOf(const TPiece& piece, float value);

    TLayerOpacity FOpacity;
    std::vector<float> FStarts;  ///< of the pieces after the first
    std::vector<TPiece> FPieces; ///< what is no number has the first one
    TValuePages FCut;            ///< of the starts
    std::vector<TPage> FPages;   ///< and one behind the last
};

} // namespace lmx
