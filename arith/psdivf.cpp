// Div of floats. The divisor is the first array.
#include "arith/division.hpp"
#include "frame/entry.hpp"

using namespace keps;

namespace {

template <class V>
struct FloatQuotient {
    ZeroWatch<V> zeros;
    KEPS_INLINE V operator()(V divisor, V dividend) const {
        divisor = inRegister(divisor);
        zeros.look(divisor);
        return dividend / divisor;
    }
};

template <class T>
[[gnu::noinline]] KepStatus quotients(const T *src1, const T *src2, T *dst, size n) {
    constexpr int N = 32 / sizeof(T);
    if (n < N) [[unlikely]] {
        const auto whole = [](const T *divisors, const T *dividends, T *results) {
            return quotients(divisors, dividends, results, N);
        };
        return onPadded<N>(whole, n, dst, src1, src2);
    }
    const FloatQuotient<Block<T, N>> op{};
    map<N, 4>(n, op, dst, src1, src2);
    return op.zeros.warning();
}

template <class T>
KEPS_INLINE KepStatus divide(const T *src1, const T *src2, T *dst, std::int32_t len,
                             std::int32_t threshold) {
    if (const KepStatus refused = refuse(len, src1, src2, dst)) return refused;
    return vectorSplit<teamOfTwo>(len, threshold, [=](std::int32_t first, std::int32_t n) {
        return quotients(src1 + first, src2 + first, dst + first, n);
    });
}

// Complex quotients. With divisor c + di and dividend a + bi: m = cc + dd, u = ca + db,
// v = cb - da, and the result is (ur, vr) with r a reciprocal of m, NaN where m is 0.

constexpr std::uint64_t notANumber32 = 0x7FC00000, notANumber64 = 0x7FF8000000000000;

// Real and imaginary parts of the elements in two vectors, lane by lane, and back: 2 instructions.
template <class V>
struct Parts {
    V re, im;
};
KEPS_INLINE Parts<f32x8> partsOf(f32x8 a, f32x8 b) {
    return {{_mm256_shuffle_ps(a.v, b.v, 0x88)}, {_mm256_shuffle_ps(a.v, b.v, 0xDD)}};
}
KEPS_INLINE Parts<f64x4> partsOf(f64x4 a, f64x4 b) {
    return {{_mm256_unpacklo_pd(a.v, b.v)}, {_mm256_unpackhi_pd(a.v, b.v)}};
}
KEPS_INLINE void storeParts(float *p, Parts<f32x8> x) {
    store(p, f32x8{_mm256_unpacklo_ps(x.re.v, x.im.v)});
    store(p + 8, f32x8{_mm256_unpackhi_ps(x.re.v, x.im.v)});
}
KEPS_INLINE void storeParts(double *p, Parts<f64x4> x) {
    store(p, f64x4{_mm256_unpacklo_pd(x.re.v, x.im.v)});
    store(p + 4, f64x4{_mm256_unpackhi_pd(x.re.v, x.im.v)});
}

// Blocks of eight elements. One Newton step on the processor's estimate gives 23 bits. One test for
// zero divisors serves all blocks.
template <int blocks>
KEPS_INLINE int quotients8(const float *src1, const float *src2, float *dst) {
    Parts<f32x8> result[blocks];
    f32x8 isZero[blocks], anyZero = zero<f32x8>();
    times<blocks>([&](int k) KEPS_INLINE_LAMBDA {
        const float *under = src1 + 16 * k, *over = src2 + 16 * k;
        const auto [c, d] = partsOf(load<f32x8>(under), load<f32x8>(under + 8));
        const auto [a, b] = partsOf(load<f32x8>(over), load<f32x8>(over + 8));
        const f32x8 m = c * c + d * d;
        const f32x8 r0{_mm256_rcp_ps(m.v)};
        const f32x8 r = r0 * (splat<f32x8>(2) - m * r0);
        result[k] = {(c * a + d * b) * r, (c * b - d * a) * r};
        isZero[k] = equal(m, zero<f32x8>());
        anyZero = anyZero | isZero[k];
    });
    const int warning = signs(anyZero) != 0;
    if (warning) [[unlikely]] {
        const f32x8 nan = splatBits<f32x8>(notANumber32);
        times<blocks>([&](int k) KEPS_INLINE_LAMBDA {
            result[k] = {select(isZero[k], result[k].re, nan),
                         select(isZero[k], result[k].im, nan)};
        });
    }
    times<blocks>([&](int k) KEPS_INLINE_LAMBDA { storeParts(dst + 16 * k, result[k]); });
    return warning;
}

[[gnu::noinline]] KepStatus complexQuotients(const Kep32fc *src1, const Kep32fc *src2, Kep32fc *dst,
                                             size n) {
    const auto parts = [](auto *p) KEPS_INLINE_LAMBDA {
        using Part = std::conditional_t<std::is_const_v<std::remove_pointer_t<decltype(p)>>,
                                        const float, float>;
        return reinterpret_cast<Part *>(p);
    };
    int isWarning = 0;
    size i = 0;
    for (; i + 16 <= n; i += 16)
        isWarning |= quotients8<2>(parts(src1 + i), parts(src2 + i), parts(dst + i));
    if (i + 8 <= n) {
        isWarning |= quotients8<1>(parts(src1 + i), parts(src2 + i), parts(dst + i));
        i += 8;
    }
    const KepStatus warning = isWarning ? kepStatusDivisionWarning : kepStatusOk;
    if (i == n) return warning;
    const auto whole = [](const Kep32fc *divisors, const Kep32fc *dividends, Kep32fc *results) {
        return complexQuotients(divisors, dividends, results, 8);
    };
    return warning | onPadded<8>(whole, n - i, dst + i, src1 + i, src2 + i);
}

KEPS_INLINE double squaredMagnitude(Kep64fc x) {
    return x.re * x.re + x.im * x.im;
}

KEPS_INLINE Kep64fc quotient(Kep64fc divisor, Kep64fc dividend, double r) {
    if (squaredMagnitude(divisor) == 0) {
        constexpr double nan = __builtin_bit_cast(double, notANumber64);
        return {nan, nan};
    }
    const double u = divisor.re * dividend.re + divisor.im * dividend.im;
    const double v = divisor.re * dividend.im - divisor.im * dividend.re;
    return {u * r, v * r};
}

// A pair of elements shares one division; not where the product of their magnitudes is 0, which
// may also be an underflow. other is the magnitude of the pair's other element.
KEPS_INLINE double reciprocalInPair(double m, double other) {
    const double product = m * other;
    return product == 0 ? 1.0 / m : other * (1.0 / product);
}

// Four elements, two pairs. They stand in the order 0 2 1 3, so swapping the halves gives each
// magnitude its partner.
KEPS_INLINE int quotients4(const Kep64fc *src1, const Kep64fc *src2, Kep64fc *dst) {
    const auto *divisor = reinterpret_cast<const double *>(src1);
    const auto *dividend = reinterpret_cast<const double *>(src2);
    const f64x4 under0 = load<f64x4>(divisor), under1 = load<f64x4>(divisor + 4);
    const f64x4 over0 = load<f64x4>(dividend), over1 = load<f64x4>(dividend + 4);
    const auto [c, d] = partsOf(under0, under1);
    const auto [a, b] = partsOf(over0, over1);
    const f64x4 m = c * c + d * d;
    const f64x4 partner{_mm256_permute2f128_pd(m.v, m.v, 1)};
    const __m128d product =
        _mm_mul_pd(_mm256_castpd256_pd128(m.v), _mm256_castpd256_pd128(partner.v));
    // NaN too: it may be 0 times an infinity.
    if (_mm_movemask_pd(_mm_cmp_pd(product, _mm_setzero_pd(), _CMP_EQ_UQ))) [[unlikely]] {
        alignas(32) Kep64fc under[4], over[4];
        store(&under[0].re, under0);
        store(&under[2].re, under1);
        store(&over[0].re, over0);
        store(&over[2].re, over1);
        int warning = 0;
        for (int k = 0; k < 4; ++k) {
            const double own = squaredMagnitude(under[k]);
            const double r = reciprocalInPair(own, squaredMagnitude(under[k ^ 1]));
            storeOne(dst + k, quotient(under[k], over[k], r));
            warning |= own == 0;
        }
        return warning;
    }
    const __m128d q = _mm_div_pd(_mm_set1_pd(1), product);
    const f64x4 r{_mm256_mul_pd(partner.v, _mm256_set_m128d(q, q))};
    storeParts(reinterpret_cast<double *>(dst),
               Parts<f64x4>{(c * a + d * b) * r, (c * b - d * a) * r});
    return 0;
}

// Elements first to first + n of an array of len, whose pairs are counted from its start. Where a
// piece ends within a pair, the elements beside the cut are those of cut: another thread may have
// written over the array by now.
[[gnu::noinline]] int complexQuotients(const Kep64fc *src1, const Kep64fc *src2, Kep64fc *dst,
                                       size first, size n, size len, const Kep64fc cut[2]) {
    int warning = 0;
    const auto single = [&](size i, Kep64fc divisor, double r) {
        storeOne(dst + i, quotient(divisor, loadOne(src2 + i), r));
        warning |= squaredMagnitude(divisor) == 0;
    };
    size i = first;
    const size end = first + n;
    if (i < end && i % 2 != 0) {
        const Kep64fc divisor = loadOne(src1 + i);
        single(i, divisor, reciprocalInPair(squaredMagnitude(divisor), squaredMagnitude(cut[0])));
        ++i;
    }
    for (; i + 4 <= end; i += 4) warning |= quotients4(src1 + i, src2 + i, dst + i);
    for (; i + 2 <= end; i += 2) {
        const Kep64fc divisor[2] = {loadOne(src1 + i), loadOne(src1 + i + 1)};
        const double m0 = squaredMagnitude(divisor[0]), m1 = squaredMagnitude(divisor[1]);
        single(i, divisor[0], reciprocalInPair(m0, m1));
        single(i + 1, divisor[1], reciprocalInPair(m1, m0));
    }
    if (i < end) {
        const Kep64fc divisor = loadOne(src1 + i);
        const double m = squaredMagnitude(divisor);
        single(i, divisor, end < len ? reciprocalInPair(m, squaredMagnitude(cut[1])) : 1.0 / m);
    }
    return warning;
}

} // namespace

