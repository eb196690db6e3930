// Loop shapes over the SIMD types: written once, with head, unrolled body and tail.
#pragma once

#include <type_traits>

#include "frame/simd/int128.hpp"

namespace keps {

// LaneOf<T>: what a vector's lanes hold for an array of T, the parts of a complex type.
template <class T>
struct LaneType {
    using type = T;
};
template <class T>
requires std::is_class_v<T>
struct LaneType<T> {
    using type = decltype(T::re);
};
template <class T>
using LaneOf = typename LaneType<T>::type;

// Block<T, N>: what holds N elements of type T in registers: a float vector, an integer vector
// (filled in its lower part only, for small N), or two of them. Complex elements take two lanes.
template <class L, int Bytes>
struct BlockType {
    static_assert(Bytes <= 32);
    using type = std::conditional_t<Bytes <= 16, int128<L>, two<int128<L>>>;
};
template <>
struct BlockType<float, 32> {
    using type = f32x8;
};
template <>
struct BlockType<float, 16> {
    using type = f32x4;
};
template <>
struct BlockType<double, 32> {
    using type = f64x4;
};
template <>
struct BlockType<double, 16> {
    using type = f64x2;
};
template <class T, int N>
using Block = typename BlockType<LaneOf<T>, N *static_cast<int>(sizeof(T))>::type;

template <class V>
inline constexpr bool isTwo = false;
template <class V>
inline constexpr bool isTwo<two<V>> = true;

namespace detail {

// A block's halves as bits, and back; the lower half costs nothing.
// clang-format off
KEPS_INLINE __m128i lowerBits(f32x8 x) { return _mm256_castsi256_si128(_mm256_castps_si256(x.v)); }
KEPS_INLINE __m128i lowerBits(f64x4 x) { return _mm256_castsi256_si128(_mm256_castpd_si256(x.v)); }
KEPS_INLINE __m128i lowerBits(f32x4 x) { return _mm_castps_si128(x.v); }
KEPS_INLINE __m128i lowerBits(f64x2 x) { return _mm_castpd_si128(x.v); }
template <class T> KEPS_INLINE __m128i lowerBits(int128<T> x) { return x.v; }
template <class V> KEPS_INLINE __m128i lowerBits(two<V> x) { return x.lo.v; }
KEPS_INLINE __m128i upperBits(f32x8 x) { return _mm256_extractf128_si256(_mm256_castps_si256(x.v), 1); }
KEPS_INLINE __m128i upperBits(f64x4 x) { return _mm256_extractf128_si256(_mm256_castpd_si256(x.v), 1); }
template <class V> KEPS_INLINE __m128i upperBits(two<V> x) { return x.hi.v; }
// clang-format on

template <class B>
KEPS_INLINE B blockOf(__m128i lower, [[maybe_unused]] __m128i upper) {
    if constexpr (isTwo<B>)
        return {{lower}, {upper}};
    else if constexpr (std::is_same_v<B, f32x8>)
        return {_mm256_castsi256_ps(_mm256_set_m128i(upper, lower))};
    else if constexpr (std::is_same_v<B, f64x4>)
        return {_mm256_castsi256_pd(_mm256_set_m128i(upper, lower))};
    else if constexpr (std::is_same_v<B, f32x4>)
        return {_mm_castsi128_ps(lower)};
    else if constexpr (std::is_same_v<B, f64x2>)
        return {_mm_castsi128_pd(lower)};
    else
        return {lower};
}

KEPS_INLINE __m128i load16(const void *p) {
    return _mm_loadu_si128(static_cast<const __m128i *>(p));
}
KEPS_INLINE void store16(void *p, __m128i x) {
    _mm_storeu_si128(static_cast<__m128i *>(p), x);
}

// Bytes bytes at p and as many at q, side by side; Bytes is a power of two up to 8.
template <int Bytes>
KEPS_INLINE __m128i loadPair(const void *p, const void *q) {
    if constexpr (Bytes == 8)
        return _mm_insert_epi64(_mm_cvtsi64_si128(loadAs<std::int64_t>(p)), loadAs<std::int64_t>(q),
                                1);
    else if constexpr (Bytes == 4)
        return _mm_insert_epi32(_mm_cvtsi32_si128(loadAs<std::int32_t>(p)), loadAs<std::int32_t>(q),
                                1);
    else if constexpr (Bytes == 2)
        return _mm_insert_epi16(_mm_cvtsi32_si128(loadAs<std::uint16_t>(p)),
                                loadAs<std::int16_t>(q), 1);
    else
        return _mm_insert_epi8(_mm_cvtsi32_si128(loadAs<std::uint8_t>(p)), loadAs<std::uint8_t>(q),
                               1);
}

template <int Bytes>
KEPS_INLINE void storePair(void *p, void *q, __m128i x) {
    if constexpr (Bytes == 8) {
        storeAs<std::int64_t>(p, _mm_cvtsi128_si64(x));
        storeAs<std::int64_t>(q, _mm_extract_epi64(x, 1));
    } else if constexpr (Bytes == 4) {
        storeAs<std::int32_t>(p, _mm_cvtsi128_si32(x));
        storeAs<std::int32_t>(q, _mm_extract_epi32(x, 1));
    } else if constexpr (Bytes == 2) {
        storeAs(p, static_cast<std::uint16_t>(_mm_extract_epi16(x, 0)));
        storeAs(q, static_cast<std::uint16_t>(_mm_extract_epi16(x, 1)));
    } else {
        storeAs(p, static_cast<std::uint8_t>(_mm_extract_epi8(x, 0)));
        storeAs(q, static_cast<std::uint8_t>(_mm_extract_epi8(x, 1)));
    }
}

} // namespace detail

// A full block.
template <int N, class T>
KEPS_INLINE Block<T, N> loadBlock(const T *p) {
    using B = Block<T, N>;
    constexpr int bytes = N * static_cast<int>(sizeof(T));
    if constexpr (std::is_floating_point_v<LaneOf<T>>)
        return load<B>(reinterpret_cast<const LaneOf<T> *>(p));
    else if constexpr (bytes == 32)
        return {{detail::load16(p)}, {detail::load16(p + N / 2)}};
    else if constexpr (bytes == 16)
        return {detail::load16(p)};
    else if constexpr (bytes == 8)
        return {_mm_cvtsi64_si128(loadAs<std::int64_t>(p))};
    else
        return {_mm_cvtsi32_si128(loadAs<std::int32_t>(p))};
}

// The same through one 32-byte load: a load less and an extraction more.
template <int N, class T>
requires isTwo<Block<T, N>> KEPS_INLINE Block<T, N> loadWhole(const T *p) {
    const __m256i x = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(p));
    return {{_mm256_castsi256_si128(x)}, {_mm256_extractf128_si256(x, 1)}};
}

