// The plan kinds as data, so that one test serves them all: sizes, Init, and transforms over arrays
// of reals, whatever the kind's form.
#pragma once

#include <complex>
#include <memory>
#include <string>
#include <vector>

#include "harness/data.hpp"
#include "harness/guarded.hpp"
#include "keps.h"

namespace fft_test {

using harness::Room;
using harness::Spot;

enum Direction { forward, inverse };
enum Layout { ccs, pack, perm, layouts };

using GetSize = KepStatus(int32_t, int32_t, int32_t, int32_t *, int32_t *, int32_t *);
using Init = KepStatus(KepsFftPlan **, int32_t, int32_t, int32_t, Kep8u *, Kep8u *);

template <class T>
using Run = KepStatus (*)(const T *, T *, const KepsFftPlan *, Kep8u *);
template <class T>
using RunInPlace = KepStatus (*)(T *, const KepsFftPlan *, Kep8u *);
template <class T>
using RunSplit = KepStatus (*)(const T *, const T *, T *, T *, const KepsFftPlan *, Kep8u *);
template <class T>
using RunSplitInPlace = KepStatus (*)(T *, T *, const KepsFftPlan *, Kep8u *);

template <class T>
struct ComplexKind {
    std::string name;
    GetSize *getSize;
    Init *init;
    int maxOrder;
    // One of the two forms, by direction.
    Run<T> run[2];
    RunInPlace<T> inPlace[2];
    RunSplit<T> split[2];
    RunSplitInPlace<T> splitInPlace[2];
};

template <class T>
struct RealKind {
    std::string name;
    GetSize *getSize;
    Init *init;
    int maxOrder;
    Run<T> run[2][layouts];
    RunInPlace<T> inPlace[2][layouts];
};

// Interleaved functions take plain reals here.
template <class C, KepStatus (*f)(const C *, C *, const KepsFftPlan *, Kep8u *), class T>
KepStatus onReals(const T *src, T *dst, const KepsFftPlan *plan, Kep8u *work) {
    return f(reinterpret_cast<const C *>(src), reinterpret_cast<C *>(dst), plan, work);
}
template <class C, KepStatus (*f)(C *, const KepsFftPlan *, Kep8u *), class T>
KepStatus onRealsInPlace(T *srcDst, const KepsFftPlan *plan, Kep8u *work) {
    return f(reinterpret_cast<C *>(srcDst), plan, work);
}

inline const ComplexKind<float> &c32fc() {
    static const ComplexKind<float> kind{
        "C_32fc",
        kepsFFTGetSize_C_32fc,
        kepsFFTInit_C_32fc,
        28,
        {onReals<Kep32fc, kepsFFTFwd_CToC_32fc>, onReals<Kep32fc, kepsFFTInv_CToC_32fc>},
        {onRealsInPlace<Kep32fc, kepsFFTFwd_CToC_32fc_I>,
         onRealsInPlace<Kep32fc, kepsFFTInv_CToC_32fc_I>},
        {},
        {}};
    return kind;
}

inline const ComplexKind<float> &c32f() {
    static const ComplexKind<float> kind{"C_32f",
                                         kepsFFTGetSize_C_32f,
                                         kepsFFTInit_C_32f,
                                         28,
                                         {},
                                         {},
                                         {kepsFFTFwd_CToC_32f, kepsFFTInv_CToC_32f},
                                         {kepsFFTFwd_CToC_32f_I, kepsFFTInv_CToC_32f_I}};
    return kind;
}

inline const RealKind<float> &r32f() {
    static const RealKind<float> kind{
        "R_32f",
        kepsFFTGetSize_R_32f,
        kepsFFTInit_R_32f,
        29,
        {{kepsFFTFwd_RToCCS_32f, kepsFFTFwd_RToPack_32f, kepsFFTFwd_RToPerm_32f},
         {kepsFFTInv_CCSToR_32f, kepsFFTInv_PackToR_32f, kepsFFTInv_PermToR_32f}},
        {{kepsFFTFwd_RToCCS_32f_I, kepsFFTFwd_RToPack_32f_I, kepsFFTFwd_RToPerm_32f_I},
         {kepsFFTInv_CCSToR_32f_I, kepsFFTInv_PackToR_32f_I, kepsFFTInv_PermToR_32f_I}}};
    return kind;
}

inline const ComplexKind<double> &c64fc() {
    static const ComplexKind<double> kind{
        "C_64fc",
        kepsFFTGetSize_C_64fc,
        kepsFFTInit_C_64fc,
        27,
        {onReals<Kep64fc, kepsFFTFwd_CToC_64fc>, onReals<Kep64fc, kepsFFTInv_CToC_64fc>},
        {onRealsInPlace<Kep64fc, kepsFFTFwd_CToC_64fc_I>,
         onRealsInPlace<Kep64fc, kepsFFTInv_CToC_64fc_I>},
        {},
        {}};
    return kind;
}

inline const ComplexKind<double> &c64f() {
    static const ComplexKind<double> kind{"C_64f",
                                          kepsFFTGetSize_C_64f,
                                          kepsFFTInit_C_64f,
                                          27,
                                          {},
                                          {},
                                          {kepsFFTFwd_CToC_64f, kepsFFTInv_CToC_64f},
                                          {kepsFFTFwd_CToC_64f_I, kepsFFTInv_CToC_64f_I}};
    return kind;
}

inline const RealKind<double> &r64f() {
    static const RealKind<double> kind{
        "R_64f",
        kepsFFTGetSize_R_64f,
        kepsFFTInit_R_64f,
        28,
        {{kepsFFTFwd_RToCCS_64f, kepsFFTFwd_RToPack_64f, kepsFFTFwd_RToPerm_64f},
         {kepsFFTInv_CCSToR_64f, kepsFFTInv_PackToR_64f, kepsFFTInv_PermToR_64f}},
        {{kepsFFTFwd_RToCCS_64f_I, kepsFFTFwd_RToPack_64f_I, kepsFFTFwd_RToPerm_64f_I},
         {kepsFFTInv_CCSToR_64f_I, kepsFFTInv_PackToR_64f_I, kepsFFTInv_PermToR_64f_I}}};
    return kind;
}

// A plan in memory of exactly the reported sizes, at an odd address or up to an unreadable page.
class PlanRoom {
public:
    template <class Kind>
    PlanRoom(const Kind &kind, int order, int flag, Spot spot = {Spot::endsAtGuard}) {
        EXPECT_EQ(kepStatusOk, kind.getSize(order, flag, 7, &specSize, &bufferSize, &workSize));
        spec = std::make_unique<Room>(specSize);
        work = std::make_unique<Room>(workSize);
        memory = spec->place(static_cast<std::size_t>(specSize), spot);
        Room buffer(static_cast<std::size_t>(bufferSize));
        Kep8u *temporary = buffer.place(static_cast<std::size_t>(bufferSize), spot);
        EXPECT_EQ(kepStatusOk, harness::guarded([&] {
                      return kind.init(&plan, order, flag, 7, memory,
                                       bufferSize ? temporary : nullptr);
                  }));
        EXPECT_TRUE(spec->intact() && buffer.intact()) << kind.name << " order " << order;
        EXPECT_EQ(0U, reinterpret_cast<std::uintptr_t>(plan) % 64);
        image = harness::blockImage(memory, static_cast<std::size_t>(specSize));
    }
    Kep8u *workAt(Spot spot) const {
        return workSize ? work->place(static_cast<std::size_t>(workSize), spot) : nullptr;
    }
    // The plan as Init left it, and no byte outside the blocks written.
    bool unharmed() const {
        return spec->intact() && (workSize == 0 || work->intact()) &&
               image == harness::blockImage(memory, image.size());
    }

