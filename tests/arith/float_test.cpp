// Float arithmetic, bit for bit against the stated order of scalar operations.
#include <cmath>

#include "harness/elementwise.hpp"

namespace {

using namespace harness;

const std::vector<int> longLengths = {127, 128, 129, 255, 1000};

// Scalar operations in the library's order; volatile keeps the compiler's hands off it.
template <class C>
C product(C a, C b) {
    if constexpr (isComplex<C>) {
        using R = decltype(a.re);
        const volatile R rr = a.re * b.re, ii = a.im * b.im, ir = a.im * b.re, ri = a.re * b.im;
        return {rr - ii, ir + ri};
    } else {
        return a * b;
    }
}
template <class C>
C sum(C a, C b) {
    if constexpr (isComplex<C>)
        return {a.re + b.re, a.im + b.im};
    else
        return a + b;
}
// The second minus the first.
template <class C>
C difference(C a, C b) {
    if constexpr (isComplex<C>)
        return {b.re - a.re, b.im - a.im};
    else
        return b - a;
}

template <class T>
void checkArrays(const char *name, T (*op)(T, T),
                 KepStatus (*f)(const T *, const T *, T *, int32_t),
                 KepStatus (*inPlace)(const T *, T *, int32_t)) {
    check<T, T, T>(
        {.name = name,
         .call = f,
         .oracle =
             [=](const T *a, const T *b, T *dst, int n) {
                 for (int i = 0; i < n; ++i) dst[i] = op(a[i], b[i]);
                 return kepStatusOk;
             },
         .inPlace = [=](const T *a, const T *, T *dst, int n) { return inPlace(a, dst, n); },
         .lengths = longLengths});
}

TEST(Float, arrays) {
#define ROW(name, op, t) checkArrays<Kep##t>(#name "_" #t, op, name##_##t, name##_##t##_I);
#define ROWS(name, op) ROW(name, op, 32f) ROW(name, op, 64f) ROW(name, op, 32fc) ROW(name, op, 64fc)
    ROWS(kepsAdd, sum)
    ROWS(kepsSub, difference)
    ROWS(kepsMul, product)
}

// one(element, constant) is the expected value.
template <class T, class One>
void checkConstant(const char *name, One one, KepStatus (*f)(const T *, T, T *, int32_t),
                   KepStatus (*inPlace)(T, T *, int32_t)) {
    std::vector<T> constants;
    const auto nan = NAN, inf = INFINITY;
    if constexpr (isComplex<T>)
        constants = {{0, 0}, {1, 0}, {-0.0F, 1.5F}, {inf, nan}, {1e-40F, -3}};
    else
        constants = {T(1.7), 1, 0, T(-0.0), -1, nan, inf, T(1e-40)};
    for (const T val : constants)
        check<T, T>({.name = name + std::string(", constant ") + show(val),
                     .call = [=](const T *src, T *dst, int n) { return f(src, val, dst, n); },
                     .oracle =
                         [=](const T *src, T *dst, int n) {
                             for (int i = 0; i < n; ++i) dst[i] = one(src[i], val);
                             return kepStatusOk;
                         },
                     .inPlace = [=](const T *, T *dst, int n) { return inPlace(val, dst, n); },
                     .lengths = longLengths});
}

// Real constants of 0 copy every bit, -0 included, and a factor of 0 hides NaN and infinity.
template <class T>
T plus(T x, T val) {
    if constexpr (!isComplex<T>)
        if (val == 0) return x;
    return sum(x, val);
}
template <class T>
T minus(T x, T val) {
    if constexpr (!isComplex<T>)
        if (val == 0) return x;
    return difference(val, x);
}
template <class T>
T times(T x, T val) {
    if constexpr (!isComplex<T>)
        if (val == 0) return 0;
    return product(x, val);
}

TEST(Float, constants) {
#undef ROW
#define ROW(name, op, t)                                                                           \
    checkConstant<Kep##t>(#name "_" #t, op<Kep##t>, name##_##t, name##_##t##_I);
    ROWS(kepsAddC, plus)
    ROWS(kepsSubC, minus)
    ROWS(kepsSubCRev, difference)
    ROWS(kepsMulC, times)
}

TEST(Float, zeroCopiesNaNPayloads) {
    const std::uint64_t bits[3] = {0x7FF8000000000123, 0xFFF0000000000001, 0x8000000000000000};
    Kep64f src[3], dst[3];
    std::memcpy(src, bits, sizeof src);
    for (const auto f : {kepsAddC_64f, kepsSubC_64f}) {
        ASSERT_EQ(kepStatusOk, f(src, -0.0, dst, 3));
        EXPECT_EQ(0, std::memcmp(bits, dst, sizeof dst));
        ASSERT_EQ(kepStatusOk, f(src, 0.0, src, 3));
        EXPECT_EQ(0, std::memcmp(bits, src, sizeof src));
    }
}

TEST(Float, realTimesComplex) {
    check<Kep32fc, Kep32f, Kep32fc>(
        {.name = "kepsMul_32f32fc",
         .call = kepsMul_32f32fc,
         .oracle =
             [](const Kep32f *a, const Kep32fc *b, Kep32fc *dst, int n) {
                 for (int i = 0; i < n; ++i) dst[i] = {a[i] * b[i].re, a[i] * b[i].im};
                 return kepStatusOk;
             },
         .inPlace = [](const Kep32f *a, const Kep32fc *, Kep32fc *dst,
                       int n) { return kepsMul_32f32fc_I(a, dst, n); },
         .mayAlias = false,
         .lengths = longLengths});
}

template <class T>
void checkAddProduct(const char *name, KepStatus (*f)(const T *, const T *, T *, int32_t)) {
    // Lengths on both sides of where prefetching begins.
    const int threshold = 32768 / (3 * static_cast<int>(sizeof(T)));
    check<T, T, T>({.name = name,
                    .call = f,
                    .oracle =
                        [](const T *a, const T *b, T *dst, int n) {
                            for (int i = 0; i < n; ++i) dst[i] = sum(dst[i], product(a[i], b[i]));
                            return kepStatusOk;
                        },
                    .mayAlias = false,
                    .lengths = {128, 1000, threshold, threshold + 1, 2 * threshold}});
}

TEST(Float, addProduct) {
    checkAddProduct("kepsAddProduct_32f", kepsAddProduct_32f);
    checkAddProduct("kepsAddProduct_64f", kepsAddProduct_64f);
    checkAddProduct("kepsAddProduct_32fc", kepsAddProduct_32fc);
    checkAddProduct("kepsAddProduct_64fc", kepsAddProduct_64fc);
    for (const float val : {1.5F, 0.0F, 1.0F})
        check<Kep32f, Kep32f>({.name = "kepsAddProductC_32f by " + show(val),
                               .call = [=](const Kep32f *src, Kep32f *dst,
                                           int n) { return kepsAddProductC_32f(src, val, dst, n); },
                               .oracle =
                                   [=](const Kep32f *src, Kep32f *dst, int n) {
                                       for (int i = 0; i < n; ++i)
                                           dst[i] = dst[i] + product(src[i], val);
                                       return kepStatusOk;
                                   },
                               .mayAlias = false});
}

// Products of packed spectra by walking over the bins' places: reals where isReal says, pairs
// elsewhere, the second factor conjugated or not.
template <class T>
struct Packed {
    bool (*isReal)(int i, int n);
    bool conjugated = false;

