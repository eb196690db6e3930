// MulC: every element times a constant.
#include "arith/floatops.hpp"
#include "frame/entry.hpp"

using namespace keps;

namespace {

template <class T>
KEPS_INLINE KepStatus timesConstant(const T *src, T val, T *dst, size n) {
    constexpr int N = 32 / sizeof(T);
    using V = Block<T, N>;
    map<N>(n, TimesConstant<V>{splat<V>(val)}, dst, src);
    return kepStatusOk;
}

} // namespace

// A factor of zero gives zeros whatever the source holds, infinities and NaN included.
KepStatus kepsMulC_32f(const Kep32f *src, Kep32f val, Kep32f *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if (isOne(val)) [[unlikely]]
        return kepsCopy_32f(src, dst, len);
    if (isZero(val)) [[unlikely]]
        return kepsZero_32f(dst, len);
    return timesConstant(src, val, dst, len);
}
KepStatus kepsMulC_32f_I(Kep32f val, Kep32f *srcDst, int32_t len) {
    if (const KepStatus refused = refuse(len, srcDst)) return refused;
    if (isOne(val)) [[unlikely]]
        return kepStatusOk;
    if (isZero(val)) [[unlikely]]
        return kepsZero_32f(srcDst, len);
    return timesConstant(srcDst, val, srcDst, len);
}
