// What the division units share: quotients of integers through floats, and watching for zero
// divisors.
#pragma once

#include "arith/convert.hpp"
#include "frame/omp.hpp"

namespace keps {

// 2^-scaleFactor for quotients and products of samples: at 2^+-100 every result is settled, and
// nothing leaves a float's range.
KEPS_INLINE float quotientScale(int scaleFactor) {
    constexpr int settled = 100;
    return powerOf<float>(scaleFactor > settled    ? -settled
                          : scaleFactor < -settled ? settled
                                                   : -scaleFactor);
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

// The substitutes for zero divisors come from the float quotient: infinities saturate by the
// dividend's sign; NaN, of 0 over 0, is made 0.
template <class To, class Wide, class Rounding>
struct Quotient {
    Wide scale;
    ZeroWatch<Wide> zeros;
    template <class Divisor, class Dividend>
    KEPS_INLINE auto operator()(Divisor divisor, Dividend dividend) const {
        const Wide under = Widen<Wide>{}(divisor);
        zeros.look(under);
        const Wide q = Widen<Wide>{}(dividend)*scale / under;
        const Wide top = splat<Wide>(std::numeric_limits<To>::max());
        return narrowTo<To>(Rounding::round(min(top, q) & equal(q, q)));
    }
};

} // namespace keps
