// A companion that records what it is asked and answers what a test sets: the executable's own
// definitions stand in for those of libkepcore.so.
#pragma once

#include <cstdint>
#include <vector>

namespace standin {

struct Asked {
    std::vector<std::int64_t> bytes32, bytes64;
    std::vector<void *> freed;
    int cacheQueries = 0, featureQueries = 0, threadQueries = 0;
};

extern Asked asked;
extern std::int32_t cacheBytes; // what kepGetMaxCacheSizeB writes
extern std::int32_t cacheStatus;
extern int hasFeature;
extern int threads;

// Blocks that kepMalloc and kepMalloc_L hand out; nothing is allocated.
extern char block32, block64;

} // namespace standin
