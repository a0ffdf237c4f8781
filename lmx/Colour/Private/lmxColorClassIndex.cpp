#include <lmx/Colour/Private/lmxColorClassIndex.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace lmx {

namespace {

constexpr float Infinity = std::numeric_limits<float>::infinity();

bool AreSameBits(float a, float b) {
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

} // namespace

TColorClassIndex::TItem::TItem(TColorClass& item)
    : Class(&item),
      Range{item.GetMinValue(), item.GetMaxValue()},
      Color(item.GetColor()) {}

bool TColorClassIndex::TItem::IsSame(const TItem& other) const {
    return Class == other.Class && AreSameBits(Range.Min, other.Range.Min) && AreSameBits(Range.Max, other.Range.Max) &&
           Color == other.Color;
}

std::vector<TColorClassIndex::TItem> TColorClassIndex::ItemsOf(const TObjectList<TColorClass>& classes) {
    std::vector<TItem> items;
    items.reserve(static_cast<std::size_t>(classes.Count()));
    for (TColorClass* item : classes)
        items.emplace_back(*item);
    return items;
}

std::vector<TSingleRange> TColorClassIndex::RangesOf(const std::vector<TItem>& items) {
    std::vector<TSingleRange> ranges;
    ranges.reserve(items.size());
    for (const TItem& item : items)
        ranges.push_back(item.Range);
    return ranges;
}

TColorClassIndex::TColorClassIndex(const TObjectList<TColorClass>& classes)
    : FItems(ItemsOf(classes)),
      FRanges(RangesOf(FItems)) {
    FindOuterItems();
}

void TColorClassIndex::FindOuterItems() {
    for (std::size_t i = 0; i < FItems.size(); ++i) {
        if (FItems[i].Range.Min < FItems[FLowest].Range.Min)
            FLowest = i;
        if (FItems[i].Range.Max > FItems[FHighest].Range.Max)
            FHighest = i;
    }
}

bool TColorClassIndex::IsOf(const TObjectList<TColorClass>& classes) const {
    return static_cast<std::size_t>(classes.Count()) == FItems.size() &&
           std::equal(FItems.begin(), FItems.end(), classes.begin(),
                      [](const TItem& item, TColorClass* now) { return item.IsSame(TItem(*now)); });
}

/// The item that a value gets in a stretch that `owner` has, or none.
const TColorClassIndex::TItem* TColorClassIndex::ItemOf(std::uint32_t owner, TOutOfRangePolicy policy,
                                                        float value) const {
    if (owner != TRangeIndex::None)
        return &FItems[owner];
    if (policy != TOutOfRangePolicy::orpClosestMatch || FItems.empty())
        return nullptr;
    if (!(value > FItems[FLowest].Range.Min)) // also where one of the two is no number
        return &FItems[FLowest];
    return value >= FItems[FHighest].Range.Max ? &FItems[FHighest] : nullptr;
}

TColorClass* TColorClassIndex::GetClass(TOutOfRangePolicy policy, float value) const {
    const TItem* item = ItemOf(FRanges.Find(value), policy, value);
    return item ? item->Class : nullptr;
}

// Within a stretch that no class has, the closest match changes behind the lowest minimum and at the highest maximum.
TColorSteps TColorClassIndex::GetColorSteps(TOutOfRangePolicy policy) const {
    const auto colorOf = [&](std::uint32_t owner, float value) {
        const TItem* item = ItemOf(owner, policy, value);
        return item ? item->Color : 0;
    };
    TColorSteps steps(colorOf(TRangeIndex::None, std::numeric_limits<float>::quiet_NaN()));
    const std::vector<float>& starts = FRanges.GetStarts();
    steps.Reserve(starts.size() + 2);
    std::vector<float> changes;
    if (!FItems.empty())
        changes = {std::nextafter(FItems[FLowest].Range.Min, Infinity), FItems[FHighest].Range.Max};
    std::erase_if(changes, [](float change) { return std::isnan(change); });
    std::sort(changes.begin(), changes.end());
    for (std::size_t i = 0; i < starts.size(); ++i) {
        const std::uint32_t owner = FRanges.GetOwners()[i];
        steps.Add(starts[i], colorOf(owner, starts[i]));
        for (float change : changes)
            if (change > starts[i] && (i + 1 == starts.size() || change < starts[i + 1]))
                steps.Add(change, colorOf(owner, change));
    }
    return steps;
}

} // namespace lmx
