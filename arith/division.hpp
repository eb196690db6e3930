// What the division units share: quotients of integers through floats, and watching for zero
// divisors.
#pragma once

#include "arith/convert.hpp"
#include "frame/omp.hpp"

namespace keps {

// scaleFactor, and 2^-scaleFactor, for quotients and products of samples: at 2^+-100 every result
// is settled, and nothing leaves a float's range.
KEPS_INLINE int quotientExponent(int scaleFactor) {
    constexpr int settled = 100;
    return scaleFactor > settled ? settled : (scaleFactor < -settled ? -settled : scaleFactor);
}
KEPS_INLINE float quotientScale(int scaleFactor) {
    return powerOf<float>(-quotientExponent(scaleFactor));
}

// Collects whether a divisor was zero. The operators of loop shapes are const.
template <class V>
class ZeroWatch {
public:
    KEPS_INLINE void look(V divisor) const { seen = seen | equal(divisor, zero<V>()); }
    KEPS_INLINE KepStatus warning() const {
        return signs(seen) ? kepStatusDivisionWarning : kepStatusOk;
    }

private:
    mutable V seen = zero<V>();
};

// Of integers: zero is the least of all.
template <>
class ZeroWatch<two<i32x4>> {
public:
    KEPS_INLINE void look(two<i32x4> divisor) const {
        lower = _mm_min_epu32(lower, divisor.lo.v);
        upper = _mm_min_epu32(upper, divisor.hi.v);
    }
    KEPS_INLINE KepStatus warning() const {
        const __m128i isZero = _mm_cmpeq_epi32(_mm_min_epu32(lower, upper), _mm_setzero_si128());
        return _mm_movemask_epi8(isZero) ? kepStatusDivisionWarning : kepStatusOk;
    }

private:
    mutable __m128i lower = _mm_set1_epi32(-1), upper = lower;
};

// Copies of the last, short block of an array, its last element repeated behind it: lanes without
// an element of their own must not look like zero divisors.
template <int N, class T>
struct Padded {
    T element[N];
    KEPS_INLINE Padded(const T *p, size n) {
        for (size i = 0; i < N; ++i) element[i] = loadOne(p + (i < n ? i : n - 1));
    }
};

// Fewer than N elements: kernel(src..., dst) works on N in copies. Apart, so that a kernel's common
// course is free of the copies' frame.
template <int N, class Kernel, class To, class... From>
[[gnu::noinline]] KepStatus onPadded(Kernel kernel, size n, To *dst, const From *...src) {
    To result[N];
    const KepStatus warning = kernel(Padded<N, From>(src, n).element..., result);
    for (size i = 0; i < n; ++i) storeOne(dst + i, result[i]);
    return warning;
}

// Samples whose quotients are formed in float are widened as they are loaded; their zeros are
// looked for as integers, since float comparisons share the units of the conversions.
template <class Wide, class T>
KEPS_INLINE auto quotientSource(const T *p) {
    if constexpr (std::is_same_v<Wide, f32x8>)
        return widened<Kep32s>(p);
    else
        return p;
}

// The substitutes for zero divisors come from the float quotient: infinities saturate by the
// dividend's sign; NaN, of 0 over 0, is made 0, which saturation does for unsigned results.
template <class To, class Wide, class Rounding>
struct Quotient {
    using Watched = std::conditional_t<std::is_same_v<Wide, f32x8>, two<i32x4>, Wide>;
    Wide scale;
    ZeroWatch<Watched> zeros;
    template <class Divisor, class Dividend>
    KEPS_INLINE auto operator()(Divisor divisor, Dividend dividend) const {
        const Wide under = Widen<Wide>{}(divisor);
        if constexpr (std::is_same_v<Watched, Divisor>)
            zeros.look(divisor);
        else
            zeros.look(under);
        const Wide q = Widen<Wide>{}(dividend)*scale / under;
        Wide bounded = min(splat<Wide>(std::numeric_limits<To>::max()), q);
        if constexpr (std::is_signed_v<To>) bounded = bounded & equal(q, q);
        return narrowTo<To>(Rounding::round(bounded));
    }
};

} // namespace keps
