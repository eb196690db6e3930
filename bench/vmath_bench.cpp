// Transcendental kernels against the vector functions of SLEEF, of the C library and of VOLK;
// integer exponentials and logarithms against its scalar ones; random numbers against plain loops
// and std::mt19937.
#include "arith/vmath/vmath.hpp"

#include "keps.h"

#include <cmath>
#include <cstring>
#include <map>
#include <random>

#include "map_case.hpp"
#include "vmath_peer.hpp"

namespace {

template <class T>
struct Ours {
    int (*call)(const T *a, const T *b, T *y, int n);
    double from, to;
    double bits; // agreement that a result of the peer's is held to
};

template <class T, int (*f)(const T *, T *, int32_t)>
int unary(const T *a, const T *, T *y, int n) {
    return f(a, y, n);
}

template <class T>
void addCases(const std::map<std::string, Ours<T>> &ours,
              const std::vector<peer::Elementary<T>> &peers, const char *type) {
    const bool wide = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
    for (const auto &p : peers) {
        if (p.wide && !wide) continue;
        const auto found = ours.find(p.function);
        if (found == ours.end()) continue;
        const Ours<T> mine = found->second;
        for (const int n : {1024, 65536}) {
            bench::Array<T> a(n), b(n), y(n), z(n);
            std::mt19937 random(1);
            std::uniform_real_distribution<double> value(mine.from, mine.to);
            for (int i = 0; i < n; ++i) {
                a.data()[i] = static_cast<T>(value(random));
                b.data()[i] = static_cast<T>(value(random));
            }
            bench::add({"vmath", std::string(p.function) + " " + type, n, p.name,
                        [=] { mine.call(a.data(), b.data(), y.data(), n); },
                        [=] { p.loop(a.data(), b.data(), z.data(), n); },
                        [=] {
                            const double most = std::exp2(-mine.bits);
                            for (int i = 0; i < n; ++i) {
                                const double u = y.data()[i], v = z.data()[i] * p.scale;
                                if (!(std::fabs(u - v) <= most * std::fmax(std::fabs(v), 1e-3)))
                                    return false;
                            }
                            return true;
                        }});
        }
    }
}

const bench::Family family("vmath", [] {
    addCases<float>({{"sin", {unary<float, kepsSin_32f_A21>, -100, 100, 18}},
                     {"sin A24", {unary<float, kepsSin_32f_A24>, -100, 100, 18}},
                     {"exp", {unary<float, kepsExp_32f_A21>, -80, 80, 18}},
                     {"ln", {unary<float, kepsLn_32f_A21>, 0.01, 1000, 18}},
                     {"atan", {unary<float, kepsAtan_32f_A21>, -10, 10, 18}},
                     {"atan2", {kepsAtan2_32f_A21, -10, 10, 18}},
                     {"cbrt", {unary<float, kepsCbrt_32f_A21>, -1000, 1000, 18}}},
                    peer::elementary32(), "32f");
    addCases<double>({{"sin", {unary<double, kepsSin_64f_A50>, -100, 100, 40}},
                      {"sin A53", {unary<double, kepsSin_64f_A53>, -100, 100, 40}},
                      {"exp", {unary<double, kepsExp_64f_A50>, -600, 600, 40}},
                      {"ln", {unary<double, kepsLn_64f_A50>, 0.01, 1000, 40}},
                      {"ln A53", {unary<double, kepsLn_64f_A53>, 0.01, 1000, 40}},
                      {"atan", {unary<double, kepsAtan_64f_A50>, -10, 10, 40}},
                      {"atan2", {kepsAtan2_64f_A50, -10, 10, 40}},
                      {"sinh A53", {unary<double, kepsSinh_64f_A53>, -30, 30, 40}},
                      {"cosh A53", {unary<double, kepsCosh_64f_A53>, -30, 30, 40}},
                      {"pow A53", {kepsPowx_64f_A53, 0.01, 30, 40}}},
                     peer::elementary64(), "64f");
});

template <class T>
auto sameArrays(const bench::Array<T> &y, const bench::Array<T> &z, int n) {
    return [=] { return std::memcmp(y.data(), z.data(), sizeof(T) * std::size_t(n)) == 0; };
}

const bench::Family integers("elementary", [] {
    for (const int n : {1024, 65536}) {
        std::mt19937 random(1);
        bench::Array<Kep16s> exponent(n), y(n), z(n), positive(n);
        bench::Array<Kep32s> wide(n), yw(n), zw(n);
        bench::Array<Kep32f> f(n), yf(n), zf(n);
        bench::Array<Kep64f> d(n), yd(n), zd(n);
        for (int i = 0; i < n; ++i) {
            exponent.data()[i] = static_cast<Kep16s>(int(random() % 40) - 15);
            positive.data()[i] = static_cast<Kep16s>(1 + random() % 32767);
            wide.data()[i] = static_cast<Kep32s>(1 + (random() >> 1) % 2147483647);
            d.data()[i] = f.data()[i] = static_cast<float>(random());
        }
        for (const int s : {0, -2, 3})
            bench::add({"elementary", "kepsExp_16s_Sfs s " + std::to_string(s), n, "libm loop",
                        [=] { kepsExp_16s_Sfs(exponent.data(), y.data(), n, s); },
                        [=] { peer::expLoop(exponent.data(), z.data(), n, s); },
                        sameArrays(y, z, n)});
        for (const int s : {0, 2}) {
            bench::add({"elementary", "kepsLn_16s_Sfs s " + std::to_string(s), n, "libm loop",
                        [=] { kepsLn_16s_Sfs(positive.data(), y.data(), n, s); },
                        [=] { peer::lnLoop(positive.data(), z.data(), n, s); },
                        sameArrays(y, z, n)});
            bench::add({"elementary", "kepsLn_32s_Sfs s " + std::to_string(s), n, "libm loop",
                        [=] { kepsLn_32s_Sfs(wide.data(), yw.data(), n, s); },
                        [=] { peer::lnLoop(wide.data(), zw.data(), n, s); },
                        sameArrays(yw, zw, n)});
        }
        bench::add({"elementary", "kepsSqrt_32f", n, "plain loop",
                    [=] { kepsSqrt_32f(f.data(), yf.data(), n); },
                    [=] { peer::rootLoop(f.data(), zf.data(), n); }, sameArrays(yf, zf, n)});
        bench::add({"elementary", "kepsSqrt_64f", n, "plain loop",
                    [=] { kepsSqrt_64f(d.data(), yd.data(), n); },
                    [=] { peer::rootLoop(d.data(), zd.data(), n); }, sameArrays(yd, zd, n)});
    }
});

const bench::Family randoms("random", [] {
    for (const int n : {1024, 65536}) {
        bench::Array<Kep32f> y(n), z(n);
        bench::Array<Kep8u> memory(80);
        auto *uniform = reinterpret_cast<KepRandUniformState *>(memory.data());
        bench::Array<Kep8u> other(80);
        auto *gauss = reinterpret_cast<KepRandGaussState *>(other.data());
        kepsRandUniformInit_32f(uniform, 0, 1, 1);
        kepsRandGaussInit_32f(gauss, 0, 1, 1);
        const auto plain = std::make_shared<peer::Generator>(
            peer::Generator{1131199209, 1, 1 * 69069 + 1013904243,
                            (1 * 69069U + 1013904243U) * 69069U + 1013904243U, -1});
        const auto plainGauss = std::make_shared<peer::Generator>(*plain);
        const auto twister = std::make_shared<std::mt19937>();
        bench::add({"random", "kepsRandUniform_32f", n, "plain loop",
                    [=] { (void)memory, kepsRandUniform_32f(y.data(), n, uniform); },
                    [=] { peer::uniformLoop(*plain, z.data(), n, 0.5, 0x1p-32); },
                    sameArrays(y, z, n)});
        bench::add({"random", "kepsRandGauss_32f", n, "plain loop",
                    [=] { (void)other, kepsRandGauss_32f(y.data(), n, gauss); },
                    [=] { peer::gaussLoop(*plainGauss, z.data(), n, 0, 1); }, nullptr});
        bench::add({"random", "kepsRandUniform_32f", n, "std::mt19937",
                    [=] { (void)memory, kepsRandUniform_32f(y.data(), n, uniform); },
                    [=] {
                        std::uniform_real_distribution<float> d(0, 1);
                        for (int i = 0; i < n; ++i) z.data()[i] = d(*twister);
                    },
                    nullptr});
        bench::add({"random", "kepsRandGauss_32f", n, "std::mt19937",
                    [=] { (void)other, kepsRandGauss_32f(y.data(), n, gauss); },
                    [=] {
                        std::normal_distribution<float> d(0, 1);
                        for (int i = 0; i < n; ++i) z.data()[i] = d(*twister);
                    },
                    nullptr});
    }
});

} // namespace
