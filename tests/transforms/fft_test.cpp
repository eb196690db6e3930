// Fourier transforms against a long double reference on every path, flag, layout, placement and
// alignment; sizes; statuses.
#include <cmath>
#include <cstdlib>
#include <thread>

#include "transforms/fft_kinds.hpp"

namespace {

using namespace fft_test;
using harness::Random;
using harness::seed;

constexpr int flags[] = {kepFftScaleForwardByN, kepFftScaleInverseByN, kepFftScaleBySqrtN,
                         kepFftScaleNone};

long double factorOf(int flag, Direction direction, int order) {
    const long double n = std::ldexp(1.0L, order);
    if (flag == kepFftScaleBySqrtN) return 1 / std::sqrt(n);
    return flag == (direction == forward ? kepFftScaleForwardByN : kepFftScaleInverseByN) ? 1 / n
                                                                                          : 1;
}

// Relative error of a transform. A butterfly adds about eps / 4 per level in the mean square, and
// levels add as squares; a scale factor that is no power of two has an error of its own. The
// greatest error among n stands up to sqrt(2 ln n) above the mean.
template <class T>
struct Bound {
    long double rms, most;
    explicit Bound(int order) {
        const long double eps = std::numeric_limits<T>::epsilon();
        const long double levels = std::sqrt(static_cast<long double>(order + 1));
        rms = eps * (0.40L * levels + 0.25L);
        most = rms * (2 + 2 * levels);
    }
};

template <class T>
::testing::AssertionResult near(const std::vector<T> &got, const std::vector<long double> &expected,
                                int order) {
    long double error = 0, power = 0, worst = 0;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const long double e = got[i] - expected[i];
        error += e * e;
        power += expected[i] * expected[i];
        worst = std::max(worst, std::abs(e));
    }
    const Bound<T> bound(order);
    const long double rms = std::sqrt(error / power);
    const long double most = worst / std::sqrt(power / static_cast<long double>(expected.size()));
    if (rms <= bound.rms && most <= bound.most) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "rms " << static_cast<double>(rms / bound.rms) << ", worst "
           << static_cast<double>(most / bound.most) << " of the bound, seed " << seed();
}

std::vector<Wide> widened(const auto &reals) {
    std::vector<Wide> z(reals.size() / 2);
    for (std::size_t i = 0; i < z.size(); ++i) z[i] = {reals[2 * i], reals[2 * i + 1]};
    return z;
}

std::vector<long double> flat(const std::vector<Wide> &z, long double factor) {
    std::vector<long double> reals;
    for (const Wide &x : z) {
        reals.push_back(x.real() * factor);
        reals.push_back(x.imag() * factor);
    }
    return reals;
}

template <class T>
std::vector<T> randomReals(std::size_t n, Random &random) {
    return harness::unit<T>(n, random);
}

template <class T>
T *put(Room &room, const std::vector<T> &data, Spot spot, std::size_t extra = 0) {
    auto *p = room.place((data.size() + extra) * sizeof(T), spot);
    std::memcpy(p, data.data(), data.size() * sizeof(T));
    return reinterpret_cast<T *>(p);
}

template <class T>
std::vector<T> taken(const T *p, std::size_t n) {
    std::vector<T> data(n);
    std::memcpy(static_cast<void *>(data.data()), p, n * sizeof(T));
    return data;
}

// Where the arrays of one call lie: both aligned; dst at half an alignment; all at odd bytes; up
// against the unreadable page.
struct Places {
    Spot src, dst, work;
};
const Places places[] = {{{Spot::inside, 0}, {Spot::inside, 0}, {Spot::inside, 0}},
                         {{Spot::inside, 4}, {Spot::inside, 8}, {Spot::inside, 1}},
                         {{Spot::inside, 3}, {Spot::inside, 33}, {Spot::inside, 63}},
                         {{Spot::endsAtGuard}, {Spot::endsAtGuard}, {Spot::endsAtGuard}}};

