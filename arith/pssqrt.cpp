// Sqrt: square roots of floats, complex floats and scaled integers. Every kernel works on a piece
// of the array, on whatever thread, and sets its own rounding.
#include "arith/elementary.hpp"
#include "frame/omp.hpp"

using namespace keps;

namespace {

struct Root {
    KEPS_INLINE f32x8 operator()(f32x8 x) const { return root(x); }
    KEPS_INLINE f64x4 operator()(f64x4 x) const { return root(x); }
};

// Roots, and non-zero when an element is below zero.
template <class V>
[[gnu::noinline]] int rootKernel(const typename V::element *src, typename V::element *dst, size n) {
    constexpr size lanes = V::lanes, round = 4 * lanes;
    const DefaultArithmetic scope;
    V below = zero<V>();
    size i = 0;
    for (; i + round <= n; i += round) {
        V x[4];
        times<4>([&](int k) KEPS_INLINE_LAMBDA { x[k] = load<V>(src + i + k * lanes); });
        times<4>([&](int k) KEPS_INLINE_LAMBDA { store(dst + i + k * lanes, root(x[k])); });
        times<4>([&](int k) KEPS_INLINE_LAMBDA { below = below | less(x[k], zero<V>()); });
    }
    for (; i + lanes <= n; i += lanes) {
        const V x = load<V>(src + i);
        store(dst + i, root(x));
        below = below | less(x, zero<V>());
    }
    if (i < n) {
        const V x = loadPart<V>(src + i, n - i);
        storePart(dst + i, root(x), n - i);
        below = below | less(x, zero<V>());
    }
    return signs(below) != 0;
}

template <class V>
KepStatus roots(const typename V::element *src, typename V::element *dst, int32_t len,
                int32_t threshold) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    const int bad = vectorSplit<teamOfTwo>(len, threshold, [=](size first, size n) {
        return rootKernel<V>(src + first, dst + first, n);
    });
    return bad ? kepStatusSqrtWarning : kepStatusOk;
}

// The principal root of a + bi: with t = sqrt((|a| + |a + bi|) / 2), (t, b / 2t) in the right half
// plane, (|b| / 2t, t with b's sign) in the left one.
struct Parts {
    f64x4 re, im;
};
KEPS_INLINE Parts principalRoot(f64x4 a, f64x4 b) {
    using V = f64x4;
    const V sign = splat<V>(-0.0), size = without(a, sign);
    const V t = root((size + root(a * a + b * b)) * splat<V>(0.5));
    const V other = b / (t + t);
    return {select(a, t, without(other, sign)), select(a, other, t | (b & sign))};
}
// Squares and their sum stay in range, and the root is not that of zero.
KEPS_INLINE unsigned outOfRange(f64x4 a, f64x4 b) {
    using V = f64x4;
    const V sign = splat<V>(-0.0);
    const V aSize = without(a, sign), bSize = without(b, sign);
    return signs((notLess(aSize, splat<V>(0x1p500)) | notLess(bSize, splat<V>(0x1p500))) |
                 less(max(aSize, bSize), splat<V>(0x1p-450)));
}
// Any a and b, by the conventions of the C library's complex root.
Kep64fc principalRootOne(double a, double b) {
    const double aSize = __builtin_fabs(a), bSize = __builtin_fabs(b);
    if (__builtin_isinf(b)) return {bSize, b};
    if (__builtin_isinf(a)) {
        const double rest = kep_isnan(b) ? b : 0;
        if (a > 0) return {a, kep_isnan(b) ? b : __builtin_copysign(0.0, b)};
        return {rest, kep_isnan(b) ? b : __builtin_copysign(aSize, b)};
    }
    if (aSize == 0 && bSize == 0) return {0, b};
    // By a power of 4, so that the root scales by a power of 2. The smaller part, which the scale
    // may have taken out of range, is formed from the larger one's root.
    const bool big = aSize >= 0x1p500 || bSize >= 0x1p500;
    const double scale = big ? 0x1p-600 : 0x1p600, unscale = big ? 0x1p300 : 0x1p-300;
    const Parts p = principalRoot(splat<f64x4>(aSize * scale), splat<f64x4>(bSize * scale));
    const double t = _mm256_cvtsd_f64(p.re.v) * unscale, other = bSize / (t + t);
    return a >= 0 ? Kep64fc{t, __builtin_copysign(other, b)}
                  : Kep64fc{other, __builtin_copysign(t, b)};
}

// Four complex values as parts, and back.
KEPS_INLINE Parts split(f64x4 first, f64x4 second) {
    const __m256d a = _mm256_permute2f128_pd(first.v, second.v, 0x20);
    const __m256d b = _mm256_permute2f128_pd(first.v, second.v, 0x31);
    return {{_mm256_unpacklo_pd(a, b)}, {_mm256_unpackhi_pd(a, b)}};
}
KEPS_INLINE two<f64x4> joined(const Parts &p) {
    const __m256d a = _mm256_unpacklo_pd(p.re.v, p.im.v), b = _mm256_unpackhi_pd(p.re.v, p.im.v);
    return {{_mm256_permute2f128_pd(a, b, 0x20)}, {_mm256_permute2f128_pd(a, b, 0x31)}};
}

