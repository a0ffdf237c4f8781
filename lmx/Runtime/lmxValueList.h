#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <utility>
#include <vector>

namespace lmx {

/// A list of values that counts its changes, so that whoever keeps something made of the values knows when to make it
/// anew. It is read like a std::vector; a value in it is replaced, never changed in place.
template<class T>
class TValueList {
public:
    using value_type = T;
    using size_type = std::size_t;
    using const_iterator = typename std::vector<T>::const_iterator;
    using iterator = const_iterator;

    TValueList() = default;
    TValueList(std::initializer_list<T> values) : FValues(values) {}
    explicit TValueList(std::span<const T> values) : FValues(values.begin(), values.end()) {}
    TValueList(const TValueList& other) : FValues(other.FValues) {}
    ~TValueList() = default;
    TValueList& operator=(const TValueList& other) { return *this = other.FValues; }
    TValueList& operator=(std::initializer_list<T> values) { return *this = std::vector<T>(values); }
    TValueList& operator=(std::vector<T> values) {
        ++FChangeCount;
        FValues = std::move(values);
        return *this;
    }

    operator const std::vector<T>&() const { return FValues; }
    std::size_t size() const { return FValues.size(); }
    bool empty() const { return FValues.empty(); }
    const T* data() const { return FValues.data(); }
    const T& operator[](std::size_t index) const { return FValues[index]; } ///< the index is not checked
    const T& at(std::size_t index) const { return FValues.at(index); }      ///< @throws std::out_of_range
    const T& front() const { return FValues.front(); }
    const T& back() const { return FValues.back(); }
    const_iterator begin() const { return FValues.begin(); }
    const_iterator end() const { return FValues.end(); }

    /// Replaces a value; the index is not checked.
    void Set(std::size_t index, T value) {
        ++FChangeCount;
        FValues[index] = std::move(value);
    }
    void push_back(T value) {
        ++FChangeCount;
        FValues.push_back(std::move(value));
    }
    void pop_back() {
        ++FChangeCount;
        FValues.pop_back();
    }
    const_iterator insert(const_iterator before, T value) {
        ++FChangeCount;
        return FValues.insert(before, std::move(value));
    }
    const_iterator erase(const_iterator position) {
        ++FChangeCount;
        return FValues.erase(position);
    }
    const_iterator erase(const_iterator first, const_iterator last) {
        ++FChangeCount;
        return FValues.erase(first, last);
    }
    void clear() {
        ++FChangeCount;
        FValues.clear();
    }
    void reserve(std::size_t count) { FValues.reserve(count); }

    /// Grows with each change: as long as it stays, the list holds the same values.
    std::uint64_t GetChangeCount() const { return FChangeCount; }

    friend bool operator==(const TValueList& a, const TValueList& b) { return a.FValues == b.FValues; }
    friend bool operator==(const TValueList& a, const std::vector<T>& b) { return a.FValues == b; }

private:
    std::vector<T> FValues;
    std::uint64_t FChangeCount = 0;
};

} // namespace lmx
