// The exponential by a table of 2^(j/128): what the double kernels, the hyperbolic functions and
// the scalar helpers share.
#pragma once

#include "arith/vmath/driver.hpp"
#include "arith/vmath/exp_data.hpp"

namespace keps::vmath {

// Past these the result is infinite, or nothing.
inline constexpr double exp64Top = 0x1.62e42fefa39efp+9, exp64Bottom = -0x1.74910d52d3051p+9;
inline constexpr double exp32Top = 88.72283172607422, exp32Bottom = -103.97207641601563;

// x = N ln(2)/128 + r; the second part of the step leaves r short by less than 2^-61. N plus 128
// times bias stands in the low bits of q, n is N.
template <class V>
struct Exponent {
    V q, n, r;
};
template <class V>
KEPS_INLINE Exponent<V> reduceExponent(V x, int bias) {
    const V magic = constant<V>(0x1.8p52 + 128.0 * bias);
    const V q = x * constant<V>(expInvStep) + magic;
    const V n = q - magic;
    return {q, n, (x - n * constant<V>(expStep1)) - n * constant<V>(expStep2)};
}

// 2^(N div 128) of a q with bias 1023, for results in the normal range.
KEPS_INLINE f64x4 scaleOf(f64x4 q) {
    return shiftLeft<45>(q) & splatBits<f64x4>(0x7FF0000000000000);
}

KEPS_INLINE Columns<2> powersAt(f64x4 q) {
    const LowWords i = lowWords(q);
    const auto row = [](int n) KEPS_INLINE_LAMBDA { return vdexp_data[n & 127]; };
    return columns2(row(i.n[0]), row(i.n[1]), row(i.n[2]), row(i.n[3]));
}

// e^(x + low) 2^shift by itself, for a finite result; rounded once more where it is subnormal.
double expScaled(double x, double low, int shift);

} // namespace keps::vmath
