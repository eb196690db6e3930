// 256-bit float vectors, f32x8 and f64x4, and their 128-bit halves, f32x4 and f64x2. One
// instruction each unless a comment says more.
#pragma once

#include <immintrin.h>

#include "frame/simd/element.hpp"

namespace keps {

struct f32x8 {
    using element = float;
    static constexpr int lanes = 8;
    __m256 v;
};
struct f32x4 {
    using element = float;
    static constexpr int lanes = 4;
    __m128 v;
};
struct f64x4 {
    using element = double;
    static constexpr int lanes = 4;
    __m256d v;
};
struct f64x2 {
    using element = double;
    static constexpr int lanes = 2;
    __m128d v;
};

// load<V>(p), loadAligned<V>(p): a full vector; the second wants p on a multiple of its size.
template <class V>
V load(const typename V::element *p);
template <class V>
V loadAligned(const typename V::element *p);
// All lanes the same.
template <class V>
V splat(typename V::element x);
template <class V>
V zero();

// clang-format off
template <> KEPS_INLINE f32x8 load<f32x8>(const float *p) { return {_mm256_loadu_ps(p)}; }
template <> KEPS_INLINE f32x4 load<f32x4>(const float *p) { return {_mm_loadu_ps(p)}; }
template <> KEPS_INLINE f64x4 load<f64x4>(const double *p) { return {_mm256_loadu_pd(p)}; }
template <> KEPS_INLINE f64x2 load<f64x2>(const double *p) { return {_mm_loadu_pd(p)}; }
template <> KEPS_INLINE f32x8 loadAligned<f32x8>(const float *p) { return {_mm256_load_ps(p)}; }
template <> KEPS_INLINE f32x4 loadAligned<f32x4>(const float *p) { return {_mm_load_ps(p)}; }
template <> KEPS_INLINE f64x4 loadAligned<f64x4>(const double *p) { return {_mm256_load_pd(p)}; }
template <> KEPS_INLINE f64x2 loadAligned<f64x2>(const double *p) { return {_mm_load_pd(p)}; }
template <> KEPS_INLINE f32x8 splat<f32x8>(float x) { return {_mm256_set1_ps(x)}; }
template <> KEPS_INLINE f32x4 splat<f32x4>(float x) { return {_mm_set1_ps(x)}; }
template <> KEPS_INLINE f64x4 splat<f64x4>(double x) { return {_mm256_set1_pd(x)}; }
template <> KEPS_INLINE f64x2 splat<f64x2>(double x) { return {_mm_set1_pd(x)}; }
template <> KEPS_INLINE f32x8 zero<f32x8>() { return {_mm256_setzero_ps()}; }
template <> KEPS_INLINE f32x4 zero<f32x4>() { return {_mm_setzero_ps()}; }
template <> KEPS_INLINE f64x4 zero<f64x4>() { return {_mm256_setzero_pd()}; }
template <> KEPS_INLINE f64x2 zero<f64x2>() { return {_mm_setzero_pd()}; }

KEPS_INLINE void store(float *p, f32x8 x) { _mm256_storeu_ps(p, x.v); }
KEPS_INLINE void store(float *p, f32x4 x) { _mm_storeu_ps(p, x.v); }
KEPS_INLINE void store(double *p, f64x4 x) { _mm256_storeu_pd(p, x.v); }
KEPS_INLINE void store(double *p, f64x2 x) { _mm_storeu_pd(p, x.v); }
KEPS_INLINE void storeAligned(float *p, f32x8 x) { _mm256_store_ps(p, x.v); }
KEPS_INLINE void storeAligned(float *p, f32x4 x) { _mm_store_ps(p, x.v); }
KEPS_INLINE void storeAligned(double *p, f64x4 x) { _mm256_store_pd(p, x.v); }
KEPS_INLINE void storeAligned(double *p, f64x2 x) { _mm_store_pd(p, x.v); }

KEPS_INLINE f32x8 operator+(f32x8 a, f32x8 b) { return {_mm256_add_ps(a.v, b.v)}; }
KEPS_INLINE f32x8 operator-(f32x8 a, f32x8 b) { return {_mm256_sub_ps(a.v, b.v)}; }
KEPS_INLINE f32x8 operator*(f32x8 a, f32x8 b) { return {_mm256_mul_ps(a.v, b.v)}; }
KEPS_INLINE f32x4 operator+(f32x4 a, f32x4 b) { return {_mm_add_ps(a.v, b.v)}; }
KEPS_INLINE f32x4 operator-(f32x4 a, f32x4 b) { return {_mm_sub_ps(a.v, b.v)}; }
KEPS_INLINE f32x4 operator*(f32x4 a, f32x4 b) { return {_mm_mul_ps(a.v, b.v)}; }
KEPS_INLINE f64x4 operator+(f64x4 a, f64x4 b) { return {_mm256_add_pd(a.v, b.v)}; }
KEPS_INLINE f64x4 operator-(f64x4 a, f64x4 b) { return {_mm256_sub_pd(a.v, b.v)}; }
KEPS_INLINE f64x4 operator*(f64x4 a, f64x4 b) { return {_mm256_mul_pd(a.v, b.v)}; }
KEPS_INLINE f64x2 operator+(f64x2 a, f64x2 b) { return {_mm_add_pd(a.v, b.v)}; }
KEPS_INLINE f64x2 operator-(f64x2 a, f64x2 b) { return {_mm_sub_pd(a.v, b.v)}; }
KEPS_INLINE f64x2 operator*(f64x2 a, f64x2 b) { return {_mm_mul_pd(a.v, b.v)}; }

// min, max: the second operand where either is NaN, so min(limit, x) lets x's NaN pass.
KEPS_INLINE f32x8 min(f32x8 a, f32x8 b) { return {_mm256_min_ps(a.v, b.v)}; }
KEPS_INLINE f32x8 max(f32x8 a, f32x8 b) { return {_mm256_max_ps(a.v, b.v)}; }

// Bitwise.
KEPS_INLINE f32x8 operator&(f32x8 a, f32x8 b) { return {_mm256_and_ps(a.v, b.v)}; }
KEPS_INLINE f32x8 operator|(f32x8 a, f32x8 b) { return {_mm256_or_ps(a.v, b.v)}; }
KEPS_INLINE f32x8 operator^(f32x8 a, f32x8 b) { return {_mm256_xor_ps(a.v, b.v)}; }
// clang-format on

// Lane by lane, b where the mask's sign bit is set, else a. Spelled in assembler: g++ 12 takes the
// intrinsic apart into scalar comparisons where the processor has no wide integer ones.
KEPS_INLINE f32x8 select(f32x8 mask, f32x8 a, f32x8 b) {
    __m256 y;
    __asm__("vblendvps %3, %2, %1, %0" : "=x"(y) : "x"(a.v), "x"(b.v), "x"(mask.v));
    return {y};
}
KEPS_INLINE f64x4 select(f64x4 mask, f64x4 a, f64x4 b) {
    __m256d y;
    __asm__("vblendvpd %3, %2, %1, %0" : "=x"(y) : "x"(a.v), "x"(b.v), "x"(mask.v));
    return {y};
}

// The lower and the upper 128 bits; the lower half costs nothing.
KEPS_INLINE f32x4 lower(f32x8 x) {
    return {_mm256_castps256_ps128(x.v)};
}
KEPS_INLINE f32x4 upper(f32x8 x) {
    return {_mm256_extractf128_ps(x.v, 1)};
}

namespace detail {

// Sign bits for the first n of 8 32-bit lanes stand at maskWords + 8 - n.
inline constexpr std::int32_t maskWords[16] = {-1, -1, -1, -1, -1, -1, -1, -1,
                                               0,  0,  0,  0,  0,  0,  0,  0};

KEPS_INLINE __m256i firstWords(size n) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i *>(maskWords + 8 - n));
}

} // namespace detail

