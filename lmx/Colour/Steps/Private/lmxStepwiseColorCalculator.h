#pragma once

#include <lmx/Colour/Steps/Private/lmxColorSteps.h>
#include <lmx/Colour/Steps/Private/lmxLatestResult.h>

#include <cstdint>
#include <memory>

namespace lmx {

class TColorStepTable;
class TLayerOpacity;

/// A calculator that can tell its colours in advance, so that a renderer need not ask for each cell.
class TStepwiseColorCalculator {
public:
    virtual ~TStepwiseColorCalculator() = default;

    /// The colours of all values, exactly as GetColor gives them now. Nil if GetColor has to be asked: because it may
    /// raise, or because its colours come from a host's own object.
    virtual std::shared_ptr<const TColorSteps> GetColorSteps() const = 0;

    /// The same colours, faded, for a render; nil also for more steps than a table holds. The table is kept for the
    /// next render: for a small raster, or for the next time step of a large one, it costs more than colouring.
    std::shared_ptr<const TColorStepTable> GetColorTable(const TLayerOpacity& opacity) const;

private:
    struct TKey {
        std::shared_ptr<const TColorSteps> Steps;
        std::uint8_t LayerAlpha;

        bool operator==(const TKey& other) const;
    };

    mutable TLatestResult<TKey, std::shared_ptr<const TColorStepTable>> FTable;
};

} // namespace lmx
