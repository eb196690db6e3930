// Complex transforms of 1 to 64 points in straight-line code. Values stay interleaved: a row of
// columns is transformed down the columns, turned, transposed, and transformed again, all in
// registers as far as they reach.
#pragma once

#include "transforms/fft/butterfly.hpp"
#include "transforms/fft/quarter_wave.hpp"

namespace keps::fft::small {

// The caller's points as interleaved vectors.
template <class E>
struct Points {
    using T = std::remove_const_t<E>;
    using V = typename Traits<T>::V;
    E *p;

    KEPS_INLINE V load(int i) const { return keps::load<V>(p + 2 * i); }
    KEPS_INLINE void store(int i, V x) const { keps::store(p + 2 * i, x); }
    KEPS_INLINE Half<V> loadHalf(int i) const { return keps::load<Half<V>>(p + 2 * i); }
    KEPS_INLINE void storeHalf(int i, Half<V> x) const { keps::store(p + 2 * i, x); }
    KEPS_INLINE E *re(int i) const { return p + 2 * i; }
    KEPS_INLINE E *im(int i) const { return p + 2 * i + 1; }
};

KEPS_INLINE f32x4 loadPair(const float *p) {
    return {_mm_castpd_ps(_mm_set_sd(loadAs<double>(p)))};
}
KEPS_INLINE void storePair(float *p, f32x4 x) {
    storeAs(p, _mm_cvtsd_f64(_mm_castps_pd(x.v)));
}

// Two arrays: 2 shuffles and a join a vector on the way in, an extraction and 2 shuffles out.
template <class E>
struct SplitPoints {
    using T = std::remove_const_t<E>;
    using V = typename Traits<T>::V;
    E *reals, *imags;

