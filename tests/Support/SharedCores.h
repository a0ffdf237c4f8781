#pragma once

#include <lmx/Runtime/Private/lmxRowBands.h>
#include <lmx/Runtime/lmxCores.h>

#include <cstdint>

namespace lmx::tests {

/// Until the end of the scope work on rows uses that many cores, however few pixels there are.
class TSharedCores {
public:
    explicit TSharedCores(int count, std::int64_t leastPixels = 0)
        : FCount(TCores::GetCount()),
          FLeastPixels(TRowBands::GetLeastPixels()) {
        TCores::SetCount(count);
        TRowBands::SetLeastPixels(leastPixels);
    }
    TSharedCores(const TSharedCores&) = delete;
    TSharedCores& operator=(const TSharedCores&) = delete;
    ~TSharedCores() {
        TCores::SetCount(FCount);
        TRowBands::SetLeastPixels(FLeastPixels);
    }

private:
    int FCount;
    std::int64_t FLeastPixels;
};

} // namespace lmx::tests
