#include "convert_peer.hpp"

#include <cmath>
#include <limits>

namespace peer {

namespace {

template <class T, class R>
void scaled(const R *src, T *dst, int n, R scale) {
    constexpr R most = static_cast<R>(std::numeric_limits<T>::max());
    constexpr R least = static_cast<R>(std::numeric_limits<T>::min());
    for (int i = 0; i < n; ++i) {
        const R x = src[i] * scale;
        dst[i] = x >= most ? std::numeric_limits<T>::max()
                           : static_cast<T>(std::nearbyint(x < least ? least : x));
    }
}

template <class To, class From>
void shifted(const From *src, To *dst, int n, int bits) {
    const auto unit = static_cast<From>(From{1} << bits);
    for (int i = 0; i < n; ++i) {
        const auto q = src[i] >> bits;
        const auto rest = src[i] & (unit - 1), half = unit >> 1;
        const auto r = q + (rest > half || (rest == half && (q & 1)));
        using L = std::numeric_limits<To>;
        dst[i] = static_cast<To>(r > L::max() ? L::max() : (r < L::min() ? L::min() : r));
    }
}

void put(Kep8u *p, int v) {
    p[0] = static_cast<Kep8u>(v);
    p[1] = static_cast<Kep8u>(v >> 8);
    p[2] = static_cast<Kep8u>(v >> 16);
}
int get(const Kep8u *p) {
    return p[0] | p[1] << 8 | static_cast<Kep8s>(p[2]) * 65536;
}

} // namespace

void convert(const float *src, Kep8s *dst, int n, float scale) {
    scaled(src, dst, n, scale);
}
void convert(const float *src, Kep8u *dst, int n, float scale) {
    scaled(src, dst, n, scale);
}
void convert(const float *src, Kep16u *dst, int n, float scale) {
    scaled(src, dst, n, scale);
}
void convert(const float *src, Kep32s *dst, int n, float scale) {
    scaled(src, dst, n, scale);
}
void convert(const double *src, Kep16s *dst, int n, double scale) {
    scaled(src, dst, n, scale);
}
void convert(const double *src, Kep32s *dst, int n, double scale) {
    scaled(src, dst, n, scale);
}
void convert(const double *src, Kep64s *dst, int n, double scale) {
    scaled(src, dst, n, scale);
}
void convertScaled(const Kep16s *src, float *dst, int n, float scale) {
    for (int i = 0; i < n; ++i) dst[i] = static_cast<float>(src[i]) * scale;
}
void convertScaled(const Kep32s *src, float *dst, int n, float scale) {
    for (int i = 0; i < n; ++i) dst[i] = static_cast<float>(src[i]) * scale;
}
void convertScaled(const Kep32s *src, double *dst, int n, double scale) {
    for (int i = 0; i < n; ++i) dst[i] = src[i] * scale;
}
void shiftDown(const Kep32s *src, Kep16s *dst, int n, int bits) {
    shifted(src, dst, n, bits);
}
void shiftDown(const Kep16s *src, Kep8s *dst, int n, int bits) {
    shifted(src, dst, n, bits);
}
void shiftDown(const Kep64s *src, Kep32s *dst, int n, int bits) {
    shifted(src, dst, n, bits);
}
void narrow(const Kep32s *src, Kep16s *dst, int n) {
    for (int i = 0; i < n; ++i)
        dst[i] = static_cast<Kep16s>(src[i] > 32767 ? 32767 : (src[i] < -32768 ? -32768 : src[i]));
}
void unpack24(const Kep8u *src, Kep32s *dst, int n) {
    for (int i = 0; i < n; ++i) dst[i] = get(src + 3 * i);
}
void unpack24(const Kep8u *src, float *dst, int n) {
    for (int i = 0; i < n; ++i) dst[i] = static_cast<float>(get(src + 3 * i));
}
void pack24(const float *src, Kep8u *dst, int n, float scale) {
    for (int i = 0; i < n; ++i) {
        const float x = src[i] * scale;
        put(dst + 3 * i, static_cast<int>(std::nearbyint(
                             x > 8388607 ? 8388607 : (x < -8388608 ? -8388608 : x))));
    }
}
void pack24(const Kep32s *src, Kep8u *dst, int n) {
    for (int i = 0; i < n; ++i)
        put(dst + 3 * i, src[i] > 8388607 ? 8388607 : (src[i] < -8388608 ? -8388608 : src[i]));
}

} // namespace peer
