// Convert from and to 64-bit integers.
#include "arith/convert.hpp"
#include "frame/entry.hpp"

using namespace keps;

namespace {

// Four 64-bit elements by their lower and upper 32 bits.
struct Words {
    __m128i low, high;
    KEPS_INLINE explicit Words(two<i64x2> x) {
        const __m128 a = _mm_castsi128_ps(x.lo.v), b = _mm_castsi128_ps(x.hi.v);
        low = _mm_castps_si128(_mm_shuffle_ps(a, b, _MM_SHUFFLE(2, 0, 2, 0)));
        high = _mm_castps_si128(_mm_shuffle_ps(a, b, _MM_SHUFFLE(3, 1, 3, 1)));
    }
    KEPS_INLINE __m128i sign() const { return _mm_srai_epi32(high, 31); }
};

// Shifted down by 1 to 31 bits. The quotient is rounded down; it
// goes up by one where the part shifted out, rest, and a bias reach 2^bits. To nearest the bias is
// one below a half, and one more for odd quotients; halves away from zero it is a half, less one
// for negative elements; toward zero it is 2^bits - 1 for negative elements.
template <bool isNearest>
struct Narrow64Down {
    int bits;
    std::int32_t bias, bySign; // added always; added for negative elements

    // Elements of which the quotient does not fit become the outermost ones of which it does.
    KEPS_INLINE i32x4 operator()(two<i64x2> x) const {
        Words w(x);
        const __m128i most = _mm_set1_epi32(static_cast<int>((std::uint32_t{1} << (bits - 1)) - 1));
        const __m128i least = _mm_xor_si128(most, _mm_set1_epi32(-1));
        w.low = _mm_or_si128(w.low, _mm_cmpgt_epi32(w.high, most));
        w.low = _mm_andnot_si128(_mm_cmpgt_epi32(least, w.high), w.low);
        w.high = _mm_max_epi32(_mm_min_epi32(w.high, most), least);
        const __m128i count = _mm_cvtsi32_si128(bits);
        const __m128i above = _mm_cvtsi32_si128(32 - bits);
        const __m128i q = _mm_or_si128(_mm_sll_epi32(w.high, above), _mm_srl_epi32(w.low, count));
        const __m128i unit = _mm_set1_epi32(static_cast<int>((std::uint32_t{1} << bits) - 1));
        return {raised(w, q, _mm_and_si128(w.low, unit), count)};
    }
    // The largest quotient stays: it is above its successor, which wraps.
    KEPS_INLINE __m128i raised(const Words &w, __m128i q, __m128i rest, __m128i count) const {
        const __m128i own = isNearest ? _mm_and_si128(q, _mm_set1_epi32(1))
                                      : _mm_and_si128(w.sign(), _mm_set1_epi32(bySign));
        const __m128i sum = _mm_add_epi32(_mm_add_epi32(rest, _mm_set1_epi32(bias)), own);
        return _mm_max_epi32(q, _mm_add_epi32(q, _mm_srl_epi32(sum, count)));
    }
};

// By 32 bits and more every quotient fits. The part shifted out is brought to 31 bits, the lowest
// of them set if anything below was: rounding needs no more.
template <bool isNearest>
struct Narrow64FarDown {
    int bits; // above 32
    Narrow64Down<isNearest> by31;

