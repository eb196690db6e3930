// Integer elements in vectors of 32-bit integers and floats: what the elementary functions of
// scaled integers share. Values are clamped in floating point ahead of their rounding, so that no
// conversion overflows.
#pragma once

#include "arith/widths.hpp"
#include "frame/entry.hpp"
#include "frame/fpstate.hpp"
#include "frame/simd/math256.hpp"

namespace keps {

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
