// The rule of scale factors in exact 128-bit integers, and rows of functions held against it.
#pragma once

#include <climits>

#include "harness/elementwise.hpp"

namespace scaled {

using namespace harness;

__extension__ typedef __int128 Exact;

// x times 2^-s to the nearest integer, ties to even, for any s; exact while |x| < 2^126.
inline Exact rounded(Exact x, int s) {
    if (s <= 0) return x;
    if (s > 126) return 0;
    const Exact whole = x >> s, rest = x - (whole << s), half = Exact{1} << (s - 1);
    return whole + (rest > half || (rest == half && (whole & 1)));
}

template <class T>
T saturated(Exact x) {
    const Exact top = std::numeric_limits<T>::max(), bottom = std::numeric_limits<T>::min();
    return static_cast<T>(x > top ? top : x < bottom ? bottom : x);
}

// The rule. Left shifts of 64 and more saturate whatever is not 0, and so do all of what is 2^63.
template <class T>
T rule(Exact x, int s) {
    if (s >= 0) return saturated<T>(rounded(x, s));
    const Exact most = Exact{1} << 63;
    const Exact near = x > most ? most : x < -most ? -most : x;
    if (s <= -64) return saturated<T>(x == 0 ? 0 : x > 0 ? 2 * most : -2 * most);
    return saturated<T>(near * (Exact{1} << -s));
}

struct Sum {
    template <class A, class B>
    static Exact of(A a, B b) {
        return Exact{a} + b;
    }
};
struct Difference {
    template <class A, class B>
    static Exact of(A a, B b) {
        return Exact{b} - a;
    }
};
struct Product {
    template <class A, class B>
    static Exact of(A a, B b) {
        return Exact{a} * b;
    }
};

// One element's expected result; the parts of complex ones each on their own.
template <class Op, class To, class A, class B>
To expected(A a, B b, int s) {
    if constexpr (!isComplex<To>)
        return rule<To>(Op::of(a, b), s);
    else {
        using R = decltype(To::re);
        if constexpr (std::is_same_v<Op, Product>)
            return {rule<R>(Exact{a.re} * b.re - Exact{a.im} * b.im, s),
                    rule<R>(Exact{a.re} * b.im + Exact{a.im} * b.re, s)};
        else
            return {rule<R>(Op::of(a.re, b.re), s), rule<R>(Op::of(a.im, b.im), s)};
    }
}

// All scale factors around where any type's result vanishes or saturates, and the ends.
inline std::vector<int> scaleFactors(int width) {
    std::vector<int> all;
    for (int s = -width - 3; s <= 2 * width + 3; ++s) all.push_back(s);
    for (const int s : {200, 1 << 20, INT_MAX, -200, -(1 << 20), INT_MIN + 1, INT_MIN})
        all.push_back(s);
    return all;
}

// A source whose results are ties, or next to them, more often than chance has it: few set bits.
template <class T>
T sparseValue(Random &random) {
    if constexpr (isComplex<T>)
        return {sparseValue<decltype(T::re)>(random), sparseValue<decltype(T::im)>(random)};
    else {
        if (random() % 2) return mixedValue<T>(random);
        const auto bit = [&] { return T(T(1) << (random() % (8 * sizeof(T)))); };
        const T x = static_cast<T>(bit() | (random() % 2 ? bit() : T(0)));
        return static_cast<T>(Exact{x} + static_cast<int>(random() % 3) - 1);
    }
}

template <class T>
std::vector<T> sparse(std::size_t n, Random &random) {
    std::vector<T> data(n);
    for (T &x : data) x = sparseValue<T>(random);
    return data;
}

template <class T>
inline constexpr int widthOf = 8 * static_cast<int>(sizeof(typename RealOf<T>::type));

// Two arrays under every scale factor: the harness at a few, long random arrays at all.
template <class Op, class To, class A, class B>
void checkArrays(const char *name, KepStatus (*f)(const A *, const B *, To *, int32_t, int),
                 KepStatus (*inPlace)(const A *, To *, int32_t, int) = nullptr) {
    Random random(seed());
    for (const int s : {0, 1, 2, -1, 7, widthOf<To>, -3}) {
        Elementwise<To, A, B> test{
            .name = std::string(name) + ", scale factor " + std::to_string(s),
            .call = [=](const A *a, const B *b, To *dst, int n) { return f(a, b, dst, n, s); },
            .oracle =
                [=](const A *a, const B *b, To *dst, int n) {
                    for (int i = 0; i < n; ++i) dst[i] = expected<Op, To>(a[i], b[i], s);
                    return kepStatusOk;
                },
            .mayAlias = sizeof(A) == sizeof(To) && sizeof(B) == sizeof(To),
            .lengths = {255, 256, 259}};
        if (inPlace)
            test.inPlace = [=](const A *a, const B *, To *dst, int n) {
                return inPlace(a, dst, n, s);
            };
        check(test);
        if (::testing::Test::HasFailure()) return;
    }
    constexpr std::size_t n = 1031;
    for (const int s : scaleFactors(widthOf<To>)) {
        const auto a = sparse<A>(n, random);
        const auto b = sparse<B>(n, random);
        std::vector<To> dst(n);
        ASSERT_EQ(kepStatusOk, f(a.data(), b.data(), dst.data(), int{n}, s)) << name << s;
        for (std::size_t i = 0; i < n; ++i) {
            const To e = expected<Op, To>(a[i], b[i], s);
            ASSERT_TRUE(sameValue(e, dst[i]))
                << name << ", scale factor " << s << ": " << show(a[i]) << ", " << show(b[i])
                << " expected " << show(e) << " got " << show(dst[i]) << ", seed " << seed();
        }
    }
}

// The element as first operand, as AddC and MulC have it, or as second, as SubC's order is.
enum class Side { elementFirst, elementSecond };

template <class Op, class T>
void checkConstant(const char *name, Side side, KepStatus (*f)(const T *, T, T *, int32_t, int),
                   KepStatus (*inPlace)(T, T *, int32_t, int)) {
    const auto one = [=](T x, T val, int s) {
        return side == Side::elementFirst ? expected<Op, T>(x, val, s) : expected<Op, T>(val, x, s);
    };
    Random random(seed());
    std::vector<T> constants(3);
    using R = typename RealOf<T>::type;
    if constexpr (isComplex<T>)
        constants = {{},
                     {1, 0},
                     {0, std::numeric_limits<R>::min()},
                     {std::numeric_limits<R>::min(), std::numeric_limits<R>::min()}};
    else
        constants = {0, 1, std::numeric_limits<R>::max(), std::numeric_limits<R>::min()};
    for (int k = 0; k < 3; ++k) constants.push_back(sparseValue<T>(random));
    for (const T val : constants) {
        for (const int s : {0, 1, 5, -1}) {
            check<T, T>(
                {.name = std::string(name) + ", scale factor " + std::to_string(s) + ", constant " +
                         show(val),
                 .call = [=](const T *a, T *dst, int n) { return f(a, val, dst, n, s); },
                 .oracle =
                     [=](const T *a, T *dst, int n) {
                         for (int i = 0; i < n; ++i) dst[i] = one(a[i], val, s);
                         return kepStatusOk;
                     },
                 .inPlace = [=](const T *, T *dst, int n) { return inPlace(val, dst, n, s); }});
            if (::testing::Test::HasFailure()) return;
        }
        constexpr std::size_t n = 259;
        for (const int s : scaleFactors(widthOf<T>)) {
            const auto a = sparse<T>(n, random);
            std::vector<T> dst(n);
            ASSERT_EQ(kepStatusOk, f(a.data(), val, dst.data(), int{n}, s)) << name;
            for (std::size_t i = 0; i < n; ++i)
                ASSERT_TRUE(sameValue(one(a[i], val, s), dst[i]))
                    << name << ", scale factor " << s << ": " << show(a[i]) << ", constant "
                    << show(val) << " expected " << show(one(a[i], val, s)) << " got "
                    << show(dst[i]) << ", seed " << seed();
        }
    }
}

} // namespace scaled
