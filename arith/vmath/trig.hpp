// Sine and cosine by a table of sines at multiples of pi/32, and the reduction of huge arguments:
// what the accurate kernels and all rare paths share.
#pragma once

#include "arith/vmath/driver.hpp"
#include "arith/vmath/trig_data.hpp"

namespace keps::vmath {

// Up to here the argument's multiple of pi/32 takes 20 bits.
inline constexpr double trigLimit = 102900;

// x less a multiple N of pi/32, as high + low; N stands in the low bits of q.
template <class V>
struct Angle {
    V high, low, q;
};

// For |x| up to trigLimit. turn is added to N in q. The first product and difference are exact; the
// two sums that follow lose nothing, since where the order of magnitudes is not the wanted one the
// operands' last places leave room for an exact sum.
template <class V>
KEPS_INLINE Angle<V> reduceByStep(V x, int turn) {
    const V magic = constant<V>(0x1.8p52 + turn);
    const V q = x * constant<V>(trigInvStep) + magic;
    const V n = q - magic;
    const V first = x - n * constant<V>(trigStep1);
    const V a2 = n * constant<V>(trigStep2), a3 = n * constant<V>(trigStep3);
    const V second = first - a2;
    const V lost2 = (first - second) - a2;
    const V third = second - a3;
    const V lost3 = (second - third) - a3;
    return {third, (lost2 + lost3) - n * constant<V>(trigStep4), q};
}

// sin and cos of the small angle, each less its leading term.
template <class V>
struct StepSeries {
    V r, odd, even;
};

template <class V>
KEPS_INLINE StepSeries<V> stepSeries(V high, V low) {
    const V s = high * high;
    const V odd = constant<V>(vdsin_step[0]) +
                  s * (constant<V>(vdsin_step[1]) + s * constant<V>(vdsin_step[2]));
    const V even = constant<V>(vdcos_step[0]) +
                   s * (constant<V>(vdcos_step[1]) +
                        s * (constant<V>(vdcos_step[2]) + s * constant<V>(vdcos_step[3])));
    return {high, low + high * s * odd, s * even};
}

// The sine at a breakpoint plus the small angle. bulk times r is exact, so that only terms far
// below the result are rounded before the last sum: error below 0.52 units.
template <class V>
KEPS_INLINE V sineAt(V sine, V sineLow, V bulk, V cosineLess, const StepSeries<V> &small) {
    const V head = bulk * small.r;
    const V sum = sine + head;
    const V lost = (sine - sum) + head;
    const V rest =
        sineLow + cosineLess * small.r + (bulk + cosineLess) * small.odd + sine * small.even;
    return sum + (lost + rest);
}

KEPS_INLINE f64x4 sineAt(f64x4 q, int turn, const StepSeries<f64x4> &small) {
    const LowWords i = lowWords(q);
    const auto row = [turn](int n) KEPS_INLINE_LAMBDA { return vdsin_data[(n + turn) & 63]; };
    const auto at = columns4(row(i.n[0]), row(i.n[1]), row(i.n[2]), row(i.n[3]));
    return sineAt(at.c[0], at.c[1], at.c[2], at.c[3], small);
}

// One value of any size: N modulo 64 and the rest. For |x| of 2^16 and above.
struct HugeAngle {
    int n;
    double high, low;
};
HugeAngle reduceHuge(double x);

// sin(x + turn pi/32) for finite x, slowly and for any size.
double sineSlow(double x, int turn);

} // namespace keps::vmath
