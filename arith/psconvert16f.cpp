// Convert from and to half precision.
#include "arith/convert.hpp"
#include "arith/half.hpp"
#include "frame/entry.hpp"
#include "kepcore.h"

using namespace keps;

// Loops of their own: a shape would not be compiled for these instructions.
#define KEPS_F16C [[gnu::target("f16c")]]

namespace {

constexpr int nearest = _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC;
constexpr int towardZero = _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC;

struct FromHalves {
    using From = Kep16f;
    using To = Kep32f;
    KEPS_F16C KEPS_INLINE static f32x8 make(u16x8 x) { return {_mm256_cvtph_ps(x.v)}; }
};
template <int rounding>
struct ToHalves {
    using From = Kep32f;
    using To = Kep16f;
    KEPS_F16C KEPS_INLINE static u16x8 make(f32x8 x) { return {_mm256_cvtps_ph(x.v, rounding)}; }
};
template <int rounding>
struct SamplesToHalves {
    using From = Kep16s;
    using To = Kep16f;
    KEPS_F16C KEPS_INLINE static u16x8 make(i16x8 x) {
        return ToHalves<rounding>::make(Widen<f32x8>{}(x));
    }
};

// Four blocks a round, single blocks, the ends of a last short one.
template <class Op>
KEPS_F16C KEPS_INLINE void mapF16C(const typename Op::From *src, typename Op::To *dst, size n) {
    size i = 0;
    for (; i + 32 <= n; i += 32) {
        storeBlock<8>(dst + i, Op::make(loadBlock<8>(src + i)));
        storeBlock<8>(dst + i + 8, Op::make(loadBlock<8>(src + i + 8)));
        storeBlock<8>(dst + i + 16, Op::make(loadBlock<8>(src + i + 16)));
        storeBlock<8>(dst + i + 24, Op::make(loadBlock<8>(src + i + 24)));
    }
    for (; i + 8 <= n; i += 8) storeBlock<8>(dst + i, Op::make(loadBlock<8>(src + i)));
    if (i < n) storeEnds<8>(dst + i, Op::make(loadEnds<8>(src + i, n - i)), n - i);
}

} // namespace

KEPS_F16C void ownkepsCnvrt_ivx_16f32f(const Kep16f *src, Kep32f *dst, size n) {
    mapF16C<FromHalves>(src, dst, n);
}
KEPS_F16C void ownkepsCnvrt_ivx_32f16f(const Kep32f *src, Kep16f *dst, size n, bool isNearest) {
    if (isNearest)
        mapF16C<ToHalves<nearest>>(src, dst, n);
    else
        mapF16C<ToHalves<towardZero>>(src, dst, n);
}
KEPS_F16C void ownkepsCnvrt_ivx_16s16f(const Kep16s *src, Kep16f *dst, size n, bool isNearest) {
    if (isNearest)
        mapF16C<SamplesToHalves<nearest>>(src, dst, n);
    else
        mapF16C<SamplesToHalves<towardZero>>(src, dst, n);
}

namespace {

// Fields: 1 bit of sign, 5 of exponent, 10 of mantissa in a half; 1, 8, 23 in a float.
constexpr std::uint32_t halfInfinity = 0x7C00, floatInfinity = 0x7F800000, quietBit = 0x00400000;
constexpr std::uint32_t exponentShift = 127 - 15;

KEPS_INLINE float fromHalf(Kep16f half) {
    const std::uint32_t sign = (half & 0x8000U) << 16, rest = half & 0x7FFFU;
    std::uint32_t bits = 0;
    if (rest > halfInfinity)
        bits = floatInfinity | quietBit | (rest & 0x3FF) << 13;
    else if (rest == halfInfinity)
        bits = floatInfinity;
    else if (rest >= 0x400)
        bits = (rest << 13) + (exponentShift << 23);
    else // subnormal: a multiple of 2^-24
        bits = __builtin_bit_cast(std::uint32_t, static_cast<float>(rest) * 0x1p-24F);
    return __builtin_bit_cast(float, sign | bits);
}

// x / 2^bits for a magnitude below 2^31, bits from 1 to 31.
KEPS_INLINE std::uint32_t shiftedDown(std::uint32_t x, int bits, bool isNearest) {
    const std::uint32_t bias = (std::uint32_t{1} << (bits - 1)) - 1 + (x >> bits & 1);
    return (isNearest ? x + bias : x) >> bits;
}

KEPS_INLINE Kep16f toHalf(float x, bool isNearest) {
    const auto all = __builtin_bit_cast(std::uint32_t, x);
    const std::uint32_t sign = all >> 16 & 0x8000, bits = all & 0x7FFFFFFF;
    constexpr std::uint32_t smallestNormal = (exponentShift + 1) << 23, tooLarge = 0x47800000;
    std::uint32_t half = 0;
    if (bits > floatInfinity) {
        half = halfInfinity | 0x200 | (bits >> 13 & 0x3FF);
    } else if (bits >= tooLarge) {
        half = isNearest || bits == floatInfinity ? halfInfinity : halfInfinity - 1;
    } else if (bits >= smallestNormal) {
        half = shiftedDown(bits - (exponentShift << 23), 13, isNearest); // may carry to infinity
    } else {
        const int exponent = static_cast<int>(bits >> 23), shift = 126 - exponent;
        const std::uint32_t mantissa = (bits & 0x7FFFFF) | (exponent ? 0x800000 : 0);
        half = shiftedDown(mantissa, shift < 31 ? shift : 31, isNearest);
    }
    return static_cast<Kep16f>(sign | half);
}

} // namespace

