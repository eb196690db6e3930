// Mul: the product of two arrays, element by element.
#include "arith/floatops.hpp"
#include "frame/entry.hpp"

using namespace keps;

namespace {

template <class T>
KepStatus complexProducts(const T *src1, const T *src2, T *dst, int32_t len) {
    if (const KepStatus refused = refuse(len, src1, src2, dst)) return refused;
    map<32 / sizeof(T), 2>(len, ComplexProduct{}, dst, src1, src2);
    return kepStatusOk;
}

} // namespace

// clang-format off
KepStatus kepsMul_32fc(const Kep32fc *src1, const Kep32fc *src2, Kep32fc *dst, int32_t len) { return complexProducts(src1, src2, dst, len); }
KepStatus kepsMul_32fc_I(const Kep32fc *src, Kep32fc *srcDst, int32_t len) { return complexProducts(src, srcDst, srcDst, len); }
// clang-format on
