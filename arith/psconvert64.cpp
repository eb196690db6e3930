// Convert from and to 64-bit integers.
#include "arith/convert.hpp"
#include "frame/entry.hpp"

using namespace keps;

namespace {

// Two 64-bit elements by magnitude and sign. A magnitude of 2^31 and above saturates.
struct Signed64 {
    __m128i sign, magnitude;
    KEPS_INLINE explicit Signed64(i64x2 x) : sign(_mm_cmpgt_epi64(_mm_setzero_si128(), x.v)) {
        magnitude = _mm_sub_epi64(_mm_xor_si128(x.v, sign), sign);
    }
    KEPS_INLINE void saturate() {
        const __m128i isBeyond =
            _mm_cmpgt_epi64(_mm_srli_epi64(magnitude, 31), _mm_setzero_si128());
        const __m128i limit = _mm_sub_epi64(_mm_set1_epi64x(0x7FFFFFFF), sign);
        magnitude = _mm_blendv_epi8(magnitude, limit, isBeyond);
    }
    // In the lower half of each element.
    KEPS_INLINE __m128i value() const {
        return _mm_sub_epi64(_mm_xor_si128(magnitude, sign), sign);
    }
};

// Magnitudes below 2^64 shifted down by 1 to 63 bits; bias and odd make the rounding.
struct Narrow64Down {
    int bits;
    std::int64_t bias, odd;
    KEPS_INLINE __m128i half(i64x2 x) const {
        const __m128i count = _mm_cvtsi32_si128(bits);
        Signed64 y(x);
        const __m128i q = _mm_srl_epi64(y.magnitude, count);
        const __m128i even = _mm_and_si128(q, _mm_set1_epi64x(odd));
        const __m128i raised =
            _mm_add_epi64(y.magnitude, _mm_add_epi64(even, _mm_set1_epi64x(bias)));
        y.magnitude = _mm_srl_epi64(raised, count);
        y.saturate();
        return y.value();
    }
};
// Up by 0 to 31 bits: saturated ahead of the shift, and behind it.
struct Narrow64Up {
    int bits;
    KEPS_INLINE __m128i half(i64x2 x) const {
        Signed64 y(x);
        y.saturate();
        y.magnitude = _mm_sll_epi64(y.magnitude, _mm_cvtsi32_si128(bits));
        y.saturate();
        return y.value();
    }
};
template <class Shift>
struct Narrow64 {
    Shift shift;
    KEPS_INLINE i32x4 operator()(two<i64x2> x) const {
        const __m128 lower = _mm_castsi128_ps(shift.half(x.lo));
        const __m128 upper = _mm_castsi128_ps(shift.half(x.hi));
        return {_mm_castps_si128(_mm_shuffle_ps(lower, upper, _MM_SHUFFLE(2, 0, 2, 0)))};
    }
};

// Times 2^-scaleFactor. Shrinking, values whose product would be subnormal become 0 ahead of it;
// growing, 0 stays 0 by an infinite power too.
struct Shrinking64 {
    double power;
    KEPS_INLINE f64x4 operator()(f64x4 x) const {
        const f64x4 guard = splat<f64x4>(0x1p-1022 / power);
        const f64x4 magnitude = without(x, splat<f64x4>(-0.0));
        return (x & notLessEqual(magnitude, guard)) * splat<f64x4>(power);
    }
};
struct Growing64 {
    double power;
    KEPS_INLINE f64x4 operator()(f64x4 x) const {
        return without(x * splat<f64x4>(power), equal(x, zero<f64x4>()));
    }
};

// 2^-scaleFactor: at 1074 every finite value becomes 0, from -1024 on every one but 0 is beyond all
// bounds.
KEPS_INLINE double clampedPower(int scaleFactor) {
    if (scaleFactor <= -1024) return __builtin_inf();
    const int s = scaleFactor > 1074 ? 1074 : scaleFactor;
    return powerOf<double>(-s / 2) * powerOf<double>(-s - -s / 2);
}

// Rounding ahead of the truncation.
template <int rndMode>
KEPS_INLINE f64x4 roundedAhead(f64x4 x) {
    if (rndMode == kepRoundNearest) return roundToNearest(x);
    if (rndMode == kepRoundHalfAway) return x + ((x & splat<f64x4>(-0.0)) | splat<f64x4>(0.5));
    return x;
}

KEPS_INLINE __m128i truncated(__m128d x) {
    const auto low = _mm_cvttsd_si64(x), high = _mm_cvttsd_si64(_mm_unpackhi_pd(x, x));
    return _mm_insert_epi64(_mm_cvtsi64_si128(low), high, 1);
}

// What does not fit becomes 0x8000000000000000, NaN too; lanes that reach 2^63 are complemented.
template <class Scaling, int rndMode>
struct ToInteger64 {
    Scaling scale;
    KEPS_INLINE two<i64x2> operator()(f64x4 x) const {
        const f64x4 p = scale(x);
        const __m256d r = roundedAhead<rndMode>(p).v;
        const __m256i reaches =
            _mm256_castpd_si256(_mm256_cmp_pd(p.v, _mm256_set1_pd(0x1p63), _CMP_GE_OQ));
        return {
            {_mm_xor_si128(truncated(_mm256_castpd256_pd128(r)), _mm256_castsi256_si128(reaches))},
            {_mm_xor_si128(truncated(_mm256_extractf128_pd(r, 1)),
                           _mm256_extractf128_si256(reaches, 1))}};
    }
};

template <int rndMode, class Scaling>
[[gnu::noinline]] void toInteger64(const Kep64f *src, Kep64s *dst, size n, Scaling scale) {
    map<4, 1>(n, ToInteger64<Scaling, rndMode>{scale}, dst, src);
}

template <class Scaling>
KEPS_INLINE void toInteger64(const Kep64f *src, Kep64s *dst, size n, int rndMode, Scaling scale) {
    if (rndMode == kepRoundTowardZero) return toInteger64<kepRoundTowardZero>(src, dst, n, scale);
    if (rndMode == kepRoundNearest) return toInteger64<kepRoundNearest>(src, dst, n, scale);
    // The sum with one half is a double's.
    const RoundingScope scope(roundNearest);
    toInteger64<kepRoundHalfAway>(src, dst, n, scale);
}

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
        const int bits = scaleFactor < -31 ? 31 : -scaleFactor;
        map<4, 2>(len, Narrow64<Narrow64Up>{{bits}}, dst, src);
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
    const std::int64_t half = std::int64_t{1} << (scaleFactor - 1);
    const bool isNearest = rndMode == kepRoundNearest;
    const Narrow64Down down{scaleFactor, isHalfAway ? half : (isNearest ? half - 1 : 0), isNearest};
    map<4, 2>(len, Narrow64<Narrow64Down>{down}, dst, src);
    return kepStatusOk;
}

// The length is taken as an unsigned count.
KepStatus kepsConvert_64f64s_Sfs(const Kep64f *src, Kep64s *dst, int32_t len, int rndMode,
                                 int scaleFactor) {
    if (anyNull(src, dst)) return kepStatusNullPointer;
    if (len == 0) return kepStatusBadLength;
    const size n = static_cast<std::uint32_t>(len);
    if (scaleFactor == 0)
        toInteger64(src, dst, n, rndMode, Unscaled{});
    else if (scaleFactor > 0)
        toInteger64(src, dst, n, rndMode, Shrinking64{clampedPower(scaleFactor)});
    else
        toInteger64(src, dst, n, rndMode, Growing64{clampedPower(scaleFactor)});
    return kepStatusOk;
}
