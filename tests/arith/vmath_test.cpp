// The transcendental kernels: error bounds, special values and codes, and that a value does not
// depend on its place.
#include "arith/scalar.hpp"

#include "vmath_cases.hpp"

#include <cfenv>
#include <gtest/gtest.h>

#include "harness/guarded.hpp"

namespace {

using harness::Random;

template <class T>
void holdBounds(const std::vector<vmath::Table<T>> &tables) {
    Random random(harness::seed());
    for (const auto &table : tables)
        for (int slot = 0; slot < 3; ++slot) {
            const auto [ulp, bits] = table.bounds[slot];
            for (std::size_t range = 0; range < table.ranges.size(); ++range) {
                const auto worst = vmath::measure(table, slot, range, 1 << 14, random);
                EXPECT_TRUE(worst.within(ulp, bits))
                    << table.name << vmath::levels[slot] << " range " << range << ": " << worst.ulp
                    << " ulp, relative 2^" << std::log2(worst.relative) << ", subnormal "
                    << worst.subnormal << ", wrong class " << worst.wrongClass << ", at "
                    << double(worst.at[0]) << ", " << double(worst.at[1]) << " got " << worst.got;
            }
        }
}

TEST(Vmath, SingleWithinBounds) {
    holdBounds(vmath::singleTables());
}
TEST(Vmath, DoubleWithinBounds) {
    holdBounds(vmath::doubleTables());
}

// Every length and place gives the value that the element has by itself, and the calling
// convention is kept.
template <class T>
void holdPlaces(const std::vector<vmath::Table<T>> &tables) {
    Random random(harness::seed());
    for (const auto &table : tables)
        for (int slot = 0; slot < 3; ++slot)
            for (int n = 1; n <= 40; ++n) {
                SCOPED_TRACE(table.name + vmath::levels[slot] + " length " + std::to_string(n));
                const auto count = std::size_t(n);
                std::vector<T> a = harness::mixed<T>(count, random);
                std::vector<T> b = harness::mixed<T>(count, random), alone(count), alone2(count);
                for (std::size_t i = 0; i < count; ++i)
                    table.call(slot, &a[i], &b[i], &alone[i], &alone2[i], 1);
                harness::Room roomA(count * sizeof(T)), roomY(count * sizeof(T)),
                    roomY2(count * sizeof(T));
                const harness::Spot end{harness::Spot::endsAtGuard};
                auto *p = reinterpret_cast<T *>(roomA.place(count * sizeof(T), end));
                auto *y = reinterpret_cast<T *>(roomY.place(count * sizeof(T), end));
                auto *y2 = reinterpret_cast<T *>(roomY2.place(count * sizeof(T), end));
                std::memcpy(p, a.data(), count * sizeof(T));
                harness::guarded([&] { return table.call(slot, p, b.data(), y, y2, n); });
                bool ok = true;
                for (std::size_t i = 0; i < count; ++i) {
                    ok = ok && harness::sameValue(y[i], alone[i]);
                    if (table.out == 2) ok = ok && harness::sameValue(y2[i], alone2[i]);
                }
                table.call(slot, p, b.data(), p, y2, n); // in place
                for (std::size_t i = 0; i < count; ++i)
                    ok = ok && harness::sameValue(p[i], alone[i]);
                EXPECT_TRUE(ok && roomA.intact() && roomY.intact())
                    << table.name << vmath::levels[slot] << " length " << n;
            }
}

TEST(Vmath, ValueDoesNotDependOnPlace) {
    holdPlaces(vmath::singleTables());
    holdPlaces(vmath::doubleTables());
}

// Every float from 1 to 2, or from 2 to 4 where 1 to 2 says little.
TEST(Vmath, EveryFloatOfABinade) {
    const auto hold = [](const char *name, auto entry, double (*exact)(double), double bound) {
        constexpr int n = 1 << 16;
        std::vector<float> x(n), y(n);
        double worst = 0;
        for (std::uint32_t base = 0; base < 1U << 23; base += n) {
            for (std::uint32_t i = 0; i < n; ++i) {
                const std::uint32_t bits = 0x3F800000 + base + i;
                std::memcpy(&x[i], &bits, 4);
            }
            entry(x.data(), y.data(), n);
            for (std::size_t i = 0; i < n; ++i) {
                const double e = exact(x[i]);
                if (e != 0) worst = std::max(worst, std::fabs(y[i] - e) / std::fabs(e));
            }
        }
        EXPECT_LE(worst, bound) << name << ": 2^" << std::log2(worst);
    };
    hold("sin", kepsSin_32f_A24, std::sin, 0x1.01p-24);
    hold("cos", kepsCos_32f_A24, std::cos, 0x1.01p-24);
    hold("sin", kepsSin_32f_A21, std::sin, 0x1p-21);
    hold("exp", kepsExp_32f_A21, std::exp, 0x1p-21);
    hold("ln", kepsLn_32f_A21, std::log, 0x1p-21);
    hold("atan", kepsAtan_32f_A21, std::atan, 0x1p-21);
    hold("cbrt", kepsCbrt_32f_A21, std::cbrt, 0x1p-21);
}

// One element: its value, code, and exceptions raised.
struct Outcome {
    double value;
    int code, exceptions;
};
template <class T>
Outcome one(int (*entry)(const T *, T *, int32_t), T x) {
    // Among ordinary elements, which must not change what it gives.
    T in[11], out[11];
    std::fill_n(in, 11, T(0.75));
    in[6] = x;
    std::feclearexcept(FE_ALL_EXCEPT);
    const int code = entry(in, out, 11);
    const int raised = std::fetestexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW | FE_UNDERFLOW);
    return {static_cast<double>(out[6]), code, raised};
}

