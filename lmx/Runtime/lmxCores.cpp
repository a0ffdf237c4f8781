#include <lmx/Runtime/lmxCores.h>

#include <algorithm>
#include <atomic>
#include <thread>

namespace lmx {

namespace {

constexpr int MostCores = 64;
std::atomic<int> Count = 1;

} // namespace

int TCores::GetCount() noexcept {
    return Count.load(std::memory_order_relaxed);
}

void TCores::SetCount(int count) noexcept {
    const int wanted = count < 1 ? static_cast<int>(std::thread::hardware_concurrency()) : count;
    Count.store(std::clamp(wanted, 1, MostCores), std::memory_order_relaxed);
}

} // namespace lmx