    KepsFftPlan *plan = nullptr;
    int specSize = 0, bufferSize = 0, workSize = 0;

private:
    Kep8u *memory;
    std::vector<Kep8u> image;
    std::unique_ptr<Room> spec, work;
};

// exp(-+2 pi i k / n) from the first octant, in long double.
using Wide = std::complex<long double>;

// The transform in long double, by decimation in time: its own error is 2^-11 of the bounds.
class Reference {
public:
    static std::vector<Wide> transform(const std::vector<Wide> &x, Direction direction) {
        const std::size_t n = x.size();
        std::vector<Wide> roots(n / 2 + 1), y(n);
        const long double step = 2 * std::acos(-1.0L) / static_cast<long double>(n);
        for (std::size_t k = 0; k < n / 2; ++k) {
            const long double angle = step * static_cast<long double>(k);
            roots[k] = {std::cos(angle), (direction == forward ? -1 : 1) * std::sin(angle)};
        }
        recurse(x.data(), y.data(), n, 1, roots);
        return y;
    }

private:
    static void recurse(const Wide *x, Wide *y, std::size_t n, std::size_t stride,
                        const std::vector<Wide> &roots) {
        if (n == 1) {
            *y = *x;
            return;
        }
        recurse(x, y, n / 2, 2 * stride, roots);
        recurse(x + stride, y + n / 2, n / 2, 2 * stride, roots);
        for (std::size_t k = 0; k < n / 2; ++k) {
            const Wide w = roots[k * stride], b = y[n / 2 + k];
            const Wide t{w.real() * b.real() - w.imag() * b.imag(),
                         w.real() * b.imag() + w.imag() * b.real()};
            y[n / 2 + k] = y[k] - t;
            y[k] += t;
        }
    }
};

} // namespace fft_test
