// Single-rate FIR. On the FFT path: against overlap-save on FFTW with the same transforms and
// blocks. Direct: against a direct loop written by hand. Every cell: against the quickest of that
// loop and overlap-save of any length, and against liquid-dsp.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <memory>
#include <random>
#include <vector>

#include "bench.hpp"
#include "fir_peer.hpp"
#include "keps.h"

#ifdef KEPS_PEER_LIQUID
#include <complex>
#include <liquid/liquid.h>
#endif

namespace {

template <class T>
struct Fir;
template <>
struct Fir<Kep32f> {
    static constexpr auto name = "kepsFIRSR_32f";
    static constexpr auto type = kepType32f;
    static constexpr int leastTaps = 32, leastIters = 256;
    static constexpr auto init = kepsFIRSRInit_32f;
    static constexpr auto call = kepsFIRSR_32f;
};
template <>
struct Fir<Kep32fc> {
    static constexpr auto name = "kepsFIRSR_32fc";
    static constexpr auto type = kepType32fc;
    static constexpr int leastTaps = 18, leastIters = 128;
    static constexpr auto init = kepsFIRSRInit_32fc;
    static constexpr auto call = kepsFIRSR_32fc;
};

template <>
struct Fir<Kep64f> {
    static constexpr auto name = "kepsFIRSR_64f";
    static constexpr auto type = kepType64f;
    static constexpr int leastTaps = 62, leastIters = 512;
    static constexpr auto init = kepsFIRSRInit_64f;
    static constexpr auto call = kepsFIRSR_64f;
};
template <>
struct Fir<Kep64fc> {
    static constexpr auto name = "kepsFIRSR_64fc";
    static constexpr auto type = kepType64fc;
    static constexpr int leastTaps = 18, leastIters = 128;
    static constexpr auto init = kepsFIRSRInit_64fc;
    static constexpr auto call = kepsFIRSR_64fc;
};

template <class T>
inline constexpr int parts = std::is_class_v<T> ? 2 : 1;
template <class T>
inline constexpr double precision = sizeof(T) / parts<T> == 4 ? 1e-6 : 1e-15;

template <class T>
std::vector<T> noise(int n) {
    std::minstd_rand random(7);
    std::vector<T> data(static_cast<size_t>(n));
    using R = std::conditional_t<sizeof(T) / parts<T> == 4, float, double>;
    auto *p = reinterpret_cast<R *>(data.data());
    for (size_t i = 0; i < data.size() * parts<T>; ++i)
        p[i] = static_cast<R>(random()) / R(2147483648.0) - R(0.5);
    return data;
}

template <class T>
double distance(const std::vector<T> &a, const std::vector<T> &b) {
    double most = 0;
    for (size_t i = 0; i < a.size(); ++i) {
        if constexpr (parts<T> == 2)
            most = std::max(
                {most, double(std::abs(a[i].re - b[i].re)), double(std::abs(a[i].im - b[i].im))});
        else
            most = std::max(most, double(std::abs(a[i] - b[i])));
    }
    return most;
}

template <class T>
struct Filter {
    std::vector<Kep8u> spec, buf;
    std::vector<T> delay[2];

