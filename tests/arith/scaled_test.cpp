// Scaled integer arithmetic against exact values, over the whole range of scale factors.
#include <tuple>

#include "scaled.hpp"

namespace {

using namespace scaled;

TEST(Scaled, add) {
    checkArrays<Sum>("kepsAdd_8u_Sfs", kepsAdd_8u_Sfs, kepsAdd_8u_ISfs);
    checkArrays<Sum>("kepsAdd_16s_Sfs", kepsAdd_16s_Sfs, kepsAdd_16s_ISfs);
    checkArrays<Sum>("kepsAdd_16u_Sfs", kepsAdd_16u_Sfs, kepsAdd_16u_ISfs);
    checkArrays<Sum>("kepsAdd_32s_Sfs", kepsAdd_32s_Sfs, kepsAdd_32s_ISfs);
    checkArrays<Sum>("kepsAdd_16sc_Sfs", kepsAdd_16sc_Sfs, kepsAdd_16sc_ISfs);
    checkArrays<Sum>("kepsAdd_32sc_Sfs", kepsAdd_32sc_Sfs, kepsAdd_32sc_ISfs);
}

TEST(Scaled, sub) {
    checkArrays<Difference>("kepsSub_8u_Sfs", kepsSub_8u_Sfs, kepsSub_8u_ISfs);
    checkArrays<Difference>("kepsSub_16s_Sfs", kepsSub_16s_Sfs, kepsSub_16s_ISfs);
    checkArrays<Difference>("kepsSub_16u_Sfs", kepsSub_16u_Sfs, kepsSub_16u_ISfs);
    checkArrays<Difference>("kepsSub_32s_Sfs", kepsSub_32s_Sfs, kepsSub_32s_ISfs);
    checkArrays<Difference>("kepsSub_16sc_Sfs", kepsSub_16sc_Sfs, kepsSub_16sc_ISfs);
    checkArrays<Difference>("kepsSub_32sc_Sfs", kepsSub_32sc_Sfs, kepsSub_32sc_ISfs);
}

TEST(Scaled, mul) {
    checkArrays<Product>("kepsMul_8u_Sfs", kepsMul_8u_Sfs, kepsMul_8u_ISfs);
    checkArrays<Product>("kepsMul_16s_Sfs", kepsMul_16s_Sfs, kepsMul_16s_ISfs);
    checkArrays<Product>("kepsMul_16u_Sfs", kepsMul_16u_Sfs, kepsMul_16u_ISfs);
    checkArrays<Product>("kepsMul_32s_Sfs", kepsMul_32s_Sfs, kepsMul_32s_ISfs);
    checkArrays<Product>("kepsMul_16sc_Sfs", kepsMul_16sc_Sfs, kepsMul_16sc_ISfs);
    checkArrays<Product>("kepsMul_32sc_Sfs", kepsMul_32sc_Sfs, kepsMul_32sc_ISfs);
    checkArrays<Product>("kepsMul_16s32s_Sfs", kepsMul_16s32s_Sfs);
    checkArrays<Product>("kepsMul_16u16s_Sfs", kepsMul_16u16s_Sfs);
}

TEST(Scaled, addC) {
    checkConstant<Sum>("kepsAddC_8u_Sfs", Side::elementFirst, kepsAddC_8u_Sfs, kepsAddC_8u_ISfs);
    checkConstant<Sum>("kepsAddC_16s_Sfs", Side::elementFirst, kepsAddC_16s_Sfs, kepsAddC_16s_ISfs);
    checkConstant<Sum>("kepsAddC_16u_Sfs", Side::elementFirst, kepsAddC_16u_Sfs, kepsAddC_16u_ISfs);
    checkConstant<Sum>("kepsAddC_32s_Sfs", Side::elementFirst, kepsAddC_32s_Sfs, kepsAddC_32s_ISfs);
    checkConstant<Sum>("kepsAddC_16sc_Sfs", Side::elementFirst, kepsAddC_16sc_Sfs,
                       kepsAddC_16sc_ISfs);
    checkConstant<Sum>("kepsAddC_32sc_Sfs", Side::elementFirst, kepsAddC_32sc_Sfs,
                       kepsAddC_32sc_ISfs);
}

TEST(Scaled, subC) {
    checkConstant<Difference>("kepsSubC_8u_Sfs", Side::elementSecond, kepsSubC_8u_Sfs,
                              kepsSubC_8u_ISfs);
    checkConstant<Difference>("kepsSubC_16s_Sfs", Side::elementSecond, kepsSubC_16s_Sfs,
                              kepsSubC_16s_ISfs);
    checkConstant<Difference>("kepsSubC_16u_Sfs", Side::elementSecond, kepsSubC_16u_Sfs,
                              kepsSubC_16u_ISfs);
    checkConstant<Difference>("kepsSubC_32s_Sfs", Side::elementSecond, kepsSubC_32s_Sfs,
                              kepsSubC_32s_ISfs);
    checkConstant<Difference>("kepsSubC_16sc_Sfs", Side::elementSecond, kepsSubC_16sc_Sfs,
                              kepsSubC_16sc_ISfs);
    checkConstant<Difference>("kepsSubC_32sc_Sfs", Side::elementSecond, kepsSubC_32sc_Sfs,
                              kepsSubC_32sc_ISfs);
}

TEST(Scaled, subCRev) {
    checkConstant<Difference>("kepsSubCRev_8u_Sfs", Side::elementFirst, kepsSubCRev_8u_Sfs,
                              kepsSubCRev_8u_ISfs);
    checkConstant<Difference>("kepsSubCRev_16s_Sfs", Side::elementFirst, kepsSubCRev_16s_Sfs,
                              kepsSubCRev_16s_ISfs);
    checkConstant<Difference>("kepsSubCRev_16u_Sfs", Side::elementFirst, kepsSubCRev_16u_Sfs,
                              kepsSubCRev_16u_ISfs);
    checkConstant<Difference>("kepsSubCRev_32s_Sfs", Side::elementFirst, kepsSubCRev_32s_Sfs,
                              kepsSubCRev_32s_ISfs);
    checkConstant<Difference>("kepsSubCRev_16sc_Sfs", Side::elementFirst, kepsSubCRev_16sc_Sfs,
                              kepsSubCRev_16sc_ISfs);
    checkConstant<Difference>("kepsSubCRev_32sc_Sfs", Side::elementFirst, kepsSubCRev_32sc_Sfs,
                              kepsSubCRev_32sc_ISfs);
}

TEST(Scaled, mulC) {
    checkConstant<Product>("kepsMulC_8u_Sfs", Side::elementFirst, kepsMulC_8u_Sfs,
                           kepsMulC_8u_ISfs);
    checkConstant<Product>("kepsMulC_16s_Sfs", Side::elementFirst, kepsMulC_16s_Sfs,
                           kepsMulC_16s_ISfs);
    checkConstant<Product>("kepsMulC_16u_Sfs", Side::elementFirst, kepsMulC_16u_Sfs,
                           kepsMulC_16u_ISfs);
    checkConstant<Product>("kepsMulC_32s_Sfs", Side::elementFirst, kepsMulC_32s_Sfs,
                           kepsMulC_32s_ISfs);
    checkConstant<Product>("kepsMulC_16sc_Sfs", Side::elementFirst, kepsMulC_16sc_Sfs,
                           kepsMulC_16sc_ISfs);
    checkConstant<Product>("kepsMulC_32sc_Sfs", Side::elementFirst, kepsMulC_32sc_Sfs,
                           kepsMulC_32sc_ISfs);
}

// Forms without a scale factor.
template <class Op, class To, class A, class B>
void checkPlain(const char *name, KepStatus (*f)(const A *, const B *, To *, int32_t),
                std::type_identity_t<KepStatus (*)(const A *, To *, int32_t)> inPlace = nullptr) {
    Elementwise<To, A, B> test{.name = name,
                               .call = f,
                               .oracle =
                                   [](const A *a, const B *b, To *dst, int n) {
                                       for (int i = 0; i < n; ++i)
                                           if constexpr (std::is_floating_point_v<To>)
                                               dst[i] = static_cast<To>(Op::of(a[i], b[i]));
                                           else
                                               dst[i] = rule<To>(Op::of(a[i], b[i]), 0);
                                       return kepStatusOk;
                                   },
                               .mayAlias = sizeof(A) == sizeof(To) && sizeof(B) == sizeof(To),
                               .lengths = {255, 256, 259, 1000},
                               .same = [](const To &a, const To &b) { return a == b; }};
    if (inPlace)
        test.inPlace = [=](const A *a, const B *, To *dst, int n) { return inPlace(a, dst, n); };
    check(test);
}

TEST(Scaled, withoutScaleFactor) {
    checkPlain<Sum>("kepsAdd_16s", kepsAdd_16s, kepsAdd_16s_I);
    checkPlain<Difference>("kepsSub_16s", kepsSub_16s, kepsSub_16s_I);
    checkPlain<Product>("kepsMul_16s", kepsMul_16s, kepsMul_16s_I);
    checkPlain<Sum>("kepsAdd_16u", kepsAdd_16u);
    checkPlain<Sum>("kepsAdd_32u", kepsAdd_32u);
    checkPlain<Sum>("kepsAdd_8u16u", kepsAdd_8u16u);
    checkPlain<Product>("kepsMul_8u16u", kepsMul_8u16u);
    checkPlain<Sum>("kepsAdd_16s32f", kepsAdd_16s32f);
    checkPlain<Difference>("kepsSub_16s32f", kepsSub_16s32f);
    checkPlain<Product>("kepsMul_16s32f", kepsMul_16s32f);
    check<Kep32s, Kep16s, Kep32s>({.name = "kepsAdd_16s32s_I",
                                   .call =
                                       [](const Kep16s *a, const Kep32s *b, Kep32s *dst, int n) {
                                           std::memmove(dst, b,
                                                        static_cast<std::size_t>(n) * sizeof *b);
                                           return kepsAdd_16s32s_I(a, dst, n);
                                       },
                                   .oracle =
                                       [](const Kep16s *a, const Kep32s *b, Kep32s *dst, int n) {
                                           for (int i = 0; i < n; ++i)
                                               dst[i] = rule<Kep32s>(Sum::of(a[i], b[i]), 0);
                                           return kepStatusOk;
                                       }});
    const auto constant = [](auto op, Side side, auto f) {
        for (const Kep16s val : {0, 1, -1, 32767, -32768, 1234})
            check<Kep16s, Kep16s>({.name = "in place with a constant of " + show(val),
                                   .call =
                                       [=](const Kep16s *a, Kep16s *dst, int n) {
                                           std::memmove(dst, a, static_cast<std::size_t>(n) * 2);
                                           return f(val, dst, n);
                                       },
                                   .oracle =
                                       [=](const Kep16s *a, Kep16s *dst, int n) {
                                           for (int i = 0; i < n; ++i)
                                               dst[i] = rule<Kep16s>(side == Side::elementFirst
                                                                         ? op.of(a[i], val)
                                                                         : op.of(val, a[i]),
                                                                     0);
                                           return kepStatusOk;
                                       }});
    };
    constant(Sum{}, Side::elementFirst, kepsAddC_16s_I);
    constant(Difference{}, Side::elementSecond, kepsSubC_16s_I);
    constant(Product{}, Side::elementFirst, kepsMulC_16s_I);
}

template <class T, class To>
void checkAddProduct(const char *name, KepStatus (*f)(const T *, const T *, To *, int32_t, int)) {
    auto all = scaleFactors(widthOf<To>);
    for (const int s : all)
        check<To, T, T>(
            {.name = name + std::string(", scale factor ") + std::to_string(s),
             .call = [=](const T *a, const T *b, To *dst, int n) { return f(a, b, dst, n, s); },
             .oracle =
                 [=](const T *a, const T *b, To *dst, int n) {
                     for (int i = 0; i < n; ++i)
                         dst[i] = rule<To>(Product::of(a[i], b[i]) + dst[i], s);
                     return kepStatusOk;
                 },
             .mayAlias = false,
             .lengths = {259},
             .data =
                 [](std::size_t n, Random &random) {
                     auto a = sparse<T>(n, random);
                     return std::tuple{std::move(a), sparse<T>(n, random)};
                 }});
}

TEST(Scaled, addProduct) {
    checkAddProduct("kepsAddProduct_16s_Sfs", kepsAddProduct_16s_Sfs);
    checkAddProduct("kepsAddProduct_16s32s_Sfs", kepsAddProduct_16s32s_Sfs);
    checkAddProduct("kepsAddProduct_32s_Sfs", kepsAddProduct_32s_Sfs);
}

// Every pair of values, by rows, at the scale factors where a rule of its own begins.
TEST(Scaled, everyPairOf8u) {
    std::vector<Kep8u> a(256), b(256), dst(256);
    for (int i = 0; i < 256; ++i) b[static_cast<std::size_t>(i)] = static_cast<Kep8u>(i);
    const auto hold = [&]<class Op>(Op, auto f, const char *name) {
        for (int s = -9; s <= 18; ++s)
            for (int x = 0; x < 256; ++x) {
                a.assign(256, static_cast<Kep8u>(x));
                f(a.data(), b.data(), dst.data(), 256, s);
                for (std::size_t y = 0; y < 256; ++y)
                    ASSERT_EQ((expected<Op, Kep8u>(a[y], b[y], s)), dst[y])
                        << name << ' ' << x << ", " << y << ", scale factor " << s;
            }
    };
    hold(Sum{}, kepsAdd_8u_Sfs, "Add");
    hold(Difference{}, kepsSub_8u_Sfs, "Sub");
    hold(Product{}, kepsMul_8u_Sfs, "Mul");
}

// The sum and the difference of 16s depend on one operand's value once the other is an edge.
TEST(Scaled, every16sAgainstEdges) {
    std::vector<Kep16s> all(65536), other(65536), dst(65536);
    for (int i = 0; i < 65536; ++i)
        all[static_cast<std::size_t>(i)] = static_cast<Kep16s>(i - 32768);
    const auto hold = [&]<class Op>(Op, auto f, const char *name) {
        for (const Kep16s y : {-32768, -32767, -3, -2, -1, 0, 1, 2, 3, 257, 16384, 32767})
            for (const int s : {0, 1, 2, 3, 8, 14, 15, 16, 17, 18, 29, 30, 31, -1, -14, -15, -16}) {
                other.assign(65536, y);
                f(all.data(), other.data(), dst.data(), 65536, s);
                for (std::size_t i = 0; i < 65536; ++i)
                    ASSERT_EQ((expected<Op, Kep16s>(all[i], y, s)), dst[i])
                        << name << ' ' << all[i] << ", " << y << ", scale factor " << s;
            }
    };
    hold(Sum{}, kepsAdd_16s_Sfs, "Add");
    hold(Difference{}, kepsSub_16s_Sfs, "Sub");
    hold(Product{}, kepsMul_16s_Sfs, "Mul");
}

} // namespace
