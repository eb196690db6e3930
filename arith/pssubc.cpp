// SubC: every element minus a constant. SubCRev: the constant minus every element.
#include "arith/bytype.hpp"
#include "arith/floatops.hpp"
#include "arith/integerops.hpp"
using namespace keps;

namespace {

// A real constant of zero copies bit by bit: NaN payloads and the sign of zero stay.
template <class T>
KEPS_INLINE KepStatus minusConstant(const T *src, T val, T *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if constexpr (std::is_floating_point_v<T>)
        if (isZero(val)) [[unlikely]]
            return copyArray(src, dst, len);
    return withFirst<Difference>(src, val, dst, len);
}

// No shortcut: 0 - x is not a copy.
template <class T>
KEPS_INLINE KepStatus constantMinus(const T *src, T val, T *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    return withSecond<Difference>(src, val, dst, len);
}

template <class T>
KEPS_INLINE KepStatus minusInteger(const T *src, T val, T *dst, int32_t len, int s) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if (s == 0 && isNothing(val)) return copyArray(src, dst, len);
    return scaledByConstant<DifferenceOf<LaneOf<T>>, RuleWithFirst>(s, len, dst, src, val);
}

template <class T>
KEPS_INLINE KepStatus integerMinus(const T *src, T val, T *dst, int32_t len, int s) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    return scaledByConstant<DifferenceOf<LaneOf<T>>, RuleWithSecond>(s, len, dst, src, val);
}

} // namespace

