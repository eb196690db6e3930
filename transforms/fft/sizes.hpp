// Sizes of a plan, of its temporary table and of its work buffer: fixed numbers that callers may
// rely on, so they are formulas of their own; Init lays its tables out within them.
#pragma once

#include "transforms/fft/plan.hpp"

namespace keps::fft {

struct Sizes {
    size spec, specBuffer, work;
};

constexpr size wholeLines(size bytes) {
    return bytes & ~size{63};
}

// Core tables and work of a complex transform.
template <class T>
constexpr Sizes coreSizes(int order) {
    constexpr size point = 2 * sizeof(T);
    const size points = size{1} << order;
    if (order < Traits<T>::largeOrder)
        return {wholeLines(point * points + 63 + size{sizeof(T)} * 2), 0,
                wholeLines(point * points + 63)};
    const Sizes inner = coreSizes<T>(order - blockOrder<T>(order));
    const size tile = point << bufferOrder<T>(order);
    return {inner.spec + point * points / 2, 0, inner.work > tile ? inner.work : tile};
}

template <class T>
constexpr size baseTableBytes(int order) {
    if (order <= 10) return 0;
    return wholeLines((size{1} << order) / 4 * size{sizeof(T)} + size{sizeof(T)} + 63) + 64;
}

template <class T>
constexpr Sizes complexSizes(int order) {
    constexpr size slackAndHeader = 256;
    if (order <= 6) return {208, 0, 0};
    const Sizes core = coreSizes<T>(order);
    const size points = size{1} << order;
    if (order < Traits<T>::largeOrder)
        return {core.spec + wholeLines(points + 67) + slackAndHeader, baseTableBytes<T>(order),
                core.work + 64};
    constexpr int tileBits = 2 * Traits<T>::tileOrder;
    constexpr size twoTiles = size{4} * sizeof(T) << tileBits;
    return {core.spec + (size{4} << (order - tileBits)) + (size{1} << tileBits) + 64 +
                slackAndHeader,
            baseTableBytes<T>(order), (core.work > twoTiles ? core.work : twoTiles) + 64};
}

// Bytes of one recombination table of a real transform.
template <class T>
constexpr size recombineBytes(int order) {
    const size points = size{1} << order, real = size{sizeof(T)};
    if (points < Traits<T>::twoLevelPoints) return wholeLines(points / 4 * 2 * real + 63);
    const size blocks = points / (4 * Traits<T>::twoLevelBlock);
    return wholeLines((blocks + Traits<T>::twoLevelBlock) * 2 * real + 63);
}

template <class T>
constexpr Sizes realSizes(int order) {
    if (order <= 4) return {208, 0, 0};
    const size tables = 2 * recombineBytes<T>(order);
    if (order <= 7) return {tables + 256, 0, 0};
    const Sizes half = complexSizes<T>(order - 1);
    return {half.spec + tables, baseTableBytes<T>(order), half.work};
}

} // namespace keps::fft