// Joined: the halves of two vectors leave as one store. Elements that aren't numbers have forms of
// their own.
template <int N, bool Joined = true, class T>
requires std::is_arithmetic_v<LaneOf<T>> KEPS_INLINE void storeBlock(T *p, Block<T, N> x) {
    constexpr int bytes = N * static_cast<int>(sizeof(T));
    if constexpr (!Joined && isTwo<Block<T, N>>) {
        detail::store16(p, x.lo.v);
        detail::store16(p + N / 2, x.hi.v);
        return;
    }
    if constexpr (bytes >= 16)
        store(reinterpret_cast<LaneOf<T> *>(p), x);
    else if constexpr (bytes == 8)
        storeAs<std::int64_t>(p, _mm_cvtsi128_si64(x.v));
    else
        storeAs<std::int32_t>(p, _mm_cvtsi128_si32(x.v));
}

// Fewer elements than a block's N, at least one. With k the largest power of two up to n, lanes 0
// to k - 1 hold the first k elements and the next k lanes the last k; the two overlap unless n is
// k or 2 k. The lanes behind are zero. It is the same for every array of a call, takes no mask,
// and touches the n elements only.
template <int N, class T, int K = N / 2>
KEPS_INLINE Block<T, N> loadEnds(const T *p, size n) {
    constexpr int bytes = K * static_cast<int>(sizeof(T));
    if (K == 1 || n >= K) {
        const T *q = p + n - K;
        const __m128i nothing = _mm_setzero_si128();
        if constexpr (bytes == 16)
            return detail::blockOf<Block<T, N>>(detail::load16(p), detail::load16(q));
        else
            return detail::blockOf<Block<T, N>>(detail::loadPair<bytes>(p, q), nothing);
    }
    if constexpr (K > 1) return loadEnds<N, T, K / 2>(p, n);
}

