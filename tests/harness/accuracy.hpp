// Error of bounded functions against a long double oracle, in units in the last place and relative.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "harness/data.hpp"

namespace harness {

// The worst seen over any number of results.
struct Worst {
    double ulp = 0, relative = 0, subnormal = 0; // subnormal: in units of the subnormal grid
    long double at[2] = {};                      // where ulp is
    double got = 0;
    int wrongClass = 0; // NaN or infinity where the other has none, or a zero's sign

    bool within(double ulpBound, double bits) const {
        if (wrongClass) return false;
        if (ulpBound > 0 && ulp > ulpBound) return false;
        return (bits == 0 || relative <= std::exp2(-bits)) && subnormal <= 1;
    }
};

template <class T>
void compare(Worst &worst, T got, long double exact, long double x, long double y = 0) {
    using L = std::numeric_limits<T>;
    const auto rounded = static_cast<T>(exact);
    const bool special = !std::isfinite(rounded) || !std::isfinite(got) || exact == 0;
    if (special) {
        // At the edge of overflow one unit may make the difference.
        const bool edge = std::isinf(rounded) != std::isinf(got) &&
                          std::min(std::fabs(exact), std::fabs(static_cast<long double>(got))) >=
                              L::max() * (1.0L - L::epsilon());
        if (!sameValue(rounded, got) && !edge) {
            if (!worst.wrongClass++) {
                worst.at[0] = x;
                worst.at[1] = y;
                worst.got = static_cast<double>(got);
            }
        }
        return;
    }
    const long double error = std::fabs(static_cast<long double>(got) - exact);
    if (std::fabs(exact) < static_cast<long double>(L::min())) {
        worst.subnormal = std::max(worst.subnormal, static_cast<double>(error / L::denorm_min()));
        return;
    }
    int exponent;
    std::frexp(exact, &exponent);
    const auto ulp = static_cast<double>(std::ldexp(error, L::digits - exponent));
    worst.relative = std::max(worst.relative, static_cast<double>(error / std::fabs(exact)));
    if (ulp > worst.ulp || std::isnan(ulp)) {
        worst.ulp = ulp;
        worst.at[0] = x;
        worst.at[1] = y;
        worst.got = static_cast<double>(got);
    }
}

// A range of arguments: evenly over values, or over exponents and both signs.
struct Range {
    double from, to;
    enum Spread { values, exponents } spread = values;
};

template <class T>
T draw(const Range &range, Random &random) {
    std::uniform_real_distribution<double> unit(0, 1);
    const double u = unit(random);
    if (range.spread == Range::values)
        return static_cast<T>(range.from + (range.to - range.from) * u);
    const double low = std::log2(range.from), high = std::log2(range.to);
    const double x = std::exp2(low + (high - low) * u);
    // exp2 leaves few digits at the ends of the range: fill the mantissa anew.
    T value = static_cast<T>(std::min(x, static_cast<double>(std::numeric_limits<T>::max())));
    if constexpr (sizeof(T) == 8) {
        std::uint64_t bits;
        std::memcpy(&bits, &value, 8);
        bits ^= random() & 0xFFFFFFFFFF;
        std::memcpy(&value, &bits, 8);
    }
    return random() & 1 ? value : -value;
}

} // namespace harness
