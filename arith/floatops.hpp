// Operators on float blocks, for the loop shapes. The second array's element is the right-hand
// factor of a complex product.
#pragma once

#include "frame/simd/shapes.hpp"

namespace keps {

struct Product {
    template <class V>
    KEPS_INLINE V operator()(V a, V b) const {
        return a * b;
    }
};

struct ComplexProduct {
    template <class V>
    KEPS_INLINE V operator()(V a, V b) const {
        return complexMul(a, b);
    }
};

// By a constant.
template <class V>
struct TimesConstant {
    V factor;
    KEPS_INLINE V operator()(V a) const { return a * factor; }
};

// The bits of a constant, out of its vector register without a detour through memory.
KEPS_INLINE std::uint32_t bitsOf(float x) {
    return static_cast<std::uint32_t>(_mm_cvtsi128_si32(_mm_castps_si128(_mm_set1_ps(x))));
}
KEPS_INLINE std::uint64_t bitsOf(double x) {
    return static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_castpd_si128(_mm_set1_pd(x))));
}

// Whether a constant is 0 of either sign, or 1: by its bits, since a float compare takes two
// branches for NaN's sake.
template <class T>
KEPS_INLINE bool isZero(T x) {
    return bitsOf(x) << 1 == 0;
}
template <class T>
KEPS_INLINE bool isOne(T x) {
    return bitsOf(x) == bitsOf(T{1});
}

} // namespace keps
