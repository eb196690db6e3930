// What a compiler may call on its own account, kept inside the library.
#include "frame/bytes.hpp"

extern "C" {

[[gnu::visibility("hidden")]] void *memcpy(void *dst, const void *src, std::size_t n);
[[gnu::visibility("hidden")]] void *memmove(void *dst, const void *src, std::size_t n);
[[gnu::visibility("hidden")]] void *memset(void *dst, int byte, std::size_t n);
[[gnu::visibility("hidden")]] int memcmp(const void *a, const void *b, std::size_t n);

void *memcpy(void *dst, const void *src, std::size_t n) {
    ownsCopy_8u(src, dst, static_cast<keps::size>(n));
    return dst;
}

void *memmove(void *dst, const void *src, std::size_t n) {
    ownsMove_8u(src, dst, static_cast<keps::size>(n));
    return dst;
}

void *memset(void *dst, int byte, std::size_t n) {
    ownsSet_8u(static_cast<Kep8u>(byte), static_cast<Kep8u *>(dst), static_cast<keps::size>(n));
    return dst;
}

int memcmp(const void *a, const void *b, std::size_t n) {
    const auto *p = static_cast<const std::uint8_t *>(a);
    const auto *q = static_cast<const std::uint8_t *>(b);
    for (std::size_t i = 0; i < n; ++i)
        if (p[i] != q[i]) return p[i] < q[i] ? -1 : 1;
    return 0;
}
}
