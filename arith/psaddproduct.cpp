// AddProduct: the products of two arrays, or of an array and a constant, added to a third.
#include "arith/floatops.hpp"
#include "arith/products.hpp"

using namespace keps;

namespace {

// One product and one sum, never fused.
struct PlusProduct {
    template <class V>
    KEPS_INLINE V operator()(V a, V b, V sum) const {
        return sum + a * b;
    }
};
struct PlusComplexProduct {
    template <class V>
    KEPS_INLINE V operator()(V a, V b, V sum) const {
        return sum + complexMul(a, b);
    }
};
struct PlusTimesConstant {
    f32x8 constant;
    KEPS_INLINE f32x8 operator()(f32x8 a, f32x8 sum) const { return sum + a * constant; }
};

template <class Op, class T>
KepStatus addProducts(const T *src1, const T *src2, T *srcDst, int32_t len) {
    if (const KepStatus refused = refuse(len, src1, src2, srcDst)) return refused;
    constexpr int round = std::is_same_v<Op, PlusProduct> ? 4 : 2;
    map<floatLanes<T>, round>(len, Op{}, srcDst, src1, src2, srcDst);
    return kepStatusOk;
}

// The products, then the rule of a sum on them and the third array.
template <class Rule>
struct ProductThen {
    Rule rule;
    explicit ProductThen(int s) : rule(s) {}
    KEPS_INLINE two<i32x4> operator()(i16x8 a, i16x8 b, two<i32x4> sum) const {
        const auto x = ProductOf<Kep16s>::exact(a, b);
        return {rule(x.lo, sum.lo), rule(x.hi, sum.hi)};
    }
};

} // namespace

// clang-format off
KepStatus kepsAddProduct_32f(const Kep32f *src1, const Kep32f *src2, Kep32f *srcDst, int32_t len) { return addProducts<PlusProduct>(src1, src2, srcDst, len); }
KepStatus kepsAddProduct_64f(const Kep64f *src1, const Kep64f *src2, Kep64f *srcDst, int32_t len) { return addProducts<PlusProduct>(src1, src2, srcDst, len); }
KepStatus kepsAddProduct_32fc(const Kep32fc *src1, const Kep32fc *src2, Kep32fc *srcDst, int32_t len) { return addProducts<PlusComplexProduct>(src1, src2, srcDst, len); }
KepStatus kepsAddProduct_64fc(const Kep64fc *src1, const Kep64fc *src2, Kep64fc *srcDst, int32_t len) { return addProducts<PlusComplexProduct>(src1, src2, srcDst, len); }
// clang-format on

// Without shortcuts: zero times infinity is NaN here.
KepStatus kepsAddProductC_32f(const Kep32f *src, Kep32f val, Kep32f *srcDst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, srcDst)) return refused;
    map<8>(len, PlusTimesConstant{splatBlock(val)}, srcDst, src, srcDst);
    return kepStatusOk;
}

KepStatus kepsAddProduct_16s_Sfs(const Kep16s *src1, const Kep16s *src2, Kep16s *srcDst,
                                 int32_t len, int scaleFactor) {
    const Kep16s *sum = srcDst;
    return scaled<Narrowed<Exact16sPlus>>(scaleFactor, len, srcDst, src1, src2, sum);
}

KepStatus kepsAddProduct_16s32s_Sfs(const Kep16s *src1, const Kep16s *src2, Kep32s *srcDst,
                                    int32_t len, int scaleFactor) {
    if (const KepStatus refused = refuse(len, src1, src2, srcDst)) return refused;
    if (scaleFactor > SumOf<Kep32s>::upper) return kepsZero_32s(srcDst, len);
    const Kep32s *sum = srcDst;
    return byClass<SumOf<Kep32s>>(scaleFactor, [&]<class Rule>() {
        return mapArrays<ProductThen<Rule>, Kep32s, Kep16s, Kep16s, Kep32s>(src1, src2, sum, srcDst,
                                                                            len, scaleFactor);
    });
}

KepStatus kepsAddProduct_32s_Sfs(const Kep32s *src1, const Kep32s *src2, Kep32s *srcDst,
                                 int32_t len, int scaleFactor) {
    const Kep32s *sum = srcDst;
    return scaled<NarrowedWide<Exact32sPlus>>(scaleFactor, len, srcDst, src1, src2, sum);
}
