// Square roots on teams of every size: the same bits as on one thread, and the warning of a
// negative element in any piece.
#include <gtest/gtest.h>

#include "companion.hpp"
#include "harness/data.hpp"

namespace {

using namespace harness;

template <class To, class From, class Function>
void checkTeams(const char *name, int threshold, bool warns, Function f) {
    Random random(seed());
    for (const int n : {threshold - 1, threshold, threshold + 1, 3 * threshold + 2}) {
        const auto count = static_cast<std::size_t>(n);
        const auto positive = generate<From>(count, random, [](Random &r) {
            return static_cast<typename RealOf<From>::type>(r() % 120 + 1);
        });
        for (const int negative : {-1, 0, 1, 2}) {
            auto src = positive;
            if constexpr (!isComplex<From> && std::is_signed_v<From>)
                if (negative >= 0)
                    src[static_cast<std::size_t>(negative) * (count - 1) / 2] = From(-4);
            std::vector<To> expected(count), got(count);
            standin::threads = 1;
            const KepStatus status = f(src.data(), expected.data(), n);
            EXPECT_EQ(warns && negative >= 0 ? kepStatusSqrtWarning : kepStatusOk, status) << name;
            for (const int threads : {2, 5}) {
                standin::threads = threads;
                standin::asked = {};
                EXPECT_EQ(status, f(src.data(), got.data(), n)) << name;
                EXPECT_EQ(0, std::memcmp(expected.data(), got.data(), count * sizeof(To)))
                    << name << ", " << n << " on " << threads;
                EXPECT_EQ(n >= threshold, standin::asked.threadQueries == 1) << name << ", " << n;
            }
        }
    }
    standin::threads = 1;
}

TEST(SqrtTeams, EveryForm) {
    checkTeams<Kep32f, Kep32f>("32f", 4096, true, kepsSqrt_32f);
    checkTeams<Kep64f, Kep64f>("64f", 512, true, kepsSqrt_64f);
    checkTeams<Kep32fc, Kep32fc>("32fc", 512, false, kepsSqrt_32fc);
    checkTeams<Kep64fc, Kep64fc>("64fc", 64, false, kepsSqrt_64fc);
    const auto scaled = [](auto function) {
        return [function](const auto *src, auto *dst, int n) { return function(src, dst, n, 0); };
    };
    checkTeams<Kep8u, Kep8u>("8u", 2048, false, scaled(kepsSqrt_8u_Sfs));
    checkTeams<Kep16u, Kep16u>("16u", 2048, false, scaled(kepsSqrt_16u_Sfs));
    checkTeams<Kep16s, Kep16s>("16s", 2048, true, scaled(kepsSqrt_16s_Sfs));
    checkTeams<Kep16sc, Kep16sc>("16sc", 256, false, scaled(kepsSqrt_16sc_Sfs));
    checkTeams<Kep16s, Kep32s>("32s16s", 1024, true, scaled(kepsSqrt_32s16s_Sfs));
}

} // namespace
