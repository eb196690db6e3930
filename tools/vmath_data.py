#!/usr/bin/env python3
"""Writes the coefficients and tables of arith/vmath: vmath_data.py [family ...].

Polynomials are minimax fits by Remez exchange in 60-digit arithmetic, each coefficient rounded to
its type in turn with the later ones fitted to what is left; the bound written beside each is the
largest error that the rounded coefficients leave. Tables are values of the function at their
breakpoints, rounded once. Needs mpmath."""
import os
import sys
from mpmath import mp, mpf, sin, cos, exp, log, pi, sqrt, floor
from vmath_fit import Header, bound, fit, on_grid, remez, to_double, to_float, truncated

ROOM = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "arith", "vmath")
one = lambda x: mpf(1)


def parts(value, bits):
    """value as a sum of positive constants of so many bits each: times 0 they leave a -0 its sign."""
    out = []
    for b in bits:
        out.append(truncated(value, b))
        value -= out[-1]
    return out


def trig():
    h = Header("Constants of the sine and cosine kernels.")
    # Table step pi/32.
    step = pi / 32
    h.number("trigInvStep", "double", to_double(1 / step), "32/pi; and pi/32 in parts that a 20-bit integer multiplies exactly.")
    for k, p in enumerate(parts(step, (33, 32, 33, 53))):
        h.number("trigStep%d" % (k + 1), "double", p)
    h.blank()
    r = pi / 64 * (1 + mpf(2) ** -20)

    def sine3(s):
        return (sin(sqrt(s)) / sqrt(s) - 1) / s if s else -mpf(1) / 6

    def cosine2(s):
        return (cos(sqrt(s)) - 1) / s if s else -mpf(1) / 2

    c, e = fit(sine3, lambda s: s, 0, r * r, range(3), to_double)
    h.poly("vdsin_step", "double", c, "(sin r - r) / r^3 in r^2, |r| to pi/64; error against r " + bound(e) + ".")
    c, e = fit(cosine2, lambda s: s, 0, r * r, range(4), to_double, exact=(-0.5,))
    h.poly("vdcos_step", "double", c, "(cos r - 1) / r^2 in r^2, |r| to pi/64; absolute error " + bound(e) + ".")
    rows = []
    for j in range(64):
        s, c = sin(j * step), cos(j * step)
        s = mpf(0) if j % 32 == 0 else s
        c = mpf(0) if j % 32 == 16 else c
        hi = to_double(s)
        low, sigma = to_double(s - hi), mpf(0)
        if abs(c) > mpf(2) ** -5:
            sigma = mpf(2) ** int(mp.nint(mp.log(abs(c), 2))) * (1 if c > 0 else -1)
        rows.append((hi, low, sigma, to_double(c - sigma)))
    h.table("vdsin_data", "double", rows, "Breakpoints j pi/32: sine, its low part, a power of two near the cosine, the cosine less it.")
    # Half turns: sin(r) = r Q(r^2) on half a turn around zero.
    r = pi / 2 * (1 + mpf(2) ** -12)

    def sineq(s):
        return sin(sqrt(s)) / sqrt(s) if s else mpf(1)

    weight = lambda s: 1 / sineq(s)
    for name, kind, count in (("vssin_low", "float", 5), ("vssin_fast", "float", 3), ("vssin_high", "double", 6),
                              ("vdsin_low", "double", 8), ("vdsin_fast", "double", 5)):
        c, e = fit(sineq, weight, 0, r * r, range(count), to_float if kind == "float" else to_double,
                   exact=(1,))
        h.poly(name, kind, c, "sin(r) / r in r^2, |r| to pi/2; relative error " + bound(e) + ".")
    r = pi / 4 * (1 + mpf(2) ** -10)

    def cosine(s):
        return cos(sqrt(s))

    for name, kind, sines, cosines in (("QuarterLow32", "float", 4, 4), ("QuarterFast32", "float", 3, 3),
                                       ("QuarterLow64", "double", 7, 7), ("QuarterFast64", "double", 4, 5)):
        to = to_float if kind == "float" else to_double
        c, e = fit(sineq, weight, 0, r * r, range(sines), to, exact=(1,))
        h.poly("sin" + name, kind, c, "sin(r) / r in r^2, |r| to pi/4; relative error " + bound(e) + ".")
        c, e = fit(cosine, lambda s: 1 / cosine(s), 0, r * r, range(cosines), to, exact=(1,))
        h.poly("cos" + name, kind, c, "cos(r) in r^2, |r| to pi/4; relative error " + bound(e) + ".")
    h.number("invPi", "double", to_double(1 / pi), "1/pi; pi in parts that an 8-bit multiplier leaves exact in float, a 16-bit one in double.")
    for k, p in enumerate(parts(pi, (16, 16, 24))):
        h.number("piFloat%d" % (k + 1), "float", to_float(p))
    for k, p in enumerate(parts(pi, (37, 37, 53))):
        h.number("piDouble%d" % (k + 1), "double", p)
    for k, p in enumerate(parts(pi, (33, 53))):
        h.number("piWide%d" % (k + 1), "double", p, None if k else "The same for floats, 20-bit multipliers.")
    h.blank()
    bits = turn_bits()
    words = [0] + [(bits >> (64 * (20 - k))) & (2**64 - 1) for k in range(21)]
    h.words("turnBits", words, "64 zero bits, then the binary digits of 1 / (2 pi).")
    two_pi = int(floor(2 * pi * mpf(2) ** 125))
    h.words("twoPiBits", [two_pi >> 64, two_pi & (2**64 - 1)], "2 pi times 2^125.")
    h.write(os.path.join(ROOM, "trig_data.hpp"))


