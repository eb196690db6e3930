// Hyperbolic sine and cosine in double precision: e^B and e^-B from the table of powers, B the
// breakpoint next to |x|, and the hyperbolic series of what is left.
#include "arith/vmath/exp.hpp"

using namespace keps;
using namespace keps::vmath;

namespace {

constexpr double coshTop = 710.475860073944;

// Half of e^B and of e^-B with low parts, and r, |x| = B + r + rLow.
struct Halves {
    f64x4 up, upLow, down, downLow, r, rLow;
};
KEPS_INLINE Halves halves(f64x4 size) {
    using V = f64x4;
    const Exponent<V> e = reduceExponent(size, 1022);
    const V first = size - e.n * splat<V>(expStep1), second = e.n * splat<V>(expStep2);
    const V mirrored = splat<V>(0x1.8p52 + 128.0 * 1022) - e.n;
    const V scale = scaleOf(e.q), unscale = scaleOf(mirrored);
    const auto up = powersAt(e.q), down = powersAt(mirrored);
    return {up.c[0] * scale,       up.c[1] * scale, down.c[0] * unscale, down.c[1] * unscale, e.r,
            (first - e.r) - second};
}

struct Small {
    f64x4 sinh3, cosh2; // sinh r - r, cosh r - 1
};
KEPS_INLINE Small small(f64x4 r) {
    const f64x4 s = r * r;
    return {r * s * polynomial(s, vdsinh_step), s * polynomial(s, vdcosh_step)};
}

// sinh(B + r) = sinh B cosh r + cosh B sinh r. The one product that is not far below the result,
// cosh B times r, is taken from upper halves exactly.
KEPS_INLINE f64x4 sinhHigh(f64x4 size) {
    using V = f64x4;
    const Halves h = halves(size);
    const Small t = small(h.r);
    const V upperHalf = splatBits<V>(0xFFFFFFFFF8000000);
    const V difference = h.up - h.down;
    const V differenceLow = ((h.up - difference) - h.down) + (h.upLow - h.downLow);
    const V sum = h.up + h.down;
    const V sumLow = ((h.up - sum) + h.down) + (h.upLow + h.downLow);
    const V sumUpper = sum & upperHalf, rUpper = h.r & upperHalf;
    const V head = sumUpper * rUpper;
    const V tail = sumUpper * (h.r - rUpper) + (sum - sumUpper) * h.r;
    const V y = difference + head;
    const V lost = (difference - y) + head;
    const V rest = tail + sum * (t.sinh3 + h.rLow) + sumLow * h.r + difference * t.cosh2;
    return y + (lost + (differenceLow + rest));
}
KEPS_INLINE f64x4 sinhLow(f64x4 size) {
    const Halves h = halves(size);
    const Small t = small(h.r);
    const f64x4 difference = h.up - h.down, sum = h.up + h.down;
    const f64x4 low = ((h.up - difference) - h.down) + (h.upLow - h.downLow);
    return difference + (sum * h.r + (sum * t.sinh3 + (difference * t.cosh2 + low)));
}
KEPS_INLINE f64x4 coshHigh(f64x4 size) {
    const Halves h = halves(size);
    const Small t = small(h.r);
    const f64x4 sum = h.up + h.down, difference = h.up - h.down;
    const f64x4 sumLow = ((h.up - sum) + h.down) + (h.upLow + h.downLow);
    return sum + (sumLow + (difference * (h.r + t.sinh3) + sum * t.cosh2));
}
// cosh x = (E + 1 / E) / 2 with E = e^|x|, by a series of its own length.
template <class Series>
KEPS_INLINE f64x4 coshShort(f64x4 size, const Series &series) {
    using V = f64x4;
    const Exponent<V> e = reduceExponent(size, 1022);
    const V t = powersAt(e.q).c[0];
    const V half = (t + t * (e.r + e.r * e.r * polynomial(e.r, series))) * scaleOf(e.q);
    return half + splat<V>(0.25) / half;
}

// Half of e^|x| alone: the other half is far below its last place.
int vdsinh_cout_rare(const double *x, double *y) {
    if (kep_isnan(*x)) return *y = *x * *x, 0;
    if (__builtin_isinf(*x)) return *y = *x, 0;
    const double size = __builtin_fabs(*x);
    if (size >= coshTop) {
        volatile double most = __DBL_MAX__;
        return *y = *x < 0 ? -(most * most) : most * most, overflow;
    }
    const double half = expScaled(size, 0, -1);
    *y = *x < 0 ? -half : half;
    return 0;
}
int vdcosh_cout_rare(const double *x, double *y) {
    if (kep_isnan(*x)) return *y = *x * *x, 0;
    if (__builtin_isinf(*x)) return *y = *x * *x, 0;
    const double size = __builtin_fabs(*x);
    if (size >= coshTop) {
        volatile double most = __DBL_MAX__;
        return *y = most * most, overflow;
    }
    *y = expScaled(size, 0, -1);
    return 0;
}

KEPS_INLINE f64x4 sizeOf(f64x4 x) {
    return without(x, splat<f64x4>(-0.0));
}
// All factors are normal.
KEPS_INLINE f64x4 beyond(f64x4 x) {
    return notLessEqual(sizeOf(x), splat<f64x4>(708));
}

struct Sinh {
    using V = f64x4;
    static constexpr int in = 1, out = 1;
    static int rare(const double *x, double *y) { return vdsinh_cout_rare(x, y); }
};
struct Cosh {
    using V = f64x4;
    static constexpr int in = 1, out = 1;
    static int rare(const double *x, double *y) { return vdcosh_cout_rare(x, y); }
};
struct SinhHigh : Sinh {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        *y = sinhHigh(sizeOf(*x)) | (*x & splat<V>(-0.0));
        outside = beyond(*x);
    }
};
struct SinhLow : Sinh {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        *y = sinhLow(sizeOf(*x)) | (*x & splat<V>(-0.0));
        outside = beyond(*x);
    }
};
struct CoshHigh : Cosh {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        *y = coshHigh(sizeOf(*x));
        outside = beyond(*x);
    }
};
template <const auto &series>
struct CoshShort : Cosh {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        *y = coshShort(sizeOf(*x), series);
        outside = beyond(*x);
    }
};

constexpr double half[] = {0.5};

} // namespace

int own_keps_dSinh_E9LAynn(const double *src, double *dst, int32_t len) {
    return run<SinhLow>(src, dst, len);
}
int own_keps_dSinh_E9HAynn(const double *src, double *dst, int32_t len) {
    return run<SinhHigh>(src, dst, len);
}
int own_keps_dCosh_E9LAynn(const double *src, double *dst, int32_t len) {
    return run<CoshShort<vdexp_low>>(src, dst, len);
}
int own_keps_dCosh_E9HAynn(const double *src, double *dst, int32_t len) {
    return run<CoshHigh>(src, dst, len);
}
int own_keps_dCosh_E9EPnnn(const double *src, double *dst, int32_t len) {
    return run<CoshShort<half>>(src, dst, len);
}

Unary64 *const own_keps_dSinh_E9_ttab[] = {own_keps_dSinh_E9LAynn, own_keps_dSinh_E9HAynn,
                                           own_keps_dSinh_E9LAynn};
Unary64 *const own_keps_dCosh_E9_ttab[] = {own_keps_dCosh_E9LAynn, own_keps_dCosh_E9HAynn,
                                           own_keps_dCosh_E9EPnnn};
