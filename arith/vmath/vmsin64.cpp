// Sine and cosine in double precision. High accuracy: the table of sines. Low accuracy and enhanced
// performance: one odd polynomial over half a turn, or a pair over a quarter.
#include "arith/vmath/trig_turns.hpp"

using namespace keps;
using namespace keps::vmath;

namespace {

int rareSine(double x, double *y, int turn) {
    if (kep_isnan(x)) return *y = x * x, 0;
    if (__builtin_isinf(x)) return *y = x * 0, domain;
    *y = sineSlow(x, turn);
    return 0;
}
int vdsin_cout_rare(const double *x, double *y) {
    return rareSine(*x, y, 0);
}
int vdcos_cout_rare(const double *x, double *y) {
    return rareSine(*x, y, quarterOfTable);
}
int vdsincos_cout_rare(const double *x, double *y) {
    rareSine(*x, y, 0);
    return rareSine(*x, y + 1, quarterOfTable);
}

struct Sine {
    using V = f64x4;
    static constexpr int in = 1, out = 1;
    static int rare(const double *x, double *y) { return vdsin_cout_rare(x, y); }
};
struct Cosine {
    using V = f64x4;
    static constexpr int in = 1, out = 1;
    static int rare(const double *x, double *y) { return vdcos_cout_rare(x, y); }
};
struct Both {
    using V = f64x4;
    static constexpr int in = 1, out = 2;
    static int rare(const double *x, double *y) { return vdsincos_cout_rare(x, y); }
};

struct SineHigh : Sine {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        const Angle<V> angle = reduceByStep(*x, 0);
        const V value = sineAt(angle.q, 0, stepSeries(angle.high, angle.low));
        *y = select(equal(*x, zero<V>()), value, *x); // keeps the sign of zero
        outside = beyond(*x, trigLimit);
    }
};
struct CosineHigh : Cosine {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        const Angle<V> angle = reduceByStep(*x, quarterOfTable);
        *y = sineAt(angle.q, 0, stepSeries(angle.high, angle.low));
        outside = beyond(*x, trigLimit);
    }
};
struct BothHigh : Both {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        const Angle<V> angle = reduceByStep(*x, 0);
        const StepSeries<V> small = stepSeries(angle.high, angle.low);
        y[0] = select(equal(*x, zero<V>()), sineAt(angle.q, 0, small), *x);
        y[1] = sineAt(angle.q, quarterOfTable, small);
        outside = beyond(*x, trigLimit);
    }
};

// The polynomials' kernels differ by their series alone.
template <const auto &series>
struct SineShort : Sine {
    static constexpr int mids = 1;
    KEPS_INLINE static void first(const V *x, V *mid, V &extent) { *mid = foldedSine(*x, extent); }
    KEPS_INLINE static V outside(V extent) { return beyondTurns(extent); }
    KEPS_INLINE static void second(const V *mid, V *y) { *y = sineOfFolded(*mid, series); }
};
template <const auto &series>
struct CosineShort : Cosine {
    static constexpr int mids = 1;
    KEPS_INLINE static void first(const V *x, V *mid, V &extent) {
        *mid = foldedCosine(*x, extent);
    }
    KEPS_INLINE static V outside(V extent) { return beyondTurns(extent); }
    KEPS_INLINE static void second(const V *mid, V *y) { *y = sineOfFolded(*mid, series); }
};
template <const auto &sines, const auto &cosines>
struct BothShort : Both {
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        bothByQuarters(*x, sines, cosines, y[0], y[1]);
        outside = beyond(*x, Turn<V>::limit);
    }
};

} // namespace

int own_keps_dSin_E9LAynn(const double *src, double *dst, int32_t len) {
    return run<SineShort<vdsin_low>>(src, dst, len);
}
int own_keps_dSin_E9HAynn(const double *src, double *dst, int32_t len) {
    return run<SineHigh>(src, dst, len);
}
int own_keps_dSin_E9EPnnn(const double *src, double *dst, int32_t len) {
    return run<SineShort<vdsin_fast>>(src, dst, len);
}
int own_keps_dCos_E9LAynn(const double *src, double *dst, int32_t len) {
    return run<CosineShort<vdsin_low>>(src, dst, len);
}
int own_keps_dCos_E9HAynn(const double *src, double *dst, int32_t len) {
    return run<CosineHigh>(src, dst, len);
}
int own_keps_dCos_E9EPnnn(const double *src, double *dst, int32_t len) {
    return run<CosineShort<vdsin_fast>>(src, dst, len);
}
int own_keps_dSinCos_E9LAynn(const double *src, double *dstSin, double *dstCos, int32_t len) {
    return run<BothShort<sinQuarterLow64, cosQuarterLow64>>(src, dstSin, dstCos, len);
}
int own_keps_dSinCos_E9HAynn(const double *src, double *dstSin, double *dstCos, int32_t len) {
    return run<BothHigh>(src, dstSin, dstCos, len);
}
int own_keps_dSinCos_E9EPnnn(const double *src, double *dstSin, double *dstCos, int32_t len) {
    return run<BothShort<sinQuarterFast64, cosQuarterFast64>>(src, dstSin, dstCos, len);
}

Unary64 *const own_keps_dSin_E9_ttab[] = {own_keps_dSin_E9LAynn, own_keps_dSin_E9HAynn,
                                          own_keps_dSin_E9EPnnn};
Unary64 *const own_keps_dCos_E9_ttab[] = {own_keps_dCos_E9LAynn, own_keps_dCos_E9HAynn,
                                          own_keps_dCos_E9EPnnn};
Pair64 *const own_keps_dSinCos_E9_ttab[] = {own_keps_dSinCos_E9LAynn, own_keps_dSinCos_E9HAynn,
                                            own_keps_dSinCos_E9EPnnn};