    Filter(const std::vector<T> &taps, KepAlgorithm algorithm) {
        int specSize = 0, bufSize = 0;
        kepsFIRSRGetSize(static_cast<int>(taps.size()), Fir<T>::type, &specSize, &bufSize);
        spec.resize(static_cast<size_t>(specSize));
        buf.resize(static_cast<size_t>(bufSize) + 64);
        Fir<T>::init(taps.data(), static_cast<int>(taps.size()), algorithm, spec.data());
        for (auto &d : delay) d.resize(taps.size());
    }
    void operator()(const T *src, T *dst, int n) {
        auto *work = buf.data() + (-reinterpret_cast<std::uintptr_t>(buf.data()) & 63);
        Fir<T>::call(src, dst, n, spec.data(), delay[0].data(), delay[1].data(), work);
        std::swap(delay[0], delay[1]);
    }
};

template <class T>
void addCase(const std::vector<T> &taps, int block, KepAlgorithm algorithm, const std::string &path,
             const std::string &peerName, peer::Stream<T> theirs) {
    if (!theirs) return;
    struct Data {
        Filter<T> filter;
        std::vector<T> src, ours, theirs;
    };
    const auto size = static_cast<size_t>(block);
    const auto data = std::make_shared<Data>(
        Data{{taps, algorithm}, noise<T>(block), std::vector<T>(size), std::vector<T>(size)});
    const double tolerance =
        20 * precision<T> * std::sqrt(double(taps.size()) * std::log2(taps.size() + 2.0));
    const auto ourCall = [data, block] {
        data->filter(data->src.data(), data->ours.data(), block);
    };
    const auto theirCall = [data, block, theirs] {
        theirs(data->src.data(), data->theirs.data(), block);
    };
    bench::add({"fir",
                std::string(Fir<T>::name) + " " + std::to_string(taps.size()) + " taps " + path,
                block, peerName, ourCall, theirCall, [=] {
                    // Several calls bring streams that other cases share to the same past.
                    for (size_t made = 0; made < 2 * taps.size() + size; made += size)
                        ourCall(), theirCall();
                    return distance(data->ours, data->theirs) <= tolerance;
                }});
}

// The quickest for this block among the direct loop and overlap-save of all lengths.
template <class T>
std::pair<std::string, peer::Stream<T>> quickest(const std::vector<T> &taps, int block) {
    using Clock = std::chrono::steady_clock;
    const auto src = noise<T>(block);
    auto dst = src;
    std::pair<std::string, peer::Stream<T>> best;
    double least = 1e9;
    const auto attempt = [&](const std::string &name, const peer::Stream<T> &stream) {
        double time = 1e9;
        for (int k = 0; stream && k < 15; ++k) {
            const auto start = Clock::now();
            stream(src.data(), dst.data(), block);
            time = std::min(time, std::chrono::duration<double>(Clock::now() - start).count());
        }
        if (time < least) least = time, best = {name, stream};
    };
    if (taps.size() <= 256) attempt("free: direct loop", peer::directFir(taps));
    for (int order = 4; order <= 15; ++order)
        if ((size_t{1} << order) >= 2 * taps.size() && (1 << order) <= 4 * block + 4096)
            attempt("free: FFTW, " + std::to_string(1 << order), peer::overlapSave(taps, order));
    return best;
}

#ifdef KEPS_PEER_LIQUID
peer::Stream<Kep32f> liquidFir(const std::vector<Kep32f> &taps) {
    auto h = taps;
    auto *q = firfilt_rrrf_create(h.data(), static_cast<unsigned>(h.size()));
    return [q](const Kep32f *src, Kep32f *dst, int n) {
        firfilt_rrrf_execute_block(q, const_cast<float *>(src), static_cast<unsigned>(n), dst);
    };
}
peer::Stream<Kep32fc> liquidFir(const std::vector<Kep32fc> &taps) {
    using C = std::complex<float>;
    std::vector<C> h;
    for (const auto &tap : taps) h.emplace_back(tap.re, tap.im);
    auto *q = firfilt_cccf_create(h.data(), static_cast<unsigned>(h.size()));
    return [q](const Kep32fc *src, Kep32fc *dst, int n) {
        firfilt_cccf_execute_block(q, reinterpret_cast<C *>(const_cast<Kep32fc *>(src)),
                                   static_cast<unsigned>(n), reinterpret_cast<C *>(dst));
    };
}
#endif

template <class T>
peer::Stream<T> liquidFir(const std::vector<T> &) {
    return nullptr;
}

template <class T>
void addType() {
    for (const int n : {8, 31, 64, 256, 1024}) {
        const auto taps = noise<T>(n);
        const int order = static_cast<int>(std::floor(std::log2(n))) + 2;
        for (const int block : {256, 4096, 65536}) {
            const bool byFft = n >= Fir<T>::leastTaps && block >= Fir<T>::leastIters;
            const std::string path = byFft ? "FFT" : "direct";
            if (byFft)
                addCase(taps, block, kepAlgorithmAuto, path, "FFTW, same blocks",
                        peer::overlapSave(taps, order));
            // A 65536-sample block of 1024 taps by direct sums says nothing new.
            if (n <= 256 || block <= 4096)
                addCase(taps, block, kepAlgorithmDirect, "direct", "direct loop",
                        peer::directFir(taps));
            const auto [name, stream] = quickest(taps, block);
            addCase(taps, block, kepAlgorithmAuto, path, name, stream);
            addCase(taps, block, kepAlgorithmAuto, path, "liquid-dsp", liquidFir(taps));
        }
    }
}

// 16-bit samples are filtered by float sums, whatever the spec block says.
void add16() {
    for (const int n : {8, 64, 256})
        for (const int block : {256, 4096, 65536}) {
            struct Data {
                Filter<Kep32f> filter;
                std::vector<Kep16s> src, ours, theirs, delay;
            };
            const auto taps = noise<Kep32f>(n);
            const auto size = static_cast<size_t>(block);
            const auto data = std::make_shared<Data>(Data{{taps, kepAlgorithmAuto},
                                                          std::vector<Kep16s>(size),
                                                          std::vector<Kep16s>(size),
                                                          std::vector<Kep16s>(size),
                                                          std::vector<Kep16s>(taps.size())});
            const auto samples = noise<Kep32f>(block);
            for (size_t i = 0; i < size; ++i)
                data->src[i] = static_cast<Kep16s>(samples[i] * 10000.0F);
            const auto theirs = peer::directFir16(taps);
            const auto ourCall = [data, block] {
                kepsFIRSR_16s(data->src.data(), data->ours.data(), block, data->filter.spec.data(),
                              data->delay.data(), data->delay.data(), data->filter.buf.data());
            };
            const auto theirCall = [data, theirs, block] {
                theirs(data->src.data(), data->theirs.data(), block);
            };
            bench::add({"fir", "kepsFIRSR_16s " + std::to_string(n) + " taps direct", block,
                        "direct loop", ourCall, theirCall, [=] {
                            ourCall(), theirCall();
                            int most = 0; // sums differ in their last bits
                            for (size_t i = 0; i < size; ++i)
                                most = std::max(most, std::abs(data->ours[i] - data->theirs[i]));
                            return most <= 1;
                        }});
        }
}

const bench::Family family("fir", [] {
    addType<Kep32f>();
    addType<Kep64f>();
    addType<Kep32fc>();
    addType<Kep64fc>();
    add16();
});

} // namespace