template <class T>
void checkComplex(const ComplexKind<T> &kind, Direction direction, int order, int flag) {
    SCOPED_TRACE(kind.name + (direction == forward ? " forward" : " inverse") + " order " +
                 std::to_string(order) + " flag " + std::to_string(flag));
    Random random(seed() + static_cast<unsigned>(order));
    const std::size_t points = std::size_t{1} << order, reals = 2 * points;
    const auto x = randomReals<T>(reals, random);
    const auto expected =
        flat(Reference::transform(widened(x), direction), factorOf(flag, direction, order));
    PlanRoom plan(kind, order, flag, {order % 2 ? Spot::endsAtGuard : Spot::inside, 17});
    std::vector<T> first;
    for (const Places &where : places) {
        Room from(reals * sizeof(T)), to(reals * sizeof(T));
        Room fromIm(points * sizeof(T)), toIm(points * sizeof(T));
        std::vector<T> re, im;
        for (std::size_t i = 0; i < points; ++i) {
            re.push_back(x[2 * i]);
            im.push_back(x[2 * i + 1]);
        }
        for (const bool inPlace : {false, true}) {
            Kep8u *work = plan.workAt(where.work);
            std::vector<T> y;
            if (kind.run[0]) {
                T *src = put(from, x, inPlace ? where.dst : where.src);
                T *dst = put(to, std::vector<T>(reals), where.dst);
                EXPECT_EQ(kepStatusOk, harness::guarded([&] {
                              return inPlace ? kind.inPlace[direction](src, plan.plan, work)
                                             : kind.run[direction](src, dst, plan.plan, work);
                          }));
                EXPECT_TRUE(from.intact() && to.intact());
                EXPECT_TRUE(inPlace || taken(src, reals) == x) << "source written";
                y = taken(inPlace ? src : dst, reals);
            } else {
                T *srcRe = put(from, re, inPlace ? where.dst : where.src);
                T *srcIm = put(fromIm, im, where.src);
                T *dstRe = put(to, std::vector<T>(points), where.dst);
                T *dstIm = put(toIm, std::vector<T>(points), where.work);
                EXPECT_EQ(kepStatusOk, harness::guarded([&] {
                              return inPlace ? kind.splitInPlace[direction](srcRe, srcIm, plan.plan,
                                                                            work)
                                             : kind.split[direction](srcRe, srcIm, dstRe, dstIm,
                                                                     plan.plan, work);
                          }));
                EXPECT_TRUE(from.intact() && to.intact() && fromIm.intact() && toIm.intact());
                EXPECT_TRUE(inPlace || (taken(srcRe, points) == re && taken(srcIm, points) == im))
                    << "source written";
                const auto yRe = taken(inPlace ? srcRe : dstRe, points);
                const auto yIm = taken(inPlace ? srcIm : dstIm, points);
                for (std::size_t i = 0; i < points; ++i) {
                    y.push_back(yRe[i]);
                    y.push_back(yIm[i]);
                }
            }
            EXPECT_TRUE(plan.unharmed());
            // Where the data lies must not show in a single bit.
            if (first.empty()) {
                first = y;
                EXPECT_TRUE(near(y, expected, order));
            }
            EXPECT_TRUE(y == first) << (inPlace ? "in place" : "out of place");
        }
    }
}

// A spectrum's bins 0 to n / 2 in a layout; zero fills the places that CCS defines as zero.
template <class T>
std::vector<T> packed(const std::vector<Wide> &bins, std::size_t n, Layout layout, T zero) {
    const auto re = [&](std::size_t k) { return static_cast<T>(bins[k].real()); };
    std::vector<T> reals{re(0)};
    if (layout == ccs) reals.push_back(zero);
    if (n > 1 && layout == perm) reals.push_back(re(n / 2));
    for (std::size_t k = 1; k < (n + 1) / 2; ++k) {
        reals.push_back(re(k));
        reals.push_back(static_cast<T>(bins[k].imag()));
    }
    if (n > 1 && layout != perm) reals.push_back(re(n / 2));
    if (n > 1 && layout == ccs) reals.push_back(zero);
    return reals;
}

