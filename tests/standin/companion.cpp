#include "companion.hpp"

#include "kepcore.h"

namespace standin {

Asked asked;
std::int32_t cacheBytes = 1 << 20;
std::int32_t cacheStatus = kepStatusOk;
int hasFeature = 0;
int threads = 1;
char block32, block64;

} // namespace standin

extern "C" {

void *kepMalloc(int32_t bytes) {
    standin::asked.bytes32.push_back(bytes);
    return &standin::block32;
}

void *kepMalloc_L(int64_t bytes) {
    standin::asked.bytes64.push_back(bytes);
    return &standin::block64;
}

void kepFree(void *block) {
    standin::asked.freed.push_back(block);
}

KepStatus kepGetMaxCacheSizeB(int32_t *bytes) {
    ++standin::asked.cacheQueries;
    *bytes = standin::cacheBytes;
    return standin::cacheStatus;
}

int ownGetFeature(uint64_t) {
    ++standin::asked.featureQueries;
    return standin::hasFeature;
}

int ownGetNumThreads(void) {
    // Callers' own teams ask too.
    __atomic_add_fetch(&standin::asked.threadQueries, 1, __ATOMIC_RELAXED);
    return standin::threads;
}
}
