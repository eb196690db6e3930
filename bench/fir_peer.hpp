// Peers of the single-rate FIR: a direct loop written by hand, and overlap-save on FFTW. Each is a
// stream: a call goes on where the last one ended. T is float, double, Kep32fc or Kep64fc.
#pragma once

#include <functional>
#include <vector>

#include "keps_types.h"

namespace peer {

// Filters n samples.
template <class T>
using Stream = std::function<void(const T *src, T *dst, int n)>;

// Sums of products in 256-bit vectors, eight accumulators at a time; complex ones keep the sums for
// the taps' real and imaginary parts apart and join them once.
template <class T>
Stream<T> directFir(const std::vector<T> &taps);

// The same for 16-bit samples by float sums, 2048 samples at a time, rounded to nearest.
Stream<Kep16s> directFir16(const std::vector<float> &taps);

// Overlap-save by transforms of 2^order points, with measured plans; null without FFTW.
template <class T>
Stream<T> overlapSave(const std::vector<T> &taps, int order);

} // namespace peer
