// Exp: exponentials of floats by the vector kernels, of scaled integers by tables.
#include <limits>

#include "arith/elementary.hpp"
#include "arith/integer_tables.hpp"
#include "arith/scalar.hpp"
#include "arith/vmath/vmath.hpp"

using namespace keps;

namespace {

// A row holds all results between those that round to 0 and those that saturate.
template <class T>
KEPS_INLINE void fromRow(const T *src, T *dst, size n, const T *row, int bias, T last) {
    const auto one = [=](T x) KEPS_INLINE_LAMBDA {
        // Without branches, which random elements would make the processor guess wrongly.
        const std::int64_t at = std::int64_t{x} + bias, over = last - at;
        const std::int64_t below = at >> 63, above = over >> 63;
        const std::int64_t place = (at & ~below & ~above);
        const std::int64_t value = row[place] & ~below;
        return static_cast<T>((value & ~above) | (std::numeric_limits<T>::max() & above));
    };
    size i = 0;
    for (; i + 4 <= n; i += 4) {
        T y[4];
        times<4>([&](int k) KEPS_INLINE_LAMBDA { y[k] = one(loadOne(src + i + k)); });
        times<4>([&](int k) KEPS_INLINE_LAMBDA { storeOne(dst + i + k, y[k]); });
    }
    for (; i < n; ++i) storeOne(dst + i, one(loadOne(src + i)));
}

// For scale factors without a row.
template <class T>
[[gnu::noinline]] void oneByOne(const T *src, T *dst, size n, int scaleFactor) {
    const DefaultArithmetic scope;
    // At 1100 all finite values have vanished or saturated.
    const int s = scaleFactor > 1100 ? 1100 : (scaleFactor < -1100 ? -1100 : scaleFactor);
    const auto power = [](int k) {
        return __builtin_bit_cast(double, static_cast<std::uint64_t>(1023 + k) << 52);
    };
    const double first = power(-s / 2), second = power(-s - -s / 2);
    const auto most = static_cast<double>(std::numeric_limits<T>::max());
    for (size i = 0; i < n; ++i) {
        const double y = kepsExpOne(static_cast<double>(loadOne(src + i))) * first * second;
        storeOne(dst + i, y >= most ? std::numeric_limits<T>::max()
                                    : static_cast<T>(_mm_cvtsd_si32(_mm_set_sd(y))));
    }
}

template <class T, int columns>
KepStatus exponentials(const T *src, T *dst, int32_t len, int scaleFactor,
                       const T (&table)[33][columns]) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if (scaleFactor < -16 || scaleFactor > 16)
        oneByOne(src, dst, len, scaleFactor);
    else
        fromRow(src, dst, len, table[scaleFactor + 16], scaleFactor < 0 ? 12 : 0, T{columns - 1});
    return kepStatusOk;
}

} // namespace

KepStatus kepsExp_32f(const Kep32f *src, Kep32f *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    kepsExp_32f_A21(src, dst, len);
    return kepStatusOk;
}
KepStatus kepsExp_64f(const Kep64f *src, Kep64f *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    kepsExp_64f_A50(src, dst, len);
    return kepStatusOk;
}
// clang-format off
KepStatus kepsExp_32f_I(Kep32f *srcDst, int32_t len) { return kepsExp_32f(srcDst, srcDst, len); }
KepStatus kepsExp_64f_I(Kep64f *srcDst, int32_t len) { return kepsExp_64f(srcDst, srcDst, len); }
KepStatus kepsExp_16s_Sfs(const Kep16s *src, Kep16s *dst, int32_t len, int scaleFactor) { return exponentials(src, dst, len, scaleFactor, Point_Tab); }
KepStatus kepsExp_32s_Sfs(const Kep32s *src, Kep32s *dst, int32_t len, int scaleFactor) { return exponentials(src, dst, len, scaleFactor, widePoints); }
KepStatus kepsExp_16s_ISfs(Kep16s *srcDst, int32_t len, int scaleFactor) { return exponentials(srcDst, srcDst, len, scaleFactor, Point_Tab); }
KepStatus kepsExp_32s_ISfs(Kep32s *srcDst, int32_t len, int scaleFactor) { return exponentials(srcDst, srcDst, len, scaleFactor, widePoints); }
// clang-format on
