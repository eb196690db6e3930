// Arithmetic against VOLK, the plain loop and the intrinsics loop.
#ifdef KEPS_PEER_VOLK
#include <volk/volk.h>
#endif

#include "arith_peer.hpp"
#include "keps.h"
#include "map_case.hpp"

namespace {

using bench::addMap;
using bench::Agreement;
using peer::Op;

constexpr std::int64_t lengths[] = {16, 64, 1024, 16384, 1 << 20};

template <class T>
using Binary = KepStatus (*)(const T *, const T *, T *, int32_t);
template <class T>
using WithConstant = KepStatus (*)(const T *, T, T *, int32_t);

template <class T>
void addFloats(const std::string &type, std::int64_t n, Binary<T> add, Binary<T> mul,
               WithConstant<T> addC, WithConstant<T> mulC, Binary<T> addProduct) {
    const std::string plain = "plain loop";
    T val{};
    if constexpr (std::is_class_v<T>)
        val = {0.5F, -0.25F};
    else
        val = T(0.5);
    addMap<T, T, T>("arith", "kepsAdd_" + type, n, plain, add, peer::add<T>);
    addMap<T, T, T>("arith", "kepsMul_" + type, n, plain, mul, peer::mul<T>);
    addMap<T, T>(
        "arith", "kepsAddC_" + type, n, plain,
        [=](const T *a, T *d, int len) { addC(a, val, d, len); },
        [=](const T *a, T *d, int len) { peer::addC(a, val, d, len); });
    addMap<T, T>(
        "arith", "kepsMulC_" + type, n, plain,
        [=](const T *a, T *d, int len) { mulC(a, val, d, len); },
        [=](const T *a, T *d, int len) { peer::mulC(a, val, d, len); });
    addMap<T, T, T>("arith", "kepsAddProduct_" + type, n, plain, addProduct, peer::addProduct<T>);
}

#ifdef KEPS_PEER_VOLK
// VOLK takes the destination first.
template <class T>
auto volk(void (*f)(T *, const T *, const T *, unsigned)) {
    return [=](const T *a, const T *b, T *d, int n) { f(d, a, b, static_cast<unsigned>(n)); };
}

void addVolk(std::int64_t n) {
    addMap<float, float, float>("arith", "kepsAdd_32f", n, "VOLK", kepsAdd_32f,
                                volk<float>(volk_32f_x2_add_32f));
    addMap<float, float, float>("arith", "kepsMul_32f", n, "VOLK", kepsMul_32f,
                                volk<float>(volk_32f_x2_multiply_32f));
    addMap<float, float>(
        "arith", "kepsAddC_32f", n, "VOLK",
        [](const float *a, float *d, int len) { kepsAddC_32f(a, 0.5F, d, len); },
        [](const float *a, float *d, int len) {
            volk_32f_s32f_add_32f(d, a, 0.5F, static_cast<unsigned>(len));
        });
    addMap<float, float>(
        "arith", "kepsMulC_32f", n, "VOLK",
        [](const float *a, float *d, int len) { kepsMulC_32f(a, 0.5F, d, len); },
        [](const float *a, float *d, int len) {
            volk_32f_s32f_multiply_32f(d, a, 0.5F, static_cast<unsigned>(len));
        });
    const auto complex = [](const char *kernel) {
        return [=](const Kep32fc *a, const Kep32fc *b, Kep32fc *d, int len) {
            const auto to = reinterpret_cast<lv_32fc_t *>(d);
            const auto from1 = reinterpret_cast<const lv_32fc_t *>(a);
            const auto from2 = reinterpret_cast<const lv_32fc_t *>(b);
            const auto count = static_cast<unsigned>(len);
            if (kernel)
                volk_32fc_x2_multiply_32fc_manual(to, from1, from2, count, kernel);
            else
                volk_32fc_x2_multiply_32fc(to, from1, from2, count);
        };
    };
    addMap<Kep32fc, Kep32fc, Kep32fc>("arith", "kepsMul_32fc", n, "VOLK", kepsMul_32fc,
                                      complex(nullptr), Agreement::close);
    addMap<Kep32fc, Kep32fc, Kep32fc>("arith", "kepsMul_32fc", n, "VOLK by AVX", kepsMul_32fc,
                                      complex("a_avx"), Agreement::close);
    addMap<Kep16sc, Kep16sc, Kep16sc>(
        "arith", "kepsMul_16sc_Sfs 0", n, "VOLK (wraps)",
        [](const Kep16sc *a, const Kep16sc *b, Kep16sc *d, int len) {
            kepsMul_16sc_Sfs(a, b, d, len, 0);
        },
        [](const Kep16sc *a, const Kep16sc *b, Kep16sc *d, int len) {
            volk_16ic_x2_multiply_16ic(
                reinterpret_cast<lv_16sc_t *>(d), reinterpret_cast<const lv_16sc_t *>(a),
                reinterpret_cast<const lv_16sc_t *>(b), static_cast<unsigned>(len));
        },
        Agreement::none);
}
#endif

template <class T>
using Scaled = KepStatus (*)(const T *, const T *, T *, int32_t, int);

template <class T>
constexpr bool hasIntrinsics = sizeof(T) == 1 || sizeof(T) == 2 || std::is_same_v<T, Kep16sc>;

template <Op op, class T>
void addScaled(const std::string &name, std::int64_t n, Scaled<T> f) {
    for (const int s : {0, 1, 4, 15, -2, -40}) {
        // Sums of bytes vanish at 15, and the other 15 is a rule of its own in products alone.
        if (s == 15 && (op != Op::mul || sizeof(T) == 1)) continue;
        const std::string label = name + ' ' + std::to_string(s);
        const auto ours = [=](const T *a, const T *b, T *d, int len) { f(a, b, d, len, s); };
        addMap<T, T, T>(
            "arith", label, n, "plain loop", ours,
            [=](const T *a, const T *b, T *d, int len) { peer::scaled<op>(a, b, d, len, s); });
        if constexpr (hasIntrinsics<T>)
            addMap<T, T, T>("arith", label, n, "intrinsics", ours,
                            [=](const T *a, const T *b, T *d, int len) {
                                peer::byIntrinsics<op>(a, b, d, len, s);
                            });
    }
}

template <class T>
void addIntegers(const std::string &type, std::int64_t n, Scaled<T> add, Scaled<T> sub,
                 Scaled<T> mul) {
    addScaled<Op::add>("kepsAdd_" + type + "_Sfs", n, add);
    addScaled<Op::sub>("kepsSub_" + type + "_Sfs", n, sub);
    addScaled<Op::mul>("kepsMul_" + type + "_Sfs", n, mul);
}

const bench::Family family("arith", [] {
    // A call's fixed cost.
    addMap<float, float>(
        "arith", "kepsMulC_32f", 8, "plain loop",
        [](const float *a, float *d, int len) { kepsMulC_32f(a, 0.5F, d, len); },
        [](const float *a, float *d, int len) { peer::mulC(a, 0.5F, d, len); });
    for (const std::int64_t n : lengths) {
#define FLOATS(t)                                                                                  \
    addFloats<Kep##t>(#t, n, kepsAdd_##t, kepsMul_##t, kepsAddC_##t, kepsMulC_##t,                 \
                      kepsAddProduct_##t);
        FLOATS(32f)
        FLOATS(64f)
        FLOATS(32fc)
        FLOATS(64fc)
        addMap<float, float, float>("arith", "kepsMulPerm_32f", n, "plain loop", kepsMulPerm_32f,
                                    peer::mulPerm);
#ifdef KEPS_PEER_VOLK
        addVolk(n);
#endif
#define INTEGERS(t)                                                                                \
    addIntegers<Kep##t>(#t, n, kepsAdd_##t##_Sfs, kepsSub_##t##_Sfs, kepsMul_##t##_Sfs);
        INTEGERS(8u)
        INTEGERS(16s)
        INTEGERS(16u)
        INTEGERS(16sc)
        INTEGERS(32s)
        INTEGERS(32sc)
    }
});

} // namespace
