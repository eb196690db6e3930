# Weighted minimax fits (Remez exchange) with coefficients rounded to float or double, and hexadecimal output.
import struct
from mpmath import mp, mpf, matrix, lu_solve, cos, pi

mp.dps = 60


def to_double(x):
    return mpf(float(x))  # mpmath rounds to nearest, ties to even


def to_float(x):
    """Nearest float. Double rounding is excluded: the double is nudged to odd first."""
    d = float(x)
    bits = struct.unpack("<q", struct.pack("<d", d))[0]
    if mpf(d) != x and bits & 1 == 0:
        toward = 1 if (abs(x) > abs(mpf(d))) else -1
        bits += toward
        d = struct.unpack("<d", struct.pack("<q", bits))[0]
    return mpf(struct.unpack("<f", struct.pack("<f", d))[0])


def truncated(x, bits):
    """A positive x cut to so many significant bits."""
    m, e = mp.frexp(x)
    return mp.floor(m * mpf(2) ** bits) * mpf(2) ** (e - bits)


def on_grid(x, step):
    return mp.nint(x / step) * step


def solve(f, w, powers, nodes):
    n = len(powers)
    a, b = matrix(n + 1, n + 1), matrix(n + 1, 1)
    for i, x in enumerate(nodes):
        for k, p in enumerate(powers):
            a[i, k] = w(x) * x**p
        a[i, n] = (-1) ** i
        b[i] = w(x) * f(x)
    s = lu_solve(a, b)
    return [s[k] for k in range(n)], abs(s[n])


def remez(f, w, lo, hi, powers, rounds=7, density=24):
    """Coefficients c that minimise the largest w(x) |f(x) - sum c x^p| on [lo, hi], and that value."""
    n = len(powers)
    if n == 0:
        return [], None
    mid, half = (lo + hi) / 2, (hi - lo) / 2
    nodes = sorted(mid - half * cos(pi * (2 * i + 1) / (2 * n + 2)) for i in range(n + 1))
    count = density * (n + 1)
    grid = [mid - half * cos(pi * i / count) for i in range(count + 1)]
    grid = [(x, f(x), w(x)) for x in grid if w(x) != 0]
    nodes = [x if w(x) != 0 else x + half / 16 for x in nodes]
    c = None
    for _ in range(rounds):
        c, level = solve(f, w, powers, nodes)
        error = [wx * (fx - sum(ck * x**p for ck, p in zip(c, powers))) for x, fx, wx in grid]
        runs, best = [], None  # the largest error of each run of one sign
        for i, e in enumerate(error):
            if best is not None and (e > 0) != (error[best] > 0):
                runs.append(best)
                best = i
            elif best is None or abs(e) > abs(error[best]):
                best = i
        runs.append(best)
        while len(runs) > n + 1:
            runs.pop(0 if abs(error[runs[0]]) < abs(error[runs[-1]]) else -1)
        if len(runs) < n + 1:
            break
        nodes = [grid[i][0] for i in runs]
        top = max(abs(error[i]) for i in runs)
        if top < level * mpf("1.005"):
            break
    return c, max(abs(e) for e in error)


def fit(f, w, lo, hi, powers, rounding, exact=()):
    """As remez, with every coefficient rounded in turn and the later ones fitted to what is left.
    exact: leading coefficients that are given. Returns the coefficients and the largest error that
    they leave."""
    lo, hi = mpf(lo), mpf(hi)
    fixed = [mpf(x) for x in exact]
    powers = list(powers)
    while len(fixed) < len(powers):
        k = len(fixed)
        # Divided by its lowest power, so that the exchange works on a full set of powers.
        m = powers[k]
        rest = lambda x: (f(x) - sum(c * x**p for c, p in zip(fixed, powers))) / (x**m if x else mpf(1))
        c, _ = remez(rest, lambda x: w(x) * abs(x) ** m, lo, hi, [p - m for p in powers[k:]])
        fixed.append(rounding(c[0]))
    worst = max(
        abs(w(x) * (f(x) - sum(c * x**p for c, p in zip(fixed, powers))))
        for x in (lo + (hi - lo) * i / 400 for i in range(401))
    )
    return fixed, worst


def hexed(x, suffix=""):
    return "-0.0" + suffix if isinstance(x, str) else float(x).hex() + suffix


def bound(error):
    return "2^%.1f" % float(mp.log(error, 2)) if error else "0"


class Header:
    def __init__(self, about):
        self.text = ["// Made by tools/vmath_data.py; do not edit.", "// " + about, "#pragma once", "",
                     "#include <cstdint>", "", "namespace keps::vmath {", ""]

    def poly(self, name, kind, coefficients, comment):
        suffix = "f" if kind == "float" else ""
        self.text.append("// %s" % comment)
        self.text.append("inline constexpr %s %s[] = {%s};" % (
            kind, name, ", ".join(hexed(c, suffix) for c in coefficients)))
        self.text.append("")

    def number(self, name, kind, value, comment=None):
        if comment:
            self.text.append("// %s" % comment)
        self.text.append("inline constexpr %s %s = %s;" % (kind, name, hexed(value, "f" if kind == "float" else "")))

    def table(self, name, kind, rows, comment):
        self.text.append("// %s" % comment)
        self.text.append("alignas(64) inline constexpr %s %s[%d][%d] = {" % (kind, name, len(rows), len(rows[0])))
        for row in rows:
            self.text.append("    {%s}," % ", ".join(hexed(x) for x in row))
        self.text.append("};")
        self.text.append("")

    def words(self, name, values, comment):
        self.text.append("// %s" % comment)
        self.text.append("inline constexpr std::uint64_t %s[] = {" % name)
        self.text.extend("    0x%016X," % v for v in values)
        self.text.append("};")
        self.text.append("")

    def blank(self):
        self.text.append("")

    def write(self, path):
        with open(path, "w") as out:
            out.write("\n".join(self.text + ["} // namespace keps::vmath", ""]))
