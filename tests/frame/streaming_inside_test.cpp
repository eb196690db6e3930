// The streaming fills and the cache-descriptor walk, driven directly: their decisions depend on the
// processor, their code must not go untested on another one.
#include <algorithm>

#include "frame/fill.hpp"
#include "harness/data.hpp"
#include "harness/guarded.hpp"

namespace {

using namespace harness;
using keps::fill::CacheLeaves;

// Fills n elements at every misalignment with fill(val, dst, n) and compares all bytes.
template <class T, class Fill>
void expectFilled(std::initializer_list<int> lengths, Fill fill) {
    Random random(seed());
    const T val = generate<T>(
        1, random, [](Random &r) { return static_cast<typename RealOf<T>::type>(r()); })[0];
    for (const int n : lengths) {
        const auto bytes = static_cast<std::size_t>(n) * sizeof(T);
        Room room(bytes);
        for (int offset = 0; offset<64; offset += n> 4096 ? 7 : 1) {
            for (const Spot spot : {Spot{Spot::inside, offset}, Spot{Spot::endsAtGuard}}) {
                std::uint8_t *dst = room.place(bytes, spot);
                fill(val, reinterpret_cast<T *>(dst), n);
                for (int i = 0; i < n; ++i)
                    ASSERT_EQ(0, std::memcmp(dst + static_cast<std::size_t>(i) * sizeof(T), &val,
                                             sizeof(T)))
                        << "element " << i << " of " << n << " at offset " << offset;
                ASSERT_TRUE(room.intact()) << n << " at offset " << offset;
            }
        }
    }
}

TEST(Streaming, narrowPatterns) {
    const auto streamed = [](auto val, auto *dst, int n) {
        // On its boundary only, as the decision demands.
        if (keps::isAligned(dst, sizeof val))
            keps::fill::streaming(val, dst, n);
        else
            keps::fill::cached(val, dst, n);
    };
    expectFilled<Kep8u>({128, 129, 255, 256, 383, 1000, 1023, 5001}, streamed);
    expectFilled<Kep16u>({64, 65, 127, 128, 200, 511, 1001}, streamed);
    expectFilled<Kep32s>({32, 33, 63, 64, 65, 100, 255, 1003}, streamed);
}

TEST(Streaming, decisionNeedsSizeAlignmentAndAKnownCache) {
    constexpr int justAbove = 0x200000 / 4 + 1;
    std::vector<Kep32s> area(justAbove + 1);
    const auto asks = [&](void *dst, int n, keps::size cache) {
        int asked = 0;
        keps::fill::byCache(Kep32s{-7}, static_cast<Kep32s *>(dst), n, [&] {
            ++asked;
            return cache;
        });
        return asked;
    };
    EXPECT_EQ(0, asks(area.data(), justAbove - 1, 1 << 20)) << "at the least size";
    EXPECT_EQ(1, asks(area.data(), justAbove, 0)) << "cache unknown";
    EXPECT_EQ(1, asks(area.data(), justAbove, 1 << 20));
    EXPECT_EQ(justAbove, std::count(area.begin(), area.end(), -7));
    EXPECT_EQ(0, asks(reinterpret_cast<char *>(area.data()) + 1, justAbove, 1 << 20))
        << "misaligned";
}

TEST(Streaming, widePatterns) {
    for (const keps::size cache : {keps::size{0}, keps::size{1 << 20}}) {
        const auto ask = [cache] { return cache; };
        const auto set64 = [&](Kep64s val, Kep64s *dst, int n) {
            keps::fill::set64(static_cast<std::uint64_t>(val), dst, n, ask);
        };
        const auto set128 = [&](Kep64sc val, Kep64sc *dst, int n) {
            keps::fill::set128(static_cast<std::uint64_t>(val.re),
                               static_cast<std::uint64_t>(val.im), dst, n, ask);
        };
        expectFilled<Kep64s>({1, 2, 3, 4, 7, 8, 9, 16, 17, 100}, set64);
        expectFilled<Kep64sc>({1, 2, 3, 4, 5, 8, 9, 50}, set128);
        expectFilled<Kep64s>({131072, 131073, 131074, 140001}, set64);
        expectFilled<Kep64sc>({65536, 65537, 65538, 70001}, set128);
    }
}

CacheLeaves withDescriptors(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d) {
    return {{0x756E6547, 0x49656E69, 0x6C65746E}, {a, b, c, d}};
}

TEST(CacheDescriptors, everyListedSize) {
    constexpr keps::size KiB = 1024, MiB = 1024 * KiB;
    struct Row {
        keps::size bytes;
        std::vector<std::uint32_t> codes;
    };
    const Row rows[] = {
        {24 * MiB, {0xEC}},
        {18 * MiB, {0xEB}},
        {16 * MiB, {0x4D}},
        {12 * MiB, {0xEA, 0x4C}},
        {8 * MiB, {0xE4, 0xDE, 0x4B, 0x47}},
        {6 * MiB, {0x4E, 0x4A}},
        {4 * MiB, {0xE3, 0xDD, 0xD8, 0x49, 0x29, 0x46}},
        {3 * MiB, {0x48}},
        {2 * MiB, {0xE2, 0xDC, 0xD7, 0xD2, 0x25, 0x7D, 0x85, 0x45}},
        {1 * MiB, {0xD6, 0xD1, 0x23, 0x87, 0x7C, 0x78, 0x84, 0x44}},
        {512 * KiB, {0xD0, 0x22, 0x7B, 0x80, 0x86, 0x3E, 0x7F, 0x83, 0x43}},
    };
    for (const Row &row : rows)
        for (const std::uint32_t code : row.codes)
            EXPECT_EQ(row.bytes, descriptorCacheSize(withDescriptors(code << 8 | 1, 0, 0, 0)))
                << std::hex << code;
}

TEST(CacheDescriptors, walk) {
    using keps::fill::descriptorCacheSize;
    EXPECT_EQ(0, descriptorCacheSize(withDescriptors(1, 0, 0, 0))) << "nothing listed";
    EXPECT_EQ(0, descriptorCacheSize(withDescriptors(0x4D02, 0, 0, 0))) << "more than one call";
    auto other = withDescriptors(0x4D01, 0, 0, 0);
    other.vendor[2] ^= 1;
    EXPECT_EQ(0, descriptorCacheSize(other)) << "another vendor";
    // The largest wins wherever it stands; a register with the top bit set is left out.
    EXPECT_EQ(16 << 20, descriptorCacheSize(withDescriptors(0x4301, 0x44, 0, 0x4D000000)));
    EXPECT_EQ(1 << 20, descriptorCacheSize(withDescriptors(0x4301, 0x44, 0, 0x8000004D)));
    EXPECT_EQ(16 << 20, descriptorCacheSize(withDescriptors(0x7F4D0001, 0, 0, 0)));
    // Without its first register the list loses its first byte, and its last one of four counts.
    EXPECT_EQ(512 << 10, descriptorCacheSize(withDescriptors(0x80000001, 0x434D, 0, 0)));
    EXPECT_EQ(16 << 20, descriptorCacheSize(withDescriptors(0x80000001, 0x4D00004D, 0, 0)));
}

} // namespace
