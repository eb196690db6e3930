// Arc tangents of one and of two arguments.
#include "arith/vmath/atan_data.hpp"
#include "arith/vmath/driver.hpp"

using namespace keps;
using namespace keps::vmath;

namespace {

// The angle of the point (x, y) from the positive x axis, up to pi, with least and most the smaller
// and the larger of their sizes; steep is a mask of |y| > |x|, back has x's sign. Both must fit
// float's range, least up to rounding to 0. The quotient's nearest 32nd c needs few digits; the
// rest is atan((least - c most) / (most + c least)), below 1/64, beside a table of the angle at c
// in each of the four directions.
KEPS_INLINE f64x4 angleHigh(f64x4 least, f64x4 most, f64x4 steep, f64x4 back) {
    using V = f64x4;
    const __m128 t = _mm_div_ps(_mm256_cvtpd_ps(least.v), _mm256_cvtpd_ps(most.v));
    const __m128 magic = _mm_set1_ps(0x1.8p23F);
    const __m128 q = _mm_add_ps(_mm_mul_ps(_mm_min_ps(t, _mm_set1_ps(1)), _mm_set1_ps(32)), magic);
    const V c = V{_mm256_cvtps_pd(_mm_sub_ps(q, magic))} * splat<V>(1.0 / 32);
    __m128i row = _mm_and_si128(_mm_castps_si128(q), _mm_set1_epi32(63));
    row = _mm_add_epi32(row, _mm_and_si128(highWords(steep), _mm_set1_epi32(33)));
    row =
        _mm_add_epi32(row, _mm_and_si128(_mm_srai_epi32(highWords(back), 31), _mm_set1_epi32(66)));
    const auto at =
        columns2(vdatan_data[_mm_cvtsi128_si32(row)], vdatan_data[_mm_extract_epi32(row, 1)],
                 vdatan_data[_mm_extract_epi32(row, 2)], vdatan_data[_mm_extract_epi32(row, 3)]);
    const V turned = (steep ^ back) & splat<V>(-0.0);
    // The numerator without rounding, and what the quotient's rounding has lost.
    const V mostUpper = most & splatBits<V>(0xFFFFFFFFFFFFFF00);
    const V top = (least - c * mostUpper) - c * (most - mostUpper);
    const V bottom = most + c * least;
    const V u = top / bottom;
    const V upper = splatBits<V>(0xFFFFFFFFF8000000);
    const V u1 = u & upper, b1 = bottom & upper;
    const V bottomLow = (bottom - b1) + ((most - bottom) + c * least);
    const V left = ((top - u1 * b1) - (u - u1) * b1) - u * bottomLow;
    // Of a subnormal quotient the products say nothing.
    const V uLow = (left / bottom) & less(splat<V>(0x1p-900), u & splatBits<V>(~(1ULL << 63)));
    const V s = u * u;
    const V rest = (uLow + u * s * polynomial(s, vdatan_high)) ^ turned;
    const V head = u ^ turned;
    const V sum = at.c[0] + head;
    const V lost = (at.c[0] - sum) + head;
    return sum + (lost + (at.c[1] + rest));
}

// No lane is left to a rare path: infinity becomes a size that gives the same angle, NaN stays in
// the quotient.
KEPS_INLINE f64x4 atanHigh(f64x4 x) {
    using V = f64x4;
    const V size = min(splat<V>(0x1p126), sizeOf(x));
    const V one = splat<V>(1);
    const V steep = less(one, size);
    return angleHigh(select(steep, size, one), select(steep, one, size), steep, zero<V>()) |
           signOf(x);
}

// Sizes within 2^-120 to 2^120 for the larger one.
KEPS_INLINE f64x4 atan2High(f64x4 y, f64x4 x, f64x4 &outside) {
    using V = f64x4;
    const V ySize = sizeOf(y), xSize = sizeOf(x);
    const V most = max(ySize, xSize), least = min(ySize, xSize);
    outside = (notLess(ySize, splat<V>(0x1p120)) | notLess(xSize, splat<V>(0x1p120))) |
              less(most, splat<V>(0x1p-120));
    return angleHigh(least, most, less(xSize, ySize), x) | signOf(y);
}

// The short forms give the angle as from + t P(t^2).
template <class V>
struct Angle {
    V t, from;
    template <class Series>
    KEPS_INLINE V value(const Series &series) const {
        return from + t * flatPolynomial(t * t, series);
    }
};

// Of the point (most, least), up to pi/4. In float t goes to 1; in double what is past pi/8 is
// taken from pi/4, which saves more of the series than it takes.
KEPS_INLINE Angle<f32x8> shallow(f32x8 least, f32x8 most) {
    return {least / most, zero<f32x8>()};
}
KEPS_INLINE Angle<f64x4> shallow(f64x4 least, f64x4 most) {
    using V = f64x4;
    const V past = less(most * splat<V>(0x1.a827999fcef32p-2), least);
    return {(least - (past & most)) / (most + (past & least)), past & splat<V>(quarterPi)};
}

// Infinity becomes a quotient of 0; NaN stays in it.
KEPS_INLINE Angle<f32x8> atanAngle(f32x8 x) {
    using V = f32x8;
    const V one = splat<V>(1), steep = less(one, sizeOf(x));
    return {select(steep, x, splat<V>(-1)) / select(steep, one, x),
            (steep & splat<V>(static_cast<float>(halfPi))) | signOf(x)};
}
KEPS_INLINE Angle<f64x4> atanAngle(f64x4 x) {
    using V = f64x4;
    const V size = sizeOf(x), one = splat<V>(1), sign = signOf(x);
    const V steep = less(one, size);
    const Angle<V> a = shallow(min(one, size), max(one, size));
    return {a.t ^ signOf(steep) ^ sign, select(steep, a.from, splat<V>(halfPi) - a.from) | sign};
}
// For sizes whose sum is finite and not 0.
template <class V>
KEPS_INLINE Angle<V> atan2Angle(V y, V x) {
    const V ySize = sizeOf(y), xSize = sizeOf(x), sign = signOf(y);
    const V steep = less(xSize, ySize);
    const Angle<V> a = shallow(min(ySize, xSize), max(ySize, xSize));
    const V front = select(steep, a.from, constant<V>(halfPi) - a.from);
    return {a.t ^ signOf(steep ^ x) ^ sign, select(x, front, constant<V>(wholePi) - front) | sign};
}

} // namespace