// clang-format off
KepStatus kepsSubC_32f(const Kep32f *src, Kep32f val, Kep32f *dst, int32_t len) { return minusConstant(src, val, dst, len); }
KepStatus kepsSubC_32f_I(Kep32f val, Kep32f *srcDst, int32_t len) { return minusConstant(srcDst, val, srcDst, len); }
KepStatus kepsSubC_64f(const Kep64f *src, Kep64f val, Kep64f *dst, int32_t len) { return minusConstant(src, val, dst, len); }
KepStatus kepsSubC_64f_I(Kep64f val, Kep64f *srcDst, int32_t len) { return minusConstant(srcDst, val, srcDst, len); }
KepStatus kepsSubC_32fc(const Kep32fc *src, Kep32fc val, Kep32fc *dst, int32_t len) { return minusConstant(src, val, dst, len); }
KepStatus kepsSubC_32fc_I(Kep32fc val, Kep32fc *srcDst, int32_t len) { return minusConstant(srcDst, val, srcDst, len); }
KepStatus kepsSubC_64fc(const Kep64fc *src, Kep64fc val, Kep64fc *dst, int32_t len) { return minusConstant(src, val, dst, len); }
KepStatus kepsSubC_64fc_I(Kep64fc val, Kep64fc *srcDst, int32_t len) { return minusConstant(srcDst, val, srcDst, len); }
KepStatus kepsSubCRev_32f(const Kep32f *src, Kep32f val, Kep32f *dst, int32_t len) { return constantMinus(src, val, dst, len); }
KepStatus kepsSubCRev_32f_I(Kep32f val, Kep32f *srcDst, int32_t len) { return constantMinus(srcDst, val, srcDst, len); }
KepStatus kepsSubCRev_64f(const Kep64f *src, Kep64f val, Kep64f *dst, int32_t len) { return constantMinus(src, val, dst, len); }
KepStatus kepsSubCRev_64f_I(Kep64f val, Kep64f *srcDst, int32_t len) { return constantMinus(srcDst, val, srcDst, len); }
KepStatus kepsSubCRev_32fc(const Kep32fc *src, Kep32fc val, Kep32fc *dst, int32_t len) { return constantMinus(src, val, dst, len); }
KepStatus kepsSubCRev_32fc_I(Kep32fc val, Kep32fc *srcDst, int32_t len) { return constantMinus(srcDst, val, srcDst, len); }
KepStatus kepsSubCRev_64fc(const Kep64fc *src, Kep64fc val, Kep64fc *dst, int32_t len) { return constantMinus(src, val, dst, len); }
KepStatus kepsSubCRev_64fc_I(Kep64fc val, Kep64fc *srcDst, int32_t len) { return constantMinus(srcDst, val, srcDst, len); }
KepStatus kepsSubC_8u_Sfs(const Kep8u *src, Kep8u val, Kep8u *dst, int32_t len, int scaleFactor) { return minusInteger(src, val, dst, len, scaleFactor); }
KepStatus kepsSubC_8u_ISfs(Kep8u val, Kep8u *srcDst, int32_t len, int scaleFactor) { return minusInteger(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsSubC_16s_Sfs(const Kep16s *src, Kep16s val, Kep16s *dst, int32_t len, int scaleFactor) { return minusInteger(src, val, dst, len, scaleFactor); }
KepStatus kepsSubC_16s_ISfs(Kep16s val, Kep16s *srcDst, int32_t len, int scaleFactor) { return minusInteger(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsSubC_16u_Sfs(const Kep16u *src, Kep16u val, Kep16u *dst, int32_t len, int scaleFactor) { return minusInteger(src, val, dst, len, scaleFactor); }
KepStatus kepsSubC_16u_ISfs(Kep16u val, Kep16u *srcDst, int32_t len, int scaleFactor) { return minusInteger(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsSubC_32s_Sfs(const Kep32s *src, Kep32s val, Kep32s *dst, int32_t len, int scaleFactor) { return minusInteger(src, val, dst, len, scaleFactor); }
KepStatus kepsSubC_32s_ISfs(Kep32s val, Kep32s *srcDst, int32_t len, int scaleFactor) { return minusInteger(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsSubC_16sc_Sfs(const Kep16sc *src, Kep16sc val, Kep16sc *dst, int32_t len, int scaleFactor) { return minusInteger(src, val, dst, len, scaleFactor); }
KepStatus kepsSubC_16sc_ISfs(Kep16sc val, Kep16sc *srcDst, int32_t len, int scaleFactor) { return minusInteger(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsSubC_32sc_Sfs(const Kep32sc *src, Kep32sc val, Kep32sc *dst, int32_t len, int scaleFactor) { return minusInteger(src, val, dst, len, scaleFactor); }
KepStatus kepsSubC_32sc_ISfs(Kep32sc val, Kep32sc *srcDst, int32_t len, int scaleFactor) { return minusInteger(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsSubC_16s_I(Kep16s val, Kep16s *srcDst, int32_t len) { return kepsSubC_16s_ISfs(val, srcDst, len, 0); }
KepStatus kepsSubCRev_8u_Sfs(const Kep8u *src, Kep8u val, Kep8u *dst, int32_t len, int scaleFactor) { return integerMinus(src, val, dst, len, scaleFactor); }
KepStatus kepsSubCRev_8u_ISfs(Kep8u val, Kep8u *srcDst, int32_t len, int scaleFactor) { return integerMinus(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsSubCRev_16s_Sfs(const Kep16s *src, Kep16s val, Kep16s *dst, int32_t len, int scaleFactor) { return integerMinus(src, val, dst, len, scaleFactor); }
KepStatus kepsSubCRev_16s_ISfs(Kep16s val, Kep16s *srcDst, int32_t len, int scaleFactor) { return integerMinus(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsSubCRev_16u_Sfs(const Kep16u *src, Kep16u val, Kep16u *dst, int32_t len, int scaleFactor) { return integerMinus(src, val, dst, len, scaleFactor); }
KepStatus kepsSubCRev_16u_ISfs(Kep16u val, Kep16u *srcDst, int32_t len, int scaleFactor) { return integerMinus(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsSubCRev_32s_Sfs(const Kep32s *src, Kep32s val, Kep32s *dst, int32_t len, int scaleFactor) { return integerMinus(src, val, dst, len, scaleFactor); }
KepStatus kepsSubCRev_32s_ISfs(Kep32s val, Kep32s *srcDst, int32_t len, int scaleFactor) { return integerMinus(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsSubCRev_16sc_Sfs(const Kep16sc *src, Kep16sc val, Kep16sc *dst, int32_t len, int scaleFactor) { return integerMinus(src, val, dst, len, scaleFactor); }
KepStatus kepsSubCRev_16sc_ISfs(Kep16sc val, Kep16sc *srcDst, int32_t len, int scaleFactor) { return integerMinus(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsSubCRev_32sc_Sfs(const Kep32sc *src, Kep32sc val, Kep32sc *dst, int32_t len, int scaleFactor) { return integerMinus(src, val, dst, len, scaleFactor); }
KepStatus kepsSubCRev_32sc_ISfs(Kep32sc val, Kep32sc *srcDst, int32_t len, int scaleFactor) { return integerMinus(srcDst, val, srcDst, len, scaleFactor); }
// clang-format on
