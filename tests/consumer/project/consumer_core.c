/* The companion alone, without the signal library. */
#include <kepcore.h>
#include <string.h>

int main(void) {
    void *block = kepMalloc(100);
    const int aligned = block != 0 && ((uintptr_t)block & 63) == 0;
    kepFree(block);
    return aligned && ownGetNumThreads() >= 1 &&
                   strncmp(kepGetStatusString(kepStatusOk), "kepStatusOk", 11) == 0
               ? 0
               : 1;
}
