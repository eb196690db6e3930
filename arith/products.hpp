// Products of integers, and sums of products, under the rule of scale.hpp: exact results of twice
// the width, rounded and narrowed.
#pragma once

#include "arith/integerops.hpp"

namespace keps {

// Roundings of 32-bit results. Near: those that stay half a unit away from the type's limits.
template <class T>
struct NearDown {
    Count by;
    int128<T> before; // half a unit, less one
    explicit NearDown(int s) : by(s), before(splatInt(lowBits<T>(s - 1))) {}
    KEPS_INLINE int128<T> operator()(int128<T> x) const {
        const auto odd = (x >> by) & splatInt(T{1});
        return (x + before + odd) >> by;
    }
};
// Any that are narrowed to 16 bits, s of 1 to 15: what is cut off at the top saturates anyway.
struct CutDown {
    NearDown<Kep32s> rule;
    i32x4 top;
    explicit CutDown(int s)
        : rule(s), top(splatInt(static_cast<Kep32s>(0x7FFFFFFF - lowBits<Kep32s>(s)))) {}
    KEPS_INLINE i32x4 operator()(i32x4 x) const { return rule({_mm_min_epi32(x.v, top.v)}); }
};
// Any; s of 2 and more.
struct AnyDown {
    Count by;
    i32x4 quarter, mask, half;
    explicit AnyDown(int s)
        : by(s - 1),
          quarter(splatInt(oneBit<Kep32s>(s - 2))),
          mask(splatInt(lowBits<Kep32s>(s))),
          half(splatInt(oneBit<Kep32s>(s - 1))) {}
    KEPS_INLINE i32x4 operator()(i32x4 x) const {
        return toEven((shiftRight<1>(x) + quarter) >> by, equal(x & mask, half));
    }
};
KEPS_INLINE i32x4 halved(i32x4 x) {
    const i32x4 h = shiftRight<1>(x);
    return h + (h & x & splatInt(1));
}

// The bound of a product is told by its factors' signs and zeros. Signed: the maximum by both
// signs, whose negative is one short of the minimum.
template <class T>
KEPS_INLINE int128<T> boundOfProduct(int128<T> a, int128<T> b) {
    using Limits = std::numeric_limits<T>;
    const int128<T> highest = splatInt(Limits::max());
    if constexpr (std::is_signed_v<T>) {
        const int128<T> x = withSign(withSign(highest, a), b);
        if constexpr (sizeof(T) == 2)
            return addSaturated(x, x);
        else
            return selectBySign(x, x, splatInt(Limits::min()));
    } else {
        return (equal(a, nothing<T>()) | equal(b, nothing<T>())) ^ highest;
    }
}

template <class T>
struct ProductOf;

template <>
struct ProductOf<Kep8u> {
    using result = Kep8u;
    using V = u8x16;
    static constexpr int upper = 16, lower = -7;

    KEPS_INLINE static two<u16x8> exact(V a, V b) {
        const auto x = interleave<Kep16u>(a, nothing<Kep8u>());
        const auto y = interleave<Kep16u>(b, nothing<Kep8u>());
        return {mulLow(x.lo, y.lo), mulLow(x.hi, y.hi)};
    }
    KEPS_INLINE static V narrow(u16x8 lo, u16x8 hi) {
        return narrowUnsigned(as<Kep16s>(lo), as<Kep16s>(hi));
    }
    KEPS_INLINE static V plain(V a, V b) {
        const auto x = exact(a, b);
        const __m128i top = _mm_set1_epi16(255);
        return narrow({_mm_min_epu16(x.lo.v, top)}, {_mm_min_epu16(x.hi.v, top)});
    }
    KEPS_INLINE static V bounded(V a, V b) { return boundOfProduct(a, b); }
    // k of 1 to 7: 255 times 2^k is the most that the narrowing has to take.
    struct Up {
        u16x8 factor;
        explicit Up(int s) : factor(splatInt(oneBit<Kep16u>(-s))) {}
        KEPS_INLINE V operator()(V a, V b) const {
            const auto x = exact(a, b);
            const __m128i top = _mm_set1_epi16(255);
            return narrow(mulLow({_mm_min_epu16(x.lo.v, top)}, factor),
                          mulLow({_mm_min_epu16(x.hi.v, top)}, factor));
        }
    };
    KEPS_INLINE static V half(V a, V b) {
        const auto x = exact(a, b);
        const auto one = [](u16x8 v) KEPS_INLINE_LAMBDA {
            const u16x8 h = mulHigh(v, splatInt(Kep16u{0x8000}));
            return h + (h & v & splatInt(Kep16u{1}));
        };
        return narrow(one(x.lo), one(x.hi));
    }
    struct Down {
        Count by;
        u16x8 bit, half;
        explicit Down(int s)
            : by(s - 1), bit(splatInt(oneBit<Kep16u>(s))), half(splatInt(lowBits<Kep16u>(s - 1))) {}
        KEPS_INLINE u16x8 round(u16x8 x) const {
            return average(x, half + equal(x & bit, nothing<Kep16u>())) >> by;
        }
        KEPS_INLINE V operator()(V a, V b) const {
            const auto x = exact(a, b);
            return narrow(round(x.lo), round(x.hi));
        }
    };
    template <class Run>
    KEPS_INLINE static KepStatus down(int, const Run &run) {
        return run.template operator()<Down>();
    }
};

// From 17 on the lower halves of the products only tell ties.
template <class T>
KEPS_INLINE int128<T> tieOfHigh(int128<T> high, int128<T> low, int128<T> mask, int128<T> half) {
    return equal(high & mask, half) & equal(low, nothing<T>());
}

template <>
struct ProductOf<Kep16s> {
    using result = Kep16s;
    using V = i16x8;
    static constexpr int upper = 30, lower = -14;

