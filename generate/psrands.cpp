// RandUniform, RandGauss: random numbers from a subtract-with-borrow generator plus a congruential
// one. Steps are drawn in blocks, never more than the call is sure to use, so that the state stands
// behind the last value written.
#include <limits>

#include "arith/scalar.hpp"
#include "arith/vmath/vmath.hpp"
#include "frame/entry.hpp"
#include "frame/fpstate.hpp"
#include "frame/simd/int128.hpp"
#include "frame/simd/math256.hpp"

using namespace keps;

namespace {

// The records lie at any address.
struct [[gnu::packed, gnu::may_alias]] Generator {
    std::uint32_t lcg;              // congruential value
    std::uint32_t swb0, swb1, swb2; // the last three differences, newest first
    std::int32_t borrow;            // 0 or -1
};

// The limits themselves, which only Init reads, have no room in the 56 bytes of the double form.
struct [[gnu::packed, gnu::may_alias]] UniformRecord {
    std::int32_t id;
    std::uint32_t seed;
    double mid, scale; // y = mid + scale r
    Generator generator;
};

template <class T>
struct [[gnu::packed, gnu::may_alias]] GaussRecord {
    std::int32_t id;
    std::uint32_t seed;
    T mean, stdDev;
    Generator generator;
    std::int32_t spent; // 0 when a second value of a pair is stored
    double saved, savedU1, savedU2;
};

template <class T>
inline constexpr int typeIndex = std::is_same_v<T, Kep8u>    ? 0
                                 : std::is_same_v<T, Kep16s> ? 1
                                 : std::is_same_v<T, Kep32f> ? 2
                                                             : 3;
template <class T>
inline constexpr std::int32_t uniformId = 35 + typeIndex<T>;
template <class T>
inline constexpr std::int32_t gaussId = 39 + typeIndex<T>;

constexpr int uniformBytes = 56;
template <class T>
inline constexpr int gaussBytes = sizeof(T) <= 2 ? 64 : (sizeof(T) == 4 ? 72 : 80);
static_assert(sizeof(UniformRecord) <= uniformBytes);
static_assert(sizeof(GaussRecord<Kep8u>) <= gaussBytes<Kep8u>);
static_assert(sizeof(GaussRecord<Kep64f>) <= gaussBytes<Kep64f>);

constexpr std::uint32_t factor = 69069, addend = 1013904243;

Generator seeded(std::uint32_t seed) {
    const std::uint32_t second = seed * factor + addend;
    return {1131199209, seed, second, second * factor + addend, -1};
}

constexpr size block = 1024; // steps drawn at a time

constexpr std::uint32_t inverse(std::uint32_t odd) {
    std::uint32_t x = odd; // right in the last 3 bits, and in twice as many after each round
    for (int k = 0; k < 4; ++k) x *= 2 - odd * x;
    return x;
}
static_assert(inverse(factor) * factor == 1);

KEPS_INLINE __m128i splatInt(std::uint32_t x) {
    return _mm_set1_epi32(static_cast<int>(x));
}

// k steps on, a congruential value x has become factors[k] x + addends[k].
struct Jumps {
    std::uint32_t factors[5] = {1}, addends[5] = {};
    constexpr Jumps() {
        for (int k = 0; k < 4; ++k) {
            factors[k + 1] = factors[k] * factor;
            addends[k + 1] = addends[k] * factor + addend;
        }
    }
};
constexpr Jumps jumps;

// The congruential values of the next four steps, and four steps on.
struct Four {
    __m128i value;
    explicit Four(std::uint32_t lcg)
        : value(_mm_add_epi32(_mm_mullo_epi32(splatInt(lcg), loadInt<i32x4>(jumps.factors + 1).v),
                              loadInt<i32x4>(jumps.addends + 1).v)) {}
    KEPS_INLINE __m128i next() {
        const __m128i now = value;
        value = _mm_add_epi32(_mm_mullo_epi32(value, splatInt(jumps.factors[4])),
                              splatInt(jumps.addends[4]));
        return now;
    }
    KEPS_INLINE std::uint32_t current() const {
        return (static_cast<std::uint32_t>(_mm_cvtsi128_si32(value)) - addend) * inverse(factor);
    }
};

// One step: the difference of the middle and the oldest value less the borrow takes the oldest
// one's place. The value below the borrow's 18 is formed beside the plain one, so that the chain
// from step to step is two sums and a choice.
KEPS_INLINE void step(std::uint32_t &oldest, std::uint32_t middle, std::int32_t &borrow) {
    const std::uint32_t difference = middle - oldest, less = static_cast<std::uint32_t>(borrow);
    const auto plain = static_cast<std::int32_t>(difference + less);
    const auto taken = static_cast<std::int32_t>(difference - 18 + less);
    borrow = plain >> 31;
    oldest = static_cast<std::uint32_t>(plain < 0 ? taken : plain);
}

// The lanes of a and then b from lane first of a on: each lane's neighbour some places back.
template <int first>
KEPS_INLINE __m128i neighbours(__m128i a, __m128i b) {
    return _mm_alignr_epi8(b, a, 4 * first);
}
// Each lane's second difference with the two before it.
KEPS_INLINE __m128i bends(__m128i before, __m128i x) {
    const __m128i one = neighbours<3>(before, x), two = neighbours<2>(before, x);
    return _mm_sub_epi32(_mm_add_epi32(x, two), _mm_add_epi32(one, one));
}

// Four steps of the differences at a time. A step is v[i] = v[i-2] - v[i-3] + e[i] with e[i], from
// 0 to -19, told by the signs of this step and the last. So v[i] = S[i-4] + e[i] + e[i-2] - e[i-3]
// with S the second differences of v; and but for some units v[i] is the second difference of S at
// i-8, whose sign is known long before and serves for v[i]'s own. Where a value turns out to have
// another sign after all, once in millions of steps, the block is drawn again step by step.
struct FourSteps {
    // Of the last four steps: values, second and fourth differences, signs and e; the fourth
    // differences also of the four before.
    __m128i v, second, earlierFourth, fourth, sign, e;

