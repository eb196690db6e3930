// Fill kernels over a 32-byte pattern, shared by Zero and Set, and the streaming decisions with
// the cache size as an argument.
#pragma once

#include <immintrin.h>

#include "frame/bytes.hpp"
#include "frame/simd/element.hpp"

namespace keps::fill {

// Up to 255 bytes: one test per bit of n, wide stores first.
KEPS_INLINE void upTo255(std::uint8_t *p, __m256i pattern, size n) {
    const auto whole = [&](size at) KEPS_INLINE_LAMBDA {
        _mm256_storeu_si256(reinterpret_cast<__m256i *>(p + at), pattern);
    };
    if (n & 128) {
        whole(0), whole(32), whole(64), whole(96);
        p += 128;
    }
    if (n & 64) {
        whole(0), whole(32);
        p += 64;
    }
    if (n & 32) {
        whole(0);
        p += 32;
    }
    if ((n & 31) == 0) return; // most lengths that programs use
    const __m128i half = _mm256_castsi256_si128(pattern);
    if (n & 16) {
        _mm_storeu_si128(reinterpret_cast<__m128i *>(p), half);
        p += 16;
    }
    const auto word = static_cast<std::uint64_t>(_mm_cvtsi128_si64(half));
    if (n & 8) {
        storeAs(p, word);
        p += 8;
    }
    if (n & 4) {
        storeAs(p, static_cast<std::uint32_t>(word));
        p += 4;
    }
    if (n & 2) {
        storeAs(p, static_cast<std::uint16_t>(word));
        p += 2;
    }
    if (n & 1) storeAs(p, static_cast<std::uint8_t>(word));
}

// Moves p to a 32-byte boundary behind one unaligned store; n is at least 32. The pattern's period
// divides the distance.
KEPS_INLINE void align32(std::uint8_t *&p, __m256i pattern, size &n) {
    const size skip = toBoundary(p, 32);
    if (skip == 0) return;
    _mm256_storeu_si256(reinterpret_cast<__m256i *>(p), pattern);
    p += skip;
    n -= skip;
}

// p on a 32-byte boundary: rounds of 256 bytes, then the rest.
KEPS_INLINE void ascending(std::uint8_t *p, __m256i pattern, size n) {
    for (; n >= 256; n -= 256, p += 256) {
        auto *q = reinterpret_cast<__m256i *>(p);
        times<8>([&](int k) KEPS_INLINE_LAMBDA { _mm256_store_si256(q + k, pattern); });
    }
    upTo255(p, pattern, n);
}

// p on a 32-byte boundary, n of 64 and above: from the end downward in rounds of 64 bytes.
KEPS_INLINE void descending(std::uint8_t *p, __m256i pattern, size n) {
    if (n & 63) {
        _mm256_storeu_si256(reinterpret_cast<__m256i *>(p + n - 64), pattern);
        _mm256_storeu_si256(reinterpret_cast<__m256i *>(p + n - 32), pattern);
        n &= ~size{63};
    }
    const __m128i half = _mm256_castsi256_si128(pattern);
    while (n > 0) {
        n -= 64;
        auto *q = reinterpret_cast<__m128i *>(p + n);
        times<4>([&](int k) KEPS_INLINE_LAMBDA { _mm_store_si128(q + 3 - k, half); });
    }
}

template <class T>
KEPS_INLINE __m256i patternOf(T val) {
    if constexpr (sizeof(T) == 1) return _mm256_set1_epi8(static_cast<char>(val));
    if constexpr (sizeof(T) == 2) return _mm256_set1_epi16(static_cast<short>(val));
    if constexpr (sizeof(T) == 4) return _mm256_set1_epi32(static_cast<int>(val));
}

// By cached stores.
template <class T>
KEPS_INLINE void cached(T val, T *dst, size len) {
    if (!isAligned(dst, sizeof(T))) {
        for (size i = 0; i < len; ++i) storeOne(dst + i, val);
        return;
    }
    const __m256i pattern = patternOf(val);
    auto *p = reinterpret_cast<std::uint8_t *>(dst);
    size n = len * size{sizeof(T)};
    if (n < 256) return upTo255(p, pattern, n);
    align32(p, pattern, n);
    if (n < 32768) return ascending(p, pattern, n);
    descending(p, pattern, n);
}

// By non-temporal stores, dst on an element boundary, at least 128 bytes.
template <class T>
KEPS_INLINE void streaming(T val, T *dst, size len) {
    const __m256i pattern = patternOf(val);
    auto *p = reinterpret_cast<std::uint8_t *>(dst);
    size n = len * size{sizeof(T)};
    if (const size skip = toBoundary(p, 64); skip != 0) {
        _mm256_storeu_si256(reinterpret_cast<__m256i *>(p), pattern);
        _mm256_storeu_si256(reinterpret_cast<__m256i *>(p + 32), pattern);
        p += skip;
        n -= skip;
    }
    const auto stream = [&](size at) KEPS_INLINE_LAMBDA {
        _mm256_stream_si256(reinterpret_cast<__m256i *>(p + at), pattern);
    };
    for (; n >= 128; n -= 128, p += 128) stream(0), stream(32), stream(64), stream(96);
    if (n & 64) {
        stream(0), stream(32);
        p += 64;
    }
    if (n & 32) {
        stream(0);
        p += 32;
    }
    if (n & 16) {
        _mm_stream_si128(reinterpret_cast<__m128i *>(p), _mm256_castsi256_si128(pattern));
        p += 16;
    }
    upTo255(p, pattern, n & 15);
    _mm_sfence();
}

inline constexpr size streamingFrom = 0x200000; // bytes; above it only

// Cached or streaming, with askCache() giving the largest cache in bytes, 0 when unknown; it is
// asked only where the answer matters.
template <class T, class AskCache>
KEPS_INLINE void byCache(T val, T *dst, size len, AskCache askCache) {
    const size bytes = len * size{sizeof(T)};
    if (bytes > streamingFrom && isAligned(dst, sizeof(T))) {
        if (const size cache = askCache(); cache > 0 && bytes > cache)
            return streaming(val, dst, len);
    }
    cached(val, dst, len);
}

// A 16-byte pattern over n bytes, n a multiple of 8, dst on an 8-byte boundary, with a period of 8
// or, when n is a multiple of 16, of 16 bytes.
KEPS_INLINE void plain16(std::uint8_t *p, __m128i pattern, size n) {
    if (n < 16) {
        if (n) _mm_storel_epi64(reinterpret_cast<__m128i *>(p), pattern);
        return;
    }
    if (const size skip = toBoundary(p, 16); skip != 0) {
        _mm_storeu_si128(reinterpret_cast<__m128i *>(p), pattern);
        p += skip;
        n -= skip;
    }
    for (; n >= 64; n -= 64, p += 64) {
        auto *q = reinterpret_cast<__m128i *>(p);
        times<4>([&](int k) KEPS_INLINE_LAMBDA { _mm_store_si128(q + k, pattern); });
    }
    for (; n >= 16; n -= 16, p += 16) _mm_store_si128(reinterpret_cast<__m128i *>(p), pattern);
    if (n) _mm_storel_epi64(reinterpret_cast<__m128i *>(p), pattern);
}

// The same over a dst on a 16-byte boundary, past the cache.
KEPS_INLINE void stream16(std::uint8_t *p, __m128i pattern, size n) {
    for (; n >= 16; n -= 16, p += 16) _mm_stream_si128(reinterpret_cast<__m128i *>(p), pattern);
    _mm_sfence();
    if (n) _mm_storel_epi64(reinterpret_cast<__m128i *>(p), pattern);
}

// 64-bit elements. A dst on a 4-byte boundary takes its first and last element plainly and the
// pattern turned by half between them; any other odd address takes plain unaligned stores.
template <class AskCache>
KEPS_INLINE void set64(std::uint64_t val, void *dst, size len, AskCache askCache) {
    auto *p = static_cast<std::uint8_t *>(dst);
    if (!isAligned(p, 4)) {
        for (size i = 0; i < len; ++i) storeAs(p + 8 * i, val);
        return;
    }
    if (!isAligned(p, 8)) {
        storeAs(p, val);
        storeAs(p + 8 * (len - 1), val);
        val = val << 32 | val >> 32;
        p += 4;
        --len;
    }
    const __m128i pattern = _mm_set1_epi64x(static_cast<long long>(val));
    if (len > 0x20000) {
        if (!isAligned(p, 16)) {
            storeAs(p, val);
            p += 8;
            --len;
        }
        if (const size cache = askCache(); cache > 0 && len > cache / 8)
            return stream16(p, pattern, 8 * len);
    }
    plain16(p, pattern, 8 * len);
}

// 128-bit elements; as set64, with the turn at an 8-byte boundary.
template <class AskCache>
KEPS_INLINE void set128(std::uint64_t low, std::uint64_t high, void *dst, size len,
                        AskCache askCache) {
    auto *p = static_cast<std::uint8_t *>(dst);
    __m128i pattern = _mm_set_epi64x(static_cast<long long>(high), static_cast<long long>(low));
    if (!isAligned(p, 8)) {
        for (size i = 0; i < len; ++i)
            _mm_storeu_si128(reinterpret_cast<__m128i *>(p + 16 * i), pattern);
        return;
    }
    if (!isAligned(p, 16)) {
        storeAs(p, low);
        storeAs(p + 16 * len - 8, high);
        pattern = _mm_shuffle_epi32(pattern, 0x4E);
        p += 8;
        --len;
    }
    if (len > 0x10000) {
        if (const size cache = askCache(); cache > 0 && len > cache / 16)
            return stream16(p, pattern, 16 * len);
    }
    plain16(p, pattern, 16 * len);
}

// What a processor reports of itself: leaf 0's vendor text and leaf 2's registers in the order
// eax, ebx, ecx, edx.
struct CacheLeaves {
    std::uint32_t vendor[3];
    std::uint32_t leaf2[4];
};

// The largest cache in bytes by the descriptor bytes of leaf 2; 0 when unknown.
size descriptorCacheSize(const CacheLeaves &leaves);

} // namespace keps::fill
