// Conversions against exact values: in long double, which holds every scaled float, or in 128-bit
// integers.
#include <cmath>
#include <xmmintrin.h>

#include "arith/exact.hpp"
#include "harness/elementwise.hpp"

namespace {

using namespace harness;
using namespace exact;

long double rounded(long double x, int rndMode) {
    if (rndMode == kepRoundTowardZero) return std::trunc(x);
    return rndMode == kepRoundNearest ? std::nearbyint(x) : std::round(x);
}

template <class To, class From>
To expectedInteger(From x, int rndMode, int scaleFactor) {
    using L = std::numeric_limits<To>;
    if (std::isnan(x)) return L::min();
    const auto scaled =
        std::ldexp(static_cast<long double>(x), -std::clamp(scaleFactor, -3000, 3000));
    const long double y = rounded(scaled, rndMode);
    if (y >= static_cast<long double>(L::max())) return L::max();
    return y <= static_cast<long double>(L::min()) ? L::min() : static_cast<To>(y);
}

// Numbers whose scaled values lie on ties, next to them, at the target's limits, or anywhere.
template <class To, class From>
From scaledCase(int scaleFactor, Random &random) {
    const int halves = static_cast<int>(random() % 65) - 32;
    const auto limit = static_cast<From>(random() % 2 ? std::numeric_limits<To>::max()
                                                      : std::numeric_limits<To>::min());
    From x = 0;
    switch (random() % 4) {
    case 0:
        return mixedValue<From>(random);
    case 1:
        x = limit + static_cast<From>(halves) / 4;
        break;
    default:
        x = static_cast<From>(halves) / 2;
    }
    const int step = static_cast<int>(random() % 3) - 1;
    if (step) x = std::nextafter(x, static_cast<From>(step * INFINITY));
    return std::ldexp(x, std::clamp(scaleFactor, -3000, 3000));
}

constexpr int floatScales[] = {0,    1,    -1,   5,   -7,  126,  127,     130,    -126,
                               -127, -140, -165, 252, 253, -253, INT_MAX, INT_MIN};
constexpr int doubleScales[] = {0,     1,     -1,   4,    -9,    1022,    1023,   1030,
                                -1022, -1023, 2044, 2045, -2045, INT_MAX, INT_MIN};

template <class To, class From>
void checkFromFloat(const std::string &name,
                    KepStatus (*f)(const From *, To *, int32_t, int, int)) {
    std::vector<int> scales(std::begin(floatScales), std::end(floatScales));
    if (sizeof(From) == 8) scales.assign(std::begin(doubleScales), std::end(doubleScales));
    for (const int mode : {0, 1, 2, 7, -1})
        for (const int s : scales) {
            check<To, From>(
                {.name = name + ", mode " + std::to_string(mode) + ", scale factor " +
                         std::to_string(s),
                 .call = [=](const From *src, To *dst, int n) { return f(src, dst, n, mode, s); },
                 .oracle =
                     [=](const From *src, To *dst, int n) {
                         for (int i = 0; i < n; ++i) dst[i] = expectedInteger<To>(src[i], mode, s);
                         return kepStatusOk;
                     },
                 .mayAlias = false,
                 .lengths = {127, 128, 129, 143},
                 .data =
                     [=](std::size_t n, Random &random) {
                         return std::tuple{generate<From>(
                             n, random, [=](Random &r) { return scaledCase<To, From>(s, r); })};
                     }});
            if (testing::Test::HasFailure()) return;
        }
}

TEST(Convert, floatToInteger) {
    checkFromFloat("kepsConvert_32f8s_Sfs", kepsConvert_32f8s_Sfs);
    checkFromFloat("kepsConvert_32f8u_Sfs", kepsConvert_32f8u_Sfs);
    checkFromFloat("kepsConvert_32f16s_Sfs", kepsConvert_32f16s_Sfs);
    checkFromFloat("kepsConvert_32f16u_Sfs", kepsConvert_32f16u_Sfs);
    checkFromFloat("kepsConvert_32f32s_Sfs", kepsConvert_32f32s_Sfs);
}

TEST(Convert, doubleToInteger) {
    checkFromFloat("kepsConvert_64f8s_Sfs", kepsConvert_64f8s_Sfs);
    checkFromFloat("kepsConvert_64f8u_Sfs", kepsConvert_64f8u_Sfs);
    checkFromFloat("kepsConvert_64f16s_Sfs", kepsConvert_64f16s_Sfs);
    checkFromFloat("kepsConvert_64f16u_Sfs", kepsConvert_64f16u_Sfs);
    checkFromFloat("kepsConvert_64f32s_Sfs", kepsConvert_64f32s_Sfs);
}

// As told element by element: products that would be subnormal are 0, those that would overflow
// are at the bound, and ties-away rounding adds one half in double.
Kep64s expected64(double x, int mode, int s) {
    if (std::isnan(x)) return INT64_MIN;
    double p = x;
    if (s > 0) {
        p = std::fabs(std::ldexp(static_cast<long double>(x), -std::min(s, 3000))) <= 0x1p-1022L
                ? 0
                : std::ldexp(x, -std::min(s, 3000));
    } else if (s < 0 && x != 0) {
        const double m = std::ldexp(1.0, -std::max(s, -3000));
        p = std::fabs(x) >= std::numeric_limits<double>::max() / m ? std::copysign(INFINITY, x)
                                                                   : x * m;
    }
    if (p >= 0x1p63) return INT64_MAX;
    if (p < -0x1p63) return INT64_MIN;
    if (mode == kepRoundTowardZero) return static_cast<Kep64s>(p);
    if (mode == kepRoundNearest) return static_cast<Kep64s>(std::nearbyint(p));
    return static_cast<Kep64s>(p + std::copysign(0.5, p));
}

TEST(Convert, doubleTo64Bits) {
    for (const int mode : {0, 1, 2, 9})
        for (const int s : {0, 1, -1, 7, -12, 62, -62, 1021, 1022, 1023, 1074, 1075, -1022, -1023,
                            -1024, 1100, INT_MAX, INT_MIN})
            check<Kep64s, Kep64f>(
                {.name = "kepsConvert_64f64s_Sfs, mode " + std::to_string(mode) +
                         ", scale factor " + std::to_string(s),
                 .call = [=](const Kep64f *src, Kep64s *dst,
                             int n) { return kepsConvert_64f64s_Sfs(src, dst, n, mode, s); },
                 .oracle =
                     [=](const Kep64f *src, Kep64s *dst, int n) {
                         for (int i = 0; i < n; ++i) dst[i] = expected64(src[i], mode, s);
                         return kepStatusOk;
                     },
                 .mayAlias = false,
                 .data =
                     [=](std::size_t n, Random &random) {
                         return std::tuple{generate<Kep64f>(n, random, [=](Random &r) {
                             return scaledCase<Kep64s, Kep64f>(s, r);
                         })};
                     }});
    Kep64f x[2] = {1, 2};
    Kep64s y[2];
    EXPECT_EQ(kepStatusBadLength, kepsConvert_64f64s_Sfs(x, y, 0, 0, 0));
    EXPECT_EQ(kepStatusNullPointer, kepsConvert_64f64s_Sfs(nullptr, y, 0, 0, 0));
    EXPECT_EQ(kepStatusNullPointer, kepsConvert_64f64s_Sfs(x, nullptr, 2, 0, 0));
}

// The calling thread's own rounding mode neither leaks in nor is lost, in short and long arrays.
template <class From, class To>
void checkControl(KepStatus (*f)(const From *, To *, int32_t, int, int)) {
    const From values[8] = {0.5,  1.5,      2.5, -0.5, -1.5, std::nextafter(From(0.5), From(0)),
                            -2.5, From(1.9)};
    std::vector<From> src(1024);
    for (std::size_t i = 0; i < src.size(); ++i) src[i] = values[i % 8];
    const int expected[3][8] = {
        {0, 1, 2, 0, -1, 0, -2, 1}, {0, 2, 2, 0, -2, 0, -2, 2}, {1, 2, 3, -1, -2, 0, -3, 2}};
    const unsigned old = _mm_getcsr();
    for (const unsigned control : {0U, 0x2000U, 0x4000U, 0x6000U})
        for (int k = 0; k < 6; ++k) {
            const int mode = k % 3, n = k < 3 ? 8 : 1024;
            std::vector<To> dst(src.size());
            _mm_setcsr((old & ~0x6000U) | control);
            f(src.data(), dst.data(), n, mode, 0);
            const unsigned after = _mm_getcsr();
            _mm_setcsr(old);
            EXPECT_EQ(control, after & 0x6000) << "mode " << mode;
            for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i) {
                // One half added in double takes the number below 0.5 to 1.
                const int e =
                    sizeof(To) == 8 && mode == 2 && i % 8 == 5 ? 1 : expected[mode][i % 8];
                ASSERT_EQ(clamped<To>(e), dst[i]) << src[i] << ", mode " << mode;
            }
        }
}

