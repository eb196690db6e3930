// State blocks: memory that the caller gives, aligned and carved up here.
#pragma once

#include "frame/worker.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#endif

namespace keps {

KEPS_INLINE std::uintptr_t alignUp(std::uintptr_t n, std::uintptr_t alignment) {
    return (n + alignment - 1) & ~(alignment - 1);
}

template <class T>
KEPS_INLINE T *alignUp(T *p, std::uintptr_t alignment) {
    return reinterpret_cast<T *>(alignUp(reinterpret_cast<std::uintptr_t>(p), alignment));
}

// Walks over a block's sub-blocks in their order. A family describes its block once, as a function
// over a Carver; built on null it counts bytes (all sub-blocks are null), built on memory it
// places. Offsets are the same in both, so sizes and places cannot drift apart.
class Carver {
public:
    explicit Carver(void *memory = nullptr) : base(static_cast<std::uint8_t *>(memory)) {}

    // The next sub-block of count elements, on a multiple of alignment from the block's start.
    // A block that counts gives null.
    template <class T>
    T *take(size count, std::uintptr_t alignment = 64) {
        const std::uintptr_t start = alignUp(used, alignment);
        const std::uintptr_t end = start + static_cast<std::uintptr_t>(count) * sizeof(T);
        poisonGap(used, start, end);
        used = end;
        return base ? reinterpret_cast<T *>(base + start) : nullptr;
    }

    // Bytes up to the end of the last sub-block.
    size bytes() const { return static_cast<size>(used); }

private:
    // In address-sanitizer builds the gap before a sub-block may not be touched.
    void poisonGap([[maybe_unused]] std::uintptr_t gap, [[maybe_unused]] std::uintptr_t start,
                   [[maybe_unused]] std::uintptr_t end) const {
#if defined(__SANITIZE_ADDRESS__)
        if (base == nullptr) return;
        __asan_poison_memory_region(base + gap, start - gap);
        __asan_unpoison_memory_region(base + start, end - start);
#endif
    }

    std::uint8_t *base;
    std::uintptr_t used = 0;
};

} // namespace keps
