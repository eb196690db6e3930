// Single-rate FIR: values against long double and, on the direct path, bit for bit against the
// stated order of summation; paths, delays, aliases, cuts, block sizes.
#include <algorithm>
#include <cmath>
#include <sanitizer/asan_interface.h>

#include "filters/firsr_oracle.hpp"
#include "harness/data.hpp"
#include "harness/guarded.hpp"

namespace {

using namespace harness;
using namespace firsr;

// A spec block and a work buffer of exactly the reported sizes between unreadable pages.
template <class T>
class Filter {
public:
    using F = Fir<T>;

    Filter(const std::vector<T> &taps, uint32_t algorithm, Spot spot = {Spot::endsAtGuard})
        : n(static_cast<int>(taps.size())) {
        int32_t specSize = 0, bufSize = 0;
        EXPECT_EQ(kepStatusOk, kepsFIRSRGetSize(n, F::code, &specSize, &bufSize));
        specBytes = static_cast<size_t>(specSize);
        bufBytes = static_cast<size_t>(bufSize);
        specRoom = std::make_unique<Room>(specBytes);
        bufRoom = std::make_unique<Room>(bufBytes);
        spec = specRoom->place(specBytes, spot);
        EXPECT_EQ(kepStatusOk, guarded([&] { return F::init(taps.data(), n, algorithm, spec); }));
        EXPECT_TRUE(specRoom->intact()) << n << " taps: Init wrote outside its block";
        // The gaps between the plan's tables, which sanitizer builds close, are compared too.
        ASAN_UNPOISON_MEMORY_REGION(spec, specBytes);
        made.assign(spec, spec + specBytes);
    }

    // dst and the delay are filled; either delay may be null.
    void run(const T *src, T *dst, int len, const T *dlySrc, T *dlyDst,
             Spot spot = {Spot::endsAtGuard}) {
        Kep8u *buf = bufRoom->place(bufBytes, spot);
        EXPECT_EQ(kepStatusOk,
                  guarded([&] { return F::call(src, dst, len, spec, dlySrc, dlyDst, buf); }));
        EXPECT_TRUE(bufRoom->intact()) << n << " taps: written outside buf";
        EXPECT_EQ(0, std::memcmp(spec, made.data(), specBytes)) << n << " taps: spec written";
    }

    std::vector<T> operator()(const std::vector<T> &src, const T *dlySrc = nullptr,
                              T *dlyDst = nullptr) {
        std::vector<T> dst(src.size());
        run(src.data(), dst.data(), static_cast<int>(src.size()), dlySrc, dlyDst);
        return dst;
    }

    const int n;
    Kep8u *spec;

private:
    size_t specBytes, bufBytes;
    std::unique_ptr<Room> specRoom, bufRoom;
    std::vector<Kep8u> made;
};

template <class T>
bool sameBits(const std::vector<T> &a, const std::vector<T> &b) {
    return a.size() == b.size() &&
           (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0);
}

template <class T>
bool holds(const T *p, const T *expected, int count) {
    return count == 0 || std::memcmp(p, expected, static_cast<size_t>(count) * sizeof(T)) == 0;
}

template <class T>
class FirSR : public ::testing::Test {
protected:
    Random random{seed()};

    std::vector<T> data(int n) { return unit<T>(static_cast<size_t>(n), random); }

