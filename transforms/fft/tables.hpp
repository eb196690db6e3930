// A plan's tables: sampled from one quarter wave, and laid out as the kernels read them.
#pragma once

#include "arith/vmath/vmath.hpp"
#include "frame/blocks.hpp"
#include "transforms/fft/plan.hpp"
#include "transforms/fft/quarter_wave.hpp"

namespace keps::fft {

template <class T>
struct Factor {
    T re, im;
};

// sin(2 pi k / 2^order) for k = 0..2^order / 4.
template <class T>
struct QuarterWave {
    const T *table;
    int order;

    // exp(-2 pi i k / 2^bits), 2 <= bits <= order; any k.
    Factor<T> root(size k, int bits) const {
        const size quarter = size{1} << (bits - 2), r = k & (quarter - 1);
        const int stride = order - bits;
        const T s = table[r << stride], c = table[(quarter - r) << stride];
        switch (k >> (bits - 2) & 3) {
        case 0:
            return {c, -s};
        case 1:
            return {-s, -c};
        case 2:
            return {-c, s};
        default:
            return {s, c};
        }
    }
};

template <class T>
inline QuarterWave<T> constantWave() {
    if constexpr (sizeof(T) == 4)
        return {fft_fix_twiddle_table_32f, 10};
    else
        return {fft_fix_twiddle_table_64f, 10};
}

// A quarter wave of 2^order points in table: sines up to the eighth, above it cosines of the
// complement, so that no argument leaves the first octant. order is 11 or more.
template <class T>
inline QuarterWave<T> generatedWave(int order, T *table) {
    const size points = size{1} << order, eighth = points / 8;
    const double step = 6.283185307179586 / static_cast<double>(points);
    for (size k = 0; k <= eighth; ++k) table[k] = static_cast<T>(static_cast<double>(k) * step);
    for (size k = eighth + 1; k <= 2 * eighth; ++k)
        table[k] = static_cast<T>(static_cast<double>(2 * eighth - k) * step);
    const auto sines = static_cast<std::int32_t>(eighth + 1);
    const auto cosines = static_cast<std::int32_t>(eighth);
    if constexpr (sizeof(T) == 4) {
        kepsSin_32f_A24(table, table, sines);
        kepsCos_32f_A24(table + sines, table + sines, cosines);
    } else {
        kepsSin_64f_A53(table, table, sines);
        kepsCos_64f_A53(table + sines, table + sines, cosines);
    }
    return {table, order};
}

// Factors exp(-2 pi i j k / 2^bits), j = 1..last, for a vector of k from first on: for each j the
// real parts, then the imaginary parts, in the lane order of grouped data.
template <class T>
inline T *writeRoots(T *out, QuarterWave<T> wave, size first, int last, int bits, size columns) {
    using V = typename Traits<T>::V;
    constexpr int lanes = V::lanes;
    for (int j = 1; j <= last; ++j, out += 2 * lanes) {
        for (int i = 0; i < lanes; ++i) {
            // Fewer columns than lanes: each doubled, for the two runs that share a vector.
            const size k = columns < lanes ? i / 2 : first + columnOfLane<V>(i);
            const Factor<T> w = wave.root(j * k, bits);
            out[i] = w.re;
            out[lanes + i] = w.im;
        }
    }
    return out;
}

// Where the first stage reads: entry k is the place, in reals, of the first of four points that
// lie a quarter of the transform apart. A 0 behind the last entry.
template <class T>
inline void fillBitReversal(std::uint32_t *table, int order) {
    const std::uint32_t quarter = std::uint32_t{1} << (order - 2);
    // Counts in bit-reversed order: the carry runs downward from the highest bit.
    std::uint32_t reversed = 0;
    for (std::uint32_t k = 0; k < quarter; ++k) {
        table[k] = 2 * reversed;
        std::uint32_t bit = quarter >> 1;
        for (; reversed & bit; bit >>= 1) reversed ^= bit;
        reversed |= bit;
    }
    table[quarter] = 0;
}

// The partner column of each tile of the large path's bit reversal.
template <class T>
inline void fillTileReversal(std::uint32_t *table, int order) {
    const int bits = order - 2 * Traits<T>::tileOrder;
    for (std::uint32_t k = 0; k < std::uint32_t{1} << bits; ++k)
        table[k] = bitReversed(k, bits) << Traits<T>::tileOrder;
}

template <class T>
inline void fillCore(T *table, int order, QuarterWave<T> wave) {
    const StagePlan &plan = stagePlans<T>.plan[order];
    for (int s = 1; s < plan.count; ++s) {
        const Stage &stage = plan.stage[s];
        const size columns = size{1} << stage.columnBits;
        for (size k = 0; k < columns; k += Traits<T>::V::lanes)
            table = writeRoots(table, wave, k, (1 << stage.bits) - 1, stage.columnBits + stage.bits,
                               columns);
    }
}

// Reals of a level that joins 2^blockBits runs of 2^runBits points.
template <class T>
constexpr size levelTwiddles(int blockBits, int runBits) {
    size perColumn = 0;
    for (int done = 0, bits; done < blockBits; done += bits) {
        bits = levelStageBits(blockBits, done);
        const size values = done + 2 == blockBits ? 1 : (1 << bits) - 1;
        perColumn += values << done;
    }
    return 2 * perColumn << runBits;
}

// A level's factors: tile after tile, and in a tile stage after stage. A stage that ends the level
// with radix 4 has one factor a column; the kernel makes the others of it.
template <class T>
inline void fillLevel(T *table, int blockBits, int runBits, QuarterWave<T> wave) {
    constexpr size columns = size{1} << Traits<T>::columnOrder;
    const size run = size{1} << runBits;
    for (size tile = 0; tile < run; tile += columns) {
        for (int done = 0, bits; done < blockBits; done += bits) {
            bits = levelStageBits(blockBits, done);
            const int last = done + 2 == blockBits ? 1 : (1 << bits) - 1;
            for (size row = 0; row < size{1} << done; ++row)
                for (size k = 0; k < columns; k += Traits<T>::V::lanes)
                    table = writeRoots(table, wave, row * run + tile + k, last,
                                       runBits + done + bits, run << done);
        }
    }
}

// Factors of the real recombination: pair(k) for k = 1..count, a vector of first members, then one
// of second members, in the lane order of an interleaved load.
template <class T, class Pair>
inline void fillPairs(T *table, size count, const Pair &pair) {
    using V = typename Traits<T>::V;
    for (size k = 1; k <= count; k += V::lanes, table += 2 * V::lanes) {
        for (int i = 0; i < V::lanes; ++i) {
            const Factor<T> f = pair(k + columnOfLane<V>(i));
            table[i] = f.re;
            table[V::lanes + i] = f.im;
        }
    }
}

template <class T>
inline size recombineElements(int order) {
    const size points = size{1} << order;
    if (points < Traits<T>::twoLevelPoints) return points / 2;
    return 2 * (Traits<T>::twoLevelBlock + points / (4 * Traits<T>::twoLevelBlock));
}

// The tables of both directions. Short ones hold every factor, the forward one with the halves
// folded in. Long ones hold one block of factors and, pair by pair, the blocks' rotations.
template <class T>
inline void fillRecombine(T *forward, T *inverse, int order, QuarterWave<T> wave) {
    constexpr size block = Traits<T>::twoLevelBlock;
    const size points = size{1} << order;
    const auto root = [=](size k) { return wave.root(k, order); };
    if (points < Traits<T>::twoLevelPoints) {
        fillPairs(inverse, points / 4, root);
        fillPairs(forward, points / 4, [&](size k) {
            const Factor<T> w = root(k);
            return Factor<T>{w.re * T(0.5), T(0.5) + w.im * T(0.5)};
        });
        return;
    }
    for (T *table : {forward, inverse}) {
        fillPairs(table, block, root);
        T *rotations = table + 2 * block;
        for (size q = 0; q < points / (4 * block); ++q) {
            const Factor<T> w = root(block * q);
            rotations[2 * q] = w.re;
            rotations[2 * q + 1] = w.im;
        }
    }
}

} // namespace keps::fft