def turn_bits():
    with mp.workprec(1600):
        return int(floor(1 / (2 * mp.pi) * mpf(2) ** 1344))


def exponential():
    h = Header("Constants of the exponential kernels.")
    half = log(2) / 2 * (1 + mpf(2) ** -12)
    inverse = lambda x: exp(-x)
    for name, kind, count, first in (("vsexp_low", "float", 6, (1, 1)), ("vsexp_fast", "float", 4, ()), ("vsexp_high", "double", 9, (1,))):
        # Around zero exactly the fits of the later coefficients miss their best.
        top = half * mpf("1.02") if len(first) > 1 else half
        c, e = fit(exp, inverse, -half, top, range(count), to_float if kind == "float" else to_double, exact=first)
        h.poly(name, kind, c, "exp(r), |r| to ln(2)/2; relative error " + bound(e) + ".")
    c = [to_double(x) for x in remez(exp, inverse, -half, half, range(11))[0]]
    e = max(abs(1 - exp(-x) * mp.polyval(c[::-1], x)) for x in (-half + 2 * half * i / 400 for i in range(401)))
    h.poly("vdexp_whole", "double", c, "exp(r), |r| to ln(2)/2, all coefficients rounded at once; relative error " + bound(e) + ".")
    for k, p in enumerate(parts(log(2), (16, 24))):
        h.number("ln2Float%d" % (k + 1), "float", to_float(p), None if k else "ln 2 in parts: for float with 8-bit multipliers, for double with 17-bit ones after a division by 128.")
    step = log(2) / 128
    h.number("expInvStep", "double", to_double(1 / step))
    for k, p in enumerate(parts(step, (35, 53))):
        h.number("expStep%d" % (k + 1), "double", p)
    h.blank()
    r = step / 2 * (1 + mpf(2) ** -20)

    def less2(x):
        return (exp(x) - 1 - x) / x**2 if abs(x) > mpf(10) ** -20 else mpf(1) / 2

    for name, count in (("vdexp_low", 3), ("vdexp_high", 4)):
        c, e = fit(less2, lambda x: x**2, -r, r, range(count), to_double, exact=(0.5,))
        h.poly(name, "double", c, "(exp r - 1 - r) / r^2, |r| to ln(2)/256; error against 1 " + bound(e) + ".")
    sinh3 = lambda s: (mp.sinh(sqrt(s)) / sqrt(s) - 1) / s if s else mpf(1) / 6
    cosh2 = lambda s: (mp.cosh(sqrt(s)) - 1) / s if s else mpf(1) / 2
    c, e = fit(sinh3, lambda s: s, 0, r * r, range(2), to_double)
    h.poly("vdsinh_step", "double", c, "(sinh r - r) / r^3 in r^2; error against r " + bound(e) + ".")
    c, e = fit(cosh2, lambda s: s, 0, r * r, range(3), to_double, exact=(0.5,))
    h.poly("vdcosh_step", "double", c, "(cosh r - 1) / r^2 in r^2; error against 1 " + bound(e) + ".")
    rows = []
    for j in range(128):
        v = mpf(2) ** (mpf(j) / 128)
        rows.append((to_double(v), to_double(v - to_double(v))))
    h.table("vdexp_data", "double", rows, "2^(j/128) and its low part.")
    h.write(os.path.join(ROOM, "exp_data.hpp"))


