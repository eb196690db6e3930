// 64-bit integers: Add, AddC and MulC, one element at a time in 128 bits, and MulC by a double.
#include <limits>

#include "arith/scale.hpp"

using namespace keps;

namespace {

__extension__ typedef __int128 Exact;

template <class T>
KEPS_INLINE T saturated(Exact x) {
    constexpr Exact top = std::numeric_limits<T>::max(), bottom = std::numeric_limits<T>::min();
    return static_cast<T>(x > top ? top : (x < bottom ? bottom : x));
}

// x / 2^s, s from 1 to 126, rounded by a KepRoundMode.
KEPS_INLINE Exact roundedDown(Exact x, int s, int rndMode) {
    const Exact one = 1, whole = x >> s, rest = x - (whole << s), half = one << (s - 1);
    if (rndMode == kepRoundTowardZero) return whole + (x < 0 && rest != 0);
    if (rndMode == kepRoundNearest) return whole + (rest > half || (rest == half && (whole & 1)));
    return whole + (rest > half || (rest == half && x >= 0));
}

// x * 2^k with saturation, k of 1 and more.
template <class T>
KEPS_INLINE T shiftedUp(T x, int k) {
    constexpr int width = 64;
    if (x == 0) return 0;
    if (k >= width) return x > 0 ? std::numeric_limits<T>::max() : std::numeric_limits<T>::min();
    return saturated<T>(static_cast<Exact>(x) * (Exact{1} << k));
}

template <class T>
KEPS_INLINE T bounded(Exact x) {
    return x == 0 ? T{0} : (x > 0 ? std::numeric_limits<T>::max() : std::numeric_limits<T>::min());
}

// dst[i] = f(src[i]...).
template <class F, class T>
KEPS_INLINE KepStatus each(size n, const F &f, T *dst, const T *src) {
    for (size i = 0; i < n; ++i) storeOne(dst + i, f(loadOne(src + i)));
    return kepStatusOk;
}
template <class F, class T>
KEPS_INLINE KepStatus each(size n, const F &f, T *dst, const T *src1, const T *src2) {
    for (size i = 0; i < n; ++i) storeOne(dst + i, f(loadOne(src1 + i), loadOne(src2 + i)));
    return kepStatusOk;
}

// A tie of a sum of 0 or above gives 0 instead of the even neighbour, unless both operands are
// positive: a property of the library that callers rely on.
KEPS_INLINE Kep64s mixedTie(Kep64s a, Kep64s b, int s) {
    const Exact sum = static_cast<Exact>(a) + b, rest = sum & ((Exact{1} << s) - 1);
    const bool alike = (a > 0 && b > 0) || (a < 0 && b < 0);
    if (!alike && sum >= 0 && rest == Exact{1} << (s - 1)) return 0;
    return saturated<Kep64s>(roundedDown(sum, s, kepRoundNearest));
}

} // namespace

KepStatus kepsAdd_64s_Sfs(const Kep64s *src1, const Kep64s *src2, Kep64s *dst, int32_t len,
                          int scaleFactor) {
    if (const KepStatus refused = refuse(len, src1, src2, dst)) return refused;
    const int s = scaleFactor;
    const auto sum = [](Kep64s a, Kep64s b)
                         KEPS_INLINE_LAMBDA { return static_cast<Exact>(a) + b; };
    if (s >= 64)
        return kepsZero_16sc(reinterpret_cast<Kep16sc *>(dst),
                             static_cast<int32_t>(2 * static_cast<uint32_t>(len) & 0x7FFFFFFF));
    if (s == 0)
        return each(
            len,
            [&](Kep64s a, Kep64s b) KEPS_INLINE_LAMBDA { return saturated<Kep64s>(sum(a, b)); },
            dst, src1, src2);
    if (s == 1)
        return each(
            len,
            [&](Kep64s a, Kep64s b) KEPS_INLINE_LAMBDA {
                return saturated<Kep64s>(roundedDown(sum(a, b), 1, kepRoundNearest));
            },
            dst, src1, src2);
    if (s > 1)
        return each(
            len, [&](Kep64s a, Kep64s b) KEPS_INLINE_LAMBDA { return mixedTie(a, b, s); }, dst,
            src1, src2);
    if (s >= -62)
        return each(
            len,
            [&](Kep64s a, Kep64s b)
                KEPS_INLINE_LAMBDA { return shiftedUp(saturated<Kep64s>(sum(a, b)), -s); },
            dst, src1, src2);
    return each(
        len, [&](Kep64s a, Kep64s b) KEPS_INLINE_LAMBDA { return bounded<Kep64s>(sum(a, b)); }, dst,
        src1, src2);
}

