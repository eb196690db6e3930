// Cases of functions that make an array from arrays of the same length.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <type_traits>

#include "bench.hpp"
#include "harness/data.hpp"

namespace bench {

// Elements on a 64-byte boundary, at one of four places within the page. Arrays of one case lie at
// least 832 bytes apart modulo 4096: a load close behind a store at the same offset in another page
// waits for it. Ours and the peer's results have the same place.
template <class T>
class Array {
public:
    explicit Array(std::int64_t n, int place = 3)
        : bytes((static_cast<std::size_t>(n) * sizeof(T) + 2 * page - 1) / page * page),
          memory(std::aligned_alloc(page, bytes), std::free),
          offset(place % 4 * 1088) {
        std::memset(memory.get(), 0, bytes);
    }
    T *data() const {
        return reinterpret_cast<T *>(static_cast<std::byte *>(memory.get()) + offset);
    }

private:
    static constexpr std::size_t page = 4096;
    std::size_t bytes;
    std::shared_ptr<void> memory;
    int offset;
};

// Floats of [-1, 1] with some unequal to any others, integers of the whole range.
template <class T>
Array<T> randomArray(std::int64_t n, harness::Random &random, int place = 0) {
    Array<T> array(n, place);
    using R = typename harness::RealOf<T>::type;
    const auto values = harness::generate<T>(static_cast<std::size_t>(n), random, [](auto &r) {
        if constexpr (std::is_floating_point_v<R>)
            return harness::unitValue<R>(r);
        else
            return static_cast<R>(r());
    });
    std::memcpy(static_cast<void *>(array.data()), values.data(), values.size() * sizeof(T));
    return array;
}

template <class T>
bool sameBits(const Array<T> &a, const Array<T> &b, std::int64_t n) {
    return std::memcmp(a.data(), b.data(), static_cast<std::size_t>(n) * sizeof(T)) == 0;
}

// Within two units in the last place of 1: for peers that round in another order.
template <class R>
bool closeParts(const R *a, const R *b, std::int64_t parts) {
    const double bound = 4 * static_cast<double>(std::numeric_limits<R>::epsilon());
    for (std::int64_t i = 0; i < parts; ++i) {
        const double d = static_cast<double>(a[i]) - static_cast<double>(b[i]);
        if (!(d <= bound && d >= -bound)) return false;
    }
    return true;
}

// Complex results within a part in 10^4 of their size: quotients by reciprocal estimates.
template <class T>
bool closeComplex(const T *a, const T *b, std::int64_t n) {
    for (std::int64_t i = 0; i < n; ++i) {
        const double bound = 1e-4 * (std::abs(a[i].re) + std::abs(a[i].im));
        if (!(std::abs(a[i].re - b[i].re) <= bound && std::abs(a[i].im - b[i].im) <= bound))
            return false;
    }
    return true;
}

enum class Agreement { bits, close, closeQuotient, none };

// ours and theirs are called as f(src..., dst, n).
template <class To, class... From, class Ours, class Theirs>
void addMap(const std::string &family, const std::string &name, std::int64_t n,
            const std::string &peer, Ours ours, Theirs theirs,
            Agreement agreement = Agreement::bits) {
    harness::Random random(1);
    auto next = [place = 0]() mutable { return place++; };
    const std::tuple<Array<From>...> sources{randomArray<From>(n, random, next())...};
    const Array<To> a(n), b(n);
    const int len = static_cast<int>(n);
    const auto call = [=](auto f, const Array<To> &dst) {
        return [=] {
            std::apply([&](const auto &...src) { f(src.data()..., dst.data(), len); }, sources);
        };
    };
    const auto first = call(ours, a), second = call(theirs, b);
    add({family, name, n, peer, first, second, [=] {
             first();
             second();
             if (agreement == Agreement::none) return true;
             using R = typename harness::RealOf<To>::type;
             if constexpr (std::is_floating_point_v<R>) {
                 if (agreement == Agreement::close)
                     return closeParts(reinterpret_cast<const R *>(a.data()),
                                       reinterpret_cast<const R *>(b.data()),
                                       n * static_cast<std::int64_t>(sizeof(To) / sizeof(R)));
             }
             if constexpr (harness::isComplex<To>) {
                 if (agreement == Agreement::closeQuotient)
                     return closeComplex(a.data(), b.data(), n);
             }
             return sameBits(a, b, n);
         }});
}

} // namespace bench