TEST(Convert, roundingControlIsTheCalls) {
    checkControl(kepsConvert_32f8u_Sfs);
    checkControl(kepsConvert_32f16s_Sfs);
    checkControl(kepsConvert_32f32s_Sfs);
    checkControl(kepsConvert_64f8s_Sfs);
    checkControl(kepsConvert_64f32s_Sfs);
    checkControl(kepsConvert_64f64s_Sfs);
}

// Plain conversions; saturating ones differ from the cast at the target's limits.
template <class To, class From>
void checkPlain(const std::string &name, KepStatus (*f)(const From *, To *, int32_t)) {
    check<To, From>({.name = name,
                     .call = f,
                     .oracle =
                         [](const From *src, To *dst, int n) {
                             for (int i = 0; i < n; ++i)
                                 if constexpr (std::is_floating_point_v<To>)
                                     dst[i] = static_cast<To>(src[i]);
                                 else
                                     dst[i] = clamped<To>(src[i]);
                             return kepStatusOk;
                         },
                     .mayAlias = std::is_same_v<To, From> || sizeof(To) == sizeof(From),
                     .lengths = {127, 128, 129, 1000}});
}

TEST(Convert, plain) {
    checkPlain("kepsConvert_8s16s", kepsConvert_8s16s);
    checkPlain("kepsConvert_8s32f", kepsConvert_8s32f);
    checkPlain("kepsConvert_8u32f", kepsConvert_8u32f);
    checkPlain("kepsConvert_16s32s", kepsConvert_16s32s);
    checkPlain("kepsConvert_16s32f", kepsConvert_16s32f);
    checkPlain("kepsConvert_16u32f", kepsConvert_16u32f);
    checkPlain("kepsConvert_32s32f", kepsConvert_32s32f);
    checkPlain("kepsConvert_32s64f", kepsConvert_32s64f);
    checkPlain("kepsConvert_32f64f", kepsConvert_32f64f);
    checkPlain("kepsConvert_64s64f", kepsConvert_64s64f);
    checkPlain("kepsConvert_64f32f", kepsConvert_64f32f);
    checkPlain("kepsConvert_32s16s", kepsConvert_32s16s);
    checkPlain("kepsConvert_8s8u", kepsConvert_8s8u);
}

