// Sine and cosine in single precision. High accuracy: computed in double, rounded once. Low
// accuracy and enhanced performance: one odd polynomial over half a turn, or a pair over a quarter.
#include "arith/vmath/trig_turns.hpp"

using namespace keps;
using namespace keps::vmath;

namespace {

// Up to here the number of half turns takes 20 bits, a half more for the cosine.
constexpr float highLimit = 1647000;

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
    return rareSine(*x, y, quarterOfTable);
}
int vssincos_cout_rare(const float *x, float *y) {
    rareSine(*x, y, 0);
    return rareSine(*x, y + 1, quarterOfTable);
}

// A float's distance to a multiple of pi takes no more than two parts of pi in double.
KEPS_INLINE f64x4 wideSine(f64x4 x) {
    using V = f64x4;
    const V magic = splat<V>(Turn<V>::magic);
    const V q = x * splat<V>(invPi) + magic;
    const V n = q - magic;
    const V r = (x - n * splat<V>(piWide1)) - n * splat<V>(piWide2);
    return r * polynomial(r * r, vssin_high) ^ shiftLeft<63>(q);
}
KEPS_INLINE f64x4 wideCosine(f64x4 x) {
    using V = f64x4;
    const V magic = splat<V>(Turn<V>::magic + 1), half = splat<V>(0.5);
    const V q = (x * splat<V>(invPi) - half) + magic;
    const V n = (q - magic) + half;
    const V r = (x - n * splat<V>(piWide1)) - n * splat<V>(piWide2);
    return r * polynomial(r * r, vssin_high) ^ shiftLeft<63>(q);
}
KEPS_INLINE f32x8 highSine(f32x8 x) {
    return toFloat(wideSine(lowerToDouble(x)), wideSine(upperToDouble(x)));
}
KEPS_INLINE f32x8 highCosine(f32x8 x) {
    return toFloat(wideCosine(lowerToDouble(x)), wideCosine(upperToDouble(x)));
}

struct Sine {
    using V = f32x8;
    static constexpr int in = 1, out = 1;
    static int rare(const float *x, float *y) { return vssin_cout_rare(x, y); }
};
struct Cosine {
    using V = f32x8;
    static constexpr int in = 1, out = 1;
    static int rare(const float *x, float *y) { return vscos_cout_rare(x, y); }
};
struct Both {
    using V = f32x8;
    static constexpr int in = 1, out = 2;
    static int rare(const float *x, float *y) { return vssincos_cout_rare(x, y); }
};

struct SineHigh : Sine {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        *y = highSine(*x);
        outside = beyond(*x, highLimit);
    }
};
struct CosineHigh : Cosine {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        *y = highCosine(*x);
        outside = beyond(*x, highLimit);
    }
};
struct BothHigh : Both {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        y[0] = highSine(*x);
        y[1] = highCosine(*x);
        outside = beyond(*x, highLimit);
    }
};

// Lanes beyond the short reduction but not the long one are computed in double, so that a long
// phase does not cost a rare path.
template <const auto &series>
struct SineShort : Sine {
    static constexpr int mids = 1;
    KEPS_INLINE static void first(const V *x, V *mid, V &extent) { *mid = foldedSine(*x, extent); }
    KEPS_INLINE static V outside(V extent) { return beyondTurns(extent); }
    KEPS_INLINE static void second(const V *mid, V *y) { *y = sineOfFolded(*mid, series); }
    KEPS_INLINE static void again(const V *x, V *y, V &outside) {
        *y = select(outside, *y, highSine(*x));
        outside = beyond(*x, highLimit);
    }
};
template <const auto &series>
struct CosineShort : Cosine {
    static constexpr int mids = 1;
    KEPS_INLINE static void first(const V *x, V *mid, V &extent) {
        *mid = foldedCosine(*x, extent);
    }
    KEPS_INLINE static V outside(V extent) { return beyondTurns(extent); }
    KEPS_INLINE static void second(const V *mid, V *y) { *y = sineOfFolded(*mid, series); }
    KEPS_INLINE static void again(const V *x, V *y, V &outside) {
        *y = select(outside, *y, highCosine(*x));
        outside = beyond(*x, highLimit);
    }
};
template <const auto &sines, const auto &cosines>
struct BothShort : Both {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        bothByQuarters(*x, sines, cosines, y[0], y[1]);
        outside = beyond(*x, Turn<V>::limit);
    }
    KEPS_INLINE static void again(const V *x, V *y, V &outside) {
        y[0] = select(outside, y[0], highSine(*x));
        y[1] = select(outside, y[1], highCosine(*x));
        outside = beyond(*x, highLimit);
    }
};

} // namespace

int own_keps_sSin_E9LAynn(const float *src, float *dst, int32_t len) {
    return run<SineShort<vssin_low>>(src, dst, len);
}
int own_keps_sSin_E9HAynn(const float *src, float *dst, int32_t len) {
    return run<SineHigh>(src, dst, len);
}
int own_keps_sSin_E9EPnnn(const float *src, float *dst, int32_t len) {
    return run<SineShort<vssin_fast>>(src, dst, len);
}
int own_keps_sCos_E9LAynn(const float *src, float *dst, int32_t len) {
    return run<CosineShort<vssin_low>>(src, dst, len);
}
int own_keps_sCos_E9HAynn(const float *src, float *dst, int32_t len) {
    return run<CosineHigh>(src, dst, len);
}
int own_keps_sCos_E9EPnnn(const float *src, float *dst, int32_t len) {
    return run<CosineShort<vssin_fast>>(src, dst, len);
}
int own_keps_sSinCos_E9LAynn(const float *src, float *dstSin, float *dstCos, int32_t len) {
    return run<BothShort<sinQuarterLow32, cosQuarterLow32>>(src, dstSin, dstCos, len);
}
int own_keps_sSinCos_E9HAynn(const float *src, float *dstSin, float *dstCos, int32_t len) {
    return run<BothHigh>(src, dstSin, dstCos, len);
}
int own_keps_sSinCos_E9EPnnn(const float *src, float *dstSin, float *dstCos, int32_t len) {
    return run<BothShort<sinQuarterFast32, cosQuarterFast32>>(src, dstSin, dstCos, len);
}

Unary32 *const own_keps_sSin_E9_ttab[] = {own_keps_sSin_E9LAynn, own_keps_sSin_E9HAynn,
                                          own_keps_sSin_E9EPnnn};
Unary32 *const own_keps_sCos_E9_ttab[] = {own_keps_sCos_E9LAynn, own_keps_sCos_E9HAynn,
                                          own_keps_sCos_E9EPnnn};
Pair32 *const own_keps_sSinCos_E9_ttab[] = {own_keps_sSinCos_E9LAynn, own_keps_sSinCos_E9HAynn,
                                            own_keps_sSinCos_E9EPnnn};
