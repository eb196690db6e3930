// The kernels' tables recomputed in quad precision: high parts bit for bit, low parts to the last
// places that quad arithmetic leaves certain.
#include <cmath>
#include <gtest/gtest.h>

#include "arith/integer_tables.hpp"
#include "arith/vmath/atan_data.hpp"
#include "arith/vmath/exp_data.hpp"
#include "arith/vmath/ln_data.hpp"
#include "arith/vmath/trig_data.hpp"

namespace {

using namespace keps::vmath;
__extension__ using Quad = __float128;

Quad size(Quad x) {
    return x < 0 ? -x : x;
}
// Series for small arguments.
Quad arcTangent(Quad t) {
    Quad sum = 0, power = t;
    for (int k = 1; size(power) > Quad(1e-40); k += 2, power *= -t * t) sum += power / k;
    return sum;
}
Quad exponential(Quad x) {
    Quad sum = 1, term = 1;
    for (int k = 1; k < 60; ++k) sum += term = term * x / k;
    return sum;
}
Quad sine(Quad x) {
    Quad sum = 0, term = x;
    for (int k = 1; k < 80; k += 2, term *= -x * x / (k * (k - 1))) sum += term;
    return sum;
}
Quad logarithm(Quad x) {
    Quad y = std::log(static_cast<double>(x));
    for (int k = 0; k < 3; ++k) y += x * exponential(-y) - 1;
    return y;
}
const Quad pi = 16 * arcTangent(Quad(1) / 5) - 4 * arcTangent(Quad(1) / 239);

void hold(const char *table, int row, Quad value, double high, double low) {
    EXPECT_EQ(static_cast<double>(value), high) << table << ' ' << row;
    EXPECT_LE(size(value - high - low), Quad(0x1p-105) * size(value) + Quad(0x1p-110))
        << table << ' ' << row;
}

TEST(VmathTables, ExponentialsAndSines) {
    const Quad ln2 = logarithm(2);
    for (int j = 0; j < 128; ++j)
        hold("vdexp_data", j, exponential(ln2 * j / 128), vdexp_data[j][0], vdexp_data[j][1]);
    for (int j = 0; j < 64; ++j) {
        const auto folded = [](int k) { // sine of k pi/32 from the first quarter
            k &= 63;
            const int half = k & 31;
            const Quad s = sine(pi / 32 * (half > 16 ? 32 - half : half));
            return k >= 32 ? -s : s;
        };
        hold("vdsin_data", j, folded(j), vdsin_data[j][0], vdsin_data[j][1]);
        const double bulk = vdsin_data[j][2];
        const double less = vdsin_data[j][3];
        EXPECT_LE(size(folded(j + 16) - bulk - less),
                  Quad(0x1p-53) * std::fabs(less) + Quad(0x1p-110))
            << j;
        int exponent;
        EXPECT_TRUE(bulk == 0 || std::fabs(std::frexp(bulk, &exponent)) == 0.5) << j;
    }
}

TEST(VmathTables, LogarithmsAndAngles) {
    for (int i = 0; i < 128; ++i) {
        const double *row = vdln_data[i];
        const Quad value = -logarithm(row[0]);
        EXPECT_EQ(static_cast<double>(value), row[3]) << i;
        EXPECT_EQ(row[1], std::nearbyint(row[1] * 0x1p42) * 0x1p-42) << i;
        EXPECT_LE(size(value - row[1] - row[2]), Quad(0x1p-95)) << i;
        // c times the cell's ends stays as near to 1 as the series reaches.
        const auto end = [](int k) {
            const int bits = 0x3FE6A000 + (k << 13);
            return std::ldexp(1 + (bits & 0xFFFFF) * 0x1p-20, (bits >> 20) - 1023);
        };
        EXPECT_LE(std::fabs(end(i) * row[0] - 1), 0x1p-7) << i;
        EXPECT_LE(std::fabs(end(i + 1) * row[0] - 1), 0x1p-7) << i;
    }
    for (int j = 0; j <= 32; ++j) {
        const Quad c = Quad(j) / 32;
        // Half-way to 1 the series is slow: from the angle at 1/2.
        const Quad a = j > 16 ? arcTangent(Quad(0.5)) + arcTangent((c - Quad(0.5)) / (1 + c / 2))
                              : arcTangent(c);
        const Quad angles[] = {a, pi / 2 - a, pi - a, pi / 2 + a};
        for (int k = 0; k < 4; ++k)
            hold("vdatan_data", 33 * k + j, angles[k], vdatan_data[33 * k + j][0],
                 vdatan_data[33 * k + j][1]);
    }
}

// The parts of a constant add up to it.
TEST(VmathTables, PartsOfConstants) {
    const auto hold = [](Quad whole, std::initializer_list<double> parts, double bound) {
        for (const double p : parts) whole -= p;
        EXPECT_LE(size(whole), Quad(bound)) << *parts.begin();
    };
    const Quad ln2 = logarithm(2);
    hold(pi, {double(piFloat1), double(piFloat2), double(piFloat3)}, 0x1p-54);
    hold(pi, {piDouble1, piDouble2, piDouble3}, 0x1p-110);
    hold(pi, {piWide1, piWide2}, 0x1p-83);
    hold(pi / 32, {trigStep1, trigStep2, trigStep3, trigStep4}, 0x1p-112);
    hold(ln2, {double(ln2Float1), double(ln2Float2)}, 0x1p-40);
    hold(ln2 / 128, {expStep1, expStep2}, 0x1p-94);
    hold(ln2, {ln2High, ln2Low}, 0x1p-94);
    Quad turn = 0;
    for (int k = 4; k > 0; --k) turn = (turn + static_cast<Quad>(turnBits[k])) * Quad(0x1p-64);
    EXPECT_LE(size(turn * 2 * pi - 1), Quad(0x1p-110));
}

} // namespace