    KEPS_INLINE static two<i32x4> exact(V a, V b) {
        a = inRegister(a);
        b = inRegister(b);
        return interleave<Kep32s>(mulLow(a, b), mulHigh(a, b));
    }
    KEPS_INLINE static V plain(V a, V b) {
        const auto x = exact(a, b);
        return narrowSaturated(x.lo, x.hi);
    }
    KEPS_INLINE static V bounded(V a, V b) { return boundOfProduct(a, b); }
    KEPS_INLINE static V half(V a, V b) {
        const auto x = exact(a, b);
        return narrowSaturated(halved(x.lo), halved(x.hi));
    }
    // The upper halves are cut to what 2^k brings to the type's limits; from there on the rest
    // saturates.
    struct Up {
        V lowest, highest;
        i32x4 factor;
        explicit Up(int s)
            : lowest(splatInt(static_cast<Kep16s>(-(1 << (15 + s))))),
              highest(splatInt(lowBits<Kep16s>(15 + s))),
              factor(splatInt(oneBit<Kep32s>(-s))) {}
        KEPS_INLINE V operator()(V a, V b) const {
            b = inRegister(b);
            const V high = {_mm_min_epi16(_mm_max_epi16(mulHigh(a, b).v, lowest.v), highest.v)};
            const auto x = interleave<Kep32s>(mulLow(a, b), high);
            return narrowSaturated(mulLow(x.lo, factor), mulLow(x.hi, factor));
        }
    };
    // Half a unit, less one where the quotient is even, is summed with the product.
    struct DownTo14 {
        Count by;
        V bit, half;
        explicit DownTo14(int s)
            : by(s), bit(splatInt(oneBit<Kep16s>(s))), half(splatInt(oneBit<Kep16s>(s - 1))) {}
        KEPS_INLINE V operator()(V a, V b) const {
            a = inRegister(a);
            b = inRegister(b);
            const V up = half + equal(mulLow(a, b) & bit, nothing<Kep16s>());
            const auto x = interleave<Kep16s>(a, splatInt(Kep16s{1})),
                       y = interleave<Kep16s>(b, up);
            return narrowSaturated(mulAddPairs(x.lo, y.lo) >> by, mulAddPairs(x.hi, y.hi) >> by);
        }
    };
    // Only -1 squared leaves the range, and it alone gives the minimum.
    struct Down15 {
        explicit Down15(int) {}
        KEPS_INLINE V operator()(V a, V b) const {
            const V tie = equal(mulLow(a, b) & splatInt(Kep16s{0x7FFF}), splatInt(Kep16s{0x4000}));
            const V x = toEven(mulRounded(a, b), tie);
            return x ^ equal(x, splatInt(std::numeric_limits<Kep16s>::min()));
        }
    };
    struct Down16 {
        explicit Down16(int) {}
        KEPS_INLINE V operator()(V a, V b) const {
            const V low = mulLow(a, b), minimum = splatInt(std::numeric_limits<Kep16s>::min());
            return toEven(mulHigh(a, b) - shiftRight<15>(low), equal(low, minimum));
        }
    };
    struct DownFrom17 {
        V factor, mask, half;
        explicit DownFrom17(int s)
            : factor(splatInt(oneBit<Kep16s>(31 - s))),
              mask(splatInt(lowBits<Kep16s>(s - 16))),
              half(splatInt(oneBit<Kep16s>(s - 17))) {}
        KEPS_INLINE V operator()(V a, V b) const {
            const V high = mulHigh(a, b);
            return toEven(mulRounded(high, factor), tieOfHigh(high, mulLow(a, b), mask, half));
        }
    };
    template <class Run>
    KEPS_INLINE static KepStatus down(int s, const Run &run) {
        if (s <= 14) return run.template operator()<DownTo14>();
        if (s == 15) return run.template operator()<Down15>();
        if (s == 16) return run.template operator()<Down16>();
        return run.template operator()<DownFrom17>();
    }
};

template <>
struct ProductOf<Kep16u> {
    using result = Kep16u;
    using V = u16x8;
    static constexpr int upper = 32, lower = -15;