template <class T>
void holdNaN(int (*entry)(const T *, T *, int32_t)) {
    const Outcome quiet = one(entry, std::numeric_limits<T>::quiet_NaN());
    EXPECT_TRUE(std::isnan(quiet.value));
    EXPECT_EQ(0, quiet.code);
    EXPECT_EQ(0, quiet.exceptions);
}

TEST(Vmath, SpecialValuesCodesAndExceptions) {
    using namespace keps::vmath;
    constexpr double inf = std::numeric_limits<double>::infinity();
    constexpr float inff = std::numeric_limits<float>::infinity();
    for (const auto entry :
         {kepsSin_64f_A53, kepsCos_64f_A50, kepsExp_64f_A50, kepsLn_64f_A53, kepsSqrt_64f_A53,
          kepsAtan_64f_A50, kepsSinh_64f_A53, kepsCosh_64f_A53})
        holdNaN(entry);
    for (const auto entry : {kepsSin_32f_A24, kepsCos_32f_A24, kepsSin_32f_A21, kepsExp_32f_A21,
                             kepsLn_32f_A21, kepsAtan_32f_A21, kepsCbrt_32f_A21})
        holdNaN(entry);

    const auto expect = [](const Outcome &o, double value, int code, int exceptions) {
        if (std::isnan(value))
            EXPECT_TRUE(std::isnan(o.value) && std::signbit(o.value));
        else
            EXPECT_EQ(value, o.value);
        EXPECT_EQ(code, o.code) << "for " << value;
        EXPECT_EQ(exceptions, o.exceptions) << "for " << value;
    };
    const double nan = std::nan("");
    expect(one(kepsExp_32f_A21, 88.8F), inf, overflow, FE_OVERFLOW);
    EXPECT_EQ(0, one(kepsExp_32f_A21, 0x1.62e42ep+6F).code);
    expect(one(kepsExp_32f_A21, -104.0F), 0, underflow, FE_UNDERFLOW);
    expect(one(kepsExp_32f_A21, inff), inf, 0, 0);
    expect(one(kepsExp_32f_A21, -inff), 0, 0, 0);
    expect(one(kepsExp_64f_A50, 710.0), inf, overflow, FE_OVERFLOW);
    expect(one(kepsExp_64f_A50, -746.0), 0, underflow, FE_UNDERFLOW);
    expect(one(kepsExp_64f_A50, -745.0), 0x1p-1074, 0, FE_UNDERFLOW);
    expect(one(kepsCosh_64f_A53, -710.475860073944), inf, overflow, FE_OVERFLOW);
    expect(one(kepsSinh_64f_A53, -711.0), -inf, overflow, FE_OVERFLOW);
    for (const double zero : {0.0, -0.0}) {
        expect(one(kepsLn_64f_A53, zero), -inf, singularity, FE_DIVBYZERO);
        expect(one(kepsLn_32f_A21, float(zero)), -inf, singularity, FE_DIVBYZERO);
        EXPECT_EQ(std::signbit(zero), std::signbit(one(kepsSin_64f_A53, zero).value));
        EXPECT_EQ(std::signbit(zero), std::signbit(one(kepsSin_32f_A21, float(zero)).value));
        EXPECT_EQ(std::signbit(zero), std::signbit(one(kepsAtan_64f_A50, zero).value));
        EXPECT_EQ(std::signbit(zero), std::signbit(one(kepsSinh_64f_A53, zero).value));
        EXPECT_EQ(std::signbit(zero), std::signbit(one(kepsSqrt_64f_A53, zero).value));
        EXPECT_EQ(std::signbit(zero), std::signbit(one(kepsCbrt_32f_A21, float(zero)).value));
    }
    for (const double x : {-1.0, -0x1p-1074, -inf}) {
        expect(one(kepsLn_64f_A53, x), nan, domain, FE_INVALID);
        expect(one(kepsSqrt_64f_A53, x), nan, domain, FE_INVALID);
    }
    expect(one(kepsLn_32f_A21, -0x1p-149F), nan, domain, FE_INVALID);
    expect(one(kepsLn_64f_A53, inf), inf, 0, 0);
    expect(one(kepsLn_64f_A50, 1.0), 0, 0, 0);
    expect(one(kepsLn_32f_A21, 1.0F), 0, 0, 0);
    for (const double x : {inf, -inf}) {
        expect(one(kepsSin_64f_A53, x), nan, domain, FE_INVALID);
        expect(one(kepsCos_64f_A26, x), nan, domain, FE_INVALID);
        expect(one(kepsSin_32f_A21, float(x)), nan, domain, FE_INVALID);
        EXPECT_DOUBLE_EQ(std::atan(x), one(kepsAtan_64f_A50, x).value);
    }

    // The last code met decides.
    const double both[] = {0, 1, 2, 3, 4, -1}, other[] = {-1, 1, 2, 3, 4, 0};
    double out[6];
    EXPECT_EQ(domain, kepsLn_64f_A53(both, out, 6));
    EXPECT_EQ(singularity, kepsLn_64f_A53(other, out, 6));
}

