#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxValueList.h>

#include <QString>

#include <cmath>
#include <initializer_list>
#include <memory>
#include <span>

namespace lmx {

/// A colour at a place on the way from 0 to 1.
struct TColorStop {
    double Location = 0;
    TColor32 Color = 0;

    friend bool operator==(const TColorStop&, const TColorStop&) = default;
};

using TColorStops = TValueList<TColorStop>;

/// Colours that run from stop to stop.
///
/// The stops may stand in any order and may lie outside 0 to 1. For colours they are taken by location, and those at
/// one location in list order; a stop whose location is no finite number stays in the list and in the text, and gives
/// no colour. At a stop a gradient has exactly the stop's colour; beyond its outer stops it has the colour of the
/// nearest one; two stops at one location make a hard edge, and the edge itself has the colour of the later stop.
/// Between two stops the way is cut into GradientSteps, and a position takes the nearest step (ColorBetween).
class LMX_EXPORT IGradient {
public:
    virtual ~IGradient() = default;

    /// The list itself, for reading and changing.
    virtual TColorStops& GetColorStops() = 0;
    virtual const TColorStops& GetColorStops() const = 0;

    /// Colour at a position. 0 without a stop and for a position that is no number. The stops are sorted after each
    /// change, at the first call, and then searched by halving.
    virtual TColor32 GetColor(double position) const = 0;

    /// `(location:#AARRGGBB)` for each stop in list order, joined by commas; an empty text without stops. The location
    /// is the shortest decimal text that gives the same number again, with a point in every locale; "nan", "inf" and
    /// "-inf" stand for locations that are no finite number.
    virtual QString ToString() const = 0;

    /// Replaces the stops by those of a text form; blanks around the whole text are skipped.
    /// @throws EConvertError "Invalid gradient text" for any other text; the stops are unchanged then.
    virtual void FromString(const QString& text) = 0;
};

/// Number of equal steps between two neighbouring stops: from one to the next no channel changes by more than a level.
inline constexpr int GradientSteps = 256;

/// Step at a position between two neighbouring stops, `from` <= `position` and `from` < `to`: the nearest one, ties to
/// even. Never falls where the position rises.
inline int GradientStep(double position, double from, double to) {
    const double step = (position - from) * (GradientSteps / (to - from));
    if (!(step > 0)) // also 0 times infinity, at a stop whose neighbour is closer than any quotient can tell
        return 0;
    return static_cast<int>(std::nearbyint(step < GradientSteps ? step : GradientSteps));
}

/// Colour at `step`, 0 to GradientSteps, from one stop to the next: each of the four channels on its own, to the
/// nearest level, halves up.
constexpr TColor32 ColorBetween(TColor32 from, TColor32 to, int step) {
    const auto upper = static_cast<TColor32>(step);
    const TColor32 lower = GradientSteps - upper;
    const auto channel = [&](int shift) {
        const TColor32 sum = (from >> shift & 255) * lower + (to >> shift & 255) * upper;
        return (sum + GradientSteps / 2) / GradientSteps << shift;
    };
    return channel(24) | channel(16) | channel(8) | channel(0);
}

class LMX_EXPORT TGradientFactory {
public:
    /// A gradient without stops.
    static std::shared_ptr<IGradient> GetObject();

    /// A new gradient with the stops of `source`.
    /// @throws EExArgumentNilException if it is nil.
    static std::shared_ptr<IGradient> GetObject(const std::shared_ptr<IGradient>& source);

    static std::shared_ptr<IGradient> GetObject(std::span<const TColorStop> stops);
    static std::shared_ptr<IGradient> GetObject(std::initializer_list<TColorStop> stops);

    /// Whether this factory made the gradient. Then its stops alone say what its colours are; a host's own class may
    /// give any.
    static bool IsMaker(const IGradient& gradient);
};

} // namespace lmx