    KEPS_INLINE static V narrow(u32x4 lo, u32x4 hi) {
        return narrowUnsigned(as<Kep32s>(lo), as<Kep32s>(hi));
    }
    KEPS_INLINE static V plain(V a, V b) {
        a = inRegister(a);
        b = inRegister(b);
        const V fits = equal(mulHigh(a, b), nothing<Kep16u>());
        return select(fits, splatInt(Kep16u{0xFFFF}), mulLow(a, b));
    }
    struct Up {
        Count by, cut;
        explicit Up(int s) : by(-s), cut(16 + s) {}
        KEPS_INLINE V operator()(V a, V b) const {
            b = inRegister(b);
            const V low = mulLow(a, b), beyond = mulHigh(a, b) | (low >> cut);
            return select(equal(beyond, nothing<Kep16u>()), splatInt(Kep16u{0xFFFF}), low << by);
        }
    };
    struct DownTo16 {
        NearDown<Kep32u> rule;
        explicit DownTo16(int s) : rule(s) {}
        KEPS_INLINE V operator()(V a, V b) const {
            a = inRegister(a);
            b = inRegister(b);
            const auto x = interleave<Kep32u>(mulLow(a, b), mulHigh(a, b));
            return narrow(rule(x.lo), rule(x.hi));
        }
    };
    KEPS_INLINE static V bounded(V a, V b) { return boundOfProduct(a, b); }
    KEPS_INLINE static V half(V a, V b) { return DownTo16(1)(a, b); }
    struct DownFrom17 {
        HalfUp<Kep16u> up;
        V mask, tie;
        explicit DownFrom17(int s)
            : up(s - 16),
              mask(splatInt(lowBits<Kep16u>(s - 16))),
              tie(splatInt(oneBit<Kep16u>(s - 17))) {}
        KEPS_INLINE V operator()(V a, V b) const {
            const V high = mulHigh(a, b);
            return toEven(up(high), tieOfHigh(high, mulLow(a, b), mask, tie));
        }
    };
    template <class Run>
    KEPS_INLINE static KepStatus down(int s, const Run &run) {
        if (s <= 16) return run.template operator()<DownTo16>();
        return run.template operator()<DownFrom17>();
    }
};

// Products of 16-bit numbers that a 32-bit result holds exactly.
struct Product16s32s {
    using result = Kep32s;
    using V = i16x8;
    static constexpr int upper = 30, lower = -30;

    KEPS_INLINE static two<i32x4> plain(V a, V b) { return ProductOf<Kep16s>::exact(a, b); }
    KEPS_INLINE static two<i32x4> half(V a, V b) {
        const auto x = plain(a, b);
        return {halved(x.lo), halved(x.hi)};
    }
    struct Down {
        NearDown<Kep32s> rule;
        explicit Down(int s) : rule(s) {}
        KEPS_INLINE two<i32x4> operator()(V a, V b) const {
            const auto x = plain(a, b);
            return {rule(x.lo), rule(x.hi)};
        }
    };
    template <class Run>
    KEPS_INLINE static KepStatus down(int, const Run &run) {
        return run.template operator()<Down>();
    }
};

// 16-bit results of exact 32-bit ones that Exact::of makes.
template <class Exact>
struct Narrowed {
    using result = Kep16s;
    static constexpr int upper = Exact::upper, lower = Exact::lower;

