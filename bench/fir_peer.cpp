#include "fir_peer.hpp"

#include <algorithm>
#include <cstring>
#include <immintrin.h>
#include <memory>
#include <type_traits>

#ifdef KEPS_PEER_FFTW
#include <fftw3.h>
#endif

namespace peer {
namespace {

struct F32 {
    using E = float;
    using V = __m256;
    static constexpr int lanes = 8;
    static V load(const E *p) { return _mm256_loadu_ps(p); }
    static void store(E *p, V x) { _mm256_storeu_ps(p, x); }
    static V splat(const E &x) { return _mm256_broadcast_ss(&x); }
    static V swap(V x) { return _mm256_permute_ps(x, 0xB1); }
    static V addSub(V a, V b) { return _mm256_addsub_ps(a, b); }
    static V evens(V x) { return _mm256_moveldup_ps(x); }
    static V odds(V x) { return _mm256_movehdup_ps(x); }
};
struct F64 {
    using E = double;
    using V = __m256d;
    static constexpr int lanes = 4;
    static V load(const E *p) { return _mm256_loadu_pd(p); }
    static void store(E *p, V x) { _mm256_storeu_pd(p, x); }
    static V splat(const E &x) { return _mm256_broadcast_sd(&x); }
    static V swap(V x) { return _mm256_permute_pd(x, 0x5); }
    static V addSub(V a, V b) { return _mm256_addsub_pd(a, b); }
    static V evens(V x) { return _mm256_movedup_pd(x); }
    static V odds(V x) { return _mm256_permute_pd(x, 0xF); }
};

template <class T>
inline constexpr bool isComplex = std::is_class_v<T>;
template <class T>
inline constexpr bool isSingle = std::is_same_v<T, float> || std::is_same_v<T, Kep32fc>;
template <class T>
using Vector = std::conditional_t<isSingle<T>, F32, F64>;
template <class T>
using Real = typename Vector<T>::E;

template <class T>
T product(T a, T b) {
    if constexpr (isComplex<T>)
        return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
    else
        return a * b;
}
template <class T>
void addTo(T &sum, T x) {
    if constexpr (isComplex<T>)
        sum.re += x.re, sum.im += x.im;
    else
        sum += x;
}

// y[i] from x[i] to x[i + n - 1], taps reversed; Blocks vectors at once.
template <class T, int Blocks>
int blocks(const T *taps, int n, const T *x, T *y, int i, int count) {
    using A = Vector<T>;
    constexpr int parts = isComplex<T> ? 2 : 1, step = A::lanes / parts;
    for (; i + Blocks * step <= count; i += Blocks * step) {
        typename A::V re[Blocks] = {}, im[Blocks] = {};
        const auto *from = reinterpret_cast<const Real<T> *>(x + i);
        for (int j = 0; j < n; ++j, from += parts) {
            const auto *tap = reinterpret_cast<const Real<T> *>(taps + j);
            const auto first = A::splat(tap[0]);
#pragma GCC unroll 8
            for (int b = 0; b < Blocks; ++b) re[b] += first * A::load(from + b * A::lanes);
            if constexpr (isComplex<T>) {
                const auto second = A::splat(tap[1]);
#pragma GCC unroll 8
                for (int b = 0; b < Blocks; ++b) im[b] += second * A::load(from + b * A::lanes);
            }
        }
        auto *to = reinterpret_cast<Real<T> *>(y + i);
#pragma GCC unroll 8
        for (int b = 0; b < Blocks; ++b)
            A::store(to + b * A::lanes, isComplex<T> ? A::addSub(re[b], A::swap(im[b])) : re[b]);
    }
    return i;
}

template <class T>
void sums(const std::vector<T> &reversed, const T *x, T *y, int count) {
    const int n = static_cast<int>(reversed.size());
    int i = blocks < T, isComplex<T> ? 4 : 8 > (reversed.data(), n, x, y, 0, count);
    i = blocks<T, 2>(reversed.data(), n, x, y, i, count);
    i = blocks<T, 1>(reversed.data(), n, x, y, i, count);
    for (; i < count; ++i) {
        T sum{};
        for (int j = 0; j < n; ++j) addTo(sum, product(reversed[static_cast<size_t>(j)], x[i + j]));
        y[i] = sum;
    }
}

template <class T>
struct Direct {
    std::vector<T> reversed, edge;