KEPS_INLINE two<f64x4> loadFour(const Kep64fc *p) {
    const auto *x = reinterpret_cast<const double *>(p);
    return {load<f64x4>(x), load<f64x4>(x + 4)};
}
KEPS_INLINE two<f64x4> loadFour(const Kep32fc *p) {
    const f32x8 x = load<f32x8>(reinterpret_cast<const float *>(p));
    return {lowerToDouble(x), upperToDouble(x)};
}
KEPS_INLINE void storeFour(Kep64fc *p, two<f64x4> x) {
    auto *y = reinterpret_cast<double *>(p);
    store(y, x.lo);
    store(y + 4, x.hi);
}
KEPS_INLINE void storeFour(Kep32fc *p, two<f64x4> x) {
    store(reinterpret_cast<float *>(p), toFloat(x.lo, x.hi));
}

template <class T>
KEPS_INLINE void fourRoots(const T *src, T *dst) {
    const two<f64x4> x = loadFour(src);
    const Parts p = split(x.lo, x.hi);
    const Parts y = principalRoot(p.re, p.im);
    const unsigned marked = outOfRange(p.re, p.im);
    storeFour(dst, joined(y));
    if (marked) [[unlikely]] {
        alignas(32) double re[4], im[4];
        storeAligned(re, p.re);
        storeAligned(im, p.im);
        for (int k = 0; k < 4; ++k) {
            if (!(marked >> k & 1)) continue;
            const Kep64fc one = principalRootOne(re[k], im[k]);
            using R = decltype(T::re);
            storeOne(dst + k, T{static_cast<R>(one.re), static_cast<R>(one.im)});
        }
    }
}

template <class T>
[[gnu::noinline]] int complexRootKernel(const T *src, T *dst, size n) {
    const DefaultArithmetic scope;
    size i = 0;
    for (; i + 4 <= n; i += 4) fourRoots(src + i, dst + i);
    if (i < n) {
        T rest[4] = {{1, 0}, {1, 0}, {1, 0}, {1, 0}};
        for (size k = 0; k < n - i; ++k) rest[k] = loadOne(src + i + k);
        fourRoots(rest, rest);
        for (size k = 0; k < n - i; ++k) storeOne(dst + i + k, rest[k]);
    }
    return 0;
}

template <class T>
KepStatus complexRoots(const T *src, T *dst, int32_t len, int32_t threshold) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    vectorSplit<teamOfTwo>(len, threshold, [=](size first, size n) {
        return complexRootKernel(src + first, dst + first, n);
    });
    return kepStatusOk;
}

// Negative values have the root 0.
template <class T>
struct ScaledRoot {
    float power;
    KEPS_INLINE int128<T> operator()(int128<T> x) const {
        const two<i32x4> wide = widened(x);
        const f32x8 v = max(toFloat(wide.lo, wide.hi), zero<f32x8>());
        const auto most = static_cast<float>(largest<T>);
        return narrowTo<T>(nearestInt(min(root(v) * splat<f32x8>(power), splat<f32x8>(most))));
    }
};
// The root's two parts of four values, re, im, re, im: below 2^8 before scaling.
struct ScaledComplexRoot {
    double power;
    KEPS_INLINE i16x8 operator()(i16x8 x) const {
        const two<i32x4> wide = widened(x);
        const Parts p = split(toDouble(wide.lo), toDouble(wide.hi));
        Parts y = principalRoot(p.re, p.im);
        const f64x4 none = equal(without(p.re | p.im, splat<f64x4>(-0.0)), zero<f64x4>());
        y.im = without(y.im, none); // zero over zero
        y.re = without(y.re, none);
        const two<f64x4> z = joined(y);
        const auto whole = [this](f64x4 part) KEPS_INLINE_LAMBDA {
            return nearestInt(
                max(min(part * splat<f64x4>(power), splat<f64x4>(32767)), splat<f64x4>(-32768)));
        };
        return narrowSaturated(whole(z.lo), whole(z.hi));
    }
};
struct ScaledWideRoot {
    double power;
    KEPS_INLINE i32x4 part(i32x4 x) const {
        const f64x4 v = max(toDouble(x), zero<f64x4>());
        return nearestInt(min(root(v) * splat<f64x4>(power), splat<f64x4>(32767)));
    }
    KEPS_INLINE i16x8 operator()(two<i32x4> x) const {
        return narrowSaturated(part(x.lo), part(x.hi));
    }
};

// Non-zero when an element is negative.
template <class T>
[[gnu::noinline]] int anyNegative(const T *src, size n) {
    constexpr size lanes = 32 / sizeof(T);
    f32x8 all = zero<f32x8>();
    size i = 0;
    for (; i + lanes <= n; i += lanes)
        all = all | load<f32x8>(reinterpret_cast<const float *>(src + i));
    const auto bits = static_cast<unsigned>(_mm_movemask_epi8(
        _mm_or_si128(_mm_castps_si128(lower(all).v), _mm_castps_si128(upper(all).v))));
    constexpr unsigned tops = sizeof(T) == 2 ? 0xAAAA : 0x8888;
    int negative = (bits & tops) != 0;
    for (; i < n; ++i) negative |= loadOne(src + i) < 0;
    return negative;
}

