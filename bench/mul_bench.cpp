// Float products against VOLK and the plain loop.
#ifdef KEPS_PEER_VOLK
#include <volk/volk.h>
#endif

#include "arith_peer.hpp"
#include "keps.h"
#include "map_case.hpp"

namespace {

using bench::addMap;
using bench::Agreement;

constexpr float factor = 1.25F;

void addLength(std::int64_t n) {
    const auto mulC = [](const float *a, float *d, int len) { kepsMulC_32f(a, factor, d, len); };
    addMap<float, float>("mul", "kepsMulC_32f", n, "plain loop", mulC,
                         [](const float *a, float *d, int len) { peer::mulC(a, factor, d, len); });
    addMap<Kep32fc, Kep32fc, Kep32fc>(
        "mul", "kepsMul_32fc", n, "plain loop", kepsMul_32fc,
        [](const Kep32fc *a, const Kep32fc *b, Kep32fc *d, int len) { peer::mul(a, b, d, len); });
    addMap<float, float, float>("mul", "kepsMulPerm_32f", n, "plain loop", kepsMulPerm_32f,
                                peer::mulPerm);
#ifdef KEPS_PEER_VOLK
    addMap<float, float>("mul", "kepsMulC_32f", n, "VOLK", mulC,
                         [](const float *a, float *d, int len) {
                             volk_32f_s32f_multiply_32f(d, a, factor, static_cast<unsigned>(len));
                         });
    addMap<Kep32fc, Kep32fc, Kep32fc>(
        "mul", "kepsMul_32fc", n, "VOLK", kepsMul_32fc,
        [](const Kep32fc *a, const Kep32fc *b, Kep32fc *d, int len) {
            volk_32fc_x2_multiply_32fc(
                reinterpret_cast<lv_32fc_t *>(d), reinterpret_cast<const lv_32fc_t *>(a),
                reinterpret_cast<const lv_32fc_t *>(b), static_cast<unsigned>(len));
        },
        Agreement::close);
    addMap<Kep32fc, Kep32fc, Kep32fc>(
        "mul", "kepsMul_32fc", n, "VOLK by AVX", kepsMul_32fc,
        [](const Kep32fc *a, const Kep32fc *b, Kep32fc *d, int len) {
            volk_32fc_x2_multiply_32fc_manual(
                reinterpret_cast<lv_32fc_t *>(d), reinterpret_cast<const lv_32fc_t *>(a),
                reinterpret_cast<const lv_32fc_t *>(b), static_cast<unsigned>(len), "a_avx");
        },
        Agreement::close);
#endif
}

const bench::Family family("mul", [] {
    for (const std::int64_t n : {8, 16, 64, 1024, 16384, 1 << 20}) addLength(n);
});

} // namespace