// loadPart<V>(p, n): the first n lanes, 0 < n <= V::lanes, zero in the rest; touches n elements
// only.
template <class V>
V loadPart(const typename V::element *p, size n);

template <>
KEPS_INLINE f32x8 loadPart<f32x8>(const float *p, size n) {
    return {_mm256_maskload_ps(p, detail::firstWords(n))};
}
template <>
KEPS_INLINE f64x4 loadPart<f64x4>(const double *p, size n) {
    return {_mm256_maskload_pd(p, detail::firstWords(2 * n))};
}

// storePart(p, x, n): the first n lanes, 0 < n < V::lanes; by halves, since masked stores are slow
// on some processors.
KEPS_INLINE void storePart(float *p, f32x8 x, size n) {
    __m128 rest = _mm256_castps256_ps128(x.v);
    if (n & 4) {
        _mm_storeu_ps(p, rest);
        rest = _mm256_extractf128_ps(x.v, 1);
        p += 4;
    }
    if (n & 2) {
        storeAs(p, _mm_cvtsd_f64(_mm_castps_pd(rest)));
        rest = _mm_movehl_ps(rest, rest);
        p += 2;
    }
    if (n & 1) storeOne(p, _mm_cvtss_f32(rest));
}
KEPS_INLINE void storePart(double *p, f64x4 x, size n) {
    __m128d rest = _mm256_castpd256_pd128(x.v);
    if (n & 2) {
        _mm_storeu_pd(p, rest);
        rest = _mm256_extractf128_pd(x.v, 1);
        p += 2;
    }
    if (n & 1) storeOne(p, _mm_cvtsd_f64(rest));
}

