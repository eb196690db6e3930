// Float to integer: scaling by a power of two, the three roundings, saturation. The value meets the
// target's maximum in float, ahead of rounding, and its minimum where 32-bit integers are narrowed
// with saturation: the conversion makes the most negative integer of all that does not fit, of
// minus infinity and of NaN.
#pragma once

#include "frame/fpstate.hpp"
#include "frame/simd/shapes.hpp"

namespace keps {

// 2^exponent, exponent from -126 to 127.
KEPS_INLINE float powerOfTwo(int exponent) {
    return __builtin_bit_cast(float, static_cast<std::uint32_t>(127 + exponent) << 23);
}

// Scalings of a value. They hold scalars: kernels that aren't inlined take them by value.
struct Unscaled {
    KEPS_INLINE f32x8 operator()(f32x8 x) const { return x; }
};
struct ByPower {
    float power;
    KEPS_INLINE f32x8 operator()(f32x8 x) const { return x * splat<f32x8>(power); }
};
// For powers beyond one float's range. The first product is exact or below 2^-126, where the
// second one makes it a zero all the same; or it overflows, which saturates as the value would.
struct ByTwoPowers {
    float first, second;
    KEPS_INLINE f32x8 operator()(f32x8 x) const {
        return x * splat<f32x8>(first) * splat<f32x8>(second);
    }
};

// Calls run with the scaling by 2^-scaleFactor, for any scale factor.
template <class Run>
KEPS_INLINE KepStatus withScaling(std::int32_t scaleFactor, const Run &run) {
    if (scaleFactor == 0) return run(Unscaled{});
    // Every float times 2^-252 rounds to 0, and any but 0 times 2^252 is beyond every integer.
    constexpr std::int32_t one = 126, both = 2 * one;
    const std::int32_t s = scaleFactor > both ? both : (scaleFactor < -both ? -both : scaleFactor);
    if (-one <= s && s <= one) return run(ByPower{powerOfTwo(-s)});
    const std::int32_t first = s > 0 ? one : -one;
    return run(ByTwoPowers{powerOfTwo(-first), powerOfTwo(first - s)});
}

// Roundings to 32-bit integers.
struct TowardZero {
    template <class V>
    KEPS_INLINE static auto round(V x) {
        return toIntTruncated(x);
    }
};
// Rounded ahead of the conversion: one instruction more an element block, but no turn of the
// control register, which costs as much as a hundred elements.
struct ToNearest {
    template <class V>
    KEPS_INLINE static auto round(V x) {
        return toIntTruncated(roundToNearest(x));
    }
};
// Ties away from zero. The sum must be rounded toward zero: to nearest, the number just below one
// half would become 1.
struct HalfAway {
    template <class V>
    KEPS_INLINE static auto round(V x) {
        const V half = (x & splat<V>(-0.0F)) | splat<V>(0.5F);
        return toIntTruncated(x + half);
    }
};

// Calls run with a rounding while the control register is as that rounding needs it; run's work
// must be in a function that is not inlined, so that none of it moves past the changes.
template <class Run>
KEPS_INLINE KepStatus withRounding(int rndMode, const Run &run) {
    if (rndMode == kepRoundNearest) return run(ToNearest{});
    if (rndMode == kepRoundTowardZero) return run(TowardZero{});
    const RoundingScope scope(roundTowardZero);
    return run(HalfAway{});
}

} // namespace keps
