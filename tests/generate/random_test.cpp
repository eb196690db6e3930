// Random numbers: the stream step by step against a plain generator, the values against their
// formulas, cuts of a fill, statuses, and distributions that a wrong borrow would bend.
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <vector>

#include "harness/guarded.hpp"
#include "keps.h"

namespace {

// The generator as it is defined, one step at a time.
struct Plain {
    std::uint32_t lcg = 1131199209, swb0, swb1, swb2;
    std::int32_t borrow = -1;

    explicit Plain(std::uint32_t seed)
        : swb0(seed), swb1(seed * 69069 + 1013904243), swb2(swb1 * 69069 + 1013904243) {}
    std::int32_t step() {
        const std::uint32_t t = swb1 - swb2 + static_cast<std::uint32_t>(borrow);
        std::uint32_t v = t;
        borrow = 0;
        if (t >> 31) {
            v = t - 18;
            borrow = -1;
        }
        swb2 = swb1;
        swb1 = swb0;
        swb0 = v;
        lcg = lcg * 69069 + 1013904243;
        return static_cast<std::int32_t>(v + lcg);
    }
};

template <class T>
struct Functions {
    KepStatus (*size)(int *), (*gaussSize)(int *);
    KepStatus (*init)(KepRandUniformState *, T, T, unsigned);
    KepStatus (*gaussInit)(KepRandGaussState *, T, T, unsigned);
    KepStatus (*uniform)(T *, int, KepRandUniformState *);
    KepStatus (*gauss)(T *, int, KepRandGaussState *);
    int gaussBytes;
};

template <class T>
Functions<T> functions();
#define FUNCTIONS(t, bytes)                                                                        \
    template <>                                                                                    \
    Functions<Kep##t> functions() {                                                                \
        return {kepsRandUniformGetSize_##t,                                                        \
                kepsRandGaussGetSize_##t,                                                          \
                kepsRandUniformInit_##t,                                                           \
                kepsRandGaussInit_##t,                                                             \
                kepsRandUniform_##t,                                                               \
                kepsRandGauss_##t,                                                                 \
                bytes};                                                                            \
    }
FUNCTIONS(8u, 64)
FUNCTIONS(16s, 64)
FUNCTIONS(32f, 72)
FUNCTIONS(64f, 80)

// Blocks of exactly the reported size, at an odd address, between unreadable pages.
template <class T>
class Random : public ::testing::Test {
protected:
    Functions<T> f = functions<T>();
    harness::Room room{56}, gaussRoom{static_cast<std::size_t>(f.gaussBytes)};
    KepRandUniformState *state =
        reinterpret_cast<KepRandUniformState *>(room.place(56, {harness::Spot::endsAtGuard}));
    KepRandGaussState *gauss = reinterpret_cast<KepRandGaussState *>(
        gaussRoom.place(static_cast<std::size_t>(f.gaussBytes), {harness::Spot::inside, 3}));
};
using Types = ::testing::Types<Kep8u, Kep16s, Kep32f, Kep64f>;
TYPED_TEST_SUITE(Random, Types);

const unsigned seeds[] = {0, 1, 12345, 0x80000000, 0xFFFFFFFF};

TYPED_TEST(Random, UniformValuesAreExactInAnyCut) {
    using T = TypeParam;
    const auto low = static_cast<T>(3), high = static_cast<T>(250);
    for (const unsigned seed : seeds) {
        Plain plain(seed);
        std::vector<T> expected(1000), whole(1000), cut(1000);
        for (T &x : expected) {
            const double y = 126.5 + (247 * 0x1p-32) * plain.step();
            x = std::is_integral_v<T> ? static_cast<T>(std::nearbyint(y)) : static_cast<T>(y);
        }
        ASSERT_EQ(kepStatusOk, this->f.init(this->state, low, high, seed));
        harness::guarded([&] { return this->f.uniform(whole.data(), 1000, this->state); });
        EXPECT_EQ(expected, whole);
        this->f.init(this->state, low, high, seed);
        for (int i = 0, n = 1; i < 1000; i += n, n = n % 150 + 7)
            this->f.uniform(cut.data() + i, std::min(n, 1000 - i), this->state);
        EXPECT_EQ(expected, cut);
    }
    EXPECT_TRUE(this->room.intact());
    T same[5];
    this->f.init(this->state, high, high, 7);
    this->f.uniform(same, 5, this->state);
    for (const T x : same) EXPECT_EQ(high, x);
}

