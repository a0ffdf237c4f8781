
#include <lmx/Graphics/lmxSystemColors.h>

#include <QGuiApplication>
#include <QPalette>

#include <algorithm>
#include <array>
#include <utility>

namespace lmx {

namespace {

struct TSystemColorEntry {
    TColor Color;
    QPalette::ColorRole Role;
    TColor32 Fixed;
};

constexpr std::array<TSystemColorEntry, 7> Entries = {{
    {clWindow, QPalette::Base, 0xFFFFFFFF},
    {clWindowText, QPalette::Text, 0xFF000000},
    {clHighlight, QPalette::Highlight, 0xFF0078D7},
    {clHighlightText, QPalette::HighlightedText, 0xFFFFFFFF},
    {clBtnFace, QPalette::Button, 0xFFF0F0F0},
    {clBtnShadow, QPalette::Dark, 0xFFA0A0A0},
    {clBtnText, QPalette::ButtonText, 0xFF000000},
}};

const TSystemColorEntry* FindEntry(std::uint8_t index) {
    const auto* found = std::find_if(Entries.begin(), Entries.end(), [index](const TSystemColorEntry& entry) {
        return entry.Color == SystemColor(index);
    });
    return found == Entries.end() ? nullptr : found;
}

class TPaletteSystemColors : public TSystemColors {
public:
    TColor32 GetColor(std::uint8_t index) const override {
        const TSystemColorEntry* entry = FindEntry(index);
        return entry ? QGuiApplication::palette().color(entry->Role).rgb() | clBlack32 : clBlack32;
    }
};

std::shared_ptr<const TSystemColors>& CurrentSource() {
    static std::shared_ptr<const TSystemColors> source = std::make_shared<TPaletteSystemColors>();
    return source;
}

} // namespace

const TSystemColors& TSystemColors::Current() {
    return *CurrentSource();
}

std::shared_ptr<const TSystemColors> TSystemColors::SetCurrent(std::shared_ptr<const TSystemColors> source) {
    if (!source)
        source = std::make_shared<TPaletteSystemColors>();
    return std::exchange(CurrentSource(), std::move(source));
}

TColor32 TFixedSystemColors::GetColor(std::uint8_t index) const {
    const TSystemColorEntry* entry = FindEntry(index);
    return entry ? entry->Fixed : clBlack32;
}

TColor32 Color32(TColor color) {
    if (color.IsSystemColor())
        return TSystemColors::Current().GetColor(static_cast<std::uint8_t>(color.Value));
    return Color32(static_cast<std::uint8_t>(color.Value), static_cast<std::uint8_t>(color.Value >> 8),
                   static_cast<std::uint8_t>(color.Value >> 16));
}

} // namespace lmx