template <class T>
void checkReal(const RealKind<T> &kind, Direction direction, Layout layout, int order, int flag) {
    SCOPED_TRACE(kind.name + (direction == forward ? " forward" : " inverse") + " layout " +
                 std::to_string(layout) + " order " + std::to_string(order) + " flag " +
                 std::to_string(flag));
    Random random(seed() + static_cast<unsigned>(order));
    const std::size_t n = std::size_t{1} << order;
    const long double factor = factorOf(flag, direction, order);
    const auto signal = randomReals<T>(n, random);
    auto bins = Reference::transform({signal.begin(), signal.end()}, forward);
    std::vector<T> x, start;
    std::vector<long double> expected;
    if (direction == forward) {
        x = signal;
        for (Wide &bin : bins) bin *= factor;
        expected = packed<long double>(bins, n, layout, 0);
        start.resize(expected.size());
    } else {
        // What the layout holds after rounding; NaN where nothing may be read.
        x = packed<T>(bins, n, layout, std::numeric_limits<T>::quiet_NaN());
        std::vector<Wide> rounded(n);
        for (std::size_t k = 0; k <= n / 2; ++k) {
            const bool real = k == 0 || k == n / 2;
            rounded[k] = {static_cast<T>(bins[k].real()),
                          real ? T(0) : static_cast<T>(bins[k].imag())};
            if (k > 0) rounded[n - k] = std::conj(rounded[k]);
        }
        for (const Wide &y : Reference::transform(rounded, inverse))
            expected.push_back(y.real() * factor);
        start.resize(n);
    }
    const std::size_t length = std::max(x.size(), expected.size());
    PlanRoom plan(kind, order, flag, {order % 2 ? Spot::endsAtGuard : Spot::inside, 17});
    std::vector<T> first;
    for (const Places &where : places) {
        Room from(length * sizeof(T)), to(length * sizeof(T));
        for (const bool inPlace : {false, true}) {
            Kep8u *work = plan.workAt(where.work);
            T *src = put(from, x, inPlace ? where.dst : where.src, inPlace ? length - x.size() : 0);
            T *dst = put(to, start, where.dst);
            EXPECT_EQ(kepStatusOk, harness::guarded([&] {
                          return inPlace ? kind.inPlace[direction][layout](src, plan.plan, work)
                                         : kind.run[direction][layout](src, dst, plan.plan, work);
                      }));
            EXPECT_TRUE(from.intact() && to.intact() && plan.unharmed());
            EXPECT_TRUE(inPlace || std::memcmp(src, x.data(), x.size() * sizeof(T)) == 0)
                << "source written";
            const auto y = taken(inPlace ? src : dst, expected.size());
            if (first.empty()) {
                first = y;
                EXPECT_TRUE(near(y, expected, order));
            }
            EXPECT_TRUE(y == first) << (inPlace ? "in place" : "out of place");
        }
    }
}

// Orders to 12 with every flag, from there on the flags that scale in turn.
template <class Check>
void overOrders(int first, int last, const Check &check) {
    for (int order = first; order <= last && !::testing::Test::HasFailure(); ++order)
        for (const int flag : flags)
            if (order <= 12 || flag == flags[order % 4]) check(order, flag);
}

template <class T>
void checkComplexOrders(const ComplexKind<T> &kind, int first, int last) {
    overOrders(first, last, [&](int order, int flag) {
        for (const Direction direction : {forward, inverse})
            checkComplex(kind, direction, order, flag);
    });
}

template <class T>
void checkRealOrders(const RealKind<T> &kind, int first, int last) {
    overOrders(first, last, [&](int order, int flag) {
        for (const Direction direction : {forward, inverse})
            for (const Layout layout : {ccs, pack, perm})
                if (order <= 12 || layout == order % 3)
                    checkReal(kind, direction, layout, order, flag);
    });
}

