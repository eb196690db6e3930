// Sine and cosine in double precision. High accuracy: the table of sines. Low accuracy and enhanced
// performance: one odd polynomial over half a turn.
#include "arith/vmath/trig.hpp"

using namespace keps;
using namespace keps::vmath;

namespace {

constexpr int quarterTurn = 16;

KEPS_INLINE f64x4 beyond(f64x4 x, double limit) {
    return notLessEqual(without(x, splat<f64x4>(-0.0)), splat<f64x4>(limit));
}

int vdsin_cout_rare(const double *x, double *y) {
    if (kep_isnan(*x)) return *y = *x * *x, 0;
    if (__builtin_isinf(*x)) return *y = *x * 0, domain;
    *y = sineSlow(*x, 0);
    return 0;
}
int vdcos_cout_rare(const double *x, double *y) {
    if (kep_isnan(*x)) return *y = *x * *x, 0;
    if (__builtin_isinf(*x)) return *y = *x * 0, domain;
    *y = sineSlow(*x, quarterTurn);
    return 0;
}

struct SinHigh {
    using V = f64x4;
    static constexpr int in = 1, out = 1;
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        const Angle<V> angle = reduceByStep(*x, 0);
        const V value = sineAt(angle.q, 0, stepSeries(angle.high, angle.low));
        *y = select(equal(*x, zero<V>()), value, *x); // keeps the sign of zero
        outside = beyond(*x, trigLimit);
    }
    static int rare(const double *x, double *y) { return vdsin_cout_rare(x, y); }
};

struct CosHigh {
    using V = f64x4;
    static constexpr int in = 1, out = 1;
    KEPS_INLINE static void fast(const V *x, V *y, V &outside) {
        const Angle<V> angle = reduceByStep(*x, quarterTurn);
        *y = sineAt(angle.q, 0, stepSeries(angle.high, angle.low));
        outside = beyond(*x, trigLimit);
    }
    static int rare(const double *x, double *y) { return vdcos_cout_rare(x, y); }
};

} // namespace

int own_keps_dSin_E9HAynn(const double *src, double *dst, int32_t len) {
    return run<SinHigh>(src, dst, len);
}
int own_keps_dCos_E9HAynn(const double *src, double *dst, int32_t len) {
    return run<CosHigh>(src, dst, len);
}

Unary64 *const own_keps_dSin_E9_ttab[slot::count] = {own_keps_dSin_E9HAynn, own_keps_dSin_E9HAynn,
                                                     own_keps_dSin_E9HAynn};
Unary64 *const own_keps_dCos_E9_ttab[slot::count] = {own_keps_dCos_E9HAynn, own_keps_dCos_E9HAynn,
                                                     own_keps_dCos_E9HAynn};

int kepsSin_64f_A53(const double *src, double *dst, int32_t len) {
    return own_keps_dSin_E9_ttab[slot::high](src, dst, len);
}
int kepsCos_64f_A53(const double *src, double *dst, int32_t len) {
    return own_keps_dCos_E9_ttab[slot::high](src, dst, len);
}
