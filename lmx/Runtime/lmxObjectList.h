#pragma once

#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxLifetime.h>

#include <cstddef>
#include <deque>
#include <functional>
#include <iterator>
#include <memory>
#include <utility>

namespace lmx {

/// What happened to an item of an owning list.
enum class TListChange { lcAdded, lcRemoved, lcExtracted };

/// A list that owns its items and reports each change to one callback. An item is reported after it has entered or
/// left the list, and before a removed one is freed. Clearing and destruction report every item, first to last.
/// The callback may change the list, replace itself and destroy the list. Main thread only.
template<class T>
class TObjectList {
public:
    using TChangeCallback = std::function<void(T* item, TListChange change)>;

    TObjectList() = default;
    TObjectList(const TObjectList&) = delete;
    TObjectList& operator=(const TObjectList&) = delete;
    ~TObjectList() { Clear(); }

    void SetOnChange(TChangeCallback callback) {
        FOnChange = callback ? std::make_shared<const TChangeCallback>(std::move(callback)) : nullptr;
    }

    /// Appends the item and returns it; null if the callback has taken it out again.
    /// @throws EArgumentException "item" if it is null.
    T* Add(std::unique_ptr<T> item) { return Insert(Count(), std::move(item)); }

    /// Puts the item at `index`, 0 to Count, and returns it as Add does.
    /// @throws EArgumentException "item" or "index".
    T* Insert(int index, std::unique_ptr<T> item) {
        if (!item)
            throw EArgumentException(QStringLiteral("item"));
        if (index < 0 || index > Count())
            throw EArgumentException(QStringLiteral("index"));
        T* added = item.get();
        FItems.insert(FItems.begin() + index, std::move(item));
        if (!FOnChange)
            return added; // without a search, so that lists of a million items fill in no time
        const auto lifetime = FLifetime.Watch();
        Notify(added, TListChange::lcAdded);
        return !lifetime.expired() && Contains(added) ? added : nullptr;
    }

    /// Takes the item out and frees it; false if it is not in the list.
    bool Remove(const T* item) { return static_cast<bool>(TakeOut(item, TListChange::lcRemoved)); }

    /// Takes the item out and hands it to the caller; null if it is not in the list.
    std::unique_ptr<T> Extract(const T* item) { return TakeOut(item, TListChange::lcExtracted); }

    /// Moves an item; the others keep their order. Not reported.
    /// @throws EArgumentException "index" if either index is outside the list.
    void Move(int from, int to) {
        if (from < 0 || to < 0 || from >= Count() || to >= Count())
            throw EArgumentException(QStringLiteral("index"));
        std::unique_ptr<T> item = std::move(FItems[static_cast<std::size_t>(from)]);
        FItems.erase(FItems.begin() + from);
        FItems.insert(FItems.begin() + to, std::move(item));
    }

    /// What the callback adds meanwhile goes, too.
    void Clear() {
        const auto lifetime = FLifetime.Watch();
        while (!lifetime.expired() && !FItems.empty()) {
            const std::unique_ptr<T> item = std::move(FItems.front());
            FItems.pop_front();
            Notify(item.get(), TListChange::lcRemoved);
        }
    }

    int Count() const { return static_cast<int>(FItems.size()); }
    bool IsEmpty() const { return FItems.empty(); }
    /// @throws EArgumentException "index" if it is outside the list.
    T* operator[](int index) const {
        if (index < 0 || index >= Count())
            throw EArgumentException(QStringLiteral("index"));
        return FItems[static_cast<std::size_t>(index)].get();
    }
    /// Position of the item, or -1.
    int IndexOf(const T* item) const {
        for (std::size_t i = 0; i < FItems.size(); ++i)
            if (FItems[i].get() == item)
                return static_cast<int>(i);
        return -1;
    }
    bool Contains(const T* item) const { return IndexOf(item) >= 0; }

    /// Walks the items as plain pointers. Changing the list ends the walk's validity.
    class TIterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = T*;
        using difference_type = std::ptrdiff_t;
        using pointer = T**;
        using reference = T*;

        explicit TIterator(typename std::deque<std::unique_ptr<T>>::const_iterator position) : FPosition(position) {}
        T* operator*() const { return FPosition->get(); }
        TIterator& operator++() {
            ++FPosition;
            return *this;
        }
        friend bool operator==(const TIterator&, const TIterator&) = default;

    private:
        typename std::deque<std::unique_ptr<T>>::const_iterator FPosition;
    };
    TIterator begin() const { return TIterator(FItems.begin()); }
    TIterator end() const { return TIterator(FItems.end()); }

private:
    std::unique_ptr<T> TakeOut(const T* item, TListChange change) {
        const int index = IndexOf(item);
        if (index < 0)
            return nullptr;
        std::unique_ptr<T> taken = std::move(FItems[static_cast<std::size_t>(index)]);
        FItems.erase(FItems.begin() + index);
        Notify(taken.get(), change);
        return taken;
    }
    void Notify(T* item, TListChange change) {
        if (const auto callback = FOnChange)
            (*callback)(item, change);
    }

    std::deque<std::unique_ptr<T>> FItems;
    std::shared_ptr<const TChangeCallback> FOnChange;
    TLifetime FLifetime;
};

} // namespace lmx
