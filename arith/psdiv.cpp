// Div of integers: quotients in float or double, scaled, rounded once. The divisor is the first
// array.
#include "arith/complexdiv.hpp"
#include "arith/division.hpp"
#include "frame/entry.hpp"

using namespace keps;

namespace {

template <class Wide, class Divisor, class Dividend, class To>
[[gnu::noinline]] KepStatus quotients(const Divisor *src1, const Dividend *src2, To *dst, size n,
                                      typename Wide::element scale) {
    constexpr int N = Wide::lanes;
    if (n < N) [[unlikely]] {
        const auto whole = [=](const Divisor *divisors, const Dividend *dividends, To *results) {
            return quotients<Wide>(divisors, dividends, results, N, scale);
        };
        return onPadded<N>(whole, n, dst, src1, src2);
    }
    const Quotient<To, Wide, ToNearest> op{splat<Wide>(scale), {}};
    map<N, 2>(n, op, dst, quotientSource<Wide>(src1), quotientSource<Wide>(src2));
    return op.zeros.warning();
}

// Scale factors within which results are not settled by signs alone, and the split's threshold.
struct Window {
    int least, most;
    std::int32_t threshold;
    bool holds(int scaleFactor) const { return least <= scaleFactor && scaleFactor <= most; }
};
constexpr std::int32_t neverSplit = INT32_MAX;

// A quotient of samples below 2^16 lies on a tie or at least 2^-17 / scale off it, in units of
// itself. A float's error of up to 2^-23 hides none of that while the scale is at most 2^6.
template <class Divisor, class Dividend, class To>
KEPS_INLINE KepStatus anyQuotients(const Divisor *src1, const Dividend *src2, To *dst, size n,
                                   int scaleFactor) {
    const float scale = quotientScale(scaleFactor);
    if constexpr (sizeof(Dividend) == 1) {
        return quotients<f32x8>(src1, src2, dst, n, scale);
    } else if constexpr (sizeof(Dividend) == 2) {
        if (scaleFactor >= -6) return quotients<f32x8>(src1, src2, dst, n, scale);
        return quotients<f64x4>(src1, src2, dst, n, double{scale});
    } else {
        return quotients<f64x4>(src1, src2, dst, n, double{scale});
    }
}

template <class Divisor, class Dividend, class To>
KEPS_INLINE KepStatus divide(const Divisor *src1, const Dividend *src2, To *dst, std::int32_t len,
                             int scaleFactor, Window window) {
    if (const KepStatus refused = refuse(len, src1, src2, dst)) return refused;
    const std::int32_t threshold = window.holds(scaleFactor) ? window.threshold : neverSplit;
    return vectorSplit<teamOfTwo>(len, threshold, [=](std::int32_t first, std::int32_t n) {
        return anyQuotients(src1 + first, src2 + first, dst + first, n, scaleFactor);
    });
}

constexpr Window window8u{-15, 8, 1024}, window16u{-31, 16, neverSplit}, window16s{-30, 15, 1024};
constexpr Window window32s{-62, 32, 1024}, window32s16s{-29, 31, 1024}, window16sc{-32, 32, 256};

template <class Sums>
[[gnu::noinline]] KepStatus complexQuotients(const Kep16sc *src1, const Kep16sc *src2, Kep16sc *dst,
                                             size n, double scale) {
    if (n < 4) [[unlikely]] {
        const auto whole = [=](const Kep16sc *divisors, const Kep16sc *dividends,
                               Kep16sc *results) {
            return complexQuotients<Sums>(divisors, dividends, results, 4, scale);
        };
        return onPadded<4>(whole, n, dst, src1, src2);
    }
    const ComplexQuotient<Sums> op{splat<f64x4>(scale), {}};
    map<4, 2>(n, op, dst, src1, src2);
    return op.zeros.warning();
}

KepStatus anyZero(const Kep16sc *divisors, size n) {
    for (size i = 0; i < n; ++i)
        if (loadAs<std::uint32_t>(divisors + i) == 0) return kepStatusDivisionWarning;
    return kepStatusOk;
}

} // namespace

// clang-format off
KepStatus kepsDiv_8u_Sfs(const Kep8u *src1, const Kep8u *src2, Kep8u *dst, int32_t len, int scaleFactor) { return divide(src1, src2, dst, len, scaleFactor, window8u); }
KepStatus kepsDiv_8u_ISfs(const Kep8u *src, Kep8u *srcDst, int32_t len, int scaleFactor) { return kepsDiv_8u_Sfs(src, srcDst, srcDst, len, scaleFactor); }
KepStatus kepsDiv_16u_Sfs(const Kep16u *src1, const Kep16u *src2, Kep16u *dst, int32_t len, int scaleFactor) { return divide(src1, src2, dst, len, scaleFactor, window16u); }
KepStatus kepsDiv_16u_ISfs(const Kep16u *src, Kep16u *srcDst, int32_t len, int scaleFactor) { return kepsDiv_16u_Sfs(src, srcDst, srcDst, len, scaleFactor); }
KepStatus kepsDiv_16s_Sfs(const Kep16s *src1, const Kep16s *src2, Kep16s *dst, int32_t len, int scaleFactor) { return divide(src1, src2, dst, len, scaleFactor, window16s); }
KepStatus kepsDiv_16s_ISfs(const Kep16s *src, Kep16s *srcDst, int32_t len, int scaleFactor) { return kepsDiv_16s_Sfs(src, srcDst, srcDst, len, scaleFactor); }
KepStatus kepsDiv_32s_Sfs(const Kep32s *src1, const Kep32s *src2, Kep32s *dst, int32_t len, int scaleFactor) { return divide(src1, src2, dst, len, scaleFactor, window32s); }
KepStatus kepsDiv_32s_ISfs(const Kep32s *src, Kep32s *srcDst, int32_t len, int scaleFactor) { return kepsDiv_32s_Sfs(src, srcDst, srcDst, len, scaleFactor); }
KepStatus kepsDiv_32s16s_Sfs(const Kep16s *src1, const Kep32s *src2, Kep16s *dst, int32_t len, int scaleFactor) { return divide(src1, src2, dst, len, scaleFactor, window32s16s); }
// clang-format on

KepStatus kepsDiv_16sc_Sfs(const Kep16sc *src1, const Kep16sc *src2, Kep16sc *dst, int32_t len,
                           int scaleFactor) {
    if (const KepStatus refused = refuse(len, src1, src2, dst)) return refused;
    const double scale = quotientScale(scaleFactor);
    if (scaleFactor > window16sc.most) {
        // Cleared first: where dst is the divisor's array, every divisor is a zero.
        kepsZero_16sc(dst, len);
        return anyZero(src1, len);
    }
    if (scaleFactor < window16sc.least)
        return complexQuotients<WrappingSums>(src1, src2, dst, len, scale);
    return vectorSplit<teamOfTwo>(
        len, window16sc.threshold, [=](std::int32_t first, std::int32_t n) {
            return complexQuotients<ExactSums>(src1 + first, src2 + first, dst + first, n, scale);
        });
}
KepStatus kepsDiv_16sc_ISfs(const Kep16sc *src, Kep16sc *srcDst, int32_t len, int scaleFactor) {
    return kepsDiv_16sc_Sfs(src, srcDst, srcDst, len, scaleFactor);
}