// To the nearest integral value, ties to even, whatever the control register says.
KEPS_INLINE f32x8 roundToNearest(f32x8 x) {
    return {_mm256_round_ps(x.v, _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC)};
}
KEPS_INLINE f64x4 roundToNearest(f64x4 x) {
    return {_mm256_round_pd(x.v, _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC)};
}

// A 128-bit half in both halves of the vector.
KEPS_INLINE f32x8 loadTwice(const float *p) {
    return {_mm256_broadcast_ps(reinterpret_cast<const __m128 *>(p))};
}
KEPS_INLINE f64x4 loadTwice(const double *p) {
    return {_mm256_broadcast_pd(reinterpret_cast<const __m128d *>(p))};
}

// Sums of neighbours, in each half one of a, then one of b. 3 uops.
KEPS_INLINE f64x4 addNeighbours(f64x4 a, f64x4 b) {
    return {_mm256_hadd_pd(a.v, b.v)};
}

// Every lane twice in a row. 3 uops.
KEPS_INLINE f32x8 doubled(f32x4 x) {
    return {_mm256_set_m128(_mm_unpackhi_ps(x.v, x.v), _mm_unpacklo_ps(x.v, x.v))};
}

// Complex product of pairs (real, imaginary), in the library's one order of arithmetic:
// t1 = re(b) * a, t2 = im(b) * swapped(a), real part t1 - t2, imaginary part t1 + t2. 6 uops.
KEPS_INLINE f32x8 complexMul(f32x8 a, f32x8 b) {
    const __m256 t1 = _mm256_mul_ps(_mm256_moveldup_ps(b.v), a.v);
    const __m256 t2 = _mm256_mul_ps(_mm256_movehdup_ps(b.v), _mm256_permute_ps(a.v, 0xB1));
    return {_mm256_addsub_ps(t1, t2)};
}
KEPS_INLINE f64x4 complexMul(f64x4 a, f64x4 b) {
    const __m256d t1 = _mm256_mul_pd(_mm256_movedup_pd(b.v), a.v);
    const __m256d t2 = _mm256_mul_pd(_mm256_permute_pd(b.v, 0xF), _mm256_permute_pd(a.v, 0x5));
    return {_mm256_addsub_pd(t1, t2)};
}

// a * conj(b) of pairs: real part re(a) re(b) + im(a) im(b), imaginary part re(b) im(a) - re(a)
// im(b). A subtraction is an addition of the negated term, bit for bit.
KEPS_INLINE f32x8 complexMulConj(f32x8 a, f32x8 b) {
    const __m256 t1 = _mm256_mul_ps(_mm256_moveldup_ps(b.v), a.v);
    const __m256 t2 = _mm256_mul_ps(_mm256_movehdup_ps(b.v), _mm256_permute_ps(a.v, 0xB1));
    return {_mm256_addsub_ps(t1, _mm256_xor_ps(t2, _mm256_set1_ps(-0.0F)))};
}
KEPS_INLINE f64x4 complexMulConj(f64x4 a, f64x4 b) {
    const __m256d t1 = _mm256_mul_pd(_mm256_movedup_pd(b.v), a.v);
    const __m256d t2 = _mm256_mul_pd(_mm256_permute_pd(b.v, 0xF), _mm256_permute_pd(a.v, 0x5));
    return {_mm256_addsub_pd(t1, _mm256_xor_pd(t2, _mm256_set1_pd(-0.0)))};
}

} // namespace keps
