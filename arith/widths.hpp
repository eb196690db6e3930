// Integer samples as float vectors, and integers narrowed to samples with saturation. A vector of
// samples holds as many elements as the float vector, in its lower lanes.
#pragma once

#include "frame/simd/shapes.hpp"

namespace keps {

// Samples of type T that are widened to W as they are loaded, which saves the instructions that
// bring a register's upper half down. A block is two vectors of W.
template <class T, class W>
struct Widened {
    T sample;
};
template <class T, class W>
struct LaneType<Widened<T, W>> {
    using type = Widened<T, W>;
};
template <class T, class W, int Bytes>
struct BlockType<Widened<T, W>, Bytes> {
    static_assert(Bytes * sizeof(W) == 32 * sizeof(T));
    using type = two<int128<W>>;
};

template <class W, class T>
KEPS_INLINE const Widened<T, W> *widened(const T *p) {
    return reinterpret_cast<const Widened<T, W> *>(p);
}

// The lower lanes of x; and as many as fit from memory, in one instruction.
template <class W, class T>
KEPS_INLINE int128<W> widenLower(int128<T> x) {
    if constexpr (sizeof(W) == 2)
        return {_mm_cvtepi8_epi16(x.v)};
    else if constexpr (std::is_same_v<T, std::int8_t>)
        return {_mm_cvtepi8_epi32(x.v)};
    else if constexpr (std::is_same_v<T, std::uint8_t>)
        return {_mm_cvtepu8_epi32(x.v)};
    else if constexpr (std::is_same_v<T, std::int16_t>)
        return {_mm_cvtepi16_epi32(x.v)};
    else
        return {_mm_cvtepu16_epi32(x.v)};
}
template <class W, class T>
KEPS_INLINE int128<W> loadWidened(const T *p) {
    return widenLower<W>(loadBlock<16 / sizeof(W)>(p));
}

template <int N, class T, class W>
KEPS_INLINE two<int128<W>> loadBlock(const Widened<T, W> *p) {
    const auto *samples = reinterpret_cast<const T *>(p);
    return {loadWidened<W>(samples), loadWidened<W>(samples + N / 2)};
}
template <int N, class T, class W>
KEPS_INLINE two<int128<W>> loadEnds(const Widened<T, W> *p, size n) {
    const auto ends = loadEnds<N>(reinterpret_cast<const T *>(p), n);
    return {widenLower<W>(ends),
            widenLower<W>(int128<T>{_mm_srli_si128(ends.v, N * sizeof(T) / 2)})};
}

// Samples as 32-bit integers, of bytes the lower eight. 2 to 3 instructions.
KEPS_INLINE two<i32x4> widened(i8x16 x) {
    return {{_mm_cvtepi8_epi32(x.v)}, {_mm_cvtepi8_epi32(_mm_srli_si128(x.v, 4))}};
}
KEPS_INLINE two<i32x4> widened(u8x16 x) {
    return {{_mm_cvtepu8_epi32(x.v)}, {_mm_cvtepu8_epi32(_mm_srli_si128(x.v, 4))}};
}
KEPS_INLINE two<i32x4> widened(i16x8 x) {
    return {widenLower(x), widenUpper(x)};
}
KEPS_INLINE two<i32x4> widened(u16x8 x) {
    return {{_mm_cvtepu16_epi32(x.v)}, {_mm_unpackhi_epi16(x.v, _mm_setzero_si128())}};
}

// Widen<V>: to float, exact up to V's precision.
template <class V>
struct Widen;

// 3 to 5 instructions.
template <>
struct Widen<f32x8> {
    KEPS_INLINE f32x8 operator()(two<i32x4> x) const { return toFloat(x.lo, x.hi); }
    template <class Samples>
    KEPS_INLINE f32x8 operator()(Samples x) const {
        return (*this)(widened(x));
    }
};

// 1 to 2 instructions.
template <>
struct Widen<f64x4> {
    KEPS_INLINE f64x4 operator()(i16x8 x) const { return toDouble(widenLower(x)); }
    KEPS_INLINE f64x4 operator()(u16x8 x) const { return toDouble({_mm_cvtepu16_epi32(x.v)}); }
    KEPS_INLINE f64x4 operator()(i32x4 x) const { return toDouble(x); }
};

// Eight 32-bit integers as the bits of a float vector: no instruction where they come from one.
KEPS_INLINE f32x8 bitsOfIntegers(two<i32x4> x) {
    return {_mm256_castsi256_ps(_mm256_set_m128i(x.hi.v, x.lo.v))};
}

// narrowTo<T>(x): 32-bit integers saturated to T's range; the most negative integer becomes T's
// minimum.
template <class T>
KEPS_INLINE auto narrowTo(two<i32x4> x) {
    if constexpr (std::is_same_v<T, std::int32_t>) {
        return x;
    } else if constexpr (std::is_same_v<T, std::uint16_t>) {
        return u16x8{_mm_packus_epi32(x.lo.v, x.hi.v)};
    } else {
        const i16x8 narrow = narrowSaturated(x.lo, x.hi);
        if constexpr (std::is_same_v<T, std::int16_t>) return narrow;
        if constexpr (std::is_same_v<T, std::int8_t>)
            return i8x16{_mm_packs_epi16(narrow.v, narrow.v)};
        if constexpr (std::is_same_v<T, std::uint8_t>)
            return u8x16{_mm_packus_epi16(narrow.v, narrow.v)};
    }
}
template <class T>
KEPS_INLINE auto narrowTo(i32x4 x) {
    if constexpr (std::is_same_v<T, std::int32_t>)
        return x;
    else
        return narrowTo<T>(two<i32x4>{x, x});
}

// x / 2^bits to nearest, ties to even, bits from 1 to 31. The part shifted out is rounded on its
// own, in unsigned 32 bits, which cannot overflow. 7 instructions.
template <class T>
KEPS_INLINE int128<T> shiftDownRounded(int128<T> x, int bits) {
    const __m128i count = _mm_cvtsi32_si128(bits);
    const auto unit = static_cast<std::uint32_t>(1) << bits;
    const __m128i q = std::is_signed_v<T> ? _mm_sra_epi32(x.v, count) : _mm_srl_epi32(x.v, count);
    const __m128i rest = _mm_and_si128(x.v, _mm_set1_epi32(static_cast<int>(unit - 1)));
    const __m128i odd = _mm_and_si128(q, _mm_set1_epi32(1));
    const __m128i bias = _mm_add_epi32(odd, _mm_set1_epi32(static_cast<int>(unit / 2 - 1)));
    return {_mm_add_epi32(q, _mm_srl_epi32(_mm_add_epi32(rest, bias), count))};
}

} // namespace keps
