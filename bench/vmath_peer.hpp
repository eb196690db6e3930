// Loops over the vector functions of other libraries, and plain loops.
#pragma once

#include <cstdint>
#include <vector>

#include "keps_types.h"

namespace peer {

template <class T>
struct Elementary {
    const char *function, *name;
    bool wide; // needs AVX2 and fused operations
    void (*loop)(const T *a, const T *b, T *y, int n);
    double scale = 1; // what its results are to be multiplied with
};

// What is linked, in the order of the functions.
std::vector<Elementary<Kep32f>> elementary32();
std::vector<Elementary<Kep64f>> elementary64();

// Loops over the C library's scalar functions.
void expLoop(const Kep16s *src, Kep16s *dst, int n, int scaleFactor);
void lnLoop(const Kep16s *src, Kep16s *dst, int n, int scaleFactor);
void lnLoop(const Kep32s *src, Kep32s *dst, int n, int scaleFactor);
void rootLoop(const Kep32f *src, Kep32f *dst, int n);
void rootLoop(const Kep64f *src, Kep64f *dst, int n);

// The library's generator as plain loops.
struct Generator {
    std::uint32_t lcg, swb0, swb1, swb2;
    std::int32_t borrow;
};
void uniformLoop(Generator &g, Kep32f *dst, int n, double mid, double scale);
void gaussLoop(Generator &g, Kep32f *dst, int n, double mean, double stdDev);

} // namespace peer