    template <class... V>
    KEPS_INLINE static i16x8 plain(V... x) {
        const two<i32x4> v = Exact::of(x...);
        return narrowSaturated(v.lo, v.hi);
    }
    template <class... V>
    KEPS_INLINE static i16x8 half(V... x) {
        const two<i32x4> v = Exact::of(x...);
        return narrowSaturated(halved(v.lo), halved(v.hi));
    }
    template <class Rounding>
    struct Down {
        Rounding rule;
        explicit Down(int s) : rule(s) {}
        template <OneVector... V>
        KEPS_INLINE i16x8 operator()(V... x) const {
            const two<i32x4> v = Exact::of(x...);
            return narrowSaturated(rule(v.lo), rule(v.hi));
        }
    };
    template <class Run>
    KEPS_INLINE static KepStatus down(int s, const Run &run) {
        if (s <= 15) return run.template operator()<Down<CutDown>>();
        return run.template operator()<Down<AnyDown>>();
    }
};

// An unsigned and a signed number.
struct Exact16u16s {
    static constexpr int upper = 31, lower = -14;
    KEPS_INLINE static two<i32x4> of(u16x8 a, i16x8 b) {
        const u16x8 c = as<Kep16u>(b);
        // Read as unsigned, a negative b is 2^16 too large.
        const u16x8 high = mulHigh(a, c) - (a & as<Kep16u>(shiftRight<15>(b)));
        return interleave<Kep32s>(mulLow(a, c), high);
    }
};

// a * b + sum.
struct Exact16sPlus {
    static constexpr int upper = 31, lower = -14;
    KEPS_INLINE static two<i32x4> of(i16x8 a, i16x8 b, i16x8 sum) {
        const auto x = interleave<Kep16s>(a, sum), y = interleave<Kep16s>(b, splatInt(Kep16s{1}));
        return {mulAddPairs(x.lo, y.lo), mulAddPairs(x.hi, y.hi)};
    }
};

// Complex products of four pairs: real and imaginary parts apart, each exact but for the sum of
// four minima, 2^31, which is held as 2^31 - 1.
struct ComplexProduct16 {
    i32x4 re, im;
    KEPS_INLINE ComplexProduct16(i16x8 a, i16x8 b) {
        a = inRegister(a);
        b = inRegister(b);
        // With not d for -d - 1, ac - bd is a c + b not(d) + b; so no part is negated.
        const i16x8 notIm = b ^ as<Kep16s>(splatInt(Kep32u{0xFFFF0000}));
        const __m128i swap = _mm_setr_epi8(2, 3, 0, 1, 6, 7, 4, 5, 10, 11, 8, 9, 14, 15, 12, 13);
        const i16x8 swapped = {_mm_shuffle_epi8(b.v, swap)};
        re = mulAddPairs(a, notIm) + shiftRight<16>(as<Kep32s>(a));
        im = mulAddPairs(a, swapped);
        im = im ^ equal(im, splatInt(std::numeric_limits<Kep32s>::min()));
    }
    // Parts saturated to 16 bits, in turn.
    KEPS_INLINE static i16x8 join(i32x4 re, i32x4 im) {
        const __m128i turns = _mm_setr_epi8(0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15);
        return {_mm_shuffle_epi8(_mm_packs_epi32(re.v, im.v), turns)};
    }
};

template <>
struct ProductOf<Kep16sc> {
    using result = Kep16s;
    using V = i16x8;
    static constexpr int upper = 31, lower = -14;

    KEPS_INLINE static V plain(V a, V b) {
        const ComplexProduct16 p(a, b);
        return p.join(p.re, p.im);
    }
    KEPS_INLINE static V half(V a, V b) {
        const ComplexProduct16 p(a, b);
        return p.join(halved(p.re), halved(p.im));
    }
    // Real parts keep away from the top by 2^15 on their own.
    template <class OfRe, class OfIm>
    struct Down {
        OfRe re;
        OfIm im;
        explicit Down(int s) : re(s), im(s) {}
        KEPS_INLINE V operator()(V a, V b) const {
            const ComplexProduct16 p(a, b);
            return p.join(re(p.re), im(p.im));
        }
    };
    template <class Run>
    KEPS_INLINE static KepStatus down(int s, const Run &run) {
        if (s <= 15) return run.template operator()<Down<NearDown<Kep32s>, CutDown>>();
        return run.template operator()<Down<AnyDown, AnyDown>>();
    }
};

// Exact 64-bit results of the even and the odd lanes of 32-bit vectors.
struct Wide {
    u64x2 even, odd;

