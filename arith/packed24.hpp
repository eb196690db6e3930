// Arrays of 24-bit samples, 3 bytes each, for the loop shapes: blocks of 8 elements.
#pragma once

#include "frame/simd/shapes.hpp"

namespace keps {

struct Packed24 {
    std::uint8_t byte[3];
};

// 24 bytes in two vectors: bytes 0 to 15; and as loaded bytes 8 to 23, as stored bytes 16 to 23 in
// the lower half.
struct packed24x8 {
    __m128i first, last;
};
template <>
struct LaneType<Packed24> {
    using type = Packed24;
};
template <>
struct BlockType<Packed24, 24> {
    using type = packed24x8;
};

namespace detail {

KEPS_INLINE packed24x8 load24(const std::uint8_t *p) {
    return {load16(p), load16(p + 8)};
}
KEPS_INLINE void store24(std::uint8_t *p, packed24x8 x) {
    store16(p, x.first);
    storeAs<std::int64_t>(p + 16, _mm_cvtsi128_si64(x.last));
}
KEPS_INLINE const std::uint8_t *bytesOf(const Packed24 *p) {
    return reinterpret_cast<const std::uint8_t *>(p);
}
KEPS_INLINE std::uint8_t *bytesOf(Packed24 *p) {
    return reinterpret_cast<std::uint8_t *>(p);
}
// Of the first or last elements of an array below 8.
KEPS_INLINE size endBytes(size n) {
    return n >= 4 ? 12 : (n >= 2 ? 6 : 3);
}

} // namespace detail

template <int N>
KEPS_INLINE packed24x8 loadBlock(const Packed24 *p) {
    static_assert(N == 8);
    return detail::load24(detail::bytesOf(p));
}
template <int N>
KEPS_INLINE void storeBlock(Packed24 *p, packed24x8 x) {
    static_assert(N == 8);
    detail::store24(detail::bytesOf(p), x);
}

// The ends of short arrays, in the same lanes as those of other types, by way of a copy.
template <int N>
KEPS_INLINE packed24x8 loadEnds(const Packed24 *p, size n) {
    std::uint8_t copy[24] = {};
    const size bytes = detail::endBytes(n);
    const std::uint8_t *head = detail::bytesOf(p), *tail = head + 3 * n - bytes;
    for (size i = 0; i < bytes; ++i) {
        copy[i] = head[i];
        copy[bytes + i] = tail[i];
    }
    return detail::load24(copy);
}
template <int N>
KEPS_INLINE void storeEnds(Packed24 *p, packed24x8 x, size n) {
    std::uint8_t copy[24];
    detail::store24(copy, x);
    const size bytes = detail::endBytes(n);
    std::uint8_t *head = detail::bytesOf(p), *tail = head + 3 * n - bytes;
    for (size i = 0; i < bytes; ++i) {
        head[i] = copy[i];
        tail[i] = copy[bytes + i];
    }
}

// Each element in a 32-bit lane: placed in its upper three bytes, shifted down. 2 instructions a
// half.
template <class T>
KEPS_INLINE two<int128<T>> unpack24(packed24x8 x) {
    const __m128i lower = _mm_setr_epi8(-1, 0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11);
    const __m128i upper = _mm_setr_epi8(-1, 4, 5, 6, -1, 7, 8, 9, -1, 10, 11, 12, -1, 13, 14, 15);
    const __m128i a = _mm_shuffle_epi8(x.first, lower), b = _mm_shuffle_epi8(x.last, upper);
    if constexpr (std::is_signed_v<T>)
        return {{_mm_srai_epi32(a, 8)}, {_mm_srai_epi32(b, 8)}};
    else
        return {{_mm_srli_epi32(a, 8)}, {_mm_srli_epi32(b, 8)}};
}

// The lower three bytes of each lane. The upper half is packed to bytes 12 to 23 of 24, less 16. 3
// instructions.
template <class T>
KEPS_INLINE packed24x8 pack24(two<int128<T>> x) {
    const __m128i lower = _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
    const __m128i upper = _mm_setr_epi8(5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1, 0, 1, 2, 4);
    const __m128i a = _mm_shuffle_epi8(x.lo.v, lower), b = _mm_shuffle_epi8(x.hi.v, upper);
    return {_mm_blend_epi16(a, b, 0xC0), b};
}

} // namespace keps
