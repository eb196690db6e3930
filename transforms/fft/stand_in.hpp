#pragma once
#include "frame/simd/float256.hpp"
inline KepStatus kepsMulC_64f_I(double v, double *d, int32_t n) {
    for (int i = 0; i < n; i += 4) keps::store(d + i, keps::load<keps::f64x4>(d + i) * keps::splat<keps::f64x4>(v));
    return 0;
}
