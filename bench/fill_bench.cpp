// Zero, Set, Copy, Move against the C library's memory functions; Set of wider patterns against the
// plain loop.
#include <cstring>
#include <memory>
#include <vector>

#include "bench.hpp"
#include "fill_peer.hpp"
#include "keps.h"

namespace {

struct Areas {
    explicit Areas(std::int64_t bytes)
        : a(static_cast<std::size_t>(bytes) + 128), b(static_cast<std::size_t>(bytes) + 128) {}
    std::vector<Kep8u> a, b;
};

Kep8u *from(std::vector<Kep8u> &area, int offset) {
    const auto start = reinterpret_cast<std::uintptr_t>(area.data());
    return area.data() + ((64 - start % 64) % 64) + offset;
}

void addSize(std::int64_t n, int dstOffset, int srcOffset) {
    const auto areas = std::make_shared<Areas>(n + 64);
    Kep8u *dst = from(areas->a, dstOffset), *src = from(areas->b, srcOffset);
    const int len = static_cast<int>(n);
    const auto bytes = static_cast<std::size_t>(n);
    const std::string place = " dst+" + std::to_string(dstOffset) +
                              (srcOffset ? " src+" + std::to_string(srcOffset) : "");
    if (srcOffset == 0) {
        bench::add({"fill", "kepsZero_8u" + place, n, "memset",
                    [areas, dst, len] { kepsZero_8u(dst, len); },
                    [areas, dst, bytes] { std::memset(dst, 0, bytes); }, nullptr});
        bench::add({"fill", "kepsZero_32f" + place, n, "memset",
                    [areas, dst, len] { kepsZero_32f(reinterpret_cast<Kep32f *>(dst), len / 4); },
                    [areas, dst, bytes] { std::memset(dst, 0, bytes); }, nullptr});
        bench::add({"fill", "kepsSet_8u" + place, n, "memset",
                    [areas, dst, len] { kepsSet_8u(7, dst, len); },
                    [areas, dst, bytes] { std::memset(dst, 7, bytes); }, nullptr});
        bench::add(
            {"fill", "kepsSet_32f" + place, n, "plain loop",
             [areas, dst, len] { kepsSet_32f(1.5F, reinterpret_cast<Kep32f *>(dst), len / 4); },
             [areas, dst, len] { peer::set(1.5F, reinterpret_cast<Kep32f *>(dst), len / 4); },
             nullptr});
        bench::add(
            {"fill", "kepsSet_64f" + place, n, "plain loop",
             [areas, dst, len] { kepsSet_64f(1.5, reinterpret_cast<Kep64f *>(dst), len / 8); },
             [areas, dst, len] { peer::set(1.5, reinterpret_cast<Kep64f *>(dst), len / 8); },
             nullptr});
    }
    bench::add({"fill", "kepsCopy_8u" + place, n, "memcpy",
                [areas, dst, src, len] { kepsCopy_8u(src, dst, len); },
                [areas, dst, src, bytes] { std::memcpy(dst, src, bytes); }, nullptr});
    bench::add({"fill", "kepsMove_8u" + place, n, "memmove",
                [areas, dst, src, len] { kepsMove_8u(src, dst, len); },
                [areas, dst, src, bytes] { std::memmove(dst, src, bytes); }, nullptr});
}

const bench::Family family("fill", [] {
    for (std::int64_t n = 64; n <= (std::int64_t{64} << 20); n *= 4) {
        addSize(n, 0, 0);
        addSize(n, 4, 0);
        addSize(n, 0, 4);
        addSize(n, 16, 0);
    }
});

} // namespace
