// MulC: every element times a constant.
#include "arith/bytype.hpp"
#include "arith/convert.hpp"
#include "arith/floatops.hpp"
#include "arith/products.hpp"
using namespace keps;

namespace {

// A real factor of zero gives zeros whatever the source holds, infinities and NaN included.
template <class T>
KEPS_INLINE KepStatus timesConstant(const T *src, T val, T *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if constexpr (std::is_floating_point_v<T>) {
        if (isOne(val)) [[unlikely]]
            return copyArray(src, dst, len);
        if (isZero(val)) [[unlikely]]
            return zeroArray(dst, len);
        return withSecond<Product>(src, val, dst, len);
    } else {
        return withSecond<ComplexFactor>(src, val, dst, len);
    }
}

template <class T>
KEPS_INLINE KepStatus timesInteger(const T *src, T val, T *dst, int32_t len, int s) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if (isNothing(val)) return zeroArray(dst, len);
    if (s == 0 && isUnit(val)) return copyArray(src, dst, len);
    return scaledByConstant<ProductOf<T>, RuleWithSecond>(s, len, dst, src, val);
}

// Float products into 16 bits: formed in float, then scaled, then rounded and saturated.
template <class Scaling, class Rounding>
struct FloatProductTo16s {
    float factor;
    Scaling scale;
    KEPS_INLINE i16x8 operator()(f32x8 x) const {
        const f32x8 product = scale(x * splat<f32x8>(factor));
        const two<i32x4> wide = Rounding::round(min(splat<f32x8>(32767), product));
        return narrowSaturated(wide.lo, wide.hi);
    }
};

template <class Scaling, class Rounding>
[[gnu::noinline]] KepStatus floatProducts(const Kep32f *src, Kep32f val, Kep16s *dst, size n,
                                          Scaling scale) {
    map<8, 2>(n, FloatProductTo16s<Scaling, Rounding>{val, scale}, dst, src);
    return kepStatusOk;
}

} // namespace

// clang-format off
KepStatus kepsMulC_32f(const Kep32f *src, Kep32f val, Kep32f *dst, int32_t len) { return timesConstant(src, val, dst, len); }
KepStatus kepsMulC_32f_I(Kep32f val, Kep32f *srcDst, int32_t len) { return timesConstant(srcDst, val, srcDst, len); }
KepStatus kepsMulC_64f(const Kep64f *src, Kep64f val, Kep64f *dst, int32_t len) { return timesConstant(src, val, dst, len); }
KepStatus kepsMulC_64f_I(Kep64f val, Kep64f *srcDst, int32_t len) { return timesConstant(srcDst, val, srcDst, len); }
KepStatus kepsMulC_32fc(const Kep32fc *src, Kep32fc val, Kep32fc *dst, int32_t len) { return timesConstant(src, val, dst, len); }
KepStatus kepsMulC_32fc_I(Kep32fc val, Kep32fc *srcDst, int32_t len) { return timesConstant(srcDst, val, srcDst, len); }
KepStatus kepsMulC_64fc(const Kep64fc *src, Kep64fc val, Kep64fc *dst, int32_t len) { return timesConstant(src, val, dst, len); }
KepStatus kepsMulC_64fc_I(Kep64fc val, Kep64fc *srcDst, int32_t len) { return timesConstant(srcDst, val, srcDst, len); }
KepStatus kepsMulC_8u_Sfs(const Kep8u *src, Kep8u val, Kep8u *dst, int32_t len, int scaleFactor) { return timesInteger(src, val, dst, len, scaleFactor); }
KepStatus kepsMulC_8u_ISfs(Kep8u val, Kep8u *srcDst, int32_t len, int scaleFactor) { return timesInteger(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsMulC_16s_Sfs(const Kep16s *src, Kep16s val, Kep16s *dst, int32_t len, int scaleFactor) { return timesInteger(src, val, dst, len, scaleFactor); }
KepStatus kepsMulC_16s_ISfs(Kep16s val, Kep16s *srcDst, int32_t len, int scaleFactor) { return timesInteger(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsMulC_16u_Sfs(const Kep16u *src, Kep16u val, Kep16u *dst, int32_t len, int scaleFactor) { return timesInteger(src, val, dst, len, scaleFactor); }
KepStatus kepsMulC_16u_ISfs(Kep16u val, Kep16u *srcDst, int32_t len, int scaleFactor) { return timesInteger(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsMulC_32s_Sfs(const Kep32s *src, Kep32s val, Kep32s *dst, int32_t len, int scaleFactor) { return timesInteger(src, val, dst, len, scaleFactor); }
KepStatus kepsMulC_32s_ISfs(Kep32s val, Kep32s *srcDst, int32_t len, int scaleFactor) { return timesInteger(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsMulC_16sc_Sfs(const Kep16sc *src, Kep16sc val, Kep16sc *dst, int32_t len, int scaleFactor) { return timesInteger(src, val, dst, len, scaleFactor); }
KepStatus kepsMulC_16sc_ISfs(Kep16sc val, Kep16sc *srcDst, int32_t len, int scaleFactor) { return timesInteger(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsMulC_32sc_Sfs(const Kep32sc *src, Kep32sc val, Kep32sc *dst, int32_t len, int scaleFactor) { return timesInteger(src, val, dst, len, scaleFactor); }
KepStatus kepsMulC_32sc_ISfs(Kep32sc val, Kep32sc *srcDst, int32_t len, int scaleFactor) { return timesInteger(srcDst, val, srcDst, len, scaleFactor); }
KepStatus kepsMulC_16s_I(Kep16s val, Kep16s *srcDst, int32_t len) { return kepsMulC_16s_ISfs(val, srcDst, len, 0); }
// clang-format on

KepStatus kepsMulC_32f16s_Sfs(const Kep32f *src, Kep32f val, Kep16s *dst, int32_t len,
                              int scaleFactor) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    return withScaling<float>(scaleFactor, [&]<class Scaling>(Scaling scale) {
        return floatProducts<Scaling, ToNearest>(src, val, dst, len, scale);
    });
}

// By the caller's rounding mode.
KepStatus kepsMulC_Low_32f16s(const Kep32f *src, Kep32f val, Kep16s *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    return floatProducts<Unscaled, AsSet>(src, val, dst, len, Unscaled{});
}
