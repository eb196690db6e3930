// Conversions against VOLK and the plain loop.
#ifdef KEPS_PEER_VOLK
#include <volk/volk.h>
#endif

#include "arith_peer.hpp"
#include "keps.h"
#include "map_case.hpp"

namespace {

using bench::addMap;

// To 16 bits with a factor of 2^10, to nearest.
constexpr int scaleFactor = -10;
constexpr float scale = 1024;

void addLength(std::int64_t n) {
    const auto to16s = [](const float *a, Kep16s *d, int len) {
        kepsConvert_32f16s_Sfs(a, d, len, kepRoundNearest, scaleFactor);
    };
    addMap<float, Kep16s>("convert", "kepsConvert_16s32f", n, "plain loop", kepsConvert_16s32f,
                          [](const Kep16s *a, float *d, int len) { peer::convert(a, d, len); });
    addMap<Kep16s, float>(
        "convert", "kepsConvert_32f16s_Sfs", n, "plain loop", to16s,
        [](const float *a, Kep16s *d, int len) { peer::convert(a, d, len, scale); });
#ifdef KEPS_PEER_VOLK
    addMap<float, Kep16s>("convert", "kepsConvert_16s32f", n, "VOLK", kepsConvert_16s32f,
                          [](const Kep16s *a, float *d, int len) {
                              volk_16i_s32f_convert_32f(d, a, 1, static_cast<unsigned>(len));
                          });
    addMap<Kep16s, float>("convert", "kepsConvert_32f16s_Sfs", n, "VOLK", to16s,
                          [](const float *a, Kep16s *d, int len) {
                              volk_32f_s32f_convert_16i(d, a, scale, static_cast<unsigned>(len));
                          });
#endif
}

const bench::Family family("convert", [] {
    for (const std::int64_t n : {8, 16, 64, 1024, 16384, 1 << 20}) addLength(n);
});

} // namespace
