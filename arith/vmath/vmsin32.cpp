// Sine and cosine in single precision. High accuracy: computed in double, rounded once.
#include "arith/vmath/trig.hpp"

using namespace keps;
using namespace keps::vmath;

namespace {

constexpr int quarterTurn = 16;
// Up to here the number of half turns takes 20 bits, a half more for the cosine.
constexpr float highLimit = 1647000;

KEPS_INLINE f32x8 beyond(f32x8 x, float limit) {
    return notLessEqual(without(x, splat<f32x8>(-0.0F)), splat<f32x8>(limit));
}

int rareSine(float x, float *y, int turn) {
    if (x != x) return *y = x * x, 0;
    if (__builtin_isinf(x)) return *y = x * 0, domain;
    *y = static_cast<float>(sineSlow(x, turn));
    return 0;
}
int vssin_cout_rare(const float *x, float *y) {
    return rareSine(*x, y, 0);
}
int vscos_cout_rare(const float *x, float *y) {
    return rareSine(*x, y, quarterTurn);
}

// sin(x) = (-1)^n sin(x - n pi), n the nearest integer. The product keeps the sign of zero.
KEPS_INLINE f64x4 sineOf(f64x4 x) {
    using V = f64x4;
    const V magic = splat<V>(0x1.8p52);
    const V q = x * splat<V>(invPi) + magic;
    const V n = q - magic;
    const V r = (x - n * splat<V>(piWide1)) - n * splat<V>(piWide2);
    return r * polynomial(r * r, vssin_high) ^ shiftLeft<63>(q);
}
// cos(x) = -(-1)^k sin(x - n pi), n = k + 1/2 nearest; the magic number's odd end gives the minus.
KEPS_INLINE f64x4 cosineOf(f64x4 x) {
    using V = f64x4;
    const V magic = splat<V>(0x1.8p52 + 1), half = splat<V>(0.5);
    const V q = (x * splat<V>(invPi) - half) + magic;
    const V n = (q - magic) + half;
    const V r = (x - n * splat<V>(piWide1)) - n * splat<V>(piWide2);
    return r * polynomial(r * r, vssin_high) ^ shiftLeft<63>(q);
}

struct SinHigh {
    using V = f32x8;
    static constexpr int in = 1, out = 1;
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        *y = toFloat(sineOf(lowerToDouble(*x)), sineOf(upperToDouble(*x)));
        outside = beyond(*x, highLimit);
    }
    static int rare(const float *x, float *y) { return vssin_cout_rare(x, y); }
};

struct CosHigh {
    using V = f32x8;
    static constexpr int in = 1, out = 1;
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        *y = toFloat(cosineOf(lowerToDouble(*x)), cosineOf(upperToDouble(*x)));
        outside = beyond(*x, highLimit);
    }
    static int rare(const float *x, float *y) { return vscos_cout_rare(x, y); }
};

} // namespace

int own_keps_sSin_E9HAynn(const float *src, float *dst, int32_t len) {
    return run<SinHigh>(src, dst, len);
}
int own_keps_sCos_E9HAynn(const float *src, float *dst, int32_t len) {
    return run<CosHigh>(src, dst, len);
}

Unary32 *const own_keps_sSin_E9_ttab[slot::count] = {own_keps_sSin_E9HAynn, own_keps_sSin_E9HAynn,
                                                     own_keps_sSin_E9HAynn};
Unary32 *const own_keps_sCos_E9_ttab[slot::count] = {own_keps_sCos_E9HAynn, own_keps_sCos_E9HAynn,
                                                     own_keps_sCos_E9HAynn};

int kepsSin_32f_A24(const float *src, float *dst, int32_t len) {
    return own_keps_sSin_E9_ttab[slot::high](src, dst, len);
}
int kepsCos_32f_A24(const float *src, float *dst, int32_t len) {
    return own_keps_sCos_E9_ttab[slot::high](src, dst, len);
}
