#include "harness/guarded.hpp"

#include <cstring>
#include <sys/mman.h>
#include <unistd.h>
#include <xmmintrin.h>
#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#endif

namespace harness {
namespace {

constexpr std::uint8_t canary = 0xA5;

std::size_t pageSize() {
    static const auto size = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return size;
}

std::uint16_t x87ControlWord() {
    std::uint16_t word;
    __asm__ volatile("fnstcw %0" : "=m"(word));
    return word;
}

// In address-sanitizer builds the gaps of a block that lay here before are out of bounds.
void openGaps([[maybe_unused]] std::uint8_t *from, [[maybe_unused]] std::size_t bytes) {
#if defined(__SANITIZE_ADDRESS__)
    __asan_unpoison_memory_region(from, bytes);
#endif
}

extern "C" std::uint64_t guarded_call(void (*f)(void *), void *context, void *uppers);

} // namespace

Room::Room(std::size_t bytes) {
    const std::size_t page = pageSize();
    held = (bytes + 256 + page - 1) / page * page;
    mapped = held + 2 * page;
    void *area = mmap(nullptr, mapped, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (area == MAP_FAILED) std::abort();
    mapping = static_cast<std::uint8_t *>(area);
    begin = mapping + page;
    if (mprotect(begin, held, PROT_READ | PROT_WRITE) != 0) std::abort();
}

Room::~Room() {
    openGaps(begin, held);
    munmap(mapping, mapped);
}

std::uint8_t *Room::place(std::size_t bytes, Spot spot) {
    openGaps(begin, held);
    std::memset(begin, canary, held);
    arrayBytes = bytes;
    switch (spot.kind) {
    case Spot::endsAtGuard:
        array = begin + held - bytes;
        break;
    case Spot::beginsAtGuard:
        array = begin;
        break;
    case Spot::inside:
        array = begin + 64 + spot.offset % 64;
        break;
    }
    if (array + bytes > begin + held) std::abort();
    return array;
}

bool Room::intact() const {
    // A run of bytes is all canary when its first is and each equals the next.
    const auto allCanary = [](const std::uint8_t *from, const std::uint8_t *to) {
        return from == to ||
               (*from == canary &&
                std::memcmp(from, from + 1, static_cast<std::size_t>(to - from) - 1) == 0);
    };
    return allCanary(begin, array) && allCanary(array + arrayBytes, begin + held);
}

__attribute__((no_sanitize("address"))) std::vector<std::uint8_t> blockImage(const void *block,
                                                                             std::size_t bytes) {
    const auto *from = static_cast<const std::uint8_t *>(block);
    std::vector<std::uint8_t> image(bytes);
    std::uint8_t *to = image.data();
    for (std::size_t i = 0; i < bytes; ++i) to[i] = from[i];
    return image;
}

void guardedCall(void (*f)(void *), void *context) {
    alignas(16) std::uint8_t uppers[256];
    const unsigned vectorControl = _mm_getcsr() & 0xFFC0; // without the sticky exception flags
    const std::uint16_t x87 = x87ControlWord();
    const std::uint64_t flags = guarded_call(f, context, uppers);
    EXPECT_EQ(vectorControl, _mm_getcsr() & 0xFFC0u) << "the vector control register has changed";
    EXPECT_EQ(x87, x87ControlWord()) << "the x87 control word has changed";
    EXPECT_EQ(0u, flags & 0x400) << "the direction flag is set";
    static const std::uint8_t clean[256] = {};
    EXPECT_EQ(0, std::memcmp(uppers, clean, sizeof uppers)) << "upper vector halves in use";
}

} // namespace harness
