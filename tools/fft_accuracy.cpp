// Prints the root-mean-square error of forward transforms of random data, by kind and order, over
// eps sqrt(log2 N):
//   fft_accuracy [all]
// up to order 22; with "all" as far as the kinds and the machine's free memory go.
#include "transforms/fft_kinds.hpp"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <unistd.h>

namespace {

using namespace fft_test;

template <class T>
struct Data {
    std::vector<T> x;           // pairs
    std::vector<Wide> spectrum; // exactly
};

template <class T>
Data<T> complexData(int order, harness::Random &random) {
    const std::size_t n = std::size_t{1} << order;
    Data<T> data;
    data.x = harness::unit<T>(2 * n, random);
    std::vector<Wide> wide(n);
    for (std::size_t i = 0; i < n; ++i) wide[i] = {data.x[2 * i], data.x[2 * i + 1]};
    data.spectrum = Reference::transform(wide, forward);
    return data;
}

// The sums that the mean is formed of.
struct Error {
    long double error = 0, power = 0;
    void add(Wide got, Wide exact) {
        error += std::norm(got - exact);
        power += std::norm(exact);
    }
    void print(int order, long double eps) const {
        std::printf("  %6.3f", static_cast<double>(std::sqrt(error / power / order) / eps));
        std::fflush(stdout);
    }
};

template <class T>
void measure(int order, const ComplexKind<T> &pairs, const ComplexKind<T> &parts,
             const RealKind<T> &real, harness::Random &random) {
    const std::size_t n = std::size_t{1} << order;
    const long double eps = std::numeric_limits<T>::epsilon();
    Error pairsError, partsError, realError;
    // Short transforms many times over, so that the mean is one.
    for (int rounds = std::max(1, 4096 >> order); rounds > 0; --rounds) {
        const Data<T> data = complexData<T>(order, random);
        const auto at = [](const PlanRoom &plan) { return plan.workAt({Spot::inside, 0}); };
        {
            PlanRoom plan(pairs, order, kepFftScaleNone);
            std::vector<T> y = data.x;
            pairs.inPlace[forward](y.data(), plan.plan, at(plan));
            for (std::size_t k = 0; k < n; ++k)
                pairsError.add({y[2 * k], y[2 * k + 1]}, data.spectrum[k]);
        }
        {
            PlanRoom plan(parts, order, kepFftScaleNone);
            std::vector<T> re(n), im(n);
            for (std::size_t k = 0; k < n; ++k) re[k] = data.x[2 * k], im[k] = data.x[2 * k + 1];
            parts.splitInPlace[forward](re.data(), im.data(), plan.plan, at(plan));
            for (std::size_t k = 0; k < n; ++k) partsError.add({re[k], im[k]}, data.spectrum[k]);
        }
        {
            // The real parts' spectrum is the half of the whole's that mirrors into itself.
            PlanRoom plan(real, order, kepFftScaleNone);
            std::vector<T> y(n + 2);
            for (std::size_t k = 0; k < n; ++k) y[k] = data.x[2 * k];
            real.inPlace[forward][ccs](y.data(), plan.plan, at(plan));
            for (std::size_t k = 0; k <= n / 2; ++k)
                realError.add({y[2 * k], y[2 * k + 1]},
                              (data.spectrum[k] + std::conj(data.spectrum[-k & (n - 1)])) * 0.5L);
        }
    }
    pairsError.print(order, eps);
    partsError.print(order, eps);
    realError.print(order, eps);
}

} // namespace

int main(int count, char **arguments) {
    int last = 22;
    if (count > 1 && std::strcmp(arguments[1], "all") == 0) {
        // Data, results, exact spectrum, its roots and input: some 200 bytes a point.
        const auto free = static_cast<double>(sysconf(_SC_AVPHYS_PAGES)) *
                          static_cast<double>(sysconf(_SC_PAGESIZE));
        while (last < 27 && std::ldexp(200, last + 1) < free) ++last;
    }
    std::printf("order  C_32fc   C_32f   R_32f  C_64fc   C_64f   R_64f"
                "   error / (eps sqrt(log2 N))\n");
    harness::Random random(20);
    for (int order = 1; order <= last; ++order) {
        std::printf("%5d", order);
        measure(order, c32fc(), c32f(), r32f(), random);
        measure(order, c64fc(), c64f(), r64f(), random);
        std::printf("\n");
    }
}
