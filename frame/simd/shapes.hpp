// Loop shapes over the SIMD types: written once, with head, unrolled body and tail.
#pragma once

#include <type_traits>

#include "frame/simd/int128.hpp"

namespace keps {

// Block<T, N>: what holds N elements of type T in registers: a float vector, an integer vector
// (filled in its lower part only, for small N), or two of them.
template <class T, int N>
struct BlockType {
    static constexpr int bytes = N * static_cast<int>(sizeof(T));
    static_assert(bytes <= 32);
    using type = std::conditional_t<bytes <= 16, int128<T>, two<int128<T>>>;
};
template <>
struct BlockType<float, 8> {
    using type = f32x8;
};
template <>
struct BlockType<double, 4> {
    using type = f64x4;
};
template <class T, int N>
using Block = typename BlockType<T, N>::type;

// n elements of a block of N, 0 < n <= N; with n = N known at compile time it is one or two loads.
template <int N, class T>
KEPS_INLINE Block<T, N> loadBlock(const T *p, size n) {
    using B = Block<T, N>;
    if constexpr (std::is_floating_point_v<T>) {
        return n == N ? load<B>(p) : loadPart<B>(p, n);
    } else if constexpr (N * sizeof(T) == 32) {
        using V = int128<T>;
        constexpr size half = N / 2;
        if (n <= half) return {{loadBytes(p, n * size{sizeof(T)})}, {_mm_setzero_si128()}};
        return {loadInt<V>(p), {loadBytes(p + half, (n - half) * size{sizeof(T)})}};
    } else {
        return {loadBytes(p, n * size{sizeof(T)})};
    }
}

template <int N, class T>
KEPS_INLINE void storeBlock(T *p, Block<T, N> x, size n) {
    if constexpr (std::is_floating_point_v<T>) {
        n == N ? store(p, x) : storePart(p, x, n);
    } else if constexpr (N * sizeof(T) == 32) {
        constexpr size half = N / 2;
        if (n == N) return store(p, x);
        if (n <= half) return storeBytes(p, x.lo.v, n * size{sizeof(T)});
        store(p, x.lo);
        storeBytes(p + half, x.hi.v, (n - half) * size{sizeof(T)});
    } else {
        storeBytes(p, x.v, n * size{sizeof(T)});
    }
}

template <class V>
inline constexpr bool isTwo = false;
template <class V>
inline constexpr bool isTwo<two<V>> = true;

// op on blocks; an operator on single vectors serves blocks of two, half by half.
template <class Op, class... V>
KEPS_INLINE auto apply(const Op &op, const V &...x) {
    if constexpr ((isTwo<V> && ...) && !std::is_invocable_v<const Op &, const V &...>) {
        using R = decltype(op(x.lo...));
        return two<R>{op(x.lo...), op(x.hi...)};
    } else {
        return op(x...);
    }
}

// dst[i] = op(src[i]...) for n elements, N at a time. The operator works on whole blocks; all
// elements go through it, the last n mod N in a block that ends at the array's end or, below N
// elements, in a part of one. Blocks that overlap the body are computed before the body and stored
// after it, so a source may be the destination. dst is brought to a 32-byte boundary where that
// pays.
template <int N, class Op, class To, class... From>
KEPS_INLINE void map(size n, const Op &op, To *dst, const From *...src) {
    const auto at = [&](size i)
                        KEPS_INLINE_LAMBDA { return apply(op, loadBlock<N>(src + i, size{N})...); };
    if (n < N) {
        storeBlock<N>(dst, apply(op, loadBlock<N>(src, n)...), n);
        return;
    }
    constexpr size worthAligning = 8 * N;
    constexpr bool alignable = sizeof(To) * N == 32;
    const size last = n - N;
    Block<To, N> head{}, tail{};
    size skipped = 0;
    if (alignable && n >= worthAligning) {
        const auto beyond = -reinterpret_cast<std::uintptr_t>(dst) & 31;
        if (beyond % sizeof(To) == 0) skipped = static_cast<size>(beyond / sizeof(To));
        if (skipped) head = at(0);
    }
    const bool ragged = (n - skipped) % N != 0;
    if (ragged) tail = at(last);
    size i = skipped;
    for (; i + 4 * N <= n; i += 4 * N) {
        const auto a = at(i), b = at(i + N), c = at(i + 2 * N), d = at(i + 3 * N);
        storeBlock<N>(dst + i, a, N);
        storeBlock<N>(dst + i + N, b, N);
        storeBlock<N>(dst + i + 2 * N, c, N);
        storeBlock<N>(dst + i + 3 * N, d, N);
    }
    for (; i + N <= n; i += N) storeBlock<N>(dst + i, at(i), N);
    if (skipped) storeBlock<N>(dst, head, N);
    if (ragged) storeBlock<N>(dst + last, tail, N);
}

} // namespace keps
