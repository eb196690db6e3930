// Sqr: squares. Integer squares are exact in double, as is their scaling; one rounding makes the
// result.
#include "arith/elementary.hpp"

using namespace keps;

namespace {

struct Square {
    KEPS_INLINE f32x8 operator()(f32x8 x) const { return x * x; }
    KEPS_INLINE f64x4 operator()(f64x4 x) const { return x * x; }
};
// 2ab as ab + ab: doubling is exact.
struct ComplexSquare {
    KEPS_INLINE f32x8 operator()(f32x8 x) const { return complexMul(x, x); }
    KEPS_INLINE f64x4 operator()(f64x4 x) const { return complexMul(x, x); }
};

template <class T>
struct ScaledSquare {
    double power;

    KEPS_INLINE i32x4 scaled(i32x4 x) const {
        const f64x4 v = toDouble(x);
        return nearestInt(min(v * v * splat<f64x4>(power), splat<f64x4>(largest<T>)));
    }
    KEPS_INLINE int128<T> operator()(int128<T> x) const {
        const two<i32x4> wide = widened(x);
        return narrowTo<T>(two<i32x4>{scaled(wide.lo), scaled(wide.hi)});
    }
};

// Two complex values a half: re, im, re, im.
struct ScaledComplexSquare {
    double power;

    KEPS_INLINE i32x4 scaled(i32x4 x) const {
        const f64x4 z = toDouble(x);
        const f64x4 v = complexMul(z, z) * splat<f64x4>(power);
        return nearestInt(max(min(v, splat<f64x4>(32767)), splat<f64x4>(-32768)));
    }
    KEPS_INLINE i16x8 operator()(i16x8 x) const {
        const two<i32x4> wide = widened(x);
        return narrowSaturated(scaled(wide.lo), scaled(wide.hi));
    }
};

template <class Op, class T>
KepStatus square(const T *src, T *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    map<32 / sizeof(T)>(len, Op{}, dst, src);
    return kepStatusOk;
}

template <class T>
KepStatus squareSfs(const T *src, T *dst, int32_t len, int scaleFactor) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    map<8, 1>(len, ScaledSquare<T>{scaleOf(scaleFactor)}, dst, src);
    return kepStatusOk;
}

KepStatus complexSquareSfs(const Kep16sc *src, Kep16sc *dst, int32_t len, int scaleFactor) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    map<4, 1>(len, ScaledComplexSquare{scaleOf(scaleFactor)}, dst, src);
    return kepStatusOk;
}

} // namespace

// clang-format off
KepStatus kepsSqr_32f(const Kep32f *src, Kep32f *dst, int32_t len) { return square<Square>(src, dst, len); }
KepStatus kepsSqr_64f(const Kep64f *src, Kep64f *dst, int32_t len) { return square<Square>(src, dst, len); }
KepStatus kepsSqr_32fc(const Kep32fc *src, Kep32fc *dst, int32_t len) { return square<ComplexSquare>(src, dst, len); }
KepStatus kepsSqr_64fc(const Kep64fc *src, Kep64fc *dst, int32_t len) { return square<ComplexSquare>(src, dst, len); }
KepStatus kepsSqr_32f_I(Kep32f *srcDst, int32_t len) { return square<Square>(srcDst, srcDst, len); }
KepStatus kepsSqr_64f_I(Kep64f *srcDst, int32_t len) { return square<Square>(srcDst, srcDst, len); }
KepStatus kepsSqr_32fc_I(Kep32fc *srcDst, int32_t len) { return square<ComplexSquare>(srcDst, srcDst, len); }
KepStatus kepsSqr_64fc_I(Kep64fc *srcDst, int32_t len) { return square<ComplexSquare>(srcDst, srcDst, len); }
KepStatus kepsSqr_8u_Sfs(const Kep8u *src, Kep8u *dst, int32_t len, int scaleFactor) { return squareSfs(src, dst, len, scaleFactor); }
KepStatus kepsSqr_16u_Sfs(const Kep16u *src, Kep16u *dst, int32_t len, int scaleFactor) { return squareSfs(src, dst, len, scaleFactor); }
KepStatus kepsSqr_16s_Sfs(const Kep16s *src, Kep16s *dst, int32_t len, int scaleFactor) { return squareSfs(src, dst, len, scaleFactor); }
KepStatus kepsSqr_16sc_Sfs(const Kep16sc *src, Kep16sc *dst, int32_t len, int scaleFactor) { return complexSquareSfs(src, dst, len, scaleFactor); }
KepStatus kepsSqr_8u_ISfs(Kep8u *srcDst, int32_t len, int scaleFactor) { return squareSfs(srcDst, srcDst, len, scaleFactor); }
KepStatus kepsSqr_16u_ISfs(Kep16u *srcDst, int32_t len, int scaleFactor) { return squareSfs(srcDst, srcDst, len, scaleFactor); }
KepStatus kepsSqr_16s_ISfs(Kep16s *srcDst, int32_t len, int scaleFactor) { return squareSfs(srcDst, srcDst, len, scaleFactor); }
KepStatus kepsSqr_16sc_ISfs(Kep16sc *srcDst, int32_t len, int scaleFactor) { return complexSquareSfs(srcDst, srcDst, len, scaleFactor); }
// clang-format on
