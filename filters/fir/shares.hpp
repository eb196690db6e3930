// How a kernel that makes several vectors of outputs at once goes through its outputs.
#pragma once

#include "frame/worker.h"

namespace keps::fir {

// n outputs, at least lanes, in blocks of at most Most vectors. Even shares, since a block of few
// vectors waits for its own additions. block(vectors, last, step): how many vectors, where the last
// one begins, and how far the next block is; the very last vector ends at n, over the one before it
// where it must.
template <int Most, class Block>
KEPS_INLINE void inEvenShares(size n, size lanes, const Block &block) {
    size vectors = (n + lanes - 1) / lanes;
    for (size blocks = (vectors + Most - 1) / Most; blocks > 1; --blocks) {
        const size share = (vectors + blocks - 1) / blocks;
        block(share, lanes * (share - 1), lanes * share);
        vectors -= share;
        n -= lanes * share;
    }
    block(vectors, n - lanes, n);
}

} // namespace keps::fir
