#pragma once

#include <cstdint>

// Marks a function whose plain loops the compiler turns into vector code: where the system can
// choose between versions of a function when the program is loaded, one for AVX2 stands beside the
// portable one. AVX2 alone has no fused multiply-add, so both give the same results to the bit.
// Sanitizers are not ready yet when the choice is made, so their builds have the portable one only.
#if defined(__x86_64__) && defined(__GLIBC__) && defined(__GNUC__)
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define SKYHAUL_VECTOR_CLONES
#elif defined(__clang__)
#define SKYHAUL_VECTOR_CLONES
#else
#define SKYHAUL_VECTOR_CLONES __attribute__((target_clones("avx2", "default")))
#endif
#else
#define SKYHAUL_VECTOR_CLONES
#endif

// Helpers of such functions must become part of them, or they are compiled for the default only.
#if defined(__GNUC__)
#define SKYHAUL_ALWAYS_INLINE [[gnu::always_inline]] inline
#else
#define SKYHAUL_ALWAYS_INLINE inline
#endif
