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
    constexpr std::int32_t one = sizeof(E) == 4 ? 126 : 1022, both = 2 * one;
    if (-one <= scaleFactor && scaleFactor <= one) [[likely]]
        return run(ByPower<E>{powerOf<E>(-scaleFactor)});
    // Every number times 2^-both rounds to 0, and any but 0 times 2^both is beyond every integer.
    const std::int32_t s = scaleFactor > both ? both : (scaleFactor < -both ? -both : scaleFactor);
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
    template <class V>
    KEPS_INLINE static auto round(V x) {
        return toInt(x);
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

// Roundings of kernels that see to the control register and call a kernel by another rounding. That
// one must not be inlined, so that none of its work moves past a change of the register; and short
// arrays to nearest are free of the frame that the register takes.

// For HalfAway: turns the register.
struct HalfAwayInScope {
    template <class Run>
    KEPS_INLINE static KepStatus dispatch(const Run &run) {
        const RoundingScope scope(roundTowardZero);
        return run(HalfAway{});
    }
};
// To nearest by the caller's mode where that is to nearest, an instruction less a block: to read
// the register takes as long as some 200 elements.
struct ToNearestLong {
    static constexpr size worthReading = 512;
    template <class Run>
    KEPS_INLINE static KepStatus dispatch(const Run &run) {
        return isRounding(roundNearest) ? run(AsSet{}) : run(ToNearest{});
    }
};
template <class Rounding>
concept Dispatching =
    std::is_same_v<Rounding, HalfAwayInScope> || std::is_same_v<Rounding, ToNearestLong>;

template <class Run>
KEPS_INLINE KepStatus withRounding(int rndMode, size n, const Run &run) {
    if (rndMode == kepRoundTowardZero) return run(TowardZero{});
    if (rndMode != kepRoundNearest) return run(HalfAwayInScope{});
    return n < ToNearestLong::worthReading ? run(ToNearest{}) : run(ToNearestLong{});
}

// To integers of To: the maximum by min, the minimum and NaN by the conversion and the narrowing.
template <class To, class Scaling, class Rounding>
struct ToInteger {
    Scaling scale;
    template <class V>
    KEPS_INLINE auto wide(V x) const {
        constexpr auto most = static_cast<typename V::element>(std::numeric_limits<To>::max());
        return Rounding::round(min(splat<V>(most), scale(x)));
    }
    template <class V>
    KEPS_INLINE auto operator()(V x) const {
        return narrowTo<To>(wide(x));
    }
};

// To 8 bits: 32 elements a round leave as one store; the rest by map. at(p) makes a float vector of
// the 8 elements at p.
template <class To, class Scaling, class Rounding, class From, class At>
KEPS_INLINE void toBytes(const From *src, To *dst, size n, Scaling scale, const At &at) {
    const ToInteger<To, Scaling, Rounding> op{scale};
    size i = 0;
    for (; i + 32 <= n; i += 32) {
        const auto words = [&](int k) KEPS_INLINE_LAMBDA {
            const two<i32x4> wide = op.wide(at(loadBlock<8>(src + i + k)));
            return narrowSaturated(wide.lo, wide.hi);
        };
        const auto bytes = [&](int k) KEPS_INLINE_LAMBDA {
            const i16x8 a = words(k), b = words(k + 8);
            if constexpr (std::is_signed_v<To>)
                return i8x16{_mm_packs_epi16(a.v, b.v)};
            else
                return u8x16{_mm_packus_epi16(a.v, b.v)};
        };
        storeBlock<32>(dst + i, {bytes(0), bytes(16)});
    }
    if (i == n) return;
    const auto each = [&](auto x) KEPS_INLINE_LAMBDA { return op(at(x)); };
    map<8, 2>(n - i, each, dst + i, src + i);
}

} // namespace keps
