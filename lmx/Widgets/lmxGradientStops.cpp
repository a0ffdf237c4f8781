#include <lmx/Widgets/lmxGradientStops.h>

#include <algorithm>
#include <cmath>

namespace lmx {

/// A change for the length of a scope.
class TGradientStops::TChange {
public:
    explicit TChange(TGradientStops& stops) : FStops(stops) { FStops.BeginChange(); }
    ~TChange() { FStops.EndChange(); }
    TChange(const TChange&) = delete;
    TChange& operator=(const TChange&) = delete;

private:
    TGradientStops& FStops;
};

std::vector<TColorStop> TGradientStops::GetStops() const {
    std::vector<TColorStop> stops;
    stops.reserve(Count());
    for (const TEntry& entry : FState.Entries)
        stops.push_back(entry.Stop);
    return stops;
}

const TGradientStops::TEntry* TGradientStops::Find(TId id) const {
    const auto found = std::lower_bound(FState.Entries.begin(), FState.Entries.end(), id,
                                        [](const TEntry& entry, TId sought) { return entry.Id < sought; });
    return found != FState.Entries.end() && found->Id == id ? &*found : nullptr;
}

TColorStop TGradientStops::Get(TId id) const {
    const TEntry* entry = Find(id);
    return entry ? entry->Stop : TColorStop();
}

void TGradientStops::Touch(bool isSelectedAlone) {
    ++FChangeCount;
    if (!isSelectedAlone)
        ++FOthersChangeCount;
}

void TGradientStops::SetStops(std::span<const TColorStop> stops) {
    const TChange change(*this);
    FState.Entries.clear();
    FState.Selected = None;
    for (const TColorStop& stop : stops)
        FState.Entries.push_back({++FLastId, stop});
    Touch(false);
}

TGradientStops::TId TGradientStops::Add(const TColorStop& stop) {
    const TChange change(*this);
    FState.Entries.push_back({++FLastId, stop});
    Touch(false);
    return FLastId;
}

void TGradientStops::Remove(TId id) {
    const TEntry* entry = Find(id);
    if (!entry)
        return;
    const TChange change(*this);
    if (FState.Selected == id)
        FState.Selected = GetNext(id) != None ? GetNext(id) : GetPrevious(id);
    FState.Entries.erase(FState.Entries.begin() + (entry - FState.Entries.data()));
    Touch(false);
}

void TGradientStops::Clear() {
    SetStops({});
}

void TGradientStops::Replace(TId id, const TColorStop& stop) {
    const TEntry* entry = Find(id);
    if (!entry || entry->Stop == stop)
        return;
    const TChange change(*this);
    FState.Entries[static_cast<std::size_t>(entry - FState.Entries.data())].Stop = stop;
    Touch(id == FState.Selected);
}

void TGradientStops::SetLocation(TId id, double location) {
    if (!std::isnan(location))
        Replace(id, {std::clamp(location, 0.0, 1.0), Get(id).Color});
}

void TGradientStops::SetColor(TId id, TColor32 color) {
    Replace(id, {Get(id).Location, color});
}

const std::vector<TGradientStops::TId>& TGradientStops::GetOrder() const {
    if (FOrderedChange == FChangeCount)
        return FOrder;
    std::vector<TEntry> entries;
    entries.reserve(Count());
    for (const TEntry& entry : FState.Entries)
        if (std::isfinite(entry.Stop.Location))
            entries.push_back(entry);
    std::stable_sort(entries.begin(), entries.end(),
                     [](const TEntry& a, const TEntry& b) { return a.Stop.Location < b.Stop.Location; });
    FOrder.clear();
    for (const TEntry& entry : entries)
        FOrder.push_back(entry.Id);
    FOrderedChange = FChangeCount;
    return FOrder;
}

TGradientStops::TId TGradientStops::GetFirst() const {
    return GetOrder().empty() ? None : GetOrder().front();
}

TGradientStops::TId TGradientStops::GetLast() const {
    return GetOrder().empty() ? None : GetOrder().back();
}

TGradientStops::TId TGradientStops::GetNext(TId id) const {
    const auto& order = GetOrder();
    const auto found = std::find(order.begin(), order.end(), id);
    return found == order.end() || found + 1 == order.end() ? None : *(found + 1);
}

TGradientStops::TId TGradientStops::GetPrevious(TId id) const {
    const auto& order = GetOrder();
    const auto found = std::find(order.begin(), order.end(), id);
    return found == order.end() || found == order.begin() ? None : *(found - 1);
}

void TGradientStops::BeginChange() {
    if (FDepth++ == 0)
        FStart = FState;
}

void TGradientStops::EndChange() {
    if (FDepth == 0 || --FDepth > 0 || FStart.Entries == FState.Entries)
        return;
    if (FUndo.size() == MostChanges)
        FUndo.erase(FUndo.begin());
    FUndo.push_back(std::move(FStart));
    FRedo.clear();
}

void TGradientStops::RestartChange() {
    if (FDepth > 0)
        Restore(FStart);
}

void TGradientStops::CancelChange() {
    RestartChange();
    FDepth = 0;
}

void TGradientStops::Restore(const TState& state) {
    FState = state;
    Touch(false);
}

void TGradientStops::Undo() {
    if (!CanUndo())
        return;
    FRedo.push_back(FState);
    Restore(FUndo.back());
    FUndo.pop_back();
}

void TGradientStops::ForgetChanges() {
    FUndo.clear();
    FRedo.clear();
}

void TGradientStops::Redo() {
    if (!CanRedo())
        return;
    FUndo.push_back(FState);
    Restore(FRedo.back());
    FRedo.pop_back();
}

} // namespace lmx
