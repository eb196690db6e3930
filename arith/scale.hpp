// The rule of scaled integers: the exact result of an operation, times two to the minus
// scaleFactor, rounded to nearest with ties to even, saturated.
//
// An operation (integerops.hpp, products.hpp) is a struct of static members: upper and lower, the
// scale factors beyond which all results are 0 or a bound; plain, the saturated result; half, that
// of scale factor 1; down(s, run), which hands run the rule of a scale factor of 2 and more; and
// Up, the rule of negative ones, if there is a shorter one than a shift of plain's result. A rule
// is made from the scale factor, once per call, and is then an operator on vectors. Everything else
// about scale factors stands here.
#pragma once

#include <limits>

#include "arith/bytype.hpp"
#include "frame/entry.hpp"
#include "frame/simd/shapes.hpp"

namespace keps {

template <class V>
concept OneVector = !isTwo<V>;

// Saturating shifts left by k of 1 and more; k is capped where any value but 0 saturates.
template <class T>
struct ShiftUp;

// Unsigned: what is above the largest number that fits becomes all ones.
template <class T>
requires std::is_unsigned_v<T>
struct ShiftUp<T> {
    Count by;
    int128<T> keep, tooLarge;
    explicit ShiftUp(int k)
        : by(k),
          keep(splatInt(static_cast<T>(~0U << k))),
          tooLarge(splatInt(static_cast<T>((std::numeric_limits<T>::max() >> k) + 1))) {}
    KEPS_INLINE int128<T> operator()(int128<T> x) const {
        // Bytes shift through 16-bit lanes, less what came from the neighbour.
        if constexpr (sizeof(T) == 1)
            return (as<T>(as<Kep16u>(x) << by) & keep) |
                   int128<T>{_mm_cmpeq_epi8(_mm_max_epu8(x.v, tooLarge.v), x.v)};
        else
            return (x << by) | int128<T>{_mm_cmpeq_epi16(_mm_max_epu16(x.v, tooLarge.v), x.v)};
    }
};
// By a product, which keeps the shuffles' pipes free; k up to 14. At 15 all but 0 saturates.
template <>
struct ShiftUp<Kep16s> {
    i16x8 factor;
    explicit ShiftUp(int k) : factor(splatInt(static_cast<Kep16s>(1 << k))) {}
    KEPS_INLINE i16x8 operator()(i16x8 x) const {
        const auto wide = interleave<Kep32s>(mulLow(x, factor), mulHigh(x, factor));
        return narrowSaturated(wide.lo, wide.hi);
    }
};
// The limit of x's sign.
KEPS_INLINE i32x4 limitOf(i32x4 x) {
    using Limits = std::numeric_limits<Kep32s>;
    return selectBySign(x, splatInt(Limits::max()), splatInt(Limits::min()));
}

template <>
struct ShiftUp<Kep32s> {
    Count by;
    explicit ShiftUp(int k) : by(k) {}
    KEPS_INLINE i32x4 operator()(i32x4 x) const {
        const i32x4 shifted = x << by;
        return select(equal(shifted >> by, x), limitOf(x), shifted);
    }
};

// 0 stays 0, the rest becomes the limit of its sign. Signed: the maximum by x's sign, and the
// minimum is one beyond its negative.
template <class T>
KEPS_INLINE int128<T> bound(int128<T> x) {
    const int128<T> maximum = splatInt(std::numeric_limits<T>::max());
    if constexpr (std::is_same_v<T, Kep16s>)
        return addSaturated(withSign(maximum, x), x);
    else if constexpr (std::is_signed_v<T>)
        return selectBySign(x, withSign(maximum, x), splatInt(std::numeric_limits<T>::min()));
    else
        return equal(x, nothing<T>()) ^ maximum;
}
template <class V>
KEPS_INLINE two<V> bound(two<V> x) {
    return {bound(x.lo), bound(x.hi)};
}

// The rules of the classes that are alike for all operations.
template <class Op>
struct Plain {
    explicit Plain(int) {}
    template <OneVector... V>
    KEPS_INLINE auto operator()(V... x) const {
        return Op::plain(x...);
    }
};
template <class Op>
struct Half {
    explicit Half(int) {}
    template <OneVector... V>
    KEPS_INLINE auto operator()(V... x) const {
        return Op::half(x...);
    }
};
template <class Op>
struct Up {
    ShiftUp<typename Op::result> shift;
    explicit Up(int s) : shift(-s) {}
    template <OneVector... V>
    KEPS_INLINE auto operator()(V... x) const {
        return apply(shift, Op::plain(x...));
    }
};
template <class Op>
struct Bound {
    explicit Bound(int) {}
    template <OneVector... V>
    KEPS_INLINE auto operator()(V... x) const {
        if constexpr (requires { Op::bounded(x...); })
            return Op::bounded(x...);
        else
            return bound(Op::plain(x...));
    }
};

// Calls run.template operator()<Rule>() with the rule of a scale factor up to Op::upper.
template <class Op, class Run>
KEPS_INLINE KepStatus byClass(int s, const Run &run) {
    if (s == 0) return run.template operator()<Plain<Op>>();
    if (s == 1) return run.template operator()<Half<Op>>();
    if (s > 1) return Op::down(s, run);
    if (s >= Op::lower) {
        if constexpr (requires { typename Op::Up; })
            return run.template operator()<typename Op::Up>();
        else
            return run.template operator()<Up<Op>>();
    }
    return run.template operator()<Bound<Op>>();
}

template <class T>
inline constexpr int lanesOf = 32 / static_cast<int>(sizeof(T));

template <class Rule>
inline constexpr bool isLight = false;
template <class Op>
requires requires {
    typename Op::light;
}
inline constexpr bool isLight<Plain<Op>> = sizeof(typename Op::result) < 4;
// Rules whose stores are not what holds them up: halves of a block that leave one by one spare
// them an instruction. Light ones, a saturating sum and no more, are held up by loads and stores,
// and take two blocks a round.
template <class Rule>
struct Heavy : Rule {
    using separateHalves = void;
};
template <class Rule>
struct Light : Rule {
    using wholeLoads = void;
};
template <class Rule>
struct WeightOf {
    using type = Heavy<Rule>;
    static constexpr int blocks = 1;
};
template <class Rule>
requires isLight<Rule>
struct WeightOf<Rule> {
    using type = Light<Rule>;
    static constexpr int blocks = 2;
};
template <class Rule>
using Weighed = typename WeightOf<Rule>::type;
template <class Rule>
inline constexpr int blocksOf = WeightOf<Rule>::blocks;

// The kernels. They hold no 256-bit arguments, so they need not be inlined; their arguments stand
// where the exported functions' do, which leaves the way there a jump.
template <class Rule, class To, class... From>
[[gnu::noinline]] KepStatus mapArrays(const From *...src, To *dst, std::int32_t n, int s) {
    map<lanesOf<To>, blocksOf<Rule>>(n, Weighed<Rule>{Rule(s)}, dst, src...);
    return kepStatusOk;
}

// A rule with its constant as the second or the first operand.
template <class Rule, class V>
struct RuleWithSecond {
    Rule rule;
    V constant;
    KEPS_INLINE V operator()(V x) const { return rule(x, constant); }
};
template <class Rule, class V>
struct RuleWithFirst {
    Rule rule;
    V constant;
    KEPS_INLINE V operator()(V x) const { return rule(constant, x); }
};
template <template <class, class> class Bind, class Rule, class T, class V>
[[gnu::noinline]] KepStatus mapWithConstant(int s, V constant, size n, T *dst, const T *src) {
    map<lanesOf<T>, 1>(n, Heavy<Bind<Rule, V>>{Bind<Rule, V>{Rule(s), constant}}, dst, src);
    return kepStatusOk;
}

// A vector of one value; complex ones take pairs of lanes.
template <class T>
KEPS_INLINE int128<T> splatValue(T x) {
    return splatInt(x);
}
KEPS_INLINE i16x8 splatValue(Kep16sc x) {
    return as<Kep16s>(splatInt(__builtin_bit_cast(std::uint32_t, x)));
}
KEPS_INLINE i32x4 splatValue(Kep32sc x) {
    return as<Kep32s>(splatInt(__builtin_bit_cast(std::uint64_t, x)));
}

// dst = the scaled result of Op on arrays, behind the default entry tests.
template <class Op, class To, class... From>
KEPS_INLINE KepStatus scaled(int s, std::int32_t len, To *dst, const From *...src) {
    if (const KepStatus refused = refuse(len, src..., dst)) return refused;
    if (s > Op::upper) return zeroArray(dst, len);
    return byClass<Op>(
        s, [&]<class Rule>() { return mapArrays<Rule, To, From...>(src..., dst, len, s); });
}

// The same of an array and a constant, entry tests done.
template <class Op, template <class, class> class Bind, class T>
KEPS_INLINE KepStatus scaledByConstant(int s, std::int32_t len, T *dst, const T *src, T val) {
    if (s > Op::upper) return zeroArray(dst, len);
    return byClass<Op>(s, [&]<class Rule>() {
        return mapWithConstant<Bind, Rule>(s, splatValue(val), len, dst, src);
    });
}

template <class T>
KEPS_INLINE bool isNothing(T x) {
    if constexpr (std::is_class_v<T>)
        return x.re == 0 && x.im == 0;
    else
        return x == 0;
}
template <class T>
KEPS_INLINE bool isUnit(T x) {
    if constexpr (std::is_class_v<T>)
        return x.re == 1 && x.im == 0;
    else
        return x == 1;
}

} // namespace keps