TEST(Fft, complex_32fc) {
    checkComplexOrders(c32fc(), 0, 20);
}
TEST(Fft, complex_32f) {
    checkComplexOrders(c32f(), 0, 19);
}
TEST(Fft, complex_64fc) {
    checkComplexOrders(c64fc(), 0, 19);
}
TEST(Fft, complex_64f) {
    checkComplexOrders(c64f(), 0, 18);
}
TEST(Fft, real_32f) {
    checkRealOrders(r32f(), 0, 20);
}
TEST(Fft, real_64f) {
    checkRealOrders(r64f(), 0, 19);
}

// A transform that is too long for the reference, checked at random bins against those of its 256
// interleaved parts, which are transforms of an order that the reference has checked; then back.
template <class T>
void checkLong(const ComplexKind<T> &kind, int order) {
    SCOPED_TRACE(kind.name + " order " + std::to_string(order));
    Random random(seed());
    const std::size_t points = std::size_t{1} << order, parts = 256, shorter = points / parts;
    PlanRoom whole(kind, order, kepFftScaleInverseByN), part(kind, order - 8, kepFftScaleNone);
    auto x = randomReals<T>(2 * points, random);
    std::vector<T> y(2 * points), p(2 * shorter);
    Kep8u *work = whole.workAt({Spot::inside, 9});
    const KepStatus status = kind.run[0]
                                 ? kind.run[forward](x.data(), y.data(), whole.plan, work)
                                 : kind.split[forward](x.data(), x.data() + points, y.data(),
                                                       y.data() + points, whole.plan, work);
    EXPECT_EQ(kepStatusOk, status);
    const auto at = [&](const std::vector<T> &z, std::size_t n, std::size_t i) {
        return kind.run[0] ? Wide(z[2 * i], z[2 * i + 1]) : Wide(z[i], z[n + i]);
    };
    std::vector<std::size_t> bins(64);
    for (std::size_t &k : bins) k = random() % points;
    std::vector<Wide> sums(bins.size());
    const long double step = -2 * std::acos(-1.0L) / static_cast<long double>(points);
    for (std::size_t r = 0; r < parts; ++r) {
        for (std::size_t i = 0; i < shorter; ++i) {
            const Wide z = at(x, points, i * parts + r);
            p[kind.run[0] ? 2 * i : i] = static_cast<T>(z.real());
            p[kind.run[0] ? 2 * i + 1 : shorter + i] = static_cast<T>(z.imag());
        }
        Kep8u *partWork = part.workAt({Spot::inside, 0});
        if (kind.run[0])
            kind.inPlace[forward](p.data(), part.plan, partWork);
        else
            kind.splitInPlace[forward](p.data(), p.data() + shorter, part.plan, partWork);
        for (std::size_t b = 0; b < bins.size(); ++b)
            sums[b] += at(p, shorter, bins[b] % shorter) *
                       std::polar(1.0L, step * static_cast<long double>(bins[b] * r % points));
    }
    const long double size = std::sqrt(2.0L / 3 * static_cast<long double>(points));
    for (std::size_t b = 0; b < bins.size(); ++b)
        EXPECT_LT(std::abs(sums[b] - at(y, points, bins[b])), Bound<T>(order).most * size);
    // In place, forward again and back.
    auto z = x;
    T *re = z.data(), *im = re + points;
    work = whole.workAt({Spot::inside, 1});
    kind.run[0] ? kind.inPlace[forward](re, whole.plan, work)
                : kind.splitInPlace[forward](re, im, whole.plan, work);
    EXPECT_TRUE(z == y) << "in place";
    kind.run[0] ? kind.inPlace[inverse](re, whole.plan, work)
                : kind.splitInPlace[inverse](re, im, whole.plan, work);
    long double error = 0;
    for (std::size_t i = 0; i < 2 * points; ++i)
        error += (static_cast<long double>(z[i]) - x[i]) * (static_cast<long double>(z[i]) - x[i]);
    EXPECT_LT(std::sqrt(error / (static_cast<long double>(points) * 2 / 3)),
              1.5L * Bound<T>(order).rms);
    EXPECT_TRUE(whole.unharmed());
}

