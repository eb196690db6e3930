// Products of packed spectra: real elements at the ends, complex pairs between them.
#include "arith/floatops.hpp"
#include "frame/entry.hpp"

using namespace keps;

namespace {

// n / 2 products of pairs, n even, from any address.
template <class T>
KEPS_INLINE void pairProducts(const T *src1, const T *src2, T *dst, size n) {
    struct Pair {
        T re, im;
    };
    if (n == 0) return;
    map<32 / sizeof(Pair), 2>(n / 2, ComplexProduct{}, reinterpret_cast<Pair *>(dst),
                              reinterpret_cast<const Pair *>(src1),
                              reinterpret_cast<const Pair *>(src2));
}

template <class T>
KEPS_INLINE void oneProduct(const T *src1, const T *src2, T *dst, size i) {
    storeOne(dst + i, loadOne(src1 + i) * loadOne(src2 + i));
}

// Perm: R(0) and, for an even length, R(n/2) stand in front.
template <class T>
KepStatus permProducts(const T *src1, const T *src2, T *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src1, src2, dst)) return refused;
    const size reals = len % 2 == 0 ? 2 : 1;
    oneProduct(src1, src2, dst, 0);
    if (reals == 2) oneProduct(src1, src2, dst, 1);
    pairProducts(src1 + reals, src2 + reals, dst + reals, len - reals);
    return kepStatusOk;
}

} // namespace

// A destination that is one of the sources is settled ahead of all tests.
KepStatus kepsMulPerm_32f(const Kep32f *src1, const Kep32f *src2, Kep32f *dst, int32_t len) {
    if (src2 == dst) return kepsMulPerm_32f_I(src1, dst, len);
    if (src1 == dst) return kepsMulPerm_32f_I(src2, dst, len);
    return permProducts(src1, src2, dst, len);
}
KepStatus kepsMulPerm_32f_I(const Kep32f *src, Kep32f *srcDst, int32_t len) {
    return permProducts(src, srcDst, srcDst, len);
}
