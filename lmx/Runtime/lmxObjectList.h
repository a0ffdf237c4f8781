#pragma once

#include <lmx/Runtime/lmxEvent.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxLifetime.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <iterator>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace lmx {

/// What happened to an item of an owning list.
enum class TListChange { lcAdded, lcRemoved, lcExtracted };

/// A list that owns its items and reports each change to one callback. An item is reported after it has entered or
/// left the list, and before a removed one is freed. The callback may change the list, replace itself and destroy the
/// list. Main thread only.
template<class T>
class TObjectList {
public:
    using TChangeCallback = TEvent<T*, TListChange>;

    TObjectList() = default;
    TObjectList(const TObjectList&) = delete;
    TObjectList& operator=(const TObjectList&) = delete;
    /// Clears the list; what the callback adds meanwhile goes unreported.
    ~TObjectList() {
        Clear();
        FOnChange = {};
        Clear();
    }

    void SetOnChange(TChangeCallback callback) { FOnChange = std::move(callback); }

    /// Appends the item and returns it; null if the callback has taken it out again.
    /// @throws EArgumentException "item" if it is null.
    template<class Item>
    Item* Add(std::unique_ptr<Item> item) {
        return Insert(Count(), std::move(item));
    }
    T* Add(std::unique_ptr<T> item) { return Insert(Count(), std::move(item)); }

    /// Puts the item at `index`, 0 to Count, and returns it as Add does.
    /// @throws EArgumentException "item" or "index".
    template<class Item>
    Item* Insert(int index, std::unique_ptr<Item> item) {
        static_assert(std::is_base_of_v<T, Item>);
        if (!item)
            throw EArgumentException(QStringLiteral("item"));
        if (index < 0 || index > Count())
            throw EArgumentException(QStringLiteral("index"));
        Item* const added = item.get();
        FEntries.insert(FEntries.begin() + index, {std::move(item), ++FSerial});
        for (int& next : FWalks)
            next += index < next ? 1 : 0;
        if (!FOnChange)
            return added;
        const TPlace<const T*> arrival(FArrivals, added, FLifetime);
        FOnChange(added, TListChange::lcAdded);
        return !arrival.IsOver() && *arrival ? added : nullptr;
    }

    T* Insert(int index, std::unique_ptr<T> item) { return Insert<T>(index, std::move(item)); }

    /// Takes the item out and frees it; false if it is not in the list.
    bool Remove(const T* item) { return static_cast<bool>(TakeOut(IndexOf(item), TListChange::lcRemoved)); }

    /// Takes the item out and hands it to the caller; null if it is not in the list.
    std::unique_ptr<T> Extract(const T* item) { return TakeOut(IndexOf(item), TListChange::lcExtracted); }

    /// Moves an item; the others keep their order. Not reported.
    /// @throws EArgumentException "index" if either index is outside the list.
    void Move(int from, int to) {
        if (from < 0 || to < 0 || from >= Count() || to >= Count())
            throw EArgumentException(QStringLiteral("index"));
        ++FSerial;
        TEntry entry = std::move(FEntries[static_cast<std::size_t>(from)]);
        FEntries.erase(FEntries.begin() + from);
        FEntries.insert(FEntries.begin() + to, std::move(entry));
    }

    /// Removes what is in the list now, first to last, each once. What the callback adds meanwhile stays.
    void Clear() {
        const std::uint64_t last = FSerial;
        const TPlace<int> next(FWalks, 0, FLifetime);
        while (!next.IsOver() && (*next = NextUpTo(last, *next)) >= 0)
            TakeOut(*next, TListChange::lcRemoved);
    }

    /// Calls `visit(item)` for each item that is in the list now and still is when its turn comes, in the order of the
    /// list. The visitor may add, insert, remove and free items and the list itself; what it adds is not visited. A
    /// visitor that returns bool ends the walk with false. An item that is moved in between may be met twice, or not.
    template<class Visitor>
    void ForEach(Visitor&& visit) const {
        const std::uint64_t last = FSerial;
        const TPlace<int> next(FWalks, 0, FLifetime);
        while (!next.IsOver() && *next < Count()) {
            const TEntry& entry = FEntries[static_cast<std::size_t>((*next)++)];
            if (entry.Serial > last)
                continue;
            if constexpr (std::is_same_v<decltype(visit(entry.Item.get())), bool>) {
                if (!visit(entry.Item.get()))
                    break;
            } else {
                visit(entry.Item.get());
            }
        }
    }

