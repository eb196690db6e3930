// Add: the sum of two arrays, element by element.
#include "arith/floatops.hpp"
#include "arith/integerops.hpp"
#include "arith/mixed.hpp"
using namespace keps;

// Complex sums are real ones of twice the length; a bad length is refused ahead of null pointers.
// clang-format off
KepStatus kepsAdd_32f(const Kep32f *src1, const Kep32f *src2, Kep32f *dst, int32_t len) { return binary<Sum>(src1, src2, dst, len); }
KepStatus kepsAdd_32f_I(const Kep32f *src, Kep32f *srcDst, int32_t len) { return binary<Sum>(src, srcDst, srcDst, len); }
KepStatus kepsAdd_64f(const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len) { return binary<Sum>(src1, src2, dst, len); }
KepStatus kepsAdd_64f_I(const Kep64f *src, Kep64f *srcDst, int32_t len) { return binary<Sum>(src, srcDst, srcDst, len); }
KepStatus kepsAdd_32fc(const Kep32fc *src1, const Kep32fc *src2, Kep32fc *dst, int32_t len) { return len < 1 ? kepStatusBadLength : kepsAdd_32f(reals(src1), reals(src2), reals(dst), twice(len)); }
KepStatus kepsAdd_32fc_I(const Kep32fc *src, Kep32fc *srcDst, int32_t len) { return len < 1 ? kepStatusBadLength : kepsAdd_32f_I(reals(src), reals(srcDst), twice(len)); }
KepStatus kepsAdd_64fc(const Kep64fc *src1, const Kep64fc *src2, Kep64fc *dst, int32_t len) { return len < 1 ? kepStatusBadLength : kepsAdd_64f(reals(src1), reals(src2), reals(dst), twice(len)); }
KepStatus kepsAdd_64fc_I(const Kep64fc *src, Kep64fc *srcDst, int32_t len) { return len < 1 ? kepStatusBadLength : kepsAdd_64f_I(reals(src), reals(srcDst), twice(len)); }
KepStatus kepsAdd_8u_Sfs(const Kep8u *src1, const Kep8u *src2, Kep8u *dst, int32_t len, int scaleFactor) { return scaled<SumOf<Kep8u>>(scaleFactor, len, dst, src1, src2); }
KepStatus kepsAdd_8u_ISfs(const Kep8u *src, Kep8u *srcDst, int32_t len, int scaleFactor) { return scaled<SumOf<Kep8u>>(scaleFactor, len, srcDst, src, srcDst); }
KepStatus kepsAdd_16s_Sfs(const Kep16s *src1, const Kep16s *src2, Kep16s *dst, int32_t len, int scaleFactor) { return scaled<SumOf<Kep16s>>(scaleFactor, len, dst, src1, src2); }
KepStatus kepsAdd_16s_ISfs(const Kep16s *src, Kep16s *srcDst, int32_t len, int scaleFactor) { return scaled<SumOf<Kep16s>>(scaleFactor, len, srcDst, src, srcDst); }
KepStatus kepsAdd_16u_Sfs(const Kep16u *src1, const Kep16u *src2, Kep16u *dst, int32_t len, int scaleFactor) { return scaled<SumOf<Kep16u>>(scaleFactor, len, dst, src1, src2); }
KepStatus kepsAdd_16u_ISfs(const Kep16u *src, Kep16u *srcDst, int32_t len, int scaleFactor) { return scaled<SumOf<Kep16u>>(scaleFactor, len, srcDst, src, srcDst); }
KepStatus kepsAdd_32s_Sfs(const Kep32s *src1, const Kep32s *src2, Kep32s *dst, int32_t len, int scaleFactor) { return scaled<SumOf<Kep32s>>(scaleFactor, len, dst, src1, src2); }
KepStatus kepsAdd_32s_ISfs(const Kep32s *src, Kep32s *srcDst, int32_t len, int scaleFactor) { return scaled<SumOf<Kep32s>>(scaleFactor, len, srcDst, src, srcDst); }
KepStatus kepsAdd_16sc_Sfs(const Kep16sc *src1, const Kep16sc *src2, Kep16sc *dst, int32_t len, int scaleFactor) { return kepsAdd_16s_Sfs(reals(src1), reals(src2), reals(dst), twice(len), scaleFactor); }
KepStatus kepsAdd_16sc_ISfs(const Kep16sc *src, Kep16sc *srcDst, int32_t len, int scaleFactor) { return kepsAdd_16s_ISfs(reals(src), reals(srcDst), twice(len), scaleFactor); }
KepStatus kepsAdd_32sc_Sfs(const Kep32sc *src1, const Kep32sc *src2, Kep32sc *dst, int32_t len, int scaleFactor) { return kepsAdd_32s_Sfs(reals(src1), reals(src2), reals(dst), twice(len), scaleFactor); }
KepStatus kepsAdd_32sc_ISfs(const Kep32sc *src, Kep32sc *srcDst, int32_t len, int scaleFactor) { return kepsAdd_32s_ISfs(reals(src), reals(srcDst), twice(len), scaleFactor); }
KepStatus kepsAdd_16s(const Kep16s *src1, const Kep16s *src2, Kep16s *dst, int32_t len) { return kepsAdd_16s_Sfs(src1, src2, dst, len, 0); }
KepStatus kepsAdd_16s_I(const Kep16s *src, Kep16s *srcDst, int32_t len) { return kepsAdd_16s_ISfs(src, srcDst, len, 0); }
KepStatus kepsAdd_16s32f(const Kep16s *src1, const Kep16s *src2, Kep32f *dst, int32_t len) { return mixed<SumToFloat>(src1, src2, dst, len); }
KepStatus kepsAdd_16u(const Kep16u *src1, const Kep16u *src2, Kep16u *dst, int32_t len) { return kepsAdd_16u_Sfs(src1, src2, dst, len, 0); }
KepStatus kepsAdd_32u(const Kep32u *src1, const Kep32u *src2, Kep32u *dst, int32_t len) { return mixed<UnsignedSum>(src1, src2, dst, len); }
KepStatus kepsAdd_8u16u(const Kep8u *src1, const Kep8u *src2, Kep16u *dst, int32_t len) { return mixed<WideningSum>(src1, src2, dst, len); }
KepStatus kepsAdd_16s32s_I(const Kep16s *src, Kep32s *srcDst, int32_t len) { return mixed<SumInto32s>(src, srcDst, srcDst, len); }
// clang-format on
