// The checker of element-wise functions: one call holds a function against its oracle over lengths,
// places, alignments and aliases.
#pragma once

#include <array>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <tuple>

#include "harness/data.hpp"
#include "harness/guarded.hpp"

namespace harness {

template <class T>
std::string show(const T &x) {
    char text[80];
    if constexpr (isComplex<T>)
        return "(" + show(x.re) + ", " + show(x.im) + ")";
    else if constexpr (std::is_floating_point_v<T>)
        std::snprintf(text, sizeof text, "%.17g (%a)", static_cast<double>(x),
                      static_cast<double>(x));
    else
        std::snprintf(text, sizeof text, "%lld", static_cast<long long>(x));
    return text;
}

// A function that makes n elements of To from n elements of each From. Elements are independent of
// each other, or depend on their index in a way that the oracle knows.
template <class To, class... From>
struct Elementwise {
    using Call = std::function<KepStatus(const From *..., To *, int)>;
    using Sources = std::tuple<std::vector<From>...>;

    std::string name;
    // The function under test, out of place.
    Call call;
    // Writes the expected n elements and returns the expected status. Its dst holds the same values
    // as the function's before the call, for functions that accumulate.
    Call oracle;
    // The in-place form, where there is one: its last array is the last source.
    Call inPlace = nullptr;
    // True when dst may be one of the sources of its type.
    bool mayAlias = true;
    // Lengths beside 1 to 70, e.g. around a threshold.
    std::vector<int> lengths = {};
    std::function<Sources(std::size_t, Random &)> data = []([[maybe_unused]] std::size_t n,
                                                            [[maybe_unused]] Random &random) {
        return Sources{mixed<From>(n, random)...};
    };
    std::function<bool(const To &, const To &)> same = sameValue<To>;
};

namespace detail {

template <class To, class... From>
class Check {
public:
    using Case = Elementwise<To, From...>;
    using Sources = typename Case::Sources;
    static constexpr std::size_t arity = sizeof...(From);

    explicit Check(const Case &c) : test(c), random(seed()) {}

    void run() {
        for (int n = 1; n <= 70 && ok; ++n) atLength(n);
        for (const int n : test.lengths)
            if (ok) atLength(n);
        for (int offset = 0; offset < 64 && ok; ++offset) atOffset(37, offset);
    }

private:
    // Reports the first fault and ends the check.
    void fault(int alias, const std::string &what) {
        if (!ok) return;
        ok = false;
        ADD_FAILURE() << describe(alias) << ": " << what;
    }

    void prepare(int n) {
        length = n;
        const auto count = static_cast<std::size_t>(n);
        source = test.data(count, random);
        before = mixed<To>(count, random);
        expected = before;
        expectedStatus = std::apply(
            [&](const auto &...s) { return test.oracle(s.data()..., expected.data(), n); }, source);
        std::size_t bytes[] = {count * sizeof(To), count * sizeof(From)...};
        for (std::size_t k = 0; k <= arity; ++k)
            if (!room[k] || held[k] < bytes[k])
                room[k] = std::make_unique<Room>(held[k] = bytes[k]);
    }

    void atLength(int n) {
        prepare(n);
        attemptAll({Spot::endsAtGuard});
        attemptAll({Spot::beginsAtGuard});
        for (int k = 0; k < 3; ++k) {
            std::array<Spot, arity + 1> spots;
            for (auto &spot : spots) spot = {Spot::inside, static_cast<int>(random() % 64)};
            attempt(spots, notAliased);
        }
    }

    // Each array in turn at the offset, the others on a boundary.
    void atOffset(int n, int offset) {
        prepare(n);
        for (std::size_t k = 0; k <= arity; ++k) {
            std::array<Spot, arity + 1> spots;
            spots.fill({Spot::inside, 0});
            spots[k].offset = offset;
            attempt(spots, notAliased);
        }
    }

