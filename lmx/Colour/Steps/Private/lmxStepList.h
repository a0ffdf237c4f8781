#pragma once

#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace lmx {

/// A colouring that changes at finitely many values: each step has its look, a colour or whatever tells colours, from
/// its start (inside) to the start of the next one. The first step starts at minus infinity. What is no number has a
/// look of its own.
template<class Look>
class TStepList {
public:
    /// One step of one look, which is also the look of what is no number, now and later.
    explicit TStepList(const Look& look) : FStarts{-Infinity}, FLooks{look}, FNaNLook(look) {}

    /// Gives the values from `start` on another look. Where `start` is not above the last step's start, the last step
    /// takes the look; a start that is no number adds nothing.
    void Add(float start, const Look& look) {
        if (!(start > FStarts.back()))
            return Replace(start, look);
        if (FLooks.back() == look)
            return;
        FStarts.push_back(start);
        FLooks.push_back(look);
    }

    /// Adds some steps of another colouring, of which the first starts above the last step and has another look.
    void Add(const TStepList& other, std::size_t first, std::size_t end) {
        const auto addTo = [=](auto& items, const auto& others) {
            const auto begin = others.begin();
            items.insert(items.end(), begin + static_cast<std::ptrdiff_t>(first),
                         begin + static_cast<std::ptrdiff_t>(end));
        };
        addTo(FStarts, other.FStarts);
        addTo(FLooks, other.FLooks);
    }

    /// Takes memory for so many steps.
    void Reserve(std::size_t count) {
        FStarts.reserve(count);
        FLooks.reserve(count);
    }

    std::size_t GetCount() const { return FStarts.size(); }         ///< at least 1
    const std::vector<float>& GetStarts() const { return FStarts; } ///< ascending, the first minus infinity
    const std::vector<Look>& GetLooks() const { return FLooks; }    ///< one for each start
    const Look& GetNaNLook() const { return FNaNLook; }             ///< of what is no number

    friend bool operator==(const TStepList&, const TStepList&) = default;

private:
    /// The last step takes the look, or joins the one before.
    void Replace(float start, const Look& look) {
        if (std::isnan(start))
            return;
        FStarts.pop_back();
        FLooks.pop_back();
        if (FStarts.empty())
            start = -Infinity;
        if (!FLooks.empty() && FLooks.back() == look)
            return;
        FStarts.push_back(start);
        FLooks.push_back(look);
    }

    static constexpr float Infinity = std::numeric_limits<float>::infinity();

    std::vector<float> FStarts;
    std::vector<Look> FLooks;
    Look FNaNLook;
};

} // namespace lmx
