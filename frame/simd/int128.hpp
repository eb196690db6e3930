// 128-bit integer vectors of signed and unsigned elements. One instruction each unless a comment
// says more.
#pragma once

#include <immintrin.h>

#include "frame/simd/float256.hpp"

namespace keps {

template <class T>
struct int128 {
    using element = T;
    static constexpr int lanes = 16 / sizeof(T);
    __m128i v;
};

using i8x16 = int128<std::int8_t>;
using u8x16 = int128<std::uint8_t>;
using i16x8 = int128<std::int16_t>;
using u16x8 = int128<std::uint16_t>;
using i32x4 = int128<std::int32_t>;
using u32x4 = int128<std::uint32_t>;
using i64x2 = int128<std::int64_t>;
using u64x2 = int128<std::uint64_t>;

// Two vectors that a kernel carries as one block: they leave as one 32-byte store.
template <class V>
struct two {
    using element = typename V::element;
    static constexpr int lanes = 2 * V::lanes;
    V lo, hi;
};

template <class V>
KEPS_INLINE V loadInt(const void *p) {
    return {_mm_loadu_si128(static_cast<const __m128i *>(p))};
}
template <class T>
KEPS_INLINE void store(T *p, int128<T> x) {
    _mm_storeu_si128(reinterpret_cast<__m128i *>(p), x.v);
}
// 2 uops: a join and one store.
template <class T>
KEPS_INLINE void store(T *p, two<int128<T>> x) {
    _mm256_storeu_si256(reinterpret_cast<__m256i *>(p), _mm256_set_m128i(x.hi.v, x.lo.v));
}

// All lanes the same.
template <class T>
KEPS_INLINE int128<T> splatInt(T x) {
    if constexpr (sizeof(T) == 1)
        return {_mm_set1_epi8(static_cast<char>(x))};
    else if constexpr (sizeof(T) == 2)
        return {_mm_set1_epi16(static_cast<short>(x))};
    else if constexpr (sizeof(T) == 4)
        return {_mm_set1_epi32(static_cast<int>(x))};
    else
        return {_mm_set1_epi64x(static_cast<long long>(x))};
}

// The same bits as lanes of another type.
template <class T, class U>
KEPS_INLINE int128<T> as(int128<U> x) {
    return {x.v};
}

// Wrapping sums and differences, bitwise operations.
template <class T>
KEPS_INLINE int128<T> operator+(int128<T> a, int128<T> b) {
    if constexpr (sizeof(T) == 1)
        return {_mm_add_epi8(a.v, b.v)};
    else if constexpr (sizeof(T) == 2)
        return {_mm_add_epi16(a.v, b.v)};
    else if constexpr (sizeof(T) == 4)
        return {_mm_add_epi32(a.v, b.v)};
    else
        return {_mm_add_epi64(a.v, b.v)};
}
template <class T>
KEPS_INLINE int128<T> operator-(int128<T> a, int128<T> b) {
    if constexpr (sizeof(T) == 1)
        return {_mm_sub_epi8(a.v, b.v)};
    else if constexpr (sizeof(T) == 2)
        return {_mm_sub_epi16(a.v, b.v)};
    else if constexpr (sizeof(T) == 4)
        return {_mm_sub_epi32(a.v, b.v)};
    else
        return {_mm_sub_epi64(a.v, b.v)};
}
template <class T>
KEPS_INLINE int128<T> operator&(int128<T> a, int128<T> b) {
    return {_mm_and_si128(a.v, b.v)};
}
template <class T>
KEPS_INLINE int128<T> operator|(int128<T> a, int128<T> b) {
    return {_mm_or_si128(a.v, b.v)};
}
template <class T>
KEPS_INLINE int128<T> operator^(int128<T> a, int128<T> b) {
    return {_mm_xor_si128(a.v, b.v)};
}
// x without the bits of mask.
template <class T>
KEPS_INLINE int128<T> without(int128<T> x, int128<T> mask) {
    return {_mm_andnot_si128(mask.v, x.v)};
}

// All ones where the lanes are equal.
template <class T>
KEPS_INLINE int128<T> equal(int128<T> a, int128<T> b) {
    if constexpr (sizeof(T) == 1)
        return {_mm_cmpeq_epi8(a.v, b.v)};
    else if constexpr (sizeof(T) == 2)
        return {_mm_cmpeq_epi16(a.v, b.v)};
    else if constexpr (sizeof(T) == 4)
        return {_mm_cmpeq_epi32(a.v, b.v)};
    else
        return {_mm_cmpeq_epi64(a.v, b.v)};
}

// Byte by byte, b where the mask's top bit is set, else a.
template <class T>
KEPS_INLINE int128<T> select(int128<T> mask, int128<T> a, int128<T> b) {
    return {_mm_blendv_epi8(a.v, b.v, mask.v)};
}

// Lane by lane, b where x is negative, else a.
KEPS_INLINE i32x4 selectBySign(i32x4 x, i32x4 a, i32x4 b) {
    return {_mm_castps_si128(
        _mm_blendv_ps(_mm_castsi128_ps(a.v), _mm_castsi128_ps(b.v), _mm_castsi128_ps(x.v)))};
}

// Saturating, of 8 and 16 bits.
template <class T>
KEPS_INLINE int128<T> addSaturated(int128<T> a, int128<T> b) {
    if constexpr (std::is_same_v<T, std::uint8_t>)
        return {_mm_adds_epu8(a.v, b.v)};
    else if constexpr (std::is_same_v<T, std::uint16_t>)
        return {_mm_adds_epu16(a.v, b.v)};
    else
        return {_mm_adds_epi16(a.v, b.v)};
}
template <class T>
KEPS_INLINE int128<T> subSaturated(int128<T> a, int128<T> b) {
    if constexpr (std::is_same_v<T, std::uint8_t>)
        return {_mm_subs_epu8(a.v, b.v)};
    else if constexpr (std::is_same_v<T, std::uint16_t>)
        return {_mm_subs_epu16(a.v, b.v)};
    else
        return {_mm_subs_epi16(a.v, b.v)};
}

// (a + b + 1) / 2 without overflow, of unsigned 8 and 16 bits.
template <class T>
KEPS_INLINE int128<T> average(int128<T> a, int128<T> b) {
    if constexpr (sizeof(T) == 1)
        return {_mm_avg_epu8(a.v, b.v)};
    else
        return {_mm_avg_epu16(a.v, b.v)};
}

// A shift's count, in a register; counts of the lane's width and above shift everything out.
struct Count {
    __m128i v;
    explicit Count(int bits) : v(_mm_cvtsi32_si128(bits)) {}
};
template <class T>
KEPS_INLINE int128<T> operator<<(int128<T> x, Count n) {
    if constexpr (sizeof(T) == 2)
        return {_mm_sll_epi16(x.v, n.v)};
    else if constexpr (sizeof(T) == 4)
        return {_mm_sll_epi32(x.v, n.v)};
    else
        return {_mm_sll_epi64(x.v, n.v)};
}
// Signed lanes keep their sign; 64-bit lanes are unsigned only.
template <class T>
KEPS_INLINE int128<T> operator>>(int128<T> x, Count n) {
    if constexpr (std::is_same_v<T, std::int16_t>)
        return {_mm_sra_epi16(x.v, n.v)};
    else if constexpr (std::is_same_v<T, std::int32_t>)
        return {_mm_sra_epi32(x.v, n.v)};
    else if constexpr (sizeof(T) == 2)
        return {_mm_srl_epi16(x.v, n.v)};
    else if constexpr (sizeof(T) == 4)
        return {_mm_srl_epi32(x.v, n.v)};
    else
        return {_mm_srl_epi64(x.v, n.v)};
}
// By a constant.
template <int N, class T>
KEPS_INLINE int128<T> shiftRight(int128<T> x) {
    if constexpr (std::is_same_v<T, std::int16_t>)
        return {_mm_srai_epi16(x.v, N)};
    else if constexpr (std::is_same_v<T, std::int32_t>)
        return {_mm_srai_epi32(x.v, N)};
    else if constexpr (sizeof(T) == 2)
        return {_mm_srli_epi16(x.v, N)};
    else if constexpr (sizeof(T) == 4)
        return {_mm_srli_epi32(x.v, N)};
    else
        return {_mm_srli_epi64(x.v, N)};
}

// Of 64 bits.
template <int N>
KEPS_INLINE u64x2 shiftLeft(u64x2 x) {
    return {_mm_slli_epi64(x.v, N)};
}

// The lower half of products of 16 and of 32 bits, the upper one of 16.
template <class T>
KEPS_INLINE int128<T> mulLow(int128<T> a, int128<T> b) {
    if constexpr (sizeof(T) == 2)
        return {_mm_mullo_epi16(a.v, b.v)};
    else
        return {_mm_mullo_epi32(a.v, b.v)};
}
template <class T>
KEPS_INLINE int128<T> mulHigh(int128<T> a, int128<T> b) {
    if constexpr (std::is_signed_v<T>)
        return {_mm_mulhi_epi16(a.v, b.v)};
    else
        return {_mm_mulhi_epu16(a.v, b.v)};
}
// (a * b + 0x4000) >> 15.
KEPS_INLINE i16x8 mulRounded(i16x8 a, i16x8 b) {
    return {_mm_mulhrs_epi16(a.v, b.v)};
}
// a with its sign changed where b is negative, 0 where b is 0; of 16 and 32 bits.
template <class T>
KEPS_INLINE int128<T> withSign(int128<T> a, int128<T> b) {
    if constexpr (sizeof(T) == 2)
        return {_mm_sign_epi16(a.v, b.v)};
    else
        return {_mm_sign_epi32(a.v, b.v)};
}
// a * b + the next lanes' a * b, pair by pair.
KEPS_INLINE i32x4 mulAddPairs(i16x8 a, i16x8 b) {
    return {_mm_madd_epi16(a.v, b.v)};
}

// The lanes of a and b in turn, as lanes of twice the width with a in the lower halves: from the
// lower and the upper parts of both.
template <class W, class T>
KEPS_INLINE two<int128<W>> interleave(int128<T> a, int128<T> b) {
    if constexpr (sizeof(T) == 1)
        return {{_mm_unpacklo_epi8(a.v, b.v)}, {_mm_unpackhi_epi8(a.v, b.v)}};
    else if constexpr (sizeof(T) == 2)
        return {{_mm_unpacklo_epi16(a.v, b.v)}, {_mm_unpackhi_epi16(a.v, b.v)}};
    else
        return {{_mm_unpacklo_epi32(a.v, b.v)}, {_mm_unpackhi_epi32(a.v, b.v)}};
}
template <class T>
KEPS_INLINE int128<T> nothing() {
    return {_mm_setzero_si128()};
}

// Widening to 32 bits: the lower and the upper four lanes. The upper ones take 2 uops.
KEPS_INLINE i32x4 widenLower(i16x8 x) {
    return {_mm_cvtepi16_epi32(x.v)};
}
KEPS_INLINE i32x4 widenUpper(i16x8 x) {
    return {_mm_srai_epi32(_mm_unpackhi_epi16(x.v, x.v), 16)};
}
// Narrowing with saturation, a below b.
KEPS_INLINE i16x8 narrowSaturated(i32x4 a, i32x4 b) {
    return {_mm_packs_epi32(a.v, b.v)};
}
// Signed lanes to unsigned ones of half the width, with saturation.
KEPS_INLINE u16x8 narrowUnsigned(i32x4 a, i32x4 b) {
    return {_mm_packus_epi32(a.v, b.v)};
}
KEPS_INLINE u8x16 narrowUnsigned(i16x8 a, i16x8 b) {
    return {_mm_packus_epi16(a.v, b.v)};
}

// To double, exact: a conversion.
KEPS_INLINE f64x4 toDouble(i32x4 x) {
    return {_mm256_cvtepi32_pd(x.v)};
}
// To 32-bit integers by the current rounding mode, or truncated; what does not fit becomes
// 0x80000000.
KEPS_INLINE i32x4 toInt(f64x4 x) {
    return {_mm256_cvtpd_epi32(x.v)};
}
KEPS_INLINE i32x4 toIntTruncated(f64x4 x) {
    return {_mm256_cvttpd_epi32(x.v)};
}

// To float, exact up to 24 bits: a join and a conversion.
KEPS_INLINE f32x8 toFloat(i32x4 lower, i32x4 upper) {
    return {_mm256_cvtepi32_ps(_mm256_set_m128i(upper.v, lower.v))};
}
// To 32-bit integers by the current rounding mode, or truncated; what does not fit becomes
// 0x80000000. A conversion and an extraction.
KEPS_INLINE two<i32x4> toInt(f32x8 x) {
    const __m256i all = _mm256_cvtps_epi32(x.v);
    return {{_mm256_castsi256_si128(all)}, {_mm256_extractf128_si256(all, 1)}};
}
KEPS_INLINE two<i32x4> toIntTruncated(f32x8 x) {
    const __m256i all = _mm256_cvttps_epi32(x.v);
    return {{_mm256_castsi256_si128(all)}, {_mm256_extractf128_si256(all, 1)}};
}

} // namespace keps
