#pragma once

#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Runtime/lmxExport.h>

#include <cstdint>
#include <span>
#include <vector>

namespace lmx {

/// The stops of a gradient while it is edited: which one is selected, how they follow each other, and what has been
/// changed, so that changes can be taken back. What shows them looks at it after each call.
///
/// A stop is known by a number that it keeps as long as it is there, and gets again when a change is taken back. A
/// number of none does nothing in all calls. Stops keep the order of the list, also where they pass each other; in the
/// order of their places those at one place follow as in the list, and those whose location is no finite number are
/// left out.
class LMX_EXPORT TGradientStops {
public:
    using TId = std::int64_t;
    static constexpr TId None = 0;
    static constexpr std::size_t MostChanges = 100; ///< that can be taken back

    // --- Stops -----------------------------------------------------------------------------------------------------

    std::size_t Count() const { return FState.Entries.size(); }
    std::vector<TColorStop> GetStops() const; ///< in the order of the list
    bool Has(TId id) const { return Find(id) != nullptr; }
    TColorStop Get(TId id) const; ///< at 0 and colour 0 for none

    /// Replaces all, and selects none; locations may be any.
    void SetStops(std::span<const TColorStop> stops);
    /// Adds a stop behind the others of the list; it is not selected.
    TId Add(const TColorStop& stop);
    /// Removes a stop; if it was selected, the next one by place is instead, or the one before if it was the last.
    void Remove(TId id);
    void Clear();
    /// Moves a stop to the nearest place from 0 to 1; NaN does nothing.
    void SetLocation(TId id, double location);
    void SetColor(TId id, TColor32 color);

    // --- Order and selection ---------------------------------------------------------------------------------------

    const std::vector<TId>& GetOrder() const; ///< by place
    TId GetFirst() const;                     ///< None if there is none; so below
    TId GetLast() const;
    TId GetNext(TId id) const;
    TId GetPrevious(TId id) const;
    TId GetSelected() const { return FState.Selected; }
    void Select(TId id) { FState.Selected = Has(id) ? id : None; }

    // --- Changes ---------------------------------------------------------------------------------------------------

    /// All until EndChange is one change. Calls may be nested.
    void BeginChange();
    void EndChange();
    /// Ends the change and puts all back as it was at its begin.
    void CancelChange();
    /// All as it was at the begin of the change, which goes on.
    void RestartChange();
    bool IsChanging() const { return FDepth > 0; }

    bool CanUndo() const { return !IsChanging() && !FUndo.empty(); }
    bool CanRedo() const { return !IsChanging() && !FRedo.empty(); }
    void Undo();          ///< takes the last change back, selection included; nothing without one
    void Redo();          ///< makes it again
    void ForgetChanges(); ///< none until now can be taken back or made again; one that goes on can

    /// Grows with each change of stops, and with each of another stop than the selected one. Selecting changes neither.
    std::uint64_t GetChangeCount() const { return FChangeCount; }
    std::uint64_t GetOthersChangeCount() const { return FOthersChangeCount; }

private:
    struct TEntry {
        TId Id;
        TColorStop Stop;
        friend bool operator==(const TEntry&, const TEntry&) = default;
    };
    struct TState {
        std::vector<TEntry> Entries; // numbers rise
        TId Selected = None;
    };
    class TChange;

    const TEntry* Find(TId id) const;
    void Replace(TId id, const TColorStop& stop);
    void Restore(const TState& state);
    void Touch(bool isSelectedAlone);

    TState FState;
    TState FStart; // of the change that goes on
    std::vector<TState> FUndo;
    std::vector<TState> FRedo;
    int FDepth = 0;
    TId FLastId = None;
    std::uint64_t FChangeCount = 0;
    std::uint64_t FOthersChangeCount = 0;
    mutable std::vector<TId> FOrder;
    mutable std::uint64_t FOrderedChange = ~std::uint64_t{0};
};

} // namespace lmx
