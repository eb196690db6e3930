#include "div_peer.hpp"

#include <cmath>
#include <immintrin.h>
#include <limits>

namespace peer {

namespace {

template <class T, class R>
T saturated(R x) {
    constexpr R most = std::numeric_limits<T>::max(), least = std::numeric_limits<T>::min();
    return static_cast<T>(std::nearbyint(x > most ? most : (x < least ? least : x)));
}

template <class T, class R>
void integers(const T *src1, const T *src2, T *dst, int n, R scale) {
    using L = std::numeric_limits<T>;
    for (int i = 0; i < n; ++i) {
        const T under = src1[i], over = src2[i];
        if (under == 0)
            dst[i] = over == 0 ? T{0} : (over > 0 ? L::max() : L::min());
        else
            dst[i] = saturated<T>(static_cast<R>(over) * scale / static_cast<R>(under));
    }
}

template <class T>
void complexFloats(const T *src1, const T *src2, T *dst, int n) {
    for (int i = 0; i < n; ++i) {
        const T under = src1[i], over = src2[i];
        const auto m = under.re * under.re + under.im * under.im;
        dst[i] = {(over.re * under.re + over.im * under.im) / m,
                  (over.im * under.re - over.re * under.im) / m};
    }
}

} // namespace

void divide(const Kep8u *src1, const Kep8u *src2, Kep8u *dst, int n, float scale) {
    integers(src1, src2, dst, n, scale);
}
void divide(const Kep16s *src1, const Kep16s *src2, Kep16s *dst, int n, float scale) {
    integers(src1, src2, dst, n, scale);
}
void divide(const Kep32s *src1, const Kep32s *src2, Kep32s *dst, int n, double scale) {
    integers(src1, src2, dst, n, scale);
}
void divide(const Kep16sc *src1, const Kep16sc *src2, Kep16sc *dst, int n, double scale) {
    for (int i = 0; i < n; ++i) {
        const double a = src2[i].re, b = src2[i].im, c = src1[i].re, d = src1[i].im;
        const double m = c * c + d * d, r = m == 0 ? 0 : scale / m;
        dst[i] = {saturated<Kep16s>((a * c + b * d) * r), saturated<Kep16s>((b * c - a * d) * r)};
    }
}
void divide(const Kep32fc *src1, const Kep32fc *src2, Kep32fc *dst, int n) {
    complexFloats(src1, src2, dst, n);
}
void divide(const Kep64fc *src1, const Kep64fc *src2, Kep64fc *dst, int n) {
    complexFloats(src1, src2, dst, n);
}
void divideBy(const Kep16s *src, Kep16s val, Kep16s *dst, int n, float scale) {
    const float r = scale / val;
    for (int i = 0; i < n; ++i) dst[i] = saturated<Kep16s>(src[i] * r);
}
void divideBy(const Kep8u *src, Kep8u val, Kep8u *dst, int n, float scale) {
    const float r = scale / val;
    for (int i = 0; i < n; ++i) dst[i] = saturated<Kep8u>(src[i] * r);
}

void divideUnitFloats(int n) {
    const __m256 a = _mm256_set1_ps(3.7F), b = _mm256_set1_ps(1.3F);
    for (int i = 0; i < n; i += 8) {
        __m256 q;
        __asm__ volatile("vdivps %2, %1, %0" : "=x"(q) : "x"(a), "x"(b));
    }
}
void divideUnitDoubles(int n) {
    const __m256d a = _mm256_set1_pd(3.7), b = _mm256_set1_pd(1.3);
    for (int i = 0; i < n; i += 4) {
        __m256d q;
        __asm__ volatile("vdivpd %2, %1, %0" : "=x"(q) : "x"(a), "x"(b));
    }
}

} // namespace peer
