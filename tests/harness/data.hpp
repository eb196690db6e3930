// Test data: random values mixed with each type's edges. One seed per process, printed on failure
// and replayable through the variable KEPS_SEED.
#pragma once

#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <type_traits>
#include <vector>

#include "keps.h"

namespace harness {

using Random = std::mt19937_64;

std::uint64_t seed();

template <class T>
inline constexpr bool isComplex = std::is_class_v<T>;

// An edge of the type's range: limits and their neighbours, small values, powers of two; for floats
// zeros of both signs, subnormals, infinities and NaN too.
template <class T>
T edgeValue(Random &random) {
    using L = std::numeric_limits<T>;
    if constexpr (std::is_floating_point_v<T>) {
        const T edges[] = {T(0),
                           -T(0),
                           T(1),
                           T(-1),
                           L::min(),
                           -L::min(),
                           L::max(),
                           L::lowest(),
                           L::infinity(),
                           -L::infinity(),
                           L::quiet_NaN(),
                           L::denorm_min(),
                           -L::denorm_min(),
                           T(0.5),
                           T(-1.5)};
        return edges[random() % std::size(edges)];
    } else {
        const auto power = static_cast<T>(T(1) << (random() % (8 * sizeof(T) - 1)));
        const T edges[] = {T(0),
                           T(1),
                           T(2),
                           T(3),
                           L::max(),
                           static_cast<T>(L::max() - 1),
                           L::min(),
                           static_cast<T>(L::min() + 1),
                           static_cast<T>(-1),
                           static_cast<T>(-3),
                           power,
                           static_cast<T>(power - 1),
                           static_cast<T>(power + 1)};
        return edges[random() % std::size(edges)];
    }
}

// One value in four an edge; the other integers over the whole range or, one in four, small; the
// other floats of moderate size.
template <class T>
T mixedValue(Random &random) {
    const auto kind = random() % 4;
    if (kind == 0) return edgeValue<T>(random);
    if constexpr (std::is_floating_point_v<T>) {
        return static_cast<T>(std::uniform_real_distribution<double>(-1000, 1000)(random));
    } else {
        const auto bits = static_cast<T>(random());
        return kind == 1 ? static_cast<T>(static_cast<std::int8_t>(random())) : bits;
    }
}

// Finite values in [-1, 1].
template <class T>
T unitValue(Random &random) {
    return static_cast<T>(std::uniform_real_distribution<double>(-1, 1)(random));
}

template <class T>
struct RealOf {
    using type = T;
};
template <class T>
requires isComplex<T>
struct RealOf<T> {
    using type = decltype(T::re);
};

// n elements, complex ones part by part.
template <class T, class Value>
std::vector<T> generate(std::size_t n, Random &random, Value value) {
    using R = typename RealOf<T>::type;
    std::vector<T> data(n);
    const std::size_t parts = n * (sizeof(T) / sizeof(R));
    for (std::size_t i = 0; i < parts; ++i) {
        const R x = value(random);
        std::memcpy(reinterpret_cast<char *>(data.data()) + i * sizeof(R), &x, sizeof(R));
    }
    return data;
}

template <class T>
std::vector<T> mixed(std::size_t n, Random &random) {
    return generate<T>(n, random,
                       [](Random &r) { return mixedValue<typename RealOf<T>::type>(r); });
}

template <class T>
std::vector<T> unit(std::size_t n, Random &random) {
    return generate<T>(n, random, [](Random &r) { return unitValue<typename RealOf<T>::type>(r); });
}

// Same bits, or both NaN.
template <class T>
bool sameValue(const T &a, const T &b) {
    if constexpr (isComplex<T>) {
        return sameValue(a.re, b.re) && sameValue(a.im, b.im);
    } else {
        if constexpr (std::is_floating_point_v<T>)
            if (a != a && b != b) return true;
        return std::memcmp(&a, &b, sizeof(T)) == 0;
    }
}

} // namespace harness
