// DivC: elements over a constant, by one reciprocal.
#include "arith/complexdiv.hpp"
#include "arith/floatops.hpp"
#include "frame/entry.hpp"

using namespace keps;

namespace {

// val as odd * 2^exponent, odd signed: quotients times 2^-scaleFactor are x * 2^up / odd, and the
// exact ones lie on ties only where up is negative.
struct Constant {
    int odd, up;
};
KEPS_INLINE Constant constantOf(int val, int scaleFactor) {
    const int exponent = __builtin_ctz(static_cast<unsigned>(val));
    return {val / (1 << exponent), -quotientExponent(scaleFactor) - exponent};
}

// Integer elements times 2^-scaleFactor / |val|. The quotient's ties are multiples of the grid, and
// no other quotient is nearer to one than the grid's step. So rounding to the grid, which costs two
// instructions, takes the reciprocal's error out: results are those of the exact quotient.
template <class T, class Wide>
struct OverConstant {
    Wide perStep, step; // the reciprocal in grid steps
    template <class V>
    KEPS_INLINE auto operator()(V x) const {
        const Wide quotient = roundToNearest(Widen<Wide>{}(x)*perStep) * step;
        const Wide top = splat<Wide>(std::numeric_limits<T>::max());
        return narrowTo<T>(ToNearest::round(min(top, quotient)));
    }
};

struct GriddedReciprocal {
    double perStep, step;
};

// The sign of val goes along.
KEPS_INLINE GriddedReciprocal reciprocalOf(int val, int scaleFactor) {
    const auto magnitude = static_cast<std::uint32_t>(val < 0 ? -val : val);
    const int bits = magnitude == 1 ? 0 : 32 - __builtin_clz(magnitude - 1);
    const int finest = 1 + bits + (scaleFactor > 0 ? scaleFactor : 0);
    const double scale = quotientScale(scaleFactor);
    return {scale * powerOf<double>(finest) / val, powerOf<double>(-finest)};
}

template <class Wide, class T>
[[gnu::noinline]] KepStatus overConstant(const T *src, T *dst, size n, GriddedReciprocal r) {
    using E = typename Wide::element;
    map<Wide::lanes, 2>(n,
                        OverConstant<T, Wide>{splat<Wide>(static_cast<E>(r.perStep)),
                                              splat<Wide>(static_cast<E>(r.step))},
                        dst, src);
    return kepStatusOk;
}

// Quotients of 16 bits, scaled by 2^3 at most, which fit 32 bits. They stand at least 2^-20 of
// themselves off a tie that they are not; the float product's error is below 2^-22 of them. Where
// no quotient is a tie, or a power of two makes all of them exact, there is no grid.
template <class T, bool isGridded>
struct Over16 {
    f32x8 perStep, step;
    KEPS_INLINE int128<T> operator()(two<i32x4> x) const {
        f32x8 quotient = Widen<f32x8>{}(x)*perStep;
        if constexpr (isGridded) quotient = roundToNearest(quotient) * step;
        return narrowTo<T>(ToNearest::round(quotient));
    }
};
template <bool isGridded, class T>
[[gnu::noinline]] KepStatus over16(const T *src, T *dst, size n, GriddedReciprocal r) {
    const double perStep = isGridded ? r.perStep : r.perStep * r.step;
    const Over16<T, isGridded> op{splat<f32x8>(static_cast<float>(perStep)),
                                  splat<f32x8>(static_cast<float>(r.step))};
    map<8, 2>(n, op, dst, widened<Kep32s>(src));
    return kepStatusOk;
}

// Division by a constant from 3 on that is no power of two, in 16-bit integers: the quotient of y
// is its product with 2^(15 + bits) / divisor, rounded up, divided by that power, for y below 2^15;
// for y below 2^16 the product's 17th bit is added apart. 2^bits is the first power of two above.
struct Divider15 {
    int reciprocal, bits;
    explicit Divider15(int divisor) : bits(32 - __builtin_clz(static_cast<unsigned>(divisor))) {
        reciprocal = ((1 << (15 + bits)) + divisor - 1) / divisor;
    }
    KEPS_INLINE u16x8 operator()(u16x8 y) const {
        return mulHigh(y, splatInt(static_cast<std::uint16_t>(reciprocal))) >> Count(bits - 1);
    }
};
struct Divider16 {
    int reciprocal, bits;
    explicit Divider16(int divisor) : bits(32 - __builtin_clz(static_cast<unsigned>(divisor))) {
        reciprocal = 65536 * ((1 << bits) - divisor) / divisor + 1;
    }
    KEPS_INLINE u16x8 operator()(u16x8 y) const {
        const u16x8 t = mulHigh(y, splatInt(static_cast<std::uint16_t>(reciprocal)));
        return (shiftRight<1>(y - t) + t) >> Count(bits - 1);
    }
};

// y is x + divisor / 2, so quotients are rounded up at ties. There nothing remains, and an odd
// quotient is taken back to the even one below.
KEPS_INLINE u16x8 evenAtTies(u16x8 quotient, int divisor, u16x8 y) {
    const u16x8 whole = mulLow(quotient, splatInt(static_cast<std::uint16_t>(divisor)));
    return quotient - (quotient & equal(whole, y) & splatInt<std::uint16_t>(1));
}

// Bytes times 2^shift: x + divisor / 2 is below 2^15.
template <bool hasTies>
struct Over8u {
    int shift, divisor;
    Divider15 divide;
    KEPS_INLINE u8x16 operator()(u8x16 x) const {
        const auto wide = interleave<std::uint16_t>(x, nothing<std::uint8_t>());
        return narrowUnsigned(i16x8{quotient(wide.lo).v}, i16x8{quotient(wide.hi).v});
    }
    KEPS_INLINE u16x8 quotient(u16x8 x) const {
        const u16x8 half = splatInt(static_cast<std::uint16_t>(divisor / 2));
        const u16x8 y = (hasTies ? x : x << Count(shift)) + half;
        return hasTies ? evenAtTies(divide(y), divisor, y) : divide(y);
    }
};
template <bool hasTies>
[[gnu::noinline]] KepStatus over8u(const Kep8u *src, Kep8u *dst, size n, int shift, int divisor) {
    map<16, 2>(n, Over8u<hasTies>{shift, divisor, Divider15(divisor)}, dst, src);
    return kepStatusOk;
}

// By magnitudes. A divisor with ties is even: half of it divides half of y.
template <bool hasTies>
struct Over16s {
    int divisor, sign;
    std::conditional_t<hasTies, Divider15, Divider16> divide;
    KEPS_INLINE i16x8 operator()(i16x8 x) const {
        const u16x8 half = splatInt(static_cast<std::uint16_t>(divisor / 2));
        const u16x8 y = u16x8{_mm_abs_epi16(x.v)} + half;
        u16x8 quotient;
        if constexpr (hasTies)
            quotient = evenAtTies(divide(shiftRight<1>(y)), divisor, y);
        else
            quotient = divide(y);
        const auto signs = splatInt(static_cast<std::int16_t>(sign));
        return {_mm_sign_epi16(_mm_sign_epi16(quotient.v, x.v), signs.v)};
    }
};
template <bool hasTies>
[[gnu::noinline]] KepStatus over16s(const Kep16s *src, Kep16s *dst, size n, int divisor, int sign) {
    using Divider = std::conditional_t<hasTies, Divider15, Divider16>;
    const Divider divide(hasTies ? divisor / 2 : divisor);
    map<8, 4>(n, Over16s<hasTies>{divisor, sign, divide}, dst, src);
    return kepStatusOk;
}

KEPS_INLINE KepStatus overConstant(const Kep8u *src, int val, Kep8u *dst, size n, int scaleFactor) {
    const auto [odd, up] = constantOf(val, scaleFactor);
    const auto len = static_cast<std::int32_t>(n);
    if (odd == 1) return kepsMulC_8u_Sfs(src, 1, dst, len, -up);
    // Beyond the shifts of one side y is 16 bits, from the other nothing reaches one half.
    if (up > 7) return overConstant<f32x8>(src, dst, n, reciprocalOf(val, scaleFactor));
    if (up >= 0) return over8u<false>(src, dst, n, up, odd);
    if (up < -8 || odd << -up > 510) return kepsZero_8u(dst, len);
    return over8u<true>(src, dst, n, 0, odd << -up);
}

template <class T>
KEPS_INLINE KepStatus overConstant(const T *src, int val, T *dst, size n, int scaleFactor) {
    const auto [odd, up] = constantOf(val, scaleFactor);
    const auto len = static_cast<std::int32_t>(n);
    const bool isPowerOf2 = odd == 1 || odd == -1;
    if constexpr (std::is_signed_v<T>) {
        const int sign = val < 0 ? -1 : 1, magnitude = sign * odd;
        if (isPowerOf2 && scaleFactor < -3)
            return kepsMulC_16s_Sfs(src, static_cast<T>(odd), dst, len, -up);
        if (!isPowerOf2 && up < 0) {
            // Up to one half.
            if (up < -15 || magnitude << -up > 65535) return kepsZero_16s(dst, len);
            return over16s<true>(src, dst, n, magnitude << -up, sign);
        }
        if (!isPowerOf2 && up == 0) return over16s<false>(src, dst, n, magnitude, sign);
    } else {
        if (isPowerOf2 && scaleFactor < -3) return kepsMulC_16u_Sfs(src, 1, dst, len, -up);
    }
    const GriddedReciprocal r = reciprocalOf(val, scaleFactor);
    if (scaleFactor < -3) return overConstant<f64x4>(src, dst, n, r);
    return up < 0 && !isPowerOf2 ? over16<true>(src, dst, n, r) : over16<false>(src, dst, n, r);
}

// Scale factors below least take the kernel too: all but 0 saturates there.
template <class T>
KEPS_INLINE KepStatus overConstantSplit(const T *src, int val, T *dst, std::int32_t len,
                                        int scaleFactor, int least) {
    return vectorSplit<teamOfTwo>(
        len, scaleFactor < least ? INT32_MAX : 4096, [=](std::int32_t first, std::int32_t n) {
            return overConstant(src + first, val, dst + first, n, scaleFactor);
        });
}

// The reciprocal's real factor is applied to sums of whole products, formed exactly.
struct OverComplex {
    f64x4 reciprocal;
    i16x8 divisor;
    KEPS_INLINE i16x8 operator()(i16x8 x) const {
        return timesConjugate<ExactSums>(x, divisor, reciprocal);
    }
};

[[gnu::noinline]] KepStatus overComplex(const Kep16sc *src, Kep16sc val, Kep16sc *dst, size n,
                                        double scale) {
    const double re = val.re, im = val.im, m = re * re + im * im;
    const i16x8 divisor{_mm_set1_epi32(__builtin_bit_cast(std::int32_t, val))};
    map<4, 2>(n, OverComplex{splat<f64x4>(scale / m), divisor}, dst, src);
    return kepStatusOk;
}

} // namespace