    // The lower words of all four.
    KEPS_INLINE i32x4 low() const {
        return {_mm_blend_epi16(even.v, _mm_slli_epi64(odd.v, 32), 0xCC)};
    }
    KEPS_INLINE i32x4 high() const {
        return {_mm_blend_epi16(_mm_srli_epi64(even.v, 32), odd.v, 0xCC)};
    }
    // The lower words of the even ones, the upper words of the odd ones.
    KEPS_INLINE i32x4 mixed() const { return {_mm_blend_epi16(even.v, odd.v, 0xCC)}; }
    KEPS_INLINE i32x4 saturated() const { return saturated(low()); }
    // With the lower words at hand.
    KEPS_INLINE i32x4 saturated(i32x4 l) const {
        const i32x4 h = high();
        return select(equal(shiftRight<31>(l), h), limitOf(h), l);
    }
};

KEPS_INLINE u64x2 oddWords(i32x4 x) {
    return {_mm_srli_epi64(x.v, 32)};
}
// Of the even words.
KEPS_INLINE u64x2 wideProduct(u64x2 a, u64x2 b) {
    return {_mm_mul_epi32(a.v, b.v)};
}
KEPS_INLINE u64x2 evenWords(i32x4 x) {
    return as<Kep64u>(x);
}

inline constexpr Kep64u topBit = Kep64u{1} << 63;

// 64-bit roundings work on x + 2^63, since there is no signed shift of 64 bits; what the offset
// makes of the quotient is taken off behind it. Near: results of up to 2^62 and s up to 62.
struct NearWideDown {
    Count by;
    u64x2 bit, half, offset;
    explicit NearWideDown(int s)
        : by(s),
          bit(splatInt(oneBit<Kep64u>(s))),
          half(splatInt(topBit + oneBit<Kep64u>(s - 1))),
          offset(splatInt(topBit >> s)) {}
    // Without the offset taken off.
    KEPS_INLINE u64x2 quotient(u64x2 x) const {
        const u64x2 minusEven = equal(x & bit, nothing<Kep64u>());
        return (x + half + minusEven) >> by;
    }
    KEPS_INLINE u64x2 operator()(u64x2 x) const { return quotient(x) - offset; }
};
// Any result; s from 2 to 63.
struct AnyWideDown {
    Count by;
    u64x2 quarter, mask, half, offset;
    explicit AnyWideDown(int s)
        : by(s - 1),
          quarter(splatInt(oneBit<Kep64u>(s - 2))),
          mask(splatInt(lowBits<Kep64u>(s))),
          half(splatInt(oneBit<Kep64u>(s - 1))),
          offset(splatInt(topBit >> s)) {}
    KEPS_INLINE u64x2 operator()(u64x2 x) const {
        const u64x2 up = ((shiftRight<1>(x ^ splatInt(topBit)) + quarter) >> by) - offset;
        return toEven(up, equal(x & mask, half));
    }
};
KEPS_INLINE u64x2 halvedWide(u64x2 x) {
    const u64x2 h = shiftRight<1>(x ^ splatInt(topBit)) - splatInt(topBit >> 1);
    return h + (h & x & splatInt(Kep64u{1}));
}

// 32-bit results of the exact 64-bit ones that Exact::of makes.
template <class Exact>
struct NarrowedWide {
    using result = Kep32s;
    using V = i32x4;
    static constexpr int upper = Exact::upper, lower = Exact::lower;

