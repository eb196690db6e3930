// Powers in double precision, element by element: e^(y ln x) with the logarithm and the product in
// two parts, good to 2^-67 of their size.
#include "arith/vmath/exp.hpp"
#include "arith/vmath/ln.hpp"

using namespace keps;
using namespace keps::vmath;

namespace {

template <class V>
struct Sum {
    V high, low;
};

KEPS_INLINE f64x4 upperOf(f64x4 x) {
    return x & splatBits<f64x4>(0xFFFFFFFFF8000000);
}
KEPS_INLINE double upperOf(double x) {
    return __builtin_bit_cast(double, __builtin_bit_cast(std::uint64_t, x) & 0xFFFFFFFFF8000000);
}

// As lnHigh, with the square's half kept whole too.
template <class V>
KEPS_INLINE Sum<V> lnWhole(const Mantissa<V> &m, V high, V low) {
    const V r = m.upper + m.lower;
    const V rest = (m.upper - r) + m.lower;
    const V rUpper = upperOf(r), minusHalf = constant<V>(-0.5);
    const V square = minusHalf * rUpper * rUpper;
    const V squareLow = minusHalf * (r - rUpper) * (r + rUpper) - r * rest;
    V series = constant<V>(vdpowx_ln[7]);
    keps::times<6>([&](int k)
                       KEPS_INLINE_LAMBDA { series = series * r + constant<V>(vdpowx_ln[6 - k]); });
    const V whole = m.k * constant<V>(ln2High) + high;
    const V first = whole + r;
    const V lost1 = (whole - first) + r;
    const V second = first + square;
    const V lost2 = (first - second) + square;
    const V lower = (lost1 + lost2) +
                    (((rest + squareLow) + (m.k * constant<V>(ln2Low) + low)) + r * r * r * series);
    const V sum = second + lower;
    return {sum, (second - sum) + lower};
}

template <class V>
KEPS_INLINE Sum<V> product(V y, const Sum<V> &x) {
    const V p = y * x.high;
    const V yUpper = upperOf(y), xUpper = upperOf(x.high);
    const V yLower = y - yUpper, xLower = x.high - xUpper;
    const V lost = ((yUpper * xUpper - p) + yUpper * xLower + yLower * xUpper) + yLower * xLower;
    return {p, lost + y * x.low};
}

// ln of a positive finite x.
Sum<double> lnWholeSlow(double x) {
    const LnPlaceOfOne place = lnPlaceOfOne(x);
    return lnWhole(place.m, place.high, place.low);
}

// 0 no integer, 1 odd, 2 even.
int parity(double y) {
    const double size = __builtin_fabs(y);
    if (size >= 0x1p53) return 2;
    const auto n = static_cast<std::int64_t>(size);
    if (static_cast<double>(n) != size) return 0;
    return n & 1 ? 1 : 2;
}

} // namespace

int keps::vmath::vdpowx_cout_rare(const double *in, double *out) {
    const double x = in[0], y = in[1];
    volatile double nothing = 0, most = __DBL_MAX__, least = __DBL_MIN__;
    if (y == 0 || x == 1) return *out = 1, 0;
    if (kep_isnan(x) || kep_isnan(y)) return *out = x * x + y * y, 0;
    const double size = __builtin_fabs(x);
    if (__builtin_isinf(y)) {
        *out = size == 1 ? 1 : ((size > 1) == (y > 0) ? __builtin_inf() : 0);
        return 0;
    }
    const int kind = parity(y);
    const bool negative = __builtin_signbit(x) && kind == 1;
    const auto give = [&](double value, int code) {
        *out = negative ? -value : value;
        return code;
    };
    if (x == 0) return y > 0 ? give(0, 0) : give(1 / nothing, singularity);
    if (__builtin_isinf(x)) return give(y > 0 ? __builtin_inf() : 0, 0);
    if (x < 0 && kind == 0) return *out = nothing / nothing, domain;
    if (size == 1) return give(1, 0);
    // Past 2^80 the exponent's size alone decides, and its halves would overflow.
    if (__builtin_fabs(y) > 0x1p80)
        return (size > 1) == (y > 0) ? give(most * most, overflow) : give(least * least, underflow);
    const Sum<double> e = product(y, lnWholeSlow(size));
    if (e.high > exp64Top || (e.high == exp64Top && e.low > 0)) return give(most * most, overflow);
    if (e.high < exp64Bottom) return give(least * least, underflow);
    const double value = expScaled(e.high, e.low, 0);
    return give(value, __builtin_isinf(value) ? overflow : 0);
}

namespace {

struct Powx {
    using V = f64x4;
    static constexpr int in = 2, out = 1;
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        const LnPlace place = lnPlace(x[0]);
        const Sum<V> ln = lnWhole(place.m, place.at.c[1], place.at.c[2]);
        const Sum<V> e = product(x[1], ln);
        const Exponent<V> n = reduceExponent(e.high, 1023);
        const V first = e.high - n.n * splat<V>(expStep1), second = n.n * splat<V>(expStep2);
        const V low = ((first - n.r) - second) + e.low;
        const auto at = powersAt(n.q);
        const V p = n.r + (low + n.r * (low + n.r * polynomial(n.r, vdexp_high)));
        *y = (at.c[0] + (at.c[1] + at.c[0] * p)) * scaleOf(n.q);
        outside = lnBeyond(x[0]) | notLessEqual(without(e.high, splat<V>(-0.0)), splat<V>(708)) |
                  notLessEqual(without(x[1], splat<V>(-0.0)), splat<V>(0x1p80));
    }
    static int rare(const double *x, double *y) { return vdpowx_cout_rare(x, y); }
};
// The plain product: good to 2^-42 at the ends of the range, 2^-50 for powers of moderate size.
template <const auto &lnSeries, const auto &expSeries>
struct PowxShort : Powx {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        const V e = x[1] * lnShort(x[0], lnSeries);
        const Exponent<V> n = reduceExponent(e, 1023);
        const V t = powersAt(n.q).c[0];
        *y = (t + t * (n.r + n.r * n.r * polynomial(n.r, expSeries))) * scaleOf(n.q);
        outside = lnBeyond(x[0]) | notLessEqual(without(e, splat<V>(-0.0)), splat<V>(708)) |
                  notLessEqual(without(x[1], splat<V>(-0.0)), splat<V>(0x1p80));
    }
};

constexpr double half[] = {0.5};

} // namespace

int own_keps_dPowx_E9LAynn(const double *src1, const double *src2, double *dst, int32_t len) {
    return run<Powx>(src1, src2, dst, len);
}
int own_keps_dPowx_E9HAynn(const double *src1, const double *src2, double *dst, int32_t len) {
    return run<Powx>(src1, src2, dst, len);
}
int own_keps_dPowx_E9EPnnn(const double *src1, const double *src2, double *dst, int32_t len) {
    return run<PowxShort<vdln_fast, half>>(src1, src2, dst, len);
}

Binary64 *const own_keps_dPowx_E9_ttab[] = {own_keps_dPowx_E9LAynn, own_keps_dPowx_E9HAynn,
                                            own_keps_dPowx_E9EPnnn};
