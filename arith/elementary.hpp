// Integer elements in vectors of 32-bit integers and floats: what the elementary functions of
// scaled integers share. Values are clamped in floating point ahead of their rounding, so that no
// conversion overflows.
#pragma once

#include "arith/widths.hpp"
#include "frame/entry.hpp"
#include "frame/fpstate.hpp"
#include "frame/simd/math256.hpp"

namespace keps {

KEPS_INLINE two<i32x4> widened(i16x8 x) {
    return {widenLower(x), widenUpper(x)};
}
KEPS_INLINE two<i32x4> widened(u16x8 x) {
    const __m128i none = _mm_setzero_si128();
    return {{_mm_unpacklo_epi16(x.v, none)}, {_mm_unpackhi_epi16(x.v, none)}};
}
// The lower eight.
KEPS_INLINE two<i32x4> widened(u8x16 x) {
    return {{_mm_cvtepu8_epi32(x.v)}, {_mm_cvtepu8_epi32(_mm_srli_si128(x.v, 4))}};
}

template <class T>
inline constexpr double largest = std::is_same_v<T, std::uint8_t>    ? 255
                                  : std::is_same_v<T, std::uint16_t> ? 65535
                                                                     : 32767;

// To nearest, ties to even, whatever the current mode is.
KEPS_INLINE i32x4 nearestInt(f64x4 x) {
    return toIntTruncated(roundToNearest(x));
}
KEPS_INLINE two<i32x4> nearestInt(f32x8 x) {
    return toIntTruncated(roundToNearest(x));
}

// 2^-scaleFactor, with the scale factor cut where every result is 0 or saturated all the same.
KEPS_INLINE double scaleOf(std::int32_t scaleFactor) {
    const std::int32_t s = scaleFactor > 100 ? 100 : (scaleFactor < -60 ? -60 : scaleFactor);
    return __builtin_bit_cast(double, static_cast<std::uint64_t>(1023 - s) << 52);
}

} // namespace keps
