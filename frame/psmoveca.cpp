// Move: the direction of the walk alone makes any overlap safe.
#include "frame/entry.hpp"
#include "frame/simd/ladder.hpp"

using namespace keps;

namespace {

// 16 bytes by one load, or joined from two loads of 8 or four of 4.
struct Load16 {
    KEPS_INLINE __m128i operator()(const std::uint8_t *p) const {
        return _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
    }
};
struct LoadBy8 {
    KEPS_INLINE __m128i operator()(const std::uint8_t *p) const {
        return _mm_set_epi64x(loadAs<std::int64_t>(p + 8), loadAs<std::int64_t>(p));
    }
};
struct LoadBy4 {
    KEPS_INLINE __m128i operator()(const std::uint8_t *p) const {
        return _mm_set_epi32(loadAs<std::int32_t>(p + 12), loadAs<std::int32_t>(p + 8),
                             loadAs<std::int32_t>(p + 4), loadAs<std::int32_t>(p));
    }
};

KEPS_INLINE void store16(std::uint8_t *p, __m128i x) {
    _mm_store_si128(reinterpret_cast<__m128i *>(p), x);
}

// One round of Bytes bytes at from; every load comes before the first store.
template <int Bytes, class Load>
KEPS_INLINE void round(const std::uint8_t *from, std::uint8_t *to, Load load) {
    __m128i piece[Bytes / 16];
    times<Bytes / 16>([&](int k) KEPS_INLINE_LAMBDA { piece[k] = load(from + 16 * k); });
    times<Bytes / 16>([&](int k) KEPS_INLINE_LAMBDA { store16(to + 16 * k, piece[k]); });
}

template <int Bytes, class Load>
KEPS_INLINE void ascend(const std::uint8_t *from, std::uint8_t *to, size n, Load load) {
    for (; n >= Bytes; n -= Bytes, from += Bytes, to += Bytes) round<Bytes>(from, to, load);
    ladderUp<32>(from, to, n);
}

// from and to are the ends of the areas.
template <int Bytes, class Load>
KEPS_INLINE void descend(const std::uint8_t *from, std::uint8_t *to, size n, Load load) {
    for (; n >= Bytes; n -= Bytes) {
        from -= Bytes;
        to -= Bytes;
        round<Bytes>(from, to, load);
    }
    ladderDown<32>(from, to, n);
}

// walk(load), with the loads that suit the source's alignment once the destination is on 16 bytes.
template <class Walk>
KEPS_INLINE void byAlignment(const std::uint8_t *from, Walk walk) {
    if (isAligned(from, 16)) return walk(Load16{});
    if (isAligned(from, 4) && !isAligned(from, 8)) return walk(LoadBy4{});
    walk(LoadBy8{});
}

void upward(const std::uint8_t *from, std::uint8_t *to, size n) {
    if (n < 64) return ladderUp<32>(from, to, n);
    if (isAligned(from, 16) && isAligned(to, 16)) return ascend<64>(from, to, n, Load16{});
    const size skip = toBoundary(to, 16);
    stepsUp<8>(from, to, skip);
    from += skip;
    to += skip;
    n -= skip;
    byAlignment(from, [&](auto load) KEPS_INLINE_LAMBDA { ascend<32>(from, to, n, load); });
}

void downward(const std::uint8_t *from, std::uint8_t *to, size n) {
    if (n < 64) return ladderDown<32>(from, to, n);
    if (isAligned(from, 16) && isAligned(to, 16)) return descend<64>(from, to, n, Load16{});
    const size skip = 15 & reinterpret_cast<std::intptr_t>(to);
    ladderDown<8>(from, to, skip);
    from -= skip;
    to -= skip;
    n -= skip;
    byAlignment(from, [&](auto load) KEPS_INLINE_LAMBDA { descend<32>(from, to, n, load); });
}

} // namespace

void ownsMove_8u_AVX(const void *src, void *dst, size n) {
    const auto *from = static_cast<const std::uint8_t *>(src);
    auto *to = static_cast<std::uint8_t *>(dst);
    if (from == to) return;
    from > to ? upward(from, to, n) : downward(from + n, to + n, n);
}

void ownsMove_8u(const void *src, void *dst, size n) {
    n >= 32768 && src >= dst ? ownsCopy_8u_repE9(src, dst, n) : ownsMove_8u_AVX(src, dst, n);
}

namespace {

template <class T>
KepStatus moveAll(const T *src, T *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    ownsMove_8u(src, dst, byteCount<T>(len));
    return kepStatusOk;
}

} // namespace

// clang-format off
KepStatus kepsMove_8u(const Kep8u *src, Kep8u *dst, int32_t len) { return moveAll(src, dst, len); }
KepStatus kepsMove_16s(const Kep16s *src, Kep16s *dst, int32_t len) { return moveAll(src, dst, len); }
KepStatus kepsMove_16sc(const Kep16sc *src, Kep16sc *dst, int32_t len) { return moveAll(src, dst, len); }
KepStatus kepsMove_32f(const Kep32f *src, Kep32f *dst, int32_t len) { return moveAll(src, dst, len); }
KepStatus kepsMove_32fc(const Kep32fc *src, Kep32fc *dst, int32_t len) { return moveAll(src, dst, len); }
KepStatus kepsMove_32s(const Kep32s *src, Kep32s *dst, int32_t len) { return moveAll(src, dst, len); }
KepStatus kepsMove_32sc(const Kep32sc *src, Kep32sc *dst, int32_t len) { return moveAll(src, dst, len); }
KepStatus kepsMove_64f(const Kep64f *src, Kep64f *dst, int32_t len) { return moveAll(src, dst, len); }
KepStatus kepsMove_64fc(const Kep64fc *src, Kep64fc *dst, int32_t len) { return moveAll(src, dst, len); }
KepStatus kepsMove_64s(const Kep64s *src, Kep64s *dst, int32_t len) { return moveAll(src, dst, len); }
KepStatus kepsMove_64sc(const Kep64sc *src, Kep64sc *dst, int32_t len) { return moveAll(src, dst, len); }
// clang-format on