    // One call with every array at a spot of its own, held against the oracle; the delay must be
    // the stream's last samples, bit for bit.
    void checkCall(Filter<T> &filter, const std::vector<T> &taps, int len, bool byFft, bool hasPast,
                   bool keeps, const std::array<Spot, 5> &spots) {
        const int n = filter.n, past = n - 1;
        const auto source = data(len), before = data(past);
        const auto bytes = [](int count) { return static_cast<size_t>(count) * sizeof(T); };
        Room srcRoom(bytes(len)), dstRoom(bytes(len)), fromRoom(bytes(past)), toRoom(bytes(past));
        const auto put = [&](Room &room, const std::vector<T> &values, Spot spot) {
            auto *p = room.place(values.size() * sizeof(T), spot);
            if (!values.empty()) std::memcpy(p, values.data(), values.size() * sizeof(T));
            return reinterpret_cast<T *>(p);
        };
        T *src = put(srcRoom, source, spots[0]), *dlySrc = put(fromRoom, before, spots[2]);
        T *dst = reinterpret_cast<T *>(dstRoom.place(bytes(len), spots[1]));
        T *dlyDst = reinterpret_cast<T *>(toRoom.place(bytes(past), spots[3]));
        filter.run(src, dst, len, hasPast ? dlySrc : nullptr, keeps ? dlyDst : nullptr, spots[4]);

        const std::string where = std::to_string(n) + " taps, " + std::to_string(len) +
                                  " samples, " + (byFft ? "FFT" : "direct") + ", seed " +
                                  std::to_string(seed());
        auto stream = hasPast ? before : std::vector<T>(static_cast<size_t>(past));
        stream.insert(stream.end(), source.begin(), source.end());
        std::vector<T> got(static_cast<size_t>(len));
        std::memcpy(static_cast<void *>(got.data()), dst, bytes(len));
        EXPECT_EQ("", difference(taps, stream, got, byFft)) << where;
        EXPECT_TRUE(!keeps || holds(dlyDst, stream.data() + len, past)) << where;
        EXPECT_TRUE(holds(src, source.data(), len) && holds(dlySrc, before.data(), past)) << where;
        EXPECT_TRUE(srcRoom.intact() && dstRoom.intact() && fromRoom.intact() && toRoom.intact())
            << where << ": bytes around an array were written";
    }
};

using Types = ::testing::Types<KEPS_FIR_TYPES>;
TYPED_TEST_SUITE(FirSR, Types);

// Every tap count up to 70 and some around what a direct kernel takes at once, lengths around the
// delay, the vectors, the same and a transform's outputs, all between guard pages and then at
// random byte addresses.
TYPED_TEST(FirSR, values) {
    std::vector<int> counts{127, 128, 129, 200, 256, 257, 1000};
    for (int n = 1; n <= 70; ++n) counts.push_back(n);
    for (const int n : counts) {
        const auto taps = this->data(n);
        for (const uint32_t algorithm : {1u, 2u}) {
            const Spot offset{Spot::inside, static_cast<int>(this->random() % 64)};
            Filter<TypeParam> filter(taps, algorithm,
                                     n % 3 == 0   ? offset
                                     : n % 3 == 1 ? Spot{Spot::endsAtGuard}
                                                  : Spot{Spot::beginsAtGuard});
            const int block = blockLen(n);
            std::vector<int> lengths{
                1,   2,         n - 1,         n,     n + 1,     7,         8,  9,  15,
                16,  17,        2 * n,         block, block - 1, block + 1, 63, 64, 2 * block + n,
                100, 3 * block, 3 * block - 1, n / 2, 264,       265};
            lengths.push_back(static_cast<int>(this->random() % 300) + 1);
            for (const int len : lengths) {
                if (len < 1 || (algorithm == 2 && len == 2)) continue;
                std::array<Spot, 5> spots;
                const auto kind = this->random() % 3;
                for (auto &spot : spots)
                    spot = kind == 0   ? Spot{Spot::endsAtGuard}
                           : kind == 1 ? Spot{Spot::beginsAtGuard}
                                       : Spot{Spot::inside, static_cast<int>(this->random() % 64)};
                this->checkCall(filter, taps, len, algorithm == 2, this->random() % 4 != 0,
                                this->random() % 4 != 0, spots);
                if (this->HasFailure()) return;
            }
        }
    }
}

// A huge sample shows the path that was taken: transforms smear its rounding over their block.
TYPED_TEST(FirSR, pathByThresholds) {
    using Kind = Fir<TypeParam>;
    using T = TypeParam;
    for (const int n : {Kind::leastTaps - 1, Kind::leastTaps}) {
        const auto taps = this->data(n);
        Filter<T> automatic(taps, kepAlgorithmAuto), direct(taps, kepAlgorithmDirect),
            byFft(taps, kepAlgorithmFft);
        for (const int len : {Kind::leastIters - 1, Kind::leastIters, Kind::chunk + 40}) {
            auto src = this->data(len);
            scale(src[src.size() - 30], 1e6);
            const auto expected = direct(src), smeared = byFft(src), got = automatic(src);
            EXPECT_FALSE(sameBits(expected, smeared));
            const bool fft = n >= Kind::leastTaps && len >= Kind::leastIters;
            EXPECT_TRUE(sameBits(fft ? smeared : expected, got)) << n << " taps, " << len;

            // The choice holds for all chunks of an aliased call, however short the last one.
            auto inPlace = src, expectedInPlace = src;
            automatic.run(inPlace.data(), inPlace.data(), len, nullptr, nullptr);
            (fft ? byFft : direct)
                .run(expectedInPlace.data(), expectedInPlace.data(), len, nullptr, nullptr);
            EXPECT_TRUE(sameBits(expectedInPlace, inPlace)) << n << " taps, " << len;
        }
    }
}

TYPED_TEST(FirSR, aliases) {
    using Kind = Fir<TypeParam>;
    using T = TypeParam;
    for (const int n : {1, 2, 8, 9, 31, 32, 70, 300})
        for (const uint32_t algorithm : {1u, 2u}) {
            const auto taps = this->data(n);
            Filter<T> filter(taps, algorithm);
            for (const int len : {1, n - 1, n, 200, Kind::chunk - 1, Kind::chunk, Kind::chunk + 1,
                                  2 * Kind::chunk + 5}) {
                if (len < 1) continue;
                const auto src = this->data(len), past = this->data(n - 1);
                std::vector<T> newPast(past.size());
                const auto apart = filter(src, past.data(), newPast.data());
                // Chunks begin new blocks of transforms and of 64f pairs.
                const bool exact = len <= Kind::chunk || (algorithm == 1 && sumsInOrder<T>(n));
                auto stream = past;
                stream.insert(stream.end(), src.begin(), src.end());
                const auto expect = [&](const std::vector<T> &dst, const std::vector<T> &dly,
                                        const char *what) {
                    EXPECT_TRUE(!exact || sameBits(apart, dst)) << what << ", " << n << ", " << len;
                    EXPECT_EQ("", difference(taps, stream, dst, algorithm == 2)) << what;
                    EXPECT_TRUE(sameBits(newPast, dly)) << what << ", " << n << ", " << len;
                };

                auto dst = src;
                std::vector<T> dly(past.size());
                filter.run(dst.data(), dst.data(), len, past.data(), dly.data());
                expect(dst, dly, "dst is src");

                dly = past;
                filter.run(src.data(), dst.data(), len, dly.data(), dly.data());
                expect(dst, dly, "dlyDst is dlySrc");

                dst = src, dly = past;
                filter.run(dst.data(), dst.data(), len, dly.data(), dly.data());
                expect(dst, dly, "dst is src, dlyDst is dlySrc");

                dst = past;
                dst.resize(std::max(src.size(), past.size()));
                std::fill(dly.begin(), dly.end(), T{});
                filter.run(src.data(), dst.data(), len, dst.data(), dly.data());
                dst.resize(src.size());
                expect(dst, dly, "dst is dlySrc");
                if (this->HasFailure()) return;
            }
        }
}

// A stream cut anywhere is one call: by bits where sums keep their order, else within the bounds.
TYPED_TEST(FirSR, streams) {
    using T = TypeParam;
    for (const int n : {1, 5, 17, 32, 61, 62, 64, 129})
        for (const uint32_t algorithm : {0u, 1u, 2u}) {
            const auto taps = this->data(n), src = this->data(3000);
            Filter<T> filter(taps, algorithm);
            std::vector<T> out(src.size()),
                delay[2] = {std::vector<T>(taps.size() - 1), std::vector<T>(taps.size() - 1)};
            const auto whole = filter(src);
            for (size_t at = 0, turn = 0; at < src.size(); ++turn) {
                const size_t most = turn % 2 ? 20 : 700;
                const size_t len = std::min(src.size() - at, 1 + this->random() % most);
                const bool inPlace = this->random() % 2;
                std::vector<T> &from = delay[0], &to = inPlace ? delay[0] : delay[1];
                filter.run(src.data() + at, out.data() + at, static_cast<int>(len), from.data(),
                           to.data());
                if (!inPlace) std::swap(delay[0], delay[1]);
                at += len;
            }
            std::vector<T> stream(taps.size() - 1);
            stream.insert(stream.end(), src.begin(), src.end());
            EXPECT_TRUE(algorithm != 1 || !sumsInOrder<T>(n) || sameBits(whole, out)) << n;
            EXPECT_EQ("", difference(taps, stream, out, algorithm != 1)) << n << " taps";
            EXPECT_EQ("", difference(taps, stream, whole, algorithm != 1)) << n << " taps";
        }
}

// The block's parts that depend on the taps, counted by hand, plus what the FFT asks for.
TEST(FirSRSize, bytes) {
    struct Row {
        int code, tapsLen, spec, buf, order;
    };
    const Row rows[] = {
        {13, 1, 512 + 191, 64 + 0 + 32768, 2},        {13, 2, 512 + 191, 64 + 64 + 32768, 3},
        {13, 31, 1280 + 191, 256 + 256 + 32768, 6},   {13, 32, 1536 + 191, 256 + 256 + 32768, 7},
        {13, 64, 2560 + 191, 512 + 512 + 32768, 8},   {13, 65, 2560 + 191, 576 + 512 + 32768, 8},
        {14, 1, 64 + 191, 64 + 0 + 32768, 2},         {14, 18, 576 + 191, 320 + 320 + 32768, 6},
        {14, 63, 2048 + 191, 1024 + 1024 + 32768, 7}, {19, 1, 64 + 191, 64 + 0 + 32768, 2},
        {19, 8, 256 + 191, 128 + 128 + 32768, 5},     {19, 62, 1984 + 191, 1024 + 1024 + 32768, 7},
        {20, 1, 64 + 191, 64 + 0 + 32768, 2},         {20, 17, 1088 + 191, 576 + 512 + 32768, 6},
        {20, 100, 6400 + 191, 3200 + 3200 + 32768, 8}};
    for (const Row &row : rows) {
        int plan = 0, init = 0, work = 0, spec = 0, buf = 0;
        const int element = row.code == 13 ? 4 : row.code == 20 ? 16 : 8;
        (row.code == 13   ? kepsFFTGetSize_R_32f
         : row.code == 14 ? kepsFFTGetSize_C_32fc
         : row.code == 19 ? kepsFFTGetSize_R_64f
                          : kepsFFTGetSize_C_64fc)(row.order, 2, 0, &plan, &init, &work);
        const int transform = (1 << row.order) * element;
        EXPECT_EQ(kepStatusOk, kepsFIRSRGetSize(row.tapsLen, row.code, &spec, &buf));
        EXPECT_EQ(row.spec + plan + transform + std::max(init, work), spec)
            << row.code << ", " << row.tapsLen;
        EXPECT_EQ(row.buf + transform + work, buf) << row.code << ", " << row.tapsLen;
    }
}

// Transforms on the FFT's long path; taps of which few are not zero have a short oracle.
TYPED_TEST(FirSR, longFilters) {
    using T = TypeParam;
    const int n = 270000, len = 900;
    std::vector<T> taps(n);
    const int places[] = {0, 5, 131072, n - 1};
    for (const int k : places) taps[static_cast<size_t>(k)] = this->data(1)[0];
    const auto past = this->data(n - 1), src = this->data(len);
    auto stream = past;
    stream.insert(stream.end(), src.begin(), src.end());
    Filter<T> filter(taps, kepAlgorithmFft);
    std::vector<T> dly(past.size());
    const auto out = filter(src, past.data(), dly.data());
    long double worst = 0;
    for (size_t i = 0; i < out.size(); ++i) {
        Wide<T> sum = 0;
        for (const int k : places)
            sum += product(wide(taps[static_cast<size_t>(k)]),
                           wide(stream[i + static_cast<size_t>(n - 1 - k)]));
        worst = std::max(worst, std::abs(sum - wide(out[i])));
    }
    EXPECT_LE(worst, transformBound(taps, stream));
    EXPECT_TRUE(holds(dly.data(), stream.data() + len, n - 1));
}

TEST(FirSRSize, beyond31Bits) {
    // The bytes wrap; nothing else is promised.
    int spec = 0, buf = 0;
    for (const int code : {13, 14, 19, 20})
        for (const int n : {1 << 27, 1 << 28, INT32_MAX})
            EXPECT_EQ(kepStatusOk, kepsFIRSRGetSize(n, code, &spec, &buf));
    const Kep32f tap = 1;
    Kep8u block[64];
    EXPECT_EQ(kepStatusBadFftOrder, kepsFIRSRInit_32f(&tap, INT32_MAX, kepAlgorithmFft, block));
}

TEST(FirSRStatus, order) {
    int spec = -1, buf = -1;
    EXPECT_EQ(kepStatusBadLength, kepsFIRSRGetSize(0, 99, nullptr, nullptr));
    EXPECT_EQ(kepStatusBadDataType, kepsFIRSRGetSize(1, 11, nullptr, &buf));
    EXPECT_EQ(kepStatusNullPointer, kepsFIRSRGetSize(1, 13, &spec, nullptr));
    EXPECT_EQ(kepStatusNullPointer, kepsFIRSRGetSize(1, 13, nullptr, &buf));
    EXPECT_EQ(-1, spec);
    EXPECT_EQ(-1, buf);
}

TYPED_TEST(FirSR, statuses) {
    using Kind = Fir<TypeParam>;
    using T = TypeParam;
    const auto taps = this->data(3), src = this->data(9);
    std::vector<Kep8u> block(100000, 0xA5), untouched = block;
    Kep8u *memory = block.data();
    EXPECT_EQ(kepStatusBadLength, Kind::init(nullptr, 0, 3, nullptr));
    EXPECT_EQ(kepStatusNullPointer, Kind::init(nullptr, 3, 3, memory));
    EXPECT_EQ(kepStatusNullPointer, Kind::init(taps.data(), 3, 3, nullptr));
    EXPECT_EQ(kepStatusBadAlgorithm, Kind::init(taps.data(), 3, 3, memory));
    EXPECT_EQ(kepStatusBadAlgorithm, Kind::init(taps.data(), 3, 0xFFFFFFFF, memory));
    EXPECT_TRUE(sameBits(untouched, block));

    Filter<T> filter(taps, kepAlgorithmAuto);
    std::vector<T> dst(9, T{}), zero = dst, delay(2, T{});
    const auto call = [&](const T *s, T *d, int len, const Kep8u *spec, Kep8u *buf) {
        return Kind::call(s, d, len, spec, nullptr, delay.data(), buf);
    };
    EXPECT_EQ(kepStatusNullPointer, call(nullptr, dst.data(), 0, filter.spec, memory));
    EXPECT_EQ(kepStatusNullPointer, call(src.data(), nullptr, 0, filter.spec, memory));
    EXPECT_EQ(kepStatusNullPointer, call(src.data(), dst.data(), 0, nullptr, memory));
    EXPECT_EQ(kepStatusNullPointer, call(src.data(), dst.data(), 0, filter.spec, nullptr));
    EXPECT_EQ(kepStatusBadLength, call(src.data(), dst.data(), 0, filter.spec, memory));
    EXPECT_EQ(kepStatusBadLength, call(src.data(), dst.data(), -1, filter.spec, memory));
    EXPECT_TRUE(sameBits(zero, dst) && sameBits(untouched, block));
}

// 16-bit forms: the float sums of the same order, rounded once; any algorithm code is direct.
template <class Integer, class Float>
void checkIntegers(KepStatus (*call)(const Integer *, Integer *, int32_t, const Kep8u *,
                                     const Integer *, Integer *, Kep8u *)) {
    Random random(seed());
    constexpr int chunk = Fir<Float>::chunk / 2;
    for (const int n : {1, 2, 9, 31, 32, 40, 129})
        for (const int len : {1, n, 300, chunk, chunk + 1, 2 * chunk + 77}) {
            auto taps = unit<Float>(static_cast<size_t>(n), random);
            for (auto &tap : taps) scale(tap, len % 2 ? 0.3 : 3); // some results saturate
            Filter<Float> filter(taps, len % 3 == 0 ? kepAlgorithmFft : kepAlgorithmAuto);
            const auto src = mixed<Integer>(static_cast<size_t>(len), random);
            const auto past = mixed<Integer>(static_cast<size_t>(n - 1), random);
            const std::string where = std::to_string(n) + " taps, " + std::to_string(len);

            auto stream = past;
            stream.insert(stream.end(), src.begin(), src.end());
            const auto expected = rounded<Integer>(ordered(taps, toFloats<Float>(stream)));
            const std::vector<Integer> expectedPast(stream.end() - (n - 1), stream.end());

            int32_t specSize, bufSize;
            kepsFIRSRGetSize(n, Fir<Float>::code, &specSize, &bufSize);
            Room bufRoom(static_cast<size_t>(bufSize));
            Kep8u *buf = bufRoom.place(static_cast<size_t>(bufSize), {Spot::endsAtGuard});
            std::vector<Integer> dst(src.size()), to(past.size());
            EXPECT_EQ(kepStatusOk, guarded([&] {
                          return call(src.data(), dst.data(), len, filter.spec, past.data(),
                                      to.data(), buf);
                      }));
            EXPECT_TRUE(sameBits(expected, dst)) << where;
            EXPECT_TRUE(n == 1 || sameBits(expectedPast, to)) << where;
            dst = src, to = past;
            EXPECT_EQ(kepStatusOk,
                      call(dst.data(), dst.data(), len, filter.spec, to.data(), to.data(), buf));
            EXPECT_TRUE(sameBits(expected, dst) && (n == 1 || sameBits(expectedPast, to)))
                << where << ", in place";
            EXPECT_TRUE(bufRoom.intact()) << where;

            // No past, nothing kept.
            std::fill(stream.begin(), stream.begin() + (n - 1), Integer{});
            EXPECT_EQ(kepStatusOk,
                      call(src.data(), dst.data(), len, filter.spec, nullptr, nullptr, buf));
            EXPECT_TRUE(sameBits(rounded<Integer>(ordered(taps, toFloats<Float>(stream))), dst))
                << where << ", no delay";
        }
    const Integer sample{};
    Integer result{};
    Kep8u some[64];
    EXPECT_EQ(kepStatusNullPointer, call(&sample, &result, 0, nullptr, nullptr, nullptr, some));
    EXPECT_EQ(kepStatusNullPointer, call(&sample, &result, 0, some, nullptr, nullptr, nullptr));
    EXPECT_EQ(kepStatusBadLength, call(&sample, &result, 0, some, nullptr, nullptr, some));
}

TEST(FirSRIntegers, type_16s) {
    checkIntegers<Kep16s, Kep32f>(kepsFIRSR_16s);
}
TEST(FirSRIntegers, type_16sc) {
    checkIntegers<Kep16sc, Kep32fc>(kepsFIRSR_16sc);
}

} // namespace
