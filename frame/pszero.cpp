// Zero: vector stores for short arrays, the byte string instruction for long ones.
#include "frame/entry.hpp"
#include "frame/fill.hpp"

using namespace keps;

void ownsZero_8u_E9(void *dst, size n) {
    auto *p = static_cast<std::uint8_t *>(dst);
    const __m256i nothing = _mm256_setzero_si256();
    if (n < 256) return fill::upTo255(p, nothing, n);
    fill::align32(p, nothing, n);
    fill::ascending(p, nothing, n);
}

void ownsZero_8u(void *dst, size n) {
    n > 32768 ? ownsZero_8u_repE9(dst, n) : ownsZero_8u_E9(dst, n);
}

namespace {

// 8u goes over to the string instruction at 32768 bytes, all wider types at 2 MiB.
template <class T>
KepStatus zeroAll(T *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, dst)) return refused;
    constexpr size vectorUpTo = sizeof(T) == 1 ? 32768 : 0x200000;
    const size bytes = byteCount<T>(len);
    if (bytes < 256) { // the vector kernel's short path, without a further call
        fill::upTo255(reinterpret_cast<std::uint8_t *>(dst), _mm256_setzero_si256(), bytes);
        return kepStatusOk;
    }
    bytes <= vectorUpTo ? ownsZero_8u_E9(dst, bytes) : ownsZero_8u(dst, bytes);
    return kepStatusOk;
}

} // namespace

// clang-format off
KepStatus kepsZero_8u(Kep8u *dst, int32_t len) { return zeroAll(dst, len); }
KepStatus kepsZero_16s(Kep16s *dst, int32_t len) { return zeroAll(dst, len); }
KepStatus kepsZero_16sc(Kep16sc *dst, int32_t len) { return zeroAll(dst, len); }
KepStatus kepsZero_32f(Kep32f *dst, int32_t len) { return zeroAll(dst, len); }
KepStatus kepsZero_32fc(Kep32fc *dst, int32_t len) { return zeroAll(dst, len); }
KepStatus kepsZero_32s(Kep32s *dst, int32_t len) { return zeroAll(dst, len); }
KepStatus kepsZero_32sc(Kep32sc *dst, int32_t len) { return zeroAll(dst, len); }
KepStatus kepsZero_64f(Kep64f *dst, int32_t len) { return zeroAll(dst, len); }
KepStatus kepsZero_64fc(Kep64fc *dst, int32_t len) { return zeroAll(dst, len); }
KepStatus kepsZero_64s(Kep64s *dst, int32_t len) { return zeroAll(dst, len); }
KepStatus kepsZero_64sc(Kep64sc *dst, int32_t len) { return zeroAll(dst, len); }
// clang-format on
