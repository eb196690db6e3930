// Float operators for the loop shapes, and constants bound to one side of them.
#pragma once

#include "frame/entry.hpp"
#include "frame/simd/shapes.hpp"

namespace keps {

struct Sum {
    template <class V>
    KEPS_INLINE V operator()(V a, V b) const {
        return a + b;
    }
};

// Second source minus first: the library's order for two arrays.
struct Difference {
    template <class V>
    KEPS_INLINE V operator()(V a, V b) const {
        return b - a;
    }
};

struct Product {
    template <class V>
    KEPS_INLINE V operator()(V a, V b) const {
        return a * b;
    }
};

// The first factor is read once, the second one twice: its doublings are left to memory operands,
// which some processors make while loading.
struct ComplexProduct {
    template <class V>
    KEPS_INLINE V operator()(V a, V b) const {
        return complexMul(inRegister(a), b);
    }
};
// With the constant's doublings at hand, the element may as well be read twice.
struct ComplexFactor {
    template <class V>
    KEPS_INLINE V operator()(V a, V b) const {
        return complexMul(a, b);
    }
};

// op(element, constant) and op(constant, element).
template <class Op, class V>
struct ConstantSecond {
    V constant;
    KEPS_INLINE V operator()(V a) const { return Op{}(a, constant); }
};
template <class Op, class V>
struct ConstantFirst {
    V constant;
    KEPS_INLINE V operator()(V a) const { return Op{}(constant, a); }
};

template <class T>
inline constexpr int floatLanes = 32 / static_cast<int>(sizeof(T));
template <class T>
using FloatBlock = Block<T, floatLanes<T>>;

// A block of one value.
KEPS_INLINE f32x8 splatBlock(float x) {
    return splat<f32x8>(x);
}
KEPS_INLINE f64x4 splatBlock(double x) {
    return splat<f64x4>(x);
}
KEPS_INLINE f32x8 splatBlock(Kep32fc x) {
    return {_mm256_setr_ps(x.re, x.im, x.re, x.im, x.re, x.im, x.re, x.im)};
}
KEPS_INLINE f64x4 splatBlock(Kep64fc x) {
    return {_mm256_setr_pd(x.re, x.im, x.re, x.im)};
}

// Complex products take half the registers of a round.
template <class Op>
inline constexpr int blocksARound = std::is_same_v<Op, ComplexProduct> ? 2 : 4;

// dst = op(src1, src2) behind the default entry tests.
template <class Op, class T>
KEPS_INLINE KepStatus binary(const T *src1, const T *src2, T *dst, std::int32_t len) {
    if (const KepStatus refused = refuse(len, src1, src2, dst)) return refused;
    map<floatLanes<T>, blocksARound<Op>>(len, Op{}, dst, src1, src2);
    return kepStatusOk;
}

// dst = op(src, val), entry tests done.
template <class Op, class T>
KEPS_INLINE KepStatus withSecond(const T *src, T val, T *dst, size n) {
    const ConstantSecond<Op, FloatBlock<T>> op{splatBlock(val)};
    map<floatLanes<T>, blocksARound<Op>>(n, op, dst, src);
    return kepStatusOk;
}

// dst = op(val, src), entry tests done.
template <class Op, class T>
KEPS_INLINE KepStatus withFirst(const T *src, T val, T *dst, size n) {
    const ConstantFirst<Op, FloatBlock<T>> op{splatBlock(val)};
    map<floatLanes<T>, blocksARound<Op>>(n, op, dst, src);
    return kepStatusOk;
}

// Complex arrays as real ones of twice the length, which wraps in 32 bits.
KEPS_INLINE const Kep32f *reals(const Kep32fc *p) {
    return reinterpret_cast<const Kep32f *>(p);
}
KEPS_INLINE const Kep64f *reals(const Kep64fc *p) {
    return reinterpret_cast<const Kep64f *>(p);
}
KEPS_INLINE const Kep16s *reals(const Kep16sc *p) {
    return reinterpret_cast<const Kep16s *>(p);
}
KEPS_INLINE const Kep32s *reals(const Kep32sc *p) {
    return reinterpret_cast<const Kep32s *>(p);
}
template <class C>
KEPS_INLINE auto *reals(C *p) {
    return reinterpret_cast<decltype(C::re) *>(p);
}
KEPS_INLINE std::int32_t twice(std::int32_t len) {
    return static_cast<std::int32_t>(2 * static_cast<std::uint32_t>(len));
}

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
