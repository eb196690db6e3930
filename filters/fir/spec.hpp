// The spec block of the single-rate FIR: record, tap tables, sizes, and the work areas of a call.
#pragma once

#include "filters/fir/transform.hpp"
#include "frame/blocks.hpp"
#include "frame/bytes.hpp"
#include "frame/simd/float256.hpp"

// The head of a spec block, on the first 64-byte boundary in the caller's memory; constant once it
// is made. There is no tag: the block of another element type goes unnoticed.
struct KepFIRSRSpec {
    std::int32_t tapsLen;
    void *taps;            // the direct kernels' table
    std::uint32_t hrz;     // real types: 1 when the table is horizontal; complex ones: 0
    std::uint32_t algType; // a KepAlgorithm
    KepsFftPlan *fftSpec;  // nothing from here on exists for kepAlgorithmDirect
    Kep8u *fftSpecMem;     // where the plan lies
    Kep8u *fftWork;        // used while the block is made
    void *tapSpectrum;     // transform of the zero-padded taps, fftLen elements
    std::int32_t fftLen;
};

namespace keps::fir {

// Byte counts are formed in 32 bits; for taps without number they wrap.
using Bytes = std::uint32_t;

KEPS_INLINE constexpr Bytes to64(Bytes n) {
    return (n + 63) & ~Bytes{63};
}
KEPS_INLINE constexpr Bytes larger(Bytes a, Bytes b) {
    return a > b ? a : b;
}

inline constexpr size header = 128;   // bytes of the head
inline constexpr Bytes chunk = 32768; // bytes of output that a call makes in the work area

// What sets the element types apart: the thresholds of the FFT path, measured in taps and samples
// of a call, and the tap table.
template <class T>
struct Type;

template <>
struct Type<Kep32f> {
    using Real = Kep32f;
    static constexpr size leastTaps = 32, leastIters = 256;
    static constexpr bool isHorizontal(size tapsLen) { return tapsLen >= 32; }
    static constexpr Bytes tableBytes(Bytes n) {
        return larger(larger(to64(4 * n), to64(32 * n)), ((n + 16) >> 3) * 256);
    }
    // Each tap eight times; or rows of eight lanes: row p, lane r holds the tap of sample p for
    // output r, the oldest sample first, 0 where there is none.
    static void fill(const Kep32f *taps, size n, Kep32f *table) {
        if (!isHorizontal(n)) {
            for (size k = 0; k < n; ++k)
                storeAligned(table + 8 * k, splat<f32x8>(loadOne(taps + k)));
            return;
        }
        ownsZero_8u(table, ((n + 16) >> 3) * 256);
        for (size k = 0; k < n; ++k)
            for (size r = 0; r < 8; ++r) table[8 * (n - 1 - k + r) + r] = loadOne(taps + k);
    }
};

template <>
struct Type<Kep64f> {
    using Real = Kep64f;
    // From 62 taps on the direct kernel has no shorter body left.
    static constexpr size leastTaps = 62, leastIters = 512;
    static constexpr bool isHorizontal(size tapsLen) { return tapsLen > 8; }
    static constexpr Bytes tableBytes(Bytes n) {
        return larger(larger(to64(8 * n), to64(32 * n)), to64(16 * ((n + 2) & ~Bytes{1})));
    }
    // Each tap four times; or two rows: the taps from the oldest sample on, and the same one
    // place later.
    static void fill(const Kep64f *taps, size n, Kep64f *table) {
        if (!isHorizontal(n)) {
            for (size k = 0; k < n; ++k)
                storeAligned(table + 4 * k, splat<f64x4>(loadOne(taps + k)));
            return;
        }
        const size row = (n + 2) & ~size{1};
        ownsZero_8u(table, 16 * row);
        for (size k = 0; k < n; ++k) table[n - 1 - k] = table[row + n - k] = loadOne(taps + k);
    }
};

template <>
struct Type<Kep32fc> {
    using Real = Kep32f;
    static constexpr size leastTaps = 18, leastIters = 128;
    static constexpr bool isHorizontal(size) { return false; }
    static constexpr Bytes tableBytes(Bytes n) { return larger(to64(8 * n), to64(32 * n)); }
    // A record of re, re, re, re, -im, im, -im, im for each tap.
    static void fill(const Kep32fc *taps, size n, Kep32f *table) {
        for (size k = 0; k < n; ++k) {
            const Kep32fc tap = loadOne(taps + k);
            for (size r = 0; r < 4; ++r) {
                table[8 * k + r] = tap.re;
                table[8 * k + 4 + r] = r % 2 ? tap.im : -tap.im;
            }
        }
    }
};

template <>
struct Type<Kep64fc> {
    using Real = Kep64f;
    static constexpr size leastTaps = 18, leastIters = 128;
    static constexpr bool isHorizontal(size) { return false; }
    static constexpr Bytes tableBytes(Bytes n) { return larger(to64(16 * n), 64 * n); }
    // A record of re, re, re, re, im, -im, im, -im for each tap.
    static void fill(const Kep64fc *taps, size n, Kep64f *table) {
        for (size k = 0; k < n; ++k) {
            const Kep64fc tap = loadOne(taps + k);
            for (size r = 0; r < 4; ++r) {
                table[8 * k + r] = tap.re;
                table[8 * k + 4 + r] = r % 2 ? -tap.im : tap.im;
            }
        }
    }
};

// Transforms of 2^order points: more than 2 and at most 4 for each tap, so that at least half of
// a transform's results are outputs.
KEPS_INLINE int fftOrder(size tapsLen) {
    return 63 - __builtin_clzll(static_cast<unsigned long long>(tapsLen)) + 2;
}

// The sub-blocks of a spec block, in their order; built on null it counts.
template <class T>
struct Block {
    KepFIRSRSpec *head;
    typename Type<T>::Real *table;
    Kep8u *planMemory, *fftWork;
    T *tapSpectrum;
    size bytes;

