// Division against plain loops, against the divide unit's own rate, and two threads against one.
#include "div_peer.hpp"
#include "kepcore.h"
#include "keps.h"
#include "map_case.hpp"

namespace {

using bench::addMap;

constexpr int scaleFactor = -4;
constexpr double scale = 16;

template <class T, class Function>
void addIntegers(const char *name, std::int64_t n, Function f) {
    addMap<T, T, T>(
        "div", name, n, "plain loop",
        [=](const T *a, const T *b, T *d, int len) { f(a, b, d, len, scaleFactor); },
        [](const T *a, const T *b, T *d, int len) { peer::divide(a, b, d, len, scale); });
}

template <class T>
void addComplex(const char *name, std::int64_t n,
                KepStatus (*f)(const T *, const T *, T *, int32_t)) {
    addMap<T, T, T>(
        "div", name, n, "plain loop", f,
        [](const T *a, const T *b, T *d, int len) { peer::divide(a, b, d, len); },
        bench::Agreement::closeQuotient);
}

template <class T>
void addUnit(const char *name, std::int64_t n, KepStatus (*f)(const T *, const T *, T *, int32_t),
             void (*unit)(int)) {
    harness::Random random(1);
    const auto a = bench::randomArray<T>(n, random), b = bench::randomArray<T>(n, random, 1);
    const bench::Array<T> d(n);
    const int len = static_cast<int>(n);
    bench::add({"div", name, n, "the divide unit", [=] { f(a.data(), b.data(), d.data(), len); },
                [=] { unit(len); }, nullptr});
}

template <class T, class Function>
void addThreads(const char *name, std::int64_t n, Function f) {
    harness::Random random(1);
    const auto a = bench::randomArray<T>(n, random), b = bench::randomArray<T>(n, random, 1);
    const bench::Array<T> d(n);
    const int len = static_cast<int>(n);
    const auto on = [=](int threads) {
        return [=] {
            kepSetNumThreads(threads);
            f(a.data(), b.data(), d.data(), len);
            kepSetNumThreads(1);
        };
    };
    bench::add(
        {"div", std::string(name) + " on 2 threads", n, "1 thread", on(2), on(1), nullptr, true});
}

void addLength(std::int64_t n) {
    addIntegers<Kep8u>("kepsDiv_8u_Sfs", n, kepsDiv_8u_Sfs);
    addIntegers<Kep16s>("kepsDiv_16s_Sfs", n, kepsDiv_16s_Sfs);
    addIntegers<Kep32s>("kepsDiv_32s_Sfs", n, kepsDiv_32s_Sfs);
    addIntegers<Kep16sc>("kepsDiv_16sc_Sfs", n, kepsDiv_16sc_Sfs);
    for (const Kep8u val : {7, 12, 16})
        addMap<Kep8u, Kep8u>(
            "div", "kepsDivC_8u_Sfs by " + std::to_string(val), n, "plain loop",
            [=](const Kep8u *a, Kep8u *d, int len) { kepsDivC_8u_Sfs(a, val, d, len, -1); },
            [=](const Kep8u *a, Kep8u *d, int len) { peer::divideBy(a, val, d, len, 2); },
            bench::Agreement::none); // the plain loop misses ties
    for (const Kep16s val : {14, 1000, 256})
        addMap<Kep16s, Kep16s>(
            "div", "kepsDivC_16s_Sfs by " + std::to_string(val), n, "plain loop",
            [=](const Kep16s *a, Kep16s *d, int len) { kepsDivC_16s_Sfs(a, val, d, len, -1); },
            [=](const Kep16s *a, Kep16s *d, int len) { peer::divideBy(a, val, d, len, 2); },
            bench::Agreement::none);
    addComplex("kepsDiv_32fc", n, kepsDiv_32fc);
    addComplex("kepsDiv_64fc", n, kepsDiv_64fc);
    addUnit("kepsDiv_32f", n, kepsDiv_32f, peer::divideUnitFloats);
    addUnit("kepsDiv_64f", n, kepsDiv_64f, peer::divideUnitDoubles);
}

const bench::Family family("div", [] {
    for (const std::int64_t n : {64, 1024, 16384}) addLength(n);
    // From the split's thresholds, where a region's cost shows, to past the last cache.
    for (const std::int64_t n : {1024, 4096, 16384, 65536, 262144, 1 << 20, 1 << 22}) {
        const auto scaled = [](auto f) {
            return [=](auto *a, auto *b, auto *d, int len) { f(a, b, d, len, scaleFactor); };
        };
        addThreads<Kep8u>("kepsDiv_8u_Sfs", n, scaled(kepsDiv_8u_Sfs));
        addThreads<Kep16s>("kepsDiv_16s_Sfs", n, scaled(kepsDiv_16s_Sfs));
        addThreads<Kep32f>("kepsDiv_32f", n, kepsDiv_32f);
        addThreads<Kep64f>("kepsDiv_64f", n, kepsDiv_64f);
        addThreads<Kep32fc>("kepsDiv_32fc", n, kepsDiv_32fc);
    }
});

} // namespace
