// DivC: elements over a constant, by one reciprocal.
#include "arith/complexdiv.hpp"
#include "arith/floatops.hpp"
#include "frame/entry.hpp"

using namespace keps;

namespace {

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
[[gnu::noinline]] int overConstant(const T *src, T *dst, size n, GriddedReciprocal r) {
    using E = typename Wide::element;
    map<Wide::lanes, 2>(n,
                        OverConstant<T, Wide>{splat<Wide>(static_cast<E>(r.perStep)),
                                              splat<Wide>(static_cast<E>(r.step))},
                        dst, src);
    return 0;
}

// Quotients of 16 bits, scaled by 2^3 at most, stand at least 2^-20 of themselves off a tie that
// they are not; the float product's error is below 2^-22 of them. Those of 8 bits saturate before
// it shows.
template <class T>
KEPS_INLINE int anyOverConstant(const T *src, int val, T *dst, size n, int scaleFactor) {
    const GriddedReciprocal r = reciprocalOf(val, scaleFactor);
    if (sizeof(T) == 1 || scaleFactor >= -3) return overConstant<f32x8>(src, dst, n, r);
    if constexpr (sizeof(T) == 2) return overConstant<f64x4>(src, dst, n, r);
    return 0;
}

// Scale factors below least take the kernel too: all but 0 saturates there.
template <class T>
KEPS_INLINE KepStatus overConstantSplit(const T *src, int val, T *dst, std::int32_t len,
                                        int scaleFactor, int least) {
    vectorSplit<teamOfTwo>(
        len, scaleFactor < least ? INT32_MAX : 4096, [=](std::int32_t first, std::int32_t n) {
            return anyOverConstant(src + first, val, dst + first, n, scaleFactor);
        });
    return kepStatusOk;
}

// The reciprocal's real factor is applied to sums of whole products, formed exactly.
struct OverComplex {
    f64x4 reciprocal;
    i16x8 divisor;
    KEPS_INLINE i16x8 operator()(i16x8 x) const {
        return timesConjugate<ExactSums>(x, divisor, reciprocal);
    }
};

[[gnu::noinline]] int overComplex(const Kep16sc *src, Kep16sc val, Kep16sc *dst, size n,
                                  double scale) {
    const double re = val.re, im = val.im, m = re * re + im * im;
    const i16x8 divisor{_mm_set1_epi32(__builtin_bit_cast(std::int32_t, val))};
    map<4, 2>(n, OverComplex{splat<f64x4>(scale / m), divisor}, dst, src);
    return 0;
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
    anyOverConstant(src, val, dst, len, scaleFactor);
    return kepStatusOk;
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
