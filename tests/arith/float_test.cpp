// Float arithmetic, bit for bit against the stated order of scalar operations.
#include <cmath>

#include "harness/elementwise.hpp"

namespace {

using namespace harness;

const std::vector<int> longLengths = {127, 128, 129, 255, 1000};

// The product of complex values in the library's order; volatile keeps the compiler's hands off it.
template <class C>
C product(C a, C b) {
    using R = decltype(a.re);
    const volatile R rr = a.re * b.re, ii = a.im * b.im, ir = a.im * b.re, ri = a.re * b.im;
    return {rr - ii, ir + ri};
}

TEST(Float, mulComplex) {
    check<Kep32fc, Kep32fc, Kep32fc>(
        {.name = "kepsMul_32fc",
         .call = kepsMul_32fc,
         .oracle =
             [](const Kep32fc *a, const Kep32fc *b, Kep32fc *dst, int n) {
                 for (int i = 0; i < n; ++i) dst[i] = product(a[i], b[i]);
                 return kepStatusOk;
             },
         .inPlace = [](const Kep32fc *a, const Kep32fc *, Kep32fc *dst,
                       int n) { return kepsMul_32fc_I(a, dst, n); },
         .lengths = longLengths});
}

TEST(Float, mulC) {
    const float nan = NAN, inf = INFINITY;
    for (const float val : {1.7F, 1.0F, 0.0F, -0.0F, -1.0F, nan, inf, 1e-40F})
        check<Kep32f, Kep32f>({.name = "kepsMulC_32f by " + show(val),
                               .call = [=](const Kep32f *src, Kep32f *dst,
                                           int n) { return kepsMulC_32f(src, val, dst, n); },
                               .oracle =
                                   [=](const Kep32f *src, Kep32f *dst, int n) {
                                       for (int i = 0; i < n; ++i)
                                           dst[i] = val == 0 ? 0.0F : src[i] * val;
                                       return kepStatusOk;
                                   },
                               .inPlace = [=](const Kep32f *, Kep32f *dst,
                                              int n) { return kepsMulC_32f_I(val, dst, n); },
                               .lengths = longLengths});
}

// Products of packed spectra by walking over the bins' places.
template <class T>
struct Packed {
    // Whether element i is real, given n elements.
    bool (*isReal)(int i, int n);

    KepStatus operator()(const T *a, const T *b, T *dst, int n) const {
        struct C {
            T re, im;
        };
        for (int i = 0; i < n; ++i) {
            if (isReal(i, n)) {
                dst[i] = a[i] * b[i];
                continue;
            }
            const C p = product(C{a[i], a[i + 1]}, C{b[i], b[i + 1]});
            dst[i] = p.re;
            dst[i + 1] = p.im;
            ++i;
        }
        return kepStatusOk;
    }
};

bool realInPerm(int i, int n) {
    return i == 0 || (i == 1 && n % 2 == 0);
}

TEST(Float, mulPerm) {
    check<Kep32f, Kep32f, Kep32f>({.name = "kepsMulPerm_32f",
                                   .call = kepsMulPerm_32f,
                                   .oracle = Packed<Kep32f>{realInPerm},
                                   .inPlace = [](const Kep32f *a, const Kep32f *, Kep32f *dst,
                                                 int n) { return kepsMulPerm_32f_I(a, dst, n); },
                                   .lengths = longLengths});
}

} // namespace
