// Move over overlapping areas, and the direction flag of the string kernels.
#include "frame/bytes.hpp"
#include <algorithm>

#include "harness/data.hpp"
#include "harness/guarded.hpp"

namespace {

using namespace harness;

void expectMoved(int n, int distance) {
    Random random(seed());
    const int span = n + std::abs(distance);
    const auto original = mixed<Kep8u>(static_cast<std::size_t>(span), random);
    for (int misalignment : {0, 1, 4, 13}) {
        std::vector<Kep8u> area(static_cast<std::size_t>(span + 64));
        Kep8u *base = area.data() + 32 + misalignment;
        std::copy(original.begin(), original.end(), base);
        Kep8u *src = base + (distance < 0 ? -distance : 0);
        Kep8u *dst = src + distance;
        const auto before = std::vector<Kep8u>(area);
        auto expected = before;
        std::memmove(expected.data() + (dst - area.data()), before.data() + (src - area.data()),
                     static_cast<std::size_t>(n));
        ASSERT_EQ(kepStatusOk, kepsMove_8u(src, dst, n));
        ASSERT_EQ(expected, area) << "n " << n << ", distance " << distance << ", misalignment "
                                  << misalignment;
    }
}

TEST(Move, everyOverlapOfShortAreas) {
    for (const int n : {1, 2, 3, 7, 15, 31, 63, 64, 65, 100, 128, 200, 300})
        for (int distance = -140; distance <= 140; ++distance) expectMoved(n, distance);
}

TEST(Move, overlapAcrossTheStringThreshold) {
    for (const int n : {32767, 32768, 32769, 70000})
        for (const int distance : {-4096, -64, -17, -8, -4, -3, -2, -1, 0, 1, 5, 16, 64, 4096})
            expectMoved(n, distance);
}

TEST(Move, sameAddressWritesNothing) {
    // A read-only area would fault on any write.
    static const Kep8u constant[64] = {1, 2, 3};
    EXPECT_EQ(kepStatusOk, kepsMove_8u(constant, const_cast<Kep8u *>(constant), 64));
}

// The string kernels find the direction flag set: they still work upward, and leave it set.
template <class Call>
bool keepsDirectionFlag(Call call) {
    std::uint64_t flags;
    __asm__ volatile("std" ::: "memory", "cc");
    call();
    __asm__ volatile("pushfq; popq %0; cld" : "=r"(flags)::"memory", "cc");
    return flags & 0x400;
}

TEST(Move, stringKernelsRestoreTheDirectionFlag) {
    std::vector<Kep8u> from(40000, 7), to(40000, 1);
    for (int shift = 0; shift < 8; ++shift) {
        const Kep8u *src = from.data() + shift;
        Kep8u *dst = to.data();
        EXPECT_TRUE(keepsDirectionFlag([=] { ownsCopy_8u_repE9(src, dst, 39000); }));
        EXPECT_EQ(39000, std::count(to.begin(), to.end(), 7));
        EXPECT_TRUE(keepsDirectionFlag([=] { ownsZero_8u_repE9(dst, 39001); }));
        EXPECT_EQ(39001, std::count(to.begin(), to.end(), 0));
        std::fill(to.begin(), to.end(), Kep8u{1});
    }
}

TEST(Move, internalCopiesChooseByLength) {
    Random random(seed());
    for (const int n : {0, 1, 255, 256, 16383, 16384, 32767, 32768, 50001}) {
        const auto from = mixed<Kep8u>(static_cast<std::size_t>(n) + 1, random);
        std::vector<Kep8u> to(from.size(), 0x5A);
        ownsCopy_8u(from.data(), to.data(), n);
        EXPECT_TRUE(std::equal(from.begin(), from.end() - 1, to.begin()));
        EXPECT_EQ(0x5A, to.back());
        ownsZero_8u(to.data(), n);
        EXPECT_EQ(n, std::count(to.begin(), to.end() - 1, 0));
        EXPECT_EQ(0x5A, to.back());
    }
}

} // namespace
