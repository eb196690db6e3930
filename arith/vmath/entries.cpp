// The entries named for their accuracy: each takes one slot of a function's table.
#include "arith/vmath/vmath.hpp"

using namespace keps::vmath;

int kepsSin_32f_A21(const Kep32f *src, Kep32f *dst, int32_t len) {
    return own_keps_sSin_E9_ttab[slot::low](src, dst, len);
}
int kepsAtan_32f_A21(const Kep32f *src, Kep32f *dst, int32_t len) {
    return own_keps_sAtan_E9_ttab[slot::low](src, dst, len);
}
int kepsAtan2_32f_A21(const Kep32f *src1, const Kep32f *src2, Kep32f *dst, int32_t len) {
    return own_keps_sAtan2_E9_ttab[slot::low](src1, src2, dst, len);
}
int kepsExp_32f_A21(const Kep32f *src, Kep32f *dst, int32_t len) {
    return own_keps_sExp_E9_ttab[slot::low](src, dst, len);
}
int kepsLn_32f_A21(const Kep32f *src, Kep32f *dst, int32_t len) {
    return own_keps_sLn_E9_ttab[slot::low](src, dst, len);
}
int kepsCbrt_32f_A21(const Kep32f *src, Kep32f *dst, int32_t len) {
    return own_keps_sCbrt_E9_ttab[slot::low](src, dst, len);
}
int kepsSinCos_32f_A21(const Kep32f *src, Kep32f *dstSin, Kep32f *dstCos, int32_t len) {
    return own_keps_sSinCos_E9_ttab[slot::low](src, dstSin, dstCos, len);
}
int kepsSin_32f_A24(const Kep32f *src, Kep32f *dst, int32_t len) {
    return own_keps_sSin_E9_ttab[slot::high](src, dst, len);
}
int kepsCos_32f_A24(const Kep32f *src, Kep32f *dst, int32_t len) {
    return own_keps_sCos_E9_ttab[slot::high](src, dst, len);
}
int kepsSin_64f_A50(const Kep64f *src, Kep64f *dst, int32_t len) {
    return own_keps_dSin_E9_ttab[slot::low](src, dst, len);
}
int kepsCos_64f_A50(const Kep64f *src, Kep64f *dst, int32_t len) {
    return own_keps_dCos_E9_ttab[slot::low](src, dst, len);
}
int kepsSinCos_64f_A50(const Kep64f *src, Kep64f *dstSin, Kep64f *dstCos, int32_t len) {
    return own_keps_dSinCos_E9_ttab[slot::low](src, dstSin, dstCos, len);
}
int kepsExp_64f_A50(const Kep64f *src, Kep64f *dst, int32_t len) {
    return own_keps_dExp_E9_ttab[slot::low](src, dst, len);
}
int kepsLn_64f_A50(const Kep64f *src, Kep64f *dst, int32_t len) {
    return own_keps_dLn_E9_ttab[slot::low](src, dst, len);
}
int kepsAtan_64f_A50(const Kep64f *src, Kep64f *dst, int32_t len) {
    return own_keps_dAtan_E9_ttab[slot::low](src, dst, len);
}
int kepsAtan2_64f_A50(const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len) {
    return own_keps_dAtan2_E9_ttab[slot::low](src1, src2, dst, len);
}
int kepsAbs_64fc_A50(const Kep64fc *src, Kep64f *dst, int32_t len) {
    return own_keps_zAbs_E9_ttab[slot::low](src, dst, len);
}
int kepsSin_64f_A53(const Kep64f *src, Kep64f *dst, int32_t len) {
    return own_keps_dSin_E9_ttab[slot::high](src, dst, len);
}
int kepsCos_64f_A53(const Kep64f *src, Kep64f *dst, int32_t len) {
    return own_keps_dCos_E9_ttab[slot::high](src, dst, len);
}
int kepsSinCos_64f_A53(const Kep64f *src, Kep64f *dstSin, Kep64f *dstCos, int32_t len) {
    return own_keps_dSinCos_E9_ttab[slot::high](src, dstSin, dstCos, len);
}
int kepsSinh_64f_A53(const Kep64f *src, Kep64f *dst, int32_t len) {
    return own_keps_dSinh_E9_ttab[slot::high](src, dst, len);
}
int kepsCosh_64f_A53(const Kep64f *src, Kep64f *dst, int32_t len) {
    return own_keps_dCosh_E9_ttab[slot::high](src, dst, len);
}
int kepsLn_64f_A53(const Kep64f *src, Kep64f *dst, int32_t len) {
    return own_keps_dLn_E9_ttab[slot::high](src, dst, len);
}
int kepsSqrt_64f_A53(const Kep64f *src, Kep64f *dst, int32_t len) {
    return own_keps_dSqrt_E9_ttab[slot::high](src, dst, len);
}
int kepsPowx_64f_A53(const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len) {
    return own_keps_dPowx_E9_ttab[slot::high](src1, src2, dst, len);
}
int kepsCos_64f_A26(const Kep64f *src, Kep64f *dst, int32_t len) {
    return own_keps_dCos_E9_ttab[slot::enhanced](src, dst, len);
}
int kepsSinCos_64f_A26(const Kep64f *src, Kep64f *dstSin, Kep64f *dstCos, int32_t len) {
    return own_keps_dSinCos_E9_ttab[slot::enhanced](src, dstSin, dstCos, len);
}

void own_keps_sError(int) {}
void own_keps_dError(int) {}
void own_keps_cError(int) {}
void own_keps_zError(int) {}
