// AddC: every element plus a constant.
#include "arith/bytype.hpp"
#include "arith/floatops.hpp"
#include "arith/integerops.hpp"
using namespace keps;

namespace {

// A real constant of zero copies bit by bit: NaN payloads and the sign of zero stay.
template <class T>
KEPS_INLINE KepStatus plusConstant(const T *src, T val, T *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if constexpr (std::is_floating_point_v<T>)
        if (isZero(val)) [[unlikely]]
            return copyArray(src, dst, len);
    return withSecond<Sum>(src, val, dst, len);
}

// No sum with a constant but zero stays below the bound at 8u's scale factors from -8 down, nor at
// 16u's from -16 down: the array is filled with the type's maximum.
KEPS_INLINE bool allSaturate(Kep8u val, int s) {
    return s < SumOf<Kep8u>::lower && val != 0;
}
KEPS_INLINE bool allSaturate(Kep16u val, int s) {
    return s < SumOf<Kep16u>::lower && val != 0;
}
template <class T>
KEPS_INLINE bool allSaturate(T, int) {
    return false;
}

KEPS_INLINE KepStatus fillWithMaximum(Kep8u *dst, int32_t len) {
    return kepsSet_8u(0xFF, dst, len);
}
KEPS_INLINE KepStatus fillWithMaximum(Kep16u *dst, int32_t len) {
    return kepsSet_16s(-1, reinterpret_cast<Kep16s *>(dst), len);
}

template <class T>
KEPS_INLINE KepStatus plusInteger(const T *src, T val, T *dst, int32_t len, int s) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if (s == 0 && isNothing(val)) return copyArray(src, dst, len);
    if constexpr (std::is_unsigned_v<T>)
        if (allSaturate(val, s)) return fillWithMaximum(dst, len);
    return scaledByConstant<SumOf<LaneOf<T>>, RuleWithSecond>(s, len, dst, src, val);
}

} // namespace

// clang-format off
KepStatus kepsAddC_32f(const Kep32f *src, Kep32f val, Kep32f *dst, int32_t len) { return plusConstant(src, val, dst, len); }
KepStatus kepsAddC_32f_I(Kep32f val, Kep32f *srcDst, int32_t len) { return plusConstant(srcDst, val, srcDst, len); }
KepStatus kepsAddC_64f(const Kep64f *src, Kep64f val, Kep64f *dst, int32_t len) { return plusConstant(src, val, dst, len); }
KepStatus kepsAddC_64f_I(Kep64f val, Kep64f *srcDst, int32_t len) { return plusConstant(srcDst, val, srcDst, len); }
KepStatus kepsAddC_32fc(const Kep32fc *src, Kep32fc val, Kep32fc *dst, int32_t len) { return plusConstant(src, val, dst, len); }
KepStatus kepsAddC_32fc_I(Kep32fc val, Kep32fc *srcDst, int32_t len) { return plusConstant(srcDst, val, srcDst, len); }
KepStatus kepsAddC_64fc(const Kep64fc *src, Kep64fc val, Kep64fc *dst, int32_t len) { return plusConstant(src, val, dst, len); }
KepStatus kepsAddC_64fc_I(Kep64fc val, Kep64fc *srcDst, int32_t len) { return plusConstant(srcDst, val, srcDst, len); }
KepStatus kepsAddC_8u_Sfs(const Kep8u *src, Kep8u val, Kep8u *dst, int32_t len, int scaleFactor) { return plusInteger(src, val, dst, len, scaleFactor); }
KepStatus kepsAddC_8u_ISfs(Kep8u val, Kep8u *srcDst, int32_t len, int scaleFactor) { return plusInteger(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsAddC_16s_Sfs(const Kep16s *src, Kep16s val, Kep16s *dst, int32_t len, int scaleFactor) { return plusInteger(src, val, dst, len, scaleFactor); }
KepStatus kepsAddC_16s_ISfs(Kep16s val, Kep16s *srcDst, int32_t len, int scaleFactor) { return plusInteger(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsAddC_16u_Sfs(const Kep16u *src, Kep16u val, Kep16u *dst, int32_t len, int scaleFactor) { return plusInteger(src, val, dst, len, scaleFactor); }
KepStatus kepsAddC_16u_ISfs(Kep16u val, Kep16u *srcDst, int32_t len, int scaleFactor) { return plusInteger(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsAddC_32s_Sfs(const Kep32s *src, Kep32s val, Kep32s *dst, int32_t len, int scaleFactor) { return plusInteger(src, val, dst, len, scaleFactor); }
KepStatus kepsAddC_32s_ISfs(Kep32s val, Kep32s *srcDst, int32_t len, int scaleFactor) { return plusInteger(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsAddC_16sc_Sfs(const Kep16sc *src, Kep16sc val, Kep16sc *dst, int32_t len, int scaleFactor) { return plusInteger(src, val, dst, len, scaleFactor); }
KepStatus kepsAddC_16sc_ISfs(Kep16sc val, Kep16sc *srcDst, int32_t len, int scaleFactor) { return plusInteger(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsAddC_32sc_Sfs(const Kep32sc *src, Kep32sc val, Kep32sc *dst, int32_t len, int scaleFactor) { return plusInteger(src, val, dst, len, scaleFactor); }
KepStatus kepsAddC_32sc_ISfs(Kep32sc val, Kep32sc *srcDst, int32_t len, int scaleFactor) { return plusInteger(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsAddC_16s_I(Kep16s val, Kep16s *srcDst, int32_t len) { return kepsAddC_16s_ISfs(val, srcDst, len, 0); }
// clang-format on