    // From the last three values and the borrow. The nine before them need not be what they were:
    // those that lead there by steps with e of 0 serve.
    FourSteps(std::uint32_t oldest, std::uint32_t middle, std::uint32_t newest,
              std::int32_t borrow) {
        std::uint32_t back[12] = {newest, middle, oldest};
        times<9>([&](int k) KEPS_INLINE_LAMBDA { back[k + 3] = back[k + 2] - back[k]; });
        const auto four = [&](int k) KEPS_INLINE_LAMBDA {
            const auto lane = [&](int j) KEPS_INLINE_LAMBDA { return static_cast<int>(back[j]); };
            return _mm_setr_epi32(lane(k + 3), lane(k + 2), lane(k + 1), lane(k));
        };
        const __m128i first = four(8), second4 = four(4);
        v = four(0);
        const __m128i firstBends = bends(first, first), secondBends = bends(first, second4);
        second = bends(second4, v);
        earlierFourth = bends(firstBends, secondBends); // of firstBends only the right half is read
        fourth = bends(secondBends, second);
        sign = _mm_set1_epi32(borrow);
        e = _mm_setzero_si128();
    }
    // Returns the next four; the sign bits of wrong get those of lanes whose sign was not foreseen.
    KEPS_INLINE __m128i next(__m128i &wrong) {
        const __m128i below = _mm_srai_epi32(earlierFourth, 31);
        const __m128i eighteens = _mm_and_si128(below, _mm_set1_epi32(-18));
        const __m128i change = _mm_add_epi32(eighteens, neighbours<3>(sign, below));
        const __m128i earlier = _mm_sub_epi32(neighbours<2>(e, change), neighbours<1>(e, change));
        const __m128i now = _mm_add_epi32(_mm_add_epi32(second, change), earlier);
        wrong = _mm_or_si128(wrong, _mm_xor_si128(_mm_sub_epi32(now, eighteens), below));
        const __m128i nowBends = bends(v, now);
        earlierFourth = fourth;
        fourth = bends(second, nowBends);
        v = now;
        second = nowBends;
        sign = below;
        e = change;
        return now;
    }
};

// A generator at work.
class Stream {
public:
    explicit Stream(const Generator &g)
        : lcg(g.lcg), oldest(g.swb2), middle(g.swb1), newest(g.swb0), borrow(g.borrow) {}
    Generator state() const { return {lcg.current(), newest, middle, oldest, borrow}; }

