// The transcendental kernels: error bounds, special values and codes, and that a value does not
// depend on its place.
#include "vmath_cases.hpp"

#include <gtest/gtest.h>

#include "harness/guarded.hpp"

namespace {

using harness::Random;

template <class T>
void holdBounds(const std::vector<vmath::Table<T>> &tables) {
    Random random(harness::seed());
    for (const auto &table : tables)
        for (int slot = 0; slot < 3; ++slot) {
            const auto [ulp, bits] = table.bounds[slot];
            for (std::size_t range = 0; range < table.ranges.size(); ++range) {
                const auto worst = vmath::measure(table, slot, range, 1 << 16, random);
                EXPECT_TRUE(worst.within(ulp, bits))
                    << table.name << vmath::levels[slot] << " range " << range << ": " << worst.ulp
                    << " ulp, relative 2^" << std::log2(worst.relative) << ", subnormal "
                    << worst.subnormal << ", wrong class " << worst.wrongClass << ", at "
                    << double(worst.at[0]) << ", " << double(worst.at[1]) << " got " << worst.got;
            }
        }
}

TEST(Vmath, SingleWithinBounds) {
    holdBounds(vmath::singleTables());
}
TEST(Vmath, DoubleWithinBounds) {
    holdBounds(vmath::doubleTables());
}

// Every length and place gives the value that the element has by itself, and the calling
// convention is kept.
template <class T>
void holdPlaces(const std::vector<vmath::Table<T>> &tables) {
    Random random(harness::seed());
    for (const auto &table : tables)
        for (int slot = 0; slot < 3; ++slot)
            for (int n = 1; n <= 40; ++n) {
                SCOPED_TRACE(table.name + vmath::levels[slot] + " length " + std::to_string(n));
                const auto count = std::size_t(n);
                std::vector<T> a = harness::mixed<T>(count, random);
                std::vector<T> b = harness::mixed<T>(count, random), alone(count), alone2(count);
                for (std::size_t i = 0; i < count; ++i)
                    table.call(slot, &a[i], &b[i], &alone[i], &alone2[i], 1);
                harness::Room roomA(count * sizeof(T)), roomY(count * sizeof(T)),
                    roomY2(count * sizeof(T));
                const harness::Spot end{harness::Spot::endsAtGuard};
                auto *p = reinterpret_cast<T *>(roomA.place(count * sizeof(T), end));
                auto *y = reinterpret_cast<T *>(roomY.place(count * sizeof(T), end));
                auto *y2 = reinterpret_cast<T *>(roomY2.place(count * sizeof(T), end));
                std::memcpy(p, a.data(), count * sizeof(T));
                harness::guarded([&] { return table.call(slot, p, b.data(), y, y2, n); });
                bool ok = true;
                for (std::size_t i = 0; i < count; ++i) {
                    ok = ok && harness::sameValue(y[i], alone[i]);
                    if (table.out == 2) ok = ok && harness::sameValue(y2[i], alone2[i]);
                }
                table.call(slot, p, b.data(), p, y2, n); // in place
                for (std::size_t i = 0; i < count; ++i)
                    ok = ok && harness::sameValue(p[i], alone[i]);
                EXPECT_TRUE(ok && roomA.intact() && roomY.intact())
                    << table.name << vmath::levels[slot] << " length " << n;
            }
}

TEST(Vmath, ValueDoesNotDependOnPlace) {
    holdPlaces(vmath::singleTables());
    holdPlaces(vmath::doubleTables());
}

} // namespace
