// Arc tangents of one and of two arguments.
#include "arith/vmath/atan_data.hpp"
#include "arith/vmath/driver.hpp"

using namespace keps;
using namespace keps::vmath;

namespace {

enum class Level { low, high, enhanced };

template <class V>
KEPS_INLINE V sizeOf(V x) {
    return without(x, constant<V>(-0.0));
}
template <class V>
KEPS_INLINE V signOf(V x) {
    return x & constant<V>(-0.0);
}

// The angle of the point (x, y) from the positive x axis, up to pi, with least and most the smaller
// and the larger of their sizes; steep is a mask of |y| > |x|, back has x's sign. Both must fit
// float's range, least up to rounding to 0. The quotient's nearest 32nd c needs few digits; the
// rest is atan((least - c most) / (most + c least)), below 1/64, beside a table of the angle at c
// in each of the four directions.
template <Level level>
KEPS_INLINE f64x4 angleOf(f64x4 least, f64x4 most, f64x4 steep, f64x4 back) {
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
    if constexpr (level == Level::high) {
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
    } else {
        const V u = (least - c * most) / (most + c * least);
        const V s = u * u;
        V series;
        if constexpr (level == Level::low)
            series = polynomial(s, vdatan_low);
        else
            series = polynomial(s, vdatan_fast);
        return at.c[0] + ((u + u * s * series) ^ turned);
    }
}

// No lane is left to a rare path: infinity becomes a size that gives the same angle, NaN stays in
// the quotient.
template <Level level>
KEPS_INLINE f64x4 atanOf(f64x4 x) {
    using V = f64x4;
    const V size = min(splat<V>(0x1p126), sizeOf(x));
    const V one = splat<V>(1);
    const V steep = less(one, size);
    return angleOf<level>(select(steep, size, one), select(steep, one, size), steep, zero<V>()) |
           signOf(x);
}

// Sizes within 2^-120 to 2^120 for the larger one.
template <Level level>
KEPS_INLINE f64x4 atan2Of(f64x4 y, f64x4 x, f64x4 &outside) {
    using V = f64x4;
    const V ySize = sizeOf(y), xSize = sizeOf(x);
    const V most = max(ySize, xSize), least = min(ySize, xSize);
    outside = (notLess(ySize, splat<V>(0x1p120)) | notLess(xSize, splat<V>(0x1p120))) |
              less(most, splat<V>(0x1p-120));
    return angleOf<level>(least, most, less(xSize, ySize), x) | signOf(y);
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
    const f64x4 angle = atan2Of<Level::high>(splat<f64x4>(y), splat<f64x4>(x), outside);
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
template <Level level>
struct AtanDouble : Atan<f64x4> {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        *y = atanOf<level>(*x);
        outside = zero<V>();
    }
};
struct AtanSingleHigh : Atan<f32x8> {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        *y = toFloat(atanOf<Level::low>(lowerToDouble(*x)), atanOf<Level::low>(upperToDouble(*x)));
        outside = zero<V>();
    }
};
template <const auto &series>
struct AtanSingle : Atan<f32x8> {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        const V size = sizeOf(*x), one = splat<V>(1);
        const V steep = less(one, size);
        const V t = select(steep, size, one) / select(steep, one, size);
        const V a = t * polynomial(t * t, series);
        *y = select(steep, a, splat<V>(halfPiFloat) - a) | signOf(*x);
        outside = zero<V>();
    }
};

