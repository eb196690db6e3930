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

// One element times 2^-scaleFactor as a double: 0 where the product would be subnormal, an infinity
// where it would overflow.
struct ByPower64 {
    double power, guard;
    bool isShrinking;

    explicit ByPower64(int scaleFactor) : isShrinking(scaleFactor > 0) {
        constexpr double smallest = 2.2250738585072014e-308, largest = 1.7976931348623157e308;
        // At 1074 every finite value is 0; from -1024 on every one but 0 is beyond all bounds.
        const int s = scaleFactor > 1074 ? 1074 : (scaleFactor < -1024 ? -1024 : scaleFactor);
        power =
            s == -1024 ? __builtin_inf() : powerOf<double>(-s / 2) * powerOf<double>(-s - -s / 2);
        guard = (isShrinking ? smallest : largest) / power;
    }
    KEPS_INLINE double operator()(double x) const {
        const double magnitude = __builtin_fabs(x);
        if (isShrinking) return magnitude <= guard ? 0 : x * power;
        if (x != 0 && magnitude >= guard) return __builtin_copysign(__builtin_inf(), x);
        return x == 0 ? x : x * power;
    }
};
struct Unscaled64 {
    KEPS_INLINE double operator()(double x) const { return x; }
};

// What does not fit becomes 0x8000000000000000, NaN too.
KEPS_INLINE Kep64s truncated(__m128d x) {
    return _mm_cvttsd_si64(x);
}

template <class Scaling, int rndMode>
[[gnu::noinline]] void toInteger64(const Kep64f *src, Kep64s *dst, size n, Scaling scale) {
    for (size i = 0; i < n; ++i) {
        const double p = scale(loadOne(src + i));
        __m128d x = _mm_set_sd(p);
        if (rndMode == kepRoundNearest)
            x = _mm_round_sd(x, x, _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC);
        if (rndMode == kepRoundHalfAway) {
            const __m128d sign = _mm_and_pd(x, _mm_set_sd(-0.0));
            x = _mm_add_sd(x, _mm_or_pd(sign, _mm_set_sd(0.5)));
        }
        storeOne(dst + i, p >= 0x1p63 ? INT64_MAX : truncated(x));
    }
}

template <class Scaling>
KEPS_INLINE void toInteger64(const Kep64f *src, Kep64s *dst, size n, int rndMode, Scaling scale) {
    if (rndMode == kepRoundTowardZero)
        return toInteger64<Scaling, kepRoundTowardZero>(src, dst, n, scale);
    if (rndMode == kepRoundNearest)
        return toInteger64<Scaling, kepRoundNearest>(src, dst, n, scale);
    // The sum with one half is a double's.
    const RoundingScope scope(roundNearest);
    toInteger64<Scaling, kepRoundHalfAway>(src, dst, n, scale);
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
        toInteger64(src, dst, n, rndMode, Unscaled64{});
    else
        toInteger64(src, dst, n, rndMode, ByPower64(scaleFactor));
    return kepStatusOk;
}
