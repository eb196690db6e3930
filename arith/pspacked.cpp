// MulPack, MulPerm, MulPackConj: products of packed spectra, real elements at the ends and complex
// pairs between them.
#include "arith/floatops.hpp"

using namespace keps;

namespace {

// src1 * conj(src2) on pairs.
struct ConjugateProduct {
    template <class V>
    KEPS_INLINE V operator()(V a, V b) const {
        return complexMulConj(a, b);
    }
};

template <class T>
using ComplexOf = std::conditional_t<std::is_same_v<T, Kep32f>, Kep32fc, Kep64fc>;

// n / 2 pairs of reals from any address on; n is even.
template <class Op, class T>
KEPS_INLINE void pairs(const T *src1, const T *src2, T *dst, size n) {
    using C = ComplexOf<T>;
    if (n == 0) return;
    map<floatLanes<C>, 2>(n / 2, Op{}, reinterpret_cast<C *>(dst),
                          reinterpret_cast<const C *>(src1), reinterpret_cast<const C *>(src2));
}

template <class T>
KEPS_INLINE void real(const T *src1, const T *src2, T *dst, size i) {
    storeOne(dst + i, loadOne(src1 + i) * loadOne(src2 + i));
}

// Pack: R(0) in front and, for an even length, R(len/2) at the end.
template <class Op, class T>
KepStatus packProducts(const T *src1, const T *src2, T *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src1, src2, dst)) return refused;
    real(src1, src2, dst, 0);
    const size last = size{len} - 1;
    if (len % 2 == 0) real(src1, src2, dst, last);
    pairs<Op>(src1 + 1, src2 + 1, dst + 1, last & ~size{1});
    return kepStatusOk;
}

// Perm: R(0) and, for an even length, R(len/2) in front.
template <class T>
KepStatus permProducts(const T *src1, const T *src2, T *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src1, src2, dst)) return refused;
    const size reals = len % 2 == 0 ? 2 : 1;
    real(src1, src2, dst, 0);
    if (reals == 2) real(src1, src2, dst, 1);
    pairs<ComplexProduct>(src1 + reals, src2 + reals, dst + reals, len - reals);
    return kepStatusOk;
}

} // namespace

// A destination that is one of the sources is settled ahead of all tests.
KepStatus kepsMulPack_32f(const Kep32f *src1, const Kep32f *src2, Kep32f *dst, int32_t len) {
    if (src2 == dst) return kepsMulPack_32f_I(src1, dst, len);
    if (src1 == dst) return kepsMulPack_32f_I(src2, dst, len);
    return packProducts<ComplexProduct>(src1, src2, dst, len);
}
KepStatus kepsMulPack_64f(const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len) {
    if (src2 == dst) return kepsMulPack_64f_I(src1, dst, len);
    if (src1 == dst) return kepsMulPack_64f_I(src2, dst, len);
    return packProducts<ComplexProduct>(src1, src2, dst, len);
}
KepStatus kepsMulPerm_32f(const Kep32f *src1, const Kep32f *src2, Kep32f *dst, int32_t len) {
    if (src2 == dst) return kepsMulPerm_32f_I(src1, dst, len);
    if (src1 == dst) return kepsMulPerm_32f_I(src2, dst, len);
    return permProducts(src1, src2, dst, len);
}
KepStatus kepsMulPerm_64f(const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len) {
    if (src2 == dst) return kepsMulPerm_64f_I(src1, dst, len);
    if (src1 == dst) return kepsMulPerm_64f_I(src2, dst, len);
    return permProducts(src1, src2, dst, len);
}

// clang-format off
KepStatus kepsMulPack_32f_I(const Kep32f *src, Kep32f *srcDst, int32_t len) { return packProducts<ComplexProduct>(src, srcDst, srcDst, len); }
KepStatus kepsMulPack_64f_I(const Kep64f *src, Kep64f *srcDst, int32_t len) { return packProducts<ComplexProduct>(src, srcDst, srcDst, len); }
KepStatus kepsMulPerm_32f_I(const Kep32f *src, Kep32f *srcDst, int32_t len) { return permProducts(src, srcDst, srcDst, len); }
KepStatus kepsMulPerm_64f_I(const Kep64f *src, Kep64f *srcDst, int32_t len) { return permProducts(src, srcDst, srcDst, len); }
KepStatus kepsMulPackConj_32f_I(const Kep32f *src, Kep32f *srcDst, int32_t len) { return packProducts<ConjugateProduct>(src, srcDst, srcDst, len); }
KepStatus kepsMulPackConj_64f_I(const Kep64f *src, Kep64f *srcDst, int32_t len) { return packProducts<ConjugateProduct>(src, srcDst, srcDst, len); }
// clang-format on
