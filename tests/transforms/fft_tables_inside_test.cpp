// The constant quarter wave, every entry recomputed in quad precision.
#include <gtest/gtest.h>

#include "transforms/fft/quarter_wave.hpp"

namespace {

using Quad = __float128;

// The Taylor series up to terms below 2^-120 for arguments up to a quarter of a turn.
Quad sine(Quad x) {
    Quad term = x, sum = x;
    for (int n = 1; n < 60; n += 2) {
        term *= -x * x / Quad((n + 1) * (n + 2));
        sum += term;
    }
    return sum;
}

TEST(FftTables, quarter_wave) {
    // pi in two parts: 113 bits and more.
    const Quad pi = Quad(3.141592653589793116) + Quad(1.2246467991473531772e-16) +
                    Quad(-2.9947698097183396659e-33);
    for (int k = 0; k <= 256; ++k) {
        const Quad exact = k == 256 ? Quad(1) : sine(2 * pi * Quad(k) / Quad(1024));
        EXPECT_EQ(static_cast<float>(exact), keps::fft_fix_twiddle_table_32f[k]) << k;
        EXPECT_EQ(static_cast<double>(exact), keps::fft_fix_twiddle_table_64f[k]) << k;
    }
}

} // namespace
