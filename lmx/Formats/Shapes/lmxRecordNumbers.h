#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lmx {

/// Which record of a file each item of a list comes from. Neighbours mostly come from neighbouring records, or all from
/// one: only where that breaks something is stored, 8 bytes.
class LMX_EXPORT TRecordNumbers {
public:
    /// The next `count` items come from `record`, a number below 2^31 and above those before.
    void Append(std::uint32_t record, std::size_t count = 1);
    /// 0 <= item < number of items appended.
    std::uint32_t GetRecord(std::size_t item) const;

    void Shrink() { FRuns.shrink_to_fit(); }
    std::size_t GetMemorySize() const { return FRuns.capacity() * sizeof(TRun); } ///< bytes

private:
    /// Items of one record, or one item each of successive records.
    struct TRun {
        std::uint32_t First;
        std::uint32_t Record : 31;
        std::uint32_t IsOneRecord : 1;
    };

    std::vector<TRun> FRuns;
    std::size_t FCount = 0;
};

} // namespace lmx
