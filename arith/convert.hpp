// Float to integer: scaling by a power of two, the three roundings, saturation. The value meets the
// target's maximum in float, ahead of rounding, and its minimum where 32-bit integers are narrowed
// with saturation: the conversion makes the most negative integer of all that does not fit, of
// minus infinity and of NaN.
#pragma once

#include <limits>

#include "arith/widths.hpp"
#include "frame/fpstate.hpp"
#include "frame/simd/math256.hpp"

namespace keps {

// 2^exponent, for exponents of the type's normal range.
template <class E>
KEPS_INLINE E powerOf(int exponent) {
    if constexpr (sizeof(E) == 4)
        return __builtin_bit_cast(float, static_cast<std::uint32_t>(127 + exponent) << 23);
    else
        return __builtin_bit_cast(double, static_cast<std::uint64_t>(1023 + exponent) << 52);
}

// Scalings of a value. They hold scalars: kernels that aren't inlined take them by value.
struct Unscaled {
    template <class V>
    KEPS_INLINE V operator()(V x) const {
        return x;
    }
};
template <class E>
struct ByPower {
    E power;
    template <class V>
    KEPS_INLINE V operator()(V x) const {
        return x * splat<V>(power);
    }
};
// For powers beyond one float's range. The first product is exact or below the smallest normal
// number, where the second one makes it a zero all the same; or it overflows, which saturates as
// the value would.
template <class E>
struct ByTwoPowers {
    E first, second;
    template <class V>
    KEPS_INLINE V operator()(V x) const {
        return x * splat<V>(first) * splat<V>(second);
    }
};

// Calls run with the scaling of E by 2^-scaleFactor, for any scale factor.
template <class E = float, class Run>
KEPS_INLINE KepStatus withScaling(std::int32_t scaleFactor, const Run &run) {
    if (scaleFactor == 0) return run(Unscaled{});
    // Every number times 2^-both rounds to 0, and any but 0 times 2^both is beyond every integer.
    constexpr std::int32_t one = sizeof(E) == 4 ? 126 : 1022, both = 2 * one;
    const std::int32_t s = scaleFactor > both ? both : (scaleFactor < -both ? -both : scaleFactor);
    if (-one <= s && s <= one) return run(ByPower<E>{powerOf<E>(-s)});
    const std::int32_t first = s > 0 ? one : -one;
    return run(ByTwoPowers<E>{powerOf<E>(-first), powerOf<E>(first - s)});
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
// By the caller's rounding mode.
struct AsSet {
    KEPS_INLINE static two<i32x4> round(f32x8 x) { return toInt(x); }
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

// To integers of To: the maximum by min, the minimum and NaN by the conversion and the narrowing.
template <class To, class Scaling, class Rounding>
struct ToInteger {
    Scaling scale;
    template <class V>
    KEPS_INLINE auto operator()(V x) const {
        constexpr auto most = static_cast<typename V::element>(std::numeric_limits<To>::max());
        return narrowTo<To>(Rounding::round(min(splat<V>(most), scale(x))));
    }
};

} // namespace keps
