#include "vmath_peer.hpp"

#include <cmath>
#include <cstdint>
#include <immintrin.h>
#ifdef KEPS_PEER_SLEEF
#include <sleef.h>
#endif
#ifdef KEPS_PEER_VOLK
#include <volk/volk.h>
#endif

// The C library's vector functions: c for AVX, d for AVX2.
extern "C" {
__m256d _ZGVcN4v_sin(__m256d), _ZGVdN4v_sin(__m256d);
__m256 _ZGVcN8v_sinf(__m256), _ZGVdN8v_sinf(__m256);
__m256d _ZGVcN4v_exp(__m256d), _ZGVdN4v_exp(__m256d);
__m256 _ZGVcN8v_expf(__m256), _ZGVdN8v_expf(__m256);
__m256d _ZGVcN4v_log(__m256d), _ZGVdN4v_log(__m256d);
__m256 _ZGVcN8v_logf(__m256), _ZGVdN8v_logf(__m256);
__m256d _ZGVcN4v_atan(__m256d), _ZGVdN4v_atan(__m256d);
__m256 _ZGVcN8v_atanf(__m256), _ZGVdN8v_atanf(__m256);
__m256d _ZGVcN4vv_atan2(__m256d, __m256d), _ZGVdN4vv_atan2(__m256d, __m256d);
__m256 _ZGVcN8vv_atan2f(__m256, __m256), _ZGVdN8vv_atan2f(__m256, __m256);
__m256 _ZGVcN8v_cbrtf(__m256), _ZGVdN8v_cbrtf(__m256);
__m256d _ZGVcN4vv_pow(__m256d, __m256d), _ZGVdN4vv_pow(__m256d, __m256d);
}

