#include <immintrin.h>
#include <type_traits>

#include "arith_peer.hpp"

namespace peer {
namespace {

using V = __m128i;

struct Pair {
    V lo, hi;
};

// Exact results in lanes of twice the width.
template <Op op, class T>
Pair exact(V a, V b);

template <Op op>
Pair wide16(Pair x, Pair y) {
    if constexpr (op == Op::add)
        return {_mm_add_epi16(x.lo, y.lo), _mm_add_epi16(x.hi, y.hi)};
    else if constexpr (op == Op::sub)
        return {_mm_sub_epi16(y.lo, x.lo), _mm_sub_epi16(y.hi, x.hi)};
    else
        return {_mm_mullo_epi16(x.lo, y.lo), _mm_mullo_epi16(x.hi, y.hi)};
}
template <Op op>
Pair wide32(Pair x, Pair y) {
    if constexpr (op == Op::add)
        return {_mm_add_epi32(x.lo, y.lo), _mm_add_epi32(x.hi, y.hi)};
    else
        return {_mm_sub_epi32(y.lo, x.lo), _mm_sub_epi32(y.hi, x.hi)};
}
Pair from8u(V x) {
    return {_mm_cvtepu8_epi16(x), _mm_unpackhi_epi8(x, _mm_setzero_si128())};
}
Pair from16s(V x) {
    return {_mm_cvtepi16_epi32(x), _mm_cvtepi16_epi32(_mm_srli_si128(x, 8))};
}
Pair from16u(V x) {
    return {_mm_cvtepu16_epi32(x), _mm_unpackhi_epi16(x, _mm_setzero_si128())};
}

template <Op op, class T>
Pair exact(V a, V b) {
    if constexpr (sizeof(T) == 1)
        return wide16<op>(from8u(a), from8u(b));
    else if constexpr (std::is_same_v<T, Kep16sc> && op == Op::mul) {
        const V signs = _mm_set1_epi32(static_cast<int>(0xFFFF0001));
        const V swapped = _mm_shufflehi_epi16(_mm_shufflelo_epi16(b, 0xB1), 0xB1);
        const V re = _mm_madd_epi16(a, _mm_sign_epi16(b, signs)), im = _mm_madd_epi16(a, swapped);
        return {_mm_unpacklo_epi32(re, im), _mm_unpackhi_epi32(re, im)};
    } else if constexpr (op == Op::mul) {
        const V low = _mm_mullo_epi16(a, b);
        const V high = std::is_same_v<T, Kep16u> ? _mm_mulhi_epu16(a, b) : _mm_mulhi_epi16(a, b);
        return {_mm_unpacklo_epi16(low, high), _mm_unpackhi_epi16(low, high)};
    } else if constexpr (std::is_same_v<T, Kep16u>) {
        return wide32<op>(from16u(a), from16u(b));
    } else {
        return wide32<op>(from16s(a), from16s(b));
    }
}

template <class T>
V narrow(Pair x) {
    if constexpr (sizeof(T) == 1)
        return _mm_packus_epi16(x.lo, x.hi);
    else if constexpr (std::is_same_v<T, Kep16u>)
        return _mm_packus_epi32(x.lo, x.hi);
    else
        return _mm_packs_epi32(x.lo, x.hi);
}

// Whether exact results are never negative, so that they shift as unsigned.
template <Op op, class T>
constexpr bool isUnsigned = op != Op::sub && (sizeof(T) == 1 || std::is_same_v<T, Kep16u>);

template <Op op, class T>
V rounded(V v, V count, V half) {
    if constexpr (sizeof(T) == 1) {
        const auto shift = [=](V x) {
            return isUnsigned<op, T> ? _mm_srl_epi16(x, count) : _mm_sra_epi16(x, count);
        };
        const V odd = _mm_and_si128(shift(v), _mm_set1_epi16(1));
        return shift(_mm_add_epi16(_mm_add_epi16(v, half), odd));
    } else {
        const auto shift = [=](V x) {
            return isUnsigned<op, T> ? _mm_srl_epi32(x, count) : _mm_sra_epi32(x, count);
        };
        const V odd = _mm_and_si128(shift(v), _mm_set1_epi32(1));
        return shift(_mm_add_epi32(_mm_add_epi32(v, half), odd));
    }
}

template <Op op, class T>
V saturated(V a, V b) {
    if constexpr (op == Op::mul) {
        const Pair x = exact<op, T>(a, b);
        if constexpr (sizeof(T) == 1) {
            const V top = _mm_set1_epi16(255);
            return narrow<T>({_mm_min_epu16(x.lo, top), _mm_min_epu16(x.hi, top)});
        } else if constexpr (std::is_same_v<T, Kep16u>) {
            const V top = _mm_set1_epi32(65535);
            return narrow<T>({_mm_min_epu32(x.lo, top), _mm_min_epu32(x.hi, top)});
        } else {
            return narrow<T>(x);
        }
    } else if constexpr (sizeof(T) == 1)
        return op == Op::add ? _mm_adds_epu8(a, b) : _mm_subs_epu8(b, a);
    else if constexpr (std::is_same_v<T, Kep16u>)
        return op == Op::add ? _mm_adds_epu16(a, b) : _mm_subs_epu16(b, a);
    else
        return op == Op::add ? _mm_adds_epi16(a, b) : _mm_subs_epi16(b, a);
}

template <class T>
V shiftedUp(V x, V count) {
    if constexpr (sizeof(T) == 1) {
        const Pair w = from8u(x);
        return narrow<T>({_mm_sll_epi16(w.lo, count), _mm_sll_epi16(w.hi, count)});
    } else {
        const Pair w = std::is_same_v<T, Kep16u> ? from16u(x) : from16s(x);
        return narrow<T>({_mm_sll_epi32(w.lo, count), _mm_sll_epi32(w.hi, count)});
    }
}

template <class T>
V bounded(V x) {
    const V zero = _mm_setzero_si128();
    if constexpr (sizeof(T) == 1)
        return _mm_xor_si128(_mm_cmpeq_epi8(x, zero), _mm_set1_epi8(-1));
    else if constexpr (std::is_same_v<T, Kep16u>)
        return _mm_xor_si128(_mm_cmpeq_epi16(x, zero), _mm_set1_epi16(-1));
    else
        return _mm_or_si128(_mm_and_si128(_mm_cmpgt_epi16(x, zero), _mm_set1_epi16(32767)),
                            _mm_and_si128(_mm_cmpgt_epi16(zero, x), _mm_set1_epi16(-32768)));
}

template <class T, class F>
int vectors(const T *src1, const T *src2, T *dst, int n, F f) {
    constexpr int L = 16 / static_cast<int>(sizeof(T));
    const auto at = [](const T *p) { return _mm_loadu_si128(reinterpret_cast<const V *>(p)); };
    const auto put = [](T *p, V x) { _mm_storeu_si128(reinterpret_cast<V *>(p), x); };
    int i = 0;
    for (; i + 4 * L <= n; i += 4 * L) {
        const V a = f(at(src1 + i), at(src2 + i)), b = f(at(src1 + i + L), at(src2 + i + L));
        const V c = f(at(src1 + i + 2 * L), at(src2 + i + 2 * L));
        const V d = f(at(src1 + i + 3 * L), at(src2 + i + 3 * L));
        put(dst + i, a);
        put(dst + i + L, b);
        put(dst + i + 2 * L, c);
        put(dst + i + 3 * L, d);
    }
    for (; i + L <= n; i += L) put(dst + i, f(at(src1 + i), at(src2 + i)));
    return i;
}

} // namespace

template <Op op, class T>
void byIntrinsics(const T *src1, const T *src2, T *dst, int n, int s) {
    int done = 0;
    if (s == 0) {
        done = vectors(src1, src2, dst, n, [](V a, V b) { return saturated<op, T>(a, b); });
    } else if (s > 0) {
        const V count = _mm_cvtsi32_si128(s);
        const int before = (1 << (s - 1)) - 1;
        const V half =
            sizeof(T) == 1 ? _mm_set1_epi16(static_cast<short>(before)) : _mm_set1_epi32(before);
        done = vectors(src1, src2, dst, n, [=](V a, V b) {
            const Pair x = exact<op, T>(a, b);
            return narrow<T>(
                {rounded<op, T>(x.lo, count, half), rounded<op, T>(x.hi, count, half)});
        });
    } else if (s > -16) {
        const V count = _mm_cvtsi32_si128(-s);
        done = vectors(src1, src2, dst, n,
                       [=](V a, V b) { return shiftedUp<T>(saturated<op, T>(a, b), count); });
    } else {
        done = vectors(src1, src2, dst, n,
                       [](V a, V b) { return bounded<T>(saturated<op, T>(a, b)); });
    }
    if (done < n) scaled<op>(src1 + done, src2 + done, dst + done, n - done, s);
}
#define INTRINSICS(t)                                                                              \
    template void byIntrinsics<Op::add>(const t *, const t *, t *, int, int);                      \
    template void byIntrinsics<Op::sub>(const t *, const t *, t *, int, int);                      \
    template void byIntrinsics<Op::mul>(const t *, const t *, t *, int, int);
INTRINSICS(Kep8u)
INTRINSICS(Kep16s)
INTRINSICS(Kep16u)
INTRINSICS(Kep16sc)

} // namespace peer