// Integers times a power of two: a function of (src, dst, n, mode, scale factor).
template <class To, class From, class Function>
void checkScaledIntegers(const std::string &name, Function f, std::initializer_list<int> modes) {
    for (const int mode : modes)
        for (const int s : {0,  1,  2,       3,  7,  8,  15,  16,  17,  31,  32,  33,  62,     63,
                            64, 65, INT_MAX, -1, -3, -7, -15, -16, -24, -31, -32, -40, INT_MIN}) {
            const int e = std::clamp(s, -62, 64);
            check<To, From>(
                {.name = name + ", mode " + std::to_string(mode) + ", scale factor " +
                         std::to_string(s),
                 .call = [=](const From *src, To *dst, int n) { return f(src, dst, n, mode, s); },
                 .oracle =
                     [=](const From *src, To *dst, int n) {
                         for (int i = 0; i < n; ++i)
                             dst[i] =
                                 s > 64 ? To{0} : clamped<To>(roundedQuotient(src[i], 1, e, mode));
                         return kepStatusOk;
                     },
                 .mayAlias = false,
                 .lengths = {127, 128, 129},
                 .data =
                     [=](std::size_t n, Random &random) {
                         auto data = mixed<From>(n, random);
                         // Ties: odd multiples of one half of the unit.
                         if (s > 0 && s <= static_cast<int>(8 * sizeof(From)) - 2)
                             for (auto &x : data)
                                 if (random() % 2) x = static_cast<From>((random() | 1) << (s - 1));
                         return std::tuple{data};
                     }});
            if (testing::Test::HasFailure()) return;
        }
}

