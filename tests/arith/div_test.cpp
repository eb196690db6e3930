// The division family against exact rational results, or the stated order of float arithmetic.
#include <cmath>
#include <xmmintrin.h>

#include "arith/exact.hpp"
#include "harness/elementwise.hpp"

namespace {

using namespace harness;

using namespace exact;

// One element, its substitute included; isWarned is set, never cleared.
template <class T>
T expectedQuotient(Wide divisor, Wide dividend, int s, bool &isWarned,
                   int rndMode = kepRoundNearest) {
    using L = std::numeric_limits<T>;
    if (divisor == 0) {
        isWarned = true;
        return dividend == 0 ? T{0} : (dividend > 0 ? L::max() : L::min());
    }
    return clamped<T>(roundedQuotient(dividend, divisor, s, rndMode));
}

// Divisors: mostly not zero, so that short arrays are tested without a warning too.
template <class T>
T divisorValue(Random &random) {
    const T x = random() % 3 ? static_cast<T>(random() % 20 + 1) : mixedValue<T>(random);
    return x == 0 && random() % 4 ? T{1} : x;
}

// Scale factors over each window, its limits, and far outside.
std::vector<int> scaleFactors(int least, int most) {
    return {0,        1,        2,       3,       5,     -1,        -2,        -3,
            -4,       -6,       -7,      -8,      least, least - 1, least + 1, most,
            most + 1, most - 1, INT_MIN, INT_MAX, 40,    -40,       -20};
}

template <class To, class Divisor, class Dividend, class Function>
void checkDiv(const std::string &name, Function f, std::vector<int> scales, int threshold) {
    for (const int s : scales) {
        const int e = std::clamp(s, -62, 64);
        check<To, Divisor, Dividend>(
            {.name = name + ", scale factor " + std::to_string(s),
             .call = [=](const Divisor *src1, const Dividend *src2, To *dst,
                         int n) { return f(src1, src2, dst, n, s); },
             .oracle =
                 [=](const Divisor *src1, const Dividend *src2, To *dst, int n) {
                     bool isWarned = false;
                     for (int i = 0; i < n; ++i)
                         dst[i] = expectedQuotient<To>(src1[i], src2[i], e, isWarned);
                     return isWarned ? kepStatusDivisionWarning : kepStatusOk;
                 },
             .lengths = {threshold - 1, threshold, threshold + 1},
             .data =
                 [](std::size_t n, Random &random) {
                     return std::tuple{generate<Divisor>(n, random, divisorValue<Divisor>),
                                       mixed<Dividend>(n, random)};
                 }});
        if (testing::Test::HasFailure()) return;
    }
}

TEST(Div, integers) {
    checkDiv<Kep8u, Kep8u, Kep8u>("kepsDiv_8u_Sfs", kepsDiv_8u_Sfs, scaleFactors(-15, 8), 1024);
    checkDiv<Kep16u, Kep16u, Kep16u>("kepsDiv_16u_Sfs", kepsDiv_16u_Sfs, scaleFactors(-31, 16),
                                     100);
    checkDiv<Kep16s, Kep16s, Kep16s>("kepsDiv_16s_Sfs", kepsDiv_16s_Sfs, scaleFactors(-30, 15),
                                     1024);
    checkDiv<Kep16s, Kep16s, Kep32s>("kepsDiv_32s16s_Sfs", kepsDiv_32s16s_Sfs,
                                     scaleFactors(-29, 31), 1024);
    // A double holds quotients of 32 bits well enough while the scale is at most 2^19.
    checkDiv<Kep32s, Kep32s, Kep32s>("kepsDiv_32s_Sfs", kepsDiv_32s_Sfs,
                                     {0, 1, -1, 3, -6, -19, 31, 32, 33, INT_MAX, -63, -70, INT_MIN},
                                     1024);
}

// In double as stated, where double is not exact.
TEST(Div, quotientsOf32sByLargeScales) {
    Random random(seed());
    for (const int s : {-20, -25, -31, -40, -61, -62}) {
        const auto divisors = generate<Kep32s>(4000, random, divisorValue<Kep32s>);
        const auto dividends = mixed<Kep32s>(4000, random);
        std::vector<Kep32s> dst(4000);
        kepsDiv_32s_Sfs(divisors.data(), dividends.data(), dst.data(), 4000, s);
        for (std::size_t i = 0; i < dst.size(); ++i) {
            if (divisors[i] == 0) continue;
            const double q = std::ldexp(static_cast<double>(dividends[i]) / divisors[i], -s);
            ASSERT_EQ(static_cast<Kep32s>(std::clamp(std::nearbyint(q), -0x1p31, 0x1p31 - 1)),
                      dst[i])
                << dividends[i] << " over " << divisors[i] << ", scale factor " << s;
        }
    }
}

// Every pair of bytes, and every caller's rounding mode.
TEST(Div, allPairsOfBytes) {
    std::vector<Kep8u> divisors(65536), dividends(65536), dst(65536);
    for (std::size_t i = 0; i < 65536; ++i) {
        divisors[i] = static_cast<Kep8u>(i);
        dividends[i] = static_cast<Kep8u>(i >> 8);
    }
    const unsigned old = _mm_getcsr();
    for (const int s : {0, 1, 2, 8, -1, -3, -8, -15, 9, -16})
        for (const unsigned control : {0U, 0x2000U, 0x4000U, 0x6000U})
            for (int mode = -1; mode < 3; ++mode) {
                const int rule = mode < 0 ? int{kepRoundNearest} : mode;
                _mm_setcsr((old & ~0x6000U) | control);
                const KepStatus status =
                    mode < 0
                        ? kepsDiv_8u_Sfs(divisors.data(), dividends.data(), dst.data(), 65536, s)
                        : kepsDiv_Round_8u_Sfs(divisors.data(), dividends.data(), dst.data(), 65536,
                                               mode, s);
                const unsigned after = _mm_getcsr();
                _mm_setcsr(old);
                EXPECT_EQ(control, after & 0x6000);
                EXPECT_EQ(kepStatusDivisionWarning, status);
                for (std::size_t i = 0; i < 65536; ++i) {
                    bool isWarned;
                    ASSERT_EQ(expectedQuotient<Kep8u>(divisors[i], dividends[i], s, isWarned, rule),
                              dst[i])
                        << +dividends[i] << " over " << +divisors[i] << ", scale factor " << s
                        << ", mode " << mode << ", caller's " << control;
                }
            }
}

template <class T>
void checkRound(const std::string &name,
                KepStatus (*f)(const T *, const T *, T *, int32_t, int, int),
                KepStatus (*inPlace)(const T *, T *, int32_t, int, int), int threshold) {
    for (int mode = 0; mode < 3; ++mode)
        // Exact in float down to -6; below the window's limit of -30 all saturates.
        for (const int s : {0, 1, 2, 7, -1, -3, -6, 15, 16, 17, 30, INT_MAX, -31, INT_MIN}) {
            const int e = s < -30 ? -64 : std::min(s, 64);
            check<T, T, T>({.name = name + ", mode " + std::to_string(mode) + ", scale factor " +
                                    std::to_string(s),
                            .call = [=](const T *a, const T *b, T *d,
                                        int n) { return f(a, b, d, n, mode, s); },
                            .oracle =
                                [=](const T *a, const T *b, T *d, int n) {
                                    bool isWarned = false;
                                    for (int i = 0; i < n; ++i)
                                        d[i] = expectedQuotient<T>(a[i], b[i], e, isWarned, mode);
                                    return isWarned ? kepStatusDivisionWarning : kepStatusOk;
                                },
                            .inPlace = [=](const T *a, const T *, T *d, int n) -> KepStatus {
                                return inPlace(a, d, n, mode, s);
                            },
                            .lengths = {threshold - 1, threshold, threshold + 1},
                            .data =
                                [](std::size_t n, Random &random) {
                                    return std::tuple{generate<T>(n, random, divisorValue<T>),
                                                      mixed<T>(n, random)};
                                }});
            if (testing::Test::HasFailure()) return;
        }
    T one = 1;
    for (const int mode : {-1, 3, INT_MAX}) {
        EXPECT_EQ(kepStatusBadRoundMode, f(&one, &one, &one, 1, mode, 0));
        EXPECT_EQ(kepStatusBadLength, f(&one, &one, &one, 0, mode, 0));
        EXPECT_EQ(kepStatusNullPointer, f(&one, nullptr, &one, 0, mode, 0));
    }
}

TEST(DivRound, modes) {
    checkRound("kepsDiv_Round_8u_Sfs", kepsDiv_Round_8u_Sfs, kepsDiv_Round_8u_ISfs, 512);
    checkRound("kepsDiv_Round_16u_Sfs", kepsDiv_Round_16u_Sfs, kepsDiv_Round_16u_ISfs, 1024);
    checkRound("kepsDiv_Round_16s_Sfs", kepsDiv_Round_16s_Sfs, kepsDiv_Round_16s_ISfs, 1024);
}

// 16sc: sums exact, one reciprocal in double, two products.
Kep16sc expectedComplex(Kep16sc divisor, Kep16sc dividend, int s, bool isWrapping, bool &isWarned) {
    const std::int64_t a = dividend.re, b = dividend.im, c = divisor.re, d = divisor.im;
    const std::int64_t m = c * c + d * d;
    if (m == 0) {
        isWarned = true;
        return {0, 0};
    }
    const auto part = [&](std::int64_t sum) {
        if (isWrapping) sum = static_cast<std::int32_t>(sum);
        const double r = std::ldexp(1.0 / static_cast<double>(m), -s);
        return static_cast<Kep16s>(
            std::clamp(std::nearbyint(static_cast<double>(sum) * r), -32768.0, 32767.0));
    };
    return {part(a * c + b * d), part(b * c - a * d)};
}

std::vector<Kep16sc> complexCases(std::size_t n, Random &random) {
    auto data = mixed<Kep16sc>(n, random);
    for (auto &x : data) switch (random() % 6) {
        case 0:
            x = {-32768, -32768};
            break;
        case 1:
            x = {0, 0};
            break;
        case 2:
            x = {static_cast<Kep16s>(random() % 9 - 4), static_cast<Kep16s>(random() % 9 - 4)};
        }
    return data;
}

TEST(Div, complex16s) {
    for (const int s : {0, 1, -1, 5, 15, 32, 33, 100, -15, -31, -32, -33, -40, INT_MIN, INT_MAX})
        check<Kep16sc, Kep16sc, Kep16sc>(
            {.name = "kepsDiv_16sc_Sfs, scale factor " + std::to_string(s),
             .call = [=](const Kep16sc *a, const Kep16sc *b, Kep16sc *d,
                         int n) { return kepsDiv_16sc_Sfs(a, b, d, n, s); },
             .oracle =
                 [=](const Kep16sc *a, const Kep16sc *b, Kep16sc *d, int n) {
                     bool isWarned = false;
                     for (int i = 0; i < n; ++i)
                         d[i] = expectedComplex(a[i], b[i], std::clamp(s, -100, 100), s < -32,
                                                isWarned);
                     return isWarned ? kepStatusDivisionWarning : kepStatusOk;
                 },
             // Above the window dst is cleared ahead of the look at the divisors.
             .mayAlias = s <= 32,
             .lengths = {255, 256, 257},
             .data =
                 [](std::size_t n, Random &random) {
                     return std::tuple{complexCases(n, random), complexCases(n, random)};
                 }});
    for (const int s : {0, 3, 15, 16, 99, -16, -17, -30, INT_MIN})
        for (const Kep16sc val : {Kep16sc{3, 4}, Kep16sc{-32768, -32768}, Kep16sc{0, -32768},
                                  Kep16sc{1, 0}, Kep16sc{-7, 123}})
            check<Kep16sc, Kep16sc>(
                {.name =
                     "kepsDivC_16sc_Sfs by " + show(val) + ", scale factor " + std::to_string(s),
                 .call = [=](const Kep16sc *src, Kep16sc *d,
                             int n) { return kepsDivC_16sc_Sfs(src, val, d, n, s); },
                 .oracle =
                     [=](const Kep16sc *src, Kep16sc *d, int n) {
                         bool isWarned = false;
                         for (int i = 0; i < n; ++i)
                             d[i] = s > 15 ? Kep16sc{0, 0}
                                           : expectedComplex(val, src[i], std::max(s, -100), false,
                                                             isWarned);
                         return kepStatusOk;
                     },
                 .inPlace = [=](const Kep16sc *, Kep16sc *d,
                                int n) { return kepsDivC_16sc_ISfs(val, d, n, s); },
                 .lengths = {1023, 1024, 1025},
                 .data = [](std::size_t n,
                            Random &random) { return std::tuple{complexCases(n, random)}; }});
    Kep16sc x[2] = {{1, 2}, {3, 4}};
    EXPECT_EQ(kepStatusDivideByZero, kepsDivC_16sc_Sfs(x, {0, 0}, x, 2, 0));
    EXPECT_EQ(kepStatusDivideByZero, kepsDivC_16sc_Sfs(x, {0, 0}, x, 2, 99));
}

// Every constant, every element, every scale factor of the window and beyond.
TEST(DivC, allConstantsAndBytes) {
    std::vector<Kep8u> src(4097), dst(4097);
    for (std::size_t i = 0; i < src.size(); ++i) src[i] = static_cast<Kep8u>(i);
    const unsigned old = _mm_getcsr();
    for (int val = 1; val < 256; ++val)
        for (int s = -17; s <= 10; ++s) {
            _mm_setcsr((old & ~0x6000U) | (static_cast<unsigned>(val + s) & 3) << 13);
            const KepStatus status =
                kepsDivC_8u_Sfs(src.data(), static_cast<Kep8u>(val), dst.data(), 4097, s);
            _mm_setcsr(old);
            ASSERT_EQ(kepStatusOk, status);
            for (std::size_t i = 0; i < 256; ++i)
                ASSERT_EQ(clamped<Kep8u>(roundedQuotient(src[i], val, s)), dst[i])
                    << i << " over " << val << ", scale factor " << s;
        }
}

// Every element of 16 bits, over constants of every kind.
template <class T>
void checkDivC16(KepStatus (*f)(const T *, T, T *, int32_t, int), int least, int most) {
    std::vector<T> src(65536), dst(65536);
    for (std::size_t i = 0; i < 65536; ++i) src[i] = static_cast<T>(i);
    Random random(seed());
    for (int k = 0; k < 400; ++k) {
        const T val = k < 60 ? static_cast<T>(k - 30) : mixedValue<T>(random);
        const auto span = static_cast<unsigned>(most + 2 - least);
        // Below the window, near 0 where the kernels change, anywhere within.
        const int s = k % 8 == 0   ? least - 1 - k
                      : k % 2 == 0 ? static_cast<int>(random() % 8) - 4
                                   : least + static_cast<int>(random() % span);
        const KepStatus status = f(src.data(), val, dst.data(), 65536, s);
        if (val == 0) continue;
        ASSERT_EQ(kepStatusOk, status);
        for (std::size_t i = 0; i < 65536; ++i)
            ASSERT_EQ(std::is_unsigned_v<T> && s < least
                          ? T(65535) // of 0 too
                          : clamped<T>(roundedQuotient(src[i], val, std::max(s, -60))),
                      dst[i])
                << src[i] << " over " << val << ", scale factor " << s;
    }
    EXPECT_EQ(kepStatusDivideByZero, f(src.data(), 0, dst.data(), 9, 0));
    EXPECT_EQ(kepStatusDivideByZero, f(src.data(), 0, dst.data(), 9, most + 1));
}

TEST(DivC, everyElementOf16Bits) {
    checkDivC16<Kep16s>(kepsDivC_16s_Sfs, -30, 15);
    checkDivC16<Kep16u>(kepsDivC_16u_Sfs, -31, 16);
}

template <class T>
void checkDivCPlaces(const std::string &name, KepStatus (*f)(const T *, T, T *, int32_t, int),
                     KepStatus (*inPlace)(T, T *, int32_t, int), int threshold) {
    for (const int s : {0, 2, -2, -9, -31, 40})
        check<T, T>({.name = name + ", scale factor " + std::to_string(s),
                     .call = [=](const T *src, T *d, int n) { return f(src, 7, d, n, s); },
                     .oracle =
                         [=](const T *src, T *d, int n) {
                             for (int i = 0; i < n; ++i)
                                 d[i] = clamped<T>(roundedQuotient(src[i], 7, s));
                             return kepStatusOk;
                         },
                     .inPlace = [=](const T *, T *d, int n) { return inPlace(7, d, n, s); },
                     .lengths = {threshold - 1, threshold, threshold + 1}});
}

TEST(DivC, places) {
    checkDivCPlaces<Kep8u>("kepsDivC_8u_Sfs", kepsDivC_8u_Sfs, kepsDivC_8u_ISfs, 4096);
    checkDivCPlaces<Kep16s>("kepsDivC_16s_Sfs", kepsDivC_16s_Sfs, kepsDivC_16s_ISfs, 4096);
    checkDivCPlaces<Kep16u>("kepsDivC_16u_Sfs", kepsDivC_16u_Sfs, kepsDivC_16u_ISfs, 200);
}

// Settled cases of 16u come ahead of its tests.
TEST(DivC, orderOfTests16u) {
    Kep16u x[3] = {0, 5, 9}, d[3] = {1, 1, 1};
    EXPECT_EQ(kepStatusNullPointer, kepsDivC_16u_Sfs(nullptr, 3, d, 0, 17));
    EXPECT_EQ(kepStatusBadLength, kepsDivC_16u_Sfs(x, 3, d, 0, 17));
    EXPECT_EQ(kepStatusBadLength, kepsDivC_16u_Sfs(x, 3, d, -1, -32));
    EXPECT_EQ(kepStatusNullPointer, kepsDivC_16u_Sfs(x, 3, nullptr, 0, -32));
    EXPECT_EQ(kepStatusBadLength, kepsDivC_16u_Sfs(x, 1, d, 0, 0));
    EXPECT_EQ(kepStatusBadLength, kepsDivC_16u_Sfs(x, 0, d, 0, 17));
    EXPECT_EQ(kepStatusDivideByZero, kepsDivC_16u_Sfs(x, 0, d, 3, 17));
    EXPECT_EQ(1, d[0]);
    EXPECT_EQ(kepStatusOk, kepsDivC_16u_Sfs(x, 3, d, 3, -32));
    for (const Kep16u y : d) EXPECT_EQ(65535, y);
}

// num * 2^-s / den in 64 bits for any scale factor, bit by bit.
Kep64s expected64(Kep64s x, Kep64s val, int s) {
    using L = std::numeric_limits<Kep64s>;
    const bool negative = (x < 0) != (val < 0);
    const auto num = static_cast<UnsignedWide>(x < 0 ? -Wide{x} : Wide{x});
    const auto den = static_cast<UnsignedWide>(val < 0 ? -Wide{val} : Wide{val});
    UnsignedWide q = num / den, rest = num % den;
    bool isAbove = false, isTie = false; // of the fraction, against one half
    if (s > 0) {
        const int e = std::min(s, 100);
        const UnsignedWide low = q & ((static_cast<UnsignedWide>(1) << e) - 1);
        const UnsignedWide half = static_cast<UnsignedWide>(1) << (e - 1);
        isTie = low == half && rest == 0;
        isAbove = low > half || (low == half && rest != 0);
        q >>= e;
    } else {
        for (long long k = 0; k > s && k > -200; --k) {
            rest *= 2;
            q = std::min(2 * q + (rest >= den), static_cast<UnsignedWide>(1) << 64);
            if (rest >= den) rest -= den;
        }
        isTie = 2 * rest == den;
        isAbove = 2 * rest > den;
    }
    q += isAbove || (isTie && (q & 1));
    const Wide limit = negative ? -Wide{L::min()} : Wide{L::max()};
    const Wide bounded = std::min(static_cast<Wide>(q), limit);
    return static_cast<Kep64s>(negative ? -bounded : bounded);
}

TEST(DivC, integers64) {
    Random random(seed());
    for (int k = 0; k < 3000; ++k) {
        const Kep64s val = k < 20 ? k - 10 : mixedValue<Kep64s>(random) >> (random() % 2 * 40);
        const int s = k % 3 == 0 ? 0 : static_cast<int>(random() % 270) - 135;
        auto src = mixed<Kep64s>(70, random);
        if (val != 0 && k % 2) // ties and their neighbours
            for (auto &x : src)
                x = static_cast<Kep64s>(static_cast<std::uint64_t>(x % 1000) *
                                        static_cast<std::uint64_t>(val)) /
                    2;
        auto dst = src;
        const KepStatus status = kepsDivC_64s_ISfs(val, dst.data(), 70, s);
        ASSERT_EQ(val == 0 ? kepStatusDivisionWarning : kepStatusOk, status);
        for (std::size_t i = 0; i < src.size(); ++i) {
            const Kep64s e = val != 0      ? expected64(src[i], val, s)
                             : src[i] == 0 ? 0
                                           : (src[i] > 0 ? INT64_MAX : INT64_MIN);
            ASSERT_EQ(e, dst[i]) << src[i] << " over " << val << ", scale factor " << s;
        }
    }
    for (const int s : {INT_MIN, INT_MAX}) {
        Kep64s x[3] = {0, 7, -7};
        EXPECT_EQ(kepStatusOk, kepsDivC_64s_ISfs(INT64_MAX, x, 3, s));
        EXPECT_EQ(s > 0 ? 0 : INT64_MAX, x[1]);
        EXPECT_EQ(s > 0 ? 0 : INT64_MIN, x[2]);
        EXPECT_EQ(0, x[0]);
    }
}

template <class T>
void checkDivFloat(const std::string &name, KepStatus (*f)(const T *, const T *, T *, int32_t),
                   KepStatus (*inPlace)(const T *, T *, int32_t), int threshold) {
    check<T, T, T>({.name = name,
                    .call = f,
                    .oracle =
                        [](const T *a, const T *b, T *d, int n) {
                            bool isWarned = false;
                            for (int i = 0; i < n; ++i) {
                                isWarned |= a[i] == 0;
                                d[i] = b[i] / a[i];
                            }
                            return isWarned ? kepStatusDivisionWarning : kepStatusOk;
                        },
                    .inPlace = [=](const T *a, const T *, T *d, int n) { return inPlace(a, d, n); },
                    .lengths = {threshold - 1, threshold, threshold + 1},
                    .data =
                        [](std::size_t n, Random &random) {
                            auto divisors = mixed<T>(n, random);
                            if (random() % 2) // without a zero
                                for (T &x : divisors)
                                    if (x == 0) x = 3;
                            return std::tuple{divisors, mixed<T>(n, random)};
                        }});
}

TEST(Div, floats) {
    checkDivFloat("kepsDiv_32f", kepsDiv_32f, kepsDiv_32f_I, 4096);
    checkDivFloat("kepsDiv_64f", kepsDiv_64f, kepsDiv_64f_I, 1024);
}

// The order of arithmetic of the complex quotients. NaN for a zero m has its sign bit clear.
template <class T, class R>
T times(T divisor, T dividend, R m, R r) {
    if (m == 0) return {std::numeric_limits<R>::quiet_NaN(), std::numeric_limits<R>::quiet_NaN()};
    const R u = divisor.re * dividend.re + divisor.im * dividend.im;
    const R v = divisor.re * dividend.im - divisor.im * dividend.re;
    return {u * r, v * r};
}

KepStatus expected32fc(const Kep32fc *a, const Kep32fc *b, Kep32fc *d, int n) {
    bool isWarned = false;
    for (int i = 0; i < n; ++i) {
        const float m = a[i].re * a[i].re + a[i].im * a[i].im;
        isWarned |= m == 0;
        const float r0 = _mm_cvtss_f32(_mm_rcp_ss(_mm_set_ss(m)));
        d[i] = times(a[i], b[i], m, r0 * (2.0F - m * r0));
    }
    return isWarned ? kepStatusDivisionWarning : kepStatusOk;
}

KepStatus expected64fc(const Kep64fc *a, const Kep64fc *b, Kep64fc *d, int n) {
    bool isWarned = false;
    const auto magnitude = [=](int i) { return a[i].re * a[i].re + a[i].im * a[i].im; };
    for (int i = 0; i < n; ++i) {
        const double m = magnitude(i);
        isWarned |= m == 0;
        double r = 1.0 / m;
        if ((i ^ 1) < n) {
            const double other = magnitude(i ^ 1);
            if (m * other != 0) r = other * (1.0 / (m * other));
        }
        d[i] = times(a[i], b[i], m, r);
    }
    return isWarned ? kepStatusDivisionWarning : kepStatusOk;
}

// Zeros, magnitudes that underflow, and products of magnitudes that do.
template <class T>
std::vector<T> complexDivisors(std::size_t n, Random &random) {
    using R = decltype(T::re);
    const int kind = static_cast<int>(random() % 3);
    auto data = kind ? mixed<T>(n, random) : unit<T>(n, random);
    const R tiny = sizeof(R) == 4 ? R(1e-30) : R(1e-170),
            small = sizeof(R) == 4 ? R(1e-10) : R(1e-80);
    for (auto &x : data) {
        const auto pick = random() % 12;
        if (kind == 2 && pick == 0) x = {R(0), -R(0)};
        if (kind == 2 && pick == 1) x = {tiny, tiny};
        if (kind && pick == 2) x = {small, small};
    }
    return data;
}

template <class T, class R = decltype(T::re)>
bool sameNaN(const T &expected, const T &got) {
    // Where m is 0 the sign bit counts; elsewhere a NaN is a NaN.
    const auto same = [](R e, R g) {
        if (e != e && g != g) return true;
        return std::memcmp(&e, &g, sizeof e) == 0;
    };
    return same(expected.re, got.re) && same(expected.im, got.im);
}

template <class T, class Oracle>
void checkDivComplex(const std::string &name, KepStatus (*f)(const T *, const T *, T *, int32_t),
                     KepStatus (*inPlace)(const T *, T *, int32_t), Oracle oracle) {
    check<T, T, T>({.name = name,
                    .call = f,
                    .oracle = oracle,
                    .inPlace = [=](const T *a, const T *, T *d, int n) { return inPlace(a, d, n); },
                    // At 1026 and the like a team of two cuts a pair.
                    .lengths = {1023, 1024, 1025, 1026, 1027, 1030, 2047},
                    .data =
                        [](std::size_t n, Random &random) {
                            return std::tuple{complexDivisors<T>(n, random), mixed<T>(n, random)};
                        },
                    .same = sameNaN<T>});
    using R = decltype(T::re);
    constexpr R nan = std::numeric_limits<R>::quiet_NaN();
    for (const R x : {R(1), -nan, nan, -std::numeric_limits<R>::infinity(), R(0)})
        for (int n = 1; n < 20; ++n) {
            std::vector<T> zeros(static_cast<std::size_t>(n), T{-R(0), R(0)}),
                d(zeros.size(), T{x, -x});
            EXPECT_EQ(kepStatusDivisionWarning, inPlace(zeros.data(), d.data(), n));
            for (const T &e : d) {
                EXPECT_EQ(0, std::memcmp(&nan, &e.re, sizeof nan)) << name << " of " << x;
                EXPECT_EQ(0, std::memcmp(&nan, &e.im, sizeof nan)) << name << " of " << x;
            }
        }
}

TEST(Div, complexFloats) {
    checkDivComplex<Kep32fc>("kepsDiv_32fc", kepsDiv_32fc, kepsDiv_32fc_I, expected32fc);
    checkDivComplex<Kep64fc>("kepsDiv_64fc", kepsDiv_64fc, kepsDiv_64fc_I, expected64fc);
}

template <class T>
void checkDivCFloat(const std::string &name, KepStatus (*f)(const T *, T, T *, int32_t),
                    KepStatus (*inPlace)(T, T *, int32_t)) {
    const T infinity = std::numeric_limits<T>::infinity();
    for (const T val :
         {T(3), T(1), T(-7.5), infinity, -infinity, std::numeric_limits<T>::quiet_NaN(),
          std::numeric_limits<T>::max(), std::numeric_limits<T>::denorm_min()})
        check<T, T>({.name = name + " by " + show(val),
                     .call = [=](const T *src, T *d, int n) { return f(src, val, d, n); },
                     .oracle =
                         [=](const T *src, T *d, int n) {
                             const T r = T(1) / val;
                             for (int i = 0; i < n; ++i)
                                 d[i] = r == 0 ? T(0) : (r == 1 ? src[i] : src[i] * r);
                             return kepStatusOk;
                         },
                     .inPlace = [=](const T *, T *d, int n) { return inPlace(val, d, n); }});
    T x[2] = {1, 2};
    for (const T val : {T(0), -T(0)}) {
        EXPECT_EQ(kepStatusDivideByZero, f(x, val, x, 2));
        EXPECT_EQ(kepStatusBadLength, f(x, val, x, 0));
        EXPECT_EQ(kepStatusNullPointer, f(x, val, nullptr, 0));
    }
}

template <class T>
void checkDivCComplex(const std::string &name, KepStatus (*f)(const T *, T, T *, int32_t),
                      KepStatus (*inPlace)(T, T *, int32_t)) {
    using R = decltype(T::re);
    for (const T val : {T{3, 4}, T{-1, R(0.25)}, T{0, -2}, T{R(1e5), R(-1e-5)}}) {
        const double c = val.re, d = val.im, m = c * c + d * d;
        const T r = {static_cast<R>(c / m), static_cast<R>(-d / m)};
        check<T, T>({.name = name + " by " + show(val),
                     .call = [=](const T *src, T *dst, int n) { return f(src, val, dst, n); },
                     .oracle =
                         [=](const T *src, T *dst, int n) {
                             for (int i = 0; i < n; ++i) {
                                 const T x = src[i];
                                 dst[i] = {x.re * r.re - x.im * r.im, x.im * r.re + x.re * r.im};
                             }
                             return kepStatusOk;
                         },
                     .inPlace = [=](const T *, T *dst, int n) { return inPlace(val, dst, n); }});
    }
    T x[2] = {};
    EXPECT_EQ(kepStatusDivideByZero, f(x, T{-R(0), R(0)}, x, 2));
}

TEST(DivC, floats) {
    checkDivCFloat("kepsDivC_32f", kepsDivC_32f, kepsDivC_32f_I);
    checkDivCFloat("kepsDivC_64f", kepsDivC_64f, kepsDivC_64f_I);
    checkDivCComplex<Kep32fc>("kepsDivC_32fc", kepsDivC_32fc, kepsDivC_32fc_I);
    checkDivCComplex<Kep64fc>("kepsDivC_64fc", kepsDivC_64fc, kepsDivC_64fc_I);
}

TEST(DivCRev, constantOverElement) {
    for (const int val : {0, 1, 2, 3, 7, 255, 1000, 32767, 65534, 65535})
        check<Kep16u, Kep16u>(
            {.name = "kepsDivCRev_16u of " + std::to_string(val),
             .call = [=](const Kep16u *src, Kep16u *d,
                         int n) { return kepsDivCRev_16u(src, static_cast<Kep16u>(val), d, n); },
             .oracle =
                 [=](const Kep16u *src, Kep16u *d, int n) {
                     bool isWarned = false;
                     for (int i = 0; i < n; ++i)
                         d[i] = expectedQuotient<Kep16u>(src[i], val, 0, isWarned);
                     return isWarned ? kepStatusDivisionWarning : kepStatusOk;
                 },
             .inPlace = [=](const Kep16u *, Kep16u *d,
                            int n) { return kepsDivCRev_16u_I(static_cast<Kep16u>(val), d, n); },
             .lengths = {2047, 2048, 2049},
             .data =
                 [](std::size_t n, Random &random) {
                     return std::tuple{generate<Kep16u>(n, random, divisorValue<Kep16u>)};
                 }});
    for (const float val : {0.0F, -0.0F, 1.5F, -INFINITY, NAN})
        check<Kep32f, Kep32f>({.name = "kepsDivCRev_32f of " + show(val),
                               .call = [=](const Kep32f *src, Kep32f *d,
                                           int n) { return kepsDivCRev_32f(src, val, d, n); },
                               .oracle =
                                   [=](const Kep32f *src, Kep32f *d, int n) {
                                       bool isWarned = false;
                                       for (int i = 0; i < n; ++i) {
                                           isWarned |= src[i] == 0;
                                           d[i] = val / src[i];
                                       }
                                       return isWarned ? kepStatusDivisionWarning : kepStatusOk;
                                   },
                               .inPlace = [=](const Kep32f *, Kep32f *d,
                                              int n) { return kepsDivCRev_32f_I(val, d, n); },
                               .lengths = {4095, 4096, 4097}});
}

} // namespace