template <int block, class Op, class From, class To>
[[gnu::noinline]] int scaledKernel(const From *src, To *dst, size n, Op op) {
    const DefaultArithmetic scope;
    int warning = 0;
    if constexpr (std::is_signed_v<From>) warning = anyNegative(src, n);
    map<block, 1>(n, op, dst, src);
    return warning;
}

template <class T>
KepStatus rootsSfs(const T *src, T *dst, int32_t len, int scaleFactor) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    const ScaledRoot<T> op{static_cast<float>(scaleOf(scaleFactor))};
    const int bad = vectorSplit<teamOfTwo>(len, 2048, [=](size first, size n) {
        return scaledKernel<8>(src + first, dst + first, n, op);
    });
    return bad ? kepStatusSqrtWarning : kepStatusOk;
}

KepStatus complexRootsSfs(const Kep16sc *src, Kep16sc *dst, int32_t len, int scaleFactor) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    const ScaledComplexRoot op{scaleOf(scaleFactor)};
    vectorSplit<teamOfTwo>(len, 256, [=](size first, size n) {
        return scaledKernel<4>(src + first, dst + first, n, op);
    });
    return kepStatusOk;
}

// Below the window every positive element saturates, which the scale of its lower end does too.
KepStatus wideRootsSfs(const Kep32s *src, Kep16s *dst, int32_t len, int scaleFactor) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if (scaleFactor > 16) return kepsZero_16s(dst, len);
    const ScaledWideRoot op{scaleOf(scaleFactor)};
    // Below the window the array is not split.
    const int32_t threshold = scaleFactor < -14 ? __INT32_MAX__ : 1024;
    const int bad = vectorSplit<teamOfTwo>(len, threshold, [=](size first, size n) {
        return scaledKernel<8>(src + first, dst + first, n, op);
    });
    return bad ? kepStatusSqrtWarning : kepStatusOk;
}

} // namespace

// clang-format off
KepStatus kepsSqrt_32f(const Kep32f *src, Kep32f *dst, int32_t len) { return roots<f32x8>(src, dst, len, 4096); }
KepStatus kepsSqrt_64f(const Kep64f *src, Kep64f *dst, int32_t len) { return roots<f64x4>(src, dst, len, 512); }
KepStatus kepsSqrt_32fc(const Kep32fc *src, Kep32fc *dst, int32_t len) { return complexRoots(src, dst, len, 512); }
KepStatus kepsSqrt_64fc(const Kep64fc *src, Kep64fc *dst, int32_t len) { return complexRoots(src, dst, len, 64); }
KepStatus kepsSqrt_32f_I(Kep32f *srcDst, int32_t len) { return kepsSqrt_32f(srcDst, srcDst, len); }
KepStatus kepsSqrt_64f_I(Kep64f *srcDst, int32_t len) { return kepsSqrt_64f(srcDst, srcDst, len); }
KepStatus kepsSqrt_32fc_I(Kep32fc *srcDst, int32_t len) { return kepsSqrt_32fc(srcDst, srcDst, len); }
KepStatus kepsSqrt_64fc_I(Kep64fc *srcDst, int32_t len) { return kepsSqrt_64fc(srcDst, srcDst, len); }
KepStatus kepsSqrt_8u_Sfs(const Kep8u *src, Kep8u *dst, int32_t len, int scaleFactor) { return rootsSfs(src, dst, len, scaleFactor); }
KepStatus kepsSqrt_16u_Sfs(const Kep16u *src, Kep16u *dst, int32_t len, int scaleFactor) { return rootsSfs(src, dst, len, scaleFactor); }
KepStatus kepsSqrt_16s_Sfs(const Kep16s *src, Kep16s *dst, int32_t len, int scaleFactor) { return rootsSfs(src, dst, len, scaleFactor); }
KepStatus kepsSqrt_16sc_Sfs(const Kep16sc *src, Kep16sc *dst, int32_t len, int scaleFactor) { return complexRootsSfs(src, dst, len, scaleFactor); }
KepStatus kepsSqrt_32s16s_Sfs(const Kep32s *src, Kep16s *dst, int32_t len, int scaleFactor) { return wideRootsSfs(src, dst, len, scaleFactor); }
KepStatus kepsSqrt_8u_ISfs(Kep8u *srcDst, int32_t len, int scaleFactor) { return rootsSfs(srcDst, srcDst, len, scaleFactor); }
KepStatus kepsSqrt_16u_ISfs(Kep16u *srcDst, int32_t len, int scaleFactor) { return rootsSfs(srcDst, srcDst, len, scaleFactor); }
KepStatus kepsSqrt_16s_ISfs(Kep16s *srcDst, int32_t len, int scaleFactor) { return rootsSfs(srcDst, srcDst, len, scaleFactor); }
KepStatus kepsSqrt_16sc_ISfs(Kep16sc *srcDst, int32_t len, int scaleFactor) { return complexRootsSfs(srcDst, srcDst, len, scaleFactor); }
// clang-format on