    void operator()(const T *src, T *dst, int count) {
        const int past = static_cast<int>(reversed.size()) - 1, m = std::min(past, count);
        std::copy(src, src + m, edge.begin() + past);
        sums(reversed, edge.data(), dst, m);
        if (count > m) sums(reversed, src, dst + m, count - m);
        if (count >= past)
            std::copy(src + count - past, src + count, edge.begin());
        else
            std::copy(edge.begin() + count, edge.begin() + count + past, edge.begin());
    }
};

#ifdef KEPS_PEER_FFTW

struct Fftw32 {
    using Plan = fftwf_plan;
    using C = fftwf_complex;
    static constexpr auto allocate = fftwf_malloc;
    static constexpr auto execute = fftwf_execute;
    static constexpr auto forward = fftwf_plan_dft_r2c_1d;
    static constexpr auto inverse = fftwf_plan_dft_c2r_1d;
    static constexpr auto complex = fftwf_plan_dft_1d;
    static constexpr auto importWisdom = fftwf_import_wisdom_from_filename;
    static constexpr auto exportWisdom = fftwf_export_wisdom_to_filename;
    static constexpr auto wisdom = KEPS_WISDOM_DIR "/fir_fftwf.wisdom";
};
struct Fftw64 {
    using Plan = fftw_plan;
    using C = fftw_complex;
    static constexpr auto allocate = fftw_malloc;
    static constexpr auto execute = fftw_execute;
    static constexpr auto forward = fftw_plan_dft_r2c_1d;
    static constexpr auto inverse = fftw_plan_dft_c2r_1d;
    static constexpr auto complex = fftw_plan_dft_1d;
    static constexpr auto importWisdom = fftw_import_wisdom_from_filename;
    static constexpr auto exportWisdom = fftw_export_wisdom_to_filename;
    static constexpr auto wisdom = KEPS_WISDOM_DIR "/fir_fftw.wisdom";
};

template <class T>
class OverlapSave {
public:
    OverlapSave(const std::vector<T> &taps, int order)
        : past(static_cast<int>(taps.size()) - 1),
          length(1 << order),
          spectrumReals(isComplex<T> ? 2 * length : length + 2) {
        in = take<T>(length);
        out = take<T>(length);
        spectrum = take<Real<T>>(spectrumReals);
        response = take<Real<T>>(spectrumReals);
        [[maybe_unused]] static const int known = Fftw::importWisdom(Fftw::wisdom);
        auto *s = reinterpret_cast<typename Fftw::C *>(spectrum);
        if constexpr (isComplex<T>) {
            auto *a = reinterpret_cast<typename Fftw::C *>(in);
            auto *b = reinterpret_cast<typename Fftw::C *>(out);
            ahead = Fftw::complex(length, a, s, FFTW_FORWARD, FFTW_MEASURE);
            back = Fftw::complex(length, s, b, FFTW_BACKWARD, FFTW_MEASURE);
        } else {
            ahead = Fftw::forward(length, in, s, FFTW_MEASURE);
            back = Fftw::inverse(length, s, out, FFTW_MEASURE);
        }
        Fftw::exportWisdom(Fftw::wisdom);
        std::fill(in, in + length, T{});
        std::copy(taps.begin(), taps.end(), in);
        Fftw::execute(ahead);
        for (int i = 0; i < spectrumReals; ++i)
            response[i] = spectrum[i] / static_cast<Real<T>>(length);
        history.assign(static_cast<size_t>(past), T{});
    }
    OverlapSave(const OverlapSave &) = delete;

