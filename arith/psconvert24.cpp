// Convert from and to packed 24-bit samples.
#include "arith/convert.hpp"
#include "arith/packed24.hpp"
#include "frame/entry.hpp"

using namespace keps;

namespace {

constexpr float max24sF = 8388607, min24sF = -8388608, max24uF = 16777215;

template <class T>
struct Unpack {
    KEPS_INLINE two<int128<T>> operator()(packed24x8 x) const { return unpack24<T>(x); }
};
template <class T>
struct UnpackToFloat {
    KEPS_INLINE f32x8 operator()(packed24x8 x) const {
        const auto wide = unpack24<T>(x);
        return toFloat(i32x4{wide.lo.v}, i32x4{wide.hi.v});
    }
};

// Saturation to 24 bits, and with shifts.
struct Range24s {
    using type = std::int32_t;
    static constexpr float least = min24sF, most = max24sF;
    // At most one half at 32.
    static constexpr int downMost = 31;
    KEPS_INLINE static i32x4 saturate(i32x4 x) {
        return {
            _mm_min_epi32(_mm_max_epi32(x.v, _mm_set1_epi32(-8388608)), _mm_set1_epi32(8388607))};
    }
    KEPS_INLINE static i32x4 up(i32x4 x, int bits) {
        const __m128i top = _mm_set1_epi32(8388607 >> bits),
                      bottom = _mm_set1_epi32(-8388608 >> bits);
        const __m128i isAbove = _mm_cmpgt_epi32(x.v, top);
        const __m128i shifted = _mm_sll_epi32(_mm_max_epi32(x.v, bottom), _mm_cvtsi32_si128(bits));
        return saturate({_mm_blendv_epi8(shifted, _mm_set1_epi32(8388607), isAbove)});
    }
};
struct Range24u {
    using type = std::uint32_t;
    static constexpr float least = 0, most = max24uF;
    static constexpr int downMost = 32;
    KEPS_INLINE static u32x4 saturate(u32x4 x) {
        return {_mm_min_epu32(x.v, _mm_set1_epi32(0xFFFFFF))};
    }
    KEPS_INLINE static u32x4 up(u32x4 x, int bits) {
        const __m128i top = _mm_set1_epi32(0xFFFFFF >> bits);
        const __m128i fits = _mm_cmpeq_epi32(_mm_min_epu32(x.v, top), x.v);
        const __m128i shifted = _mm_sll_epi32(x.v, _mm_cvtsi32_si128(bits));
        return {_mm_blendv_epi8(_mm_set1_epi32(0xFFFFFF), shifted, fits)};
    }
};

template <class Range>
struct Pack {
    template <class V>
    KEPS_INLINE packed24x8 operator()(two<V> x) const {
        return pack24(two<V>{Range::saturate(x.lo), Range::saturate(x.hi)});
    }
};
// By 32 bits in two steps, the bit lost in the first kept for the tie.
template <class Range>
struct PackDown {
    int bits;
    template <class V>
    KEPS_INLINE packed24x8 operator()(two<V> x) const {
        return pack24(two<V>{down(x.lo), down(x.hi)});
    }
    template <class V>
    KEPS_INLINE V down(V x) const {
        if (bits < 32) return Range::saturate(shiftDownRounded(x, bits));
        const __m128i sticky = _mm_and_si128(x.v, _mm_set1_epi32(1));
        return shiftDownRounded(V{_mm_or_si128(_mm_srli_epi32(x.v, 1), sticky)}, 31);
    }
};
template <class Range>
struct PackUp {
    int bits;
    template <class V>
    KEPS_INLINE packed24x8 operator()(two<V> x) const {
        return pack24(two<V>{Range::up(x.lo, bits), Range::up(x.hi, bits)});
    }
};
// NaN takes the lower limit.
template <class Range, class Scaling>
struct PackFloat {
    Scaling scale;
    KEPS_INLINE packed24x8 operator()(f32x8 x) const {
        const f32x8 bounded =
            max(min(splat<f32x8>(Range::most), scale(x)), splat<f32x8>(Range::least));
        return pack24(ToNearest::round(bounded));
    }
};

const Packed24 *packed(const Kep8u *p) {
    return reinterpret_cast<const Packed24 *>(p);
}
Packed24 *packed(Kep8u *p) {
    return reinterpret_cast<Packed24 *>(p);
}

template <class Op, class From, class To>
[[gnu::noinline]] KepStatus convert(const From *src, To *dst, size n, Op op) {
    map<8, 2>(n, op, dst, src);
    return kepStatusOk;
}

template <class Op, class To>
KEPS_INLINE KepStatus unpacked(const Kep8u *src, To *dst, std::int32_t len, const Op &op) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    map<8, 2>(len, op, dst, packed(src));
    return kepStatusOk;
}

template <class Range>
KEPS_INLINE KepStatus fromIntegers(const typename Range::type *src, Kep8u *dst, std::int32_t len,
                                   int scaleFactor) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if (scaleFactor == 0) return convert(src, packed(dst), len, Pack<Range>{});
    if (scaleFactor < 0)
        return convert(src, packed(dst), len, PackUp<Range>{scaleFactor < -31 ? 31 : -scaleFactor});
    if (scaleFactor <= Range::downMost)
        return convert(src, packed(dst), len, PackDown<Range>{scaleFactor});
    for (size i = 0; i < 3 * size{len}; ++i) dst[i] = 0;
    return kepStatusOk;
}

template <class Range>
KEPS_INLINE KepStatus fromFloats(const Kep32f *src, Kep8u *dst, std::int32_t len, int scaleFactor) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    return withScaling<float>(scaleFactor, [&]<class Scaling>(Scaling scale) {
        return convert(src, packed(dst), len, PackFloat<Range, Scaling>{scale});
    });
}

} // namespace

// clang-format off
KepStatus kepsConvert_24s32s(const Kep8u *src, Kep32s *dst, int32_t len) { return unpacked(src, dst, len, Unpack<Kep32s>{}); }
KepStatus kepsConvert_24u32u(const Kep8u *src, Kep32u *dst, int32_t len) { return unpacked(src, dst, len, Unpack<Kep32u>{}); }
KepStatus kepsConvert_24s32f(const Kep8u *src, Kep32f *dst, int32_t len) { return unpacked(src, dst, len, UnpackToFloat<Kep32s>{}); }
KepStatus kepsConvert_24u32f(const Kep8u *src, Kep32f *dst, int32_t len) { return unpacked(src, dst, len, UnpackToFloat<Kep32u>{}); }
KepStatus kepsConvert_32s24s_Sfs(const Kep32s *src, Kep8u *dst, int32_t len, int scaleFactor) { return fromIntegers<Range24s>(src, dst, len, scaleFactor); }
KepStatus kepsConvert_32u24u_Sfs(const Kep32u *src, Kep8u *dst, int32_t len, int scaleFactor) { return fromIntegers<Range24u>(src, dst, len, scaleFactor); }
KepStatus kepsConvert_32f24s_Sfs(const Kep32f *src, Kep8u *dst, int32_t len, int scaleFactor) { return fromFloats<Range24s>(src, dst, len, scaleFactor); }
KepStatus kepsConvert_32f24u_Sfs(const Kep32f *src, Kep8u *dst, int32_t len, int scaleFactor) { return fromFloats<Range24u>(src, dst, len, scaleFactor); }
// clang-format on
