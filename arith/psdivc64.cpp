// DivC of 64-bit integers: by a reciprocal of 64 bits, exact for every scale factor.
#include "frame/entry.hpp"
#include "frame/simd/element.hpp"

using namespace keps;

namespace {

__extension__ using u128 = unsigned __int128;

struct Division {
    std::uint64_t quotient, remainder;
};

// A divisor shifted up until its top bit is set, and floor((2^128 - 1) / it) - 2^64. A dividend of
// two words then costs two multiplications and at most two corrections (N. Moller, T. Granlund,
// Improved division by invariant integers, 2011).
struct Divisor {
    std::uint64_t normal, reciprocal;
    int shift;

    explicit Divisor(std::uint64_t d) : normal(d), shift(__builtin_clzll(d)) {
        normal <<= shift;
        std::uint64_t remainder;
        __asm__("divq %4"
                : "=a"(reciprocal), "=d"(remainder)
                : "a"(~std::uint64_t{0}), "d"(~normal), "r"(normal)
                : "cc");
    }

    // high below normal.
    KEPS_INLINE Division divide(std::uint64_t high, std::uint64_t low) const {
        const u128 estimate = u128{reciprocal} * high + (u128{high} << 64 | low);
        std::uint64_t q = static_cast<std::uint64_t>(estimate >> 64) + 1;
        std::uint64_t r = low - q * normal;
        if (r > static_cast<std::uint64_t>(estimate)) {
            --q;
            r += normal;
        }
        if (r >= normal) [[unlikely]] {
            ++q;
            r -= normal;
        }
        return {q, r};
    }

    // x times 2^bits, bits from 0 to 63, over the divisor as it stands.
    KEPS_INLINE Division divideShifted(std::uint64_t x, int bits) const {
        return divide(bits == 0 ? 0 : x >> (64 - bits), x << bits);
    }
};

constexpr std::uint64_t beyond = std::uint64_t{1} << 63;

// q plus a fraction, rounded to nearest, ties to even. excess: the sign of fraction - 1/2.
KEPS_INLINE std::uint64_t rounded(std::uint64_t q, int excess) {
    return q + (excess > 0 || (excess == 0 && (q & 1)));
}

template <class T>
KEPS_INLINE int compare(T a, T b) {
    return (a > b) - (a < b);
}

// |x| * 2^-scaleFactor over the divisor, 2^63 for all that is larger.
KEPS_INLINE std::uint64_t scaledQuotient(std::uint64_t magnitude, const Divisor &d,
                                         int scaleFactor) {
    Division at = d.divideShifted(magnitude, d.shift);
    if (scaleFactor > 0) {
        if (scaleFactor > 64) return 0;
        const u128 unit = u128{1} << scaleFactor;
        const u128 rest = at.quotient & (unit - 1), half = unit >> 1;
        const int excess = rest == half ? (at.remainder != 0) : compare(rest, half);
        return rounded(static_cast<std::uint64_t>(u128{at.quotient} >> scaleFactor), excess);
    }
    // Long division, up to 63 further bits a step: 0 or beyond 2^63 after at most three.
    for (std::int64_t bits = -std::int64_t{scaleFactor}; bits > 0;) {
        if (at.quotient == 0 && at.remainder == 0) return 0;
        const int step = bits < 63 ? static_cast<int>(bits) : 63;
        if (at.quotient >> (63 - step) != 0) return beyond;
        const Division next = d.divideShifted(at.remainder, step);
        at = {at.quotient << step | next.quotient, next.remainder};
        bits -= step;
    }
    return rounded(at.quotient, compare(at.remainder, d.normal - at.remainder));
}

KEPS_INLINE Kep64s withSign(std::uint64_t magnitude, bool negative) {
    if (magnitude >= beyond) return negative ? INT64_MIN : INT64_MAX;
    return static_cast<Kep64s>(negative ? 0 - magnitude : magnitude);
}

KEPS_INLINE std::uint64_t magnitudeOf(Kep64s x) {
    return x < 0 ? 0 - static_cast<std::uint64_t>(x) : static_cast<std::uint64_t>(x);
}

} // namespace

KepStatus kepsDivC_64s_ISfs(Kep64s val, Kep64s *srcDst, int32_t len, int scaleFactor) {
    if (const KepStatus refused = refuse(len, srcDst)) return refused;
    if (val == 0) {
        for (size i = 0; i < len; ++i) {
            const Kep64s x = loadOne(srcDst + i);
            storeOne(srcDst + i, x == 0 ? x : withSign(beyond, x < 0));
        }
        return kepStatusDivisionWarning;
    }
    if (val == 1 || val == -1) return kepsMulC_64s_ISfs(val, srcDst, len, scaleFactor);
    const Divisor d(magnitudeOf(val));
    for (size i = 0; i < len; ++i) {
        const Kep64s x = loadOne(srcDst + i);
        storeOne(srcDst + i,
                 withSign(scaledQuotient(magnitudeOf(x), d, scaleFactor), (x < 0) != (val < 0)));
    }
    return kepStatusOk;
}
