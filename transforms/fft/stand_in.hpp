#pragma once
#include "frame/simd/element.hpp"
extern "C" double sin(double);
extern "C" double cos(double);
inline int kepsSin_32f_A24(const float *s, float *d, int32_t n) {
    for (int i = 0; i < n; ++i) d[i] = float(sin(s[i]));
    return 0;
}
inline int kepsCos_32f_A24(const float *s, float *d, int32_t n) {
    for (int i = 0; i < n; ++i) d[i] = float(cos(s[i]));
    return 0;
}
inline int kepsSin_64f_A53(const double *s, double *d, int32_t n) {
    for (int i = 0; i < n; ++i) d[i] = sin(s[i]);
    return 0;
}
inline int kepsCos_64f_A53(const double *s, double *d, int32_t n) {
    for (int i = 0; i < n; ++i) d[i] = cos(s[i]);
    return 0;
}
inline KepStatus kepsMulC_32f_I(float v, float *d, int32_t n) {
    for (int i = 0; i < n; ++i) keps::storeOne(d + i, keps::loadOne(d + i) * v);
    return 0;
}
inline KepStatus kepsMulC_64f_I(double v, double *d, int32_t n) {
    for (int i = 0; i < n; ++i) keps::storeOne(d + i, keps::loadOne(d + i) * v);
    return 0;
}
