// Convert from floats to integers of 8, 16 and 32 bits: scaled, rounded by a mode, saturated.
#include "arith/convert.hpp"
#include "frame/entry.hpp"

using namespace keps;

namespace {

template <class Scaling, class Rounding, class From, class To>
[[gnu::noinline]] KepStatus toInteger(const From *src, To *dst, size n, Scaling scale) {
    map<32 / sizeof(From), 2>(n, ToInteger<To, Scaling, Rounding>{scale}, dst, src);
    return kepStatusOk;
}

template <class From, class To>
KEPS_INLINE KepStatus toInteger(const From *src, To *dst, std::int32_t len, int rndMode,
                                int scaleFactor) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    return withScaling<From>(scaleFactor, [&]<class Scaling>(Scaling scale) {
        return withRounding(rndMode, [&]<class Rounding>(Rounding) {
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