// Brings the pair into the range that the vector code takes, without changing its angle.
int keps::vmath::vdatan2_cout_rare(const double *in, double *out) {
    double y = in[0], x = in[1];
    if (kep_isnan(y) || kep_isnan(x)) return *out = x * x + y * y, 0;
    const auto unitOrNothing = [](double v, bool one) {
        return __builtin_copysign(one ? 1.0 : 0.0, v);
    };
    if (__builtin_isinf(y) || __builtin_isinf(x)) {
        const bool both = __builtin_isinf(y) && __builtin_isinf(x);
        const bool yWins = __builtin_isinf(y), xWins = __builtin_isinf(x);
        y = unitOrNothing(y, yWins || both);
        x = unitOrNothing(x, xWins || both);
    } else if (x == 0 && y == 0) {
        x = __builtin_copysign(1.0, x);
    } else {
        const double xSize = __builtin_fabs(x), ySize = __builtin_fabs(y);
        const double most = xSize > ySize ? xSize : ySize;
        // The larger one to 2^100 or as far as one step goes, so that the smaller one is not
        // rounded to the subnormal grid before the quotient is.
        const auto exponent = __builtin_bit_cast(std::uint64_t, most) >> 52;
        const std::uint64_t power = exponent > 100 ? 2146 - exponent : 2046;
        const double scale = __builtin_bit_cast(double, power << 52);
        x *= scale;
        y *= scale;
    }
    f64x4 outside;
    const f64x4 angle = atan2High(splat<f64x4>(y), splat<f64x4>(x), outside);
    *out = _mm_cvtsd_f64(_mm256_castpd256_pd128(angle.v));
    return 0;
}

namespace {

int vsatan2_cout_rare(const float *in, float *out) {
    const double wide[] = {in[0], in[1]};
    double angle;
    const int code = vdatan2_cout_rare(wide, &angle);
    *out = static_cast<float>(angle);
    return code;
}

template <class Vector>
struct Atan {
    using V = Vector;
    static constexpr int in = 1, out = 1;
    static int rare(const typename V::element *x, typename V::element *y) { return *y = *x, 0; }
};
struct AtanDoubleHigh : Atan<f64x4> {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        *y = atanHigh(*x);
        outside = zero<V>();
    }
};
struct AtanSingleHigh : Atan<f32x8> {
    KEPS_INLINE static f64x4 wide(f64x4 x) { return atanAngle(x).value(vdatan_low); }
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        *y = toFloat(wide(lowerToDouble(*x)), wide(upperToDouble(*x)));
        outside = zero<V>();
    }
};
template <class V, const auto &series>
struct AtanShort : Atan<V> {
    static constexpr int mids = 2;
    KEPS_INLINE static V outside(V) { return zero<V>(); }
    KEPS_INLINE static void first(const V *x, V *mid, V &) {
        const Angle<V> a = atanAngle(*x);
        mid[0] = a.t;
        mid[1] = a.from;
    }
    KEPS_INLINE static void second(const V *mid, V *y) {
        *y = Angle<V>{mid[0], mid[1]}.value(series);
    }
};

