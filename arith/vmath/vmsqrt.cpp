// Square root and complex modulus in double precision.
#include "arith/vmath/driver.hpp"

using namespace keps;
using namespace keps::vmath;

namespace {

int vdsqrt_cout_rare(const double *x, double *y) {
    if (kep_isnan(*x)) return *y = *x * *x, 0;
    volatile double nothing = 0;
    return *y = nothing / nothing, domain;
}

// The processor's root is correctly rounded and as fast as any shorter way to the same bits, so
// all levels share it.
struct Sqrt {
    using V = f64x4;
    static constexpr int in = 1, out = 1;
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        *y = root(*x);
        outside = notLessEqual(zero<V>(), *x);
    }
    static int rare(const double *x, double *y) { return vdsqrt_cout_rare(x, y); }
};

KEPS_INLINE f64x4 upperOf(f64x4 x) {
    return x & splatBits<f64x4>(0xFFFFFFFFF8000000);
}
// x^2 less its rounded value.
KEPS_INLINE f64x4 squareLost(f64x4 x, f64x4 rounded) {
    const f64x4 u = upperOf(x), l = x - u;
    return ((u * u - rounded) + (u * l + u * l)) + l * l;
}

struct Modulus {
    using V = f64x4;
    static constexpr int in = 2, out = 1;

    // No square overflows, and none that counts is subnormal.
    KEPS_INLINE static V beyond(V a, V b) {
        const V size = without(a, splat<V>(-0.0)), other = without(b, splat<V>(-0.0));
        const V top = splat<V>(0x1p500);
        return (notLess(size, top) | notLess(other, top)) |
               less(max(size, other), splat<V>(0x1p-450));
    }
    static int rare(const double *x, double *y);
};
struct ModulusShort : Modulus {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        *y = root(x[0] * x[0] + x[1] * x[1]);
        outside = beyond(x[0], x[1]);
    }
};
// The root is improved by what its square and the two squares have lost.
struct ModulusHigh : Modulus {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        const V a = x[0] * x[0], b = x[1] * x[1];
        const V aLost = squareLost(x[0], a), bLost = squareLost(x[1], b);
        const V most = max(a, b), least = min(a, b);
        const V sum = most + least;
        const V lost = ((most - sum) + least) + (aLost + bLost);
        const V h = root(sum), square = h * h;
        const V error = ((sum - square) - squareLost(h, square)) + lost;
        *y = h + error / (h + h);
        outside = beyond(x[0], x[1]);
    }
};

// Scales by a power of two.
int Modulus::rare(const double *x, double *y) {
    const double a = __builtin_fabs(x[0]), b = __builtin_fabs(x[1]);
    if (__builtin_isinf(a) || __builtin_isinf(b)) return *y = __builtin_inf(), 0;
    if (kep_isnan(a) || kep_isnan(b)) return *y = a * b, 0;
    if (a == 0 || b == 0) return *y = a + b, 0;
    const double scale = a > 1 || b > 1 ? 0x1p-600 : 0x1p600;
    const V parts[] = {splat<V>(a * scale), splat<V>(b * scale)};
    V size, outside;
    ModulusHigh::fast(parts, &size, outside);
    *y = _mm256_cvtsd_f64(size.v) / scale;
    return __builtin_isinf(*y) ? overflow : 0;
}

// Real and imaginary parts of four values, in order.
KEPS_INLINE void parts(f64x4 first, f64x4 second, f64x4 *x) {
    const __m256d a = _mm256_permute2f128_pd(first.v, second.v, 0x20);
    const __m256d b = _mm256_permute2f128_pd(first.v, second.v, 0x31);
    x[0] = {_mm256_unpacklo_pd(a, b)};
    x[1] = {_mm256_unpackhi_pd(a, b)};
}

// The driver's loop over interleaved parts.
template <class K>
KEPS_INLINE int runModulus(const Kep64fc *src, double *dst, int32_t len) {
    using V = f64x4;
    const auto *p = reinterpret_cast<const double *>(src);
    Control control;
    int code = 0;
    for (size i = 0; i < len; i += V::lanes) {
        const size count = len - i < V::lanes ? len - i : V::lanes;
        V x[2], y, outside;
        const V second = count > 2
                             ? loadPart<V>(p + 2 * i + 4, 2 * count - 4 < 4 ? 2 * count - 4 : 4)
                             : zero<V>();
        parts(loadPart<V>(p + 2 * i, count < 2 ? 2 * count : 4), second, x);
        K::fast(x, &y, outside);
        if (count == V::lanes)
            store(dst + i, y);
        else
            storePart(dst + i, y, count);
        const unsigned marked = signs(outside) & ((1U << count) - 1);
        if (marked) [[unlikely]] {
            alignas(32) double held[2][V::lanes];
            store(held[0], x[0]);
            store(held[1], x[1]);
            double *to[] = {dst + i};
            code = settle<K>(held, to, marked, code, control);
        }
    }
    return code;
}

} // namespace

int own_keps_dSqrt_E9LAynn(const double *src, double *dst, int32_t len) {
    return run<Sqrt>(src, dst, len);
}
int own_keps_dSqrt_E9HAynn(const double *src, double *dst, int32_t len) {
    return run<Sqrt>(src, dst, len);
}
int own_keps_dSqrt_E9EPnnn(const double *src, double *dst, int32_t len) {
    return run<Sqrt>(src, dst, len);
}
int own_keps_zAbs_E9LAynn(const Kep64fc *src, double *dst, int32_t len) {
    return runModulus<ModulusShort>(src, dst, len);
}
int own_keps_zAbs_E9HAynn(const Kep64fc *src, double *dst, int32_t len) {
    return runModulus<ModulusHigh>(src, dst, len);
}
int own_keps_zAbs_E9EPnnn(const Kep64fc *src, double *dst, int32_t len) {
    return runModulus<ModulusShort>(src, dst, len);
}

Unary64 *const own_keps_dSqrt_E9_ttab[] = {own_keps_dSqrt_E9LAynn, own_keps_dSqrt_E9HAynn,
                                           own_keps_dSqrt_E9EPnnn};
Modulus64 *const own_keps_zAbs_E9_ttab[] = {own_keps_zAbs_E9LAynn, own_keps_zAbs_E9HAynn,
                                            own_keps_zAbs_E9EPnnn};
