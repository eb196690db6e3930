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
template <class T, int (*const *table)(const T *, const T *, T *, int32_t)>
int binary(int slot, const T *a, const T *b, T *y, T *, int n) {
    return table[slot](a, b, y, n);
}
template <class T, int (*const *table)(const T *, T *, T *, int32_t)>
int pair(int slot, const T *a, const T *, T *y, T *y2, int n) {
    return table[slot](a, y, y2, n);
}
inline int modulus(int slot, const double *a, const double *b, double *y, double *, int n) {
    std::vector<Kep64fc> z(static_cast<std::size_t>(n));
    for (std::size_t i = 0; i < z.size(); ++i) z[i] = {a[i], b[i]};
    return own_keps_zAbs_E9_ttab[slot](z.data(), y, n);
}

template <long double (*f)(long double)>
void oracle(long double x, long double, long double *r) {
    *r = f(x);
}
template <long double (*f)(long double, long double)>
void oracle2(long double x, long double y, long double *r) {
    *r = f(x, y);
}
inline void sinCosOracle(long double x, long double, long double *r) {
    r[0] = sinl(x);
    r[1] = cosl(x);
}

using harness::Range;

// Bounds without an entry of their own are what the levels promise among themselves.
inline constexpr Bound A21{0, 21}, A24{0.55, 0}, A50{0, 50}, A53{0.55, 0};
inline constexpr Bound fast32{0, 11}, fast64{0, 26};

inline std::vector<Table<float>> singleTables() {
    using T = float;
    const std::vector<Range> angles = {{-4, 4},
                                       {-6000, 6000},
                                       {-2e6, 2e6},
                                       {0x1p-149, 0x1p127, Range::exponents},
                                       {0x1p-3, 0x1p30, Range::exponents}};
    const std::vector<Range> all = {{-2, 2}, {-1000, 1000}, {0x1p-149, 0x1p127, Range::exponents}};
    return {
        {"sSin",
         unary<T, own_keps_sSin_E9_ttab>,
         {A21, A24, fast32},
         1,
         1,
         oracle<sinl>,
         angles,
         {}},
        {"sCos",
         unary<T, own_keps_sCos_E9_ttab>,
         {A21, A24, fast32},
         1,
         1,
         oracle<cosl>,
         angles,
         {}},
        {"sSinCos",
         pair<T, own_keps_sSinCos_E9_ttab>,
         {A21, A24, fast32},
         1,
         2,
         sinCosOracle,
         angles,
         {}},
        {"sExp",
         unary<T, own_keps_sExp_E9_ttab>,
         {A21, A24, fast32},
         1,
         1,
         oracle<expl>,
         {{-1, 1}, {-87, 88}, {-110, 100}, {0x1p-149, 0x1p7, Range::exponents}},
         {}},
        {"sLn",
         unary<T, own_keps_sLn_E9_ttab>,
         {A21, A24, fast32},
         1,
         1,
         oracle<logl>,
         {{0.6, 1.6}, {0.98, 1.02}, {0x1p-149, 0x1p127, Range::exponents}},
         {}},
        {"sAtan",
         unary<T, own_keps_sAtan_E9_ttab>,
         {A21, A24, fast32},
         1,
         1,
         oracle<atanl>,
         all,
         {}},
        {"sAtan2",
         binary<T, own_keps_sAtan2_E9_ttab>,
         {A21, A24, fast32},
         2,
         1,
         oracle2<atan2l>,
         all,
         {}},
        {"sCbrt",
         unary<T, own_keps_sCbrt_E9_ttab>,
         {A21, A24, fast32},
         1,
         1,
         oracle<cbrtl>,
         all,
         {}},
    };
}

inline std::vector<Table<double>> doubleTables() {
    using T = double;
    const std::vector<Range> angles = {{-0.2, 0.2},
                                       {-4, 4},
                                       {-1000, 1000},
                                       {-2e5, 2e5},
                                       {0x1p-1074, 0x1p1023, Range::exponents},
                                       {0x1p-3, 0x1p60, Range::exponents}};
    const std::vector<Range> all = {{-2, 2},
                                    {-1000, 1000},
                                    {0x1p-3, 8, Range::exponents},
                                    {0x1p-1074, 0x1p1023, Range::exponents}};
    const std::vector<Range> exponents = {
        {-0.1, 0.1}, {-3, 3}, {-708, 708}, {-760, 720}, {0x1p-1074, 0x1p9, Range::exponents}};
    return {
        {"dSin",
         unary<T, own_keps_dSin_E9_ttab>,
         {A50, A53, fast64},
         1,
         1,
         oracle<sinl>,
         angles,
         {}},
        {"dCos",
         unary<T, own_keps_dCos_E9_ttab>,
         {A50, A53, fast64},
         1,
         1,
         oracle<cosl>,
         angles,
         {}},
        {"dSinCos",
         pair<T, own_keps_dSinCos_E9_ttab>,
         {A50, A53, fast64},
         1,
         2,
         sinCosOracle,
         angles,
         {}},
        {"dExp",
         unary<T, own_keps_dExp_E9_ttab>,
         {A50, A53, A50},
         1,
         1,
         oracle<expl>,
         exponents,
         {}},
        {"dSinh",
         unary<T, own_keps_dSinh_E9_ttab>,
         {A50, A53, A50},
         1,
         1,
         oracle<sinhl>,
         exponents,
         {}},
        {"dCosh",
         unary<T, own_keps_dCosh_E9_ttab>,
         {A50, A53, fast64},
         1,
         1,
         oracle<coshl>,
         exponents,
         {}},
        {"dLn",
         unary<T, own_keps_dLn_E9_ttab>,
         {A50, A53, fast64},
         1,
         1,
         oracle<logl>,
         {{0.6, 1.6}, {0.98, 1.02}, {0x1p-1074, 0x1p1023, Range::exponents}},
         {}},
        {"dSqrt",
         unary<T, own_keps_dSqrt_E9_ttab>,
         {A53, A53, A53},
         1,
         1,
         oracle<sqrtl>,
         {{0, 2}, {0x1p-1074, 0x1p1023, Range::exponents}},
         {}},
        {"dAtan",
         unary<T, own_keps_dAtan_E9_ttab>,
         {A50, A53, fast64},
         1,
         1,
         oracle<atanl>,
         all,
         {}},
        {"dAtan2",
         binary<T, own_keps_dAtan2_E9_ttab>,
         {A50, A53, fast64},
         2,
         1,
         oracle2<atan2l>,
         all,
         {}},
        {"dPowx",
         binary<T, own_keps_dPowx_E9_ttab>,
         {A53, A53, {0, 20}},
         2,
         1,
         oracle2<powl>,
         {{0.5, 2}, {0, 40}, {0.999, 1.001}, {0x1p-1074, 0x1p1023, Range::exponents}},
         {{-1000, 1000}, {-30, 30}, {-6e5, 6e5}, {-1.1, 1.1}}},
        {"zAbs", modulus, {A50, {1, 0}, A50}, 2, 1, oracle2<hypotl>, all, {}},
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
