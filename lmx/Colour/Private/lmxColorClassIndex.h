#pragma once

#include <lmx/Colour/Steps/Private/lmxColorSteps.h>
#include <lmx/Colour/Steps/Private/lmxRangeIndex.h>
#include <lmx/Colour/lmxColorClassList.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace lmx {

/// Finds the class of a value by halving: what IColorClasses::GetClass says, of classes as they were when this was
/// made.
class TColorClassIndex {
public:
    explicit TColorClassIndex(const TObjectList<TColorClass>& classes);

    TColorClass* GetClass(TOutOfRangePolicy policy, float value) const;

    /// The colours of all values; 0 for those without a class.
    TColorSteps GetColorSteps(TOutOfRangePolicy policy) const;

    /// Whether the classes are the same objects in the same order, with the same bounds and colours, bit for bit.
    bool IsOf(const TObjectList<TColorClass>& classes) const;

private:
    struct TItem {
        explicit TItem(TColorClass& item);
        bool IsSame(const TItem& other) const;

        TColorClass* Class;
        TSingleRange Range;
        TColor32 Color;
    };

    static std::vector<TItem> ItemsOf(const TObjectList<TColorClass>& classes);
    static std::vector<TSingleRange> RangesOf(const std::vector<TItem>& items);
    void FindOuterItems();
    const TItem* ItemOf(std::uint32_t owner, TOutOfRangePolicy policy, float value) const;

    std::vector<TItem> FItems;
    TRangeIndex FRanges;
    std::size_t FLowest = 0;  ///< the first item of the lowest minimum
    std::size_t FHighest = 0; ///< the first item of the highest maximum
};

/// A list of classes that keeps an index of them.
class IIndexedColorClasses {
public:
    virtual ~IIndexedColorClasses() = default;

    /// The index of the classes as they are now; the same object as long as they stay the same.
    virtual std::shared_ptr<const TColorClassIndex> GetIndex() const = 0;
};

} // namespace lmx
