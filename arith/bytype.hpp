// Zero and Copy by the type of their arrays, for templates.
#pragma once

#include "frame/worker.h"

namespace keps {

// clang-format off
KEPS_INLINE KepStatus zeroArray(Kep8u *dst, std::int32_t len) { return kepsZero_8u(dst, len); }
KEPS_INLINE KepStatus zeroArray(Kep16s *dst, std::int32_t len) { return kepsZero_16s(dst, len); }
KEPS_INLINE KepStatus zeroArray(Kep16u *dst, std::int32_t len) { return kepsZero_16s(reinterpret_cast<Kep16s *>(dst), len); }
KEPS_INLINE KepStatus zeroArray(Kep16sc *dst, std::int32_t len) { return kepsZero_16sc(dst, len); }
KEPS_INLINE KepStatus zeroArray(Kep32s *dst, std::int32_t len) { return kepsZero_32s(dst, len); }
KEPS_INLINE KepStatus zeroArray(Kep32sc *dst, std::int32_t len) { return kepsZero_32sc(dst, len); }
KEPS_INLINE KepStatus zeroArray(Kep32f *dst, std::int32_t len) { return kepsZero_32f(dst, len); }
KEPS_INLINE KepStatus zeroArray(Kep64f *dst, std::int32_t len) { return kepsZero_64f(dst, len); }
KEPS_INLINE KepStatus copyUnlike(const Kep8u *src, Kep8u *dst, std::int32_t len) { return kepsCopy_8u(src, dst, len); }
KEPS_INLINE KepStatus copyUnlike(const Kep16s *src, Kep16s *dst, std::int32_t len) { return kepsCopy_16s(src, dst, len); }
KEPS_INLINE KepStatus copyUnlike(const Kep16u *src, Kep16u *dst, std::int32_t len) { return kepsCopy_16s(reinterpret_cast<const Kep16s *>(src), reinterpret_cast<Kep16s *>(dst), len); }
KEPS_INLINE KepStatus copyUnlike(const Kep16sc *src, Kep16sc *dst, std::int32_t len) { return kepsCopy_16sc(src, dst, len); }
KEPS_INLINE KepStatus copyUnlike(const Kep32s *src, Kep32s *dst, std::int32_t len) { return kepsCopy_32s(src, dst, len); }
KEPS_INLINE KepStatus copyUnlike(const Kep32sc *src, Kep32sc *dst, std::int32_t len) { return kepsCopy_32sc(src, dst, len); }
KEPS_INLINE KepStatus copyUnlike(const Kep32f *src, Kep32f *dst, std::int32_t len) { return kepsCopy_32f(src, dst, len); }
KEPS_INLINE KepStatus copyUnlike(const Kep64f *src, Kep64f *dst, std::int32_t len) { return kepsCopy_64f(src, dst, len); }
// clang-format on

// In place there is nothing to copy.
template <class T>
KEPS_INLINE KepStatus copyArray(const T *src, T *dst, std::int32_t len) {
    return src == dst ? kepStatusOk : copyUnlike(src, dst, len);
}

} // namespace keps
