// Natural logarithms.
#include "arith/vmath/ln.hpp"

using namespace keps;
using namespace keps::vmath;

double keps::vmath::lnSlow(double x) {
    const LnPlaceOfOne place = lnPlaceOfOne(x);
    return lnHigh(lnParts(place.m, place.high, place.low));
}

namespace {

// Zero, infinity, NaN and negative numbers; false for the others.
template <class T>
bool lnSpecial(T x, T *y, int &code) {
    code = 0;
    volatile T nothing = 0; // divided by, so that the processor raises what belongs to the case
    if (x != x)
        *y = x * x;
    else if (x == 0)
        *y = -1 / nothing, code = singularity;
    else if (x < 0)
        *y = nothing / nothing, code = domain;
    else if (__builtin_isinf(x))
        *y = x;
    else
        return false;
    return true;
}

int vsln_cout_rare(const float *x, float *y) {
    int code;
    if (!lnSpecial(*x, y, code)) *y = static_cast<float>(lnSlow(*x));
    return code;
}

struct Double {
    using V = f64x4;
    static constexpr int in = 1, out = 1;
    static int rare(const double *x, double *y) { return vdln_cout_rare(x, y); }
};
struct DoubleHigh : Double {
    static constexpr int mids = 3;
    KEPS_INLINE static void first(const V *x, V *mid, V &extent) {
        const LnPlace place = lnPlace(*x);
        const LnParts<V> parts = lnParts(place.m, place.at.c[1], place.at.c[2]);
        mid[0] = parts.r;
        mid[1] = parts.sum;
        mid[2] = parts.tail;
        extent = extent | lnBeyond(*x);
    }
    KEPS_INLINE static V outside(V marks) { return marks; }
    KEPS_INLINE static void second(const V *mid, V *y) { *y = lnHigh<V>({mid[0], mid[1], mid[2]}); }
};
// As SingleShort below.
template <const auto &series>
struct DoubleShort : Double {
    static constexpr int mids = 2;
    KEPS_INLINE static void first(const V *x, V *mid, V &extent) {
        const V field = (*x * splat<V>(0x1.6a09e667f3bcdp+0)) & splatBits<V>(0xFFF0000000000000);
        const V m = ((*x ^ field) & splatBits<V>(0x001FFFFFFFFFFFFF)) ^ splat<V>(1);
        const V e = {
            _mm256_cvtepi32_pd(_mm_sub_epi32(highWords(field), _mm_set1_epi32(1023 << 20)))};
        mid[0] = (m - splat<V>(1)) / (m + splat<V>(1));
        mid[1] = e * splat<V>(ln2Double * 0x1p-20);
        extent = max(sizeOf(e), extent);
    }
    KEPS_INLINE static V outside(V e) { return less(splat<V>(1021 * 0x1p20), e); }
    KEPS_INLINE static void second(const V *mid, V *y) {
        *y = mid[1] + mid[0] * flatPolynomial(mid[0] * mid[0], series);
    }
};

struct Single {
    using V = f32x8;
    static constexpr int in = 1, out = 1;
    static int rare(const float *x, float *y) { return vsln_cout_rare(x, y); }
    KEPS_INLINE static V beyond(V x) {
        return notLessEqual(splat<V>(0x1p-126F), x) | notLessEqual(x, splat<V>(__FLT_MAX__));
    }
};
// The exponent field of x times the root of 2 is that of the power of two next to x, 2^e; it
// converts to a number as it stands. Of x = 2^e m, m keeps its digits, and its exponent is 0 or -1
// as the fields' lowest bits are the same or not. ln m = 2 artanh((m - 1) / (m + 1)). Zero,
// subnormal and negative numbers, whose sign stays in the field, infinity and NaN have fields far
// from e = 0; the outermost normal numbers are left to the rare path with them.
template <const auto &series>
struct SingleShort : Single {
    static constexpr int mids = 2;
    KEPS_INLINE static void first(const V *x, V *mid, V &extent) {
        const V field = (*x * splat<V>(0x1.6a09e6p+0F)) & splatBits<V>(0xFF800000);
        const V m = ((*x ^ field) & splatBits<V>(0x00FFFFFF)) ^ splat<V>(1);
        const V e = fromIntegerBits(field) - splat<V>(127 * 0x1p23F);
        mid[0] = (m - splat<V>(1)) / (m + splat<V>(1));
        mid[1] = e * splat<V>(ln2Float * 0x1p-23F);
        extent = max(sizeOf(e), extent);
    }
    KEPS_INLINE static V outside(V e) { return less(splat<V>(125 * 0x1p23F), e); }
    KEPS_INLINE static void second(const V *mid, V *y) {
        *y = mid[1] + mid[0] * flatPolynomial(mid[0] * mid[0], series);
    }
};
struct SingleHigh : Single {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        *y = toFloat(lnShort(lowerToDouble(*x), vdln_low), lnShort(upperToDouble(*x), vdln_low));
        outside = beyond(*x);
    }
};

} // namespace

int keps::vmath::vdln_cout_rare(const double *x, double *y) {
    int code;
    if (!lnSpecial(*x, y, code)) *y = lnSlow(*x);
    return code;
}

int own_keps_sLn_E9LAynn(const float *src, float *dst, int32_t len) {
    return run<SingleShort<vsln_low>>(src, dst, len);
}
int own_keps_sLn_E9HAynn(const float *src, float *dst, int32_t len) {
    return run<SingleHigh>(src, dst, len);
}
int own_keps_sLn_E9EPnnn(const float *src, float *dst, int32_t len) {
    return run<SingleShort<vsln_fast>>(src, dst, len);
}
int own_keps_dLn_E9LAynn(const double *src, double *dst, int32_t len) {
    return run<DoubleShort<vdln_ratio>>(src, dst, len);
}
int own_keps_dLn_E9HAynn(const double *src, double *dst, int32_t len) {
    return run<DoubleHigh>(src, dst, len);
}
int own_keps_dLn_E9EPnnn(const double *src, double *dst, int32_t len) {
    return run<DoubleShort<vdln_ratioFast>>(src, dst, len);
}

Unary32 *const own_keps_sLn_E9_ttab[] = {own_keps_sLn_E9LAynn, own_keps_sLn_E9HAynn,
                                         own_keps_sLn_E9EPnnn};
Unary64 *const own_keps_dLn_E9_ttab[] = {own_keps_dLn_E9LAynn, own_keps_dLn_E9HAynn,
                                         own_keps_dLn_E9EPnnn};