// clang-format off
KepStatus kepsDiv_32f(const Kep32f *src1, const Kep32f *src2, Kep32f *dst, int32_t len) { return divide(src1, src2, dst, len, 4096); }
KepStatus kepsDiv_32f_I(const Kep32f *src, Kep32f *srcDst, int32_t len) { return kepsDiv_32f(src, srcDst, srcDst, len); }
KepStatus kepsDiv_64f(const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len) { return divide(src1, src2, dst, len, 1024); }
KepStatus kepsDiv_64f_I(const Kep64f *src, Kep64f *srcDst, int32_t len) { return kepsDiv_64f(src, srcDst, srcDst, len); }
// clang-format on

KepStatus kepsDiv_32fc(const Kep32fc *src1, const Kep32fc *src2, Kep32fc *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src1, src2, dst)) return refused;
    return vectorSplit<teamOfTwo>(len, 1024, [=](std::int32_t first, std::int32_t n) {
        return complexQuotients(src1 + first, src2 + first, dst + first, n);
    });
}
KepStatus kepsDiv_32fc_I(const Kep32fc *src, Kep32fc *srcDst, int32_t len) {
    return kepsDiv_32fc(src, srcDst, srcDst, len);
}

KepStatus kepsDiv_64fc(const Kep64fc *src1, const Kep64fc *src2, Kep64fc *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src1, src2, dst)) return refused;
    // The one place where a team of two may cut a pair.
    const size middle = len / 2;
    const Kep64fc cut[2] = {loadOne(src1 + (middle > 0 ? middle - 1 : 0)), loadOne(src1 + middle)};
    const int warning =
        vectorSplit<teamOfTwo>(len, 1024, [=, &cut](std::int32_t first, std::int32_t n) {
            return complexQuotients(src1, src2, dst, first, n, len, cut);
        });
    return warning ? kepStatusDivisionWarning : kepStatusOk;
}
KepStatus kepsDiv_64fc_I(const Kep64fc *src, Kep64fc *srcDst, int32_t len) {
    return kepsDiv_64fc(src, srcDst, srcDst, len);
}
