#include "fill_peer.hpp"

namespace peer {

void set(float val, float *dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = val;
}

void set(double val, double *dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = val;
}

} // namespace peer
