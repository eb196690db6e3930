// Conversions, held against exact values in double.
#include <cmath>

#include "harness/elementwise.hpp"

namespace {

using namespace harness;

// The scaled value of a float is exact in double for |scaleFactor| up to 800; beyond it nothing
// changes.
double scaled(float x, int scaleFactor) {
    return std::ldexp(static_cast<double>(x), -std::clamp(scaleFactor, -800, 800));
}

double rounded(double x, int rndMode) {
    if (rndMode == kepRoundTowardZero) return std::trunc(x);
    return rndMode == kepRoundNearest ? std::nearbyint(x) : std::round(x);
}

template <class To>
To expectedInteger(float x, int rndMode, int scaleFactor) {
    using L = std::numeric_limits<To>;
    if (std::isnan(x)) return L::min();
    const double y = rounded(scaled(x, scaleFactor), rndMode);
    return static_cast<To>(std::clamp(y, double{L::min()}, double{L::max()}));
}

// Floats whose scaled values lie on ties, next to them, at the target's limits, or anywhere.
template <class To>
float scaledCase(int scaleFactor, Random &random) {
    const int halves = static_cast<int>(random() % 65) - 32;
    const auto limit = static_cast<float>(random() % 2 ? std::numeric_limits<To>::max()
                                                       : std::numeric_limits<To>::min());
    float x = 0;
    switch (random() % 4) {
    case 0:
        return mixedValue<float>(random);
    case 1:
        x = limit + static_cast<float>(halves) / 4;
        break;
    default:
        x = static_cast<float>(halves) / 2;
    }
    const int step = static_cast<int>(random() % 3) - 1;
    if (step) x = std::nextafter(x, step * INFINITY);
    return std::ldexp(x, std::clamp(scaleFactor, -300, 300));
}

template <class To>
void checkFromFloat(const std::string &name,
                    KepStatus (*f)(const Kep32f *, To *, int32_t, int, int)) {
    for (const int mode : {0, 1, 2, 7, -1})
        for (const int s : {0, 1, -1, 5, -7, 126, 127, 130, -126, -127, -140, -165, 252, 253, -253,
                            INT_MAX, INT_MIN}) {
            check<To, Kep32f>(
                {.name = name + ", mode " + std::to_string(mode) + ", scale factor " +
                         std::to_string(s),
                 .call = [=](const Kep32f *src, To *dst, int n) { return f(src, dst, n, mode, s); },
                 .oracle =
                     [=](const Kep32f *src, To *dst, int n) {
                         for (int i = 0; i < n; ++i) dst[i] = expectedInteger<To>(src[i], mode, s);
                         return kepStatusOk;
                     },
                 .mayAlias = false,
                 .lengths = {127, 128, 129, 143},
                 .data =
                     [=](std::size_t n, Random &random) {
                         return std::tuple{generate<float>(
                             n, random, [=](Random &r) { return scaledCase<To>(s, r); })};
                     }});
            if (::testing::Test::HasFailure()) return;
        }
}

TEST(Convert, floatToInteger) {
    checkFromFloat("kepsConvert_32f16s_Sfs", kepsConvert_32f16s_Sfs);
}

// The calling thread's own rounding mode neither leaks in nor is lost.
TEST(Convert, roundingControlIsTheCalls) {
    const float src[8] = {0.5F, 1.5F, 2.5F, -0.5F, -1.5F, 0.49999997F, -2.5F, 1.9F};
    const Kep16s expected[3][8] = {
        {0, 1, 2, 0, -1, 0, -2, 1}, {0, 2, 2, 0, -2, 0, -2, 2}, {1, 2, 3, -1, -2, 0, -3, 2}};
    const unsigned old = __builtin_ia32_stmxcsr();
    for (const unsigned control : {0U, 0x2000U, 0x4000U, 0x6000U})
        for (int mode = 0; mode < 3; ++mode) {
            Kep16s dst[8];
            __builtin_ia32_ldmxcsr((old & ~0x6000U) | control);
            kepsConvert_32f16s_Sfs(src, dst, 8, mode, 0);
            const unsigned after = __builtin_ia32_stmxcsr();
            __builtin_ia32_ldmxcsr(old);
            EXPECT_EQ(control, after & 0x6000) << "mode " << mode;
            for (int i = 0; i < 8; ++i)
                EXPECT_EQ(expected[mode][i], dst[i]) << src[i] << ", mode " << mode;
        }
}

template <class To, class From>
void checkExact(const std::string &name, KepStatus (*f)(const From *, To *, int32_t)) {
    check<To, From>({.name = name,
                     .call = f,
                     .oracle =
                         [](const From *src, To *dst, int n) {
                             for (int i = 0; i < n; ++i) dst[i] = static_cast<To>(src[i]);
                             return kepStatusOk;
                         },
                     .mayAlias = false,
                     .lengths = {127, 128, 129, 1000}});
}

TEST(Convert, widening) {
    checkExact("kepsConvert_16s32f", kepsConvert_16s32f);
}

} // namespace