namespace {

// The length counts as unsigned, so only 0 is bad.
template <class T>
KEPS_INLINE KepStatus plusConstant(const T *src, T val, T *dst, int32_t len, int s, int rndMode) {
    if (anyNull(src, dst)) return kepStatusNullPointer;
    if (len == 0) return kepStatusBadLength;
    const size n = static_cast<uint32_t>(len);
    const auto sum = [=](T x) KEPS_INLINE_LAMBDA { return static_cast<Exact>(x) + val; };
    // 65-bit sums are below half a unit beyond 65.
    if (s > 65)
        return each(
            n, [](T) KEPS_INLINE_LAMBDA { return T{0}; }, dst, src);
    if (s == 0)
        return each(
            n, [&](T x) KEPS_INLINE_LAMBDA { return saturated<T>(sum(x)); }, dst, src);
    if (s > 0)
        return each(
            n,
            [&](T x) KEPS_INLINE_LAMBDA { return saturated<T>(roundedDown(sum(x), s, rndMode)); },
            dst, src);
    if (s >= -62)
        return each(
            n, [&](T x) KEPS_INLINE_LAMBDA { return shiftedUp(saturated<T>(sum(x)), -s); }, dst,
            src);
    return each(
        n, [&](T x) KEPS_INLINE_LAMBDA { return bounded<T>(sum(x)); }, dst, src);
}

} // namespace

KepStatus kepsAddC_64s_Sfs(const Kep64s *src, Kep64s val, Kep64s *dst, int32_t len, int scaleFactor,
                           int rndMode) {
    return plusConstant(src, val, dst, len, scaleFactor, rndMode);
}
KepStatus kepsAddC_64u_Sfs(const Kep64u *src, Kep64u val, Kep64u *dst, int32_t len, int scaleFactor,
                           int rndMode) {
    return plusConstant(src, val, dst, len, scaleFactor, rndMode);
}

KepStatus kepsMulC_64s_ISfs(Kep64s val, Kep64s *srcDst, int32_t len, int scaleFactor) {
    if (const KepStatus refused = refuse(len, srcDst)) return refused;
    const int s = scaleFactor;
    const auto product = [=](Kep64s x) KEPS_INLINE_LAMBDA { return static_cast<Exact>(x) * val; };
    // Products are at most 2^126: half a unit at 127, a tie that goes to 0.
    if (s > 126) return kepsZero_64s(srcDst, len);
    if (s == 0)
        return each(
            len, [&](Kep64s x) KEPS_INLINE_LAMBDA { return saturated<Kep64s>(product(x)); }, srcDst,
            srcDst);
    if (s > 0)
        return each(
            len,
            [&](Kep64s x) KEPS_INLINE_LAMBDA {
                return saturated<Kep64s>(roundedDown(product(x), s, kepRoundNearest));
            },
            srcDst, srcDst);
    const int up = s < -63 ? 64 : -s;
    return each(
        len,
        [&](Kep64s x) KEPS_INLINE_LAMBDA { return shiftedUp(saturated<Kep64s>(product(x)), up); },
        srcDst, srcDst);
}

namespace {

// 2^exponent, exponent from -1022 to 1023.
KEPS_INLINE double powerOfTwo(int exponent) {
    return __builtin_bit_cast(double, static_cast<std::uint64_t>(1023 + exponent) << 52);
}

// To nearest, ties to even, saturated; NaN becomes the minimum.
KEPS_INLINE Kep64s toInteger(double x) {
    const __m128d v = _mm_set_sd(x);
    constexpr int nearest = _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC;
    const __m128d rounded = _mm_round_sd(v, v, nearest);
    if (_mm_cvtsd_f64(rounded) >= 0x1p63) return std::numeric_limits<Kep64s>::max();
    return _mm_cvttsd_si64(rounded);
}

} // namespace

// The length counts as unsigned, so only 0 is bad.
KepStatus kepsMulC_64f64s_ISfs(Kep64f val, Kep64s *srcDst, int32_t len, int scaleFactor) {
    if (srcDst == nullptr) return kepStatusNullPointer;
    if (len == 0) return kepStatusBadLength;
    // In three equal steps or nearly: 3 * 740 covers the whole range of double and back. A step
    // that overflows or underflows does so as the whole would.
    constexpr int most = 2220;
    const int s = scaleFactor > most ? most : (scaleFactor < -most ? -most : scaleFactor);
    const double a = powerOfTwo(-s / 3), b = powerOfTwo(-s / 3), c = powerOfTwo(-s - 2 * (-s / 3));
    return each(
        size{static_cast<uint32_t>(len)},
        [&](Kep64s x) KEPS_INLINE_LAMBDA {
            // Whatever the constant is.
            return x == 0 ? Kep64s{0} : toInteger(static_cast<double>(x) * val * a * b * c);
        },
        srcDst, srcDst);
}
