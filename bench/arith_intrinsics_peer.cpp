// Scaled integer arithmetic as an author of production code writes it for 128-bit integers: a loop
// for each class of scale factors, four vectors a round, single vectors, a plain tail.
#include "arith_peer.hpp"

#include <immintrin.h>

#include <cstdint>
#include <limits>
#include <type_traits>

namespace peer {

namespace {

inline __m128i load(const void *p) {
    return _mm_loadu_si128(static_cast<const __m128i *>(p));
}
inline void store(void *p, __m128i x) {
    _mm_storeu_si128(static_cast<__m128i *>(p), x);
}

template <class T, class Vector, class Single>
inline void loop(const T *src1, const T *src2, T *dst, int n, Vector vector, Single single) {
    constexpr int k = 16 / sizeof(T);
    int i = 0;
    for (; i <= n - 4 * k; i += 4 * k) {
        const __m128i r0 = vector(load(src1 + i), load(src2 + i));
        const __m128i r1 = vector(load(src1 + i + k), load(src2 + i + k));
        const __m128i r2 = vector(load(src1 + i + 2 * k), load(src2 + i + 2 * k));
        const __m128i r3 = vector(load(src1 + i + 3 * k), load(src2 + i + 3 * k));
        store(dst + i, r0);
        store(dst + i + k, r1);
        store(dst + i + 2 * k, r2);
        store(dst + i + 3 * k, r3);
    }
    for (; i <= n - k; i += k) store(dst + i, vector(load(src1 + i), load(src2 + i)));
    for (; i < n; ++i) dst[i] = single(src1[i], src2[i]);
}

// The exact value of one element of the tail, scaled, rounded and saturated.

template <Op op>
inline std::int64_t exact(std::int64_t a, std::int64_t b) {
    return op == Op::add ? a + b : op == Op::sub ? b - a : a * b;
}

template <class T>
inline T scaleOne(std::int64_t v, int s) {
    if (s > 0) {
        const std::int64_t half = std::int64_t{1} << (s - 1);
        v = (v + half - 1 + ((v >> s) & 1)) >> s;
    } else {
        v *= std::int64_t{1} << -s;
    }
    constexpr std::int64_t lowest = std::numeric_limits<T>::min();
    constexpr std::int64_t highest = std::numeric_limits<T>::max();
    return static_cast<T>(v < lowest ? lowest : v > highest ? highest : v);
}

// Division by 2^s to nearest even: half less one, and one more if the quotient's last bit is set,
// are added first. The plain forms need room for that sum, the ones for full words take the
// fraction apart.

struct Round16 {
    explicit Round16(int s)
        : count(_mm_cvtsi32_si128(s)),
          bias(_mm_set1_epi16(static_cast<short>((1 << s >> 1) - 1))),
          mask(_mm_set1_epi16(static_cast<short>((1 << s) - 1))) {}
    __m128i operator()(__m128i v) const {
        const __m128i odd = _mm_and_si128(_mm_srl_epi16(v, count), _mm_set1_epi16(1));
        return _mm_srl_epi16(_mm_add_epi16(_mm_add_epi16(v, bias), odd), count);
    }
    __m128i full(__m128i v) const {
        const __m128i quotient = _mm_srl_epi16(v, count);
        const __m128i odd = _mm_and_si128(quotient, _mm_set1_epi16(1));
        const __m128i rest = _mm_add_epi16(_mm_and_si128(v, mask), bias);
        return _mm_add_epi16(quotient, _mm_srl_epi16(_mm_add_epi16(rest, odd), count));
    }
    __m128i count, bias, mask;
};

struct Round32 {
    explicit Round32(int s)
        : count(_mm_cvtsi32_si128(s)),
          bias(_mm_set1_epi32(static_cast<int>((std::int64_t{1} << s >> 1) - 1))),
          mask(_mm_set1_epi32(static_cast<int>((std::int64_t{1} << s) - 1))) {}
    __m128i operator()(__m128i v) const {
        const __m128i odd = _mm_and_si128(_mm_srl_epi32(v, count), _mm_set1_epi32(1));
        return _mm_sra_epi32(_mm_add_epi32(_mm_add_epi32(v, bias), odd), count);
    }
    __m128i up(__m128i v, __m128i quotient) const {
        const __m128i odd = _mm_and_si128(quotient, _mm_set1_epi32(1));
        const __m128i rest = _mm_add_epi32(_mm_and_si128(v, mask), bias);
        return _mm_add_epi32(quotient, _mm_srl_epi32(_mm_add_epi32(rest, odd), count));
    }
    __m128i full(__m128i v) const { return up(v, _mm_sra_epi32(v, count)); }
    __m128i fullUnsigned(__m128i v) const { return up(v, _mm_srl_epi32(v, count)); }
    __m128i count, bias, mask;
};

struct Pair {
    __m128i lo, hi;
};

inline Pair widenU8(__m128i x) {
    const __m128i zero = _mm_setzero_si128();
    return {_mm_unpacklo_epi8(x, zero), _mm_unpackhi_epi8(x, zero)};
}
inline Pair widenU16(__m128i x) {
    const __m128i zero = _mm_setzero_si128();
    return {_mm_unpacklo_epi16(x, zero), _mm_unpackhi_epi16(x, zero)};
}
inline Pair widenS16(__m128i x) {
    return {_mm_cvtepi16_epi32(x), _mm_srai_epi32(_mm_unpackhi_epi16(x, x), 16)};
}
inline Pair productsS16(__m128i a, __m128i b) {
    const __m128i lo = _mm_mullo_epi16(a, b), hi = _mm_mulhi_epi16(a, b);
    return {_mm_unpacklo_epi16(lo, hi), _mm_unpackhi_epi16(lo, hi)};
}
inline Pair productsU16(__m128i a, __m128i b) {
    const __m128i lo = _mm_mullo_epi16(a, b), hi = _mm_mulhi_epu16(a, b);
    return {_mm_unpacklo_epi16(lo, hi), _mm_unpackhi_epi16(lo, hi)};
}

template <class T>
inline void fillZero(T *dst, int n) {
    const __m128i zero = _mm_setzero_si128();
    loop(
        dst, dst, dst, n, [=](__m128i, __m128i) { return zero; }, [](T, T) { return T{}; });
}

// The largest scale factor that leaves anything.
template <Op op, class T>
constexpr int upper = 0;
template <>
constexpr int upper<Op::add, Kep8u> = 9;
template <>
constexpr int upper<Op::sub, Kep8u> = 8;
template <>
constexpr int upper<Op::mul, Kep8u> = 16;
template <>
constexpr int upper<Op::add, Kep16s> = 16;
template <>
constexpr int upper<Op::sub, Kep16s> = 16;
template <>
constexpr int upper<Op::mul, Kep16s> = 30;
template <>
constexpr int upper<Op::add, Kep16u> = 17;
template <>
constexpr int upper<Op::sub, Kep16u> = 16;
template <>
constexpr int upper<Op::mul, Kep16u> = 32;

template <Op op>
void scaled8u(const Kep8u *src1, const Kep8u *src2, Kep8u *dst, int n, int s) {
    const auto single = [=](int a, int b) { return scaleOne<Kep8u>(exact<op>(a, b), s); };
    // A difference below zero ends as zero whatever the scale factor.
    const auto saturated = [](__m128i a, __m128i b) {
        return op == Op::add ? _mm_adds_epu8(a, b) : _mm_subs_epu8(b, a);
    };
    const auto wide = [=](__m128i a, __m128i b) -> Pair {
        if (op == Op::sub) return widenU8(saturated(a, b));
        const Pair x = widenU8(a), y = widenU8(b);
        if (op == Op::add) return {_mm_add_epi16(x.lo, y.lo), _mm_add_epi16(x.hi, y.hi)};
        return {_mm_mullo_epi16(x.lo, y.lo), _mm_mullo_epi16(x.hi, y.hi)};
    };
    const __m128i max = _mm_set1_epi16(255);
    if (s > upper<op, Kep8u>) {
        fillZero(dst, n);
    } else if (s == 16) {
        for (int i = 0; i < n; ++i) dst[i] = src1[i] * src2[i] > 32768;
    } else if (s > 0 && op == Op::mul && s >= 10) {
        const Round16 round(s);
        loop(
            src1, src2, dst, n,
            [=](__m128i a, __m128i b) {
                const Pair v = wide(a, b);
                return _mm_packus_epi16(round.full(v.lo), round.full(v.hi));
            },
            single);
    } else if (s > 0) {
        const Round16 round(s);
        loop(
            src1, src2, dst, n,
            [=](__m128i a, __m128i b) {
                const Pair v = wide(a, b);
                return _mm_packus_epi16(round(v.lo), round(v.hi));
            },
            single);
    } else if (s == 0) {
        loop(
            src1, src2, dst, n,
            [=](__m128i a, __m128i b) {
                if (op != Op::mul) return saturated(a, b);
                const Pair v = wide(a, b);
                return _mm_packus_epi16(_mm_min_epu16(v.lo, max), _mm_min_epu16(v.hi, max));
            },
            single);
    } else if (s > -8) {
        const __m128i count = _mm_cvtsi32_si128(-s);
        loop(
            src1, src2, dst, n,
            [=](__m128i a, __m128i b) {
                Pair v;
                if (op == Op::mul) {
                    v = wide(a, b);
                    v = {_mm_min_epu16(v.lo, max), _mm_min_epu16(v.hi, max)};
                } else {
                    v = widenU8(saturated(a, b));
                }
                return _mm_packus_epi16(_mm_sll_epi16(v.lo, count), _mm_sll_epi16(v.hi, count));
            },
            single);
    } else {
        const __m128i zero = _mm_setzero_si128(), ones = _mm_set1_epi8(-1);
        loop(
            src1, src2, dst, n,
            [=](__m128i a, __m128i b) {
                const __m128i isZero = op == Op::mul ? _mm_cmpeq_epi8(_mm_min_epu8(a, b), zero)
                                                     : _mm_cmpeq_epi8(saturated(a, b), zero);
                return _mm_andnot_si128(isZero, ones);
            },
            [](int a, int b) { return exact<op>(a, b) > 0 ? Kep8u{255} : Kep8u{0}; });
    }
}

template <Op op>
void scaled16u(const Kep16u *src1, const Kep16u *src2, Kep16u *dst, int n, int s) {
    const auto single = [=](int a, int b) { return scaleOne<Kep16u>(exact<op>(a, b), s); };
    const auto saturated = [](__m128i a, __m128i b) {
        return op == Op::add ? _mm_adds_epu16(a, b) : _mm_subs_epu16(b, a);
    };
    const auto wide = [=](__m128i a, __m128i b) -> Pair {
        if (op == Op::sub) return widenU16(saturated(a, b));
        if (op == Op::mul) return productsU16(a, b);
        const Pair x = widenU16(a), y = widenU16(b);
        return {_mm_add_epi32(x.lo, y.lo), _mm_add_epi32(x.hi, y.hi)};
    };
    const __m128i zero = _mm_setzero_si128(), ones = _mm_set1_epi8(-1);
    const __m128i max = _mm_set1_epi32(65535);
    if (s > upper<op, Kep16u>) {
        fillZero(dst, n);
    } else if (s == 32) {
        for (int i = 0; i < n; ++i) dst[i] = exact<op>(src1[i], src2[i]) > 0x80000000;
    } else if (s > 0) {
        const Round32 round(s);
        loop(
            src1, src2, dst, n,
            [=](__m128i a, __m128i b) {
                const Pair v = wide(a, b);
                if (op != Op::mul) return _mm_packus_epi32(round(v.lo), round(v.hi));
                const __m128i lo = round.fullUnsigned(v.lo), hi = round.fullUnsigned(v.hi);
                return _mm_packus_epi32(_mm_min_epu32(lo, max), _mm_min_epu32(hi, max));
            },
            single);
    } else if (s == 0) {
        loop(
            src1, src2, dst, n,
            [=](__m128i a, __m128i b) {
                if (op != Op::mul) return saturated(a, b);
                const __m128i fits = _mm_cmpeq_epi16(_mm_mulhi_epu16(a, b), zero);
                return _mm_or_si128(_mm_mullo_epi16(a, b), _mm_andnot_si128(fits, ones));
            },
            single);
    } else if (s > -16) {
        const __m128i count = _mm_cvtsi32_si128(-s);
        loop(
            src1, src2, dst, n,
            [=](__m128i a, __m128i b) {
                Pair v;
                if (op == Op::mul) {
                    v = wide(a, b);
                    v = {_mm_min_epu32(v.lo, max), _mm_min_epu32(v.hi, max)};
                } else {
                    v = widenU16(saturated(a, b));
                }
                return _mm_packus_epi32(_mm_sll_epi32(v.lo, count), _mm_sll_epi32(v.hi, count));
            },
            single);
    } else {
        loop(
            src1, src2, dst, n,
            [=](__m128i a, __m128i b) {
                const __m128i isZero = op == Op::mul ? _mm_cmpeq_epi16(_mm_min_epu16(a, b), zero)
                                                     : _mm_cmpeq_epi16(saturated(a, b), zero);
                return _mm_andnot_si128(isZero, ones);
            },
            [](int a, int b) { return exact<op>(a, b) > 0 ? Kep16u{65535} : Kep16u{0}; });
    }
}

inline __m128i clamp32(__m128i v) {
    return _mm_max_epi32(_mm_min_epi32(v, _mm_set1_epi32(32767)), _mm_set1_epi32(-32768));
}

// 32767, 0 or -32768 by the sign of each 16-bit element.
inline __m128i boundBySign(__m128i v) {
    const __m128i isZero = _mm_cmpeq_epi16(v, _mm_setzero_si128());
    const __m128i bound = _mm_xor_si128(_mm_srai_epi16(v, 15), _mm_set1_epi16(32767));
    return _mm_andnot_si128(isZero, bound);
}
inline Kep16s boundOne(std::int64_t v) {
    return static_cast<Kep16s>(v > 0 ? 32767 : v < 0 ? -32768 : 0);
}

template <Op op>
void scaled16s(const Kep16s *src1, const Kep16s *src2, Kep16s *dst, int n, int s) {
    const auto single = [=](int a, int b) { return scaleOne<Kep16s>(exact<op>(a, b), s); };
    const auto wide = [](__m128i a, __m128i b) -> Pair {
        if (op == Op::mul) return productsS16(a, b);
        const Pair x = widenS16(a), y = widenS16(b);
        if (op == Op::add) return {_mm_add_epi32(x.lo, y.lo), _mm_add_epi32(x.hi, y.hi)};
        return {_mm_sub_epi32(y.lo, x.lo), _mm_sub_epi32(y.hi, x.hi)};
    };
    const auto saturated = [=](__m128i a, __m128i b) {
        if (op == Op::add) return _mm_adds_epi16(a, b);
        if (op == Op::sub) return _mm_subs_epi16(b, a);
        const Pair v = wide(a, b);
        return _mm_packs_epi32(v.lo, v.hi);
    };
    if (s > upper<op, Kep16s>) {
        fillZero(dst, n);
    } else if (s > 0) {
        const Round32 round(s);
        loop(
            src1, src2, dst, n,
            [=](__m128i a, __m128i b) {
                const Pair v = wide(a, b);
                return _mm_packs_epi32(round(v.lo), round(v.hi));
            },
            single);
    } else if (s == 0) {
        loop(src1, src2, dst, n, saturated, single);
    } else if (s > -16) {
        const __m128i count = _mm_cvtsi32_si128(-s);
        loop(
            src1, src2, dst, n,
            [=](__m128i a, __m128i b) {
                Pair v;
                if (op == Op::mul) {
                    v = wide(a, b);
                    v = {clamp32(v.lo), clamp32(v.hi)};
                } else {
                    v = widenS16(saturated(a, b));
                }
                return _mm_packs_epi32(_mm_sll_epi32(v.lo, count), _mm_sll_epi32(v.hi, count));
            },
            single);
    } else {
        loop(
            src1, src2, dst, n, [=](__m128i a, __m128i b) { return boundBySign(saturated(a, b)); },
            [](int a, int b) { return boundOne(exact<op>(a, b)); });
    }
}

void mul16sc(const Kep16sc *src1, const Kep16sc *src2, Kep16sc *dst, int n, int s) {
    const auto re = [](Kep16sc a, Kep16sc b) {
        return std::int64_t{a.re} * b.re - std::int64_t{a.im} * b.im;
    };
    // The one sum that 32 bits can't hold is kept as their largest value.
    const auto im = [](Kep16sc a, Kep16sc b) {
        const std::int64_t v = std::int64_t{a.re} * b.im + std::int64_t{a.im} * b.re;
        return v > INT32_MAX ? std::int64_t{INT32_MAX} : v;
    };
    const auto single = [=](Kep16sc a, Kep16sc b) {
        return Kep16sc{scaleOne<Kep16s>(re(a, b), s), scaleOne<Kep16s>(im(a, b), s)};
    };
    const auto real = [](__m128i a, __m128i b) {
        const __m128i low = _mm_set1_epi32(0xFFFF);
        const __m128i ac = _mm_madd_epi16(a, _mm_and_si128(b, low));
        return _mm_sub_epi32(ac, _mm_madd_epi16(a, _mm_andnot_si128(low, b)));
    };
    const auto imaginary = [](__m128i a, __m128i b) {
        const __m128i swapped = _mm_or_si128(_mm_slli_epi32(b, 16), _mm_srli_epi32(b, 16));
        const __m128i v = _mm_madd_epi16(a, swapped);
        return _mm_add_epi32(v, _mm_cmpeq_epi32(v, _mm_set1_epi32(INT32_MIN)));
    };
    const auto interleave = [](__m128i x, __m128i y) {
        return _mm_shuffle_epi8(_mm_packs_epi32(x, y), _mm_setr_epi8(0, 1, 8, 9, 2, 3, 10, 11, 4, 5,
                                                                     12, 13, 6, 7, 14, 15));
    };
    if (s > 31) {
        fillZero(dst, n);
    } else if (s > 0) {
        const Round32 round(s);
        loop(
            src1, src2, dst, n,
            [=](__m128i a, __m128i b) {
                return interleave(round.full(real(a, b)), round.full(imaginary(a, b)));
            },
            single);
    } else if (s == 0) {
        loop(
            src1, src2, dst, n,
            [=](__m128i a, __m128i b) { return interleave(real(a, b), imaginary(a, b)); }, single);
    } else if (s > -16) {
        const __m128i count = _mm_cvtsi32_si128(-s);
        loop(
            src1, src2, dst, n,
            [=](__m128i a, __m128i b) {
                const __m128i x = clamp32(real(a, b)), y = clamp32(imaginary(a, b));
                return interleave(_mm_sll_epi32(x, count), _mm_sll_epi32(y, count));
            },
            single);
    } else {
        loop(
            src1, src2, dst, n,
            [=](__m128i a, __m128i b) {
                return boundBySign(interleave(real(a, b), imaginary(a, b)));
            },
            [=](Kep16sc a, Kep16sc b) {
                return Kep16sc{boundOne(re(a, b)), boundOne(im(a, b))};
            });
    }
}

} // namespace

template <Op op, class T>
void byIntrinsics(const T *src1, const T *src2, T *dst, int n, int scaleFactor) {
    if constexpr (std::is_same_v<T, Kep8u>) {
        scaled8u<op>(src1, src2, dst, n, scaleFactor);
    } else if constexpr (std::is_same_v<T, Kep16u>) {
        scaled16u<op>(src1, src2, dst, n, scaleFactor);
    } else if constexpr (std::is_same_v<T, Kep16s>) {
        scaled16s<op>(src1, src2, dst, n, scaleFactor);
    } else if constexpr (op == Op::mul) {
        mul16sc(src1, src2, dst, n, scaleFactor);
    } else {
        scaled16s<op>(&src1->re, &src2->re, &dst->re, 2 * n, scaleFactor);
    }
}

#define INSTANCES(T)                                                                               \
    template void byIntrinsics<Op::add, T>(const T *, const T *, T *, int, int);                   \
    template void byIntrinsics<Op::sub, T>(const T *, const T *, T *, int, int);                   \
    template void byIntrinsics<Op::mul, T>(const T *, const T *, T *, int, int);
INSTANCES(Kep8u)
INSTANCES(Kep16s)
INSTANCES(Kep16u)
INSTANCES(Kep16sc)
#undef INSTANCES

} // namespace peer