namespace peer {

namespace {

template <auto f>
void over8(const float *a, const float *, float *y, int n) {
    for (int i = 0; i + 8 <= n; i += 8) _mm256_storeu_ps(y + i, f(_mm256_loadu_ps(a + i)));
}
template <auto f>
void over4(const double *a, const double *, double *y, int n) {
    for (int i = 0; i + 4 <= n; i += 4) _mm256_storeu_pd(y + i, f(_mm256_loadu_pd(a + i)));
}
template <auto f>
void pairs8(const float *a, const float *b, float *y, int n) {
    for (int i = 0; i + 8 <= n; i += 8)
        _mm256_storeu_ps(y + i, f(_mm256_loadu_ps(a + i), _mm256_loadu_ps(b + i)));
}
template <auto f>
void pairs4(const double *a, const double *b, double *y, int n) {
    for (int i = 0; i + 4 <= n; i += 4)
        _mm256_storeu_pd(y + i, f(_mm256_loadu_pd(a + i), _mm256_loadu_pd(b + i)));
}

#ifdef KEPS_PEER_VOLK
// Its functions are pointers that are set to the best code at the first call.
template <auto &f>
void wholly(const float *a, const float *, float *y, int n) {
    f(y, a, static_cast<unsigned>(n));
}
#endif

} // namespace

std::vector<Elementary<Kep32f>> elementary32() {
    return {
        {"sin", "libmvec AVX", false, over8<_ZGVcN8v_sinf>},
        {"sin", "libmvec AVX2", true, over8<_ZGVdN8v_sinf>},
        {"exp", "libmvec AVX", false, over8<_ZGVcN8v_expf>},
        {"exp", "libmvec AVX2", true, over8<_ZGVdN8v_expf>},
        {"ln", "libmvec AVX", false, over8<_ZGVcN8v_logf>},
        {"ln", "libmvec AVX2", true, over8<_ZGVdN8v_logf>},
        {"atan", "libmvec AVX", false, over8<_ZGVcN8v_atanf>},
        {"atan", "libmvec AVX2", true, over8<_ZGVdN8v_atanf>},
        {"atan2", "libmvec AVX", false, pairs8<_ZGVcN8vv_atan2f>},
        {"atan2", "libmvec AVX2", true, pairs8<_ZGVdN8vv_atan2f>},
        {"cbrt", "libmvec AVX", false, over8<_ZGVcN8v_cbrtf>},
        {"cbrt", "libmvec AVX2", true, over8<_ZGVdN8v_cbrtf>},
#ifdef KEPS_PEER_SLEEF
        {"sin", "SLEEF u35 AVX", false, over8<Sleef_sinf8_u35avx>},
        {"sin", "SLEEF u35 AVX2", true, over8<Sleef_sinf8_u35avx2>},
        {"sin A24", "SLEEF u10 AVX", false, over8<Sleef_sinf8_u10avx>},
        {"exp", "SLEEF u10 AVX", false, over8<Sleef_expf8_u10avx>},
        {"exp", "SLEEF u10 AVX2", true, over8<Sleef_expf8_u10avx2>},
        {"ln", "SLEEF u35 AVX", false, over8<Sleef_logf8_u35avx>},
        {"ln", "SLEEF u35 AVX2", true, over8<Sleef_logf8_u35avx2>},
        {"atan", "SLEEF u35 AVX", false, over8<Sleef_atanf8_u35avx>},
        {"atan", "SLEEF u35 AVX2", true, over8<Sleef_atanf8_u35avx2>},
        {"atan2", "SLEEF u35 AVX", false, pairs8<Sleef_atan2f8_u35avx>},
        {"atan2", "SLEEF u35 AVX2", true, pairs8<Sleef_atan2f8_u35avx2>},
        {"cbrt", "SLEEF u35 AVX", false, over8<Sleef_cbrtf8_u35avx>},
        {"cbrt", "SLEEF u35 AVX2", true, over8<Sleef_cbrtf8_u35avx2>},
#endif
#ifdef KEPS_PEER_VOLK
        {"sin", "VOLK", false, wholly<volk_32f_sin_32f>},
        {"exp", "VOLK", false, wholly<volk_32f_exp_32f>},
        {"ln", "VOLK log2", false, wholly<volk_32f_log2_32f>, 0.69314718055994531},
        {"atan", "VOLK", false, wholly<volk_32f_atan_32f>},
#endif
    };
}

std::vector<Elementary<Kep64f>> elementary64() {
    return {
        {"sin", "libmvec AVX", false, over4<_ZGVcN4v_sin>},
        {"sin", "libmvec AVX2", true, over4<_ZGVdN4v_sin>},
        {"exp", "libmvec AVX", false, over4<_ZGVcN4v_exp>},
        {"exp", "libmvec AVX2", true, over4<_ZGVdN4v_exp>},
        {"ln", "libmvec AVX", false, over4<_ZGVcN4v_log>},
        {"ln", "libmvec AVX2", true, over4<_ZGVdN4v_log>},
        {"atan", "libmvec AVX", false, over4<_ZGVcN4v_atan>},
        {"atan", "libmvec AVX2", true, over4<_ZGVdN4v_atan>},
        {"atan2", "libmvec AVX", false, pairs4<_ZGVcN4vv_atan2>},
        {"atan2", "libmvec AVX2", true, pairs4<_ZGVdN4vv_atan2>},
        {"pow A53", "libmvec AVX2", true, pairs4<_ZGVdN4vv_pow>},
#ifdef KEPS_PEER_SLEEF
        {"sin", "SLEEF u35 AVX", false, over4<Sleef_sind4_u35avx>},
        {"sin", "SLEEF u35 AVX2", true, over4<Sleef_sind4_u35avx2>},
        {"sin A53", "SLEEF u10 AVX", false, over4<Sleef_sind4_u10avx>},
        {"exp", "SLEEF u10 AVX", false, over4<Sleef_expd4_u10avx>},
        {"exp", "SLEEF u10 AVX2", true, over4<Sleef_expd4_u10avx2>},
        {"ln", "SLEEF u35 AVX", false, over4<Sleef_logd4_u35avx>},
        {"ln", "SLEEF u35 AVX2", true, over4<Sleef_logd4_u35avx2>},
        {"ln A53", "SLEEF u10 AVX", false, over4<Sleef_logd4_u10avx>},
        {"atan", "SLEEF u35 AVX", false, over4<Sleef_atand4_u35avx>},
        {"atan", "SLEEF u35 AVX2", true, over4<Sleef_atand4_u35avx2>},
        {"atan2", "SLEEF u35 AVX", false, pairs4<Sleef_atan2d4_u35avx>},
        {"atan2", "SLEEF u35 AVX2", true, pairs4<Sleef_atan2d4_u35avx2>},
        {"sinh A53", "SLEEF u10 AVX", false, over4<Sleef_sinhd4_u10avx>},
        {"cosh A53", "SLEEF u10 AVX", false, over4<Sleef_coshd4_u10avx>},
        {"pow A53", "SLEEF u10 AVX", false, pairs4<Sleef_powd4_u10avx>},
#endif
    };
}

namespace {

template <class T>
T rounded(double x) {
    const double y = std::rint(x), most = sizeof(T) == 2 ? 32767 : 2147483647;
    return static_cast<T>(y > most ? most : (y < -most - 1 ? -most - 1 : y));
}

} // namespace

void expLoop(const Kep16s *src, Kep16s *dst, int n, int scaleFactor) {
    for (int i = 0; i < n; ++i)
        dst[i] = rounded<Kep16s>(std::ldexp(std::exp(double(src[i])), -scaleFactor));
}
void lnLoop(const Kep16s *src, Kep16s *dst, int n, int scaleFactor) {
    for (int i = 0; i < n; ++i)
        dst[i] = rounded<Kep16s>(std::ldexp(std::log(double(src[i])), -scaleFactor));
}
void lnLoop(const Kep32s *src, Kep32s *dst, int n, int scaleFactor) {
    for (int i = 0; i < n; ++i)
        dst[i] = rounded<Kep32s>(std::ldexp(std::log(double(src[i])), -scaleFactor));
}
void rootLoop(const Kep32f *src, Kep32f *dst, int n) {
    for (int i = 0; i < n; ++i) dst[i] = std::sqrt(src[i]);
}
void rootLoop(const Kep64f *src, Kep64f *dst, int n) {
    for (int i = 0; i < n; ++i) dst[i] = std::sqrt(src[i]);
}

namespace {

inline std::int32_t step(Generator &g) {
    const std::uint32_t t = g.swb1 - g.swb2 + static_cast<std::uint32_t>(g.borrow);
    std::uint32_t v = t;
    g.borrow = 0;
    if (t >> 31) {
        v = t - 18;
        g.borrow = -1;
    }
    g.swb2 = g.swb1;
    g.swb1 = g.swb0;
    g.swb0 = v;
    g.lcg = g.lcg * 69069 + 1013904243;
    return static_cast<std::int32_t>(v + g.lcg);
}

} // namespace

void uniformLoop(Generator &state, Kep32f *dst, int n, double mid, double scale) {
    Generator g = state;
    for (int i = 0; i < n; ++i) dst[i] = static_cast<float>(mid + scale * step(g));
    state = g;
}
void gaussLoop(Generator &state, Kep32f *dst, int n, double mean, double stdDev) {
    Generator g = state;
    for (int i = 0; i + 2 <= n; i += 2) {
        double u1, u2, s;
        do {
            u1 = step(g) * 0x1p-31;
            u2 = step(g) * 0x1p-31;
            s = u1 * u1 + u2 * u2;
        } while (s >= 1 || s == 0);
        const double f = std::sqrt(-2 * std::log(s) / s);
        dst[i] = static_cast<float>(mean + u2 * stdDev * f);
        dst[i + 1] = static_cast<float>(mean + u1 * stdDev * f);
    }
    state = g;
}

} // namespace peer
