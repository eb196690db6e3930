// Real transforms of 1 to 16 points in straight-line code, over vectors of four lanes, from and to
// each packed layout.
#pragma once

#include "transforms/fft/small.hpp"

namespace keps::fft {

// Layouts of a real signal's spectrum.
enum Layout { layoutCcs, layoutPack, layoutPerm };

} // namespace keps::fft

namespace keps::fft::small {

// Four lanes of either precision, with the shuffles that the kernels need.
struct Quad32 {
    using T = float;
    __m128 v;
    KEPS_INLINE static Quad32 load(const float *p) { return {_mm_loadu_ps(p)}; }
    KEPS_INLINE void store(float *p) const { _mm_storeu_ps(p, v); }
    KEPS_INLINE void storeUpperPair(float *p) const {
        storeAs(p, _mm_cvtsd_f64(_mm_castps_pd(_mm_movehl_ps(v, v))));
    }
    KEPS_INLINE static Quad32 of(float a, float b, float c, float d) {
        return {_mm_setr_ps(a, b, c, d)};
    }
    KEPS_INLINE float lane0() const { return _mm_cvtss_f32(v); }
    KEPS_INLINE float lane1() const { return _mm_cvtss_f32(_mm_movehdup_ps(v)); }
    // Lane I of each of the four places.
    template <int A, int B, int C, int D>
    KEPS_INLINE Quad32 lanes() const {
        return {_mm_permute_ps(v, A | B << 2 | C << 4 | D << 6)};
    }
    KEPS_INLINE Quad32 withLane1(float x) const { return {_mm_insert_ps(v, _mm_set_ss(x), 0x10)}; }
};
KEPS_INLINE Quad32 operator+(Quad32 a, Quad32 b) {
    return {_mm_add_ps(a.v, b.v)};
}
KEPS_INLINE Quad32 operator-(Quad32 a, Quad32 b) {
    return {_mm_sub_ps(a.v, b.v)};
}
KEPS_INLINE Quad32 operator*(Quad32 a, Quad32 b) {
    return {_mm_mul_ps(a.v, b.v)};
}
KEPS_INLINE Quad32 operator^(Quad32 a, Quad32 b) {
    return {_mm_xor_ps(a.v, b.v)};
}
KEPS_INLINE Quad32 addSub(Quad32 a, Quad32 b) {
    return {_mm_addsub_ps(a.v, b.v)};
}
// a0 a1 b0 b1; a2 a3 b2 b3; a0 b0 a1 b1; a2 b2 a3 b3.
KEPS_INLINE Quad32 lowPairs(Quad32 a, Quad32 b) {
    return {_mm_movelh_ps(a.v, b.v)};
}
KEPS_INLINE Quad32 highPairs(Quad32 a, Quad32 b) {
    return {_mm_movehl_ps(b.v, a.v)};
}
KEPS_INLINE Quad32 zipLow(Quad32 a, Quad32 b) {
    return {_mm_unpacklo_ps(a.v, b.v)};
}
KEPS_INLINE Quad32 zipHigh(Quad32 a, Quad32 b) {
    return {_mm_unpackhi_ps(a.v, b.v)};
}
// a0 a1 b2 b3.
KEPS_INLINE Quad32 lowThenHigh(Quad32 a, Quad32 b) {
    return {_mm_blend_ps(a.v, b.v, 0xC)};
}
// a0 a2 b0 b2; a1 a3 b1 b3.
KEPS_INLINE Quad32 evens(Quad32 a, Quad32 b) {
    return {_mm_shuffle_ps(a.v, b.v, 0x88)};
}
KEPS_INLINE Quad32 odds(Quad32 a, Quad32 b) {
    return {_mm_shuffle_ps(a.v, b.v, 0xDD)};
}

struct Quad64 {
    using T = double;
    __m256d v;
    KEPS_INLINE static Quad64 load(const double *p) { return {_mm256_loadu_pd(p)}; }
    KEPS_INLINE void store(double *p) const { _mm256_storeu_pd(p, v); }
    KEPS_INLINE void storeUpperPair(double *p) const {
        _mm_storeu_pd(p, _mm256_extractf128_pd(v, 1));
    }
    KEPS_INLINE static Quad64 of(double a, double b, double c, double d) {
        return {_mm256_setr_pd(a, b, c, d)};
    }
    KEPS_INLINE double lane0() const { return _mm256_cvtsd_f64(v); }
    KEPS_INLINE double lane1() const {
        const __m128d low = _mm256_castpd256_pd128(v);
        return _mm_cvtsd_f64(_mm_unpackhi_pd(low, low));
    }
    // Up to 3 uops: the halves that feed each place's lower and upper sources, then a choice.
    template <int A, int B, int C, int D>
    KEPS_INLINE Quad64 lanes() const {
        constexpr int first = (A >> 1) | (C >> 1) << 4, second = (B >> 1) | (D >> 1) << 4;
        const __m256d x = _mm256_permute2f128_pd(v, v, first);
        const __m256d y = first == second ? x : _mm256_permute2f128_pd(v, v, second);
        return {_mm256_shuffle_pd(x, y, (A & 1) | (B & 1) << 1 | (C & 1) << 2 | (D & 1) << 3)};
    }
    KEPS_INLINE Quad64 withLane1(double x) const {
        return {_mm256_blend_pd(v, _mm256_set1_pd(x), 2)};
    }
};
KEPS_INLINE Quad64 operator+(Quad64 a, Quad64 b) {
    return {_mm256_add_pd(a.v, b.v)};
}
KEPS_INLINE Quad64 operator-(Quad64 a, Quad64 b) {
    return {_mm256_sub_pd(a.v, b.v)};
}
KEPS_INLINE Quad64 operator*(Quad64 a, Quad64 b) {
    return {_mm256_mul_pd(a.v, b.v)};
}
KEPS_INLINE Quad64 operator^(Quad64 a, Quad64 b) {
    return {_mm256_xor_pd(a.v, b.v)};
}
KEPS_INLINE Quad64 addSub(Quad64 a, Quad64 b) {
    return {_mm256_addsub_pd(a.v, b.v)};
}
KEPS_INLINE Quad64 lowPairs(Quad64 a, Quad64 b) {
    return {_mm256_permute2f128_pd(a.v, b.v, 0x20)};
}
KEPS_INLINE Quad64 highPairs(Quad64 a, Quad64 b) {
    return {_mm256_permute2f128_pd(a.v, b.v, 0x31)};
}
KEPS_INLINE Quad64 lowThenHigh(Quad64 a, Quad64 b) {
    return {_mm256_blend_pd(a.v, b.v, 0xC)};
}
// 3 uops each, 4 for both.
KEPS_INLINE Quad64 zipLow(Quad64 a, Quad64 b) {
    return lowPairs({_mm256_unpacklo_pd(a.v, b.v)}, {_mm256_unpackhi_pd(a.v, b.v)});
}
KEPS_INLINE Quad64 zipHigh(Quad64 a, Quad64 b) {
    return highPairs({_mm256_unpacklo_pd(a.v, b.v)}, {_mm256_unpackhi_pd(a.v, b.v)});
}
KEPS_INLINE Quad64 evens(Quad64 a, Quad64 b) {
    return {_mm256_unpacklo_pd(lowPairs(a, b).v, highPairs(a, b).v)};
}
KEPS_INLINE Quad64 odds(Quad64 a, Quad64 b) {
    return {_mm256_unpackhi_pd(lowPairs(a, b).v, highPairs(a, b).v)};
}

template <class T>
struct QuadOf {
    using type = Quad32;
};
template <>
struct QuadOf<double> {
    using type = Quad64;
};

template <class Q>
KEPS_INLINE Q all(typename Q::T x) {
    return Q::of(x, x, x, x);
}

template <class Q>
inline constexpr typename Q::T halfRoot = typename Q::T(0.70710678118654752440);
// cos and sin of a sixteenth of a turn.
template <class Q>
inline constexpr typename Q::T cos16 = typename Q::T(0.92387953251128675613);
template <class Q>
inline constexpr typename Q::T sin16 = typename Q::T(0.38268343236508977173);

// Spectra below are Perm: R0, R(N/2), then pairs.

template <class Q>
KEPS_INLINE void forwardReal(Q (&x)[1]) {
    const Q sums = lowPairs(x[0], x[0]) + (highPairs(x[0], x[0]) ^ Q::of(0, 0, -0.0F, -0.0F));
    // s0 + s1, s0 - s1, m0, -m1.
    const Q heads = sums.template lanes<0, 0, 2, 3>() +
                    (sums.template lanes<1, 1, 2, 3>() ^ Q::of(0, -0.0F, 0, 0));
    x[0] = lowThenHigh(heads, sums ^ Q::of(0, 0, 0, -0.0F));
}

template <class Q>
KEPS_INLINE void forwardReal(Q (&x)[2]) {
    constexpr typename Q::T c = halfRoot<Q>;
    Q even[1] = {x[0] + x[1]};
    const Q b = x[0] - x[1];
    forwardReal(even);
    const Q t = addSub(b.template lanes<1, 1, 1, 1>(), b.template lanes<3, 3, 3, 3>());
    const Q odd =
        (b.template lanes<0, 2, 0, 2>() ^ Q::of(0, -0.0F, 0, 0)) + t * Q::of(c, -c, -c, -c);
    x[0] = lowPairs(even[0], odd);
    x[1] = highPairs(even[0], odd);
}

template <class Q>
KEPS_INLINE void forwardReal(Q (&x)[4]) {
    constexpr typename Q::T r = halfRoot<Q>, c = cos16<Q>, s = sin16<Q>;
    Q even[2] = {x[0] + x[2], x[1] + x[3]};
    const Q low = x[0] - x[2], high = x[1] - x[3];
    forwardReal(even);
    // Bins 1, 5, 9, 13: a 4-point transform of (low - i high) exp(-2 pi i n / 16).
    const Q wr = Q::of(1, c, r, s), wi = Q::of(0, s, r, c);
    const Q re = low * wr - high * wi, im = low * wi + high * wr; // im with its sign turned
    const Q a = zipLow(re, im), b = zipHigh(re, im);
    const Q sums = a + b, differences = a - b;
    const Q u = lowPairs(sums, differences);
    const Q v = highPairs(sums, differences).template lanes<0, 1, 3, 2>() ^ Q::of(0, 0, -0.0F, 0);
    // Conjugates of bins 1, 5 and 9, 13; bin 13 is the conjugate of bin 3, bin 9 of bin 7.
    const Q p = u + v, q = u - v;
    const Q conjugate = Q::of(0, -0.0F, 0, 0);
    const Q odd0 = lowPairs(p, q.template lanes<2, 3, 0, 1>()) ^ conjugate;
    const Q odd1 = lowPairs(p.template lanes<2, 3, 0, 1>(), q) ^ conjugate;
    x[0] = lowPairs(even[0], odd0);
    x[1] = highPairs(even[0], odd0);
    x[2] = lowPairs(even[1], odd1);
    x[3] = highPairs(even[1], odd1);
}

template <class Q>
KEPS_INLINE void inverseReal(Q (&x)[1]) {
    const Q heads = x[0].template lanes<0, 0, 0, 0>() +
                    (x[0].template lanes<1, 1, 1, 1>() ^ Q::of(0, -0.0F, 0, -0.0F));
    x[0] = heads + x[0].template lanes<2, 3, 2, 3>() * Q::of(2, -2, -2, 2);
}

template <class Q>
KEPS_INLINE void inverseReal(Q (&x)[2]) {
    constexpr typename Q::T d = 2 * halfRoot<Q>;
    Q even[1] = {lowPairs(x[0], x[1])};
    const Q odd = highPairs(x[0], x[1]);
    inverseReal(even);
    const Q sums = lowPairs(odd, odd) + (highPairs(odd, odd) ^ Q::of(0, 0, -0.0F, -0.0F));
    const Q sloped = addSub(sums.template lanes<2, 2, 2, 2>(), sums.template lanes<1, 1, 1, 1>());
    const Q b = zipLow(sums.template lanes<0, 3, 2, 2>(), sloped) * Q::of(2, d, -2, -d);
    x[0] = even[0] + b;
    x[1] = even[0] - b;
}

template <class Q>
KEPS_INLINE void inverseReal(Q (&x)[4]) {
    constexpr typename Q::T r = 2 * halfRoot<Q>, c = 2 * cos16<Q>, s = 2 * sin16<Q>;
    Q even[2] = {lowPairs(x[0], x[1]), lowPairs(x[2], x[3])};
    const Q odd0 = highPairs(x[0], x[1]), odd1 = highPairs(x[2], x[3]); // bins 1, 3 and 5, 7
    inverseReal(even);
    const Q p = lowPairs(odd0, odd1);                              // bins 1, 5
    const Q q = highPairs(odd1, odd0) ^ Q::of(0, -0.0F, 0, -0.0F); // 9, 13, conjugates of 7, 3
    const Q sums = p + q, differences = p - q;
    const Q u = lowPairs(sums, differences);
    const Q v = highPairs(sums, differences).template lanes<0, 1, 3, 2>() ^ Q::of(0, 0, -0.0F, 0);
    const Q g01 = u + v, g23 = u - v;
    const Q re = evens(g01, g23), im = odds(g01, g23);
    const Q wr = Q::of(2, c, r, s), wi = Q::of(0, s, r, c);
    const Q low = re * wr - im * wi, high = re * wi + im * wr; // of the odd bins; high negated
    x[0] = even[0] + low;
    x[2] = even[0] - low;
    x[1] = even[1] - high;
    x[3] = even[1] + high;
}

// The spectrum in its layout, from and to Perm in registers. Quads of Pack lie one place lower.
template <Layout layout, int Quads, class Q>
KEPS_INLINE void loadSpectrum(const typename Q::T *src, Q (&x)[Quads]) {
    constexpr int n = 4 * Quads;
    if constexpr (layout == layoutPack) {
        x[0] = Q::of(loadOne(src), loadOne(src + n - 1), loadOne(src + 1), loadOne(src + 2));
        times<Quads - 1>([&](int i) KEPS_INLINE_LAMBDA { x[i + 1] = Q::load(src + 4 * i + 3); });
    } else {
        times<Quads>([&](int i) KEPS_INLINE_LAMBDA { x[i] = Q::load(src + 4 * i); });
        if constexpr (layout == layoutCcs) x[0] = x[0].withLane1(loadOne(src + n));
    }
}

template <Layout layout, int Quads, class Q>
KEPS_INLINE void storeSpectrum(typename Q::T *dst, const Q (&x)[Quads]) {
    constexpr int n = 4 * Quads;
    const auto middle = x[0].lane1();
    if constexpr (layout == layoutPack) {
        storeOne(dst, x[0].lane0());
        x[0].storeUpperPair(dst + 1);
        times<Quads - 1>([&](int i) KEPS_INLINE_LAMBDA { x[i + 1].store(dst + 4 * i + 3); });
        storeOne(dst + n - 1, middle);
    } else {
        (layout == layoutCcs ? x[0].withLane1(0) : x[0]).store(dst);
        times<Quads - 1>([&](int i) KEPS_INLINE_LAMBDA { x[i + 1].store(dst + 4 * i + 4); });
        if constexpr (layout == layoutCcs) {
            storeOne(dst + n, middle);
            storeOne(dst + n + 1, typename Q::T(0));
        }
    }
}

// 8 points of 64f from and to a spectrum, over pairs of lanes: nothing crosses the halves of a
// vector, which counts in place, where one transform waits for the last.
template <Layout layout, bool scaled>
KEPS_INLINE void inverse8_64f(const double *src, double *dst, double factor) {
    constexpr double r = 2 * 0.70710678118654752440, z = 0.0;
    const double *pairs = src + (layout == layoutPack ? 1 : 2);
    const double *middle = src + (layout == layoutCcs ? 8 : layout == layoutPack ? 7 : 1);
    const f64x2 z1 = load<f64x2>(pairs), z2 = load<f64x2>(pairs + 2), z3 = load<f64x2>(pairs + 4);
    const f64x2 head = {_mm_set1_pd(loadOne(src))}, last = {_mm_set1_pd(loadOne(middle))};
    const f64x2 a = head + f64x2{_mm_xor_pd(last.v, _mm_setr_pd(z, -z))};
    const f64x2 b = z2 * f64x2{_mm_setr_pd(2, -2)};
    const f64x2 sum = z1 + z3, difference = z1 - z3, weights = {_mm_setr_pd(2, r)};
    const f64x2 t = unpackLower(sum, difference) * weights;
    const f64x2 u = unpackUpper(difference, sum) * weights;
    const __m128d none = _mm_setzero_pd();
    const f64x2 even01 = a + b, even23 = a - b;
    const f64x2 odd01 = t - f64x2{_mm_blend_pd(none, u.v, 2)};
    const f64x2 odd23 = u + f64x2{_mm_blend_pd(none, t.v, 2)}; // negated
    store(dst, times_<scaled>(even01 + odd01, factor));
    store(dst + 2, times_<scaled>(even23 - odd23, factor));
    store(dst + 4, times_<scaled>(even01 - odd01, factor));
    store(dst + 6, times_<scaled>(even23 + odd23, factor));
}

template <Layout layout, bool scaled>
KEPS_INLINE void forward8_64f(const double *src, double *dst, double factor) {
    constexpr double z = 0.0;
    const f64x2 v01 = load<f64x2>(src), v23 = load<f64x2>(src + 2);
    const f64x2 v45 = load<f64x2>(src + 4), v67 = load<f64x2>(src + 6);
    const f64x2 sum01 = v01 + v45, sum23 = v23 + v67, low = v01 - v45, high = v23 - v67;
    const f64x2 sums = sum01 + sum23;
    const __m128d second = _mm_setr_pd(z, -z);
    const f64x2 heads =
        unpackLower(sums, sums) + f64x2{_mm_xor_pd(unpackUpper(sums, sums).v, second)}; // R0, R4
    const f64x2 bin2 = {_mm_xor_pd((sum01 - sum23).v, second)};
    const f64x2 b = unpackLower(low, high);
    const f64x2 sloped = f64x2{_mm_addsub_pd(unpackUpper(low, low).v, unpackUpper(high, high).v)} *
                         splat<f64x2>(0.70710678118654752440);
    const f64x2 bin1 = {_mm_xor_pd((b + sloped).v, second)}, bin3 = b - sloped;
    double *pairs = dst + (layout == layoutPack ? 1 : 2);
    const f64x2 ends = times_<scaled>(heads, factor);
    if constexpr (layout == layoutPerm) {
        store(dst, ends);
    } else if constexpr (layout == layoutCcs) {
        const f64x2 none = {_mm_setzero_pd()};
        store(dst, unpackLower(ends, none));
        store(dst + 8, unpackUpper(ends, none));
    } else {
        storeOne(dst, _mm_cvtsd_f64(ends.v));
        storeOne(dst + 7, _mm_cvtsd_f64(unpackUpper(ends, ends).v));
    }
    store(pairs, times_<scaled>(bin1, factor));
    store(pairs + 2, times_<scaled>(bin2, factor));
    store(pairs + 4, times_<scaled>(bin3, factor));
}

template <class T, int Order, Direction direction, Layout layout, bool scaled>
KepStatus owns_rFFT(const T *src, T *dst, T factor) {
    if constexpr (Order == 0) {
        storeOne(dst, scaled ? loadOne(src) * factor : loadOne(src));
        if (direction == forward && layout == layoutCcs) storeOne(dst + 1, T(0));
    } else if constexpr (Order == 1) {
        constexpr bool wide = layout == layoutCcs;
        const T a = loadOne(src), b = loadOne(src + (direction == inverse && wide ? 2 : 1));
        const T sum = scaled ? (a + b) * factor : a + b;
        const T difference = scaled ? (a - b) * factor : a - b;
        storeOne(dst, sum);
        if (direction == forward && wide) {
            storeOne(dst + 1, T(0));
            storeOne(dst + 2, difference);
            storeOne(dst + 3, T(0));
        } else {
            storeOne(dst + 1, difference);
        }
    } else if constexpr (Order == 3 && sizeof(T) == 8) {
        if constexpr (direction == forward)
            forward8_64f<layout, scaled>(src, dst, factor);
        else
            inverse8_64f<layout, scaled>(src, dst, factor);
    } else {
        using Q = typename QuadOf<T>::type;
        constexpr int quads = 1 << (Order - 2);
        Q x[quads];
        if constexpr (direction == forward) {
            times<quads>([&](int i) KEPS_INLINE_LAMBDA { x[i] = Q::load(src + 4 * i); });
            forwardReal(x);
        } else {
            loadSpectrum<layout>(src, x);
            inverseReal(x);
        }
        if constexpr (scaled)
            times<quads>([&](int i) KEPS_INLINE_LAMBDA { x[i] = x[i] * all<Q>(factor); });
        if constexpr (direction == forward)
            storeSpectrum<layout>(dst, x);
        else
            times<quads>([&](int i) KEPS_INLINE_LAMBDA { x[i].store(dst + 4 * i); });
    }
    return kepStatusOk;
}

// By order.
template <class T, Direction direction, Layout layout, bool scaled>
inline constexpr Kernel<T> tbl_rFFT_small[5] = {
    owns_rFFT<T, 0, direction, layout, scaled>, owns_rFFT<T, 1, direction, layout, scaled>,
    owns_rFFT<T, 2, direction, layout, scaled>, owns_rFFT<T, 3, direction, layout, scaled>,
    owns_rFFT<T, 4, direction, layout, scaled>};

} // namespace keps::fft::small
