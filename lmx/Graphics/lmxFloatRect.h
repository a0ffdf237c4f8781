#pragma once

namespace lmx {

/// A rectangle of pixels with fractions, by its edges. Y grows downwards.
struct TFloatRect {
    double Left = 0;
    double Top = 0;
    double Right = 0;
    double Bottom = 0;

    friend constexpr bool operator==(const TFloatRect&, const TFloatRect&) = default;
};

} // namespace lmx
