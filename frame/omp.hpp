// Parallel regions: opened and closed within one call, on the caller's arrays alone.
#pragma once

#include <omp.h>

#include "frame/worker.h"
#include "kepcore.h"

namespace keps {

// Team sizes that a family asks for: two threads at most, or as many as are allowed.
inline constexpr int teamOfTwo = 2;
inline constexpr int wholeTeam = 0;

// The region of a split, apart: short arrays shall not pay for its frame.
template <int cap, class Kernel>
[[gnu::noinline]] int splitRegion(std::int32_t len, Kernel kernel) {
    const int allowed = ownGetNumThreads();
    if (allowed <= 1 || len < allowed) return kernel(0, len);
    int bad = 0;
#pragma omp parallel num_threads(cap == wholeTeam ? allowed : cap)                                 \
    shared(bad, kernel, len) default(none)
    {
        const int team = omp_get_num_threads(), t = omp_get_thread_num();
        const std::int32_t chunk = len / team, rest = len % team;
        const int warning = kernel(t * chunk, t == team - 1 ? chunk + rest : chunk);
        // Threads only ever store a value that is not 0, so their order does not matter.
        if (warning != 0) __atomic_store_n(&bad, warning, __ATOMIC_RELAXED);
    }
    return bad;
}

// The vector split: kernel(first, n) works on elements first to first + n and returns its warning,
// 0 for none; the split returns a warning if a piece did. At threshold elements and above the array
// is cut into one contiguous piece a thread, the remainder in the last one. The cut follows the
// team that the runtime gave, which within a caller's own region may be one thread. The kernel is
// copied: it holds pointers and numbers.
template <int cap, class Kernel>
KEPS_INLINE int vectorSplit(std::int32_t len, std::int32_t threshold, const Kernel &kernel) {
    if (len < threshold) return kernel(0, len);
    return splitRegion<cap>(len, kernel);
}

} // namespace keps
