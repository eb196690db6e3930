// Set: fill with a value. 8-, 16- and 32-bit values by 32-byte stores and, past the largest cache,
// non-temporal ones; 64- and 128-bit values by 16-byte stores.
#include <cpuid.h>

#include "frame/entry.hpp"
#include "frame/fill.hpp"
#include "kepcore.h"

using namespace keps;

namespace keps::fill {
namespace {

struct Descriptor {
    std::uint8_t code;
    std::uint8_t size; // (size >> 4) << ((size & 15) + 18) bytes
};

// Leaf 2 descriptors of one vendor's processors, by falling size, so that the largest listed cache
// is found first.
// clang-format off
constexpr Descriptor TableCacheSize[] = {
    {0xEC, 0x64}, // 24 MiB
    {0xEB, 0x93}, // 18 MiB
    {0x4D, 0x44}, // 16 MiB
    {0xEA, 0x63}, {0x4C, 0x63}, // 12 MiB
    {0xE4, 0x24}, {0xDE, 0x24}, {0x4B, 0x24}, {0x47, 0x24}, // 8 MiB
    {0x4E, 0x62}, {0x4A, 0x62}, // 6 MiB
    {0xE3, 0x23}, {0xDD, 0x23}, {0xD8, 0x23}, {0x49, 0x23}, {0x29, 0x23}, {0x46, 0x23}, // 4 MiB
    {0x48, 0x32}, // 3 MiB
    {0xE2, 0x22}, {0xDC, 0x22}, {0xD7, 0x22}, {0xD2, 0x22}, {0x25, 0x22}, {0x7D, 0x22}, {0x85, 0x22}, {0x45, 0x22}, // 2 MiB
    {0xD6, 0x21}, {0xD1, 0x21}, {0x23, 0x21}, {0x87, 0x21}, {0x7C, 0x21}, {0x78, 0x21}, {0x84, 0x21}, {0x44, 0x21}, // 1 MiB
    {0xD0, 0x11}, {0x22, 0x11}, {0x7B, 0x11}, {0x80, 0x11}, {0x86, 0x11}, {0x3E, 0x11}, {0x7F, 0x11}, {0x83, 0x11}, {0x43, 0x11}, // 512 KiB
    {0, 0},
};
// clang-format on

CacheLeaves askProcessor() {
    CacheLeaves leaves{};
    std::uint32_t highest = 0;
    __cpuid(0, highest, leaves.vendor[0], leaves.vendor[2], leaves.vendor[1]);
    if (highest >= 2)
        __cpuid(2, leaves.leaf2[0], leaves.leaf2[1], leaves.leaf2[2], leaves.leaf2[3]);
    return leaves;
}

size cacheByDescriptors() {
    return descriptorCacheSize(askProcessor());
}

size cacheByCompanion() {
    std::int32_t bytes = 0;
    return kepGetMaxCacheSizeB(&bytes) == kepStatusOk ? size{bytes} : 0;
}

} // namespace

size descriptorCacheSize(const CacheLeaves &leaves) {
    // "Genu" "ineI" "ntel": the vendor that the table is for.
    constexpr std::uint32_t tableVendor[3] = {0x756E6547, 0x49656E69, 0x6C65746E};
    for (int i = 0; i < 3; ++i)
        if (leaves.vendor[i] != tableVendor[i]) return 0;
    if ((leaves.leaf2[0] & 0xFF) != 1) return 0;

    // Registers with the top bit set hold no descriptors. The first one left counts 3 bytes, the
    // others 4, and the byte at index 0 is never looked at: it is the leaf's call count when the
    // first register is there.
    std::uint8_t bytes[16] = {};
    int written = 0, count = 0;
    for (const std::uint32_t word : leaves.leaf2) {
        if (word == 0 || word >> 31) continue;
        storeAs(bytes + written, word);
        count += written == 0 ? 3 : 4;
        written += 4;
    }
    for (const Descriptor *row = TableCacheSize; row->code != 0; ++row)
        for (int i = count; i >= 1; --i)
            if (bytes[i] == row->code) return size{row->size >> 4} << ((row->size & 15) + 18);
    return 0;
}

} // namespace keps::fill

