// 64-bit integers and float-to-integer products against exact values.
#include <cmath>

#include "scaled.hpp"

namespace {

using namespace scaled;

Exact roundedBy(Exact x, int s, int rndMode) {
    if (s <= 0) return x;
    if (s > 126) return 0;
    const Exact unit = Exact{1} << s, magnitude = x < 0 ? -x : x;
    const Exact whole = magnitude / unit, rest = 2 * (magnitude % unit);
    const bool up = rndMode == 0   ? false
                    : rndMode == 1 ? rest > unit || (rest == unit && (whole & 1))
                                   : rest >= unit;
    return x < 0 ? -(whole + up) : whole + up;
}

// The sum that saturates, then its shift that does: not the same as the rule only in name.
template <class T>
T shiftedSum(Exact sum, int s) {
    return rule<T>(saturated<T>(sum), s);
}

Kep64s expectedAdd(Kep64s a, Kep64s b, int s) {
    const Exact sum = Exact{a} + b;
    if (s >= 64) return 0;
    const bool alike = (a > 0 && b > 0) || (a < 0 && b < 0);
    if (s >= 2 && !alike && sum >= 0 && (sum & ((Exact{1} << s) - 1)) == Exact{1} << (s - 1))
        return 0;
    return s >= 0 ? rule<Kep64s>(sum, s) : shiftedSum<Kep64s>(sum, s);
}

template <class T>
T expectedAddC(T a, T val, int s, int rndMode) {
    const Exact sum = Exact{a} + val;
    if (s > 65) return 0;
    if (s < -62)
        return sum == 0  ? T{0}
               : sum > 0 ? std::numeric_limits<T>::max()
                         : std::numeric_limits<T>::min();
    return s >= 0 ? saturated<T>(roundedBy(sum, s, rndMode)) : shiftedSum<T>(sum, s);
}

TEST(Wide, add64s) {
    for (const int s : scaleFactors(64))
        check<Kep64s, Kep64s, Kep64s>(
            {.name = "kepsAdd_64s_Sfs, scale factor " + std::to_string(s),
             .call = [=](const Kep64s *a, const Kep64s *b, Kep64s *dst,
                         int n) { return kepsAdd_64s_Sfs(a, b, dst, n, s); },
             .oracle =
                 [=](const Kep64s *a, const Kep64s *b, Kep64s *dst, int n) {
                     for (int i = 0; i < n; ++i) dst[i] = expectedAdd(a[i], b[i], s);
                     return kepStatusOk;
                 },
             .data =
                 [](std::size_t n, Random &random) {
                     auto a = sparse<Kep64s>(n, random);
                     return std::tuple{std::move(a), sparse<Kep64s>(n, random)};
                 }});
    // Ties of sums from 0 up, by the operands' signs.
    const Kep64s a[5] = {7, 6, 3, -7, 0}, b[5] = {-1, 0, 3, 1, 2};
    const Kep64s expected[5] = {0, 0, 2, -2, 0};
    Kep64s dst[5];
    ASSERT_EQ(kepStatusOk, kepsAdd_64s_Sfs(a, b, dst, 5, 2));
    for (int i = 0; i < 5; ++i) EXPECT_EQ(expected[i], dst[i]) << a[i] << " + " << b[i];
}

template <class T>
void checkAddC(const char *name, KepStatus (*f)(const T *, T, T *, int32_t, int, int)) {
    Random random(seed());
    std::vector<T> constants = sparse<T>(3, random);
    for (const T x : {T{0}, T{1}, std::numeric_limits<T>::max(), std::numeric_limits<T>::min()})
        constants.push_back(x);
    for (const T val : constants)
        for (const int s : scaleFactors(64))
            for (const int mode : {0, 1, 2, -5}) {
                const auto src = sparse<T>(67, random);
                std::vector<T> dst(67);
                ASSERT_EQ(kepStatusOk, f(src.data(), val, dst.data(), 67, s, mode));
                for (std::size_t i = 0; i < 67; ++i)
                    ASSERT_EQ(expectedAddC(src[i], val, s, mode), dst[i])
                        << name << ' ' << src[i] << " + " << val << ", scale factor " << s
                        << ", mode " << mode;
            }
    check<T, T>({.name = name,
                 .call = [=](const T *a, T *dst, int n) { return f(a, 12345, dst, n, 3, 1); },
                 .oracle =
                     [](const T *a, T *dst, int n) {
                         for (int i = 0; i < n; ++i) dst[i] = expectedAddC<T>(a[i], 12345, 3, 1);
                         return kepStatusOk;
                     }});
    // Lengths are unsigned: only 0 is refused, and null ahead of it.
    T x[1] = {};
    EXPECT_EQ(kepStatusBadLength, f(x, 1, x, 0, 0, 1));
    EXPECT_EQ(kepStatusNullPointer, f(nullptr, 1, x, 0, 0, 1));
    EXPECT_EQ(kepStatusNullPointer, f(x, 1, nullptr, 5, 0, 1));
}

TEST(Wide, addC64) {
    checkAddC("kepsAddC_64s_Sfs", kepsAddC_64s_Sfs);
    checkAddC("kepsAddC_64u_Sfs", kepsAddC_64u_Sfs);
}

template <class Val>
void checkMulC(KepStatus (*f)(Val, Kep64s *, int32_t, int), const std::vector<Val> &constants,
               const std::vector<int> &factors, Kep64s (*one)(Kep64s, Val, int)) {
    for (const Val val : constants)
        for (const int s : factors)
            check<Kep64s, Kep64s>(
                {.name = "constant " + show(val) + ", scale factor " + std::to_string(s),
                 .call =
                     [=](const Kep64s *a, Kep64s *dst, int n) {
                         std::memmove(dst, a, static_cast<std::size_t>(n) * sizeof *a);
                         return f(val, dst, n, s);
                     },
                 .oracle =
                     [=](const Kep64s *a, Kep64s *dst, int n) {
                         for (int i = 0; i < n; ++i) dst[i] = one(a[i], val, s);
                         return kepStatusOk;
                     }});
}

TEST(Wide, mulC64s) {
    checkMulC<Kep64s>(
        kepsMulC_64s_ISfs, {0, 1, -1, 3, INT64_MAX, INT64_MIN, 0x123456789, -(Kep64s{1} << 40)},
        {0, 1, 2, 31, 63, 64, 100, 125, 126, 127, 128, INT_MAX, -1, -5, -62, -63, -64, INT_MIN},
        [](Kep64s x, Kep64s val, int s) { return rule<Kep64s>(Exact{x} * val, s); });
}

// The product in double, the power of two and the rounding in long double, where they are exact.
TEST(Wide, mulC64f64s) {
    checkMulC<Kep64f>(
        kepsMulC_64f64s_ISfs,
        {0.0, 1.0, -1.5, 0.5, 1e-300, 1e300, 3e18, static_cast<double>(INFINITY),
         -static_cast<double>(INFINITY), 4.9e-324},
        {0, 1, -1, 5, 63, 64, 1000, 1080, -1000, -1070, -1074, -1200, 3000, INT_MAX, INT_MIN},
        [](Kep64s x, Kep64f val, int s) {
            if (x == 0) return Kep64s{0};
            const volatile double p = static_cast<double>(x) * val;
            const long double y = std::nearbyint(
                std::ldexp(static_cast<long double>(p), -std::clamp(s, -9000, 9000)));
            if (y >= 0x1p63L) return Kep64s{INT64_MAX};
            if (y <= -0x1p63L) return Kep64s{INT64_MIN};
            return static_cast<Kep64s>(y);
        });
    Kep64s x[2] = {0, 7};
    EXPECT_EQ(kepStatusBadLength, kepsMulC_64f64s_ISfs(1, x, 0, 0));
    EXPECT_EQ(kepStatusNullPointer, kepsMulC_64f64s_ISfs(1, nullptr, 0, 0));
    ASSERT_EQ(kepStatusOk, kepsMulC_64f64s_ISfs(static_cast<double>(NAN), x, 1, 5));
    EXPECT_EQ(0, x[0]);
}

TEST(Wide, mulC32f16s) {
    for (const float val : {1.0F, -0.75F, 1e30F, 1e-3F, 3e-40F})
        for (const int s : {0, 3, -4, 127, -140, INT_MAX, INT_MIN}) {
            check<Kep16s, Kep32f>(
                {.name =
                     "kepsMulC_32f16s_Sfs by " + show(val) + ", scale factor " + std::to_string(s),
                 .call = [=](const Kep32f *a, Kep16s *dst,
                             int n) { return kepsMulC_32f16s_Sfs(a, val, dst, n, s); },
                 .oracle =
                     [=](const Kep32f *a, Kep16s *dst, int n) {
                         for (int i = 0; i < n; ++i) {
                             const volatile float p = a[i] * val;
                             const double y =
                                 std::ldexp(static_cast<double>(p), -std::clamp(s, -800, 800));
                             dst[i] = static_cast<Kep16s>(std::nearbyint(
                                 std::isnan(y) ? 0.0 : std::clamp(y, -32768.0, 32767.0)));
                         }
                         return kepStatusOk;
                     },
                 .mayAlias = false,
                 .data =
                     [](std::size_t n, Random &random) {
                         return std::tuple{generate<float>(n, random, [](Random &r) {
                             const float x = mixedValue<float>(r);
                             return std::isnan(x) ? 1.5F : x;
                         })};
                     }});
        }
}

// By the caller's rounding mode, which stays.
TEST(Wide, mulCLow) {
    const float src[8] = {1, 3, 5, -1, -3, 1e9F, -3e10F, 65536};
    const Kep16s expected[4][8] = {{0, 2, 2, 0, -2, 32767, -32768, 32767},  // to nearest
                                   {0, 1, 2, -1, -2, 32767, -32768, 32767}, // down
                                   {1, 2, 3, 0, -1, 32767, -32768, 32767},  // up
                                   {0, 1, 2, 0, -1, 32767, -32768, 32767}}; // toward zero
    const unsigned old = __builtin_ia32_stmxcsr();
    for (unsigned control = 0; control < 4; ++control) {
        Kep16s dst[8];
        __builtin_ia32_ldmxcsr((old & ~0x6000U) | control << 13);
        kepsMulC_Low_32f16s(src, 0.5F, dst, 8);
        const unsigned after = __builtin_ia32_stmxcsr();
        __builtin_ia32_ldmxcsr(old);
        EXPECT_EQ(control << 13, after & 0x6000);
        for (int i = 0; i < 8; ++i) EXPECT_EQ(expected[control][i], dst[i]) << src[i] << control;
    }
}

} // namespace