def logarithm():
    h = Header("Constants of the logarithm kernels.")
    s = (sqrt(mpf(2)) - 1) / (sqrt(mpf(2)) + 1) * (1 + mpf(2) ** -16)

    def ratio(u):
        return log((1 + sqrt(u)) / (1 - sqrt(u))) / sqrt(u) if u else mpf(2)

    for name, kind, count in (("vsln_low", "float", 3), ("vsln_fast", "float", 2), ("vdln_ratio", "double", 7), ("vdln_ratioFast", "double", 4)):
        c, e = fit(ratio, lambda u: 1 / ratio(u), 0, s * s, range(count), to_float if kind == "float" else to_double, exact=(2,))
        h.poly(name, kind, c, "ln((1 + s)/(1 - s)) / s in s^2, s to 0.1716; relative error " + bound(e) + ".")
    h.number("ln2Float", "float", to_float(log(2)), "ln 2: for float, for double, and in parts of which 11-bit multiples are exact.")
    h.number("ln2Double", "double", to_double(log(2)))
    grid = mpf(2) ** -42
    ln2hi = on_grid(log(2), grid)
    h.number("ln2High", "double", ln2hi)
    h.number("ln2Low", "double", to_double(log(2) - ln2hi))
    h.blank()

    def less(r):
        return (mp.log1p(r) - r) / r**2 if abs(r) > mpf(10) ** -20 else -mpf(1) / 2

    rows, lo, hi = [], mpf(0), mpf(0)
    for i in range(128):
        def edge(i):
            bits = 0x3FE6A000 + (i << 13)
            e, m = bits >> 20, bits & 0xFFFFF
            return (1 + mpf(m) / 2**20) * mpf(2) ** (e - 1023)
        a, b = edge(i), edge(i + 1)
        c = mpf(1) if a == 1 or b == 1 else truncated(2 / (a + b), 14)
        lo, hi = min(lo, a * c - 1), max(hi, b * c - 1)
        value = -log(c)
        high = on_grid(value, grid)
        rows.append((c, high, to_double(value - high), to_double(value)))
    for name, count in (("vdln_low", 6), ("vdln_high", 7), ("vdln_fast", 3), ("vdpowx_ln", 8)):
        c, e = fit(less, lambda r: abs(r), lo, hi, range(count), to_double, exact=(-0.5,) if count > 4 else ())
        h.poly(name, "double", c, "(ln(1 + r) - r) / r^2, r in (%s, %s); error against r %s." % (mp.nstr(lo, 4), mp.nstr(hi, 4), bound(e)))
    h.table("vdln_data", "double", rows, "For m from 0.7070 in cells of 1/128 of its binade: c of 14 bits near 1/m, -ln c in two parts, the same rounded.")
    h.write(os.path.join(ROOM, "ln_data.hpp"))


