// Entry tests. The order in a chain's text is the order of the contract.
#pragma once

#include "frame/worker.h"

namespace keps {

template <class... Pointer>
KEPS_INLINE bool anyNull(const Pointer *...pointers) {
    return ((pointers == nullptr) || ...);
}

// The default chain: null pointers, then a length below 1. Zero when the call may go on:
//   if (const KepStatus refused = refuse(len, src, dst)) return refused;
template <class Length, class... Pointer>
KEPS_INLINE KepStatus refuse(Length len, const Pointer *...pointers) {
    if (anyNull(pointers...)) return kepStatusNullPointer;
    if (len < 1) return kepStatusBadLength;
    return kepStatusOk;
}

} // namespace keps
