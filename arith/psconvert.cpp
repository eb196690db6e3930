// Convert: from one element type to another.
#include "arith/convert.hpp"
#include "frame/entry.hpp"

using namespace keps;

namespace {

struct Widen16s {
    KEPS_INLINE f32x8 operator()(i16x8 x) const { return toFloat(widenLower(x), widenUpper(x)); }
};

template <class Scaling, class Rounding>
struct FloatTo16s {
    Scaling scale;
    f32x8 top;
    KEPS_INLINE i16x8 operator()(f32x8 x) const {
        const two<i32x4> wide = Rounding::round(min(top, scale(x)));
        return narrowSaturated(wide.lo, wide.hi);
    }
};

template <class Scaling, class Rounding>
[[gnu::noinline]] KepStatus floatTo16s(const Kep32f *src, Kep16s *dst, size n, Scaling scale) {
    map<8, 2>(n, FloatTo16s<Scaling, Rounding>{scale, splat<f32x8>(32767)}, dst, src);
    return kepStatusOk;
}

} // namespace

KepStatus kepsConvert_16s32f(const Kep16s *src, Kep32f *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    map<8>(len, Widen16s{}, dst, src);
    return kepStatusOk;
}

KepStatus kepsConvert_32f16s_Sfs(const Kep32f *src, Kep16s *dst, int32_t len, int rndMode,
                                 int scaleFactor) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    return withScaling(scaleFactor, [&]<class Scaling>(Scaling scale) {
        return withRounding(rndMode, [&]<class Rounding>(Rounding) {
            return floatTo16s<Scaling, Rounding>(src, dst, len, scale);
        });
    });
}