def arctangent():
    h = Header("Constants of the arc tangent kernels.")

    def slope(s):
        return mp.atan(sqrt(s)) / sqrt(s) if s else mpf(1)

    for name, count in (("vsatan_low", 8), ("vsatan_fast", 5)):
        c, e = fit(slope, lambda s: 1 / slope(s), 0, 1, range(count), to_float, exact=(1,))
        h.poly(name, "float", c, "atan(t) / t in t^2, t to 1; relative error " + bound(e) + ".")

    eighth = (sqrt(mpf(2)) - 1) * (1 + mpf(2) ** -12)
    for name, count in (("vdatan_low", 11), ("vdatan_fast", 6)):
        c, e = fit(slope, lambda s: 1 / slope(s), 0, eighth * eighth, range(count), to_double, exact=(1,))
        h.poly(name, "double", c, "atan(t) / t in t^2, t to tan(pi/8); relative error " + bound(e) + ".")

    def cubic(s):
        return (slope(s) - 1) / s if s > mpf(10) ** -30 else -mpf(1) / 3

    u = mpf(1) / 64 * (1 + mpf(2) ** -10)
    for name, count in (("vdatan_high", 4),):
        c, e = fit(cubic, lambda s: s, 0, u * u, range(count), to_double)
        h.poly(name, "double", c, "(atan(u) - u) / u^3 in u^2, u to 1/64; error against u " + bound(e) + ".")
    rows = []
    for offset, sign in ((0, 1), (pi / 2, -1), (pi, -1), (pi / 2, 1)):
        for j in range(33):
            v = offset + sign * mp.atan(mpf(j) / 32)
            rows.append((to_double(v), to_double(v - to_double(v))))
    h.table("vdatan_data", "double", rows, "a = atan(j/32), pi/2 - a, pi - a, pi/2 + a, 33 rows each, with low parts.")
    for name, v in (("quarterPi", pi / 4), ("halfPi", pi / 2), ("wholePi", pi)):
        h.number(name, "double", to_double(v))
    h.write(os.path.join(ROOM, "atan_data.hpp"))


def integers():
    """Tables of the integer exponentials and logarithms: arith/, not arith/vmath/."""
    text = ["// Made by tools/vmath_data.py; do not edit.",
            "// Tables of exponentials and logarithms of integers.", "#pragma once", "",
            "#include <cstdint>", "", "namespace keps {", ""]

    def rows(name, kind, most, first, last, comment):
        text.append("// " + comment)
        text.append("inline constexpr std::%s %s[33][%d] = {" % (kind, name, last(0) - first(0) + 1))
        for s in range(-16, 17):
            row = [min(int(mp.nint(exp(mpf(x)) / mpf(2) ** s)), most) for x in range(first(s), last(s) + 1)]
            text.append("    {%s}," % ", ".join(map(str, row)))
        text.extend(["};", ""])

    rows("Point_Tab", "int16_t", 32767, lambda s: -12 if s < 0 else 0, lambda s: 12 if s < 0 else 24,
         "exp(x) 2^-s for s from -16 on, a row each: x from 0 to 24, for s below 0 from -12 to 12.")
    rows("widePoints", "int32_t", 2**31 - 1, lambda s: -12 if s < 0 else 0, lambda s: 23 if s < 0 else 35,
         "The same for 32-bit results: x from 0 to 35, for s below 0 from -12 to 23.")
    text.append("// The largest integers whose logarithms, divided by 2^s, round to 0, 1, 2 and so on; no")
    text.append("// logarithm of an integer but of 1 is rational, so none is a tie.")
    steps, starts, counts = [], [], []
    for s in range(0, 6):
        starts.append(len(steps))
        k = 0
        while True:
            v = int(mp.floor(exp((mpf(k) + mpf("0.5")) * 2**s)))
            if v >= 2**31 - 1:
                break
            steps.append(v)
            k += 1
        counts.append(k)
    text.append("inline constexpr std::int32_t lnSteps[] = {%s};" % ", ".join(map(str, steps)))
    text.append("// For s from 0 to 5: where its steps begin and how many there are; from 5 on there are none.")
    text.append("inline constexpr struct {")
    text.append("    int first, count;")
    text.append("} lnStepsOf[] = {%s};" % ", ".join("{%d, %d}" % p for p in zip(starts, counts)))
    with open(os.path.join(ROOM, "..", "integer_tables.hpp"), "w") as out:
        out.write("\n".join(text + ["", "} // namespace keps", ""]))


FAMILIES = {"integers": integers, "trig": trig, "exponential": exponential, "logarithm": logarithm, "arctangent": arctangent}

if __name__ == "__main__":
    for family in sys.argv[1:] or FAMILIES:
        FAMILIES[family]()