    KEPS_INLINE V load(int i) const {
        const auto a = keps::load<Half<V>>(reals + i), b = keps::load<Half<V>>(imags + i);
        return join(unpackLower(a, b), unpackUpper(a, b));
    }
    KEPS_INLINE void store(int i, V x) const {
        if constexpr (sizeof(T) == 4) {
            const __m128 a = lower(x).v, b = upper(x).v;
            keps::store(reals + i, f32x4{_mm_shuffle_ps(a, b, 0x88)});
            keps::store(imags + i, f32x4{_mm_shuffle_ps(a, b, 0xDD)});
        } else {
            keps::store(reals + i, unpackLower(lower(x), upper(x)));
            keps::store(imags + i, unpackUpper(lower(x), upper(x)));
        }
    }
    KEPS_INLINE Half<V> loadHalf(int i) const {
        if constexpr (sizeof(T) == 4)
            return unpackLower(loadPair(reals + i), loadPair(imags + i));
        else
            return {_mm_loadh_pd(_mm_set_sd(loadOne(reals + i)), imags + i)};
    }
    KEPS_INLINE void storeHalf(int i, f32x4 x) const {
        storePair(reals + i, {_mm_permute_ps(x.v, 0x88)});
        storePair(imags + i, {_mm_permute_ps(x.v, 0xDD)});
    }
    KEPS_INLINE void storeHalf(int i, f64x2 x) const {
        storeOne(reals + i, _mm_cvtsd_f64(x.v));
        storeOne(imags + i, _mm_cvtsd_f64(_mm_unpackhi_pd(x.v, x.v)));
    }
    KEPS_INLINE E *re(int i) const { return reals + i; }
    KEPS_INLINE E *im(int i) const { return imags + i; }
};

template <Direction direction, int R, class V>
KEPS_INLINE void butterfly(V *a) {
    if constexpr (R == 2) {
        const V b = a[0] - a[1];
        a[0] = a[0] + a[1];
        a[1] = b;
    } else if constexpr (R == 4) {
        interleavedRadix4<direction>(a[0], a[1], a[2], a[3]);
    } else {
        const V root = splat<V>(typename V::element(0.70710678118654752440));
        interleavedRadix4<direction>(a[0], a[2], a[4], a[6]);
        interleavedRadix4<direction>(a[1], a[3], a[5], a[7]);
        const V o0 = a[1], o2 = turned<direction>(a[5]);
        const V t1 = turned<direction>(a[3]), t3 = turned<direction>(a[7]);
        const V o1 = (a[3] + t1) * root, o3 = (t3 - a[7]) * root;
        const V e0 = a[0], e1 = a[2], e2 = a[4], e3 = a[6];
        a[0] = e0 + o0;
        a[4] = e0 - o0;
        a[1] = e1 + o1;
        a[5] = e1 - o1;
        a[2] = e2 + o2;
        a[6] = e2 - o2;
        a[3] = e3 + o3;
        a[7] = e3 - o3;
    }
}

// The turns between the two passes of an R by C transform, in the shape of complexMul: row k,
// column c holds exp(-+2 pi i k c / RC).
template <class T, int R, int C, Direction direction>
struct Turns {
    alignas(64) T re[R][2 * C], im[R][2 * C];
    constexpr Turns() : re{}, im{} {
        constexpr auto &wave = []() -> auto & {
            if constexpr (sizeof(T) == 4)
                return fft_fix_twiddle_table_32f;
            else
                return fft_fix_twiddle_table_64f;
        }
        ();
        for (int k = 0; k < R; ++k) {
            for (int c = 0; c < C; ++c) {
                const int angle = k * c * (1024 / (R * C)); // of 1024 in a turn
                const int quadrant = angle / 256, rest = angle % 256;
                const T s = wave[rest], co = wave[256 - rest];
                const T x = quadrant == 0 ? co : quadrant == 1 ? -s : quadrant == 2 ? -co : s;
                const T y = quadrant == 0 ? s : quadrant == 1 ? co : quadrant == 2 ? -s : -co;
                const T w = direction == forward ? -y : y;
                re[k][2 * c] = re[k][2 * c + 1] = x;
                im[k][2 * c] = -w;
                im[k][2 * c + 1] = w;
            }
        }
    }
};
template <class T, int R, int C, Direction direction>
inline constexpr Turns<T, R, C, direction> turns{};

// factor on every output, or nothing.
template <bool scaled, class V>
KEPS_INLINE V times_(V x, typename V::element factor) {
    if constexpr (scaled) return x * splat<V>(factor);
    return x;
}

// R * C points as R rows of C columns.
template <int R, int C, Direction direction, bool scaled, class In, class Out>
KEPS_INLINE void rowsByColumns(In in, Out out, typename In::T factor) {
    using V = typename In::V;
    constexpr int across = V::lanes / 2, columnBlocks = C / across, rowBlocks = R / across;
    constexpr auto &turn = turns<typename In::T, R, C, direction>;
    V turnedRows[C][rowBlocks];
    times<columnBlocks>([&](int block) KEPS_INLINE_LAMBDA {
        V a[R];
        times<R>([&](int r) KEPS_INLINE_LAMBDA { a[r] = in.load(r * C + block * across); });
        butterfly<direction, R>(a);
        times<R - 1>([&](int k) KEPS_INLINE_LAMBDA {
            a[k + 1] = complexMul(a[k + 1], loadAligned<V>(turn.re[k + 1] + block * V::lanes),
                                  loadAligned<V>(turn.im[k + 1] + block * V::lanes));
        });
        times<rowBlocks>([&](int rows) KEPS_INLINE_LAMBDA {
            transposeComplex(a + rows * across);
            times<across>([&](int i) KEPS_INLINE_LAMBDA {
                turnedRows[block * across + i][rows] = a[rows * across + i];
            });
        });
    });
    times<rowBlocks>([&](int rows) KEPS_INLINE_LAMBDA {
        V a[C];
        times<C>([&](int c) KEPS_INLINE_LAMBDA { a[c] = turnedRows[c][rows]; });
        butterfly<direction, C>(a);
        times<C>([&](int k) KEPS_INLINE_LAMBDA {
            out.store(R * k + across * rows, times_<scaled>(a[k], factor));
        });
    });
}

template <bool scaled, class In, class Out>
KEPS_INLINE void points1(In in, Out out, typename In::T factor) {
    const auto re = loadOne(in.re(0)), im = loadOne(in.im(0));
    storeOne(out.re(0), scaled ? re * factor : re);
    storeOne(out.im(0), scaled ? im * factor : im);
}

template <bool scaled, class In, class Out>
KEPS_INLINE void points2_32f(In in, Out out, float factor) {
    const __m128 x = in.loadHalf(0).v, a = _mm_movelh_ps(x, x), b = _mm_movehl_ps(x, x);
    const __m128 sign = _mm_setr_ps(0.0F, 0.0F, -0.0F, -0.0F);
    out.storeHalf(0, times_<scaled>(f32x4{_mm_add_ps(a, _mm_xor_ps(b, sign))}, factor));
}

template <bool scaled, class In, class Out>
KEPS_INLINE void points2_64f(In in, Out out, double factor) {
    const f64x2 a = in.loadHalf(0), b = in.loadHalf(1);
    out.storeHalf(0, times_<scaled>(a + b, factor));
    out.storeHalf(1, times_<scaled>(a - b, factor));
}

// Two pairs of points side by side: s holds the sums of points 0, 2 and of 1, 3, d their
// differences; then sums and differences of the pairs, the last turned.
template <Direction direction, bool scaled, class In, class Out>
KEPS_INLINE void points4_32f(In in, Out out, float factor) {
    const __m128 a = in.loadHalf(0).v, b = in.loadHalf(2).v;
    const __m128 s = _mm_add_ps(a, b), d = _mm_sub_ps(a, b);
    const __m128 u = _mm_movelh_ps(s, d);
    constexpr float z = 0.0F;
    const __m128 sign = direction == forward ? _mm_setr_ps(z, z, z, -z) : _mm_setr_ps(z, z, -z, z);
    const __m128 v = _mm_xor_ps(_mm_shuffle_ps(s, d, 0xBE), sign);
    out.storeHalf(0, times_<scaled>(f32x4{_mm_add_ps(u, v)}, factor));
    out.storeHalf(2, times_<scaled>(f32x4{_mm_sub_ps(u, v)}, factor));
}

// Point by point: nothing crosses the halves of a vector, so the way through is shorter.
template <Direction direction, bool scaled, class In, class Out>
KEPS_INLINE void points4_64f(In in, Out out, double factor) {
    const f64x2 a = in.loadHalf(0), b = in.loadHalf(1), c = in.loadHalf(2), d = in.loadHalf(3);
    const f64x2 s0 = a + c, d0 = a - c, s1 = b + d, d1 = b - d;
    constexpr double z = 0.0;
    const __m128d sign = direction == forward ? _mm_setr_pd(z, -z) : _mm_setr_pd(-z, z);
    const f64x2 turn = {_mm_xor_pd(_mm_shuffle_pd(d1.v, d1.v, 1), sign)};
    out.storeHalf(0, times_<scaled>(s0 + s1, factor));
    out.storeHalf(1, times_<scaled>(d0 + turn, factor));
    out.storeHalf(2, times_<scaled>(s0 - s1, factor));
    out.storeHalf(3, times_<scaled>(d0 - turn, factor));
}

// As points4_64f: in place, one transform waits for the last, and the way through is what counts.
// a + i b is one addsub, and a - i b takes b with its sign turned where b is made.
template <Direction direction, bool scaled, class In, class Out>
KEPS_INLINE void points8_64f(In in, Out out, double factor) {
    const auto plusTurned = [](f64x2 a, f64x2 b) KEPS_INLINE_LAMBDA {
        return f64x2{_mm_addsub_pd(a.v, _mm_shuffle_pd(b.v, b.v, 1))};
    };
    const f64x2 root = splat<f64x2>(0.70710678118654752440);
    const f64x2 minusRoot = splat<f64x2>(-0.70710678118654752440);
    f64x2 x[8];
    times<8>([&](int i) KEPS_INLINE_LAMBDA { x[i] = in.loadHalf(i); });
    // Bins 0, 1, 2, 3 of the inverse, and bin 2 negated.
    const auto radix4 = [&](int i, f64x2(&to)[5]) KEPS_INLINE_LAMBDA {
        const f64x2 s0 = x[i] + x[i + 4], d0 = x[i] - x[i + 4], s1 = x[i + 2] + x[i + 6];
        to[0] = s0 + s1;
        to[1] = plusTurned(d0, x[i + 2] - x[i + 6]);
        to[2] = s0 - s1;
        to[3] = plusTurned(d0, x[i + 6] - x[i + 2]);
        to[4] = s1 - s0;
    };
    f64x2 even[5], odd[5];
    radix4(0, even);
    radix4(1, odd);
    const f64x2 a = odd[1] * root, b = odd[3] * root;
    const f64x2 o1 = plusTurned(a, a), o3 = plusTurned(odd[3] * minusRoot, b);
    // Bin k of the inverse is bin 8 - k of the forward transform.
    const auto put = [&](int k, f64x2 y) KEPS_INLINE_LAMBDA {
        out.storeHalf(direction == inverse ? k : -k & 7, times_<scaled>(y, factor));
    };
    put(0, even[0] + odd[0]);
    put(4, even[0] - odd[0]);
    put(1, even[1] + o1);
    put(5, even[1] - o1);
    put(2, plusTurned(even[2], odd[2]));
    put(6, plusTurned(even[2], odd[4]));
    put(3, even[3] + o3);
    put(7, even[3] - o3);
}

// Two rows of four: sums and turned differences, brought side by side as points c of both, and a
// 4-point transform down the pairs.
template <Direction direction, bool scaled, class In, class Out>
KEPS_INLINE void points8_32f(In in, Out out, float factor) {
    constexpr auto &turn = turns<float, 2, 4, direction>;
    const f32x8 a = in.load(0), b = in.load(4);
    const f32x8 s = a + b;
    const f32x8 d =
        complexMul(a - b, loadAligned<f32x8>(turn.re[1]), loadAligned<f32x8>(turn.im[1]));
    const __m256d sd = _mm256_castps_pd(s.v), dd = _mm256_castps_pd(d.v);
    const f32x8 even = {_mm256_castpd_ps(_mm256_unpacklo_pd(sd, dd))};
    const f32x8 odd = {_mm256_castpd_ps(_mm256_unpackhi_pd(sd, dd))};
    const f32x8 lows = lowerHalves(even, odd), highs = upperHalves(even, odd);
    const f32x8 sums = lows + highs, differences = lows - highs;
    const f32x8 u = lowerHalves(sums, differences);
    f32x8 v = upperHalves(sums, differences);
    constexpr float z = 0.0F;
    const __m256 sign = direction == forward ? _mm256_setr_ps(z, z, z, z, z, -z, z, -z)
                                             : _mm256_setr_ps(z, z, z, z, -z, z, -z, z);
    const __m256i turning = _mm256_setr_epi32(0, 1, 2, 3, 1, 0, 3, 2);
    v = {_mm256_xor_ps(_mm256_permutevar_ps(v.v, turning), sign)};
    out.store(0, times_<scaled>(u + v, factor));
    out.store(4, times_<scaled>(u - v, factor));
}

template <int Order, Direction direction, bool scaled, class In, class Out>
KEPS_INLINE void transform(In in, Out out, typename In::T factor) {
    constexpr bool single = sizeof(typename In::T) == 4;
    if constexpr (Order == 0) points1<scaled>(in, out, factor);
    if constexpr (Order == 1 && single) points2_32f<scaled>(in, out, factor);
    if constexpr (Order == 1 && !single) points2_64f<scaled>(in, out, factor);
    if constexpr (Order == 2 && single) points4_32f<direction, scaled>(in, out, factor);
    if constexpr (Order == 2 && !single) points4_64f<direction, scaled>(in, out, factor);
    if constexpr (Order == 3 && single) points8_32f<direction, scaled>(in, out, factor);
    if constexpr (Order == 3 && !single) points8_64f<direction, scaled>(in, out, factor);
    if constexpr (Order == 4) rowsByColumns<4, 4, direction, scaled>(in, out, factor);
    if constexpr (Order == 5) rowsByColumns<8, 4, direction, scaled>(in, out, factor);
    if constexpr (Order == 6) rowsByColumns<8, 8, direction, scaled>(in, out, factor);
}

// The kernels return the status, so that a worker ends in a jump to its kernel.
template <class T, int Order, Direction direction, bool scaled>
KepStatus owns_cFFT(const T *src, T *dst, T factor) {
    transform<Order, direction, scaled>(Points<const T>{src}, Points<T>{dst}, factor);
    return kepStatusOk;
}

template <class T, int Order, bool scaled>
KepStatus owns_crFFT(const T *srcRe, const T *srcIm, T *dstRe, T *dstIm, T factor) {
    transform<Order, forward, scaled>(SplitPoints<const T>{srcRe, srcIm},
                                      SplitPoints<T>{dstRe, dstIm}, factor);
    return kepStatusOk;
}

template <class T>
using Kernel = KepStatus (*)(const T *src, T *dst, T factor);
template <class T>
using SplitKernel = KepStatus (*)(const T *srcRe, const T *srcIm, T *dstRe, T *dstIm, T factor);

// By order.
template <class T, Direction direction, bool scaled>
inline constexpr Kernel<T> tbl_cFFT_small[7] = {
    owns_cFFT<T, 0, direction, scaled>, owns_cFFT<T, 1, direction, scaled>,
    owns_cFFT<T, 2, direction, scaled>, owns_cFFT<T, 3, direction, scaled>,
    owns_cFFT<T, 4, direction, scaled>, owns_cFFT<T, 5, direction, scaled>,
    owns_cFFT<T, 6, direction, scaled>};

// Forward; the inverse takes its arrays in exchange.
template <class T, bool scaled>
inline constexpr SplitKernel<T> tbl_crFFT_small[7] = {
    owns_crFFT<T, 0, scaled>, owns_crFFT<T, 1, scaled>, owns_crFFT<T, 2, scaled>,
    owns_crFFT<T, 3, scaled>, owns_crFFT<T, 4, scaled>, owns_crFFT<T, 5, scaled>,
    owns_crFFT<T, 6, scaled>};

} // namespace keps::fft::small