template <class Vector>
struct Atan2 {
    using V = Vector;
    static constexpr int in = 2, out = 1;
    static int rare(const float *x, float *y) { return vsatan2_cout_rare(x, y); }
    static int rare(const double *x, double *y) { return vdatan2_cout_rare(x, y); }
};
struct Atan2DoubleHigh : Atan2<f64x4> {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        *y = atan2High(x[0], x[1], outside);
    }
};
// Sums that are not finite or zero, or whose parts are not.
template <class V>
KEPS_INLINE V atan2Beyond(V y, V x) {
    const V sum = sizeOf(y) + sizeOf(x);
    const auto most = std::is_same_v<V, f32x8> ? __FLT_MAX__ : __DBL_MAX__;
    return notLessEqual(sum, constant<V>(most)) | equal(sum, zero<V>());
}
struct Atan2SingleHigh : Atan2<f32x8> {
    KEPS_INLINE static f64x4 wide(f64x4 y, f64x4 x) { return atan2Angle(y, x).value(vdatan_low); }
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        *y = toFloat(wide(lowerToDouble(x[0]), lowerToDouble(x[1])),
                     wide(upperToDouble(x[0]), upperToDouble(x[1])));
        outside = atan2Beyond(x[0], x[1]);
    }
};
template <class V, const auto &series>
struct Atan2Short : Atan2<V> {
    static constexpr int mids = 2;
    KEPS_INLINE static V outside(V marks) { return marks; }
    KEPS_INLINE static void first(const V *x, V *mid, V &extent) {
        const Angle<V> a = atan2Angle(x[0], x[1]);
        mid[0] = a.t;
        mid[1] = a.from;
        extent = extent | atan2Beyond(x[0], x[1]);
    }
    KEPS_INLINE static void second(const V *mid, V *y) {
        *y = Angle<V>{mid[0], mid[1]}.value(series);
    }
};

} // namespace

int own_keps_sAtan_E9LAynn(const float *src, float *dst, int32_t len) {
    return run<AtanShort<f32x8, vsatan_low>>(src, dst, len);
}
int own_keps_sAtan_E9HAynn(const float *src, float *dst, int32_t len) {
    return run<AtanSingleHigh>(src, dst, len);
}
int own_keps_sAtan_E9EPnnn(const float *src, float *dst, int32_t len) {
    return run<AtanShort<f32x8, vsatan_fast>>(src, dst, len);
}
int own_keps_dAtan_E9LAynn(const double *src, double *dst, int32_t len) {
    return run<AtanShort<f64x4, vdatan_low>>(src, dst, len);
}
int own_keps_dAtan_E9HAynn(const double *src, double *dst, int32_t len) {
    return run<AtanDoubleHigh>(src, dst, len);
}
int own_keps_dAtan_E9EPnnn(const double *src, double *dst, int32_t len) {
    return run<AtanShort<f64x4, vdatan_fast>>(src, dst, len);
}
int own_keps_sAtan2_E9LAynn(const float *src1, const float *src2, float *dst, int32_t len) {
    return run<Atan2Short<f32x8, vsatan_low>>(src1, src2, dst, len);
}
int own_keps_sAtan2_E9HAynn(const float *src1, const float *src2, float *dst, int32_t len) {
    return run<Atan2SingleHigh>(src1, src2, dst, len);
}
int own_keps_sAtan2_E9EPnnn(const float *src1, const float *src2, float *dst, int32_t len) {
    return run<Atan2Short<f32x8, vsatan_fast>>(src1, src2, dst, len);
}
int own_keps_dAtan2_E9LAynn(const double *src1, const double *src2, double *dst, int32_t len) {
    return run<Atan2Short<f64x4, vdatan_low>>(src1, src2, dst, len);
}
int own_keps_dAtan2_E9HAynn(const double *src1, const double *src2, double *dst, int32_t len) {
    return run<Atan2DoubleHigh>(src1, src2, dst, len);
}
int own_keps_dAtan2_E9EPnnn(const double *src1, const double *src2, double *dst, int32_t len) {
    return run<Atan2Short<f64x4, vdatan_fast>>(src1, src2, dst, len);
}

Unary32 *const own_keps_sAtan_E9_ttab[] = {own_keps_sAtan_E9LAynn, own_keps_sAtan_E9HAynn,
                                           own_keps_sAtan_E9EPnnn};
Unary64 *const own_keps_dAtan_E9_ttab[] = {own_keps_dAtan_E9LAynn, own_keps_dAtan_E9HAynn,
                                           own_keps_dAtan_E9EPnnn};
Binary32 *const own_keps_sAtan2_E9_ttab[] = {own_keps_sAtan2_E9LAynn, own_keps_sAtan2_E9HAynn,
                                             own_keps_sAtan2_E9EPnnn};
Binary64 *const own_keps_dAtan2_E9_ttab[] = {own_keps_dAtan2_E9LAynn, own_keps_dAtan2_E9HAynn,
                                             own_keps_dAtan2_E9EPnnn};
