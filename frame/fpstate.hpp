// The calling thread's floating-point control state: the one place that writes a control word.
// Whoever changes a word restores it before returning, by scope.
#pragma once

#include <immintrin.h>

#include "frame/worker.h"

namespace keps {

// Fields of the vector control and status register.
inline constexpr unsigned roundingMask = 0x6000;
inline constexpr unsigned roundNearest = 0x0000;
inline constexpr unsigned roundTowardZero = 0x6000;

// Loads the register.
KEPS_INLINE void kep_set_cw_ssx(unsigned value) {
    _mm_setcsr(value);
}

// Makes the rounding field bits, one of 0, 0x2000, 0x4000, 0x6000; writes the register only where
// it differs. Returns the old register.
KEPS_INLINE unsigned kep_set_rc_ssx(unsigned bits) {
    const unsigned old = _mm_getcsr();
    if ((old & roundingMask) != bits) kep_set_cw_ssx((old & ~roundingMask) | bits);
    return old;
}

// Whether the rounding field is bits.
KEPS_INLINE bool isRounding(unsigned bits) {
    return (_mm_getcsr() & roundingMask) == bits;
}

// Replaces the masked bits of the register; returns the old one.
KEPS_INLINE unsigned ps_set_ssx(unsigned value, unsigned mask) {
    const unsigned old = _mm_getcsr();
    kep_set_cw_ssx((old & ~mask) | (value & mask));
    return old;
}

// The x87 control word.
KEPS_INLINE unsigned ps_get_cw_fpu() {
    std::uint16_t word;
    __asm__ volatile("fnstcw %0" : "=m"(word));
    return word;
}

// Replaces the masked bits of the x87 control word; returns the old one.
KEPS_INLINE unsigned ps_set_cw_fpu(unsigned value, unsigned mask) {
    const unsigned old = ps_get_cw_fpu();
    const auto word = static_cast<std::uint16_t>((old & ~mask) | (value & mask));
    __asm__ volatile("fldcw %0" : : "m"(word));
    return old;
}

// 1 when the exponent is all ones and the mantissa not zero.
KEPS_INLINE int kep_isnan(Kep64f x) {
    const auto bits = __builtin_bit_cast(std::uint64_t, x);
    return (bits & 0x7FFFFFFFFFFFFFFF) > 0x7FF0000000000000;
}

// A rounding mode for a scope. Floating-point work must not move across its borders, which the
// compiler cannot know: keep kernels that depend on the mode out of line or behind the volatile
// register access that these functions are.
class RoundingScope {
public:
    explicit RoundingScope(unsigned bits) : old(kep_set_rc_ssx(bits)) {}
    ~RoundingScope() {
        if ((_mm_getcsr() & roundingMask) != (old & roundingMask))
            kep_set_cw_ssx((_mm_getcsr() & ~roundingMask) | (old & roundingMask));
    }
    RoundingScope(const RoundingScope &) = delete;
    RoundingScope &operator=(const RoundingScope &) = delete;

private:
    unsigned old;
};

// The default arithmetic for a scope: to nearest, denormals kept, no exception trapped. The
// caller's word comes back with the exceptions that were raised. The same caution.
class DefaultArithmetic {
public:
    DefaultArithmetic() : found(_mm_getcsr()) {
        if ((found & ~exceptions) != ours) kep_set_cw_ssx(ours);
    }
    ~DefaultArithmetic() {
        if ((found & ~exceptions) != ours) kep_set_cw_ssx(found | (_mm_getcsr() & exceptions));
    }
    DefaultArithmetic(const DefaultArithmetic &) = delete;
    DefaultArithmetic &operator=(const DefaultArithmetic &) = delete;

private:
    static constexpr unsigned ours = 0x1F80, exceptions = 0x3F;
    unsigned found;
};

} // namespace keps
