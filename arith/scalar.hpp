// Scalar helpers in double precision, for plans, designs and generators. They expect the default
// arithmetic (see DefaultArithmetic) where a caller may have changed it.
#pragma once

#include "frame/worker.h"

OWN_FN(double, kepsSqrtOne, (double x));
OWN_FN(double, kepsFabsOne, (double x));
OWN_FN(double, kepsFloorOne, (double x));
OWN_FN(double, kepsSinOne, (double x));
OWN_FN(double, kepsCosOne, (double x));
OWN_FN(double, kepsTanOne, (double x));
OWN_FN(double, kepsExpOne, (double x));
OWN_FN(double, kepsLogOne, (double x));
OWN_FN(double, kepsAtan2One, (double y, double x));
OWN_FN(double, kepsPowOne, (double x, double y));

// x of 2^16 or more less a multiple of pi/2, in extended precision, to pi/4 and a little; the
// multiple modulo 4.
OWN_FN(int, ownsReducePi, (double x, long double *rest));
// For such x, or infinity and NaN, which give NaN.
OWN_FN(void, ownsSinCosHuge, (double x, double *sine, double *cosine));
OWN_FN(double, ownsTanCotHuge, (double x, int cotangent));
