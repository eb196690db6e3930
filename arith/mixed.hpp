// Operators whose result is of another type than their sources.
#pragma once

#include "arith/products.hpp"

namespace keps {

// Exact up to the rounding of a product to float.
struct SumToFloat {
    KEPS_INLINE f32x8 operator()(i16x8 a, i16x8 b) const {
        const auto x = interleave<Kep16s>(a, b);
        const i16x8 ones = splatInt(Kep16s{1});
        return toFloat(mulAddPairs(x.lo, ones), mulAddPairs(x.hi, ones));
    }
};
struct DifferenceToFloat {
    KEPS_INLINE f32x8 operator()(i16x8 a, i16x8 b) const {
        const auto x = interleave<Kep16s>(a, b);
        const i16x8 signs = as<Kep16s>(splatInt(Kep32u{0x0001FFFF})); // -1 of a, 1 of b
        return toFloat(mulAddPairs(x.lo, signs), mulAddPairs(x.hi, signs));
    }
};
struct ProductToFloat {
    KEPS_INLINE f32x8 operator()(i16x8 a, i16x8 b) const {
        const auto x = ProductOf<Kep16s>::exact(a, b);
        return toFloat(x.lo, x.hi);
    }
};

struct WideningSum {
    KEPS_INLINE two<u16x8> operator()(u8x16 a, u8x16 b) const {
        const auto x = interleave<Kep16u>(a, nothing<Kep8u>());
        const auto y = interleave<Kep16u>(b, nothing<Kep8u>());
        return {x.lo + y.lo, x.hi + y.hi};
    }
};
struct WideningProduct {
    KEPS_INLINE two<u16x8> operator()(u8x16 a, u8x16 b) const {
        return ProductOf<Kep8u>::exact(a, b);
    }
};

// What b may be at most without overflow is not a.
struct UnsignedSum {
    KEPS_INLINE u32x4 operator()(u32x4 a, u32x4 b) const {
        return a + u32x4{_mm_min_epu32(b.v, (a ^ splatInt(Kep32u{0xFFFFFFFF})).v)};
    }
};

struct SumInto32s {
    KEPS_INLINE two<i32x4> operator()(i16x8 a, two<i32x4> b) const {
        return {saturatedSum(widenLower(a), b.lo), saturatedSum(widenUpper(a), b.hi)};
    }
};

template <class Op, class A, class B, class To>
KepStatus mixed(const A *src1, const B *src2, To *dst, std::int32_t len) {
    if (const KepStatus refused = refuse(len, src1, src2, dst)) return refused;
    map<lanesOf<To>, 1>(len, Op{}, dst, src1, src2);
    return kepStatusOk;
}

} // namespace keps