    // n steps, 1 to block, into r, which has room for a multiple of four.
    KEPS_INLINE void draw(std::int32_t *r, size n) {
        const size whole = n & ~size{3};
        const size done = n >= 8 && drawFours(r, whole) ? whole : 0;
        if (done < n) drawSingly(r + done, n - done);
    }

private:
    KEPS_INLINE void put(std::int32_t *r, __m128i v) {
        _mm_storeu_si128(reinterpret_cast<__m128i *>(r), _mm_add_epi32(v, lcg.next()));
    }
    [[gnu::noinline]] void drawSingly(std::int32_t *r, size n) {
        std::uint32_t h[block];
        for (size i = 0; i < n; ++i) {
            const std::uint32_t was = middle;
            step(oldest, middle, borrow);
            h[i] = oldest;
            oldest = was;
            middle = newest;
            newest = h[i];
        }
        const Four before = lcg;
        for (size i = 0; i < n; i += 4) put(r + i, loadInt<i32x4>(h + i).v);
        if (n & 3) {
            std::uint32_t last = before.current();
            for (size i = 0; i < n; ++i) last = last * factor + addend;
            lcg = Four(last);
        }
    }
    // False, with all as it was, if a sign was not foreseen.
    KEPS_INLINE bool drawFours(std::int32_t *r, size n) {
        FourSteps fours(oldest, middle, newest, borrow);
        const Four before = lcg;
        __m128i wrong = _mm_setzero_si128();
        for (size i = 0; i < n; i += 4) put(r + i, fours.next(wrong));
        if (_mm_movemask_ps(_mm_castsi128_ps(wrong))) [[unlikely]] {
            lcg = before;
            return false;
        }
        oldest = static_cast<std::uint32_t>(_mm_extract_epi32(fours.v, 1));
        middle = static_cast<std::uint32_t>(_mm_extract_epi32(fours.v, 2));
        newest = static_cast<std::uint32_t>(_mm_extract_epi32(fours.v, 3));
        borrow = _mm_extract_epi32(fours.sign, 3);
        return true;
    }

    Four lcg;
    std::uint32_t oldest, middle, newest;
    std::int32_t borrow;
};

KEPS_INLINE f64x4 fourDoubles(const std::int32_t *r) {
    return {_mm256_cvtepi32_pd(loadInt<i32x4>(r).v)};
}

// Values to elements. Integers are rounded to nearest by the conversion.
KEPS_INLINE void put(Kep64f *dst, f64x4 y) {
    store(dst, y);
}
KEPS_INLINE void put(Kep32f *dst, f64x4 y) {
    store(dst, f32x4{_mm256_cvtpd_ps(y.v)});
}
KEPS_INLINE void put(Kep16s *dst, f64x4 y) {
    const __m128i words = _mm256_cvtpd_epi32(y.v);
    const __m128i low = _mm_shuffle_epi8(
        words, _mm_setr_epi8(0, 1, 4, 5, 8, 9, 12, 13, -1, -1, -1, -1, -1, -1, -1, -1));
    _mm_storel_epi64(reinterpret_cast<__m128i *>(dst), low);
}
KEPS_INLINE void put(Kep8u *dst, f64x4 y) {
    const __m128i words = _mm256_cvtpd_epi32(y.v);
    const __m128i low = _mm_shuffle_epi8(
        words, _mm_setr_epi8(0, 4, 8, 12, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1));
    storeAs(dst, _mm_cvtsi128_si32(low));
}

template <class T>
KepStatus fillUniform(T *dst, int32_t len, KepRandUniformState *state) {
    if (const KepStatus refused = refuse(len, dst, state)) return refused;
    auto *record = reinterpret_cast<UniformRecord *>(state);
    if (record->id != uniformId<T>) return kepStatusContextMismatch;
    const DefaultArithmetic scope;
    const f64x4 mid = splat<f64x4>(record->mid), scale = splat<f64x4>(record->scale);
    Stream stream(record->generator);
    std::int32_t r[block];
    for (size i = 0; i < len; i += block) {
        const size n = len - i < block ? len - i : block;
        stream.draw(r, n);
        size k = 0;
        for (; k + 4 <= n; k += 4) put(dst + i + k, mid + scale * fourDoubles(r + k));
        if (k < n) {
            T rest[4];
            put(rest, mid + scale * fourDoubles(r + k));
            for (size j = 0; k + j < n; ++j) storeOne(dst + i + k + j, rest[j]);
        }
    }
    record->generator = stream.state();
    return kepStatusOk;
}

// Pairs u1, u2 within the unit disc but for its centre, the sum of their squares and its logarithm.
struct Pairs {
    alignas(32) double u1[block / 2 + 4], u2[block / 2 + 4], s[block / 2 + 4], ln[block / 2 + 4];

