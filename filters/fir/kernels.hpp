// The direct kernels: y[i], i from 0 to count - 1, is the sum of taps[tapsLen - 1 - j] * x[i + j]
// over j from 0 to tapsLen - 1. Tables as filters/fir/spec.hpp describes them. x and y are apart.
#pragma once

#include "frame/worker.h"

// Vertical tables: each output is summed from the oldest sample to the newest.
OWN_FN(void, ownFIRSR_32f_vrt_cn,
       (const Kep32f *table, const Kep32f *x, Kep32f *y, keps::size count, keps::size tapsLen));
OWN_FN(void, ownFIRSR_64f,
       (const Kep64f *table, const Kep64f *x, Kep64f *y, keps::size count, keps::size tapsLen));
OWN_FN(void, ownFIRSR_32fc,
       (const Kep32f *table, const Kep32fc *x, Kep32fc *y, keps::size count, keps::size tapsLen));
OWN_FN(void, ownFIRSR_64fc,
       (const Kep64f *table, const Kep64fc *x, Kep64fc *y, keps::size count, keps::size tapsLen));

// Horizontal tables: 32f as above; 64f by even and odd sums, joined for every 64 taps.
OWN_FN(void, ownFIRSR_32f_hrz,
       (const Kep32f *table, const Kep32f *x, Kep32f *y, keps::size count, keps::size tapsLen));
OWN_FN(void, ownFIRSR_64f_hrz,
       (const Kep64f *table, const Kep64f *x, Kep64f *y, keps::size count, keps::size tapsLen));