// Blocks of 256 runs; with KEPS_LONG_FFT=1 also a level inside a level, which takes gigabytes.
TEST(Fft, long_transforms) {
    checkLong(c32fc(), 23);
    checkLong(c64fc(), 22);
    checkLong(c32f(), 23);
    checkLong(c64f(), 22);
    if (std::getenv("KEPS_LONG_FFT")) {
        checkLong(c32fc(), 26);
        checkLong(c64fc(), 26);
    }
}

// Root-mean-square error over eps sqrt(log2 N) of forward transforms: at most 0.40 where the table
// is correctly rounded, as it is up to order 10 and in double precision above; the generated
// single-precision table carries the rounding of its angles.
template <class T>
double errorOf(const ComplexKind<T> &kind, int order) {
    Random random(seed());
    const std::size_t reals = std::size_t{2} << order;
    long double error = 0, power = 0;
    // Short transforms many times over, so that the mean is one.
    for (int rounds = std::max(1, 4096 >> order); rounds > 0; --rounds) {
        auto x = randomReals<T>(reals, random);
        const auto expected = Reference::transform(widened(x), forward);
        PlanRoom plan(kind, order, kepFftScaleNone);
        kind.inPlace[forward](x.data(), plan.plan, plan.workAt({Spot::inside, 0}));
        const auto got = widened(x);
        for (std::size_t k = 0; k < got.size(); ++k) {
            error += std::norm(got[k] - expected[k]);
            power += std::norm(expected[k]);
        }
    }
    const long double eps = std::numeric_limits<T>::epsilon();
    return static_cast<double>(std::sqrt(error / power / order) / eps);
}

TEST(Fft, accuracy) {
    std::printf("order  C_32fc  C_64fc   error / (eps sqrt(log2 N))\n");
    for (int order = 1; order <= 19; ++order) {
        const double single = errorOf(c32fc(), order), twofold = errorOf(c64fc(), order);
        std::printf("%5d  %6.3f  %6.3f\n", order, single, twofold);
        EXPECT_LE(single, order <= 10 ? 0.40 : 0.60);
        EXPECT_LE(twofold, 0.40);
    }
}

// The reference against sums formed term by term.
TEST(Fft, reference) {
    Random random(seed());
    const std::size_t n = 32;
    const auto x = widened(harness::unit<double>(2 * n, random));
    const auto y = Reference::transform(x, forward);
    for (std::size_t k = 0; k < n; ++k) {
        Wide sum = 0;
        for (std::size_t i = 0; i < n; ++i)
            sum += x[i] * std::polar(1.0L, -2 * std::acos(-1.0L) *
                                               static_cast<long double>(i * k % n) / n);
        EXPECT_LT(std::abs(sum - y[k]), 1e-17L);
    }
}

// One plan, many threads, each with its own work buffer and data: all get the one result.
TEST(Fft, shared_plan) {
    for (const int order : {6, 11, 18, 19}) {
        PlanRoom plan(c64fc(), order, kepFftScaleNone);
        plan.workAt({Spot::inside, 0});
        Random random(seed());
        const auto x = randomReals<double>(std::size_t{2} << order, random);
        std::vector<std::vector<double>> results(4, x);
        std::vector<std::thread> threads;
        for (auto &y : results)
            threads.emplace_back([&] {
                std::vector<Kep8u> work(static_cast<std::size_t>(plan.workSize) + 1);
                for (int round = 0; round < 4; ++round) {
                    y = x;
                    c64fc().inPlace[forward](y.data(), plan.plan, work.data());
                }
            });
        for (std::thread &t : threads) t.join();
        for (const auto &y : results) EXPECT_TRUE(y == results[0]);
        EXPECT_TRUE(plan.unharmed());
    }
}

struct SizesRow {
    int order, spec, buffer, work;
};

void checkSizes(GetSize *getSize, std::initializer_list<SizesRow> rows) {
    for (const SizesRow &row : rows) {
        int spec = -1, buffer = -1, work = -1;
        EXPECT_EQ(kepStatusOk, getSize(row.order, kepFftScaleNone, 0, &spec, &buffer, &work));
        EXPECT_TRUE(spec == row.spec && buffer == row.buffer && work == row.work)
            << "order " << row.order << ": " << spec << ", " << buffer << ", " << work;
    }
}

