// The loop of every kernel. A kernel is a struct with
//   using V;                                 its vector
//   static constexpr int in, out;            how many arrays it reads and writes
//   static void fast(x, y, outside);         vectors y from vectors x; the sign bits of outside
//   mark
//                                            lanes whose y does not hold
//   static int rare(const T *x, T *y);       one such lane, by itself; its code
// or, in place of fast, its two stages:
//   static constexpr int mids;               how many vectors pass from the first to the second
//   static void first(x, mid, extent);       joins to extent what it wants to know of x
//   static V outside(extent);                the lanes where any x joined to it was outside
//   static void second(mid, y);
// which run one after the other over stretches of the arrays: a chain of dependent operations too
// long for the processor to look across many of them becomes two that are not. A kernel may have
//   static void again(x, y, outside);        settles marked lanes itself, for rare to see fewer
// Lanes that are marked in the end are passed to rare. A tail goes through the same code as a
// vector whose other lanes are zeros.
#pragma once

#include <bit>

#include "arith/vmath/vmath.hpp"
#include "frame/fpstate.hpp"
#include "frame/simd/math256.hpp"

namespace keps::vmath {

// The vector control register as the kernels want it: all exceptions masked, to nearest, denormals
// kept. On leaving, the caller's word comes back with the exceptions that the results have raised:
// of the block code only inexactness counts, since it also runs on lanes that it does not settle.
class Control {
public:
    Control() : found(_mm_getcsr()) {
        // Exceptions of before may stay: loading the word costs as much as some vectors.
        if ((found & ~exceptions) != own) kep_set_cw_ssx(own);
    }
    ~Control() {
        const unsigned current = _mm_getcsr();
        const unsigned left = found | raised | (current & inexact);
        if (left != current) kep_set_cw_ssx(left);
    }
    Control(const Control &) = delete;
    Control &operator=(const Control &) = delete;

