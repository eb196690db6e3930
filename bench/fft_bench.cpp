// Fourier transforms against FFTW's plans, measured and estimated, and KissFFT: orders 1 to 18, 19
// to 22 under --large.
#if defined(KEPS_PEER_FFTW)
#include <algorithm>
#include <cmath>
#include <cstring>
#include <fftw3.h>
#include <limits>
#include <memory>
#include <random>
#include <vector>

#include "bench.hpp"
#include "keps.h"
#if defined(KEPS_PEER_KISSFFT)
#include <kiss_fft.h>
#endif

namespace {

// One precision's names, ours and FFTW's.
struct Single {
    using Real = float;
    using Complex = Kep32fc;
    using Pair = fftwf_complex;
    using Plan = fftwf_plan;
    using Dimension = fftwf_iodim;
    static constexpr const char *mark = "32f";
    static constexpr const char *wisdom = KEPS_WISDOM_DIR "/fftwf.wisdom";
    static constexpr auto importWisdom = fftwf_import_wisdom_from_filename;
    static constexpr auto exportWisdom = fftwf_export_wisdom_to_filename;
    static constexpr auto execute = fftwf_execute;
    static constexpr auto planComplex = fftwf_plan_dft_1d;
    static constexpr auto planSplit = fftwf_plan_guru_split_dft;
    static constexpr auto planForward = fftwf_plan_dft_r2c_1d;
    static constexpr auto planInverse = fftwf_plan_dft_c2r_1d;
    static constexpr auto allocate = fftwf_malloc;
    static constexpr auto release = fftwf_free;
    static constexpr auto destroy = fftwf_destroy_plan;
    static constexpr auto complexSize = kepsFFTGetSize_C_32fc;
    static constexpr auto complexInit = kepsFFTInit_C_32fc;
    static constexpr auto complexForward = kepsFFTFwd_CToC_32fc;
    static constexpr auto complexInverse = kepsFFTInv_CToC_32fc;
    static constexpr auto splitSize = kepsFFTGetSize_C_32f;
    static constexpr auto splitInit = kepsFFTInit_C_32f;
    static constexpr auto splitForward = kepsFFTFwd_CToC_32f;
    static constexpr auto splitInverse = kepsFFTInv_CToC_32f;
    static constexpr auto realSize = kepsFFTGetSize_R_32f;
    static constexpr auto realInit = kepsFFTInit_R_32f;
    static constexpr auto realForward = kepsFFTFwd_RToCCS_32f;
    static constexpr auto realInverse = kepsFFTInv_CCSToR_32f;
};

struct Double {
    using Real = double;
    using Complex = Kep64fc;
    using Pair = fftw_complex;
    using Plan = fftw_plan;
    using Dimension = fftw_iodim;
    static constexpr const char *mark = "64f";
    static constexpr const char *wisdom = KEPS_WISDOM_DIR "/fftw.wisdom";
    static constexpr auto importWisdom = fftw_import_wisdom_from_filename;
    static constexpr auto exportWisdom = fftw_export_wisdom_to_filename;
    static constexpr auto execute = fftw_execute;
    static constexpr auto planComplex = fftw_plan_dft_1d;
    static constexpr auto planSplit = fftw_plan_guru_split_dft;
    static constexpr auto planForward = fftw_plan_dft_r2c_1d;
    static constexpr auto planInverse = fftw_plan_dft_c2r_1d;
    static constexpr auto allocate = fftw_malloc;
    static constexpr auto release = fftw_free;
    static constexpr auto destroy = fftw_destroy_plan;
    static constexpr auto complexSize = kepsFFTGetSize_C_64fc;
    static constexpr auto complexInit = kepsFFTInit_C_64fc;
    static constexpr auto complexForward = kepsFFTFwd_CToC_64fc;
    static constexpr auto complexInverse = kepsFFTInv_CToC_64fc;
    static constexpr auto splitSize = kepsFFTGetSize_C_64f;
    static constexpr auto splitInit = kepsFFTInit_C_64f;
    static constexpr auto splitForward = kepsFFTFwd_CToC_64f;
    static constexpr auto splitInverse = kepsFFTInv_CToC_64f;
    static constexpr auto realSize = kepsFFTGetSize_R_64f;
    static constexpr auto realInit = kepsFFTInit_R_64f;
    static constexpr auto realForward = kepsFFTFwd_RToCCS_64f;
    static constexpr auto realInverse = kepsFFTInv_CCSToR_64f;
};

enum Kind { complexKind, splitKind, realKind };

// A transform's arrays, our plan and FFTW's; both sides have arrays of their own.
template <class P>
struct Job {
    using Real = typename P::Real;