TYPED_TEST(Random, GaussValuesFollowTheirFormulaInAnyCut) {
    using T = TypeParam;
    const auto mean = static_cast<T>(100), stdDev = static_cast<T>(90);
    for (const unsigned seed : seeds) {
        Plain plain(seed);
        std::vector<long double> exact;
        while (exact.size() < 1000) {
            const long double a = plain.step() * 0x1p-31L, b = plain.step() * 0x1p-31L;
            const auto s =
                static_cast<double>(static_cast<double>(a * a) + static_cast<double>(b * b));
            if (s >= 1 || s == 0) continue;
            const long double root = std::sqrt(-2 * std::log(static_cast<long double>(s)) / s);
            exact.push_back(100 + b * 90 * root);
            exact.push_back(100 + a * 90 * root);
        }
        const auto near = [&](T got, long double y) {
            if (std::is_integral_v<T>) {
                const long double most = static_cast<long double>(std::numeric_limits<T>::max());
                const long double least = static_cast<long double>(std::numeric_limits<T>::min());
                return got == static_cast<T>(std::fmin(std::fmax(std::nearbyint(y), least), most));
            }
            // The deviation's rounding counts in units of the larger of it and the sum.
            const long double unit = std::fmax(std::fabs(y), std::fabs(y - 100)) *
                                     static_cast<long double>(std::numeric_limits<T>::epsilon());
            return std::fabs(static_cast<long double>(got) - y) <= 2 * unit;
        };
        std::vector<T> whole(1000), cut(1000);
        ASSERT_EQ(kepStatusOk, this->f.gaussInit(this->gauss, mean, stdDev, seed));
        harness::guarded([&] { return this->f.gauss(whole.data(), 1000, this->gauss); });
        this->f.gaussInit(this->gauss, mean, stdDev, seed);
        for (int i = 0, n = 3; i < 1000; i += n, n = n % 150 + 7)
            this->f.gauss(cut.data() + i, std::min(n, 1000 - i), this->gauss);
        for (std::size_t i = 0; i < 1000; ++i)
            ASSERT_TRUE(near(whole[i], exact[i]) && near(cut[i], exact[i]))
                << "seed " << seed << ", " << i << ": " << double(whole[i]) << ", "
                << double(cut[i]) << ", exactly " << double(exact[i]);
    }
    EXPECT_TRUE(this->gaussRoom.intact());
}

TYPED_TEST(Random, StatusesInTheirOrder) {
    using T = TypeParam;
    T dst[4] = {};
    int size = 0;
    EXPECT_EQ(kepStatusNullPointer, this->f.size(nullptr));
    EXPECT_EQ(kepStatusNullPointer, this->f.gaussSize(nullptr));
    EXPECT_EQ(kepStatusOk, this->f.size(&size));
    EXPECT_EQ(56, size);
    EXPECT_EQ(kepStatusOk, this->f.gaussSize(&size));
    EXPECT_EQ(this->f.gaussBytes, size);
    EXPECT_EQ(kepStatusNullPointer, this->f.init(nullptr, 0, 1, 1));
    EXPECT_EQ(kepStatusNullPointer, this->f.gaussInit(nullptr, 0, 1, 1));
    this->f.init(this->state, 0, 1, 1);
    this->f.gaussInit(this->gauss, 0, 1, 1);
    EXPECT_EQ(kepStatusNullPointer, this->f.uniform(nullptr, 0, this->state));
    EXPECT_EQ(kepStatusNullPointer, this->f.uniform(dst, 0, nullptr));
    EXPECT_EQ(kepStatusNullPointer, this->f.gauss(nullptr, 0, this->gauss));
    EXPECT_EQ(kepStatusNullPointer, this->f.gauss(dst, 0, nullptr));
    auto *other = reinterpret_cast<KepRandUniformState *>(this->gauss);
    auto *otherGauss = reinterpret_cast<KepRandGaussState *>(this->state);
    EXPECT_EQ(kepStatusBadLength, this->f.uniform(dst, 0, other));
    EXPECT_EQ(kepStatusBadLength, this->f.gauss(dst, -1, otherGauss));
    EXPECT_EQ(kepStatusContextMismatch, this->f.uniform(dst, 4, other));
    EXPECT_EQ(kepStatusContextMismatch, this->f.gauss(dst, 4, otherGauss));
    // The next type's state.
    std::int32_t tag;
    std::memcpy(&tag, this->state, 4);
    tag += tag == 38 ? -1 : 1;
    std::memcpy(static_cast<void *>(this->state), &tag, 4);
    EXPECT_EQ(kepStatusContextMismatch, this->f.uniform(dst, 4, this->state));
    for (const T x : dst) EXPECT_EQ(T(0), x);
}

