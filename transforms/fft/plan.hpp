// The FFT plan: its record, the fixed numbers of each precision, and the sequence of stages that
// tables and kernels share.
#pragma once

#include "frame/simd/complex.hpp"

namespace keps::fft {

template <class T>
struct Traits;

template <>
struct Traits<float> {
    using V = f32x8;
    static constexpr int maxOrder = 28;             // of complex plans; real ones go one further
    static constexpr int largeOrder = 19;           // from here on the blocked path
    static constexpr int tileOrder = 6;             // bit reversal in tiles of 64 by 64 points
    static constexpr int copyOrder = 23;            // bit reversal in place behind a copy
    static constexpr size twoLevelPoints = 0x80000; // real recombination by two-level tables
    static constexpr size twoLevelBlock = 1024;
    static constexpr int columnOrder = 6; // 64 columns in a tile of the cross-block stages
};

template <>
struct Traits<double> {
    using V = f64x4;
    static constexpr int maxOrder = 27;
    static constexpr int largeOrder = 18;
    static constexpr int tileOrder = 5;
    static constexpr int copyOrder = 23;
    static constexpr size twoLevelPoints = 0x20000;
    static constexpr size twoLevelBlock = 512;
    static constexpr int columnOrder = 5;
};

// Complex points in 16 KiB: the block that stages share while it stays in the first cache.
template <class T>
inline constexpr size blockPoints = 16384 / (2 * sizeof(T));

enum Tag { tagC_32fc = 4, tagC_32f, tagR_32f, tagC_64fc, tagC_64f, tagR_64f };

// Constant after Init; the tables lie behind it in the same block.
template <class T>
struct Plan {
    std::int32_t idTag;
    std::int32_t order;
    std::int32_t scaleForward;
    std::int32_t scaleInverse;
    T scaleFactor;                    // of the directions that are scaled
    std::int32_t hint;                // as given, never read
    std::int32_t workSize;            // bytes of the work buffer that a transform uses
    std::int32_t reserved;            // zero
    const std::uint32_t *bitRevTable; // where the first stage reads
    const T *twiddleCore;             // of the in-cache stages from the second on
    const T *realRecombineTable;      // of real plans: forward
    const T *ccsRecombineTable;       // of real plans: inverse
    const T *levelTwiddle[3];         // of each block level of the large path
};
inline constexpr size headerBytes = 144;
static_assert(sizeof(Plan<float>) <= headerBytes && sizeof(Plan<double>) <= headerBytes);

// Bits that the in-cache stage takes when done bits of order are done.
template <class T>
constexpr int stageBits(int order, int done) {
    const int left = order - done;
    if constexpr (sizeof(T) == 4) {
        if (done == 0) return 2;
        if (left == 3 || (left >= 5 && done >= 3 && order < 12) || (done == 4 && order % 2 != 0))
            return 3;
        return 2;
    } else {
        if (done == 0) return order == 4 || order >= 11 ? 2 : 3;
        if (left == 2 || left == 4) return 2;
        if (order >= 11 &&
            (order % 2 == 0 || (order == 11 && done >= 5) || (order >= 15 && done == 8)))
            return 2;
        return 3;
    }
}

// A stage over runs of columns points, which it joins by the radix to longer runs.
struct Stage {
    std::int32_t bits;
    std::int32_t columnBits;
    std::int32_t twiddles; // its twiddles' place in the core table, in elements
};

// Reals of a stage's twiddles: radix - 1 complex values a column, whole vectors of columns.
template <class T>
constexpr std::int32_t stageTwiddles(int columnBits, int bits) {
    constexpr std::int32_t lanes = Traits<T>::V::lanes;
    const std::int32_t columns = std::int32_t{1} << columnBits;
    return 2 * ((1 << bits) - 1) * (columns < lanes ? lanes : columns);
}

struct StagePlan {
    std::int32_t count;
    std::int32_t twiddles; // reals in the core table
    Stage stage[10];
};

template <class T>
constexpr StagePlan stagePlan(int order) {
    StagePlan plan{};
    int done = 0;
    while (done < order) {
        const int bits = stageBits<T>(order, done);
        plan.stage[plan.count++] = {bits, done, plan.twiddles};
        if (done > 0) plan.twiddles += stageTwiddles<T>(done, bits);
        done += bits;
    }
    return plan;
}

template <class T>
struct StagePlans {
    static constexpr int orders = Traits<T>::largeOrder + 1;
    StagePlan plan[orders];
    constexpr StagePlans() : plan{} {
        for (int order = 7; order < orders; ++order) plan[order] = stagePlan<T>(order);
    }
};
template <class T>
inline constexpr StagePlans<T> stagePlans{};

// The large path's split by order, from 9 on: cross-block bits, and bits of a tile of the
// cross-block stages.
inline constexpr std::int8_t tbl_blk_order_32f[22] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 4,
                                                      4, 4, 4, 8, 8, 8, 8, 8, 8, 8, 8};
inline constexpr std::int8_t tbl_buf_order_32f[22] = {0,  0,  0,  0,  0,  0,  0,  0,  0,  0,  10,
                                                      10, 10, 10, 14, 14, 14, 14, 14, 14, 14, 14};
inline constexpr std::int8_t tbl_blk_order_64f[22] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 4, 4,
                                                      4, 4, 8, 8, 8, 8, 8, 8, 8, 8, 8};
inline constexpr std::int8_t tbl_buf_order_64f[22] = {0, 0, 0,  0,  0,  0,  0,  0,  0,  9,  9,
                                                      9, 9, 13, 13, 13, 13, 13, 13, 13, 13, 13};

template <class T>
constexpr int blockOrder(int order) {
    return (sizeof(T) == 4 ? tbl_blk_order_32f : tbl_blk_order_64f)[order - 9];
}
template <class T>
constexpr int bufferOrder(int order) {
    return (sizeof(T) == 4 ? tbl_buf_order_32f : tbl_buf_order_64f)[order - 9];
}

// Bits of the cross-block stage of a level of blockBits when done of them are done.
constexpr int levelStageBits(int blockBits, int done) {
    const int left = blockBits - done;
    return left == 2 || left == 4 || left == 6 ? 2 : 3;
}

constexpr bool isScaleFlag(std::int32_t flag) {
    return flag == kepFftScaleForwardByN || flag == kepFftScaleInverseByN ||
           flag == kepFftScaleBySqrtN || flag == kepFftScaleNone;
}

// The low bits bits of x in reverse.
constexpr std::uint32_t bitReversed(std::uint32_t x, int bits) {
    std::uint32_t r = 0;
    for (int i = 0; i < bits; ++i) r |= (x >> i & 1) << (bits - 1 - i);
    return r;
}

} // namespace keps::fft