// The C library's conventions for two arguments.
TEST(Vmath, PairsOfSpecialValues) {
    const double inf = std::numeric_limits<double>::infinity();
    const double values[] = {0.0,  -0.0, 1,     -1,     0.5,       -2,         3,           inf,
                             -inf, -3.5, 1e300, 1e-300, 0x1p-1074, -0x1p-1074, std::nan("")};
    for (const double y : values)
        for (const double x : values) {
            double angle, power;
            const float yf = float(y), xf = float(x);
            float anglef;
            kepsAtan2_64f_A50(&y, &x, &angle, 1);
            kepsAtan2_32f_A21(&yf, &xf, &anglef, 1);
            const int code = kepsPowx_64f_A53(&y, &x, &power, 1);
            const auto same = [](double a, double b, double bound) {
                if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
                if (a == b) return std::signbit(a) == std::signbit(b);
                return std::fabs(a - b) <= bound * std::fabs(a);
            };
            EXPECT_TRUE(same(std::atan2(y, x), angle, 0x1p-50)) << y << ", " << x;
            EXPECT_TRUE(same(std::atan2(yf, xf), double(anglef), 0x1p-21)) << y << ", " << x;
            EXPECT_TRUE(same(std::pow(y, x), power, 0x1p-52)) << y << ", " << x << ": " << power;
            EXPECT_EQ(y < 0 && std::isfinite(y) && std::isfinite(x) && x != std::floor(x),
                      code == keps::vmath::domain);
        }
}

