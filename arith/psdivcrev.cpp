// DivCRev: a constant over every element.
#include "arith/division.hpp"
#include "arith/floatops.hpp"
#include "frame/entry.hpp"

using namespace keps;

namespace {

struct Constant16u {
    f32x8 val;
    ZeroWatch<f32x8> zeros;
    // Quotients of 16 bits stand further off a tie than a float's error.
    KEPS_INLINE u16x8 operator()(u16x8 x) const {
        const f32x8 under = Widen<f32x8>{}(x);
        zeros.look(under);
        return narrowTo<std::uint16_t>(ToNearest::round(min(splat<f32x8>(65535), val / under)));
    }
};

struct Constant32f {
    f32x8 val;
    ZeroWatch<f32x8> zeros;
    KEPS_INLINE f32x8 operator()(f32x8 x) const {
        x = inRegister(x);
        zeros.look(x);
        return val / x;
    }
};

template <class Op, class T>
[[gnu::noinline]] KepStatus overElements(const T *src, float val, T *dst, size n) {
    if (n < 8) [[unlikely]] {
        const auto whole = [=](const T *elements, T *results) {
            return overElements<Op>(elements, val, results, 8);
        };
        return onPadded<8>(whole, n, dst, src);
    }
    const Op op{splat<f32x8>(val), {}};
    map<8, 2>(n, op, dst, src);
    return op.zeros.warning();
}

template <class Op, std::int32_t threshold, class T>
KEPS_INLINE KepStatus overElementsSplit(const T *src, float val, T *dst, std::int32_t len) {
    return vectorSplit<teamOfTwo>(len, threshold, [=](std::int32_t first, std::int32_t n) {
        return overElements<Op>(src + first, val, dst + first, n);
    });
}

} // namespace

KepStatus kepsDivCRev_16u(const Kep16u *src, Kep16u val, Kep16u *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    if (val == 0) {
        bool warning = false;
        for (size i = 0; i < len && !warning; ++i) warning = loadOne(src + i) == 0;
        kepsZero_16s(reinterpret_cast<Kep16s *>(dst), len);
        return warning ? kepStatusDivisionWarning : kepStatusOk;
    }
    return overElementsSplit<Constant16u, 2048>(src, val, dst, len);
}
KepStatus kepsDivCRev_16u_I(Kep16u val, Kep16u *srcDst, int32_t len) {
    return kepsDivCRev_16u(srcDst, val, srcDst, len);
}

KepStatus kepsDivCRev_32f(const Kep32f *src, Kep32f val, Kep32f *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src, dst)) return refused;
    return overElementsSplit<Constant32f, 4096>(src, val, dst, len);
}
KepStatus kepsDivCRev_32f_I(Kep32f val, Kep32f *srcDst, int32_t len) {
    return kepsDivCRev_32f(srcDst, val, srcDst, len);
}