    Job(int o, Kind k, bool isInverse, bool isInPlace)
        : order(o), kind(k), inverse(isInverse), inPlace(isInPlace) {
        for (Real *&p : area) p = static_cast<Real *>(P::allocate(reals() * sizeof(Real)));
        int spec, buffer, work;
        (kind == realKind    ? P::realSize
         : kind == splitKind ? P::splitSize
                             : P::complexSize)(order, kepFftScaleNone, 0, &spec, &buffer, &work);
        specMem.resize(static_cast<std::size_t>(spec));
        bufferMem.resize(static_cast<std::size_t>(buffer));
        workMem.resize(static_cast<std::size_t>(work));
        (kind == realKind ? P::realInit
         : kind == splitKind
             ? P::splitInit
             : P::complexInit)(&plan, order, kepFftScaleNone, 0, specMem.data(), bufferMem.data());
    }
    ~Job() {
        P::destroy(peer);
        for (Real *p : area) P::release(p);
    }
    Job(const Job &) = delete;
    Job &operator=(const Job &) = delete;

    std::size_t points() const { return std::size_t{1} << order; }
    // Imaginary parts of split data lie so far behind the real ones that the two don't meet in the
    // same place of two pages.
    std::size_t apart() const { return points() + 16; }
    std::size_t reals() const { return apart() + points() + 4; }

    // Small values, so that repeated transforms in place do not overflow soon; zeros stay zeros.
    void fill() {
        clear();
        std::minstd_rand random(1);
        for (std::size_t i = 0; i < reals(); ++i)
            area[0][i] = area[2][i] = static_cast<Real>(random() % 2048) / 1024 - 1;
        // A spectrum of a real signal.
        if (kind == realKind && inverse)
            for (Real *p : {area[0], area[2]}) p[1] = p[points() + 1] = 0;
    }
    void clear() {
        for (Real *p : area) std::memset(static_cast<void *>(p), 0, reals() * sizeof(Real));
    }

    void makePeer(unsigned how) {
        const int n = 1 << order;
        Real *src = area[2], *dst = inPlace ? src : area[3];
        auto *srcPairs = reinterpret_cast<typename P::Pair *>(src);
        auto *dstPairs = reinterpret_cast<typename P::Pair *>(dst);
        if (kind == splitKind) {
            const typename P::Dimension dimension{n, 1, 1};
            const std::size_t re = inverse ? apart() : 0, im = inverse ? 0 : apart();
            peer = P::planSplit(1, &dimension, 0, nullptr, src + re, src + im, dst + re, dst + im,
                                how);
        } else if (kind == realKind) {
            peer = inverse ? P::planInverse(n, srcPairs, dst, how | FFTW_PRESERVE_INPUT * !inPlace)
                           : P::planForward(n, src, dstPairs, how);
        } else {
            peer = P::planComplex(n, srcPairs, dstPairs, inverse ? 1 : -1, how);
        }
    }

    void ours() {
        Real *src = area[0], *dst = inPlace ? src : area[1];
        if (kind == splitKind) {
            (inverse ? P::splitInverse : P::splitForward)(src, src + apart(), dst, dst + apart(),
                                                          plan, workMem.data());
        } else if (kind == realKind) {
            (inverse ? P::realInverse : P::realForward)(src, dst, plan, workMem.data());
        } else {
            using C = typename P::Complex;
            (inverse ? P::complexInverse : P::complexForward)(
                reinterpret_cast<C *>(src), reinterpret_cast<C *>(dst), plan, workMem.data());
        }
    }
    void theirs() { P::execute(peer); }