TEST(Convert, scaledIntegers) {
    checkScaledIntegers<Kep8s, Kep16s>("kepsConvert_16s8s_Sfs", kepsConvert_16s8s_Sfs,
                                       {0, 1, 2, -5});
    checkScaledIntegers<Kep8s, Kep8u>("kepsConvert_8u8s_Sfs", kepsConvert_8u8s_Sfs, {0, 1, 2, 3});
    checkScaledIntegers<Kep32s, Kep64s>("kepsConvert_64s32s_Sfs", kepsConvert_64s32s_Sfs,
                                        {0, 1, 2, 3});
    checkScaledIntegers<Kep16s, Kep32s>("kepsConvert_32s16s_Sfs",
                                        [](const Kep32s *src, Kep16s *dst, int n, int, int s) {
                                            return kepsConvert_32s16s_Sfs(src, dst, n, s);
                                        },
                                        {kepRoundNearest});
}

template <class To, class From>
void checkToScaledFloat(const std::string &name, KepStatus (*f)(const From *, To *, int32_t, int)) {
    for (const int s : {0, 1, -1, 15, -20, 126, 127, 140, 149, 160, -126, -127, -140, 1022, 1040,
                        -1022, -1023, INT_MAX, INT_MIN})
        check<To, From>({.name = name + ", scale factor " + std::to_string(s),
                         .call = [=](const From *src, To *dst, int n) { return f(src, dst, n, s); },
                         .oracle =
                             [=](const From *src, To *dst, int n) {
                                 for (int i = 0; i < n; ++i)
                                     dst[i] = static_cast<To>(std::ldexp(
                                         static_cast<long double>(static_cast<To>(src[i])),
                                         -std::clamp(s, -3000, 3000)));
                                 return kepStatusOk;
                             },
                         .mayAlias = false});
}

TEST(Convert, scaledIntegersToFloat) {
    checkToScaledFloat("kepsConvert_16s32f_Sfs", kepsConvert_16s32f_Sfs);
    checkToScaledFloat("kepsConvert_16s64f_Sfs", kepsConvert_16s64f_Sfs);
    checkToScaledFloat("kepsConvert_32s32f_Sfs", kepsConvert_32s32f_Sfs);
    checkToScaledFloat("kepsConvert_32s64f_Sfs", kepsConvert_32s64f_Sfs);
}

// A packed 24-bit sample, its bytes under the names that the harness knows for parts.
struct Sample24 {
    Kep8u re, im, high;
};
Kep32s valueOf(Sample24 x, bool isSigned) {
    const int v = x.re | x.im << 8 | x.high << 16;
    return isSigned && v >= 1 << 23 ? v - (1 << 24) : v;
}
Sample24 sampleOf(Wide v) {
    return {static_cast<Kep8u>(v), static_cast<Kep8u>(v >> 8), static_cast<Kep8u>(v >> 16)};
}
Sample24 sampleClamped(Wide v, bool isSigned) {
    return sampleOf(isSigned ? std::clamp<Wide>(v, -(1 << 23), (1 << 23) - 1)
                             : std::clamp<Wide>(v, 0, (1 << 24) - 1));
}

