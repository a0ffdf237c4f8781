#pragma once

#include <lmx/Runtime/lmxExceptions.h>

#include <cstddef>
#include <functional>
#include <map>
#include <utility>

namespace lmx {

/// Values under keys, each key once. Iteration gives pairs of key and value in the order of the keys.
template<class Key, class Value, class Less = std::less<Key>>
class TDictionary {
public:
    /// @throws EListError "Duplicates not allowed" if the key is there; its value stays.
    void Add(const Key& key, Value value) {
        if (!FItems.try_emplace(key, std::move(value)).second)
            throw EListError(QStringLiteral("Duplicates not allowed"));
    }
    void AddOrSetValue(const Key& key, Value value) { FItems.insert_or_assign(key, std::move(value)); }

    /// @throws EListError "Item not found".
    const Value& GetItem(const Key& key) const {
        const auto found = FItems.find(key);
        if (found == FItems.end())
            throw EListError(QStringLiteral("Item not found"));
        return found->second;
    }
    /// False, with `value` untouched, if the key is absent.
    bool TryGetValue(const Key& key, Value& value) const {
        const auto found = FItems.find(key);
        if (found == FItems.end())
            return false;
        value = found->second;
        return true;
    }
    bool ContainsKey(const Key& key) const { return FItems.find(key) != FItems.end(); }

    /// Takes a key out; an absent one is no error.
    void Remove(const Key& key) { FItems.erase(key); }
    void Clear() { FItems.clear(); }

    std::size_t Count() const { return FItems.size(); }
    auto begin() const { return FItems.begin(); }
    auto end() const { return FItems.end(); }

private:
    std::map<Key, Value, Less> FItems;
};

} // namespace lmx
