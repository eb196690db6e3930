// Reduction of arguments of any size, and sine and cosine of one value.
#include "arith/vmath/trig.hpp"

namespace keps::vmath {

namespace {

__extension__ using Wide = unsigned __int128;

// The upper 128 bits of a 256-bit product of a and b, less at most 2 in the last place.
Wide upperProduct(Wide a, Wide b) {
    const auto aHigh = static_cast<std::uint64_t>(a >> 64), aLow = static_cast<std::uint64_t>(a);
    const auto bHigh = static_cast<std::uint64_t>(b >> 64), bLow = static_cast<std::uint64_t>(b);
    return Wide{aHigh} * bHigh + (Wide{aHigh} * bLow >> 64) + (Wide{aLow} * bHigh >> 64);
}

double powerOfTwo(int n) {
    return __builtin_bit_cast(double, static_cast<std::uint64_t>(n + 1023) << 52);
}

} // namespace

// The digits of 1 / (2 pi) that make whole turns of x drop out before the product: x is an integer
// of 53 bits times 2^e, so the first e digits give whole turns only. 192 digits from there leave
// the turn's fraction right to 2^-139, and no double lies nearer than 2^-62 to a multiple of pi/2.
HugeAngle reduceHuge(double x) {
    const auto bits = __builtin_bit_cast(std::uint64_t, x);
    const int e = static_cast<int>(bits >> 52 & 0x7FF) - 1075;
    const std::uint64_t m = (bits & 0xFFFFFFFFFFFFF) | std::uint64_t{1} << 52;
    const int skip = e + 64; // the table begins with 64 zeros
    const std::uint64_t *from = turnBits + skip / 64;
    const int shift = skip % 64;
    std::uint64_t digits[3];
    for (int k = 0; k < 3; ++k)
        digits[k] = shift ? from[k] << shift | from[k + 1] >> (64 - shift) : from[k];

    // The fraction of a turn, in units of 2^-192: f2, f1, f0 from the top.
    const Wide p0 = Wide{m} * digits[2];
    const Wide p1 = Wide{m} * digits[1] + (p0 >> 64);
    auto f0 = static_cast<std::uint64_t>(p0), f1 = static_cast<std::uint64_t>(p1);
    std::uint64_t f2 = m * digits[0] + static_cast<std::uint64_t>(p1 >> 64);

    auto n = static_cast<int>((f2 + (std::uint64_t{1} << 57)) >> 58);
    f2 -= static_cast<std::uint64_t>(n) << 58;
    bool negative = f2 >> 63;
    if (negative) {
        f0 = -f0;
        f1 = ~f1 + (f0 == 0);
        f2 = ~f2 + (f0 == 0 && f1 == 0);
    }
    int exponent = 0;
    if (f2 == 0) {
        f2 = f1;
        f1 = f0;
        f0 = 0;
        exponent = -64;
    }
    const int zeros = f2 ? __builtin_clzll(f2) : 0;
    if (zeros) {
        f2 = f2 << zeros | f1 >> (64 - zeros);
        f1 = f1 << zeros | f0 >> (64 - zeros);
    }
    // Times 2 pi: the fraction is (f2, f1) 2^(exponent - zeros - 128), 2 pi is twoPi 2^-125.
    const Wide angle = upperProduct(Wide{f2} << 64 | f1, Wide{twoPiBits[0]} << 64 | twoPiBits[1]);
    const auto top = static_cast<std::uint64_t>(angle >> 75); // 53 bits
    const auto next = static_cast<std::uint64_t>(angle >> 22) & ((std::uint64_t{1} << 53) - 1);
    const double unit = powerOfTwo(exponent - zeros + 3 - 53);
    double high = static_cast<double>(top) * unit;
    double low = static_cast<double>(next) * unit * 0x1p-53;
    if (negative != (bits >> 63 != 0)) {
        high = -high;
        low = -low;
    }
    if (bits >> 63) n = -n;
    return {n & 63, high, low};
}

double sineSlow(double x, int turn) {
    const double size = __builtin_fabs(x);
    double high, low;
    int n;
    if (size <= trigLimit) {
        const Angle<double> angle = reduceByStep(x, 0);
        high = angle.high;
        low = angle.low;
        n = static_cast<int>(__builtin_bit_cast(std::uint64_t, angle.q));
    } else {
        const HugeAngle angle = reduceHuge(x);
        high = angle.high;
        low = angle.low;
        n = angle.n;
    }
    if (x == 0 && turn == 0) return x;
    const double *row = vdsin_data[(n + turn) & 63];
    return sineAt(row[0], row[1], row[2], row[3], stepSeries(high, low));
}

} // namespace keps::vmath
