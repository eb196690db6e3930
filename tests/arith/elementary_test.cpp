// Elementary functions of one argument: integer forms against exact oracles, over all 16-bit inputs
// and every scale factor that matters; float forms against the C library.
#include <cfenv>
#include <cmath>
#include <complex>

#include "harness/elementwise.hpp"

namespace {

using harness::Elementwise;

template <class T>
T saturated(long double x) {
    using L = std::numeric_limits<T>;
    if (x >= static_cast<long double>(L::max())) return L::max();
    if (x <= static_cast<long double>(L::min())) return L::min();
    return static_cast<T>(std::nearbyint(x));
}

using Sfs16s = KepStatus (*)(const Kep16s *, Kep16s *, int, int);
using Sfs32s = KepStatus (*)(const Kep32s *, Kep32s *, int, int);

template <class T>
std::vector<T> everyValue() {
    std::vector<T> all;
    for (long x = std::numeric_limits<T>::min(); x <= std::numeric_limits<T>::max(); ++x)
        all.push_back(static_cast<T>(x));
    return all;
}

// All inputs, a list of scale factors, one oracle of the exact value.
template <class T, class Function, class Oracle>
void holdAllInputs(const char *name, Function function, const std::vector<int> &scales,
                   const Oracle &oracle) {
    const std::vector<T> src = everyValue<T>();
    std::vector<T> dst(src.size());
    for (const int s : scales) {
        function(src.data(), dst.data(), static_cast<int>(src.size()), s);
        for (std::size_t i = 0; i < src.size(); ++i)
            ASSERT_EQ(oracle(src[i], s), dst[i])
                << name << " of " << long(src[i]) << ", scale factor " << s;
    }
}

const std::vector<int> scales = {0,          1,
                                 2,          3,
                                 5,          8,
                                 12,         15,
                                 16,         17,
                                 18,         31,
                                 32,         33,
                                 40,         200,
                                 -1,         -2,
                                 -3,         -7,
                                 -8,         -14,
                                 -15,        -16,
                                 -17,        -18,
                                 -31,        -60,
                                 -61,        -70,
                                 -2000,      2000,
                                 2147483647, -2147483647 - 1};

long double scaled(long double x, int s) {
    return std::scalbln(x, -static_cast<long>(s));
}

TEST(Elementary, AbsSaturates) {
    const Kep16s in16[] = {-32768, -32767, -1, 0, 1, 32767};
    const Kep32s in32[] = {-2147483647 - 1, -5, 0, 2147483647};
    Kep16s out16[6];
    Kep32s out32[4];
    ASSERT_EQ(kepStatusOk, kepsAbs_16s(in16, out16, 6));
    ASSERT_EQ(kepStatusOk, kepsAbs_32s(in32, out32, 4));
    EXPECT_EQ((std::vector<Kep16s>{32767, 32767, 1, 0, 1, 32767}),
              std::vector<Kep16s>(out16, out16 + 6));
    EXPECT_EQ((std::vector<Kep32s>{2147483647, 5, 0, 2147483647}),
              std::vector<Kep32s>(out32, out32 + 4));
    harness::check(Elementwise<Kep64f, Kep64f>{
        "kepsAbs_64f", kepsAbs_64f,
        [](const Kep64f *src, Kep64f *dst, int n) {
            for (int i = 0; i < n; ++i) dst[i] = std::fabs(src[i]);
            return kepStatusOk;
        },
        [](const Kep64f *, Kep64f *srcDst, int n) { return kepsAbs_64f_I(srcDst, n); }});
}

TEST(Elementary, IntegerSquaresAreExact) {
    holdAllInputs<Kep16s>("Sqr_16s", kepsSqr_16s_Sfs, scales, [](Kep16s x, int s) {
        return saturated<Kep16s>(scaled(static_cast<long double>(x) * x, s));
    });
    holdAllInputs<Kep16u>("Sqr_16u", kepsSqr_16u_Sfs, scales, [](Kep16u x, int s) {
        return saturated<Kep16u>(scaled(static_cast<long double>(x) * x, s));
    });
    holdAllInputs<Kep8u>("Sqr_8u", kepsSqr_8u_Sfs, scales, [](Kep8u x, int s) {
        return saturated<Kep8u>(scaled(static_cast<long double>(x) * x, s));
    });
    for (const int s : {0, 1, 4, 15, 31, 32, -3})
        harness::check(Elementwise<Kep16sc, Kep16sc>{
            "kepsSqr_16sc_Sfs",
            [s](const Kep16sc *src, Kep16sc *dst, int n) {
                return kepsSqr_16sc_Sfs(src, dst, n, s);
            },
            [s](const Kep16sc *src, Kep16sc *dst, int n) {
                for (int i = 0; i < n; ++i) {
                    const long double a = src[i].re, b = src[i].im;
                    dst[i] = {saturated<Kep16s>(scaled(a * a - b * b, s)),
                              saturated<Kep16s>(scaled(2 * a * b, s))};
                }
                return kepStatusOk;
            },
            [s](const Kep16sc *, Kep16sc *srcDst, int n) {
                return kepsSqr_16sc_ISfs(srcDst, n, s);
            }});
}

TEST(Elementary, IntegerRoots) {
    const auto single = [](long double x, int s) {
        return scaled(x < 0 ? 0.0F : std::sqrt(static_cast<float>(x)), s);
    };
    holdAllInputs<Kep16s>("Sqrt_16s", kepsSqrt_16s_Sfs, scales,
                          [&](Kep16s x, int s) { return saturated<Kep16s>(single(x, s)); });
    holdAllInputs<Kep16u>("Sqrt_16u", kepsSqrt_16u_Sfs, scales,
                          [&](Kep16u x, int s) { return saturated<Kep16u>(single(x, s)); });
    holdAllInputs<Kep8u>("Sqrt_8u", kepsSqrt_8u_Sfs, scales,
                         [&](Kep8u x, int s) { return saturated<Kep8u>(single(x, s)); });
    for (const int s : {0, 3, 16, 17, 40, -5, -14, -15, -40})
        harness::check(Elementwise<Kep16s, Kep32s>{
            "kepsSqrt_32s16s_Sfs, scale factor " + std::to_string(s),
            [s](const Kep32s *src, Kep16s *dst, int n) {
                return kepsSqrt_32s16s_Sfs(src, dst, n, s);
            },
            [s](const Kep32s *src, Kep16s *dst, int n) {
                bool negative = false;
                for (int i = 0; i < n; ++i) {
                    negative |= src[i] < 0;
                    const long double root = std::sqrt(static_cast<long double>(src[i]));
                    dst[i] = src[i] <= 0 ? 0 : saturated<Kep16s>(scaled(root, s));
                }
                return negative && s <= 16 ? kepStatusSqrtWarning : kepStatusOk;
            },
            nullptr,
            true,
            {1023, 1024, 1025}});
    for (const int s : {0, 2, -4})
        harness::check(Elementwise<Kep16sc, Kep16sc>{
            "kepsSqrt_16sc_Sfs",
            [s](const Kep16sc *src, Kep16sc *dst, int n) {
                return kepsSqrt_16sc_Sfs(src, dst, n, s);
            },
            [s](const Kep16sc *src, Kep16sc *dst, int n) {
                for (int i = 0; i < n; ++i) {
                    const auto z = std::sqrt(std::complex<long double>(src[i].re, src[i].im));
                    dst[i] = {saturated<Kep16s>(scaled(z.real(), s)),
                              saturated<Kep16s>(scaled(z.imag(), s))};
                }
                return kepStatusOk;
            },
            [s](const Kep16sc *, Kep16sc *srcDst, int n) {
                return kepsSqrt_16sc_ISfs(srcDst, n, s);
            },
            true,
            {255, 256, 300}});
}

template <class T>
Elementwise<T, T> rootCase(const char *name, KepStatus (*call)(const T *, T *, int),
                           KepStatus (*inPlace)(T *, int), int threshold) {
    return {name,
            call,
            [](const T *src, T *dst, int n) {
                bool negative = false;
                for (int i = 0; i < n; ++i) {
                    negative |= src[i] < 0;
                    dst[i] = std::sqrt(src[i]);
                }
                return negative ? kepStatusSqrtWarning : kepStatusOk;
            },
            [inPlace](const T *, T *srcDst, int n) { return inPlace(srcDst, n); },
            true,
            {threshold - 1, threshold, threshold + 3}};
}

TEST(Elementary, FloatRootsAreCorrectlyRounded) {
    harness::check(rootCase<Kep32f>("kepsSqrt_32f", kepsSqrt_32f, kepsSqrt_32f_I, 4096));
    harness::check(rootCase<Kep64f>("kepsSqrt_64f", kepsSqrt_64f, kepsSqrt_64f_I, 512));
    // A negative zero is its own root; a single negative element, wherever it lies, is reported and
    // gives the negative NaN.
    std::vector<Kep32f> x(5000, -0.0F), y(x.size());
    EXPECT_EQ(kepStatusOk, kepsSqrt_32f(x.data(), y.data(), 5000));
    EXPECT_TRUE(y[17] == 0 && std::signbit(y[17]));
    for (const std::size_t at : {0U, 2499U, 2500U, 4999U}) {
        x.assign(x.size(), 4);
        x[at] = -1;
        EXPECT_EQ(kepStatusSqrtWarning, kepsSqrt_32f(x.data(), y.data(), 5000));
        EXPECT_TRUE(std::isnan(y[at]) && std::signbit(y[at]));
    }
}

template <class T, class R>
void holdComplexRoots(KepStatus (*function)(const T *, T *, int), double bound) {
    harness::Random random(harness::seed());
    std::vector<T> src;
    for (int i = 0; i < 3000; ++i) {
        const auto part = [&] {
            const int e = static_cast<int>(random() % (sizeof(R) == 4 ? 250 : 2040)) -
                          (sizeof(R) == 4 ? 125 : 1020);
            return std::ldexp(harness::unitValue<R>(random), random() % 3 ? int(random() % 7) : e);
        };
        src.push_back({part(), part()});
    }
    for (const R a : {R(0), -R(0), R(1), R(-1), std::numeric_limits<R>::infinity(),
                      -std::numeric_limits<R>::infinity(), std::numeric_limits<R>::denorm_min(),
                      std::numeric_limits<R>::max()})
        for (const R b : {R(0), -R(0), R(2), R(-2), std::numeric_limits<R>::infinity(),
                          -std::numeric_limits<R>::infinity(), std::numeric_limits<R>::max()})
            src.push_back({a, b});
    std::vector<T> dst(src.size());
    ASSERT_EQ(kepStatusOk, function(src.data(), dst.data(), static_cast<int>(src.size())));
    for (std::size_t i = 0; i < src.size(); ++i) {
        const auto z = std::sqrt(std::complex<long double>(src[i].re, src[i].im));
        const auto near = [&](R got, long double exact) {
            if (std::isinf(static_cast<R>(exact)) || exact == 0)
                return got == static_cast<R>(exact) && std::signbit(got) == std::signbit(exact);
            const long double unit =
                std::max(std::fabs(exact) * std::numeric_limits<R>::epsilon(),
                         static_cast<long double>(std::numeric_limits<R>::denorm_min()));
            return std::fabs(got - exact) <= bound * unit;
        };
        ASSERT_TRUE(near(dst[i].re, z.real()) && near(dst[i].im, z.imag()))
            << harness::show(src[i]) << " gave " << harness::show(dst[i]);
    }
}

TEST(Elementary, ComplexRoots) {
    holdComplexRoots<Kep32fc, Kep32f>(kepsSqrt_32fc, 1);
    holdComplexRoots<Kep64fc, Kep64f>(kepsSqrt_64fc, 4);
}

TEST(Elementary, IntegerExponentials) {
    holdAllInputs<Kep16s>("Exp_16s", kepsExp_16s_Sfs, scales, [](Kep16s x, int s) {
        // Past double's range the exponential is infinite or nothing, whatever the scale.
        return saturated<Kep16s>(scaled(static_cast<double>(expl(x)), s));
    });
    std::vector<Kep32s> src = {-2147483647 - 1, -800, 710, 1000, 2147483647}, dst;
    for (int x = -60; x < 700; ++x) src.push_back(x);
    dst.resize(src.size());
    for (const int s : scales) {
        kepsExp_32s_Sfs(src.data(), dst.data(), static_cast<int>(src.size()), s);
        for (std::size_t i = 0; i < src.size(); ++i) {
            const auto y = static_cast<double>(expl(src[i]));
            ASSERT_EQ(saturated<Kep32s>(scaled(y, s)), dst[i]) << src[i] << ", " << s;
        }
    }
}

template <class T>
T lnOracle(T x, int s) {
    if (x <= 0) return std::numeric_limits<T>::min();
    const long double ln = logl(static_cast<long double>(x));
    if (s >= 0) return static_cast<T>(std::nearbyint(scaled(ln, s)));
    return saturated<T>(scaled(std::nearbyint(ln), s));
}

template <class T>
Elementwise<T, T> lnCase(int s, KepStatus (*call)(const T *, T *, int, int),
                         KepStatus (*inPlace)(T *, int, int)) {
    return {"Ln, scale factor " + std::to_string(s),
            [=](const T *src, T *dst, int n) { return call(src, dst, n, s); },
            [s](const T *src, T *dst, int n) {
                KepStatus status = kepStatusOk;
                for (int i = 0; i < n; ++i) {
                    if (src[i] <= 0 && status == kepStatusOk)
                        status = src[i] == 0 ? kepStatusLogWarning : kepStatusLnNegArg;
                    dst[i] = lnOracle(src[i], s);
                }
                return status;
            },
            [=](const T *, T *srcDst, int n) { return inPlace(srcDst, n, s); }};
}

TEST(Elementary, IntegerLogarithms) {
    holdAllInputs<Kep16s>("Ln_16s", kepsLn_16s_Sfs, scales, lnOracle<Kep16s>);
    for (const int s : {0, 1, -4}) {
        harness::check(lnCase<Kep16s>(s, kepsLn_16s_Sfs, kepsLn_16s_ISfs));
        harness::check(lnCase<Kep32s>(s, kepsLn_32s_Sfs, kepsLn_32s_ISfs));
    }
    // Every step of the wide form, from both sides.
    std::vector<Kep32s> src, dst;
    for (int half = 1; half < 43; ++half)
        for (const int d : {-1, 0, 1, 2})
            src.push_back(static_cast<Kep32s>(std::floor(expl(0.5L * half))) + d);
    dst.resize(src.size());
    for (const int s : scales) {
        kepsLn_32s_Sfs(src.data(), dst.data(), static_cast<int>(src.size()), s);
        for (std::size_t i = 0; i < src.size(); ++i)
            ASSERT_EQ(lnOracle(src[i], s), dst[i]) << src[i] << ", scale factor " << s;
    }
}

TEST(Elementary, FloatLogarithmReportsTheLast) {
    for (const bool inPlace : {false, true}) {
        Kep32f x[] = {1, 0, -1, 2}, z[] = {1, -1, 0, 2};
        Kep64f w[] = {-1, 1, 1, 1, 1, 1, 0};
        const auto call32 = [&](Kep32f *p) {
            return inPlace ? kepsLn_32f_I(p, 4) : kepsLn_32f(p, p, 4);
        };
        EXPECT_EQ(kepStatusLnNegArg, call32(x));
        EXPECT_EQ(kepStatusLogWarning, call32(z));
        EXPECT_EQ(kepStatusLogWarning, inPlace ? kepsLn_64f_I(w, 7) : kepsLn_64f(w, w, 7));
        EXPECT_TRUE(x[0] == 0 && !std::signbit(x[0]) && std::isinf(x[1]) && std::isnan(x[2]) &&
                    std::signbit(x[2]));
        EXPECT_TRUE(std::isnan(w[0]) && std::signbit(w[0]) && w[6] < -1e300);
    }
}

TEST(Elementary, CubeRootsOfIntegers) {
    std::vector<Kep32s> src;
    for (int k = -1290; k <= 1290; ++k) src.push_back(k * k * k); // exact, ties when halved
    for (int k = 1; k < 31; ++k) src.push_back(1 << k);
    src.push_back(-2147483647 - 1);
    std::vector<Kep16s> dst(src.size());
    for (const int s : scales) {
        ASSERT_EQ(kepStatusOk,
                  kepsCubrt_32s16s_Sfs(src.data(), dst.data(), static_cast<int>(src.size()), s));
        for (std::size_t i = 0; i < src.size(); ++i) {
            const auto root = static_cast<float>(cbrtl(static_cast<float>(src[i])));
            ASSERT_EQ(saturated<Kep16s>(scaled(root, s)), dst[i]) << src[i] << ", " << s;
        }
    }
}

// The caller's rounding mode, kept by the function, does not show in the result.
TEST(Elementary, RoundingModeHasNoBearing) {
    harness::Random random(harness::seed());
    const auto src = harness::mixed<Kep32f>(100, random);
    const auto ints = harness::mixed<Kep16s>(100, random);
    std::vector<Kep32f> expected(500);
    std::vector<Kep16s> expectedInts(300);
    const auto all = [&](std::vector<Kep32f> &f, std::vector<Kep16s> &i) {
        kepsExp_32f(src.data(), f.data(), 100);
        kepsLn_32f(src.data(), f.data() + 100, 100);
        kepsSqrt_32f(src.data(), f.data() + 200, 100);
        kepsArctan_32f(src.data(), f.data() + 300, 100);
        kepsCubrt_32f(src.data(), f.data() + 400, 100);
        kepsSqrt_16s_Sfs(ints.data(), i.data(), 100, -3);
        kepsExp_16s_Sfs(ints.data(), i.data() + 100, 100, 17);
        kepsSqr_16s_Sfs(ints.data(), i.data() + 200, 100, 5);
    };
    all(expected, expectedInts);
    for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        std::vector<Kep32f> got(500);
        std::vector<Kep16s> gotInts(300);
        std::fesetround(mode);
        all(got, gotInts);
        const int after = std::fegetround();
        std::fesetround(FE_TONEAREST);
        EXPECT_EQ(mode, after);
        for (std::size_t i = 0; i < got.size(); ++i)
            EXPECT_TRUE(harness::sameValue(expected[i], got[i])) << mode << ", " << i;
        EXPECT_EQ(expectedInts, gotInts);
    }
}

} // namespace