struct Atan2Double {
    using V = f64x4;
    static constexpr int in = 2, out = 1;
    static int rare(const double *x, double *y) { return vdatan2_cout_rare(x, y); }
};
template <Level level>
struct Atan2At : Atan2Double {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        *y = atan2Of<level>(x[0], x[1], outside);
    }
};
struct Atan2Single {
    using V = f32x8;
    static constexpr int in = 2, out = 1;
    static int rare(const float *x, float *y) { return vsatan2_cout_rare(x, y); }
    // Both zero, or one not finite.
    KEPS_INLINE static V beyond(V ySize, V xSize) {
        const V most = splat<V>(__FLT_MAX__);
        return (notLessEqual(ySize, most) | notLessEqual(xSize, most)) |
               equal(ySize | xSize, zero<V>());
    }
};
struct Atan2SingleHigh : Atan2Single {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        f64x4 ignored;
        *y = toFloat(atan2Of<Level::low>(lowerToDouble(x[0]), lowerToDouble(x[1]), ignored),
                     atan2Of<Level::low>(upperToDouble(x[0]), upperToDouble(x[1]), ignored));
        const V low = splat<V>(0x1p-120F), high = splat<V>(0x1p120F);
        const V ySize = sizeOf(x[0]), xSize = sizeOf(x[1]);
        outside = (notLess(ySize, high) | notLess(xSize, high)) | less(max(ySize, xSize), low);
    }
};
template <const auto &series>
struct Atan2Short : Atan2Single {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        const V ySize = sizeOf(x[0]), xSize = sizeOf(x[1]);
        const V t = min(ySize, xSize) / max(ySize, xSize);
        const V a = t * polynomial(t * t, series);
        const V front = select(less(xSize, ySize), a, splat<V>(halfPiFloat) - a);
        *y = select(x[1], front, splat<V>(piFloat) - front) | signOf(x[0]);
        outside = beyond(ySize, xSize);
    }
};

} // namespace

int own_keps_sAtan_E9LAynn(const float *src, float *dst, int32_t len) {
    return run<AtanSingle<vsatan_low>>(src, dst, len);
}
int own_keps_sAtan_E9HAynn(const float *src, float *dst, int32_t len) {
    return run<AtanSingleHigh>(src, dst, len);
}
int own_keps_sAtan_E9EPnnn(const float *src, float *dst, int32_t len) {
    return run<AtanSingle<vsatan_fast>>(src, dst, len);
}
int own_keps_dAtan_E9LAynn(const double *src, double *dst, int32_t len) {
    return run<AtanDouble<Level::low>>(src, dst, len);
}
int own_keps_dAtan_E9HAynn(const double *src, double *dst, int32_t len) {
    return run<AtanDouble<Level::high>>(src, dst, len);
}
int own_keps_dAtan_E9EPnnn(const double *src, double *dst, int32_t len) {
    return run<AtanDouble<Level::enhanced>>(src, dst, len);
}
int own_keps_sAtan2_E9LAynn(const float *src1, const float *src2, float *dst, int32_t len) {
    return run<Atan2Short<vsatan_low>>(src1, src2, dst, len);
}
int own_keps_sAtan2_E9HAynn(const float *src1, const float *src2, float *dst, int32_t len) {
    return run<Atan2SingleHigh>(src1, src2, dst, len);
}
int own_keps_sAtan2_E9EPnnn(const float *src1, const float *src2, float *dst, int32_t len) {
    return run<Atan2Short<vsatan_fast>>(src1, src2, dst, len);
}
int own_keps_dAtan2_E9LAynn(const double *src1, const double *src2, double *dst, int32_t len) {
    return run<Atan2At<Level::low>>(src1, src2, dst, len);
}
int own_keps_dAtan2_E9HAynn(const double *src1, const double *src2, double *dst, int32_t len) {
    return run<Atan2At<Level::high>>(src1, src2, dst, len);
}
int own_keps_dAtan2_E9EPnnn(const double *src1, const double *src2, double *dst, int32_t len) {
    return run<Atan2At<Level::enhanced>>(src1, src2, dst, len);
}

Unary32 *const own_keps_sAtan_E9_ttab[] = {own_keps_sAtan_E9LAynn, own_keps_sAtan_E9HAynn,
                                           own_keps_sAtan_E9EPnnn};
Unary64 *const own_keps_dAtan_E9_ttab[] = {own_keps_dAtan_E9LAynn, own_keps_dAtan_E9HAynn,
                                           own_keps_dAtan_E9EPnnn};
Binary32 *const own_keps_sAtan2_E9_ttab[] = {own_keps_sAtan2_E9LAynn, own_keps_sAtan2_E9HAynn,
                                             own_keps_sAtan2_E9EPnnn};
Binary64 *const own_keps_dAtan2_E9_ttab[] = {own_keps_dAtan2_E9LAynn, own_keps_dAtan2_E9HAynn,
                                             own_keps_dAtan2_E9EPnnn};
