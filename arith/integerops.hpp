// Sums and differences of integers under the rule of scale.hpp; products.hpp has the products.
//
// Where a result is wanted at a fraction, the rules first round half up, which takes no look at the
// quotient, then clear the lowest bit of those that were ties: an odd one had been rounded away
// from the even neighbour, and an even one is right.
#pragma once

#include "arith/scale.hpp"

namespace keps {

// Numbers with the lowest n bits set, n up to the width, and bit n alone, 0 at the width.
template <class T>
constexpr T lowBits(int n) {
    if (sizeof(T) == 8 && n >= 64) return static_cast<T>(~std::uint64_t{0});
    return static_cast<T>((std::uint64_t{1} << n) - 1);
}
template <class T>
constexpr T oneBit(int n) {
    if (sizeof(T) == 8 && n >= 64) return 0;
    return static_cast<T>(std::uint64_t{1} << n);
}

// x with the lowest bit cleared where tie is set.
template <class T>
KEPS_INLINE int128<T> toEven(int128<T> x, int128<T> tie) {
    return without(x, tie & splatInt(T{1}));
}

// floor((a + b) / 2) of the exact sum.
template <class T>
KEPS_INLINE int128<T> halfSum(int128<T> a, int128<T> b) {
    if constexpr (std::is_signed_v<T>)
        return (a & b) + shiftRight<1>(a ^ b);
    else
        return average(a, b) - ((a ^ b) & splatInt(T{1}));
}

// floor((b - a) / 2) of the exact difference of signed numbers: with not a for -a - 1, half of
// b + not a, rounded up.
template <class T>
KEPS_INLINE int128<T> halfDifference(int128<T> a, int128<T> b) {
    const int128<T> minus = a ^ splatInt(T(-1));
    return (b | minus) - shiftRight<1>(b ^ minus);
}

// Lanes shifted right; bytes through 16-bit lanes, less what came from the neighbour.
template <class T>
struct ShiftDown {
    Count by;
    explicit ShiftDown(int n) : by(n) {}
    KEPS_INLINE int128<T> operator()(int128<T> x) const { return x >> by; }
};
template <>
struct ShiftDown<Kep8u> {
    Count by;
    u8x16 keep;
    explicit ShiftDown(int n) : by(n), keep(splatInt(static_cast<Kep8u>(0xFF >> n))) {}
    KEPS_INLINE u8x16 operator()(u8x16 x) const { return as<Kep8u>(as<Kep16u>(x) >> by) & keep; }
};

// Unsigned x / 2^n, half up, n of 1 and more; the half is added by the average, which cannot
// overflow.
template <class T>
struct HalfUp {
    int128<T> half;
    ShiftDown<T> shift;
    explicit HalfUp(int n) : half(splatInt(lowBits<T>(n - 1))), shift(n - 1) {}
    KEPS_INLINE int128<T> operator()(int128<T> x) const { return shift(average(x, half)); }
};

// x / 2^s from h = floor(x / 2) and x's low bits, for signed sums and differences, s from 2 to the
// width; half up.
template <class T>
struct SignedDown;
template <>
struct SignedDown<Kep16s> {
    i16x8 factor, mask, half;
    explicit SignedDown(int s)
        : factor(splatInt(oneBit<Kep16s>(16 - s))),
          mask(splatInt(lowBits<Kep16s>(s))),
          half(splatInt(oneBit<Kep16s>(s - 1))) {}
    KEPS_INLINE i16x8 operator()(i16x8 h, i16x8 low) const {
        return toEven(mulRounded(h, factor), equal(low & mask, half));
    }
};
template <>
struct SignedDown<Kep32s> {
    Count whole, fraction;
    i32x4 mask, half;
    explicit SignedDown(int s)
        : whole(s - 1),
          fraction(s - 2),
          mask(splatInt(lowBits<Kep32s>(s))),
          half(splatInt(oneBit<Kep32s>(s - 1))) {}
    KEPS_INLINE i32x4 operator()(i32x4 h, i32x4 low) const {
        const i32x4 up = (h >> whole) + ((h >> fraction) & splatInt(1));
        return toEven(up, equal(low & mask, half));
    }
};

// a + b with saturation.
template <class T>
KEPS_INLINE int128<T> saturatedSum(int128<T> a, int128<T> b) {
    if constexpr (sizeof(T) < 4)
        return addSaturated(a, b);
    else {
        a = inRegister(a);
        b = inRegister(b);
        const int128<T> sum = a + b;
        return selectBySign((a ^ sum) & (b ^ sum), sum, limitOf(a));
    }
}
// b - a with saturation.
template <class T>
KEPS_INLINE int128<T> saturatedDifference(int128<T> a, int128<T> b) {
    if constexpr (sizeof(T) < 4)
        return subSaturated(b, a);
    else {
        a = inRegister(a);
        b = inRegister(b);
        const int128<T> difference = b - a;
        return selectBySign((a ^ b) & (b ^ difference), difference, limitOf(b));
    }
}

template <class T>
struct SumOf {
    using light = void;
    using result = T;
    using V = int128<T>;
    // 32s saturates at -31 already, which the rule of the bounds covers as well.
    static constexpr int upper = sizeof(T) == 1        ? 9
                                 : sizeof(T) == 4      ? 32
                                 : std::is_signed_v<T> ? 16
                                                       : 17;
    static constexpr int lower = sizeof(T) == 1        ? -7
                                 : sizeof(T) == 4      ? -30
                                 : std::is_signed_v<T> ? -14
                                                       : -15;

