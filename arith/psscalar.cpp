// Scalar helpers: one double at a time.
#include "arith/scalar.hpp"

#include "arith/vmath/exp.hpp"
#include "arith/vmath/ln.hpp"
#include "arith/vmath/trig.hpp"

using namespace keps;
using namespace keps::vmath;

namespace {

// Extended precision for a scope, whatever the caller's x87 word says.
class ExtendedPrecision {
public:
    ExtendedPrecision() : old(ps_set_cw_fpu(0x33F, 0xF3F)) {}
    ~ExtendedPrecision() { ps_set_cw_fpu(old, 0xF3F); }
    ExtendedPrecision(const ExtendedPrecision &) = delete;
    ExtendedPrecision &operator=(const ExtendedPrecision &) = delete;

private:
    unsigned old;
};

struct SineCosine {
    long double sine, cosine;
};
// By the series of sine and cosine up to terms below 2^-70, for |r| up to pi/4 and a little.
SineCosine sineCosine(double x) {
    long double r;
    const int quarter = ownsReducePi(x, &r);
    const long double s = -r * r;
    long double sine = 1, cosine = 1;
    for (int k = 20; k >= 2; k -= 2) {
        sine = 1 + sine * s / static_cast<long double>(k * (k + 1));
        cosine = 1 + cosine * s / static_cast<long double>(k * (k - 1));
    }
    sine *= r;
    if (quarter == 0) return {sine, cosine};
    if (quarter == 1) return {cosine, -sine};
    if (quarter == 2) return {-sine, -cosine};
    return {-cosine, sine};
}

} // namespace

int ownsReducePi(double x, long double *rest) {
    // The stored digits give the multiple of pi/32 modulo a turn, and what is left in two parts.
    const HugeAngle angle = reduceHuge(x);
    const int quarters = (angle.n + 8) >> 4; // nearest
    const int steps = angle.n - 16 * quarters;
    constexpr long double step = 0x1.921fb54442d1846ap-4L; // pi/32
    *rest = static_cast<long double>(steps) * step +
            (static_cast<long double>(angle.high) + static_cast<long double>(angle.low));
    return quarters & 3;
}

void ownsSinCosHuge(double x, double *sine, double *cosine) {
    if (!(__builtin_fabs(x) <= __DBL_MAX__)) {
        *sine = *cosine = x - x;
        return;
    }
    const ExtendedPrecision scope;
    const SineCosine at = sineCosine(x);
    *sine = static_cast<double>(at.sine);
    *cosine = static_cast<double>(at.cosine);
}

double ownsTanCotHuge(double x, int cotangent) {
    if (!(__builtin_fabs(x) <= __DBL_MAX__)) return x - x;
    const ExtendedPrecision scope;
    const SineCosine at = sineCosine(x);
    return static_cast<double>(cotangent ? at.cosine / at.sine : at.sine / at.cosine);
}

double kepsSqrtOne(double x) {
    const __m128d v = _mm_set_sd(x);
    return _mm_cvtsd_f64(_mm_sqrt_sd(v, v));
}
double kepsFabsOne(double x) {
    return __builtin_fabs(x);
}
double kepsFloorOne(double x) {
    const __m128d v = _mm_set_sd(x);
    return _mm_cvtsd_f64(_mm_floor_sd(v, v));
}
double kepsSinOne(double x) {
    if (__builtin_fabs(x) <= trigLimit) return sineSlow(x, 0);
    double sine, cosine;
    ownsSinCosHuge(x, &sine, &cosine);
    return sine;
}
double kepsCosOne(double x) {
    if (__builtin_fabs(x) <= trigLimit) return sineSlow(x, 16);
    double sine, cosine;
    ownsSinCosHuge(x, &sine, &cosine);
    return cosine;
}
double kepsTanOne(double x) {
    if (__builtin_fabs(x) <= trigLimit) return sineSlow(x, 0) / sineSlow(x, 16);
    return ownsTanCotHuge(x, 0);
}
double kepsExpOne(double x) {
    double y;
    vdexp_cout_rare(&x, &y);
    return y;
}
double kepsLogOne(double x) {
    double y;
    vdln_cout_rare(&x, &y);
    return y;
}
double kepsAtan2One(double y, double x) {
    const double pair[] = {y, x};
    double angle;
    vdatan2_cout_rare(pair, &angle);
    return angle;
}
double kepsPowOne(double x, double y) {
    const double pair[] = {x, y};
    double power;
    vdpowx_cout_rare(pair, &power);
    return power;
}
