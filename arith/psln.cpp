// Ln: logarithms of floats by the vector kernels; of scaled integers by counting the integers at
// which the rounded logarithm steps up, which needs no arithmetic on the logarithm itself.
#include <limits>

#include "arith/elementary.hpp"
#include "arith/integer_tables.hpp"
#include "arith/vmath/vmath.hpp"

using namespace keps;

namespace {

KepStatus statusOf(int code) {
    if (code == vmath::singularity) return kepStatusLogWarning;
    return code == vmath::domain ? kepStatusLnNegArg : kepStatusOk;
}

// clang-format off
KEPS_INLINE i16x8 filled(std::int16_t x) { return {_mm_set1_epi16(x)}; }
KEPS_INLINE i32x4 filled(std::int32_t x) { return {_mm_set1_epi32(x)}; }
KEPS_INLINE i16x8 greater(i16x8 a, i16x8 b) { return {_mm_cmpgt_epi16(a.v, b.v)}; }
KEPS_INLINE i32x4 greater(i32x4 a, i32x4 b) { return {_mm_cmpgt_epi32(a.v, b.v)}; }
KEPS_INLINE i16x8 minus(i16x8 a, i16x8 b) { return {_mm_sub_epi16(a.v, b.v)}; }
KEPS_INLINE i32x4 minus(i32x4 a, i32x4 b) { return {_mm_sub_epi32(a.v, b.v)}; }
KEPS_INLINE i16x8 shifted(i16x8 x, __m128i n) { return {_mm_sll_epi16(x.v, n)}; }
KEPS_INLINE i32x4 shifted(i32x4 x, __m128i n) { return {_mm_sll_epi32(x.v, n)}; }
template <class V> KEPS_INLINE V chosen(V mask, V a, V b) { return {_mm_blendv_epi8(a.v, b.v, mask.v)}; }
// clang-format on

template <class T>
class Logarithms {
    using V = int128<T>;
    static constexpr T most = std::numeric_limits<T>::max(), least = std::numeric_limits<T>::min();
    static constexpr int together = 4; // vectors that share a step's load

public:
    explicit Logarithms(int scaleFactor) {
        const int s = scaleFactor < 0 ? 0 : scaleFactor;
        if (s <= 5)
            for (int k = 0; k < lnStepsOf[s].count; ++k) {
                const std::int32_t step = lnSteps[lnStepsOf[s].first + k];
                if (step < most) steps[count++] = filled(static_cast<T>(step));
            }
        // A logarithm of 1 or more, shifted by the type's width less one, saturates.
        const int bits = 8 * sizeof(T) - 1;
        shift = scaleFactor >= 0 ? 0 : (scaleFactor < -bits ? bits : -scaleFactor);
    }

    KEPS_INLINE KepStatus run(const T *src, T *dst, size n) const {
        constexpr size lanes = V::lanes, round = together * lanes;
        KepStatus status = kepStatusOk;
        size i = 0;
        for (; i + round <= n; i += round) {
            V x[together];
            times<together>([&](int k)
                                KEPS_INLINE_LAMBDA { x[k] = loadInt<V>(src + i + k * lanes); });
            settle(x, src + i, round, status);
            V y[together];
            logarithms(x, y);
            times<together>([&](int k) KEPS_INLINE_LAMBDA { store(dst + i + k * lanes, y[k]); });
        }
        if (i < n) {
            T rest[round];
            for (size k = 0; k < round; ++k) rest[k] = k < n - i ? loadOne(src + i + k) : T{1};
            V x[together], y[together];
            times<together>([&](int k) KEPS_INLINE_LAMBDA { x[k] = loadInt<V>(rest + k * lanes); });
            settle(x, rest, round, status);
            logarithms(x, y);
            times<together>([&](int k) KEPS_INLINE_LAMBDA { store(rest + k * lanes, y[k]); });
            for (size k = 0; k < n - i; ++k) storeOne(dst + i + k, rest[k]);
        }
        return status;
    }

private:
    // The first element of 0 or below decides the status.
    KEPS_INLINE static void settle(const V (&x)[together], const T *at, size n, KepStatus &status) {
        __m128i bad = _mm_setzero_si128();
        times<together>([&](int k) KEPS_INLINE_LAMBDA {
            bad = _mm_or_si128(bad, greater(filled(T{1}), x[k]).v);
        });
        if (_mm_movemask_epi8(bad) == 0 || status != kepStatusOk) [[likely]]
            return;
        for (size k = 0; k < n && status == kepStatusOk; ++k) {
            const T value = loadOne(at + k);
            if (value <= 0) status = value == 0 ? kepStatusLogWarning : kepStatusLnNegArg;
        }
    }

    KEPS_INLINE void logarithms(const V (&x)[together], V (&y)[together]) const {
        times<together>([&](int k) KEPS_INLINE_LAMBDA { y[k] = filled(T{0}); });
        for (int step = 0; step < count; ++step)
            times<together>(
                [&](int k) KEPS_INLINE_LAMBDA { y[k] = minus(y[k], greater(x[k], steps[step])); });
        const __m128i n = _mm_cvtsi32_si128(shift);
        const V room = filled(static_cast<T>(most >> shift));
        times<together>([&](int k) KEPS_INLINE_LAMBDA {
            y[k] = chosen(greater(y[k], room), shifted(y[k], n), filled(most));
            y[k] = chosen(greater(filled(T{1}), x[k]), y[k], filled(least));
        });
    }

    V steps[21];
    int count = 0, shift = 0;
};

template <class T>
KepStatus logarithmsSfs(const T *src, T *dst, int32_t len, int scaleFactor) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    return Logarithms<T>(scaleFactor).run(src, dst, len);
}

} // namespace

KepStatus kepsLn_32f(const Kep32f *src, Kep32f *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    return statusOf(kepsLn_32f_A21(src, dst, len));
}
KepStatus kepsLn_64f(const Kep64f *src, Kep64f *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    return statusOf(kepsLn_64f_A50(src, dst, len));
}
// clang-format off
KepStatus kepsLn_32f_I(Kep32f *srcDst, int32_t len) { return kepsLn_32f(srcDst, srcDst, len); }
KepStatus kepsLn_64f_I(Kep64f *srcDst, int32_t len) { return kepsLn_64f(srcDst, srcDst, len); }
KepStatus kepsLn_16s_Sfs(const Kep16s *src, Kep16s *dst, int32_t len, int scaleFactor) { return logarithmsSfs(src, dst, len, scaleFactor); }
KepStatus kepsLn_32s_Sfs(const Kep32s *src, Kep32s *dst, int32_t len, int scaleFactor) { return logarithmsSfs(src, dst, len, scaleFactor); }
KepStatus kepsLn_16s_ISfs(Kep16s *srcDst, int32_t len, int scaleFactor) { return logarithmsSfs(srcDst, srcDst, len, scaleFactor); }
KepStatus kepsLn_32s_ISfs(Kep32s *srcDst, int32_t len, int scaleFactor) { return logarithmsSfs(srcDst, srcDst, len, scaleFactor); }
// clang-format on
