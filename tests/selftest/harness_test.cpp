// The harness catches broken functions: each of these has one fault.
#include <gtest/gtest-spi.h>

#include "harness/elementwise.hpp"

namespace {

using namespace harness;

using Case = Elementwise<Kep16s, Kep16s>;

KepStatus negate(const Kep16s *src, Kep16s *dst, int n) {
    for (int i = 0; i < n; ++i) {
        Kep16s x;
        std::memcpy(&x, reinterpret_cast<const char *>(src + i), sizeof x);
        x = static_cast<Kep16s>(-x);
        std::memcpy(reinterpret_cast<char *>(dst + i), &x, sizeof x);
    }
    return kepStatusOk;
}

Case broken(Case::Call call) {
    return {.name = "broken", .call = std::move(call), .oracle = negate};
}

void checkStatic(Case::Call call) {
    check(broken(std::move(call)));
}

#define EXPECT_CAUGHT(text, ...) EXPECT_NONFATAL_FAILURE(checkStatic(__VA_ARGS__), text)

TEST(Harness, passesAGoodFunction) {
    check(broken(negate));
}

TEST(Harness, catchesAWrongTail) {
    EXPECT_CAUGHT("element", [](const Kep16s *src, Kep16s *dst, int n) {
        return negate(src, dst, n > 60 ? n - 1 : n);
    });
}

TEST(Harness, catchesAWriteBehindTheArray) {
    EXPECT_CAUGHT("bytes around", [](const Kep16s *src, Kep16s *dst, int n) {
        // Below the guard page only, so that the fault is a changed canary.
        if (n == 40 && (reinterpret_cast<std::uintptr_t>(dst + n) & 4095) != 0)
            reinterpret_cast<char *>(dst + n)[0] = 0;
        return negate(src, dst, n);
    });
}

TEST(Harness, catchesAWrittenSource) {
    EXPECT_CAUGHT("was written", [](const Kep16s *src, Kep16s *dst, int n) {
        negate(src, dst, n);
        if (n == 33 && src != dst) reinterpret_cast<char *>(const_cast<Kep16s *>(src))[0] ^= 1;
        return KepStatus{kepStatusOk};
    });
}

TEST(Harness, catchesAnAliasFault) {
    EXPECT_CAUGHT("dst is source", [](const Kep16s *src, Kep16s *dst, int n) {
        negate(src, dst, n);
        if (src == dst && n == 20) reinterpret_cast<char *>(dst)[1] ^= 1;
        return KepStatus{kepStatusOk};
    });
}

TEST(Harness, catchesAWrongStatus) {
    EXPECT_CAUGHT("expected status", [](const Kep16s *src, Kep16s *dst, int n) {
        negate(src, dst, n);
        return KepStatus{n == 50 ? kepStatusDivisionWarning : kepStatusOk};
    });
}

TEST(Harness, catchesDirtyUpperHalvesAndControlWords) {
    EXPECT_NONFATAL_FAILURE(guarded([] {
                                __asm__ volatile("vcmpps $15, %%ymm7, %%ymm7, %%ymm7" ::: "memory");
                                return 0;
                            }),
                            "upper vector halves");
    EXPECT_NONFATAL_FAILURE(guarded([] {
                                const unsigned changed = 0x7F80;
                                __asm__ volatile("ldmxcsr %0" ::"m"(changed));
                                return 0;
                            }),
                            "vector control");
    const unsigned usual = 0x1F80;
    __asm__ volatile("ldmxcsr %0" ::"m"(usual));
    EXPECT_NONFATAL_FAILURE(guarded([] {
                                const std::uint16_t changed = 0x27F;
                                __asm__ volatile("fldcw %0" ::"m"(changed));
                                return 0;
                            }),
                            "x87 control");
    const std::uint16_t usualWord = 0x37F;
    __asm__ volatile("fldcw %0" ::"m"(usualWord));
    EXPECT_NONFATAL_FAILURE(guarded([] {
                                __asm__ volatile("std" ::: "cc");
                                return 0;
                            }),
                            "direction flag");
}

TEST(HarnessDeathTest, readBehindTheArrayFaults) {
    Room room(100);
    const volatile std::uint8_t *p = room.place(100, {Spot::endsAtGuard});
    EXPECT_DEATH({ [[maybe_unused]] const auto byte = p[100]; }, "");
    p = room.place(100, {Spot::beginsAtGuard});
    EXPECT_DEATH({ [[maybe_unused]] const auto byte = p[-1]; }, "");
}

} // namespace
