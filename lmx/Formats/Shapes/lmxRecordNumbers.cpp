#include <lmx/Formats/Shapes/lmxRecordNumbers.h>

#include <algorithm>

namespace lmx {

void TRecordNumbers::Append(std::uint32_t record, std::size_t count) {
    if (count == 0)
        return;
    const bool continues = count == 1 && !FRuns.empty() && FRuns.back().IsOneRecord == 0 &&
                           FRuns.back().Record + (FCount - FRuns.back().First) == record;
    if (!continues)
        FRuns.push_back({static_cast<std::uint32_t>(FCount), record & 0x7FFFFFFFU, count > 1 ? 1U : 0U});
    FCount += count;
}

std::uint32_t TRecordNumbers::GetRecord(std::size_t item) const {
    const TRun& run = *std::prev(std::ranges::upper_bound(FRuns, item, {}, [](const TRun& r) { return r.First; }));
    return run.Record + (run.IsOneRecord != 0 ? 0 : static_cast<std::uint32_t>(item) - run.First);
}

} // namespace lmx
