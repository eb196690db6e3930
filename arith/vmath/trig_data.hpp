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

// sin(r) / r in r^2, |r| to pi/2; relative error 2^-12.8.
inline constexpr float vssin_fast[] = {0x1.0000000000000p+0f, -0x1.543b500000000p-3f, 0x1.f5c2520000000p-8f};

// sin(r) / r in r^2, |r| to pi/2; relative error 2^-35.3.
inline constexpr double vssin_high[] = {0x1.0000000000000p+0, -0x1.555555475d7b5p-3, 0x1.11110c46b6c01p-7, -0x1.a017d87ca6d4bp-13, 0x1.717058a8ed703p-19, -0x1.9a64e2e61bde7p-26};

// sin(r) / r in r^2, |r| to pi/2; relative error 2^-52.5.
inline constexpr double vdsin_low[] = {0x1.0000000000000p+0, -0x1.55555555554a8p-3, 0x1.111111110a53ep-7, -0x1.a01a019a62ec9p-13, 0x1.71de3805bcba3p-19, -0x1.ae6355581ace8p-26, 0x1.60e6b13ab8172p-33, -0x1.9f1359ab98b0cp-41};

// sin(r) / r in r^2, |r| to pi/2; relative error 2^-27.3.
inline constexpr double vdsin_fast[] = {0x1.0000000000000p+0, -0x1.55554bc347140p-3, 0x1.110ed29bc7405p-7, -0x1.9f6fd0bced98ep-13, 0x1.5dbb2827cb42ep-19};

// sin(r) / r in r^2, |r| to pi/4; relative error 2^-27.9.
inline constexpr float sinQuarterLow32[] = {0x1.0000000000000p+0f, -0x1.5555460000000p-3f, 0x1.1107740000000p-7f, -0x1.9951f00000000p-13f};

// cos(r) in r^2, |r| to pi/4; relative error 2^-24.6.
inline constexpr float cosQuarterLow32[] = {0x1.0000000000000p+0f, -0x1.ffffb20000000p-2f, 0x1.553e5e0000000p-5f, -0x1.6447fe0000000p-10f};

// sin(r) / r in r^2, |r| to pi/4; relative error 2^-19.0.
inline constexpr float sinQuarterFast32[] = {0x1.0000000000000p+0f, -0x1.5544160000000p-3f, 0x1.0b7b880000000p-7f};

// cos(r) in r^2, |r| to pi/4; relative error 2^-16.0.
inline constexpr float cosQuarterFast32[] = {0x1.0000000000000p+0f, -0x1.ffc0fc0000000p-2f, 0x1.4b6ab20000000p-5f};

// sin(r) / r in r^2, |r| to pi/4; relative error 2^-57.9.
inline constexpr double sinQuarterLow64[] = {0x1.0000000000000p+0, -0x1.5555555555548p-3, 0x1.111111110f72fp-7, -0x1.a01a019be8fb0p-13, 0x1.71de355509263p-19, -0x1.ae5e4b6888a93p-26, 0x1.5d8b4d4934584p-33};

// cos(r) in r^2, |r| to pi/4; relative error 2^-53.8.
inline constexpr double cosQuarterLow64[] = {0x1.0000000000000p+0, -0x1.fffffffffff95p-2, 0x1.555555554ef8dp-5, -0x1.6c16c163f86ffp-10, 0x1.a019f80c957f1p-16, -0x1.27df3f9cc38d3p-22, 0x1.1b89b4dacdf09p-29};

// sin(r) / r in r^2, |r| to pi/4; relative error 2^-28.0.
inline constexpr double sinQuarterFast64[] = {0x1.0000000000000p+0, -0x1.5555450e3cfb4p-3, 0x1.110730d91de10p-7, -0x1.994056dcb4725p-13};

// cos(r) in r^2, |r| to pi/4; relative error 2^-33.8.
inline constexpr double cosQuarterFast64[] = {0x1.0000000000000p+0, -0x1.ffffffcb13fe7p-2, 0x1.55553c5125c90p-5, -0x1.6c07e1973a922p-10, 0x1.9912d623a13ddp-16};

// 1/pi; pi in parts that an 8-bit multiplier leaves exact in float, a 16-bit one in double.
inline constexpr double invPi = 0x1.45f306dc9c883p-2;
inline constexpr float piFloat1 = 0x1.921e000000000p+1f;
inline constexpr float piFloat2 = 0x1.b544000000000p-15f;
inline constexpr float piFloat3 = 0x1.0b46100000000p-33f;
inline constexpr double piDouble1 = 0x1.921fb54440000p+1;
inline constexpr double piDouble2 = 0x1.68c234c4c0000p-38;
inline constexpr double piDouble3 = 0x1.98a2e03707344p-76;
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
