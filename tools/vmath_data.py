#!/usr/bin/env python3
"""Writes the coefficients and tables of arith/vmath: vmath_data.py [family ...].

Polynomials are minimax fits by Remez exchange in 60-digit arithmetic, each coefficient rounded to
its type in turn with the later ones fitted to what is left; the bound written beside each is the
largest error that the rounded coefficients leave. Tables are values of the function at their
breakpoints, rounded once. Needs mpmath."""
import os
import sys
from mpmath import mp, mpf, sin, cos, exp, log, pi, sqrt, floor
from vmath_fit import Header, bound, fit, on_grid, to_double, to_float, truncated

ROOM = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "arith", "vmath")
one = lambda x: mpf(1)


def parts(value, bits):
    """value as a sum of constants of so many bits each; the last takes a full double."""
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
                              ("vdsin_low", "double", 9), ("vdsin_fast", "double", 5)):
        c, e = fit(sineq, weight, 0, r * r, range(count), to_float if kind == "float" else to_double)
        h.poly(name, kind, c, "sin(r) / r in r^2, |r| to pi/2; relative error " + bound(e) + ".")
    h.number("invPi", "double", to_double(1 / pi), "1/pi; pi in parts that an 11-bit multiplier leaves exact in float, a 16-bit one in double.")
    for k, p in enumerate(parts(pi, (13, 13, 24))):
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


FAMILIES = {"trig": trig}

if __name__ == "__main__":
    for family in sys.argv[1:] or FAMILIES:
        FAMILIES[family]()
