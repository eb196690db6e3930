// Access to single elements of a caller's array: any byte address, any type behind it.
#pragma once

#include "frame/worker.h"

namespace keps {

template <class T>
struct [[gnu::packed, gnu::may_alias]] AnyAddress {
    T value;
};

template <class T>
KEPS_INLINE T loadOne(const T *p) {
    return reinterpret_cast<const AnyAddress<T> *>(p)->value;
}

template <class T>
KEPS_INLINE void storeOne(T *p, T x) {
    reinterpret_cast<AnyAddress<T> *>(p)->value = x;
}

// The same for a width other than the array's own.
template <class T>
KEPS_INLINE T loadAs(const void *p) {
    return loadOne(static_cast<const T *>(p));
}

template <class T>
KEPS_INLINE void storeAs(void *p, T x) {
    storeOne(static_cast<T *>(p), x);
}

// Keeps the compiler from reading a vector anew from memory at each of its uses, where loads are
// scarce: there are two a cycle.
template <class V>
KEPS_INLINE V inRegister(V x) {
    __asm__("" : "+x"(x.v));
    return x;
}

} // namespace keps