template <int N, class T, int K = N / 2>
requires std::is_arithmetic_v<LaneOf<T>> KEPS_INLINE void storeEnds(T *p, Block<T, N> x, size n) {
    constexpr int bytes = K * static_cast<int>(sizeof(T));
    if (K == 1 || n >= K) {
        T *q = p + n - K;
        if constexpr (bytes == 16) {
            detail::store16(p, detail::lowerBits(x));
            detail::store16(q, detail::upperBits(x));
        } else {
            detail::storePair<bytes>(p, q, detail::lowerBits(x));
        }
        return;
    }
    if constexpr (K > 1) storeEnds<N, T, K / 2>(p, x, n);
}

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

// dst[i] = op(src[i]...) for n elements, N at a time. The operator works on whole blocks, its lanes
// are independent, and every element goes through it. Unroll is the number of blocks a round: 4 for
// operators of an instruction or two, 2 for longer ones, 1 for those that fill the registers.
//
// A source may be the destination. The last round ends at the array's end, whatever it overlaps:
// it is computed ahead of the body and stored behind it. So short arrays take two or three branches
// and no loop. Long ones have dst brought to a multiple of its block's size.
template <int N, int Unroll = 4, class Op, class To, class... From>
KEPS_INLINE void map(size n, const Op &op, To *dst, const From *...src) {
    // An operator that says so has the halves of its results stored apart.
    const auto put = [](To *p, const Block<To, N> &x) KEPS_INLINE_LAMBDA {
        if constexpr (requires { typename Op::separateHalves; })
            storeBlock<N, false>(p, x);
        else
            storeBlock<N>(p, x);
    };
    const auto at = [&](size i) KEPS_INLINE_LAMBDA { return apply(op, loadBlock<N>(src + i)...); };
    const auto firstWhole = [&](size i, auto *first, auto *...rest) KEPS_INLINE_LAMBDA {
        return apply(op, loadWhole<N>(first + i), loadBlock<N>(rest + i)...);
    };
    // Blocks that may overlap: all loads come before the first store.
    const auto blocks = [&]<class... Start>(Start... starts) KEPS_INLINE_LAMBDA {
        const auto putAll = [&](auto... results)
                                KEPS_INLINE_LAMBDA { (put(dst + starts, results), ...); };
        putAll(at(starts)...);
    };
    if (n < N) [[unlikely]] {
        storeEnds<N>(dst, apply(op, loadEnds<N>(src, n)...), n);
        return;
    }
    if (Unroll > 1 && n <= 2 * N) return blocks(size{0}, n - N);
    if (Unroll == 4 && n <= 4 * N) return blocks(size{0}, size{N}, n - 2 * N, n - N);

    constexpr size round = Unroll * N;
    const size lastRound = n - round;
    Block<To, N> tail[Unroll];
    times<Unroll>([&](int k) KEPS_INLINE_LAMBDA { tail[k] = at(lastRound + k * N); });
    // Below this the loop is too short for split stores to cost more than the head.
    constexpr size worthAligning = 16 * N;
    size i = 0;
    if (n >= worthAligning) {
        constexpr std::uintptr_t blockBytes = sizeof(To) * N;
        const auto beyond = -reinterpret_cast<std::uintptr_t>(dst) & (blockBytes - 1);
        if (beyond != 0 && beyond % sizeof(To) == 0) {
            const auto head = at(0);
            i = static_cast<size>(beyond / sizeof(To));
            const auto next = at(i);
            put(dst, head);
            put(dst + i, next);
            i += N;
        }
    }
    for (; i < lastRound; i += round) {
        // One after the other: grouped loads run into later lines of sources that lie across
        // boundaries, which costs a fifth where the second cache feeds them.
        // For one instruction a vector there are too many loads of 16 bytes, and with 32-byte loads
        // throughout too many extractions: an operator that says so has some of each.
        if constexpr (requires { typename Op::wholeLoads; }) {
            put(dst + i, at(i));
            put(dst + i + N, firstWhole(i + N, src...));
        } else {
            times<Unroll>([&](int k) KEPS_INLINE_LAMBDA { put(dst + i + k * N, at(i + k * N)); });
        }
    }
    times<Unroll>([&](int k) KEPS_INLINE_LAMBDA { put(dst + lastRound + k * N, tail[k]); });
}

} // namespace keps
