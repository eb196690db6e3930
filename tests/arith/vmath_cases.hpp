// The private transcendental kernels as data: every table with its levels' bounds, its oracle and
// the ranges that are tried. Read by the tests and by the accuracy tool.
#pragma once

#include "arith/vmath/vmath.hpp"

#include "harness/accuracy.hpp"

namespace vmath {

// The bound of one level: an error in units in the last place, or a relative error of 2^-bits.
struct Bound {
    double ulp, bits;
};

template <class T>
struct Table {
    std::string name;
    int (*call)(int slot, const T *a, const T *b, T *y, T *y2, int n);
    Bound bounds[3]; // low, high, enhanced
    int in = 1, out = 1;
    void (*oracle)(long double x, long double y, long double *result);
    std::vector<harness::Range> ranges;
    std::vector<harness::Range> second; // of the second argument; none: as the first's
};

inline const char *const levels[] = {"LA", "HA", "EP"};

template <class T, int (*const *table)(const T *, T *, int32_t)>
int unary(int slot, const T *a, const T *, T *y, T *, int n) {
    return table[slot](a, y, n);
}

using harness::Range;

inline std::vector<Table<float>> singleTables() {
    const Bound low{0, 21}, high{0.55, 0}, enhanced{0, 11};
    (void)low, (void)enhanced;
    return {
        {"sSin",
         unary<float, own_keps_sSin_E9_ttab>,
         {high, high, high},
         1,
         1,
         [](long double x, long double, long double *r) { *r = sinl(x); },
         {{-4, 4},
          {-6000, 6000},
          {-2e6, 2e6},
          {0x1p-149, 0x1p127, Range::exponents},
          {0x1p-3, 0x1p30, Range::exponents}},
         {}},
        {"sCos",
         unary<float, own_keps_sCos_E9_ttab>,
         {high, high, high},
         1,
         1,
         [](long double x, long double, long double *r) { *r = cosl(x); },
         {{-4, 4},
          {-6000, 6000},
          {-2e6, 2e6},
          {0x1p-149, 0x1p127, Range::exponents},
          {0x1p-3, 0x1p30, Range::exponents}},
         {}},
    };
}

inline std::vector<Table<double>> doubleTables() {
    const Bound low{0, 50}, high{0.55, 0}, enhanced{0, 26};
    (void)low, (void)enhanced;
    return {
        {"dSin",
         unary<double, own_keps_dSin_E9_ttab>,
         {high, high, high},
         1,
         1,
         [](long double x, long double, long double *r) { *r = sinl(x); },
         {{-0.2, 0.2},
          {-4, 4},
          {-1000, 1000},
          {-2e5, 2e5},
          {0x1p-1074, 0x1p1023, Range::exponents},
          {0x1p-3, 0x1p60, Range::exponents}},
         {}},
        {"dCos",
         unary<double, own_keps_dCos_E9_ttab>,
         {high, high, high},
         1,
         1,
         [](long double x, long double, long double *r) { *r = cosl(x); },
         {{-0.2, 0.2},
          {-4, 4},
          {-1000, 1000},
          {-2e5, 2e5},
          {0x1p-1074, 0x1p1023, Range::exponents},
          {0x1p-3, 0x1p60, Range::exponents}},
         {}},
    };
}

// Measures one level over a range, n arguments.
template <class T>
harness::Worst measure(const Table<T> &table, int slot, std::size_t range, int n,
                       harness::Random &random) {
    harness::Worst worst;
    constexpr int block = 4096;
    std::vector<T> a(block), b(block), y(block), y2(block);
    for (int done = 0; done < n; done += block) {
        for (int i = 0; i < block; ++i) {
            a[std::size_t(i)] = harness::draw<T>(table.ranges[range], random);
            const auto &second = table.second.empty() ? table.ranges : table.second;
            b[std::size_t(i)] = harness::draw<T>(second[range], random);
        }
        table.call(slot, a.data(), b.data(), y.data(), y2.data(), block);
        for (std::size_t i = 0; i < block; ++i) {
            long double exact[2];
            table.oracle(a[i], b[i], exact);
            harness::compare(worst, y[i], exact[0], a[i], b[i]);
            if (table.out == 2) harness::compare(worst, y2[i], exact[1], a[i], b[i]);
        }
    }
    return worst;
}

} // namespace vmath
