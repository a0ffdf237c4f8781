#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExport.h>

#include <cstdint>
#include <memory>

namespace lmx {

constexpr TColor SystemColor(std::uint8_t index) {
    return {static_cast<std::int32_t>(0xFF000000U | index)};
}

inline constexpr TColor clWindow = SystemColor(5);
inline constexpr TColor clWindowText = SystemColor(8);
inline constexpr TColor clHighlight = SystemColor(13);
inline constexpr TColor clHighlightText = SystemColor(14);
inline constexpr TColor clBtnFace = SystemColor(15);
inline constexpr TColor clBtnShadow = SystemColor(16);
inline constexpr TColor clBtnText = SystemColor(18);

/// Where the values of the system colours come from: the application's palette, unless a host or a test puts another
/// source in its place. Main thread only.
class LMX_EXPORT TSystemColors {
public:
    virtual ~TSystemColors() = default;

    /// Value of the system colour of that index; an index without a name above is opaque black.
    virtual TColor32 GetColor(std::uint8_t index) const = 0;

    static const TSystemColors& Current();

    /// Puts `source` in the place of the present one, which is given back; null stands for the application's palette.
    static std::shared_ptr<const TSystemColors> SetCurrent(std::shared_ptr<const TSystemColors> source);
};

/// The same colours on every machine, for pictures that must not depend on a theme.
class LMX_EXPORT TFixedSystemColors : public TSystemColors {
public:
    TColor32 GetColor(std::uint8_t index) const override;
};

/// Another source of system colours until the end of the scope.
class LMX_EXPORT TSystemColorsScope {
public:
    explicit TSystemColorsScope(std::shared_ptr<const TSystemColors> source)
        : FPrevious(TSystemColors::SetCurrent(std::move(source))) {}
    ~TSystemColorsScope() { TSystemColors::SetCurrent(std::move(FPrevious)); }
    TSystemColorsScope(const TSystemColorsScope&) = delete;
    TSystemColorsScope& operator=(const TSystemColorsScope&) = delete;

private:
    std::shared_ptr<const TSystemColors> FPrevious;
};

/// The opaque pixel of a colour; a system colour is looked up.
LMX_EXPORT TColor32 Color32(TColor color);

} // namespace lmx
