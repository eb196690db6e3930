/** @file
 * libkepcore: aligned memory, processor facts and the thread count of the keps libraries.
 * All functions may be called from any thread at any time.
 */
#ifndef KEPCORE_H
#define KEPCORE_H

#include <stdint.h>

#include "keps_status.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Mask for ownGetFeature(): the half-precision conversion instructions (F16C). */
#define KEP_FEATURE_F16C UINT64_C(0x4000)

/** A block of at least @p bytes bytes on a 64-byte boundary, or null when there is none.
 * A negative count gives null. */
void *kepMalloc(int32_t bytes);
/** As kepMalloc(), for 64-bit sizes. */
void *kepMalloc_L(int64_t bytes);
/** Frees a block of kepMalloc() or kepMalloc_L(); null is lawful and does nothing. */
void kepFree(void *block);

/** @p pointer rounded up to the next multiple of @p alignment bytes, a power of two. */
void *kepAlignPtr(void *pointer, int32_t alignment);

/** Writes the size in bytes of the processor's largest cache.
 * @return #kepStatusOk; #kepStatusNullPointer; #kepStatusBadArgument when the processor doesn't
 * tell, with 0 written. */
KepStatus kepGetMaxCacheSizeB(int32_t *bytes);

/** Non-zero when the processor and the system support every feature of @p mask;
 * #KEP_FEATURE_F16C is the one bit that stands for a feature, any other bit gives 0. */
int ownGetFeature(uint64_t mask);

/** The number of threads that one call may use, at least 1. By default the OpenMP runtime's limit,
 * so the variable OMP_NUM_THREADS counts; kepSetNumThreads() overrides it. 1 in a process that
 * was forked from one that had asked before, since an OpenMP runtime need not survive a fork. */
int ownGetNumThreads(void);
/** Sets what ownGetNumThreads() answers in this process; below 1 restores the default.
 * @return #kepStatusOk. */
KepStatus kepSetNumThreads(int32_t threads);

/** The name of a status code and one plain sentence, as "name: sentence"; a constant text.
 * Every number has an answer. */
const char *kepGetStatusString(KepStatus status);

#ifdef __cplusplus
}
#endif

#endif
