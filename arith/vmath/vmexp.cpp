// Exponentials.
#include "arith/vmath/exp.hpp"

using namespace keps;
using namespace keps::vmath;

double keps::vmath::expScaled(double x, double low, int shift) {
    const Exponent<double> e = reduceExponent(x, 0);
    const auto n = static_cast<int>(e.n);
    const double *row = vdexp_data[n & 127];
    const double p = e.r + (low + e.r * (low + e.r * polynomial(e.r, vdexp_high)));
    const double value = row[0] + (row[1] + row[0] * p);
    const int power = (n >> 7) + shift, half = power / 2;
    const auto two = [](int k) {
        return __builtin_bit_cast(double, static_cast<std::uint64_t>(k + 1023) << 52);
    };
    return value * two(half) * two(power - half);
}

int keps::vmath::vdexp_cout_rare(const double *x, double *y) {
    if (kep_isnan(*x)) return *y = *x * *x, 0;
    if (__builtin_isinf(*x)) return *y = *x > 0 ? *x : 0, 0; // exact
    if (*x > exp64Top) {
        volatile double most = __DBL_MAX__;
        return *y = most * most, overflow;
    }
    if (*x < exp64Bottom) {
        volatile double least = __DBL_MIN__;
        return *y = least * least, underflow;
    }
    *y = expScaled(*x, 0, 0);
    return 0;
}

namespace {

int vsexp_cout_rare(const float *x, float *y) {
    if (*x != *x) return *y = *x * *x, 0;
    if (__builtin_isinf(*x)) return *y = *x > 0 ? *x : 0, 0;
    if (*x > exp32Top) {
        volatile float most = __FLT_MAX__;
        return *y = most * most, overflow;
    }
    if (*x < exp32Bottom) {
        volatile float least = __FLT_MIN__;
        return *y = least * least, underflow;
    }
    *y = static_cast<float>(expScaled(*x, 0, 0));
    return 0;
}

struct Double {
    using V = f64x4;
    static constexpr int in = 1, out = 1;
    static int rare(const double *x, double *y) { return vdexp_cout_rare(x, y); }
    // Results and all factors are normal.
    KEPS_INLINE static V outside(V size) { return notLessEqual(size, splat<V>(708)); }
};
struct DoubleHigh : Double {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        const Exponent<V> e = reduceExponent(*x, 1023);
        const auto at = powersAt(e.q);
        const V p = e.r + e.r * e.r * polynomial(e.r, vdexp_high);
        *y = (at.c[0] + (at.c[1] + at.c[0] * p)) * scaleOf(e.q);
        outside = Double::outside(sizeOf(*x));
    }
};
// The series alone, without the table.
struct DoubleLow : Double {
    static constexpr int mids = 2;
    KEPS_INLINE static void first(const V *x, V *mid, V &extent) {
        const V magic = splat<V>(0x1.8p52 + 1023);
        const V q = *x * splat<V>(expInvStep / 128) + magic;
        const V n = q - magic;
        mid[0] = (*x - n * splat<V>(128 * expStep1)) - n * splat<V>(128 * expStep2);
        mid[1] = shiftLeft<52>(q);
        extent = max(sizeOf(*x), extent); // NaN passes through, and is not outside
    }
    KEPS_INLINE static void second(const V *mid, V *y) {
        *y = flatPolynomial(mid[0], vdexp_whole) * mid[1];
    }
};

struct Single {
    using V = f32x8;
    static constexpr int in = 1, out = 1;
    static int rare(const float *x, float *y) { return vsexp_cout_rare(x, y); }
    KEPS_INLINE static V outside(V size) { return notLessEqual(size, splat<V>(87.33F)); }
};
// e^x = 2^n e^r. The power's bits come out of a conversion to integers, since there are conversions
// of all lanes at once where there are no shifts.
template <const auto &series>
struct SingleShort : Single {
    static constexpr int mids = 2;
    KEPS_INLINE static void first(const V *x, V *mid, V &extent) {
        const V n = roundToNearest(*x * splat<V>(0x1.715476p+0F));
        mid[0] = (*x - n * splat<V>(ln2Float1)) - n * splat<V>(ln2Float2);
        mid[1] = toIntegerBits(n * splat<V>(0x1p23F) + splat<V>(127 * 0x1p23F));
        extent = max(sizeOf(*x), extent); // NaN passes through, and is not outside
    }
    KEPS_INLINE static void second(const V *mid, V *y) {
        *y = flatPolynomial(mid[0], series) * mid[1];
    }
};
struct SingleHigh : Single {
    KEPS_INLINE static f64x4 wide(f64x4 x) {
        const f64x4 magic = splat<f64x4>(0x1.8p52 + 1023);
        const f64x4 q = x * splat<f64x4>(expInvStep / 128) + magic;
        const f64x4 r = x - (q - magic) * splat<f64x4>(0x1.62e42fefa39efp-1);
        return polynomial(r, vsexp_high) * shiftLeft<52>(q);
    }
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        *y = toFloat(wide(lowerToDouble(*x)), wide(upperToDouble(*x)));
        outside = Single::outside(sizeOf(*x));
    }
};

} // namespace

int own_keps_sExp_E9LAynn(const float *src, float *dst, int32_t len) {
    return run<SingleShort<vsexp_low>>(src, dst, len);
}
int own_keps_sExp_E9HAynn(const float *src, float *dst, int32_t len) {
    return run<SingleHigh>(src, dst, len);
}
int own_keps_sExp_E9EPnnn(const float *src, float *dst, int32_t len) {
    return run<SingleShort<vsexp_fast>>(src, dst, len);
}
int own_keps_dExp_E9LAynn(const double *src, double *dst, int32_t len) {
    return run<DoubleLow>(src, dst, len);
}
int own_keps_dExp_E9HAynn(const double *src, double *dst, int32_t len) {
    return run<DoubleHigh>(src, dst, len);
}

Unary32 *const own_keps_sExp_E9_ttab[] = {own_keps_sExp_E9LAynn, own_keps_sExp_E9HAynn,
                                          own_keps_sExp_E9EPnnn};
Unary64 *const own_keps_dExp_E9_ttab[] = {own_keps_dExp_E9LAynn, own_keps_dExp_E9HAynn,
                                          own_keps_dExp_E9LAynn};