TEST(Fft, sizes) {
    for (GetSize *getSize : {kepsFFTGetSize_C_32fc, kepsFFTGetSize_C_32f})
        checkSizes(getSize, {{0, 208, 0, 0},
                             {6, 208, 0, 0},
                             {7, 1536, 0, 1088},
                             {18, 2359680, 262272, 2097216},
                             {19, 2364288, 524416, 262208},
                             {28, 1078727040, 268435584, 524352}});
    for (GetSize *getSize : {kepsFFTGetSize_C_64fc, kepsFFTGetSize_C_64f})
        checkSizes(getSize, {{7, 2560, 0, 2112},
                             {10, 17792, 0, 16448},
                             {11, 35200, 4224, 32832},
                             {17, 2228608, 262272, 2097216},
                             {18, 2361728, 524416, 262208},
                             {27, 1078986112, 268435584, 524352}});
    checkSizes(kepsFFTGetSize_R_32f, {{4, 208, 0, 0},
                                      {5, 384, 0, 0},
                                      {7, 768, 0, 0},
                                      {8, 2560, 0, 1088},
                                      {11, 17792, 2176, 8256},
                                      {19, 2359680 + 2 * 9216, 524416, 2097216}});
    checkSizes(kepsFFTGetSize_R_64f, {{4, 208, 0, 0}, {5, 512, 0, 0}, {8, 4608, 0, 2112}});
}

template <class Kind>
void checkPlanStatuses(const Kind &kind, int limit) {
    SCOPED_TRACE(kind.name);
    int a = -1, b = -1, c = -1;
    const auto size = [&](int order, int flag, int *p, int *q, int *r) {
        return kind.getSize(order, flag, 0, p, q, r);
    };
    for (const int order : {-1, 31}) {
        EXPECT_EQ(kepStatusBadFftOrder, size(order, 0, nullptr, nullptr, nullptr));
        EXPECT_EQ(kepStatusBadFftOrder, size(order, kepFftScaleNone, &a, &b, &c));
    }
    EXPECT_EQ(kepStatusNullPointer, size(limit + 1, 3, nullptr, &b, &c));
    EXPECT_EQ(kepStatusNullPointer, size(limit + 1, 3, &a, nullptr, &c));
    EXPECT_EQ(kepStatusNullPointer, size(limit + 1, 3, &a, &b, nullptr));
    EXPECT_EQ(kepStatusBadFftFlag, size(limit + 1, 3, &a, &b, &c));
    EXPECT_EQ(kepStatusBadFftOrder, size(limit + 1, kepFftScaleNone, &a, &b, &c));
    EXPECT_EQ(kepStatusBadFftFlag, size(4, 0, &a, &b, &c));
    EXPECT_EQ(kepStatusBadFftFlag, size(4, 16, &a, &b, &c));
    EXPECT_TRUE(a == -1 && b == -1 && c == -1) << "written behind a refusal";

    alignas(64) Kep8u memory[4096] = {}, buffer[8192];
    KepsFftPlan *plan = nullptr;
    EXPECT_EQ(kepStatusNullPointer, kind.init(nullptr, -1, 0, 0, nullptr, nullptr));
    EXPECT_EQ(kepStatusBadFftOrder, kind.init(&plan, -1, 0, 0, nullptr, nullptr));
    EXPECT_EQ(kepStatusBadFftOrder, kind.init(&plan, limit + 1, 1, 0, memory, buffer));
    EXPECT_EQ(kepStatusNullPointer, kind.init(&plan, 3, 0, 0, nullptr, nullptr));
    EXPECT_EQ(0, memory[0]);
    EXPECT_EQ(kepStatusOk, kind.init(&plan, 3, kepFftScaleNone, -5, memory, nullptr));
    EXPECT_NE(0, memory[0]);
    // A bad flag is seen before a missing buffer and leaves a block that is no plan.
    plan = nullptr;
    EXPECT_EQ(kepStatusBadFftFlag, kind.init(&plan, 11, 3, 0, memory, nullptr));
    EXPECT_TRUE(plan == nullptr && memory[0] == 0);
    EXPECT_EQ(kepStatusNullPointer, kind.init(&plan, 11, kepFftScaleNone, 0, memory, nullptr));
    EXPECT_TRUE(plan == nullptr && memory[0] != 0);
    EXPECT_EQ(kepStatusOk, kind.init(&plan, 10 - 4, kepFftScaleNone, 0, memory + 1, nullptr));
    EXPECT_EQ(memory + 64, reinterpret_cast<Kep8u *>(plan));
}