// Arguments next to multiples of pi, where little of them is left, and huge ones.
TEST(Vmath, NearMultiplesOfPi) {
    std::vector<double> x;
    for (int k = 1; k < 66000; k += k < 1000 ? 1 : 97)
        for (const int ulps : {-1, 0, 1}) {
            double at = static_cast<double>(k * (M_PIl / 2));
            for (int i = 0; i < std::abs(ulps); ++i) at = std::nextafter(at, ulps < 0 ? 0 : 1e9);
            x.push_back(at);
        }
    // The double nearest to a multiple of pi / 2.
    x.push_back(0x1.6ac5b262ca1ffp+849);
    x.push_back(0x1.fffffffffffffp+1023);
    std::vector<float> xf(x.begin(), x.end());
    const auto n = static_cast<int>(x.size());
    for (const bool sine : {false, true}) {
        const auto exact = [&](long double v) { return sine ? sinl(v) : cosl(v); };
        std::vector<double> y(x.size());
        std::vector<float> yf(x.size());
        const auto hold = [&](auto entry, const auto &in, auto &out, double bound) {
            entry(in.data(), out.data(), n);
            for (std::size_t i = 0; i < in.size(); ++i) {
                if (!std::isfinite(in[i])) continue;
                const long double e = exact(in[i]);
                ASSERT_LE(std::fabs(out[i] - e), bound * std::fabs(e))
                    << i << ": " << double(in[i]);
            }
        };
        hold(sine ? kepsSin_64f_A53 : kepsCos_64f_A53, x, y, 0x1.2p-53);
        hold(sine ? kepsSin_64f_A50 : kepsCos_64f_A50, x, y, 0x1p-50);
        hold(sine ? kepsSin_32f_A24 : kepsCos_32f_A24, xf, yf, 0x1.1p-24);
        hold(sine ? own_keps_sSin_E9_ttab[0] : own_keps_sCos_E9_ttab[0], xf, yf, 0x1p-21);
    }
    double y;
    kepsCos_64f_A26(&x[0], &y, 1);
    EXPECT_LE(std::fabs(y - cosl(x[0])), 0x1p-26L * std::fabs(cosl(x[0])));
}

// Any rounding mode, masks and denormal treatment at entry: same values, and the word kept.
TEST(Vmath, ControlWordHasNoBearing) {
    const double x[] = {0.1, 1e5, 3, 0x1p-1070, 7};
    const double large[] = {-745, 1, 2, -3, -740};
    double expected[10], got[10];
    kepsSin_64f_A53(x, expected, 5);
    kepsExp_64f_A50(large, expected + 5, 5);
    const unsigned found = __builtin_ia32_stmxcsr();
    for (const unsigned word : {0x1F80U, 0x7F80U, 0x5F80U, 0x9FC0U, 0x3F80U}) {
        __builtin_ia32_ldmxcsr(word);
        kepsSin_64f_A53(x, got, 5);
        kepsExp_64f_A50(large, got + 5, 5);
        const unsigned after = __builtin_ia32_stmxcsr();
        __builtin_ia32_ldmxcsr(found);
        EXPECT_EQ(word, after & ~0x3FU);
        EXPECT_EQ(0, std::memcmp(expected, got, sizeof got)) << word;
    }
}

TEST(Vmath, ScalarHelpers) {
    harness::Random random(harness::seed());
    const auto near = [](double got, long double exact, double ulps) {
        return std::fabs(got - exact) <= ulps * 0x1p-52L * std::fabs(exact);
    };
    for (int i = 0; i < 20000; ++i) {
        const double x =
            harness::draw<double>({0x1p-300, 0x1p1020, harness::Range::exponents}, random);
        const double m = harness::draw<double>({-700, 700}, random);
        ASSERT_TRUE(near(kepsSinOne(x), sinl(x), 1)) << x;
        ASSERT_TRUE(near(kepsCosOne(x), cosl(x), 1)) << x;
        ASSERT_TRUE(near(kepsTanOne(x), tanl(x), 2)) << x;
        ASSERT_TRUE(near(kepsSinOne(m), sinl(m), 1) && near(kepsTanOne(m), tanl(m), 2)) << m;
        ASSERT_TRUE(near(ownsTanCotHuge(1e6 + m, 1), 1 / tanl(1e6 + m), 1)) << m;
        ASSERT_TRUE(near(kepsExpOne(m), expl(m), 1)) << m;
        ASSERT_TRUE(near(kepsLogOne(std::fabs(x)), logl(std::fabs(x)), 1)) << x;
        ASSERT_TRUE(near(kepsAtan2One(m, 3), atan2l(m, 3), 1)) << m;
        ASSERT_TRUE(near(kepsPowOne(std::fabs(m), 1.5), powl(std::fabs(m), 1.5L), 1)) << m;
        ASSERT_EQ(std::floor(m), kepsFloorOne(m));
        ASSERT_EQ(std::sqrt(std::fabs(m)), kepsSqrtOne(kepsFabsOne(m)));
    }
    EXPECT_TRUE(std::isnan(kepsSinOne(HUGE_VAL)) && std::isnan(kepsTanOne(std::nan(""))));
}

} // namespace
