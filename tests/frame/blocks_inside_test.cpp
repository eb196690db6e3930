// State blocks and control words.
#include <gtest/gtest.h>

#include "frame/blocks.hpp"
#include "frame/fpstate.hpp"

namespace {

struct Places {
    Kep8u *header;
    Kep64f *table;
    Kep32f *row;
};

keps::size layOut(void *memory, int n, Places &places) {
    keps::Carver block(memory);
    places.header = block.take<Kep8u>(100);
    places.table = block.take<Kep64f>(n);
    places.row = block.take<Kep32f>(3, 16);
    return block.bytes();
}

TEST(Blocks, countingAndPlacingAgree) {
    for (int n = 0; n < 40; ++n) {
        Places counted, placed;
        const keps::size bytes = layOut(nullptr, n, counted);
        EXPECT_EQ(nullptr, counted.table);
        alignas(64) static Kep8u memory[1024];
        EXPECT_EQ(bytes, layOut(memory, n, placed));
        EXPECT_EQ(memory + 128, reinterpret_cast<Kep8u *>(placed.table));
        EXPECT_EQ(0u, reinterpret_cast<std::uintptr_t>(placed.row) % 16);
        EXPECT_EQ(memory + bytes, reinterpret_cast<Kep8u *>(placed.row + 3));
#if defined(__SANITIZE_ADDRESS__)
        __asan_unpoison_memory_region(memory, sizeof memory);
#endif
    }
}

TEST(Blocks, alignUp) {
    EXPECT_EQ(0u, keps::alignUp(std::uintptr_t{0}, 64));
    EXPECT_EQ(64u, keps::alignUp(std::uintptr_t{1}, 64));
    EXPECT_EQ(64u, keps::alignUp(std::uintptr_t{64}, 64));
}

TEST(ControlWords, setAndRestore) {
    using namespace keps;
    const unsigned start = _mm_getcsr();
    EXPECT_EQ(start, kep_set_rc_ssx(roundTowardZero));
    EXPECT_EQ(roundTowardZero, _mm_getcsr() & roundingMask);
    EXPECT_EQ((start & ~roundingMask) | roundTowardZero, ps_set_ssx(0x2000, 0xE000));
    EXPECT_EQ(0x2000u, _mm_getcsr() & 0xE000);
    {
        const RoundingScope scope(0x4000);
        EXPECT_EQ(0x4000u, _mm_getcsr() & roundingMask);
    }
    EXPECT_EQ(0x2000u, _mm_getcsr() & roundingMask);
    kep_set_cw_ssx(start);
    const unsigned word = ps_get_cw_fpu();
    EXPECT_EQ(word, ps_set_cw_fpu(0xFFFF, 0x0C00));
    EXPECT_EQ(word | 0x0C00, ps_get_cw_fpu());
    ps_set_cw_fpu(word, 0xF3F);
    ps_set_cw_fpu(word, 0xFFFF);
    EXPECT_EQ(word, ps_get_cw_fpu());
}

TEST(ControlWords, isNan) {
    EXPECT_EQ(1, keps::kep_isnan(__builtin_nan("")));
    EXPECT_EQ(1, keps::kep_isnan(-__builtin_nan("5")));
    EXPECT_EQ(0, keps::kep_isnan(__builtin_inf()));
    EXPECT_EQ(0, keps::kep_isnan(0.0));
}

} // namespace