template <class To>
void checkFrom24(const std::string &name, bool isSigned,
                 KepStatus (*f)(const Kep8u *, To *, int32_t)) {
    check<To, Sample24>(
        {.name = name,
         .call = [=](const Sample24 *src, To *dst, int n) { return f(&src->re, dst, n); },
         .oracle =
             [=](const Sample24 *src, To *dst, int n) {
                 for (int i = 0; i < n; ++i) dst[i] = static_cast<To>(valueOf(src[i], isSigned));
                 return kepStatusOk;
             },
         .mayAlias = false,
         .lengths = {127, 128, 129, 200}});
}

template <class From, class Rule>
void checkTo24(const std::string &name, KepStatus (*f)(const From *, Kep8u *, int32_t, int), int s,
               Rule rule) {
    check<Sample24, From>(
        {.name = name + ", scale factor " + std::to_string(s),
         .call = [=](const From *src, Sample24 *dst, int n) { return f(src, &dst->re, n, s); },
         .oracle =
             [=](const From *src, Sample24 *dst, int n) {
                 for (int i = 0; i < n; ++i) dst[i] = rule(src[i], s);
                 return kepStatusOk;
             },
         .mayAlias = false,
         .lengths = {127, 128, 129, 200},
         .data =
             [=](std::size_t n, Random &random) {
                 if constexpr (std::is_floating_point_v<From>) {
                     return std::tuple{generate<From>(n, random, [=](Random &r) {
                         const float x = scaledCase<Kep16s, float>(s, r);
                         return r() % 2 ? x : x * 256 + (r() % 2 ? 0.5F : 0);
                     })};
                 } else {
                     auto data = mixed<From>(n, random);
                     for (auto &x : data)
                         if (random() % 2)
                             x = static_cast<From>((random() % 64 | 1)
                                                   << (std::clamp(s, 1, 32) - 1));
                     return std::tuple{data};
                 }
             },
         .same = [](const Sample24 &a,
                    const Sample24 &b) { return std::memcmp(&a, &b, sizeof a) == 0; }});
}

TEST(Convert, packed24) {
    checkFrom24("kepsConvert_24s32s", true, kepsConvert_24s32s);
    checkFrom24("kepsConvert_24s32f", true, kepsConvert_24s32f);
    checkFrom24("kepsConvert_24u32u", false, kepsConvert_24u32u);
    checkFrom24("kepsConvert_24u32f", false, kepsConvert_24u32f);
    const auto integer = [](bool isSigned) {
        return [=](auto x, int s) {
            return sampleClamped(s > 64 ? 0 : roundedQuotient(x, 1, std::clamp(s, -62, 64)),
                                 isSigned);
        };
    };
    for (const int s : {0,       1,  2,  8,  23,  24,  30,  31,  32,  33,     34,
                        INT_MAX, -1, -7, -8, -22, -23, -24, -31, -32, INT_MIN}) {
        checkTo24("kepsConvert_32s24s_Sfs", kepsConvert_32s24s_Sfs, s, integer(true));
        checkTo24("kepsConvert_32u24u_Sfs", kepsConvert_32u24u_Sfs, s, integer(false));
    }
    const auto real = [](bool isSigned) {
        return [=](float x, int s) {
            const Kep64s wide = expectedInteger<Kep64s>(x, kepRoundNearest, s);
            return sampleClamped(wide, isSigned);
        };
    };
    for (const int s : floatScales) {
        checkTo24("kepsConvert_32f24s_Sfs", kepsConvert_32f24s_Sfs, s, real(true));
        checkTo24("kepsConvert_32f24u_Sfs", kepsConvert_32f24u_Sfs, s, real(false));
    }
}

} // namespace