KepStatus kepsDivC_8u_Sfs(const Kep8u *src, Kep8u val, Kep8u *dst, int32_t len, int scaleFactor) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if (val == 0) return kepStatusDivideByZero;
    if (scaleFactor > 8) return kepsZero_8u(dst, len);
    return overConstantSplit(src, val, dst, len, scaleFactor, -15);
}
KepStatus kepsDivC_8u_ISfs(Kep8u val, Kep8u *srcDst, int32_t len, int scaleFactor) {
    return kepsDivC_8u_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

KepStatus kepsDivC_16s_Sfs(const Kep16s *src, Kep16s val, Kep16s *dst, int32_t len,
                           int scaleFactor) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if (val == 0) return kepStatusDivideByZero;
    if (scaleFactor > 15) return kepsZero_16s(dst, len);
    return overConstantSplit(src, val, dst, len, scaleFactor, -30);
}
KepStatus kepsDivC_16s_ISfs(Kep16s val, Kep16s *srcDst, int32_t len, int scaleFactor) {
    return kepsDivC_16s_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

// The settled cases come ahead of the entry tests, as callers know this function: they test the
// source, and the fill that they call tests the rest.
KepStatus kepsDivC_16u_Sfs(const Kep16u *src, Kep16u val, Kep16u *dst, int32_t len,
                           int scaleFactor) {
    if (val != 0 && (scaleFactor > 16 || scaleFactor < -31)) {
        if (anyNull(src)) return kepStatusNullPointer;
        auto *words = reinterpret_cast<Kep16s *>(dst);
        return scaleFactor > 16 ? kepsZero_16s(words, len) : kepsSet_16s(-1, words, len);
    }
    if (val == 1 && scaleFactor == 0)
        return kepsCopy_16s(reinterpret_cast<const Kep16s *>(src), reinterpret_cast<Kep16s *>(dst),
                            len);
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if (val == 0) return kepStatusDivideByZero;
    return overConstant(src, val, dst, len, scaleFactor);
}
KepStatus kepsDivC_16u_ISfs(Kep16u val, Kep16u *srcDst, int32_t len, int scaleFactor) {
    return kepsDivC_16u_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

KepStatus kepsDivC_16sc_Sfs(const Kep16sc *src, Kep16sc val, Kep16sc *dst, int32_t len,
                            int scaleFactor) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if (val.re == 0 && val.im == 0) return kepStatusDivideByZero;
    if (scaleFactor > 15) return kepsZero_16sc(dst, len);
    const double scale = quotientScale(scaleFactor);
    vectorSplit<teamOfTwo>(len, scaleFactor < -16 ? INT32_MAX : 1024,
                           [=](std::int32_t first, std::int32_t n) {
                               return overComplex(src + first, val, dst + first, n, scale);
                           });
    return kepStatusOk;
}
KepStatus kepsDivC_16sc_ISfs(Kep16sc val, Kep16sc *srcDst, int32_t len, int scaleFactor) {
    return kepsDivC_16sc_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

// The reciprocal's own shortcuts, of MulC: 1 copies, 0 zeroes.
KepStatus kepsDivC_32f(const Kep32f *src, Kep32f val, Kep32f *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if (isZero(val)) return kepStatusDivideByZero;
    return kepsMulC_32f(src, 1.0F / val, dst, len);
}
KepStatus kepsDivC_32f_I(Kep32f val, Kep32f *srcDst, int32_t len) {
    return kepsDivC_32f(srcDst, val, srcDst, len);
}

KepStatus kepsDivC_64f(const Kep64f *src, Kep64f val, Kep64f *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if (isZero(val)) return kepStatusDivideByZero;
    return kepsMulC_64f(src, 1.0 / val, dst, len);
}
KepStatus kepsDivC_64f_I(Kep64f val, Kep64f *srcDst, int32_t len) {
    return kepsDivC_64f(srcDst, val, srcDst, len);
}

// Formed in double, where no float's square over- or underflows.
KepStatus kepsDivC_32fc(const Kep32fc *src, Kep32fc val, Kep32fc *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if (isZero(val.re) && isZero(val.im)) return kepStatusDivideByZero;
    const double c = val.re, d = val.im, m = c * c + d * d;
    const auto re = static_cast<float>(c / m), im = static_cast<float>(-d / m);
    return kepsMulC_32fc(src, {re, im}, dst, len);
}
KepStatus kepsDivC_32fc_I(Kep32fc val, Kep32fc *srcDst, int32_t len) {
    return kepsDivC_32fc(srcDst, val, srcDst, len);
}

KepStatus kepsDivC_64fc(const Kep64fc *src, Kep64fc val, Kep64fc *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if (isZero(val.re) && isZero(val.im)) return kepStatusDivideByZero;
    const double m = val.re * val.re + val.im * val.im;
    return kepsMulC_64fc(src, {val.re / m, -val.im / m}, dst, len);
}
KepStatus kepsDivC_64fc_I(Kep64fc val, Kep64fc *srcDst, int32_t len) {
    return kepsDivC_64fc(srcDst, val, srcDst, len);
}
