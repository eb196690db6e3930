// Made by tools/vmath_data.py; do not edit.
// Constants of the sine and cosine kernels.
#pragma once

#include <cstdint>

namespace keps::vmath {

// 32/pi; and pi/32 in parts that a 20-bit integer multiplies exactly.
inline constexpr double trigInvStep = 0x1.45f306dc9c883p+3;
inline constexpr double trigStep1 = 0x1.921fb54400000p-4;
inline constexpr double trigStep2 = 0x1.0b4611a600000p-38;
inline constexpr double trigStep3 = 0x1.3198a2e000000p-73;
inline constexpr double trigStep4 = 0x1.b839a252049c1p-108;

// (sin r - r) / r^3 in r^2, |r| to pi/64; error against r 2^-60.0.
inline constexpr double vdsin_step[] = {-0x1.5555555555457p-3, 0x1.11111107484e8p-7, -0x1.a0132953a94e2p-13};

// (cos r - 1) / r^2 in r^2, |r| to pi/64; absolute error 2^-73.3.
inline constexpr double vdcos_step[] = {-0x1.0000000000000p-1, 0x1.55555555554aap-5, -0x1.6c16c161ccea5p-10, 0x1.a013e015d0a06p-16};

// Breakpoints j pi/32: sine, its low part, a power of two near the cosine, the cosine less it.
alignas(64) inline constexpr double vdsin_data[64][4] = {
    {0x0.0p+0, 0x0.0p+0, 0x1.0000000000000p+0, 0x0.0p+0},
    {0x1.917a6bc29b42cp-4, -0x1.e2718d26ed688p-60, 0x1.0000000000000p+0, -0x1.3b92e176d6d31p-8},
    {0x1.8f8b83c69a60bp-3, -0x1.26d19b9ff8d82p-57, 0x1.0000000000000p+0, -0x1.3ad06011469fbp-6},
    {0x1.294062ed59f06p-2, -0x1.5d28da2c4612dp-56, 0x1.0000000000000p+0, -0x1.60bea939d225ap-5},
    {0x1.87de2a6aea963p-2, -0x1.72cedd3d5a610p-57, 0x1.0000000000000p+0, -0x1.37ca1866b95cfp-4},
    {0x1.e2b5d3806f63bp-2, 0x1.e0d891d3c6841p-58, 0x1.0000000000000p+0, -0x1.e3a6873fa1279p-4},
    {0x1.1c73b39ae68c8p-1, 0x1.b25dd267f6600p-55, 0x1.0000000000000p+0, -0x1.592675bc57974p-3},
    {0x1.44cf325091dd6p-1, 0x1.8076a2cfdc6b3p-57, 0x1.0000000000000p+0, -0x1.d0dfe53aba2fdp-3},
    {0x1.6a09e667f3bcdp-1, -0x1.bdd3413b26456p-55, 0x1.0000000000000p+0, -0x1.2bec333018867p-2},
    {0x1.8bc806b151741p-1, -0x1.2c5e12ed1336dp-55, 0x1.0000000000000p-1, 0x1.133cc94247758p-3},
    {0x1.a9b66290ea1a3p-1, 0x1.9f630e8b6dac8p-60, 0x1.0000000000000p-1, 0x1.c73b39ae68c87p-5},
    {0x1.c38b2f180bdb1p-1, -0x1.6e0b1757c8d07p-56, 0x1.0000000000000p-1, -0x1.d4a2c7f909c4ep-6},
    {0x1.d906bcf328d46p-1, 0x1.457e610231ac2p-56, 0x1.0000000000000p-1, -0x1.e087565455a75p-4},
    {0x1.e9f4156c62ddap-1, 0x1.760b1e2e3f81ep-55, 0x1.0000000000000p-2, 0x1.4a03176acf82dp-5},
    {0x1.f6297cff75cb0p-1, 0x1.562172a361fd3p-56, 0x1.0000000000000p-2, -0x1.c1d1f0e5967d5p-5},
    {0x1.fd88da3d12526p-1, -0x1.87df6378811c7p-55, 0x1.0000000000000p-3, -0x1.ba1650f592f50p-6},
    {0x1.0000000000000p+0, 0x0.0p+0, 0x0.0p+0, 0x0.0p+0},
    {0x1.fd88da3d12526p-1, -0x1.87df6378811c7p-55, -0x1.0000000000000p-3, 0x1.ba1650f592f50p-6},
    {0x1.f6297cff75cb0p-1, 0x1.562172a361fd3p-56, -0x1.0000000000000p-2, 0x1.c1d1f0e5967d5p-5},
    {0x1.e9f4156c62ddap-1, 0x1.760b1e2e3f81ep-55, -0x1.0000000000000p-2, -0x1.4a03176acf82dp-5},
    {0x1.d906bcf328d46p-1, 0x1.457e610231ac2p-56, -0x1.0000000000000p-1, 0x1.e087565455a75p-4},
    {0x1.c38b2f180bdb1p-1, -0x1.6e0b1757c8d07p-56, -0x1.0000000000000p-1, 0x1.d4a2c7f909c4ep-6},
    {0x1.a9b66290ea1a3p-1, 0x1.9f630e8b6dac8p-60, -0x1.0000000000000p-1, -0x1.c73b39ae68c87p-5},
    {0x1.8bc806b151741p-1, -0x1.2c5e12ed1336dp-55, -0x1.0000000000000p-1, -0x1.133cc94247758p-3},
    {0x1.6a09e667f3bcdp-1, -0x1.bdd3413b26456p-55, -0x1.0000000000000p-1, -0x1.a827999fcef32p-3},
    {0x1.44cf325091dd6p-1, 0x1.8076a2cfdc6b3p-57, -0x1.0000000000000p+0, 0x1.d0dfe53aba2fdp-3},
    {0x1.1c73b39ae68c8p-1, 0x1.b25dd267f6600p-55, -0x1.0000000000000p+0, 0x1.592675bc57974p-3},
    {0x1.e2b5d3806f63bp-2, 0x1.e0d891d3c6841p-58, -0x1.0000000000000p+0, 0x1.e3a6873fa1279p-4},
    {0x1.87de2a6aea963p-2, -0x1.72cedd3d5a610p-57, -0x1.0000000000000p+0, 0x1.37ca1866b95cfp-4},
    {0x1.294062ed59f06p-2, -0x1.5d28da2c4612dp-56, -0x1.0000000000000p+0, 0x1.60bea939d225ap-5},
    {0x1.8f8b83c69a60bp-3, -0x1.26d19b9ff8d82p-57, -0x1.0000000000000p+0, 0x1.3ad06011469fbp-6},
    {0x1.917a6bc29b42cp-4, -0x1.e2718d26ed688p-60, -0x1.0000000000000p+0, 0x1.3b92e176d6d31p-8},
    {0x0.0p+0, 0x0.0p+0, -0x1.0000000000000p+0, 0x0.0p+0},
    {-0x1.917a6bc29b42cp-4, 0x1.e2718d26ed688p-60, -0x1.0000000000000p+0, 0x1.3b92e176d6d31p-8},
    {-0x1.8f8b83c69a60bp-3, 0x1.26d19b9ff8d82p-57, -0x1.0000000000000p+0, 0x1.3ad06011469fbp-6},
    {-0x1.294062ed59f06p-2, 0x1.5d28da2c4612dp-56, -0x1.0000000000000p+0, 0x1.60bea939d225ap-5},
    {-0x1.87de2a6aea963p-2, 0x1.72cedd3d5a610p-57, -0x1.0000000000000p+0, 0x1.37ca1866b95cfp-4},
    {-0x1.e2b5d3806f63bp-2, -0x1.e0d891d3c6841p-58, -0x1.0000000000000p+0, 0x1.e3a6873fa1279p-4},
    {-0x1.1c73b39ae68c8p-1, -0x1.b25dd267f6600p-55, -0x1.0000000000000p+0, 0x1.592675bc57974p-3},
    {-0x1.44cf325091dd6p-1, -0x1.8076a2cfdc6b3p-57, -0x1.0000000000000p+0, 0x1.d0dfe53aba2fdp-3},
    {-0x1.6a09e667f3bcdp-1, 0x1.bdd3413b26456p-55, -0x1.0000000000000p+0, 0x1.2bec333018867p-2},
    {-0x1.8bc806b151741p-1, 0x1.2c5e12ed1336dp-55, -0x1.0000000000000p-1, -0x1.133cc94247758p-3},
    {-0x1.a9b66290ea1a3p-1, -0x1.9f630e8b6dac8p-60, -0x1.0000000000000p-1, -0x1.c73b39ae68c87p-5},
    {-0x1.c38b2f180bdb1p-1, 0x1.6e0b1757c8d07p-56, -0x1.0000000000000p-1, 0x1.d4a2c7f909c4ep-6},
    {-0x1.d906bcf328d46p-1, -0x1.457e610231ac2p-56, -0x1.0000000000000p-1, 0x1.e087565455a75p-4},
    {-0x1.e9f4156c62ddap-1, -0x1.760b1e2e3f81ep-55, -0x1.0000000000000p-2, -0x1.4a03176acf82dp-5},
    {-0x1.f6297cff75cb0p-1, -0x1.562172a361fd3p-56, -0x1.0000000000000p-2, 0x1.c1d1f0e5967d5p-5},
    {-0x1.fd88da3d12526p-1, 0x1.87df6378811c7p-55, -0x1.0000000000000p-3, 0x1.ba1650f592f50p-6},
    {-0x1.0000000000000p+0, 0x0.0p+0, 0x0.0p+0, 0x0.0p+0},
    {-0x1.fd88da3d12526p-1, 0x1.87df6378811c7p-55, 0x1.0000000000000p-3, -0x1.ba1650f592f50p-6},
    {-0x1.f6297cff75cb0p-1, -0x1.562172a361fd3p-56, 0x1.0000000000000p-2, -0x1.c1d1f0e5967d5p-5},
    {-0x1.e9f4156c62ddap-1, -0x1.760b1e2e3f81ep-55, 0x1.0000000000000p-2, 0x1.4a03176acf82dp-5},
    {-0x1.d906bcf328d46p-1, -0x1.457e610231ac2p-56, 0x1.0000000000000p-1, -0x1.e087565455a75p-4},
    {-0x1.c38b2f180bdb1p-1, 0x1.6e0b1757c8d07p-56, 0x1.0000000000000p-1, -0x1.d4a2c7f909c4ep-6},
    {-0x1.a9b66290ea1a3p-1, -0x1.9f630e8b6dac8p-60, 0x1.0000000000000p-1, 0x1.c73b39ae68c87p-5},
    {-0x1.8bc806b151741p-1, 0x1.2c5e12ed1336dp-55, 0x1.0000000000000p-1, 0x1.133cc94247758p-3},
    {-0x1.6a09e667f3bcdp-1, 0x1.bdd3413b26456p-55, 0x1.0000000000000p-1, 0x1.a827999fcef32p-3},
    {-0x1.44cf325091dd6p-1, -0x1.8076a2cfdc6b3p-57, 0x1.0000000000000p+0, -0x1.d0dfe53aba2fdp-3},
    {-0x1.1c73b39ae68c8p-1, -0x1.b25dd267f6600p-55, 0x1.0000000000000p+0, -0x1.592675bc57974p-3},
    {-0x1.e2b5d3806f63bp-2, -0x1.e0d891d3c6841p-58, 0x1.0000000000000p+0, -0x1.e3a6873fa1279p-4},
    {-0x1.87de2a6aea963p-2, 0x1.72cedd3d5a610p-57, 0x1.0000000000000p+0, -0x1.37ca1866b95cfp-4},
    {-0x1.294062ed59f06p-2, 0x1.5d28da2c4612dp-56, 0x1.0000000000000p+0, -0x1.60bea939d225ap-5},
    {-0x1.8f8b83c69a60bp-3, 0x1.26d19b9ff8d82p-57, 0x1.0000000000000p+0, -0x1.3ad06011469fbp-6},
    {-0x1.917a6bc29b42cp-4, 0x1.e2718d26ed688p-60, 0x1.0000000000000p+0, -0x1.3b92e176d6d31p-8},
};

// sin(r) / r in r^2, |r| to pi/2; relative error 2^-27.3.
inline constexpr float vssin_low[] = {0x1.0000000000000p+0f, -0x1.55554c0000000p-3f, 0x1.110eda0000000p-7f, -0x1.9f70ee0000000p-13f, 0x1.5dc8c20000000p-19f};

// sin(r) / r in r^2, |r| to pi/2; relative error 2^-13.2.
inline constexpr float vssin_fast[] = {0x1.fff1cc0000000p-1f, -0x1.53e27c0000000p-3f, 0x1.f23d000000000p-8f};

// sin(r) / r in r^2, |r| to pi/2; relative error 2^-35.4.
inline constexpr double vssin_high[] = {0x1.ffffffffd15b5p-1, -0x1.555555416b1a9p-3, 0x1.11110b7239892p-7, -0x1.a017a83329749p-13, 0x1.716b8a76b0fadp-19, -0x1.9a0bb36fcd8fep-26};

// sin(r) / r in r^2, |r| to pi/2; relative error 2^-61.5.
inline constexpr double vdsin_low[] = {0x1.0000000000000p+0, -0x1.5555555555555p-3, 0x1.11111111110c8p-7, -0x1.a01a01a014d6ep-13, 0x1.71de3a52a09fbp-19, -0x1.ae6454d4664f8p-26, 0x1.6123cd020c2b3p-33, -0x1.ae43829fca7dfp-41, 0x1.88326a8153314p-49};

// sin(r) / r in r^2, |r| to pi/2; relative error 2^-27.5.
inline constexpr double vdsin_fast[] = {0x1.ffffffd243813p-1, -0x1.555547ea279eap-3, 0x1.110e7a6d8cd6bp-7, -0x1.9f641eabd3286p-13, 0x1.5d36817614f77p-19};

// 1/pi; pi in parts that an 11-bit multiplier leaves exact in float, a 16-bit one in double.
inline constexpr double invPi = 0x1.45f306dc9c883p-2;
inline constexpr float piFloat1 = 0x1.9220000000000p+1f;
inline constexpr float piFloat2 = -0x1.2af0000000000p-17f;
inline constexpr float piFloat3 = 0x1.0b46120000000p-33f;
inline constexpr double piDouble1 = 0x1.921fb54440000p+1;
inline constexpr double piDouble2 = 0x1.68c234c4c0000p-38;
inline constexpr double piDouble3 = 0x1.98a2e03707345p-76;
// The same for floats, 20-bit multipliers.
inline constexpr double piWide1 = 0x1.921fb54400000p+1;
inline constexpr double piWide2 = 0x1.0b4611a626331p-33;

// 64 zero bits, then the binary digits of 1 / (2 pi).
inline constexpr std::uint64_t turnBits[] = {
    0x0000000000000000,
    0x28BE60DB9391054A,
    0x7F09D5F47D4D3770,
    0x36D8A5664F10E410,
    0x7F9458EAF7AEF158,
    0x6DC91B8E909374B8,
    0x01924BBA82746487,
    0x3F877AC72C4A69CF,
    0xBA208D7D4BAED121,
    0x3A671C09AD17DF90,
    0x4E64758E60D4CE7D,
    0x272117E2EF7E4A0E,
    0xC7FE25FFF7816603,
    0xFBCBC462D6829B47,
    0xDB4D9FB3C9F2C26D,
    0xD3D18FD9A797FA8B,
    0x5D49EEB1FAF97C5E,
    0xCF41CE7DE294A4BA,
    0x9AFED7EC47E35742,
    0x1580CC11BF1EDAEA,
    0xFC33EF0826BD0D87,
    0x6A78E45857B986C2,
};

// 2 pi times 2^125.
inline constexpr std::uint64_t twoPiBits[] = {
    0xC90FDAA22168C234,
    0xC4C6628B80DC1CD1,
};

} // namespace keps::vmath
