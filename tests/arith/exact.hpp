// Exact results of scaled integer functions.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "keps.h"

namespace exact {

__extension__ using Wide = __int128;
__extension__ using UnsignedWide = unsigned __int128;

// num / den * 2^-s, rounded by a KepRoundMode. num up to 2^63, den up to 2^62, s from -62 to 64.
inline Wide roundedQuotient(Wide num, Wide den, int s, int rndMode = kepRoundNearest) {
    const bool negative = (num < 0) != (den < 0);
    num = num < 0 ? -num : num;
    den = den < 0 ? -den : den;
    (s > 0 ? den : num) <<= std::min(std::abs(s), 64);
    Wide q = num / den;
    const Wide twice = 2 * (num % den);
    if (rndMode == kepRoundNearest)
        q += twice > den || (twice == den && (q & 1));
    else if (rndMode != kepRoundTowardZero)
        q += twice >= den;
    return negative ? -q : q;
}

template <class T>
T clamped(Wide x) {
    using L = std::numeric_limits<T>;
    return static_cast<T>(std::clamp(x, Wide{L::min()}, Wide{L::max()}));
}

} // namespace exact
