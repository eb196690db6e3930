// The companion.
#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <omp.h>
#include <set>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "kepcore.h"

namespace {

TEST(Companion, memory) {
    for (const int bytes : {0, 1, 63, 64, 65, 1 << 20}) {
        void *block = kepMalloc(bytes);
        ASSERT_NE(nullptr, block);
        EXPECT_EQ(0u, reinterpret_cast<std::uintptr_t>(block) % 64);
        std::memset(block, 1, static_cast<std::size_t>(bytes));
        kepFree(block);
    }
    EXPECT_EQ(nullptr, kepMalloc(-1));
    EXPECT_EQ(nullptr, kepMalloc_L(-1));
    EXPECT_EQ(nullptr, kepMalloc_L(INT64_MAX));
    kepFree(nullptr);
}

TEST(Companion, alignPtr) {
    char area[128];
    for (char *p = area; p < area + 64; ++p) {
        const auto up = reinterpret_cast<std::uintptr_t>(kepAlignPtr(p, 32));
        EXPECT_EQ(0u, up % 32);
        EXPECT_LT(up - reinterpret_cast<std::uintptr_t>(p), 32u);
    }
}

TEST(Companion, processorFacts) {
    std::int32_t bytes = -1;
    ASSERT_EQ(kepStatusOk, kepGetMaxCacheSizeB(&bytes));
    EXPECT_GE(bytes, 128 << 10);
    EXPECT_EQ(kepStatusNullPointer, kepGetMaxCacheSizeB(nullptr));
    std::ifstream facts("/proc/cpuinfo");
    const std::string text(std::istreambuf_iterator<char>(facts), {});
    EXPECT_EQ(text.find(" f16c ") != std::string::npos, ownGetFeature(KEP_FEATURE_F16C) != 0);
    EXPECT_EQ(0, ownGetFeature(KEP_FEATURE_F16C | 1));
    EXPECT_NE(0, ownGetFeature(0));
}

TEST(Companion, threadCount) {
    EXPECT_EQ(omp_get_max_threads(), ownGetNumThreads());
    EXPECT_EQ(kepStatusOk, kepSetNumThreads(7));
    EXPECT_EQ(7, ownGetNumThreads());
    EXPECT_EQ(kepStatusOk, kepSetNumThreads(0));
    EXPECT_EQ(omp_get_max_threads(), ownGetNumThreads());
    const pid_t child = fork();
    if (child == 0) _exit(ownGetNumThreads() == 1 ? 0 : 1);
    int status = -1;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_EQ(0, status) << "a forked child has one thread";
}

TEST(Companion, statusTexts) {
    const std::string ok = kepGetStatusString(kepStatusOk);
    EXPECT_EQ(0u, ok.find("kepStatusOk: ")) << ok;
    std::set<std::string> texts;
    int known = 0;
    for (int code = -300; code <= 20; ++code) {
        const std::string text = kepGetStatusString(code);
        EXPECT_EQ('.', text.back()) << text;
        if (text.compare(0, 9, "kepStatus") == 0) {
            ++known;
            texts.insert(text);
        }
    }
    EXPECT_EQ(49, known);
    EXPECT_EQ(49u, texts.size()) << "two codes share a text";
    for (const int code : {-1, -2, -3, 1, 2, 1000, INT32_MIN})
        EXPECT_NE(0, std::strncmp(kepGetStatusString(code), "kepStatus", 9)) << code;
}

} // namespace
