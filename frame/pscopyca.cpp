// Copy: 32- and 16-byte vector moves for short arrays, string moves for long ones.
#include "frame/entry.hpp"
#include "frame/simd/ladder.hpp"

using namespace keps;

namespace {

struct Copying {
    const std::uint8_t *from;
    std::uint8_t *to;
    size n;

    void skip(size bytes) {
        from += bytes;
        to += bytes;
        n -= bytes;
    }
};

KEPS_INLINE void move32(const std::uint8_t *from, std::uint8_t *to, size at) {
    _mm256_storeu_si256(reinterpret_cast<__m256i *>(to + at),
                        _mm256_loadu_si256(reinterpret_cast<const __m256i *>(from + at)));
}

// Up to 255 bytes, wide moves first, one test per bit of n.
KEPS_INLINE void upTo255(Copying c) {
    if (c.n & 128) {
        times<4>([&](int k) KEPS_INLINE_LAMBDA { move32(c.from, c.to, 32 * k); });
        c.from += 128, c.to += 128;
    }
    if (c.n & 64) {
        times<2>([&](int k) KEPS_INLINE_LAMBDA { move32(c.from, c.to, 32 * k); });
        c.from += 64, c.to += 64;
    }
    ladderUp<32>(c.from, c.to, c.n);
}

// 16 KiB and above, to on a 32-byte boundary: from the end downward in rounds of 64 bytes, four
// 16-byte moves each.
KEPS_INLINE void descending(Copying c) {
    if (c.n & 63) {
        move32(c.from, c.to, c.n - 64);
        move32(c.from, c.to, c.n - 32);
        c.n &= ~size{63};
    }
    while (c.n > 0) {
        c.n -= 64;
        const auto *from = reinterpret_cast<const __m128i *>(c.from + c.n);
        auto *to = reinterpret_cast<__m128i *>(c.to + c.n);
        times<4>([&](int k) KEPS_INLINE_LAMBDA {
            _mm_store_si128(to + 3 - k, _mm_loadu_si128(from + 3 - k));
        });
    }
}

// Rounds of 256 bytes by 32-byte moves, to on a 32-byte boundary.
KEPS_INLINE void ascendingBy32(Copying c) {
    for (; c.n >= 256; c.skip(256)) {
        const auto *from = reinterpret_cast<const __m256i *>(c.from);
        auto *to = reinterpret_cast<__m256i *>(c.to);
        times<8>([&](int k) KEPS_INLINE_LAMBDA {
            _mm256_store_si256(to + k, _mm256_loadu_si256(from + k));
        });
    }
    upTo255(c);
}

// Rounds of 64 bytes by 16-byte moves: for sources that 32-byte loads would split often.
KEPS_INLINE void ascendingBy16(Copying c) {
    for (; c.n >= 64; c.skip(64)) {
        const auto *from = reinterpret_cast<const __m128i *>(c.from);
        auto *to = reinterpret_cast<__m128i *>(c.to);
        times<4>([&](int k)
                     KEPS_INLINE_LAMBDA { _mm_store_si128(to + k, _mm_loadu_si128(from + k)); });
    }
    upTo255(c);
}

} // namespace

void ownsCopy_8u_E9(const void *src, void *dst, size n) {
    Copying c{static_cast<const std::uint8_t *>(src), static_cast<std::uint8_t *>(dst), n};
    if (n < 256) return upTo255(c);
    if (const size skip = toBoundary(dst, 32); skip != 0) {
        move32(c.from, c.to, 0);
        c.skip(skip);
    }
    if (c.n >= 16384) return descending(c);
    isAligned(c.from, 16) ? ascendingBy32(c) : ascendingBy16(c);
}

void ownsCopy_8u(const void *src, void *dst, size n) {
    n < 32768 ? ownsCopy_8u_E9(src, dst, n) : ownsCopy_8u_repE9(src, dst, n);
}

namespace {

// Wider types go through the bytes in chunks that fit 31 bits; so every length is right.
template <class T>
KepStatus copyAll(const T *src, T *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if (size{len} * size{sizeof(T)} <
        256) { // the vector kernel's short path, without a further call
        upTo255({reinterpret_cast<const std::uint8_t *>(src), reinterpret_cast<std::uint8_t *>(dst),
                 size{len} * size{sizeof(T)}});
        return kepStatusOk;
    }
    constexpr size splitAbove = 0x7FFFFFFF / size{sizeof(T)};
    constexpr size chunk = 0x7FFFFFE0 / size{sizeof(T)};
    size left = len;
    for (; sizeof(T) > 1 && left > splitAbove; left -= chunk, src += chunk, dst += chunk)
        ownsCopy_8u(src, dst, chunk * size{sizeof(T)});
    ownsCopy_8u(src, dst, left * size{sizeof(T)});
    return kepStatusOk;
}

} // namespace

// clang-format off
KepStatus kepsCopy_8u(const Kep8u *src, Kep8u *dst, int32_t len) { return copyAll(src, dst, len); }
KepStatus kepsCopy_16s(const Kep16s *src, Kep16s *dst, int32_t len) { return copyAll(src, dst, len); }
KepStatus kepsCopy_16sc(const Kep16sc *src, Kep16sc *dst, int32_t len) { return copyAll(src, dst, len); }
KepStatus kepsCopy_32f(const Kep32f *src, Kep32f *dst, int32_t len) { return copyAll(src, dst, len); }
KepStatus kepsCopy_32fc(const Kep32fc *src, Kep32fc *dst, int32_t len) { return copyAll(src, dst, len); }
KepStatus kepsCopy_32s(const Kep32s *src, Kep32s *dst, int32_t len) { return copyAll(src, dst, len); }
KepStatus kepsCopy_32sc(const Kep32sc *src, Kep32sc *dst, int32_t len) { return copyAll(src, dst, len); }
KepStatus kepsCopy_64f(const Kep64f *src, Kep64f *dst, int32_t len) { return copyAll(src, dst, len); }
KepStatus kepsCopy_64fc(const Kep64fc *src, Kep64fc *dst, int32_t len) { return copyAll(src, dst, len); }
KepStatus kepsCopy_64s(const Kep64s *src, Kep64s *dst, int32_t len) { return copyAll(src, dst, len); }
KepStatus kepsCopy_64sc(const Kep64sc *src, Kep64sc *dst, int32_t len) { return copyAll(src, dst, len); }
// clang-format on
