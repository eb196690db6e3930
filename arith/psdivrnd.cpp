// Div_Round: integer quotients in float, with a rounding mode of the caller's.
#include "arith/division.hpp"
#include "frame/entry.hpp"

using namespace keps;

namespace {

template <class Rounding, class T>
[[gnu::noinline]] KepStatus quotients(const T *src1, const T *src2, T *dst, size n, float scale) {
    if (n < 8) [[unlikely]] {
        const auto whole = [=](const T *divisors, const T *dividends, T *results) {
            return quotients<Rounding>(divisors, dividends, results, 8, scale);
        };
        return onPadded<8>(whole, n, dst, src1, src2);
    }
    const Quotient<T, f32x8, Rounding> op{splat<f32x8>(scale), {}};
    map<8, 2>(n, op, dst, quotientSource<f32x8>(src1), quotientSource<f32x8>(src2));
    return op.zeros.warning();
}

// Toward zero the quotient itself is cut off too: rounded to nearest it could reach the next
// integer.
template <class T>
[[gnu::noinline]] KepStatus quotientsByMode(const T *src1, const T *src2, T *dst, size n,
                                            int rndMode, float scale) {
    const RoundingScope scope(rndMode == kepRoundTowardZero ? roundTowardZero : roundNearest);
    if (rndMode == kepRoundTowardZero) return quotients<TowardZero>(src1, src2, dst, n, scale);
    if (rndMode == kepRoundNearest) return quotients<ToNearest>(src1, src2, dst, n, scale);
    return quotients<HalfAway>(src1, src2, dst, n, scale);
}

// Scale factors within which results are not settled by signs alone, and the split's threshold.
struct Window {
    int least, most;
    std::int32_t threshold;
};
constexpr Window window8u{INT32_MIN, INT32_MAX, 512}, window16{-30, 16, 1024};

template <class T>
KEPS_INLINE KepStatus divide(const T *src1, const T *src2, T *dst, std::int32_t len, int rndMode,
                             int scaleFactor, Window window) {
    if (const KepStatus refused = refuse(len, src1, src2, dst)) return refused;
    if (rndMode < kepRoundTowardZero || rndMode > kepRoundHalfAway) return kepStatusBadRoundMode;
    const bool inWindow = window.least <= scaleFactor && scaleFactor <= window.most;
    // Beyond the window all but 0 saturates, also a 16u quotient that would not.
    const float scale = quotientScale(inWindow          ? scaleFactor
                                      : scaleFactor < 0 ? INT32_MIN
                                                        : INT32_MAX);
    return vectorSplit<wholeTeam>(
        len, inWindow ? window.threshold : INT32_MAX, [=](std::int32_t first, std::int32_t n) {
            return quotientsByMode(src1 + first, src2 + first, dst + first, n, rndMode, scale);
        });
}

} // namespace

// clang-format off
KepStatus kepsDiv_Round_8u_Sfs(const Kep8u *src1, const Kep8u *src2, Kep8u *dst, int32_t len, int rndMode, int scaleFactor) { return divide(src1, src2, dst, len, rndMode, scaleFactor, window8u); }
KepStatus kepsDiv_Round_8u_ISfs(const Kep8u *src, Kep8u *srcDst, int32_t len, int rndMode, int scaleFactor) { return kepsDiv_Round_8u_Sfs(src, srcDst, srcDst, len, rndMode, scaleFactor); }
KepStatus kepsDiv_Round_16u_Sfs(const Kep16u *src1, const Kep16u *src2, Kep16u *dst, int32_t len, int rndMode, int scaleFactor) { return divide(src1, src2, dst, len, rndMode, scaleFactor, window16); }
KepStatus kepsDiv_Round_16u_ISfs(const Kep16u *src, Kep16u *srcDst, int32_t len, int rndMode, int scaleFactor) { return kepsDiv_Round_16u_Sfs(src, srcDst, srcDst, len, rndMode, scaleFactor); }
KepStatus kepsDiv_Round_16s_Sfs(const Kep16s *src1, const Kep16s *src2, Kep16s *dst, int32_t len, int rndMode, int scaleFactor) { return divide(src1, src2, dst, len, rndMode, scaleFactor, window16); }
KepStatus kepsDiv_Round_16s_ISfs(const Kep16s *src, Kep16s *srcDst, int32_t len, int rndMode, int scaleFactor) { return kepsDiv_Round_16s_Sfs(src, srcDst, srcDst, len, rndMode, scaleFactor); }
// clang-format on
