// Half precision by the instructions and by plain code, as the companion decides: every half, and
// floats on, beside and between all of them.
#include <cmath>
#include <cpuid.h>
#include <cstring>
#include <gtest/gtest.h>
#include <xmmintrin.h>

#include "companion.hpp"
#include "harness/elementwise.hpp"
#include "kepcore.h"

namespace {

using namespace harness;

bool processorHasF16c() {
    unsigned a = 0, b = 0, c = 0, d = 0;
    return __get_cpuid(1, &a, &b, &c, &d) && (c & 1u << 29);
}

class Half : public testing::TestWithParam<int> {
    void SetUp() override {
        standin::hasFeature = GetParam();
        if (GetParam() && !processorHasF16c()) GTEST_SKIP() << "no F16C here";
    }
    void TearDown() override { standin::hasFeature = 0; }
};
INSTANTIATE_TEST_SUITE_P(paths, Half, testing::Values(0, 1));

// From the definition of the format.
float valueOf(unsigned half) {
    const int exponent = half >> 10 & 31, mantissa = half & 0x3FF;
    float x = exponent == 31  ? (mantissa ? NAN : INFINITY)
              : exponent == 0 ? std::ldexp(static_cast<float>(mantissa), -24)
                              : std::ldexp(static_cast<float>(mantissa + 1024), exponent - 25);
    return half & 0x8000 ? -x : x;
}

std::uint32_t bitsOf(float x) {
    std::uint32_t bits;
    std::memcpy(&bits, &x, sizeof x);
    return bits;
}

TEST_P(Half, everyHalf) {
    std::vector<Kep16f> halves(65536), back(65536);
    for (unsigned h = 0; h < 65536; ++h) halves[h] = static_cast<Kep16f>(h);
    std::vector<float> floats(65536);
    ASSERT_EQ(kepStatusOk, kepsConvert_16f32f(halves.data(), floats.data(), 65536));
    EXPECT_GT(standin::asked.featureQueries, 0);
    for (unsigned h = 0; h < 65536; ++h) {
        if ((h & 0x7FFF) > 0x7C00) // a NaN keeps sign and payload, made quiet
            ASSERT_EQ((h & 0x8000) << 16 | 0x7FC00000 | (h & 0x3FF) << 13, bitsOf(floats[h])) << h;
        else
            ASSERT_EQ(bitsOf(valueOf(h)), bitsOf(floats[h])) << h;
    }
    for (const int mode : {0, 1}) {
        kepsConvert_32f16f(floats.data(), back.data(), 65536, mode);
        for (unsigned h = 0; h < 65536; ++h)
            ASSERT_EQ((h & 0x7FFF) > 0x7C00 ? h | 0x200 : h, back[h]) << h << ", mode " << mode;
    }
}

// x >= 0 rounded with exact arithmetic: candidates are neighbours in the format.
unsigned expectedHalf(float x, bool isNearest) {
    const unsigned sign = std::signbit(x) ? 0x8000 : 0;
    const double y = std::fabs(static_cast<double>(x));
    if (std::isinf(x)) return sign | 0x7C00;
    unsigned low = 0, high = 0x7C00; // valueOf(low) <= y < valueOf(high)
    while (high - low > 1) {
        const unsigned middle = (low + high) / 2;
        (valueOf(middle) <= y ? low : high) = middle;
    }
    if (isNearest) {
        const double next = low == 0x7BFF ? 65536.0 : valueOf(low + 1);
        const double up = next - y, down = y - valueOf(low);
        if (up < down || (up == down && (low & 1))) ++low;
    }
    return sign | low;
}

TEST_P(Half, roundings) {
    std::vector<float> x;
    for (unsigned h = 0; h < 0x7C00; h += h < 0x500 || h > 0x7B00 ? 1 : 7) {
        const float value = valueOf(h), next = h == 0x7BFF ? 65536 : valueOf(h + 1);
        const float tie = (value + next) / 2;
        for (const float y : {value, tie, next})
            for (const float z : {std::nextafter(y, 0.0F), y, std::nextafter(y, INFINITY)}) {
                x.push_back(z);
                x.push_back(-z);
            }
    }
    for (const float y : {1e-45F, 1e-40F, 0x1p-126F, 0x1p-25F, 1e5F, 3e38F, INFINITY}) {
        x.push_back(y);
        x.push_back(-y);
    }
    const int n = static_cast<int>(x.size());
    std::vector<Kep16f> half(x.size());
    const unsigned old = _mm_getcsr();
    for (const int mode : {0, 1, 3, -1})
        for (const unsigned control : {0U, 0x2000U, 0x4000U, 0x6000U}) {
            _mm_setcsr((old & ~0x6000U) | control);
            kepsConvert_32f16f(x.data(), half.data(), n, mode);
            const unsigned after = _mm_getcsr();
            _mm_setcsr(old);
            ASSERT_EQ(control, after & 0x6000);
            for (std::size_t i = 0; i < x.size(); ++i)
                ASSERT_EQ(expectedHalf(x[i], mode == 1), half[i])
                    << show(x[i]) << ", mode " << mode;
        }
}

TEST_P(Half, integers) {
    std::vector<Kep16s> x(65536), y(65536);
    std::vector<Kep16f> half(65536);
    for (std::size_t i = 0; i < 65536; ++i) {
        x[i] = static_cast<Kep16s>(i);
        half[i] = static_cast<Kep16f>(i);
    }
    for (const int mode : {0, 1, 5}) {
        std::vector<Kep16f> to(65536);
        kepsConvert_16s16f(x.data(), to.data(), 65536, mode);
        for (std::size_t i = 0; i < 65536; ++i)
            ASSERT_EQ(expectedHalf(x[i], mode == 1), to[i]) << x[i] << ", mode " << mode;
        for (const int s : {0, 1, -1, 5, -15, -24, -140, 140, INT_MIN, INT_MAX}) {
            kepsConvert_16f16s_Sfs(half.data(), y.data(), 65536, mode, s);
            for (unsigned h = 0; h < 65536; ++h) {
                const double v =
                    std::ldexp(static_cast<double>(valueOf(h)), -std::clamp(s, -500, 500));
                const double r = mode == 1 ? std::nearbyint(v) : std::trunc(v);
                const double e = std::isnan(v) ? -32768 : std::clamp(r, -32768.0, 32767.0);
                ASSERT_EQ(static_cast<Kep16s>(e), y[h])
                    << h << ", mode " << mode << ", scale " << s;
            }
        }
    }
    EXPECT_EQ(kepStatusBadRoundMode, kepsConvert_16s16f(x.data(), half.data(), 9, 2));
    EXPECT_EQ(kepStatusBadRoundMode, kepsConvert_16f16s_Sfs(half.data(), x.data(), 9, 2, 0));
    float f[9];
    EXPECT_EQ(kepStatusBadRoundMode, kepsConvert_32f16f(f, half.data(), 9, 2));
    EXPECT_EQ(kepStatusBadLength, kepsConvert_32f16f(f, half.data(), 0, 2));
}

// Places, lengths and aliases; the values are those of one whole call.
template <class To, class From>
void checkPlaces(const std::string &name, KepStatus (*f)(const From *, To *, int32_t)) {
    check<To, From>({.name = name,
                     .call = f,
                     .oracle =
                         [=](const From *src, To *dst, int n) {
                             for (int i = 0; i < n; ++i) f(src + i, dst + i, 1);
                             return kepStatusOk;
                         },
                     .mayAlias = sizeof(To) == sizeof(From),
                     .lengths = {255, 256, 257, 600}});
}

TEST_P(Half, places) {
    checkPlaces("kepsConvert_16f32f", kepsConvert_16f32f);
    checkPlaces<Kep16f, Kep32f>("kepsConvert_32f16f", [](auto *a, auto *b, int n) {
        return kepsConvert_32f16f(a, b, n, 1);
    });
    checkPlaces<Kep16f, Kep16s>("kepsConvert_16s16f", [](auto *a, auto *b, int n) {
        return kepsConvert_16s16f(a, b, n, 0);
    });
    checkPlaces<Kep16s, Kep16f>("kepsConvert_16f16s_Sfs", [](auto *a, auto *b, int n) {
        return kepsConvert_16f16s_Sfs(a, b, n, 1, -3);
    });
}

} // namespace
