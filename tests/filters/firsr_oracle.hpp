// What the single-rate FIR must give: sums in long double with error bounds, and direct sums in
// the library's order of arithmetic.
#pragma once

#include <cmath>
#include <complex>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "keps.h"

namespace firsr {

template <class T>
struct Fir;

// Code of the type, entry points, and the thresholds of the contract.
template <>
struct Fir<Kep32f> {
    static constexpr int code = 13, leastTaps = 32, leastIters = 256, chunk = 8192;
    static constexpr auto init = kepsFIRSRInit_32f;
    static constexpr auto call = kepsFIRSR_32f;
};
template <>
struct Fir<Kep64f> {
    static constexpr int code = 19, leastTaps = 62, leastIters = 512, chunk = 4096;
    static constexpr auto init = kepsFIRSRInit_64f;
    static constexpr auto call = kepsFIRSR_64f;
};
template <>
struct Fir<Kep32fc> {
    static constexpr int code = 14, leastTaps = 18, leastIters = 128, chunk = 4096;
    static constexpr auto init = kepsFIRSRInit_32fc;
    static constexpr auto call = kepsFIRSR_32fc;
};
template <>
struct Fir<Kep64fc> {
    static constexpr int code = 20, leastTaps = 18, leastIters = 128, chunk = 2048;
    static constexpr auto init = kepsFIRSRInit_64fc;
    static constexpr auto call = kepsFIRSR_64fc;
};
#define KEPS_FIR_TYPES Kep32f, Kep64f, Kep32fc, Kep64fc

inline int fftOrder(int n) {
    return static_cast<int>(std::floor(std::log2(n))) + 2;
}
inline int blockLen(int n) {
    return (1 << fftOrder(n)) - n + 1;
}

inline void scale(Kep32f &x, double by) {
    x = static_cast<Kep32f>(x * by);
}
inline void scale(Kep64f &x, double by) {
    x *= by;
}
inline void scale(Kep32fc &x, double by) {
    scale(x.re, by), scale(x.im, by);
}
inline void scale(Kep64fc &x, double by) {
    scale(x.re, by), scale(x.im, by);
}

inline Kep32f times(Kep32f a, Kep32f b) {
    return a * b;
}
inline Kep64f times(Kep64f a, Kep64f b) {
    return a * b;
}
template <class T>
T times(T tap, T x) {
    return {tap.re * x.re + -tap.im * x.im, tap.re * x.im + tap.im * x.re};
}
inline Kep32f plus(Kep32f a, Kep32f b) {
    return a + b;
}
inline Kep64f plus(Kep64f a, Kep64f b) {
    return a + b;
}
template <class T>
T plus(T a, T b) {
    return {a.re + b.re, a.im + b.im};
}

// Direct sums from the oldest sample to the newest; stream holds taps - 1 samples of the past.
template <class T>
std::vector<T> ordered(const std::vector<T> &taps, const std::vector<T> &stream) {
    std::vector<T> out(stream.size() - taps.size() + 1);
    for (size_t i = 0; i < out.size(); ++i) {
        out[i] = times(taps.back(), stream[i]);
        for (size_t j = 1; j < taps.size(); ++j)
            out[i] = plus(out[i], times(taps[taps.size() - 1 - j], stream[i + j]));
    }
    return out;
}

// True where all direct sums run in that order, whichever kernel makes them.
template <class T>
bool sumsInOrder(int tapsLen) {
    return !std::is_same_v<T, Kep64f> || tapsLen <= 8;
}

inline long double wide(Kep32f x) {
    return x;
}
inline long double wide(Kep64f x) {
    return x;
}
template <class T>
std::complex<long double> wide(T x) {
    return {x.re, x.im};
}
template <class T>
using Wide = decltype(wide(T{}));

inline long double product(long double a, long double b) {
    return a * b;
}
inline std::complex<long double> product(std::complex<long double> a, std::complex<long double> b) {
    return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}

template <class T>
inline constexpr long double epsilon = std::numeric_limits<T>::epsilon() / 2.0L;
template <>
inline constexpr long double epsilon<Kep32fc> = epsilon<Kep32f>;
template <>
inline constexpr long double epsilon<Kep64fc> = epsilon<Kep64f>;

// By FFT the three transforms and the product each add up to about order roundings of the norm of
// the taps and of a block's samples.
template <class T>
long double transformBound(const std::vector<T> &taps, const std::vector<T> &stream) {
    long double tapNorm = 0, most = 0;
    for (const T &tap : taps) tapNorm += std::norm(wide(tap));
    for (const T &x : stream) most = std::max(most, std::abs(wide(x)));
    const int order = fftOrder(static_cast<int>(taps.size()));
    return epsilon<T> * (4 * order + 4) * most * std::sqrt(std::ldexp(tapNorm, order));
}

// Empty when out is right, else where it isn't. Sums in order are compared by bits; of other direct
// sums, n + 2 roundings of terms whose magnitudes add up are allowed.
template <class T>
std::string difference(const std::vector<T> &taps, const std::vector<T> &stream,
                       const std::vector<T> &out, bool byFft) {
    const size_t n = taps.size(), length = out.size();
    if (!byFft && sumsInOrder<T>(static_cast<int>(n))) {
        const auto expected = ordered(taps, stream);
        for (size_t i = 0; i < length; ++i) {
            if (std::memcmp(&expected[i], &out[i], sizeof(T)) == 0) continue;
            return "output " + std::to_string(i) + " is off by " +
                   std::to_string(static_cast<double>(std::abs(wide(out[i]) - wide(expected[i]))));
        }
        return {};
    }
    const long double byTransforms = transformBound(taps, stream);
    for (size_t i = 0; i < length; ++i) {
        Wide<T> sum = 0;
        long double magnitude = 0;
        for (size_t j = 0; j < n; ++j) {
            const Wide<T> term = product(wide(taps[n - 1 - j]), wide(stream[i + j]));
            sum += term;
            if (!byFft) magnitude += std::abs(term);
        }
        const long double bound =
            byFft ? byTransforms : epsilon<T> * static_cast<long double>(n + 2) * magnitude;
        const long double error = std::abs(wide(out[i]) - sum);
        if (!(error <= bound))
            return "output " + std::to_string(i) + " is off by " +
                   std::to_string(static_cast<double>(error / bound)) + " bounds";
    }
    return {};
}

inline std::vector<Kep16s> rounded(const std::vector<Kep32f> &x) {
    std::vector<Kep16s> out(x.size());
    for (size_t i = 0; i < x.size(); ++i)
        out[i] = static_cast<Kep16s>(std::nearbyint(std::min(std::max(x[i], -32768.0F), 32767.0F)));
    return out;
}

// Complex vectors as twice as many reals, and back.
template <class To, class From>
std::vector<To> recast(const std::vector<From> &x) {
    std::vector<To> out(x.size() * sizeof(From) / sizeof(To));
    if (!x.empty()) std::memcpy(static_cast<void *>(out.data()), x.data(), x.size() * sizeof(From));
    return out;
}
template <class Integer, class Float>
std::vector<Integer> rounded(const std::vector<Float> &x) {
    return recast<Integer>(rounded(recast<Kep32f>(x)));
}
template <class Float, class Integer>
std::vector<Float> toFloats(const std::vector<Integer> &x) {
    const auto parts = recast<Kep16s>(x);
    return recast<Float>(std::vector<Kep32f>(parts.begin(), parts.end()));
}

} // namespace firsr
