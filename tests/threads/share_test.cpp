// Calls from several threads at once: the companion's answers, a plan and a filter that all share.
// The thread sanitizer runs these; so does every other build.
#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <kepcore.h>
#include <keps.h>
#include <omp.h>
#include <thread>
#include <vector>

namespace {

constexpr int threads = 4;

// The same action on every thread, all at once.
template <class Action>
void together(const Action &action) {
    std::vector<std::thread> team;
    for (int t = 0; t < threads; ++t) team.emplace_back(action, t);
    for (auto &thread : team) thread.join();
}

std::vector<float> ramp(int length) {
    std::vector<float> samples(static_cast<std::size_t>(length));
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<float>(static_cast<int>(i * 7919 % 1000) - 500);
    return samples;
}

TEST(Threads, askTheCompanion) {
    std::vector<int> sizes(threads), features(threads), counts(threads);
    together([&](int t) {
        const auto at = static_cast<std::size_t>(t);
        kepGetMaxCacheSizeB(&sizes[at]);
        features[at] = ownGetFeature(KEP_FEATURE_F16C);
        counts[at] = ownGetNumThreads();
        kepFree(kepMalloc(1000));
    });
    EXPECT_EQ(std::count(sizes.begin(), sizes.end(), sizes[0]), threads);
    EXPECT_EQ(std::count(features.begin(), features.end(), features[0]), threads);
    EXPECT_EQ(std::count(counts.begin(), counts.end(), counts[0]), threads);
}

// One array filled by a team, each member its own part, and read by others after the barrier:
// streaming stores must have arrived by then.
TEST(Threads, fillAndCopyPartsOfOneArray) {
    constexpr int part = 1 << 20;
    std::vector<float> filled(threads * part), copied(filled.size());
    int wrong = 0;
#pragma omp parallel num_threads(threads) reduction(+ : wrong)
    {
        const int me = omp_get_thread_num(), other = (me + 1) % omp_get_num_threads();
        kepsSet_32f(static_cast<float>(me), filled.data() + me * part, part);
#pragma omp barrier
        kepsCopy_32f(filled.data() + other * part, copied.data() + other * part, part);
        const auto *mine = copied.data() + other * part;
        wrong += static_cast<int>(part - std::count(mine, mine + part, static_cast<float>(other)));
    }
    EXPECT_EQ(wrong, 0);
}

// Long divisions open regions of their own, here from several threads at once; one divisor is zero,
// so the pieces' warnings meet too. Every thread reads the same sources.
TEST(Threads, divideInRegionsOfTheirOwn) {
    constexpr std::size_t length = 20000;
    std::vector<Kep16s> divisors(length), numbers(length);
    for (std::size_t i = 0; i < length; ++i) {
        divisors[i] = static_cast<Kep16s>(i % 100 + 1);
        numbers[i] = static_cast<Kep16s>(i);
    }
    divisors[length / 2] = 0;
    kepSetNumThreads(threads);
    std::vector<std::vector<Kep16s>> rounded(threads, std::vector<Kep16s>(length));
    std::vector<KepStatus> statuses(threads);
    std::vector<std::vector<float>> quotients(threads, std::vector<float>(length));
    const std::vector<float> ones(length, 1.0f), fours(length, 4.0f);
    together([&](int t) {
        const auto at = static_cast<std::size_t>(t);
        statuses[at] = kepsDiv_Round_16s_Sfs(divisors.data(), numbers.data(), rounded[at].data(),
                                             static_cast<int>(length), kepRoundNearest, 0);
        kepsDiv_32f(fours.data(), ones.data(), quotients[at].data(), static_cast<int>(length));
    });
    kepSetNumThreads(0);
    for (const auto status : statuses) EXPECT_EQ(status, kepStatusDivisionWarning);
    for (const auto &result : rounded) EXPECT_EQ(result, rounded[0]);
    for (const auto &result : quotients) EXPECT_EQ(result, std::vector<float>(length, 0.25f));
}

TEST(Threads, shareATransformPlan) {
    constexpr int order = 12, length = 1 << order;
    int planSize = 0, initSize = 0, workSize = 0;
    ASSERT_EQ(
        kepsFFTGetSize_R_32f(order, kepFftScaleInverseByN, 0, &planSize, &initSize, &workSize),
        kepStatusOk);
    std::vector<Kep8u> memory(static_cast<std::size_t>(planSize));
    std::vector<Kep8u> init(static_cast<std::size_t>(initSize) + 1);
    KepsFftPlan *plan = nullptr;
    ASSERT_EQ(kepsFFTInit_R_32f(&plan, order, kepFftScaleInverseByN, 0, memory.data(), init.data()),
              kepStatusOk);
    const auto samples = ramp(length);
    std::vector<std::vector<float>> spectra(threads, std::vector<float>(length + 2));
    together([&](int t) {
        std::vector<Kep8u> work(static_cast<std::size_t>(workSize) + 1);
        for (int repeat = 0; repeat < 20; ++repeat)
            kepsFFTFwd_RToCCS_32f(samples.data(), spectra[static_cast<std::size_t>(t)].data(), plan,
                                  work.data());
    });
    for (const auto &spectrum : spectra) EXPECT_EQ(spectrum, spectra[0]);
}

// Each thread filters the stream by the same block in its own way of cutting it; the direct path
// gives the same bits however it is cut.
TEST(Threads, shareAFilter) {
    constexpr int count = 20, length = 20000;
    int specSize = 0, workSize = 0;
    ASSERT_EQ(kepsFIRSRGetSize(count, kepType32f, &specSize, &workSize), kepStatusOk);
    std::vector<Kep8u> spec(static_cast<std::size_t>(specSize));
    ASSERT_EQ(kepsFIRSRInit_32f(ramp(count).data(), count, kepAlgorithmDirect, spec.data()),
              kepStatusOk);
    const auto samples = ramp(length);
    std::vector<std::vector<float>> results(threads, std::vector<float>(length));
    together([&](int t) {
        std::vector<Kep8u> work(static_cast<std::size_t>(workSize));
        std::vector<float> past(count - 1), next(count - 1);
        const int block = 1000 * (t + 1);
        for (int at = 0; at < length; at += block) {
            kepsFIRSR_32f(samples.data() + at, results[static_cast<std::size_t>(t)].data() + at,
                          std::min(block, length - at), spec.data(), past.data(), next.data(),
                          work.data());
            past.swap(next);
        }
    });
    for (const auto &result : results) EXPECT_EQ(result, results[0]);
}

} // namespace
