// Convert between integers, and from integers to floats.
#include "arith/convert.hpp"
#include "frame/entry.hpp"

using namespace keps;

namespace {

struct Same {
    template <class V>
    KEPS_INLINE V operator()(V x) const {
        return x;
    }
};
struct FloatToDouble {
    KEPS_INLINE f64x4 operator()(f32x4 x) const { return {_mm256_cvtps_pd(x.v)}; }
};
struct DoubleToFloat {
    KEPS_INLINE f32x4 operator()(f64x4 x) const { return {_mm256_cvtpd_ps(x.v)}; }
};
struct Below0To0 {
    KEPS_INLINE u8x16 operator()(i8x16 x) const { return {_mm_max_epi8(x.v, _mm_setzero_si128())}; }
};
struct Above127To127 {
    KEPS_INLINE i8x16 operator()(u8x16 x) const { return {_mm_min_epu8(x.v, _mm_set1_epi8(127))}; }
};
struct Narrow32sTo16s {
    KEPS_INLINE i16x8 operator()(two<i32x4> x) const { return narrowSaturated(x.lo, x.hi); }
};
struct Narrow16sTo8s {
    KEPS_INLINE i8x16 operator()(two<i16x8> x) const { return {_mm_packs_epi16(x.lo.v, x.hi.v)}; }
};

template <int N, int Unroll, class Op, class From, class To>
KEPS_INLINE KepStatus convert(const From *src, To *dst, std::int32_t len, const Op &op) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    map<N, Unroll>(len, op, dst, src);
    return kepStatusOk;
}

// Arrays of 32-bit integers are read as the bits of floats, a whole vector at a time.
template <class Scaling>
struct IntegerBits {
    Scaling scale;
    KEPS_INLINE f32x8 operator()(f32x8 x) const {
        return scale(f32x8{_mm256_cvtepi32_ps(_mm256_castps_si256(x.v))});
    }
};
template <class Scaling>
[[gnu::noinline]] KepStatus fromIntegerBits(const float *src, Kep32f *dst, size n, Scaling scale) {
    map<8, 4>(n, IntegerBits<Scaling>{scale}, dst, src);
    return kepStatusOk;
}
const float *bitsOf(const Kep32s *p) {
    return reinterpret_cast<const float *>(p);
}

// Widened, then scaled in float.
template <class V, class Scaling>
struct ToScaledFloat {
    Scaling scale;
    template <class I>
    KEPS_INLINE V operator()(I x) const {
        return scale(Widen<V>{}(x));
    }
};
template <class V, class Scaling, class From>
[[gnu::noinline]] KepStatus scaledFloats(const From *src, typename V::element *dst, size n,
                                         Scaling scale) {
    map<V::lanes, 4>(n, ToScaledFloat<V, Scaling>{scale}, dst, src);
    return kepStatusOk;
}
template <class V, class From>
KEPS_INLINE KepStatus toScaledFloat(const From *src, typename V::element *dst, std::int32_t len,
                                    int scaleFactor) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    return withScaling<typename V::element>(scaleFactor, [&](auto scale) KEPS_INLINE_LAMBDA {
        return scaledFloats<V>(src, dst, len, scale);
    });
}

// To 8 bits through float, which holds the samples and their scaled values exactly.
template <class Scaling, class Rounding, class From>
[[gnu::noinline]] KepStatus to8s(const From *src, Kep8s *dst, size n, Scaling scale) {
    if constexpr (Dispatching<Rounding>) {
        return Rounding::dispatch([=]<class Own>(Own) KEPS_INLINE_LAMBDA {
            return to8s<Scaling, Own>(src, dst, n, scale);
        });
    } else {
        toBytes<Kep8s, Scaling, Rounding>(widened<Kep32s>(src), dst, n, scale, Widen<f32x8>{});
    }
    return kepStatusOk;
}
template <class From>
KEPS_INLINE KepStatus to8sByMode(const From *src, Kep8s *dst, std::int32_t len, int rndMode,
                                 int scaleFactor) {
    return withScaling<float>(scaleFactor, [&]<class Scaling>(Scaling scale) {
        return withRounding(rndMode, len, [&]<class Rounding>(Rounding) {
            return to8s<Scaling, Rounding>(src, dst, len, scale);
        });
    });
}

struct Narrow32sTo16sDown {
    int bits;
    KEPS_INLINE i16x8 operator()(two<i32x4> x) const {
        return narrowSaturated(shiftDownRounded(x.lo, bits), shiftDownRounded(x.hi, bits));
    }
};
// By 1 to 16 bits: what is cut off the largest elements, so that the bias can be added, saturates
// all the same. An instruction less.
struct Narrow32sTo16sNear {
    int bits;
    KEPS_INLINE i16x8 operator()(two<i32x4> x) const {
        return narrowSaturated(down(x.lo), down(x.hi));
    }
    KEPS_INLINE i32x4 down(i32x4 x) const {
        const __m128i count = _mm_cvtsi32_si128(bits);
        const int half = 1 << (bits - 1);
        const __m128i y = _mm_min_epi32(x.v, _mm_set1_epi32(INT32_MAX - half));
        const __m128i odd = _mm_and_si128(_mm_srl_epi32(y, count), _mm_set1_epi32(1));
        const __m128i biased = _mm_add_epi32(y, _mm_set1_epi32(half - 1));
        return {_mm_sra_epi32(_mm_add_epi32(biased, odd), count)};
    }
};
struct Narrow32sTo16sUp {
    int bits;
    KEPS_INLINE i16x8 operator()(two<i32x4> x) const { return narrowSaturated(up(x.lo), up(x.hi)); }
    // Values of 17 bits that leave 16 bits of room.
    KEPS_INLINE i32x4 up(i32x4 x) const {
        const __m128i bounded =
            _mm_min_epi32(_mm_max_epi32(x.v, _mm_set1_epi32(-32768)), _mm_set1_epi32(32768));
        return {_mm_sll_epi32(bounded, _mm_cvtsi32_si128(bits))};
    }
};

