// The vector split: every element exactly once for every team, and a warning from any piece.
#include "frame/omp.hpp"

#include <algorithm>
#include <gtest/gtest.h>
#include <mutex>
#include <vector>

#include "companion.hpp"

namespace {

struct Piece {
    int first, n;
};

template <int cap>
std::vector<Piece> piecesOf(int len, int threshold) {
    std::mutex lock;
    std::vector<Piece> pieces;
    keps::vectorSplit<cap>(len, threshold, [&](int first, int n) {
        const std::lock_guard guard(lock);
        pieces.push_back({first, n});
        return 0;
    });
    std::sort(pieces.begin(), pieces.end(), [](Piece a, Piece b) { return a.first < b.first; });
    return pieces;
}

template <int cap>
void expectPieces(int len, int threads, int team) {
    standin::threads = threads;
    const auto pieces = piecesOf<cap>(len, 1);
    ASSERT_EQ(static_cast<std::size_t>(team), pieces.size()) << len << " by " << threads;
    for (int t = 0; t < team; ++t) {
        EXPECT_EQ(t * (len / team), pieces[t].first);
        EXPECT_EQ(len / team + (t == team - 1 ? len % team : 0), pieces[t].n);
    }
}

class VectorSplit : public testing::Test {
    void TearDown() override { standin::threads = 1; }
};

TEST_F(VectorSplit, contiguousPiecesWithTheRemainderLast) {
    using keps::teamOfTwo, keps::wholeTeam;
    for (const int len : {5, 6, 7, 1000, 1003}) {
        for (const int threads : {1, 0, -3}) expectPieces<wholeTeam>(len, threads, 1);
        for (const int threads : {2, 3, 5}) {
            expectPieces<teamOfTwo>(len, threads, 2);
            expectPieces<wholeTeam>(len, threads, threads);
        }
    }
    expectPieces<teamOfTwo>(2, 3, 1); // fewer elements than allowed threads
    expectPieces<wholeTeam>(4, 5, 1);
}

TEST_F(VectorSplit, asksOnceAndFromTheThresholdOn) {
    standin::threads = 2;
    for (const int len : {99, 100, 101}) {
        standin::asked = {};
        EXPECT_EQ(len < 100 ? 1u : 2u, piecesOf<keps::teamOfTwo>(len, 100).size());
        EXPECT_EQ(len < 100 ? 0 : 1, standin::asked.threadQueries);
    }
}

TEST_F(VectorSplit, warningOfAnyPiece) {
    standin::threads = 4;
    for (int bad = -1; bad < 10; ++bad) {
        const int warning = keps::vectorSplit<keps::wholeTeam>(
            10, 1, [=](int first, int n) { return first <= bad && bad < first + n; });
        EXPECT_EQ(bad >= 0, warning != 0) << bad;
    }
}

// Inside a caller's region the runtime gives teams of one; all elements are covered all the same.
TEST_F(VectorSplit, insideACallersRegion) {
    standin::threads = 2;
    constexpr int callers = 3, len = 101;
    std::vector<int> visits(callers * len);
#pragma omp parallel for num_threads(callers)
    for (int c = 0; c < callers; ++c)
        keps::vectorSplit<keps::teamOfTwo>(len, 1, [&](int first, int n) {
            for (int i = first; i < first + n; ++i) ++visits[c * len + i];
            return 0;
        });
    for (const int v : visits) EXPECT_EQ(1, v);
}

} // namespace