    Block(void *start, size tapsLen, const FftSizes &fft, size fftLen) {
        Carver carver(start);
        head = reinterpret_cast<KepFIRSRSpec *>(carver.take<Kep8u>(header));
        using Real = typename Type<T>::Real;
        const Bytes tableBytes = Type<T>::tableBytes(static_cast<Bytes>(tapsLen));
        table = carver.take<Real>(size{tableBytes} / size{sizeof(Real)});
        planMemory = carver.take<Kep8u>(fft.plan);
        // The sizes of short plans are no multiples of 64, and nothing is rounded up for them.
        fftWork = carver.take<Kep8u>(fft.init > fft.work ? fft.init : fft.work, 1);
        tapSpectrum = carver.take<T>(fftLen, 1);
        bytes = carver.bytes();
    }
};
static_assert(sizeof(KepFIRSRSpec) <= header);

// The areas of a call's work buffer: the samples around the cut between two calls, a pair of delay
// vectors, a chunk of output, and what the FFT path needs. No boundary is promised. Built on null
// it counts.
template <class T>
struct Work {
    T *assembly, *delay, *output, *scratch;
    size bytes;

    Work(Kep8u *buf, size tapsLen, const FftSizes &fft = {}, size fftLen = 0) {
        constexpr Bytes e = sizeof(T);
        const Bytes both = 2 * static_cast<Bytes>(tapsLen) * e;
        Carver carver(buf);
        const auto area = [&](Bytes n) {
            return reinterpret_cast<T *>(carver.take<Kep8u>(size{n}, 1));
        };
        assembly = area(to64(both));
        delay = area((both + 63 - 2 * e) & ~Bytes{63});
        output = area(chunk);
        scratch = carver.take<T>(fftLen, 1);
        carver.take<Kep8u>(fft.work, 1);
        bytes = carver.bytes();
    }
};

} // namespace keps::fir
