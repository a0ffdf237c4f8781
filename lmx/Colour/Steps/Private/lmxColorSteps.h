#pragma once

#include <lmx/Colour/Steps/Private/lmxStepList.h>
#include <lmx/Graphics/lmxColor32.h>

#include <vector>

namespace lmx {

/// Steps of one colour each.
class TColorSteps : public TStepList<TColor32> {
public:
    using TStepList::TStepList;

    const std::vector<TColor32>& GetColors() const { return GetLooks(); } ///< one for each start
    TColor32 GetNaNColor() const { return GetNaNLook(); }                 ///< of what is no number

    friend bool operator==(const TColorSteps&, const TColorSteps&) = default;
};

} // namespace lmx
