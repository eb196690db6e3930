#!/usr/bin/env python3
"""Writes transforms/fft/quarter_wave.hpp: sin(2 pi k / 1024), k = 0..256, rounded to the nearest
float and double.

Usage: tools/quarter_wave.py > transforms/fft/quarter_wave.hpp
"""
from fractions import Fraction
from decimal import Decimal, getcontext

getcontext().prec = 60
PI = Decimal("3.14159265358979323846264338327950288419716939937510582097494")


def sine(x):
    term = total = x
    n = 1
    while abs(term) > Decimal(10) ** -55:
        term = -term * x * x / ((n + 1) * (n + 2))
        total += term
        n += 2
    return total


def rounded(value, bits):
    """The nearest number of bits significant bits, ties to even; exact as a Fraction."""
    exact = Fraction(value)
    if exact == 0:
        return exact
    exponent = 0
    while exact * Fraction(2) ** exponent < 2 ** (bits - 1):
        exponent += 1
    return Fraction(round(exact * Fraction(2) ** exponent)) / Fraction(2) ** exponent


def table(name, element, bits, suffix):
    print(f"alignas(64) inline constexpr {element} {name}[257] = {{")
    for k in range(257):
        value = Decimal(1) if k == 256 else sine(2 * PI * k / 1024)
        print(f"    {float(rounded(value, bits)).hex()}{suffix},")
    print("};")


print("""// One quarter wave, sin(2 pi k / 1024) for k = 0..256, correctly rounded; made by
// tools/quarter_wave.py.
#pragma once

namespace keps {

// clang-format off""")
table("fft_fix_twiddle_table_32f", "float", 24, "F")
print()
table("fft_fix_twiddle_table_64f", "double", 53, "")
print("""// clang-format on

} // namespace keps""")
