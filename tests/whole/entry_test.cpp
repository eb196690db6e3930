// Entry tests over the whole list of functions, by their signatures: each array pointer null in
// turn, a length of 0 and below, and null ahead of length. Functions whose chain is their own stand
// in the list below and are tested with their family.
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <regex>
#include <string>
#include <tuple>
#include <vector>

#include "keps.h"

namespace {

const std::regex ownChain("keps(GetLibVersion|Malloc|Free|FFT|FIRSR|Rand).*"
                          "|keps(Add|Sub)_(32|64)fc(_I)?|kepsAddC_64[su]_Sfs|kepsMulC_64f64s_ISfs"
                          "|kepsConvert_64f64s_Sfs");

alignas(64) unsigned char scratch[8][1 << 12];

// The place of the length among the arguments: the first integer behind the last array; -1 if none.
template <class... A>
constexpr int lengthAmong() {
    constexpr int count = sizeof...(A);
    constexpr bool isPointer[] = {std::is_pointer_v<A>..., false};
    constexpr bool isInteger[] = {(std::is_same_v<A, int32_t> || std::is_same_v<A, int64_t>)...,
                                  false};
    int last = -1;
    for (int k = 0; k < count; ++k)
        if (isPointer[k]) last = k;
    for (int k = last + 1; k < count; ++k)
        if (isInteger[k]) return k;
    return -1;
}

template <class... A>
class Prober {
public:
    using Function = KepStatus (*)(A...);
    Prober(const char *name, Function f) : functionName(name), function(f) {}

    void run() {
        for (std::size_t k = 0; k < sizeof...(A); ++k) {
            if (!isPointer[k]) continue;
            expect(kepStatusNullPointer, static_cast<int>(k), 64);
            expect(kepStatusNullPointer, static_cast<int>(k), 0);
        }
        for (const int n : {0, -1, INT32_MIN}) expect(kepStatusBadLength, -1, n);
    }

private:
    static constexpr int length = lengthAmong<A...>();
    static constexpr bool isPointer[] = {std::is_pointer_v<A>..., false};

    template <class T>
    static T argument(int k, int null, int n) {
        if constexpr (std::is_pointer_v<T>)
            return k == null ? nullptr : reinterpret_cast<T>(scratch[k]);
        else if constexpr (std::is_integral_v<T>)
            return static_cast<T>(k == length ? n : 0);
        else
            return T{};
    }

    void expect(KepStatus status, int null, int n) {
        std::memset(scratch, 0x5A, sizeof scratch);
        const KepStatus got = [&]<std::size_t... k>(std::index_sequence<k...>) {
            return function(argument<A>(static_cast<int>(k), null, n)...);
        }
        (std::index_sequence_for<A...>{});
        EXPECT_EQ(status, got) << functionName << ", null argument " << null << ", length " << n;
        bool written = false;
        for (const auto &row : scratch)
            for (const unsigned char byte : row) written = written || byte != 0x5A;
        EXPECT_FALSE(written) << functionName << " wrote before it refused";
    }

    const char *functionName;
    Function function;
};

template <class Status, class... A>
int probe(const char *name, Status (*function)(A...)) {
    if constexpr (!std::is_same_v<Status, KepStatus> || lengthAmong<A...>() < 0)
        ADD_FAILURE() << name << " has no length: it needs a chain of its own";
    else
        Prober(name, function).run();
    return 1;
}

TEST(Entry, defaultChainOverAllFunctions) {
    int probed = 0;
#define KEPS_NAME(name)                                                                            \
    if (!std::regex_match(#name, ownChain)) probed += probe(#name, name);
#include "names.inc"
#undef KEPS_NAME
    EXPECT_GE(probed, 44);
}

} // namespace