    void operator()(const T *src, T *dst, int count) {
        const int blockLen = length - past;
        for (int made = 0; made < count; made += blockLen) {
            const int outputs = std::min(blockLen, count - made);
            if (made == 0) {
                std::copy(history.begin(), history.end(), in);
                std::copy(src, src + outputs, in + past);
            } else {
                // A block is at least as long as the past, so the samples before it are in src.
                std::copy(src + made - past, src + made + outputs, in);
            }
            std::fill(in + past + outputs, in + length, T{});
            Fftw::execute(ahead);
            multiply();
            Fftw::execute(back);
            std::copy(out + past, out + past + outputs, dst + made);
        }
        if (count >= past) {
            std::copy(src + count - past, src + count, history.begin());
        } else {
            std::copy(history.begin() + count, history.end(), history.begin());
            std::copy(src, src + count, history.end() - count);
        }
    }

private:
    using Fftw = std::conditional_t<isSingle<T>, Fftw32, Fftw64>;
    template <class E>
    static E *take(int n) {
        return static_cast<E *>(Fftw::allocate(sizeof(E) * static_cast<size_t>(n)));
    }

    void multiply() {
        using A = Vector<T>;
        int i = 0;
        for (; i + A::lanes <= spectrumReals; i += A::lanes) {
            const auto a = A::load(spectrum + i), b = A::load(response + i);
            A::store(spectrum + i, A::addSub(A::evens(b) * a, A::odds(b) * A::swap(a)));
        }
        for (; i < spectrumReals; i += 2) {
            const auto re = spectrum[i], im = spectrum[i + 1];
            spectrum[i] = re * response[i] - im * response[i + 1];
            spectrum[i + 1] = re * response[i + 1] + im * response[i];
        }
    }

    // Streams live as long as the process; nothing here is given back.
    int past, length, spectrumReals;
    T *in, *out;
    Real<T> *spectrum, *response;
    typename Fftw::Plan ahead, back;
    std::vector<T> history;
};

#endif

} // namespace

template <class T>
Stream<T> directFir(const std::vector<T> &taps) {
    auto fir = std::make_shared<Direct<T>>();
    fir->reversed.assign(taps.rbegin(), taps.rend());
    fir->edge.resize(2 * taps.size());
    return [fir](const T *src, T *dst, int n) { (*fir)(src, dst, n); };
}

Stream<Kep16s> directFir16(const std::vector<float> &taps) {
    struct State {
        Stream<float> fir;
        float in[2048], out[2048];
    };
    auto state = std::make_shared<State>();
    state->fir = directFir(taps);
    return [state](const Kep16s *src, Kep16s *dst, int n) {
        for (int at = 0; at < n; at += 2048) {
            const int m = std::min(2048, n - at);
            for (int i = 0; i < m; ++i) state->in[i] = src[at + i];
            state->fir(state->in, state->out, m);
            int i = 0;
            for (; i + 8 <= m; i += 8) {
                const __m256i x = _mm256_cvtps_epi32(_mm256_loadu_ps(state->out + i));
                const __m128i packed =
                    _mm_packs_epi32(_mm256_castsi256_si128(x), _mm256_extractf128_si256(x, 1));
                _mm_storeu_si128(reinterpret_cast<__m128i *>(dst + at + i), packed);
            }
            for (; i < m; ++i)
                dst[at + i] = static_cast<Kep16s>(
                    _mm_cvtss_si32(_mm_set_ss(std::clamp(state->out[i], -32768.0F, 32767.0F))));
        }
    };
}

template <class T>
Stream<T> overlapSave([[maybe_unused]] const std::vector<T> &taps, [[maybe_unused]] int order) {
#ifdef KEPS_PEER_FFTW
    auto fir = std::make_shared<OverlapSave<T>>(taps, order);
    return [fir](const T *src, T *dst, int n) { (*fir)(src, dst, n); };
#else
    return nullptr;
#endif
}

template Stream<float> directFir(const std::vector<float> &);
template Stream<double> directFir(const std::vector<double> &);
template Stream<Kep32fc> directFir(const std::vector<Kep32fc> &);
template Stream<Kep64fc> directFir(const std::vector<Kep64fc> &);
template Stream<float> overlapSave(const std::vector<float> &, int);
template Stream<double> overlapSave(const std::vector<double> &, int);
template Stream<Kep32fc> overlapSave(const std::vector<Kep32fc> &, int);
template Stream<Kep64fc> overlapSave(const std::vector<Kep64fc> &, int);

} // namespace peer
