#pragma once

#include <lmx/Colour/Steps/Private/lmxColorPieces.h>
#include <lmx/Colour/Steps/Private/lmxColorSteps.h>
#include <lmx/Colour/Steps/Private/lmxLatestResult.h>

#include <cstddef>
#include <cstdint>
#include <memory>

namespace lmx {

class TColorTable;
class TLayerOpacity;

/// A calculator that can tell its colours in advance, so that a renderer need not ask for each cell.
class TStepwiseColorCalculator {
public:
    virtual ~TStepwiseColorCalculator() = default;

    /// The colours of all values, exactly as GetColor gives them now. Nil if GetColor has to be asked: because it may
    /// raise, or because its colours come from a host's own object. Nil also for a gradient with so many colours that
    /// listing them would cost more than colouring (MostGradientSteps): GetColorPieces tells its colours.
    virtual std::shared_ptr<const TColorSteps> GetColorSteps() const = 0;

    /// The same colours in the form that gradients of any number of stops have; nil for other calculators, and if
    /// GetColor has to be asked.
    virtual std::shared_ptr<const TColorPieces> GetColorPieces() const { return nullptr; }

    /// The number that the steps of a gradient, or of its parts together, cannot exceed.
    virtual std::size_t GetStepLimit() const { return 0; }

    static constexpr std::size_t MostGradientSteps = 65535; ///< limit up to which gradients list their steps

    /// The same colours, faded, for a render. The table is kept for the next render: for a small raster, or for the
    /// next time step of a large one, it costs more than colouring.
    std::shared_ptr<const TColorTable> GetColorTable(const TLayerOpacity& opacity) const;

private:
    struct TKey {
        std::shared_ptr<const TColorSteps> Steps;
        std::shared_ptr<const TColorPieces> Pieces;
        std::uint8_t LayerAlpha;

        bool operator==(const TKey& other) const;
    };

    mutable TLatestResult<TKey, std::shared_ptr<const TColorTable>> FTable;
};

} // namespace lmx
