#pragma once

// Kernels with 256-bit lanes, made where the compiler can make them for one function and taken where the machine has
// them: LMX_AVX2 stands before such a function, which is called only after HasAvx2(). Under LMX_HAS_AVX2_KERNELS there
// always is a plain loop beside it that gives the same bits.

#if defined(__GNUC__) && defined(__x86_64__)

#include <immintrin.h>

#define LMX_HAS_AVX2_KERNELS
#define LMX_AVX2 [[gnu::target("avx2,fma,popcnt")]]

namespace lmx {

/// Whether this machine runs functions marked with LMX_AVX2.
inline bool HasAvx2() {
    static const bool has = __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("fma") != 0 &&
                            __builtin_cpu_supports("popcnt") != 0;
    return has;
}

} // namespace lmx

#endif
