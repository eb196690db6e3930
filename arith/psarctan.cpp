// Arctan and Cubrt of floats, and Cubrt of scaled integers.
#include "arith/elementary.hpp"
#include "arith/vmath/vmath.hpp"

using namespace keps;

namespace {

// The kernel of high accuracy gives cubes their exact roots, which a scale factor may turn into
// ties.
KepStatus cubeRoots(const Kep32s *src, Kep16s *dst, int32_t len, int scaleFactor) {
    const DefaultArithmetic scope;
    const auto power = static_cast<float>(scaleOf(scaleFactor));
    constexpr size block = 256;
    alignas(32) float roots[block];
    for (size i = 0; i < len; i += block) {
        const size n = len - i < block ? len - i : block;
        map<8>(
            n, [](two<i32x4> x) KEPS_INLINE_LAMBDA { return toFloat(x.lo, x.hi); }, roots, src + i);
        own_keps_sCbrt_E9_ttab[vmath::slot::high](roots, roots, static_cast<int32_t>(n));
        map<8>(
            n,
            [power](f32x8 x) KEPS_INLINE_LAMBDA {
                const f32x8 v = x * splat<f32x8>(power);
                const auto whole =
                    nearestInt(max(min(v, splat<f32x8>(32767)), splat<f32x8>(-32768)));
                return narrowSaturated(whole.lo, whole.hi);
            },
            dst + i, roots);
    }
    return kepStatusOk;
}

} // namespace

KepStatus kepsArctan_32f(const Kep32f *src, Kep32f *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    kepsAtan_32f_A21(src, dst, len);
    return kepStatusOk;
}
KepStatus kepsArctan_64f(const Kep64f *src, Kep64f *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    kepsAtan_64f_A50(src, dst, len);
    return kepStatusOk;
}
KepStatus kepsArctan_32f_I(Kep32f *srcDst, int32_t len) {
    return kepsArctan_32f(srcDst, srcDst, len);
}
KepStatus kepsArctan_64f_I(Kep64f *srcDst, int32_t len) {
    return kepsArctan_64f(srcDst, srcDst, len);
}

KepStatus kepsCubrt_32f(const Kep32f *src, Kep32f *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    kepsCbrt_32f_A21(src, dst, len);
    return kepStatusOk;
}
KepStatus kepsCubrt_32s16s_Sfs(const Kep32s *src, Kep16s *dst, int32_t len, int scaleFactor) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    return cubeRoots(src, dst, len, scaleFactor);
}