template <int Unroll, class Op>
[[gnu::noinline]] KepStatus narrowed(const Kep32s *src, Kep16s *dst, size n, Op op) {
    map<8, Unroll>(n, op, dst, src);
    return kepStatusOk;
}

} // namespace

// clang-format off
KepStatus kepsConvert_8s16s(const Kep8s *src, Kep16s *dst, int32_t len) { return convert<16, 4>(widened<Kep16s>(src), dst, len, Same{}); }
KepStatus kepsConvert_8s32f(const Kep8s *src, Kep32f *dst, int32_t len) { return convert<8, 4>(widened<Kep32s>(src), dst, len, Widen<f32x8>{}); }
KepStatus kepsConvert_8u32f(const Kep8u *src, Kep32f *dst, int32_t len) { return convert<8, 4>(widened<Kep32s>(src), dst, len, Widen<f32x8>{}); }
KepStatus kepsConvert_16s32s(const Kep16s *src, Kep32s *dst, int32_t len) { return convert<8, 4>(widened<Kep32s>(src), dst, len, Same{}); }
KepStatus kepsConvert_16s32f(const Kep16s *src, Kep32f *dst, int32_t len) { return convert<8, 4>(widened<Kep32s>(src), dst, len, Widen<f32x8>{}); }
KepStatus kepsConvert_16u32f(const Kep16u *src, Kep32f *dst, int32_t len) { return convert<8, 4>(widened<Kep32s>(src), dst, len, Widen<f32x8>{}); }
KepStatus kepsConvert_32s32f(const Kep32s *src, Kep32f *dst, int32_t len) { return convert<8, 4>(bitsOf(src), dst, len, IntegerBits<Unscaled>{}); }
KepStatus kepsConvert_32s64f(const Kep32s *src, Kep64f *dst, int32_t len) { return convert<4, 4>(src, dst, len, Widen<f64x4>{}); }
KepStatus kepsConvert_32f64f(const Kep32f *src, Kep64f *dst, int32_t len) { return convert<4, 4>(src, dst, len, FloatToDouble{}); }
KepStatus kepsConvert_64f32f(const Kep64f *src, Kep32f *dst, int32_t len) { return convert<4, 4>(src, dst, len, DoubleToFloat{}); }
KepStatus kepsConvert_32s16s(const Kep32s *src, Kep16s *dst, int32_t len) { return convert<8, 4>(src, dst, len, Narrow32sTo16s{}); }
KepStatus kepsConvert_8s8u(const Kep8s *src, Kep8u *dst, int32_t len) { return convert<16, 4>(src, dst, len, Below0To0{}); }

KepStatus kepsConvert_16s32f_Sfs(const Kep16s *src, Kep32f *dst, int32_t len, int scaleFactor) { return toScaledFloat<f32x8>(widened<Kep32s>(src), dst, len, scaleFactor); }
KepStatus kepsConvert_16s64f_Sfs(const Kep16s *src, Kep64f *dst, int32_t len, int scaleFactor) { return toScaledFloat<f64x4>(src, dst, len, scaleFactor); }
KepStatus kepsConvert_32s64f_Sfs(const Kep32s *src, Kep64f *dst, int32_t len, int scaleFactor) { return toScaledFloat<f64x4>(src, dst, len, scaleFactor); }
// clang-format on

KepStatus kepsConvert_32s32f_Sfs(const Kep32s *src, Kep32f *dst, int32_t len, int scaleFactor) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    return withScaling<float>(scaleFactor, [&](auto scale) KEPS_INLINE_LAMBDA {
        return fromIntegerBits(bitsOf(src), dst, len, scale);
    });
}

KepStatus kepsConvert_8u8s_Sfs(const Kep8u *src, Kep8s *dst, int32_t len, int rndMode,
                               int scaleFactor) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if (scaleFactor == 0) return convert<16, 4>(src, dst, len, Above127To127{});
    return to8sByMode(src, dst, len, rndMode, scaleFactor);
}
KepStatus kepsConvert_16s8s_Sfs(const Kep16s *src, Kep8s *dst, int32_t len, int rndMode,
                                int scaleFactor) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if (scaleFactor == 0) return convert<16, 4>(src, dst, len, Narrow16sTo8s{});
    return to8sByMode(src, dst, len, rndMode, scaleFactor);
}

KepStatus kepsConvert_32s16s_Sfs(const Kep32s *src, Kep16s *dst, int32_t len, int scaleFactor) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if (scaleFactor == 0) return narrowed<4>(src, dst, len, Narrow32sTo16s{});
    // At most one half at 32.
    if (scaleFactor > 31) return kepsZero_16s(dst, len);
    if (scaleFactor > 16) return narrowed<2>(src, dst, len, Narrow32sTo16sDown{scaleFactor});
    if (scaleFactor > 0) return narrowed<2>(src, dst, len, Narrow32sTo16sNear{scaleFactor});
    return narrowed<2>(src, dst, len, Narrow32sTo16sUp{scaleFactor < -15 ? 15 : -scaleFactor});
}