    void beginRare() {
        raised |= _mm_getcsr() & inexact;
        kep_set_cw_ssx(own);
    }
    void endRare() {
        raised |= _mm_getcsr() & exceptions;
        kep_set_cw_ssx(own);
    }

private:
    static constexpr unsigned own = 0x1F80, exceptions = 0x3F, inexact = 0x20;
    unsigned found, raised = 0;
};

// The rare paths that the scalar helpers share.
int vdexp_cout_rare(const double *x, double *y);
int vdln_cout_rare(const double *x, double *y);
int vdatan2_cout_rare(const double *yx, double *angle);
int vdpowx_cout_rare(const double *xy, double *y);

template <class K>
using Element = typename K::V::element;

// The marked lanes of a block; its inputs stand in x. Returns the last non-zero code, or code.
template <class K>
[[gnu::noinline, gnu::cold]] int settle(const Element<K> (*x)[K::V::lanes], Element<K> *const *y,
                                        unsigned marked, int code, Control &control) {
    control.beginRare();
    for (; marked; marked &= marked - 1) {
        const int lane = __builtin_ctz(marked);
        Element<K> from[K::in], to[K::out];
        for (int k = 0; k < K::in; ++k) from[k] = x[k][lane];
        if (const int met = K::rare(from, to)) code = met;
        for (int k = 0; k < K::out; ++k) storeOne(y[k] + lane, to[k]);
    }
    control.endRare();
    return code;
}

template <class K>
concept TwoStages = requires {
    K::mids;
};

// len elements, vector by vector with all the care that one may need. Returns the last non-zero
// code, or code.
template <class K>
KEPS_INLINE int runVectors(const Element<K> *const *src, Element<K> *const *dst, size len, int code,
                           Control &control) {
    using V = typename K::V;
    // Vectors y from vectors x; settled if the bits of among are marked.
    const auto compute = [&](const V *x, V *y, unsigned among) KEPS_INLINE_LAMBDA {
        V outside;
        if constexpr (TwoStages<K>) {
            V mid[K::mids], extent = zero<V>();
            K::first(x, mid, extent);
            outside = K::outside(extent);
            K::second(mid, y);
        } else {
            K::fast(x, y, outside);
        }
        unsigned marked = signs(outside) & among;
        if constexpr (requires { K::again(x, y, outside); }) {
            if (marked) [[unlikely]] {
                K::again(x, y, outside);
                marked = signs(outside) & among;
            }
        }
        return marked;
    };
    const auto care = [&](const V *x, size i, unsigned marked) KEPS_INLINE_LAMBDA {
        alignas(32) Element<K> held[K::in][V::lanes];
        Element<K> *to[K::out];
        times<K::in>([&](int k) KEPS_INLINE_LAMBDA { store(held[k], x[k]); });
        times<K::out>([&](int k) KEPS_INLINE_LAMBDA { to[k] = dst[k] + i; });
        code = settle<K>(held, to, marked, code, control);
    };
    size i = 0;
    for (; i + V::lanes <= len; i += V::lanes) {
        V x[K::in], y[K::out];
        times<K::in>([&](int k) KEPS_INLINE_LAMBDA { x[k] = load<V>(src[k] + i); });
        const unsigned marked = compute(x, y, ~0U);
        times<K::out>([&](int k) KEPS_INLINE_LAMBDA { store(dst[k] + i, y[k]); });
        if (marked) [[unlikely]]
            care(x, i, marked);
    }
    if (const size rest = len - i) {
        V x[K::in], y[K::out];
        times<K::in>([&](int k) KEPS_INLINE_LAMBDA { x[k] = loadPart<V>(src[k] + i, rest); });
        const unsigned marked = compute(x, y, (1U << rest) - 1);
        times<K::out>([&](int k) KEPS_INLINE_LAMBDA { storePart(dst[k] + i, y[k], rest); });
        if (marked) [[unlikely]]
            care(x, i, marked);
    }
    return code;
}

template <class K>
[[gnu::noinline, gnu::cold]] int runMarked(const Element<K> *const *src, Element<K> *const *dst,
                                           size len, int code, Control &control) {
    return runVectors<K>(src, dst, len, code, control);
}

constexpr size stretch = 32; // vectors: what passes between the stages stays in the nearest cache

template <class K>
KEPS_INLINE int runStages(const Element<K> *const *src, Element<K> *const *dst, size len,
                          Control &control) {
    using V = typename K::V;
    int code = 0;
    alignas(32) Element<K> mid[K::mids][stretch * V::lanes];
    for (size i = 0, n; i < len; i += n) {
        n = len - i < stretch * V::lanes ? len - i : stretch * V::lanes;
        const size rest = n % V::lanes, end = n - rest;
        V extent = zero<V>(), last = extent;
        const auto first = [&](const V *x, size at, V &joined) KEPS_INLINE_LAMBDA {
            V m[K::mids];
            K::first(x, m, joined);
            times<K::mids>([&](int k) KEPS_INLINE_LAMBDA { storeAligned(mid[k] + at, m[k]); });
        };
#pragma GCC unroll 2
        for (size at = 0; at < end; at += V::lanes) {
            V x[K::in];
            times<K::in>([&](int k) KEPS_INLINE_LAMBDA { x[k] = load<V>(src[k] + i + at); });
            first(x, at, extent);
        }
        if (rest) {
            V x[K::in];
            times<K::in>([&](int k)
                             KEPS_INLINE_LAMBDA { x[k] = loadPart<V>(src[k] + i + end, rest); });
            first(x, end, last);
            last = last & firstLanes<V>(rest);
        }
        if (signs(K::outside(extent) | K::outside(last))) [[unlikely]] {
            const Element<K> *from[K::in];
            Element<K> *to[K::out];
            for (int k = 0; k < K::in; ++k) from[k] = src[k] + i;
            for (int k = 0; k < K::out; ++k) to[k] = dst[k] + i;
            code = runMarked<K>(from, to, n, code, control);
            continue;
        }
        const auto second = [&](V *y, size at) KEPS_INLINE_LAMBDA {
            V m[K::mids];
            times<K::mids>([&](int k) KEPS_INLINE_LAMBDA { m[k] = loadAligned<V>(mid[k] + at); });
            K::second(m, y);
        };
#pragma GCC unroll 2
        for (size at = 0; at < end; at += V::lanes) {
            V y[K::out];
            second(y, at);
            times<K::out>([&](int k) KEPS_INLINE_LAMBDA { store(dst[k] + i + at, y[k]); });
        }
        if (rest) {
            V y[K::out];
            second(y, end);
            times<K::out>([&](int k)
                              KEPS_INLINE_LAMBDA { storePart(dst[k] + i + end, y[k], rest); });
        }
    }
    return code;
}

template <class K>
KEPS_INLINE int run(const Element<K> *const (&src)[K::in], Element<K> *const (&dst)[K::out],
                    int32_t len) {
    Control control;
    if constexpr (TwoStages<K>)
        return runStages<K>(src, dst, len, control);
    else
        return runVectors<K>(src, dst, len, 0, control);
}

template <class K>
KEPS_INLINE int run(const Element<K> *src, Element<K> *dst, int32_t len) {
    const Element<K> *const from[] = {src};
    Element<K> *const to[] = {dst};
    return run<K>(from, to, len);
}

// The same constant for a vector or a single double.
template <class V>
KEPS_INLINE V constant(double x) {
    if constexpr (std::is_same_v<V, double>)
        return x;
    else
        return splat<V>(static_cast<typename V::element>(x));
}

template <class K>
KEPS_INLINE int run(const Element<K> *src, Element<K> *dst1, Element<K> *dst2, int32_t len) {
    const Element<K> *const from[] = {src};
    Element<K> *const to[] = {dst1, dst2};
    return run<K>(from, to, len);
}
template <class K>
KEPS_INLINE int run(const Element<K> *src1, const Element<K> *src2, Element<K> *dst, int32_t len) {
    const Element<K> *const from[] = {src1, src2};
    Element<K> *const to[] = {dst};
    return run<K>(from, to, len);
}

template <class V>
KEPS_INLINE V sizeOf(V x) {
    return without(x, constant<V>(-0.0));
}
template <class V>
KEPS_INLINE V signOf(V x) {
    return x & constant<V>(-0.0);
}

// c[first] + c[first + step] u + c[first + 2 step] u^2 ..., by Horner's rule.
template <int first, int step, class V, class T, std::size_t n>
KEPS_INLINE V horner(V u, const T (&c)[n]) {
    constexpr int terms = (static_cast<int>(n) - first + step - 1) / step;
    V y = constant<V>(c[first + (terms - 1) * step]);
    times<terms - 1>([&](int k) KEPS_INLINE_LAMBDA {
        y = y * u + constant<V>(c[first + (terms - 2 - k) * step]);
    });
    return y;
}

// c[0] + c[1] u + c[2] u^2 ...; longer ones as two chains, even and odd, since a chain's latency
// and not its operations is what a long one costs.
template <class V, class T, std::size_t n>
KEPS_INLINE V polynomial(V u, const T (&c)[n]) {
    if constexpr (n < 5) {
        return horner<0, 1>(u, c);
    } else {
        const V u2 = u * u;
        return horner<0, 2>(u2, c) + u * horner<1, 2>(u2, c);
    }
}

// The same by halves of halves: the shortest chain, for a few more multiplications.
template <int first, int terms, class V, class T, std::size_t n>
KEPS_INLINE V byHalves(const V *powers, const T (&c)[n]) {
    if constexpr (terms == 1) {
        return constant<V>(c[first]);
    } else {
        constexpr int lower = static_cast<int>(std::bit_floor(terms - 1U));
        return byHalves<first, lower>(powers, c) +
               powers[std::bit_width(lower - 1U)] *
                   byHalves<first + lower, terms - lower>(powers, c);
    }
}
template <class V, class T, std::size_t n>
KEPS_INLINE V flatPolynomial(V u, const T (&c)[n]) {
    constexpr int count = std::bit_width(n - 1);
    V powers[count]; // u, u^2, u^4 and so on
    powers[0] = u;
    times<count - 1>([&](int k) KEPS_INLINE_LAMBDA { powers[k + 1] = powers[k] * powers[k]; });
    return byHalves<0, n>(powers, c);
}

// The rows of a table of 2 or 4 columns at four lanes' places, one vector a column.
template <int n>
struct Columns {
    f64x4 c[n];
};
KEPS_INLINE __m256d rowPair(const double *a, const double *b) {
    return _mm256_set_m128d(_mm_load_pd(b), _mm_load_pd(a));
}
KEPS_INLINE Columns<2> columns2(const double *row0, const double *row1, const double *row2,
                                const double *row3) {
    const __m256d a = rowPair(row0, row2), b = rowPair(row1, row3);
    return {{{_mm256_unpacklo_pd(a, b)}, {_mm256_unpackhi_pd(a, b)}}};
}
KEPS_INLINE Columns<4> columns4(const double *row0, const double *row1, const double *row2,
                                const double *row3) {
    const Columns<2> left = columns2(row0, row1, row2, row3);
    const Columns<2> right = columns2(row0 + 2, row1 + 2, row2 + 2, row3 + 2);
    return {{left.c[0], left.c[1], right.c[0], right.c[1]}};
}

// The low words of four lanes, as indices.
struct LowWords {
    int n[4];
};
KEPS_INLINE LowWords lowWords(f64x4 q) {
    const __m128i lower = _mm_castpd_si128(_mm256_castpd256_pd128(q.v));
    const __m128i upper = _mm_castpd_si128(_mm256_extractf128_pd(q.v, 1));
    return {{_mm_cvtsi128_si32(lower), _mm_extract_epi32(lower, 2), _mm_cvtsi128_si32(upper),
             _mm_extract_epi32(upper, 2)}};
}

// The high words of four lanes in one vector. 2 uops.
KEPS_INLINE __m128i highWords(f64x4 x) {
    const __m128 lower = _mm_castpd_ps(_mm256_castpd256_pd128(x.v));
    const __m128 upper = _mm_castpd_ps(_mm256_extractf128_pd(x.v, 1));
    return _mm_castps_si128(_mm_shuffle_ps(lower, upper, 0xDD));
}
// And back, with zeros below them. 3 uops.
KEPS_INLINE f64x4 fromHighWords(__m128i words) {
    const __m128i none = _mm_setzero_si128();
    return {_mm256_castsi256_pd(
        _mm256_set_m128i(_mm_unpackhi_epi32(none, words), _mm_unpacklo_epi32(none, words)))};
}

} // namespace keps::vmath
