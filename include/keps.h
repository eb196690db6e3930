/** @file
 * keps: signal-processing primitives over arrays of samples, for x86-64 processors with AVX.
 *
 * Conventions. Arguments stand in the order: sources, destination, length, constants or
 * thresholds, rounding mode, scale factor, work buffer. `_I` names work in place on their last
 * array. `_L` names take 64-bit lengths. Entry tests run in the order null pointers
 * (#kepStatusNullPointer), length below 1 (#kepStatusBadLength), then the function's own
 * arguments, unless a function says otherwise. Sources may lie anywhere and at any byte address;
 * a destination may be one of the sources exactly, but not overlap one otherwise, unless a
 * function says so. All functions may be called from any thread at any time.
 */
#ifndef KEPS_H
#define KEPS_H

#include "keps_arith.h"
#include "keps_elementary.h"
#include "keps_filters.h"
#include "keps_frame.h"
#include "keps_generate.h"
#include "keps_transforms.h"

#endif
