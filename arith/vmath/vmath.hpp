// The private transcendental kernels: entries named for their accuracy in bits, and behind them a
// dispatch table for each function with a low-accuracy, a high-accuracy and an enhanced-performance
// kernel. All take len of 1 or more unchecked, dst may be a source, and all return 0 or the last
// non-zero code met:
//   12 overflow, 17 underflow, 18 singularity, 19 outside the domain.
// A value does not depend on its place in the array; the vector control register is as found.
#pragma once

#include "frame/worker.h"

#define OWN_TABLE(kernel, name)                                                                    \
    extern "C" [[gnu::visibility("hidden")]] kernel *const name[3] __asm__("e9_" #name)

namespace keps::vmath {

inline constexpr int overflow = 12, underflow = 17, singularity = 18, domain = 19;

using Unary32 = int(const Kep32f *src, Kep32f *dst, int32_t len);
using Unary64 = int(const Kep64f *src, Kep64f *dst, int32_t len);
using Binary32 = int(const Kep32f *src1, const Kep32f *src2, Kep32f *dst, int32_t len);
using Binary64 = int(const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len);
using Pair32 = int(const Kep32f *src, Kep32f *dstSin, Kep32f *dstCos, int32_t len);
using Pair64 = int(const Kep64f *src, Kep64f *dstSin, Kep64f *dstCos, int32_t len);
using Modulus64 = int(const Kep64fc *src, Kep64f *dst, int32_t len);

// The slots of a dispatch table.
namespace slot {
enum { low, high, enhanced, count };
}

} // namespace keps::vmath

// Kernels: own_keps_<kind><function>_E9<level>, levels LAynn, HAynn, EPnnn; and their tables. The
// arc tangent of two arguments is that of src1 over src2; Powx raises src1 to src2, element by
// element.
OWN_FN(int, own_keps_sSin_E9LAynn, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, own_keps_sSin_E9HAynn, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, own_keps_sSin_E9EPnnn, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_TABLE(keps::vmath::Unary32, own_keps_sSin_E9_ttab);
OWN_FN(int, own_keps_sCos_E9LAynn, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, own_keps_sCos_E9HAynn, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, own_keps_sCos_E9EPnnn, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_TABLE(keps::vmath::Unary32, own_keps_sCos_E9_ttab);
OWN_FN(int, own_keps_sExp_E9LAynn, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, own_keps_sExp_E9HAynn, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, own_keps_sExp_E9EPnnn, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_TABLE(keps::vmath::Unary32, own_keps_sExp_E9_ttab);
OWN_FN(int, own_keps_sLn_E9LAynn, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, own_keps_sLn_E9HAynn, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, own_keps_sLn_E9EPnnn, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_TABLE(keps::vmath::Unary32, own_keps_sLn_E9_ttab);
OWN_FN(int, own_keps_sAtan_E9LAynn, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, own_keps_sAtan_E9HAynn, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, own_keps_sAtan_E9EPnnn, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_TABLE(keps::vmath::Unary32, own_keps_sAtan_E9_ttab);
OWN_FN(int, own_keps_sCbrt_E7LAynn, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, own_keps_sCbrt_E9HAynn, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, own_keps_sCbrt_E7EPnnn, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_TABLE(keps::vmath::Unary32, own_keps_sCbrt_E9_ttab);
OWN_FN(int, own_keps_sSinCos_E9LAynn,
       (const Kep32f *src, Kep32f *dstSin, Kep32f *dstCos, int32_t len));
OWN_FN(int, own_keps_sSinCos_E9HAynn,
       (const Kep32f *src, Kep32f *dstSin, Kep32f *dstCos, int32_t len));
OWN_FN(int, own_keps_sSinCos_E9EPnnn,
       (const Kep32f *src, Kep32f *dstSin, Kep32f *dstCos, int32_t len));
OWN_TABLE(keps::vmath::Pair32, own_keps_sSinCos_E9_ttab);
OWN_FN(int, own_keps_sAtan2_E9LAynn,
       (const Kep32f *src1, const Kep32f *src2, Kep32f *dst, int32_t len));
OWN_FN(int, own_keps_sAtan2_E9HAynn,
       (const Kep32f *src1, const Kep32f *src2, Kep32f *dst, int32_t len));
OWN_FN(int, own_keps_sAtan2_E9EPnnn,
       (const Kep32f *src1, const Kep32f *src2, Kep32f *dst, int32_t len));
OWN_TABLE(keps::vmath::Binary32, own_keps_sAtan2_E9_ttab);
OWN_FN(int, own_keps_dSin_E9LAynn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, own_keps_dSin_E9HAynn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, own_keps_dSin_E9EPnnn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_TABLE(keps::vmath::Unary64, own_keps_dSin_E9_ttab);
OWN_FN(int, own_keps_dCos_E9LAynn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, own_keps_dCos_E9HAynn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, own_keps_dCos_E9EPnnn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_TABLE(keps::vmath::Unary64, own_keps_dCos_E9_ttab);
OWN_FN(int, own_keps_dExp_E9LAynn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, own_keps_dExp_E9HAynn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_TABLE(keps::vmath::Unary64, own_keps_dExp_E9_ttab);
OWN_FN(int, own_keps_dSinh_E9LAynn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, own_keps_dSinh_E9HAynn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_TABLE(keps::vmath::Unary64, own_keps_dSinh_E9_ttab);
OWN_FN(int, own_keps_dCosh_E9LAynn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, own_keps_dCosh_E9HAynn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, own_keps_dCosh_E9EPnnn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_TABLE(keps::vmath::Unary64, own_keps_dCosh_E9_ttab);
OWN_FN(int, own_keps_dLn_E9LAynn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, own_keps_dLn_E9HAynn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, own_keps_dLn_E9EPnnn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_TABLE(keps::vmath::Unary64, own_keps_dLn_E9_ttab);
OWN_FN(int, own_keps_dSqrt_E9LAynn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, own_keps_dSqrt_E9HAynn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, own_keps_dSqrt_E9EPnnn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_TABLE(keps::vmath::Unary64, own_keps_dSqrt_E9_ttab);
OWN_FN(int, own_keps_dAtan_E9LAynn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, own_keps_dAtan_E9HAynn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, own_keps_dAtan_E9EPnnn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_TABLE(keps::vmath::Unary64, own_keps_dAtan_E9_ttab);
OWN_FN(int, own_keps_dSinCos_E9LAynn,
       (const Kep64f *src, Kep64f *dstSin, Kep64f *dstCos, int32_t len));
OWN_FN(int, own_keps_dSinCos_E9HAynn,
       (const Kep64f *src, Kep64f *dstSin, Kep64f *dstCos, int32_t len));
OWN_FN(int, own_keps_dSinCos_E9EPnnn,
       (const Kep64f *src, Kep64f *dstSin, Kep64f *dstCos, int32_t len));
OWN_TABLE(keps::vmath::Pair64, own_keps_dSinCos_E9_ttab);
OWN_FN(int, own_keps_dAtan2_E9LAynn,
       (const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len));
OWN_FN(int, own_keps_dAtan2_E9HAynn,
       (const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len));
OWN_FN(int, own_keps_dAtan2_E9EPnnn,
       (const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len));
OWN_TABLE(keps::vmath::Binary64, own_keps_dAtan2_E9_ttab);
OWN_FN(int, own_keps_dPowx_E9LAynn,
       (const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len));
OWN_FN(int, own_keps_dPowx_E9HAynn,
       (const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len));
OWN_FN(int, own_keps_dPowx_E9EPnnn,
       (const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len));
OWN_TABLE(keps::vmath::Binary64, own_keps_dPowx_E9_ttab);
OWN_FN(int, own_keps_zAbs_E9LAynn, (const Kep64fc *src, Kep64f *dst, int32_t len));
OWN_FN(int, own_keps_zAbs_E9HAynn, (const Kep64fc *src, Kep64f *dst, int32_t len));
OWN_FN(int, own_keps_zAbs_E9EPnnn, (const Kep64fc *src, Kep64f *dst, int32_t len));
OWN_TABLE(keps::vmath::Modulus64, own_keps_zAbs_E9_ttab);

// Entries. A21, A50: relative error at most 2^-21, 2^-50; A24, A53: at most 1 unit in the last
// place; A26: relative error at most 2^-26. Subnormal results are within one unit of their grid.
OWN_FN(int, kepsSin_32f_A21, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, kepsAtan_32f_A21, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, kepsAtan2_32f_A21, (const Kep32f *src1, const Kep32f *src2, Kep32f *dst, int32_t len));
OWN_FN(int, kepsExp_32f_A21, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, kepsLn_32f_A21, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, kepsCbrt_32f_A21, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, kepsSinCos_32f_A21, (const Kep32f *src, Kep32f *dstSin, Kep32f *dstCos, int32_t len));
OWN_FN(int, kepsSin_32f_A24, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, kepsCos_32f_A24, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, kepsSin_64f_A50, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, kepsCos_64f_A50, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, kepsSinCos_64f_A50, (const Kep64f *src, Kep64f *dstSin, Kep64f *dstCos, int32_t len));
OWN_FN(int, kepsExp_64f_A50, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, kepsLn_64f_A50, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, kepsAtan_64f_A50, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, kepsAtan2_64f_A50, (const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len));
OWN_FN(int, kepsAbs_64fc_A50, (const Kep64fc *src, Kep64f *dst, int32_t len));
OWN_FN(int, kepsSin_64f_A53, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, kepsCos_64f_A53, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, kepsSinCos_64f_A53, (const Kep64f *src, Kep64f *dstSin, Kep64f *dstCos, int32_t len));
OWN_FN(int, kepsSinh_64f_A53, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, kepsCosh_64f_A53, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, kepsLn_64f_A53, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, kepsSqrt_64f_A53, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, kepsPowx_64f_A53, (const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len));
OWN_FN(int, kepsCos_64f_A26, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, kepsSinCos_64f_A26, (const Kep64f *src, Kep64f *dstSin, Kep64f *dstCos, int32_t len));

// Hooks for error codes, one for each kind of data; they do nothing.
OWN_FN(void, own_keps_sError, (int code));
OWN_FN(void, own_keps_dError, (int code));
OWN_FN(void, own_keps_cError, (int code));
OWN_FN(void, own_keps_zError, (int code));