    KEPS_INLINE i32x4 operator()(two<i64x2> x) const {
        const Words w(x);
        const __m128i count = _mm_cvtsi32_si128(bits), left = _mm_cvtsi32_si128(32 - bits);
        const __m128i q = _mm_sra_epi32(w.high, count);
        const __m128i upper =
            _mm_or_si128(_mm_sll_epi32(w.high, left), _mm_srl_epi32(w.low, count));
        const __m128i below =
            _mm_or_si128(_mm_sll_epi32(w.low, left), _mm_and_si128(upper, _mm_set1_epi32(1)));
        const __m128i isExact = _mm_cmpeq_epi32(below, _mm_setzero_si128());
        const __m128i rest =
            _mm_or_si128(_mm_srli_epi32(upper, 1), _mm_andnot_si128(isExact, _mm_set1_epi32(1)));
        return {by31.raised(w, q, rest, _mm_cvtsi32_si128(31))};
    }
};

// Up by 0 to 31 bits.
struct Narrow64Up {
    int bits;
    KEPS_INLINE i32x4 operator()(two<i64x2> x) const {
        const Words w(x);
        const __m128i count = _mm_cvtsi32_si128(bits);
        const __m128i shifted = _mm_sll_epi32(w.low, count);
        const __m128i keepsLow = _mm_cmpeq_epi32(_mm_sra_epi32(shifted, count), w.low);
        const __m128i keepsHigh = _mm_cmpeq_epi32(_mm_srai_epi32(w.low, 31), w.high);
        const __m128i limit = _mm_xor_si128(w.sign(), _mm_set1_epi32(INT32_MAX));
        return {_mm_blendv_epi8(limit, shifted, _mm_and_si128(keepsLow, keepsHigh))};
    }
};

template <bool isNearest>
KEPS_INLINE void narrowDown(const Kep64s *src, Kep32s *dst, size n, int bits, bool isHalfAway) {
    const int within = bits < 32 ? bits : 31;
    const std::uint32_t half = std::uint32_t{1} << (within - 1);
    Narrow64Down<isNearest> down{within, 0, 0};
    if (isNearest)
        down.bias = static_cast<std::int32_t>(half - 1);
    else if (isHalfAway)
        down = {within, static_cast<std::int32_t>(half), -1};
    else
        down.bySign = static_cast<std::int32_t>(2 * half - 1);
    if (bits < 32)
        map<4, 4>(n, down, dst, src);
    else
        map<4, 2>(n, Narrow64FarDown<isNearest>{bits - 32, down}, dst, src);
}

// Rounding ahead of the truncation.
template <int rndMode>
KEPS_INLINE f64x4 roundedAhead(f64x4 x) {
    if (rndMode == kepRoundNearest) return roundToNearest(x);
    if (rndMode == kepRoundHalfAway) x = x + ((x & splat<f64x4>(-0.0)) | splat<f64x4>(0.5));
    return {_mm256_round_pd(x.v, _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC)};
}

KEPS_INLINE __m128i truncated(__m128d x) {
    const auto low = _mm_cvttsd_si64(x), high = _mm_cvttsd_si64(_mm_unpackhi_pd(x, x));
    return _mm_insert_epi64(_mm_cvtsi64_si128(low), high, 1);
}

// Integers below 2^51 are read off the bits of their exact sums with 1.5 * 2^52. Of the others,
// what does not fit becomes 0x8000000000000000, NaN too; lanes that reach 2^63 are complemented.
template <class Scaling, int rndMode>
struct ToInteger64 {
    Scaling scale;
    KEPS_INLINE two<i64x2> operator()(f64x4 x) const {
        const f64x4 p = scale(x), r = roundedAhead<rndMode>(p);
        const f64x4 magnitude = without(r, splat<f64x4>(-0.0));
        if (signs(notLess(magnitude, splat<f64x4>(0x1p51)))) [[unlikely]] {
            const __m256i reaches =
                _mm256_castpd_si256(_mm256_cmp_pd(p.v, _mm256_set1_pd(0x1p63), _CMP_GE_OQ));
            return {{_mm_xor_si128(truncated(_mm256_castpd256_pd128(r.v)),
                                   _mm256_castsi256_si128(reaches))},
                    {_mm_xor_si128(truncated(_mm256_extractf128_pd(r.v, 1)),
                                   _mm256_extractf128_si256(reaches, 1))}};
        }
        const __m256i sum = _mm256_castpd_si256((r + splat<f64x4>(0x1.8p52)).v);
        const __m128i zero = _mm_set1_epi64x(0x4338000000000000);
        return {{_mm_sub_epi64(_mm256_castsi256_si128(sum), zero)},
                {_mm_sub_epi64(_mm256_extractf128_si256(sum, 1), zero)}};
    }
};

template <int rndMode, class Scaling>
[[gnu::noinline]] void toInteger64(const Kep64f *src, Kep64s *dst, size n, Scaling scale) {
    map<4, 2>(n, ToInteger64<Scaling, rndMode>{scale}, dst, src);
}

template <class Scaling>
KEPS_INLINE KepStatus toInteger64(const Kep64f *src, Kep64s *dst, size n, int rndMode,
                                  Scaling scale) {
    if (rndMode == kepRoundTowardZero) {
        toInteger64<kepRoundTowardZero>(src, dst, n, scale);
    } else if (rndMode == kepRoundNearest) {
        toInteger64<kepRoundNearest>(src, dst, n, scale);
    } else {
        // The sum with one half is a double's.
        const RoundingScope scope(roundNearest);
        toInteger64<kepRoundHalfAway>(src, dst, n, scale);
    }
    return kepStatusOk;
}

// By a power that is no double: any value but 0 is beyond all bounds.
struct Beyond {
    KEPS_INLINE f64x4 operator()(f64x4 x) const {
        return without(x * splat<f64x4>(__builtin_inf()), equal(x, zero<f64x4>()));
    }
};

} // namespace

KepStatus kepsConvert_64s64f(const Kep64s *src, Kep64f *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    for (size i = 0; i < len; ++i) storeOne(dst + i, static_cast<double>(loadOne(src + i)));
    return kepStatusOk;
}

KepStatus kepsConvert_64s32s_Sfs(const Kep64s *src, Kep32s *dst, int32_t len, int rndMode,
                                 int scaleFactor) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if (scaleFactor <= 0) {
        map<4, 2>(len, Narrow64Up{scaleFactor < -31 ? 31 : -scaleFactor}, dst, src);
        return kepStatusOk;
    }
    const bool isHalfAway = rndMode != kepRoundTowardZero && rndMode != kepRoundNearest;
    if (scaleFactor > 63) {
        // Below one half, but for -2^63 / 2^64.
        for (size i = 0; i < len; ++i) {
            const bool isHalf = scaleFactor == 64 && loadOne(src + i) == INT64_MIN;
            storeOne(dst + i, isHalf && isHalfAway ? -1 : 0);
        }
        return kepStatusOk;
    }
    if (rndMode == kepRoundNearest)
        narrowDown<true>(src, dst, len, scaleFactor, false);
    else
        narrowDown<false>(src, dst, len, scaleFactor, isHalfAway);
    return kepStatusOk;
}

// The length is taken as an unsigned count. A product that is subnormal, or was flushed, rounds to
// 0 as its exact value does; one that overflows saturates as that would.
KepStatus kepsConvert_64f64s_Sfs(const Kep64f *src, Kep64s *dst, int32_t len, int rndMode,
                                 int scaleFactor) {
    if (anyNull(src, dst)) return kepStatusNullPointer;
    if (len == 0) return kepStatusBadLength;
    const size n = static_cast<std::uint32_t>(len);
    if (scaleFactor <= -1024) return toInteger64(src, dst, n, rndMode, Beyond{});
    return withScaling<double>(scaleFactor, [&](auto scale) KEPS_INLINE_LAMBDA {
        return toInteger64(src, dst, n, rndMode, scale);
    });
}
