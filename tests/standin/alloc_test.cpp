// The memory family asks the companion for exact byte counts or not at all.
#include <algorithm>
#include <gtest/gtest.h>

#include "companion.hpp"
#include "keps.h"

namespace {

template <class T>
void checkMalloc(T *(*short32)(int32_t), T *(*long64)(int64_t)) {
    using standin::asked;
    asked = {};
    constexpr std::int64_t most = 0x7FFFFFFF / std::int64_t{sizeof(T)};
    for (const std::int64_t n : {std::int64_t{1}, std::int64_t{17}, most}) {
        EXPECT_EQ(&standin::block32, reinterpret_cast<char *>(short32(static_cast<int>(n))));
        ASSERT_FALSE(asked.bytes32.empty());
        EXPECT_EQ(n * std::int64_t{sizeof(T)}, asked.bytes32.back());
    }
    EXPECT_EQ(3u, asked.bytes32.size());
    for (const std::int64_t n :
         {std::int64_t{0}, std::int64_t{-1}, std::int64_t{INT32_MIN}, most + 1})
        if (n <= INT32_MAX) {
            EXPECT_EQ(nullptr, short32(static_cast<int>(n))) << n;
        }
    EXPECT_EQ(3u, asked.bytes32.size()) << "a refused count has reached the companion";

    // 64-bit counts: up to the last one whose bytes fit 64 unsigned bits.
    constexpr auto mostLong = static_cast<std::int64_t>(
        sizeof(T) <= 2 ? INT64_MAX : (std::uint64_t{1} << 63) / sizeof(T) * 2 - 1);
    for (const std::int64_t n : {std::int64_t{1}, std::int64_t{1} << 33, mostLong}) {
        EXPECT_EQ(&standin::block64, reinterpret_cast<char *>(long64(n)));
        ASSERT_FALSE(asked.bytes64.empty());
        EXPECT_EQ(static_cast<std::uint64_t>(n) * sizeof(T),
                  static_cast<std::uint64_t>(asked.bytes64.back()));
    }
    EXPECT_EQ(nullptr, long64(0));
    EXPECT_EQ(nullptr, long64(INT64_MIN));
    if (mostLong < INT64_MAX) {
        EXPECT_EQ(nullptr, long64(mostLong + 1));
    }
    EXPECT_EQ(3u, asked.bytes64.size());
}

TEST(Malloc, everyType) {
    checkMalloc(kepsMalloc_8u, kepsMalloc_8u_L);
    checkMalloc(kepsMalloc_8s, kepsMalloc_8s_L);
    checkMalloc(kepsMalloc_8sc, kepsMalloc_8sc_L);
    checkMalloc(kepsMalloc_16u, kepsMalloc_16u_L);
    checkMalloc(kepsMalloc_16s, kepsMalloc_16s_L);
    checkMalloc(kepsMalloc_16sc, kepsMalloc_16sc_L);
    checkMalloc(kepsMalloc_32u, kepsMalloc_32u_L);
    checkMalloc(kepsMalloc_32s, kepsMalloc_32s_L);
    checkMalloc(kepsMalloc_32sc, kepsMalloc_32sc_L);
    checkMalloc(kepsMalloc_32f, kepsMalloc_32f_L);
    checkMalloc(kepsMalloc_32fc, kepsMalloc_32fc_L);
    checkMalloc(kepsMalloc_64s, kepsMalloc_64s_L);
    checkMalloc(kepsMalloc_64sc, kepsMalloc_64sc_L);
    checkMalloc(kepsMalloc_64f, kepsMalloc_64f_L);
    checkMalloc(kepsMalloc_64fc, kepsMalloc_64fc_L);
}

TEST(Malloc, freePassesItsArgumentOn) {
    standin::asked = {};
    kepsFree(nullptr);
    kepsFree(&standin::block32);
    EXPECT_EQ((std::vector<void *>{nullptr, &standin::block32}), standin::asked.freed);
}

// A cache that the companion calls small makes large fills stream; one that it doesn't know leaves
// them cached. Both fill exactly.
TEST(Set, asksTheCompanionForTheCache) {
    constexpr int n = 0x200000 / 4 + 100;
    std::vector<Kep32s> area(n + 1);
    for (const auto &[bytes, status] :
         {std::pair{1 << 20, 0}, std::pair{0, 0}, std::pair{1 << 20, -5}, std::pair{-1, 0}}) {
        standin::asked = {};
        standin::cacheBytes = bytes;
        standin::cacheStatus = status;
        std::fill(area.begin(), area.end(), 0);
        ASSERT_EQ(kepStatusOk, kepsSet_32s(-9, area.data(), n));
        EXPECT_EQ(1, standin::asked.cacheQueries);
        EXPECT_EQ(n, std::count(area.begin(), area.end(), -9));
        EXPECT_EQ(0, area.back());
    }
    standin::asked = {};
    kepsSet_32s(-9, area.data(), 0x200000 / 4);
    EXPECT_EQ(0, standin::asked.cacheQueries);
}

} // namespace
