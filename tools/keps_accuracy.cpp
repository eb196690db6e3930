// Prints the largest error of every transcendental kernel and level, over random arguments of each
// of its ranges, and of the single-precision kernels of one argument over all 2^32 floats:
//   keps_accuracy [arguments a range, default 1000000] [all]
#include "vmath_cases.hpp"

#include <cstdio>
#include <cstdlib>

namespace {

void print(const std::string &name, const char *what, const harness::Worst &w) {
    std::printf("%-9s %-10s %12.4f %9.2f %10.3f %6d   %.9g\n", name.c_str(), what, w.ulp,
                w.relative > 0 ? std::log2(w.relative) : -99.0, w.subnormal, w.wrongClass,
                static_cast<double>(w.at[0]));
    std::fflush(stdout);
}

void merge(harness::Worst &all, const harness::Worst &part) {
    if (part.ulp > all.ulp) {
        all.ulp = part.ulp;
        all.at[0] = part.at[0];
        all.at[1] = part.at[1];
    }
    all.relative = std::max(all.relative, part.relative);
    all.subnormal = std::max(all.subnormal, part.subnormal);
    all.wrongClass += part.wrongClass;
}

template <class T>
bool sample(const std::vector<vmath::Table<T>> &tables, int count) {
    harness::Random random(20);
    bool good = true;
    for (const auto &table : tables)
        for (int slot = 0; slot < 3; ++slot) {
            harness::Worst worst;
            for (std::size_t range = 0; range < table.ranges.size(); ++range)
                merge(worst, vmath::measure(table, slot, range, count, random));
            print(table.name, vmath::levels[slot], worst);
            good = good && worst.within(table.bounds[slot].ulp, table.bounds[slot].bits);
        }
    return good;
}

bool everyFloat(const std::vector<vmath::Table<float>> &tables) {
    constexpr std::uint32_t block = 1 << 16;
    std::vector<float> x(block), y(block), y2(block);
    std::vector<long double> exact(2 * block);
    bool good = true;
    for (const auto &table : tables) {
        if (table.in != 1) continue;
        harness::Worst worst[3];
        for (std::uint64_t base = 0; base < std::uint64_t{1} << 32; base += block) {
            for (std::uint32_t i = 0; i < block; ++i) {
                const auto bits = static_cast<std::uint32_t>(base + i);
                std::memcpy(&x[i], &bits, 4);
                table.oracle(x[i], 0, &exact[2 * i]);
            }
            for (int slot = 0; slot < 3; ++slot) {
                table.call(slot, x.data(), x.data(), y.data(), y2.data(), block);
                for (std::size_t i = 0; i < block; ++i) {
                    harness::compare(worst[slot], y[i], exact[2 * i], x[i]);
                    if (table.out == 2)
                        harness::compare(worst[slot], y2[i], exact[2 * i + 1], x[i]);
                }
            }
        }
        for (int slot = 0; slot < 3; ++slot) {
            print(table.name, (std::string(vmath::levels[slot]) + " all").c_str(), worst[slot]);
            good = good && worst[slot].within(table.bounds[slot].ulp, table.bounds[slot].bits);
        }
    }
    return good;
}

} // namespace

int main(int count, char **arguments) {
    const int n = count > 1 ? std::atoi(arguments[1]) : 1000000;
    std::printf("%-9s %-10s %12s %9s %10s %6s   %s\n", "kernel", "level", "ulp", "log2 rel",
                "subnormal", "wrong", "worst at");
    bool good = sample(vmath::singleTables(), n);
    good = sample(vmath::doubleTables(), n) && good;
    if (count > 2) good = everyFloat(vmath::singleTables()) && good;
    std::printf(good ? "All within their bounds.\n" : "A bound is exceeded.\n");
    return !good;
}