    void attemptAll(Spot spot) {
        std::array<Spot, arity + 1> spots;
        spots.fill(spot);
        attempt(spots, notAliased);
        [&]<std::size_t... k>(std::index_sequence<k...>) {
            ((std::is_same_v<To, From> && test.mayAlias ? attempt(spots, int(k)) : void()), ...);
        }
        (std::index_sequence_for<From...>{});
        if (test.inPlace) attempt(spots, throughTwin);
    }

    static constexpr int notAliased = -1, throughTwin = -2;

    // Places the arrays, calls, compares. alias: the source that dst is, or one of the above.
    void attempt(const std::array<Spot, arity + 1> &spots, int alias) {
        if (!ok) return;
        const auto count = static_cast<std::size_t>(length);
        const bool shares = alias != notAliased;
        const std::size_t shared = alias >= 0 ? static_cast<std::size_t>(alias) : arity - 1;
        To *dst = reinterpret_cast<To *>(room[0]->place(count * sizeof(To), spots[0]));
        std::memcpy(static_cast<void *>(dst), before.data(), count * sizeof(To));

        const auto call = [&]<std::size_t... k>(std::index_sequence<k...>) {
            std::tuple<From *...> src{reinterpret_cast<From *>(
                room[k + 1]->place(count * sizeof(From), spots[k + 1]))...};
            (std::memcpy(static_cast<void *>(std::get<k>(src)), std::get<k>(source).data(),
                         count * sizeof(From)),
             ...);
            if (shares) ((k == shared ? void(dst = asTo(std::get<k>(src))) : void()), ...);
            const auto &function = alias == throughTwin ? test.inPlace : test.call;
            status = guarded([&] { return function(std::get<k>(src)..., dst, length); });
            ((shares && k == shared
                  ? void()
                  : expectUntouched(k, std::get<k>(src), std::get<k>(source), alias)),
             ...);
        };
        call(std::index_sequence_for<From...>{});

        if (status != expectedStatus)
            fault(alias, "expected status " + std::to_string(expectedStatus) + ", got " +
                             std::to_string(status));
        const bool exact = std::memcmp(dst, expected.data(), count * sizeof(To)) == 0;
        for (std::size_t i = 0; i < count && !exact; ++i) {
            To got;
            std::memcpy(&got, reinterpret_cast<const char *>(dst) + i * sizeof(To), sizeof(To));
            if (!test.same(expected[i], got)) {
                fault(alias, "element " + std::to_string(i) + ": expected " + show(expected[i]) +
                                 ", got " + show(got) + inputs(i));
                break;
            }
        }
        for (std::size_t k = 0; k <= arity; ++k)
            if (!room[k]->intact())
                fault(alias,
                      "bytes around array " + std::to_string(k) + " (0 is dst) were written");
    }

    template <class T>
    void expectUntouched(std::size_t k, const T *now, const std::vector<T> &original, int alias) {
        if (std::memcmp(now, original.data(), original.size() * sizeof(T)) != 0)
            fault(alias, "source " + std::to_string(k) + " was written");
    }

    template <class T>
    static To *asTo(T *p) {
        return reinterpret_cast<To *>(p);
    }

    std::string inputs(std::size_t i) const {
        return std::apply(
            [&](const auto &...s) { return (std::string() + ... + (" from " + show(s[i]))); },
            source);
    }

    std::string describe(int alias) const {
        std::string text = test.name + ", length " + std::to_string(length);
        if (alias >= 0) text += ", dst is source " + std::to_string(alias);
        if (alias == throughTwin) text += ", in place";
        return text + ", seed " + std::to_string(seed());
    }

    const Case &test;
    Random random;
    bool ok = true;
    int length = 0;
    Sources source;
    std::vector<To> before, expected;
    KepStatus status = 0, expectedStatus = 0;
    std::array<std::unique_ptr<Room>, arity + 1> room;
    std::array<std::size_t, arity + 1> held{};
};

} // namespace detail

// Holds a function against its oracle; a failure names length, place, element and inputs.
template <class To, class... From>
void check(const Elementwise<To, From...> &test) {
    detail::Check<To, From...>(test).run();
}

} // namespace harness
