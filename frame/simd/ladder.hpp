// Short moves by one test per bit of the count: no loop, no byte touched outside.
#pragma once

#include <immintrin.h>

#include "frame/bytes.hpp"
#include "frame/simd/element.hpp"

namespace keps {

template <int Bytes>
KEPS_INLINE void movePiece(const std::uint8_t *from, std::uint8_t *to) {
    if constexpr (Bytes == 32)
        _mm256_storeu_si256(reinterpret_cast<__m256i *>(to),
                            _mm256_loadu_si256(reinterpret_cast<const __m256i *>(from)));
    if constexpr (Bytes == 16)
        _mm_storeu_si128(reinterpret_cast<__m128i *>(to),
                         _mm_loadu_si128(reinterpret_cast<const __m128i *>(from)));
    if constexpr (Bytes == 8) storeAs(to, loadAs<std::uint64_t>(from));
    if constexpr (Bytes == 4) storeAs(to, loadAs<std::uint32_t>(from));
    if constexpr (Bytes == 2) storeAs(to, loadAs<std::uint16_t>(from));
    if constexpr (Bytes == 1) storeAs(to, loadAs<std::uint8_t>(from));
}

// n mod 2 * Widest bytes upward: pieces of Widest, half of it, down to 1.
template <int Widest>
KEPS_INLINE void ladderUp(const std::uint8_t *from, std::uint8_t *to, size n) {
    if (n & Widest) {
        movePiece<Widest>(from, to);
        from += Widest;
        to += Widest;
    }
    if constexpr (Widest == 32)
        if ((n & 31) == 0) return; // most lengths that programs use
    if constexpr (Widest > 1) ladderUp<Widest / 2>(from, to, n);
}

// The same bytes upward, small pieces first: brings an address to a boundary.
template <int Widest, int Piece = 1>
KEPS_INLINE void stepsUp(const std::uint8_t *from, std::uint8_t *to, size n) {
    if (n & Piece) {
        movePiece<Piece>(from, to);
        from += Piece;
        to += Piece;
    }
    if constexpr (Piece < Widest) stepsUp<Widest, 2 * Piece>(from, to, n);
}

// n mod 2 * Widest bytes downward from the areas' ends: pieces of 1, 2, up to Widest.
template <int Widest, int Piece = 1>
KEPS_INLINE void ladderDown(const std::uint8_t *from, std::uint8_t *to, size n) {
    if (n & Piece) {
        from -= Piece;
        to -= Piece;
        movePiece<Piece>(from, to);
    }
    if constexpr (Piece < Widest) ladderDown<Widest, 2 * Piece>(from, to, n);
}

} // namespace keps
