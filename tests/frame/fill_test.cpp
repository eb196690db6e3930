// Zero, Set, Copy, Move over every type, and their kernels at their thresholds.
#include <algorithm>
#include <numeric>

#include "harness/elementwise.hpp"

namespace {

using namespace harness;

// Lengths in elements around the byte counts where a path changes.
template <class T>
std::vector<int> aroundThresholds() {
    std::vector<int> lengths;
    for (const int bytes : {127, 255, 256, 511, 16384, 32768, 32800, 0x200000}) {
        const int n = bytes / static_cast<int>(sizeof(T));
        for (const int d : {-1, 0, 1}) lengths.push_back(n + d);
    }
    return lengths;
}

template <class T>
void checkFillAndCopy(const std::string &type, KepStatus (*zero)(T *, int32_t),
                      KepStatus (*set)(T, T *, int32_t), KepStatus (*copy)(const T *, T *, int32_t),
                      KepStatus (*move)(const T *, T *, int32_t)) {
    const auto lengths = aroundThresholds<T>();
    const auto bits = [](const T &a, const T &b) { return std::memcmp(&a, &b, sizeof(T)) == 0; };
    check<T>({.name = "kepsZero_" + type,
              .call = zero,
              .oracle =
                  [](T *dst, int n) {
                      std::memset(static_cast<void *>(dst), 0, static_cast<size_t>(n) * sizeof(T));
                      return kepStatusOk;
                  },
              .lengths = lengths,
              .same = bits});
    Random random(seed());
    const T val = mixed<T>(1, random)[0];
    check<T>({.name = "kepsSet_" + type,
              .call = [&](T *dst, int n) { return set(val, dst, n); },
              .oracle =
                  [&](T *dst, int n) {
                      std::fill(dst, dst + n, val);
                      return kepStatusOk;
                  },
              .lengths = lengths,
              .same = bits});
    const auto same = [](const T *src, T *dst, int n) {
        std::memcpy(static_cast<void *>(dst), src, static_cast<size_t>(n) * sizeof(T));
        return kepStatusOk;
    };
    check<T, T>({.name = "kepsCopy_" + type,
                 .call = copy,
                 .oracle = same,
                 .lengths = lengths,
                 .same = bits});
    check<T, T>({.name = "kepsMove_" + type,
                 .call = move,
                 .oracle = same,
                 .lengths = lengths,
                 .same = bits});
}

#define FILL_TEST(t)                                                                               \
    TEST(Fill, type_##t) {                                                                         \
        checkFillAndCopy<Kep##t>(#t, kepsZero_##t, kepsSet_##t, kepsCopy_##t, kepsMove_##t);       \
    }
FILL_TEST(8u)
FILL_TEST(16s)
FILL_TEST(16sc)
FILL_TEST(32f)
FILL_TEST(32fc)
FILL_TEST(32s)
FILL_TEST(32sc)
FILL_TEST(64f)
FILL_TEST(64fc)
FILL_TEST(64s)
FILL_TEST(64sc)

} // namespace