void ownkepsCnvrt_16f32f(const Kep16f *src, Kep32f *dst, size n) {
    for (size i = 0; i < n; ++i) storeOne(dst + i, fromHalf(loadOne(src + i)));
}

void ownkepsCnvrt_32f16f_Asm(const Kep32f *src, Kep16f *dst, size n, bool isNearest) {
    for (size i = 0; i < n; ++i) storeOne(dst + i, toHalf(loadOne(src + i), isNearest));
}

void ownkepsCnvrt_16s16f(const Kep16s *src, Kep16f *dst, size n, bool isNearest) {
    for (size i = 0; i < n; ++i) storeOne(dst + i, toHalf(loadOne(src + i), isNearest));
}

namespace {

KEPS_INLINE bool hasInstructions() {
    return ownGetFeature(KEP_FEATURE_F16C) != 0;
}

// Of the other modes, only the one that has a meaning of its own is refused.
template <class... Pointer>
KEPS_INLINE KepStatus refuseMode(std::int32_t len, int rndMode, const Pointer *...pointers) {
    if (const KepStatus refused = refuse(len, pointers...)) return refused;
    return rndMode == kepRoundHalfAway ? KepStatus{kepStatusBadRoundMode} : kepStatusOk;
}

template <class Scaling, class Rounding>
[[gnu::noinline]] void to16s(const float *src, Kep16s *dst, size n, Scaling scale) {
    map<8, 2>(n, ToInteger<Kep16s, Scaling, Rounding>{scale}, dst, src);
}

// By way of floats, which hold halves exactly, in pieces that stay in the first cache.
template <class Scaling, class Rounding>
KEPS_INLINE void halvesTo16s(const Kep16f *src, Kep16s *dst, size n, Scaling scale) {
    constexpr size piece = 256;
    float wide[piece];
    const auto widen = hasInstructions() ? ownkepsCnvrt_ivx_16f32f : ownkepsCnvrt_16f32f;
    for (size i = 0; i < n; i += piece) {
        const size count = n - i < piece ? n - i : piece;
        widen(src + i, wide, count);
        to16s<Scaling, Rounding>(wide, dst + i, count, scale);
    }
}

} // namespace

KepStatus kepsConvert_16f32f(const Kep16f *src, Kep32f *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    hasInstructions() ? ownkepsCnvrt_ivx_16f32f(src, dst, len) : ownkepsCnvrt_16f32f(src, dst, len);
    return kepStatusOk;
}

KepStatus kepsConvert_32f16f(const Kep32f *src, Kep16f *dst, int32_t len, int rndMode) {
    if (const KepStatus refused = refuseMode(len, rndMode, src, dst)) return refused;
    const bool isNearest = rndMode == kepRoundNearest;
    hasInstructions() ? ownkepsCnvrt_ivx_32f16f(src, dst, len, isNearest)
                      : ownkepsCnvrt_32f16f_Asm(src, dst, len, isNearest);
    return kepStatusOk;
}

KepStatus kepsConvert_16s16f(const Kep16s *src, Kep16f *dst, int32_t len, int rndMode) {
    if (const KepStatus refused = refuseMode(len, rndMode, src, dst)) return refused;
    const bool isNearest = rndMode == kepRoundNearest;
    hasInstructions() ? ownkepsCnvrt_ivx_16s16f(src, dst, len, isNearest)
                      : ownkepsCnvrt_16s16f(src, dst, len, isNearest);
    return kepStatusOk;
}

KepStatus kepsConvert_16f16s_Sfs(const Kep16f *src, Kep16s *dst, int32_t len, int rndMode,
                                 int scaleFactor) {
    if (const KepStatus refused = refuseMode(len, rndMode, src, dst)) return refused;
    return withScaling<float>(scaleFactor, [&]<class Scaling>(Scaling scale) {
        rndMode == kepRoundNearest ? halvesTo16s<Scaling, ToNearest>(src, dst, len, scale)
                                   : halvesTo16s<Scaling, TowardZero>(src, dst, len, scale);
        return KepStatus{kepStatusOk};
    });
}