    bool agree() {
        fill();
        ours();
        theirs();
        const Real *a = area[inPlace ? 0 : 1], *b = area[inPlace ? 2 : 3];
        const std::size_t n = points();
        const std::size_t results = kind == realKind    ? inverse ? n : n + 2
                                    : kind == splitKind ? apart() + n
                                                        : 2 * n;
        double error = 0, power = 0;
        for (std::size_t i = 0; i < results; ++i) {
            const double d = static_cast<double>(a[i]) - static_cast<double>(b[i]);
            error += d * d;
            power += static_cast<double>(b[i]) * static_cast<double>(b[i]);
        }
        // Data for the timing: zeros, which stay what they are in place.
        clear();
        return std::sqrt(error / power) <
               8 * static_cast<double>(std::numeric_limits<Real>::epsilon());
    }

    int order;
    Kind kind;
    bool inverse, inPlace;
    Real *area[4];
    std::vector<Kep8u> specMem, bufferMem, workMem;
    KepsFftPlan *plan = nullptr;
    typename P::Plan peer = nullptr;
};

// All cases share the place for their job: each is made when its case comes up.
template <class P>
using Slot = std::shared_ptr<std::unique_ptr<Job<P>>>;

template <class P>
void addOne(const Slot<P> &job, int order, Kind kind, bool inverse, bool inPlace) {
    const std::string name = std::string(kind == realKind ? "R_" : "C_") + P::mark +
                             (kind == complexKind ? "c" : "") +
                             (inverse ? " inverse" : " forward") + (inPlace ? " in place" : "");
    // Planning is paid when the case comes up, and measured plans are kept for the next run.
    for (const unsigned how : {FFTW_MEASURE, FFTW_ESTIMATE}) {
        const auto ready = [=] {
            job->reset();
            *job = std::make_unique<Job<P>>(order, kind, inverse, inPlace);
            (*job)->makePeer(how);
            if (how == FFTW_MEASURE) P::exportWisdom(P::wisdom);
            return (*job)->agree();
        };
        bench::add({"fft", name, std::int64_t{1} << order,
                    how == FFTW_MEASURE ? "FFTW measured" : "FFTW estimated",
                    [job] { (*job)->ours(); }, [job] { (*job)->theirs(); }, ready});
    }
}

#if defined(KEPS_PEER_KISSFFT)
// KissFFT has complex transforms of one precision to a build, out of place.
void addKiss(const Slot<Single> &job, int order) {
    const auto plan = std::make_shared<kiss_fft_cfg>(nullptr);
    bench::add({"fft", "C_32fc forward", std::int64_t{1} << order, "KissFFT",
                [job] { (*job)->ours(); },
                [job, plan] {
                    kiss_fft(*plan, reinterpret_cast<kiss_fft_cpx *>((*job)->area[2]),
                             reinterpret_cast<kiss_fft_cpx *>((*job)->area[3]));
                },
                [=] {
                    job->reset();
                    *job = std::make_unique<Job<Single>>(order, complexKind, false, false);
                    (*job)->makePeer(FFTW_ESTIMATE);
                    if (*plan == nullptr) *plan = kiss_fft_alloc(1 << order, 0, nullptr, nullptr);
                    return (*job)->agree();
                }});
}
#endif

template <class P>
void addAll(const Slot<P> &job, int first, int last) {
    P::importWisdom(P::wisdom);
    for (const Kind kind : {complexKind, splitKind, realKind})
        for (const bool inverse : {false, true})
            for (const bool inPlace : {false, true})
                for (int order = first; order <= last; ++order)
                    addOne<P>(job, order, kind, inverse, inPlace);
}

const bench::Family family("fft", [] {
    const int first = bench::large ? 19 : 1, last = bench::large ? 22 : 18;
    const auto single = std::make_shared<std::unique_ptr<Job<Single>>>();
    const auto twofold = std::make_shared<std::unique_ptr<Job<Double>>>();
    addAll<Single>(single, first, last);
    addAll<Double>(twofold, first, last);
#if defined(KEPS_PEER_KISSFFT)
    for (int order = first; order <= last; ++order) addKiss(single, order);
#endif
});

} // namespace
#endif
