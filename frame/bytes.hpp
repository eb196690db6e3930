// The byte primitives that the whole library fills and moves memory with. None tests its
// arguments. Counts are bytes, or elements where the name's type is wider than a byte.
#pragma once

#include "frame/worker.h"

OWN_FN(void, ownsZero_8u, (void *dst, keps::size n));
OWN_FN(void, ownsZero_8u_E9, (void *dst, keps::size n));
OWN_FN(void, ownsZero_8u_repE9, (void *dst, keps::size n));

// Areas that are the same or don't overlap.
OWN_FN(void, ownsCopy_8u, (const void *src, void *dst, keps::size n));
OWN_FN(void, ownsCopy_8u_E9, (const void *src, void *dst, keps::size n));
// Ascending, so a destination below its source may overlap it; n of 8 and above.
OWN_FN(void, ownsCopy_8u_repE9, (const void *src, void *dst, keps::size n));

// Areas that may overlap in any way.
OWN_FN(void, ownsMove_8u, (const void *src, void *dst, keps::size n));
OWN_FN(void, ownsMove_8u_AVX, (const void *src, void *dst, keps::size n));

// Fill, by streaming stores where the array outgrows the processor's largest cache.
OWN_FN(void, ownsSet_8u, (Kep8u val, Kep8u *dst, keps::size len));
OWN_FN(void, ownsSet_16u, (Kep16u val, Kep16u *dst, keps::size len));
OWN_FN(void, ownsSet_32s, (Kep32s val, Kep32s *dst, keps::size len));
OWN_FN(void, ownsSet_64s, (Kep64s val, Kep64s *dst, keps::size len));
OWN_FN(void, ownsSet_64sc, (Kep64sc val, Kep64sc *dst, keps::size len));
// Fill by cached stores.
OWN_FN(void, ownsSet_8u_E9, (Kep8u val, Kep8u *dst, keps::size len));
OWN_FN(void, ownsSet_16u_E9, (Kep16u val, Kep16u *dst, keps::size len));
OWN_FN(void, ownsSet_32s_E9, (Kep32s val, Kep32s *dst, keps::size len));

namespace keps {

// A byte count as these families form it: in 32 bits, so that a larger one wraps.
template <class T>
KEPS_INLINE size byteCount(std::int32_t len) {
    return size{static_cast<std::uint32_t>(len) * std::uint32_t{sizeof(T)}};
}

KEPS_INLINE bool isAligned(const void *p, std::uintptr_t alignment) {
    return (reinterpret_cast<std::uintptr_t>(p) & (alignment - 1)) == 0;
}

// Bytes from p to the next multiple of alignment, 0 to alignment - 1.
KEPS_INLINE size toBoundary(const void *p, std::uintptr_t alignment) {
    return static_cast<size>(-reinterpret_cast<std::uintptr_t>(p) & (alignment - 1));
}

} // namespace keps
