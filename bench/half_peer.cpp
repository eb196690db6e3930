// Built for the half-precision instructions, and called only where they exist.
#pragma GCC target("f16c")
#include <immintrin.h>

#include "convert_peer.hpp"

namespace half_peer {

void fromHalf(const Kep16f *src, float *dst, int n) {
    for (int i = 0; i < n; ++i) dst[i] = _cvtsh_ss(src[i]);
}
void toHalf(const float *src, Kep16f *dst, int n) {
    for (int i = 0; i < n; ++i) dst[i] = _cvtss_sh(src[i], 0);
}

} // namespace half_peer
