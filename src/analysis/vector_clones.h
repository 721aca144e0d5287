#pragma once

#include <cstdint>

// Marks a function whose plain loops the compiler turns into vector code. GCC on x86-64 Linux,
// where the system can choose between versions of a function when the program is loaded, puts one
// for AVX2 beside the portable one; every other build has the portable one. AVX2 alone has no fused
// multiply-add, so both give the same results to the bit. Sanitizers are not ready yet when the
// choice is made.
#if defined(__x86_64__) && defined(__GLIBC__) && defined(__GNUC__) && !defined(__clang__) && \
    !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define SKYHAUL_VECTOR_CLONES __attribute__((target_clones("avx2", "default")))
#else
#define SKYHAUL_VECTOR_CLONES
#endif

// Helpers of such functions must become part of them, or they are compiled for the default only.
#if defined(__GNUC__)
#define SKYHAUL_ALWAYS_INLINE [[gnu::always_inline]] inline
#else
#define SKYHAUL_ALWAYS_INLINE inline
#endif