    KEPS_INLINE f64x4 factors(size k) const {
        return root(splat<f64x4>(-2) * loadAligned<f64x4>(ln + k) / loadAligned<f64x4>(s + k));
    }
};

// Draws until there are n pairs, 1 to block / 2.
void drawPairs(Stream &stream, Pairs &p, size n) {
    std::int32_t pairs[block + 8];
    for (size count = 0; count < n;) {
        // As many as are wanted, which may all be accepted.
        std::int32_t r[block + 8];
        const size drawn = n - count;
        stream.draw(r, 2 * drawn);
        for (size k = 0; k < drawn; k += 4) {
            const f64x4 a = fourDoubles(r + 2 * k), b = fourDoubles(r + 2 * k + 4);
            // s times 2^62, of the pairs 0, 2, 1, 3.
            const f64x4 s = addNeighbours(a * a, b * b);
            unsigned good = signs(less(s, splat<f64x4>(0x1p62)) & notLessEqual(s, zero<f64x4>()));
            if (drawn - k < 4) good &= drawn - k == 1 ? 1 : (drawn - k == 2 ? 5 : 7);
            constexpr int places[] = {0, 2, 1, 3};
            times<4>([&](int j) KEPS_INLINE_LAMBDA {
                storeAs(pairs + 2 * count, loadAs<std::int64_t>(r + 2 * (k + j)));
                count += good >> places[j] & 1;
            });
        }
    }
    for (size k = 2 * n; k & 7; ++k) pairs[k] = 0;
    const f64x4 unit = splat<f64x4>(0x1p-31);
    for (size k = 0; k < n; k += 4) {
        const f64x4 a = fourDoubles(pairs + 2 * k) * unit;
        const f64x4 b = fourDoubles(pairs + 2 * k + 4) * unit;
        const __m256d low = _mm256_permute2f128_pd(a.v, b.v, 0x20);
        const __m256d high = _mm256_permute2f128_pd(a.v, b.v, 0x31);
        const f64x4 u1 = {_mm256_unpacklo_pd(low, high)}, u2 = {_mm256_unpackhi_pd(low, high)};
        storeAligned(p.u1 + k, u1);
        storeAligned(p.u2 + k, u2);
        storeAligned(p.s + k, u1 * u1 + u2 * u2);
    }
    kepsLn_64f_A53(p.s, p.ln, static_cast<std::int32_t>(n));
    for (size k = n; k & 3; ++k) p.ln[k] = -1, p.s[k] = 1; // what no exception comes from
}

// Integers are rounded and clamped in double.
template <class T>
KEPS_INLINE f64x4 limited(f64x4 y) {
    if constexpr (std::is_integral_v<T>) {
        const auto least = static_cast<double>(std::numeric_limits<T>::min());
        const auto most = static_cast<double>(std::numeric_limits<T>::max());
        return min(max(roundToNearest(y), splat<f64x4>(least)), splat<f64x4>(most));
    } else {
        return y;
    }
}
template <class T>
void putOne(T *dst, double y) {
    T four[4];
    put(four, limited<T>(splat<f64x4>(y)));
    storeOne(dst, four[0]);
}

template <class T>
KepStatus fillGauss(T *dst, int32_t len, KepRandGaussState *state) {
    if (const KepStatus refused = refuse(len, dst, state)) return refused;
    auto *record = reinterpret_cast<GaussRecord<T> *>(state);
    if (record->id != gaussId<T>) return kepStatusContextMismatch;
    const DefaultArithmetic scope;
    const auto mean = static_cast<double>(T{record->mean});
    const auto stdDev = static_cast<double>(T{record->stdDev});
    const f64x4 means = splat<f64x4>(mean), deviations = splat<f64x4>(stdDev);
    Stream stream(record->generator);
    size i = 0;
    if (record->spent == 0) {
        putOne(dst, record->saved * stdDev * record->savedU1 + mean);
        record->spent = 1;
        i = 1;
    }
    Pairs p;
    for (size wanted = (len - i) / 2, n; wanted > 0; wanted -= n) {
        n = wanted < block / 2 ? wanted : block / 2;
        drawPairs(stream, p, n);
        size k = 0;
        // Values of u2 and u1 in turn.
        const auto values = [&](size at, f64x4 &first, f64x4 &second) KEPS_INLINE_LAMBDA {
            const f64x4 f = p.factors(at);
            const f64x4 a = means + loadAligned<f64x4>(p.u2 + at) * deviations * f;
            const f64x4 b = means + loadAligned<f64x4>(p.u1 + at) * deviations * f;
            const __m256d low = _mm256_unpacklo_pd(a.v, b.v), high = _mm256_unpackhi_pd(a.v, b.v);
            first = limited<T>({_mm256_permute2f128_pd(low, high, 0x20)});
            second = limited<T>({_mm256_permute2f128_pd(low, high, 0x31)});
        };
        f64x4 first, second;
        for (; k + 4 <= n; k += 4) {
            values(k, first, second);
            put(dst + i, first);
            put(dst + i + 4, second);
            i += 8;
        }
        if (k < n) {
            T rest[8];
            values(k, first, second);
            put(rest, first);
            put(rest + 4, second);
            for (size j = 0; j < 2 * (n - k); ++j) storeOne(dst + i + j, rest[j]);
            i += 2 * (n - k);
        }
    }
    if (i < len) {
        drawPairs(stream, p, 1);
        const double f = _mm_cvtsd_f64(_mm256_castpd256_pd128(p.factors(0).v));
        putOne(dst + i, mean + p.u2[0] * stdDev * f);
        record->saved = f;
        record->savedU1 = p.u1[0];
        record->savedU2 = p.u2[0];
        record->spent = 0;
    }
    record->generator = stream.state();
    return kepStatusOk;
}

KepStatus report(int *size, int bytes) {
    if (size == nullptr) return kepStatusNullPointer;
    storeOne(size, bytes);
    return kepStatusOk;
}

template <class T>
KepStatus initUniform(KepRandUniformState *state, T low, T high, unsigned seed) {
    if (state == nullptr) return kepStatusNullPointer;
    const DefaultArithmetic scope;
    auto *record = reinterpret_cast<UniformRecord *>(state);
    const auto from = static_cast<double>(low), to = static_cast<double>(high);
    record->seed = seed;
    record->mid = (from + to) * 0.5;
    record->scale = (to - from) * 0x1p-32;
    record->generator = seeded(seed);
    record->id = uniformId<T>;
    return kepStatusOk;
}

template <class T>
KepStatus initGauss(KepRandGaussState *state, T mean, T stdDev, unsigned seed) {
    if (state == nullptr) return kepStatusNullPointer;
    auto *record = reinterpret_cast<GaussRecord<T> *>(state);
    record->seed = seed;
    record->mean = mean;
    record->stdDev = stdDev;
    record->generator = seeded(seed);
    record->spent = 1;
    record->saved = record->savedU1 = record->savedU2 = 0;
    record->id = gaussId<T>;
    return kepStatusOk;
}

} // namespace

