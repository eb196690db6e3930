// The division family on teams of every size: the same bits as on one thread, and the warning of a
// zero divisor in any piece.
#include <gtest/gtest.h>

#include "companion.hpp"
#include "harness/data.hpp"
#include "harness/elementwise.hpp"

namespace {

using namespace harness;

constexpr int teams[] = {2, 3, 5};

// f(src1, src2, dst, n). Where dst is the divisors' array, a thread writes over divisors that
// another one's pair needs.
template <class To, class Divisor, class Dividend, class Function>
void checkTeams(const char *name, int threshold, Function f) {
    Random random(seed());
    for (const int n :
         {threshold - 1, threshold, threshold + 1, threshold + 2, 3 * threshold + 3}) {
        const auto count = static_cast<std::size_t>(n);
        const Divisor one = generate<Divisor>(1, random, [](auto &) { return 1; })[0];
        std::vector<Divisor> divisors(count, one);
        for (auto &x : divisors)
            if (random() % 2)
                x = generate<Divisor>(1, random, [](Random &r) {
                    return static_cast<typename RealOf<Divisor>::type>(r() % 100 + 1);
                })[0];
        const auto dividends = mixed<Dividend>(count, random);
        // No zero, then one in each piece.
        for (int zero = -1; zero <= 2 * teams[2]; zero += 3) {
            auto d = divisors;
            if (zero >= 0) d[zero * (count - 1) / (2 * teams[2])] = Divisor{};
            std::vector<To> expected(count), got(count);
            standin::threads = 1;
            const KepStatus status = f(d.data(), dividends.data(), expected.data(), n);
            EXPECT_EQ(zero >= 0 ? kepStatusDivisionWarning : kepStatusOk, status) << name;
            for (const int threads : teams) {
                standin::threads = threads;
                standin::asked = {};
                const auto same = [&](const To *result) {
                    return std::memcmp(expected.data(), result, count * sizeof(To)) == 0;
                };
                EXPECT_EQ(status, f(d.data(), dividends.data(), got.data(), n)) << name;
                EXPECT_TRUE(same(got.data())) << name << ", " << n << " on " << threads;
                EXPECT_EQ(n >= threshold, standin::asked.threadQueries == 1) << name << ", " << n;
                if constexpr (std::is_same_v<To, Divisor>) {
                    auto both = d;
                    EXPECT_EQ(status, f(both.data(), dividends.data(), both.data(), n)) << name;
                    EXPECT_TRUE(same(both.data())) << name << ", over its divisors, " << n;
                }
            }
        }
    }
    standin::threads = 1;
}

template <class To, class Divisor = To, class Dividend = To, class Function>
void checkScaled(const char *name, int threshold, Function f) {
    checkTeams<To, Divisor, Dividend>(
        name, threshold, [=](auto *a, auto *b, auto *d, int n) { return f(a, b, d, n, 1); });
}

template <class T, class Function>
void checkRound(const char *name, int threshold, Function f) {
    for (int mode = 0; mode < 3; ++mode)
        checkTeams<T, T, T>(name, threshold, [=](auto *a, auto *b, auto *d, int n) {
            return f(a, b, d, n, mode, 1);
        });
}

TEST(DivisionTeams, vectors) {
    checkScaled<Kep8u>("kepsDiv_8u_Sfs", 1024, kepsDiv_8u_Sfs);
    checkScaled<Kep16s>("kepsDiv_16s_Sfs", 1024, kepsDiv_16s_Sfs);
    checkScaled<Kep32s>("kepsDiv_32s_Sfs", 1024, kepsDiv_32s_Sfs);
    checkScaled<Kep16s, Kep16s, Kep32s>("kepsDiv_32s16s_Sfs", 1024, kepsDiv_32s16s_Sfs);
    checkScaled<Kep16sc>("kepsDiv_16sc_Sfs", 256, kepsDiv_16sc_Sfs);
    checkTeams<Kep32f, Kep32f, Kep32f>("kepsDiv_32f", 4096, kepsDiv_32f);
    checkTeams<Kep64f, Kep64f, Kep64f>("kepsDiv_64f", 1024, kepsDiv_64f);
    checkTeams<Kep32fc, Kep32fc, Kep32fc>("kepsDiv_32fc", 1024, kepsDiv_32fc);
    checkTeams<Kep64fc, Kep64fc, Kep64fc>("kepsDiv_64fc", 1024, kepsDiv_64fc);
    checkRound<Kep8u>("kepsDiv_Round_8u_Sfs", 512, kepsDiv_Round_8u_Sfs);
    checkRound<Kep16u>("kepsDiv_Round_16u_Sfs", 1024, kepsDiv_Round_16u_Sfs);
    checkRound<Kep16s>("kepsDiv_Round_16s_Sfs", 1024, kepsDiv_Round_16s_Sfs);
}

template <class T>
void checkReversed(const char *name, int threshold, KepStatus (*f)(const T *, T, T *, int32_t)) {
    checkTeams<T, T, T>(name, threshold,
                        [=](const T *a, const T *, T *d, int n) { return f(a, 100, d, n); });
}

TEST(DivisionTeams, constants) {
    checkReversed("kepsDivCRev_16u", 2048, kepsDivCRev_16u);
    checkReversed("kepsDivCRev_32f", 4096, kepsDivCRev_32f);
}

// Settled scale factors, zero constants and forms without a region don't ask for threads.
TEST(DivisionTeams, noRegion) {
    standin::threads = 2;
    standin::asked = {};
    std::vector<Kep16s> a(5000, 3), b(5000, 100), d(5000);
    std::vector<Kep8u> u(5000, 3);
    auto *w = reinterpret_cast<Kep16u *>(a.data());
    kepsDiv_16s_Sfs(a.data(), b.data(), d.data(), 5000, 16);
    kepsDiv_16s_Sfs(a.data(), b.data(), d.data(), 5000, -31);
    kepsDiv_16u_Sfs(w, w, w, 5000, 0);
    kepsDiv_Round_16s_Sfs(a.data(), b.data(), d.data(), 5000, 1, 17);
    kepsDivC_16s_Sfs(a.data(), 7, d.data(), 5000, 16);
    kepsDivC_16s_Sfs(a.data(), 0, d.data(), 5000, 0);
    kepsDivC_8u_Sfs(u.data(), 7, u.data(), 5000, -16);
    kepsDivC_16u_Sfs(w, 7, w, 5000, 0);
    kepsDivCRev_16u(w, 0, w, 5000);
    EXPECT_EQ(0, standin::asked.threadQueries);
    kepsDivC_8u_Sfs(u.data(), 7, u.data(), 5000, 0);
    kepsDivC_16s_Sfs(b.data(), 7, d.data(), 5000, 0);
    EXPECT_EQ(2, standin::asked.threadQueries);
    EXPECT_EQ(14, d[4999]);
    standin::threads = 1;
}

} // namespace
