// Cube root in single precision: a guess at the reciprocal root from the exponent and mantissa bits
// read as one number, good to 4 per cent, and steps of (1 - e)^(-1/3) with e = 1 - x r^3.
#include "arith/vmath/driver.hpp"

using namespace keps;
using namespace keps::vmath;

namespace {

enum class Level { low, high, enhanced };

// r with x r^3 = 1 - e, e below 2^-14. The bits of a float are its logarithm, nearly; those of the
// guess are a constant less their third.
KEPS_INLINE f32x8 reciprocalRoot(f32x8 size) {
    using V = f32x8;
    const V bits = {_mm256_cvtepi32_ps(_mm256_castps_si256(size.v))};
    const V third = splat<V>(0x1.528874p+30F) - bits * splat<V>(1.0F / 3);
    const V r = {_mm256_castsi256_ps(_mm256_cvtps_epi32(third.v))};
    const V e = splat<V>(1) - (size * r) * (r * r);
    return r + r * e * (splat<V>(1.0F / 3) + e * (splat<V>(2.0F / 9) + e * splat<V>(14.0F / 81)));
}

// x r^2 (1 - e)^(-2/3), in double.
KEPS_INLINE f64x4 finish(f64x4 size, f64x4 r) {
    using V = f64x4;
    const V t = size * (r * r);
    const V e = splat<V>(1) - t * r;
    return t + t * e * (splat<V>(2.0 / 3) + e * splat<V>(5.0 / 9));
}

template <Level level>
KEPS_INLINE f32x8 cubeRoot(f32x8 x) {
    using V = f32x8;
    const V size = without(x, splat<V>(-0.0F)), sign = x & splat<V>(-0.0F);
    const V r = reciprocalRoot(size);
    if constexpr (level == Level::high)
        return toFloat(finish(lowerToDouble(size), lowerToDouble(r)),
                       finish(upperToDouble(size), upperToDouble(r))) |
               sign;
    const V t = size * (r * r);
    if constexpr (level == Level::enhanced) return t | sign;
    return (t + t * ((splat<V>(1) - t * r) * splat<V>(2.0F / 3))) | sign;
}

int vscbrt_cout_rare(const float *x, float *y) {
    if (*x != *x) return *y = *x * *x, 0;
    if (*x == 0 || __builtin_isinf(*x)) return *y = *x, 0;
    const f32x8 root = cubeRoot<Level::high>(splat<f32x8>(*x * 0x1p48F)); // subnormal
    *y = _mm_cvtss_f32(_mm256_castps256_ps128(root.v)) * 0x1p-16F;
    return 0;
}

template <Level level>
struct Cbrt {
    using V = f32x8;
    static constexpr int in = 1, out = 1;
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        *y = cubeRoot<level>(*x);
        const V size = without(*x, splat<V>(-0.0F));
        outside =
            notLessEqual(splat<V>(0x1p-126F), size) | notLessEqual(size, splat<V>(__FLT_MAX__));
    }
    static int rare(const float *x, float *y) { return vscbrt_cout_rare(x, y); }
};

} // namespace

int own_keps_sCbrt_E7LAynn(const float *src, float *dst, int32_t len) {
    return run<Cbrt<Level::low>>(src, dst, len);
}
int own_keps_sCbrt_E9HAynn(const float *src, float *dst, int32_t len) {
    return run<Cbrt<Level::high>>(src, dst, len);
}
int own_keps_sCbrt_E7EPnnn(const float *src, float *dst, int32_t len) {
    return run<Cbrt<Level::enhanced>>(src, dst, len);
}

Unary32 *const own_keps_sCbrt_E9_ttab[] = {own_keps_sCbrt_E7LAynn, own_keps_sCbrt_E9HAynn,
                                           own_keps_sCbrt_E7EPnnn};