    KepStatus operator()(const T *a, const T *b, T *dst, int n) const {
        for (int i = 0; i < n; ++i) {
            if (isReal(i, n)) {
                dst[i] = a[i] * b[i];
                continue;
            }
            const volatile T rr = a[i] * b[i], ii = a[i + 1] * b[i + 1];
            const volatile T ir = a[i + 1] * b[i], ri = a[i] * b[i + 1];
            dst[i] = conjugated ? rr + ii : rr - ii;
            dst[i + 1] = conjugated ? ir - ri : ir + ri;
            ++i;
        }
        return kepStatusOk;
    }
};

bool realInPerm(int i, int n) {
    return i == 0 || (i == 1 && n % 2 == 0);
}
bool realInPack(int i, int n) {
    return i == 0 || (i == n - 1 && n % 2 == 0);
}

template <class T>
void checkPacked(const char *name, Packed<T> oracle,
                 KepStatus (*f)(const T *, const T *, T *, int32_t),
                 KepStatus (*inPlace)(const T *, T *, int32_t)) {
    Elementwise<T, T, T> test{.name = name, .call = f, .oracle = oracle, .lengths = longLengths};
    test.inPlace = [=](const T *a, const T *, T *dst, int n) { return inPlace(a, dst, n); };
    if (!f)
        test.call = [=](const T *a, const T *b, T *dst, int n) {
            std::memmove(dst, b, static_cast<std::size_t>(n) * sizeof(T));
            return inPlace(a, dst, n);
        };
    test.mayAlias = f != nullptr;
    check(test);
}

TEST(Float, packedSpectra) {
    checkPacked<Kep32f>("kepsMulPerm_32f", {realInPerm}, kepsMulPerm_32f, kepsMulPerm_32f_I);
    checkPacked<Kep64f>("kepsMulPerm_64f", {realInPerm}, kepsMulPerm_64f, kepsMulPerm_64f_I);
    checkPacked<Kep32f>("kepsMulPack_32f", {realInPack}, kepsMulPack_32f, kepsMulPack_32f_I);
    checkPacked<Kep64f>("kepsMulPack_64f", {realInPack}, kepsMulPack_64f, kepsMulPack_64f_I);
    checkPacked<Kep32f>("kepsMulPackConj_32f_I", {realInPack, true}, nullptr,
                        kepsMulPackConj_32f_I);
    checkPacked<Kep64f>("kepsMulPackConj_64f_I", {realInPack, true}, nullptr,
                        kepsMulPackConj_64f_I);
}

// Complex sums refuse a bad length ahead of null pointers, all else after it.
TEST(Float, complexSumsTestTheLengthFirst) {
    Kep32fc a[4] = {}, b[4] = {};
    for (const auto f : {kepsAdd_32fc, kepsSub_32fc})
        for (const int n : {0, -1, INT32_MIN, INT32_MIN + 1}) {
            EXPECT_EQ(kepStatusBadLength, f(nullptr, nullptr, nullptr, n));
            EXPECT_EQ(kepStatusBadLength, f(a, b, b, n));
        }
    Kep64fc c[4] = {}, d[4] = {};
    for (const auto f : {kepsAdd_64fc, kepsSub_64fc}) {
        EXPECT_EQ(kepStatusBadLength, f(nullptr, c, d, 0));
        EXPECT_EQ(kepStatusNullPointer, f(nullptr, c, d, 4));
        EXPECT_EQ(kepStatusNullPointer, f(c, nullptr, d, 4));
        EXPECT_EQ(kepStatusNullPointer, f(c, d, nullptr, 4));
    }
    for (const auto f : {kepsAdd_32fc_I, kepsSub_32fc_I}) {
        EXPECT_EQ(kepStatusBadLength, f(nullptr, a, 0));
        EXPECT_EQ(kepStatusNullPointer, f(a, nullptr, 4));
    }
    for (const auto f : {kepsAdd_64fc_I, kepsSub_64fc_I}) {
        EXPECT_EQ(kepStatusBadLength, f(c, nullptr, -1));
        EXPECT_EQ(kepStatusNullPointer, f(nullptr, d, 4));
    }
}

} // namespace
