// Abs: absolute values; the most negative integer saturates.
#include "arith/elementary.hpp"

using namespace keps;

namespace {

struct Abs {
    KEPS_INLINE i16x8 operator()(i16x8 x) const {
        return {_mm_max_epi16(x.v, _mm_subs_epi16(_mm_setzero_si128(), x.v))};
    }
    KEPS_INLINE i32x4 operator()(i32x4 x) const {
        const __m128i size = _mm_abs_epi32(x.v);
        return {_mm_add_epi32(size, _mm_srai_epi32(size, 31))};
    }
    KEPS_INLINE f32x8 operator()(f32x8 x) const { return without(x, splat<f32x8>(-0.0F)); }
    KEPS_INLINE f64x4 operator()(f64x4 x) const { return without(x, splat<f64x4>(-0.0)); }
};

template <class T>
KepStatus absolute(const T *src, T *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    map<32 / sizeof(T)>(len, Abs{}, dst, src);
    return kepStatusOk;
}

} // namespace

// clang-format off
KepStatus kepsAbs_16s(const Kep16s *src, Kep16s *dst, int32_t len) { return absolute(src, dst, len); }
KepStatus kepsAbs_32s(const Kep32s *src, Kep32s *dst, int32_t len) { return absolute(src, dst, len); }
KepStatus kepsAbs_32f(const Kep32f *src, Kep32f *dst, int32_t len) { return absolute(src, dst, len); }
KepStatus kepsAbs_64f(const Kep64f *src, Kep64f *dst, int32_t len) { return absolute(src, dst, len); }
KepStatus kepsAbs_16s_I(Kep16s *srcDst, int32_t len) { return absolute(srcDst, srcDst, len); }
KepStatus kepsAbs_32s_I(Kep32s *srcDst, int32_t len) { return absolute(srcDst, srcDst, len); }
KepStatus kepsAbs_32f_I(Kep32f *srcDst, int32_t len) { return absolute(srcDst, srcDst, len); }
KepStatus kepsAbs_64f_I(Kep64f *srcDst, int32_t len) { return absolute(srcDst, srcDst, len); }
// clang-format on
