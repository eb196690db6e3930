// What every unit of the library includes first: the public headers, read so that an exported
// function is written and called here by its plain name while its symbol is the hidden worker
// "e9_<name>". The stub of the plain name is made by the build.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#define KEPS_FN(result, name, arguments)                                                           \
    extern "C" [[gnu::visibility("hidden")]] result name arguments __asm__("e9_" #name)
#include "keps.h"

// An internal function that other units call by name.
#define OWN_FN(result, name, arguments) KEPS_FN(result, name, arguments)

// Helpers that take vectors by value must be inline in every build: an outlined one would leave
// upper register halves in use behind it.
#define KEPS_INLINE [[gnu::always_inline]] inline
#define KEPS_INLINE_LAMBDA __attribute__((always_inline))

namespace keps {

using size = std::int64_t; // an element or byte count inside the library

// f(0), f(1), to f(N - 1), unrolled in every build.
template <int N, class F>
KEPS_INLINE void times(const F &f) {
    [&]<int... k>(std::integer_sequence<int, k...>) KEPS_INLINE_LAMBDA {
        (f(k), ...);
    }
    (std::make_integer_sequence<int, N>{});
}

} // namespace keps