    int Count() const { return static_cast<int>(FEntries.size()); }
    bool IsEmpty() const { return FEntries.empty(); }
    /// @throws EArgumentException "index" if it is outside the list.
    T* operator[](int index) const {
        if (index < 0 || index >= Count())
            throw EArgumentException(QStringLiteral("index"));
        return FEntries[static_cast<std::size_t>(index)].Item.get();
    }
    /// Position of the item, or -1. Looks from both ends, where items come and go most.
    int IndexOf(const T* item) const {
        for (std::size_t front = 0, back = FEntries.size(); front < back; ++front) {
            if (FEntries[front].Item.get() == item)
                return static_cast<int>(front);
            if (FEntries[--back].Item.get() == item)
                return static_cast<int>(back);
        }
        return -1;
    }
    bool Contains(const T* item) const { return IndexOf(item) >= 0; }
    /// Whether the callback is being told that `item` has come, and nobody has taken it out again meanwhile. Whoever
    /// passes the news on asks this before each further one that is told; nothing is searched for it.
    bool IsArriving(const T* item) const {
        return item && std::find(FArrivals.begin(), FArrivals.end(), item) != FArrivals.end();
    }

    /// Grows with each item that comes, goes or moves: as long as it stays, the same items stand in the same order.
    std::uint64_t GetChangeCount() const { return FSerial; }

private:
    struct TEntry {
        std::unique_ptr<T> Item;
        std::uint64_t Serial = 0; // grows from each entry to the next that comes
    };

public:
    /// Walks the items as plain pointers. Changing the list ends the walk's validity: where anything is told on the
    /// way, ForEach is the walk.
    class TIterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = T*;
        using difference_type = std::ptrdiff_t;
        using pointer = T**;
        using reference = T*;

        explicit TIterator(typename std::deque<TEntry>::const_iterator position) : FPosition(position) {}
        T* operator*() const { return FPosition->Item.get(); }
        TIterator& operator++() {
            ++FPosition;
            return *this;
        }
        friend bool operator==(const TIterator&, const TIterator&) = default;

    private:
        typename std::deque<TEntry>::const_iterator FPosition;
    };
    TIterator begin() const { return TIterator(FEntries.begin()); }
    TIterator end() const { return TIterator(FEntries.end()); }

private:
    // What some work under way keeps on a stack of the list, so that each change of the list can put it right. Work
    // ends in the order opposite to that in which it began, or is the last to know of the list.
    template<class Value>
    class TPlace {
    public:
        TPlace(std::vector<Value>& stack, Value value, const TLifetime& list)
            : FStack(stack),
              FDepth(stack.size()),
              FList(list.Watch()) {
            stack.push_back(value);
        }
        TPlace(const TPlace&) = delete;
        TPlace& operator=(const TPlace&) = delete;
        ~TPlace() {
            if (!IsOver())
                FStack.pop_back();
        }

        bool IsOver() const { return FList.IsOver(); } ///< whether the list is gone
        Value& operator*() const { return FStack[FDepth]; }

    private:
        std::vector<Value>& FStack;
        std::size_t FDepth;
        TLifeWatch FList;
    };

    // The first entry at `from` or behind it that is no newer than `serial`; else the first before it, for one that has
    // been moved there; else -1.
    int NextUpTo(std::uint64_t serial, int from) const {
        const auto isOld = [serial](const TEntry& entry) { return entry.Serial <= serial; };
        const auto middle = FEntries.begin() + from;
        if (const auto found = std::find_if(middle, FEntries.end(), isOld); found != FEntries.end())
            return static_cast<int>(found - FEntries.begin());
        const auto found = std::find_if(FEntries.begin(), middle, isOld);
        return found == middle ? -1 : static_cast<int>(found - FEntries.begin());
    }

    std::unique_ptr<T> TakeOut(int index, TListChange change) {
        if (index < 0)
            return nullptr;
        ++FSerial;
        std::unique_ptr<T> taken = std::move(FEntries[static_cast<std::size_t>(index)].Item);
        FEntries.erase(FEntries.begin() + index);
        for (int& next : FWalks)
            next -= index < next ? 1 : 0;
        std::replace(FArrivals.begin(), FArrivals.end(), static_cast<const T*>(taken.get()),
                     static_cast<const T*>(nullptr));
        FOnChange(taken.get(), change);
        return taken;
    }

    std::deque<TEntry> FEntries;
    std::uint64_t FSerial = 0;       // grows with each change
    mutable std::vector<int> FWalks; // index that each walk under way comes to next
    std::vector<const T*> FArrivals; // items whose coming is being told; nil once taken out again
    TChangeCallback FOnChange;
    TLifetime FLifetime;
};

} // namespace lmx