TEST(Fft, plan_statuses) {
    checkPlanStatuses(c32fc(), 28);
    checkPlanStatuses(c32f(), 28);
    checkPlanStatuses(r32f(), 29);
    checkPlanStatuses(c64fc(), 27);
    checkPlanStatuses(c64f(), 27);
    checkPlanStatuses(r64f(), 28);
}

// run(src, dst, plan, work) of one kind; others are plans of all the other kinds.
template <class T, class Call>
void checkRunStatuses(const Call &run, KepsFftPlan *plan,
                      const std::vector<KepsFftPlan *> &others) {
    T data[1024] = {};
    alignas(64) Kep8u work[16384];
    T *none = nullptr;
    EXPECT_EQ(kepStatusNullPointer, run(none, none, nullptr, nullptr));
    for (KepsFftPlan *other : others)
        EXPECT_EQ(kepStatusContextMismatch, run(none, none, other, nullptr));
    EXPECT_EQ(kepStatusNullPointer, run(none, data, plan, work));
    EXPECT_EQ(kepStatusNullPointer, run(data, none, plan, work));
    EXPECT_EQ(kepStatusNullPointer, run(data, data, plan, nullptr));
    EXPECT_EQ(kepStatusOk, run(data, data, plan, work));
}

// Each of the four arrays of a split transform missing in turn, beside the common chain.
template <class T>
void checkSplitStatuses(const ComplexKind<T> &kind, KepsFftPlan *plan,
                        const std::vector<KepsFftPlan *> &others) {
    T data[1024] = {};
    alignas(64) Kep8u work[16384];
    for (const Direction direction : {forward, inverse}) {
        const auto run = kind.split[direction];
        checkRunStatuses<T>(
            [&](const T *src, T *dst, const KepsFftPlan *p, Kep8u *w) {
                return run(src, src ? src + 256 : src, dst, dst ? dst + 256 : dst, p, w);
            },
            plan, others);
        EXPECT_EQ(kepStatusNullPointer, run(data, nullptr, data, data + 256, plan, work));
        EXPECT_EQ(kepStatusNullPointer, run(data, data + 256, data, nullptr, plan, work));
        EXPECT_EQ(kepStatusNullPointer, kind.splitInPlace[direction](data, nullptr, plan, work));
    }
}

TEST(Fft, run_statuses) {
    constexpr int order = 8, flag = kepFftScaleNone;
    PlanRoom rooms[] = {{c32fc(), order, flag}, {c32f(), order, flag}, {r32f(), order, flag},
                        {c64fc(), order, flag}, {c64f(), order, flag}, {r64f(), order, flag}};
    const auto others = [&](int mine) {
        std::vector<KepsFftPlan *> plans;
        for (int i = 0; i < 6; ++i)
            if (i != mine) plans.push_back(rooms[i].plan);
        return plans;
    };
    for (const Direction direction : {forward, inverse}) {
        checkRunStatuses<float>(c32fc().run[direction], rooms[0].plan, others(0));
        checkRunStatuses<double>(c64fc().run[direction], rooms[3].plan, others(3));
        for (const Layout layout : {ccs, pack, perm}) {
            checkRunStatuses<float>(r32f().run[direction][layout], rooms[2].plan, others(2));
            checkRunStatuses<double>(r64f().run[direction][layout], rooms[5].plan, others(5));
        }
    }
    checkSplitStatuses(c32f(), rooms[1].plan, others(1));
    checkSplitStatuses(c64f(), rooms[4].plan, others(4));
}

} // namespace