    template <class... W>
    KEPS_INLINE static V plain(W... x) {
        return Exact::of(x...).saturated();
    }
    template <class... W>
    KEPS_INLINE static V half(W... x) {
        const Wide v = Exact::of(x...);
        return Wide{halvedWide(v.even), halvedWide(v.odd)}.saturated();
    }
    struct Down {
        AnyWideDown rule;
        explicit Down(int s) : rule(s) {}
        template <OneVector... W>
        KEPS_INLINE V operator()(W... x) const {
            const Wide v = Exact::of(x...);
            return Wide{rule(v.even), rule(v.odd)}.saturated();
        }
    };
    struct NearDown {
        NearWideDown rule;
        explicit NearDown(int s) : rule(s) {}
        template <OneVector... W>
        KEPS_INLINE V operator()(W... x) const {
            const Wide v = Exact::of(x...);
            return Wide{rule(v.even), rule(v.odd)}.saturated();
        }
    };
    // Near results of s from 32 to 62 fit 32 bits.
    struct NearDownFrom32 {
        NearWideDown rule;
        V offset;
        explicit NearDownFrom32(int s) : rule(s), offset(splatInt(oneBit<Kep32s>(63 - s))) {}
        template <OneVector... W>
        KEPS_INLINE V operator()(W... x) const {
            const Wide v = Exact::of(x...);
            return Wide{rule.quotient(v.even), rule.quotient(v.odd)}.low() - offset;
        }
    };
    template <class Run>
    KEPS_INLINE static KepStatus down(int s, const Run &run) {
        if (s < 32) return run.template operator()<NearDown>();
        if constexpr (Exact::near)
            return run.template operator()<NearDownFrom32>();
        else
            return run.template operator()<Down>();
    }
};

struct Exact32s {
    static constexpr int upper = 62, lower = -31;
    static constexpr bool near = true;
    KEPS_INLINE static Wide of(i32x4 a, i32x4 b) {
        a = inRegister(a);
        b = inRegister(b);
        return {wideProduct(evenWords(a), evenWords(b)), wideProduct(oddWords(a), oddWords(b))};
    }
};

// a * b + sum.
struct Exact32sPlus {
    static constexpr int upper = 63, lower = -31;
    static constexpr bool near = false;
    KEPS_INLINE static Wide of(i32x4 a, i32x4 b, i32x4 sum) {
        const Wide p = Exact32s::of(a, b);
        const i32x4 sign = shiftRight<31>(sum);
        const u64x2 even = {_mm_blend_epi16(sum.v, _mm_slli_epi64(sign.v, 32), 0xCC)};
        const u64x2 odd = {_mm_blend_epi16(_mm_srli_epi64(sum.v, 32), sign.v, 0xCC)};
        return {p.even + even, p.odd + odd};
    }
};

// Complex products: real parts even, imaginary parts odd, exact but for the sum of four minima,
// 2^63, which is held as 2^63 - 2^31: halves of up to 2^30 may be added to it, as to all others.
struct Exact32sc {
    static constexpr int upper = 63, lower = -31;
    static constexpr bool near = false;
    KEPS_INLINE static Wide of(i32x4 a, i32x4 b) {
        const u64x2 ar = evenWords(a), ai = oddWords(a), br = evenWords(b), bi = oddWords(b);
        const u64x2 im = wideProduct(ar, bi) + wideProduct(ai, br);
        const u64x2 isBeyond = equal(im, splatInt(topBit)), held = splatInt(topBit - (1U << 31));
        return {wideProduct(ar, br) - wideProduct(ai, bi), select(isBeyond, im, held)};
    }
};

template <>
struct ProductOf<Kep32s> : NarrowedWide<Exact32s> {
    KEPS_INLINE static V plain(V a, V b) { return Exact32s::of(a, b).saturated(mulLow(a, b)); }
    KEPS_INLINE static V bounded(V a, V b) { return boundOfProduct(a, b); }
};
template <>
struct ProductOf<Kep32sc> : NarrowedWide<Exact32sc> {
    // Imaginary parts negated, as which 2^63 fits; their signs are the other way round.
    KEPS_INLINE static V bounded(V a, V b) {
        const u64x2 ar = evenWords(a), ai = oddWords(a), br = evenWords(b), bi = oddWords(b);
        const u64x2 none = nothing<Kep64u>();
        const Wide v = {wideProduct(ar, br) - wideProduct(ai, bi),
                        none - wideProduct(ar, bi) - wideProduct(ai, br)};
        const Wide isZero = {equal(v.even, none), equal(v.odd, none)};
        const V ifNot = as<Kep32s>(splatInt(Kep64u{0x80000000'7FFFFFFF}));
        const V ifNegative = as<Kep32s>(splatInt(Kep64u{0x7FFFFFFF'80000000}));
        return without(selectBySign(v.high(), ifNot, ifNegative), isZero.mixed());
    }
};

} // namespace keps