    KEPS_INLINE static V plain(V a, V b) { return saturatedSum(a, b); }
    KEPS_INLINE static V half(V a, V b) {
        a = inRegister(a);
        b = inRegister(b);
        const V one = splatInt(T{1});
        if constexpr (std::is_signed_v<T>) {
            const V h = halfSum(a, b);
            return h + (h & (a ^ b) & one);
        } else {
            const V up = average(a, b);
            return up - (up & (a ^ b) & one);
        }
    }
    struct Down {
        SignedDown<T> rule;
        explicit Down(int s) : rule(s) {}
        KEPS_INLINE V operator()(V a, V b) const {
            a = inRegister(a);
            b = inRegister(b);
            return rule(halfSum(a, b), a + b);
        }
    };
    // A tie of the halved sum is one of the sum only where the sum is even.
    struct UnsignedDown {
        HalfUp<T> up;
        V mask, tie;
        explicit UnsignedDown(int s)
            : up(s - 1), mask(splatInt(lowBits<T>(s - 1))), tie(splatInt(oneBit<T>(s - 2))) {}
        KEPS_INLINE V operator()(V a, V b) const {
            a = inRegister(a);
            b = inRegister(b);
            const V h = halfSum(a, b);
            return toEven(up(h), without(equal(h & mask, tie), a ^ b));
        }
    };
    template <class Run>
    KEPS_INLINE static KepStatus down(int, const Run &run) {
        if constexpr (std::is_signed_v<T>)
            return run.template operator()<Down>();
        else
            return run.template operator()<UnsignedDown>();
    }
};

// b - a. A negative difference of unsigned numbers is 0 under every scale factor.
template <class T>
struct DifferenceOf {
    using light = void;
    using result = T;
    using V = int128<T>;
    static constexpr int upper = 8 * sizeof(T);
    static constexpr int lower = sizeof(T) == 1        ? -7
                                 : sizeof(T) == 4      ? -30
                                 : std::is_signed_v<T> ? -14
                                                       : -15;

    KEPS_INLINE static V plain(V a, V b) { return saturatedDifference(a, b); }
    KEPS_INLINE static V half(V a, V b) {
        a = inRegister(a);
        b = inRegister(b);
        const V one = splatInt(T{1});
        if constexpr (std::is_signed_v<T>) {
            // Only the largest difference rounds up beyond the type's maximum.
            const V h = halfDifference(a, b), carry = h & (a ^ b) & one;
            if constexpr (sizeof(T) == 2)
                return addSaturated(h, carry);
            else
                return h + without(carry, equal(h, splatInt(std::numeric_limits<T>::max())));
        } else {
            const V d = subSaturated(b, a), up = average(d, nothing<T>());
            return up - (up & d & one);
        }
    }
    struct Down {
        SignedDown<T> rule;
        explicit Down(int s) : rule(s) {}
        KEPS_INLINE V operator()(V a, V b) const {
            a = inRegister(a);
            b = inRegister(b);
            return rule(halfDifference(a, b), b - a);
        }
    };
    struct UnsignedDown {
        HalfUp<T> up;
        V mask, tie;
        explicit UnsignedDown(int s)
            : up(s), mask(splatInt(lowBits<T>(s))), tie(splatInt(oneBit<T>(s - 1))) {}
        KEPS_INLINE V operator()(V a, V b) const {
            const V d = subSaturated(b, a);
            return toEven(up(d), equal(d & mask, tie));
        }
    };
    template <class Run>
    KEPS_INLINE static KepStatus down(int, const Run &run) {
        if constexpr (std::is_signed_v<T>)
            return run.template operator()<Down>();
        else
            return run.template operator()<UnsignedDown>();
    }
};

} // namespace keps
