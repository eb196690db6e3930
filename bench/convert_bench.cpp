// Conversions against VOLK, its AVX code and what it picks, and against plain loops.
#ifdef KEPS_PEER_VOLK
#include <volk/volk.h>
#endif

#include "arith_peer.hpp"
#include "convert_peer.hpp"
#include "kepcore.h"
#include "keps.h"
#include "map_case.hpp"

namespace {

using bench::addMap;

// To 16 bits with a factor of 2^10, to nearest; random integers shifted down by 5 bits.
constexpr int scaleFactor = -10, shift = 5;
constexpr float scale = 1024;

// (src, dst, n, rndMode, scaleFactor) against the plain loop with a factor.
template <class To, class From>
void addRounded(const char *name, std::int64_t n,
                KepStatus (*f)(const From *, To *, int32_t, int, int)) {
    addMap<To, From>(
        "convert", name, n, "plain loop",
        [=](const From *a, To *d, int len) { f(a, d, len, kepRoundNearest, scaleFactor); },
        [](const From *a, To *d, int len) { peer::convert(a, d, len, scale); });
}

template <class To, class From>
void addScaled(const char *name, std::int64_t n, KepStatus (*f)(const From *, To *, int32_t, int)) {
    addMap<To, From>(
        "convert", name, n, "plain loop",
        [=](const From *a, To *d, int len) { f(a, d, len, scaleFactor); },
        [](const From *a, To *d, int len) { peer::convertScaled(a, d, len, scale); });
}

template <class To, class From, class Function>
void addShifted(const char *name, std::int64_t n, Function f) {
    addMap<To, From>("convert", name, n, "plain loop", f,
                     [](const From *a, To *d, int len) { peer::shiftDown(a, d, len, shift); });
}

void addPlainLoops(std::int64_t n) {
    addMap<float, Kep16s>("convert", "kepsConvert_16s32f", n, "plain loop", kepsConvert_16s32f,
                          [](const Kep16s *a, float *d, int len) { peer::convert(a, d, len); });
    addRounded("kepsConvert_32f8s_Sfs", n, kepsConvert_32f8s_Sfs);
    addRounded("kepsConvert_32f8u_Sfs", n, kepsConvert_32f8u_Sfs);
    addRounded("kepsConvert_32f16s_Sfs", n, kepsConvert_32f16s_Sfs);
    addRounded("kepsConvert_32f16u_Sfs", n, kepsConvert_32f16u_Sfs);
    addRounded("kepsConvert_32f32s_Sfs", n, kepsConvert_32f32s_Sfs);
    addRounded("kepsConvert_64f16s_Sfs", n, kepsConvert_64f16s_Sfs);
    addRounded("kepsConvert_64f32s_Sfs", n, kepsConvert_64f32s_Sfs);
    addRounded("kepsConvert_64f64s_Sfs", n, kepsConvert_64f64s_Sfs);
    addScaled("kepsConvert_16s32f_Sfs", n, kepsConvert_16s32f_Sfs);
    addScaled("kepsConvert_32s32f_Sfs", n, kepsConvert_32s32f_Sfs);
    addScaled("kepsConvert_32s64f_Sfs", n, kepsConvert_32s64f_Sfs);
    addMap<Kep16s, Kep32s>("convert", "kepsConvert_32s16s", n, "plain loop", kepsConvert_32s16s,
                           peer::narrow);
    addShifted<Kep16s, Kep32s>(
        "kepsConvert_32s16s_Sfs", n,
        [](const Kep32s *a, Kep16s *d, int len) { kepsConvert_32s16s_Sfs(a, d, len, shift); });
    addShifted<Kep8s, Kep16s>("kepsConvert_16s8s_Sfs", n, [](const Kep16s *a, Kep8s *d, int len) {
        kepsConvert_16s8s_Sfs(a, d, len, kepRoundNearest, shift);
    });
    addShifted<Kep32s, Kep64s>("kepsConvert_64s32s_Sfs", n,
                               [](const Kep64s *a, Kep32s *d, int len) {
                                   kepsConvert_64s32s_Sfs(a, d, len, kepRoundNearest, shift);
                               });
}

// Packed 24-bit arrays as arrays of bytes of three times the length.
void addPacked(std::int64_t n) {
    harness::Random random(1);
    const auto packed = bench::randomArray<Kep8u>(3 * n, random);
    const auto floats = bench::randomArray<float>(n, random);
    const auto integers = bench::randomArray<Kep32s>(n, random);
    const bench::Array<Kep8u> d1(3 * n), d2(3 * n);
    const bench::Array<Kep32s> w1(n), w2(n);
    const bench::Array<float> f1(n), f2(n);
    const int len = static_cast<int>(n);
    const auto addCase = [=](const char *name, auto ours, auto theirs, auto &a, auto &b,
                             std::int64_t elements) {
        bench::add({"convert", name, n, "plain loop", ours, theirs, [=] {
                        ours();
                        theirs();
                        return bench::sameBits(a, b, elements);
                    }});
    };
    addCase(
        "kepsConvert_24s32s", [=] { kepsConvert_24s32s(packed.data(), w1.data(), len); },
        [=] { peer::unpack24(packed.data(), w2.data(), len); }, w1, w2, n);
    addCase(
        "kepsConvert_24s32f", [=] { kepsConvert_24s32f(packed.data(), f1.data(), len); },
        [=] { peer::unpack24(packed.data(), f2.data(), len); }, f1, f2, n);
    addCase(
        "kepsConvert_32f24s_Sfs",
        [=] { kepsConvert_32f24s_Sfs(floats.data(), d1.data(), len, scaleFactor); },
        [=] { peer::pack24(floats.data(), d2.data(), len, scale); }, d1, d2, 3 * n);
    addCase(
        "kepsConvert_32s24s_Sfs",
        [=] { kepsConvert_32s24s_Sfs(integers.data(), d1.data(), len, 0); },
        [=] { peer::pack24(integers.data(), d2.data(), len); }, d1, d2, 3 * n);
}

void addHalves(std::int64_t n) {
    if (!ownGetFeature(KEP_FEATURE_F16C)) return;
    addMap<float, Kep16f>("convert", "kepsConvert_16f32f", n, "plain loop with F16C",
                          kepsConvert_16f32f, half_peer::fromHalf);
    addMap<Kep16f, float>(
        "convert", "kepsConvert_32f16f", n, "plain loop with F16C",
        [](const float *a, Kep16f *d, int len) { kepsConvert_32f16f(a, d, len, kepRoundNearest); },
        half_peer::toHalf);
}

#ifdef KEPS_PEER_VOLK
// VOLK's own choice and its AVX code, by the variant's name; a variant that it lacks is left out.
template <class To, class From, class Ours, class Volk, class Manual>
void addVolk(const char *name, std::int64_t n, Ours ours, Volk volk, Manual manual,
             volk_func_desc_t description, const char *avx) {
    const auto call = [](auto f) {
        return [=](const From *a, To *d, int len) { f(d, a, static_cast<unsigned>(len)); };
    };
    addMap<To, From>("convert", name, n, "VOLK", ours, call(volk));
    for (std::size_t k = 0; avx && k < description.n_impls; ++k)
        if (std::string(description.impl_names[k]) == avx)
            addMap<To, From>(
                "convert", name, n, std::string("VOLK ") + avx, ours,
                call([=](To *d, const From *a, unsigned len) { manual(d, a, len, avx); }));
}

void addVolks(std::int64_t n) {
    addVolk<float, Kep16s>(
        "kepsConvert_16s32f", n, kepsConvert_16s32f,
        [](auto *d, auto *a, unsigned len) { volk_16i_s32f_convert_32f(d, a, 1, len); },
        [](auto *d, auto *a, unsigned len, auto *v) {
            volk_16i_s32f_convert_32f_manual(d, a, 1, len, v);
        },
        volk_16i_s32f_convert_32f_get_func_desc(), "u_avx");
    addVolk<Kep16s, float>(
        "kepsConvert_32f16s_Sfs", n,
        [](const float *a, Kep16s *d, int len) {
            kepsConvert_32f16s_Sfs(a, d, len, kepRoundNearest, scaleFactor);
        },
        [](auto *d, auto *a, unsigned len) { volk_32f_s32f_convert_16i(d, a, scale, len); },
        [](auto *d, auto *a, unsigned len, auto *v) {
            volk_32f_s32f_convert_16i_manual(d, a, scale, len, v);
        },
        volk_32f_s32f_convert_16i_get_func_desc(), "u_avx");
    addVolk<Kep32s, float>(
        "kepsConvert_32f32s_Sfs", n,
        [](const float *a, Kep32s *d, int len) {
            kepsConvert_32f32s_Sfs(a, d, len, kepRoundNearest, scaleFactor);
        },
        [](auto *d, auto *a, unsigned len) { volk_32f_s32f_convert_32i(d, a, scale, len); },
        [](auto *d, auto *a, unsigned len, auto *v) {
            volk_32f_s32f_convert_32i_manual(d, a, scale, len, v);
        },
        volk_32f_s32f_convert_32i_get_func_desc(), "u_avx");
    addVolk<Kep8s, float>(
        "kepsConvert_32f8s_Sfs", n,
        [](const float *a, Kep8s *d, int len) {
            kepsConvert_32f8s_Sfs(a, d, len, kepRoundNearest, scaleFactor);
        },
        [](auto *d, auto *a, unsigned len) { volk_32f_s32f_convert_8i(d, a, scale, len); },
        [](auto *d, auto *a, unsigned len, auto *v) {
            volk_32f_s32f_convert_8i_manual(d, a, scale, len, v);
        },
        volk_32f_s32f_convert_8i_get_func_desc(), "u_sse2");
    addVolk<float, Kep32s>(
        "kepsConvert_32s32f", n, kepsConvert_32s32f,
        [](auto *d, auto *a, unsigned len) { volk_32i_s32f_convert_32f(d, a, 1, len); },
        [](auto *d, auto *a, unsigned len, auto *v) {
            volk_32i_s32f_convert_32f_manual(d, a, 1, len, v);
        },
        volk_32i_s32f_convert_32f_get_func_desc(), "u_sse2");
    addVolk<float, Kep8s>(
        "kepsConvert_8s32f", n, kepsConvert_8s32f,
        [](auto *d, auto *a, unsigned len) { volk_8i_s32f_convert_32f(d, a, 1, len); },
        [](auto *d, auto *a, unsigned len, auto *v) {
            volk_8i_s32f_convert_32f_manual(d, a, 1, len, v);
        },
        volk_8i_s32f_convert_32f_get_func_desc(), "u_sse4_1");
    addVolk<double, float>(
        "kepsConvert_32f64f", n, kepsConvert_32f64f,
        [](auto *d, auto *a, unsigned len) { volk_32f_convert_64f(d, a, len); },
        [](auto *d, auto *a, unsigned len, auto *v) { volk_32f_convert_64f_manual(d, a, len, v); },
        volk_32f_convert_64f_get_func_desc(), "u_avx");
    addVolk<float, double>(
        "kepsConvert_64f32f", n, kepsConvert_64f32f,
        [](auto *d, auto *a, unsigned len) { volk_64f_convert_32f(d, a, len); },
        [](auto *d, auto *a, unsigned len, auto *v) { volk_64f_convert_32f_manual(d, a, len, v); },
        volk_64f_convert_32f_get_func_desc(), "u_avx");
}
#endif

const bench::Family family("convert", [] {
    for (const std::int64_t n : {8, 64, 1024, 16384, 1 << 20}) {
        addPlainLoops(n);
        addPacked(n);
        addHalves(n);
#ifdef KEPS_PEER_VOLK
        addVolks(n);
#endif
    }
});

} // namespace
