#include "arith_peer.hpp"

#include <cmath>

namespace peer {

void mulC(const float *src, float val, float *dst, int n) {
    for (int i = 0; i < n; ++i) dst[i] = src[i] * val;
}

void mul(const Kep32fc *src1, const Kep32fc *src2, Kep32fc *dst, int n) {
    for (int i = 0; i < n; ++i) {
        const Kep32fc a = src1[i], b = src2[i];
        dst[i] = {a.re * b.re - a.im * b.im, a.im * b.re + a.re * b.im};
    }
}

void mulPerm(const float *src1, const float *src2, float *dst, int n) {
    dst[0] = src1[0] * src2[0];
    if (n % 2 == 0) dst[1] = src1[1] * src2[1];
    for (int i = n % 2 == 0 ? 2 : 1; i < n; i += 2) {
        const float re = src1[i] * src2[i] - src1[i + 1] * src2[i + 1];
        dst[i + 1] = src1[i + 1] * src2[i] + src1[i] * src2[i + 1];
        dst[i] = re;
    }
}

void convert(const Kep16s *src, float *dst, int n) {
    for (int i = 0; i < n; ++i) dst[i] = src[i];
}

void convert(const float *src, Kep16s *dst, int n, float scale) {
    for (int i = 0; i < n; ++i) {
        const float x = src[i] * scale;
        dst[i] = static_cast<Kep16s>(std::nearbyint(x > 32767 ? 32767 : (x < -32768 ? -32768 : x)));
    }
}

} // namespace peer