// clang-format off
KepStatus kepsRandUniformGetSize_8u(int *size) { return report(size, uniformBytes); }
KepStatus kepsRandUniformGetSize_16s(int *size) { return report(size, uniformBytes); }
KepStatus kepsRandUniformGetSize_32f(int *size) { return report(size, uniformBytes); }
KepStatus kepsRandUniformGetSize_64f(int *size) { return report(size, uniformBytes); }
KepStatus kepsRandUniformInit_8u(KepRandUniformState *state, Kep8u low, Kep8u high, unsigned seed) { return initUniform(state, low, high, seed); }
KepStatus kepsRandUniformInit_16s(KepRandUniformState *state, Kep16s low, Kep16s high, unsigned seed) { return initUniform(state, low, high, seed); }
KepStatus kepsRandUniformInit_32f(KepRandUniformState *state, Kep32f low, Kep32f high, unsigned seed) { return initUniform(state, low, high, seed); }
KepStatus kepsRandUniformInit_64f(KepRandUniformState *state, Kep64f low, Kep64f high, unsigned seed) { return initUniform(state, low, high, seed); }
KepStatus kepsRandUniform_8u(Kep8u *dst, int32_t len, KepRandUniformState *state) { return fillUniform(dst, len, state); }
KepStatus kepsRandUniform_16s(Kep16s *dst, int32_t len, KepRandUniformState *state) { return fillUniform(dst, len, state); }
KepStatus kepsRandUniform_32f(Kep32f *dst, int32_t len, KepRandUniformState *state) { return fillUniform(dst, len, state); }
KepStatus kepsRandUniform_64f(Kep64f *dst, int32_t len, KepRandUniformState *state) { return fillUniform(dst, len, state); }
KepStatus kepsRandGaussGetSize_8u(int *size) { return report(size, gaussBytes<Kep8u>); }
KepStatus kepsRandGaussGetSize_16s(int *size) { return report(size, gaussBytes<Kep16s>); }
KepStatus kepsRandGaussGetSize_32f(int *size) { return report(size, gaussBytes<Kep32f>); }
KepStatus kepsRandGaussGetSize_64f(int *size) { return report(size, gaussBytes<Kep64f>); }
KepStatus kepsRandGaussInit_8u(KepRandGaussState *state, Kep8u mean, Kep8u stdDev, unsigned seed) { return initGauss(state, mean, stdDev, seed); }
KepStatus kepsRandGaussInit_16s(KepRandGaussState *state, Kep16s mean, Kep16s stdDev, unsigned seed) { return initGauss(state, mean, stdDev, seed); }
KepStatus kepsRandGaussInit_32f(KepRandGaussState *state, Kep32f mean, Kep32f stdDev, unsigned seed) { return initGauss(state, mean, stdDev, seed); }
KepStatus kepsRandGaussInit_64f(KepRandGaussState *state, Kep64f mean, Kep64f stdDev, unsigned seed) { return initGauss(state, mean, stdDev, seed); }
KepStatus kepsRandGauss_8u(Kep8u *dst, int32_t len, KepRandGaussState *state) { return fillGauss(dst, len, state); }
KepStatus kepsRandGauss_16s(Kep16s *dst, int32_t len, KepRandGaussState *state) { return fillGauss(dst, len, state); }
KepStatus kepsRandGauss_32f(Kep32f *dst, int32_t len, KepRandGaussState *state) { return fillGauss(dst, len, state); }
KepStatus kepsRandGauss_64f(Kep64f *dst, int32_t len, KepRandGaussState *state) { return fillGauss(dst, len, state); }
// clang-format on
