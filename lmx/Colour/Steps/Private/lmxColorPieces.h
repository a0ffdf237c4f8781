#pragma once

#include <lmx/Colour/Steps/Private/lmxStepList.h>
#include <lmx/Graphics/lmxColor32.h>

namespace lmx {

/// How the values between two neighbouring stops of a gradient get their colours: a value has the position
/// GradientPosition(value, Min, Max), and the position the colour ColorBetween(From, To, step), where the step is that
/// of GradientStep for a first stop at Location. One colour throughout has From and To in common and no steps.
struct TColorPiece {
    float Min = 0;
    float Max = 1;
    double Location = 0;
    double StepsPerPosition = 0;
    TColor32 From = 0;
    TColor32 To = 0;

    static TColorPiece Of(TColor32 color) { return {0, 1, 0, 0, color, color}; }

    friend bool operator==(const TColorPiece&, const TColorPiece&) = default;
};

/// The colours of gradients with so many stops that their single colours would be too many to list.
class TColorPieces : public TStepList<TColorPiece> {
public:
    using TStepList::TStepList;
    explicit TColorPieces(TColor32 color) : TStepList(TColorPiece::Of(color)) {}

    friend bool operator==(const TColorPieces&, const TColorPieces&) = default;
};

} // namespace lmx
