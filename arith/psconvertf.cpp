// Convert from floats to integers of 8, 16 and 32 bits: scaled, rounded by a mode, saturated.
#include "arith/convert.hpp"
#include "frame/entry.hpp"

using namespace keps;

namespace {

// 32-bit integers stay in their 256-bit vector, as the bits of one of floats. The float of the
// largest is 2^31, which does not fit: lanes that reach it, now 0x80000000, are complemented.
template <class Scaling, class Rounding>
struct ToInteger32 {
    Scaling scale;
    KEPS_INLINE f32x8 operator()(f32x8 x) const {
        const f32x8 scaled = scale(x);
        const f32x8 reaches{_mm256_cmp_ps(scaled.v, _mm256_set1_ps(0x1p31F), _CMP_GE_OQ)};
        return bitsOfIntegers(Rounding::round(scaled)) ^ reaches;
    }
};

template <class Scaling, class Rounding, class From, class To>
[[gnu::noinline]] KepStatus toInteger(const From *src, To *dst, size n, Scaling scale) {
    if constexpr (Dispatching<Rounding>) {
        return Rounding::dispatch([=]<class Own>(Own) KEPS_INLINE_LAMBDA {
            return toInteger<Scaling, Own>(src, dst, n, scale);
        });
    } else if constexpr (sizeof(From) == 4 && sizeof(To) == 4) {
        map<8, 2>(n, ToInteger32<Scaling, Rounding>{scale}, reinterpret_cast<float *>(dst), src);
    } else if constexpr (sizeof(From) == 4 && sizeof(To) == 1) {
        const auto same = [](f32x8 x) KEPS_INLINE_LAMBDA { return x; };
        toBytes<To, Scaling, Rounding>(src, dst, n, scale, same);
    } else {
        map<32 / sizeof(From), 4>(n, ToInteger<To, Scaling, Rounding>{scale}, dst, src);
    }
    return kepStatusOk;
}

template <class From, class To>
KEPS_INLINE KepStatus toInteger(const From *src, To *dst, std::int32_t len, int rndMode,
                                int scaleFactor) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    return withScaling<From>(scaleFactor, [&]<class Scaling>(Scaling scale) {
        return withRounding(rndMode, len, [&]<class Rounding>(Rounding) {
            return toInteger<Scaling, Rounding>(src, dst, size{len}, scale);
        });
    });
}

} // namespace

// clang-format off
KepStatus kepsConvert_32f8s_Sfs(const Kep32f *src, Kep8s *dst, int32_t len, int rndMode, int scaleFactor) { return toInteger(src, dst, len, rndMode, scaleFactor); }
KepStatus kepsConvert_32f8u_Sfs(const Kep32f *src, Kep8u *dst, int32_t len, int rndMode, int scaleFactor) { return toInteger(src, dst, len, rndMode, scaleFactor); }
KepStatus kepsConvert_32f16s_Sfs(const Kep32f *src, Kep16s *dst, int32_t len, int rndMode, int scaleFactor) { return toInteger(src, dst, len, rndMode, scaleFactor); }
KepStatus kepsConvert_32f16u_Sfs(const Kep32f *src, Kep16u *dst, int32_t len, int rndMode, int scaleFactor) { return toInteger(src, dst, len, rndMode, scaleFactor); }
KepStatus kepsConvert_32f32s_Sfs(const Kep32f *src, Kep32s *dst, int32_t len, int rndMode, int scaleFactor) { return toInteger(src, dst, len, rndMode, scaleFactor); }
KepStatus kepsConvert_64f8s_Sfs(const Kep64f *src, Kep8s *dst, int32_t len, int rndMode, int scaleFactor) { return toInteger(src, dst, len, rndMode, scaleFactor); }
KepStatus kepsConvert_64f8u_Sfs(const Kep64f *src, Kep8u *dst, int32_t len, int rndMode, int scaleFactor) { return toInteger(src, dst, len, rndMode, scaleFactor); }
KepStatus kepsConvert_64f16s_Sfs(const Kep64f *src, Kep16s *dst, int32_t len, int rndMode, int scaleFactor) { return toInteger(src, dst, len, rndMode, scaleFactor); }
KepStatus kepsConvert_64f16u_Sfs(const Kep64f *src, Kep16u *dst, int32_t len, int rndMode, int scaleFactor) { return toInteger(src, dst, len, rndMode, scaleFactor); }
KepStatus kepsConvert_64f32s_Sfs(const Kep64f *src, Kep32s *dst, int32_t len, int rndMode, int scaleFactor) { return toInteger(src, dst, len, rndMode, scaleFactor); }
// clang-format on
