// The memory family: typed counts over the companion's allocator. Nothing else in the library
// allocates.
#include "frame/worker.h"
#include "kepcore.h"

namespace {

template <class T>
T *allocate(int32_t len) {
    if (len < 1) return nullptr;
    const std::int64_t bytes = std::int64_t{len} * std::int64_t{sizeof(T)};
    if (bytes > INT32_MAX) return nullptr;
    return static_cast<T *>(kepMalloc(static_cast<std::int32_t>(bytes)));
}

// Here the byte count is held against 64 unsigned bits; what the signed argument of the companion
// then reads as negative is refused there.
template <class T>
T *allocateLong(int64_t len) {
    if (len < 1) return nullptr;
    constexpr std::uint64_t most = UINT64_MAX / sizeof(T);
    if (static_cast<std::uint64_t>(len) > most) return nullptr;
    return static_cast<T *>(
        kepMalloc_L(static_cast<std::int64_t>(static_cast<std::uint64_t>(len) * sizeof(T))));
}

} // namespace

// clang-format off
Kep8u *kepsMalloc_8u(int32_t len) { return allocate<Kep8u>(len); }
Kep8s *kepsMalloc_8s(int32_t len) { return allocate<Kep8s>(len); }
Kep8sc *kepsMalloc_8sc(int32_t len) { return allocate<Kep8sc>(len); }
Kep16u *kepsMalloc_16u(int32_t len) { return allocate<Kep16u>(len); }
Kep16s *kepsMalloc_16s(int32_t len) { return allocate<Kep16s>(len); }
Kep16sc *kepsMalloc_16sc(int32_t len) { return allocate<Kep16sc>(len); }
Kep32u *kepsMalloc_32u(int32_t len) { return allocate<Kep32u>(len); }
Kep32s *kepsMalloc_32s(int32_t len) { return allocate<Kep32s>(len); }
Kep32sc *kepsMalloc_32sc(int32_t len) { return allocate<Kep32sc>(len); }
Kep32f *kepsMalloc_32f(int32_t len) { return allocate<Kep32f>(len); }
Kep32fc *kepsMalloc_32fc(int32_t len) { return allocate<Kep32fc>(len); }
Kep64s *kepsMalloc_64s(int32_t len) { return allocate<Kep64s>(len); }
Kep64sc *kepsMalloc_64sc(int32_t len) { return allocate<Kep64sc>(len); }
Kep64f *kepsMalloc_64f(int32_t len) { return allocate<Kep64f>(len); }
Kep64fc *kepsMalloc_64fc(int32_t len) { return allocate<Kep64fc>(len); }
Kep8u *kepsMalloc_8u_L(int64_t len) { return allocateLong<Kep8u>(len); }
Kep8s *kepsMalloc_8s_L(int64_t len) { return allocateLong<Kep8s>(len); }
Kep8sc *kepsMalloc_8sc_L(int64_t len) { return allocateLong<Kep8sc>(len); }
Kep16u *kepsMalloc_16u_L(int64_t len) { return allocateLong<Kep16u>(len); }
Kep16s *kepsMalloc_16s_L(int64_t len) { return allocateLong<Kep16s>(len); }
Kep16sc *kepsMalloc_16sc_L(int64_t len) { return allocateLong<Kep16sc>(len); }
Kep32u *kepsMalloc_32u_L(int64_t len) { return allocateLong<Kep32u>(len); }
Kep32s *kepsMalloc_32s_L(int64_t len) { return allocateLong<Kep32s>(len); }
Kep32sc *kepsMalloc_32sc_L(int64_t len) { return allocateLong<Kep32sc>(len); }
Kep32f *kepsMalloc_32f_L(int64_t len) { return allocateLong<Kep32f>(len); }
Kep32fc *kepsMalloc_32fc_L(int64_t len) { return allocateLong<Kep32fc>(len); }
Kep64s *kepsMalloc_64s_L(int64_t len) { return allocateLong<Kep64s>(len); }
Kep64sc *kepsMalloc_64sc_L(int64_t len) { return allocateLong<Kep64sc>(len); }
Kep64f *kepsMalloc_64f_L(int64_t len) { return allocateLong<Kep64f>(len); }
Kep64fc *kepsMalloc_64fc_L(int64_t len) { return allocateLong<Kep64fc>(len); }
// clang-format on

void kepsFree(void *block) {
    kepFree(block);
}
