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

// The first bytes bytes, 0 < bytes <= 16, zero behind them; touches no other byte. A few scalar
// loads, without a loop.
KEPS_INLINE __m128i loadBytes(const void *from, size bytes) {
    const char *p = static_cast<const char *>(from);
    if (bytes == 16) return _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
    if (bytes > 8) {
        const auto low = loadAs<std::uint64_t>(p);
        const auto high = loadAs<std::uint64_t>(p + bytes - 8) >> (8 * (16 - bytes));
        return _mm_set_epi64x(static_cast<long long>(high), static_cast<long long>(low));
    }
    std::uint64_t low = 0;
    if (bytes == 8) {
        low = loadAs<std::uint64_t>(p);
    } else if (bytes >= 4) {
        low = loadAs<std::uint32_t>(p) | std::uint64_t{loadAs<std::uint32_t>(p + bytes - 4)}
                                             << (8 * (bytes - 4));
    } else if (bytes >= 2) {
        low = loadAs<std::uint16_t>(p) | std::uint64_t{loadAs<std::uint16_t>(p + bytes - 2)}
                                             << (8 * (bytes - 2));
    } else {
        low = loadAs<std::uint8_t>(p);
    }
    return _mm_cvtsi64_si128(static_cast<long long>(low));
}

// The first bytes bytes, 0 < bytes <= 16.
KEPS_INLINE void storeBytes(void *to, __m128i x, size bytes) {
    char *p = static_cast<char *>(to);
    if (bytes == 16) return _mm_storeu_si128(reinterpret_cast<__m128i *>(p), x);
    auto low = static_cast<std::uint64_t>(_mm_cvtsi128_si64(x));
    if (bytes & 8) {
        storeAs(p, low);
        low = static_cast<std::uint64_t>(_mm_extract_epi64(x, 1));
        p += 8;
    }
    if (bytes & 4) {
        storeAs(p, static_cast<std::uint32_t>(low));
        low >>= 32;
        p += 4;
    }
    if (bytes & 2) {
        storeAs(p, static_cast<std::uint16_t>(low));
        low >>= 16;
        p += 2;
    }
    if (bytes & 1) storeAs(p, static_cast<std::uint8_t>(low));
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

// To double, exact: a conversion.
KEPS_INLINE f64x4 toDouble(i32x4 x) {
    return {_mm256_cvtepi32_pd(x.v)};
}
// To 32-bit integers, truncated; what does not fit becomes 0x80000000.
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
