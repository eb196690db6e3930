// Mul: the product of two arrays, element by element.
#include "arith/floatops.hpp"
#include "arith/mixed.hpp"
#include "arith/products.hpp"
using namespace keps;

namespace {

// A real factor for both parts of its complex element.
struct RealTimesComplex {
    KEPS_INLINE f32x8 operator()(f32x4 a, f32x8 b) const { return doubled(a) * b; }
};

KepStatus realTimesComplex(const Kep32f *src1, const Kep32fc *src2, Kep32fc *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src1, src2, dst)) return refused;
    map<4>(len, RealTimesComplex{}, dst, src1, src2);
    return kepStatusOk;
}

} // namespace

// clang-format off
KepStatus kepsMul_32f(const Kep32f *src1, const Kep32f *src2, Kep32f *dst, int32_t len) { return binary<Product>(src1, src2, dst, len); }
KepStatus kepsMul_32f_I(const Kep32f *src, Kep32f *srcDst, int32_t len) { return binary<Product>(src, srcDst, srcDst, len); }
KepStatus kepsMul_64f(const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len) { return binary<Product>(src1, src2, dst, len); }
KepStatus kepsMul_64f_I(const Kep64f *src, Kep64f *srcDst, int32_t len) { return binary<Product>(src, srcDst, srcDst, len); }
KepStatus kepsMul_32fc(const Kep32fc *src1, const Kep32fc *src2, Kep32fc *dst, int32_t len) { return binary<ComplexProduct>(src1, src2, dst, len); }
KepStatus kepsMul_32fc_I(const Kep32fc *src, Kep32fc *srcDst, int32_t len) { return binary<ComplexProduct>(src, srcDst, srcDst, len); }
KepStatus kepsMul_64fc(const Kep64fc *src1, const Kep64fc *src2, Kep64fc *dst, int32_t len) { return binary<ComplexProduct>(src1, src2, dst, len); }
KepStatus kepsMul_64fc_I(const Kep64fc *src, Kep64fc *srcDst, int32_t len) { return binary<ComplexProduct>(src, srcDst, srcDst, len); }
KepStatus kepsMul_8u_Sfs(const Kep8u *src1, const Kep8u *src2, Kep8u *dst, int32_t len, int scaleFactor) { return scaled<ProductOf<Kep8u>>(scaleFactor, len, dst, src1, src2); }
KepStatus kepsMul_8u_ISfs(const Kep8u *src, Kep8u *srcDst, int32_t len, int scaleFactor) { return scaled<ProductOf<Kep8u>>(scaleFactor, len, srcDst, src, srcDst); }
KepStatus kepsMul_16s_Sfs(const Kep16s *src1, const Kep16s *src2, Kep16s *dst, int32_t len, int scaleFactor) { return scaled<ProductOf<Kep16s>>(scaleFactor, len, dst, src1, src2); }
KepStatus kepsMul_16s_ISfs(const Kep16s *src, Kep16s *srcDst, int32_t len, int scaleFactor) { return scaled<ProductOf<Kep16s>>(scaleFactor, len, srcDst, src, srcDst); }
KepStatus kepsMul_16u_Sfs(const Kep16u *src1, const Kep16u *src2, Kep16u *dst, int32_t len, int scaleFactor) { return scaled<ProductOf<Kep16u>>(scaleFactor, len, dst, src1, src2); }
KepStatus kepsMul_16u_ISfs(const Kep16u *src, Kep16u *srcDst, int32_t len, int scaleFactor) { return scaled<ProductOf<Kep16u>>(scaleFactor, len, srcDst, src, srcDst); }
KepStatus kepsMul_32s_Sfs(const Kep32s *src1, const Kep32s *src2, Kep32s *dst, int32_t len, int scaleFactor) { return scaled<ProductOf<Kep32s>>(scaleFactor, len, dst, src1, src2); }
KepStatus kepsMul_32s_ISfs(const Kep32s *src, Kep32s *srcDst, int32_t len, int scaleFactor) { return scaled<ProductOf<Kep32s>>(scaleFactor, len, srcDst, src, srcDst); }
KepStatus kepsMul_16sc_Sfs(const Kep16sc *src1, const Kep16sc *src2, Kep16sc *dst, int32_t len, int scaleFactor) { return scaled<ProductOf<Kep16sc>>(scaleFactor, len, dst, src1, src2); }
KepStatus kepsMul_16sc_ISfs(const Kep16sc *src, Kep16sc *srcDst, int32_t len, int scaleFactor) { return scaled<ProductOf<Kep16sc>>(scaleFactor, len, srcDst, src, srcDst); }
KepStatus kepsMul_32sc_Sfs(const Kep32sc *src1, const Kep32sc *src2, Kep32sc *dst, int32_t len, int scaleFactor) { return scaled<ProductOf<Kep32sc>>(scaleFactor, len, dst, src1, src2); }
KepStatus kepsMul_32sc_ISfs(const Kep32sc *src, Kep32sc *srcDst, int32_t len, int scaleFactor) { return scaled<ProductOf<Kep32sc>>(scaleFactor, len, srcDst, src, srcDst); }
KepStatus kepsMul_16s(const Kep16s *src1, const Kep16s *src2, Kep16s *dst, int32_t len) { return kepsMul_16s_Sfs(src1, src2, dst, len, 0); }
KepStatus kepsMul_16s_I(const Kep16s *src, Kep16s *srcDst, int32_t len) { return kepsMul_16s_ISfs(src, srcDst, len, 0); }
KepStatus kepsMul_16s32f(const Kep16s *src1, const Kep16s *src2, Kep32f *dst, int32_t len) { return mixed<ProductToFloat>(src1, src2, dst, len); }
KepStatus kepsMul_8u16u(const Kep8u *src1, const Kep8u *src2, Kep16u *dst, int32_t len) { return mixed<WideningProduct>(src1, src2, dst, len); }
KepStatus kepsMul_16s32s_Sfs(const Kep16s *src1, const Kep16s *src2, Kep32s *dst, int32_t len, int scaleFactor) { return scaled<Product16s32s>(scaleFactor, len, dst, src1, src2); }
KepStatus kepsMul_16u16s_Sfs(const Kep16u *src1, const Kep16s *src2, Kep16s *dst, int32_t len, int scaleFactor) { return scaled<Narrowed<Exact16u16s>>(scaleFactor, len, dst, src1, src2); }
KepStatus kepsMul_32f32fc(const Kep32f *src1, const Kep32fc *src2, Kep32fc *dst, int32_t len) { return realTimesComplex(src1, src2, dst, len); }
KepStatus kepsMul_32f32fc_I(const Kep32f *src, Kep32fc *srcDst, int32_t len) { return realTimesComplex(src, srcDst, srcDst, len); }
// clang-format on
