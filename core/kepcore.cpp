// The companion: aligned memory, processor facts, the thread count, status texts.
#include <atomic>
#include <cpuid.h>
#include <cstdlib>
#include <omp.h>
#include <pthread.h>

#include "kepcore.h"

#define KEP_EXPORT [[gnu::visibility("default")]]

extern "C" {

KEP_EXPORT void *kepMalloc(int32_t bytes) {
    return kepMalloc_L(bytes);
}

KEP_EXPORT void *kepMalloc_L(int64_t bytes) {
    if (bytes < 0) return nullptr;
    constexpr std::size_t alignment = 64;
    void *block = nullptr;
    return posix_memalign(&block, alignment, static_cast<std::size_t>(bytes)) == 0 ? block
                                                                                   : nullptr;
}

KEP_EXPORT void kepFree(void *block) {
    std::free(block);
}

KEP_EXPORT void *kepAlignPtr(void *pointer, int32_t alignment) {
    const auto step = static_cast<std::uintptr_t>(alignment);
    const auto address = reinterpret_cast<std::uintptr_t>(pointer);
    return reinterpret_cast<void *>((address + step - 1) & ~(step - 1));
}
}

namespace {

// Sizes of all caches that a leaf of deterministic cache parameters lists; the largest one.
std::int64_t largestListedCache(unsigned leaf) {
    std::int64_t largest = 0;
    for (unsigned index = 0; index < 32; ++index) {
        unsigned a = 0, b = 0, c = 0, d = 0;
        __cpuid_count(leaf, index, a, b, c, d);
        if ((a & 31) == 0) break;
        const std::int64_t ways = (b >> 22) + 1, partitions = ((b >> 12) & 0x3FF) + 1;
        const std::int64_t line = (b & 0xFFF) + 1, sets = std::int64_t{c} + 1;
        const std::int64_t bytes = ways * partitions * line * sets;
        if (bytes > largest) largest = bytes;
    }
    return largest;
}

// Leaf 4 is one vendor's list, leaf 0x8000001D the other's of the same form; before that came
// leaf 0x80000006 with second- and third-level sizes.
std::int64_t findLargestCache() {
    unsigned a = 0, b = 0, c = 0, d = 0;
    __cpuid(0, a, b, c, d);
    std::int64_t largest = a >= 4 ? largestListedCache(4) : 0;
    __cpuid(0x80000000, a, b, c, d);
    const unsigned highest = a;
    if (largest == 0 && highest >= 0x8000001D) {
        __cpuid(0x80000001, a, b, c, d);
        constexpr unsigned topologyExtensions = 1u << 22;
        if (c & topologyExtensions) largest = largestListedCache(0x8000001D);
    }
    if (largest == 0 && highest >= 0x80000006) {
        __cpuid(0x80000006, a, b, c, d);
        const std::int64_t second = std::int64_t{c >> 16} << 10;
        const std::int64_t third = std::int64_t{d >> 18} << 19;
        largest = third > second ? third : second;
    }
    return largest;
}

bool findF16c() {
    unsigned a = 0, b = 0, c = 0, d = 0;
    if (!__get_cpuid(1, &a, &b, &c, &d)) return false;
    constexpr unsigned needed = 1u << 29 | 1u << 28 | 1u << 27; // F16C, AVX, OSXSAVE
    if ((c & needed) != needed) return false;
    unsigned low = 0, high = 0;
    __asm__("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
    return (low & 6) == 6;
}

// Facts that don't change while the process runs; asked once, -1 until then. A race writes the
// same value twice.
std::atomic<std::int64_t> knownCache{-1};
std::atomic<int> knownF16c{-1};

std::atomic<int> threadsSet{0};
std::atomic<bool> isForkedChild{false};
std::atomic<bool> watchesForks{false};

void watchForks() {
    if (watchesForks.exchange(true)) return;
    pthread_atfork(nullptr, nullptr, [] { isForkedChild = true; });
}

} // namespace

extern "C" {

KEP_EXPORT KepStatus kepGetMaxCacheSizeB(int32_t *bytes) {
    if (bytes == nullptr) return kepStatusNullPointer;
    std::int64_t size = knownCache;
    if (size < 0) knownCache = size = findLargestCache();
    if (size > INT32_MAX) size = INT32_MAX;
    *bytes = static_cast<int32_t>(size);
    return size > 0 ? kepStatusOk : kepStatusBadArgument;
}

KEP_EXPORT int ownGetFeature(uint64_t mask) {
    int f16c = knownF16c;
    if (f16c < 0) knownF16c = f16c = findF16c();
    return (mask & ~(f16c ? KEP_FEATURE_F16C : 0)) == 0;
}

KEP_EXPORT int ownGetNumThreads(void) {
    if (isForkedChild) return 1;
    watchForks();
    const int set = threadsSet;
    if (set >= 1) return set;
    const int most = omp_get_max_threads();
    return most >= 1 ? most : 1;
}

KEP_EXPORT KepStatus kepSetNumThreads(int32_t threads) {
    threadsSet = threads;
    return kepStatusOk;
}

KEP_EXPORT const char *kepGetStatusString(KepStatus status) {
    switch (status) {
#define STATUS_TEXT(number, name, sentence)                                                        \
    case number:                                                                                   \
        return #name ": " sentence;
        KEP_STATUS_LIST(STATUS_TEXT)
#undef STATUS_TEXT
    default:
        return "unknown: This number is not a status code of the library.";
    }
}
}
