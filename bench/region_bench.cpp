// What a parallel region costs: an empty one, and each function's at the length where it begins.
#include "frame/omp.hpp"

#include "harness/data.hpp"
#include "map_case.hpp"

namespace {

// action() on two threads against one.
void addThreads(const std::string &name, std::int64_t n, const std::function<void()> &action) {
    const auto on = [=](int threads) {
        return [=] {
            kepSetNumThreads(threads);
            action();
            kepSetNumThreads(1);
        };
    };
    bench::add({"region", name + " on 2 threads", n, "1 thread", on(2), on(1), nullptr, true});
}

template <class T, class Function>
void addBinary(const std::string &name, std::int64_t threshold, Function f) {
    harness::Random random(1);
    const auto a = bench::randomArray<T>(threshold, random);
    const auto b = bench::randomArray<T>(threshold, random, 1);
    const bench::Array<T> d(threshold);
    const int n = static_cast<int>(threshold);
    addThreads(name, n, [=] { f(a.data(), b.data(), d.data(), n); });
}

constexpr int scaleFactor = -4;

const bench::Family family("region", [] {
    for (const int threshold : {256, 1024, 4096})
        addThreads("an empty region", threshold, [=] {
            keps::vectorSplit<keps::teamOfTwo>(threshold, threshold,
                                               [](std::int32_t, std::int32_t) { return 0; });
        });
    const auto scaled = [](auto f) {
        return [=](auto *a, auto *b, auto *d, int n) { f(a, b, d, n, scaleFactor); };
    };
    addBinary<Kep16sc>("kepsDiv_16sc_Sfs", 256, scaled(kepsDiv_16sc_Sfs));
    addBinary<Kep8u>("kepsDiv_8u_Sfs", 1024, scaled(kepsDiv_8u_Sfs));
    addBinary<Kep16s>("kepsDiv_16s_Sfs", 1024, scaled(kepsDiv_16s_Sfs));
    addBinary<Kep32s>("kepsDiv_32s_Sfs", 1024, scaled(kepsDiv_32s_Sfs));
    addBinary<Kep64f>("kepsDiv_64f", 1024, kepsDiv_64f);
    addBinary<Kep32fc>("kepsDiv_32fc", 1024, kepsDiv_32fc);
    addBinary<Kep64fc>("kepsDiv_64fc", 1024, kepsDiv_64fc);
    addBinary<Kep32f>("kepsDiv_32f", 4096, kepsDiv_32f);
    addBinary<Kep8u>("kepsDivC_8u_Sfs by 16", 4096, [](auto *a, auto *, auto *d, int n) {
        kepsDivC_8u_Sfs(a, 16, d, n, scaleFactor);
    });
});

} // namespace