// clang-format off
void ownsSet_8u_E9(Kep8u val, Kep8u *dst, size len) { fill::cached(val, dst, len); }
void ownsSet_16u_E9(Kep16u val, Kep16u *dst, size len) { fill::cached(val, dst, len); }
void ownsSet_32s_E9(Kep32s val, Kep32s *dst, size len) { fill::cached(val, dst, len); }
void ownsSet_8u(Kep8u val, Kep8u *dst, size len) { fill::byCache(val, dst, len, fill::cacheByCompanion); }
void ownsSet_16u(Kep16u val, Kep16u *dst, size len) { fill::byCache(val, dst, len, fill::cacheByCompanion); }
void ownsSet_32s(Kep32s val, Kep32s *dst, size len) { fill::byCache(val, dst, len, fill::cacheByCompanion); }
// clang-format on

void ownsSet_64s(Kep64s val, Kep64s *dst, size len) {
    fill::set64(static_cast<std::uint64_t>(val), dst, len, fill::cacheByDescriptors);
}

void ownsSet_64sc(Kep64sc val, Kep64sc *dst, size len) {
    fill::set128(static_cast<std::uint64_t>(val.re), static_cast<std::uint64_t>(val.im), dst, len,
                 fill::cacheByDescriptors);
}

namespace {

// One worker for each width; a value of another type of the width is taken by its bits.
template <class Bits, class T>
KepStatus setAll(T val, T *dst, int32_t len) {
    static_assert(sizeof(Bits) == sizeof(T));
    if (const KepStatus refused = refuse(len, dst)) return refused;
    const auto bits = __builtin_bit_cast(Bits, val);
    auto *to = reinterpret_cast<Bits *>(dst);
    [[maybe_unused]] const bool small = byteCount<T>(len) <= fill::streamingFrom;
    if constexpr (sizeof(T) <= 4) {
        // The vector kernel's short path, without a further call.
        if (byteCount<T>(len) < 256 && isAligned(dst, sizeof(T))) {
            fill::upTo255(reinterpret_cast<std::uint8_t *>(dst), fill::patternOf(bits),
                          byteCount<T>(len));
            return kepStatusOk;
        }
    }
    if constexpr (sizeof(T) == 1) small ? ownsSet_8u_E9(bits, to, len) : ownsSet_8u(bits, to, len);
    if constexpr (sizeof(T) == 2)
        small ? ownsSet_16u_E9(bits, to, len) : ownsSet_16u(bits, to, len);
    if constexpr (sizeof(T) == 4)
        small ? ownsSet_32s_E9(bits, to, len) : ownsSet_32s(bits, to, len);
    if constexpr (sizeof(T) == 8) ownsSet_64s(bits, to, len);
    if constexpr (sizeof(T) == 16) ownsSet_64sc(bits, to, len);
    return kepStatusOk;
}

} // namespace

// clang-format off
KepStatus kepsSet_8u(Kep8u val, Kep8u *dst, int32_t len) { return setAll<Kep8u>(val, dst, len); }
KepStatus kepsSet_16s(Kep16s val, Kep16s *dst, int32_t len) { return setAll<Kep16u>(val, dst, len); }
KepStatus kepsSet_16sc(Kep16sc val, Kep16sc *dst, int32_t len) { return setAll<Kep32s>(val, dst, len); }
KepStatus kepsSet_32f(Kep32f val, Kep32f *dst, int32_t len) { return setAll<Kep32s>(val, dst, len); }
KepStatus kepsSet_32fc(Kep32fc val, Kep32fc *dst, int32_t len) { return setAll<Kep64s>(val, dst, len); }
KepStatus kepsSet_32s(Kep32s val, Kep32s *dst, int32_t len) { return setAll<Kep32s>(val, dst, len); }
KepStatus kepsSet_32sc(Kep32sc val, Kep32sc *dst, int32_t len) { return setAll<Kep64s>(val, dst, len); }
KepStatus kepsSet_64f(Kep64f val, Kep64f *dst, int32_t len) { return setAll<Kep64s>(val, dst, len); }
KepStatus kepsSet_64fc(Kep64fc val, Kep64fc *dst, int32_t len) { return setAll<Kep64sc>(val, dst, len); }
KepStatus kepsSet_64s(Kep64s val, Kep64s *dst, int32_t len) { return setAll<Kep64s>(val, dst, len); }
KepStatus kepsSet_64sc(Kep64sc val, Kep64sc *dst, int32_t len) { return setAll<Kep64sc>(val, dst, len); }
// clang-format on
