#include "arith_peer.hpp"

#include <cmath>
#include <limits>
#include <type_traits>

namespace peer {

void convert(const Kep16s *src, float *dst, int n) {
    for (int i = 0; i < n; ++i) dst[i] = src[i];
}

void convert(const float *src, Kep16s *dst, int n, float scale) {
    for (int i = 0; i < n; ++i) {
        const float x = src[i] * scale;
        dst[i] = static_cast<Kep16s>(std::nearbyint(x > 32767 ? 32767 : (x < -32768 ? -32768 : x)));
    }
}

void mulPerm(const float *src1, const float *src2, float *dst, int n) {
    dst[0] = src1[0] * src2[0];
    if (n % 2 == 0) dst[1] = src1[1] * src2[1];
    for (int i = n % 2 == 0 ? 2 : 1; i < n; i += 2) {
        const float re = src1[i] * src2[i] - src1[i + 1] * src2[i + 1];
        dst[i + 1] = src1[i + 1] * src2[i] + src1[i] * src2[i + 1];
        dst[i] = re;
    }
}

namespace {

template <class T>
constexpr bool isComplex = std::is_class_v<T>;

template <class T>
T sum(T a, T b) {
    if constexpr (isComplex<T>)
        return {a.re + b.re, a.im + b.im};
    else
        return a + b;
}
template <class T>
T product(T a, T b) {
    if constexpr (isComplex<T>)
        return {a.re * b.re - a.im * b.im, a.im * b.re + a.re * b.im};
    else
        return a * b;
}

} // namespace

template <class T>
void add(const T *src1, const T *src2, T *dst, int n) {
    for (int i = 0; i < n; ++i) dst[i] = sum(src1[i], src2[i]);
}
template <class T>
void mul(const T *src1, const T *src2, T *dst, int n) {
    for (int i = 0; i < n; ++i) dst[i] = product(src1[i], src2[i]);
}
template <class T>
void addC(const T *src, T val, T *dst, int n) {
    for (int i = 0; i < n; ++i) dst[i] = sum(src[i], val);
}
template <class T>
void mulC(const T *src, T val, T *dst, int n) {
    for (int i = 0; i < n; ++i) dst[i] = product(src[i], val);
}
template <class T>
void addProduct(const T *src1, const T *src2, T *srcDst, int n) {
    for (int i = 0; i < n; ++i) srcDst[i] = sum(srcDst[i], product(src1[i], src2[i]));
}
#define FLOATS(t)                                                                                  \
    template void add(const t *, const t *, t *, int);                                             \
    template void mul(const t *, const t *, t *, int);                                             \
    template void addC(const t *, t, t *, int);                                                    \
    template void mulC(const t *, t, t *, int);                                                    \
    template void addProduct(const t *, const t *, t *, int);
FLOATS(float)
FLOATS(double)
FLOATS(Kep32fc)
FLOATS(Kep64fc)

namespace {

// A type that holds results and their rounding: the narrowest one, for the compiler's vectors.
template <class T>
using Wide = std::conditional_t<sizeof(T) == 1 || std::is_same_v<T, Kep16s>, int, long long>;

template <class T, class W>
T clamp(W x) {
    constexpr W top = std::numeric_limits<T>::max(), bottom = std::numeric_limits<T>::min();
    return static_cast<T>(x > top ? top : x < bottom ? bottom : x);
}

template <Op op, class W>
W exact(W a, W b) {
    return op == Op::add ? a + b : op == Op::sub ? b - a : a * b;
}

// f(wide) makes a result of each exact value.
template <Op op, class T, class A, class F>
void each(const T *src1, const A &second, T *dst, int n, F f) {
    for (int i = 0; i < n; ++i) {
        const T a = src1[i], b = second(i);
        if constexpr (isComplex<T>) {
            using W = long long;
            if constexpr (op == Op::mul)
                dst[i] = {f(W{a.re} * b.re - W{a.im} * b.im), f(W{a.re} * b.im + W{a.im} * b.re)};
            else
                dst[i] = {f(exact<op>(W{a.re}, W{b.re})), f(exact<op>(W{a.im}, W{b.im}))};
        } else {
            dst[i] = f(exact<op>(Wide<T>{a}, Wide<T>{b}));
        }
    }
}

template <class T, class = void>
struct PartOf {
    using type = T;
};
template <class T>
struct PartOf<T, std::enable_if_t<isComplex<T>>> {
    using type = decltype(T::re);
};

template <Op op, class T, class A>
void classes(const T *src1, const A &second, T *dst, int n, int s) {
    using R = typename PartOf<T>::type;
    if (s == 0) {
        each<op>(src1, second, dst, n, [](auto v) { return clamp<R>(v); });
    } else if (s > 0) {
        each<op>(src1, second, dst, n, [=](auto v) {
            using W = decltype(v);
            return clamp<R>((v + (W{1} << (s - 1)) - 1 + ((v >> s) & 1)) >> s);
        });
    } else if (s > -16) {
        each<op>(src1, second, dst, n, [=](auto v) {
            using W = decltype(v);
            return clamp<R>(W{clamp<R>(v)} * (W{1} << -s));
        });
    } else {
        each<op>(src1, second, dst, n, [=](auto v) {
            constexpr R top = std::numeric_limits<R>::max(), bottom = std::numeric_limits<R>::min();
            return v == 0 ? R{0} : v > 0 ? top : bottom;
        });
    }
}

} // namespace

template <Op op, class T>
void scaled(const T *src1, const T *src2, T *dst, int n, int scaleFactor) {
    classes<op>(
        src1, [=](int i) { return src2[i]; }, dst, n, scaleFactor);
}
template <Op op, class T>
void scaledC(const T *src, T val, T *dst, int n, int scaleFactor) {
    classes<op>(
        src, [=](int) { return val; }, dst, n, scaleFactor);
}
#define INTEGERS(t)                                                                                \
    template void scaled<Op::add>(const t *, const t *, t *, int, int);                            \
    template void scaled<Op::sub>(const t *, const t *, t *, int, int);                            \
    template void scaled<Op::mul>(const t *, const t *, t *, int, int);                            \
    template void scaledC<Op::add>(const t *, t, t *, int, int);                                   \
    template void scaledC<Op::mul>(const t *, t, t *, int, int);
INTEGERS(Kep8u)
INTEGERS(Kep16s)
INTEGERS(Kep16u)
INTEGERS(Kep32s)
INTEGERS(Kep16sc)
INTEGERS(Kep32sc)

} // namespace peer