// Values so close to each other that their differences' signs cannot be told beforehand, and one
// such place in a long ordinary stream: the generator's fields stand from byte 24 on.
TEST(RandomStream, DifferencesOfAFewUnits) {
    const std::uint32_t histories[][3] = {
        {0, 0, 0}, {5, 5, 5}, {0x80000000, 0, 0}, {1, 0x80000001, 0x7FFFFFFF}, {19, 0, 18}};
    for (const auto &history : histories)
        for (const std::int32_t borrow : {0, -1}) {
            std::vector<char> block(56);
            auto *state = reinterpret_cast<KepRandUniformState *>(block.data());
            kepsRandUniformInit_64f(state, 0, 1, 1);
            Plain plain(1);
            plain.swb0 = history[0], plain.swb1 = history[1], plain.swb2 = history[2];
            plain.borrow = borrow;
            std::memcpy(block.data() + 28, history, 12);
            std::memcpy(block.data() + 40, &borrow, 4);
            std::vector<Kep64f> x(3000);
            kepsRandUniform_64f(x.data(), 3000, state);
            for (const Kep64f y : x) ASSERT_EQ(0.5 + 0x1p-32 * plain.step(), y);
        }
    std::vector<char> block(56);
    auto *state = reinterpret_cast<KepRandUniformState *>(block.data());
    kepsRandUniformInit_64f(state, 0, 1, 99);
    Plain plain(99);
    std::vector<Kep64f> x(1 << 20);
    for (int k = 0; k < 32; ++k) {
        kepsRandUniform_64f(x.data(), 1 << 20, state);
        double worst = 0;
        for (const Kep64f y : x)
            worst = std::fmax(worst, std::fabs(0.5 + 0x1p-32 * plain.step() - y));
        ASSERT_EQ(0, worst) << k;
    }
}

// Sixteen equal parts, each part of the pairs of neighbours, and the moments: far outside any
// plausible deviation if a step went wrong.
TEST(RandomDistribution, UniformAndGauss) {
    constexpr int n = 1 << 20;
    std::vector<char> block(80);
    auto *uniform = reinterpret_cast<KepRandUniformState *>(block.data());
    auto *gauss = reinterpret_cast<KepRandGaussState *>(block.data());
    std::vector<Kep64f> x(n);
    kepsRandUniformInit_64f(uniform, 0, 1, 4711);
    kepsRandUniform_64f(x.data(), n, uniform);
    std::vector<double> pairs(256), parts(16);
    for (std::size_t i = 0; i + 1 < x.size(); i += 2) {
        const auto a = static_cast<std::size_t>(x[i] * 16),
                   b = static_cast<std::size_t>(x[i + 1] * 16);
        ++pairs[std::min<std::size_t>(a, 15) * 16 + std::min<std::size_t>(b, 15)];
        ++parts[std::min<std::size_t>(a, 15)];
    }
    const auto chiSquare = [](const std::vector<double> &count, double total) {
        double sum = 0;
        const double each = total / static_cast<double>(count.size());
        for (const double c : count) sum += (c - each) * (c - each) / each;
        return sum;
    };
    EXPECT_LT(chiSquare(parts, n / 2), 45);  // 15 degrees of freedom: 1 in 10^4
    EXPECT_LT(chiSquare(pairs, n / 2), 350); // 255: 1 in 10^4
    kepsRandGaussInit_64f(gauss, 0, 1, 4711);
    kepsRandGauss_64f(x.data(), n, gauss);
    double m1 = 0, m2 = 0, m3 = 0, m4 = 0;
    for (const double v : x)
        m1 += v / n, m2 += v * v / n, m3 += v * v * v / n, m4 += v * v * v * v / n;
    EXPECT_NEAR(0, m1, 0.005); // five standard errors
    EXPECT_NEAR(1, m2, 0.007);
    EXPECT_NEAR(0, m3, 0.019);
    EXPECT_NEAR(3, m4, 0.048);
}

} // namespace
